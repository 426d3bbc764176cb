#include "cinora/desktop/export_preset.h"

#include <algorithm>
#include <iterator>

#include "cinora/support/failure.h"
#include "platform/paths.h"

namespace cinora::desktop {
namespace {

constexpr ExportPreset presets[] = {
    {"MP4 for the web (H.264)", "Plays everywhere; a good balance of size and quality.", ".mp4", "h264", "", 23, false,
     false},
    {"MP4, high quality (H.264)", "For showing and for further encoding by video sites; larger files.", ".mp4", "h264",
     "slow", 16, false, false},
    {"WebM (VP9)", "Small files in an open format, slower to make.", ".webm", "vp9", "", -1, false, false},
    {"ProRes 4444 with transparency", "For other editing programs; keeps the film's transparent parts.", ".mov",
     "prores", "", -1, true, false},
    {"Lossless (FFV1)", "Every pixel as it is, for archives; very large files.", ".mkv", "ffv1", "", -1, false, false},
    {"PNG pictures", "One lossless picture a frame, with transparency.", ".png", "", "", -1, true, true},
    {"Sound alone (FLAC)", "The sound without the pictures, lossless.", ".flac", "", "", -1, false, false},
    {"Sound alone (WAV)", "The sound without the pictures, uncompressed.", ".wav", "", "", -1, false, false},
};
constexpr char numberPlace[] = "_%05d";

}  // namespace

std::span<const ExportPreset> exportPresets() { return presets; }

bool canExport(const ExportPreset& preset) {
  try {
    checkOutput(outputOf(preset, exportPath(preset, "/film")), 2);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

OutputRequest outputOf(const ExportPreset& preset, const std::string& path) {
  OutputRequest request{.path = path, .codec = preset.codec, .preset = preset.preset, .alpha = preset.alpha};
  if (preset.quality >= 0) request.quality = preset.quality;
  return request;
}

std::string exportPath(const ExportPreset& preset, const std::string& filmPath) {
  std::string stem(platform::withoutExtension(filmPath));
  size_t place = stem.rfind(numberPlace);
  if (place != stem.npos && place + sizeof numberPlace - 1 == stem.size()) stem.resize(place);
  return stem + (preset.sequence ? numberPlace : "") + preset.extension;
}

std::string completedPath(const ExportPreset& preset, const std::string& typed) {
  auto endsAs = [&](const ExportPreset& p) { return platform::equalNoCase(platform::extensionOf(typed), p.extension); };
  if (endsAs(preset)) return preset.sequence && !numberedName(typed, 1) ? exportPath(preset, typed) : typed;
  const bool another = std::any_of(std::begin(presets), std::end(presets), endsAs);
  return exportPath(preset, another ? typed : typed + preset.extension);
}

}  // namespace cinora::desktop
