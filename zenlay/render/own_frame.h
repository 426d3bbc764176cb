// Frames that the module renders for itself, beside those that the host asks for.
#pragma once

#include "zenlay/effects/process_info.h"

namespace zenlay {

struct OwnFrame {
  FramePixel *image = nullptr, *scratch = nullptr;
  size_t bytes = 0;  // of each: a work image at least
};

/// False, with nothing reserved, without memory.
bool reserveFrame(OwnFrame&);
void releaseFrame(OwnFrame&);
/// For renderSceneFrame, of the last output's size. `flags`: of FrameProcessInfo.
FrameProcessInfo infoOfFrame(const OwnFrame&, int number, uint32_t flags);

}  // namespace zenlay
