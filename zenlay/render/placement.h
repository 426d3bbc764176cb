// From tracks to a placement in space: the arithmetic shared by the drawing effects.
#pragma once

#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/scales_and_turns.h"
#include "zenlay/render/preview_overlay.h"

namespace zenlay {

/// Transparencies multiply as opacities: 4096 - ((4096 - a) * (4096 - b) >> 12).
int32_t combineTransparency(int32_t a, int32_t b);

/// Reads the twelve coordinate slots from the bound definition's tracks (map -1: 0, zoom 0x10000).
void readPlacement(const EffectDefinition*, ImagePlacement*);
/// Combines the slots with the object's accumulated placement and draws the object image into the frame. `options` are
/// the drawing effect's own bits (blend mode in bits 24..28). 1.
int placeObject(EffectDefinition*, EffectProcessInfo*, uint32_t options);
/// Where the object's centre of rotation would lie on the scene's picture, pixels, if the tracks of X, Y and Z had these
/// values, in the groups and under the camera of now.
ScenePoint anchorAt(const EffectDefinition*, const EffectProcessInfo*, const int32_t position[3]);

}  // namespace zenlay
