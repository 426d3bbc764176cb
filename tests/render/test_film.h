// Small films for the pipeline's tests: a solid-colour media effect, a drawing effect, a recorder, and objects built
// from them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/fake_host.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/model/objects.h"
#include "zenlay/render/pipeline.h"

namespace zenlay {
extern EffectDefinition timeControl, groupControl, offScreenDrawingEffect, cameraControlOptionsEffect;
}

namespace zenlay::test {

/// Tracks of "solid": luma, alpha (0..4096), width, height. Check 0: deliver an opaque image when the next slot takes
/// it.
enum { solidLuma, solidAlpha, solidWidth, solidHeight };
/// Tracks of "placing", mapped as the standard drawing effect maps them.
enum { placingX, placingY, placingZ, placingZoom, placingClearness, placingRotation };

/// Effect numbers after setUpFilm.
enum TestEffect { solid, placing, recorder, opaquePlacing, time, group, offScreen, filterObject, testEffects };

struct Call {
  uint32_t flags;
  int object, slot, absoluteFrame, subFrame, frameNumber, frameCount;
  bool drawable;
  int width, height;
};
extern std::vector<Call> calls;  // of every recorder and filter object, in order
/// What the recorder does besides recording; 1 continues. Reset by setUpFilm.
extern std::function<int(EffectDefinition*, EffectProcessInfo*)> recorderAction;
/// The recorder's answer to events.
extern std::function<int(int code, intptr_t argument)> recorderEvent;

/// A fresh host, model and effect list; frames of 640x480 unless given.
void setUpFilm(int width = 64, int height = 48);

struct Film : testing::Test {
  Film() { setUpFilm(); }
};

struct ObjectPlan {
  int layer = 0, start = 0, end = 99, scene = 0;
  std::vector<int> effects = {solid, placing};
  int chainHead = -1;  // an earlier object to continue
};
/// Opaque white, 8x6 pixels, placed at the centre with Zoom% 100.
int addObject(const ObjectPlan&);
void setTrack(int object, int slot, int track, int value);
void moveTrack(int object, int slot, int track, int from, int to);  // rectilinear
void setCheck(int object, int slot, int check, int value);
void setRange(int control, int layers);

/// The host's frame, and what rendering makes of it.
struct Frame {
  std::vector<FramePixel> first, second;
  FrameProcessInfo info;
  int width() const { return info.width; }
  FramePixel at(int x, int y) const;
  int luma(int x, int y) const { return at(x, y).y; }
  /// Columns and rows of the pixels that differ from `background`: {left, top, right, bottom}, right and bottom
  /// exclusive.
  std::vector<int> bounds(int background = 0) const;
};
Frame blankFrame(int number, int luma = 0);
/// Renders frame `number` of the current scene over a blank frame.
Frame renderFrame(int number, int luma = 0);

}  // namespace zenlay::test
