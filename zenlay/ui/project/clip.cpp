#include "zenlay/ui/project/clip.h"

#include "platform/paths.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/project/backup.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/frame_selection.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

constexpr char projectEnding[] = ".zenlay";

FrameRange shownSelection = noFrames;

void readFileInfo(EditHandle edit) {
  environment.clip = HostFileInfo{};
  environment.hostFunctions->getFileInfo(edit, &environment.clip);
}

void markProject() { environment.projectOpen = environment.clip.name && isProjectClip(environment.clip.name); }

void takeFrameCount(EditHandle edit, int count) {
  timelineView.sceneLength = count;
  readFileInfo(edit);
  markProject();
  if (timelineView.cursorFrame >= count) setCursorFrame(count - 1);
  updateScrollBars();
  updateTitle();
  redrawTimeline();
}

void followSelection() {
  const FrameRange selected = frameSelection();
  if (selected != shownSelection) redrawRuler();
  shownSelection = selected;
}

}  // namespace

bool isProjectClip(const char* name) { return platform::extensionOf(name) == projectEnding; }

void readClip(EditHandle edit) {
  environment.edit = edit;
  readFileInfo(edit);
  timelineView.sceneLength = environment.hostFunctions->getFrameCount(edit);
  updateScrollBars();
  updateTitle();
  redrawTimeline();
}

void adoptClip(EditHandle edit) {
  abandonDrag();
  HostSystemInfo system{};
  if (environment.hostFunctions->getSystemInfo(edit, &system))
    environment.projectFolder = platform::folderOf(system.projectFile ? system.projectFile : "");
  restartBackupInterval();
  readClip(edit);
  markProject();
  timelineView.cursorFrame = environment.hostFunctions->getCurrentFrame(edit);
  updateTitle();
  if (!environment.projectOpen && timelineView.sceneLength > 0) zoomToFit();
}

void dropClip() {
  abandonDrag();
  clearSelection();
  showObject(-1);
  resetUndo();
  clearClipboard();
  deleteAllObjects();
  clearScenes();
  environment.projectOpen = environment.playing = false;
  environment.projectFolder.clear();
  environment.clip = HostFileInfo{};
  timelineView.sceneLength = timelineView.cursorFrame = timelineView.leftFrame = timelineView.savedLeftFrame = 0;
  timelineView.playbackFrame = -1;
  shownSelection = noFrames;
  updateScrollBars();
  updateTitle();
  redrawTimeline();
}

void followHost(EditHandle edit) {
  const HostFunctionTable* host = environment.hostFunctions;
  if (int count = host->getFrameCount(edit); count != timelineView.sceneLength) takeFrameCount(edit, count);
  if (int frame = host->getCurrentFrame(edit); frame != timelineView.cursorFrame && timelineView.sceneLength > 0)
    setCursorFrame(frame);
  followSelection();
  writeAutomaticBackup(false);
}

void showModel() {
  updateScrollBars();
  setTopLayer(timelineView.topLayer);
  setLeftFrame(timelineView.leftFrame);
  updateTitle();
  redrawTimeline();
}

void enterScene(int scene) {
  if (timelineView.dragMode != dragNone) endDrag(false);
  clearSelection();
  forgetClicks();
  setPlaybackFrame(-1);
  switchScene(scene, environment.mainFilter, environment.edit);
  showModel();
  timelineView.savedLeftFrame = timelineView.leftFrame;
}

}  // namespace zenlay
