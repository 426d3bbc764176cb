// The object settings window: the effect chain of the current object and its controls. The user's changes go as
// commands to the timeline window; the functions below carry them out.
#pragma once

#include <cstdint>

#include "platform/window.h"

namespace zenlay {

void createSettingsWindow();  // at start-up, hidden, owned by the timeline window
void destroySettingsWindow();
platform::Window* settingsWindow();

/// Makes the object current and shows it; -1 (or an object that is not in use): none is current and the window hides.
/// The window stays hidden while a save is under way.
void showObject(int object);
/// Rewrites the controls from the model without a new layout.
void refreshSettings();
void refreshSettingsHeader();
/// The layout again, for an object whose effects, names or ranges changed.
void relayoutSettings();
/// For ModelHooks::objectChanged: shows the current object anew when the object belongs to its chain.
void settingsObjectChanged(int object);
/// For save-start and save-end: disabled and hidden between them.
void enableSettings(bool enabled);
/// The cursor line of the section strip, after the cursor frame changed.
void moveSettingsCursor();

/// Sees the program's keys first (installKeyHook): 1 = a key pressed in this window that was taken.
int settingsKey(int key, bool down);

/// A control (`kind`: SettingsControl) of the slot's track or check `index`; null unless the object belongs to the
/// current object's chain.
platform::Window* settingsControl(int object, int slot, int kind, int index);
/// Changes the limits and the track bars' range of a track of the current object until the next layout; `denominator`
/// 0 counts as 1. The stored values stay.
bool setSettingsTrackRange(int object, int slot, int track, int minimum, int maximum, int denominator);

/// Whether filter effects may be added to the object, as far as its kind goes.
bool takesEffects(int object);
/// The number of the submenus "Add a filter effect", by which they are greyed.
inline constexpr int submenuAddEffect = 1106;
/// 1080: the current object's "Add a filter effect" menu at the mouse; nothing when it has no room for one.
void openAddEffectMenu();

/// Bits that say what a movement script takes; none without scripts.
enum MovementScriptOption { movementTakesSpeed = 0x1, movementTakesParameter = 0x2 };
extern int (*movementScriptOptions)(int script);

// ---- Commands. Those that change something answer 1: the frame is to be redrawn. Without a current object, or for a
// row or slot that it does not have, nothing happens. ----

/// Parameter of commandApplySettings: an index or'ed with one of these.
enum SettingsChange : intptr_t {
  changedStart = 0x10000,  // track row
  changedEnd = 0x20000,    // track row
  changedCheck = 0x40000,  // check row
  changedMode = 0x80000,   // track row
  changedSlot = 0x100000,  // slot: enabled, handles
  changedFold = 0x200000,  // slot
};
/// 1003: the window's values into the model, with undo unless object and parameter are those of the last call; the
/// changed item is also copied to the same effect of every selected object.
int applySettings(intptr_t parameter);
/// The next change begins a new undo step.
void endSettingsEdit();
int trackChanged();                             // 1063
int pushButton(int row);                        // 1011
int dropDownChanged(int row);                   // 1022
int checkChanged(int row);                      // 1027
int selectSection(int object);                  // 1012: another section of the current chain becomes current
int jumpToStart(int frame);                     // 1017
int jumpToEnd(int frame);                       // 1018
int restoreDefaults(int slot);                  // 1052: the slot's tracks in every section, as one undo step
int setEffectFile(int slot, const char* path);  // 1024
int customControl(int id, int event);           // 22000 + 256 * slot + n, the control's notification

// ---- Picking a colour from the screen: an effect asks for it, the next left click gives it. ----

/// For the check row that asked; Y, Cb and Cr unless `wantsRgb`.
void beginColorPick(int object, int row, bool wantsRgb);
bool colorPickPending();
/// Without a colour.
void endColorPick();
/// The object is no more.
void forgetColorPick(int object);
/// A click on the host's main image, in pixels of the frame as rendered: the current frame is rendered and its pixel
/// sent as commandColorPicked. 1 when a pick was pending.
int pickImageColor(platform::Point);
/// With the left button down somewhere on the screen: the pixel under the cursor, unless the click lies in the host's
/// main window of an open project. 1 when a pick was pending and is done.
int pickScreenColor();
/// 1028: the colour (0xRRGGBB or packedYcc, -1 = none) to the effect that waits for it.
int colorPicked(intptr_t color);

}  // namespace zenlay
