// Time control: the time at which the layers below are evaluated.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

/// Scene time, in hundredths of a frame, that the time control (the section alive at `frame`) shows at that frame.
/// Without `decimated` it flows on between the frames that the picture holds.
int32_t controlledTime(const ObjectRecord*, int frame, int subFrame, bool decimated = true);

}  // namespace zenlay
