// One audio effect on a stage of its own: a block of samples of the host and one of the object.
#pragma once

#include "tests/media/effect_stage.h"

namespace zenlay::test {

using Samples = std::vector<int16_t>;

struct SoundStage : EffectStage {
  AudioBlock block{};
  Samples own, mix;
  std::vector<uint8_t> memory;  // of workMemory
  static inline SoundStage* current = nullptr;

  /// Frame 0 of an object of frames 0..99 in a film of 30 frames per second and 44100 samples per second.
  explicit SoundStage(const EffectDefinition& definition) : EffectStage(definition) {
    current = this;
    info.audio = &block;
    block.rate = 44100;
    block.speed = normalTimeSpeed;
    block.end = 99;
    services.workMemory = [](ObjectRef, size_t size, bool* created) -> void* {
      *created = current->memory.size() != size;
      if (*created) current->memory.assign(size, 0);
      return current->memory.data();
    };
  }

  void at(int frame) {
    block.frame = frame;
    block.time = frame * 100;
    info.absoluteFrame = frame;
  }
  /// Runs the effect on a block of the object, over a mix of that many zeros unless `mix` fits; the proc's result.
  int run(const Samples& samples, int channels = 2) {
    own = samples;
    mix.resize(samples.size());
    block.samples = own.data();
    info.host.audio = mix.data();
    info.host.channelCount = channels;
    info.host.sampleCount = static_cast<int>(samples.size()) / channels;
    return effect.proc(&effect, &info);
  }
};

}  // namespace zenlay::test
