#include "zenlay/files/object_file.h"

#include <algorithm>
#include <cstring>

#include "platform/text.h"
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
};

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

bool fits(const Import& import, const FileObject& o) {
  if (o.start < 0 || o.end < o.start || o.layer < 0 || o.layer >= layersPerScene) return false;
  if (o.chain) {
    if (import.previous < 0) return false;
    const ObjectRecord& before = objects[import.previous];
    if (int64_t{before.end} + 1 != o.start || before.layer != o.layer) return false;
  }
  return objectsInRange(o.start, o.end, o.layer) < 0;
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

/// Reads one object whose section was found; false ends the import.
bool readObject(Import& import, int number) {
  FileObject from;
  if (!readPlace(import, &from)) return false;
  bool taken = fits(import, from);
  int object = readEffects(&import.file, std::to_string(number), from.keys, from.chain,
                           [&](int effect) { return taken ? startObject(import, from, effect) : -1; });
  import.previous = object;
  if (object < 0) return true;
  notifyEffects(object, objectLoaded);
  import.largestEnd = std::max(import.largestEnd, objects[object].end);
  return true;
}

}  // namespace

int writeObjectFile(const char* path) {
  return writeTextFile(path, sceneObjectCount + 1, [](int part) {
    return part == 0 ? headerText() : objectText(indexOf(layerOrder[part - 1]), part - 1);
  });
}

int readObjectFile(const char* path, int frameOffset, int layerOffset) {
  Import import{};
  if (!openSectionFile(path, &import.file)) {
    showMessage("Failed to read the file", boxWarning);
    return -1;
  }
  import.frameOffset = frameOffset;
  import.layerOffset = layerOffset;
  beginUndoBatch();
  for (int number = 0;; number++) {
    std::string wanted = "[" + std::to_string(number) + "]";
    const char* header;
    while ((header = readSection(&import.file, import.section)) && wanted != header) {
    }
    if (!header || !readObject(import, number)) break;
  }
  settleChains();
  renumberMarkedGroups();
  endUndoBatch();
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
