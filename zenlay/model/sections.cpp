#include "zenlay/model/sections.h"

#include <algorithm>
#include <cstring>

#include "zenlay/host/preferences.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay {

ValueSet valueSets[2];

namespace {

/// What a section has in common with its chain, but for its values.
void copyCommon(ObjectRecord& to, const ObjectRecord& from) {
  to.flags = from.flags;
  memcpy(to.slotFlags, from.slotFlags, sizeof to.slotFlags);
  std::copy_n(from.modes, from.trackCount, to.modes);
  std::copy_n(from.params, from.trackCount, to.params);
  std::copy_n(from.checks, from.checkCount, to.checks);
}

/// Everything of `from` but its place, its frames and its own extra data. Continuous tracks stay where it ends.
void continueSection(ObjectRecord& to, const ObjectRecord& from) {
  memcpy(to.slots, from.slots, sizeof to.slots);
  memcpy(to.name, from.name, sizeof to.name);
  to.trackCount = from.trackCount;
  to.checkCount = from.checkCount;
  copyCommon(to, from);
  for (int t = 0; t < from.trackCount; t++) {
    bool wholeChain = courseOf(from.modes[t]) == courseWholeChain;
    to.startValues[t] = wholeChain ? from.startValues[t] : from.endValues[t];
    to.endValues[t] = from.endValues[t];
  }
}

/// The value of a still or whole-chain track is the same in every section.
void copyCommonValues(ObjectRecord& to, const ObjectRecord& from) {
  for (int t = 0; t < from.trackCount; t++) {
    if (courseOf(from.modes[t]) == courseContinuous) continue;
    to.startValues[t] = from.startValues[t];
    to.endValues[t] = from.endValues[t];
  }
}

void holdStillTracks(ObjectRecord& o) {
  for (int t = 0; t < o.trackCount; t++)
    if (courseOf(o.modes[t]) == courseStill) o.endValues[t] = o.startValues[t];
}

void endWhereNextStarts(ObjectRecord& o, const ObjectRecord& next) {
  for (int t = 0; t < o.trackCount; t++)
    if (courseOf(o.modes[t]) == courseContinuous) o.endValues[t] = next.startValues[t];
}

void startWherePreviousEnds(ObjectRecord& o, const ObjectRecord& previous) {
  for (int t = 0; t < o.trackCount; t++)
    if (courseOf(o.modes[t]) == courseContinuous) o.startValues[t] = previous.endValues[t];
}

int lastSection(int object) {
  for (int section; (section = nextSection(object)) >= 0;) object = section;
  return object;
}

void valuesAt(int object, int frame, int32_t* values) {
  const ObjectRecord& o = objects[object];
  memcpy(values, o.startValues, sizeof o.startValues);
  if (!modelHooks.trackValues) return;
  for (int slot = 0; slot < usedSlots(object); slot++)
    modelHooks.trackValues(values + trackOf(o, slot, 0), object, slot, frame);
}

/// The values a continuous track may take at the point where the object is cut.
void valuesAtPoint(int object, int frame, SectionMode how, int32_t* values) {
  const ObjectRecord& o = objects[object];
  if (how == sectionSplitFirstValues || how == sectionSplitSecondValues)
    memcpy(values, valueSets[how - sectionSplitFirstValues].values, sizeof(ValueSet));
  else if (preferences.divide_mode)
    valuesAt(object, frame, values);
  else
    memcpy(values, frame - o.start < (o.end - o.start) / 2 ? o.startValues : o.endValues, sizeof o.startValues);
}

/// `behind` was continued from `before`; the point between them gets its values.
void splitValues(ObjectRecord& before, ObjectRecord& behind, int32_t endFrame, const int32_t* atPoint) {
  behind.end = endFrame;
  for (int t = 0; t < before.trackCount; t++) {
    if (courseOf(before.modes[t]) != courseContinuous) continue;
    bool jumps = (before.modes[t] & modeNumber) == modeTeleport;
    behind.endValues[t] = before.endValues[t];
    behind.startValues[t] = before.endValues[t] = jumps ? before.startValues[t] : atPoint[t];
  }
}

int splitSection(int object, int frame, SectionMode how) {
  ObjectRecord& old = objects[object];
  if (old.start == old.end) return -1;
  frame = std::clamp(frame, old.start, old.end);
  const int cut = std::max(frame, old.start + 1), end = old.end;
  int32_t atPoint[maxTracks];
  // Computed values are those of the frame asked for, even when the cut comes one later.
  valuesAtPoint(object, preferences.divide_mode ? frame : cut, how, atPoint);
  recordUndo(object, undoSnapshot | undoChain);
  old.end = cut - 1;
  int section = createObject(cut, old.layer, old.slots[0].effect, object);
  if (section < 0) {
    old.end = end;
    return -1;
  }
  continueSection(objects[section], old);
  splitValues(old, objects[section], end, atPoint);
  syncChain(section);
  return section;
}

int appendDefaultSection(int object) {
  const ObjectRecord& old = objects[object];
  if (nextSection(object) >= 0 || int64_t{old.end} + 1 >= timelineView.sceneLength) return -1;
  if (objectAt(old.end + 1, old.layer) >= 0) return -1;
  recordUndo(object, undoSnapshot | undoChain);
  int section = createObject(old.end + 1, old.layer, old.slots[0].effect, object);
  if (section >= 0) continueSection(objects[section], old);
  return section;
}

/// Two objects made from one chain go on with a movement that knew the whole chain: `atPoint` ends the first and starts
/// the second.
void divideWholeChainTracks(int first, int second, const int32_t* atPoint) {
  for (int t = 0; t < objects[first].trackCount; t++) {
    int number = objects[first].modes[t] & modeNumber;
    if (number != modeIgnoreMidpoints && number != modeAmount) continue;
    if (number == modeIgnoreMidpoints)
      for (int section : sectionsOf(first)) objects[section].endValues[t] = atPoint[t];
    for (int section : sectionsOf(second)) objects[section].startValues[t] = atPoint[t];
  }
}

}  // namespace

TrackCourse courseOf(int32_t mode) {
  switch (mode & modeNumber) {
    case modeNone:
      return courseStill;
    case modeIgnoreMidpoints:
    case modeAmount:
    case modeRandom:
    case modeRepeat:
      return courseWholeChain;
    case modeScript:
      return modelHooks.scriptIgnoresMidpoints && modelHooks.scriptIgnoresMidpoints(mode) ? courseWholeChain
                                                                                          : courseContinuous;
  }
  return courseContinuous;
}

int addSection(int object, int frame, SectionMode how) {
  if (!onTimeline(object)) return -1;
  return how == sectionAppend ? appendDefaultSection(object) : splitSection(object, frame, how);
}

int appendSection(int object, int start, int end) {
  int last = lastSection(object);
  const ObjectRecord& old = objects[last];
  if (end < start || start != old.end + 1 || objectsInRange(start, end, old.layer) >= 0) return -1;
  int section = createObject(start, old.layer, old.slots[0].effect, last);
  if (section < 0) return -1;
  objects[section].end = end;
  continueSection(objects[section], old);
  return section;
}

int removeSection(int object) {
  int before = onTimeline(object) ? previousSection(object) : -1;
  if (before < 0) return -1;
  recordUndo(before, undoSnapshot | undoChain);
  ObjectRecord& p = objects[before];
  const ObjectRecord& o = objects[object];
  p.end = o.end;
  std::copy_n(o.endValues, o.trackCount, p.endValues);
  if (nextSection(object) < 0 && previousSection(before) < 0) p.chainHead = -1;
  bool wasCurrent = currentObject == object;
  if (wasCurrent) currentObject = before;
  if (objectUnderEdit == object) objectUnderEdit = before;
  dropObject(object);
  rebuildOrder();
  if (wasCurrent && modelHooks.objectChanged) modelHooks.objectChanged(before);
  return before;
}

void syncChain(int object) {
  holdStillTracks(objects[object]);
  if (objects[object].chainHead < 0) return;
  for (int section : sectionsOf(object)) {
    if (section == object) continue;
    copyCommon(objects[section], objects[object]);
    copyCommonValues(objects[section], objects[object]);
  }
  // Further sections only move when their tracks were not continuous before.
  for (int at = object, before; (before = previousSection(at)) >= 0; at = before)
    endWhereNextStarts(objects[before], objects[at]);
  for (int at = object, next; (next = nextSection(at)) >= 0; at = next)
    startWherePreviousEnds(objects[next], objects[at]);
}

void settleChains() {
  for (int i = 0; i < objectCount; i++) {
    ObjectRecord& o = *layerOrder[i];
    int object = indexOf(&o), next = nextSection(object);
    if (o.chainHead < 0) continue;
    const ObjectRecord& head = objects[headOf(object)];
    if (&o == &head) {
      holdStillTracks(o);
    } else {
      copyCommon(o, head);
      copyCommonValues(o, head);
    }
    // The next section may yet have other modes; its start is what it shows.
    if (next >= 0) endWhereNextStarts(o, objects[next]);
  }
}

int splitObject(int object, int frame) {
  if (!onTimeline(object)) return -1;
  FrameRange range = chainRange(object);
  if (frame <= range.first || frame > range.last) return -1;
  object = sectionAt(object, frame);
  int head = headOf(object);
  if (!makeExtraDataRoom(objects[head].extraDataSize)) {
    tellExtraDataRefused();
    return -1;
  }
  int32_t atPoint[maxTracks];
  valuesAt(object, frame, atPoint);
  if (objects[object].start == frame)
    recordUndo(object, undoSnapshot | undoChain);
  else if ((object = addSection(object, frame, sectionSplit)) < 0)
    return -1;
  notifyEffects(object, objectDivided);
  detachSections(object, false);
  if (preferences.divide_mode) divideWholeChainTracks(head, object, atPoint);
  syncChain(object);
  return object;
}

void detachSections(int section, bool handOver) {
  int headIndex = headOf(section);
  ObjectRecord& head = objects[headIndex];
  ObjectRecord& first = objects[section];
  memcpy(first.name, head.name, sizeof first.name);
  memcpy(first.slotFlags, head.slotFlags, sizeof first.slotFlags);
  if (previousSection(section) == headIndex) head.chainHead = -1;
  bool alone = nextSection(section) < 0;
  for (int i = section; i >= 0; i = nextSection(i)) objects[i].chainHead = alone ? -1 : section;
  if (handOver) {
    std::swap(first.extraDataBlock, head.extraDataBlock);
    std::swap(first.extraDataSize, head.extraDataSize);
  } else if (reserveExtraData(section, head.extraDataSize) && head.extraDataSize) {
    memcpy(extraDataBlockOf(section), extraDataBlockOf(headIndex), head.extraDataSize);
  }
  relinkAround(section);
}

}  // namespace zenlay
