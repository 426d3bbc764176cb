// Clipping with the object above. Both operations work on objects flattened to the frame.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// Keeps the frame's colour together with the object's alpha as the clip source of the level. The pieces of an object
/// that is drawn in several add up to one source.
void storeClip(EffectProcessInfo*);
/// Limits the object's alpha to the clip source's and takes back from the frame what the source shows beyond the
/// object. Without a valid clip source the object becomes fully transparent.
void applyClip(EffectProcessInfo*);

/// One pixel: `object` is the clipped object's, `clip` the stored one. Works on FramePixel and ObjectPixel frames.
template <class Frame>
inline void clipPixel(ObjectPixel& object, const ObjectPixel& clip, Frame& frame) {
  int a = object.a, c = clip.a;
  if (!a) return;
  if (c && c < a) {
    int w = (a - c) * fullAlpha / (fullAlpha - c);
    auto mix = [w](int16_t below, int16_t now) {
      return static_cast<int16_t>((below * w + now * (fullAlpha - w)) >> 12);
    };
    frame.y = mix(clip.y, frame.y);
    frame.cb = mix(clip.cb, frame.cb);
    frame.cr = mix(clip.cr, frame.cr);
  }
  object.a = static_cast<int16_t>((c * a) >> 12);
}

}  // namespace zenlay
