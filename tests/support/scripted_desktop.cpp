#include "tests/support/scripted_desktop.h"

namespace platform::test {

namespace {

ScriptedDesktop* serving;

template <typename Queue>
bool take(Queue& queue, typename Queue::value_type& out) {
  if (queue.empty()) return false;
  out = std::move(queue.front());
  queue.pop_front();
  return true;
}

int answerBox(Window*, const char* text, const char* caption, uint32_t style) {
  serving->boxes.push_back({text, caption, style});
  int answer = boxOk;
  take(serving->boxAnswers, answer);
  return answer;
}

int answerMenu(const Menu* menu, Window*, Point) {
  std::function<int(const Menu*)> choose;
  return take(serving->menus, choose) ? choose(menu) : 0;
}

void answerDialog(Window* dialog) {
  std::function<void(Window*)> work;
  if (take(serving->dialogs, work)) work(dialog);
}

const DesktopBackend& scripted() {
  static const DesktopBackend table = [] {
    DesktopBackend t{};
    t.messageBox = answerBox;
    t.showMenu = answerMenu;
    t.runModal = answerDialog;
    return t;
  }();
  return table;
}

void addLines(const Menu* menu, const std::string& prefix, std::vector<std::string>& lines) {
  for (int i = 0; i < menuEntryCount(menu); i++) {
    MenuEntry entry = menuEntry(menu, i);
    std::string text = prefix + (entry.separator ? "-" : entry.text);
    if (entry.checked) text = "[x] " + text;
    lines.push_back(entry.enabled ? text : "(" + text + ")");
    if (entry.submenu) addLines(entry.submenu, text + "/", lines);
  }
}

}  // namespace

ScriptedDesktop::ScriptedDesktop() {
  serving = this;
  setDesktopBackend(&scripted());
}

ScriptedDesktop::~ScriptedDesktop() {
  setDesktopBackend(nullptr);
  serving = nullptr;
}

std::vector<std::string> menuLines(const Menu* menu) {
  std::vector<std::string> lines;
  addLines(menu, "", lines);
  return lines;
}

}  // namespace platform::test
