// Where things stand in the timeline window: frames and layers against client pixels, and what lies under a point.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace zenlay {

inline constexpr int headerWidth = 64;  // layer headers; the object area begins here
inline constexpr int rowsTop = 42;
inline constexpr int rulerTop = 13;
inline constexpr int rulerBottom = 41;
inline constexpr int barSide = 13;   // of the scroll bars
inline constexpr int gaugeTop = 22;  // y from which a press in the header box means the zoom gauge
inline constexpr int edgeReach = 16;
inline constexpr int snapReach = 8;
inline constexpr int hitReach = 8;
inline constexpr int sceneEndRoom = 96;  // pixels between the scene's end and the right edge at most

/// Saturates far outside the window.
int xOfFrame(int frame);
/// May be negative.
int frameAtX(int x);
inline int clampedFrameAtX(int x) { return frameAtX(x) < 0 ? 0 : frameAtX(x); }
/// Frames that fit into so many pixels.
int framesIn(int pixels);
/// 0..99.
int layerAtY(int y);
/// The same, held inside the visible rows.
int visibleLayerAtY(int y);

int rowTop(int layer);  // y
bool layerVisible(int layer);
/// y behind the last row.
int rowsBottom();

/// First and last column of an object's bar, before any clipping; at least one pixel.
struct PixelSpan {
  int first, last;
};
PixelSpan spanOf(int object);

/// The object of the row under the point that a press means: bars reach 8 pixels farther, the one that holds the point
/// most deeply wins. -1 when there is none or the point is not on a row.
int objectUnder(platform::Point);
/// The object whose frames contain the frame at the point, or -1.
int objectHolding(platform::Point);

/// Which edge a press at `x` takes hold of when the object is the only one selected.
enum ObjectEdge { edgeNone, edgeStart, edgeEnd };
ObjectEdge edgeAt(int object, int x);

}  // namespace zenlay
