#include "zenlay/media/media_handles.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/paths.h"
#include "platform/system.h"
#include "platform/window.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"

namespace zenlay {

namespace {

constexpr int defaultHandleLimit = 8;
constexpr int alphaBits = 32;
constexpr size_t maxMovedPath = 258;
constexpr uint32_t slotBits = 0xFF;  // of a key; the generation lies above
constexpr uint32_t generationStep = slotBits + 1;
constexpr uint32_t callFlags = mediaQuiet | mediaExistence;  // concern one call, not the handle

struct MediaSlot {
  MediaHandle handle;  // null = free
  uint32_t key;        // generation | slot index
  uint32_t stamp;      // tick count at opening, never 0
  uint32_t lastUse;
  uint32_t flags;
  HostFileInfo info;
  char path[sizeof(MediaReference::file)];
};

struct MediaHandleCache {
  MediaSlot slots[maxMediaHandles];
  int limit;
  uint32_t useCounter;
  uint32_t generation;  // never 0, so that no key is 0
};

constinit MediaHandleCache cache{{}, defaultHandleLimit, 0, generationStep};

enum MediaFailure { failureMissing, failureFormat, failureSize, failureAlpha };

constexpr const char* failureTexts[][2] = {
    // video, audio
    {"Failed to read the video file\nFile not found", "Failed to read the audio file\nFile not found"},
    {"Failed to read the video file\nThere is a possibility that the format is not supported",
     "Failed to read the audio file\nThere is a possibility that the format is not support"},
    {"Can not read the video because image size is too large\n"
     "The maximum image size can be changed in the System Setting",
     nullptr},
    {"Failed to read the video file\n"
     "There is a possibility that the plug-in or format is not compatible with alpha channel",
     nullptr},
};

void closeSlot(MediaSlot& slot) {
  if (slot.handle) environment.hostFunctions->closeMediaFile(slot.handle);
  slot = {};
}

MediaHandle useSlot(MediaSlot& slot, HostFileInfo* info) {
  slot.lastUse = ++cache.useCounter;
  if (info) *info = slot.info;
  return slot.handle;
}

/// The live slot that the reference points to, or null when the reference is stale. The path is compared too: extra
/// data read from a file may carry any key.
MediaSlot* slotOf(const MediaReference& reference) {
  int index = static_cast<int>(reference.handleKey & slotBits);
  if (reference.handleStamp == 0 || index >= cache.limit) return nullptr;
  MediaSlot& slot = cache.slots[index];
  bool live = slot.handle && slot.key == reference.handleKey && slot.stamp == reference.handleStamp &&
              platform::equalNoCase(slot.path, reference.file);
  return live ? &slot : nullptr;
}

MediaSlot* slotOfPath(const char* path, uint32_t flags) {
  for (int i = 0; i < cache.limit; i++) {
    MediaSlot& slot = cache.slots[i];
    if (slot.handle && slot.flags == flags && platform::equalNoCase(slot.path, path)) return &slot;
  }
  return nullptr;
}

/// The first free slot, else the one used longest ago, closed.
int takeSlot() {
  MediaSlot* slots = cache.slots;
  int oldest = 0;
  for (int i = 0; i < cache.limit; i++) {
    if (!slots[i].handle) return i;
    if (slots[i].lastUse < slots[oldest].lastUse) oldest = i;
  }
  closeSlot(slots[oldest]);
  return oldest;
}

void clearReference(MediaReference* reference) {
  reference->file[0] = 0;
  reference->handleKey = reference->handleStamp = 0;
}

MediaHandle fail(MediaReference* reference, uint32_t flags, MediaFailure failure) {
  if (failure == failureMissing) environment.missingFiles++;
  if (!(flags & mediaQuiet))
    platform::messageBox(nullptr, failureTexts[failure][flags & openVideo ? 0 : 1], reference->file, boxError);
  clearReference(reference);
  return nullptr;
}

/// Nothing is opened and the reference keeps its name: looking at a project loses nothing.
MediaHandle testExistence(const char* path) {
  static constinit char exists = 0;
  if (platform::fileExists(path) || *movedFile(path)) return reinterpret_cast<MediaHandle>(&exists);
  environment.missingFiles++;
  return nullptr;
}

/// What is wrong with the picture of an opened file; -1 when it can be used.
int videoFailure(const HostFileInfo& info, uint32_t flags) {
  if (info.width < 1 || info.height < 1) return failureFormat;
  if (info.width > environment.workW || info.height > environment.workH) return failureSize;
  if (flags & openAlpha && info.videoBits != alphaBits) return failureAlpha;
  return -1;
}

void completeRate(HostFileInfo* info) {
  if (info->rate > 0 && info->scale > 0) return;
  info->rate = environment.clip.rate;
  info->scale = environment.clip.scale;
}

}  // namespace

void setHandleLimit(int count) {
  for (MediaSlot& slot : cache.slots) slot = {};
  cache.limit = std::clamp(count, 1, maxMediaHandles);
}

void closeAllMedia() {
  for (MediaSlot& slot : cache.slots) closeSlot(slot);
}

const char* movedFile(const char* path) {
  static constinit char moved[maxMovedPath + 1] = {};
  moved[0] = 0;
  if (!preferences.path_modify || environment.projectFolder.empty() || platform::fileExists(path)) return moved;
  std::string_view name = platform::fileName(path);
  std::string candidate = environment.projectFolder;
  candidate += name;
  if (name.empty() || candidate.size() > maxMovedPath || !platform::fileExists(candidate)) return moved;
  strcpy(moved, candidate.c_str());
  return moved;
}

MediaHandle openMedia(MediaReference* reference, uint32_t flags, HostFileInfo* info) {
  reference->file[sizeof reference->file - 1] = 0;
  if (!reference->file[0]) return nullptr;
  uint32_t handleFlags = flags & ~callFlags;
  if (MediaSlot* slot = slotOf(*reference)) {
    if (slot->flags == handleFlags) return useSlot(*slot, info);
    closeSlot(*slot);
  }
  reference->handleStamp = 0;
  if (flags & mediaExistence) return testExistence(reference->file);

  int index = takeSlot();
  if (const char* moved = movedFile(reference->file); *moved) strcpy(reference->file, moved);
  HostFileInfo opened{};
  const HostFunctionTable* host = environment.hostFunctions;
  MediaHandle handle = host->openMediaFile(reference->file, &opened, handleFlags);
  if (!handle) return fail(reference, flags, platform::fileExists(reference->file) ? failureFormat : failureMissing);
  if (flags & openVideo) {
    if (int failure = videoFailure(opened, flags); failure >= 0) {
      host->closeMediaFile(handle);
      return fail(reference, flags, static_cast<MediaFailure>(failure));
    }
    completeRate(&opened);
  }
  MediaSlot& slot = cache.slots[index];
  slot.handle = handle;
  slot.key = reference->handleKey = cache.generation | static_cast<uint32_t>(index);
  slot.stamp = reference->handleStamp = std::max(platform::tickCount(), 1u);
  slot.flags = handleFlags;
  slot.info = opened;
  strcpy(slot.path, reference->file);
  cache.generation += generationStep;
  if (cache.generation == 0) cache.generation = generationStep;
  return useSlot(slot, info);
}

MediaHandle openMediaByPath(const char* path, uint32_t flags, HostFileInfo* info) {
  MediaReference reference{};
  if (!path || strlen(path) >= sizeof reference.file) return nullptr;
  uint32_t handleFlags = flags & ~callFlags;
  if (MediaSlot* slot = slotOfPath(path, handleFlags)) return useSlot(*slot, info);
  if (const char* moved = movedFile(path); *moved) {
    if (MediaSlot* slot = slotOfPath(moved, handleFlags)) return useSlot(*slot, info);
  }
  strcpy(reference.file, path);
  return openMedia(&reference, flags, info);
}

void releaseMedia(MediaReference* reference) {
  if (MediaSlot* slot = slotOf(*reference)) closeSlot(*slot);
  reference->file[0] = 0;
  reference->handleStamp = 0;
}

}  // namespace zenlay
