#include <gtest/gtest.h>

#include "tests/support/fake_host.h"
#include "zenlay/host/preferences.h"

namespace zenlay {
namespace {

struct WorkSizeCase {
  int maxW, maxH, hostW, hostH, expectedW, expectedH;
};

TEST(WorkSize, FollowsSettingsAndHostLimits) {
  constexpr WorkSizeCase cases[] = {
      {1000, 0, 640, 480, 640, 480},                                        // both keys must be set
      {0, 1000, 640, 480, 640, 480},     {1001, 600, 800, 480, 1008, 600},  // rounded up to 8
      {1001, 600, 1280, 720, 1280, 720},                                    // never below the host's
      {1, 1, 643, 481, 643, 481},
  };
  for (const WorkSizeCase& c : cases) {
    Environment e{};
    e.maxWidth = c.hostW;
    e.maxHeight = c.hostH;
    EXPECT_TRUE(deriveWorkSize(e, c.maxW, c.maxH));
    EXPECT_EQ(e.workW, c.expectedW) << c.maxW;
    EXPECT_EQ(e.workH, c.expectedH) << c.maxH;
    EXPECT_EQ(e.workStride, e.workW + 8);
    EXPECT_EQ(e.workLineBytes, e.workStride * 8);
  }
}

TEST(WorkSize, RefusesWhatDoesNotFit) {
  Environment e{};
  e.maxWidth = e.maxHeight = 16;
  for (int side : {0x7FFFFFFF, 2000000000, 0x10000000})
    for (bool wide : {false, true}) EXPECT_FALSE(deriveWorkSize(e, wide ? side : 8, wide ? 8 : side)) << side;
  EXPECT_TRUE(deriveWorkSize(e, 0x0FFFFFF0, 8));
  EXPECT_EQ(e.workLineBytes, 0x7FFFFFC0);
}

TEST(WorkSize, WorkBufferIsNeverBelowOneMebibyte) {
  Environment e{};
  e.maxWidth = 16;
  e.maxHeight = 16;
  deriveWorkSize(e, 0, 0);
  EXPECT_EQ(e.workBufferBytes, 1048576);
  e.maxWidth = 1920;
  e.maxHeight = 1080;
  deriveWorkSize(e, 0, 0);
  EXPECT_EQ(e.workBufferBytes, int64_t{1928} * 1088 * 8 + 16);
}

TEST(Preferences, ReadDefaultsAndComeBackAsWritten) {
  test::resetFakeHost();
  readPreferences();
  EXPECT_EQ(preferences.grid.grid_tempo, 1000000);
  EXPECT_EQ(preferences.auto_save_num, 10);
  EXPECT_STREQ(preferences.new_fps, "30");
  preferences.grid.grid2d_w = 77;
  preferences.pair_move = 0;
  writePreferences();
  resetPreferences();
  readPreferences();
  EXPECT_EQ(preferences.grid.grid2d_w, 77);
  EXPECT_EQ(preferences.pair_move, 0);
}

TEST(Preferences, WhatIsOutOfRangeIsPutRightAsItIsRead) {
  struct Row {
    const char* key;
    int32_t Preferences::*value;
    int stored, read;
  };
  const Row rows[] = {{"small_layer", &Preferences::small_layer, -1, 2},
                      {"small_layer", &Preferences::small_layer, 3, 0},
                      {"edit_time_type", &Preferences::edit_time_type, 2, 0},
                      {"auto_save_num", &Preferences::auto_save_num, -1, 0},
                      {"auto_save_num", &Preferences::auto_save_num, 1001, 1000},
                      {"auto_save_time", &Preferences::auto_save_time, 0, 1},
                      {"auto_save_time", &Preferences::auto_save_time, 10001, 10000},
                      {"new_w", &Preferences::new_w, 0, 640},
                      {"new_h", &Preferences::new_h, -1, 480},
                      {"new_hz", &Preferences::new_hz, 0, 44100},
                      {"config_x", &Preferences::config_x, -1920, -1920}};
  for (const Row& row : rows) {
    test::resetFakeHost();
    test::fakeHost.intSettings[row.key] = row.stored;
    readPreferences();
    EXPECT_EQ(preferences.*row.value, row.read) << row.key << row.stored;
  }
}

}  // namespace
}  // namespace zenlay
