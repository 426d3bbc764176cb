#include "zenlay/ui/dialogs/controls.h"

#include <algorithm>
#include <cstdint>

#include "platform/text.h"
#include "zenlay/host/environment.h"

namespace zenlay {

using platform::controlOf;
using platform::Window;

namespace {

/// As many whole characters as fit.
std::string cut(std::string text, size_t bytes) {
  size_t used = 0;
  while (used < text.size()) {
    size_t next = used + static_cast<size_t>(platform::characterBytes(text.c_str() + used));
    if (next > bytes) break;
    used = next;
  }
  text.resize(used);
  return text;
}

}  // namespace

Window* dialogOwner() {
  Window* active = platform::activeWindow();
  return active ? active : environment.timelineWindow;
}

std::string textIn(Window* dialog, int id) {
  return cut(platform::ansiFromUtf8(platform::windowText(controlOf(dialog, id))), dialogTextBytes);
}

void showText(Window* dialog, int id, std::string_view text) {
  platform::setWindowText(controlOf(dialog, id), platform::utf8FromAnsi(text).c_str());
}

int parseNumber(const char* text) {
  while (*text == ' ') text++;
  bool negative = *text == '-';
  if (negative || *text == '+') text++;
  int64_t value = 0;
  for (; *text >= '0' && *text <= '9'; text++) value = std::min<int64_t>(value * 10 + (*text - '0'), int64_t{1} << 32);
  return static_cast<int>(std::clamp<int64_t>(negative ? -value : value, INT32_MIN, INT32_MAX));
}

int numberIn(Window* dialog, int id) { return parseNumber(platform::windowText(controlOf(dialog, id)).c_str()); }

void showNumber(Window* dialog, int id, int value) {
  platform::setWindowText(controlOf(dialog, id), std::to_string(value).c_str());
}

void showNumberOrNothing(Window* dialog, int id, int value) {
  platform::setWindowText(controlOf(dialog, id), value == 0 ? "" : std::to_string(value).c_str());
}

bool isTicked(Window* dialog, int id) { return platform::controlValue(controlOf(dialog, id)) != 0; }

void tick(Window* dialog, int id, bool ticked) { platform::setControlValue(controlOf(dialog, id), ticked); }

bool isPress(uint32_t message, intptr_t first, int id) {
  return message == platform::messageCommand && platform::commandId(first) == id &&
         platform::commandEvent(first) == platform::controlClicked;
}

}  // namespace zenlay
