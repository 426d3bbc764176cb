#include "zenlay/model/clipboard.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <queue>
#include <tuple>
#include <vector>

#include "zenlay/model/extra_data.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

/// The end of the area is kept free for paste's table, one object index an entry.
constexpr size_t indexBytes = sizeof(int32_t);

struct ObjectClipboard {
  uint8_t* area;
  size_t capacity, used;
  int entries;
};
constinit ObjectClipboard objectClipboard{};

bool growArea() {
  if (!mayGrow()) return false;
  void* grown = realloc(objectClipboard.area, objectClipboard.capacity + clipboardGrowth);
  if (!grown) return false;
  objectClipboard.area = static_cast<uint8_t*>(grown);
  objectClipboard.capacity += clipboardGrowth;
  return true;
}

void append(const void* bytes, size_t size) {
  if (size) memcpy(objectClipboard.area + objectClipboard.used, bytes, size);
  objectClipboard.used += size;
}

/// Where an entry lies in the area, and where it goes: its own place, later moved by the paste's shifts.
struct Entry {
  size_t offset;
  uint32_t extraBytes;
  int layer;
  int64_t start, end;
  int chainHead;
};

ObjectRecord recordAt(const Entry& entry) {
  ObjectRecord record;
  memcpy(&record, objectClipboard.area + entry.offset, sizeof record);
  return record;
}

const uint8_t* extraDataAt(const Entry& entry) { return objectClipboard.area + entry.offset + sizeof(ObjectRecord); }

void setPasted(int entry, int object) {
  int32_t index = object;
  memcpy(objectClipboard.area + objectClipboard.used + static_cast<size_t>(entry) * indexBytes, &index, indexBytes);
}

int pastedAs(int entry) {
  int32_t index;
  memcpy(&index, objectClipboard.area + objectClipboard.used + static_cast<size_t>(entry) * indexBytes, indexBytes);
  return index;
}

std::vector<Entry> readEntries() {
  std::vector<Entry> entries;
  Entry entry{};
  for (int i = 0; i < objectClipboard.entries; i++) {
    ObjectRecord record = recordAt(entry);
    entry = {entry.offset, record.extraDataSize, record.homeLayer, record.start, record.end, record.chainHead};
    entries.push_back(entry);
    entry.offset += sizeof record + record.extraDataSize;
  }
  return entries;
}

/// The entries by layer and start.
std::vector<int> sortedEntries(const std::vector<Entry>& entries) {
  std::vector<int> sorted(entries.size());
  for (size_t i = 0; i < sorted.size(); i++) sorted[i] = static_cast<int>(i);
  auto key = [&](int i) { return std::tuple(entries[i].layer, entries[i].start, i); };
  std::sort(sorted.begin(), sorted.end(), [&](int a, int b) { return key(a) < key(b); });
  return sorted;
}

/// Leaves out entries that overlap one before them on their layer: copies of one object, or objects of several scenes.
void dropOverlaps(const std::vector<Entry>& entries, std::vector<int>& sorted) {
  size_t kept = 0;
  for (int i : sorted) {
    const Entry* before = kept ? &entries[sorted[kept - 1]] : nullptr;
    if (!before || before->layer != entries[i].layer || before->end < entries[i].start) sorted[kept++] = i;
  }
  sorted.resize(kept);
}

// ---- Room in time ----

struct Block {
  int layer;
  int64_t first, last;  // frames
};

/// The entries as they stand, what touches joined.
std::vector<Block> blocksOf(const std::vector<Entry>& entries, const std::vector<int>& sorted) {
  std::vector<Block> blocks;
  for (int i : sorted) {
    const Entry& e = entries[i];
    if (!blocks.empty() && blocks.back().layer == e.layer && blocks.back().last + 1 == e.start)
      blocks.back().last = e.end;
    else
      blocks.push_back({e.layer, e.start, e.end});
  }
  return blocks;
}

/// Where the objects of a layer lie; gaps of less than `needed` frames count as taken.
std::vector<Block> takenFrames(int layer, int64_t needed) {
  std::vector<Block> taken;
  for (int i = layerRanges[layer].first; i <= layerRanges[layer].last; i++) {
    const ObjectRecord& o = *layerOrder[i];
    if (!taken.empty() && o.start - taken.back().last - 1 < needed)
      taken.back().last = o.end;
    else
      taken.push_back({layer, o.start, o.end});
  }
  return taken;
}

/// The next shifts at which a block collides; later ones follow from `next`.
struct Collision {
  int64_t first, last;
  const Block* block;
  size_t next;  // in the taken frames of the block's layer
  friend bool operator<(const Collision& a, const Collision& b) { return a.first > b.first; }
};

/// The smallest shift from `shift` on at which no block meets an object. Moving the block that collides just behind the
/// object in its way and looking at all entries again ends there too; here every collision is met at most once.
int64_t makeRoom(const std::vector<Block>& blocks, int64_t shift) {
  std::vector<Block> taken[layersPerScene];
  std::priority_queue<Collision> collisions;
  auto pushNext = [&](const Block* block, size_t from) {
    const std::vector<Block>& own = taken[block->layer];
    auto behind = [](const Block& b, int64_t frame) { return b.last < frame; };
    auto at =
        std::lower_bound(own.begin() + static_cast<std::ptrdiff_t>(from), own.end(), block->first + shift, behind);
    if (at == own.end()) return;
    collisions.push(
        {at->first - block->last, at->last - block->first, block, static_cast<size_t>(at - own.begin()) + 1});
  };
  for (size_t i = 0, next; i < blocks.size(); i = next) {
    int64_t shortest = INT64_MAX;
    for (next = i; next < blocks.size() && blocks[next].layer == blocks[i].layer; next++)
      shortest = std::min(shortest, blocks[next].last - blocks[next].first + 1);
    taken[blocks[i].layer] = takenFrames(blocks[i].layer, shortest);
    for (size_t k = i; k < next; k++) pushNext(&blocks[k], 0);
  }
  while (!collisions.empty() && collisions.top().first <= shift) {
    Collision met = collisions.top();
    collisions.pop();
    shift = std::max(shift, met.last + 1);
    pushNext(met.block, met.next);
  }
  return shift;
}

/// Moves the entries to where they go; false when frames would pass 32 bits.
bool moveEntries(std::vector<Entry>& entries, const std::vector<int>& sorted, int frame, int layer) {
  int64_t start = INT64_MAX, end = 0;
  int top = layersPerScene, bottom = 0;
  for (int i : sorted) {
    start = std::min(start, entries[i].start);
    end = std::max(end, entries[i].end);
    top = std::min(top, entries[i].layer);
    bottom = std::max(bottom, entries[i].layer);
  }
  int layerShift = std::min(std::max(layer, 0) - top, layersPerScene - 1 - bottom);
  for (Entry& entry : entries) entry.layer += layerShift;
  int64_t shift = makeRoom(blocksOf(entries, sorted), std::max(frame, 0) - start);
  for (Entry& entry : entries) entry.start += shift, entry.end += shift;
  return end + shift <= INT32_MAX;
}

// ---- Objects ----

/// A chain's marker until the order is rebuilt.
int provisional(int chainHead) { return chainHead >= 0 ? -2 - chainHead : -1; }

/// The new object, or -1 when the model cannot take it.
int pasteEntry(const Entry& entry) {
  int object = takeFreeObject();
  if (object < 0) return -1;
  ObjectRecord& o = objects[object];
  o.flags = objectInUse;
  if (!reserveExtraData(object, entry.extraBytes)) {
    releaseObject(object);
    tellExtraDataRefused();
    return -1;
  }
  uint32_t block = o.extraDataBlock;
  o = recordAt(entry);
  o.extraDataBlock = block;
  if (entry.extraBytes) memcpy(extraDataBlockOf(object), extraDataAt(entry), entry.extraBytes);
  o.start = static_cast<int32_t>(entry.start);
  o.end = static_cast<int32_t>(entry.end);
  o.layer = o.homeLayer = entry.layer;
  o.scene = currentScene;
  o.chainHead = provisional(o.chainHead);
  o.group = -std::max(o.group, 0);
  recordUndo(object, undoCreated);
  return object;
}

/// A section pasted without the one before it begins a chain of its own: the marker of that run of sections is its own.
void separateRuns(const std::vector<Entry>& entries, const std::vector<int>& sorted) {
  const Entry* before = nullptr;
  int marker = -1;
  for (int i : sorted) {
    if (pastedAs(i) < 0) continue;
    const Entry& e = entries[i];
    bool follows = before && before->chainHead == e.chainHead && before->layer == e.layer &&
                   before->end + 1 == e.start && !e.extraBytes;  // only heads carry extra data
    if (!follows) marker = provisional(e.chainHead < 0 ? -1 : pastedAs(i));
    objects[pastedAs(i)].chainHead = marker;
    before = &e;
  }
}

/// A section that came to head a chain takes over the extra data of the entry that has its chain's. False when there is
/// no memory for it.
bool completeHead(int object, const Entry& entry, const std::vector<Entry>& entries) {
  if (entry.chainHead < 0 || entry.extraBytes) return true;
  if (!repack(object)) return false;
  uint32_t size = objects[object].extraDataSize;
  auto carriesIt = [&](const Entry& e) { return e.chainHead == entry.chainHead && e.extraBytes == size; };
  auto carrier = std::find_if(entries.begin(), entries.end(), carriesIt);
  if (size && carrier != entries.end()) memcpy(extraDataBlockOf(object), extraDataAt(*carrier), size);
  return true;
}

void releaseChain(int head) {
  for (int section : sectionsOf(head)) releaseObject(section);
}

/// Makes the pasted heads whole, gives up those that cannot be, and tells the effects of the others.
void settleHeads(const std::vector<Entry>& entries) {
  bool released = false;
  for (int i = 0; i < objectClipboard.entries; i++) {
    int object = pastedAs(i);
    if (!inUse(object) || headOf(object) != object || completeHead(object, entries[i], entries)) continue;
    releaseChain(object);
    released = true;
  }
  if (released) {
    tellExtraDataRefused();
    rebuildOrder();
  }
  for (int i = 0; i < objectClipboard.entries; i++) {
    int object = pastedAs(i);
    if (!inUse(object))
      setPasted(i, -1);
    else if (headOf(object) == object)
      notifyEffects(object, objectPasted);
  }
}

struct PastedRange {
  int object = -1;  // smallest start, then layer
  int first = INT32_MAX, last = 0;
};

PastedRange pastedRange() {
  PastedRange range;
  for (int i = 0; i < objectClipboard.entries; i++) {
    int object = pastedAs(i);
    if (object < 0) continue;
    const ObjectRecord& o = objects[object];
    bool sooner = o.start < range.first || (o.start == range.first && o.layer < objects[range.object].layer);
    if (range.object < 0 || sooner) range.object = object;
    range.first = std::min(range.first, o.start);
    range.last = std::max(range.last, o.end);
  }
  return range;
}

}  // namespace

void clearClipboard() {
  objectClipboard.used = 0;
  objectClipboard.entries = 0;
}

int clipboardEntries() { return objectClipboard.entries; }

int copyToClipboard(int object) {
  if (!inUse(object)) return 1;
  const ObjectRecord& o = objects[object];
  size_t entryBytes = sizeof o + o.extraDataSize;
  size_t needed = entryBytes + (static_cast<size_t>(objectClipboard.entries) + 1) * indexBytes;
  if (objectClipboard.used + needed >= objectClipboard.capacity && !growArea()) {
    clearClipboard();
    return 0;
  }
  append(&o, sizeof o);
  append(extraDataBlockOf(object), o.extraDataSize);
  objectClipboard.entries++;
  return 1;
}

int copyChainToClipboard(int object) {
  if (!inUse(object)) return 1;
  for (int section : sectionsOf(object))
    if (!copyToClipboard(section)) return 0;
  return 1;
}

int pasteClipboard(int frame, int layer, int* first, int* last) {
  std::vector<Entry> entries = readEntries();
  std::vector<int> sorted = sortedEntries(entries);
  dropOverlaps(entries, sorted);
  if (sorted.empty() || !moveEntries(entries, sorted, frame, layer)) return -1;
  for (int i = 0; i < objectClipboard.entries; i++) setPasted(i, -1);
  std::vector<int> inCopyOrder = sorted;
  std::sort(inCopyOrder.begin(), inCopyOrder.end());
  for (int i : inCopyOrder) {
    int object = pasteEntry(entries[i]);
    if (object < 0) break;
    setPasted(i, object);
  }
  separateRuns(entries, sorted);
  rebuildOrder();
  renumberMarkedGroups();
  settleHeads(entries);
  PastedRange range = pastedRange();
  if (range.object < 0) return -1;
  if (first) *first = range.first;
  if (last) *last = range.last;
  return range.object;
}

void freeClipboard() {
  free(objectClipboard.area);
  objectClipboard = {};
}

}  // namespace zenlay
