// "Scene (audio)": the sound of another scene of the project.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum SceneAudioTrack { trackPosition, trackSpeed };
enum SceneAudioCheck { checkLoop, checkSynchronize, checkSelect };

struct SceneAudioData {
  int32_t scene;  // 1..50; others are silent
};
static_assert(sizeof(SceneAudioData) == 4);

constexpr TrackColumns tracks({
    {"Playback position", 1, 1, 800000, 0, 1, 800000},
    {"vPlay", 1000, 100, 20000, 10, 100, 8000},
});
constexpr CheckColumns checks({
    {"Loop playback", 0},
    {"Sync with the scene", 1},
    {"Scene Selection", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(SceneAudioData::scene), "scene"},
};
constexpr SceneAudioData defaults = {1};

}  // namespace

constinit EffectDefinition sceneAudioMedia = defineEffect({
    .flag = effectMedia | effectAudio,
    .name = "Scene (audio)",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(SceneAudioData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
