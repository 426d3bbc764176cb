#include "platform/window.h"

#include <algorithm>
#include <deque>
#include <mutex>

#include "platform/backend.h"
#include "platform/window_record.h"

namespace platform {

namespace {

struct Posted {
  Window* window;
  uint32_t message;
  intptr_t first, second;
};

struct Desktop {
  std::deque<Window> records;
  std::vector<Window*> topLevel;  // the last activated last
  Window* focus = nullptr;
  Window* capture = nullptr;
  std::mutex lock;  // of what follows
  std::vector<Posted> posted;
};

Desktop& desktop() {
  static Desktop instance;
  return instance;
}

std::atomic<const DesktopBackend*> backend{nullptr};

bool lives(const Window* window) { return window && window->lives; }

/// The entry for a window that the desktop shows.
template <typename Entry, typename... Arguments>
void tell(Entry DesktopBackend::*entry, Window* window, Arguments... arguments) {
  if (Entry call = desktopBackend().*entry; call && window->native) call(window, arguments...);
}

bool within(const Window* window, const Window* container) {
  while (window && window != container) window = window->owner;
  return window;
}

/// Within it without leaving its own surface.
bool contained(const Window* window, const Window* container) {
  while (window && window != container) window = window->style & windowChild ? window->owner : nullptr;
  return window;
}

bool reachable(const Window* window) {
  if (!window) return false;
  for (; window; window = window->style & windowChild ? window->owner : nullptr)
    if (!window->lives || !window->enabled) return false;
  return true;
}

void tellFocus(Window* window, ControlEvent event) {
  ControlRecord* control = controlRecord(window);
  if (control && (control->kind == controlEdit || control->kind == controlComboBox))
    sendMessage(window->owner, messageCommand, control->id | event << 16, reinterpret_cast<intptr_t>(window));
}

void resizeClient(Window* window, Size client) {
  if (window->client == client) return;
  window->client = client;
  if (!window->control) sendMessage(window, messageSized, 0, packPoint({client.width, client.height}));
}

/// Where the focus goes when `window` can no longer have it.
void giveFocusUp(Window* window) {
  if (!contained(desktop().focus, window)) return;
  Window* next = window->owner;
  while (next && !(reachable(next) && next->shown && !next->control)) next = next->owner;
  if (next)
    focusWindow(next);
  else
    reportFocus(nullptr);
}

void removeRecords(Window* window) {
  for (Window* child : std::vector<Window*>(window->children)) removeRecords(child);
  Desktop& d = desktop();
  window->lives = false;
  std::erase(d.topLevel, window);
  if (d.capture == window) {
    d.capture = nullptr;
    if (desktopBackend().capture) desktopBackend().capture(nullptr);
  }
  std::lock_guard guard(d.lock);
  std::erase_if(d.posted, [&](const Posted& p) { return p.window == window; });
}

void releaseRecords(Window* window) {
  for (Window* child : window->children) releaseRecords(child);
  tell(&DesktopBackend::destroyWindow, window);
  window->native = nullptr;
  window->control.reset();
  window->children = {};
  window->timers = {};
}

}  // namespace

const DesktopBackend& desktopBackend() {
  static const DesktopBackend none{};
  const DesktopBackend* table = backend;
  return table ? *table : none;
}

void setDesktopBackend(const DesktopBackend* table) { backend = table; }

Window* addWindowRecord(Window* owner, WindowProcedure procedure, void* user) {
  Window& window = desktop().records.emplace_back();
  window.owner = lives(owner) ? owner : nullptr;
  window.procedure = procedure;
  window.user = user;
  if (window.owner) window.owner->children.push_back(&window);
  return &window;
}

std::vector<Window*> topLevelWindows() { return desktop().topLevel; }

Window* createWindow(Window* owner, WindowProcedure procedure, void* user, const WindowOptions& options) {
  Window* window = addWindowRecord(owner, procedure, user);
  window->className = options.className;
  window->text = options.title;
  window->style = window->owner ? options.style : options.style & ~windowChild;
  window->place = options.place;
  window->client = sizeOf(options.place);
  if (!(window->style & windowChild)) desktop().topLevel.insert(desktop().topLevel.begin(), window);
  bool hasSurface = !(window->style & windowChild) || window->owner->native;
  if (desktopBackend().createWindow && hasSurface) desktopBackend().createWindow(window);
  if (options.style & windowVisible) showWindow(window, true);
  return window;
}

void destroyWindow(Window* window) {
  if (!lives(window)) return;
  Window* owner = window->owner;
  bool hadFocus = within(desktop().focus, window);
  if (owner) std::erase(owner->children, window);
  removeRecords(window);
  releaseRecords(window);
  if (!hadFocus) return;
  desktop().focus = nullptr;
  while (owner && !(reachable(owner) && owner->shown && !owner->control)) owner = owner->owner;
  if (owner) focusWindow(owner);
}

Window* windowOwner(Window* window) { return lives(window) && lives(window->owner) ? window->owner : nullptr; }
bool windowLives(Window* window) { return lives(window); }
uint32_t windowStyle(Window* window) { return lives(window) ? window->style : 0; }
const char* windowClassName(Window* window) { return window ? window->className.c_str() : ""; }

Window* topLevelWindow(Window* window) {
  while (lives(window) && (window->style & windowChild)) window = window->owner;
  return lives(window) ? window : nullptr;
}

intptr_t sendMessage(Window* window, uint32_t message, intptr_t first, intptr_t second) {
  return lives(window) && window->procedure ? window->procedure(window, message, first, second, window->user) : 0;
}

void postMessage(Window* window, uint32_t message, intptr_t first, intptr_t second) {
  Desktop& d = desktop();
  {
    std::lock_guard guard(d.lock);
    if (!lives(window)) return;
    d.posted.push_back({window, message, first, second});
  }
  if (desktopBackend().wake) desktopBackend().wake();
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

void showWindow(Window* window, bool shown, bool activate) {
  if (!lives(window)) return;
  bool changed = window->shown != shown;
  window->shown = shown;
  if (changed || (shown && activate)) tell(&DesktopBackend::show, window, activate);
  if (!shown) {
    if (contained(desktop().capture, window)) releaseMouse();
    giveFocusUp(window);
  } else if (activate && !(window->style & windowChild) && !contained(desktop().focus, window)) {
    focusWindow(window);
  }
}

bool windowShown(Window* window) { return lives(window) && window->shown; }

void enableWindow(Window* window, bool enabled) {
  if (!lives(window) || window->enabled == enabled) return;
  window->enabled = enabled;
  tell(&DesktopBackend::enable, window);
  if (enabled) return;
  if (contained(desktop().capture, window)) releaseMouse();
  if (contained(desktop().focus, window) && (window->style & windowChild)) giveFocusUp(window);
}

bool windowEnabled(Window* window) { return lives(window) && window->enabled; }

void setWindowText(Window* window, const char* text) {
  if (!lives(window) || window->text == text) return;
  window->text = text;
  tell(&DesktopBackend::setText, window);
  ControlRecord* control = controlRecord(window);
  if (control && control->kind == controlEdit)
    sendMessage(window->owner, messageCommand, control->id | controlTextChanged << 16,
                reinterpret_cast<intptr_t>(window));
}

const std::string& windowText(Window* window) {
  static const std::string none;
  return window ? window->text : none;
}

void setWindowPlace(Window* window, Rect place) {
  if (!lives(window)) return;
  Size frame{window->place.width - window->client.width, window->place.height - window->client.height};
  window->place = place;
  tell(&DesktopBackend::setPlace, window);
  if (lives(window) && window->place == place)
    resizeClient(window, {std::max(place.width - frame.width, 0), std::max(place.height - frame.height, 0)});
}

Rect windowPlace(Window* window) {
  if (!lives(window)) return {};
  tell(&DesktopBackend::refreshPlace, window);
  return window->place;
}

Size clientSize(Window* window) { return lives(window) ? window->client : Size{}; }

void setClientSize(Window* window, Size size) {
  if (!lives(window) || window->client == size) return;
  window->place.width += size.width - window->client.width;
  window->place.height += size.height - window->client.height;
  Size old = window->client;
  window->client = size;
  tell(&DesktopBackend::setClientSize, window);
  if (!lives(window) || !(window->client == size)) return;
  window->client = old;
  resizeClient(window, size);
}

void reportPlace(Window* window, Rect outer, Rect client) {
  if (!lives(window)) return;
  window->place = outer;
  window->clientAt = {client.x - outer.x, client.y - outer.y};
  resizeClient(window, sizeOf(client));
}

Point clientToScreen(Window* window, Point point) {
  for (; lives(window); window = window->owner) {
    if (!(window->style & windowChild)) tell(&DesktopBackend::refreshPlace, window);
    point.x += window->place.x + window->clientAt.x;
    point.y += window->place.y + window->clientAt.y;
    if (!(window->style & windowChild)) break;
  }
  return point;
}

Point screenToClient(Window* window, Point point) {
  Point origin = clientToScreen(window, {0, 0});
  return {point.x - origin.x, point.y - origin.y};
}

void invalidateWindow(Window* window) {
  if (lives(window)) tell(&DesktopBackend::invalidate, window);
}

void focusWindow(Window* window) {
  if (!reachable(window)) return;
  if (window) tell(&DesktopBackend::focus, window);
  reportFocus(window);
}

void reportFocus(Window* window) {
  Desktop& d = desktop();
  if (window && !lives(window)) return;
  Window* old = d.focus;
  if (old == window) return;
  Window *from = topLevelWindow(old), *to = topLevelWindow(window);
  d.focus = window;
  if (from != to) {
    if (to) {
      std::erase(d.topLevel, to);
      d.topLevel.push_back(to);
    }
    sendMessage(from, messageActivated, 0, reinterpret_cast<intptr_t>(to));
    sendMessage(to, messageActivated, 1, reinterpret_cast<intptr_t>(from));
  }
  tellFocus(old, controlLostFocus);
  if (d.focus == window) tellFocus(window, controlGotFocus);
}

Window* focusedWindow() { return desktop().focus; }
Window* activeWindow() { return topLevelWindow(desktop().focus); }

void captureMouse(Window* window) {
  Desktop& d = desktop();
  if (!lives(window) || d.capture == window) return;
  Window* old = d.capture;
  d.capture = window;
  tell(&DesktopBackend::capture, window);
  sendMessage(old, messageCaptureLost, 0, reinterpret_cast<intptr_t>(window));
}

void releaseMouse() {
  if (!desktop().capture) return;
  if (desktopBackend().capture) desktopBackend().capture(nullptr);
  reportCaptureLost();
}

void reportCaptureLost() {
  Window* old = desktop().capture;
  desktop().capture = nullptr;
  sendMessage(old, messageCaptureLost, 0, 0);
}

Window* mouseCapture() { return desktop().capture; }

void setCursorShape(Window* window, CursorShape shape) {
  if (!lives(window) || window->cursor == shape) return;
  window->cursor = shape;
  tell(&DesktopBackend::setCursor, window);
}

void startTimer(Window* window, int id, int milliseconds) {
  if (!lives(window)) return;
  window->timers[id] = std::max(milliseconds, 1);
  tell(&DesktopBackend::startTimer, window, id, std::max(milliseconds, 1));
}

void stopTimer(Window* window, int id) {
  if (lives(window) && window->timers.erase(id)) tell(&DesktopBackend::stopTimer, window, id);
}

Window* windowAt(Point screen) {
  if (desktopBackend().windowAt) return desktopBackend().windowAt(screen);
  const std::vector<Window*>& all = desktop().topLevel;
  auto hit = [&](const Window* w, Point p) { return w->shown && contains({0, 0, w->place.width, w->place.height}, p); };
  for (auto top = all.rbegin(); top != all.rend(); ++top) {
    Window* found = *top;
    Point at{screen.x - found->place.x, screen.y - found->place.y};
    if (!hit(found, at)) continue;
    for (bool deeper = true; deeper;) {
      deeper = false;
      at = {at.x - found->clientAt.x, at.y - found->clientAt.y};
      for (Window* child : found->children) {
        Point inside{at.x - child->place.x, at.y - child->place.y};
        if (!(child->style & windowChild) || !hit(child, inside)) continue;
        found = child, at = inside, deeper = true;
        break;
      }
    }
    return found;
  }
  return nullptr;
}

int screenPixel(Point screen) { return desktopBackend().screenPixel ? desktopBackend().screenPixel(screen) : -1; }

Rect virtualScreen() {
  return desktopBackend().virtualScreen ? desktopBackend().virtualScreen() : Rect{0, 0, 1920, 1080};
}

bool onAnyMonitor(Rect place) {
  if (desktopBackend().onAnyMonitor) return desktopBackend().onAnyMonitor(place);
  return !isEmpty(intersect(place, virtualScreen()));
}

}  // namespace platform
