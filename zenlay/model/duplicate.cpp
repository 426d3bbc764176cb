// Duplicating objects by way of the clipboard.
#include <algorithm>
#include <climits>

#include "zenlay/host/environment.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/objects.h"

namespace zenlay {
namespace {

/// Frames and layers the objects cover.
struct Block {
  int start = INT_MAX, top = layersPerScene, bottom = 0;
};

Block blockOf(std::span<const int> list) {
  Block block;
  for (int object : list) {
    const ObjectRecord& o = objects[object];
    block.start = std::min(block.start, o.start);
    block.top = std::min(block.top, o.layer);
    block.bottom = std::max(block.bottom, o.layer);
  }
  return block;
}

bool fits(std::span<const int> list, int64_t frames, int layersDown) {
  return std::all_of(list.begin(), list.end(), [&](int object) {
    const ObjectRecord& o = objects[object];
    return o.end + frames <= INT_MAX && objectsInRange(static_cast<int>(o.start + frames),
                                                       static_cast<int>(o.end + frames), o.layer + layersDown) < 0;
  });
}

}  // namespace

int duplicateObjects(std::span<const int> selection, int frame) {
  std::vector<int> list;
  for (int object : selection)
    if (onTimeline(object)) list.push_back(object);
  if (list.empty() || frame < 0) return -1;
  const Block block = blockOf(list);
  int down = 0;
  while (block.bottom + down < layersPerScene && !fits(list, int64_t{frame} - block.start, down)) down++;
  if (block.bottom + down >= layersPerScene) return -1;
  clearClipboard();
  for (int object : list)
    if (!copyToClipboard(object)) {
      showMessage("Copy buffer is not enough", boxWarning);
      return -1;
    }
  return pasteClipboard(frame, block.top + down, nullptr, nullptr);
}

}  // namespace zenlay
