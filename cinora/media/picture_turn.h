// Turning decoded pictures upright: cameras store what they saw and note how they were held.
#pragma once

#include "cinora/support/av_handles.h"

namespace cinora {

/// Quarter turns clockwise, 0 to 3, that the stream asks for (display matrix). Other angles count as the nearest one,
/// mirroring is left out.
int quarterTurns(const AVStream&);
/// Whether the planes of that format can be turned by quarters: chroma is not narrower than it is low.
bool canQuarterTurn(AVPixelFormat);
/// Turns every plane of `from` into `to`, which has the same format and, for an odd number, width and height swapped.
void turnPicture(AVFrame& to, const AVFrame& from, int quarters);

}  // namespace cinora
