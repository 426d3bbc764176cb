// Icons by name: drawings on a grid of 16 pixels, shown in one colour.
#pragma once

namespace platform {

inline constexpr const char *iconJumpStart = "jump_start", *iconJumpEnd = "jump_end", *iconAdd = "add",
                            *iconChangeSource = "change_source", *iconFoldOpen = "fold_open",
                            *iconFoldClosed = "fold_closed", *iconHandlesSet = "handles_set",
                            *iconHandlesClear = "handles_clear", *iconCameraOn = "camera_on",
                            *iconCameraOff = "camera_off", *iconClipOn = "clip_on", *iconClipOff = "clip_off",
                            *iconPlay = "play", *iconPause = "pause", *iconStop = "stop", *iconNextFrame = "next_frame",
                            *iconPreviousFrame = "previous_frame", *iconZoomIn = "zoom_in", *iconZoomOut = "zoom_out",
                            *iconFit = "fit", *iconScene = "scene", *iconAlpha = "alpha", *iconLock = "lock",
                            *iconEye = "eye", *iconUndo = "undo", *iconNew = "new", *iconOpen = "open",
                            *iconSave = "save", *iconExport = "export", *iconImport = "import",
                            *iconSettings = "settings", *iconGrid = "grid", *iconSnap = "snap",
                            *iconSpeaker = "speaker", *iconPick = "pick";

}  // namespace platform
