#include "platform/window.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system.h"

namespace platform {

struct Window {
  Window* owner;
  WindowProcedure procedure;
  void* user;
};

struct HookHandle {
  KeyHook hook;
};

struct Canvas {
  uint32_t* pixels;
};

namespace {

struct Posted {
  Window* window;
  uint32_t message;
  intptr_t first, second;
};

// A destroyed window's record stays allocated, so that no later window gets its address while somebody holds it.
struct Desktop {
  std::mutex lock;
  std::vector<Window*> live;
  std::vector<std::unique_ptr<Window>> all;
  std::vector<Posted> posted;
  std::vector<HookHandle*> hooks;
};

Desktop& desktop() {
  static Desktop instance;
  return instance;
}

std::atomic<const DesktopBackend*> backend{nullptr};

bool isLive(const Desktop& d, const Window* window) {
  return std::find(d.live.begin(), d.live.end(), window) != d.live.end();
}

/// Buttons in bits 0..3 of a box's style, and the answer of nobody.
struct BoxButtons {
  uint32_t buttons;
  int refusal;
};
constexpr int boxAbort = 3;
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

Window* createWindow(Window* owner, WindowProcedure procedure, void* user) {
  Desktop& d = desktop();
  std::lock_guard guard(d.lock);
  d.all.push_back(std::make_unique<Window>(Window{owner, procedure, user}));
  d.live.push_back(d.all.back().get());
  return d.all.back().get();
}

void destroyWindow(Window* window) {
  Desktop& d = desktop();
  std::lock_guard guard(d.lock);
  std::vector<Window*> going;
  if (window && isLive(d, window)) going.push_back(window);
  for (size_t i = 0; i < going.size(); i++) {
    std::erase(d.live, going[i]);
    std::erase_if(d.posted, [&](const Posted& p) { return p.window == going[i]; });
    std::copy_if(d.live.begin(), d.live.end(), std::back_inserter(going),
                 [&](const Window* other) { return other->owner == going[i]; });
  }
}

Window* windowOwner(Window* window) {
  Desktop& d = desktop();
  std::lock_guard guard(d.lock);
  return window && isLive(d, window) ? window->owner : nullptr;
}

intptr_t sendMessage(Window* window, uint32_t message, intptr_t first, intptr_t second) {
  WindowProcedure procedure = nullptr;
  {
    Desktop& d = desktop();
    std::lock_guard guard(d.lock);
    if (window && isLive(d, window)) procedure = window->procedure;
  }
  return procedure ? procedure(window, message, first, second, window->user) : 0;
}

void postMessage(Window* window, uint32_t message, intptr_t first, intptr_t second) {
  Desktop& d = desktop();
  std::lock_guard guard(d.lock);
  if (window && isLive(d, window)) d.posted.push_back({window, message, first, second});
}

void runPostedMessages() {
  Desktop& d = desktop();
  std::vector<Posted> batch;
  {
    std::lock_guard guard(d.lock);
    batch.swap(d.posted);
  }
  for (const Posted& p : batch) sendMessage(p.window, p.message, p.first, p.second);
}

void setDesktopBackend(const DesktopBackend* table) { backend = table; }

int messageBox(Window* owner, const char* text, const char* caption, uint32_t style) {
  const DesktopBackend* table = backend;
  if (table && table->messageBox) return table->messageBox(owner, text, caption, style);
  std::string line = joinLines(caption ? caption : "");
  debugOutput((line.empty() ? line : line + ": ") + joinLines(text ? text : ""));
  return refusalOf(style);
}

HookHandle* installKeyHook(KeyHook hook) {
  Desktop& d = desktop();
  std::lock_guard guard(d.lock);
  d.hooks.push_back(new HookHandle{hook});
  return d.hooks.back();
}

void removeKeyHook(HookHandle* handle) {
  Desktop& d = desktop();
  std::lock_guard guard(d.lock);
  if (std::erase(d.hooks, handle) > 0) delete handle;
}

bool runKeyHooks(int key, bool down) {
  std::vector<KeyHook> hooks;
  {
    Desktop& d = desktop();
    std::lock_guard guard(d.lock);
    for (const HookHandle* handle : d.hooks) hooks.push_back(handle->hook);
  }
  return std::any_of(hooks.rbegin(), hooks.rend(), [&](KeyHook hook) { return hook(key, down) == 1; });
}

Canvas* createMemoryCanvas(int width, int height) {
  constexpr int maxSide = 32767;
  if (width < 1 || width > maxSide || height < 1 || height > maxSide) return nullptr;
  auto* pixels = static_cast<uint32_t*>(std::calloc(static_cast<size_t>(width) * height, sizeof(uint32_t)));
  return pixels ? new Canvas{pixels} : nullptr;
}

void releaseCanvas(Canvas* canvas) {
  if (!canvas) return;
  std::free(canvas->pixels);
  delete canvas;
}

uint32_t* canvasPixels(Canvas* canvas) { return canvas ? canvas->pixels : nullptr; }

}  // namespace platform
