// The frames that the user has selected in the host.
#pragma once

#include "zenlay/model/objects.h"

namespace zenlay {

inline constexpr FrameRange noFrames{0, -1};

/// Frames of the current scene; noFrames when there are none or all are selected.
FrameRange frameSelection();

}  // namespace zenlay
