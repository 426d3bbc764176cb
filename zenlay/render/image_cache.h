// Least-recently-used cache of decoded pictures and effect images in a few large slots.
#pragma once

#include <cstdint>

namespace zenlay {

inline constexpr int maxCacheSlots = 32;
inline constexpr int maxPackedImages = 32;

/// Clamps the count to 0..32, takes the slot size from the environment and clears all slots; memory is allocated on
/// first use.
void initialiseImageCache(int slots);
inline constexpr int defaultImageCacheSlots = 4;
void freeImageCache();
/// Slots in use after the first allocation; 0 when nothing is cached.
int imageCacheSlots();
struct CachedImage {
  void* data;  // rows padded to 4 bytes; null when not found
  int width, height, bits;
};
/// By name, letter case ignored.
CachedImage findImage(const char* name);
/// Always succeeds while memory lasts (null otherwise). "CACHE_TEMP" is never found again. `name` null is the same.
void* createImage(int width, int height, int bits, const char* name);
/// The effect image of (key, index, size): an existing one with *found = true, or a new one to be filled.
void* effectImage(int32_t key, int width, int height, int bits, int index, bool* found);
inline constexpr int32_t clipCacheKey = -100;

}  // namespace zenlay
