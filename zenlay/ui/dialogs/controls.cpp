#include "zenlay/ui/dialogs/controls.h"

#include <algorithm>
#include <cstdint>

#include "platform/text.h"
#include "zenlay/host/environment.h"

namespace zenlay {

using platform::controlOf;
using platform::Window;

Window* dialogOwner() {
  Window* active = platform::activeWindow();
  return active ? active : environment.timelineWindow;
}

std::string textIn(Window* dialog, int id, size_t bytes) {
  return platform::wholeCharacters(platform::ansiFromUtf8(platform::windowText(controlOf(dialog, id))), bytes);
}

void showText(Window* dialog, int id, std::string_view text) {
  platform::setWindowText(controlOf(dialog, id), platform::utf8FromAnsi(text).c_str());
}

int parseNumber(const char* text) {
  while (*text == ' ') text++;
  bool negative = *text == '-';
  if (negative || *text == '+') text++;
  int64_t value = platform::takeDigits(text, int64_t{INT32_MAX} + negative);
  return static_cast<int>(negative ? -value : value);
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
