// From tracks to a placement in space: the arithmetic shared by the drawing effects.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

struct Scales {
  int32_t x, y;  // 16.16
};
/// Zoom and aspect as a horizontal and a vertical scale, and back (products in 64 bits, truncated).
Scales decodeZoom(int zoom, int aspect);
void encodeZoom(Scales, int32_t* zoom, int32_t* aspect);
/// (v rem 36000) x 65536 / 36000, truncated; the remainder keeps the sign. Degrees x 100 to turn units.
int32_t turnUnits(int32_t hundredthsOfDegree);
/// Transparencies multiply as opacities: 4096 - ((4096 - a) * (4096 - b) >> 12).
int32_t combineTransparency(int32_t a, int32_t b);

/// Reads the twelve coordinate slots from the bound definition's tracks (map -1: 0, zoom 0x10000).
void readPlacement(const EffectDefinition*, ImagePlacement*);
/// Combines the slots with the object's accumulated placement and draws the object image into the frame. `options` are
/// the drawing effect's own bits (blend mode in bits 24..28). 1.
int placeObject(EffectDefinition*, EffectProcessInfo*, uint32_t options);

}  // namespace zenlay
