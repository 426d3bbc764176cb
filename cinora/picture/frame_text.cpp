#include "cinora/picture/frame_text.h"

#include <algorithm>

#include "cinora/picture/planes.h"
#include "platform/text.h"

namespace cinora {
namespace {

constexpr int fullCoverage = 64;

void blendGlyph(const FrameTarget& target, int left, int top, const platform::Glyph& glyph,
                const zenlay::FramePixel& colour, int opacity) {
  int firstX = std::max(0, -left), lastX = std::min(glyph.width, target.width - left);
  int firstY = std::max(0, -top), lastY = std::min(glyph.height, target.height - top);
  for (int y = firstY; y < lastY; y++) {
    zenlay::FramePixel* row = target.rows + static_cast<ptrdiff_t>(top + y) * target.rowPixels + left;
    const uint8_t* coverage = &glyph.coverage[static_cast<size_t>(y) * glyph.width];
    for (int x = firstX; x < lastX; x++) {
      int weight = coverage[x] * opacity / fullCoverage;
      auto mix = [weight](int16_t& to, int from) { to = static_cast<int16_t>(to + (((from - to) * weight) >> 12)); };
      mix(row[x].y, colour.y);
      mix(row[x].cb, colour.cb);
      mix(row[x].cr, colour.cr);
    }
  }
}

}  // namespace

TextSize drawFrameText(const FrameTarget& target, int x, int y, std::string_view text, const TextStyle& style,
                       platform::Font* font) {
  platform::FontMetrics metrics = platform::fontMetrics(font);
  auto byte = [](int value) { return static_cast<uint8_t>(std::clamp(value, 0, 255)); };
  zenlay::Bgr bgr{byte(style.blue), byte(style.green), byte(style.red)};
  zenlay::FramePixel colour;
  bgrToFrameRow(&colour, &bgr, 1);
  int opacity = zenlay::fullAlpha - std::clamp(style.transparency, 0, zenlay::fullAlpha);

  TextSize size{0, metrics.lineHeight};
  int pen = 0;
  std::u16string units = platform::utf16FromAnsi(text);
  for (size_t i = 0; i < units.size(); i++) {
    char32_t character = units[i];
    if (character == '\n') {
      pen = 0;
      size.height += metrics.lineHeight;
      continue;
    }
    if (character >= 0xD800 && character < 0xDC00 && i + 1 < units.size())
      character = 0x10000 + ((character - 0xD800) << 10) + (units[++i] - 0xDC00);
    platform::Glyph glyph;
    if (!platform::drawGlyph(font, character, &glyph)) continue;
    if (target.rows) {
      int baseline = y + size.height - metrics.lineHeight + metrics.ascent;
      blendGlyph(target, x + pen + glyph.left, baseline - glyph.top, glyph, colour, opacity);
    }
    pen += glyph.advance;
    size.width = std::max(size.width, pen);
  }
  return size;
}

}  // namespace cinora
