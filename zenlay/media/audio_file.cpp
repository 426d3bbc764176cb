// "Audio file": the sound of a media file.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum AudioFileTrack { trackPosition, trackSpeed };
enum AudioFileCheck { checkLoop, checkSynchronize, checkReference };

struct AudioFileData {
  char file[260];
  uint8_t reserved[20];
};
static_assert(sizeof(AudioFileData) == 280);

// The position in hundredths of a second.
constexpr TrackColumns tracks({
    {"Playback position", 0, 0, 800000, 100, 0, 800000},
    {"vPlay", 1000, 100, 20000, 10, 100, 8000},
});
constexpr CheckColumns checks({
    {"Loop playback", 0},
    {"Sync with video files", 1},
    {"Reference file", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataString, sizeof(AudioFileData::file), "file"},
    {exdataReserved, sizeof(AudioFileData::reserved), nullptr},
};

}  // namespace

constinit EffectDefinition audioFileMedia = defineEffect({
    .flag = effectMedia | effectAudio,
    .name = "Audio file",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(AudioFileData),
    .exdata_fields = fields,
});

}  // namespace zenlay
