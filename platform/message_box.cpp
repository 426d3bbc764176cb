#include <iterator>
#include <string>
#include <string_view>

#include "platform/backend.h"
#include "platform/system.h"

namespace platform {

namespace {

/// The lines of `text` as sentences of one line.
std::string joinLines(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    while (!line.empty() && static_cast<unsigned char>(line.back()) <= ' ') line.remove_suffix(1);
    while (!line.empty() && static_cast<unsigned char>(line.front()) <= ' ') line.remove_prefix(1);
    if (line.empty()) continue;
    if (!out.empty()) out += std::string_view(".!?:;,").find(out.back()) == std::string_view::npos ? ". " : " ";
    out += line;
  }
  return out;
}

}  // namespace

BoxResult refusalOf(uint32_t style) {
  static constexpr BoxResult refusals[] = {
      boxOk,      // OK
      boxCancel,  // OK, cancel
      boxAbort,   // abort, retry, ignore
      boxCancel,  // yes, no, cancel
      boxNo,      // yes, no
      boxCancel,  // retry, cancel
  };
  uint32_t buttons = style & 15;
  return buttons < std::size(refusals) ? refusals[buttons] : boxCancel;
}

int messageBox(Window* owner, const char* text, const char* caption, uint32_t style) {
  const DesktopBackend& desktop = desktopBackend();
  if (desktop.messageBox) return desktop.messageBox(owner, text ? text : "", caption ? caption : "", style);
  std::string line = joinLines(caption ? caption : "");
  debugOutput((line.empty() ? line : line + ": ") + joinLines(text ? text : ""));
  return refusalOf(style);
}

}  // namespace platform
