#include "zenlay/ui/timeline/selection.h"

#include <algorithm>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

ClickPosition clickPosition;
int rangeAnchor = -1;

namespace {

std::vector<int> selected;
constinit bool marks[maxObjects]{};
bool holes;  // entries that are no longer marked

/// The list without what was taken out of it.
std::vector<int>& list() {
  if (holes) std::erase_if(selected, [](int object) { return !marks[object]; });
  holes = false;
  return selected;
}

void takeOut(int object) {
  if (!isSelected(object)) return;
  marks[object] = false;
  holes = true;
}

std::vector<int> eachOnce(std::vector<int> numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

/// Numbers of the groups that the objects belong to, sorted.
std::vector<int> groupsOf(std::span<const int> members) {
  std::vector<int> groups;
  for (int object : members)
    if (int group = objects[headOf(object)].group; group != 0) groups.push_back(group);
  return eachOnce(std::move(groups));
}

}  // namespace

std::span<const int> selection() { return list(); }

bool isSelected(int object) { return object >= 0 && object < maxObjects && marks[object]; }

bool addToSelection(int object) {
  if (!onTimeline(object) || marks[object] || list().size() >= maxObjects) return false;
  if (layers[objects[object].layer].flags & layerLocked) return false;
  marks[object] = true;
  selected.push_back(object);
  return true;
}

void selectChain(int object) {
  if (!onTimeline(object)) return;
  for (int section = headOf(object); section >= 0; section = nextSection(section)) addToSelection(section);
}

void selectGroup(int object) {
  if (onTimeline(object)) selectWhole(std::span(&object, 1));
}

void selectWhole(std::span<const int> wanted) {
  std::vector<int> named(wanted.begin(), wanted.end());  // they may be the selection itself
  std::erase_if(named, [](int object) { return !onTimeline(object); });
  for (int object : named) selectChain(object);
  std::vector<int> groups = groupsOf(named);
  if (groups.empty()) return;
  for (int i = 0; i < sceneObjectCount; i++) {
    int object = indexOf(layerOrder[i]);
    if (std::binary_search(groups.begin(), groups.end(), objects[headOf(object)].group)) addToSelection(object);
  }
}

void selectRange(int from, int to) {
  const ObjectRecord &a = objects[from], &b = objects[to];
  int first = std::min(a.start, b.start), last = std::max(a.end, b.end);
  for (int layer = std::min(a.layer, b.layer); layer <= std::max(a.layer, b.layer); layer++)
    selectMeeting(first, last, layer);
}

void selectMeeting(int firstFrame, int lastFrame, int layer) {
  EntryRange there = entriesMeeting(firstFrame, lastFrame, layer);
  for (int i = there.begin; i < there.end; i++)
    if (int object = indexOf(layerOrder[i]); !isSelected(object)) selectChain(object);
}

void removeChainFromSelection(int object) {
  if (!onTimeline(object)) return;
  for (int section = headOf(object); section >= 0; section = nextSection(section)) takeOut(section);
}

void clearSelection() {
  for (int object : selected) marks[object] = false;
  selected.clear();
  holes = false;
}

void dropUnselectable() {
  redrawObjects(list());
  for (int object : list())
    if (!onTimeline(object) || layers[objects[object].layer].flags & layerLocked) takeOut(object);
}

void forgetObject(int object) {
  forgetDragged(object);
  forgetColorPick(object);
  takeOut(object);
  if (clickPosition.section == object) clickPosition.section = -1;
  if (rangeAnchor == object) rangeAnchor = -1;
}

void forgetClicks() {
  clickPosition = {};
  rangeAnchor = -1;
}

std::vector<int> commandTargets() {
  if (!list().empty()) return selected;
  return onTimeline(currentObject) ? sectionsOf(currentObject) : std::vector<int>{};
}

std::vector<int> commandTargetHeads() {
  std::vector<int> heads;
  for (int object : commandTargets()) heads.push_back(headOf(object));
  return eachOnce(std::move(heads));
}

}  // namespace zenlay
