// A desktop that keeps one window's pixels in memory. Text shows as a block of 6 x 13 pixels a character.
#pragma once

#include <cstring>
#include <vector>

#include "platform/backend.h"

namespace zenlay::test {

class PixelDesktop {
 public:
  PixelDesktop(platform::Window* window, platform::Size size) : window_(window), size_(size) {
    pixels_.resize(static_cast<size_t>(size.width) * size.height);
    canvas_ = platform::wrapCanvas(window, pixels_.data(), size, 1);
    serving_ = this;
    before_ = platform::desktopBackend();
    static platform::DesktopBackend table;
    table = before_;
    table.windowCanvas = [](platform::Window* asking) {
      return asking == serving_->window_ ? serving_->canvas_ : nullptr;
    };
    table.renderText = [](const char* text, platform::TextFont, double) {
      int width = 6 * static_cast<int>(strlen(text));
      return platform::CoverageMask{width, 13, 0, 0, std::vector<uint8_t>(static_cast<size_t>(width) * 13, 255)};
    };
    platform::setDesktopBackend(&table);
    platform::forgetMasks();
  }
  ~PixelDesktop() {
    platform::setDesktopBackend(&before_);
    platform::releaseCanvas(canvas_);
    platform::forgetMasks();
  }
  /// 0xRRGGBB.
  platform::Color at(int x, int y) const {
    return pixels_[static_cast<size_t>(y) * size_.width + static_cast<size_t>(x)] & 0xFFFFFF;
  }
  const std::vector<uint32_t>& pixels() const { return pixels_; }

 private:
  platform::Window* window_;
  platform::Size size_;
  std::vector<uint32_t> pixels_;
  platform::Canvas* canvas_;
  inline static platform::DesktopBackend before_;
  inline static PixelDesktop* serving_;
};

}  // namespace zenlay::test
