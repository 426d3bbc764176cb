// The records behind the handles, for this folder and its desktop backends.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/control.h"

namespace platform {

struct NativeWindow;  // the backend's own; null for a window without one

struct ControlRecord {
  ControlKind kind;
  int id;
  uint32_t style;  // ControlStyle
  int value;       // check state, selection or position
  int minimum = 0, maximum = 100, page = 10;
  int selectionFirst = 0, selectionLast = 0;
  int dropWidth = 0;
  bool muted = false;
  int swatch = -1;
  std::vector<std::string> items;
  std::string icon, tip;
  WindowProcedure hook = nullptr;
  void* hookUser = nullptr;
};

// Stays allocated when the window is destroyed, so that no later window gets its address while somebody holds it.
struct Window {
  Window* owner = nullptr;
  WindowProcedure procedure = nullptr;
  void* user = nullptr;
  std::atomic<bool> lives = true;
  bool shown = false, enabled = true;
  uint32_t style = 0;
  std::string className, text;
  Rect place{};      // outer rectangle
  Point clientAt{};  // of the client area within the outer rectangle
  Size client{};
  CursorShape cursor = cursorArrow;
  std::map<int, int> timers;      // id: milliseconds
  std::vector<Window*> children;  // what it owns, in the order of creation
  std::unique_ptr<ControlRecord> control;
  NativeWindow* native = nullptr;
};

/// Of a live control; null otherwise.
inline ControlRecord* controlRecord(Window* window) {
  return window && window->lives ? window->control.get() : nullptr;
}
/// Makes the record only, under `owner`.
Window* addWindowRecord(Window* owner, WindowProcedure, void* user);
/// Lists the live top-level windows, the last activated last.
std::vector<Window*> topLevelWindows();

}  // namespace platform
