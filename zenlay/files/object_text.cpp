#include "zenlay/files/object_text.h"

#include <cstring>

#include "platform/paths.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/effect_text.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"

namespace zenlay {
namespace {

int slotFor(const EffectReading& reading, int object, int number, int effect) {
  if (number == 0) return slotHolding(object, effect);  // a companion may stand in front of it
  if (!reading.continuation) return addEffect(object, effect);
  bool same = number < usedSlots(object) && objects[object].slots[number].effect == effect;
  return same ? number : -1;
}

/// Puts the effect of a section into the object; why it has no place there, or null.
const char* takeEffect(const EffectReading& reading, const std::string& section, int object, int number, int effect) {
  int slot = slotFor(reading, object, number, effect);
  if (slot < 0) return reading.continuation ? "differs from its chain" : "finds no room";
  if (!reading.continuation) {
    setSlotDefaults(object, slot);
    setCameraTarget(object, reading.keys, effect);
  }
  applyEffect(section, object, slot);
  return nullptr;
}

}  // namespace

void writeLine(std::string& out, const char* key, int64_t value) {
  out.append(key).append("=").append(std::to_string(value)).append("\r\n");
}

void writeObjectKeys(std::string& out, uint32_t flags) {
  if (flags & objectClipAbove) writeLine(out, "clipping", 1);
  if (flags & objectCameraTarget)
    writeLine(out, "camera", 1);
  else if (flags & objectDrawn && !(flags & objectAudio))
    writeLine(out, "camera", 0);
}

void writeEffect(std::string& out, const std::string& header, int object, int slot, bool withExtraData) {
  const ObjectRecord& o = objects[object];
  out.append("[").append(header).append("]\r\n_name=").append(effectList[o.slots[slot].effect]->name).append("\r\n");
  if (!(slotFlagsOf(object, slot) & slotEnabled)) writeLine(out, "_disable", 1);
  writeValues(out, o, slot);
  if (withExtraData) writeExtraData(out, object, slot);
}

int writeTextFile(const char* path, int count, const std::function<std::string(int)>& part) {
  std::FILE* file = platform::openFile(path, "wb");
  if (!file) {
    showMessage("Failed to create the file", boxWarning);
    return 0;
  }
  bool written = true;
  for (int i = 0; i < count && written; i++) {
    std::string text = part(i);
    written = fwrite(text.data(), 1, text.size(), file) == text.size();
  }
  if (fclose(file) != 0) written = false;
  if (!written) showMessage("Failed to write file", boxWarning);
  return written;
}

int32_t integerOf(const std::string& section, const char* key) {
  const char* value = valueOf(section, key);
  return value ? readInteger(value) : 0;
}

bool isOn(const std::string& section, const char* key) { return integerOf(section, key) == 1; }

void readObjectKeys(const std::string& section, ObjectKeys* keys) {
  keys->clipping = isOn(section, "clipping");
  keys->cameraGiven = valueOf(section, "camera") != nullptr;
  keys->camera = isOn(section, "camera");
}

const char* nextEffect(SectionFile* file, const std::string& prefix, int number, std::string& section) {
  size_t before = file->at;
  const char* header = readSection(file, section);
  const char *cursor = header ? firstKey(section) : nullptr, *key, *value;
  bool wanted = header && header == "[" + prefix + "." + std::to_string(number) + "]";
  if (wanted && nextKey(&cursor, &key, &value) && strcmp(key, "_name") == 0) return value;
  file->at = before;
  return nullptr;
}

void applyEffect(const std::string& section, int object, int slot) {
  const char *cursor = firstKey(section), *key, *value;
  nextKey(&cursor, &key, &value);  // _name
  while (nextKey(&cursor, &key, &value)) {
    if (strcmp(key, "_disable") != 0)
      readLine(object, slot, key, value);
    else if (headOf(object) == object)
      objects[object].slotFlags[slot] &= static_cast<uint8_t>(~slotEnabled);
  }
  settleStaticTracks(object, slot);
}

int addChainEffect(int object, int effect) {
  int slot = addEffect(object, effect);
  if (slot < 0) return -1;
  if (effectList[effect]->flag & effectMedia)
    for (int section : sectionsOf(object)) memset(objects[section].name, 0, maxName);
  setChainSlotDefaults(object, slot);
  return slot;
}

void applyToChain(const std::string& section, int object, int slot) {
  int head = headOf(object);
  applyEffect(section, head, slot);
  setSlotFlags(head, slot, objects[head].slotFlags[slot]);
  syncChain(head);
}

int slotHolding(int object, int effect) {
  for (int slot = 0; slot < usedSlots(object); slot++)
    if (objects[object].slots[slot].effect == effect) return slot;
  return -1;
}

void setCameraTarget(int object, const ObjectKeys& keys, int effect) {
  if (!keys.draws || keys.audio) return;
  const EffectDefinition* d = effectList[effect];
  bool target = keys.cameraGiven ? keys.camera : isBuiltIn(d) && d->x & cameraTargetByDefault;
  if (target)
    objects[object].flags |= objectCameraTarget;
  else
    objects[object].flags &= ~objectCameraTarget;
}

const char* whyUnknown(const char* effect) {
  constexpr const char* keys[2][2] = {{"needs overlay=0 and audio=0", "needs overlay=0 and audio=1"},
                                      {"needs overlay=1 and audio=0", "needs overlay=1 and audio=1"}};
  for (int draws : {0, 1})
    for (int audio : {0, 1})
      if (findEffect(effect, audio, draws) >= 0) return keys[draws][audio];
  return "is unknown";
}

int readEffects(SectionFile* file, const EffectReading& reading) {
  int object = -1;
  std::string section;
  for (int i = 0; i < maxSlots; i++) {
    const char* name = nextEffect(file, reading.prefix, i, section);
    if (!name) break;
    int effect = findEffect(name, reading.keys.audio, reading.keys.draws);
    if (i == 0) object = reading.start(name, effect);
    if (object < 0) continue;
    const char* why = effect < 0 ? whyUnknown(name) : takeEffect(reading, section, object, i, effect);
    if (why && reading.leftOut) reading.leftOut(name, why);
  }
  return object;
}

}  // namespace zenlay
