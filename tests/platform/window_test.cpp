#include "platform/window.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/backend.h"
#include "platform/system.h"
#include "platform/user_input.h"
#include "tests/platform/message_log.h"

namespace platform {
namespace {

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

using test::MessageLog;
using Lines = std::vector<std::string>;

const WindowOptions plain{"", "", {100, 50, 300, 200}, windowVisible};

TEST(Windows, SizesFollowFromPlaces) {
  MessageLog log;
  Window* window = createWindow(nullptr, test::logMessage, &log, plain);
  log.lines.clear();
  setWindowPlace(window, {0, 0, 300, 200});
  EXPECT_EQ(log.lines, Lines{});  // moved only
  setWindowPlace(window, {0, 0, 310, 190});
  setClientSize(window, {400, 80});
  EXPECT_EQ(log.lines, (Lines{"sized 310,190", "sized 400,80"}));
  reportPlace(window, {10, 20, 402, 103}, {11, 41, 400, 80});  // a desktop put a frame around it
  EXPECT_EQ(log.lines.size(), 2u);
  setClientSize(window, {398, 81});
  EXPECT_EQ(windowPlace(window), (Rect{10, 20, 400, 104}));
  Window* child = createWindow(window, nullptr, nullptr, {"", "", {5, 6, 10, 10}, windowChild | windowVisible});
  EXPECT_EQ(clientToScreen(child, {1, 1}), (Point{17, 48}));
  EXPECT_EQ(screenToClient(child, {17, 48}), (Point{1, 1}));
  EXPECT_EQ(windowAt({17, 48}), child);
  EXPECT_EQ(windowAt({27, 48}), window);
  EXPECT_EQ(windowAt({9, 48}), nullptr);
  destroyWindow(window);
}

TEST(Windows, FocusActivatesAndLeavesWhatGoes) {
  MessageLog log;
  Window* main = createWindow(nullptr, test::logMessage, log.named("main "), plain);
  Window* tool = createWindow(main, test::logMessage, log.named("tool "), plain);
  Window* child = createWindow(tool, test::logMessage, log.named("child "), {"", "", {}, windowChild | windowVisible});
  EXPECT_EQ(log.lines, (Lines{"main activated 1", "main activated 0", "tool activated 1"}));
  log.lines.clear();
  focusWindow(child);
  EXPECT_EQ(log.lines, Lines{});  // within the same top-level window
  EXPECT_EQ(focusedWindow(), child);
  EXPECT_EQ(activeWindow(), tool);
  showWindow(tool, false);
  EXPECT_EQ(log.lines, (Lines{"tool activated 0", "main activated 1"}));
  enableWindow(tool, false);
  focusWindow(child);
  EXPECT_EQ(focusedWindow(), main);
  enableWindow(tool, true);
  showWindow(tool, true);
  destroyWindow(tool);
  EXPECT_EQ(activeWindow(), main);
  EXPECT_FALSE(windowLives(child));
  destroyWindow(main);
  EXPECT_EQ(focusedWindow(), nullptr);
}

TEST(Windows, CaptureTakesTheMouse) {
  MessageLog log;
  Window* a = createWindow(nullptr, test::logMessage, log.named("a "), plain);
  Window* b = createWindow(nullptr, test::logMessage, log.named("b "), {"", "", {500, 50, 300, 200}, windowVisible});
  log.lines.clear();
  captureMouse(a);
  user::mouse(b, messageMouseMove, {3, 4}, mouseLeft);
  releaseMouse();
  user::mouse(b, messageMouseMove, {3, 4}, 0);
  EXPECT_EQ(log.lines, (Lines{"a move 403,4 left", "a capture lost", "b move 3,4"}));
  for (void (*withhold)(Window*) :
       {+[](Window* w) { showWindow(w, false); }, +[](Window* w) { enableWindow(w, false); }}) {
    captureMouse(a);
    withhold(a);
    EXPECT_EQ(mouseCapture(), nullptr);
  }
  destroyWindow(a);
  destroyWindow(b);
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

}  // namespace
}  // namespace platform
