#include "zenlay/media/image_plugins.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/paths.h"
#include "platform/system.h"
#include "zenlay/media/bmp_reader.h"
#include "zenlay/media/image_loading.h"

namespace zenlay {

namespace {

constexpr int informationBytes = 256;
constexpr std::string_view anyFile = "*.*";

struct ImagePlugin {
  platform::Module* module;
  char name[informationBytes];
  char patterns[informationBytes];
  ImagePluginGetPicture getPicture;
};

/// `ImagePluginTable`.
constinit ImagePlugin plugins[maxImagePlugins] = {};
constinit int pluginCount = 0;

bool loadPlugin(const std::string& path, ImagePlugin* plugin) {
  *plugin = {};
  plugin->module = platform::loadModule(path);
  if (!plugin->module) return false;
  auto getInfo = reinterpret_cast<ImagePluginGetInfo>(platform::moduleSymbol(plugin->module, imagePluginGetInfo));
  plugin->getPicture =
      reinterpret_cast<ImagePluginGetPicture>(platform::moduleSymbol(plugin->module, imagePluginGetPicture));
  if (!getInfo || !plugin->getPicture) {
    platform::unloadModule(plugin->module);
    return false;
  }
  getInfo(1, plugin->name, informationBytes);
  getInfo(2, plugin->patterns, informationBytes);
  plugin->name[informationBytes - 1] = plugin->patterns[informationBytes - 1] = 0;
  return true;
}

bool listsExtension(const ImagePlugin& plugin, std::string_view extension) {
  std::string_view rest = plugin.patterns;
  while (!rest.empty()) {
    size_t end = std::min(rest.find(';'), rest.size());
    std::string_view pattern = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (pattern.empty() || pattern[0] != '*') continue;
    if (pattern == anyFile || platform::equalNoCase(pattern.substr(1), extension)) return true;
  }
  return false;
}

}  // namespace

void loadImagePlugins(const char* folder) {
  unloadImagePlugins();
  for (const std::string& name : platform::filesMatching(folder, "*.spi")) {
    if (pluginCount == maxImagePlugins) break;
    if (loadPlugin(folder + name, &plugins[pluginCount])) pluginCount++;
  }
}

void unloadImagePlugins() {
  for (int i = 0; i < pluginCount; i++) platform::unloadModule(plugins[i].module);
  pluginCount = 0;
}

std::string imagePluginPatterns() {
  std::string joined;
  for (int i = 0; i < pluginCount; i++) {
    if (i > 0) joined += ';';
    joined += plugins[i].patterns;
  }
  return joined;
}

CachedImage readWithPlugins(const char* path, const char* name) {
  std::string_view extension = platform::extensionOf(path);
  for (int i = 0; i < pluginCount; i++) {
    if (!listsExtension(plugins[i], extension)) continue;
    void* information = nullptr;
    void* pixels = nullptr;
    int result = plugins[i].getPicture(path, 0, 0, &information, &pixels);
    CachedImage image{};
    if (result == 0 && information && pixels) {
      BitmapHeader header;
      memcpy(&header, information, sizeof header);
      const uint8_t* palette = static_cast<const uint8_t*>(information) + header.size;
      image = storeBitmap(header, palette, static_cast<const uint8_t*>(pixels), name);
    }
    free(information);
    free(pixels);
    if (image.data) return image;
  }
  return {};
}

}  // namespace zenlay
