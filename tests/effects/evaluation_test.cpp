#include "zenlay/effects/evaluation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"

namespace zenlay {
namespace {

constexpr int accelerate = modeAccelerationBit, decelerate = modeDecelerationBit, both = accelerate | decelerate;
constexpr int firstTrack = 3;  // slots before the tested one hold three tracks

constexpr TrackColumns testTracks({
    {"X", 0, -360000, 360000, 10, -1000, 1000, 1},
    {"Y", 0, -360000, 360000, 10, -1000, 1000, 1},
    {"Z", 0, -360000, 360000, 10, -1000, 1000, -2},
    {"pair X", 0, 0, 0, 10, 0, 0, 1},
    {"pair Y", 0, 0, 0, 10, 0, 0, -1},
    {"single", 0, 0, 0, 1, 0, 0},
});
enum { trackX, trackY, trackZ, pairX, pairY, single, testTrackCount };

struct Section {
  int start, end;
  int32_t from, to;
};

struct Evaluation : testing::Test {
  int layer = 0;
  EffectDefinition effect = defineEffect({.flag = effectBuiltIn, .name = "test", .tracks = testTracks});
  void SetUp() override {
    freeObjects();
    effect.track_scale = effect.track_tables[0];
    effect.track_link = effect.track_tables[1];
  }
  void TearDown() override {
    freeObjects();
    evaluateScriptTrack = nullptr;
  }
  int add(int start, int end, int head = -1) {
    int object = takeFreeObject();
    ObjectRecord& record = objects[object];
    record = {};
    record.flags = objectInUse;
    record.layer = record.homeLayer = head >= 0 ? objects[head].layer : layer++;  // chains never share a layer
    record.start = start;
    record.end = end;
    record.chainHead = head == -2 ? object : head;
    for (EffectSlot& slot : record.slots) slot.effect = -1;
    rebuildOrder();
    return object;
  }
  void set(int object, int track, int32_t from, int32_t to, int32_t mode, int32_t param = 0) {
    ObjectRecord& record = objects[object];
    record.startValues[firstTrack + track] = from;
    record.endValues[firstTrack + track] = to;
    record.modes[firstTrack + track] = mode;
    record.params[firstTrack + track] = param;
  }
  /// A chain whose sections move `track` in that mode; the head's index.
  int chain(std::initializer_list<Section> sections, int track, int32_t mode, int32_t param = 0) {
    int head = -1;
    for (const Section& section : sections) {
      int object = add(section.start, section.end, head < 0 ? -2 : head);
      if (head < 0) head = object;
      set(object, track, section.from, section.to, mode, param);
    }
    return head;
  }
  int at(int object, int frame) {
    while (nextSection(object) >= 0 && objects[object].end < frame) object = nextSection(object);
    return object;
  }
  int32_t value(int object, int track, int frame, int32_t subFrame = 0) {
    int32_t out = -77;
    evaluateTracks(&out, frame, subFrame, at(object, frame), 0, firstTrack, evaluateSingle | track, &effect);
    return out;
  }
};

TEST_F(Evaluation, OneSection) {
  int object = add(20, 30);
  const struct {
    int mode, frame, sub, expected;
  } rows[] = {
      {modeNone, 29, 0, 0},
      {modeTeleport, 29, 0, 0},
      {modeRectilinear, 20, 0, 0},
      {modeRectilinear, 23, 0, 300},
      {modeRectilinear, 30, 0, 1000},
      {modeRectilinear, 23, 50, 350},
      {modeRectilinear, 30, 50, 1000},  // hundredths stop at the section's end
      {modeRectilinear | accelerate, 25, 0, 312},
      {modeRectilinear | decelerate, 25, 0, 687},  // 3/8 of 500 and of 1000, 1/8 of 1000
      {modeRectilinear | both, 22, 0, 104},        // 0.096 + 0.008
      {modeCurve, 23, 0, 300},
      {modeCurve | accelerate, 25, 0, 312},
      {modeAccelerate | decelerate, 25, 0, 687},
      {modeIgnoreMidpoints, 23, 50, 350},
      {modeIgnoreMidpoints | both, 22, 0, 104},
      {9, 25, 0, -77},
      {14, 25, 0, -77},
      {modeScript, 25, 0, 0},  // no script engine
  };
  for (auto& row : rows) {
    set(object, single, 0, 1000, row.mode);
    EXPECT_EQ(value(object, single, row.frame, row.sub), row.expected) << "mode " << row.mode << " at " << row.frame;
  }
  set(object, single, 0, -1000, modeRectilinear);
  EXPECT_EQ(value(object, single, 23), -300);
  int instant = add(40, 40);
  set(instant, single, 5, 1000, modeRectilinear);
  EXPECT_EQ(value(instant, single, 40), 5);
  EXPECT_EQ(value(instant, single, 40, 50), 502);  // length 1: half of 995
}

TEST_F(Evaluation, AllTracksOrOne) {
  int object = add(0, 10);
  set(object, trackX, 1, 11, modeRectilinear);
  set(object, trackY, 2, 22, modeNone);
  set(object, trackZ, 3, 33, 10);
  set(object, pairX, 4, 14, modeRectilinear);
  int32_t out[testTrackCount + 1] = {-1, -2, -3, -4, -5, -6, -7};
  evaluateTracks(out, 5, 0, object, 0, firstTrack, 4, &effect);
  EXPECT_THAT(out, testing::ElementsAre(6, 2, -3, 9, -5, -6, -7));
  // More tracks than the effect has, past the object's last track, and an object that does not exist.
  evaluateTracks(out, 5, 0, object, 0, firstTrack, 100, &effect);
  EXPECT_EQ(out[6], -7);
  evaluateTracks(out, 5, 0, object, 0, maxTracks - 1, testTrackCount, &effect);
  EXPECT_EQ(out[1], 2);
  evaluateTracks(out, 5, 0, objectCapacity, 0, firstTrack, 4, &effect);
  evaluateTracks(out, 5, 0, -1, 0, firstTrack, 4, &effect);
  EXPECT_EQ(out[0], 0);  // of the call before last
}

TEST_F(Evaluation, AccelerationBelongsToTheChainsEnds) {
  // Sections of 10 frames: one followed by another lasts to the next one's first frame.
  int head = chain({{0, 9, 0, 1000}, {10, 19, 0, 1000}, {20, 30, 0, 1000}}, single, modeRectilinear | both);
  EXPECT_EQ(value(head, single, 5), 312);
  EXPECT_EQ(value(head, single, 13), 300);
  EXPECT_EQ(value(head, single, 25), 687);
  EXPECT_EQ(value(head, single, 9), 729 * 1000 / 1000 + 121);  // 0.729 + 3 * 0.81 * 0.1 * 0.5 = 0.8505
}

TEST_F(Evaluation, IgnoredMidpoints) {
  int head = chain({{0, 9, 0, 500}, {10, 19, 500, 100}, {20, 30, 100, 900}}, single, modeIgnoreMidpoints);
  EXPECT_EQ(value(head, single, 15), 450);
  EXPECT_EQ(value(head, single, 10, 50), 315);  // 1050 of 3000 hundredths
  for (int object = head; object >= 0; object = nextSection(object)) {
    objects[object].modes[firstTrack + single] = modeIgnoreMidpoints | accelerate;
  }
  EXPECT_EQ(value(head, single, 6), 50);  // Bez(0, 0, 450, 900) at 0.2: 43.2 + 7.2
}

TEST_F(Evaluation, CurvePassesSmoothlyThroughMidpoints) {
  int head = chain({{0, 9, 0, 100}, {10, 19, 100, 200}, {20, 30, 200, 300}}, single, modeCurve);
  EXPECT_EQ(value(head, single, 12), 119);  // control values 133 and 167: 119.904
  EXPECT_EQ(value(head, single, 15), 150);
  EXPECT_EQ(value(head, single, 2), 19);    // mirrored point -100: control values 33 and 67
  EXPECT_EQ(value(head, single, 28), 280);  // mirrored: 300 - 19.904, biased
  EXPECT_EQ(value(head, single, 0), 0);
  EXPECT_EQ(value(head, single, 30), 300);
}

TEST_F(Evaluation, CurveMirrorsTheMissingPoint) {
  // Before 0, from 300 to 100: the missing point is 92, the control values 346 and 150.
  int head = chain({{0, 9, 0, 300}, {10, 20, 300, 100}}, single, modeCurve);
  EXPECT_EQ(value(head, single, 15), 236);
  // The same film turned round: the first section misses its point.
  int turned = chain({{100, 109, 100, 300}, {110, 120, 300, 0}}, single, modeCurve);
  EXPECT_EQ(value(turned, single, 105), 236);
  int still = chain({{200, 209, 50, 50}, {210, 220, 50, 50}}, single, modeCurve);
  EXPECT_EQ(value(still, single, 205), 50);
}

TEST_F(Evaluation, CurveWarpsTimeAtTheChainsEnds) {
  int head = chain({{0, 9, 0, 100}, {10, 20, 100, 200}}, single, modeCurve | both);
  // Half the time is 0.3125 of the way on one side and 0.6875 on the other.
  EXPECT_EQ(value(head, single, 5), 31);
  EXPECT_EQ(value(head, single, 15), 168);  // 200 - 31.17 = 168.83
}

TEST_F(Evaluation, LinkedTracksShareTheirDistances) {
  auto build = [&](int x, int y) {
    int head = chain({{0, 9, 0, 100}, {10, 19, 100, 200}, {20, 30, 200, 300}}, x, modeCurve);
    int second = nextSection(head), third = nextSection(second);
    set(second, y, 0, 300, modeCurve);
    set(third, y, 300, 300, modeCurve);
    return head;
  };
  // Squared distances 10000, 100000, 130000: control values 145 and 155, at 0.2: 123.36.
  EXPECT_EQ(value(build(pairX, pairY), pairX, 12), 123);
  freeObjects();
  // A ring of three whose third track stands still is a ring of two, whichever it is.
  EXPECT_EQ(value(build(trackX, trackZ), trackX, 12), 123);
  freeObjects();
  int head = build(trackZ, trackY);
  EXPECT_EQ(value(head, trackZ, 12), 123);
  effect.flag &= ~effectBuiltIn;  // a host filter has no links
  EXPECT_EQ(value(head, trackZ, 12), 119);
}

TEST_F(Evaluation, BrokenLinksEnd) {
  constexpr int32_t endless[testTrackCount] = {1, 1, -1, 0, 0, 0}, outside[testTrackCount] = {50, 0, 0, 0, 0, 0};
  int head = chain({{0, 9, 0, 100}, {10, 19, 100, 200}}, trackX, modeCurve);
  effect.track_link = endless;
  EXPECT_EQ(value(head, trackX, 10), 100);
  effect.track_link = outside;
  EXPECT_EQ(value(head, trackX, 10), 100);
}

TEST_F(Evaluation, MovementAmount) {
  int object = add(10, 1000010);
  const struct {
    int track, from, amount, frame, sub, expected;
  } rows[] = {
      {single, 100, 25, 13, 0, 175},
      {single, 100, 25, 13, 50, 187},  // per frame, also between frames
      {single, 100, -25, 13, 50, 13},
      {trackX, 360000, 1, 11, 0, -359999},
      {trackX, 360000, 0, 11, 0, 360000},
      {trackX, 360000, 720000, 11, 0, 360000},
      {trackX, -360000, -720000, 11, 0, -360000},
      {trackX, -360000, -1, 11, 0, 359999},
      {trackX, 0, 720000, 1000010, 0, 0},
      {trackX, 0, -720000, 1000010, 0, 0},
      {trackX, 7, INT_MAX, 1000010, 0, 7 + 280000},  // 2147483647 * 10^6 is 280000 above a multiple of 720000
      {trackX, 7, -INT_MAX, 1000010, 0, 7 - 280000},
  };
  for (auto& row : rows) {
    set(object, row.track, row.from, row.amount, modeAmount);
    EXPECT_EQ(value(object, row.track, row.frame, row.sub), row.expected) << row.amount << " at " << row.frame;
  }
  freeObjects();
  int head = chain({{0, 9, 100, 3}, {10, 19, 100, 3}}, single, modeAmount);
  EXPECT_EQ(value(head, single, 12), 136);  // frames count from the chain's start
}

TEST_F(Evaluation, RandomEveryFrame) {
  add(500, 510);
  int object = add(20, 30);
  ASSERT_EQ(object, 1);
  set(object, single, 1000, 0, modeRandom);
  set(object, trackX, 0, 1000, modeRandom);
  uint32_t seed = (30u * 16 << 12) ^ (20 << 8) ^ 1;
  for (int frame = 20; frame <= 30; frame++) {
    EXPECT_EQ(value(object, single, frame), int(randomValue(seed, frame - 20, 1001)));
    EXPECT_EQ(value(object, trackX, frame), value(object, single, frame));  // one seed for all tracks
  }
  int32_t out;
  evaluateTracks(&out, 24, 0, object, 2, firstTrack, evaluateSingle | single, &effect);
  EXPECT_EQ(out, int(randomValue(((30u * 16 + 2) << 12) ^ (20 << 8) ^ 1, 4, 1001)));
  EXPECT_EQ(value(object, single, 20, evaluateExactEnds), 1000);
  EXPECT_EQ(value(object, single, 30, evaluateExactEnds), 0);
  EXPECT_EQ(value(object, single, 25, evaluateExactEnds), value(object, single, 25));
  set(object, single, INT_MIN, INT_MAX, modeRandom);
  EXPECT_EQ(value(object, single, 21), int(randomValue(seed, 1, 0) + 0x80000000u));
  set(object, single, 42, 42, modeRandom);
  EXPECT_EQ(value(object, single, 21), 42);

  int head = chain({{100, 109, 0, 1000}, {110, 120, 0, 1000}}, single, modeRandom);
  seed = (120u * 16 << 12) ^ (100 << 8) ^ head;
  EXPECT_EQ(value(head, single, 103), int(randomValue(seed, 3, 1001)));
  EXPECT_EQ(value(head, single, 115), int(randomValue(seed, 15, 1001)));
}

TEST_F(Evaluation, RandomIntervalIsSmooth) {
  constexpr int interval = 5, low = -4000, high = 6000;
  int head = chain({{0, 19, low, high}, {20, 40, low, high}}, single, modeRandom, interval);
  uint32_t seed = ((40u * 16 << 12) ^ head) + firstTrack + single;
  constexpr int before = -700;  // also ahead of the first frame
  int last = value(head, single, before / 100);
  for (int time = before + 1; time < 4000; time++) {
    int now = value(head, single, (time - before) / 100 + before / 100, (time - before) % 100);
    // A cubic inside [low, high] moves at most 3 ranges an interval.
    ASSERT_LE(std::abs(now - last), 3 * (high - low) / (interval * 100) + 1) << time;
    ASSERT_TRUE(low <= now && now <= high) << time;
    if (time % (interval * 100) == 0) {
      EXPECT_EQ(now, low + int(randomValue(seed, time / (interval * 100), high - low + 1)));
    }
    last = now;
  }
  EXPECT_NE(value(head, single, 5), value(head, single, 10));
}

TEST_F(Evaluation, Repetition) {
  int object = add(0, 20);
  const struct {
    int param, mode, frame;
    int32_t sub;
    int expected;
  } rows[] = {
      {0, 0, 0, 0, 0},
      {0, 0, 1, 0, 1000},
      {0, 0, 2, 0, 0},
      {0, 0, 2, 49, 0},
      {0, 0, 2, 60, 1000},
      {5, 0, 0, 0, 0},
      {5, 0, 2, 0, 345},  // (1 - cos 72) / 2
      {5, 0, 5, 0, 1000},
      {5, 0, 12, 0, 345},
      {5, 0, 1, 25, 146},           // (1 - cos 45) / 2
      {5, decelerate, 10, 0, 125},  // a quarter of the way from 0 to 500
      {5, accelerate, 10, 0, 125},
      {5, accelerate, 0, 0, 500},
      {5, both, 5, 0, 875},
      {5, both, 15, 0, 875},
      {5, accelerate, 0, evaluateExactEnds, 0},
      {5, 0, 20, evaluateExactEnds, 1000},
      {5, 0, 20, 0, 0},
  };
  for (auto& row : rows) {
    set(object, single, 0, 1000, modeRepeat | row.mode, row.param);
    EXPECT_EQ(value(object, single, row.frame, row.sub), row.expected)
        << row.frame << "." << row.sub << " " << row.mode;
  }
  set(object, single, 0, 1001, modeRepeat | accelerate, 5);
  EXPECT_EQ(value(object, single, 0), 501);  // the middle of an odd swing is rounded up
}

TEST_F(Evaluation, AccelerationMovementOfEqualSectionsIsACurve) {
  const std::initializer_list<Section> path = {{0, 9, 0, 700}, {10, 19, 700, 200}, {20, 29, 200, 900}};
  int head = chain(path, single, modeAccelerate);
  int curve = chain(path, pairX, modeCurve);
  effect.flag &= ~effectBuiltIn;
  for (int frame = 0; frame < 20; frame++) {  // the last section is a frame shorter
    EXPECT_NEAR(value(head, single, frame), value(curve, pairX, frame), 1) << frame;
  }
}

/// Movement per frame on the two sides of a midpoint.
struct Speeds {
  double before, after;
};

TEST_F(Evaluation, AccelerationMovementKeepsItsSpeedThroughMidpoints) {
  const std::initializer_list<Section> path = {
      {0, 9, 0, 30000000}, {10, 49, 30000000, 70000000}, {50, 56, 70000000, 75000000}, {57, 66, 75000000, 40000000}};
  auto speeds = [&](int head, int frame) {
    auto v = [&](int f, int s) { return double(value(head, single, f, s)); };
    // Second-order one-sided differences at the midpoint, a fifth of a frame apart: time is remapped in whole steps.
    double after = -1.5 * v(frame, 0) + 2 * v(frame, 20) - 0.5 * v(frame, 40);
    double before = 1.5 * v(frame, 0) - 2 * v(frame - 1, 80) + 0.5 * v(frame - 1, 60);
    return Speeds{before * 5, after * 5};
  };
  for (int bits : {0, both}) {
    int head = chain(path, single, modeAccelerate | bits);
    for (int frame : {10, 50, 57}) {
      Speeds s = speeds(head, frame);
      EXPECT_NEAR(s.before, s.after, std::abs(s.before) * 0.04) << frame;
    }
    EXPECT_EQ(value(head, single, 0), 0);
    EXPECT_EQ(value(head, single, 10), 30000000);
    EXPECT_EQ(value(head, single, 66), 40000000);
    int last = 0;
    for (int time = 0; time <= 6600; time++) {
      int now = value(head, single, time / 100, time % 100);
      ASSERT_LE(std::abs(now - last), 2000000) << time;
      last = now;
    }
    freeObjects();
  }
  Speeds jump = speeds(chain(path, single, modeCurve), 10);  // what the remapping is for
  EXPECT_GT(std::abs(jump.before - jump.after), std::abs(jump.before) * 0.5);
}

ScriptTrack lastScript;
double scriptResult;
double recordScript(const ScriptTrack& script) {
  lastScript = script;
  return scriptResult;
}

TEST_F(Evaluation, ScriptsAreAskedWithProgress) {
  evaluateScriptTrack = recordScript;
  int head = chain({{0, 9, 0, 1000}, {10, 30, 0, 1000}}, trackY, 5 << 16 | modeScript);
  scriptResult = 123.9;
  EXPECT_EQ(value(head, trackY, 15, 50 | evaluateForScript), 123);
  EXPECT_EQ(lastScript.mode, 5 << 16 | modeScript);
  EXPECT_EQ(lastScript.object, nextSection(head));
  EXPECT_EQ(lastScript.track, firstTrack + trackY);
  EXPECT_EQ(lastScript.trackInEffect, trackY);
  EXPECT_DOUBLE_EQ(lastScript.time, 15.5);
  EXPECT_DOUBLE_EQ(lastScript.sectionProgress, 0.275);
  EXPECT_DOUBLE_EQ(lastScript.chainProgress, 15.5 / 30);
  EXPECT_EQ(lastScript.flags, evaluateForScript);
  EXPECT_EQ(lastScript.scale[trackY], 10);
  for (auto [result, expected] : {std::pair{1e30, 360000}, {-1e30, -360000}, {0.0 / 0.0, 0}}) {
    scriptResult = result;
    EXPECT_EQ(value(head, trackY, 15), expected);
  }
  set(head, single, 0, 0, modeScript);
  scriptResult = 1e30;
  EXPECT_EQ(value(head, single, 5), INT_MAX);  // limits 0..0 are no limits
}

}  // namespace
}  // namespace zenlay
