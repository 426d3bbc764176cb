#include "tests/support/test_effects.h"

namespace zenlay::test {
namespace {

constexpr TrackColumns videoTracks({{"Playback position", 1, 1, 800000, 0, 1, 800000},
                                    {"vPlay", 1000, -20000, 20000, 10, -8000, 8000}});
constexpr CheckColumns videoChecks({{"Loop playback", 0},
                                    {"Import alpha channel", 1},
                                    {"Reference file", checkButton}});
constexpr ExdataField videoFields[] = {{exdataString, 260, "file"}, {exdataReserved, 24, nullptr}};

constexpr TrackColumns blurTracks({{"Range", 5, 0, 1000, 1, 0, 300},
                                   {"rAspect", 0, -1000, 1000, 10, -1000, 1000},
                                   {"Fine", 1500, -99999, 99999, 1000, 0, 60}});
constexpr CheckColumns blurChecks({{"Fixed Size", 0}});

constexpr TrackColumns graphicTracks({{"Size", 100, 0, 4000, 1, 0, 1000}});
constexpr ExdataField graphicFields[] = {
    {exdataInteger, 1, "type"}, {exdataBytes, 3, "color"}, {exdataString, 16, "name"}};
constexpr uint8_t graphicDefault[20] = {1, 255, 255, 255};

constexpr TrackColumns groupTracks({{"X", 0, -999999, 999999, 10, -20000, 20000}});
constexpr ExdataField rangeFields[] = {{exdataInteger, 4, "range"}, {exdataReserved, 16, nullptr}};

constexpr TrackRow wideRow{"Wide", 7, 0, 100, 1, 0, 100};
constexpr CheckRow wideCheck{"Check", 1};
constexpr TrackColumns wideTracks({wideRow, wideRow, wideRow, wideRow, wideRow, wideRow, wideRow,
                                   wideRow, wideRow, wideRow, wideRow, wideRow, wideRow, wideRow,
                                   wideRow, wideRow, wideRow, wideRow, wideRow, wideRow});
constexpr CheckColumns wideChecks({wideCheck, wideCheck, wideCheck, wideCheck, wideCheck, wideCheck, wideCheck,
                                   wideCheck, wideCheck, wideCheck, wideCheck, wideCheck, wideCheck, wideCheck,
                                   wideCheck});

constexpr TrackColumns drawingTracks({{"X", 0, -999999, 999999, 10, -20000, 20000, 1},
                                      {"Y", 0, -999999, 999999, 10, -20000, 20000, 1},
                                      {"Z", 0, -999999, 999999, 10, -20000, 20000, -2},
                                      {"Zoom%", 10000, 0, 500000, 100, 0, 80000}});
constexpr CheckColumns drawingChecks({{"Normal\0", checkDropDown}});
constexpr int32_t drawingMap[coordinateSlots] = {0, 1, 2, -1, -1, -1, -1, -1, -1, 3, -1, -1};
constexpr ExdataField blendField[] = {{exdataInteger, 4, "blend"}};

constexpr TrackColumns playbackTracks({{"Volume", 1000, 0, 5000, 10, 0, 5000}});

uint8_t foreignData[6] = {9, 8, 7, 6, 5, 4};
int32_t foreignTrack[1], foreignCheck[1];

constexpr EffectDefinition templates[testEffectCount] = {
    defineEffect({.flag = effectMedia | effectTakesOpaque,
                  .name = "Video file",
                  .tracks = videoTracks,
                  .checks = videoChecks,
                  .exdata_size = 284,
                  .exdata_fields = videoFields}),
    defineEffect({.flag = effectFilter, .name = "Blur", .tracks = blurTracks, .checks = blurChecks}),
    defineEffect({.flag = effectMedia | effectAudio,
                  .name = "Audio file",
                  .tracks = videoTracks,
                  .exdata_size = 284,
                  .exdata_fields = videoFields}),
    defineEffect({.flag = 0, .name = "Blur", .tracks = blurTracks}),
    defineEffect({.flag = effectMedia,
                  .name = "Graphic",
                  .tracks = graphicTracks,
                  .exdata_size = 20,
                  .exdata_default = graphicDefault,
                  .exdata_fields = graphicFields}),
    defineEffect({.flag = effectControl | effectFilter,
                  .name = "Group control",
                  .tracks = groupTracks,
                  .exdata_size = 20,
                  .exdata_fields = rangeFields,
                  .cameraTarget = true}),
    defineEffect({.flag = effectFilter, .name = "Wide", .tracks = wideTracks, .checks = wideChecks}),
    defineEffect({.flag = effectFilter, .name = "Heavy", .exdata_size = 6000}),
    defineEffect({.flag = 0, .name = "Foreign", .tracks = graphicTracks, .checks = blurChecks, .exdata_size = 6}),
    defineEffect({.flag = effectFilter, .name = "Plain"}),
    defineEffect({.flag = effectDrawing,
                  .name = "Standard drawing",
                  .tracks = drawingTracks,
                  .checks = drawingChecks,
                  .exdata_size = 4,
                  .exdata_fields = blendField,
                  .coordinate_map = drawingMap}),
    defineEffect({.flag = effectDrawing,
                  .name = "Advanced drawing",
                  .tracks = drawingTracks,
                  .checks = drawingChecks,
                  .exdata_size = 4,
                  .exdata_fields = blendField,
                  .coordinate_map = drawingMap,
                  .cameraTarget = true}),
    defineEffect({.flag = effectDrawing | effectAudio, .name = "Standard playback", .tracks = playbackTracks}),
};

EffectDefinition table[testEffectCount];

}  // namespace

void useTestEffects() {
  effectCount = testEffectCount;
  for (int i = 0; i < testEffectCount; i++) {
    EffectDefinition& d = table[i] = templates[i];
    effectList[i] = &d;
    if (d.exdata_size) d.flag |= effectHasExtraData;
    if (i == testForeign) {
      d.track = foreignTrack;
      d.check = foreignCheck;
      d.exdata = foreignData;
      continue;
    }
    d.flag |= effectBuiltIn;
    if (d.track_tables) d.track_scale = d.track_tables[0];
  }
}

}  // namespace zenlay::test
