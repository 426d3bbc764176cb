#include "zenlay/media/extra_controls.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/control.h"
#include "platform/paths.h"
#include "zenlay/host/environment.h"
#include "zenlay/media/figures.h"
#include "zenlay/render/convert.h"

namespace zenlay {

namespace {

constexpr size_t pathBytes = 260, nameBytes = 256;

template <class Field>
Field& fieldAt(EffectDefinition* effect, size_t offset) {
  return *reinterpret_cast<Field*>(static_cast<uint8_t*>(effect->exdata) + offset);
}

char* textAt(EffectDefinition* effect, size_t offset, size_t size) {
  char* text = &fieldAt<char>(effect, offset);
  text[size - 1] = 0;
  return text;
}

struct KeyColorField {
  int16_t color[3];
  uint8_t reserved[2];
  int32_t status;
};

platform::Window* controlOf(EffectDefinition* effect, int kind, int index) {
  return effect->services->getSettingsControl(effect->object_ref, kind, index);
}

/// Stores one value after an undo step.
template <class Store>
int store(EffectDefinition* effect, Store store) {
  effect->services->recordUndo(effect->object_ref);
  store();
  effect->services->objectChanged(effect->object_ref);
  return 1;
}

int chooseColor(EffectDefinition* effect, size_t offset, bool optional) {
  uint8_t* color = &fieldAt<uint8_t>(effect, offset);
  int32_t chosen = color[0] << 16 | color[1] << 8 | color[2];
  if (!effect->services->chooseColour(effect->object_ref, &chosen, 0)) return 0;
  bool none = chosen & chosenNoColour;
  if (none && !optional) return 0;
  return store(effect, [&] {
    if (optional) color[3] = none;
    if (none) return;
    color[0] = static_cast<uint8_t>(chosen >> 16);
    color[1] = static_cast<uint8_t>(chosen >> 8);
    color[2] = static_cast<uint8_t>(chosen);
  });
}

int storeKeyColor(EffectDefinition* effect, size_t offset, FramePixel color) {
  KeyColorField& key = fieldAt<KeyColorField>(effect, offset);
  return store(effect, [&] { key = {{color.y, color.cb, color.cr}, {key.reserved[0], key.reserved[1]}, 1}; });
}

int chooseKeyColor(EffectDefinition* effect, size_t offset) {
  const int16_t* old = fieldAt<KeyColorField>(effect, offset).color;
  int32_t chosen[3] = {old[0], old[1], old[2]};
  if (!effect->services->chooseColour(effect->object_ref, chosen, chooseYcc)) return 0;
  return storeKeyColor(
      effect, offset,
      {static_cast<int16_t>(chosen[0]), static_cast<int16_t>(chosen[1]), static_cast<int16_t>(chosen[2])});
}

int chooseScene(EffectDefinition* effect, size_t offset) {
  int32_t& scene = fieldAt<int32_t>(effect, offset);
  int chosen = effect->services->chooseScene(effect->object_ref, scene, nullptr);
  return chosen < 0 ? 0 : store(effect, [&] { scene = chosen; });
}

int32_t numberAt(EffectDefinition* effect, const ExtraControl& row) {
  if (row.number.bytes == 1) return fieldAt<uint8_t>(effect, row.offset);
  return row.number.bytes == 2 ? fieldAt<int16_t>(effect, row.offset) : fieldAt<int32_t>(effect, row.offset);
}

void setNumber(EffectDefinition* effect, const ExtraControl& row, int32_t value) {
  if (row.number.bytes == 1)
    fieldAt<uint8_t>(effect, row.offset) = static_cast<uint8_t>(value);
  else if (row.number.bytes == 2)
    fieldAt<int16_t>(effect, row.offset) = static_cast<int16_t>(value);
  else
    fieldAt<int32_t>(effect, row.offset) = value;
}

/// All numbers of the button.
int askNumbers(EffectDefinition* effect, const ExtraControl* controls, size_t rows, int check) {
  std::vector<const ExtraControl*> asked;
  std::vector<NumberItem> items;
  for (const ExtraControl* row = controls; row != controls + rows; row++) {
    if (row->check != check || row->kind != extraNumber) continue;
    asked.push_back(row);
    items.push_back({row->number.label, numberAt(effect, *row), row->number.min, row->number.max});
  }
  if (!effect->services->askNumbers(effect->object_ref, items.data(), static_cast<int>(items.size()))) return 0;
  bool changed = false;
  for (size_t i = 0; i < asked.size(); i++) changed |= items[i].value != numberAt(effect, *asked[i]);
  if (!changed) return 0;
  return store(effect, [&] {
    for (size_t i = 0; i < asked.size(); i++) setNumber(effect, *asked[i], items[i].value);
  });
}

/// A picture that cannot be decoded is told and stored all the same.
int storePicture(EffectDefinition* effect, char* field, const char* path) {
  if (!pathFits(path, nameBytes)) return 0;
  int32_t width, height;
  if (!effect->services->loadImage(nullptr, path, &width, &height, nullptr, 0))
    platform::messageBox(nullptr,
                         "Failed to read the image file\nThere is a possibility that the format is not supported",
                         effect->name, boxError);
  return store(effect, [&] { strcpy(field, path); });
}

int storeSound(EffectDefinition* effect, size_t offset, const char* path) {
  MediaReference probe{};
  HostFileInfo info{};
  strcpy(probe.file, path);
  if (!effect->services->openMedia(&probe, openAudio, &info)) return 0;
  return store(effect, [&] { fieldAt<MediaReference>(effect, offset) = probe; });
}

/// "*" and the path, when that fits.
int storeFigureFile(EffectDefinition* effect, const ExtraControl& row, const char* path) {
  char* name = textAt(effect, row.name, nameBytes);
  if (!pathFits(path, nameBytes - 1)) return 0;
  return store(effect, [&] {
    fieldAt<int32_t>(effect, row.offset) = 0;
    name[0] = '*';
    strcpy(name + 1, path);
  });
}

/// The last item asks for a file and keeps an earlier path when none is chosen.
int chooseFigure(EffectDefinition* effect, const ExtraControl& row, intptr_t index) {
  char* name = textAt(effect, row.name, nameBytes);
  if (index >= figureCount()) {
    char path[pathBytes] = "";
    const char* before = name[0] == '*' ? name + 1 : "";
    if (effect->host_functions->askLoadFileName(path, effect->services->imageFileFilter(), before) &&
        storeFigureFile(effect, row, path))
      return 1;
  }
  return store(effect, [&] {
    bool builtIn = index >= 0 && index < builtInFigures, fromFile = index >= figureCount();
    fieldAt<int32_t>(effect, row.offset) = builtIn ? static_cast<int32_t>(index) : 0;
    if (fromFile && name[0] == '*') return;
    snprintf(name, nameBytes, "%s", fromFile ? "*" : builtIn ? "" : figureName(static_cast<int>(index)));
  });
}

int chosenFigure(EffectDefinition* effect, const ExtraControl& row) {
  const char* name = textAt(effect, row.name, nameBytes);
  if (!*name) return fieldAt<int32_t>(effect, row.offset);
  if (*name == '*') return figureCount();
  for (int i = builtInFigures; i < figureCount(); i++)
    if (strcmp(figureName(i), name) == 0) return i;
  return -1;
}

int push(EffectDefinition* effect, const ExtraControl& row) {
  switch (row.kind) {
    case extraColor:
      return chooseColor(effect, row.offset, false);
    case extraOptionalColor:
      return chooseColor(effect, row.offset, true);
    case extraKeyColor:
      return chooseKeyColor(effect, row.offset);
    case extraScene:
      return chooseScene(effect, row.offset);
    default:
      return 0;
  }
}

int choose(EffectDefinition* effect, const ExtraControl& row, intptr_t index) {
  switch (row.kind) {
    case extraList:
      return store(effect, [&] { fieldAt<int32_t>(effect, row.offset) = static_cast<int32_t>(index); });
    case extraShortList:
      return store(effect, [&] { fieldAt<int16_t>(effect, row.offset) = static_cast<int16_t>(index); });
    case extraFigure:
      return chooseFigure(effect, row, index);
    default:
      return 0;
  }
}

int takeFile(EffectDefinition* effect, const ExtraControl& row, uint32_t message, intptr_t wparam, intptr_t lparam) {
  char path[pathBytes];
  bool sound = row.kind == extraSound;
  if (!sound && row.kind != extraPicture && row.kind != extraFigure) return 0;
  int button = row.kind == extraFigure ? -1 : row.check;
  if (!takesFile(effect, message, wparam, lparam, button, sound ? fileSound : filePicture, path)) return 0;
  if (sound) return storeSound(effect, row.offset, path);
  if (row.kind == extraFigure) return storeFigureFile(effect, row, path);
  return storePicture(effect, textAt(effect, row.offset, nameBytes), path);
}

const char* filterOf(EffectDefinition* effect, FileKind kind) {
  if (kind == filePicture) return effect->services->imageFileFilter();
  return effect->host_functions->getMediaFileFilter(kind == fileVideo ? mediaVideo : mediaAudio);
}

void setChoice(EffectDefinition* effect, int check, int choice) {
  if (platform::Window* list = controlOf(effect, checkListControl, check)) platform::setControlValue(list, choice);
}

void showSwatch(EffectDefinition* effect, int check, int color) {
  if (platform::Window* label = controlOf(effect, checkLabelControl, check)) platform::setControlSwatch(label, color);
}

void labelColor(EffectDefinition* effect, const ExtraControl& row) {
  const uint8_t* color = &fieldAt<uint8_t>(effect, row.offset);
  char text[32];
  snprintf(text, sizeof text, "#%02X%02X%02X", color[0], color[1], color[2]);
  const bool none = row.kind == extraOptionalColor && color[3];
  labelCheck(effect, row.check, none ? "Not Specified" : text);
  showSwatch(effect, row.check, none ? -1 : color[0] << 16 | color[1] << 8 | color[2]);
}

void showKeyColor(EffectDefinition* effect, const ExtraControl& row) {
  const KeyColorField& key = fieldAt<KeyColorField>(effect, row.offset);
  char text[48] = "Not Specified";
  if (key.status) snprintf(text, sizeof text, "Y %d  Cb %d  Cr %d", key.color[0], key.color[1], key.color[2]);
  labelCheck(effect, row.check, text);
  const Bgr rgb = toRgb(key.color[0], key.color[1], key.color[2]);
  showSwatch(effect, row.check, key.status ? rgb.r << 16 | rgb.g << 8 | rgb.b : -1);
}

/// The list's choice, the file beside it, and "Effect(figure)" as the effect's title.
void showFigure(EffectDefinition* effect, const ExtraControl& row) {
  const char* name = textAt(effect, row.name, nameBytes);
  const char* file = *name == '*' ? fileNameOf(name + 1) : "";
  char title[2 * nameBytes];
  snprintf(title, sizeof title, "%s(%s)", effect->name,
           *file          ? file
           : *name == ':' ? effect->services->sceneName(atoi(name + 1))
           : *name        ? name
                          : figureName(fieldAt<int32_t>(effect, row.offset)));
  labelCheck(effect, row.check, file);
  setChoice(effect, row.check, chosenFigure(effect, row));
  if (platform::Window* box = controlOf(effect, slotTitle, 0)) platform::setWindowText(box, title);
}

void showControl(EffectDefinition* effect, const ExtraControl& row) {
  switch (row.kind) {
    case extraList:
      return setChoice(effect, row.check, fieldAt<int32_t>(effect, row.offset));
    case extraShortList:
      return setChoice(effect, row.check, fieldAt<int16_t>(effect, row.offset));
    case extraFigure:
      return showFigure(effect, row);
    case extraColor:
    case extraOptionalColor:
      return labelColor(effect, row);
    case extraKeyColor:
      return showKeyColor(effect, row);
    case extraPicture:
      return labelCheck(effect, row.check, fileNameOf(textAt(effect, row.offset, nameBytes)));
    case extraSound:
      return labelCheck(effect, row.check, fileNameOf(textAt(effect, row.offset, pathBytes)));
    case extraScene:
      return labelCheck(effect, row.check, effect->services->sceneName(fieldAt<int32_t>(effect, row.offset)));
    case extraNumber:
      return;
  }
}

}  // namespace

const char* fileNameOf(const char* path) {
  const char* name = path;
  for (; *path; path++)
    if (*path == '/' || *path == '\\') name = path + 1;
  return name;
}

void labelCheck(EffectDefinition* effect, int check, const char* text) {
  if (platform::Window* label = controlOf(effect, checkLabelControl, check)) platform::setWindowText(label, text);
}

bool takesFile(EffectDefinition* effect, uint32_t message, intptr_t wparam, intptr_t lparam, int check, FileKind kind,
               char* path) {
  *path = 0;
  if (isCommand(message, wparam, commandTakeFile)) {
    const char* dropped = reinterpret_cast<const char*>(lparam);
    if (pathFits(dropped, pathBytes)) strcpy(path, dropped);
  } else if (isCommand(message, wparam, commandPushed) && checkOfCommand(wparam) == check) {
    if (!effect->host_functions->askLoadFileName(path, filterOf(effect, kind), "")) return false;
  }
  return *path != 0;
}

int operateControls(EffectDefinition* effect, const ExtraControl* controls, size_t rows, uint32_t message,
                    intptr_t wparam, intptr_t lparam) {
  for (const ExtraControl* row = controls; row != controls + rows; row++) {
    if (takeFile(effect, *row, message, wparam, lparam)) return 1;
    if (message != messageEffectCommand || checkOfCommand(wparam) != row->check) continue;
    switch (wparam & 0xFFFF) {
      case commandPushed:
        return row->kind == extraNumber ? askNumbers(effect, controls, rows, row->check) : push(effect, *row);
      case commandDropDown:
        return choose(effect, *row, lparam);
      case commandTakeColor:
        return row->kind == extraKeyColor ? storeKeyColor(effect, row->offset, unpackedYcc(lparam)) : 0;
    }
  }
  return 0;
}

int showControls(EffectDefinition* effect, const ExtraControl* controls, size_t rows, uint32_t message) {
  if (message == controlsFill)
    for (const ExtraControl* row = controls; row != controls + rows; row++) showControl(effect, *row);
  return 0;
}

}  // namespace zenlay
