// Dragging one handle: from what is grabbed at a point to the values of the tracks it moves.
#pragma once

#include <cstdint>

#include "zenlay/render/handles.h"
#include "zenlay/render/preview_overlay.h"

namespace zenlay {

enum Grip { gripNothing, gripMove, gripScale, gripTurn };

/// A track that a drag changes, as it was when the drag began.
struct DraggedTrack {
  int track = -1;  // of the object's arrays
  int32_t start = 0, end = 0;
  bool movesStart = false, movesEnd = false;
  double unitsPerPixel = 0;
};

struct ImageDrag {
  Grip grip = gripNothing;
  int object = -1, slot = 0;  // the section
  int effect = -1;            // in that slot
  int firstTrack = 0;         // of that slot
  uint32_t kind = 0;          // of the handle
  DraggedTrack across, down;  // of gripMove; the others use the first
  HandleAxes axes;
  ScenePoint from{}, centre{};
  double wholeRadius = 0;  // of a box: from its centre to a corner at 100 %, pixels
  bool recorded = false;
};

/// What the handle of the last frame is at that point, the topmost first: its index and its grip. -1 for none.
struct GrabbedHandle {
  int handle = -1;
  Grip grip = gripNothing;
};
GrabbedHandle handleAt(ScenePoint);

/// gripNothing when the handle moves no track.
ImageDrag beginImageDrag(GrabbedHandle, ScenePoint);
/// The drag's tracks as they are now, from the same handle.
void restartImageDrag(ImageDrag&);
/// Whether the object is still what the drag began with, and free to be moved.
bool dragHolds(const ImageDrag&);
/// Moves the tracks to where the point asks; records undo before the first change. Whether something changed.
bool dragTo(ImageDrag&, ScenePoint, intptr_t mouseState);
/// Changes the position by stored units.
bool dragBy(ImageDrag&, int across, int down);
/// The values of the beginning again, and the undo step goes.
bool takeDragBack(ImageDrag&);

}  // namespace zenlay
