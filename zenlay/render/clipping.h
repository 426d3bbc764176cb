// Clipping with the object above. Both operations work on objects flattened to the frame.
#pragma once

#include <algorithm>

#include "zenlay/render/targets.h"

namespace zenlay {

/// Keeps the frame's colour together with the object's alpha as the clip source of the level. The pieces of an object
/// that is drawn in several add up to one source.
void storeClip(EffectProcessInfo*);
/// Limits the object's alpha to the clip source's and takes back from the frame what the source shows beyond the
/// object. Without a valid clip source the object becomes fully transparent.
void applyClip(EffectProcessInfo*);

/// Turns the frame back towards the colour the clip source lies on, by `w` of 4096.
inline void takeBack(FramePixel& frame, const ObjectPixel& clip, int w) {
  auto mix = [w](int16_t below, int16_t now) {
    return static_cast<int16_t>((below * w + now * (fullAlpha - w)) >> 12);
  };
  frame = {mix(clip.y, frame.y), mix(clip.cb, frame.cb), mix(clip.cr, frame.cr)};
}

/// The same where the frame has an alpha of its own: colours count by their alphas. That of the frame below the source
/// follows from today's, 1 - (1 - below) * (1 - source), as every blend mode combines them.
inline void takeBack(ObjectPixel& frame, const ObjectPixel& clip, int w) {
  int uncovered = (fullAlpha - frame.a) * fullAlpha / (fullAlpha - clip.a);
  int below = std::clamp(fullAlpha - uncovered, 0, std::max<int>(frame.a, 0)) * w;
  int now = frame.a * (fullAlpha - w), sum = below + now;
  if (sum <= 0) {
    frame = {};
    return;
  }
  auto mix = [=](int64_t belowColour, int64_t nowColour) {
    return static_cast<int16_t>((belowColour * below + nowColour * now) / sum);
  };
  frame = {mix(clip.y, frame.y), mix(clip.cb, frame.cb), mix(clip.cr, frame.cr), static_cast<int16_t>(sum >> 12)};
}

/// One pixel: `object` is the clipped object's, `clip` the stored one. Works on FramePixel and ObjectPixel frames.
template <class Frame>
inline void clipPixel(ObjectPixel& object, const ObjectPixel& clip, Frame& frame) {
  int a = std::min<int>(object.a, fullAlpha), c = clip.a;
  if (!a) return;
  if (c && c < a) takeBack(frame, clip, (a - c) * fullAlpha / (fullAlpha - c));
  object.a = static_cast<int16_t>((c * a) >> 12);
}

}  // namespace zenlay
