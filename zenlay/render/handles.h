// Handles shown over the preview. They are recorded while a frame is rendered; showing and moving them belongs to
// whoever edits on the image.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

inline constexpr int maxHandles = 256;  // per frame; later ones are dropped

/// Bits of PreviewHandle::kind.
enum HandleKind : uint32_t {
  handleObject = 0x1,  // box around the selected object as drawn
  handleStart = 0x2,   // position at the start of the section
  handleEnd = 0x4,     // position at its end
  handleFree = 0x18000,
  handleSpace = 0x41800,
};

struct PreviewHandle {
  ObjectRef ref;                     // 0 for free handles
  int32_t coordinate1, coordinate2;  // tracks that a handle in space moves, -1 = none
  int32_t x, y, w, h;                // scene pixels
  int16_t parameters[4];
  uint32_t kind;
  int32_t value;
};

extern PreviewHandle previewHandles[maxHandles];
extern int previewHandleCount;

void clearHandles();
/// Recorded only while the host's own frame (depth 0) is rendered, and not for objects on locked layers.
void recordHandle(const PreviewHandle&);
/// The selected object's handles: its corners (1/4096 pixel) and, when it moves, both ends of its section.
void addPlacementHandles(const EffectDefinition*, const EffectProcessInfo*, const int32_t corners[8]);

}  // namespace zenlay
