#include "zenlay/ui/input/file_drop.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/paths.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/files/object_file.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/commands.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/input/input.h"
#include "zenlay/ui/project/new_project.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/snapping.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

constexpr char sourceField[] = "file";

// ---- The source file of a media effect ----

/// Where an effect keeps its file name in the extra data.
struct SourceField {
  int offset = 0;
  size_t bytes = 0;  // 0 for an effect that takes no file
};

SourceField sourceFieldOf(const EffectDefinition* d) {
  SourceField source;
  forEachField(d, [&](const ExdataField& field, int offset) {
    if (field.type == exdataString && field.name && strcmp(field.name, sourceField) == 0) source = {offset, field.size};
  });
  return source;
}

/// The duration of a film or a sound in frames of the scene; 0 when the file is neither.
int framesOfMedia(const char* path, bool audio) {
  const EffectServiceTable* services = effectList[effectVideoFile]->services;
  HostFileInfo info{};
  uint32_t kind = audio ? openAudio : openVideo;
  if (!services || !services->openMediaByPath(path, kind, &info)) return 0;
  double seconds = 0;
  if (audio && info.audioRate > 0)
    seconds = static_cast<double>(info.audioSampleCount) / info.audioRate;
  else if (!audio && info.rate > 0)
    seconds = static_cast<double>(info.frameCount) * info.scale / info.rate;
  double frames = seconds * environment.clip.rate / std::max(environment.clip.scale, 1);
  return static_cast<int>(std::min(frames, static_cast<double>(environment.maxFrames)));
}

/// Asked of the host itself: nothing is wrong with a film without sound.
bool isSilent(const char* path) {
  HostFileInfo info{};
  MediaHandle media = environment.hostFunctions->openMediaFile(path, &info, openAudio);
  if (media) environment.hostFunctions->closeMediaFile(media);
  return !media;
}

bool hasDuration(int effect) { return effect == effectVideoFile || effect == effectAudioFile; }

// ---- Objects by file name extension ----

/// The media effects that the extension stands for, in the table's order.
std::vector<int> effectsFor(std::string_view extension) {
  std::vector<int> effects;
  for (const char* at = extensionTable; *at;) {
    const char* name = at + strlen(at) + 1;
    if (platform::equalNoCase(at, extension)) {
      for (int audio : {0, 1}) {
        int effect = findEffect(name, audio, 1);
        if (effect >= 0 && effectList[effect]->flag & effectMedia) effects.push_back(effect);
      }
    }
    at = name + strlen(name) + 1;
  }
  return effects;
}

bool projectHasAudio() { return environment.clip.flags & fileHasAudio; }

/// Before anything is created: whether every effect has room for the path. The user is told when not.
bool effectsTakePath(const std::vector<int>& effects, const char* path) {
  size_t bytes = SIZE_MAX;
  for (int effect : effects)
    if (size_t own = sourceFieldOf(effectList[effect]).bytes) bytes = std::min(bytes, own);
  return pathFits(path, bytes);
}

/// A further object of one drop goes by the first.
void matchFirst(int object, int first) {
  setObjectLength(object, objects[first].end - objects[first].start + 1);
  if (preferences.group_open) joinGroup(object, first);
}

/// The n-th further object of a drop goes below the first, or above it where the layers end.
int layerOfFurther(int layer, int n) {
  int below = layer + n;
  return below < layersPerScene ? below : layer - (below - layersPerScene + 1);
}

std::vector<int> createMediaObjects(const char* path, int frame, int layer, const std::vector<int>& effects) {
  std::vector<int> created;
  bool refused = false;
  for (int effect : effects) {
    bool audio = effectList[effect]->flag & effectAudio;
    if (audio && effects.size() > 1 && isSilent(path)) continue;
    if (audio && !projectHasAudio()) {
      refused = true;
      continue;
    }
    int start = created.empty() ? frame : objects[created.front()].start;
    int object = createObjectWithDefaults(start, layerOfFurther(layer, static_cast<int>(created.size())), effect);
    if (object < 0) continue;
    created.push_back(object);
    setSourceFile(object, 0, path);
    if (created.size() > 1) matchFirst(object, created.front());
  }
  if (created.empty() && refused) commands::audioFits(true);
  return created;
}

int placeMedia(const char* path, int frame, int layer, const std::vector<int>& effects) {
  const std::vector<int> created = createMediaObjects(path, frame, layer, effects);
  if (created.empty()) return 0;
  int last = 0;
  for (int object : created) last = std::max(last, objects[object].end);
  commands::showCreated(created.front(), last);
  for (auto object = created.rbegin(); object != created.rend(); object++) revealObject(*object);
  redrawTimeline();
  return 1;
}

int placeObjectFile(const char* path, int frame, int layer) {
  int last = checkObjectFile(path) ? readObjectFile(path, frame, layer) : -1;
  if (last < 0) return 0;
  extendScene(last);
  redrawTimeline();
  return 1;
}

int placeAliasFile(const char* path, int frame, int layer) {
  int object = placeAlias(path, frame, layer);
  if (object < 0) return 0;
  commands::showCreated(object, chainRange(object).last);
  redrawTimeline();
  return 1;
}

/// What the file holds, as one undo step: an object file, an alias, or the media objects that its extension stands for.
int placeFile(const char* path, int frame, int layer) {
  std::string_view extension = platform::extensionOf(path);
  frame = snapFrame(frame, layer, false);
  return commands::inOneStep([&]() -> int {
    if (platform::equalNoCase(extension, ".zlo")) return placeObjectFile(path, frame, layer);
    if (platform::equalNoCase(extension, ".zla")) return placeAliasFile(path, frame, layer);
    std::vector<int> effects = effectsFor(extension);
    return effects.empty() ? 0 : placeMedia(path, frame, layer, effects);
  });
}

// ---- Without a project ----

/// What the new-project dialog was answered with, or the format of the clip that the host has opened.
bool newProjectFormat(ClipFormat& format) {
  const HostFileInfo& clip = environment.clip;
  format = {clip.width, clip.height, clip.rate, clip.scale, clip.audioRate};
  if (preferences.new_fmt) return true;
  format.width = preferences.new_w;
  format.height = preferences.new_h;
  format.audioRate = preferences.new_hz;
  return parseFrameRate(preferences.new_fps, &format.rate, &format.scale);
}

/// Opens the file as a clip to take the format from and makes a project; true when one is open.
bool projectForClip(const char* path) {
  const HostFunctionTable* host = environment.hostFunctions;
  if (host->openEdit(environment.edit, path, 0) != 1) {
    showMessage("Failed to read the file", boxWarning);
    return false;
  }
  if (!editNewProject(true)) return false;
  ClipFormat format;
  return newProjectFormat(format) && createProject(format);
}

struct OpeningCommand {
  std::string_view extension;
  int command;
};
constexpr OpeningCommand openingCommands[] = {{".zlo", commandNewFromObjectFile},
                                              {".zenlay_backup", commandRestoreBackupPath}};

/// True when the file is to be placed now; otherwise `result` is the answer.
bool openWithoutProject(const char* path, int& result) {
  std::string_view extension = platform::extensionOf(path);
  for (const OpeningCommand& row : openingCommands) {
    if (!platform::equalNoCase(row.extension, extension)) continue;
    result = runCommand(row.command, reinterpret_cast<intptr_t>(path));
    return false;
  }
  if (platform::equalNoCase(".zla", extension)) {
    showMessage("There is no project to insert the alias into", boxWarning);
    return false;
  }
  if (platform::equalNoCase(".cnp", extension)) {
    result = environment.hostFunctions->openEdit(environment.edit, path, 0) == 1;
    return false;
  }
  return projectForClip(path) && timelineView.sceneLength > 0;
}

}  // namespace

bool setSourceFile(int object, int slot, const char* path) {
  const int effect = objects[object].slots[slot].effect;
  const SourceField source = sourceFieldOf(effectList[effect]);
  uint8_t* data = extraDataOf(object, slot);
  if (!data || source.bytes == 0 || !pathFits(path, source.bytes)) return false;
  memset(data + source.offset, 0, source.bytes);
  memcpy(data + source.offset, path, strlen(path));
  if (modelHooks.sendCommand) modelHooks.sendCommand(object, slot, commandCheckFile, 0);
  if (!hasDuration(effect) || objects[object].chainHead >= 0) return true;
  if (int frames = framesOfMedia(path, effectList[effect]->flag & effectAudio); frames > 0)
    setObjectLength(object, frames);
  return true;
}

void tellOfFurtherFiles(const platform::DroppedFiles& files) {
  if (files.count > 1) showMessage("Only the first of the dropped files was taken", boxWarning);
}

int filesDropped(const platform::DroppedFiles& files) {
  if (files.count < 1) return 0;
  endPendingDrag(0);
  const std::string path = files.paths[0];
  if (!effectsTakePath(effectsFor(platform::extensionOf(path)), path.c_str())) return 0;
  const bool begins = timelineView.sceneLength <= 1;  // a scene, with this file
  int result = 0;
  if (timelineView.sceneLength < 1 && !openWithoutProject(path.c_str(), result)) return result;
  result = placeFile(path.c_str(), clampedFrameAtX(files.at.x), visibleLayerAtY(files.at.y));
  if (begins && result) zoomToFit();
  if (result) tellOfFurtherFiles(files);
  return result;
}

}  // namespace zenlay
