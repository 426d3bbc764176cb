// What is drawn over the host's frame while it is edited: the XY grid, the zoomed-out display and the handles. Frames
// have FramePixels.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// One-pixel lines every (grid2d_w, grid2d_h) pixels, symmetric about the centre.
void drawGrid(const ImageTarget&, int cellWidth, int cellHeight);
/// Shows the frame at 12 / value of its size, centred, with the three size buttons. Uses the scratch image and
/// exchanges it with the frame.
void drawZoomedOut(EffectProcessInfo*);
/// Both as the preferences ask, and the handles unless imageAidsHidden. Notes how the scene is shown.
void drawPreviewOverlay(EffectProcessInfo*);

inline constexpr int zoomButtons = 3, zoomButtonWidth = 40, zoomButtonHeight = 24;
/// Value in force: below 12 it counts as 18.
int zoomedOutValue(int stored);
/// The out_of_scale of the button at a pixel of the host's frame, 0 beside the buttons or while there are none.
int zoomButtonAt(int x, int y);

/// How the last frame with an overlay shows its scene.
struct ShownScene {
  int width, height;     // of the scene's picture, pixels
  int offsetX, offsetY;  // of the host's frame within it
  int value;             // the picture is drawn at 12 / value of its size
  bool buttons;
};
extern ShownScene shownScene;

struct ScenePoint {
  double x, y;  // scene pixels
};
/// What is shown at a pixel of the host's frame, and where in the scene's picture a point of the scene is shown.
ScenePoint sceneAt(int x, int y);
ScenePoint shownAt(ScenePoint);

/// Half the side of a handle's mark and the distance of the turning knob from its box, in scene pixels: what looks
/// equally large at every size of the picture.
double markRadius();
double knobDistance();
struct PreviewHandle;
ScenePoint boxCorner(const PreviewHandle&, int corner);
/// Of a box, above the middle of its upper edge.
ScenePoint boxKnob(const PreviewHandle&);

}  // namespace zenlay
