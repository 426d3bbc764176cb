// Scene and layer tables, their names, and the switch between scenes.
//
// Names live in one pool of `namePoolBytes`; a record's `name` points into it and may move when the pool is compacted.
#pragma once

#include <string>

#include "zenlay/model/records.h"

namespace zenlay {

inline constexpr int namePoolBytes = 12800;

extern SceneRecord scenes[maxScenes];
extern LayerRecord layerTable[maxScenes * layersPerScene];  // scene-major
extern LayerRecord* layers;                                 // the current scene's records
extern int currentScene;

struct ImageSize {
  int width, height;
};

/// The layer an object has while the current scene is shown: its home layer, or -1 when it lies in another scene.
inline int layerInView(const ObjectRecord& object) { return object.scene == currentScene ? object.homeLayer : -1; }

/// Name or "Scene %d" / "Root"; valid until the next call.
const char* sceneName(int scene);
/// The scene's own size when set up and non-zero, else the host clip's; clipped to the largest image.
ImageSize sceneSize(int scene);
/// Frames: the live length for the current scene, the record's for another.
int sceneLength(int scene);
/// 0 when the name is empty, 64 bytes or longer, or does not fit; the old name stays.
int setSceneName(int scene, const char* name);
int setLayerName(int scene, int layer, const char* name);
/// As much of the name as there may be; an empty one takes the name away. False, after a message, when the pool is
/// full.
bool renameScene(int scene, const std::string& name);
bool renameLayer(int scene, int layer, const std::string& name);
/// Offset of a name in the pool, -1 for none, and back. Offsets change when the pool is compacted.
int32_t nameOffset(const char* name);
const char* nameAt(int32_t offset);
/// Zeroes both tables and the pool and makes scene 0 current.
void clearScenes();
/// Re-layers the objects for `scene` and rebuilds the order, without touching view states or the host.
void selectScene(int scene);
/// Stores the leaving scene's view state, enters `scene` (setting it up when new) and tells the host.
void switchScene(int scene, HostFilterRecord*, EditHandle);
/// The scene's record with the view state as it is now: the live one for the current scene.
SceneRecord sceneView(int scene);
/// First scene above 0 that is not set up and holds no object, or -1.
int freeScene();

}  // namespace zenlay
