#include <algorithm>
#include <vector>

#include "platform/window.h"

namespace platform {

struct HookHandle {
  KeyHook hook;
};

namespace {

std::vector<HookHandle*>& hooks() {
  static std::vector<HookHandle*> installed;
  return installed;
}

}  // namespace

HookHandle* installKeyHook(KeyHook hook) { return hooks().emplace_back(new HookHandle{hook}); }

void removeKeyHook(HookHandle* handle) {
  if (std::erase(hooks(), handle) > 0) delete handle;
}

bool runKeyHooks(int key, bool down) {
  std::vector<KeyHook> asked;
  for (const HookHandle* handle : hooks()) asked.push_back(handle->hook);
  return std::any_of(asked.rbegin(), asked.rend(), [&](KeyHook hook) { return hook(key, down) == 1; });
}

}  // namespace platform
