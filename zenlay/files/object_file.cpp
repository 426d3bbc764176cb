#include "zenlay/files/object_file.h"

#include <algorithm>
#include <cstring>

#include "platform/text.h"
#include "zenlay/files/left_out.h"
#include "zenlay/files/object_text.h"
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
  for (const HeaderRow& row : headerRows) writeLine(out, row.key, header.*row.value);
  if (header.flags & sceneHasAlpha) writeLine(out, "alpha", 1);
  if (const char* name = scenes[currentScene].name) out.append("name=").append(name).append("\r\n");
  return out;
}

bool continuesChain(int object) { return headOf(object) != object; }

std::string objectText(int object, int number) {
  const ObjectRecord& o = objects[object];
  std::string out = "[" + std::to_string(number) + "]\r\n";
  writeLine(out, "start", int64_t{o.start} + 1);
  writeLine(out, "end", int64_t{o.end} + 1);
  writeLine(out, "layer", o.layer + 1);
  if (o.group) writeLine(out, "group", o.group);
  if (o.flags & (objectDrawn | objectFilterEffect)) writeLine(out, "overlay", 1);
  writeObjectKeys(out, o.flags);
  if (o.flags & objectAudio) writeLine(out, "audio", 1);
  if (continuesChain(object)) writeLine(out, "chain", 1);
  for (int slot = 0; slot < usedSlots(object); slot++)
    writeEffect(out, std::to_string(number) + "." + std::to_string(slot), object, slot, !continuesChain(object));
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

struct FileObject {
  int32_t start, end, layer, group;
  bool chain;
  ObjectKeys keys;
};

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
bool readPlace(const Import& import, FileObject* o) {
  const std::string& s = import.section;
  int32_t start = integerOf(s, "start"), end = integerOf(s, "end"), layer = integerOf(s, "layer");
  if (start < 1 || end < 1 || layer < 1) return false;
  int32_t group = integerOf(s, "group");
  *o = {shifted(start, import.frameOffset),
        shifted(end, import.frameOffset),
        shifted(layer, import.layerOffset),
        group > 0 ? -group : 0,
        isOn(s, "chain"),
        {.audio = isOn(s, "audio"), .draws = isOn(s, "overlay")}};
  readObjectKeys(s, &o->keys);
  return true;
}

/// Why the object cannot be placed, or null.
const char* misfit(const Import& import, const FileObject& o) {
  if (o.start < 0 || o.end < o.start || o.layer < 0 || o.layer >= layersPerScene) return "has no valid frames or layer";
  if (o.chain) {
    if (import.previous < 0) return "continues no object";
    const ObjectRecord& before = objects[import.previous];
    if (int64_t{before.end} + 1 != o.start || before.layer != o.layer) return "continues no object";
  }
  return objectsInRange(o.start, o.end, o.layer) < 0 ? nullptr : "overlaps another object";
}

/// The object's record with its first effect, or -1. A continuation has its chain's effects.
int startObject(Import& import, const FileObject& from, int effect) {
  if (import.tableFull) return -1;
  import.tableFull = objectCount >= maxObjects;
  if (from.chain) return appendSection(import.previous, from.start, from.end);
  int object = createObject(from.start, from.layer, effect, -1);
  if (object < 0) return -1;
  ObjectRecord& o = objects[object];
  if (from.keys.clipping) o.flags |= objectClipAbove;
  o.group = from.group;
  o.end = from.end;
  return object;
}

/// Reads the effect sections of object `number`; the object, or -1 when it was left out: for the reason `misfit`, or
/// for want of a first effect.
int readObjectEffects(Import& import, const FileObject& from, int number, const char* misfit) {
  std::string name = std::to_string(number), reason = misfit ? misfit : "has no effect";
  EffectReading reading{name, from.keys, from.chain};
  reading.start = [&](const char* effectName, int effect) {
    if (misfit) return -1;
    reason = effect < 0 ? "begins with " + quoted(effectName) + ", which " + whyUnknown(effectName) : "finds no room";
    return effect < 0 ? -1 : startObject(import, from, effect);
  };
  reading.leftOut = [&](const char* effectName, const char* why) {
    leaveOut(import.effects, quoted(effectName) + " of [" + name + "] " + why);
  };
  int object = readEffects(&import.file, reading);
  if (object < 0) leaveOut(import.objects, "[" + name + "] " + reason);
  return object;
}

/// Reads one object whose section was found; false ends the import.
bool readObject(Import& import, int number) {
  FileObject from;
  if (!readPlace(import, &from)) {
    leaveOut(import.objects, "[" + std::to_string(number) + "] lacks start, end or layer and ends the reading");
    return false;
  }
  int object = readObjectEffects(import, from, number, misfit(import, from));
  import.previous = object;
  if (object < 0) return true;
  notifyEffects(object, objectLoaded);
  import.largestEnd = std::max(import.largestEnd, objects[object].end);
  return true;
}

}  // namespace

int writeObjectFile(const char* path) {
  leftOutNote = otherScenesNote();
  return writeTextFile(path, sceneObjectCount + 1, [](int part) {
    return part == 0 ? headerText() : objectText(indexOf(layerOrder[part - 1]), part - 1);
  });
}

bool checkObjectFile(const char* path) {
  SectionFile file{};
  std::string section;
  if (!openSectionFile(path, &file)) {
    showMessage("Failed to read the file", boxWarning);
    return false;
  }
  while (const char* header = readSection(&file, section))
    if (strcmp(header, "[zenlay]") == 0 || strcmp(header, "[0]") == 0) return true;
  showMessage("The file holds neither a header nor objects", boxWarning);
  return false;
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
    strcpy(header->name, platform::wholeCharacters(name, maxName - 1).c_str());
  return 1;
}

}  // namespace zenlay
