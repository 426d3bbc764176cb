// From timeline time to the frame of a video: position, speed, looping.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

/// The tracks and the check that every player of frames has in front.
enum PlaybackTrack { playPosition, playSpeed };
enum PlaybackCheck { playLoop };
inline constexpr int normalSpeed = 1000;  // tenths of a percent

struct PlaybackTime {
  int64_t played;       // speed x elapsed time: tenths of a percent x hundredths of a project frame
  int32_t rate, scale;  // project, frames per second = rate / scale
  int32_t videoRate, videoScale;
  int32_t frameCount;                // of the video
  int32_t position;                  // current value of "Playback position", counted from 1
  int32_t sectionStart, sectionEnd;  // its values at the ends of the current section, counted from 1
  bool moving;                       // the position track has a movement mode
  bool loop;
  bool backward;  // playback begins with a negative speed and counts from the last frame
};

/// Frames of the video played since the object's first frame: trunc(seconds * videoRate / videoScale +- 0.05), the
/// correction away from zero. Exact; 0 when a rate is not positive.
int64_t playedFrames(const PlaybackTime&);
/// 0-based frame of the video, within 0..frameCount - 1.
int playbackFrame(const PlaybackTime&);
/// The frame that the bound effect shows now. Elapsed time counts from the object's (chain's) first frame, where it is
/// 0.
int playbackFrameOf(EffectDefinition*, EffectProcessInfo*, const HostFileInfo& video);

/// The same for the frames of a scene, which has the project's rate, in hundredths of a frame.
int64_t playbackHundredths(EffectDefinition*, EffectProcessInfo*, int sceneLength);

/// For objectDivided: the still position of the bound section becomes the frame that it begins with, so that the new
/// object goes on where the old one ended. A moving position was divided with the other tracks.
void continuePlayback(EffectDefinition*, EditHandle, const HostFileInfo& video);

/// The frame last shown by a "Video file" object, which synthesised videos can follow.
extern int lastVideoFrame;

}  // namespace zenlay
