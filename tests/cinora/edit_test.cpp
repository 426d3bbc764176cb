#include "cinora/host/edit.h"

#include <gtest/gtest.h>

namespace cinora {
namespace {

TEST(EditTest, ClipNamesSayTheirFormat) {
  const struct {
    const char* name;
    ClipFormat format;
  } rows[] = {{"640x480_30fps_44100Hz.zenlay", {640, 480, 30, 1, 44100, 2}},
              {"1920x1080_30000-1001fps_48000Hz.zenlay", {1920, 1080, 30000, 1001, 48000, 2}},
              {"64x48_25fps_8000Hz_1ch.zenlay", {64, 48, 25, 1, 8000, 1}}};
  for (const auto& row : rows) {
    EXPECT_EQ(formatFromName(row.name), row.format);
    EXPECT_EQ(nameOfFormat(row.format), row.name);
  }
  EXPECT_EQ(formatFromName("/some/where\\640x480_30fps_44100Hz.zenlay"), rows[0].format);
  EXPECT_TRUE(formatFromName("16384x1_1fps_1Hz.zenlay"));
  for (const char* name :
       {"", "film.mp4", "640x480_30fps_44100Hz.zenlay2", "640x480_30fps_44100Hz", "0x480_30fps_44100Hz.zenlay",
        "640x-480_30fps_44100Hz.zenlay", "16385x1_1fps_1Hz.zenlay", "640x480_30-0fps_44100Hz.zenlay",
        "640x480_fps_44100Hz.zenlay", "99999999999x480_30fps_44100Hz.zenlay", "640x480_30fps_0Hz.zenlay",
        "640x480_30fps_44100Hz_3ch.zenlay", " 640x480_30fps_44100Hz.zenlay"})
    EXPECT_FALSE(formatFromName(name)) << name;
}

TEST(EditTest, FramesAndSelectionStayInside) {
  zenlay::HostEdit edit;
  EXPECT_FALSE(resizeClip(edit, 5));
  ASSERT_TRUE(openClip(edit, "a", {64, 48, 30, 1, 44100, 2}));
  EXPECT_EQ(edit.frameCount, 1);
  ASSERT_TRUE(resizeClip(edit, 100));
  EXPECT_EQ(edit.selectionLast, 99);  // the whole film stays selected
  selectFrames(edit, 80, 20);
  EXPECT_EQ(edit.selectionFirst, 20);
  EXPECT_EQ(edit.selectionLast, 80);
  EXPECT_EQ(moveTo(edit, 500), 99);
  EXPECT_EQ(moveTo(edit, -1), 0);
  moveTo(edit, 99);
  ASSERT_TRUE(resizeClip(edit, 50));
  EXPECT_EQ(edit.currentFrame, 49);
  EXPECT_EQ(edit.selectionFirst, 20);
  EXPECT_EQ(edit.selectionLast, 49);
  EXPECT_FALSE(resizeClip(edit, 0));
  EXPECT_TRUE(resizeClip(edit, maxFrameCount));
  EXPECT_FALSE(resizeClip(edit, maxFrameCount + 1));
  EXPECT_FALSE(openClip(edit, "b", {0, 48, 30, 1, 44100, 2}));
  EXPECT_EQ(edit.name, "a");
}

}  // namespace
}  // namespace cinora
