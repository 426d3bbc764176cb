// The frame render pipeline: scenes, layers, objects and their effect chains.
#pragma once

#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/model/records.h"

namespace zenlay {

inline constexpr int maxSceneDepth = 4;

/// Renders a scene (0 = the current one) into the frame record. 1 rendered or no project is open, 0 refused (nested too
/// deep, no memory) with the frame untouched. With processFlattening in the record's flags the frame holds ObjectPixels
/// in rows environment.workLineBytes apart. frame and scratch may have changed places; width and height are the output's.
int renderSceneFrame(FrameProcessInfo*, int layerLimit, int frameOffset, int subFrame, int scene);

/// Stop references of renderObject.
enum StopReference : uint32_t { startAfterSlot = 0x1000000, stopAfterSlot = 0x2000000 };
/// Runs one object. stop: 0 = all; an ObjectRef = stop before that slot; with a StopReference bit, start or stop after it.
int renderObject(ObjectRecord*, EffectProcessInfo*, uint32_t stop);

/// Buffers and saved values around a call into an effect.
struct SlotBinding {
  int32_t tracks[maxTracks];
  int32_t checks[maxChecks];
  uint8_t extraData[maxForeignExtraData];
  uint32_t flag;
};
/// Points the definition of the slot at the object's values; with `info` also evaluates the tracks at the layer's time
/// and sets the record's frame numbers. The definition, never null for a used slot.
EffectDefinition* bindSlot(ObjectRecord*, int slot, SlotBinding*, EffectProcessInfo* info);
void unbindSlot(ObjectRecord*, int slot, SlotBinding*);

/// Object and work image, render scratch areas. Allocated on first use; null when out of memory.
int prepareRenderBuffers();
void freeRenderBuffers();

extern const EffectServiceTable effectServices;

}  // namespace zenlay
