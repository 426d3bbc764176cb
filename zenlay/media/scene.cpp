// "Scene": another scene of the project as a moving picture.
#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/figures.h"
#include "zenlay/media/playback_time.h"

namespace zenlay {

namespace {

enum SceneCheck { checkLoop, checkSelect };

struct SceneData {
  int32_t scene;  // 1..50; others show nothing
};
static_assert(sizeof(SceneData) == 4);

int processScene(EffectDefinition* effect, EffectProcessInfo* info) {
  const int scene = extraData<SceneData>(effect).scene;
  const int64_t position = playbackHundredths(effect, info, effect->services->sceneLength(scene));
  return takeScene(effect, info, scene, static_cast<int>(position / 100), static_cast<int>(position % 100));
}

int optionsOf(const ObjectData& object, int length) {
  return (object.lastFrame - object.firstFrame + 1 == length ? sceneMatchLength : 0) |
         (object.startValues[playSpeed] < 0 ? scenePlayReverse : 0);
}

void setStill(const ObjectData& object, int track, int value) {
  object.startValues[track] = object.endValues[track] = value;
  object.modes[track] = object.params[track] = 0;
}

/// The options leave a chain of several sections, whose speeds and ends are its own, as it is.
void applyOptions(EffectDefinition* effect, const ObjectData& object, int length, int before, int options) {
  if (effect->services->chainLength(effect->object_ref) != 1) return;
  if ((options ^ before) & scenePlayReverse) {
    setStill(object, playPosition, 1);  // counted from the last frame while the speed is negative
    setStill(object, playSpeed, options & scenePlayReverse ? -normalSpeed : normalSpeed);
  }
  if (options & sceneMatchLength) effect->services->changeObjectLength(effect->object_ref, std::max(length, 1), 0);
}

int selectScene(EffectDefinition* effect) {
  const EffectServiceTable* services = effect->services;
  int32_t& scene = extraData<SceneData>(effect).scene;
  ObjectData object{};
  if (!services->getObjectData(effect->object_ref, &object)) return 0;
  const int before = optionsOf(object, services->sceneLength(scene));
  int options = before;
  const int chosen = services->chooseScene(effect->object_ref, scene, &options);
  if (chosen < 0) return 0;
  services->recordUndo(effect->object_ref);
  scene = chosen;
  applyOptions(effect, object, services->sceneLength(chosen), before, options);
  services->objectChanged(effect->object_ref);
  return 1;
}

/// The second half of a divided object goes on where the first ended.
int continueScene(EffectDefinition* effect, EditHandle edit) {
  HostFileInfo scene{};
  if (!effect->host_functions->getFileInfo(edit, &scene)) return 0;
  scene.frameCount = effect->services->sceneLength(extraData<SceneData>(effect).scene);
  continuePlayback(effect, edit, scene);
  return 1;
}

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle edit,
                  EffectDefinition* effect) {
  if (isObjectEvent(message, wparam, lparam, objectDivided)) return continueScene(effect, edit);
  return isCommand(message, wparam, commandPushed) && checkOfCommand(wparam) == checkSelect ? selectScene(effect) : 0;
}

constexpr TrackColumns tracks({
    {"Playback position", 1, 1, 800000, 0, 1, 800000},
    {"vPlay", normalSpeed, -20000, 20000, 10, -8000, 8000},
});
constexpr CheckColumns checks({
    {"Loop playback", 0},
    {"Scene Selection", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(SceneData::scene), "scene"},
};
constexpr SceneData defaults = {1};
constexpr ExtraControl controls[] = {
    {checkSelect, extraScene, offsetof(SceneData, scene)},
};

}  // namespace

constinit EffectDefinition sceneMedia = defineEffect({
    .flag = effectMedia,
    .name = "Scene",
    .tracks = tracks,
    .checks = checks,
    .proc = processScene,
    .window_proc = handleMessage,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(SceneData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
