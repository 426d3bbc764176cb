#include "cinora/host/description.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "cinora/support/failure.h"

namespace cinora {
namespace {

using Json = nlohmann::ordered_json;

Json parse(const std::string& text) {
  Json json = Json::parse(text, nullptr, false);
  if (json.is_discarded()) throw Failure("the editing plug-in's answer is not JSON");
  return json;
}

/// A member or an entry that is not there is null: without text, number or entries of its own.
const Json none;

const Json& member(const Json& object, const char* key) {
  auto found = object.find(key);
  return found == object.end() ? none : *found;
}
const Json& entry(const Json& list, int64_t index) {
  return list.is_array() && index >= 0 && index < static_cast<int64_t>(list.size()) ? list[index] : none;
}

std::string plain(const Json& value) {
  return value.is_null() ? "" : value.is_string() ? value.get<std::string>() : value.dump();
}

std::string field(const Json& object, const char* key) { return plain(member(object, key)); }

int64_t number(const Json& object, const char* key) {
  const Json& value = member(object, key);
  return value.is_number() ? value.get<int64_t>() : 0;
}

std::string padded(std::string text, size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

/// A value in units of 1 / scale, as the settings window shows it: whole numbers, one or two decimals for tenths and
/// hundredths, three for every other scale.
std::string scaled(int64_t value, int64_t scale) {
  if (scale <= 1) return std::to_string(value);
  char text[48];
  snprintf(text, sizeof text, "%.*f", scale == 10 ? 1 : scale == 100 ? 2 : 3, static_cast<double>(value) / scale);
  return text;
}

std::string flagWord(const Json& effect) {
  char text[16];
  snprintf(text, sizeof text, "%08X", static_cast<unsigned>(number(effect, "flag")));
  return text;
}

std::string trackLine(const Json& track) {
  auto shown = [&](const char* key) { return scaled(number(track, key), number(track, "scale")); };
  return "    " + padded(field(track, "name"), 24) + " " + padded(shown("default"), 10) + " " + shown("min") + " .. " +
         shown("max") + "\n";
}

std::string effectDetails(const Json& effect) {
  std::string text = field(effect, "name") + "  (" + field(effect, "index") + ", flags " + flagWord(effect) + ")\n";
  if (!member(effect, "tracks").empty()) text += "  tracks                     default    range\n";
  for (const Json& track : member(effect, "tracks")) text += trackLine(track);
  if (!member(effect, "checks").empty()) text += "  checks                     default\n";
  for (const Json& check : member(effect, "checks"))
    text += "    " + padded(field(check, "name"), 24) + " " + field(check, "default") + "\n";
  if (!member(effect, "exdata").empty()) text += "  extra data (" + field(effect, "exdata_size") + " bytes)\n";
  for (const Json& item : member(effect, "exdata"))
    if (!field(item, "name").empty())
      text += "    " + padded(field(item, "name"), 24) + " " + field(item, "size") + " bytes\n";
  return text;
}

void addPart(std::string& list, const std::string& part) {
  if (!list.empty()) list += ", ";
  list += part;
}

std::string trackValue(const Json& track, const Json& definition) {
  int64_t scale = number(definition, "scale");
  std::string text = field(track, "name") + "=" + scaled(number(track, "start"), scale);
  if (number(track, "mode") != 0) text += ".." + scaled(number(track, "end"), scale);
  return text;
}

/// Labels of buttons and lists stand among the checks with a negative default; what was chosen there is extra data.
bool holdsValue(const Json& check) { return number(check, "default") >= 0; }

std::string slotLines(const Json& slot, const Json& effects) {
  const Json& effect = entry(effects, number(slot, "index"));
  std::string values;
  for (int64_t i = 0; const Json& track : member(slot, "tracks"))
    addPart(values, trackValue(track, entry(member(effect, "tracks"), i++)));
  for (int64_t i = 0; const Json& check : member(slot, "checks"))
    if (holdsValue(entry(member(effect, "checks"), i++)))
      addPart(values, field(check, "name") + "=" + field(check, "value"));
  for (const auto& [key, value] : member(slot, "exdata").items())
    if (key != "_exdata" && !plain(value).empty()) addPart(values, key + "=" + plain(value));
  std::string text = "        " + field(slot, "effect") + (slot.value("enabled", true) ? "\n" : " (off)\n");
  return values.empty() ? text : text + "            " + values + "\n";
}

std::string frameRate(const Json& clip) {
  return field(clip, "scale") == "1" ? field(clip, "rate") : field(clip, "rate") + "/" + field(clip, "scale");
}

}  // namespace

std::string describeProject(const std::string& projectJson, const std::string& effectsJson) {
  const Json project = parse(projectJson), effects = parse(effectsJson);
  if (!project.is_object()) throw Failure("the editing plug-in's answer describes no film");
  const Json& clip = member(project, "clip");
  std::string text = "clip    " + field(clip, "width") + "x" + field(clip, "height") + ", " + frameRate(clip) +
                     " frames per second, " + field(clip, "length") + " frames, sound " + field(clip, "audio_rate") +
                     " Hz\n";
  for (const Json& scene : member(project, "scenes"))
    text += "scene   " + field(scene, "index") + " " + field(scene, "name") + "  " + field(scene, "width") + "x" +
            field(scene, "height") + ", " + field(scene, "length") + " frames\n";
  text += "objects " + std::to_string(member(project, "objects").size()) + "\n";
  for (const Json& object : member(project, "objects")) {
    text += "    " + field(object, "name") + "  scene " + field(object, "scene") + " layer " + field(object, "layer") +
            " frames " + field(object, "start") + "-" + field(object, "end") + "\n";
    for (const Json& slot : member(object, "slots")) text += slotLines(slot, effects);
  }
  return text;
}

std::vector<std::string> textsOf(const std::string& json) {
  std::vector<std::string> texts;
  for (const Json& text : parse(json)) texts.push_back(plain(text));
  return texts;
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
      text += padded(field(effect, "index"), 4) + padded(field(effect, "name"), 32) + flagWord(effect) + "  " +
              std::to_string(member(effect, "tracks").size()) + " tracks, " +
              std::to_string(member(effect, "checks").size()) + " checks\n";
    }
  }
  return text;
}

size_t countEntries(const std::string& json) {
  Json list = parse(json);
  return list.is_array() ? list.size() : 0;
}

}  // namespace cinora
