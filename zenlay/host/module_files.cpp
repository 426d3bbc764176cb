#include "zenlay/host/module_files.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/ini.h"
#include "platform/text.h"

namespace zenlay {

char extensionTable[extensionTableBytes];
PaletteEntry colourPalette[paletteEntries];

namespace {

constexpr int extensionLength = 4;  // of the module's own file name extension, with the dot
constexpr int colourText = 15;      // characters read of a palette value
constexpr char defaultExtensions[] = ".bmp\0Image file\0.avi\0Video file\0.wav\0Audio file\0";

constexpr uint32_t defaultPalette[paletteEntries] = {
    0xffffff, 0xff0000, 0xffff00, 0x00ff00, 0x00ffff, 0x0000ff, 0xff00ff, 0x000000, 0xe0e0e0, 0xff8080, 0xffff80,
    0x80ff80, 0x80ffff, 0x8080ff, 0xff80ff, 0xc0c0c0, 0x808080, 0x800000, 0x808000, 0x008000, 0x008080, 0x000080,
    0x800080, 0x606060, 0x404040, 0x400000, 0x404000, 0x004000, 0x004040, 0x000040, 0x400040, 0x202020,
};

PaletteEntry entryOf(uint32_t rgb) {
  return {static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb)};
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

uint32_t hexValue(std::string_view text) {
  if (!text.empty() && text[0] == '#') text.remove_prefix(1);
  uint32_t value = 0;
  for (char c : text) {
    int digit = hexDigit(c);
    if (digit < 0) break;
    value = value << 4 | static_cast<uint32_t>(digit);
  }
  return value;
}

void readExtensions(const platform::IniFile& ini) {
  memset(extensionTable, 0, sizeof extensionTable);
  size_t used = 0;
  if (const auto* rows = ini.section("extension")) {
    for (const auto& [extension, object] : *rows) {
      std::string line = extension + "=" + object;
      if (used + line.size() + 2 > sizeof extensionTable) break;
      std::replace(line.begin(), line.end(), '=', '\0');
      memcpy(extensionTable + used, line.c_str(), line.size() + 1);
      used += line.size() + 1;
    }
  }
  if (used == 0) memcpy(extensionTable, defaultExtensions, sizeof defaultExtensions);
}

void readPalette(const platform::IniFile& colours) {
  for (int k = 0; k < paletteEntries; k++) {
    colourPalette[k] = entryOf(defaultPalette[k]);
    char key[8];
    snprintf(key, sizeof key, "no%02d", k);
    std::string value = colours.get("color", key, "").substr(0, colourText);
    if (!value.empty()) colourPalette[k] = entryOf(hexValue(value));
  }
}

}  // namespace

void readModuleFiles(std::string_view modulePath) {
  std::string base(modulePath.substr(0, modulePath.size() < extensionLength ? 0 : modulePath.size() - extensionLength));
  platform::IniFile ini = platform::IniFile::read(base + ".ini");
  platform::setCodePage(ini.getInt("platform", "code_page", platform::codePageUtf8));
  readExtensions(ini);
  readPalette(platform::IniFile::read(base + ".col"));
}

}  // namespace zenlay
