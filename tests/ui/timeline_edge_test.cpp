// Edges of objects dragged with the mouse: where one is taken, what goes along, what stops it.
#include "tests/ui/timeline_stage.h"
#include "zenlay/model/groups.h"

namespace zenlay::test {
namespace {

using platform::cursorArrow;
using platform::cursorSizeHorizontal;

class TimelineEdges : public Timeline {
 protected:
  platform::CursorShape shapeAt(int x, int layer, intptr_t state = 0) {
    platform::user::mouse(window, platform::messageMouseMove, {x, rowOf(layer)}, state);
    return window->cursor;
  }
};

struct EdgeRow {
  const char* what;
  int pressX;  // from the start of an object of 100 pixels
  DragMode mode;
  int layer = 1;
};

TEST_F(TimelineEdges, EdgesAreWithinSixteenPixels) {
  create(200, 299, 1);
  create(200, 219, 3);  // too short for both its edges
  const EdgeRow rows[] = {
      {"on the start", 0, dragStart},
      {"15 right", 15, dragStart},
      {"16 right", 16, dragObjects},
      {"8 left of the start", -8, dragStart},
      {"the middle", 50, dragObjects},
      {"16 left of the end", 84, dragObjects},
      {"15 left", 85, dragEnd},
      {"behind the end", 105, dragEnd},
      {"before the middle of the short one", 9, dragStart, 3},
      {"at its middle", 10, dragEnd, 3},
  };
  for (const EdgeRow& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(shapeAt(xOf(200) + row.pressX, row.layer), row.mode == dragObjects ? cursorArrow : cursorSizeHorizontal);
    press(xOf(200) + row.pressX, rowOf(row.layer));
    EXPECT_EQ(timelineView.dragMode, row.mode);
    release(xOf(200) + row.pressX, rowOf(row.layer));
  }
  create(400, 499, 2);
  click(xOf(450), rowOf(2), ctrl);
  press(xOf(210), rowOf(1));
  EXPECT_EQ(timelineView.dragMode, dragObjects) << "two are selected";
  release(xOf(210), rowOf(1));
  press(xOf(210), rowOf(1), ctrl);
  EXPECT_EQ(timelineView.dragMode, dragObjects) << "Ctrl is held";
  release(xOf(210), rowOf(1));
  EXPECT_EQ(places(), (Places{{200, 299, 1}, {400, 499, 2}, {200, 219, 3}}));
}

struct EdgeDragRow {
  const char* what;
  bool pairs;    // pair_move
  int from, to;  // frames of the drag on layer 1: 100..199, 200..299 and 350..399
  Place a, b;    // the last stays
};

TEST_F(TimelineEdges, EdgesMoveWithOrWithoutTheirNeighbour) {
  const EdgeDragRow rows[] = {
      {"start with partner", true, 203, 223, {100, 219, 1}, {220, 299, 1}},
      {"start with partner, partner keeps a frame", true, 203, 53, {100, 100, 1}, {101, 299, 1}},
      {"start, object keeps a frame", true, 203, 403, {100, 298, 1}, {299, 299, 1}},
      {"start alone is stopped by the one before", false, 203, 153, {100, 199, 1}, {200, 299, 1}},
      {"start alone", false, 203, 213, {100, 199, 1}, {210, 299, 1}},
      {"end with partner", true, 197, 177, {100, 179, 1}, {180, 299, 1}},
      {"end with partner, partner keeps a frame", true, 197, 397, {100, 298, 1}, {299, 299, 1}},
      {"end alone is stopped by the one behind", true, 297, 397, {100, 199, 1}, {200, 349, 1}},
      {"end alone, object keeps a frame", false, 197, 50, {100, 100, 1}, {200, 299, 1}},
      {"start of the first", true, 103, 3, {0, 199, 1}, {200, 299, 1}},
  };
  for (const EdgeDragRow& row : rows) {
    SCOPED_TRACE(row.what);
    preferences.pair_move = row.pairs;
    int a = create(100, 199, 1), b = create(200, 299, 1), c = create(350, 399, 1);
    drag(row.from, 1, row.to, 1);
    EXPECT_EQ(places(), (Places{row.a, row.b, {350, 399, 1}}));
    undo();
    EXPECT_EQ(places(), (Places{{100, 199, 1}, {200, 299, 1}, {350, 399, 1}}));
    deleteObjects(std::vector<int>{a, b, c});
  }
}

TEST_F(TimelineEdges, SectionsAreAlwaysPartners) {
  preferences.pair_move = 0;
  createChain(100, 399, 1, {200, 300});
  drag(203, 1, 223, 1);
  drag(395, 1, 415, 1);
  EXPECT_EQ(places(), (Places{{100, 219, 1}, {220, 299, 1}, {300, 419, 1}}));
}

TEST_F(TimelineEdges, EdgesOfAGroupMoveTogether) {
  int a = create(100, 199, 1), b = create(100, 249, 2), c = create(90, 249, 3), before = create(50, 99, 2);
  groupSelection(std::vector<int>{a, b, c});
  press(xOf(103), rowOf(1));
  EXPECT_EQ(selected(), (std::vector<int>{a, b, before}));
  EXPECT_EQ(draggedEdgeOf(b), edgeStart);
  EXPECT_EQ(draggedEdgeOf(before), edgeEnd);
  moveTo(xOf(83), rowOf(1));
  release(xOf(83), rowOf(1));
  EXPECT_EQ(places(), (Places{{80, 199, 1}, {50, 79, 2}, {80, 249, 2}, {90, 249, 3}}));
}

TEST_F(TimelineEdges, ABlockedEdgeHoldsItsGroup) {
  preferences.pair_move = 0;
  int a = create(100, 199, 1), b = create(100, 199, 2);
  create(90, 94, 1);
  groupSelection(std::vector<int>{a, b});
  press(xOf(103), rowOf(1));
  for (int frame : {93, 92, 80, 79}) moveTo(xOf(frame), rowOf(1));
  release(xOf(79), rowOf(1));
  EXPECT_EQ(places(), (Places{{90, 94, 1}, {95, 199, 1}, {95, 199, 2}}));
}

TEST_F(TimelineEdges, ShiftSlidesTheLaterObject) {
  create(100, 199, 1);
  createChain(200, 299, 1, {250});
  create(350, 399, 1);
  press(xOf(203), rowOf(1), shift);
  moveTo(xOf(223), rowOf(1), shift);
  EXPECT_EQ(places(), (Places{{100, 219, 1}, {220, 269, 1}, {270, 319, 1}, {350, 399, 1}}));
  moveTo(xOf(400), rowOf(1), shift);  // stopped by the next object
  EXPECT_EQ(places(), (Places{{100, 249, 1}, {250, 299, 1}, {300, 349, 1}, {350, 399, 1}}));
  moveTo(xOf(20), rowOf(1), shift);  // the stretched one keeps a frame
  EXPECT_EQ(places(), (Places{{100, 100, 1}, {101, 150, 1}, {151, 200, 1}, {350, 399, 1}}));
  release(xOf(20), rowOf(1), shift);
  undo();
  EXPECT_EQ(places(), (Places{{100, 199, 1}, {200, 249, 1}, {250, 299, 1}, {350, 399, 1}}));
  // From the other side of the boundary.
  press(xOf(197), rowOf(1), shift);
  moveTo(xOf(207), rowOf(1), shift);
  release(xOf(207), rowOf(1));
  EXPECT_EQ(places(), (Places{{100, 209, 1}, {210, 259, 1}, {260, 309, 1}, {350, 399, 1}}));
}

TEST_F(TimelineEdges, EdgesSnap) {
  preferences.object_snap = 1;
  create(240, 259, 0);
  int object = create(100, 199, 1);
  drag(195, 1, 230, 1);  // end 234, end + 1 = 235: 5 before 240
  EXPECT_EQ(placeOf(object), (Place{100, 239, 1}));
  drag(105, 1, 250, 1);  // start 245: 5 away from 240, but 239 is the last
  EXPECT_EQ(placeOf(object), (Place{239, 239, 1}));
}

TEST_F(TimelineEdges, TheCursorShapeFollowsCtrlAndLocks) {
  create(200, 299, 1);
  EXPECT_EQ(shapeAt(xOf(290), 1, ctrl), cursorArrow);
  layers[1].flags = layerLocked;
  EXPECT_EQ(shapeAt(xOf(290), 1), cursorArrow);
  layers[1].flags = 0;
  shapeAt(xOf(290), 1);
  for (bool down : {true, false}) {
    platform::user::key(platform::keyCtrl, down);
    EXPECT_EQ(window->cursor, down ? cursorArrow : cursorSizeHorizontal);
  }
}

}  // namespace
}  // namespace zenlay::test
