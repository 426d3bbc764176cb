// Box averages of a picture: what the blurring, glowing and sharpening effects are made of.
//
// A round is a vertical pass of radius `ry`, then a horizontal pass of radius `rx`; a radius of 0 leaves its pass out.
// A pass averages windows of 2 radius + 1 pixels. Object pixels: sums over the window of trunc(colour x alpha / 4096)
// and of alpha; the colour is trunc(colour sum x 4096 / alpha sum), or that of the pixel in the window's middle where
// the alpha sum is 0, and the alpha is alpha sum / count. Alphas above 4096 weigh as 4096, below 0 they count as 0.
// Frame pixels: sum / count, truncated. Two rounds make a tent.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_services.h"

namespace zenlay {

enum BoxEdge : int {
  boxKeep,  // the picture keeps its size; count = the window's pixels inside
  boxGrow,  // the picture grows by the radius on every side; count = the window, what lies outside is transparent
};

inline constexpr int maxBoxRadius = 16000;  // radii are 0 to this: sums stay within 32 bits

/// `to` must be another buffer than `from`; with boxGrow it is larger by twice the radii, else of the same size. Pixels
/// are ObjectPixels with `alpha`, else FramePixels. Each worker runs down its own rows with one sum a column, so the
/// cost does not depend on the radii but for the window that every worker has to fill first.
void boxRound(const HostFunctionTable*, const ImageTarget& to, const ImageTarget& from, int rx, int ry, BoxEdge,
              bool alpha);
/// The definition, window by window.
void boxRoundPlain(const ImageTarget& to, const ImageTarget& from, int rx, int ry, BoxEdge, bool alpha);

/// Source rows [first, last) under the window of output `index`, and what the sums are divided by.
struct BoxWindow {
  int first, last, count;
};
BoxWindow boxWindow(int index, int size, int radius, BoxEdge);

}  // namespace zenlay
