// The dialog "Create a New Project".
#include "zenlay/ui/project/new_project.h"

#include <cstring>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"

namespace zenlay {

using namespace platform;

namespace {

enum : int { widthEdit = 171, heightEdit, rateEdit, audioRateEdit, matchCheck = 201 };

constexpr DialogItem items[] = {
    {controlLabel, 0, {7, 9, 76, 10}, "Image size"},
    {controlEdit, widthEdit, {87, 7, 42, 14}, "", controlNumber},
    {controlLabel, 0, {129, 9, 14, 10}, "\u00D7", controlCentred},
    {controlEdit, heightEdit, {143, 7, 42, 14}, "", controlNumber},
    {controlLabel, 0, {7, 29, 76, 10}, "Frame rate (fps)"},
    {controlEdit, rateEdit, {87, 27, 98, 14}},
    {controlLabel, 0, {7, 49, 76, 10}, "Audio rate (Hz)"},
    {controlEdit, audioRateEdit, {87, 47, 98, 14}, "", controlNumber},
    {controlCheckBox, matchCheck, {87, 66, 98, 12}, "Match imported file"},
    {controlButton, dialogOk, {81, 87, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {135, 87, 50, 14}, "Cancel"},
};
constexpr DialogTable table{"Create a New Project", {192, 108}, items};

constexpr size_t rateBytes = 64;  // without the terminator
static_assert(rateBytes < sizeof(Preferences::new_fps));

void enableFields(Window* dialog) {
  bool free = !isTicked(dialog, matchCheck);
  for (int id : {widthEdit, heightEdit, rateEdit, audioRateEdit}) enableWindow(controlOf(dialog, id), free);
}

void fill(Window* dialog, bool importing) {
  showNumber(dialog, widthEdit, preferences.new_w);
  showNumber(dialog, heightEdit, preferences.new_h);
  showNumber(dialog, audioRateEdit, preferences.new_hz);
  showText(dialog, rateEdit, preferences.new_fps);
  tick(dialog, matchCheck, importing && preferences.new_fmt);
  enableWindow(controlOf(dialog, matchCheck), importing);
  enableFields(dialog);
}

/// Whether a project can be made of what was typed; otherwise the user is told.
bool isUsable(Window* dialog) {
  int32_t rate, scale;
  if (isTicked(dialog, matchCheck)) return true;
  const bool size = numberIn(dialog, widthEdit) > 0 && numberIn(dialog, heightEdit) > 0;
  if (size && numberIn(dialog, audioRateEdit) > 0 && parseFrameRate(textIn(dialog, rateEdit).c_str(), &rate, &scale))
    return true;
  showMessage("The image size and both rates must be above 0.", boxWarning);
  return false;
}

void take(Window* dialog, bool importing) {
  preferences.new_w = numberIn(dialog, widthEdit);
  preferences.new_h = numberIn(dialog, heightEdit);
  preferences.new_hz = numberIn(dialog, audioRateEdit);
  std::string rate = textIn(dialog, rateEdit, rateBytes);
  memcpy(preferences.new_fps, rate.c_str(), rate.size() + 1);
  if (importing) preferences.new_fmt = isTicked(dialog, matchCheck);
}

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  bool importing = *static_cast<bool*>(user);
  if (message == messageDialogOpened) fill(dialog, importing);
  if (isPress(message, first, matchCheck)) enableFields(dialog);
  if (!isPress(message, first, dialogOk)) return 0;
  if (!isUsable(dialog)) return 1;
  take(dialog, importing);
  return 0;
}

}  // namespace

bool editNewProject(bool importing) { return runDialog(table, dialogOwner(), {}, procedure, &importing) == dialogOk; }

}  // namespace zenlay
