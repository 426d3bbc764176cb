// A frame image of the host: address space for the largest image, backed by memory only where it was touched.
#pragma once

#include <new>
#include <utility>

#include "platform/system.h"
#include "zenlay/host/host_interface.h"

namespace cinora {

class FrameImage {
 public:
  FrameImage() = default;
  /// Throws std::bad_alloc when the address space cannot be had.
  FrameImage(int rowPixels, int rows)
      : bytes_(sizeof(zenlay::FramePixel) * rowPixels * rows),
        pixels_(static_cast<zenlay::FramePixel*>(platform::reserveMemory(bytes_))) {
    if (!pixels_) throw std::bad_alloc();
  }
  FrameImage(FrameImage&& other) noexcept { *this = std::move(other); }
  FrameImage& operator=(FrameImage&& other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(pixels_, other.pixels_);
    return *this;
  }
  ~FrameImage() {
    if (pixels_) platform::releaseMemory(pixels_, bytes_);
  }

  zenlay::FramePixel* pixels() const { return pixels_; }

 private:
  size_t bytes_ = 0;
  zenlay::FramePixel* pixels_ = nullptr;
};

}  // namespace cinora
