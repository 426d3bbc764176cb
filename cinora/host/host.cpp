#include "cinora/host/host.h"

#include <algorithm>

#include "cinora/host/media_files.h"

namespace cinora {
namespace {

constexpr int standardMaxWidth = 3840, standardMaxHeight = 2160;
constexpr char fontFace[] = "sans-serif";
constexpr int fontSize = 16, fontWeight = 400;
constexpr uint32_t warningBox = 0x30;

Host* livingHost = nullptr;

int roundUpTo8(int value) { return (value + 7) & ~7; }

/// 3840x2160 unless the editor's settings max_w and max_h say otherwise, and never less than the project needs.
Limits chooseLimits(const Settings& settings, const char* section, const HostOptions& options) {
  int width = section ? settings.getInt(section, "max_w", 0) : 0;
  int height = section ? settings.getInt(section, "max_h", 0) : 0;
  if (width < 1 || height < 1) {
    width = standardMaxWidth;
    height = standardMaxHeight;
  }
  Limits limits;
  limits.maxWidth = roundUpTo8(std::clamp(std::max(width, options.wantedWidth), 1, maxSide));
  limits.maxHeight = roundUpTo8(std::clamp(std::max(height, options.wantedHeight), 1, maxSide));
  limits.rowPixels = limits.maxWidth + 8;
  limits.rows = limits.maxHeight;
  return limits;
}

std::string oneLine(const char* text) {
  std::string line;
  for (; text && *text; text++) {
    bool blank = *text == '\n' || *text == '\r' || *text == ' ';
    if (!blank)
      line += *text;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  return line;
}

/// Boxes titled with a file's path speak of that file.
int recordBox(platform::Window*, const char* text, const char* caption, uint32_t style) {
  std::string title = oneLine(caption);
  bool path = title.find_first_of("/\\.") != title.npos;
  livingHost->addMessage((path ? title + ": " : "") + oneLine(text));
  return platform::refusalOf(style);
}
const platform::DesktopBackend commandLineDesktop{recordBox};

}  // namespace

std::string pathTooLong(const std::string& path) {
  return path + ": the path is longer than " + std::to_string(fileNameBytes - 1) + " bytes";
}

Host& host() { return *livingHost; }

MessageRecorder::MessageRecorder() : shown_(platform::desktopBackend()), recording_(shown_) {
  recording_.messageBox = recordBox;
  platform::setDesktopBackend(&recording_);
}

MessageRecorder::~MessageRecorder() { platform::setDesktopBackend(&shown_); }

Host::Host(const HostOptions& options)
    : desktop(options.desktop), settings(options.settingsFile), pool(options.threads) {
  livingHost = this;
  if (!desktop.mainWindow) platform::setDesktopBackend(&commandLineDesktop);
  for (zenlay::HostFilterRecord* record : desktop.ownFilters) plugins.add(record);
  plugins.load(options.pluginFolder.empty() ? PluginHost::defaultFolder() : options.pluginFolder);
  Filter* editor = plugins.editor();
  const char* section = editor ? editor->record->name : nullptr;
  if (section)
    for (const auto& [key, value] : options.overrides) settings.override(section, key, value);
  limits = chooseLimits(settings, section, options);
  plugins.start(&hostFunctions, &handle_, settings, desktop.mainWindow, [this] { noteChange(true); });
}

Host::~Host() {
  closeEdit();
  plugins.stop();  // which writes its preferences
  if (desktop.mainWindow && !settings.save())
    platform::debugOutput("cinora: warning: the settings cannot be written to " + settings.path());
  dropKeptSound();
  if (font_) platform::closeFont(font_);
  if (!desktop.mainWindow) platform::setDesktopBackend(nullptr);
  livingHost = nullptr;
}

bool Host::openEdit(const std::string& name, const ClipFormat* absentAs) {
  zenlay::HostEdit opened;
  if (std::optional<ClipFormat> format = formatFromName(name))
    openClip(opened, name, *format);
  else
    opened = openMediaClip(name);
  if (!opened.open && absentAs && openClip(opened, name, *absentAs))
    tell(name +
         " cannot be read: its picture stays black and its sound silent until the file is back, there or beside "
         "the project");
  const ClipFormat& format = opened.format;
  if (!opened.open) {
    tell("\"" + name + "\" names no clip format that can be opened");
    return false;
  }
  if (format.width > limits.maxWidth || format.height > limits.maxHeight) {
    tell("an image of " + std::to_string(format.width) + "x" + std::to_string(format.height) +
         " is larger than the settings allow (" + std::to_string(limits.maxWidth) + "x" +
         std::to_string(limits.maxHeight) + ")");
    return false;
  }
  closeEdit();
  edit = std::move(opened);
  plugins.broadcast(zenlay::messageFileOpen);
  if (desktop.opened) desktop.opened();
  noteChange(true);
  return true;
}

void Host::closeEdit() {
  if (!edit.open) return;
  plugins.broadcast(zenlay::messageFileClose);
  edit = {};
  absentFilters.clear();
  noteChange(true);
}

bool Host::setFrameCount(int32_t count) {
  if (!resizeClip(edit, count)) return false;
  plugins.broadcast(zenlay::messageUpdate);
  noteChange(true);
  return true;
}

void Host::noteChange(bool content) {
  if (content) sound.forget();
  if (desktop.changed) desktop.changed(content);
}

zenlay::FramePixel* Host::image(int index) {
  FrameImage& image = images_[index];
  if (!image.pixels()) image = FrameImage(limits.rowPixels, limits.rows);
  return image.pixels();
}

platform::Font* Host::hostFont() {
  if (!font_) font_ = platform::openFont(fontFace, fontSize, fontWeight, false);
  return font_;
}

void Host::tell(const std::string& problem) { platform::messageBox(nullptr, problem.c_str(), "Cinora", warningBox); }

std::vector<std::string> Host::takeMessages() { return std::exchange(messages_, {}); }

}  // namespace cinora
