#include "zenlay/files/project_layout.h"

#include <cstring>

namespace zenlay {
namespace {

/// Records shaped like today's, with other capacities.
int wideSize(const RecordShape& s) {
  return 84 + 12 * s.slots + (s.slots + 3) / 4 * 4 + 8 + 12 * s.tracks + 4 * s.checks + 8 + 4 * s.tracks + 8;
}
/// The oldest records: 16-bit modes, and neither group, parameters nor scene.
int narrowSize(const RecordShape& s) {
  return 84 + 12 * s.slots + (s.slots + 3) / 4 * 4 + 8 + 10 * s.tracks + 4 * s.checks + 4;
}
static_assert(sizeof(ObjectRecord) == 1480);

struct Reader {
  const uint8_t* at;
  void take(void* to, int bytes) {
    memcpy(to, at, static_cast<size_t>(bytes));
    at += bytes;
  }
};

}  // namespace

bool recordShapeFits(const RecordShape& s) {
  if (s.tracks < 1 || s.tracks > maxTracks || s.checks < 1 || s.checks > maxChecks) return false;
  if (s.slots < 1 || s.slots > maxSlots || s.size > static_cast<int>(sizeof(ObjectRecord))) return false;
  return s.size >= narrowSize(s);
}

ObjectRecord convertRecord(const uint8_t* stored, const RecordShape& s) {
  ObjectRecord o{};
  bool wide = s.size >= wideSize(s);
  for (EffectSlot& slot : o.slots) slot.effect = -1;
  Reader in{stored};
  in.take(&o, 84);
  in.take(o.slots, 12 * s.slots);
  in.take(o.slotFlags, s.slots);
  in.at += (s.slots + 3) / 4 * 4 - s.slots;
  in.take(&o.trackCount, 8);
  in.take(o.startValues, 4 * s.tracks);
  in.take(o.endValues, 4 * s.tracks);
  if (wide) {
    in.take(o.modes, 4 * s.tracks);
  } else {
    int16_t modes[maxTracks];
    in.take(modes, 2 * s.tracks);
    for (int t = 0; t < s.tracks; t++) o.modes[t] = modes[t];
  }
  in.take(o.checks, 4 * s.checks);
  in.take(&o.extraDataBlock, 4);
  o.homeLayer = o.layer;
  if (!wide) return o;
  in.take(&o.group, 4);
  in.take(o.params, 4 * s.tracks);
  in.take(&o.homeLayer, 4);
  in.take(&o.scene, 4);
  return o;
}

}  // namespace zenlay
