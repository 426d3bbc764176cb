// The sums below the movements, and the numbers of movement scripts.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "zenlay/effects/evaluation.h"

namespace zenlay {
namespace {

TEST(Interpolation, HelpersTruncateTowardZero) {
  EXPECT_EQ(linearValue(0, 1000, 3, 10), 300);
  EXPECT_EQ(linearValue(0, -1000, 3, 10), -300);
  EXPECT_EQ(linearValue(5, -5, 1, 3), 2);  // 5 - 3
  EXPECT_EQ(linearValue(-1, 1, 1, 4), -1);
  EXPECT_EQ(linearValue(INT_MIN, INT_MAX, 1, 2), -1);  // INT_MIN + 2147483647
  // A third of 2^31 - 1 at the largest positions: nothing is lost before the truncation.
  EXPECT_EQ(linearValue(0, 2147483647, 715827882, 2147483647), 715827882);
  EXPECT_EQ(bezierValue(0, 0, 500, 1000, 5, 10), 312);
  EXPECT_EQ(bezierValue(0, 0, -500, -1000, 5, 10), -312);
  EXPECT_EQ(bezierValue(7, 7, 7, 7, 3, 10), 7);      // the bias lifts 6.999...
  EXPECT_EQ(bezierValue(0, 0, 1, 1, 998, 1000), 1);  // 0.99998 + 0.05
  EXPECT_EQ(bezierValue(INT_MAX, INT_MAX, INT_MAX, INT_MAX, 20, 10), INT_MAX);
}

TEST(Interpolation, RandomNumbersRepeat) {
  EXPECT_EQ(randomValue(0, 0, 1000), 295u);
  EXPECT_EQ(randomValue(1, 1, 1000), 652u);
  EXPECT_EQ(randomValue(0xFFFFFFFF, 5, 1001), 592u);
  EXPECT_EQ(randomValue(12345, 678, 1), 0u);
}

TEST(MovementScripts, NamesKeepTheirNumbers) {
  resetMovementScripts();
  EXPECT_EQ(movementScriptName(0), nullptr);
  EXPECT_EQ(movementScriptNumber("Bounce"), 0);
  EXPECT_EQ(movementScriptNumber("bounce"), 1);
  EXPECT_EQ(movementScriptNumber("Bounce"), 0);
  EXPECT_STREQ(movementScriptName(1), "bounce");
  EXPECT_EQ(movementScriptNumber(std::string(127, 'a').c_str()), 2);
  EXPECT_EQ(movementScriptNumber(std::string(128, 'a').c_str()), -1);
  EXPECT_EQ(movementScriptNumber(""), -1);
  for (int i = 3; i < 512; i++) EXPECT_EQ(movementScriptNumber(std::to_string(i).c_str()), i);
  EXPECT_EQ(movementScriptNumber("one too many"), -1);
  EXPECT_EQ(movementScriptNumber("511"), 511);
  EXPECT_EQ(movementScriptCount(), 512);
  EXPECT_EQ(movementScriptName(512), nullptr);
  EXPECT_EQ(movementScriptName(-1), nullptr);
  resetMovementScripts();
}

}  // namespace
}  // namespace zenlay
