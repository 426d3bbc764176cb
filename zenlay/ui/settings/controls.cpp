// The control pool: what is made once, and how a row of it is moved and shown.
#include <algorithm>
#include <vector>

#include "platform/canvas.h"
#include "platform/icons.h"
#include "zenlay/ui/settings/state.h"

namespace zenlay::settings {
namespace {

using namespace platform;

constexpr int trackTop = 32, trackPitch = 25;
constexpr int checkTop = 1629, checkPitch = 21;
constexpr int dropMargin = 28;  // of a list beside its longest item

/// The columns of a track row: x, y from the row's base, size.
constexpr Rect startBar{4, -6, 130, 25}, startSpin{134, -3, 32, 18}, startBox{168, 0, 46, 16};
constexpr Rect nameButton{214, -4, 60, 22};
constexpr Rect endBox{274, 0, 46, 16}, endSpin{320, -3, 32, 18}, endBar{354, -6, 130, 25};

constexpr Rect checkBoxAt{12, 0, 258, 16}, buttonAt{11, 0, 155, 18}, listAt{10, 0, 157, 18}, toggleAt{11, 0, 19, 19};
constexpr Rect checkLabelAt{173, 1, 312, 16};

constexpr int separatorLeft = 38, separatorGap = 4, nameRight = 463, namePadding = 4, nameExtra = 18;
constexpr int headerBase = 7;  // of a block: the line its header stands on
constexpr Rect foldAt{6, -7, 15, 15}, handlesAt{22, -7, 15, 15};

Rect shifted(Rect r, int x, int y) { return {r.x + x, r.y + y, r.width, r.height}; }

Window* make(ControlKind kind, int id, Rect at, uint32_t style = controlHidden, const char* text = "") {
  return createControl(state.window, kind, id, at, text, style);
}

void createSide(TrackRowState& side, int id, int y, Rect bar, Rect box, Rect spin) {
  side.multiplier = 1;
  side.bar = make(controlTrackBar, 0, shifted(bar, 0, y));
  side.spin = make(controlSpinButton, 0, shifted(spin, 0, y));
  side.box = make(controlEdit, id, shifted(box, 0, y), controlHidden | controlCentred | controlNumber | controlFlat);
  setControlHook(side.box, valueBoxHook, nullptr);
}

void createTrackRow(TrackLine& row, int k) {
  int y = trackTop + trackPitch * k;
  createSide(row.start, idStartBox + k, y, startBar, startBox, startSpin);
  row.name = make(controlButton, idTrackName + k, shifted(nameButton, 0, y), controlHidden | controlSunken);
  createSide(row.end, idEndBox + k, y, endBar, endBox, endSpin);
}

void createCheckRow(CheckLine& row, int m) {
  int y = checkTop + checkPitch * m;
  row.box = make(controlCheckBox, idCheckBox, shifted(checkBoxAt, 0, y));
  row.label = make(controlLabel, 0, shifted(checkLabelAt, 0, y));
  row.button = make(controlButton, idPushButton + m, shifted(buttonAt, 0, y));
  row.list = make(controlComboBox, idDropDown + m, shifted(listAt, 0, y));
  row.toggle = make(controlToggle, idCheckBox, shifted(toggleAt, 0, y));
}

void createSlotRow(SlotLine& row, int slot) {
  row.effect = -1;
  row.enable = make(controlCheckBox, idEnable + slot, {});
  row.separator = make(controlSeparator, 0, {});
  row.fold = make(controlIconButton, idFold + slot, shifted(foldAt, 0, 0));
  row.handles = make(controlIconButton, idHandles + slot, shifted(handlesAt, 0, 0));
  setControlTip(row.fold, "Show or fold the settings");
  setControlTip(row.handles, "Handles on the preview");
}

Window* makeIcon(int id, Rect at, const char* icon, const char* tip) {
  Window* button = make(controlIconButton, id, at);
  setControlIcon(button, icon);
  setControlTip(button, tip);
  return button;
}

void createHeader() {
  state.camera = makeIcon(idCameraTarget, {10, 7, 15, 15}, iconCameraOff, "Target of camera control");
  state.clip = makeIcon(idClipAbove, {30, 7, 15, 15}, iconClipOff, "Clip with the object above");
  state.startLabel = make(controlLabel, 0, {44, 7, 64, 18}, controlHidden | controlRightAligned);
  state.jumpStart = makeIcon(idJumpToStart, {115, 7, 18, 18}, iconJumpStart, "Move to the start");
  state.jumpEnd = makeIcon(idJumpToEnd, {353, 7, 18, 18}, iconJumpEnd, "Move to the end");
  state.endLabel = make(controlLabel, 0, {378, 7, 64, 18});
  state.source = makeIcon(idChangeSource, {443, 7, 15, 15}, iconChangeSource, "Change I/O");
  state.add = makeIcon(idAddEffect, {463, 7, 15, 15}, iconAdd, "Add a filter effect");
}

void placeSide(TrackRowState& side, int y, Rect bar, Rect box, Rect spin) {
  side.y = y;
  for (Window* control : {side.bar, side.box, side.spin}) show(control, y != 0);
  if (y == 0) return;
  setControlRange(side.spin, side.minimum, side.maximum, 1);
  place(side.bar, shifted(bar, 0, y));
  place(side.box, shifted(box, 0, y));
  place(side.spin, shifted(spin, 0, y));
}

/// The items of a list of strings ended by an empty one.
void fillList(CheckLine& row, const char* items) {
  if (row.items == items) return;
  row.items = items;
  std::vector<const char*> list;
  int width = 0;
  for (const char* item = items; *item; item += std::char_traits<char>::length(item) + 1) {
    list.push_back(item);
    width = std::max(width, textSize(item).width);
  }
  setControlItems(row.list, list);
  setDropWidth(row.list, std::max(width + dropMargin, listAt.width));
}

}  // namespace

void createControls(Window* window) {
  state.window = window;
  createHeader();
  for (int k = 0; k < maxTracks; k++) createTrackRow(state.tracks[k], k);
  for (int m = 0; m < maxChecks; m++) createCheckRow(state.checks[m], m);
  for (int slot = 0; slot < maxSlots; slot++) createSlotRow(state.slots[slot], slot);
}

void place(Window* window, Rect at) {
  if (!(windowPlace(window) == at)) setWindowPlace(window, at);
}

void show(Window* window, bool shown) {
  if (windowShown(window) != shown) showWindow(window, shown, false);
}

void showTrackRow(TrackLine& row, int y) {
  placeSide(row.start, y, startBar, startBox, startSpin);
  placeSide(row.end, y, endBar, endBox, endSpin);
  show(row.name, y != 0);
  if (y != 0) place(row.name, shifted(nameButton, 0, y));
}

void showCheckRow(CheckLine& row, const char* name, Point at) {
  struct Use {
    Window* control;
    bool used;
    Rect place;
  };
  bool isButton = row.kind == checkButton, isList = row.kind == checkDropDown, isToggle = row.kind == checkToggle;
  const Use uses[] = {
      {row.box, !isButton && !isList && !isToggle, checkBoxAt},
      {row.button, isButton, buttonAt},
      {row.list, isList, listAt},
      {row.toggle, isToggle, toggleAt},
      {row.label, isButton || isList, checkLabelAt},
  };
  for (const Use& use : uses) {
    bool shown = name && use.used;
    if (shown) {
      place(use.control, shifted(use.place, at.x, at.y));
      if (isList && use.control == row.list) fillList(row, name);
      if (use.control != row.label && use.control != row.list) setWindowText(use.control, name);
    }
    show(use.control, shown);
  }
}

void showSlotRow(SlotLine& row, int y, const char* name) {
  row.y = y;
  for (Window* control : {row.enable, row.separator, row.fold, row.handles})
    if (!name) show(control, false);
  if (!name) return;
  int line = y + headerBase, width = textSize(name).width;
  Rect check{nameRight - (width + namePadding), line - 5, width + nameExtra, 14};
  setWindowText(row.enable, name);
  place(row.enable, check);
  place(row.separator, {separatorLeft, line, std::max(check.x - separatorGap - separatorLeft, 0), 2});
  place(row.fold, shifted(foldAt, 0, line));
  place(row.handles, shifted(handlesAt, 0, line));
  for (Window* control : {row.enable, row.separator, row.fold, row.handles}) show(control, true);
}

}  // namespace zenlay::settings
