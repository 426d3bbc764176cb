#include "platform/system.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <string>

namespace platform {
namespace {

TEST(System, ReservedMemoryIsZeroAndDiscardable) {
  const size_t bytes = size_t{64} << 30;  // more than the machine has
  auto* memory = static_cast<uint8_t*>(reserveMemory(bytes));
  ASSERT_NE(memory, nullptr);
  EXPECT_EQ(memory[bytes - 1], 0);
  memset(memory, 7, 3 * 65536);
  discardMemory(memory + 100, 2 * 65536 + 50);  // neither end on a page
  EXPECT_EQ(memory[99], 7);
  EXPECT_EQ(memory[100], 0);
  EXPECT_EQ(memory[65536], 0);
  EXPECT_EQ(memory[2 * 65536 + 149], 0);
  EXPECT_EQ(memory[2 * 65536 + 150], 7);
  discardMemory(memory + 10, 5);
  EXPECT_EQ(memory[9], 7);
  EXPECT_EQ(memory[14], 0);
  EXPECT_EQ(memory[15], 7);
  releaseMemory(memory, bytes);
  EXPECT_EQ(reserveMemory(SIZE_MAX / 2), nullptr);
  EXPECT_EQ(reserveMemory(0), nullptr);
}

TEST(System, TicksAndSleep) {
  uint32_t before = tickCount();
  sleepMilliseconds(30);
  uint32_t passed = tickCount() - before;
  EXPECT_GE(passed, 29u);
  EXPECT_LT(passed, 5000u);
}

TEST(System, Modules) {
  Module* math = loadModule("libm.so.6");
  ASSERT_NE(math, nullptr) << loadError();
  auto* root = reinterpret_cast<double (*)(double)>(moduleSymbol(math, "sqrt"));
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root(9), 3);
  EXPECT_EQ(moduleSymbol(math, "no_such_symbol"), nullptr);
  EXPECT_NE(std::string(loadError()).find("no_such_symbol"), std::string::npos);
  unloadModule(math);
  for (const char* path : {"/nowhere/x.so", "C:\\x.dll", "", "/etc/passwd"}) {
    EXPECT_EQ(loadModule(path), nullptr) << path;
    EXPECT_STRNE(loadError(), "") << path;
  }
}

TEST(System, SharedMemoryIsSeenByName) {
  std::string name = "zenlay_test_" + std::to_string(processId());
  EXPECT_EQ(openSharedMemory(name.c_str()), nullptr);
  SharedMemory* made = createSharedMemory(name.c_str(), 4096);
  ASSERT_NE(made, nullptr);
  auto* mine = static_cast<int*>(mapSharedMemory(made));
  EXPECT_EQ(mine[0], 0);
  mine[0] = 42;
  SharedMemory* opened = openSharedMemory(name.c_str());
  ASSERT_NE(opened, nullptr);
  EXPECT_EQ(static_cast<int*>(mapSharedMemory(opened))[0], 42);
  closeSharedMemory(opened);
  opened = openSharedMemory(name.c_str());
  EXPECT_NE(opened, nullptr);  // only its maker removes the name
  closeSharedMemory(opened);
  // A second maker gets fresh memory, as after a crash that left the name behind.
  SharedMemory* second = createSharedMemory(name.c_str(), 4096);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(static_cast<int*>(mapSharedMemory(second))[0], 0);
  closeSharedMemory(second);
  closeSharedMemory(made);
  EXPECT_EQ(openSharedMemory(name.c_str()), nullptr);
  EXPECT_EQ(createSharedMemory(name.c_str(), 0), nullptr);
}

TEST(System, FloatingPointExceptionsAreMasked) {
  feenableexcept(FE_DIVBYZERO);
  maskFloatingPointExceptions();
  volatile double zero = 0;
  EXPECT_TRUE(std::isinf(1 / zero));
  EXPECT_EQ(fegetexcept(), 0);
}

}  // namespace
}  // namespace platform
