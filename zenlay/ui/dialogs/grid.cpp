// The dialog "Grid Setting".
#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/text.h"
#include "zenlay/host/preferences.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/timeline/beat_grid.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using namespace platform;

namespace {

enum : int {
  tempoEdit = 171,
  baseEdit,
  widthEdit = 180,
  heightEdit,
  cameraWidthEdit,
  cameraCountEdit,
  beatsEdit,
};

constexpr DialogItem items[] = {
    {controlGroupBox, 0, {7, 7, 176, 69}, "Beat grid"},
    {controlLabel, 0, {15, 24, 90, 10}, "Tempo (BPM)"},
    {controlEdit, tempoEdit, {109, 22, 66, 14}},
    {controlLabel, 0, {15, 41, 90, 10}, "Beats per bar"},
    {controlEdit, beatsEdit, {109, 39, 66, 14}, "", controlNumber},
    {controlLabel, 0, {15, 58, 90, 10}, "Reference frame"},
    {controlEdit, baseEdit, {109, 56, 66, 14}, "", controlNumber},

    {controlGroupBox, 0, {7, 82, 176, 52}, "XY grid"},
    {controlLabel, 0, {15, 99, 90, 10}, "Width"},
    {controlEdit, widthEdit, {109, 97, 66, 14}, "", controlNumber},
    {controlLabel, 0, {15, 116, 90, 10}, "Height"},
    {controlEdit, heightEdit, {109, 114, 66, 14}, "", controlNumber},

    {controlGroupBox, 0, {7, 140, 176, 52}, "Camera-control grid"},
    {controlLabel, 0, {15, 157, 90, 10}, "Width"},
    {controlEdit, cameraWidthEdit, {109, 155, 66, 14}, "", controlNumber},
    {controlLabel, 0, {15, 174, 90, 10}, "Quantity"},
    {controlEdit, cameraCountEdit, {109, 172, 66, 14}, "", controlNumber},

    {controlButton, dialogOk, {79, 200, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {133, 200, 50, 14}, "Cancel"},
};
constexpr DialogTable table{"Grid Setting", {190, 221}, items};

std::string tempoText(int tempo) {
  std::string text = std::to_string(tempo / tempoUnit);
  int rest = tempo % tempoUnit;
  if (rest > 0) text += '.';
  for (int unit = tempoUnit / 10; rest > 0; rest %= unit, unit /= 10) text += static_cast<char>('0' + rest / unit);
  return text;
}

/// Digits behind the fourth decimal are ignored; what does not fit saturates.
int parseTempo(const char* text) {
  while (*text == ' ') text++;
  int64_t tempo = takeDigits(text, INT32_MAX) * tempoUnit;
  if (*text == '.')
    for (int unit = tempoUnit / 10; isDigit(*++text) && unit > 0; unit /= 10) tempo += (*text - '0') * unit;
  return static_cast<int>(std::min<int64_t>(tempo, INT32_MAX));
}

void fill(Window* dialog) {
  const GridSettings& grid = preferences.grid;
  setWindowText(controlOf(dialog, tempoEdit), tempoText(grid.grid_tempo).c_str());
  showNumberOrNothing(dialog, beatsEdit, grid.grid_time);
  showNumber(dialog, baseEdit, grid.grid_base);
  showNumber(dialog, widthEdit, grid.grid2d_w);
  if (grid.grid2d_h != grid.grid2d_w) showNumber(dialog, heightEdit, grid.grid2d_h);
  showNumber(dialog, cameraWidthEdit, grid.grid3d_size);
  showNumber(dialog, cameraCountEdit, grid.grid3d_num);
}

void take(Window* dialog) {
  GridSettings& grid = preferences.grid;
  grid.grid_tempo = parseTempo(windowText(controlOf(dialog, tempoEdit)).c_str());
  grid.grid_time = std::max(numberIn(dialog, beatsEdit), 0);
  grid.grid_base = std::max(numberIn(dialog, baseEdit), 1);
  grid.grid2d_w = numberIn(dialog, widthEdit);
  grid.grid2d_h = textIn(dialog, heightEdit).empty() ? grid.grid2d_w : numberIn(dialog, heightEdit);
  grid.grid3d_size = numberIn(dialog, cameraWidthEdit);
  grid.grid3d_num = numberIn(dialog, cameraCountEdit);
  redrawTimeline();
}

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void*) {
  if (message == messageDialogOpened) fill(dialog);
  if (isPress(message, first, dialogOk)) take(dialog);
  return 0;
}

}  // namespace

bool editGridSettings() { return runDialog(table, dialogOwner(), {}, procedure, nullptr) == dialogOk; }

}  // namespace zenlay
