// The object settings window: the effect chain of the current object and its controls.
#pragma once

#include <cstdint>

#include "platform/window.h"

namespace zenlay {

void createSettingsWindow();  // at start-up, hidden, owned by the timeline window
void destroySettingsWindow();
platform::Window* settingsWindow();

/// Makes the object current and lays the window out for it; -1 hides it.
void showObject(int object);
/// Rewrites the controls from the model without a new layout.
void refreshSettings();
void refreshSettingsHeader();
/// The layout again, for an object whose effects, names or ranges changed.
void relayoutSettings();

/// Parameter of commandApplySettings: an index or'ed with one of these.
enum SettingsChange : intptr_t {
  changedStart = 0x10000,  // track row
  changedEnd = 0x20000,    // track row
  changedCheck = 0x40000,  // check row
  changedMode = 0x80000,   // track row
  changedSlot = 0x100000,  // slot: enabled, handles
  changedFold = 0x200000,  // slot
};

/// What the window's controls hold, in model units; read by commandApplySettings.
struct SettingsValues {
  int32_t start[64], end[64], mode[64], param[64];
  int32_t check[48];
  uint8_t slotFlags[12];
};
const SettingsValues& settingsValues();

/// The control of a track (kinds 0..2: track bar, value box, spin button) or check (3..7) of a slot of the current
/// object; null for other objects.
platform::Window* settingsControl(int object, int slot, int kind, int index);
/// Changes the track bar's range of the current object; `denominator` 0 counts as 1.
bool setSettingsTrackRange(int object, int slot, int track, int minimum, int maximum, int denominator);

/// A colour pick that waits for the next click, for the effect row that asked.
void beginColorPick(int object, int row, bool wantsRgb);
bool colorPickPending();

}  // namespace zenlay
