// The list of usable effects: the 100 built-in effects in registry order, then the qualifying host filters.
#pragma once

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

inline constexpr int registryCount = 100;
inline constexpr int maxEffects = 512;

/// Indices of registry entries that the code names.
enum RegistryIndex {
  effectVideoFile = 0, effectImageFile = 1, effectAudioFile = 2, effectText = 3, effectGraphic = 4, effectScene = 7,
  effectStandardDrawing = 10, effectAdvancedDrawing = 11, effectStandardPlayback = 12,
  effectTimeControl = 93, effectGroupControl = 94, effectCameraControl = 95,
};

extern EffectDefinition* const registry[registryCount];
extern EffectDefinition* effectList[maxEffects];
extern int effectCount;

/// Completes the built-in definitions, calls their `init` and appends them to effectList.
void registerBuiltIns(const HostFunctionTable*, const EffectServiceTable*, HostFilterRecord* mainFilter);
/// Whether a host filter may be used as an effect.
bool qualifiesAsEffect(const HostFilterRecord*);
/// Appends the filter when it qualifies; 1 when it was taken.
int adoptHostFilter(HostFilterRecord*);
/// Calls `exit` of every built-in that has one and empties the list.
void exitEffects();
/// First entry with that name (exact), audio bit and object-level property (any of media, drawing, filter); -1 if none.
int findEffect(const char* name, int audio, int objectLevel);

inline bool isBuiltIn(const EffectDefinition* d) { return d->flag & effectBuiltIn; }
inline int extraDataBytes(const EffectDefinition* d) { return d->flag & effectHasExtraData ? d->exdata_size : 0; }
/// Calls use(field, offset) for every field of the extra data, reserved bytes too; for none of an unnamed block.
template <class Use>
void forEachField(const EffectDefinition* d, Use use) {
  if (!isBuiltIn(d) || !d->exdata_fields) return;
  int offset = 0;
  for (const ExdataField* field = d->exdata_fields; offset < d->exdata_size; offset += field++->size)
    use(*field, offset);
}
/// Display denominator of a track, 1 for integers and for host filters.
inline int trackScale(const EffectDefinition* d, int track) {
  return isBuiltIn(d) && d->track_scale && d->track_scale[track] > 1 ? d->track_scale[track] : 1;
}
/// What a foreign filter leaves out is the host's.
inline int trackDefault(const EffectDefinition* d, int track) {
  return d->track_defaults ? d->track_defaults[track] : 0;
}
inline int trackMinimum(const EffectDefinition* d, int track) { return d->track_min ? d->track_min[track] : 0; }
inline int trackMaximum(const EffectDefinition* d, int track) { return d->track_max ? d->track_max[track] : 256; }

}  // namespace zenlay
