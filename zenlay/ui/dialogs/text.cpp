// The dialogs that ask for one or two texts: layer name, parameter, alias name.
#include "zenlay/files/alias_list.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"

namespace zenlay {

using namespace platform;

namespace {

constexpr int nameEdit = 171, folderEdit = 172;

constexpr DialogItem layerNameItems[] = {
    {controlEdit, nameEdit, {7, 7, 166, 14}},
    {controlButton, dialogOk, {69, 28, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {123, 28, 50, 14}, "Cancel"},
};
constexpr DialogTable layerNameTable{"Layer Name", {180, 49}, layerNameItems};

constexpr DialogItem parameterItems[] = {
    {controlEdit, nameEdit, {7, 7, 248, 14}},
    {controlButton, dialogOk, {151, 28, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {205, 28, 50, 14}, "Cancel"},
};
constexpr DialogItem smallParameterItems[] = {{controlEdit, nameEdit, {7, 7, 64, 14}}};
constexpr char parameterTitle[] = "Parameter Settings";

constexpr DialogItem aliasItems[] = {
    {controlLabel, 0, {7, 9, 48, 10}, "Alias name"},
    {controlEdit, nameEdit, {57, 7, 136, 14}},
    {controlLabel, 0, {7, 29, 48, 10}, "Save folder"},
    {controlEdit, folderEdit, {57, 27, 136, 14}},
    {controlButton, dialogOk, {89, 48, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {143, 48, 50, 14}, "Cancel"},
};

intptr_t oneText(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  std::string& text = *static_cast<std::string*>(user);
  if (message == messageDialogOpened) showText(dialog, nameEdit, text);
  if (isPress(message, first, dialogOk)) text = textIn(dialog, nameEdit);
  return 0;
}

struct AliasNames {
  std::string name, folder;
};

intptr_t aliasNames(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  AliasNames& names = *static_cast<AliasNames*>(user);
  if (message == messageDialogOpened) {
    showText(dialog, nameEdit, names.name);
    showText(dialog, folderEdit, names.folder);
  }
  if (!isPress(message, first, dialogOk)) return 0;
  AliasNames typed{textIn(dialog, nameEdit), textIn(dialog, folderEdit)};
  if (newAliasPath(typed.name.c_str(), typed.folder.c_str()).empty()) return 1;
  names = typed;
  return 0;
}

bool askOneText(const DialogTable& table, Point offset, std::string& text) {
  std::string typed = text;
  if (runDialog(table, dialogOwner(), {DialogPlace::atCursor, offset}, oneText, &typed) != dialogOk) return false;
  text = typed;
  return true;
}

}  // namespace

bool askLayerName(std::string& name) { return askOneText(layerNameTable, {40, -25}, name); }

bool askText(const char* title, std::string& text, TextBoxSize size) {
  const char* shown = title && *title ? title : parameterTitle;
  DialogTable table{shown, {262, 49}, parameterItems};
  if (size == textBoxSmall) table = {shown, {78, 28}, smallParameterItems};
  return askOneText(table, {0, -10}, text);
}

bool askAliasName(const char* title, std::string& name, std::string& folder) {
  DialogTable table{title && *title ? title : "New Alias", {200, 69}, aliasItems};
  AliasNames names{name, folder};
  if (runDialog(table, dialogOwner(), {DialogPlace::atCursor, {-20, -40}}, aliasNames, &names) != dialogOk)
    return false;
  name = names.name;
  folder = names.folder;
  return true;
}

}  // namespace zenlay
