// The plug-in modules of the host and their filters.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/system.h"
#include "platform/window.h"
#include "zenlay/host/host_interface.h"

namespace cinora {

class Settings;

/// Bits of HostFilterRecord::flags as this host understands them.
enum HostFilterFlag : uint32_t {
  filterAlwaysOn = 0x00000004,  // takes part in every frame; others do when their setting `active` is 1
  filterAudio = 0x00200000,     // processes sound, not pictures
};

struct Filter {
  zenlay::HostFilterRecord* record;
  platform::Module* module;
  platform::Window* window = nullptr;
  std::vector<int32_t> tracks, checks;
  std::vector<uint8_t> extraData;
  const zenlay::EditHandle* edit;
  const std::function<void()>* redraw;  // called when the window procedure asks for a new frame
  bool active = false;
};

class PluginHost {
 public:
  PluginHost() = default;
  ~PluginHost();  // stops
  PluginHost(const PluginHost&) = delete;
  PluginHost& operator=(const PluginHost&) = delete;

  /// The module beside the program when there is one (a build tree), otherwise the user's own folder,
  /// $XDG_DATA_HOME/cinora, which is made and filled with links to the installed files when it does not exist.
  static std::string defaultFolder();
  /// Every *.cnf of the folder, by name. Modules that cannot be used are reported and passed over.
  void load(const std::string& folder);
  /// A filter of the host's own.
  void add(zenlay::HostFilterRecord*);
  /// Fills the fields the host owes each record, makes the windows and starts the filters; filters that keep a project
  /// of their own start last because they look at the others. A filter that refuses is dropped. `mainWindow` owns the
  /// filters' windows; null: one that nobody sees.
  void start(const zenlay::HostFunctionTable*, const zenlay::EditHandle*, const Settings&,
             platform::Window* mainWindow = nullptr, std::function<void()> redraw = {});
  /// Ends the filters in the reverse order of their start.
  void stop();

  const std::vector<std::unique_ptr<Filter>>& filters() const { return filters_; }
  /// The filter that keeps a project and takes commands; null when none is loaded.
  Filter* editor() const;
  /// Why there is no editor, when the filter itself told nothing.
  std::string whyNoEditor() const;
  /// To the window of every filter that has one.
  void broadcast(uint32_t message, intptr_t first = 0, intptr_t second = 0);

 private:
  bool startFilter(Filter&, const zenlay::HostFunctionTable*, const zenlay::EditHandle*, const Settings&);

  std::vector<platform::Module*> modules_;
  std::vector<std::unique_ptr<Filter>> filters_;  // in the order they process a frame
  std::vector<Filter*> started_;                  // in the order they started
  platform::Window *mainWindow_ = nullptr, *ownMainWindow_ = nullptr;
  std::function<void()> redraw_;
  std::string folder_;
  bool editorRefused_ = false;
};

}  // namespace cinora
