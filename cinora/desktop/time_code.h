// Frames as the user reads and types them.
#pragma once

#include <QString>
#include <optional>

#include "cinora/host/edit.h"

namespace cinora::desktop {

/// "hh:mm:ss.cc", hundredths cut off.
QString timeCode(int frame, const ClipFormat&);
/// Seconds, with minutes and hours before them where wanted: "5", "1:02.5", "0:00:01.20". The first frame that begins
/// at that time or after it; nothing for other texts.
std::optional<int> frameOfTimeCode(const QString&, const ClipFormat&);

}  // namespace cinora::desktop
