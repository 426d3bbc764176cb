// The entries that the host offers as menu items and keys of its own.
#include "zenlay/host/environment.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/menus/menus.h"

namespace zenlay {
namespace {

struct Shortcut {
  const char* name;
  int command;
  int key = 0;  // 0: none until the user gives it one
  int modifiers = 0;
};
constexpr Shortcut shortcuts[] = {
    {"Creating a New Project", commandNewProject, 'N', keyCtrl},
    {"Split the selected object", commandSplitAtCursor, 'S'},
    {"Cuts the selected object", commandCut},
    {"Copy the selected object", commandDuplicate, 'D', keyCtrl},
    {"Add midpoint to the selected object", commandAddMidpointAtCursor, 'P'},
    {"Justify midpoints evenly by time", commandSpaceMidpointsByTime},
    {"Justify midpoints evenly by distance", commandSpaceMidpointsByDistance},
    {"Add filter effects to selected object", commandEffectMenu, 'E'},
    {"Change the duration of the selected object", commandChangeLength},
    {"Show / Hide layer where object is selected", commandToggleLayer},
    {"Move to the object of the current frame", commandObjectAtCursor, platform::keyTab},
    {"Move to the next object", commandNextObject, platform::keyPeriod},
    {"Move to the previous object", commandPreviousObject, platform::keyComma},
    {"Show / Hide grid", commandToggleActiveGrid, 'G'},
    {"Grid Setting", commandGridSettings},
    {"Display area outside of the frame", commandToggleOutOfArea, 'V'},
    {"Display camera viewpoint GUI", commandToggleCameraGui},
    {"ON / OFF of the image processing thinning", commandToggleFastPreview, 'Q'},
    {"Expand Timeline", commandZoomIn, platform::keyQuote},
    {"Shrink Timeline", commandZoomOut, platform::keyBackslash},
    {"Discard cache", commandDiscardCaches, platform::keyF5},
    {"Preview playback from the current frame", commandPlay, platform::keySpace},
    {"Insert a blank frame after current frame", commandInsertEmptyFrames},
    {"Make last object position as last frame", commandLastObjectIsLastFrame},
    {"Make current position the last frame", commandCursorIsLastFrame},
    {"Copy object (main window)", commandHostCopy},
    {"Paste the object (main window)", commandHostPaste},
    {"Delete object (main window)", commandHostDelete},
};

}  // namespace

void registerShortcuts() {
  for (const Shortcut& s : shortcuts)
    environment.hostFunctions->addMenuItem(environment.mainFilter, s.name, environment.timelineWindow, s.command, s.key,
                                           s.modifiers);
}

}  // namespace zenlay
