// The records of the project model: scenes, layers, objects and their effect slots.
//
// Frames are 0-based and end frames inclusive; layers are 0..99. `ObjectRecord` holds no pointers and is written to
// project files as it stands (1480 bytes).
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

inline constexpr int maxScenes = 50;
inline constexpr int layersPerScene = 100;
inline constexpr int maxObjects = 15000;
inline constexpr int objectGrowth = 1000;
inline constexpr int maxName = 64;  // bytes, with the terminator

enum SceneFlag : uint32_t { sceneSetUp = 0x1, sceneHasAlpha = 0x2 };

/// Grid and display settings kept per scene, in file order.
struct GridSettings {
  int32_t grid, grid_tempo, grid_base, grid2d, grid2d_w, grid2d_h, grid3d, grid3d_size, grid3d_num;
  int32_t out_of_area, out_of_scale, grid_time;
};

struct SceneRecord {
  uint32_t flags;         // SceneFlag
  const char* name;       // in the name pool, or null
  int32_t width, height;  // pixels; 0 = the host clip's size
  int32_t length;         // frames
  int32_t currentFrame;   // the host's frame when the scene was left
  int32_t zoomLevel;
  int32_t viewFrame;      // first frame shown on the timeline
  int32_t currentObject;  // object index or -1
  int32_t selectionStart, selectionEnd;
  GridSettings grid;
  int32_t topLayer;
};

enum LayerFlag : uint32_t {
  layerHidden = 0x1,
  layerLocked = 0x2,
  layerCoordinateLink = 0x10,
  layerClipAbove = 0x20,
};

struct LayerRecord {
  uint32_t flags;    // LayerFlag
  const char* name;  // in the name pool, or null
};

/// One place of an object's effect chain; the first empty slot ends the chain.
struct EffectSlot {
  int32_t effect;      // index into effectList, -1 = empty
  int16_t firstTrack;  // in the object's track arrays
  int16_t firstCheck;
  int32_t extraDataOffset;  // bytes, inside the object's extra-data block
};

enum SlotFlag : uint8_t {
  slotEnabled = 0x1,
  slotFolded = 0x2,
  slotHandles = 0x4,
  newSlotFlags = slotEnabled | slotHandles,
};

enum ObjectFlag : uint32_t {
  objectInUse = 0x1,
  objectClipAbove = 0x100,
  objectCameraTarget = 0x200,
  objectDrawn = 0x10000,  // media object first, or a drawing effect last
  objectAudio = 0x20000,
  objectFilterEffect = 0x40000,
  objectControl = 0x80000,
  objectLayerRange = 0x100000,  // control object whose first extra-data field is "range"
};

/// TrackMode word: mode number in bits 0..3, options above.
enum TrackMode : int32_t {
  modeNone,
  modeRectilinear,
  modeCurve,
  modeTeleport,
  modeIgnoreMidpoints,
  modeAmount,
  modeRandom,
  modeAccelerate,
  modeRepeat,
  modeScript = 15,
  modeNumber = 0xF,
  modeDecelerationBit = 0x20,
  modeAccelerationBit = 0x40,
};

struct ObjectRecord {
  uint32_t flags;  // ObjectFlag
  int32_t layer;   // -1 for an object of another scene
  int32_t start, end;
  char name[maxName];  // empty = default name
  int32_t chainHead;   // object index; -1 = no chain; below -1 provisional until rebuildOrder
  EffectSlot slots[maxSlots];
  uint8_t slotFlags[maxSlots];  // SlotFlag; in a chain only the head's count
  uint16_t trackCount, checkCount;
  uint32_t extraDataSize;  // bytes
  int32_t startValues[maxTracks];
  int32_t endValues[maxTracks];
  int32_t modes[maxTracks];  // TrackMode words
  int32_t checks[maxChecks];
  uint32_t extraDataBlock;    // offset in the extended region
  int32_t group;              // 0 = none
  int32_t params[maxTracks];  // mode parameters
  int32_t homeLayer;
  int32_t scene;
};

static_assert(sizeof(EffectSlot) == 12);
static_assert(sizeof(ObjectRecord) == 1480);
static_assert(offsetof(ObjectRecord, slots) == 84 && offsetof(ObjectRecord, startValues) == 248);

}  // namespace zenlay
