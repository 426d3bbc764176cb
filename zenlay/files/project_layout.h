// The layout of the project block: header, layer and scene records, effect descriptors. Little-endian, no pointers.
#pragma once

#include <cstdint>

#include "zenlay/model/records.h"

namespace zenlay {

inline constexpr char projectMagic[4] = {'8', '0', 'Z', 'L'};
inline constexpr int maxStoredScripts = 512;
inline constexpr int scriptNameBytes = 128;
inline constexpr int categoryBytes = 32;

struct ProjectHeader {
  char magic[4];
  int32_t effectCount, objectCount;
  int32_t oldLayerCount;  // 68-byte layer records of scene 0, older versions
  int32_t zoomLevel, viewFrame;
  int32_t currentObject;  // position among the stored objects or -1
  int32_t recordSize, tracks, checks, slots;
  int32_t version;
  GridSettings grid;
  int32_t nearDistance;  // percentage
  int32_t currentScene;
  int32_t sceneCount, layerCount, sceneSize, layerSize;
  int32_t topLayer;
  int32_t scriptCount;
  int32_t reserved[32];
};
static_assert(sizeof(ProjectHeader) == 256 && offsetof(ProjectHeader, grid) == 0x30);
static_assert(offsetof(ProjectHeader, nearDistance) == 0x60 && offsetof(ProjectHeader, scriptCount) == 0x7C);

struct StoredOldLayer {
  uint32_t flags;
  char name[maxName];
};
static_assert(sizeof(StoredOldLayer) == 68);

struct StoredLayer {
  int32_t scene, layer;
  uint32_t flags;
  char name[maxName];
};
static_assert(sizeof(StoredLayer) == 76);

struct StoredScene {
  int32_t scene;
  uint32_t flags;
  char name[maxName];
  int32_t width, height, length, currentFrame, zoomLevel, viewFrame;
  int32_t currentObject;  // position among the stored objects or -1
  int32_t selectionStart, selectionEnd;
  int32_t unused[12];
  int32_t topLayer;
  int32_t reserved[15];
};
static_assert(sizeof(StoredScene) == 220 && offsetof(StoredScene, topLayer) == 156);

struct StoredEffect {
  uint32_t flags;
  int32_t tracks, checks, extraBytes;
  char name[64];
  char category[categoryBytes];
};
static_assert(sizeof(StoredEffect) == 112);

inline constexpr int scenesWithTopLayer = 9003;  // first versions that store what is named
inline constexpr int versionWithGrid = 8910;
inline constexpr int versionWithNear = 8919;

/// Turns a record of an older shape (capacities as stored) into the current one; offsets within the older record are
/// bounds-checked by `recordShapeFits`.
struct RecordShape {
  int32_t size, tracks, checks, slots;
};
bool recordShapeFits(const RecordShape&);
ObjectRecord convertRecord(const uint8_t* stored, const RecordShape&);

}  // namespace zenlay
