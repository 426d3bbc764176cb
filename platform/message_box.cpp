#include <string>
#include <string_view>

#include "platform/backend.h"
#include "platform/system.h"

namespace platform {

namespace {

/// Buttons in bits 0..3 of a box's style, and the answer of nobody.
struct BoxButtons {
  uint32_t buttons;
  int refusal;
};
constexpr BoxButtons boxButtons[] = {
    {0, boxOk},      // OK
    {1, boxCancel},  // OK, cancel
    {2, boxAbort},   // abort, retry, ignore
    {3, boxCancel},  // yes, no, cancel
    {4, boxNo},      // yes, no
    {5, boxCancel},  // retry, cancel
};

int refusalOf(uint32_t style) {
  for (const BoxButtons& row : boxButtons)
    if (row.buttons == (style & 15)) return row.refusal;
  return boxCancel;
}

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

int messageBox(Window* owner, const char* text, const char* caption, uint32_t style) {
  const DesktopBackend& desktop = desktopBackend();
  if (desktop.messageBox) return desktop.messageBox(owner, text ? text : "", caption ? caption : "", style);
  std::string line = joinLines(caption ? caption : "");
  debugOutput((line.empty() ? line : line + ": ") + joinLines(text ? text : ""));
  return refusalOf(style);
}

}  // namespace platform
