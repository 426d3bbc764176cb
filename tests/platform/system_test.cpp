#include "platform/system.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>

#include "platform/window.h"

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

struct Received {
  std::vector<int> messages;
  Window* postTo = nullptr;
};

intptr_t receive(Window*, uint32_t message, intptr_t first, intptr_t second, void* user) {
  auto* received = static_cast<Received*>(user);
  received->messages.push_back(static_cast<int>(message));
  if (received->postTo) postMessage(received->postTo, message + 1, 0, 0);
  return first + second;
}

TEST(Windows, MessagesReachLiveWindowsOnly) {
  Received a, b;
  Window* main = createWindow(nullptr, receive, &a);
  Window* owned = createWindow(main, receive, &b);
  EXPECT_EQ(windowOwner(owned), main);
  EXPECT_EQ(sendMessage(main, 0x464, 3, 4), 7);
  postMessage(owned, 1, 0, 0);
  EXPECT_TRUE(b.messages.empty());
  runPostedMessages();
  EXPECT_EQ(b.messages, std::vector<int>{1});

  b.postTo = owned;  // answers every message by posting: one a round, no endless loop
  postMessage(owned, 10, 0, 0);
  runPostedMessages();
  runPostedMessages();
  EXPECT_EQ(b.messages, (std::vector<int>{1, 10, 11}));

  destroyWindow(main);  // takes the owned window and what is queued for it
  runPostedMessages();
  EXPECT_EQ(b.messages.size(), 3u);
  EXPECT_EQ(sendMessage(owned, 5, 1, 1), 0);
  EXPECT_EQ(sendMessage(nullptr, 5, 1, 1), 0);
  EXPECT_EQ(windowOwner(owned), nullptr);
  destroyWindow(main);
}

TEST(Windows, BoxWithoutDesktopGoesToStandardError) {
  setDesktopBackend(nullptr);
  struct Row {
    const char *text, *caption, *line;
    uint32_t style;
    int answer;
  };
  const Row rows[] = {
      {"Failed to read\r\nFile not found\n", "a.avi", "a.avi: Failed to read. File not found\n", 0x42010, boxOk},
      {"Overwrite?\n\nIt is newer.", "Zenlay", "Zenlay: Overwrite? It is newer.\n", 4, boxNo},
      {"x", "", "x\n", 1, boxCancel},
      {"x", nullptr, "x\n", 3, boxCancel},
  };
  for (const Row& row : rows) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(messageBox(nullptr, row.text, row.caption, row.style), row.answer);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.line);
  }
  testing::internal::CaptureStderr();
  debugOutput("one");
  debugOutput("two\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "one\ntwo\n");
}

TEST(Windows, BackendShowsBoxes) {
  static const DesktopBackend backend{[](Window*, const char*, const char*, uint32_t) -> int { return boxYes; }};
  setDesktopBackend(&backend);
  EXPECT_EQ(messageBox(nullptr, "?", "", 4), boxYes);
  setDesktopBackend(nullptr);
}

int keysSeen;

TEST(Windows, LastHookSeesKeysFirst) {
  keysSeen = 0;
  HookHandle* first = installKeyHook([](int key, bool) { return keysSeen = keysSeen * 100 + key, 1; });
  HookHandle* last =
      installKeyHook([](int key, bool down) { return keysSeen = keysSeen * 100 + key + 1, down ? 1 : 0; });
  EXPECT_TRUE(runKeyHooks(10, true));
  EXPECT_EQ(keysSeen, 11);
  EXPECT_TRUE(runKeyHooks(10, false));
  EXPECT_EQ(keysSeen, 111110);
  removeKeyHook(last);
  removeKeyHook(first);
  EXPECT_FALSE(runKeyHooks(10, true));
}

TEST(Windows, CanvasLimits) {
  Canvas* canvas = createMemoryCanvas(3, 2);
  ASSERT_NE(canvas, nullptr);
  EXPECT_EQ(canvasPixels(canvas)[5], 0u);
  releaseCanvas(canvas);
  EXPECT_EQ(createMemoryCanvas(0, 5), nullptr);
  EXPECT_EQ(createMemoryCanvas(32768, 1), nullptr);
}

}  // namespace
}  // namespace platform
