#include "zenlay/ui/project/describe.h"

#define JSON_NOEXCEPTION 1
#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/effect_text.h"
#include "zenlay/files/left_out.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/project/backup.h"

namespace zenlay {
namespace {

using Json = nlohmann::ordered_json;

std::string text(const char* s) { return s ? s : ""; }

Json describeTracks(const EffectDefinition* d) {
  Json tracks = Json::array();
  bool tables = isBuiltIn(d) && d->track_scale;
  for (int i = 0; i < d->track_count; i++) {
    tracks.push_back({{"name", text(d->track_names[i])},
                      {"default", trackDefault(d, i)},
                      {"min", trackMinimum(d, i)},
                      {"max", trackMaximum(d, i)},
                      {"scale", tables ? d->track_scale[i] : 0},
                      {"bar_min", tables ? d->track_bar_min[i] : 0},
                      {"bar_max", tables ? d->track_bar_max[i] : 0},
                      {"link", tables ? d->track_link[i] : 0}});
  }
  return tracks;
}

Json describeChecks(const EffectDefinition* d) {
  Json checks = Json::array();
  for (int i = 0; i < d->check_count; i++) {
    Json check{{"name", text(d->check_names[i])}, {"default", d->check_defaults[i]}};
    if (d->check_defaults[i] == checkDropDown) {
      Json items = Json::array();
      for (const char* item = d->check_names[i]; *item; item += strlen(item) + 1) items.push_back(item);
      check["items"] = items;
    }
    checks.push_back(check);
  }
  return checks;
}

Json describeFields(const EffectDefinition* d) {
  Json fields = Json::array();
  forEachField(d, [&](const ExdataField& field, int) {
    fields.push_back({{"type", field.type}, {"size", field.size}, {"name", text(field.name)}});
  });
  return fields;
}

Json describeEffect(int index) {
  const EffectDefinition* d = effectList[index];
  return {{"index", index},
          {"name", text(d->name)},
          {"flag", d->flag},
          {"tracks", describeTracks(d)},
          {"checks", describeChecks(d)},
          {"exdata_size", extraDataBytes(d)},
          {"exdata", describeFields(d)},
          {"camera", isBuiltIn(d) && (d->x & cameraTargetByDefault) != 0}};
}

Json describeEffects(const char* name) {
  Json effects = Json::array();
  for (int i = 0; i < effectCount; i++) {
    if (!name || strcmp(name, effectList[i]->name) == 0) effects.push_back(describeEffect(i));
  }
  return effects;
}

Json describeExtraData(const EffectDefinition* d, const uint8_t* data) {
  Json fields = Json::object();
  if (!data) return fields;
  if (!isBuiltIn(d) || !d->exdata_fields) {
    fields["_exdata"] = hexText(data, static_cast<size_t>(extraDataBytes(d)));
    return fields;
  }
  forEachField(d, [&](const ExdataField& field, int offset) {
    const uint8_t* bytes = data + offset;
    if (!field.name) return;
    if (field.type == exdataInteger) fields[field.name] = integerField(bytes, field.size);
    if (field.type == exdataString) {
      const char* chars = reinterpret_cast<const char*>(bytes);
      fields[field.name] = std::string(chars, strnlen(chars, field.size));
    }
    if (field.type == exdataBytes) fields[field.name] = hexText(bytes, field.size);
  });
  return fields;
}

Json listTexts() {
  std::set<std::string> texts;
  for (int i = 0; i < objectCount; i++) {
    int object = indexOf(layerOrder[i]);
    for (int slot = 0; slot < usedSlots(object); slot++)
      for (const Json& value :
           describeExtraData(effectList[layerOrder[i]->slots[slot].effect], extraDataOf(object, slot)))
        if (value.is_string()) texts.insert(value.get<std::string>());
  }
  return texts;
}

Json describeSlot(int object, int slot) {
  const ObjectRecord& o = objects[object];
  const EffectDefinition* d = effectList[o.slots[slot].effect];
  Json tracks = Json::array(), checks = Json::array();
  for (int t = 0; t < d->track_count; t++) {
    int at = trackOf(o, slot, t);
    tracks.push_back({{"name", text(d->track_names[t])},
                      {"start", o.startValues[at]},
                      {"end", o.endValues[at]},
                      {"mode", o.modes[at]},
                      {"parameter", o.params[at]}});
  }
  for (int c = 0; c < d->check_count; c++) {
    checks.push_back({{"name", text(d->check_names[c])}, {"value", o.checks[checkOf(o, slot, c)]}});
  }
  uint8_t flags = slotFlagsOf(object, slot);
  return {{"effect", text(d->name)},
          {"index", o.slots[slot].effect},
          {"enabled", (flags & slotEnabled) != 0},
          {"flags", flags},
          {"tracks", tracks},
          {"checks", checks},
          {"exdata", describeExtraData(d, extraDataOf(object, slot))}};
}

Json describeObject(int object) {
  const ObjectRecord& o = objects[object];
  Json slots = Json::array();
  for (int slot = 0; slot < usedSlots(object); slot++) slots.push_back(describeSlot(object, slot));
  return {{"index", object},      {"name", text(objectDisplayName(object))},
          {"scene", o.scene},     {"layer", o.homeLayer + 1},
          {"start", o.start + 1}, {"end", o.end + 1},
          {"group", o.group},     {"chain", o.chainHead},
          {"flags", o.flags},     {"slots", slots}};
}

/// By scene, layer and frame, whichever scene is shown.
std::vector<int> objectsInOrder() {
  std::vector<int> list;
  for (int i = 0; i < objectCount; i++) list.push_back(indexOf(layerOrder[i]));
  auto place = [](int object) {
    const ObjectRecord& o = objects[object];
    return std::tuple(o.scene, o.homeLayer, o.start, object);
  };
  std::sort(list.begin(), list.end(), [=](int a, int b) { return place(a) < place(b); });
  return list;
}

Json describeLayers(int scene) {
  Json layerList = Json::array();
  for (int layer = 0; layer < layersPerScene; layer++) {
    const LayerRecord& l = layerTable[scene * layersPerScene + layer];
    if (!l.flags && !l.name) continue;
    layerList.push_back({{"layer", layer + 1}, {"flags", l.flags}, {"name", text(l.name)}});
  }
  return layerList;
}

/// sceneSetUp only tells that somebody has looked.
uint32_t editedFlags(int scene) { return scenes[scene].flags & ~uint32_t{sceneSetUp}; }

/// Whether anything was made of it.
bool sceneInUse(int scene) {
  const SceneRecord& record = scenes[scene];
  return editedFlags(scene) || record.name || record.width || record.height || sceneLength(scene) > 1;
}

Json describeScene(int scene, const Json& layerList) {
  const ImageSize size = sceneSize(scene);
  return {{"index", scene},
          {"name", text(sceneName(scene))},
          {"flags", editedFlags(scene)},
          {"alpha", (scenes[scene].flags & sceneHasAlpha) != 0},
          {"width", size.width},
          {"height", size.height},
          {"length", std::max(sceneLength(scene), 1)},
          {"layers", layerList}};
}

/// What is edited, without what is only looked at: neither the scene shown nor those visited make a difference.
Json describeProject() {
  const HostFileInfo& clip = environment.clip;
  Json sceneList = Json::array(), objectList = Json::array();
  bool holdsObjects[maxScenes]{};
  for (int object : objectsInOrder()) {
    holdsObjects[objects[object].scene] = true;
    objectList.push_back(describeObject(object));
  }
  for (int scene = 0; scene < maxScenes; scene++) {
    const Json layerList = describeLayers(scene);
    if (scene == 0 || holdsObjects[scene] || !layerList.empty() || sceneInUse(scene))
      sceneList.push_back(describeScene(scene, layerList));
  }
  return {{"clip",
           {{"width", clip.width},
            {"height", clip.height},
            {"rate", clip.rate},
            {"scale", clip.scale},
            {"length", sceneLength(0)},
            {"audio_rate", clip.audioRate},
            {"audio_channels", clip.audioChannels}}},
          {"scenes", sceneList},
          {"objects", objectList}};
}

}  // namespace

int answerQuery(intptr_t query, QueryRequest* request) {
  static std::string answer;
  auto answerWith = [&](const Json& json) {
    answer = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    request->answer = answer.c_str();
    return 1;
  };
  switch (query) {
    case queryEffects:
      return answerWith(describeEffects(request->argument));
    case queryProject:
      return answerWith(describeProject());
    case queryTexts:
      return answerWith(listTexts());
    case queryWriteBackup:
      request->answer = request->argument ? writeBackup(request->argument, true) : writeTimeStampedBackup();
      return 1;
    case queryLeftOut:
      answer = leftOutNote;
      request->answer = answer.empty() ? nullptr : answer.c_str();
      return 1;
    case queryUndoSteps:
      answer = std::to_string(undoSteps());
      request->answer = answer.c_str();
      return 1;
    case queryFault:
      answer = modelFault();
      request->answer = answer.c_str();
      return 1;
    default:
      return 0;
  }
}

}  // namespace zenlay
