#include "zenlay/render/draw.h"

#include <gtest/gtest.h>

#include "tests/render/drawing_pictures.h"

namespace zenlay {
namespace {

using test::FramePicture;
using test::ObjectPicture;
using test::twoThreads;

ImagePlacement centred(const ImageRegion& region) {
  ImagePlacement at{};
  at.zoom = zoomOne;
  at.cx = region.width * 2048;
  at.cy = region.height * 2048;
  return at;
}

ObjectPicture numbered(int width, int height) {
  ObjectPicture picture(width, height);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      picture.at(x, y) = {static_cast<int16_t>(1 + x + y * width), static_cast<int16_t>(x), static_cast<int16_t>(-y),
                          4096};
    }
  }
  return picture;
}

/// A picture in the middle of a square frame.
struct Drawing {
  ObjectPicture picture;
  FramePicture frame;
  ImagePlacement at;
  int32_t corners[8];

  Drawing(int side, const ObjectPicture& shown) : picture(shown), frame(side, side), at(centred(picture.region())) {
    resetProjection(side, side);
  }
  int draw(uint32_t flags = 0) {
    ImageTarget target = frame.target();
    return drawImageInSpace(twoThreads(), &target, picture.region(), at, nullptr, blendSourceAlpha | flags, corners);
  }
};

TEST(Draw, RotationMatrixTurnsClockwiseOnScreen) {
  double m[3][3];
  rotationMatrix(m, 0, 0, 16384, 2);
  const double quarter[3][3] = {{0, -2, 0}, {2, 0, 0}, {0, 0, 2}};
  for (int i = 0; i < 3; i++) {
    for (int k = 0; k < 3; k++) EXPECT_EQ(m[i][k], quarter[i][k]) << i << k;
  }
  // Rx Ry Rz at 30, 45 and 60 degrees.
  rotationMatrix(m, 5461, 8192, 10923, 1);
  EXPECT_NEAR(m[0][0], 0.35355, 1e-4);
  EXPECT_NEAR(m[0][2], 0.70711, 1e-4);
  EXPECT_NEAR(m[1][0], 0.92678, 1e-4);
  EXPECT_NEAR(m[1][2], -0.35355, 1e-4);
  EXPECT_NEAR(m[2][0], 0.12683, 1e-4);
}

TEST(Draw, ProjectsCorners) {
  resetProjection(640, 480);
  EXPECT_EQ(projection.nearDistance, 209715);
  ObjectPicture picture(100, 50);
  struct Row {
    const char* what;
    int32_t x, y, z, zoom, aspect, rz, cx;  // added to the centred placement
    int32_t left, top, right, bottom;       // pixels, of corners 0 and 2
  } rows[] = {
      {"as it is", 0, 0, 0, 0, 0, 0, 0, 270, 215, 370, 265},
      {"moved", 10 * 4096, -7 * 4096, 0, 0, 0, 0, 0, 280, 208, 380, 258},
      {"1024 pixels away", 0, 0, 1024 * 4096, 0, 0, 0, 0, 295, 227, 345, 252},
      {"zoom 2", 0, 0, 0, zoomOne, 0, 0, 0, 220, 190, 420, 290},
      {"narrowed by aspect", 0, 0, 0, 0, 32768, 0, 0, 295, 215, 345, 265},
      {"half a turn", 0, 0, 0, 0, 0, 32768, 0, 370, 265, 270, 215},
      {"centre moved", 0, 0, 0, 0, 0, 0, 4 * 4096, 266, 215, 366, 265},
      {"behind the eye: at the near distance", 0, 0, -4000 * 4096, 0, 0, 0, 0, -680, -260, 1320, 740},
  };
  for (const Row& row : rows) {
    ImagePlacement at = centred(picture.region());
    at.x += row.x, at.y += row.y, at.z += row.z, at.zoom += row.zoom;
    at.aspect += row.aspect, at.rz += row.rz, at.cx += row.cx;
    int32_t corners[8];
    ASSERT_EQ(drawImageInSpace(twoThreads(), nullptr, picture.region(), at, nullptr, 0, corners), 1) << row.what;
    double slack = at.z < 0 ? 2 : at.z > 0 ? 0.5 : 0;
    EXPECT_NEAR(corners[0] / 4096.0, row.left, slack) << row.what;
    EXPECT_NEAR(corners[1] / 4096.0, row.top, slack) << row.what;
    EXPECT_NEAR(corners[4] / 4096.0, row.right, slack) << row.what;
    EXPECT_NEAR(corners[5] / 4096.0, row.bottom, slack) << row.what;
  }
}

TEST(Draw, OrthographicWithoutEyeDistance) {
  resetProjection(640, 480);
  projection.eyeDistance = 0;
  ObjectPicture picture(100, 50);
  ImagePlacement at = centred(picture.region());
  at.z = 12345678;
  int32_t corners[8];
  drawImageInSpace(twoThreads(), nullptr, picture.region(), at, nullptr, 0, corners);
  EXPECT_EQ(corners[0], 270 * 4096);
  EXPECT_EQ(corners[5], 265 * 4096);
}

TEST(Draw, GroupActsBeforeProjection) {
  resetProjection(640, 480);
  ObjectPicture picture(100, 50);
  ImagePlacement at = centred(picture.region());
  at.x = 20 * 4096;
  SpaceTransform group{};
  rotationMatrix(group.rotation, 0, 0, 16384, 2);
  group.x = 5 * 4096;
  int32_t corners[8];
  drawImageInSpace(twoThreads(), nullptr, picture.region(), at, &group, 0, corners);
  // Left top (-30, -25) doubled and turned by 90 degrees: (50, -60), then moved.
  EXPECT_EQ(corners[0], (320 + 50 + 5) * 4096);
  EXPECT_EQ(corners[1], (240 - 60) * 4096);
}

TEST(Draw, HidesTheBack) {
  const ObjectPicture picture(20, 20, {4096, 0, 0, 4096});
  struct Row {
    int rx, ry, rz, x;
    bool back;
  } rows[] = {{0, 0, 32768, 0, false},
              {0, 32768, 0, 0, true},
              {32768, 0, 0, 0, true},
              {0, 16000, 0, 0, false},
              {0, 17000, 0, 0, true},
              {32768, 32768, 0, 0, false},
              // Turned by nearly 90 degrees far to the left, the eye sees past the edge.
              {0, 16000, 0, -900 * 4096, true}};
  for (const Row& row : rows) {
    Drawing d(64, picture);
    d.at.rx = row.rx, d.at.ry = row.ry, d.at.rz = row.rz, d.at.x = row.x;
    EXPECT_EQ(d.draw(drawHideBack), row.back ? 0 : 1) << row.rx << ' ' << row.ry;
    EXPECT_EQ(d.draw(), 1);
  }
}

TEST(Draw, UprightPicturesKeepTheirPixels) {
  struct Row {
    int frame, picture, x, centre;  // pixels
    int left;
  } rows[] = {{16, 4, 0, 0, 6}, {16, 5, 0, 0, 6},    {17, 4, 0, 0, 6},
              {17, 5, 3, 0, 9}, {16, 5, -10, 0, -4}, {16, 5, 0, 2, 4}};
  for (const Row& row : rows) {
    Drawing d(row.frame, numbered(row.picture, row.picture));
    d.at.x = d.at.y = row.x * 4096;
    d.at.cx += row.centre * 4096, d.at.cy += row.centre * 4096;
    ASSERT_EQ(d.draw(), 1);
    EXPECT_EQ(d.corners[0], row.left * 4096);
    for (int y = 0; y < row.frame; y++) {
      for (int x = 0; x < row.frame; x++) {
        int u = x - row.left, v = y - row.left;
        bool inside = u >= 0 && v >= 0 && u < row.picture && v < row.picture;
        ASSERT_EQ(d.frame.at(x, y).y, inside ? d.picture.at(u, v).y : 0) << row.left << ": " << x << ',' << y;
      }
    }
  }
}

TEST(Draw, QuarterTurnsAndDoublingAreExact) {
  Drawing d(16, numbered(8, 8));
  d.at.rz = 16384;
  d.draw();
  for (int y = 0; y < 16; y++) {
    for (int x = 0; x < 16; x++) {
      bool inside = x >= 4 && x < 12 && y >= 4 && y < 12;
      ASSERT_EQ(d.frame.at(x, y).y, inside ? d.picture.at(y - 4, 7 - (x - 4)).y : 0) << x << ',' << y;
    }
  }
}

TEST(Draw, HalfAPixelAsideSharesItsEdgePixels) {
  Drawing d(16, ObjectPicture(4, 4, {4000, 0, 0, 4096}));
  d.at.x = 2048;
  d.at.y = 1024;
  d.draw();
  EXPECT_EQ(d.frame.at(6, 8).y, 2000);
  EXPECT_EQ(d.frame.at(7, 8).y, 4000);
  EXPECT_EQ(d.frame.at(10, 8).y, 2000);
  EXPECT_EQ(d.frame.at(8, 6).y, 3000);
  EXPECT_EQ(d.frame.at(8, 10).y, 1000);
  EXPECT_EQ(d.frame.at(6, 6).y, 1500);
  EXPECT_EQ(d.frame.at(10, 10).y, 500);
}

TEST(Draw, ExtremePlacementsEnd) {
  const ObjectPicture picture(16, 16, {4096, 0, 0, 4096});
  const int32_t values[] = {0, 1, -1, 2048, 16384 * 4096, -16384 * 4096, 2147483647, -2147483647 - 1};
  for (int32_t position : values) {
    for (int32_t angle : {0, 1, 16384, 16383, 12345}) {
      for (int32_t zoom : {1, 65536, 65537, 2147483647, -65536}) {
        for (int32_t z : {0, -1024 * 4096, 2147483647}) {
          Drawing d(64, picture);
          d.at.x = position, d.at.y = position / 2, d.at.z = z, d.at.zoom = zoom;
          d.at.rx = angle, d.at.ry = angle / 2, d.at.rz = angle;
          d.draw();
        }
      }
    }
  }
  // A picture whose near half is behind the eye still fills what lies before it.
  Drawing d(64, picture);
  d.at.zoom = 200 * zoomOne;
  d.at.ry = 10000;
  d.draw();
  EXPECT_EQ(d.frame.at(32, 32).y, 4096);
}

TEST(Draw, ZoomZeroAndFullTransparencyOnlyGiveCorners) {
  Drawing d(64, ObjectPicture(16, 16, {4096, 0, 0, 4096}));
  for (int zoom : {0, zoomOne}) {
    d.at.zoom = zoom;
    d.at.transparency = zoom ? 4096 : 0;
    EXPECT_EQ(d.draw(), 1);
    EXPECT_EQ(d.corners[0], (zoom ? 24 : 32) * 4096);
    EXPECT_EQ(d.frame.at(32, 32).y, 0);
  }
  ImageRegion empty = d.picture.region();
  empty.width = 0;
  ImageTarget target = d.frame.target();
  EXPECT_EQ(drawImageInSpace(twoThreads(), &target, empty, {}, nullptr, 0, d.corners), 0);
}

}  // namespace
}  // namespace zenlay
