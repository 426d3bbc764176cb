#include "zenlay/model/extra_data.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "zenlay/model/objects.h"

namespace zenlay {

bool refuseGrowth;
int growthToRefuse;

bool mayGrow() {
  if (growthToRefuse > 0 && --growthToRefuse == 0) refuseGrowth = true;
  return !refuseGrowth;
}

namespace {

uint8_t* region;
uint32_t regionBytes;
/// By run length in units: no free run of that length begins below, so that a search may start there. Longer runs go by
/// the last entry.
constexpr size_t longestRun = (maxExtraData + sizeof(uint32_t) + extraDataUnit - 1) / extraDataUnit;
constinit uint32_t searchFrom[longestRun + 1]{};

uint32_t lengthAt(uint32_t offset) {
  uint32_t length;
  memcpy(&length, region + offset, sizeof length);
  return length;
}
void setLength(uint32_t offset, uint32_t length) { memcpy(region + offset, &length, sizeof length); }

uint32_t bytesNeeded(uint32_t size) { return (size + extraDataUnit + 3) / extraDataUnit * extraDataUnit; }

/// First fit: offset of `bytes` consecutive free bytes, or regionBytes.
uint32_t findRun(uint32_t bytes) {
  size_t units = bytes / extraDataUnit;
  uint32_t run = searchFrom[std::min(units, longestRun)];
  for (uint32_t at = run; at < regionBytes && at - run < bytes;) {
    uint32_t length = lengthAt(at);
    at += length ? length : extraDataUnit;
    if (length) run = at;
  }
  for (; units <= longestRun; units++) searchFrom[units] = std::max(searchFrom[units], run);
  return regionBytes - run >= bytes ? run : regionBytes;
}

bool growRegion() {
  if (regionBytes > UINT32_MAX - extraDataGrowth || !mayGrow()) return false;
  void* grown = realloc(region, regionBytes + extraDataGrowth);
  if (!grown) return false;
  region = static_cast<uint8_t*>(grown);
  memset(region + regionBytes, 0, extraDataGrowth);
  regionBytes += extraDataGrowth;
  return true;
}

/// Offset of `bytes` free bytes, growing the region; regionBytes when that fails.
uint32_t findOrGrow(uint32_t bytes) {
  uint32_t at;
  while ((at = findRun(bytes)) == regionBytes)
    if (!growRegion()) break;
  return at;
}

}  // namespace

int makeExtraDataRoom(uint32_t size) { return makeExtraDataRoom({&size, 1}); }

int makeExtraDataRoom(std::span<const uint32_t> sizes) {
  uint64_t bytes = 0;
  for (uint32_t size : sizes)
    if (size) bytes += bytesNeeded(size);
  return bytes == 0 ||
         (bytes < UINT32_MAX - extraDataGrowth && findOrGrow(static_cast<uint32_t>(bytes)) != regionBytes);
}

int reserveExtraData(int object, uint32_t size) {
  ObjectRecord& o = objects[object];
  if (o.extraDataSize == size) return 1;
  if (size == 0) {
    releaseExtraData(object);
    return 1;
  }
  uint32_t bytes = bytesNeeded(size);
  if (o.extraDataSize && lengthAt(o.extraDataBlock) >= bytes) {
    o.extraDataSize = size;
    return 1;
  }
  uint32_t at = findOrGrow(bytes);
  if (at == regionBytes) return 0;
  releaseExtraData(object);
  objects[object].extraDataBlock = at;
  objects[object].extraDataSize = size;
  memset(region + at, 0, bytes);
  setLength(at, bytes);
  return 1;
}

void releaseExtraData(int object) {
  ObjectRecord& o = objects[object];
  if (o.extraDataSize) {
    uint32_t end = o.extraDataBlock + lengthAt(o.extraDataBlock);
    for (uint32_t at = o.extraDataBlock; at < end; at += extraDataUnit) setLength(at, 0);
    // What is free in front of the block becomes one run with it.
    std::ranges::fill(searchFrom, std::min(searchFrom[1], o.extraDataBlock));
  }
  o.extraDataSize = 0;
}

uint8_t* extraDataBlockOf(int object) {
  const ObjectRecord& o = objects[object];
  return o.extraDataSize ? region + o.extraDataBlock + sizeof(uint32_t) : nullptr;
}

ExtraDataRegion extraDataRegion() { return {region, regionBytes}; }

void freeExtraData() {
  free(region);
  region = nullptr;
  regionBytes = 0;
  std::ranges::fill(searchFrom, 0);
}

}  // namespace zenlay
