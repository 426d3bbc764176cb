#include "zenlay/ui/timeline/frame_selection.h"

#include "zenlay/host/environment.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay {

FrameRange frameSelection() {
  int32_t first = 0, last = -1;
  const int end = timelineView.sceneLength - 1;
  if (end < 0 || !environment.hostFunctions->getSelection(environment.edit, &first, &last)) return noFrames;
  return first > last || (first <= 0 && last >= end) ? noFrames : FrameRange{first, last};
}

}  // namespace zenlay
