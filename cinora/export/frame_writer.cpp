#include "cinora/export/frame_writer.h"

#include <algorithm>
#include <cctype>

#include "cinora/support/failure.h"
#include "platform/paths.h"

namespace cinora {
namespace {

struct ExtensionRow {
  const char* extension;
  OutputKind kind;
};
constexpr ExtensionRow extensionTable[] = {
    {".mp4", OutputKind::film},      {".m4v", OutputKind::film},     {".mkv", OutputKind::film},
    {".mov", OutputKind::film},      {".webm", OutputKind::film},    {".avi", OutputKind::film},
    {".png", OutputKind::pictures},  {".jpg", OutputKind::pictures}, {".jpeg", OutputKind::pictures},
    {".bmp", OutputKind::pictures},  {".tif", OutputKind::pictures}, {".tiff", OutputKind::pictures},
    {".webp", OutputKind::pictures}, {".raw", OutputKind::raw},      {".wav", OutputKind::sound},
    {".flac", OutputKind::sound},
};

OutputKind kindOf(const std::string& path) {
  std::string_view extension = platform::extensionOf(path);
  for (const ExtensionRow& row : extensionTable)
    if (platform::equalNoCase(extension, row.extension)) return row.kind;
  throw WrongUsage(
      "the output's extension says what to write (.mp4 .mkv .mov .webm .avi .png .jpg .bmp .tif .webp "
      ".raw .wav .flac): " +
      path);
}

}  // namespace

std::optional<std::string> numberedName(const std::string& pattern, int number) {
  std::string name;
  int numbers = 0;
  for (size_t i = 0; i < pattern.size(); i++) {
    if (pattern[i] != '%') {
      name += pattern[i];
      continue;
    }
    if (pattern[++i] == '%') {
      name += '%';
      continue;
    }
    bool zeros = pattern[i] == '0';
    size_t width = 0;
    for (; std::isdigit(static_cast<unsigned char>(pattern[i])); i++)
      width = std::min<size_t>(width * 10 + (pattern[i] - '0'), 99);
    if (pattern[i] != 'd' || width > 20) return {};
    std::string digits = std::to_string(number);
    if (digits.size() < width) digits.insert(0, width - digits.size(), zeros ? '0' : ' ');
    name += digits;
    numbers++;
  }
  return numbers == 1 ? std::optional(name) : std::nullopt;
}

OutputKind checkOutput(const OutputRequest& request, int frameCount) {
  OutputKind kind = kindOf(request.path);
  bool numbered = kind == OutputKind::pictures && numberedName(request.path, 1);
  if (kind == OutputKind::pictures && frameCount > 1 && !numbered)
    throw WrongUsage(std::to_string(frameCount) + " frames don't fit one picture: name a sequence (frame%05d" +
                     std::string(platform::extensionOf(request.path)) + ") or one frame (--frames N)");
  if (kind != OutputKind::film && !request.codec.empty()) throw WrongUsage("--codec: " + request.path + " is no film");
  if (kind != OutputKind::film && !request.preset.empty())
    throw WrongUsage("--preset: " + request.path + " is no film");
  bool hasSound = kind == OutputKind::film || kind == OutputKind::sound;
  if (!hasSound && !request.soundCodec.empty()) throw WrongUsage("--audio-codec: " + request.path + " has no sound");
  if (kind == OutputKind::sound && request.soundCodec == noSound)
    throw WrongUsage("--audio-codec none: " + request.path + " holds nothing but sound");
  bool plain = kind == OutputKind::raw || kind == OutputKind::sound;
  if (plain && (request.alpha || request.quality))
    throw WrongUsage(std::string(request.alpha ? "--alpha" : "--quality") + ": " + request.path +
                     (kind == OutputKind::raw ? " holds the plain frames" : " holds no pictures"));
  return kind;
}

std::unique_ptr<FrameWriter> makeWriter(const OutputRequest& request, const FrameShape& shape,
                                        const SoundShape& sound) {
  switch (kindOf(request.path)) {
    case OutputKind::film:
      return makeFilmWriter(request, shape, sound);
    case OutputKind::pictures:
      return makePictureWriter(request, shape);
    default:
      return makeRawWriter(request, shape);
  }
}

}  // namespace cinora
