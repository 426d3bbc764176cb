// The scene list and the settings of a scene.
#include <algorithm>
#include <string>
#include <vector>

#include "platform/text.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using namespace platform;

namespace {

// ---- The list ----

constexpr int sceneList = 190, matchLength = 201, playReverse = 202;
constexpr int optionsHeight = 52, optionMargin = 6, optionHeight = 20;  // pixels

constexpr Rect listPlace{0, 0, 110, 160};
constexpr DialogItem listItems[] = {
    {controlListBox, sceneList, listPlace},
    {controlCheckBox, matchLength, {}, "Match scene length", controlHidden},
    {controlCheckBox, playReverse, {}, "Play scene in reverse", controlHidden},
};
constexpr DialogTable listTable{"", {listPlace.width, listPlace.height}, listItems, false};

struct SceneChoice {
  int current, first;
  int* options;
  bool filling;
  int chosen;
};

/// Makes room for the check boxes below the list, on the screen.
void addOptions(Window* dialog, int options) {
  Size list = clientSize(dialog);
  setClientSize(dialog, {list.width, list.height + optionsHeight});
  const int ids[] = {matchLength, playReverse}, bits[] = {sceneMatchLength, scenePlayReverse};
  for (int i = 0; i < 2; i++) {
    Window* box = controlOf(dialog, ids[i]);
    setWindowPlace(box, {optionMargin, list.height + optionMargin + i * optionHeight, list.width - 2 * optionMargin,
                         optionHeight});
    setControlValue(box, (options & bits[i]) != 0);
    showWindow(box, true, false);
  }
  Rect outer = windowPlace(dialog), screen = virtualScreen();
  outer.y = std::max(std::min(outer.y, screen.y + screen.height - outer.height), screen.y);
  setWindowPlace(dialog, outer);
}

void fillList(Window* dialog, SceneChoice& choice) {
  std::vector<std::string> names;
  for (int scene = choice.first; scene < maxScenes; scene++) names.push_back(utf8FromAnsi(sceneName(scene)));
  std::vector<const char*> items;
  for (const std::string& name : names) items.push_back(name.c_str());
  choice.filling = true;
  setControlItems(controlOf(dialog, sceneList), items);
  setControlValue(controlOf(dialog, sceneList), choice.current - choice.first);
  choice.filling = false;
}

void choose(Window* dialog, SceneChoice& choice) {
  int row = controlValue(controlOf(dialog, sceneList));
  if (row < 0) return;
  if (choice.options)
    *choice.options = (*choice.options & ~(sceneMatchLength | scenePlayReverse)) |
                      (isTicked(dialog, matchLength) ? sceneMatchLength : 0) |
                      (isTicked(dialog, playReverse) ? scenePlayReverse : 0);
  choice.chosen = choice.first + row;
  endDialog(dialog, dialogOk);
}

intptr_t listProcedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  SceneChoice& choice = *static_cast<SceneChoice*>(user);
  if (message == messageDialogOpened) {
    if (choice.options) addOptions(dialog, *choice.options);
    fillList(dialog, choice);
    return 0;
  }
  bool selected = message == messageCommand && commandId(first) == sceneList && !choice.filling &&
                  (commandEvent(first) == controlSelectionChanged || commandEvent(first) == controlDoubleClicked);
  if (!selected && !isPress(message, first, dialogOk)) return 0;
  choose(dialog, choice);
  return 1;
}

// ---- The settings ----

constexpr int nameEdit = 171, widthEdit = 172, heightEdit = 173, alphaCheck = 201;

constexpr DialogItem settingsItems[] = {
    {controlLabel, 0, {7, 9, 44, 10}, "Name"},
    {controlEdit, nameEdit, {53, 7, 130, 14}},
    {controlLabel, 0, {7, 29, 44, 10}, "Image size"},
    {controlEdit, widthEdit, {53, 27, 58, 14}, "", controlNumber},
    {controlLabel, 0, {111, 29, 14, 10}, "\u00D7", controlCentred},
    {controlEdit, heightEdit, {125, 27, 58, 14}, "", controlNumber},
    {controlCheckBox, alphaCheck, {53, 46, 130, 12}, "Alpha channel"},
    {controlButton, dialogOk, {79, 65, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {133, 65, 50, 14}, "Cancel"},
};
constexpr DialogTable settingsTable{"Scene Settings", {190, 86}, settingsItems};

void storeSettings(Window* dialog) {
  SceneRecord& scene = scenes[currentScene];
  const std::string name = textIn(dialog, nameEdit);
  if (name != sceneName(currentScene)) renameScene(currentScene, name);
  int width = numberIn(dialog, widthEdit), height = numberIn(dialog, heightEdit);
  bool own = width > 0 && height > 0;
  scene.width = own ? width : 0;
  scene.height = own ? height : 0;
  if (currentScene != 0) {
    if (isTicked(dialog, alphaCheck))
      scene.flags |= sceneHasAlpha;
    else
      scene.flags &= ~uint32_t{sceneHasAlpha};
  }
}

intptr_t settingsProcedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void*) {
  const SceneRecord& scene = scenes[currentScene];
  if (message == messageDialogOpened) {
    showText(dialog, nameEdit, sceneName(currentScene));
    showNumberOrNothing(dialog, widthEdit, scene.width);
    showNumberOrNothing(dialog, heightEdit, scene.height);
    tick(dialog, alphaCheck, scene.flags & sceneHasAlpha);
    enableWindow(controlOf(dialog, alphaCheck), currentScene != 0);
  }
  if (isPress(message, first, dialogOk)) storeSettings(dialog);
  return 0;
}

}  // namespace

int chooseScene(Point screen, int current, bool withRoot, int* options) {
  SceneChoice choice{current, withRoot ? 0 : 1, options, false, -1};
  DialogPlace place{DialogPlace::at, {screen.x - 1, screen.y}};
  return runDialog(listTable, dialogOwner(), place, listProcedure, &choice) == dialogOk ? choice.chosen : -1;
}

bool editSceneSettings() {
  DialogPlace place{DialogPlace::atCursor, {50, -50}};
  if (runDialog(settingsTable, dialogOwner(), place, settingsProcedure, nullptr) != dialogOk) return false;
  redrawTimeline();
  return true;
}

}  // namespace zenlay
