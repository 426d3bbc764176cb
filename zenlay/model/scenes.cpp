#include "zenlay/model/scenes.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/text.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay {

SceneRecord scenes[maxScenes];
LayerRecord layerTable[maxScenes * layersPerScene];
LayerRecord* layers = layerTable;
int currentScene;

namespace {

char namePool[namePoolBytes];
char oldPool[namePoolBytes];  // while compacting
int namesUsed;

void keepName(const char*& name) {
  if (!name) return;
  const char* old = oldPool + (name - namePool);
  size_t bytes = strlen(old) + 1;
  memcpy(namePool + namesUsed, old, bytes);
  name = namePool + namesUsed;
  namesUsed += static_cast<int>(bytes);
}

/// For a name that only the undo history refers to: the same text if it is still in use, else a copy while there is
/// room.
int keepUndoName(int old) {
  const char* text = oldPool + old;
  for (int at = 0; at < namesUsed; at += static_cast<int>(strlen(namePool + at)) + 1)
    if (strcmp(namePool + at, text) == 0) return at;
  int bytes = static_cast<int>(strlen(text)) + 1;
  if (namesUsed + bytes > namePoolBytes - maxName) return -1;
  memcpy(namePool + namesUsed, text, static_cast<size_t>(bytes));
  namesUsed += bytes;
  return namesUsed - bytes;
}

void compactNames() {
  memcpy(oldPool, namePool, sizeof oldPool);
  namesUsed = 0;
  for (int s = 0; s < maxScenes; s++) {
    keepName(scenes[s].name);
    for (int l = 0; l < layersPerScene; l++) keepName(layerTable[s * layersPerScene + l].name);
  }
  moveUndoNames(keepUndoName);
}

/// The current scene's and layers' `name` are read again after a compaction, so the target is passed by reference.
int setName(const char*& target, const char* name) {
  size_t length = name ? strlen(name) : 0;
  if (length == 0 || length >= maxName) return 0;
  char copy[maxName];  // the caller's text may lie in the pool
  memcpy(copy, name, length + 1);
  int bytes = static_cast<int>(length) + 1;
  if (namesUsed + bytes > namePoolBytes) compactNames();
  if (namesUsed + bytes > namePoolBytes) return 0;
  memcpy(namePool + namesUsed, copy, length + 1);
  target = namePool + namesUsed;
  namesUsed += bytes;
  return 1;
}

bool rename(const char*& target, const std::string& name) {
  if (name.empty()) {
    target = nullptr;
    return true;
  }
  if (setName(target, platform::wholeCharacters(name, maxName - 1).c_str())) return true;
  showMessage("Unable to add more name", boxWarning);
  return false;
}

bool validScene(int scene) { return scene >= 0 && scene < maxScenes; }

void setUpScene(int scene) {
  SceneRecord& s = scenes[scene];
  s.flags = sceneSetUp;
  s.currentObject = -1;
  s.zoomLevel = timelineView.zoomLevel;
  s.length = 1;
  s.grid = preferences.grid;
}

}  // namespace

const char* sceneName(int scene) {
  static char shown[32];
  if (validScene(scene) && scenes[scene].name) return scenes[scene].name;
  if (scene == 0) return "Root";
  snprintf(shown, sizeof shown, "Scene %d", scene);
  return shown;
}

ImageSize sceneSize(int scene) {
  ImageSize size{environment.clip.width, environment.clip.height};
  if (validScene(scene) && scenes[scene].flags & sceneSetUp) {
    if (scenes[scene].width > 0) size.width = scenes[scene].width;
    if (scenes[scene].height > 0) size.height = scenes[scene].height;
  }
  return {std::min(size.width, environment.maxWidth), std::min(size.height, environment.maxHeight)};
}

int sceneLength(int scene) {
  if (scene == currentScene) return timelineView.sceneLength;
  return validScene(scene) ? scenes[scene].length : 0;
}

int setSceneName(int scene, const char* name) { return validScene(scene) ? setName(scenes[scene].name, name) : 0; }

int setLayerName(int scene, int layer, const char* name) {
  if (!validScene(scene) || layer < 0 || layer >= layersPerScene) return 0;
  return setName(layerTable[scene * layersPerScene + layer].name, name);
}

bool renameScene(int scene, const std::string& name) { return validScene(scene) && rename(scenes[scene].name, name); }

bool renameLayer(int scene, int layer, const std::string& name) {
  return validScene(scene) && layer >= 0 && layer < layersPerScene &&
         rename(layerTable[scene * layersPerScene + layer].name, name);
}

int32_t nameOffset(const char* name) { return name ? static_cast<int32_t>(name - namePool) : -1; }
const char* nameAt(int32_t offset) { return offset >= 0 && offset < namesUsed ? namePool + offset : nullptr; }

void clearScenes() {
  for (SceneRecord& scene : scenes) scene = {};
  for (LayerRecord& layer : layerTable) layer = {};
  memset(namePool, 0, sizeof namePool);
  namesUsed = 0;
  currentScene = 0;
  layers = layerTable;
}

void selectScene(int scene) {
  if (!validScene(scene)) return;
  currentScene = scene;
  layers = layerTable + scene * layersPerScene;
  for (int i = 0; i < objectCapacity; i++)
    if (objects[i].flags) objects[i].layer = layerInView(objects[i]);
  rebuildOrder();
}

SceneRecord sceneView(int scene) {
  SceneRecord s = scenes[scene];
  if (scene != currentScene) return s;
  const HostFunctionTable* host = environment.hostFunctions;
  s.length = timelineView.sceneLength;
  s.currentFrame = host->getCurrentFrame(environment.edit);
  s.zoomLevel = timelineView.zoomLevel;
  s.viewFrame = timelineView.leftFrame;
  s.currentObject = currentObject;
  host->getSelection(environment.edit, &s.selectionStart, &s.selectionEnd);
  s.grid = preferences.grid;
  s.topLayer = timelineView.topLayer;
  return s;
}

void switchScene(int scene, HostFilterRecord*, EditHandle edit) {
  const HostFunctionTable* host = environment.hostFunctions;
  if (!validScene(scene) || host->getFrameCount(edit) < 1) return;
  environment.edit = edit;
  scenes[currentScene] = sceneView(currentScene);
  scenes[currentScene].flags |= sceneSetUp;
  if (!(scenes[scene].flags & sceneSetUp)) setUpScene(scene);
  if (currentObject >= 0 && modelHooks.objectReleased) modelHooks.objectReleased(currentObject);
  currentObject = -1;
  selectScene(scene);

  const SceneRecord entered = scenes[scene];
  preferences.grid = entered.grid;
  timelineView.sceneLength = entered.length;
  host->setFrameCount(edit, entered.length);
  host->setSelection(edit, entered.selectionStart, entered.selectionEnd);
  timelineView.cursorFrame = host->setCurrentFrame(edit, entered.currentFrame);
  setZoomLevel(entered.zoomLevel);
  timelineView.topLayer = entered.topLayer;
  timelineView.leftFrame = entered.viewFrame;
  // Last: what the host sends meanwhile moves the cursor, and another object might become current with it.
  int object = entered.currentObject;
  if (!inUse(object) || objects[object].scene != scene) return;
  currentObject = object;
  if (modelHooks.objectChanged) modelHooks.objectChanged(object);
}

int freeScene() {
  bool holdsObjects[maxScenes]{};
  for (int i = 0; i < objectCapacity; i++)
    if (objects[i].flags && validScene(objects[i].scene)) holdsObjects[objects[i].scene] = true;
  for (int scene = 1; scene < maxScenes; scene++)
    if (!(scenes[scene].flags & sceneSetUp) && !holdsObjects[scene]) return scene;
  return -1;
}

}  // namespace zenlay
