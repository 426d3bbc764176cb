#include "zenlay/ui/commands.h"

#include <algorithm>
#include <string>

#include "platform/paths.h"
#include "zenlay/files/object_file.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/ui/backup.h"
#include "zenlay/ui/new_project.h"

namespace zenlay {
namespace {

constexpr int fileNameBytes = 260;
constexpr char objectFileFilter[] = "ObjectFile (*.zlo)\0*.zlo\0AllFile (*.*)\0*.*\0";
constexpr char backupFileFilter[] = "BackupFile (*.zenlay_backup)\0*.zenlay_backup\0";

using FileDialog = int32_t (*)(char*, const char*, const char*);

/// The path chosen in a host dialog; empty when cancelled.
std::string askFile(FileDialog dialog, const char* filter, const char* initial) {
  char name[fileNameBytes] = "";
  return dialog(name, filter, initial) ? name : "";
}

/// Grows the current scene (and with it the host's clip) to `length` frames; it never shrinks.
void growScene(int length) {
  length = std::min(length, environment.maxFrames);
  if (length <= timelineView.sceneLength) return;
  environment.hostFunctions->setFrameCount(environment.edit, length);
  timelineView.sceneLength = length;
}

int newFromObjectFile(const char* path) {
  ObjectFileHeader header;
  if (!platform::fileExists(path)) {
    showMessage("Failed to read the file", boxWarning);
    return 0;
  }
  bool headed = readObjectFileHeader(path, &header);
  const ClipFormat format{header.width, header.height, header.rate, header.scale, header.audioRate};
  if (!createProject(format)) return 0;
  scenes[0].flags = sceneSetUp | (header.flags & sceneHasAlpha);
  setSceneName(0, header.name);
  growScene(std::max(header.length, 1));
  int end = readObjectFile(path, 0, 0);
  if (end < 0) return 0;
  if (!headed && objectCount == 0) {
    showMessage("The file holds neither a header nor objects", boxWarning);
    return 0;
  }
  growScene(end + 1);
  return 1;
}

int importObjectFile() {
  std::string path = askFile(environment.hostFunctions->askLoadFileName, objectFileFilter, "");
  if (path.empty()) return 0;
  if (!environment.projectOpen) return newFromObjectFile(path.c_str());
  beginUndoStep();
  int end = readObjectFile(path.c_str(), timelineView.cursorFrame, 0);
  if (end >= 0) growScene(end + 1);
  return 1;
}

int exportObjectFile() {
  std::string path = askFile(environment.hostFunctions->askSaveFileName, objectFileFilter, "");
  if (!path.empty()) writeObjectFile(path.c_str());
  return 0;
}

int restoreBackupChosen() {
  if (environment.projectOpen) return 0;
  std::string newest = newestBackup();
  std::string path = askFile(environment.hostFunctions->askLoadFileName, backupFileFilter, newest.c_str());
  return path.empty() ? 0 : restoreBackup(path.c_str());
}

int discardCaches() {
  const HostFunctionTable* host = environment.hostFunctions;
  initialiseImageCache(host->readIntSetting(environment.mainFilter, "image_cache_max", defaultImageCacheSlots));
  return 1;
}

int toggle(int32_t& setting) {
  setting = !setting;
  return 1;
}

struct CommandRow {
  int id;
  int (*run)(intptr_t parameter);
};

const char* pathOf(intptr_t parameter) { return reinterpret_cast<const char*>(parameter); }

constexpr CommandRow commandTable[] = {
    {commandToggleOutOfArea, [](intptr_t) { return toggle(preferences.grid.out_of_area); }},
    {commandImport, [](intptr_t) { return importObjectFile(); }},
    {commandExport, [](intptr_t) { return exportObjectFile(); }},
    {commandNewFromObjectFile,
     [](intptr_t path) { return environment.projectOpen ? 0 : newFromObjectFile(pathOf(path)); }},
    {commandToggleFastPreview, [](intptr_t) { return toggle(preferences.fast_preview); }},
    {commandRestoreBackup, [](intptr_t) { return restoreBackupChosen(); }},
    {commandRestoreBackupPath, [](intptr_t path) { return environment.projectOpen ? 0 : restoreBackup(pathOf(path)); }},
    {commandDiscardCaches, [](intptr_t) { return discardCaches(); }},
    {commandToggleGrid2d, [](intptr_t) { return toggle(preferences.grid.grid2d); }},
    {commandToggleGrid3d, [](intptr_t) { return toggle(preferences.grid.grid3d); }},
};

}  // namespace

int runCommand(int id, intptr_t parameter) {
  for (const CommandRow& row : commandTable) {
    if (row.id == id) return row.run(parameter);
  }
  return 0;
}

}  // namespace zenlay
