// The names of movement scripts that mode words refer to by number.
#include <cstring>

#include "zenlay/effects/evaluation.h"

namespace zenlay {
namespace {

char names[maxMovementScripts][maxMovementScriptName + 1];
int count = 0;

}  // namespace

int movementScriptCount() { return count; }

const char* movementScriptName(int script) { return script >= 0 && script < count ? names[script] : nullptr; }

int movementScriptNumber(const char* name) {
  size_t length = name ? strlen(name) : 0;
  if (length == 0 || length > maxMovementScriptName) return -1;
  for (int i = 0; i < count; i++) {
    if (strcmp(names[i], name) == 0) return i;
  }
  if (count == maxMovementScripts) return -1;
  memcpy(names[count], name, length + 1);
  return count++;
}

void resetMovementScripts() { count = 0; }

}  // namespace zenlay
