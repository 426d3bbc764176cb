// A frame of the film as a picture for the screen.
#pragma once

#include <QImage>
#include <optional>

#include "cinora/host/host.h"
#include "cinora/picture/frame_converter.h"

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
