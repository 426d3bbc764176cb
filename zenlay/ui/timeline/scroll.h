// The window's size and scroll bars.
#pragma once

#include "platform/control.h"

namespace zenlay {

inline constexpr int scrollBarId = 1004;

/// Makes the scroll bars and gives the window its size, as the preferences say.
void createTimelineControls();
void forgetTimelineControls();
/// After the client size changed.
void layOutTimeline();
/// messageSizing: at least 128 wide, whole rows high.
void limitTimelineSize(platform::Rect* outer);
/// messageHorizontalScroll or messageVerticalScroll.
void scrollTimeline(platform::ScrollAction, platform::Window* bar);

}  // namespace zenlay
