// The buttons and lists of the settings window whose values lie in an effect's extra data, told by a table of rows in
// the effect's file: the window procedure that stores them and the callback that shows them.
#pragma once

#include <cstddef>
#include <iterator>

#include "zenlay/media/effect_messages.h"

namespace zenlay {

enum ExtraKind : uint8_t {
  extraList,           // int32: chosen index of the check's list
  extraShortList,      // int16
  extraColor,          // red, green, blue
  extraOptionalColor,  // the same and a byte that is 1 without a colour
  extraKeyColor,       // Y, Cb, Cr as int16, two bytes, int32 that is 1 once a colour was chosen
  extraPicture,        // path of a picture file, char[256]
  extraSound,          // MediaReference
  extraScene,          // int32: scene number
  extraFigure,         // int32: Figure; `name` is a figure picture, or "*" and the path of a picture
  extraNumber,         // ExtraNumber: the button of the check asks for all of its numbers
};

struct ExtraNumber {
  const char* label;
  int bytes;  // 1 (unsigned), 2 or 4
  int32_t min, max;
};

struct ExtraControl {
  int check;  // index within the effect
  ExtraKind kind;
  size_t offset;    // in the extra data
  size_t name = 0;  // extraFigure: offset of its char[256]
  ExtraNumber number{};
};

/// Carries out what the message asks of one of the rows, after one undo step; 1 when it was for one of them and
/// something changed.
int operateControls(EffectDefinition*, const ExtraControl*, size_t rows, uint32_t message, intptr_t wparam,
                    intptr_t lparam);
/// Shows the values: the chosen item, the colour, the file's or the scene's name beside the button.
int showControls(EffectDefinition*, const ExtraControl*, size_t rows, uint32_t message);

// What the callbacks of effects with more than that are made of.

/// The check a command is about.
inline int checkOfCommand(intptr_t wparam) { return static_cast<int>(wparam >> 16 & 0xFFFF); }
/// Text beside the control of a check.
void labelCheck(EffectDefinition*, int check, const char* text);
/// The name of a path's file.
const char* fileNameOf(const char* path);
enum FileKind { filePicture, fileVideo, fileSound };
/// Whether the message brings a file: the button `check` with a choice in the host's dialog, or a drop. `path` has room
/// for 260 bytes.
bool takesFile(EffectDefinition*, uint32_t message, intptr_t wparam, intptr_t lparam, int check, FileKind, char* path);

/// The callbacks of an effect whose controls are all told by `rows`.
template <auto& rows>
int operateRows(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  return operateControls(effect, rows, std::size(rows), message, wparam, lparam);
}
template <auto& rows>
int showRows(void*, uint32_t message, intptr_t, intptr_t, EditHandle, EffectDefinition* effect) {
  return showControls(effect, rows, std::size(rows), message);
}

}  // namespace zenlay
