#include "zenlay/ui/project/new_project.h"

#include <gtest/gtest.h>

#include "zenlay/ui/project/clip.h"

namespace zenlay {
namespace {

TEST(NewProject, FrameRateTexts) {
  struct Case {
    const char* text;
    bool valid;
    int rate, scale;
  };
  constexpr Case cases[] = {
      {"30", true, 30, 1},
      {"  29.97", true, 2997, 100},
      {"30000/1001", true, 30000, 1001},
      {"25.", true, 25, 1},
      {"24fps", true, 24, 1},
      {"", false, 0, 0},
      {".5", false, 0, 0},
      {"0", false, 0, 0},
      {"30/0", false, 0, 0},
      {"99999999999", false, 0, 0},
      {"29.97002997002997", true, 299700299, 10000000},
      {"23.9760000000000", true, 239760000, 10000000},
      {"2147483647.5", true, 2147483647, 1},
      {"0.00000000001", false, 0, 0},
  };
  for (const Case& c : cases) {
    int rate = 0, scale = 0;
    EXPECT_EQ(parseFrameRate(c.text, &rate, &scale), c.valid) << c.text;
    EXPECT_EQ(rate, c.rate) << c.text;
    EXPECT_EQ(scale, c.scale) << c.text;
  }
}

TEST(NewProject, ClipNames) {
  EXPECT_EQ(clipName({1920, 1080, 30000, 1001, 48000}), "1920x1080_30000-1001fps_48000Hz.zenlay");
  EXPECT_TRUE(isProjectClip("640x480_30fps_44100Hz.zenlay"));
  EXPECT_FALSE(isProjectClip("film.avi"));
  EXPECT_FALSE(isProjectClip("film.zenlay_backup"));
}

}  // namespace
}  // namespace zenlay
