#include "zenlay/media/figures.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "tests/media/effect_stage.h"
#include "tests/support/scratch_folder.h"
#include "zenlay/media/polygon_figures.h"
#include "zenlay/render/convert.h"

namespace zenlay {
extern EffectDefinition graphicMedia;
}

namespace zenlay::test {
namespace {

struct Figures : testing::Test {
  EffectStage stage{graphicMedia, 256, 200};
  FigureRequest request{};

  void SetUp() override {
    request = {"", figureCircle, {255, 255, 255}, 100, 4000, 0, true};
    stage.services.drawFigure = drawFigure;
  }
  int draw() {
    stage.info.zoom = zoomOne;
    stage.info.aspect = 0;
    stage.info.objectWidth = stage.info.objectHeight = 0;
    return drawFigure(&stage.effect, &stage.info, &request);
  }
  int draw(int type, int size, int lineWidth = 4000, int aspect = 0) {
    request.type = type;
    request.size = size;
    request.lineWidth = lineWidth;
    request.aspect = aspect;
    return draw();
  }
  int alpha(int x, int y) { return stage.pixel(x, y).a; }
  double area() {
    double sum = 0;
    for (int y = 0; y < stage.info.objectHeight; y++)
      for (int x = 0; x < stage.info.objectWidth; x++) sum += alpha(x, y) / 4096.0;
    return sum;
  }
};

TEST_F(Figures, CircleCoverage) {
  struct Row {
    int size, lineWidth, aspect, width, height, x, y, alpha;
  } rows[] = {
      {1, 4000, 0, 1, 1, 0, 0, 512},   // q = 1, band 8
      {2, 4000, 0, 2, 2, 1, 0, 512},   // q = 4 - 2, band 16
      {4, 4000, 0, 4, 4, 1, 1, 1792},  // q = 16 - 2 of 32
      {4, 4000, 0, 4, 4, 3, 2, 768},   // q = 16 - 10 of 32
      {4, 4000, 0, 4, 4, 0, 0, 0},     // q = 16 - 18
      {100, 4000, 0, 100, 100, 49, 49, 4096},
      {100, 4000, 0, 100, 100, 49, 0, 1013},  // q = 10000 - 1 - 9801 of 800
      {4, 4000, -500, 4, 2, 1, 0, 704},       // y = -2: q = 16 - 5 of 64
      {4, 4000, -500, 4, 2, 0, 1, 192},       // q = 16 - 13 of 64
      {4, 4000, 500, 2, 4, 0, 1, 704},
      {100, 10, 0, 100, 100, 50, 50, 0},  // inside a ring of D = 79
      {100, 10, 0, 100, 100, 5, 49, 4096},
      {100, 10, 0, 100, 100, 11, 49, 2080},  // r = 5930 - 6241 + 632 of 632
      {100, 50, 0, 100, 100, 50, 50, 4096},  // a line of half the size fills
  };
  for (const Row& row : rows) {
    ASSERT_TRUE(draw(figureCircle, row.size, row.lineWidth, row.aspect));
    EXPECT_EQ(stage.info.objectWidth, row.width);
    EXPECT_EQ(stage.info.objectHeight, row.height);
    EXPECT_EQ(alpha(row.x, row.y), row.alpha) << row.size << " at " << row.x << "," << row.y;
  }
  request.color[1] = request.color[2] = 0;
  draw();
  EXPECT_EQ(stage.pixel(0, 0).y, toYcbcr(255, 0, 0).y) << "transparent pixels take the colour too";
}

TEST_F(Figures, NothingIsDrawnWithoutExtent) {
  EXPECT_FALSE(draw(figureSquare, 0));
  EXPECT_FALSE(draw(figureSquare, 10, 0));
  EXPECT_FALSE(draw(figureSquare, -1, -1));
  EXPECT_FALSE(draw(figureSquare, 100, 4000, -1000));
  EXPECT_FALSE(draw(figureStar, 100, 4000, 1000));
  EXPECT_FALSE(draw(figureCircle, 1, 4000, 1)) << "999 / 1000 is no whole pixel";
  EXPECT_FALSE(draw(builtInFigures, 100));
  EXPECT_FALSE(draw(-1, 100));
}

TEST_F(Figures, SizesAreLimited) {
  for (int type : {figureCircle, figureSquare}) {
    ASSERT_TRUE(draw(type, INT32_MAX, INT32_MAX));
    EXPECT_EQ(stage.info.objectWidth, 256);
    EXPECT_EQ(stage.info.objectHeight, 200);
  }
  ASSERT_TRUE(draw(figureCircle, 100, maxFigureSide));
  EXPECT_EQ(alpha(50, 50), 4096);
  ASSERT_TRUE(draw(figureCircle, 100, maxFigureSide + 1)) << "a line wider than any figure counts as none: filled";
  EXPECT_EQ(alpha(50, 50), 4096);
  ASSERT_TRUE(draw(figureHexagon, 16384));
  EXPECT_EQ(stage.info.objectWidth, 200);
  EXPECT_EQ(stage.info.objectHeight, 200);
}

TEST_F(Figures, SquareIsFilledOrAFrame) {
  ASSERT_TRUE(draw(figureSquare, 100, 50));
  EXPECT_EQ(area(), 10000);
  ASSERT_TRUE(draw(figureSquare, 100, 49));
  EXPECT_EQ(area(), 10000 - 4);
  ASSERT_TRUE(draw(figureSquare, 100, 3, 500));
  EXPECT_EQ(stage.info.objectWidth, 50);
  EXPECT_EQ(area(), 50 * 100 - 44 * 94);
  EXPECT_EQ(alpha(2, 50), 4096);
  EXPECT_EQ(alpha(3, 50), 0);
  EXPECT_EQ(alpha(46, 50), 0);
  EXPECT_EQ(alpha(47, 50), 4096);
  EXPECT_EQ(stage.info.aspect, 0) << "the picture has the shape already";
}

TEST_F(Figures, BackgroundCoversTheFrame) {
  stage.info.host.width = 120;
  stage.info.host.height = 90;
  ASSERT_TRUE(draw(figureBackground, 1));
  EXPECT_EQ(stage.info.objectWidth, 120);
  EXPECT_EQ(area(), 120 * 90);
  EXPECT_FALSE(stage.info.opaqueImage);
  stage.info.host.flags = processTakesOpaque;
  ASSERT_TRUE(draw());
  EXPECT_TRUE(stage.info.opaqueImage);
  EXPECT_EQ(parts(stage.opaquePixel(119, 89)), (std::vector<int>{4095, 0, 0}));
  ASSERT_TRUE(draw(figureSquare, 100, 10));
  EXPECT_FALSE(stage.info.opaqueImage) << "a frame has a hole";
}

TEST_F(Figures, PolygonsCoverTheirArea) {
  // circumradius 50: n / 2 * R^2 * sin(2 pi / n); star 5 * R * 0.381966 R * sin(36)
  struct Row {
    int type;
    double area, edge;  // distance of the edges from the centre
  } rows[] = {{figureTriangle, 3247.595, 25},
              {figurePentagon, 5944.103, 40.4508},
              {figureHexagon, 6495.191, 43.3013},
              {figureStar, 2806.424, 15.4508}};
  for (const Row& row : rows) {
    ASSERT_TRUE(draw(row.type, 100));
    EXPECT_NEAR(area(), row.area, row.area * 1e-4) << row.type;
    EXPECT_EQ(alpha(50, 50), 4096);
    EXPECT_EQ(alpha(0, 0), 0);
    ASSERT_TRUE(draw(row.type, 100, 10));
    double inner = 1 - 10 / row.edge;
    EXPECT_NEAR(area(), row.area * (1 - inner * inner), row.area * 1e-4) << row.type;
    EXPECT_EQ(alpha(50, 50), 0);
    ASSERT_TRUE(draw(row.type, 100, static_cast<int>(row.edge) + 1)) << "a line as wide as the figure fills it";
    EXPECT_NEAR(area(), row.area, row.area * 1e-4) << row.type;
    for (int y = 0; y < 100; y++)
      for (int x = 0; x < 50; x++) ASSERT_NEAR(alpha(x, y), alpha(99 - x, y), 2) << row.type << " " << x << "," << y;
  }
  // the hexagon's left side stands at 50 - 43.30127 = 6.69873
  ASSERT_TRUE(draw(figureHexagon, 100));
  EXPECT_EQ(alpha(5, 50), 0);
  EXPECT_EQ(alpha(6, 50), 1234);
  EXPECT_EQ(alpha(7, 50), 4096);
  ASSERT_TRUE(draw(figurePentagon, 100, 4000, -250));
  EXPECT_EQ(stage.info.objectWidth, 100);
  EXPECT_EQ(stage.info.objectHeight, 100);
  EXPECT_EQ(stage.info.aspect, -16384);
}

TEST_F(Figures, WorkersDrawTheSamePixels) {
  for (int type = figureCircle; type < builtInFigures; type++) {
    fakeHost.threads = 1;
    ASSERT_TRUE(draw(type, 130, 20));
    std::vector<ObjectPixel> alone = stage.object;
    fakeHost.threads = 3;
    std::fill(stage.object.begin(), stage.object.end(), ObjectPixel{});
    ASSERT_TRUE(draw(type, 130, 20));
    EXPECT_EQ(memcmp(alone.data(), stage.object.data(), alone.size() * sizeof(ObjectPixel)), 0) << type;
    std::fill(stage.object.begin(), stage.object.end(), ObjectPixel{});
  }
}

// A picture of 8 x 4 pixels: luma 1000, alpha as set.
int16_t pictureAlpha;
std::string askedPath;

TEST_F(Figures, PicturesAreRecolouredAndFitted) {
  environment.pluginDirectory = "/plug-in/";
  stage.services.loadImage = [](ObjectPixel* d, const char* path, int32_t* w, int32_t* h, const ImageClip*, uint32_t) {
    askedPath = path;
    *w = 8;
    *h = 4;
    for (int y = 0; y < 4; y++)
      for (int x = 0; x < 8; x++) d[y * environment.workStride + x] = {1000, 300, -300, pictureAlpha};
    return 1;
  };
  request.name = "heart";
  pictureAlpha = 4096;
  ASSERT_TRUE(draw(0, 16, 4000, 500));
  EXPECT_EQ(askedPath, "/plug-in/figure/heart.png");
  EXPECT_EQ(parts(stage.pixel(7, 3)), (std::vector<int>{4095, 0, 0, 1000})) << "opaque corners: luma as alpha";
  EXPECT_EQ(stage.info.zoom, 2 * zoomOne);
  EXPECT_EQ(stage.info.aspect, zoomOne / 2);

  pictureAlpha = 2047;  // four corners: 8188
  request.name = "*/pictures/logo.jpg";
  ASSERT_TRUE(draw(0, 4));
  EXPECT_EQ(askedPath, "/pictures/logo.jpg");
  EXPECT_EQ(parts(stage.pixel(0, 0)), (std::vector<int>{4095, 0, 0, 2047}));
  EXPECT_EQ(stage.info.zoom, zoomOne / 2);
  pictureAlpha = 2048;  // 8192
  ASSERT_TRUE(draw());
  EXPECT_EQ(stage.pixel(0, 0).a, 1000);
  request.colourise = false;
  ASSERT_TRUE(draw());
  EXPECT_EQ(parts(stage.pixel(0, 0)), (std::vector<int>{1000, 300, -300, 2048}));

  stage.services.loadImage = [](ObjectPixel*, const char*, int32_t*, int32_t*, const ImageClip*, uint32_t) {
    return 0;
  };
  EXPECT_FALSE(draw());
}

FramePixel scenePicture[2][3];

TEST_F(Figures, AScenesPictureIsAFigure) {
  stage.services.renderScene = [](EffectProcessInfo*, int scene, int frame, int subFrame, int32_t* w, int32_t* h,
                                  int32_t* line, bool* alpha) -> const void* {
    if (scene == 7) return nullptr;
    for (auto& row : scenePicture)
      for (FramePixel& p : row) p = {static_cast<int16_t>(scene), static_cast<int16_t>(frame), 0};
    scenePicture[0][0].y = static_cast<int16_t>(subFrame);
    *w = 3;
    *h = 2;
    *line = sizeof scenePicture[0];
    *alpha = false;
    return scenePicture;
  };
  stage.info.absoluteFrame = 12;
  stage.info.subFrame = 34;
  request.colourise = false;
  request.name = ":49";
  ASSERT_TRUE(draw());
  EXPECT_EQ(parts(stage.pixel(0, 0)), (std::vector<int>{34, 12, 0, 4096}));
  EXPECT_EQ(parts(stage.pixel(2, 1)), (std::vector<int>{49, 12, 0, 4096}));
  for (const char* name : {":0", ":50", ":-3", ":x", ":", ":7", ":4294967298"}) {
    request.name = name;
    EXPECT_FALSE(draw()) << name;
  }
}

TEST_F(Figures, TheListHoldsBuiltInFiguresThenPictures) {
  namespace fs = std::filesystem;
  ::test::ScratchFolder scratch;
  fs::path plugin = scratch.path();
  fs::create_directories(plugin / "figure");
  for (const char* name : {"b.png", "a.PNG", "c.jpg"}) std::ofstream(plugin / "figure" / name) << "x";
  buildFigureList((plugin.string() + "/").c_str());
  std::vector<std::string> list;
  for (int i = 0; i < figureCount(); i++) list.push_back(figureName(i));
  EXPECT_THAT(list, testing::ElementsAre("Background", "Circle", "Square", "Triangle", "Pentagon", "Hexagon", "Star",
                                         "a", "b"));
  const char* item = figureDropDown();
  list.push_back("(Select from file)");
  for (const std::string& name : list) {
    EXPECT_EQ(item, name);
    item += name.size() + 1;
  }
  EXPECT_STREQ(item, "");
  EXPECT_STREQ(figureName(-1), "");
  EXPECT_STREQ(figureName(9), "");
  for (int i = 0; i < 300; i++) std::ofstream(plugin / "figure" / (std::to_string(i) + ".png")) << "x";
  buildFigureList((plugin.string() + "/").c_str());
  EXPECT_EQ(figureCount(), 254);
  freeFigureList();
  EXPECT_EQ(figureCount(), 0);
}

std::vector<std::string> steps;

TEST_F(Figures, ChoosingAFigureIsOneUndoStep) {
  buildFigureList("/nowhere/");
  stage.services.recordUndo = [](ObjectRef) { steps.push_back("undo"); };
  stage.services.objectChanged = [](ObjectRef) { steps.push_back("changed"); };
  stage.services.imageFileFilter = [] { return ""; };
  int32_t* type = reinterpret_cast<int32_t*>(stage.data);
  const char* name = stage.data + 8;
  auto choose = [&](intptr_t index) {
    steps.clear();
    stage.effect.window_proc(nullptr, messageEffectCommand, commandDropDown, index, nullptr, &stage.effect);
    EXPECT_THAT(steps, testing::ElementsAre("undo", "changed"));
  };
  choose(figureStar);
  EXPECT_EQ(*type, figureStar);
  choose(7);  // "(Select from file)"
  EXPECT_EQ(*type, 0);
  EXPECT_STREQ(name, "*");
  stage.setText(8, "*/a.png");
  choose(7);
  EXPECT_STREQ(name, "*/a.png");
  choose(figureCircle);
  EXPECT_EQ(*type, figureCircle);
  EXPECT_STREQ(name, "");
}

TEST_F(Figures, TheGraphicObjectPassesItsTracksAndColour) {
  ASSERT_EQ(stage.effect.exdata_size, 264);
  stage.data[0] = figureSquare;
  const uint8_t green[3] = {0, 255, 0};
  stage.setData(4, green, 3);
  stage.tracks = {40, -500, 4000};
  stage.effect.track = stage.tracks.data();
  EXPECT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.objectWidth, 40);
  EXPECT_EQ(stage.info.objectHeight, 20);
  EXPECT_EQ(parts(stage.pixel(39, 19)), parts(toYcbcr(0, 255, 0)));
  stage.tracks[2] = 0;
  EXPECT_EQ(stage.run(), 0);
}

}  // namespace
}  // namespace zenlay::test
