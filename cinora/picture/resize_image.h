// Resampling of frame images.
#pragma once

#include "cinora/support/worker_pool.h"
#include "zenlay/host/host_interface.h"

namespace cinora {

struct FrameArea {
  const zenlay::FramePixel* rows;  // top left pixel of the area
  int rowPixels;
  int width, height;
};

/// The area at width x height: linear between pixel centres when it grows; when it shrinks the same triangle, widened
/// to cover every source pixel, so that thin lines don't shimmer. Edge pixels repeat outwards. The two may overlap.
void resizeFrame(WorkerPool&, zenlay::FramePixel* destination, int rowPixels, int width, int height,
                 const FrameArea& source);

}  // namespace cinora
