#include "zenlay/ui/timeline/colors.h"

#include "zenlay/model/records.h"

namespace zenlay {

using platform::blueOf;
using platform::Color;
using platform::greenOf;
using platform::redOf;
using platform::rgb;

namespace {

constexpr ColorTriple mediaColors{rgb(16, 32, 108), rgb(24, 48, 192), rgb(64, 128, 255)};
constexpr ColorTriple filterColors{rgb(16, 108, 16), rgb(24, 192, 24), rgb(64, 240, 64)};
constexpr ColorTriple soundColors{rgb(108, 16, 24), rgb(192, 24, 32), rgb(248, 48, 64)};
constexpr ColorTriple soundFilterColors{rgb(108, 108, 16), rgb(192, 192, 32), rgb(216, 216, 64)};
constexpr ColorTriple controlColors{rgb(16, 108, 108), rgb(24, 192, 192), rgb(64, 216, 216)};
constexpr ColorTriple greyColors{rgb(96, 96, 96), rgb(128, 128, 128), rgb(144, 144, 144)};

/// Fits objects that have one of `any`, if it names some, and all of `all`; the first row that fits counts.
struct ColorRow {
  uint32_t any, all;
  const ColorTriple& colors;
};
constexpr ColorRow colorRows[] = {
    {objectControl | objectFilterEffect, objectAudio, mediaColors},
    {objectControl | objectFilterEffect, 0, controlColors},
    {0, objectAudio | objectDrawn, soundColors},
    {0, objectAudio, soundFilterColors},
    {0, objectDrawn, mediaColors},
};

template <class Channel>
Color eachChannel(Color c, Channel channel) {
  return rgb(channel(redOf(c)), channel(greenOf(c)), channel(blueOf(c)));
}

}  // namespace

const ColorTriple& objectColors(uint32_t objectFlags, bool grey) {
  for (const ColorRow& row : colorRows)
    if ((!row.any || objectFlags & row.any) && (objectFlags & row.all) == row.all) return row.colors;
  return grey ? greyColors : filterColors;
}

Color meanColor(Color a, Color b) {
  return rgb((redOf(a) + redOf(b)) / 2, (greenOf(a) + greenOf(b)) / 2, (blueOf(a) + blueOf(b)) / 2);
}

RowColors rowColors() {
  Color face = platform::systemColor(platform::colorFace);
  int r = redOf(face), g = greenOf(face), b = blueOf(face);
  return {
      .visible = face,
      .hidden = eachChannel(face, [](int c) { return c * 85 / 100; }),
      .rangeInner = eachChannel(face, [](int c) { return (c + 72) / 2; }),
      .rangeOuter = eachChannel(face, [](int c) { return (c + 96) / 2; }),
      .selection = rgb((r + 360) / 4, (g + 480) / 4, (b + 765) / 4),
      .selectionEdge = rgb((r + 400) / 6, (g + 500) / 6, (b + 1275) / 6),
  };
}

Color tinted(Color background, int kinds) {
  return eachChannel(background, [&](int c) { return (c * (8 - kinds) + 96 * kinds) / 8; });
}

}  // namespace zenlay
