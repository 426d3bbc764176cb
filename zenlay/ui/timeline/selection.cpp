#include "zenlay/ui/timeline/selection.h"

#include <algorithm>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

std::vector<int> selected;
constinit bool marks[maxObjects]{};

/// Numbers of the groups that the objects belong to, sorted.
std::vector<int> groupsOf(std::span<const int> list) {
  std::vector<int> groups;
  for (int object : list)
    if (int group = objects[headOf(object)].group; group != 0) groups.push_back(group);
  std::sort(groups.begin(), groups.end());
  groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
  return groups;
}

}  // namespace

std::span<const int> selection() { return selected; }

bool isSelected(int object) { return object >= 0 && object < maxObjects && marks[object]; }

bool addToSelection(int object) {
  if (!onTimeline(object) || marks[object] || selected.size() >= maxObjects) return false;
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

void selectWhole(std::span<const int> list) {
  std::vector<int> named(list.begin(), list.end());  // the list may be the selection itself
  std::erase_if(named, [](int object) { return !onTimeline(object); });
  for (int object : named) selectChain(object);
  std::vector<int> groups = groupsOf(named);
  if (groups.empty()) return;
  for (int i = 0; i < sceneObjectCount; i++) {
    int object = indexOf(layerOrder[i]);
    if (std::binary_search(groups.begin(), groups.end(), objects[headOf(object)].group)) addToSelection(object);
  }
}

void removeChainFromSelection(int object) {
  if (!onTimeline(object)) return;
  for (int section = headOf(object); section >= 0; section = nextSection(section)) forgetSelected(section);
}

void clearSelection() {
  for (int object : selected) marks[object] = false;
  selected.clear();
}

void forgetSelected(int object) {
  if (!isSelected(object)) return;
  marks[object] = false;
  std::erase(selected, object);
}

void dropUnselectable() {
  std::vector<int> kept;
  redrawObjects(selected);
  for (int object : selected) {
    marks[object] = onTimeline(object) && !(layers[objects[object].layer].flags & layerLocked);
    if (marks[object]) kept.push_back(object);
  }
  selected = std::move(kept);
}

std::vector<int> commandTargets() {
  if (!selected.empty()) return selected;
  return onTimeline(currentObject) ? sectionsOf(currentObject) : std::vector<int>{};
}

std::vector<int> commandTargetHeads() {
  std::vector<int> heads;
  for (int object : commandTargets()) heads.push_back(headOf(object));
  std::sort(heads.begin(), heads.end());
  heads.erase(std::unique(heads.begin(), heads.end()), heads.end());
  return heads;
}

}  // namespace zenlay
