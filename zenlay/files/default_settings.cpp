#include "zenlay/files/default_settings.h"

#include <cstring>

#include "platform/paths.h"
#include "platform/system.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/object_text.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"

namespace zenlay {
namespace {

constexpr char extension[] = ".zlc";

bool holdsEffect(int object, int slot) { return inUse(object) && slot >= 0 && slot < usedSlots(object); }

int effectAt(int object, int slot) { return objects[object].slots[slot].effect; }

ObjectKeys keysOf(const ObjectRecord& o) {
  return {.audio = (o.flags & objectAudio) != 0, .draws = (o.flags & (objectDrawn | objectFilterEffect)) != 0};
}

/// The drawing effect saved along with a media effect.
void readDrawing(SectionFile* file, const std::string& prefix, int object) {
  std::string section;
  const char* name = nextEffect(file, prefix, 1, section);
  ObjectKeys keys = keysOf(objects[object]);
  int effect = name ? findEffect(name, keys.audio, keys.draws) : -1;
  if (effect < 0) return;
  int slot = lastSlot(object);
  if (effect != effectAt(object, slot))
    slot = effectList[effect]->flag & effectDrawing ? addChainEffect(object, effect) : -1;
  if (slot >= 0) applyToChain(section, object, slot);
}

}  // namespace

std::string defaultSettingsPath(const EffectDefinition* d) {
  if (isBuiltIn(d)) return environment.pluginDirectory + d->name + extension;
  std::string module = platform::modulePathOf(reinterpret_cast<const void*>(d->proc));
  return module.empty() ? "" : std::string(platform::withoutExtension(module)) + extension;
}

int writeDefaults(int object, int slot) {
  std::string path = holdsEffect(object, slot) ? defaultSettingsPath(effectList[effectAt(object, slot)]) : "";
  return writeAlias(object, slot, slot, path.c_str());
}

int readDefaults(int object, int slot) {
  if (!holdsEffect(object, slot)) return 0;
  const EffectDefinition* d = effectList[effectAt(object, slot)];
  SectionFile file;
  if (!openSectionFile(defaultSettingsPath(d).c_str(), &file)) return 0;
  std::string section, prefix = aliasPrefix(objects[object].flags);
  const char* name = nextEffect(&file, prefix, 0, section);
  if (!name || strcmp(name, d->name) != 0) return 0;
  applyToChain(section, object, slot);
  if (d->flag & effectMedia) readDrawing(&file, prefix, object);
  return 1;
}

void fillDefaults(int object, int slot) {
  setChainSlotDefaults(object, slot);
  readDefaults(object, slot);
}

int createObjectWithDefaults(int frame, int layer, int effect) {
  int object = createObject(frame, layer, effect, -1);
  if (object < 0) return -1;
  // The source's settings come last: they may bring a drawing effect with settings of its own.
  for (int slot = lastSlot(object); slot >= 0; slot--) fillDefaults(object, slot);
  setCameraTarget(object, keysOf(objects[object]), effectAt(object, lastSlot(object)));
  return object;
}

int addEffectWithDefaults(int object, int effect) {
  int slot = addChainEffect(object, effect);
  if (slot >= 0) readDefaults(object, slot);
  return slot;
}

}  // namespace zenlay
