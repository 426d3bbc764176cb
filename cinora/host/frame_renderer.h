// Making frames: the clip's picture, then every filter in order.
#pragma once

#include "cinora/host/host.h"

namespace cinora {

struct RenderedFrame {
  const zenlay::FramePixel* rows;  // valid until the next frame is made
  int rowPixels, width, height;
};

/// Luma of what a clip shows that is no film, or behind the film's end.
enum Background : int16_t { blackBackground = 0, whiteBackground = zenlay::whiteLuma };

/// Throws Failure when a filter leaves a frame that cannot be.
RenderedFrame renderFrame(Host&, int frame, Background = blackBackground);
/// The frame as the filters before `stop` leave it, in images of its own, on the background of the frame being made
/// (black outside one); null while it is being made itself.
zenlay::FramePixel* frameBefore(Host&, const zenlay::HostFilterRecord* stop, int frame);

/// A frame with its transparency, from the same frame made over black and over white. What is seen of the background
/// is 1 - alpha, so with b and w the lumas over black and over white (4096 = white)
///   alpha = 4096 - (w - b),   colour = (Y, Cb, Cr over black) * 4096 / alpha,
/// which holds for everything that mixes linearly with what lies below it.
void separateAlpha(const zenlay::FramePixel* overBlack, const zenlay::FramePixel* overWhite, zenlay::ObjectPixel* out,
                   int n);

}  // namespace cinora
