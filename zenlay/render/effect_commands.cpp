#include "zenlay/render/effect_commands.h"

#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/pipeline.h"

namespace zenlay {

namespace {

/// Calls into the built-in effect of a slot while the slot is bound, and leaves the effect as it was.
template <class Call>
void callBound(int object, int slot, Call call) {
  EffectDefinition* d = effectList[objects[object].slots[slot].effect];
  SlotBinding binding{};
  EffectDefinition outer = *d;
  bindSlot(objects + object, slot, &binding, nullptr);
  d->flag |= effectRunning;
  call(d);
  d->flag = outer.flag;
  unbindSlot(objects + object, slot, &binding);
  if (outer.flag & effectRunning) *d = outer;
}

}  // namespace

int callEffect(int object, int slot, int command, intptr_t value) {
  const EffectDefinition* d = effectList[objects[object].slots[slot].effect];
  if (!isBuiltIn(d) || !d->window_proc) return 0;
  int answer = 0;
  callBound(object, slot, [&](EffectDefinition* bound) {
    answer =
        bound->window_proc(environment.timelineWindow, messageEffectCommand, command, value, environment.edit, bound);
  });
  return answer;
}

void sendEffectCommand(int object, int slot, int command, intptr_t value) { callEffect(object, slot, command, value); }

int showEffectControls(int object, int slot, platform::Window* settings, uint32_t message, intptr_t wparam,
                       intptr_t lparam) {
  const EffectDefinition* d = effectList[objects[object].slots[slot].effect];
  if (!isBuiltIn(d) || !d->show_controls) return 0;
  int height = 0;
  callBound(object, slot, [&](EffectDefinition* bound) {
    height = bound->show_controls(settings, message, wparam, lparam, environment.edit, bound);
  });
  return height;
}

bool offerKey(int object, uint32_t message, int key) {
  bool taken = false;
  for (int slot = 0; slot < usedSlots(object) && !taken; slot++) {
    const EffectDefinition* d = effectList[objects[object].slots[slot].effect];
    if (!isBuiltIn(d) || !d->window_proc) continue;
    callBound(object, slot, [&](EffectDefinition* bound) {
      taken = bound->window_proc(environment.timelineWindow, message, key, 0, environment.edit, bound) == 1;
    });
  }
  return taken;
}

void hideEffectControls(int object, int slot) {
  const EffectDefinition* d = effectList[objects[object].slots[slot].effect];
  if (!isBuiltIn(d) || !d->hide_controls) return;
  callBound(object, slot, [](EffectDefinition* bound) { bound->hide_controls(); });
}

}  // namespace zenlay
