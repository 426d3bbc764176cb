#include "zenlay/files/alias_file.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "zenlay/effects/registry.h"
#include "zenlay/files/object_text.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

// ---- Writing ----

std::string effectSections(int object, const std::vector<int>& slots) {
  std::string out, prefix = aliasPrefix(objects[object].flags);
  for (size_t i = 0; i < slots.size(); i++) writeEffect(out, prefix + "." + std::to_string(i), object, slots[i], true);
  return out;
}

std::vector<int> slotRange(int first, int last) {
  std::vector<int> slots;
  for (int slot = first; slot <= last; slot++) slots.push_back(slot);
  return slots;
}

const EffectDefinition* effectIn(int object, int slot) { return effectList[objects[object].slots[slot].effect]; }

std::string headedSection(int object) {
  const ObjectRecord& o = objects[object];
  std::string out = "[" + aliasPrefix(o.flags) + "]\r\n";
  writeLine(out, "length", int64_t{o.end} - o.start + 1);
  writeObjectKeys(out, o.flags);
  return out + effectSections(object, slotRange(0, lastSlot(object)));
}

// ---- Reading ----

struct AliasFile {
  SectionFile file;
  std::string prefix;
  ObjectKeys keys;
  bool headed;  // a whole object
};

/// 0 when the file cannot be read or is no alias; its first section is then the next to be read.
int openAlias(const char* path, AliasFile* alias) {
  std::string section;
  if (!openSectionFile(path, &alias->file)) return 0;
  const char* header = readSection(&alias->file, section);
  alias->file.at = 0;
  if (!header) return 0;
  for (const char* prefix : {"v", "vo", "a", "ao"}) {
    alias->headed = header == "[" + std::string(prefix) + "]";
    if (!alias->headed && header != "[" + std::string(prefix) + ".0]") continue;
    alias->prefix = prefix;
    alias->keys = {.audio = prefix[0] == 'a', .draws = prefix[1] == 'o'};
    return 1;
  }
  return 0;
}

int openAliasOrTell(const char* path, AliasFile* alias) {
  if (openAlias(path, alias)) return 1;
  showMessage("Failed to read the file", boxWarning);
  return 0;
}

/// Reads the header of the next section of the chain; its length in frames, or 0 when there is none.
int readHeader(AliasFile& alias) {
  std::string section;
  const char* header = readSection(&alias.file, section);
  if (!header || header != "[" + alias.prefix + "]") return 0;
  readObjectKeys(section, &alias.keys);
  return std::max(integerOf(section, "length"), 0);
}

/// Frames of the whole chain, whose first header comes next.
int64_t chainLength(AliasFile& alias) {
  int64_t total = 0;
  const size_t begin = alias.file.at;
  std::string section;
  for (int length; (length = readHeader(alias)) > 0; total += length)
    for (int i = 0; i < maxSlots && nextEffect(&alias.file, alias.prefix, i, section);) i++;
  alias.file.at = begin;
  return total;
}

/// The first frame from `frame` on with that many free frames behind it.
int64_t findRoom(int64_t frame, int64_t length, int layer) {
  for (int found; frame + length - 1 <= INT32_MAX; frame = int64_t{objects[found].end} + 1) {
    found = objectsInRange(static_cast<int>(frame), static_cast<int>(frame + length - 1), layer);
    if (found < 0) return frame;
  }
  return -1;
}

/// The next section behind `before`, or the chain's head when that is -1.
int startSection(const AliasFile& alias, int before, int64_t start, int length, int layer, int effect) {
  int first = static_cast<int>(start), last = static_cast<int>(start + length - 1);
  if (before >= 0) return appendSection(before, first, last);
  int object = createObject(first, layer, effect, -1);
  if (object < 0) return -1;
  objects[object].end = last;
  if (alias.keys.clipping) objects[object].flags |= objectClipAbove;
  return object;
}

/// The head of the chain, or -1.
int placeChain(AliasFile& alias, int frame, int layer) {
  int last = -1;
  int64_t start = findRoom(frame, chainLength(alias), layer);
  if (start < 0) return -1;
  for (int length; (length = readHeader(alias)) > 0; start += length) {
    EffectReading reading{alias.prefix, alias.keys, last >= 0};
    reading.start = [&](const char*, int effect) {
      return effect < 0 ? -1 : startSection(alias, last, start, length, layer, effect);
    };
    int section = readEffects(&alias.file, reading);
    if (section < 0) break;
    last = section;
  }
  return last < 0 ? -1 : headOf(last);
}

/// An object of the alias's effects alone, or -1.
int placeEffects(AliasFile& alias, int frame, int layer) {
  EffectReading reading{alias.prefix, alias.keys, false};
  reading.start = [&](const char*, int effect) { return createObject(frame, layer, effect, -1); };
  return readEffects(&alias.file, reading);
}

/// Whether the effect may stand in an object of that kind.
bool takes(const ObjectRecord& o, const EffectDefinition* d) {
  if (d->flag & (effectMedia | effectDrawing)) return o.flags & objectDrawn;
  return !(d->flag & effectControl) || o.flags & objectControl;
}

}  // namespace

std::string aliasPrefix(uint32_t flags) {
  return std::string(flags & objectAudio ? "a" : "v") + (flags & (objectDrawn | objectFilterEffect) ? "o" : "");
}

int writeAlias(int object, int firstSlot, int lastSlot, const char* path) {
  bool whole = firstSlot == aliasWholeObject;
  bool known = inUse(object) && (whole || (firstSlot >= 0 && firstSlot <= lastSlot && lastSlot < usedSlots(object)));
  if (!known || !path || !*path) {
    showMessage("Failed to save the file", boxWarning);
    return 0;
  }
  if (whole) {
    std::vector<int> sections = sectionsOf(object);
    return writeTextFile(path, static_cast<int>(sections.size()), [&](int i) { return headedSection(sections[i]); });
  }
  std::vector<int> slots = slotRange(firstSlot, lastSlot);
  int drawing = zenlay::lastSlot(object);
  bool mediaAlone = firstSlot == lastSlot && effectIn(object, firstSlot)->flag & effectMedia;
  if (mediaAlone && drawing != firstSlot && effectIn(object, drawing)->flag & effectDrawing) slots.push_back(drawing);
  return writeTextFile(path, 1, [&](int) { return effectSections(object, slots); });
}

int aliasKind(const char* path) {
  AliasFile alias;
  if (!openAlias(path, &alias)) return 0;
  int kind = aliasReadable | (alias.keys.draws ? aliasDraws : 0) | (alias.keys.audio ? aliasAudio : 0);
  std::string section;
  if (alias.headed) {
    kind |= aliasIsObject;
    readSection(&alias.file, section);
  }
  uint32_t flags[2] = {};
  for (int i = 0; i < 2; i++) {
    const char* name = nextEffect(&alias.file, alias.prefix, i, section);
    if (!name) break;
    if (i == 1) kind |= aliasHasSecondEffect;
    int effect = findEffect(name, alias.keys.audio, alias.keys.draws);
    if (effect >= 0) flags[i] = effectList[effect]->flag;
  }
  if (flags[0] & effectControl || (alias.keys.draws && flags[1] & effectFilter)) kind |= aliasIsObject;
  return kind;
}

int placeAlias(const char* path, int frame, int layer) {
  AliasFile alias;
  if (!openAliasOrTell(path, &alias)) return -1;
  frame = std::max(frame, 0);
  beginUndoBatch();
  int head = alias.headed ? placeChain(alias, frame, layer) : placeEffects(alias, frame, layer);
  settleChains();
  endUndoBatch();
  if (head >= 0) notifyEffects(head, objectLoaded);
  return head;
}

int addAlias(const char* path, int object) {
  AliasFile alias;
  if (!openAliasOrTell(path, &alias)) return -1;
  if (!inUse(object) || aliasPrefix(objects[object].flags) != alias.prefix) return 0;
  std::string section;
  if (alias.headed) readSection(&alias.file, section);
  int head = headOf(object), added = 0;
  recordUndo(head, undoSnapshot | undoChain);
  for (int i = 0; i < maxSlots; i++) {
    const char* name = nextEffect(&alias.file, alias.prefix, i, section);
    if (!name) break;
    int effect = findEffect(name, alias.keys.audio, alias.keys.draws);
    if (effect < 0 || !takes(objects[head], effectList[effect])) continue;
    int slot = addChainEffect(head, effect);
    if (slot < 0) continue;
    applyToChain(section, head, slot);
    added++;
  }
  if (added) notifyEffects(head, objectLoaded);
  return added;
}

}  // namespace zenlay
