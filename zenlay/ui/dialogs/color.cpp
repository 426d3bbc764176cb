// The dialog "Select color".
#include <algorithm>
#include <vector>

#include "platform/canvas.h"
#include "zenlay/host/environment.h"
#include "zenlay/ui/dialogs/color_presets.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/menus/menus.h"

namespace zenlay {

using namespace platform;

namespace {

enum : int { pickButton = 121, noneButton = 122, firstChannel = 171, firstSpin = 181 };
constexpr int channels = 3;
constexpr int savePresetItem = 1;  // of CONTEXTCOL

// In dialog units.
constexpr Rect swatchArea{7, 7, 56, 104}, fieldArea{69, 7, 104, 104}, valueArea{179, 7, 12, 104};
constexpr Rect previewArea{199, 7, 64, 24};
constexpr int columns = 4, rows = presetCount / columns;
constexpr int swatchGap = 3;  // pixels

constexpr DialogItem items[] = {
    {controlLabel, 0, {199, 41, 10, 10}, "R"},
    {controlEdit, firstChannel, {209, 39, 28, 14}, "", controlNumber},
    {controlSpinButton, firstSpin, {239, 39, 24, 14}},
    {controlLabel, 0, {199, 59, 10, 10}, "G"},
    {controlEdit, firstChannel + 1, {209, 57, 28, 14}, "", controlNumber},
    {controlSpinButton, firstSpin + 1, {239, 57, 24, 14}},
    {controlLabel, 0, {199, 77, 10, 10}, "B"},
    {controlEdit, firstChannel + 2, {209, 75, 28, 14}, "", controlNumber},
    {controlSpinButton, firstSpin + 2, {239, 75, 24, 14}},
    {controlButton, pickButton, {199, 97, 64, 14}, "Pick"},
    {controlButton, noneButton, {7, 121, 64, 14}, "Not Specified"},
    {controlButton, dialogOk, {159, 121, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {213, 121, 50, 14}, "Cancel"},
};
constexpr char title[] = "Select color", pickTitle[] = "Please select a color with the mouse";
constexpr DialogTable table{title, {270, 142}, items};

enum Hold { holdNothing, holdField, holdValue, holdPick };

struct ColorDialog {
  int color;  // 0xRRGGBB or noColor
  HueColor hue{0, 0, 1};
  Hold hold = holdNothing;
  bool filling = false;
  std::vector<uint32_t> field{};  // at full value
};

// ---- Drawing ----

Rect swatchPlace(int preset) {
  Rect area = dialogPixels(swatchArea);
  int column = preset / rows, row = preset % rows;
  int x = area.x + column * (area.width + swatchGap) / columns, y = area.y + row * (area.height + swatchGap) / rows;
  return {x, y, area.x + (column + 1) * (area.width + swatchGap) / columns - swatchGap - x,
          area.y + (row + 1) * (area.height + swatchGap) / rows - swatchGap - y};
}

int swatchAt(Point at) {
  for (int i = 0; i < presetCount; i++)
    if (contains(swatchPlace(i), at)) return i;
  return -1;
}

/// Hue from left to right, saturation from the top down.
HueColor fieldColor(const Rect& place, Point at, double value) {
  double x = std::clamp(at.x - place.x, 0, place.width - 1), y = std::clamp(at.y - place.y, 0, place.height - 1);
  return {x * 360 / place.width, 1 - y / (place.height - 1), value};
}

double stripValue(const Rect& place, Point at) {
  return 1 - 1.0 * std::clamp(at.y - place.y, 0, place.height - 1) / (place.height - 1);
}

constexpr uint32_t opaque = 0xFF000000u;

void drawField(Canvas* canvas, ColorDialog& state) {
  Rect place = dialogPixels(fieldArea);
  if (state.field.empty())
    for (int y = 0; y < place.height; y++)
      for (int x = 0; x < place.width; x++)
        state.field.push_back(opaque | static_cast<uint32_t>(rgbOf(fieldColor(place, {place.x + x, place.y + y}, 1))));
  drawPixels(canvas, place, state.field.data(), place.width, place.height, place.width);
  if (state.color == noColor) return;
  setClip(canvas, place);
  int x = place.x + static_cast<int>(state.hue.hue * place.width / 360);
  int y = place.y + static_cast<int>((1 - state.hue.saturation) * (place.height - 1) + 0.5);
  drawFrame(canvas, {x - 4, y - 4, 9, 9}, rgb(0, 0, 0));
  drawFrame(canvas, {x - 3, y - 3, 7, 7}, rgb(255, 255, 255));
  clearClip(canvas);
}

void drawStrip(Canvas* canvas, const ColorDialog& state) {
  Rect place = dialogPixels(valueArea);
  std::vector<uint32_t> strip;
  for (int y = 0; y < place.height; y++)
    strip.push_back(opaque | static_cast<uint32_t>(
                                 rgbOf({state.hue.hue, state.hue.saturation, stripValue(place, {0, place.y + y})})));
  drawPixels(canvas, place, strip.data(), 1, place.height, 1);
  if (state.color == noColor) return;
  int y = place.y + static_cast<int>((1 - state.hue.value) * (place.height - 1) + 0.5);
  drawFrame(canvas, {place.x - 2, y - 2, place.width + 4, 5}, rgb(0, 0, 0));
  drawFrame(canvas, {place.x - 1, y - 1, place.width + 2, 3}, rgb(255, 255, 255));
}

void drawPreview(Canvas* canvas, const ColorDialog& state) {
  Rect place = dialogPixels(previewArea);
  if (state.color == noColor) {
    fillRect(canvas, place, systemColor(colorWindow));
    drawLine(canvas, {place.x, place.y + place.height}, {place.x + place.width, place.y}, rgb(224, 64, 64));
  } else {
    fillRect(canvas, place, static_cast<Color>(state.color));
  }
  drawFrame(canvas, place, systemColor(colorDarkEdge));
}

void draw(Window* dialog, ColorDialog& state) {
  Canvas* canvas = windowCanvas(dialog);
  if (!canvas) return;
  Size size = clientSize(dialog);
  fillRect(canvas, {0, 0, size.width, size.height}, systemColor(colorFace));
  for (int i = 0; i < presetCount; i++) {
    fillRect(canvas, swatchPlace(i), static_cast<Color>(presetColor(i)));
    drawFrame(canvas, swatchPlace(i), systemColor(colorDarkEdge));
  }
  drawField(canvas, state);
  drawStrip(canvas, state);
  drawPreview(canvas, state);
}

// ---- The colour ----

int channelOf(int color, int channel) { return color >> 8 * (channels - 1 - channel) & 255; }

/// Everything follows but the box the user is typing in.
void show(Window* dialog, ColorDialog& state, int typedChannel = -1) {
  state.filling = true;
  for (int i = 0; i < channels; i++) {
    setControlValue(controlOf(dialog, firstSpin + i), state.color == noColor ? 0 : channelOf(state.color, i));
    if (i == typedChannel) continue;
    if (state.color == noColor)
      setWindowText(controlOf(dialog, firstChannel + i), "");
    else
      showNumber(dialog, firstChannel + i, channelOf(state.color, i));
  }
  state.filling = false;
  draw(dialog, state);
}

void take(Window* dialog, ColorDialog& state, int rgb, int typedChannel = -1) {
  state.color = rgb;
  state.hue = hueOf(rgb, state.hue);
  show(dialog, state, typedChannel);
}

void takeHue(Window* dialog, ColorDialog& state, const HueColor& hue) {
  state.hue = hue;
  state.color = rgbOf(hue);
  show(dialog, state);
}

void takeChannel(Window* dialog, ColorDialog& state, int channel, int value, bool typed) {
  int shift = 8 * (channels - 1 - channel), color = state.color == noColor ? 0 : state.color;
  take(dialog, state, (color & ~(255 << shift)) | std::clamp(value, 0, 255) << shift, typed ? channel : -1);
}

// ---- The mouse ----

void letGo(Window* dialog, ColorDialog& state) {
  if (state.hold == holdPick) {
    setWindowText(dialog, title);
    setCursorShape(dialog, cursorArrow);
  }
  state.hold = holdNothing;
  if (mouseCapture() == dialog) releaseMouse();
}

void beginPick(Window* dialog, ColorDialog& state) {
  state.hold = holdPick;
  setWindowText(dialog, pickTitle);
  setCursorShape(dialog, cursorCross);
  captureMouse(dialog);
}

void endPick(Window* dialog, ColorDialog& state, Point at) {
  int color = screenPixel(clientToScreen(dialog, at));
  letGo(dialog, state);
  if (color >= 0) take(dialog, state, color);
}

void drag(Window* dialog, ColorDialog& state, Point at) {
  if (state.hold == holdField)
    takeHue(dialog, state, fieldColor(dialogPixels(fieldArea), at, state.color == noColor ? 1 : state.hue.value));
  if (state.hold == holdValue)
    takeHue(dialog, state, {state.hue.hue, state.hue.saturation, stripValue(dialogPixels(valueArea), at)});
}

void press(Window* dialog, ColorDialog& state, Point at) {
  if (state.hold == holdPick) return endPick(dialog, state, at);
  if (int preset = swatchAt(at); preset >= 0) return take(dialog, state, presetColor(preset));
  if (contains(dialogPixels(fieldArea), at)) state.hold = holdField;
  if (contains(dialogPixels(valueArea), at)) state.hold = holdValue;
  if (state.hold == holdNothing) return;
  captureMouse(dialog);
  drag(dialog, state, at);
}

void openSwatchMenu(Window* dialog, ColorDialog& state, Point at) {
  int preset = swatchAt(at);
  if (preset < 0 || state.hold != holdNothing) return;
  if (showContextMenu(menuColor, dialog, clientToScreen(dialog, at)) != savePresetItem || state.color == noColor)
    return;
  if (!savePreset(preset, state.color)) showMessage("Failed to write the color preset file.", boxWarning);
  draw(dialog, state);
}

/// True when the message was the mouse's.
bool mouseMessage(Window* dialog, ColorDialog& state, uint32_t message, Point at) {
  switch (message) {
    case messageLeftDown:
    case messageLeftDoubleClick:
      return press(dialog, state, at), true;
    case messageMouseMove:
      return drag(dialog, state, at), true;
    case messageLeftUp:
      if (state.hold != holdPick) letGo(dialog, state);
      return true;
    case messageRightDown:
      if (state.hold == holdPick) letGo(dialog, state);
      return true;
    case messageRightUp:
      return openSwatchMenu(dialog, state, at), true;
    default:
      return false;
  }
}

int commandPressed(Window* dialog, ColorDialog& state, int id) {
  switch (id) {
    case pickButton:
      beginPick(dialog, state);
      return 1;
    case noneButton:
      state.color = noColor;
      endDialog(dialog, dialogOk);
      return 1;
    case dialogCancel:
      if (state.hold != holdPick) return 0;
      letGo(dialog, state);
      return 1;
    default:
      return 0;
  }
}

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t second, void* user) {
  ColorDialog& state = *static_cast<ColorDialog*>(user);
  if (mouseMessage(dialog, state, message, unpackPoint(second))) return 1;
  switch (message) {
    case messageDialogOpened:
      for (int i = 0; i < channels; i++) setControlRange(controlOf(dialog, firstSpin + i), 0, 255, 16);
      if (state.color != noColor) state.hue = hueOf(state.color, state.hue);
      show(dialog, state);
      return 0;
    case messagePaint:
      draw(dialog, state);
      return 1;
    case messageCaptureLost:
      letGo(dialog, state);
      return 1;
    case messageHorizontalScroll: {
      auto* spin = reinterpret_cast<Window*>(second);
      if (scrollAction(first) != scrollEnd)
        takeChannel(dialog, state, controlId(spin) - firstSpin, controlValue(spin), false);
      return 1;
    }
    case messageCommand: {
      int id = commandId(first);
      if (commandEvent(first) == controlClicked) return commandPressed(dialog, state, id);
      bool typed = commandEvent(first) == controlTextChanged && !state.filling;
      if (typed) takeChannel(dialog, state, id - firstChannel, numberIn(dialog, id), true);
      return 0;
    }
    default:
      return 0;
  }
}

}  // namespace

bool chooseColor(int& color) {
  ColorDialog state{color & noColor ? noColor : color & 0xFFFFFF};
  if (runDialog(table, dialogOwner(), {DialogPlace::atCursor, {34, -98}}, procedure, &state) != dialogOk) return false;
  color = state.color;
  return true;
}

}  // namespace zenlay
