// What the mouse holds on the timeline between a press and the release: objects, their edges, the cursor, the zoom
// gauge, a range of objects or the view. Only one at a time (TimelineView::dragMode).
#pragma once

#include <span>
#include <vector>

#include "platform/window.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/layout.h"

namespace zenlay {

/// An object whose edge is dragged and the neighbour that touches it there, or -1.
struct EdgePair {
  int object, partner;
};

struct DragState {
  platform::Point press, last;  // pixels: of the press, and where the mouse was last
  intptr_t button;              // MouseState bit of the one that holds it
  int scene;                    // that it began in

  // As they were at the press.
  int pressFrame, pressLayer;   // under the mouse
  platform::Point pressWithin;  // pixels from there to the press
  int pressLeftFrame, pressTopLayer, pressZoomLevel, pressCursor;
  std::vector<int> pressSelection;

  int grabbed = -1;  // object
  int grabFrame;     // under the mouse; moves along with the object
  bool shiftAtPress, alreadySelected;
  std::vector<EdgePair> edges;
  int overflow;  // pixels that the mouse went beyond the rows, for scrolling them
  bool moved;
  bool changed;   // the model
  int undoSteps;  // then, its own included
};
extern DragState drag;

/// Of a button, whatever becomes of it.
void notePress(platform::Point);
/// Takes the mouse for what was pressed. Everything about objects in `drag` is the caller's.
void beginDrag(DragMode, intptr_t button = platform::mouseLeft);
/// Where the press lies in the view as it is now.
platform::Point pressInView();
/// As far as the point lies outside the frames and rows in view they scroll.
void scrollViewTowards(platform::Point);
/// The mouse moved while objects or edges are dragged.
void dragObjectsTo(platform::Point, intptr_t mouseState);
/// By frames, without snapping.
void nudgeDrag(int frames, bool shift);
/// As by a release of the button. 1 when the host is to redraw its frame.
int endDrag(bool keepSelection);
/// Everything is again as it was at the press, the undo history too. 1 when the host is to redraw its frame.
int takeDragBack();
/// Lets go without further changes.
void abandonDrag();
/// To be told of every object that goes.
void forgetDragged(int object);
/// Which of its edges is being dragged, by itself or with a neighbour.
ObjectEdge draggedEdgeOf(int object);

/// messageTimer while a drag is under way that goes on when the mouse rests outside the view.
inline constexpr int dragTimer = 1;

// The rules. True when something changed; undo was recorded before that, rows and the order are up to date.

/// Moves the selected objects; `vertical`: to other layers without changing their frames.
bool moveSelection(int frames, int layersDown, bool snaps, bool vertical);
/// Moves the edges of drag.edges.
bool moveEdges(int frames, bool snaps);
/// For dragStart or dragEnd: the edge of the object and of those of its group on other layers that begin (end) with it.
/// Neighbours that move along are selected.
void takeEdges(int object, DragMode);
/// Before every change of a drag; the first one begins the undo step, of where the objects are.
void recordDragUndo(std::span<const int> objects);

}  // namespace zenlay
