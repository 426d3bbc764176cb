#include "zenlay/ui/image/editing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/window.h"
#include "zenlay/effects/registry.h"
#include "zenlay/effects/service_hooks.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/effect_commands.h"
#include "zenlay/ui/image/drag.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

namespace {

using platform::Point;

ImageDrag drag;    // while the button is down
ImageDrag nudged;  // what arrow keys move: the handle pressed last
int pressed = -1;  // handle
int holder = -1;   // object whose effect took the press
bool nudging;      // arrow keys follow each other in one undo step
int stepsBehind;   // undo steps when the drag or the nudging had recorded its own

// ---- Effects that take part ----

/// Offers a command to the effect that has said what the operation acts on, else to the current object's effects until
/// one takes it.
bool offer(int command, int handle, intptr_t value) {
  const int wparam = command | (handle + 1) << 16;
  if (ObjectRef ref = serviceState.operatedObject; ref && holder >= 0)
    return onTimeline(objectOfRef(ref)) && callEffect(objectOfRef(ref), slotOfRef(ref), wparam, value) == 1;
  if (!onTimeline(currentObject)) return false;
  for (int slot = 0; slot < usedSlots(currentObject); slot++) {
    const EffectDefinition* effect = effectList[objects[currentObject].slots[slot].effect];
    bool takesPart = isBuiltIn(effect) && effect->flag & effectPreview && effect->window_proc;
    constexpr uint8_t needed = slotEnabled | slotHandles;
    if (!takesPart || (slotFlagsOf(currentObject, slot) & needed) != needed) continue;
    if (callEffect(currentObject, slot, wparam, value) == 1) return true;
  }
  return false;
}

/// Its object is still the one shown, or it has named another.
bool effectHolds() { return holder >= 0 && (holder == currentObject || serviceState.operatedObject); }

intptr_t packed(ScenePoint p) {
  return platform::packPoint({static_cast<int>(std::lround(p.x)), static_cast<int>(std::lround(p.y))});
}

// ---- Drags ----

void endNudging() { nudging = false; }

/// Lets go without a further change.
void forgetDrag() {
  drag = {};
  pressed = holder = -1;
  serviceState.operatedObject = 0;
}

/// Whether the newest undo step is still the one this drag recorded.
bool ownsLastStep() { return undoSteps() == stepsBehind; }

int pressAt(Point at, ScenePoint scene) {
  endNudging();
  forgetDrag();
  if (int value = zoomButtonAt(at.x, at.y)) {
    preferences.grid.out_of_scale = value;
    return 1;
  }
  GrabbedHandle grabbed = handleAt(scene);
  pressed = grabbed.handle;
  nudged = {};
  if (offer(commandPreviewPress, pressed, packed(scene))) {
    holder = currentObject;
    return 1;
  }
  drag = beginImageDrag(grabbed, scene);
  nudged = drag;
  return 0;
}

int moveAt(ScenePoint scene, intptr_t mouseState) {
  if (effectHolds()) return offer(commandPreviewMove, pressed, packed(scene));
  // What another command has changed meanwhile is not the drag's any more.
  if (!dragHolds(drag) || (drag.recorded && !ownsLastStep())) return forgetDrag(), 0;
  bool first = !drag.recorded;
  if (!dragTo(drag, scene, mouseState)) return 0;
  if (first) stepsBehind = undoSteps();
  return 1;
}

int releaseAt(ScenePoint scene, intptr_t mouseState) {
  int changed = moveAt(scene, mouseState);
  if (effectHolds()) changed |= offer(commandPreviewRelease, pressed, packed(scene));
  forgetDrag();
  return changed;
}

int takeBack() {
  bool back = dragHolds(drag) && drag.recorded && ownsLastStep() && takeDragBack(drag);
  forgetDrag();
  return back;
}

// ---- Keys ----

/// Stored units a key moves by: a pixel, ten with Shift, one unit with Ctrl; one at least.
int nudgeUnits(const DraggedTrack& track, int direction, intptr_t mouseState) {
  if (direction == 0 || track.unitsPerPixel == 0) return 0;
  const double pixels = mouseState & platform::mouseCtrl ? 0 : mouseState & platform::mouseShift ? 10 : 1;
  const int units = std::max(static_cast<int>(std::lround(std::abs(track.unitsPerPixel) * pixels)), 1);
  return track.unitsPerPixel < 0 ? -direction * units : direction * units;
}

struct Arrow {
  platform::Key key;
  int across, down;
};
constexpr Arrow arrows[] = {
    {platform::keyLeft, -1, 0}, {platform::keyRight, 1, 0}, {platform::keyUp, 0, -1}, {platform::keyDown, 0, 1}};

int nudge(const Arrow& arrow) {
  if (!dragHolds(nudged) || nudged.grip != gripMove) return 0;
  if (!nudging || !ownsLastStep()) nudged.recorded = false;
  nudging = true;
  bool first = !nudged.recorded;
  restartImageDrag(nudged);
  intptr_t state = platform::mouseState();
  bool changed =
      dragBy(nudged, nudgeUnits(nudged.across, arrow.across, state), nudgeUnits(nudged.down, arrow.down, state));
  if (changed && first) stepsBehind = undoSteps();
  return 1;
}

int keyDown(int key) {
  if (drag.grip != gripNothing) return key == platform::keyEscape && takeBack();
  if (offer(commandPreviewKey, effectHolds() ? pressed : -1, key) || effectHolds()) return 1;
  for (const Arrow& arrow : arrows)
    if (arrow.key == key) return nudge(arrow);
  return 0;
}

// ---- Choosing an object ----

/// The topmost object drawn at the point, or the next one below the current object's when that lies there; -1 for none.
int objectUnder(ScenePoint at) {
  int topmost = -1;
  bool passedCurrent = false;
  for (int i = drawnObjectCount; i-- > 0;) {
    int object = objectOfRef(drawnObjects[i].ref);
    if (!onTimeline(object) || layers[objects[object].layer].flags & layerLocked) continue;
    if (!insideCorners(drawnObjects[i].corners, at.x, at.y)) continue;
    bool isCurrent = currentObject >= 0 && headOf(object) == headOf(currentObject);
    if (passedCurrent && !isCurrent) return object;
    if (topmost < 0) topmost = object;
    passedCurrent |= isCurrent;
  }
  return topmost;
}

int doubleClickAt(ScenePoint scene) {
  forgetDrag();
  if (offer(commandPreviewDoubleClick, handleAt(scene).handle, packed(scene))) return 1;
  int object = objectUnder(scene);
  if (object < 0 || (currentObject >= 0 && headOf(object) == headOf(currentObject))) return 0;
  showObject(object);
  redrawTimeline();
  return 1;
}

/// Of what is shown at a pixel of the host's frame, however large that shows the scene.
int pickColor(ScenePoint scene) {
  return pickImageColor({static_cast<int>(std::floor(scene.x)) - shownScene.offsetX,
                         static_cast<int>(std::floor(scene.y)) - shownScene.offsetY});
}

}  // namespace

int imageMessage(uint32_t message, intptr_t first, intptr_t second) {
  Point at = platform::unpackPoint(second);
  ScenePoint scene = sceneAt(at.x, at.y);
  const bool open = environment.projectOpen && !environment.saving;
  if (open && message == messageImageMouseDown && colorPickPending()) return pickColor(scene);
  if (!open || environment.playing || imageAidsHidden) {
    forgetDrag();
    return 0;
  }
  switch (message) {
    case messageImageMouseDown:
      return pressAt(at, scene);
    case messageImageMouseMove:
      return moveAt(scene, first);
    case messageImageMouseUp:
      return releaseAt(scene, first);
    case messageImageDoubleClick:
      return zoomButtonAt(at.x, at.y) ? pressAt(at, scene) : doubleClickAt(scene);
    case messageImageRightDown:
      if (drag.grip != gripNothing) return takeBack();
      return offer(commandPreviewRightPress, handleAt(scene).handle, packed(scene));
    case messageImageWheel:
      return offer(commandPreviewWheel, pressed, platform::wheelNotches(first));
    case messageImageKeyDown:
      return keyDown(static_cast<int>(first));
    case messageImageKeyUp:
      endNudging();
      return 0;
    default:
      return 0;
  }
}

bool imageDragging() { return drag.grip != gripNothing || effectHolds(); }

}  // namespace zenlay
