#include "zenlay/model/chains.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"

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

void copySection(ObjectRecord& to, const ObjectRecord& from) {
  memcpy(to.slots, from.slots, sizeof to.slots);
  memcpy(to.name, from.name, sizeof to.name);
  to.trackCount = from.trackCount;
  to.checkCount = from.checkCount;
  memcpy(to.startValues, from.endValues, sizeof to.startValues);
  memcpy(to.endValues, from.endValues, sizeof to.endValues);
  memcpy(to.modes, from.modes, sizeof to.modes);
  memcpy(to.params, from.params, sizeof to.params);
  memcpy(to.checks, from.checks, sizeof to.checks);
}

}  // namespace

int appendSection(int object, int start, int end) {
  int last = object;
  for (int section; (section = nextSection(last)) >= 0;) last = section;
  const ObjectRecord& old = objects[last];
  if (end < start || start != old.end + 1 || objectsInRange(start, end, old.layer) >= 0) return -1;
  int section = createObject(start, old.layer, old.slots[0].effect, last);
  if (section < 0) return -1;
  ObjectRecord& added = objects[section];
  added.end = end;
  copySection(added, old);
  return section;
}

int newGroupNumber() { return groupsInUse().fresh(); }

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

}  // namespace zenlay
