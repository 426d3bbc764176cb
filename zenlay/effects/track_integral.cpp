#include "zenlay/effects/track_integral.h"

#include <algorithm>
#include <iterator>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/object_services.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/render/binding.h"

namespace zenlay {
namespace {

constexpr int hundredths = 100;  // of a frame
constexpr int checkpoints = 256;

/// The track of one section.
struct SectionTrack {
  const EffectDefinition* effect;
  int section, individual;
  int firstTrack, inEffect;

  int32_t mode() const { return objects[section].modes[firstTrack + inEffect] & modeNumber; }
  int32_t at(int frame) const {
    int32_t value = objects[section].startValues[firstTrack + inEffect];
    evaluateTracks(&value, frame, 0, section, individual, firstTrack, evaluateSingle ^ inEffect, effect);
    return value;
  }
};

/// Sums of a section's values as far as they have been asked for.
struct SectionSums {
  uint64_t key;  // of everything the values depend on
  int stride;    // frames from one checkpoint to the next
  int reached;   // last checkpoint that has its sum
  int64_t atCheckpoint[checkpoints];
  int lastFrames;  // how many frames were asked for last
  int64_t last;    // and their sum
};
constinit SectionSums cache[32] = {};

/// FNV-1a over whole words.
void mix(uint64_t* key, uint64_t value) { *key = (*key ^ value) * 0x100000001B3; }

/// Values depend on the tracks of the effect (tracks move together) in every section of the chain (curves pass through
/// its midpoints).
uint64_t keyOf(const SectionTrack& track) {
  uint64_t key = 0xCBF29CE484222325;
  mix(&key, reinterpret_cast<uintptr_t>(track.effect));
  for (int part : {track.section, track.individual, track.firstTrack, track.inEffect})
    mix(&key, static_cast<uint32_t>(part));
  for (int section = headOf(track.section); section >= 0; section = nextSection(section)) {
    const ObjectRecord& o = objects[section];
    for (int part : {section, o.start, o.end}) mix(&key, static_cast<uint32_t>(part));
    const int last = std::min(track.firstTrack + track.effect->track_count, maxTracks);
    for (int i = track.firstTrack; i < last; i++) {
      for (int32_t part : {o.startValues[i], o.endValues[i], o.modes[i], o.params[i]})
        mix(&key, static_cast<uint32_t>(part));
    }
  }
  return key ^ key >> 32;
}

/// The sum of the section's first `frames` values.
int64_t sumOfValues(const SectionTrack& track, int frames) {
  const ObjectRecord& o = objects[track.section];
  if (track.mode() == modeNone || track.mode() == modeTeleport) return int64_t{track.at(o.start)} * frames;
  int64_t sum = 0;
  if (track.mode() == modeScript) {
    for (int i = 0; i < frames; i++) sum += track.at(o.start + i);
    return sum;
  }
  const uint64_t key = keyOf(track);
  SectionSums& sums = cache[key % std::size(cache)];
  if (sums.key != key) {
    sums = {};
    sums.key = key;
    sums.stride = (o.end - o.start) / checkpoints + 1;
  }
  const int checkpoint = std::min(frames / sums.stride, sums.reached);
  int done = checkpoint * sums.stride;
  sum = sums.atCheckpoint[checkpoint];
  if (sums.lastFrames > done && sums.lastFrames <= frames) {
    done = sums.lastFrames;
    sum = sums.last;
  }
  while (done < frames) {
    sum += track.at(o.start + done);
    done++;
    if (done == (sums.reached + 1) * sums.stride && sums.reached + 1 < checkpoints)
      sums.atCheckpoint[++sums.reached] = sum;
  }
  sums.lastFrames = frames;
  sums.last = sum;
  return sum;
}

}  // namespace

int64_t trackIntegral(EffectDefinition* effect, EffectProcessInfo* info, int track) {
  return effect->bound_object ? trackIntegralOf(effect->object_ref, info, track) : 0;
}

int64_t trackIntegralOf(ObjectRef ref, EffectProcessInfo* info, int track) {
  const ObjectRecord* object = objectOf(ref);
  const int slot = slotOfRef(ref), now = info->absoluteFrame;
  const EffectDefinition* effect = object && slot < maxSlots ? slotEffect(object, slot) : nullptr;
  if (!effect || track < 0 || track >= effect->track_count) return 0;
  int64_t sum = 0;
  for (int section = headOf(indexOf(object)); section >= 0; section = nextSection(section)) {
    const ObjectRecord& o = objects[section];
    if (o.start > now) break;
    const SectionTrack moving{effect, section, info->index, o.slots[slot].firstTrack, track};
    const int last = std::min(o.end, now);                       // of the section's frames so far
    const int part = last == now ? info->subFrame : hundredths;  // of it that have passed
    sum += sumOfValues(moving, last - o.start) * hundredths + int64_t{moving.at(last)} * part;
  }
  return sum;
}

}  // namespace zenlay
