// What the generated entries of the timeline's menu create at the click: effects' objects, aliases, templates.
#include <algorithm>
#include <cstring>
#include <string>

#include "zenlay/effects/registry.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/files/object_file.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/timeline/snapping.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {
namespace {

constexpr int effectSceneAudio = 8;

int layerOfClick() { return clickPosition.layer; }
int frameOfClick() { return snapFrame(clickPosition.frame, clickPosition.layer, false); }

int createFromEffect(int effect) {
  if (!menuLists(menuRow, effect) || !audioFits(effectList[effect]->flag & effectAudio)) return 0;
  return inOneStep([=] {
    int object = createObjectWithDefaults(frameOfClick(), layerOfClick(), effect);
    if (object < 0) return 0;
    showCreated(object, chainRange(object).last);
    return 1;
  });
}

int createFromAlias(int alias) {
  if (alias >= static_cast<int>(aliasList.size())) return 0;
  const std::string path = aliasPath(aliasList[alias].subfolder, aliasList[alias].name);
  if (!audioFits(aliasKind(path.c_str()) & aliasAudio)) return 0;
  return inOneStep([&] {
    int object = placeAlias(path.c_str(), frameOfClick(), layerOfClick());
    if (object < 0) return 0;
    showCreated(object, chainRange(object).last);
    return 1;
  });
}

// ---- Templates: an object file in a scene of its own ----

/// Reads the file into the free scene; false after a message.
bool loadScene(int scene, const std::string& name) {
  const std::string path = templatePath(name);
  ObjectFileHeader header;
  if (!readObjectFileHeader(path.c_str(), &header)) header = {};
  recordUndo(scene, undoNewScene);
  const int home = currentScene;
  selectScene(scene);
  const int end = readObjectFile(path.c_str(), 0, 0);
  selectScene(home);
  if (end < 0) return false;
  SceneRecord& s = scenes[scene];
  s = {};
  s.flags = sceneSetUp | (header.flags & sceneHasAlpha);
  s.width = header.width;
  s.height = header.height;
  s.length = std::clamp(std::max(header.length, end + 1), 1, environment.maxFrames);
  s.selectionEnd = s.length - 1;
  s.zoomLevel = timelineView.zoomLevel;
  s.currentObject = -1;
  s.grid = preferences.grid;
  renameScene(scene, name);
  return true;
}

bool hasSound(int scene) {
  for (int i = 0; i < objectCapacity; i++)
    if (inUse(i) && objects[i].scene == scene && objects[i].flags & objectAudio) return true;
  return false;
}

/// As long as the scene, as far as there is room. The object, or -1.
int createSceneObject(int effect, int scene, int frame, int layer) {
  int object = createObjectWithDefaults(frame, layer, effect);
  if (object < 0) return -1;
  const int32_t number = scene;
  if (uint8_t* data = extraDataOf(object, 0)) memcpy(data, &number, sizeof number);
  setObjectLength(object, scenes[scene].length);
  return object;
}

/// With a sound object below the picture when the scene has sound and the project can play it. The picture, or -1.
int createSceneObjects(int scene) {
  const int layer = layerOfClick(), picture = createSceneObject(effectScene, scene, frameOfClick(), layer);
  if (picture < 0 || !hasSound(scene) || !(environment.clip.flags & fileHasAudio) || layer + 1 == layersPerScene)
    return picture;
  const int sound = createSceneObject(effectSceneAudio, scene, objects[picture].start, layer + 1);
  if (sound >= 0 && preferences.group_open) joinGroup(sound, picture);
  return picture;
}

int createFromTemplate(int number) {
  const int scene = freeScene();
  if (!environment.projectOpen || number >= static_cast<int>(objectTemplates.size())) return 0;
  if (scene < 0) {
    showMessage("Unable to add more scene", boxWarning);
    return 0;
  }
  const std::string name = objectTemplates[number];
  return inOneStep([&] {
    const int object = loadScene(scene, name) ? createSceneObjects(scene) : -1;
    if (object < 0) return 0;
    showCreated(object, chainRange(object).last);
    return 1;
  });
}

constexpr Range ranges[] = {
    {menuEffect, menuEffect + maxEffects, createFromEffect, needsProject, showsTimeline},
    {menuAlias, menuTemplate, createFromAlias, needsProject, showsTimeline},
    {menuTemplate, menuTemplateEnd, createFromTemplate, needsProject, showsTimeline},
};

}  // namespace

const std::span<const Range> createCommands = ranges;

}  // namespace zenlay::commands
