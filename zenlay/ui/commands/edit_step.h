// What the commands and the windows edit by: one undo step an edit, the objects it is about, showing what it made.
#pragma once

#include <cstdint>
#include <vector>

namespace zenlay::commands {

/// Begins an undo step of its own, for the settings window's next edit too.
void beginStep();
void takeStepBack();
/// Runs the edit as one undo step. One that changes nothing leaves no step behind.
template <class Edit>
int inOneStep(Edit edit) {
  beginStep();
  const bool changed = edit();
  if (!changed) takeStepBack();
  return changed;
}

/// targetAny: of the selected objects, else the current one.
enum TargetKind { targetAny, targetCurrent };
/// Chain heads.
std::vector<int> heads(TargetKind = targetAny);

/// A LayerFlag, on or off; what can then not be selected is let go of. 1.
int toggleLayer(int layer, uint32_t flag);

/// The object becomes current and is brought into view; the scene reaches as far as it and what was created with it.
void showCreated(int object, int lastFrame);
/// False, after a message, for a sound in a project without.
bool audioFits(bool audio);

}  // namespace zenlay::commands
