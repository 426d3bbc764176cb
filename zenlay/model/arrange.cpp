#include "zenlay/model/arrange.h"

#include <algorithm>
#include <climits>
#include <map>

#include "zenlay/host/preferences.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

int lengthOf(const ObjectRecord& o) { return o.end - o.start + 1; }

/// Frames free between the chain and the next object on its layer.
int64_t roomBehind(int object) {
  int last = chainRange(object).last;
  int next = last == INT_MAX ? -1 : objectsInRange(last + 1, INT_MAX, objects[object].layer);
  return (next < 0 ? int64_t{INT_MAX} : int64_t{objects[next].start} - 1) - last;
}

/// Gives the sections their lengths from frame `start` on; 0 when they have them.
int setLengths(const std::vector<int>& sections, int start, const std::vector<int>& lengths) {
  int changed = 0;
  for (size_t i = 0; i < sections.size(); start += lengths[i++]) {
    ObjectRecord& o = objects[sections[i]];
    if (o.start == start && lengthOf(o) == lengths[i]) continue;
    recordUndo(sections[i], undoPosition);
    o.start = start;
    o.end = start + lengths[i] - 1;
    changed = 1;
  }
  if (changed) rebuildOrder();
  return changed;
}

/// Lengths for sections whose ends lie at `ends` of `whole`, all counted from the chain's start, when the chain gets
/// `length` frames: the nearest frames, but every section one frame at least. `length` is not less than their number.
std::vector<int> sharedLengths(const std::vector<int64_t>& ends, int64_t whole, int length) {
  std::vector<int> lengths;
  int64_t before = 0, count = static_cast<int64_t>(ends.size());
  for (int64_t i = 0; i < count; i++) {
    int64_t end = (ends[static_cast<size_t>(i)] * length * 2 + whole) / (whole * 2);
    end = std::clamp(end, before + 1, length - (count - 1 - i));
    lengths.push_back(static_cast<int>(end - before));
    before = end;
  }
  return lengths;
}

/// Positions are recorded before the object moves.
void moveTo(int object, int layer, int start) {
  recordUndo(object, undoPosition);
  ObjectRecord& o = objects[object];
  o.layer = o.homeLayer = layer;
  o.end += start - o.start;
  o.start = start;
}

void recordLayers(int from) {
  for (int layer = from; layer < layersPerScene; layer++) recordUndo(layer | undoLayerTarget, undoLayer);
}

/// Objects of the current scene on layers `from` and below, before any of them moves.
std::vector<int> objectsBelow(int from) {
  std::vector<int> found;
  for (int e = layerRanges[from].first; e < sceneObjectCount; e++) found.push_back(indexOf(layerOrder[e]));
  return found;
}

/// What of one group stands behind a cut, by chain heads.
struct GroupBehind {
  std::vector<int> pieces, uncut;
};

void setGroup(int object, int group) {
  for (int section : sectionsOf(object)) objects[section].group = group;
}

void divideGroups(const std::map<int, GroupBehind>& groups) {
  for (const auto& [number, behind] : groups) {
    if (behind.pieces.empty()) continue;
    const bool alone = behind.pieces.size() + behind.uncut.size() == 1;
    const int fresh = alone ? 0 : newGroupNumber();
    if (fresh == 0 && !alone) continue;  // no number is left; they stay where they are
    for (int head : behind.uncut) recordUndo(head, undoSnapshot | undoChain);
    for (auto heads : {&behind.pieces, &behind.uncut})
      for (int head : *heads) setGroup(head, fresh);
  }
}

}  // namespace

int setSectionLength(int object, int length) {
  if (!onTimeline(object) || length < 1) return 0;
  std::vector<int> sections, lengths;
  for (int section = object; section >= 0; section = nextSection(section)) {
    sections.push_back(section);
    lengths.push_back(lengthOf(objects[section]));
  }
  lengths[0] = static_cast<int>(std::min<int64_t>(length, lengths[0] + roomBehind(object)));
  return setLengths(sections, objects[object].start, lengths) ? lengths[0] : 0;
}

int setObjectLength(int object, int length) {
  if (!onTimeline(object) || length < 1) return 0;
  const std::vector<int> sections = sectionsOf(object);
  FrameRange range = chainRange(object);
  int64_t whole = int64_t{range.last} - range.first + 1;
  std::vector<int64_t> ends;
  for (int section : sections) ends.push_back(int64_t{objects[section].end} - range.first + 1);
  length = static_cast<int>(std::min<int64_t>(length, whole + roomBehind(object)));
  length = std::max(length, static_cast<int>(sections.size()));
  return setLengths(sections, range.first, sharedLengths(ends, whole, length)) ? length : 0;
}

int spaceMidpointsEvenly(int object) {
  if (!onTimeline(object)) return 0;
  const std::vector<int> sections = sectionsOf(object);
  FrameRange range = chainRange(object);
  std::vector<int64_t> ends(sections.size());
  for (size_t i = 0; i < ends.size(); i++) ends[i] = static_cast<int64_t>(i) + 1;
  return setLengths(sections, range.first,
                    sharedLengths(ends, static_cast<int64_t>(ends.size()), range.last - range.first + 1));
}

std::vector<int> splitObjects(std::span<const int> selection, int frame) {
  std::vector<int> heads, pieces;
  for (int object : selection)
    if (onTimeline(object)) heads.push_back(headOf(object));
  std::sort(heads.begin(), heads.end());
  heads.erase(std::unique(heads.begin(), heads.end()), heads.end());
  std::map<int, GroupBehind> groups;
  for (int head : heads) {
    const int group = objects[head].group;
    if (objects[head].start >= frame) {
      if (group > 0) groups[group].uncut.push_back(head);
    } else if (int piece = splitObject(head, frame); piece >= 0) {
      pieces.push_back(piece);
      if (group > 0) groups[group].pieces.push_back(piece);
    }
  }
  if (preferences.divide_group) divideGroups(groups);
  return pieces;
}

std::vector<int> cutAtRange(std::span<const int> selection, int first, int last) {
  if (first > last || last == INT_MAX) return {};
  std::vector<int> pieces = splitObjects(selection, first);
  std::vector<int> all(selection.begin(), selection.end());
  all.insert(all.end(), pieces.begin(), pieces.end());
  const std::vector<int> behind = splitObjects(all, last + 1);
  pieces.insert(pieces.end(), behind.begin(), behind.end());
  return pieces;
}

void insertLayer(int layer) {
  if (layer < 0 || layer >= layersPerScene) return;
  recordLayers(layer);
  for (int object : objectsBelow(layer)) {
    const ObjectRecord& o = objects[object];
    moveTo(object, o.layer == layersPerScene - 1 ? layer : o.layer + 1, o.start);
  }
  std::rotate(layers + layer, layers + layersPerScene - 1, layers + layersPerScene);
  rebuildOrder();
}

void deleteLayer(int layer) {
  if (layer < 0 || layer >= layersPerScene) return;
  recordLayers(layer);
  std::vector<int> deleted;
  for (int e = layerRanges[layer].first; e <= layerRanges[layer].last; e++) deleted.push_back(indexOf(layerOrder[e]));
  const std::vector<int> below = layer + 1 < layersPerScene ? objectsBelow(layer + 1) : std::vector<int>{};
  deleteObjects(deleted);
  for (int object : below) moveTo(object, objects[object].layer - 1, objects[object].start);
  std::move(layers + layer + 1, layers + layersPerScene, layers + layer);
  layers[layersPerScene - 1] = {};
  rebuildOrder();
}

int insertEmptyFrames(int frame, int count) {
  if (count < 1) return 0;
  std::vector<int> moved;
  for (int e = 0; e < sceneObjectCount; e++) {
    int object = indexOf(layerOrder[e]);
    if (objects[headOf(object)].start < frame) continue;
    if (objects[object].end > INT_MAX - count) return 0;
    moved.push_back(object);
  }
  for (int object : moved) moveTo(object, objects[object].layer, objects[object].start + count);
  if (!moved.empty()) rebuildOrder();
  return !moved.empty();
}

}  // namespace zenlay
