// "Audio waveform display": draws the waveform or the levels of a sound.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum WaveformTrack { trackWidth, trackHeight, trackVolume, trackPosition };
enum WaveformCheck { checkPreset, checkColor, checkReference, checkOriginal, checkSetting };

struct WaveformData {
  char file[260];
  uint8_t reserved[20];
  int16_t type;   // index into presetList
  int16_t mode;   // 0 line, 1 bars
  int16_t res_w;  // bars, 0 = one a column
  int16_t res_h;  // steps, 0 = one a row
  int16_t pad_w;  // gaps, percent
  int16_t pad_h;
  uint8_t color[3];  // red, green, blue
  uint8_t reserved2;
  int32_t sample_n;
  uint8_t mirror;
  uint8_t reserved3[3];
};
static_assert(sizeof(WaveformData) == 304);

constexpr char presetList[] =
    "Type1\0"
    "Type2\0"
    "Type3\0"
    "Type4\0"
    "Type5\0";

// The position in hundredths of a second.
constexpr TrackColumns tracks({
    {"Width", 640, 0, 2000, 1, 0, 2000},
    {"Height", 240, 0, 2000, 1, 0, 2000},
    {"Volume", 1000, 0, 5000, 10, 0, 5000},
    {"Playback position", 0, 0, 800000, 100, 0, 800000},
});
constexpr CheckColumns checks({
    {presetList, checkDropDown},
    {"Color of the waveform", checkButton},
    {"Reference file", checkButton},
    {"Restore original sound", 1},
    {"Setting", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataString, sizeof(WaveformData::file), "file"},
    {exdataReserved, sizeof(WaveformData::reserved), nullptr},
    {exdataInteger, sizeof(WaveformData::type), "type"},
    {exdataInteger, sizeof(WaveformData::mode), "mode"},
    {exdataInteger, sizeof(WaveformData::res_w), "res_w"},
    {exdataInteger, sizeof(WaveformData::res_h), "res_h"},
    {exdataInteger, sizeof(WaveformData::pad_w), "pad_w"},
    {exdataInteger, sizeof(WaveformData::pad_h), "pad_h"},
    {exdataBytes, sizeof(WaveformData::color), "color"},
    {exdataReserved, sizeof(WaveformData::reserved2), nullptr},
    {exdataInteger, sizeof(WaveformData::sample_n), "sample_n"},
    {exdataInteger, sizeof(WaveformData::mirror), "mirror"},
    {exdataReserved, sizeof(WaveformData::reserved3), nullptr},
};
constexpr WaveformData defaults = {
    .file = {},
    .reserved = {},
    .type = 0,
    .mode = 0,
    .res_w = 0,
    .res_h = 0,
    .pad_w = 0,
    .pad_h = 0,
    .color = {255, 255, 255},
    .reserved2 = 0,
    .sample_n = 0,
    .mirror = 0,
    .reserved3 = {},
};

}  // namespace

constinit EffectDefinition audioWaveformDisplayMedia = defineEffect({
    .flag = effectMedia,
    .name = "Audio waveform display",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(WaveformData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
