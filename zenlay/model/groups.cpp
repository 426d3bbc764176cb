#include "zenlay/model/groups.h"

#include <algorithm>
#include <unordered_map>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

constexpr int groupLimit = 15000;

struct GroupNumbers {
  int smallest = groupLimit, largest = 0;

  void include(int group) {
    smallest = std::min(smallest, group);
    largest = std::max(largest, std::min(group, groupLimit - 1));  // a damaged project may hold any number
  }
  int fresh() const {
    int candidate = smallest - 1;
    if (candidate <= 0 || largest + 1 < candidate) candidate = largest + 1;
    return candidate >= groupLimit ? 0 : candidate;
  }
};

GroupNumbers groupsInUse() {
  GroupNumbers groups;
  for (int i = 0; i < objectCount; i++)
    if (layerOrder[i]->group > 0) groups.include(layerOrder[i]->group);
  return groups;
}

/// A chain shares its group: every section of a given object's chain takes it.
void setGroup(std::span<const int> selection, int group) {
  bool begun = false;
  for (int object : selection) {
    if (!inUse(object) || objects[object].group == group) continue;
    if (!begun) beginUndoStep();
    begun = true;
    for (int section : sectionsOf(object)) {
      recordUndo(section, undoSnapshot);
      objects[section].group = group;
    }
  }
}

}  // namespace

int newGroupNumber() { return groupsInUse().fresh(); }

void joinGroup(int object, int other) {
  if (objects[other].group == 0) objects[other].group = newGroupNumber();
  objects[object].group = objects[other].group;
}

void renumberMarkedGroups() {
  GroupNumbers groups = groupsInUse();
  std::unordered_map<int, int> numbers;
  for (int i = 0; i < objectCount; i++) {
    int& group = layerOrder[i]->group;
    if (group >= 0) continue;
    auto [found, isNew] = numbers.try_emplace(group, 0);
    if (isNew) {
      found->second = groups.fresh();
      if (found->second > 0) groups.include(found->second);
    }
    group = found->second;
  }
}

void groupSelection(std::span<const int> selection) {
  int group = 0;
  for (int object : selection)
    if (inUse(object) && objects[object].group > 0 && (!group || objects[object].group < group))
      group = objects[object].group;
  if (!group) group = newGroupNumber();
  if (group) setGroup(selection, group);
}

void ungroupSelection(std::span<const int> selection) { setGroup(selection, 0); }

}  // namespace zenlay
