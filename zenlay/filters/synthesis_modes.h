// Putting a picture into an object's image: placing, tiling and the per-pixel combinations.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

enum SynthesisMode : int {
  synthesisColor,           // the picture's colour, the object's alpha
  synthesisLumaAsAlpha,     // the picture's luma (0..4096) becomes the alpha
  synthesisLumaTimesAlpha,  // alpha x luma / 4096
  synthesisModes
};

/// A picture with its top-left corner at (x, y) of the object.
struct SynthesisPicture {
  const void* pixels;
  int lineBytes;
  bool alpha;         // ObjectPixels, else FramePixels
  int width, height;  // at least 1
  int x, y;
  bool tiled;  // repeated over the whole object
};

/// Calls tile(px, py) for every copy of the picture that touches the width x height area.
template <class Tile>
void forEachTile(const SynthesisPicture& picture, int width, int height, Tile&& tile) {
  if (!picture.tiled) {
    if (picture.x < width && picture.y < height && picture.x + picture.width > 0 && picture.y + picture.height > 0)
      tile(picture.x, picture.y);
    return;
  }
  auto first = [](int offset, int size) { return offset % size > 0 ? offset % size - size : offset % size; };
  for (int y = first(picture.y, picture.height); y < height; y += picture.height)
    for (int x = first(picture.x, picture.width); x < width; x += picture.width) tile(x, y);
}

/// Combines the picture with the object image; outside the picture the object's alpha becomes 0.
void combinePicture(const HostFunctionTable*, EffectProcessInfo*, const SynthesisPicture&, SynthesisMode);

/// Size after zooming by tenths of a percent: truncated, at least 1, at most `limit`.
int zoomedSize(int size, int zoom, int limit);
/// Draws the picture (its pixels outside the work image) to width x height pixels into the work image; the result keeps
/// the picture's format.
SynthesisPicture scalePicture(EffectDefinition*, EffectProcessInfo*, const SynthesisPicture&, int width, int height);
/// Copies the picture out of the work image into memory of the slot; pixels is null when there is none.
SynthesisPicture keepPicture(EffectDefinition*, const SynthesisPicture&);

}  // namespace zenlay
