// The extended region: one growable byte region shared by all objects, in units of 320 bytes. A block is a run of units
// whose first 4 bytes hold its length in bytes; a unit whose first 4 bytes are 0 is free. Only a chain head owns a
// block.
#pragma once

#include <span>

#include "zenlay/model/records.h"

namespace zenlay {

inline constexpr int extraDataUnit = 320;
inline constexpr int extraDataGrowth = 160000;

/// Makes the object's block hold at least `size` bytes; its contents are not carried over. 0 when the region cannot
/// grow.
int reserveExtraData(int object, uint32_t size);
void releaseExtraData(int object);
/// Grows the region until the next reservation of `size` bytes cannot fail; 0 when it cannot.
int makeExtraDataRoom(uint32_t size);
/// The same for one reservation of each size, in any order.
int makeExtraDataRoom(std::span<const uint32_t> sizes);
/// The object's own extra data (behind the length word); valid until the next reservation. Null when it has none.
uint8_t* extraDataBlockOf(int object);
void freeExtraData();

/// The whole region, for the checker.
struct ExtraDataRegion {
  const uint8_t* bytes;
  uint32_t size;
};
ExtraDataRegion extraDataRegion();

/// For tests: while `refuseGrowth` is set, the region, the object table and the undo area refuse to grow. A positive
/// `growthToRefuse` n lets n - 1 growths pass and sets it at the n-th.
extern bool refuseGrowth;
extern int growthToRefuse;
/// Asked by each of them before it grows.
bool mayGrow();

}  // namespace zenlay
