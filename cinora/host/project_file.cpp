#include "cinora/host/project_file.h"

#include <cerrno>
#include <cstring>

extern "C" {
#include <libavutil/crc.h>
}

#include "platform/paths.h"

namespace cinora {
namespace {

constexpr std::string_view magic = "CINORA\x1A\n";
constexpr std::string_view clipKind = "CLIP", filterKind = "FLTR", endKind = "END.";
constexpr size_t blockHead = 12;
constexpr int32_t version = 1;
constexpr size_t maxFileBytes = size_t{1} << 30;
constexpr size_t maxFilterName = 256;

constexpr int32_t ProjectFile::*projectNumbers[] = {&ProjectFile::frameCount, &ProjectFile::currentFrame,
                                                    &ProjectFile::selectionFirst, &ProjectFile::selectionLast};
constexpr int32_t ClipFormat::*formatNumbers[] = {&ClipFormat::width,     &ClipFormat::height,
                                                  &ClipFormat::rate,      &ClipFormat::scale,
                                                  &ClipFormat::audioRate, &ClipFormat::audioChannels};

void put32(std::string& out, uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) out += static_cast<char>(value >> shift);
}

/// Takes a number from the front; false when fewer than four bytes are left.
bool take32(std::string_view& in, uint32_t& value) {
  if (in.size() < 4) return false;
  value = 0;
  for (int i = 0; i < 4; i++) value |= uint32_t{static_cast<uint8_t>(in[i])} << (8 * i);
  in.remove_prefix(4);
  return true;
}
bool take32(std::string_view& in, int32_t& value) {
  uint32_t bits;
  if (!take32(in, bits)) return false;
  value = static_cast<int32_t>(bits);
  return true;
}

uint32_t crcOf(std::string_view bytes) {
  if (bytes.empty()) return 0;  // av_crc counts back from the end, which a null one can't bear
  const AVCRC* table = av_crc_get_table(AV_CRC_32_IEEE_LE);
  return ~av_crc(table, ~0u, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

void putBlock(std::string& out, std::string_view kind, std::string_view contents) {
  out += kind;
  put32(out, static_cast<uint32_t>(contents.size()));
  put32(out, crcOf(contents));
  out += contents;
}

bool decodeClip(std::string_view contents, ProjectFile* project) {
  int32_t fileVersion;
  if (!take32(contents, fileVersion) || fileVersion != version) return false;
  for (auto number : formatNumbers)
    if (!take32(contents, project->format.*number)) return false;
  for (auto number : projectNumbers)
    if (!take32(contents, project->*number)) return false;
  project->clipName = contents;
  return validFormat(project->format) && project->frameCount >= 1 && project->frameCount <= maxFrameCount &&
         contents.find('\0') == contents.npos;
}

bool decodeFilter(std::string_view contents, ProjectFile* project) {
  uint32_t length;
  if (!take32(contents, length) || length == 0 || length > maxFilterName || length > contents.size()) return false;
  project->filters.push_back({std::string(contents.substr(0, length)), std::string(contents.substr(length))});
  return true;
}

std::string systemError() { return errno ? strerror(errno) : "write error"; }

}  // namespace

std::string encodeProject(const ProjectFile& project) {
  std::string clip;
  put32(clip, version);
  for (auto number : formatNumbers) put32(clip, project.format.*number);
  for (auto number : projectNumbers) put32(clip, project.*number);
  clip += project.clipName;
  std::string out(magic);
  putBlock(out, clipKind, clip);
  for (const FilterBlock& filter : project.filters) {
    std::string contents;
    put32(contents, static_cast<uint32_t>(filter.name.size()));
    putBlock(out, filterKind, contents + filter.name + filter.data);
  }
  putBlock(out, endKind, {});
  return out;
}

std::string decodeProject(std::string_view bytes, ProjectFile* project) {
  *project = {};
  if (!bytes.starts_with(magic)) return "not a Cinora project";
  bytes.remove_prefix(magic.size());
  bool clipSeen = false;
  while (!bytes.empty()) {
    if (bytes.size() < blockHead) return "the project file is cut short";
    std::string_view kind = bytes.substr(0, 4);
    bytes.remove_prefix(4);
    uint32_t length, crc;
    take32(bytes, length);
    take32(bytes, crc);
    if (length > bytes.size()) return "the project file is cut short";
    std::string_view contents = bytes.substr(0, length);
    bytes.remove_prefix(length);
    if (crcOf(contents) != crc) return "the project file is damaged (checksum)";
    if (kind == endKind) return clipSeen ? "" : "the project file has no clip";
    if (kind == clipKind) {
      if (clipSeen || !decodeClip(contents, project)) return "the project file's clip is not valid";
      clipSeen = true;
    } else if (kind == filterKind && !decodeFilter(contents, project)) {
      return "the project file is damaged (filter block)";
    }
  }
  return "the project file is cut short";
}

std::string writeProject(const std::string& path, const ProjectFile& project) {
  errno = 0;
  platform::ReplacementFile file(path);
  std::FILE* out = file.temporaryPath().empty() ? nullptr : platform::openFile(file.temporaryPath(), "wb");
  if (!out) return systemError();
  std::string bytes = encodeProject(project);
  bool written = fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
  if (fclose(out) != 0) written = false;
  if (!written || !file.commit()) return systemError();
  return {};
}

std::string readProject(const std::string& path, ProjectFile* project) {
  std::string bytes;
  errno = 0;
  if (!platform::readFile(path, bytes, maxFileBytes)) return errno ? strerror(errno) : "the file cannot be read";
  return decodeProject(bytes, project);
}

}  // namespace cinora
