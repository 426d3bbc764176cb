// What the mouse holds on the timeline between a press and the release: objects, their edges, the cursor, the zoom
// gauge, a range of objects or the view. Only one at a time (TimelineView::dragMode).
#pragma once

#include <vector>

#include "platform/geometry.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/layout.h"

namespace zenlay {

/// An object whose edge is dragged and the neighbour that touches it there, or -1.
struct EdgePair {
  int object, partner;
};

struct DragState {
  platform::Point press;  // pixels
  platform::Point last;   // where the mouse was last
  int pressLeftFrame, pressTopLayer;
  int grabbed = -1;  // object
  int pressLayer;    // of the grabbed object
  int pressFrame;
  int grabFrame;  // under the mouse; moves along with the object
  bool shiftAtPress, moved, alreadySelected;
  bool changed;  // the model, and undo was recorded
  int overflow;  // pixels that the mouse went beyond the rows, for scrolling them
  int scene;     // that the objects are of
  std::vector<EdgePair> edges;
};
extern DragState drag;

/// Takes the mouse. Everything else of `drag` is the caller's.
void beginDrag(DragMode, platform::Point);
/// The mouse moved while objects or edges are dragged.
void dragObjectsTo(platform::Point, intptr_t mouseState);
/// By frames, without snapping.
void nudgeDrag(int frames, bool shift);
/// As by a release of the button. 1 when the host is to redraw its frame.
int endDrag(bool keepSelection);
/// Lets go without further changes.
void abandonDrag();
/// To be told of every object that goes.
void forgetDragged(int object);
/// Which of its edges is being dragged, by itself or with a neighbour.
ObjectEdge draggedEdgeOf(int object);

// The rules. True when something changed; undo was recorded before that, rows and the order are up to date.

/// Moves the selected objects.
bool moveSelection(int frames, int layersDown, bool snaps, bool shift);
/// Moves the edges of drag.edges.
bool moveEdges(int frames, bool snaps);
/// Before the first change of a drag.
void recordDragUndo();

}  // namespace zenlay
