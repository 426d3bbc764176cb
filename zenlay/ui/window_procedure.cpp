#include "zenlay/ui/window_procedure.h"

#include <string>

#include "platform/paths.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/ui/backup.h"
#include "zenlay/ui/commands.h"
#include "zenlay/ui/describe.h"

namespace zenlay {
namespace {

constexpr char projectEnding[] = ".zenlay";

void readClip(EditHandle edit) {
  const HostFunctionTable* host = environment.hostFunctions;
  environment.edit = edit;
  environment.clip = HostFileInfo{};
  host->getFileInfo(edit, &environment.clip);
  timelineView.sceneLength = host->getFrameCount(edit);
}

void adoptClip(EditHandle edit) {
  HostSystemInfo system{};
  if (environment.hostFunctions->getSystemInfo(edit, &system)) {
    environment.projectFolder = platform::folderOf(system.projectFile ? system.projectFile : "");
  }
  readClip(edit);
  environment.projectOpen = environment.clip.name && isProjectClip(environment.clip.name);
  configureBackups();
}

void dropClip() {
  resetUndo();
  clearClipboard();
  deleteAllObjects();
  clearScenes();
  environment.projectOpen = false;
  environment.projectFolder.clear();
  environment.clip = HostFileInfo{};
  timelineView.sceneLength = 0;
}

}  // namespace

bool isProjectClip(const char* name) { return platform::extensionOf(name) == projectEnding; }

int timelineWindowProcedure(WindowHandle, uint32_t message, intptr_t first, intptr_t second, EditHandle edit,
                            HostFilterRecord*) {
  if (edit) environment.edit = edit;
  switch (message) {
    case messageWindowSetUp:
      readPreferences();
      setZoomLevel(preferences.zoom);
      return 0;
    case messageWindowClose:
      preferences.zoom = timelineView.zoomLevel;
      writePreferences();
      return 0;
    case messageFileOpen:
      adoptClip(edit);
      return 0;
    case messageFileClose:
      dropClip();
      return 0;
    case messageClipChanged:
      readClip(edit);
      return 0;
    case messageUpdate:
      if (backupIsDue()) writeAutomaticBackup(false);
      return 0;
    case messageCommand:
    case messageHostCommand:
      return runCommand(static_cast<int>(first), second);
    case messageQuery:
      return answerQuery(first, reinterpret_cast<QueryRequest*>(second));
    default:
      return 0;
  }
}

}  // namespace zenlay
