#include <algorithm>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {

void beginStep() {
  endSettingsEdit();
  beginUndoStep();
}

void takeStepBack() { undo(); }

std::vector<int> heads(TargetKind kind) {
  if (kind == targetAny) return commandTargetHeads();
  return onTimeline(currentObject) ? std::vector<int>{headOf(currentObject)} : std::vector<int>{};
}

void followCursor() {
  if (!preferences.config_move || !onTimeline(currentObject)) return;
  int object = objectAt(timelineView.cursorFrame, objects[currentObject].layer);
  if (object >= 0 && object != currentObject) showObject(object);
}

void showCreated(int object) {
  extendScene(chainRange(object).last);
  showObject(object);
  if (objects[object].start > timelineView.rightFrame) setLeftFrame(objects[object].start);
}

bool audioFits(bool audio) {
  if (!audio || environment.clip.flags & fileHasAudio) return true;
  showMessage("No sound in the editing project", boxWarning);
  return false;
}

}  // namespace zenlay::commands
