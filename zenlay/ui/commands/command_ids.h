// The numbers of the plug-in's commands. Menus, keys, shortcut entries and controls send them to the timeline window;
// runCommand carries them out. "Target": the selected objects, else the current one.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

enum CommandId : int {
  commandDelete = 1001,         // the target
  commandSetCursor = 1002,      // parameter: frame
  commandApplySettings = 1003,  // parameter: index | SettingsChange
  commandReloadSettings = 1005,
  commandCopy = 1008,   // the target
  commandPaste = 1009,  // at the click
  commandUndo = commandUndoStep,
  commandPushButton = 1011,     // parameter: check row
  commandSelectSection = 1012,  // parameter: object
  commandToggleBeatGrid = 1013,
  commandPreferences = 1014,
  commandAddMidpoint = 1015,     // to the target, at the click
  commandRemoveMidpoint = 1016,  // the boundary at the click
  commandJumpToStart = 1017,     // parameter: frame
  commandJumpToEnd = 1018,
  commandAddEffect = 1019,     // parameter: registry index
  commandRemoveEffect = 1020,  // parameter: slot
  commandToggleOutOfArea = 1021,
  commandDropDownChanged = 1022,  // parameter: check row
  commandSetFile = 1024,          // slot in the high half; parameter: path
  commandToggleLayer = 1025,
  commandLockLayer = 1026,
  commandCheckChanged = 1027,  // parameter: check row
  commandColorPicked = 1028,   // parameter: the colour, or -1
  commandToggleTrackSelected = 1029,
  commandLastFrameAtCursor = 1031,
  commandInsertLayer = 1032,
  commandDeleteLayer = 1033,
  commandToggleSnap = 1034,
  commandAddAlias = 1036,  // parameter: alias
  commandImport = commandOpenObjectFile,
  commandExport = commandSaveObjectFile,
  commandExportMedia = 1049,
  commandObjectAtCursor = 1050,
  commandSplit = 1051,  // the target, at the click
  commandRestoreDefaults = 1052,
  commandToggleCameraGui = 1053,
  commandAddMidpointAtCursor = 1054,  // to the current object
  commandChangeLength = 1055,
  commandRenameLayer = 1056,
  commandGroup = 1057,
  commandUngroup = 1058,
  commandNewFromObjectFile = 1059,  // parameter: path
  commandPlay = 1060,
  commandToggleFastPreview = 1061,
  commandLinkCoordinates = 1062,
  commandTrackChanged = 1063,
  commandClipLayer = 1065,
  commandSplitAtCursor = 1066,
  commandRestoreBackup = commandOpenBackup,
  commandRestoreBackupPath = 1068,  // parameter: path
  commandClipObject = 1069,
  commandCreateAlias = 1070,
  commandDiscardCaches = 1072,
  commandMoveEffectUp = 1073,  // parameter: slot
  commandMoveEffectDown = 1074,
  commandShowOtherLayers = 1075,
  commandNextObject = 1076,
  commandPreviousObject = 1077,
  commandZoomIn = 1078,
  commandZoomOut = 1079,
  commandEffectMenu = 1080,
  commandCameraTarget = 1081,
  commandToggleGrid2d = 1082,
  commandToggleGrid3d = 1083,
  commandToggleActiveGrid = 1084,
  commandRefreshHeader = 1085,
  commandSpaceMidpointsByTime = 1086,
  commandSpaceMidpointsByDistance = 1087,  // registered; no action
  commandSelectAll = 1088,
  commandSelectAfterCursor = 1089,
  commandSelectBeforeCursor = 1090,
  commandGridSettings = 1091,
  commandCursorIsLastFrame = 1092,
  commandToggleObjectRange = 1093,
  commandCut = 1094,
  commandSceneSettings = 1096,
  commandLastObjectIsLastFrame = 1097,
  commandInsertEmptyFrames = 1098,
  commandDuplicate = 1099,
  // The settings window's own ids, translated before they reach the timeline window.
  settingsJumpToStart = 1102,
  settingsRestoreDefaults = 1105,
  settingsAddEffect = 1107,
  settingsSaveDefaults = 1108,
  settingsCreateAlias = 1109,
  settingsEffectName = 1110,
  settingsChangeLength = 1111,
  settingsAddMidpoint = 1112,
  settingsUndo = 1113,
  settingsChangeSource = 1115,
  settingsMoveEffectUp = 1116,
  settingsMoveEffectDown = 1117,
  settingsCameraTarget = 1120,
  settingsClipAbove = 1121,
  settingsMovement = 1122,
  settingsSpaceMidpoints = 1123,
  settingsRemoveEffect = 4300,
};

}  // namespace zenlay
