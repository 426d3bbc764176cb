// Which time an object is drawn at.
#include "tests/render/test_film.h"

namespace zenlay::test {
namespace {

using Times = Film;

TEST_F(Times, HoldsTheTimeInsideTheSection) {
  int head = addObject({.start = 10, .end = 19, .effects = {solid, recorder, placing}});
  struct Row {
    int frame, offset, subFrame, absolute, sub;
  };
  for (Row row : {Row{12, 0, 0, 12, 0}, Row{12, 0, 37, 12, 37}, Row{12, -5, 40, 10, 0}, Row{12, -2, 40, 10, 40},
                  Row{12, 50, 20, 19, 0}, Row{12, 7, 99, 19, 99}}) {
    Frame f = blankFrame(row.frame);
    calls.clear();
    renderSceneFrame(&f.info, layersPerScene, row.offset, row.subFrame, 0);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].absoluteFrame, row.absolute) << row.offset;
    EXPECT_EQ(calls[0].subFrame, row.sub) << row.offset;
  }
  // With a following section a later time reaches it; one frame past the end, to the hundredth, still belongs before
  // it.
  int second = addObject({.start = 20, .end = 29, .effects = {solid, recorder, placing}, .chainHead = head});
  for (auto [offset, sub, object] : {std::tuple{8, 0, head}, {8, 1, second}, {-3, 0, head}}) {
    Frame f = blankFrame(12);
    calls.clear();
    renderSceneFrame(&f.info, layersPerScene, offset, sub, 0);
    EXPECT_EQ(calls.at(0).object, object) << offset << "." << sub;
  }
  Frame f = blankFrame(22);
  calls.clear();
  renderSceneFrame(&f.info, layersPerScene, -10, 0, 0);
  EXPECT_EQ(calls.at(0).object, head);
  EXPECT_EQ(calls.at(0).absoluteFrame, 12);
}

TEST_F(Times, TimeControlChangesTheTimeOfTheLayersInItsRange) {
  int control = addObject({.layer = 0, .start = 100, .end = 200, .effects = {time}});
  moveTrack(control, 0, 0, 0, 10000);
  setRange(control, 1);
  for (int layer : {1, 2}) addObject({.layer = layer, .start = 0, .end = 300, .effects = {solid, recorder, placing}});
  struct Row {
    int frame, repeat, decimation, expected, subFrame;
  };
  for (Row row : {Row{150, 1, 1, 150, 0}, Row{120, 2, 1, 140, 0}, Row{150, 2, 1, 200, 0}, Row{151, 2, 1, 102, 0},
                  Row{104, 1, 3, 103, 0}, Row{105, 1, 3, 103, 0}, Row{106, 1, 3, 106, 0}}) {
    setTrack(control, 0, 1, row.repeat);
    setTrack(control, 0, 2, row.decimation);
    calls.clear();
    renderFrame(row.frame);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].absoluteFrame, row.expected) << row.frame;
    EXPECT_EQ(calls[0].subFrame, row.subFrame);
    EXPECT_EQ(calls[1].absoluteFrame, row.frame);
  }
  objects[control].modes[0] = 0;
  setTrack(control, 0, 1, 1);
  setTrack(control, 0, 2, 1);
  for (auto [position, frames, at, sub] :
       {std::tuple{5000, 0, 150, 0}, {1234, 1, 112, 34}, {10000, 1, 200, 0}, {33, 0, 100, 33}}) {
    setTrack(control, 0, 0, position);
    setCheck(control, 0, 0, frames);
    calls.clear();
    renderFrame(130);
    EXPECT_EQ(calls.at(0).absoluteFrame, at);
    EXPECT_EQ(calls.at(0).subFrame, sub);
  }
  objects[control].slotFlags[0] = 0;
  calls.clear();
  renderFrame(130);
  EXPECT_EQ(calls.at(0).absoluteFrame, 130);
}

TEST_F(Times, TimeControlFindsObjectsAliveAtItsOwnTime) {
  int control = addObject({.layer = 0, .start = 0, .end = 100, .effects = {time}});
  setTrack(control, 0, 0, 9000);
  addObject({.layer = 1, .start = 10, .end = 20});  // alive on the scene frame only
  int shown = addObject({.layer = 1, .start = 85, .end = 95});
  setTrack(shown, 0, solidLuma, 700);
  EXPECT_EQ(renderFrame(15).luma(31, 24), 700);
}

}  // namespace
}  // namespace zenlay::test
