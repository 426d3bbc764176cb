#include "zenlay/ui/commands/edit_step.h"

#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/undo.h"
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

int toggleLayer(int layer, uint32_t flag) {
  layers[layer].flags ^= flag;
  dropUnselectable();
  return 1;
}

void showCreated(int object, int lastFrame) {
  extendScene(lastFrame);
  makeCurrent(object);
  revealObject(object);
}

bool audioFits(bool audio) {
  if (!audio || environment.clip.flags & fileHasAudio) return true;
  showMessage("No sound in the editing project", boxWarning);
  return false;
}

}  // namespace zenlay::commands
