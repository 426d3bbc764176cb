// What the module knows about its surroundings from start-up to shut-down. Filled by the entry, read by every room.
#pragma once

#include <cstdint>
#include <string>

#include "zenlay/host/host_interface.h"

namespace zenlay {

inline constexpr int workAlignment = 8;
inline constexpr int64_t minWorkBuffer = 1048576;
inline constexpr int defaultShadowMax = 2048;

struct Environment {
  int32_t hostBuild;
  WindowHandle timelineWindow;
  WindowHandle hostMainWindow;         // owner of timelineWindow
  HostFilterRecord* mainFilter;
  const HostFunctionTable* hostFunctions;
  EditHandle edit;                     // the current edit, kept from the last call
  HostFileInfo clip;                   // the host's clip as last read; zeros when none is open

  std::string modulePath;
  std::string pluginDirectory;         // ends in a separator
  std::string backupDirectory;

  // Host limits.
  int32_t maxWidth, maxHeight, maxFrames;
  int32_t bufferWidth, bufferHeight;   // row length and rows of the host's frame images
  FontHandle font;

  // Working size.
  int32_t workW, workH;                // largest image, pixels
  int32_t workStride, workRows;        // workW + 8, workH + 8
  int32_t workLineBytes;               // of an object image: workStride * 8
  int64_t workBufferBytes;
  int32_t shadowMax, shadowMaxAligned;
  void* workBuffer;                    // the frame work buffer, workBufferBytes

  bool projectOpen;
  bool saving;                         // between save-start and save-end
  bool playing;
  int32_t saveFirst, saveLast;         // range of the save
  int32_t outputWidth, outputHeight;   // size of the last frame rendered
  int32_t missingFiles;                // counted since the last reset
  std::string projectFolder;           // folder of the host's project file, empty when unknown; ends in a separator
};

extern Environment environment;

/// Derives the working size and buffer sizes from `maxW`, `maxH` (settings, 0 = host's) and the host's limits. False,
/// with nothing changed, when a row or column would not fit 32-bit numbers.
bool deriveWorkSize(Environment&, int maxW, int maxH);

/// Style bits of message boxes.
inline constexpr uint32_t boxError = 0x42010;    // error icon, task-modal, topmost
inline constexpr uint32_t boxWarning = 0x42030;  // warning icon, task-modal, topmost

/// Message box titled "Zenlay".
void showMessage(const char* text, uint32_t style);
/// Whether the path fits a field of so many bytes, its end included; the user is told of one that does not.
bool pathFits(const char* path, size_t bytes);

}  // namespace zenlay
