// Sound with a position and a speed, as files and scenes have it, alone or in sync with a video. The source's right
// channel is the negative of its left one.
#pragma once

#include <algorithm>

#include "tests/media/sound_stage.h"
#include "zenlay/effects/definitions.h"

namespace zenlay::test {

using Row = std::vector<int>;

class PlaybackStage : public ::testing::Test {
 protected:
  explicit PlaybackStage(const EffectDefinition& definition) : stage(definition) {
    companion = 0;
    EffectServiceTable& s = stage.services;
    s.companion = [](ObjectRef, const char*) { return companion; };
    s.nextSection = [](ObjectRef) { return ObjectRef{0}; };
    s.getObjectData = [](ObjectRef ref, ObjectData* data) {
      *data = ref == videoRef ? videoData : ownData();
      return 1;
    };
    s.getTrackValues = [](ObjectRef ref, int, int, int32_t* values, intptr_t) {
      std::copy_n(tracksOf(ref), 2, values);
      return 2;
    };
    s.trackIntegralOf = [](ObjectRef ref, EffectProcessInfo* info, int track) {
      int64_t time = int64_t{info->absoluteFrame} * 100 + info->subFrame;
      return (ref == videoRef ? std::min<int64_t>(time, (videoData.lastFrame + 1) * 100) : time) * tracksOf(ref)[track];
    };
  }
  static constexpr ObjectRef videoRef = 77;
  static inline ObjectRef companion = 0;
  static inline ObjectData videoData{};
  static ObjectData ownData() {
    SoundStage& s = *SoundStage::current;
    return {0, 99, s.beginValues.data(), s.endValues.data(), s.modes.data(), s.checks.data(), s.data, nullptr};
  }
  static const int32_t* tracksOf(ObjectRef ref) {
    return ref == videoRef ? videoData.startValues : SoundStage::current->tracks.data();
  }
  void setTracks(int position, int speed) { stage.tracks = stage.beginValues = stage.endValues = {position, speed}; }
  /// The left channel of a block of `count` samples at that frame; empty when the effect ended the object.
  Row block(int frame, int count) {
    stage.at(frame);
    if (stage.run(Samples(static_cast<size_t>(count) * 2, 5555)) != 1) return {};
    Row left;
    for (int i = 0; i < count; i++) {
      left.push_back(stage.own[2 * i]);
      EXPECT_NEAR(stage.own[2 * i + 1], -left.back(), sidesDiffer);
    }
    return left;
  }
  int sidesDiffer = 0;  // at most, by rounding
  SoundStage stage;
};

}  // namespace zenlay::test
