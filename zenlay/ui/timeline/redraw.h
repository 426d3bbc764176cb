// What of the timeline window is out of date, and bringing it up to date.
#pragma once

#include "platform/geometry.h"

namespace zenlay {

/// Around every message to the timeline window: what was noted meanwhile is drawn at its end.
void beginTimelineMessage();
void endTimelineMessage();
/// Draws what has been noted so far: before something that waits for the user, and for what comes meanwhile.
void flushTimeline();
/// The canvas is new: nothing that was drawn counts.
void paintTimeline();

void noteCursorMoved();

}  // namespace zenlay
