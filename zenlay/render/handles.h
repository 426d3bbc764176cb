// Handles shown over the preview. They are recorded while a frame is rendered; moving them is ui/image's.
//
// A box (kind handleObject alone) is a quadrilateral; every other handle is a mark of `w` x `h` pixels around (x, y).
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

/// By how many pixels of the picture a handle goes while its first or its second coordinate goes by one: groups turn and
/// scale what they take, and what is far away goes slowly.
struct HandleAxes {
  double across[2] = {1, 0}, down[2] = {0, 1};
};

struct PreviewHandle {
  ObjectRef ref;  // 0 for free handles
  /// Tracks of the effect that the handle moves, -1 = none. With those of neither, `parameters` tell.
  int32_t coordinate1, coordinate2;
  int32_t x, y, w, h;  // scene pixels
  /// Of a handle that an effect adds: 1 + the track moved across and down (0 none), and the stored units it changes by
  /// per pixel (0 = the track's scale). Of a box: the picture's size at 100 %.
  int16_t parameters[4];
  uint32_t kind;
  int32_t value;  // the effect's own
  /// Of a box: x and y of left top, right top, right bottom and left bottom, 1/4096 pixel.
  int32_t corners[8];
  HandleAxes axes;
};

extern PreviewHandle previewHandles[maxHandles];
extern int previewHandleCount;
/// While set, the editing aids on the image are not drawn.
extern bool imageAidsHidden;

/// What was drawn where in the last frame, in the order of drawing; later ones are dropped.
struct DrawnObject {
  ObjectRef ref;
  int32_t corners[8];  // as those of a box
};
inline constexpr int maxDrawnObjects = 1024;
extern DrawnObject drawnObjects[maxDrawnObjects];
extern int drawnObjectCount;

void clearHandles();  // and what was drawn
/// Recorded only while the host's own frame (depth 0) is rendered, and not for objects on locked layers.
void recordHandle(const PreviewHandle&);
/// A placement on the frame: what was drawn and, of the selected object, its box and, when it moves, both ends of its
/// section.
void recordPlacement(const EffectDefinition*, const EffectProcessInfo*, const int32_t corners[8]);

inline bool isBox(const PreviewHandle& h) { return h.kind == handleObject; }
inline bool isFree(const PreviewHandle& h) { return h.ref == 0; }
/// The track, in the object's arrays, that supplies a coordinate of the slot's effect; -1 for none.
int coordinateTrack(ObjectRef, CoordinateSlot);
/// Whether the corners, which are convex, contain the point (scene pixels), edges included; not when all are one point.
bool insideCorners(const int32_t corners[8], double x, double y);

}  // namespace zenlay
