#include "zenlay/ui/dialogs/color_presets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "platform/ini.h"
#include "platform/paths.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/module_files.h"

namespace zenlay {

HueColor hueOf(int rgb, const HueColor& before) {
  int r = rgb >> 16 & 255, g = rgb >> 8 & 255, b = rgb & 255;
  int most = std::max({r, g, b}), spread = most - std::min({r, g, b});
  HueColor color{before.hue, most == 0 ? before.saturation : 1.0 * spread / most, most / 255.0};
  if (spread == 0) return color;
  double sixth = most == r   ? 1.0 * (g - b) / spread
                 : most == g ? 2 + 1.0 * (b - r) / spread
                             : 4 + 1.0 * (r - g) / spread;
  color.hue = std::fmod(sixth * 60 + 360, 360);
  return color;
}

int rgbOf(const HueColor& color) {
  auto channel = [&color](int phase) {
    double k = std::fmod(phase + color.hue / 60, 6);
    double part = color.value * (1 - color.saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0));
    return static_cast<int>(part * 255 + 0.5);
  };
  return channel(5) << 16 | channel(3) << 8 | channel(1);
}

static_assert(presetCount == paletteEntries);

int presetColor(int preset) {
  const PaletteEntry& entry = colourPalette[preset];
  return entry.red << 16 | entry.green << 8 | entry.blue;
}

bool savePreset(int preset, int rgb) {
  colourPalette[preset] = {static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb)};
  std::string path = std::string(platform::withoutExtension(environment.modulePath)) + ".col";
  char key[8], value[8];
  snprintf(key, sizeof key, "no%02d", preset);
  snprintf(value, sizeof value, "%02x%02x%02x", rgb >> 16 & 255, rgb >> 8 & 255, rgb & 255);
  platform::IniFile file = platform::IniFile::read(path);
  file.set("color", key, value);
  return file.write(path);
}

}  // namespace zenlay
