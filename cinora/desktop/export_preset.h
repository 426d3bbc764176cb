// What films are exported as, by the words of users.
#pragma once

#include <span>

#include "cinora/export/frame_writer.h"

namespace cinora::desktop {

struct ExportPreset {
  const char* name;
  const char* about;
  const char* extension;
  const char* codec;  // empty: the extension's
  const char* preset;
  int quality;  // of the encoder; -1: its good default
  bool alpha;
  bool sequence;  // one file a frame
};
std::span<const ExportPreset> exportPresets();
/// Whether this build can write it.
bool canExport(const ExportPreset&);
OutputRequest outputOf(const ExportPreset&, const std::string& path);
/// The path for a film named so, with the preset's ending and, of a sequence, the number's place.
std::string exportPath(const ExportPreset&, const std::string& filmPath);

/// What the user typed, with that ending: in place of another preset's, else behind what was typed.
std::string completedPath(const ExportPreset&, const std::string& typed);

}  // namespace cinora::desktop
