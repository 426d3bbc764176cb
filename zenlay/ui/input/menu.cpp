// Which context menu a right press opens, and what it is about.
#include <cstdlib>

#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/commands.h"
#include "zenlay/ui/input/input.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/redraw.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using platform::Point;

namespace {

int showAndRun(ContextMenu menu, Point at) {
  platform::Window* window = environment.timelineWindow;
  flushTimeline();
  keysGoElsewhere();
  int id = showContextMenu(menu, window, platform::clientToScreen(window, at));
  return id > 0 ? runCommand(id, 0) : 0;
}

/// The section behind the boundary of the piece that is nearest to x, when it is close; -1 otherwise.
int boundaryNear(int piece, int x) {
  int next = nextSection(piece), behind = previousSection(piece) >= 0 ? piece : -1;
  auto distance = [&](int section) { return std::abs(xOfFrame(objects[section].start) - x); };
  if (next >= 0 && (behind < 0 || distance(next) < distance(behind))) behind = next;
  return behind >= 0 && distance(behind) < edgeReach ? behind : -1;
}

int openObjectMenu(Point at) {
  int first = selection().front();
  clickPosition.section = boundaryNear(sectionAt(first, clickPosition.frame), at.x);
  redrawChain(first);
  return showAndRun(menuObject, at);
}

/// An object that was selected only for its menu is let go of afterwards, unless the command selected more.
int openAreaMenu(Point at, intptr_t state) {
  int object = objectHolding(at);
  const bool selectedHere = selection().empty();
  if (!(state & platform::mouseCtrl) && object >= 0 && addToSelection(object)) selectGroup(object);
  redrawObjects(selection());
  if (selection().empty()) return showAndRun(menuRow, at);
  const size_t selected = selection().size();
  int result = openObjectMenu(at);
  if (selection().size() > selected) {
    keepSelectionWithoutCtrl();
  } else if (selectedHere) {
    redrawObjects(selection());
    clearSelection();
  }
  return result;
}

int openMenu(Point at, intptr_t state) {
  if (at.x < headerWidth && at.y >= rowsBottom()) return 0;
  if (at.x < headerWidth) return showAndRun(at.y < rowsTop ? menuScene : menuLayer, at);
  if (timelineView.sceneLength < 1) return showAndRun(menuNoProject, at);
  dropUnselectable();
  return openAreaMenu(at, state);
}

}  // namespace

int timelineRightPressed(Point at, intptr_t state) {
  const int ended = endPendingDrag(state);
  if (onTimeline(clickPosition.section)) redrawChain(clickPosition.section);
  clickPosition = {clampedFrameAtX(at.x), visibleLayerAtY(at.y), -1};
  return openMenu(at, state) | ended;
}

}  // namespace zenlay
