// Commands on the project as a whole: new projects, object files, backups, export, the scene and its length.
#include <algorithm>
#include <string>

#include "platform/paths.h"
#include "zenlay/files/object_file.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/project/backup.h"
#include "zenlay/ui/project/new_project.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {
namespace {

constexpr int fileNameBytes = 260;
constexpr char objectFileFilter[] = "ObjectFile (*.zlo)\0*.zlo\0AllFile (*.*)\0*.*\0";
constexpr char backupFileFilter[] = "BackupFile (*.zenlay_backup)\0*.zenlay_backup\0AllFile (*.*)\0*.*\0";
constexpr char filmFilter[] = "AVI / BMP (*.avi;*.bmp)\0*.avi;*.bmp\0AllFile (*.*)\0*.*\0";
constexpr char exportTitle[] = "Zenlay AVI / BMP export (RGBA)";

using FileDialog = int32_t (*)(char*, const char*, const char*);

/// The path chosen in a host dialog; empty when cancelled. The plug-in's windows are disabled meanwhile.
std::string askFile(FileDialog dialog, const char* filter, const char* initial) {
  char name[fileNameBytes] = "";
  platform::Window* windows[] = {environment.timelineWindow, settingsWindow()};
  platform::Window* active = platform::activeWindow();
  bool enabled[2];
  for (int i = 0; i < 2; i++) {
    enabled[i] = windows[i] && platform::windowEnabled(windows[i]);
    if (enabled[i]) platform::enableWindow(windows[i], false);
  }
  const bool chosen = dialog(name, filter, initial);
  for (int i = 0; i < 2; i++)
    if (enabled[i]) platform::enableWindow(windows[i], true);
  if (active) platform::focusWindow(active);
  return chosen ? name : "";
}

// ---- New projects ----

int newProject() {
  if (!editNewProject(false)) return 0;
  ClipFormat format{preferences.new_w, preferences.new_h, 0, 0, preferences.new_hz};
  return parseFrameRate(preferences.new_fps, &format.rate, &format.scale) && createProject(format);
}

int newFromObjectFile(const char* path) {
  if (!checkObjectFile(path)) return 0;
  ObjectFileHeader header;
  readObjectFileHeader(path, &header);
  const ClipFormat format{header.width, header.height,    header.rate,
                          header.scale, header.audioRate, header.audioChannels};
  if (!createProject(format)) return 0;
  scenes[0].flags = sceneSetUp | (header.flags & sceneHasAlpha);
  setSceneName(0, header.name);
  extendScene(std::max(header.length, 1) - 1);
  int end = readObjectFile(path, 0, 0);
  if (end < 0) return 0;
  extendScene(end);
  zoomToFit();
  return 1;
}

int insertObjectFile(const char* path) {
  if (!checkObjectFile(path)) return 0;
  return inOneStep([=] {
    const int before = objectCount, end = readObjectFile(path, timelineView.cursorFrame, 0);
    if (end < 0) return false;
    if (objectCount > before) extendScene(end);
    return objectCount > before;
  });
}

int importObjectFile() {
  std::string path = askFile(environment.hostFunctions->askLoadFileName, objectFileFilter, "");
  if (path.empty()) return 0;
  return (timelineView.sceneLength < 1 ? newFromObjectFile : insertObjectFile)(path.c_str());
}

int newFromBackup() {
  std::string newest = newestBackup();
  std::string path = askFile(environment.hostFunctions->askLoadFileName, backupFileFilter, newest.c_str());
  return path.empty() ? 0 : restoreBackup(path.c_str());
}

// ---- Out of the project ----

int exportObjectFile() {
  std::string path = askFile(environment.hostFunctions->askSaveFileName, objectFileFilter, "");
  if (!path.empty()) writeObjectFile(path.c_str());
  return 0;
}

int exportMedia() {
  std::string path = askFile(environment.hostFunctions->askSaveFileName, filmFilter, "");
  if (!path.empty()) environment.hostFunctions->exportEdit(environment.edit, path.c_str(), 0, exportTitle);
  return 0;
}

// ---- The scene ----

int setLastFrame(int frame) {
  const int length = std::min(frame, environment.maxFrames - 1) + 1;
  if (length < 1 || length == timelineView.sceneLength || !setSceneLength(length)) return 0;
  if (timelineView.cursorFrame >= length) moveCursor(length - 1);
  updateTitle();
  return 1;
}

int setLastFrameAtLastObject() {
  int last = -1;
  for (int e = 0; e < sceneObjectCount; e++) last = std::max(last, layerOrder[e]->end);
  return setLastFrame(last);
}

/// Scenes belong to projects of the plug-in's own.
int sceneSettings() {
  if (!environment.projectOpen) return 0;
  return editSceneSettings();
}

const char* pathOf(const Call& call) { return reinterpret_cast<const char*>(call.parameter); }

constexpr Row rows[] = {
    {commandNewProject, [](const Call&) { return newProject(); }, needsNoProject, showsTimeline},
    {commandLastFrameAtCursor, [](const Call&) { return setLastFrame(timelineView.cursorFrame); }, needsProject,
     showsTimeline},
    {commandImport, [](const Call&) { return importObjectFile(); }, needsNothing, showsTimeline},
    {commandExport, [](const Call&) { return exportObjectFile(); }, needsProject},
    {commandExportMedia, [](const Call&) { return exportMedia(); }, needsProject},
    {commandNewFromObjectFile, [](const Call& call) { return newFromObjectFile(pathOf(call)); }, needsNoProject,
     showsTimeline},
    {commandRestoreBackup, [](const Call&) { return newFromBackup(); }, needsNoProject, showsTimeline},
    {commandRestoreBackupPath, [](const Call& call) { return restoreBackup(pathOf(call)); }, needsNoProject,
     showsTimeline},
    {commandCursorIsLastFrame, [](const Call&) { return setLastFrame(timelineView.cursorFrame); }, needsProject,
     showsTimeline},
    {commandSceneSettings, [](const Call&) { return sceneSettings(); }, needsProject, showsTimeline},
    {commandLastObjectIsLastFrame, [](const Call&) { return setLastFrameAtLastObject(); }, needsProject, showsTimeline},
};

}  // namespace

const std::span<const Row> projectCommands = rows;

}  // namespace zenlay::commands
