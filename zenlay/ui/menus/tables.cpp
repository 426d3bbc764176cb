#include "zenlay/ui/menus/tables.h"

#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace {

using platform::menuBegin;
using platform::menuEnd;
using platform::MenuRow;
using platform::menuSeparator;

constexpr MenuRow rowMenu[] = {
    menuBegin(textNewObject),
    menuBegin(textNewFilterEffect),
    menuEnd,
    menuBegin(textCameraControl),
    menuEnd,
    menuEnd,
    menuBegin(textNewFilterObject),
    menuEnd,
    menuSeparator,
    {"Paste", commandPaste},
    {"Insert an empty frame", commandInsertEmptyFrames},
    menuSeparator,
    {"Undo", commandUndo},
    menuSeparator,
    menuBegin("Select object"),
    {"Select all objects", commandSelectAll},
    {"Select object that begin after cursor", commandSelectAfterCursor},
    {"Select object that ended before cursor", commandSelectBeforeCursor},
    menuEnd,
    menuSeparator,
    {"Display grid (BPM)", commandToggleBeatGrid},
    {"Display grid (XY axis)", commandToggleGrid2d},
    {"Display grid (camera control)", commandToggleGrid3d},
    {"Grid Setting", commandGridSettings},
    menuSeparator,
    {"Display area outside frame region", commandToggleOutOfArea},
    {"Display camera viewpoint GUI", commandToggleCameraGui},
    {"Display the target layer range", commandToggleObjectRange},
    {"Track selected object", commandToggleTrackSelected},
    {"Snap the object", commandToggleSnap},
    {"Image processing with frame drop", commandToggleFastPreview},
    menuSeparator,
    menuBegin("Range setting"),
    {"Make last object position as last frame", commandLastObjectIsLastFrame},
    {"Make current position the last frame", commandCursorIsLastFrame},
    menuEnd,
    menuBegin("File"),
    {"AVI / BMP Export of media object (RGBA)", commandExportMedia},
    {"Import object file", commandImport},
    {"Export object file", commandExport},
    menuEnd,
    menuSeparator,
    {"Preferences", commandPreferences},
};

constexpr MenuRow noProjectMenu[] = {
    {"Create a New Project", commandNewProject},
    {"New from object files", commandImport},
    {"New from backup file", commandRestoreBackup},
    menuSeparator,
    {"Display grid (BPM)", commandToggleBeatGrid},
    {"Display grid (XY axis)", commandToggleGrid2d},
    {"Display grid (camera control)", commandToggleGrid3d},
    {"Grid Setting", commandGridSettings},
    menuSeparator,
    {"Display area outside of the frame region", commandToggleOutOfArea},
    {"Display camera viewpoint GUI", commandToggleCameraGui},
    {"Display target layer range", commandToggleObjectRange},
    {"Track selected object", commandToggleTrackSelected},
    {"Snap the object", commandToggleSnap},
    {"Image processing with frame drop", commandToggleFastPreview},
    menuSeparator,
    {"Preferences", commandPreferences},
};

constexpr MenuRow objectMenu[] = {
    {"Copy", commandCopy},
    {"Paste", commandPaste},
    {"Cut", commandCut},
    {"Split", commandSplit},
    {"Delete", commandDelete},
    menuSeparator,
    {"Add midpoint", commandAddMidpoint},
    {"Remove midpoint", commandRemoveMidpoint},
    menuSeparator,
    {"Grouping", commandGroup},
    {"Ungroup", commandUngroup},
    menuSeparator,
    {"Clip with the object above", commandClipObject},
    {"Target of camera control", commandCameraTarget},
    menuSeparator,
    {"Change of length", commandChangeLength},
    {"Evenly space midpoint by time", commandSpaceMidpointsByTime},
    menuSeparator,
    {"Create an alias", commandCreateAlias},
};

constexpr MenuRow layerMenu[] = {
    {"Lock the layer", commandLockLayer},
    {"Display layer", commandToggleLayer},
    {"Change the layer name", commandRenameLayer},
    {"Display / Hide all the other layers", commandShowOtherLayers},
    menuSeparator,
    {"Insert Layer", commandInsertLayer},
    {"Delete the layer", commandDeleteLayer},
    menuSeparator,
    {"Coordinate's link", commandLinkCoordinates},
    {"Clip with the object above", commandClipLayer},
};

constexpr MenuRow sceneMenu[] = {
    {"Scene settings", commandSceneSettings},
};

constexpr MenuRow settingsHeaderMenu[] = {
    {"Add midpoint at the current position", settingsAddMidpoint},
    {"Change the length of the selected interval", settingsChangeLength},
    {"Evenly space midpoint by time", settingsSpaceMidpoints},
};

/// CONTEXT2, 3, 4, 5 and 8: they differ in what fills the first submenu.
constexpr MenuRow effectMenu[] = {
    menuBegin(textAddEffect, submenuAddEffect),
    menuEnd,
    {"Remove filter effect", settingsRemoveEffect},
    {"Move filter effect up", settingsMoveEffectUp},
    {"Move filter effect down", settingsMoveEffectDown},
    menuSeparator,
    {"Restore default settings", settingsRestoreDefaults},
    menuBegin("Save Settings"),
    {"Make current settings as default", settingsSaveDefaults},
    {"Create an alias with the current settings", settingsCreateAlias},
    menuEnd,
    menuSeparator,
    {"Undo", settingsUndo},
    menuSeparator,
    {"", settingsEffectName},
};

constexpr MenuRow movementMenu[] = {
    {"No movement", 1},
    {"Rectilinear movement", 2},
    {"Acceleration movement", 8},
    {"Curve movement", 3},
    {"Teleportation", 4},
    {"Ignored midpoints", 5},
    {"Specified movement amount", 6},
    {"Random movement", 7},
    {"Repetitive movement", 9},
    menuSeparator,
    {"Acceleration", 65},
    {"Deceleration", 33},
    menuSeparator,
    {"Setting", settingsMovement},
};

constexpr MenuRow colorMenu[] = {
    {"Save current color to preset", 1},
};

/// By ContextMenu. The sources have generated entries alone.
constexpr std::span<const MenuRow> rowsOfMenus[] = {
    rowMenu,             // menuRow
    noProjectMenu,       // menuNoProject
    objectMenu,          // menuObject
    layerMenu,           // menuLayer
    sceneMenu,           // menuScene
    settingsHeaderMenu,  // menuSettingsHeader
    effectMenu,          // menuVideoEffects
    effectMenu,          // menuVideoFilters
    effectMenu,          // menuAudioEffects
    effectMenu,          // menuAudioFilters
    {},                  // menuVideoSource
    {},                  // menuAudioSource
    effectMenu,          // menuCameraEffects
    movementMenu,        // menuMovement
    colorMenu,           // menuColor
};
static_assert(std::size(rowsOfMenus) == contextMenus);

}  // namespace

std::span<const MenuRow> menuRows(ContextMenu menu) { return rowsOfMenus[menu]; }

}  // namespace zenlay
