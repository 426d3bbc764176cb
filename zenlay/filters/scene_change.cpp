// "Scene change": a transition from the picture before the object to the one of now.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/script_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum SceneChangeTrack { trackAdjustment, trackScript };
enum SceneChangeCheck { checkReversal, checkScript, checkTransition };

constexpr char transitionList[] =
    "Cross fade\0"
    "Wipe(Circle)\0"
    "Wipe(Square)\0"
    "Wipe(Clock)\0"
    "Slice\0"
    "Swap\0"
    "Slide\0"
    "Shrinking Rotation\0"
    "Extrude(H)\0"
    "Extrude(V)\0"
    "Rotation(H)\0"
    "Rotation(V)\0"
    "Cube Rotation(H)\0"
    "Cube Rotation(V)\0"
    "Fade Out/In\0"
    "Radial Blur\0"
    "Blur\0"
    "Wipe(H)\0"
    "Wipe(V)\0"
    "Roll(H)\0"
    "Roll(V)\0"
    "Random line\0";

// track1 gets its range from a script transition.
constexpr TrackColumns tracks({
    {"Adjustment", 0, -25600, 25600, 100, -25600, 25600},
    {"track1", 0, 0, 0, 100, 0, 0},
});
constexpr CheckColumns checks({
    {"Reversal", 0},
    {"check0", 0},
    {transitionList, checkDropDown},
});

constexpr ExtraControl controls[] = {
    {checkTransition, extraShortList, offsetof(ScriptData, type)},
};

}  // namespace

constinit EffectDefinition sceneChangeObject = defineEffect({
    .name = "Scene change",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ScriptData),
    .exdata_fields = scriptDataFields,
});

}  // namespace zenlay
