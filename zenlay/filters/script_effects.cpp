// "Animation effect", "Custom object" and "Camera effect": run a chosen script, whose header defines the tracks.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/script_data.h"

namespace zenlay {

namespace {

enum ScriptEffectTrack { track0, track1, track2, track3 };
enum ScriptEffectCheck { checkScript, check0 };

// Filled with the scripts found at start-up.
constexpr char scriptList[] = "\0";

constexpr TrackColumns tracks({
    {"track0", 0, 0, 0, 100, 0, 0},
    {"track1", 0, 0, 0, 100, 0, 0},
    {"track2", 0, 0, 0, 100, 0, 0},
    {"track3", 0, 0, 0, 100, 0, 0},
});
constexpr CheckColumns checks({
    {scriptList, checkDropDown},
    {"check0", 0},
});

}  // namespace

constinit EffectDefinition animationEffect = defineEffect({
    .flag = effectFilter,
    .name = "Animation effect",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ScriptData),
    .exdata_fields = scriptDataFields,
});

constinit EffectDefinition customObjectMedia = defineEffect({
    .flag = effectMedia,
    .name = "Custom object",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ScriptData),
    .exdata_fields = scriptDataFields,
});

constinit EffectDefinition cameraEffectControl = defineEffect({
    .flag = effectControl,
    .name = "Camera effect",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ScriptData),
    .exdata_fields = scriptDataFields,
});

}  // namespace zenlay
