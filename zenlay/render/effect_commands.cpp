#include "zenlay/render/effect_commands.h"

#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/render/pipeline.h"

namespace zenlay {

void sendEffectCommand(int object, int slot, int command, intptr_t value) {
  EffectDefinition* d = effectList[objects[object].slots[slot].effect];
  if (!isBuiltIn(d) || !d->window_proc) return;
  SlotBinding binding{};
  EffectDefinition outer = *d;
  bindSlot(objects + object, slot, &binding, nullptr);
  d->flag |= effectRunning;
  d->window_proc(environment.timelineWindow, messageEffectCommand, command, value, environment.edit, d);
  d->flag = outer.flag;
  unbindSlot(objects + object, slot, &binding);
  if (outer.flag & effectRunning) *d = outer;
}

}  // namespace zenlay
