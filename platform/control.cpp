#include "platform/control.h"

#include <algorithm>
#include <climits>

#include "platform/backend.h"
#include "platform/window_record.h"

namespace platform {

namespace {

/// The entry for a control that the desktop shows.
void tell(void (*DesktopBackend::*entry)(Window*), Window* control) {
  if (auto call = desktopBackend().*entry; call && control->native) call(control);
}

bool hasPosition(ControlKind kind) { return kind >= controlTrackBar; }
bool hasItems(ControlKind kind) { return kind == controlComboBox || kind == controlListBox; }

int allowedValue(const ControlRecord& c, int value) {
  if (hasItems(c.kind)) return value < 0 ? -1 : std::min(value, static_cast<int>(c.items.size()) - 1);
  if (!hasPosition(c.kind)) return value != 0;
  bool thumb = c.kind == controlHorizontalScrollBar || c.kind == controlVerticalScrollBar;
  int64_t last = thumb ? static_cast<int64_t>(c.maximum) - std::max(c.page, 1) + 1 : c.maximum;
  return static_cast<int>(std::max<int64_t>(std::min<int64_t>(value, last), c.minimum));
}

/// The radio buttons from one controlGroupStart to the next.
void clearNeighbours(Window* button) {
  std::vector<Window*> group;
  for (Window* sibling : button->owner->children) {
    ControlRecord* c = controlRecord(sibling);
    if (!c || c->kind != controlRadioButton) continue;
    if (c->style & controlGroupStart) {
      if (std::find(group.begin(), group.end(), button) != group.end()) break;
      group.clear();
    }
    group.push_back(sibling);
  }
  for (Window* sibling : group)
    if (sibling != button) setControlValue(sibling, 0);
}

}  // namespace

Window* createControl(Window* owner, ControlKind kind, int id, Rect place, const char* text, uint32_t style) {
  if (!windowLives(owner)) return nullptr;
  Window* control = addWindowRecord(owner, nullptr, nullptr);
  control->control = std::make_unique<ControlRecord>(
      ControlRecord{.kind = kind, .id = id, .style = style, .value = hasItems(kind) ? -1 : 0});
  control->text = text;
  control->style = windowChild;
  control->place = place;
  control->client = sizeOf(place);
  control->shown = !(style & controlHidden);
  if (desktopBackend().createControl && owner->native) desktopBackend().createControl(control);
  return control;
}

ControlKind controlKind(Window* window) {
  ControlRecord* c = controlRecord(window);
  return c ? c->kind : controlLabel;
}

int controlId(Window* window) {
  ControlRecord* c = controlRecord(window);
  return c ? c->id : 0;
}

Window* controlOf(Window* owner, int id) {
  if (!windowLives(owner)) return nullptr;
  for (Window* child : owner->children)
    if (ControlRecord* c = controlRecord(child); c && c->id == id) return child;
  return nullptr;
}

int controlValue(Window* window) {
  ControlRecord* c = controlRecord(window);
  return c ? c->value : 0;
}

void setControlValue(Window* window, int value) {
  ControlRecord* c = controlRecord(window);
  if (!c) return;
  value = allowedValue(*c, value);
  if (c->kind == controlRadioButton && value) clearNeighbours(window);
  if (c->value == value) return;
  c->value = value;
  tell(&DesktopBackend::setValue, window);
}

void setControlRange(Window* window, int minimum, int maximum, int page) {
  ControlRecord* c = controlRecord(window);
  maximum = std::max(minimum, maximum);
  if (!c || (c->minimum == minimum && c->maximum == maximum && c->page == page)) return;
  c->minimum = minimum;
  c->maximum = maximum;
  c->page = page;
  c->value = allowedValue(*c, c->value);
  tell(&DesktopBackend::setRange, window);
}

void setControlItems(Window* window, std::span<const char* const> items) {
  ControlRecord* c = controlRecord(window);
  if (!c) return;
  c->items.assign(items.begin(), items.end());
  c->value = -1;
  tell(&DesktopBackend::setItems, window);
}

int controlItemCount(Window* window) {
  ControlRecord* c = controlRecord(window);
  return c ? static_cast<int>(c->items.size()) : 0;
}

std::string controlItem(Window* window, int index) {
  return index >= 0 && index < controlItemCount(window) ? controlRecord(window)->items[index] : "";
}

void setControlIcon(Window* window, const char* icon) {
  ControlRecord* c = controlRecord(window);
  if (!c || c->icon == icon) return;
  c->icon = icon;
  tell(&DesktopBackend::setIcon, window);
}

const std::string& controlIcon(Window* window) {
  static const std::string none;
  ControlRecord* c = controlRecord(window);
  return c ? c->icon : none;
}

void setControlTip(Window* window, const char* text) {
  ControlRecord* c = controlRecord(window);
  if (!c || c->tip == text) return;
  c->tip = text;
  tell(&DesktopBackend::setTip, window);
}

void setControlMuted(Window* window, bool muted) {
  ControlRecord* c = controlRecord(window);
  if (!c || c->muted == muted) return;
  c->muted = muted;
  tell(&DesktopBackend::setMuted, window);
}

void setControlSwatch(Window* window, int color) {
  ControlRecord* c = controlRecord(window);
  if (!c || c->swatch == color) return;
  c->swatch = color;
  tell(&DesktopBackend::setSwatch, window);
}

int controlSwatch(Window* window) {
  ControlRecord* c = controlRecord(window);
  return c ? c->swatch : -1;
}

void selectText(Window* window, int first, int last) {
  ControlRecord* c = controlRecord(window);
  if (!c) return;
  c->selectionFirst = first;
  c->selectionLast = last < 0 ? INT_MAX : last;
  tell(&DesktopBackend::selectText, window);
}

void setDropWidth(Window* window, int width) {
  ControlRecord* c = controlRecord(window);
  if (!c || c->dropWidth == width) return;
  c->dropWidth = width;
  tell(&DesktopBackend::setDropWidth, window);
}

void setControlHook(Window* window, WindowProcedure hook, void* user) {
  ControlRecord* c = controlRecord(window);
  if (!c) return;
  c->hook = hook;
  c->hookUser = user;
}

}  // namespace platform
