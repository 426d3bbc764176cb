// "Extended color setting": writes an animated colour into the colour field of the effect before it.
#include <algorithm>
#include <cstdlib>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum ExtendedColorTrack { trackR, trackG, trackB };
enum ExtendedColorCheck { checkHsv, checkStart, checkEnd };

constexpr TrackColumns tracks({
    {"R", 0, 0, 255, 1, 0, 255},
    {"G", 0, 0, 255, 1, 0, 255},
    {"B", 0, 0, 255, 1, 0, 255},
});
constexpr CheckColumns checks({
    {"RGB⇔HSV", 0},
    {"Starting color", checkButton},
    {"Ending color", checkButton},
});

// ---- The buttons: a colour into the tracks' start or end values ----

constexpr int one = 4096;
constexpr int channels = 3;
constexpr int trackMax = 255;

/// Hue in degrees, saturation and value in percent; the hexcone model in 4096ths.
void rgbFromHsv(int h, int s, int v, int (&rgb)[channels]) {
  const int hue = (h % 360 * one + 50) / 120, saturation = (s * one + 50) / 100, value = (v * one + 50) / 100;
  const int f = hue % one, sector = hue / one, half = one / 2;
  int p = value, q = value;
  (f < half ? q : p) = (one - ((std::abs(half - f) * saturation) >> 11)) * value >> 12;
  const int m = (one - saturation) * value >> 12;
  const int parts[] = {p, q, m};
  int bytes[channels];
  for (int i = 0; i < channels; i++) bytes[i] = std::clamp((parts[i] * 255 + 2048) >> 12, 0, 255);
  for (int i = 0; i < channels; i++) rgb[(i + (sector == 1 || sector == 2 ? sector : 0)) % channels] = bytes[i];
}

void hsvFromRgb(const int (&rgb)[channels], int (&hsv)[channels]) {
  const auto [r, g, b] = rgb;
  const int top = std::max({r, g, b}), d = top - std::min({r, g, b});
  hsv[2] = (top * one / 255 * 100 + 2048) >> 12;
  hsv[0] = hsv[1] = 0;
  if (d == 0) return;
  int hue = (g - b) * 2048 / d;
  if (g > r && g >= b) hue = (b - r) * 2048 / d + one;
  if (b > r && b > g) hue = (r - g) * 2048 / d + 2 * one;
  if (hue < 0) hue += 3 * one;
  hsv[0] = std::min((hue * 120 + 2048) >> 12, trackMax);
  hsv[1] = (d * one / top * 100 + 2048) >> 12;
}

/// A track without movement has one value.
int chooseColor(EffectDefinition* effect, const ObjectData& data, bool starting) {
  const bool hsv = data.checks[checkHsv];
  const int32_t* values = starting ? data.startValues : data.endValues;
  int rgb[channels] = {values[trackR], values[trackG], values[trackB]}, tracks[channels];
  if (hsv) rgbFromHsv(values[trackR], values[trackG], values[trackB], rgb);
  int32_t chosen = rgb[0] << 16 | rgb[1] << 8 | rgb[2];
  if (!effect->services->chooseColour(effect->object_ref, &chosen, 0) || chosen & chosenNoColour) return 0;
  for (int i = 0; i < channels; i++) tracks[i] = rgb[i] = chosen >> 8 * (channels - 1 - i) & 255;
  if (hsv) hsvFromRgb(rgb, tracks);
  effect->services->recordUndo(effect->object_ref);
  for (int i = 0; i < channels; i++) {
    if (starting || data.modes[i] == 0) data.startValues[i] = tracks[i];
    if (!starting || data.modes[i] == 0) data.endValues[i] = tracks[i];
  }
  effect->services->objectChanged(effect->object_ref);
  return 1;
}

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t, EditHandle, EffectDefinition* effect) {
  const int check = checkOfCommand(wparam);
  ObjectData data;
  if (!isCommand(message, wparam, commandPushed) || (check != checkStart && check != checkEnd) ||
      !effect->services->getObjectData(effect->object_ref, &data))
    return 0;
  return chooseColor(effect, data, check == checkStart);
}

}  // namespace

constinit EffectDefinition extendedColorSettingEffect = defineEffect({
    .flag = effectFilter | effectPreparatory,
    .name = "Extended color setting",
    .tracks = tracks,
    .checks = checks,
    .window_proc = handleMessage,
});

constinit EffectDefinition extendedColorSettingObject = defineEffect({
    .flag = effectPreparatory,
    .name = "Extended color setting",
    .tracks = tracks,
    .checks = checks,
    .window_proc = handleMessage,
});

}  // namespace zenlay
