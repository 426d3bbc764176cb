// A frame of the film as a picture for the screen.
#pragma once

#include <QImage>
#include <optional>

#include "cinora/frame_converter.h"
#include "cinora/host.h"

namespace cinora::desktop {

class FramePictures {
 public:
  /// Renders the frame. Throws Failure.
  QImage make(Host&, int frame);

 private:
  std::optional<FrameConverter> converter_;
  QSize size_;
};

}  // namespace cinora::desktop
