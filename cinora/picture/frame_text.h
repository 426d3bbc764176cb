// Text on frame images, for the host's own notes.
#pragma once

#include <string_view>

#include "platform/font.h"
#include "zenlay/host/host_interface.h"

namespace cinora {

struct FrameTarget {
  zenlay::FramePixel* rows;  // null: only measure
  int rowPixels, width, height;
};

struct TextStyle {
  int red, green, blue;  // 0..255
  int transparency;      // 0..4096
};

struct TextSize {
  int width, height;  // pixels
};

/// Lines of UTF-8 with the top left corner at (x, y), cut at the target's edges.
TextSize drawFrameText(const FrameTarget&, int x, int y, std::string_view text, const TextStyle&, platform::Font*);

}  // namespace cinora
