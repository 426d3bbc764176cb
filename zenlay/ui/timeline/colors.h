// Colours of the timeline.
#pragma once

#include <cstdint>

#include "platform/canvas.h"

namespace zenlay {

struct ColorTriple {
  platform::Color dark, normal, bright;
};
/// By the object's flags (ObjectFlag). `grey`: the scene is drawn with an alpha channel, where filter objects differ.
const ColorTriple& objectColors(uint32_t objectFlags, bool grey);
/// Per channel, rounded down.
platform::Color meanColor(platform::Color, platform::Color);

/// Derived from the desktop's face colour.
struct RowColors {
  platform::Color visible, hidden;
  platform::Color rangeInner, rangeOuter;  // edge lines of a layer range
  platform::Color selection, selectionEdge;
};
RowColors rowColors();
/// The background under `kinds` (0..3) different kinds of layer ranges.
platform::Color tinted(platform::Color background, int kinds);

inline constexpr platform::Color colorObjectText = platform::rgb(255, 255, 255);
inline constexpr platform::Color colorDimmedText = platform::rgb(160, 160, 160);
inline constexpr platform::Color colorSceneEnd = platform::rgb(160, 160, 160);
inline constexpr platform::Color colorBeat = platform::rgb(160, 160, 160);
inline constexpr platform::Color colorBar = platform::rgb(100, 100, 100);
inline constexpr platform::Color colorEditCursor = platform::rgb(0, 255, 255);
inline constexpr platform::Color colorPlayback = platform::rgb(255, 64, 255);
inline constexpr platform::Color colorDottedFrame = platform::rgb(255, 255, 255);
inline constexpr platform::Color colorGaugeBelow = platform::rgb(96, 160, 255);
inline constexpr platform::Color colorGaugeAbove = platform::rgb(32, 64, 128);
inline constexpr platform::Color colorLock = platform::rgb(192, 64, 64);
inline constexpr platform::Color colorLink = platform::rgb(64, 64, 192);
inline constexpr platform::Color colorClip = platform::rgb(192, 64, 64);

}  // namespace zenlay
