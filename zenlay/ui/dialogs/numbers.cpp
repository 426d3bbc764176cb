// The dialog that asks for the numbers of an effect.
#include <algorithm>
#include <vector>

#include "zenlay/effects/effect_services.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"

namespace zenlay {

using namespace platform;

namespace {

constexpr int firstLabel = 131, firstEdit = 171, maxNumbers = 16;
constexpr int rowHeight = 20;  // dialog units

std::vector<DialogItem> itemsFor(std::span<const NumberItem> numbers) {
  std::vector<DialogItem> items;
  for (int i = 0; i < static_cast<int>(numbers.size()); i++) {
    items.push_back({controlLabel, firstLabel + i, {7, 9 + i * rowHeight, 92, 10}, numbers[i].label});
    items.push_back({controlEdit, firstEdit + i, {101, 7 + i * rowHeight, 62, 14}, "", controlNumber});
  }
  const int bottom = 8 + static_cast<int>(numbers.size()) * rowHeight;
  items.push_back({controlButton, dialogOk, {59, bottom, 50, 14}, "OK", controlDefault});
  items.push_back({controlButton, dialogCancel, {113, bottom, 50, 14}, "Cancel"});
  return items;
}

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  const std::span<NumberItem> numbers = *static_cast<std::span<NumberItem>*>(user);
  const int count = static_cast<int>(numbers.size());
  if (message == messageDialogOpened)
    for (int i = 0; i < count; i++) showNumber(dialog, firstEdit + i, numbers[i].value);
  if (isPress(message, first, dialogOk))
    for (int i = 0; i < count; i++)
      numbers[i].value = std::clamp(numberIn(dialog, firstEdit + i), numbers[i].min, numbers[i].max);
  return 0;
}

}  // namespace

bool askNumbers(std::span<NumberItem> numbers) {
  numbers = numbers.first(std::min<size_t>(numbers.size(), maxNumbers));
  const std::vector<DialogItem> items = itemsFor(numbers);
  const DialogTable table{"Parameter Settings", {170, 29 + static_cast<int>(numbers.size()) * rowHeight}, items};
  return runDialog(table, dialogOwner(), {DialogPlace::atCursor, {0, -10}}, procedure, &numbers) == dialogOk;
}

}  // namespace zenlay
