// The process-wide state of the host: what the operations handed to the plug-ins work on.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cinora/host/edit.h"
#include "cinora/host/plugin_host.h"
#include "cinora/host/project_file.h"
#include "cinora/host/settings.h"
#include "cinora/host/sound_mixer.h"
#include "cinora/picture/frame_image.h"
#include "cinora/support/worker_pool.h"
#include "platform/backend.h"
#include "platform/font.h"
#include "zenlay/host/host_interface.h"

namespace cinora {

inline constexpr int32_t hostBuild = 9933;

/// What a screen adds to a host; without one everything is empty.
struct DesktopPorts {
  platform::Window* mainWindow = nullptr;             // owns the windows of the filters
  std::vector<zenlay::HostFilterRecord*> ownFilters;  // of the host itself
  /// The path chosen, empty when cancelled. `filter` as in HostFunctionTable.
  std::function<std::string(bool save, const char* filter, const char* initial)> askFileName;
  /// These two: false when it was cancelled or failed, after a message.
  std::function<bool(const std::string& path)> openProject;
  std::function<bool(const std::string& path, bool alpha)> exportSelection;
  std::function<void()> opened;  // a clip, by whomever
  /// The clip, its selection or its current frame changed, or with `picture` what its frames show.
  std::function<void(bool picture)> changed;
};

struct HostOptions {
  std::string settingsFile;                                    // empty: none
  std::string pluginFolder;                                    // empty: PluginHost::defaultFolder
  std::vector<std::pair<std::string, std::string>> overrides;  // settings of the editor's filter, for this run
  int threads = 0;                                             // below 1: one a processor
  int wantedWidth = 0, wantedHeight = 0;                       // what the project to be opened needs
  DesktopPorts desktop{};
};

/// Largest image, and the shape of the frame images. Fixed once the plug-ins have started.
struct Limits {
  int maxWidth, maxHeight;  // pixels
  int rowPixels, rows;      // of a frame image
};

struct MenuItem {
  zenlay::HostFilterRecord* filter;
  std::string entry;
  zenlay::WindowHandle window;
  int32_t command, key, modifiers;
};

inline constexpr size_t fileNameBytes = 260;  // of a name a file dialog gives, with the NUL
/// What is told about a longer one.
std::string pathTooLong(const std::string& path);

/// What the host's file dialogs answer; empty: cancelled.
struct DialogAnswers {
  std::string load, save;
};

/// One at a time: the operations of the function table find it as host().
class Host {
 public:
  explicit Host(const HostOptions&);
  /// With a desktop the settings are saved, or a warning says that they cannot be.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Opens a clip named after its format ("640x480_30fps_44100Hz.zenlay"), or the film `name` itself, and tells the
  /// filters; an open one is closed first. False, after a message, when there is no such format or the image
  /// would be too large. With `absentAs` a film that cannot be read is opened too, after a message: black and silent,
  /// in that format.
  bool openEdit(const std::string& name, const ClipFormat* absentAs = nullptr);
  void closeEdit();
  bool setFrameCount(int32_t count);
  zenlay::EditHandle editHandle() { return &edit; }
  /// The clip, its selection or its current frame changed, or with `content` what it shows and sounds like.
  void noteChange(bool content);

  /// A frame image for `index` 0 and 1 (frames), 2 and 3 (getFrameBeforeFilter).
  zenlay::FramePixel* image(int index);

  /// The font of the host's notes, opened when first asked for; null when no font is installed.
  platform::Font* hostFont();

  /// A message box, which only is recorded without a desktop or while a MessageRecorder lives.
  void tell(const std::string& problem);
  /// Message boxes that were recorded and not taken yet, one line each.
  std::vector<std::string> takeMessages();
  void addMessage(const std::string& line) { messages_.push_back(line); }

  DesktopPorts desktop;
  Settings settings;
  WorkerPool pool;
  zenlay::HostEdit edit;
  Limits limits{};
  std::vector<FilterBlock> absentFilters;  // the project's data of filters that are not loaded, kept for saving
  std::string projectFile;                 // full path of the file the edit came from or goes to
  DialogAnswers dialogs;
  std::vector<MenuItem> menuItems;
  PluginHost plugins;
  SoundMixer sound;  // of the edit

 private:
  FrameImage images_[4];
  platform::Font* font_ = nullptr;
  std::vector<std::string> messages_;
  zenlay::EditHandle handle_ = &edit;
};

Host& host();  // the living one

/// While it lives message boxes are not shown: they become messages of the host and are answered by their refusing
/// button. Without a desktop that is so anyway.
class MessageRecorder {
 public:
  MessageRecorder();
  ~MessageRecorder();
  MessageRecorder(const MessageRecorder&) = delete;
  MessageRecorder& operator=(const MessageRecorder&) = delete;

 private:
  const platform::DesktopBackend& shown_;
  platform::DesktopBackend recording_;
};

extern const zenlay::HostFunctionTable hostFunctions;

}  // namespace cinora
