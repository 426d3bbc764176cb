#include "tests/platform/message_log.h"

namespace platform::test {

namespace {

std::string pointText(intptr_t packed) {
  Point p = unpackPoint(packed);
  std::string text = " ";
  return text.append(std::to_string(p.x)).append(",").append(std::to_string(p.y));
}

std::string stateText(intptr_t state) {
  struct Bit {
    intptr_t bit;
    const char* name;
  };
  std::string text;
  for (const Bit& b : {Bit{mouseLeft, " left"}, Bit{mouseRight, " right"}, Bit{mouseMiddle, " middle"},
                       Bit{mouseShift, " shift"}, Bit{mouseCtrl, " ctrl"}, Bit{mouseAlt, " alt"}})
    if (state & b.bit) text += b.name;
  return text;
}

std::string describe(uint32_t message, intptr_t first, intptr_t second) {
  struct Name {
    uint32_t message;
    const char* name;
  };
  static constexpr Name mouseNames[] = {
      {messageMouseMove, "move"},        {messageLeftDown, "down"},   {messageLeftUp, "up"},
      {messageLeftDoubleClick, "twice"}, {messageRightDown, "rdown"}, {messageRightUp, "rup"},
      {messageMiddleDown, "mdown"},      {messageMiddleUp, "mup"},
  };
  for (const Name& n : mouseNames)
    if (n.message == message) return n.name + pointText(second) + stateText(first);
  auto control = reinterpret_cast<Window*>(second);
  switch (message) {
    case messageSized:
      return "sized" + pointText(second);
    case messageActivated:
      return "activated " + std::to_string(first);
    case messagePaint:
      return "paint";
    case messageClose:
      return "close";
    case messageKeyDown:
    case messageSystemKeyDown:
    case messageKeyUp: {
      const char* name = message == messageKeyUp ? "up " : message == messageKeyDown ? "key " : "syskey ";
      return name + std::to_string(first) + (second ? " again" : "");
    }
    case messageCommand:
      return "command " + std::to_string(commandId(first)) + " event " + std::to_string(commandEvent(first)) +
             (control ? " value " + std::to_string(controlValue(control)) : "");
    case messageHorizontalScroll:
    case messageVerticalScroll:
      return (message == messageVerticalScroll ? "vscroll " : "hscroll ") + std::to_string(first) + " of " +
             std::to_string(controlId(control)) + " to " + std::to_string(controlValue(control));
    case messageTimer:
      return "timer " + std::to_string(first);
    case messageMouseWheel:
      return "wheel" + pointText(second) + stateText(first & 0xFFFF) + " " + std::to_string(wheelNotches(first));
    case messageSizing: {
      auto* r = reinterpret_cast<Rect*>(second);
      return "sizing " + std::to_string(r->width) + "," + std::to_string(r->height);
    }
    case messageCaptureLost:
      return "capture lost";
    case messageEnterSizeMove:
      return "enter size";
    case messageExitSizeMove:
      return "exit size";
    case messageFilesDropped: {
      auto* files = reinterpret_cast<const DroppedFiles*>(second);
      return "dropped" + pointText(packPoint(files->at)) + " " + files->paths[0];
    }
    case messageMouseLeave:
      return "leave";
    default:
      return "message " + std::to_string(message);
  }
}

}  // namespace

intptr_t logMessage(Window*, uint32_t message, intptr_t first, intptr_t second, void* user) {
  auto* log = static_cast<MessageLog*>(user);
  log->target->lines.push_back(log->prefix + describe(message, first, second));
  if (message == messageSizing && log->widest) reinterpret_cast<Rect*>(second)->width = log->widest;
  return 0;
}

}  // namespace platform::test
