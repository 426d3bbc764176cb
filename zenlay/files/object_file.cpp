#include "zenlay/files/object_file.h"

#include <algorithm>
#include <cstring>

#include "platform/paths.h"
#include "platform/text.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/effect_text.h"
#include "zenlay/files/left_out.h"
#include "zenlay/files/section_reader.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

constexpr char headerSection[] = "[zenlay]";
constexpr ObjectFileHeader readDefaults{0, {}, 640, 480, 30, 1, 44100, 2, 0};

struct HeaderRow {
  const char* key;
  int32_t ObjectFileHeader::*value;
};
constexpr HeaderRow headerRows[] = {
    {"width", &ObjectFileHeader::width},
    {"height", &ObjectFileHeader::height},
    {"rate", &ObjectFileHeader::rate},
    {"scale", &ObjectFileHeader::scale},
    {"length", &ObjectFileHeader::length},
    {"audio_rate", &ObjectFileHeader::audioRate},
    {"audio_ch", &ObjectFileHeader::audioChannels},
};

void line(std::string& out, const char* key, int64_t value) {
  out.append(key).append("=").append(std::to_string(value)).append("\r\n");
}

// ---- Writing ----

std::string headerText() {
  const HostFileInfo& clip = environment.clip;
  ImageSize size = sceneSize(currentScene);
  if (currentScene == 0) size = {clip.width, clip.height};
  ObjectFileHeader header{scenes[currentScene].flags,
                          {},
                          size.width,
                          size.height,
                          clip.rate,
                          clip.scale,
                          clip.audioRate,
                          clip.audioChannels,
                          sceneLength(currentScene)};
  std::string out = std::string(headerSection) + "\r\n";
  for (const HeaderRow& row : headerRows) line(out, row.key, header.*row.value);
  if (header.flags & sceneHasAlpha) line(out, "alpha", 1);
  if (const char* name = scenes[currentScene].name) out.append("name=").append(name).append("\r\n");
  return out;
}

bool continuesChain(int object) { return headOf(object) != object; }

std::string objectText(int object, int number) {
  const ObjectRecord& o = objects[object];
  std::string out = "[" + std::to_string(number) + "]\r\n";
  line(out, "start", int64_t{o.start} + 1);
  line(out, "end", int64_t{o.end} + 1);
  line(out, "layer", o.layer + 1);
  if (o.group) line(out, "group", o.group);
  if (o.flags & (objectDrawn | objectFilterEffect)) line(out, "overlay", 1);
  if (o.flags & objectClipAbove) line(out, "clipping", 1);
  if (o.flags & objectCameraTarget)
    line(out, "camera", 1);
  else if (o.flags & objectDrawn && !(o.flags & objectAudio))
    line(out, "camera", 0);
  if (o.flags & objectAudio) line(out, "audio", 1);
  if (continuesChain(object)) line(out, "chain", 1);
  for (int slot = 0; slot < usedSlots(object); slot++) {
    const EffectDefinition* d = effectList[o.slots[slot].effect];
    out.append("[" + std::to_string(number) + "." + std::to_string(slot) + "]\r\n_name=").append(d->name);
    out.append("\r\n");
    if (!(slotFlagsOf(object, slot) & slotEnabled)) line(out, "_disable", 1);
    writeValues(out, o, slot);
    if (!continuesChain(object)) writeExtraData(out, object, slot);
  }
  return out;
}

/// The objects of other scenes, which an object file has no place for.
std::string otherScenesNote() {
  int counts[maxScenes] = {};
  for (int i = sceneObjectCount; i < objectCount; i++) counts[layerOrder[i]->scene]++;
  LeftOut others;
  for (int scene = 0; scene < maxScenes; scene++) {
    if (counts[scene] == 0) continue;
    std::string name = sceneName(scene);
    leaveOut(others, std::to_string(scene) + " \"" + name + "\" (" + counted(counts[scene], "object") + ")");
  }
  if (others.count == 0) return {};
  std::string name = sceneName(currentScene);
  return "holds scene " + std::to_string(currentScene) + " \"" + name + "\" alone; " + leftOutText(others, "scene");
}

// ---- Reading ----

struct ObjectKeys {
  int32_t start, end, layer, group;
  int overlay, audio;
  bool clipping, cameraGiven, camera, chain;
};

bool isOn(const std::string& section, const char* key) {
  const char* value = valueOf(section, key);
  return value && readInteger(value) == 1;
}

int32_t integerOf(const std::string& section, const char* key) {
  const char* value = valueOf(section, key);
  return value ? readInteger(value) : 0;
}

int32_t shifted(int32_t value, int32_t offset) {
  int64_t sum = int64_t{value} - 1 + offset;
  return sum > INT32_MAX ? INT32_MAX : static_cast<int32_t>(sum);
}

struct Import {
  SectionFile file;
  std::string section;
  int frameOffset, layerOffset;
  int previous = -1;  // the object read last, -1 when it was skipped
  int largestEnd = 0;
  bool tableFull = false;  // an object did not fit, and the user was told
  LeftOut objects, effects;
};

/// No longer than a name may be, however long the line.
std::string quoted(const char* name) { return "\"" + std::string(name, strnlen(name, maxName)) + "\""; }

/// Whether a header line is that of an object, "[%d]".
bool isObjectHeader(std::string_view header) {
  return header.size() > 2 && header.find_first_not_of("0123456789", 1) == header.size() - 1 && header.back() == ']';
}

/// Goes to the section of object `number`; false when there is none. What it passes over is left out, for that reason.
bool findObject(Import& import, int number, const char* reason) {
  std::string wanted = "[" + std::to_string(number) + "]";
  while (const char* header = readSection(&import.file, import.section)) {
    if (wanted == header) return true;
    if (isObjectHeader(header)) leaveOut(import.objects, std::string(header) + reason);
  }
  return false;
}

std::string noteOf(const Import& import) {
  std::string objects = leftOutText(import.objects, "object"), effects = leftOutText(import.effects, "effect");
  return objects + (objects.empty() || effects.empty() ? "" : "; ") + effects;
}

/// False when a required key is missing.
bool readObjectKeys(const Import& import, ObjectKeys* keys) {
  const std::string& s = import.section;
  int32_t start = integerOf(s, "start"), end = integerOf(s, "end"), layer = integerOf(s, "layer");
  if (start < 1 || end < 1 || layer < 1) return false;
  int32_t group = integerOf(s, "group");
  *keys = {shifted(start, import.frameOffset),
           shifted(end, import.frameOffset),
           shifted(layer, import.layerOffset),
           group > 0 ? -group : 0,
           isOn(s, "overlay"),
           isOn(s, "audio"),
           isOn(s, "clipping"),
           valueOf(s, "camera") != nullptr,
           isOn(s, "camera"),
           isOn(s, "chain")};
  return true;
}

/// Why the object cannot be placed, or null.
const char* misfit(const Import& import, const ObjectKeys& keys) {
  if (keys.start < 0 || keys.end < keys.start || keys.layer < 0 || keys.layer >= layersPerScene)
    return "has no valid frames or layer";
  if (keys.chain) {
    if (import.previous < 0) return "continues no object";
    const ObjectRecord& before = objects[import.previous];
    if (int64_t{before.end} + 1 != keys.start || before.layer != keys.layer) return "continues no object";
  }
  return objectsInRange(keys.start, keys.end, keys.layer) < 0 ? nullptr : "overlaps another object";
}

int slotHolding(int object, int effect) {
  for (int slot = 0; slot < usedSlots(object); slot++)
    if (objects[object].slots[slot].effect == effect) return slot;
  return -1;
}

/// The object's record with its first effect, or -1. A continuation has its chain's effects.
int startObject(Import& import, const ObjectKeys& keys, int effect) {
  if (import.tableFull) return -1;
  import.tableFull = objectCount >= maxObjects;
  if (keys.chain) return appendSection(import.previous, keys.start, keys.end);
  int object = createObject(keys.start, keys.layer, effect, -1);
  if (object < 0) return -1;
  ObjectRecord& o = objects[object];
  if (keys.clipping) o.flags |= objectClipAbove;
  o.group = keys.group;
  o.end = keys.end;
  return object;
}

/// The slot that effect section `number` describes, or -1 when it is to be skipped.
int placeEffect(int object, const ObjectKeys& keys, int number, int effect) {
  if (number == 0) return slotHolding(object, effect);  // a companion may stand in front of it
  if (!keys.chain) return addEffect(object, effect);
  bool same = number < usedSlots(object) && objects[object].slots[number].effect == effect;
  return same ? number : -1;
}

void setCameraTarget(int object, const ObjectKeys& keys, int effect) {
  if (!keys.overlay || keys.audio) return;
  const EffectDefinition* d = effectList[effect];
  bool target = keys.cameraGiven ? keys.camera : isBuiltIn(d) && d->x & cameraTargetByDefault;
  if (target)
    objects[object].flags |= objectCameraTarget;
  else
    objects[object].flags &= ~objectCameraTarget;
}

void applySection(const std::string& section, int object, int slot) {
  const char *cursor = firstKey(section), *key, *value;
  nextKey(&cursor, &key, &value);  // _name
  while (nextKey(&cursor, &key, &value)) {
    if (strcmp(key, "_disable") == 0) {
      if (!continuesChain(object)) objects[object].slotFlags[slot] &= static_cast<uint8_t>(~slotEnabled);
      continue;
    }
    readLine(object, slot, key, value);
  }
  settleStaticTracks(object, slot);
}

/// Reads the next section when it is [object.number] with a name; the name, or null and nothing is read.
const char* readEffectSection(Import& import, int object, int number) {
  size_t before = import.file.at;
  std::string wanted = "[" + std::to_string(object) + "." + std::to_string(number) + "]";
  const char* header = readSection(&import.file, import.section);
  const char *cursor = header ? firstKey(import.section) : nullptr, *key, *value;
  if (header && wanted == header && nextKey(&cursor, &key, &value) && strcmp(key, "_name") == 0) return value;
  import.file.at = before;
  return nullptr;
}

/// Puts the effect of the section just read into the object; false when it has no place there.
bool takeEffect(const Import& import, const ObjectKeys& keys, int object, int number, int effect) {
  int slot = placeEffect(object, keys, number, effect);
  if (slot < 0) return false;
  if (!keys.chain) {
    setSlotDefaults(object, slot);
    setCameraTarget(object, keys, effect);
  }
  applySection(import.section, object, slot);
  return true;
}

/// Reads the effect sections of object `number`; the object, or -1 when it was left out: for the reason `misfit`, or
/// for want of a first effect.
int readEffects(Import& import, const ObjectKeys& keys, int number, const char* misfit) {
  int object = -1;
  std::string reason = misfit ? misfit : "has no effect";
  for (int i = 0; i < maxSlots; i++) {
    const char* name = readEffectSection(import, number, i);
    if (!name) break;
    int effect = findEffect(name, keys.audio, keys.overlay);
    if (i == 0 && !misfit) {
      reason = effect < 0 ? "is of an unknown effect " + quoted(name) : "finds no room";
      if (effect >= 0) object = startObject(import, keys, effect);
    }
    if (object < 0) continue;
    bool taken = effect >= 0 && takeEffect(import, keys, object, i, effect);
    const char* why = taken        ? nullptr
                      : effect < 0 ? " is unknown"
                      : keys.chain ? " differs from its chain"
                                   : " finds no room";
    if (why) leaveOut(import.effects, quoted(name) + " of [" + std::to_string(number) + "]" + why);
  }
  if (object < 0) leaveOut(import.objects, "[" + std::to_string(number) + "] " + reason);
  return object;
}

/// Reads one object whose section was found; false ends the import.
bool readObject(Import& import, int number) {
  ObjectKeys keys;
  if (!readObjectKeys(import, &keys)) {
    leaveOut(import.objects, "[" + std::to_string(number) + "] lacks start, end or layer and ends the reading");
    return false;
  }
  int object = readEffects(import, keys, number, misfit(import, keys));
  import.previous = object;
  if (object < 0) return true;
  notifyEffects(object, objectLoaded);
  import.largestEnd = std::max(import.largestEnd, objects[object].end);
  return true;
}

}  // namespace

int writeObjectFile(const char* path) {
  leftOutNote.clear();
  std::FILE* file = platform::openFile(path, "wb");
  if (!file) {
    showMessage("Failed to create the file", boxWarning);
    return 0;
  }
  std::string text = headerText();
  bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
  for (int i = 0; i < sceneObjectCount && written; i++) {
    text = objectText(indexOf(layerOrder[i]), i);
    written = fwrite(text.data(), 1, text.size(), file) == text.size();
  }
  if (fclose(file) != 0) written = false;
  if (!written) showMessage("Failed to write file", boxWarning);
  leftOutNote = otherScenesNote();
  return written;
}

int readObjectFile(const char* path, int frameOffset, int layerOffset) {
  leftOutNote.clear();
  Import import{};
  if (!openSectionFile(path, &import.file)) {
    showMessage("Failed to read the file", boxWarning);
    return -1;
  }
  import.frameOffset = frameOffset;
  import.layerOffset = layerOffset;
  beginUndoBatch();
  for (int number = 0; findObject(import, number, " is out of order"); number++) {
    if (readObject(import, number)) continue;
    findObject(import, -1, " comes behind it");
    break;
  }
  settleChains();
  renumberMarkedGroups();
  endUndoBatch();
  leftOutNote = noteOf(import);
  return import.largestEnd;
}

int readObjectFileHeader(const char* path, ObjectFileHeader* header) {
  *header = readDefaults;
  SectionFile file;
  std::string section;
  if (!openSectionFile(path, &file)) return 0;
  const char* first = readSection(&file, section);
  if (!first || strcmp(first, headerSection) != 0) return 0;
  for (const HeaderRow& row : headerRows)
    if (const char* value = valueOf(section, row.key)) header->*row.value = readInteger(value);
  if (valueOf(section, "alpha")) header->flags |= sceneHasAlpha;
  if (const char* name = valueOf(section, "name"))
    for (int at = 0, bytes; name[at] && at + (bytes = platform::characterBytes(name + at)) < maxName; at += bytes)
      memcpy(header->name + at, name + at, static_cast<size_t>(bytes));
  return 1;
}

}  // namespace zenlay
