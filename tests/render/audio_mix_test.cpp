// The sound pipeline with the real effects over a sound that tells where it comes from.
#include "zenlay/render/audio_mix.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/render/test_film.h"
#include "zenlay/effects/object_services.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/work_memory.h"

namespace zenlay::test {
namespace {

using Samples = std::vector<int16_t>;

struct Heard {
  int object, frame, time, speed, start, end, depth;
};
std::vector<Heard> heard;
std::vector<int> events;

/// Track "Level": every sample of the block.
int levelProc(EffectDefinition* d, EffectProcessInfo* info) {
  const AudioBlock& b = *info->audio;
  heard.push_back({objectOfRef(d->object_ref), b.frame, b.time, b.speed, b.start, b.end, info->depth});
  std::fill_n(b.samples, info->host.sampleCount * info->host.channelCount, static_cast<int16_t>(d->track[0]));
  return 1;
}
int countEvents(EffectDefinition*, int32_t code, intptr_t, EffectProcessInfo* info) {
  events.push_back(code * 10 + info->depth);
  return 0;
}
constexpr TrackRow levelRows[] = {{"Level", 100, -32768, 32767, 1, 0, 0}};
constexpr TrackColumns levelTracks(levelRows);

class AudioMix : public ::testing::Test {
 protected:
  AudioMix() {
    setUpFilm();
    registerBuiltIns(&fakeHost.functions, &effectServices, nullptr);
    level = defineEffect({.flag = effectMedia | effectAudio,
                          .name = "Level",
                          .tracks = levelTracks,
                          .proc = levelProc,
                          .event = countEvents});
    level.flag |= effectBuiltIn;
    level.services = &effectServices;
    effectList[levelEffect = effectCount++] = &level;
    play = effectStandardPlayback;
    fade = findEffect("Volume fade", 1, 1);
    delay = findEffect("Audio delay", 1, 1);
    delayObject = findEffect("Audio delay", 1, 0);
    mono = findEffect("Monaural", 1, 1);
    scene = findEffect("Scene (audio)", 1, 1);
    heard.clear();
    events.clear();
    freeWorkMemory();
  }
  ~AudioMix() override {
    freeWorkMemory();
    freeSoundBuffers();
  }

  /// The block of a frame, over a mix of zeros.
  static Samples mixFrame(int frame, int count = 2, int channels = 2, int16_t before = 0) {
    Samples samples(static_cast<size_t>(count) * channels + 1, before);
    samples.back() = 4242;  // not ours
    FrameProcessInfo info{};
    info.frameNumber = frame;
    info.audio = samples.data();
    info.sampleCount = count;
    info.channelCount = channels;
    mixSceneSound(info, currentScene);
    EXPECT_EQ(samples.back(), 4242);
    samples.pop_back();
    return samples;
  }
  static int left(int frame) { return mixFrame(frame)[0]; }
  int add(int layer, int value, std::vector<int> effects = {}, int start = 0, int end = 99, int inScene = 0) {
    effects.insert(effects.begin(), levelEffect);
    effects.push_back(play);
    int object = addObject({.layer = layer, .start = start, .end = end, .scene = inScene, .effects = effects});
    setTrack(object, 0, 0, value);
    return object;
  }
  static void setSceneLength(int number, int length) {
    scenes[number].flags |= sceneSetUp;
    scenes[number].length = length;
  }
  int addScene(int layer, int number, int inScene = 0) {
    int object = addObject(
        {.layer = layer, .start = 0, .end = 99, .scene = inScene, .effects = {scene, effectStandardPlayback}});
    memcpy(extraDataOf(object, 0), &number, sizeof number);
    return object;
  }

  EffectDefinition level;
  int levelEffect, play, fade, delay, delayObject, mono, scene;
};

TEST_F(AudioMix, ObjectsAliveOnTheFrameAreAdded) {
  int a = add(0, 1000), b = add(3, 200, {}, 10, 20);
  addObject({.layer = 5, .effects = {effectGraphic, effectStandardDrawing}});
  EXPECT_EQ(mixFrame(9), Samples({1000, 1000, 1000, 1000}));
  EXPECT_EQ(mixFrame(10), Samples({1200, 1200, 1200, 1200}));
  EXPECT_EQ(left(20), 1200);
  EXPECT_EQ(left(21), 1000);
  EXPECT_EQ(left(100), 0);
  EXPECT_EQ(mixFrame(9, 1, 2, 32000), Samples({32767, 32767})) << "over what the host has, saturated";
  EXPECT_EQ(mixFrame(12, 3, 1), Samples({1200, 1200, 1200}));
  EXPECT_EQ(mixFrame(12, 1, 6), Samples(6, 1200));
  layers[3].flags |= layerHidden;
  EXPECT_EQ(left(12), 1000);
  layers[3].flags = 0;
  objects[a].slotFlags[0] &= ~slotEnabled;
  EXPECT_EQ(left(12), 200) << "a disabled source is silence";
  objects[b].slotFlags[1] &= ~slotEnabled;
  EXPECT_EQ(left(12), 200) << "playback cannot be left out";
  EXPECT_EQ(events.size() % 2, 0u);
  EXPECT_EQ(events[0], 10);
  EXPECT_EQ(events[1], 20);
}

TEST_F(AudioMix, WithoutFramesOrSoundNothingHappens) {
  add(0, 1000);
  timelineView.sceneLength = 0;
  EXPECT_EQ(left(0), 0);
  timelineView.sceneLength = 300;
  environment.clip.flags = fileHasVideo;
  EXPECT_EQ(left(0), 0);
  environment.clip.flags |= fileHasAudio;
  EXPECT_EQ(left(0), 1000);
  FrameProcessInfo nothing{};
  mixSceneSound(nothing, currentScene);
  EXPECT_EQ(heard.size(), 1u);
}

TEST_F(AudioMix, EffectsRunInTheOrderOfTheirSlots) {
  int object = add(0, 4096, {fade, mono});
  EXPECT_EQ(left(0), 256) << "fade of 15 frames";
  objects[object].slotFlags[1] &= ~slotEnabled;
  EXPECT_EQ(left(0), 4096);
  objects[object].slotFlags[1] |= slotEnabled;
  environment.clip.rate = 1000;  // fades of 500 frames
  setTrack(object, 1, 0, 1000);
  EXPECT_EQ(left(0), 0) << "the fade ended the object";
  moveTrack(object, 0, 0, 0, 990);
  environment.clip.rate = 30;
  setTrack(object, 1, 0, 0);
  EXPECT_EQ(left(50), 500) << "tracks are evaluated for the frame";
}

TEST_F(AudioMix, AnObjectIsItsWholeChain) {
  int head = add(0, 4096, {fade}, 10, 29);
  int tail = addObject({.layer = 0, .start = 30, .end = 49, .effects = {levelEffect, fade, play}, .chainHead = head});
  setTrack(tail, 0, 0, 4096);
  EXPECT_EQ(left(10), 256);
  EXPECT_EQ(left(29), 4096) << "no fade at the midpoint";
  EXPECT_EQ(left(30), 4096);
  EXPECT_EQ(left(49), 256);
  EXPECT_EQ(heard.back().start, 10);
  EXPECT_EQ(heard.back().end, 49);
}

TEST_F(AudioMix, AFilterObjectWorksOnWhatLiesBefore) {
  environment.clip.audioRate = 1000;
  add(0, 100);
  int filter = addObject({.layer = 1, .effects = {delayObject}});
  setTrack(filter, 0, 1, 1);  // a millisecond: a sample
  add(2, 7);
  EXPECT_EQ(mixFrame(0, 3, 1), Samples({107, 157, 157}));
  EXPECT_EQ(mixFrame(1, 2, 1), Samples({157, 157})) << "goes on";
  EXPECT_EQ(mixFrame(5, 2, 1), Samples({107, 157})) << "begins anew";
}

TEST_F(AudioMix, OrderOfBlocksDoesNotMatterWithoutEchoes) {
  for (int layer = 0; layer < 5; layer++) {
    int object = add(layer, 0, {fade, mono}, layer * 7, 60 + layer);
    moveTrack(object, 0, 0, -3000, 3000 * layer);
  }
  std::vector<Samples> inOrder;
  for (int frame = 0; frame < 70; frame++) inOrder.push_back(mixFrame(frame, frame % 2 ? 1471 : 1472));
  for (int frame = 69; frame >= 0; frame -= 3)
    EXPECT_EQ(mixFrame(frame, frame % 2 ? 1471 : 1472), inOrder[frame]) << frame;
}

TEST_F(AudioMix, ScenesPlayScenes) {
  setSceneLength(2, 50);
  add(0, 10);
  add(4, 300, {}, 0, 99, 2);
  int player = addScene(1, 2);
  EXPECT_EQ(left(0), 310);
  EXPECT_EQ(left(49), 310);
  EXPECT_EQ(left(51), 10) << "the scene is over";
  setTrack(player, 1, 0, 500);
  EXPECT_EQ(left(3), 160);
  setTrack(player, 0, 0, 41);
  EXPECT_EQ(left(9), 160);
  EXPECT_EQ(left(11), 10);
  EXPECT_EQ(heard.back().depth, 0);
  setCheck(player, 0, 0, 1);
  EXPECT_EQ(left(13), 160) << "looping";
}

TEST_F(AudioMix, FourMixesAtMost) {
  for (int number = 1; number <= 5; number++) {
    setSceneLength(number, 50);
    add(0, 1, {}, 0, 99, number);
    if (number < 5) addScene(1, number + 1, number);
  }
  add(0, 1);
  addScene(1, 1);
  EXPECT_EQ(left(0), 4) << "the current scene and three in it";
  int deepest = 0;
  for (const Heard& h : heard) deepest = std::max(deepest, h.depth);
  EXPECT_EQ(deepest, 3);
  EXPECT_EQ(left(1), 4) << "the count falls again";
}

TEST_F(AudioMix, ASceneHeardTwiceSoundsOnTwice) {
  // Scene 2 is a ramp with an echo; it is played from its beginning, from later on, and through another scene.
  setSceneLength(2, 90);
  setSceneLength(3, 90);
  int ramp = add(0, 0, {delay}, 0, 99, 2);
  moveTrack(ramp, 0, 0, 0, 990);
  addScene(0, 2, 3);
  std::vector<int> players = {addScene(0, 2), addScene(1, 2), addScene(2, 3), addScene(3, 2)};
  setTrack(players[1], 0, 0, 31);
  setTrack(players[3], 1, 0, 2000);
  auto play = [] {
    std::vector<Samples> blocks;
    for (int frame = 0; frame < 20; frame++) blocks.push_back(mixFrame(frame, 1470));
    return blocks;
  };
  std::vector<Samples> sum(20, Samples(2 * 1470));
  for (int alone : players) {
    freeWorkMemory();
    for (int other : players) layers[objects[other].layer].flags = other == alone ? 0u : layerHidden;
    std::vector<Samples> blocks = play();
    EXPECT_NE(blocks[19][0], 0);
    for (int frame = 0; frame < 20; frame++)
      for (int i = 0; i < 2 * 1470; i++) sum[frame][i] = static_cast<int16_t>(sum[frame][i] + blocks[frame][i]);
  }
  for (int player : players) layers[objects[player].layer].flags = 0;
  freeWorkMemory();
  EXPECT_EQ(play(), sum);
}

TEST_F(AudioMix, TimeControlsMoveTheSoundBelow) {
  int control = addObject({.layer = 2, .start = 0, .end = 100, .effects = {effectTimeControl}});
  moveTrack(control, 0, 0, 0, 5000);  // half the length: half the speed
  int above = add(1, 10), below = add(3, 100, {}, 0, 40);
  mixFrame(60);
  ASSERT_EQ(heard.size(), 2u);
  EXPECT_EQ(heard[0].object, above);
  EXPECT_EQ(heard[0].time, 6000);
  EXPECT_EQ(heard[0].speed, normalTimeSpeed);
  EXPECT_EQ(heard[1].object, below);
  EXPECT_EQ(heard[1].time, 3000);
  EXPECT_EQ(heard[1].speed, normalTimeSpeed / 2);
  EXPECT_EQ(heard[1].frame, 60);
  setTrack(control, 0, 0, 1000);  // it stands
  objects[control].modes[0] = 0;
  heard.clear();
  mixFrame(60);
  EXPECT_EQ(heard[1].time, 1000);
  EXPECT_EQ(heard[1].speed, 0);
  moveTrack(control, 0, 0, 0, 10000);
  setTrack(control, 0, 1, 2);  // twice, each twice as fast
  heard.clear();
  for (int frame : {20, 49, 51, 80}) mixFrame(frame);
  for (const Heard& h : heard) EXPECT_EQ(h.speed, h.object == below ? 2 * normalTimeSpeed : normalTimeSpeed) << h.frame;
}

// What the speeds play up to a frame is where its time stands: nothing has to jump to keep up.
TEST_F(AudioMix, SoundKeepsUpWithATimeThatEases) {
  int control = addObject({.layer = 2, .start = 0, .end = 120, .effects = {effectTimeControl}});
  int below = add(3, 100, {}, 0, 120);
  moveTrack(control, 0, 0, 0, 10000);
  const int modes[] = {modeRectilinear, modeRectilinear | modeAccelerationBit,
                       modeRectilinear | modeAccelerationBit | modeDecelerationBit};
  for (int mode : modes) {
    objects[control].modes[0] = mode;
    heard.clear();
    for (int frame = 0; frame <= 120; frame++) mixFrame(frame);
    double played = 0;
    for (const Heard& h : heard) {
      if (h.object != below) continue;
      EXPECT_NEAR(played, h.time / 100.0, 0.5) << "frame " << h.frame << " mode " << mode;
      played += h.speed / double{normalTimeSpeed};
    }
  }
}

TEST_F(AudioMix, CompanionsStartTogether) {
  auto video = [](int layer, int start, int inScene = 0) {
    return addObject({.layer = layer,
                      .start = start,
                      .end = start + 9,
                      .scene = inScene,
                      .effects = {effectVideoFile, effectStandardDrawing}});
  };
  int first = video(0, 10), second = video(2, 10);
  video(3, 11);
  video(1, 10, 1);
  int sound = addObject({.layer = 4, .start = 10, .end = 50, .effects = {effectAudioFile, play}});
  video(5, 10);
  const char* name = effectList[effectVideoFile]->name;
  EXPECT_EQ(companionRef(makeObjectRef(sound, 0), name), makeObjectRef(second, 0)) << "the last before it";
  EXPECT_EQ(companionRef(makeObjectRef(sound, 0), "Scene"), 0u);
  objects[second].start = 9;
  EXPECT_EQ(companionRef(makeObjectRef(sound, 0), name), makeObjectRef(first, 0));
  objects[first].start = 9;
  EXPECT_EQ(companionRef(makeObjectRef(sound, 0), name), 0u);
  EXPECT_EQ(companionRef(0, name), 0u);
}

}  // namespace
}  // namespace zenlay::test
