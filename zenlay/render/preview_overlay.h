// What is drawn over the host's frame while it is edited: the XY grid and the zoomed-out display. Frames have
// FramePixels.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// One-pixel lines every (grid2d_w, grid2d_h) pixels, symmetric about the centre.
void drawGrid(const ImageTarget&, int cellWidth, int cellHeight);
/// Shows the frame at 12 / value of its size, centred, with the three size buttons. Uses the scratch image and
/// exchanges it with the frame.
void drawZoomedOut(EffectProcessInfo*);
/// Both as the preferences ask.
void drawPreviewOverlay(EffectProcessInfo*);

/// The buttons of the zoomed-out display: left edge (from the left) and top edge (from the frame's bottom) of button i.
inline constexpr int zoomButtons = 3, zoomButtonWidth = 40, zoomButtonHeight = 24;
/// Value in force: below 12 it counts as 18.
int zoomedOutValue(int stored);

}  // namespace zenlay
