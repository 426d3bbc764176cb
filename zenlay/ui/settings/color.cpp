// Colours for effects: the dialog, and the pick of a pixel from the screen.
#include <algorithm>
#include <cstring>

#include "platform/system.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/effects/service_hooks.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/effect_commands.h"
#include "zenlay/render/own_frame.h"
#include "zenlay/render/pipeline.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace {

using namespace settings;

constexpr intptr_t noPick = -1;

int rgbOf(const FramePixel& pixel) {
  Bgr c = toRgb(pixel.y, pixel.cb, pixel.cr);
  return c.r << 16 | c.g << 8 | c.b;
}

FramePixel yccOf(int rgb) {
  ObjectPixel c = toYcbcr(static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb));
  return {c.y, c.cb, c.cr};
}

/// A pixel of the current frame, rendered for it; false when there is none.
bool framePixel(platform::Point at, FramePixel* pixel) {
  int width = environment.outputWidth, height = environment.outputHeight;
  if (at.x < 0 || at.y < 0 || at.x >= width || at.y >= height || timelineView.sceneLength < 1) return false;
  OwnFrame frame;
  if (!reserveFrame(frame)) return false;
  FrameProcessInfo info = infoOfFrame(frame, timelineView.cursorFrame, processWithoutOverlay);
  const bool rendered = renderSceneFrame(&info, layersPerScene, 0, 0, 0);
  if (rendered) *pixel = info.frame[static_cast<size_t>(environment.bufferWidth) * at.y + at.x];
  releaseFrame(frame);
  return rendered;
}

}  // namespace

void beginColorPick(int object, int row, bool wantsRgb) {
  constexpr int lookEvery = 20;  // ms; no click is shorter by hand
  state.pick = {object, row, wantsRgb};
  platform::startTimer(settingsWindow(), pickTimer, lookEvery);
}

void endColorPick() {
  state.pick = {};
  platform::stopTimer(settingsWindow(), pickTimer);
}

void forgetColorPick(int object) {
  if (state.pick.object == object) endColorPick();
}

bool colorPickPending() { return state.pick.object >= 0; }

int pickImageColor(platform::Point at) {
  if (!colorPickPending()) return 0;
  FramePixel pixel{};
  bool known = framePixel(at, &pixel);
  sendCommand(commandColorPicked, !known ? noPick : state.pick.wantsRgb ? rgbOf(pixel) : packedYcc(pixel));
  endColorPick();
  return 1;
}

int pickScreenColor() {
  if (!colorPickPending() || !(platform::screenButtons() & platform::mouseLeft)) return 0;
  platform::Point at = platform::cursorPosition();
  if (environment.projectOpen && platform::topLevelWindow(platform::windowAt(at)) == environment.hostMainWindow)
    return 0;
  int color = platform::screenPixel(at);
  sendCommand(commandColorPicked, color < 0 ? noPick : state.pick.wantsRgb ? color : packedYcc(yccOf(color)));
  endColorPick();
  return 1;
}

int colorPicked(intptr_t color) {
  PendingPick pick = state.pick;
  endColorPick();
  bool shown = hasObject() && inUse(pick.object) && headOf(pick.object) == headOf(currentObject);
  RowOwner owner = shown ? checkOwner(pick.row) : RowOwner{-1, 0};
  if (color == noPick || owner.slot < 0) return 0;
  return callEffect(currentObject, owner.slot, commandTakeColor | owner.index << 16, color);
}

namespace settings {

int chooseEffectColor(ObjectRef ref, void* colour, uint32_t flags) {
  if (!ref || !colour) return 0;
  int32_t* values = static_cast<int32_t*>(colour);
  bool ycc = flags & chooseYcc;
  int color =
      ycc ? rgbOf({static_cast<int16_t>(values[0]), static_cast<int16_t>(values[1]), static_cast<int16_t>(values[2])})
          : values[0];
  if (!chooseColor(color) || (ycc && color == noColor)) return 0;
  if (!ycc) {
    values[0] = color;
    return 1;
  }
  FramePixel pixel = yccOf(color);
  values[0] = pixel.y;
  values[1] = pixel.cb;
  values[2] = pixel.cr;
  return 1;
}

int pickEffectColor(ObjectRef ref, int check, uint32_t flags) {
  int slot = slotOfRef(ref);
  if (currentObject < 0 || slot >= state.usedSlots ||
      !settingsControl(objectOfRef(ref), slot, firstCheckControl, check))
    return 0;
  beginColorPick(currentObject, objects[currentObject].slots[slot].firstCheck + check, !(flags & chooseYcc));
  return 1;
}

}  // namespace settings
}  // namespace zenlay
