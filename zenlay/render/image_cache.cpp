#include "zenlay/render/image_cache.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/system.h"
#include "zenlay/host/environment.h"
#include "zenlay/render/targets.h"

namespace zenlay {

namespace {

constexpr int64_t minSlotBytes = 256 * 1024;
constexpr int nameBytes = 260;
constexpr int packing = 16;  // images start and end at multiples of this
constexpr char temporaryName[] = "CACHE_TEMP";

struct CacheEntry {
  int width, height, bits;
  uint8_t* data;
  char name[nameBytes];
};

struct CacheSlot {
  uint32_t stamp;   // of the last use; 0 = free first
  CacheEntry main;  // main.data is the slot's memory
  int64_t used;     // bytes, a multiple of `packing`
  int packedCount;
  CacheEntry packed[maxPackedImages];
};

constinit CacheSlot slots[maxCacheSlots]{};
constinit int slotCount = 0;
constinit int64_t slotBytes = 0;
constinit uint32_t useCounter = 0;
constinit bool slotsAllocated = false;
constinit uint8_t* temporary = nullptr;
constinit int64_t temporaryBytes = 0;

/// Rows padded to 4 bytes, without the room behind the image.
int64_t imageBytes(int width, int height, int bits) { return ((int64_t{width} * bits + 7) / 8 + 3) / 4 * 4 * height; }

int64_t roundUp(int64_t bytes) { return (bytes + packing - 1) / packing * packing; }

void allocateSlots() {
  slotsAllocated = true;
  for (int i = 0; i < slotCount; i++) {
    slots[i].main.data = static_cast<uint8_t*>(reserveRenderMemory(static_cast<size_t>(slotBytes)));
    if (!slots[i].main.data) slotCount = i;
  }
}

void* temporaryImage(int64_t bytes) {
  if (bytes > temporaryBytes) {
    if (temporary) platform::releaseMemory(temporary, static_cast<size_t>(temporaryBytes));
    temporary = static_cast<uint8_t*>(reserveRenderMemory(static_cast<size_t>(bytes)));
    temporaryBytes = temporary ? bytes : 0;
  }
  return temporary;
}

void describe(CacheEntry* entry, int width, int height, int bits, const char* name) {
  entry->width = width;
  entry->height = height;
  entry->bits = bits;
  snprintf(entry->name, nameBytes, "%s", name);
}

/// The most recently used slot with room behind its images, or null.
CacheSlot* slotWithRoom(int64_t bytes) {
  CacheSlot* best = nullptr;
  for (int i = 0; i < slotCount; i++) {
    CacheSlot& slot = slots[i];
    if (slot.stamp == 0 || slot.packedCount >= maxPackedImages || slot.used + roundUp(bytes) + packing > slotBytes)
      continue;
    if (!best || slot.stamp > best->stamp) best = &slot;
  }
  return best;
}

CachedImage use(CacheSlot* slot, const CacheEntry& entry) {
  slot->stamp = ++useCounter;
  return {entry.data, entry.width, entry.height, entry.bits};
}

}  // namespace

void initialiseImageCache(int count) {
  freeImageCache();
  slotCount = std::clamp(count, 0, maxCacheSlots);
  slotBytes = std::max(int64_t{environment.workLineBytes} * environment.workRows + 16, minSlotBytes);
}

void freeImageCache() {
  for (CacheSlot& slot : slots) {
    if (slot.main.data) platform::releaseMemory(slot.main.data, static_cast<size_t>(slotBytes));
    slot = {};
  }
  if (temporary) platform::releaseMemory(temporary, static_cast<size_t>(temporaryBytes));
  temporary = nullptr;
  temporaryBytes = 0;
  slotCount = 0;
  useCounter = 0;
  slotsAllocated = false;
}

int imageCacheSlots() {
  if (!slotsAllocated) allocateSlots();
  return slotCount;
}

CachedImage findImage(const char* name) {
  if (!name || !*name) return {};
  for (int i = 0; i < slotCount; i++) {
    CacheSlot& slot = slots[i];
    if (slot.main.name[0] && strcasecmp(slot.main.name, name) == 0) return use(&slot, slot.main);
    for (int k = 0; k < slot.packedCount; k++)
      if (strcasecmp(slot.packed[k].name, name) == 0) return use(&slot, slot.packed[k]);
  }
  return {};
}

void* createImage(int width, int height, int bits, const char* name) {
  if (width <= 0 || height <= 0 || bits <= 0) return nullptr;
  // A name too long to be kept could never be found again.
  bool kept = name && *name && strcmp(name, temporaryName) != 0 && strlen(name) < nameBytes;
  int64_t bytes = imageBytes(width, height, bits);
  if (bytes + packing > slotBytes || imageCacheSlots() == 0) return temporaryImage(bytes + packing);

  if (CacheSlot* slot = slotWithRoom(bytes)) {
    uint8_t* data = slot->main.data + slot->used;
    if (kept) {
      CacheEntry& entry = slot->packed[slot->packedCount++];
      describe(&entry, width, height, bits, name);
      entry.data = data;
      slot->used += roundUp(bytes);
      slot->stamp = ++useCounter;
    }
    return data;
  }
  CacheSlot* oldest = std::min_element(slots, slots + slotCount,
                                       [](const CacheSlot& a, const CacheSlot& b) { return a.stamp < b.stamp; });
  describe(&oldest->main, width, height, bits, kept ? name : "");
  oldest->used = roundUp(bytes) + packing;
  oldest->packedCount = 0;
  oldest->stamp = kept ? ++useCounter : 0;
  return oldest->main.data;
}

void* effectImage(int32_t key, int width, int height, int bits, int index, bool* found) {
  char name[nameBytes];
  snprintf(name, sizeof name, "*cache%08x[%d]_%dx%d@%d", static_cast<uint32_t>(key), index, width, height, bits);
  CachedImage image = findImage(name);
  *found = image.data != nullptr;
  return image.data ? image.data : createImage(width, height, bits, name);
}

}  // namespace zenlay
