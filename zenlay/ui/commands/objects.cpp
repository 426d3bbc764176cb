// Commands that change objects: clipboard, deleting, cuts, midpoints, lengths, groups and flags.
#include "zenlay/model/objects.h"

#include <algorithm>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/order.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/frame_selection.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/snapping.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {
namespace {

// ---- Clipboard ----

int copyTarget() {
  clearClipboard();
  bool copied = true;
  if (selection().empty())
    copied = copyChainToClipboard(currentObject);
  else
    for (int object : selection()) copied = copied && copyToClipboard(object);
  if (!copied) showMessage("Copy buffer is not enough", boxWarning);
  return copied;
}

int pasteAt(int frame, int layer) {
  if (clipboardEntries() == 0) return 0;
  return inOneStep([&] {
    int last = 0, object = pasteClipboard(frame, layer, nullptr, &last);
    if (object < 0) return 0;
    showCreated(object, last);
    return 1;
  });
}

int pasteAtClick() { return pasteAt(snapFrame(clickPosition.frame, clickPosition.layer, false), clickPosition.layer); }

int pasteAtCursor() {
  int layer = onTimeline(currentObject) ? objects[currentObject].layer : timelineView.topLayer;
  return pasteAt(timelineView.cursorFrame, layer);
}

int duplicateTarget() {
  return inOneStep([] {
    const std::vector<int> targets = commandTargets();
    int first = objects[targets.front()].start, last = objects[targets.front()].end;
    for (int target : targets) {
      first = std::min(first, objects[target].start);
      last = std::max(last, objects[target].end);
    }
    int object = duplicateObjects(targets, timelineView.cursorFrame);
    if (object < 0) return 0;
    showCreated(object, timelineView.cursorFrame + (last - first));
    return 1;
  });
}

int deleteTarget() {
  return inOneStep([] {
    const std::vector<int> targets = commandTargets();
    clearSelection();
    deleteObjects(targets);
    return 1;
  });
}

// ---- Cuts ----

int clickedFrame() { return preferences.add_pt_mode ? timelineView.cursorFrame : clickPosition.frame; }

int splitTarget(int frame) {
  return inOneStep([=] {
    bool split = !splitObjects(commandTargets(), frame).empty();
    if (split) followCursor();
    return split;
  });
}

int cutTarget() {
  const FrameRange cut = frameSelection();
  if (cut == noFrames) return 0;
  return inOneStep([=] {
    const std::vector<int> pieces = cutAtRange(commandTargets(), cut.first, cut.last);
    for (int piece : pieces) selectChain(piece);
    if (!pieces.empty()) followCursor();
    return !pieces.empty();
  });
}

// ---- Midpoints ----

bool addMidpoint(int head, int frame) {
  const FrameRange range = chainRange(head);
  if (frame < range.first || frame > range.last) return false;
  return addSection(sectionAt(head, frame), frame, sectionSplit) >= 0;
}

int addMidpoints(TargetKind kind, int frame) {
  return inOneStep([=] {
    bool added = false;
    for (int head : heads(kind)) added |= addMidpoint(head, frame);
    if (added) followCursor();
    return added;
  });
}

int removeMidpoint() {
  const int section = clickPosition.section;
  if (!onTimeline(section)) return 0;
  clickPosition.section = -1;
  return inOneStep([=] { return removeSection(section) >= 0; });
}

int spaceMidpoints(TargetKind kind) {
  return inOneStep([=] {
    int changed = 0;
    for (int head : heads(kind)) changed |= spaceMidpointsEvenly(head);
    if (changed) followCursor();
    return changed;
  });
}

// ---- Lengths ----

int lengthOf(FrameRange range) { return range.last - range.first + 1; }

int changeLengthOfSelected() {
  const std::vector<int> chains = heads();
  int length = askLength("Change of length (overall)", lengthOf(chainRange(selection().front())));
  if (length < 1) return 0;
  return inOneStep([&] {
    int changed = 0, last = 0;
    for (int head : chains) {
      if (!onTimeline(head)) continue;
      changed |= setObjectLength(head, length);
      last = std::max(last, chainRange(head).last);
    }
    if (changed) extendScene(last);
    return changed;
  });
}

int changeLengthOfSection() {
  const int section = currentObject;
  int length = askLength("Change of length (section)", lengthOf({objects[section].start, objects[section].end}));
  if (length < 1 || !onTimeline(section)) return 0;
  return inOneStep([=] {
    int changed = setSectionLength(section, length);
    if (changed) extendScene(chainRange(section).last);
    return changed;
  });
}

/// Frames of one second, shown at first.
int frameRate() { return std::max(environment.clip.rate / std::max(environment.clip.scale, 1), 1); }

/// Last frame of what lies at or behind the frame and inside the scene, or -1.
int lastEndBehind(int frame) {
  int last = -1;
  for (int e = 0; e < sceneObjectCount; e++) {
    const ObjectRecord& o = *layerOrder[e];
    if (objects[headOf(indexOf(&o))].start >= frame && o.end < timelineView.sceneLength) last = std::max(last, o.end);
  }
  return last;
}

int insertFrames() {
  int count = askLength("Insert an empty frame", frameRate());
  if (count < 1) return 0;
  return inOneStep([=] {
    int last = lastEndBehind(timelineView.cursorFrame);
    if (!insertEmptyFrames(timelineView.cursorFrame, count)) return 0;
    if (last >= 0) extendScene(last + count);
    return 1;
  });
}

// ---- Flags and groups ----

/// All take the opposite of what the first has.
int toggleFlag(TargetKind kind, uint32_t flag, bool (*may)(uint32_t flags)) {
  std::vector<int> chains = heads(kind);
  std::erase_if(chains, [=](int head) { return !may(objects[head].flags); });
  if (chains.empty()) return 0;
  int first = chains.front();
  if (kind == targetAny && !selection().empty() && may(objects[selection().front()].flags)) first = selection().front();
  const bool set = !(objects[first].flags & flag);
  return inOneStep([&] {
    for (int head : chains) {
      for (int section : sectionsOf(head)) {
        recordUndo(section, undoPosition);
        objects[section].flags = set ? objects[section].flags | flag : objects[section].flags & ~flag;
      }
    }
    return 1;
  });
}

bool hasPicture(uint32_t flags) { return !(flags & objectAudio); }
/// Only what is placed in space can turn with the camera.
bool turnsWithCamera(uint32_t flags) { return hasPicture(flags) && flags & (objectDrawn | objectFilterEffect); }

TargetKind fromHost(const Call& call) { return call.fromHost ? targetCurrent : targetAny; }
bool fromSettings(const Call& call) { return call.fromHost && call.active == activeSettings; }

std::vector<int> groupsOfSelection() {
  std::vector<int> groups;
  for (int object : selection()) groups.push_back(objects[object].group);
  return groups;
}

/// The change begins its own step.
int changeGroups(void (*change)(std::span<const int>)) {
  endSettingsEdit();
  const std::vector<int> before = groupsOfSelection();
  change(selection());
  return groupsOfSelection() != before;
}

constexpr Row rows[] = {
    {commandDelete, [](const Call&) { return deleteTarget(); }, needsTarget, showsBoth},
    {commandCopy, [](const Call&) { return copyTarget(); }, needsTarget},
    {commandPaste, [](const Call&) { return pasteAtClick(); }, needsProject, showsTimeline},
    {commandAddMidpoint, [](const Call&) { return addMidpoints(targetAny, clickedFrame()); }, needsTarget, showsBoth},
    {commandRemoveMidpoint, [](const Call&) { return removeMidpoint(); }, needsProject, showsBoth},
    {commandSplit, [](const Call&) { return splitTarget(clickedFrame()); }, needsTarget, showsBoth},
    {commandAddMidpointAtCursor, [](const Call&) { return addMidpoints(targetCurrent, timelineView.cursorFrame); },
     needsCurrent, showsBoth},
    {commandChangeLength,
     [](const Call& call) {
       if (!selection().empty() && !fromSettings(call)) return changeLengthOfSelected();
       return onTimeline(currentObject) ? changeLengthOfSection() : 0;
     },
     needsTarget, showsBoth},
    {commandGroup, [](const Call&) { return changeGroups(groupSelection); }, needsSelection, showsTimeline},
    {commandUngroup, [](const Call&) { return changeGroups(ungroupSelection); }, needsSelection, showsTimeline},
    {commandSplitAtCursor, [](const Call&) { return splitTarget(timelineView.cursorFrame); }, needsTarget, showsBoth},
    {commandClipObject, [](const Call& call) { return toggleFlag(fromHost(call), objectClipAbove, hasPicture); },
     needsTarget, showsBoth},
    {commandCameraTarget,
     [](const Call& call) { return toggleFlag(fromHost(call), objectCameraTarget, turnsWithCamera); }, needsTarget,
     showsBoth},
    {commandSpaceMidpointsByTime,
     [](const Call& call) { return spaceMidpoints(fromSettings(call) ? targetCurrent : targetAny); }, needsTarget,
     showsBoth},
    {commandSpaceMidpointsByDistance, [](const Call&) { return 0; }, needsNothing},
    {commandCut, [](const Call&) { return cutTarget(); }, needsTarget, showsBoth},
    {commandInsertEmptyFrames, [](const Call&) { return insertFrames(); }, needsProject, showsBoth},
    {commandDuplicate, [](const Call&) { return duplicateTarget(); }, needsTarget, showsTimeline},
    {commandHostCopy, [](const Call& call) { return call.active == activeHost ? copyTarget() : 0; }, needsTarget},
    {commandHostPaste, [](const Call& call) { return call.active == activeHost ? pasteAtCursor() : 0; }, needsProject,
     showsTimeline},
    {commandHostDelete, [](const Call& call) { return call.active == activeHost ? deleteTarget() : 0; }, needsTarget,
     showsBoth},
};

}  // namespace

const std::span<const Row> objectCommands = rows;

}  // namespace zenlay::commands
