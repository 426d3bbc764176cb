#include "zenlay/ui/image/drag.h"

#include <algorithm>
#include <cmath>

#include "platform/window.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/binding.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr int degreeUnits = 100;  // of a rotation track
constexpr int zoomStep = 1000, turnStep = 15 * degreeUnits;
constexpr double slack = 1.6;  // the mouse may miss a mark by this much of its half side

// ---- What lies under the mouse ----

bool near(ScenePoint a, ScenePoint b, double radius) {
  return std::abs(a.x - b.x) <= radius * slack && std::abs(a.y - b.y) <= radius * slack;
}

bool onMark(const PreviewHandle& handle, ScenePoint at) {
  double radius = std::max(markRadius(), std::max(handle.w, handle.h) / 2.0);
  return near({handle.x + 0.0, handle.y + 0.0}, at, radius);
}

Grip boxGrip(const PreviewHandle& box, ScenePoint at) {
  if (coordinateTrack(box.ref, slotRz) >= 0 && near(boxKnob(box), at, markRadius())) return gripTurn;
  if (coordinateTrack(box.ref, slotZoom) >= 0)
    for (int i = 0; i < 4; i++)
      if (near(boxCorner(box, i), at, markRadius())) return gripScale;
  return insideCorners(box.corners, at.x, at.y) ? gripMove : gripNothing;
}

// ---- The tracks ----

/// Which ends of the section a drag changes that shows the value of the cursor's frame.
struct Ends {
  bool start, end;
};
Ends endsAt(int object, int track, uint32_t kind) {
  const ObjectRecord& o = objects[object];
  const int mode = o.modes[track] & modeNumber;
  const bool last = nextSection(object) < 0;
  if (mode == modeNone || kind & handleStart) return {true, false};
  if (kind & handleEnd) return {false, mode != modeTeleport || !last};
  if (mode == modeAmount || mode == modeTeleport) return {true, false};
  bool atStart = timelineView.cursorFrame <= o.start, atEnd = timelineView.cursorFrame >= o.end && last;
  return {!atEnd || atStart, !atStart};
}

DraggedTrack draggedTrack(int object, int track, uint32_t kind, double unitsPerPixel) {
  if (track < 0) return {};
  Ends ends = endsAt(object, track, kind);
  return {track,        objects[object].startValues[track], objects[object].endValues[track], ends.start, ends.end,
          unitsPerPixel};
}

/// The track of the handle's effect and its stored units a pixel, for the direction; -1 for none.
struct HandleTrack {
  int track;
  double unitsPerPixel;
};
HandleTrack trackOfHandle(const PreviewHandle& handle, int direction) {
  const ObjectRecord& o = objects[objectOfRef(handle.ref)];
  const EffectDefinition* effect = slotEffect(&o, slotOfRef(handle.ref));
  int coordinate = direction == 0 ? handle.coordinate1 : handle.coordinate2;
  if (isBox(handle) && effect->coordinate_map) coordinate = effect->coordinate_map[direction == 0 ? slotX : slotY];
  double units = 0;
  if (handle.coordinate1 < 0 && handle.coordinate2 < 0 && !isBox(handle)) {
    coordinate = handle.parameters[direction] - 1;
    units = handle.parameters[2 + direction];
  }
  if (coordinate < 0 || coordinate >= effect->track_count) return {-1, 0};
  const int track = o.slots[slotOfRef(handle.ref)].firstTrack + coordinate;
  if (units == 0) units = trackScale(effect, coordinate);
  // The end of a movement by an amount a frame lies as many amounts away as frames have passed.
  if (handle.kind & handleEnd && (o.modes[track] & modeNumber) == modeAmount) {
    const int object = objectOfRef(handle.ref), passed = o.end + (nextSection(object) >= 0) - chainRange(object).first;
    units /= std::max(passed, 1);
  }
  return {track, units};
}

const EffectDefinition* effectOf(const ImageDrag& drag) { return effectList[drag.effect]; }

int32_t clampToTrack(const ImageDrag& drag, int track, double value) {
  int index = track - drag.firstTrack;
  const EffectDefinition* effect = effectOf(drag);
  double low = effect->track_min[index], high = effect->track_max[index];
  return static_cast<int32_t>(std::lround(std::clamp(value, low, high)));
}

// ---- Changing them ----

void record(ImageDrag& drag) {
  if (drag.recorded) return;
  drag.recorded = true;
  beginUndoStep();
  recordUndo(drag.object, undoSnapshot | undoChain);
  recordLinkedCoordinates(drag.object);
}

void tellChange(int object) {
  syncChain(object);
  followLinkedCoordinates(object, false);
  if (modelHooks.objectChanged) modelHooks.objectChanged(object);
  redrawChain(object);
}

struct NewValues {
  const DraggedTrack* track;
  int32_t start, end;
};

bool store(ImageDrag& drag, const NewValues (&values)[2]) {
  ObjectRecord& o = objects[drag.object];
  bool changed = false;
  for (const NewValues& v : values) {
    if (v.track->track < 0) continue;
    if (v.track->movesStart && o.startValues[v.track->track] != v.start) changed = true;
    if (v.track->movesEnd && o.endValues[v.track->track] != v.end) changed = true;
  }
  if (!changed) return false;
  record(drag);
  for (const NewValues& v : values) {
    if (v.track->track < 0) continue;
    if (v.track->movesStart) o.startValues[v.track->track] = v.start;
    if (v.track->movesEnd) o.endValues[v.track->track] = v.end;
  }
  tellChange(drag.object);
  return true;
}

/// A function of the old value gives the new one.
template <class Change>
NewValues changedValues(const ImageDrag& drag, const DraggedTrack& track, Change change) {
  if (track.track < 0) return {&track, 0, 0};
  return {&track, clampToTrack(drag, track.track, change(track.start)),
          clampToTrack(drag, track.track, change(track.end))};
}

/// The change that brings the value nearest to a line of the grid.
double toGrid(const DraggedTrack& track, double change, int cell) {
  double unit = cell * std::abs(track.unitsPerPixel), value = (track.movesStart ? track.start : track.end) + change;
  return unit > 0 ? std::round(value / unit) * unit - (value - change) : change;
}

/// How far the two coordinates go for a way on the picture.
ScenePoint alongAxes(const HandleAxes& axes, double dx, double dy) {
  const auto& [across, down] = axes;
  const double area = across[0] * down[1] - across[1] * down[0];
  constexpr double edgeOn = 1e-3;  // seen from the side, where a pixel would be any distance
  if (std::abs(area) < edgeOn) return {dx, dy};
  return {(dx * down[1] - dy * down[0]) / area, (dy * across[0] - dx * across[1]) / area};
}

bool moveTo(ImageDrag& drag, ScenePoint at, intptr_t mouseState) {
  double dx = at.x - drag.from.x, dy = at.y - drag.from.y;
  if (mouseState & platform::mouseShift) (std::abs(dx) >= std::abs(dy) ? dy : dx) = 0;
  ScenePoint way = alongAxes(drag.axes, dx, dy);
  double across = way.x * drag.across.unitsPerPixel, down = way.y * drag.down.unitsPerPixel;
  if (mouseState & platform::mouseCtrl) {
    if (way.x != 0) across = toGrid(drag.across, across, preferences.grid.grid2d_w);
    if (way.y != 0) down = toGrid(drag.down, down, preferences.grid.grid2d_h);
  }
  return store(drag, {changedValues(drag, drag.across, [&](int32_t v) { return v + across; }),
                      changedValues(drag, drag.down, [&](int32_t v) { return v + down; })});
}

bool scaleTo(ImageDrag& drag, ScenePoint at, intptr_t mouseState) {
  double before = std::hypot(drag.from.x - drag.centre.x, drag.from.y - drag.centre.y);
  double now = std::hypot(at.x - drag.centre.x, at.y - drag.centre.y);
  constexpr int wholeZoom = 10000;
  constexpr double tooNear = 1e-3;
  auto scaled = [&](int32_t v) {
    double value = v;
    if (v == 0 && drag.wholeRadius > 0)
      value = wholeZoom * now / drag.wholeRadius;  // from nothing: as large as the mouse is away
    else if (before >= tooNear)
      value = v * now / before;
    return mouseState & platform::mouseShift ? std::round(value / zoomStep) * zoomStep : value;
  };
  return store(drag, {changedValues(drag, drag.across, scaled), changedValues(drag, drag.down, scaled)});
}

bool turnTo(ImageDrag& drag, ScenePoint at, intptr_t mouseState) {
  auto angle = [&](ScenePoint p) { return std::atan2(p.y - drag.centre.y, p.x - drag.centre.x); };
  double turn = std::remainder(angle(at) - angle(drag.from), 2 * pi) * 180 / pi * degreeUnits;
  auto turned = [&](int32_t v) {
    double value = v + turn;
    return mouseState & platform::mouseShift ? std::round(value / turnStep) * turnStep : value;
  };
  return store(drag, {changedValues(drag, drag.across, turned), changedValues(drag, drag.down, turned)});
}

}  // namespace

GrabbedHandle handleAt(ScenePoint at) {
  for (int i = previewHandleCount; i-- > 0;)
    if (!isBox(previewHandles[i]) && onMark(previewHandles[i], at)) return {i, gripMove};
  for (int i = previewHandleCount; i-- > 0;)
    if (Grip grip = isBox(previewHandles[i]) ? boxGrip(previewHandles[i], at) : gripNothing) return {i, grip};
  return {};
}

ImageDrag beginImageDrag(GrabbedHandle grabbed, ScenePoint at) {
  ImageDrag drag;
  if (grabbed.handle < 0 || grabbed.handle >= previewHandleCount) return drag;
  const PreviewHandle& handle = previewHandles[grabbed.handle];
  int object = objectOfRef(handle.ref), slot = slotOfRef(handle.ref);
  if (!onTimeline(object) || !slotEffect(objects + object, slot)) return drag;
  drag.object = object;
  drag.slot = slot;
  drag.effect = objects[object].slots[slot].effect;
  drag.firstTrack = objects[object].slots[slot].firstTrack;
  drag.kind = handle.kind;
  drag.axes = handle.axes;
  drag.from = at;
  if (isBox(handle)) {
    for (int i = 0; i < 4; i++) {
      drag.centre.x += boxCorner(handle, i).x / 4;
      drag.centre.y += boxCorner(handle, i).y / 4;
    }
    drag.wholeRadius = std::hypot(handle.parameters[0], handle.parameters[1]) / 2;
  }
  if (grabbed.grip == gripMove) {
    HandleTrack across = trackOfHandle(handle, 0), down = trackOfHandle(handle, 1);
    drag.across = draggedTrack(object, across.track, handle.kind, across.unitsPerPixel);
    drag.down = draggedTrack(object, down.track, handle.kind, down.unitsPerPixel);
  } else {
    int track = coordinateTrack(handle.ref, grabbed.grip == gripScale ? slotZoom : slotRz);
    drag.across = draggedTrack(object, track, handle.kind, 0);
  }
  if (drag.across.track >= 0 || drag.down.track >= 0) drag.grip = grabbed.grip;
  return drag;
}

void restartImageDrag(ImageDrag& drag) {
  for (DraggedTrack* t : {&drag.across, &drag.down})
    *t = draggedTrack(drag.object, t->track, drag.kind, t->unitsPerPixel);
}

bool dragHolds(const ImageDrag& drag) {
  if (drag.grip == gripNothing || !onTimeline(drag.object) || !onTimeline(currentObject)) return false;
  const ObjectRecord& o = objects[drag.object];
  const EffectSlot& slot = o.slots[drag.slot];
  return headOf(drag.object) == headOf(currentObject) && !(layers[o.layer].flags & layerLocked) &&
         slot.effect == drag.effect && slot.firstTrack == drag.firstTrack;
}

bool dragTo(ImageDrag& drag, ScenePoint at, intptr_t mouseState) {
  switch (drag.grip) {
    case gripMove:
      return moveTo(drag, at, mouseState);
    case gripScale:
      return scaleTo(drag, at, mouseState);
    case gripTurn:
      return turnTo(drag, at, mouseState);
    default:
      return false;
  }
}

bool dragBy(ImageDrag& drag, int across, int down) {
  return store(drag, {changedValues(drag, drag.across, [&](int32_t v) { return v + double(across); }),
                      changedValues(drag, drag.down, [&](int32_t v) { return v + double(down); })});
}

bool takeDragBack(ImageDrag& drag) {
  if (!drag.recorded) return false;
  undo();
  drag.recorded = false;
  if (modelHooks.objectChanged) modelHooks.objectChanged(drag.object);
  redrawChain(drag.object);
  return true;
}

}  // namespace zenlay
