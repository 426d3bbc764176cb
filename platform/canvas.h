// Drawing surfaces: in memory, or a window's own, which keeps what was drawn on it. Every call takes a null canvas and
// then does nothing. Edges fall on whole logical pixels, so that lines stay sharp at any scale of the desktop.
#pragma once

#include "platform/window.h"

namespace platform {

using Color = uint32_t;  // 0xRRGGBB
constexpr Color rgb(int r, int g, int b) { return static_cast<Color>(r << 16 | g << 8 | b); }
constexpr int redOf(Color c) { return c >> 16 & 255; }
constexpr int greenOf(Color c) { return c >> 8 & 255; }
constexpr int blueOf(Color c) { return c & 255; }

struct Canvas;

/// A memory drawing surface compatible with the screen: 32 bits a pixel, top-down, `width` pixels a row, black at
/// first. Null when a side is not within 1..32767 or memory lacks.
Canvas* createMemoryCanvas(int width, int height);
void releaseCanvas(Canvas*);
uint32_t* canvasPixels(Canvas*);  // of a memory canvas; null for a window's

/// The window's client area, the same for the window's life; what is drawn appears when the message under way is done.
/// Null without a desktop.
Canvas* windowCanvas(Window*);

enum LineStyle { lineSolid, lineDotted };
enum TextFont { fontMessage, fontSmall, fontBold };

/// Drawing is confined to the rectangle until clearClip, or to nothing by an empty one. messagePaint begins without.
void setClip(Canvas*, Rect);
void clearClip(Canvas*);
void fillRect(Canvas*, Rect, Color);
/// `left` at the first column to `right` at the last, linear in each channel.
void fillGradient(Canvas*, Rect, Color left, Color right);
void fillPolygon(Canvas*, const Point* corners, int count, Color);  // convex, corners included
/// Lines are one pixel wide; dots stand on every other pixel, at places that do not depend on where the line begins.
void drawLine(Canvas*, Point from, Point to, Color, LineStyle = lineSolid);  // the last point is not drawn
void drawFrame(Canvas*, Rect, Color, LineStyle = lineSolid);
void xorLine(Canvas*, Point from, Point to, Color);     // twice gives back what was there
enum EdgeStyle { edgeEtched, edgeSunken, edgeRaised };  // etched is two pixels wide, the others one
void drawEdge(Canvas*, Rect, EdgeStyle);
/// `at` is the top-left corner of the text; cut off at `clip`. UTF-8.
void drawText(Canvas*, Point at, Rect clip, const char* text, Color, TextFont = fontMessage);
/// Without a desktop an estimate.
Size textSize(const char* text, TextFont = fontMessage);
/// 0xAARRGGBB pixels, not premultiplied, stretched into the rectangle. The nearest pixel counts.
void drawPixels(Canvas*, Rect, const uint32_t* pixels, int width, int height, int rowPixels);
/// An icon of icons.h in one colour, as large as the rectangle.
void drawIcon(Canvas*, Rect, const char* icon, Color);

enum SystemColor {
  colorFace,  // of windows and buttons
  colorText,
  colorGreyText,
  colorWindow,  // of text boxes and lists
  colorWindowText,
  colorHighlight,
  colorHighlightText,
  colorLightEdge,
  colorDarkEdge,
};
/// Those of a dark theme without a desktop.
Color systemColor(SystemColor);

}  // namespace platform
