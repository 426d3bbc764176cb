// What the settings window's files share: the controls, made once for the largest object, and the values they show.
#pragma once

#include <string>

#include "platform/canvas.h"
#include "platform/control.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay::settings {

using platform::Point;
using platform::Rect;
using platform::Window;

enum ControlId : int {
  idCheckBox = 1101,
  idJumpToStart = 1102,
  idJumpToEnd = 1103,
  idAddEffect = 1107,
  idChangeSource = 1115,
  idCameraTarget = 1120,
  idClipAbove = 1121,
  idTrackName = 4000,  // + row
  idStartBox = 4100,
  idEndBox = 4200,
  idEnable = 4400,  // + slot
  idFold = 4500,
  idHandles = 4600,
  idPushButton = 8000,  // + check row
  idDropDown = 8100,
  idCustom = 22000,  // + 256 * slot
  customControls = 256,
  idCustomEnd = idCustom + customControls * maxSlots,
};

enum TimerId { pickTimer = 1 };  // looks for the click that gives a colour

inline constexpr int windowWidth = 496;
inline constexpr Rect sectionStrip{141, 4, 204, 20};

/// A track's start or end value and its controls.
struct TrackRowState {
  int32_t value, minimum, maximum;  // stored units
  int32_t scale;                    // units a shown unit; 0 and 1 integers
  int32_t fallback;                 // what an empty box stands for
  Window *bar, *box, *spin;
  int y;           // where the row is shown, 0 when it is not
  int multiplier;  // units a step of the track bar
};

struct TrackLine {
  TrackRowState start, end;
  int32_t mode, param;
  Window* name;
};

struct CheckLine {
  int32_t value;
  int32_t kind;  // the default of the effect's check: a CheckDefault, or that of a check box
  Window *box, *label, *button, *list, *toggle;
  const char* items;  // what `list` was filled from
};

struct SlotLine {
  Window *enable, *separator, *fold, *handles;
  int32_t effect;  // index, -1 = empty
  uint8_t flags;   // SlotFlag
  int y;           // top of the block
};

/// What decides the layout: the chain, its effects and what is folded.
struct LayoutKey {
  int head = -1;
  int32_t effects[maxSlots];
  bool folded[maxSlots];
  bool operator==(const LayoutKey&) const = default;
};

struct ValueDrag {
  Window* box;  // null while none is under way
  int x;        // where the value was last taken
  bool moved;
};

/// A value box since it got the focus.
struct BoxEntry {
  Window* box;
  int32_t value;  // it had then
  int steps;      // of undo there were
};

struct PendingPick {
  int object = -1, row;
  bool wantsRgb;
};

/// Where the press of a key went; its release goes there too.
enum KeyTarget : uint8_t { keyElsewhere, keyHere, keyToHost };

inline constexpr int noCursor = -1;
inline constexpr int barPage = 10;  // of track bars

/// All that lasts between two messages, from the window's making to its end.
struct State {
  Window* window;
  Window *camera, *clip, *startLabel, *jumpStart, *jumpEnd, *endLabel, *source, *add;
  TrackLine tracks[maxTracks];
  CheckLine checks[maxChecks];
  SlotLine slots[maxSlots];
  int trackRows, checkRows, usedSlots;  // of the object shown
  int height;                           // of its layout
  int updating;                         // above 0 while the window writes into its own controls
  int lastObject = -1;                  // of the last 1003; -1: the next one is a new undo step
  intptr_t lastParameter;
  bool saving;

  LayoutKey layout;  // as shown
  int clickedSlot;   // by which its menu was opened
  ValueDrag drag;
  BoxEntry entry;
  PendingPick pick;
  int cursorDrawn = noCursor;  // x of the line in the section strip
  bool stripDragged;
  KeyTarget pressed[256];
};
extern State state;

/// While it lives, notifications of the window's own writing are ignored.
struct Updating {
  Updating() { state.updating++; }
  ~Updating() { state.updating--; }
};

/// The slot of a row and the row's place within its effect; slot -1 for a row that is not in use.
struct RowOwner {
  int slot, index;
};
RowOwner trackOwner(int row);
RowOwner checkOwner(int row);
/// The effect of a used slot of the current object.
EffectDefinition* effectOf(int slot);
/// Whether an object is shown.
bool hasObject();

// controls.cpp
void createControls(Window*);
void place(Window*, Rect);
void show(Window*, bool shown);
/// The controls that the row's kind uses are shown at `at`, the others hidden; all of them without a name.
void showCheckRow(CheckLine&, const char* name, Point at);
void showTrackRow(TrackLine&, int y);                  // 0 hides it
void showSlotRow(SlotLine&, int y, const char* name);  // without a name hidden

// edit.cpp
/// The boxes, bars and spins show the row's values.
void showTrackValues(TrackLine&);
/// A notification of a value box; false for other controls.
bool boxEvent(Window*, int event);
void scrolled(Window* bar, platform::ScrollAction);
intptr_t valueBoxHook(Window*, uint32_t message, intptr_t first, intptr_t second, void*);
bool dragKey(int key);  // Left and Right during a drag of a value box
Window* nextBox(Window*, bool backward);
bool isValueBox(Window*);
void stepBox(Window*, int direction);
/// Back to the value it had when it got the focus.
void restoreBox(Window*);

// movement.cpp
void openMovementMenu(int row);
void editMovementParameter(int row);

// checks.cpp
void checkClicked(Window* control);
void slotClicked(int id);
void filesDropped(const platform::DroppedFiles&);
/// What the effects show in their controls, through show_controls.
void fillEffectControls();

// header.cpp
void showHeader();
void drawStrip();
/// The strip with its cursor line, at its place on the canvas.
void paintStrip(platform::Canvas*);
/// In the user's time unit.
std::string frameLabel(int frame);
/// Nearest to `frame` within the chain; the section there becomes current.
void setCursorInChain(int64_t frame);
/// A press in the strip moves the cursor, and so does the mouse until the button is up.
void pressStrip(Point);
void dragStrip(Point, bool down);

// menu.cpp
void openContextMenu(Point client);
void openSourceMenu();
/// What a menu or a control other than the rows' own asks for; whether the id is one of those.
bool runSettingsItem(int id);

// layout.cpp
void layoutObject();
void clearLayout();  // no object is shown
void readValues();
/// The slot under a client y, -1 above the first.
int slotAt(int y);

// color.cpp: the services chooseColour and pickColour
int chooseEffectColor(ObjectRef, void* colour, uint32_t flags);
int pickEffectColor(ObjectRef, int check, uint32_t flags);

/// A command to the timeline window.
intptr_t sendCommand(int id, intptr_t parameter = 0);
/// The host's command message, which acts on the current object.
intptr_t sendHostCommand(int id);

}  // namespace zenlay::settings
