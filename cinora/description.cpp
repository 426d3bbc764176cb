#include "cinora/description.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "cinora/failure.h"

namespace cinora {
namespace {

using Json = nlohmann::ordered_json;

Json parse(const std::string& text) {
  Json json = Json::parse(text, nullptr, false);
  if (json.is_discarded()) throw Failure("the editing plug-in's answer is not JSON");
  return json;
}

std::string plain(const Json& value) { return value.is_string() ? value.get<std::string>() : value.dump(); }

std::string field(const Json& object, const char* key) {
  auto found = object.find(key);
  return found == object.end() ? "" : plain(*found);
}

std::string padded(std::string text, size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

/// A value in units of 1 / scale, as the settings window shows it.
std::string scaled(int64_t value, int64_t scale) {
  if (scale <= 1) return std::to_string(value);
  char text[48];
  snprintf(text, sizeof text, "%.*f", scale >= 1000 ? 3 : scale >= 100 ? 2 : 1, static_cast<double>(value) / scale);
  return text;
}

std::string flagWord(const Json& value) {
  char text[16];
  snprintf(text, sizeof text, "%08X", value.is_number() ? static_cast<unsigned>(value.get<int64_t>()) : 0u);
  return text;
}

std::string trackLine(const Json& track) {
  int64_t scale = track.value("scale", int64_t{0});
  auto shown = [&](const char* key) { return scaled(track.value(key, int64_t{0}), scale); };
  return "    " + padded(field(track, "name"), 24) + " " + padded(shown("default"), 10) + " " + shown("min") + " .. " +
         shown("max") + "\n";
}

std::string effectDetails(const Json& effect) {
  std::string text =
      field(effect, "name") + "  (" + field(effect, "index") + ", flags " + flagWord(effect["flag"]) + ")\n";
  if (!effect["tracks"].empty()) text += "  tracks                     default    range\n";
  for (const Json& track : effect["tracks"]) text += trackLine(track);
  if (!effect["checks"].empty()) text += "  checks                     default\n";
  for (const Json& check : effect["checks"])
    text += "    " + padded(field(check, "name"), 24) + " " + field(check, "default") + "\n";
  if (!effect["exdata"].empty()) text += "  extra data (" + field(effect, "exdata_size") + " bytes)\n";
  for (const Json& item : effect["exdata"])
    if (!field(item, "name").empty() && field(item, "name") != "null")
      text += "    " + padded(field(item, "name"), 24) + " " + field(item, "size") + " bytes\n";
  return text;
}

void addPart(std::string& list, const std::string& part) {
  if (!list.empty()) list += ", ";
  list += part;
}

std::string trackValue(const Json& track) {
  std::string text = field(track, "name") + "=" + field(track, "start");
  if (track.value("mode", int64_t{0}) != 0) text += ".." + field(track, "end");
  return text;
}

std::string slotLines(const Json& slot) {
  std::string text(8, ' ');
  text += field(slot, "effect");
  text += slot.value("enabled", true) ? "\n" : " (off)\n";
  std::string values;
  for (const Json& track : slot["tracks"]) addPart(values, trackValue(track));
  for (const auto& [key, value] : slot["exdata"].items())
    if (value.is_string() && key != "_exdata" && !value.get<std::string>().empty())
      addPart(values, key + "=" + value.get<std::string>());
  return values.empty() ? text : text + "            " + values + "\n";
}

std::string frameRate(const Json& clip) {
  return field(clip, "scale") == "1" ? field(clip, "rate") : field(clip, "rate") + "/" + field(clip, "scale");
}

}  // namespace

std::string describeProject(const std::string& json) {
  Json project = parse(json);
  if (!project.is_object()) throw Failure("the editing plug-in's answer describes no film");
  const Json& clip = project["clip"];
  std::string text = "clip    " + field(clip, "width") + "x" + field(clip, "height") + ", " + frameRate(clip) +
                     " frames per second, " + field(clip, "length") + " frames, sound " + field(clip, "audio_rate") +
                     " Hz\n";
  for (const Json& scene : project["scenes"])
    text += "scene   " + field(scene, "index") + " " + field(scene, "name") + "  " + field(scene, "width") + "x" +
            field(scene, "height") + ", " + field(scene, "length") + " frames\n";
  text += "objects " + std::to_string(project["objects"].size()) + "\n";
  for (const Json& object : project["objects"]) {
    text += "    " + field(object, "name") + "  scene " + field(object, "scene") + " layer " + field(object, "layer") +
            " frames " + field(object, "start") + "-" + field(object, "end") + "\n";
    for (const Json& slot : object["slots"]) text += slotLines(slot);
  }
  return text;
}

std::string describeEffects(const std::string& json, bool details) {
  Json effects = parse(json);
  if (!effects.is_array()) throw Failure("the editing plug-in's answer lists no effects");
  std::string text;
  for (const Json& effect : effects) {
    if (details) {
      if (!text.empty()) text += '\n';
      text += effectDetails(effect);
    } else {
      text += padded(field(effect, "index"), 4) + padded(field(effect, "name"), 32) + flagWord(effect["flag"]) + "  " +
              std::to_string(effect["tracks"].size()) + " tracks, " + std::to_string(effect["checks"].size()) +
              " checks\n";
    }
  }
  return text;
}

size_t countEntries(const std::string& json) {
  Json list = parse(json);
  return list.is_array() ? list.size() : 0;
}

}  // namespace cinora
