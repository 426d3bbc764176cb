// "Scene": another scene of the project as a moving picture.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum SceneTrack { trackPosition, trackSpeed };
enum SceneCheck { checkLoop, checkSelect };

struct SceneData {
  int32_t scene;  // 1..50; others show nothing
};
static_assert(sizeof(SceneData) == 4);

constexpr TrackColumns tracks({
    {"Playback position", 1, 1, 800000, 0, 1, 800000},
    {"vPlay", 1000, -20000, 20000, 10, -8000, 8000},
});
constexpr CheckColumns checks({
    {"Loop playback", 0},
    {"Scene Selection", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(SceneData::scene), "scene"},
};
constexpr SceneData defaults = {1};
constexpr ExtraControl controls[] = {
    {checkSelect, extraScene, offsetof(SceneData, scene)},
};

}  // namespace

constinit EffectDefinition sceneMedia = defineEffect({
    .flag = effectMedia,
    .name = "Scene",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(SceneData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
