#include "zenlay/model/sections.h"

#include <cstring>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"

namespace zenlay {
namespace {

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

}  // namespace zenlay
