#include "zenlay/render/convert.h"

#include <algorithm>

namespace zenlay {
namespace {

uint8_t toByte(int32_t times16) { return static_cast<uint8_t>(std::clamp((times16 + 8) >> 4, 0, 255)); }

/// 0..255 to 0..4096 and back, to nearest.
int16_t fromAlphaByte(int a) { return static_cast<int16_t>(16 * a + ((a + 8) >> 4)); }
uint8_t toAlphaByte(int a) { return static_cast<uint8_t>(std::clamp((a * 255 + 2048) >> 12, 0, 255)); }

}  // namespace

ObjectPixel toYcbcr(uint8_t red, uint8_t green, uint8_t blue) {
  int32_t r = red * 16, g = green * 16, b = blue * 16;
  return {static_cast<int16_t>((4918 * r + 9655 * g + 1875 * b) >> 14),
          static_cast<int16_t>((-2775 * r - 5449 * g + 8224 * b) >> 14),
          static_cast<int16_t>((8224 * r - 6887 * g - 1337 * b) >> 14), fullAlpha};
}

Bgr toRgb(int y, int cb, int cr) {
  return {toByte((y * 16320 + cb * 28919) >> 14), toByte((y * 16320 - cb * 5616 - cr * 11655) >> 14),
          toByte((y * 16320 + cr * 22881) >> 14)};
}

void plainBgrToObjectRow(ObjectPixel* d, const Bgr* s, int n) {
  for (int i = 0; i < n; ++i) d[i] = toYcbcr(s[i].r, s[i].g, s[i].b);
}

void plainBgraToObjectRow(ObjectPixel* d, const Bgra* s, int n) {
  for (int i = 0; i < n; ++i) {
    d[i] = toYcbcr(s[i].r, s[i].g, s[i].b);
    d[i].a = fromAlphaByte(s[i].a);
  }
}

void plainFrameToBgrRow(Bgr* d, const FramePixel* s, int n) {
  for (int i = 0; i < n; ++i) d[i] = toRgb(s[i].y, s[i].cb, s[i].cr);
}

void plainObjectToBgraRow(Bgra* d, const ObjectPixel* s, int n) {
  for (int i = 0; i < n; ++i) {
    Bgr c = toRgb(s[i].y, s[i].cb, s[i].cr);
    d[i] = {c.b, c.g, c.r, toAlphaByte(s[i].a)};
  }
}

void plainSaturateRow(FramePixel* p, int n) {
  for (int i = 0; i < n; ++i) {
    Rgb c = toRgbScale({p[i].y, p[i].cb, p[i].cr});
    Rgb inside{std::clamp(c.r, 0, 4096), std::clamp(c.g, 0, 4096), std::clamp(c.b, 0, 4096)};
    if (inside.r == c.r && inside.g == c.g && inside.b == c.b) continue;
    Colour back = fromRgbScale(inside);
    p[i] = {static_cast<int16_t>(back.y), static_cast<int16_t>(back.cb), static_cast<int16_t>(back.cr)};
  }
}

void frameToObjectRow(ObjectPixel* d, const FramePixel* s, int n) {
  for (int i = 0; i < n; ++i) d[i] = {s[i].y, s[i].cb, s[i].cr, fullAlpha};
}

void objectToFrameRow(FramePixel* d, const ObjectPixel* s, int n) {
  for (int i = 0; i < n; ++i) d[i] = {s[i].y, s[i].cb, s[i].cr};
}

}  // namespace zenlay
