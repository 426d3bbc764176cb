// The dialog that asks for a length, in seconds or frames.
#include <algorithm>
#include <cstdio>

#include "zenlay/host/environment.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/project/new_project.h"
#include "zenlay/ui/timeline/paint.h"

namespace zenlay {

using namespace platform;

namespace {

constexpr int framesEdit = 171, secondsEdit = 172;

constexpr DialogItem items[] = {
    {controlLabel, 0, {7, 9, 40, 10}, "Seconds"},
    {controlEdit, secondsEdit, {49, 7, 62, 14}},
    {controlLabel, 0, {7, 29, 40, 10}, "Frames"},
    {controlEdit, framesEdit, {49, 27, 62, 14}},
    {controlButton, dialogOk, {7, 48, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {61, 48, 50, 14}, "Cancel"},
};
constexpr Size tableSize{118, 69};

int lastUsed = secondsEdit;

struct Length {
  int frames;
  bool filling;
};

void activate(Window* dialog, int id) {
  lastUsed = id;
  setControlMuted(controlOf(dialog, secondsEdit), id != secondsEdit);
  setControlMuted(controlOf(dialog, framesEdit), id != framesEdit);
}

void fill(Window* dialog, int frames) {
  showNumber(dialog, framesEdit, frames);
  int64_t time = hundredthsOf(frames);
  char text[32];
  if (time % 100)
    snprintf(text, sizeof text, "%lld.%02d", static_cast<long long>(time / 100), static_cast<int>(time % 100));
  else
    snprintf(text, sizeof text, "%lld", static_cast<long long>(time / 100));
  setWindowText(controlOf(dialog, secondsEdit), text);
}

/// To the nearest frame; 0 for what is no number.
int framesOfSeconds(const char* text) {
  int32_t number, divisor;
  if (!parseFrameRate(text, &number, &divisor)) return 0;
  double frames = static_cast<double>(number) / divisor * environment.clip.rate / std::max(environment.clip.scale, 1);
  return static_cast<int>(std::min(frames + 0.5, 2147483647.0));
}

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  Length& length = *static_cast<Length*>(user);
  if (message == messageDialogOpened) {
    length.filling = true;
    fill(dialog, length.frames);
    length.filling = false;
    activate(dialog, lastUsed);
    focusWindow(controlOf(dialog, lastUsed));
    selectText(controlOf(dialog, lastUsed), 0, -1);
    return 1;
  }
  if (message == messageCommand && commandEvent(first) == controlTextChanged && !length.filling)
    activate(dialog, commandId(first));
  if (isPress(message, first, dialogOk))
    length.frames = lastUsed == framesEdit ? numberIn(dialog, framesEdit)
                                           : framesOfSeconds(windowText(controlOf(dialog, secondsEdit)).c_str());
  return 0;
}

}  // namespace

int askLength(const char* title, int frames) {
  DialogTable table{title, tableSize, items};
  Length length{frames, false};
  int pressed = runDialog(table, dialogOwner(), {DialogPlace::atCursor, {40, -35}}, procedure, &length);
  return pressed == dialogOk ? length.frames : 0;
}

}  // namespace zenlay
