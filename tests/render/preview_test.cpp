// What only the editor shows: handles, the grid, the frame zoomed out.
#include <algorithm>

#include "tests/render/test_film.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/handles.h"

namespace zenlay::test {
namespace {

using Preview = Film;

TEST_F(Preview, MarksTheSelectedObjectsHandles) {
  int object = addObject({.effects = {solid, recorder, placing}});
  moveTrack(object, 2, placingX, -100, 100);
  renderFrame(0);
  EXPECT_EQ(calls[0].flags & processHandles, 0u);
  EXPECT_EQ(previewHandleCount, 0);
  currentObject = object;
  renderFrame(0);
  EXPECT_TRUE(calls[1].flags & processHandles);
  ASSERT_EQ(previewHandleCount, 3);  // its box and both ends of its way
  EXPECT_EQ(previewHandles[0].x, 18);
  EXPECT_EQ(previewHandles[0].w, 8);
  EXPECT_EQ(previewHandles[1].x, 22);
  EXPECT_EQ(previewHandles[2].x, 42);
  setTrack(object, 0, solidWidth, 0);  // nothing to put a box around
  calls.pop_back();
  renderFrame(0);
  ASSERT_EQ(previewHandleCount, 2);
  EXPECT_EQ(previewHandles[0].x, 22);
  objects[object].slotFlags[1] = slotEnabled;
  layerTable[0].flags = layerLocked;
  renderFrame(0);
  EXPECT_FALSE(calls[2].flags & processHandles);
  EXPECT_EQ(previewHandleCount, 0);
}

TEST_F(Preview, FastPreviewIsOffWhileSaving) {
  addObject({.effects = {solid, recorder, placing}});
  preferences.fast_preview = 1;
  renderFrame(0);
  environment.saving = true;
  renderFrame(0);
  EXPECT_TRUE(calls[0].flags & processFastPreview);
  EXPECT_FALSE(calls[1].flags & processFastPreview);
}

TEST_F(Preview, DrawsTheGridOnlyWhileEditing) {
  preferences.grid.grid2d = 1;
  preferences.grid.grid2d_w = 50;
  preferences.grid.grid2d_h = 20;
  addObject({.start = 50});
  Frame f = renderFrame(0);
  // Columns at 32, rows at 4, 24 and 44: 2048 * 0xC00 / 0x1000.
  EXPECT_EQ(f.luma(32, 0), 1536);
  EXPECT_EQ(f.luma(31, 0), 0);
  for (int y : {4, 24, 44}) EXPECT_EQ(f.luma(0, y), 1536) << y;
  EXPECT_EQ(f.luma(0, 5), 0);
  environment.saving = true;
  EXPECT_EQ(renderFrame(0).luma(32, 0), 0);
  environment.saving = false;
  environment.playing = true;
  EXPECT_EQ(renderFrame(0).luma(32, 0), 0);
}

TEST_F(Preview, ShowsTheFrameZoomedOut) {
  static int sizes[4];
  setUpFilm(320, 240);
  fakeHost.functions.resizeImage = [](FramePixel* to, int32_t w, int32_t h, const FramePixel*, int32_t, int32_t,
                                      int32_t sw, int32_t sh) -> int32_t {
    sizes[0] = w, sizes[1] = h, sizes[2] = sw, sizes[3] = sh;
    for (int y = 0; y < h; y++) std::fill_n(to + y * environment.bufferWidth, w, FramePixel{999, 0, 0});
    return 1;
  };
  addObject({.start = 50});
  preferences.grid.out_of_area = 1;
  struct Row {
    int stored, width, height;
  };
  for (Row row : {Row{18, 213, 160}, Row{36, 106, 80}, Row{3, 213, 160}}) {
    preferences.grid.out_of_scale = row.stored;
    Frame f = renderFrame(0, 50);
    EXPECT_EQ(std::vector<int>(sizes, sizes + 4), (std::vector<int>{row.width, row.height, 320, 240}));
    EXPECT_EQ(f.luma((320 - row.width) / 2, (240 - row.height) / 2), 999);
    EXPECT_EQ(f.luma((320 - row.width) / 2 - 1, 120), 0);
    // Buttons of 40x24 at the lower left; the one in force stands out.
    EXPECT_EQ(f.luma(0, 239), 0);
    EXPECT_NE(f.luma(45, 220), f.luma(85, 220));
    EXPECT_EQ(f.luma(125, 220), 0);
  }
  preferences.grid.out_of_scale = 12;
  sizes[0] = 0;
  EXPECT_EQ(renderFrame(0, 50).luma(0, 0), 50);
  EXPECT_EQ(sizes[0], 0);
}

}  // namespace
}  // namespace zenlay::test
