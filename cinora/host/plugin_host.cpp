#include "cinora/host/plugin_host.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "cinora/host/settings.h"
#include "platform/paths.h"

namespace cinora {
namespace {

namespace fs = std::filesystem;

constexpr char modulePattern[] = "*.cnf";
constexpr int maxControls = 1024;  // tracks or checks a filter may have
constexpr int maxFilters = 1024;   // of one module
constexpr int maxExtraData = 1 << 20;
constexpr uint32_t windowStyle = platform::windowTool | platform::windowResizable | platform::windowAcceptsFiles;

std::string userFolder() {
  const char* data = getenv("XDG_DATA_HOME");
  if (data && data[0] == '/') return std::string(data) + "/cinora/";
  const char* home = getenv("HOME");
  return home && *home ? std::string(home) + "/.local/share/cinora/" : "";
}

/// Links keep the installed files up to date and leave room beside them for what the user and the plug-ins add. What is
/// there already stays.
void linkInstalledFiles(const fs::path& installed, const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  for (const fs::directory_entry& entry : fs::directory_iterator(installed, error)) {
    fs::path target = folder / entry.path().filename();
    if (entry.is_directory(error))
      linkInstalledFiles(entry.path(), target);
    else
      fs::create_symlink(entry.path(), target, error);
  }
}

bool usable(const zenlay::HostFilterRecord& r) {
  auto complete = [](int count, auto... arrays) {
    return count >= 0 && count <= maxControls && (count == 0 || (... && (arrays != nullptr)));
  };
  return r.name && complete(r.trackCount, r.trackNames, r.trackDefaults) &&
         complete(r.checkCount, r.checkNames, r.checkDefaults) && r.extraDataSize >= 0 &&
         r.extraDataSize <= maxExtraData;
}

bool keepsProject(const zenlay::HostFilterRecord& r) { return r.windowProcedure && r.projectLoad && r.projectSave; }

intptr_t forwardMessage(platform::Window* window, uint32_t message, intptr_t first, intptr_t second, void* user) {
  Filter& filter = *static_cast<Filter*>(user);
  int result = filter.record->windowProcedure(window, message, first, second, *filter.edit, filter.record);
  if (result == 1 && message != zenlay::messageQuery && *filter.redraw) (*filter.redraw)();
  return result;
}

intptr_t ignoreMessage(platform::Window*, uint32_t, intptr_t, intptr_t, void*) { return 0; }

std::vector<int32_t> storedValues(const Settings& settings, const char* section, const char* kind, int count,
                                  const int32_t* defaults) {
  std::vector<int32_t> values(count);
  for (int i = 0; i < count; i++) values[i] = settings.getInt(section, kind + std::to_string(i), defaults[i]);
  return values;
}

}  // namespace

PluginHost::~PluginHost() {
  stop();
  for (platform::Module* module : modules_) platform::unloadModule(module);
}

std::string PluginHost::defaultFolder() {
  std::string program(platform::folderOf(platform::programPath()));
  if (!platform::filesMatching(program, modulePattern).empty()) return program;
  std::string folder = userFolder();
  if (!folder.empty() && platform::filesMatching(folder, modulePattern).empty()) {
    std::error_code error;
    linkInstalledFiles(fs::canonical(program + "../lib/cinora", error), folder);
  }
  return folder;
}

void PluginHost::load(const std::string& folder) {
  folder_ = folder;
  std::string base = folder.empty() || platform::isSeparator(folder.back()) ? folder : folder + "/";
  for (const std::string& name : platform::filesMatching(base, modulePattern)) {
    platform::Module* module = platform::loadModule(base + name);
    if (!module) {
      platform::debugOutput("cinora: warning: " + name + " cannot be loaded: " + platform::loadError());
      continue;
    }
    modules_.push_back(module);
    auto getter =
        reinterpret_cast<zenlay::FilterTableGetter>(platform::moduleSymbol(module, zenlay::filterTableExport));
    zenlay::HostFilterRecord** table = getter ? getter() : nullptr;
    if (!table) {
      platform::debugOutput("cinora: warning: " + name + " has no filters");
      continue;
    }
    for (int i = 0; table[i] && i < maxFilters; i++) {
      if (usable(*table[i]))
        filters_.push_back(
            std::make_unique<Filter>(Filter{.record = table[i], .module = module, .edit = nullptr, .redraw = nullptr}));
      else
        platform::debugOutput("cinora: warning: a filter of " + name + " has an unusable record");
    }
  }
}

void PluginHost::add(zenlay::HostFilterRecord* record) {
  filters_.push_back(
      std::make_unique<Filter>(Filter{.record = record, .module = nullptr, .edit = nullptr, .redraw = nullptr}));
}

bool PluginHost::startFilter(Filter& filter, const zenlay::HostFunctionTable* functions, const zenlay::EditHandle* edit,
                             const Settings& settings) {
  zenlay::HostFilterRecord& record = *filter.record;
  filter.edit = edit;
  filter.active = (record.flags & filterAlwaysOn) || settings.getInt(record.name, "active", 0) == 1;
  record.functions = functions;
  record.module = filter.module;
  filter.redraw = &redraw_;
  if (record.windowProcedure)
    filter.window = platform::createWindow(
        mainWindow_, forwardMessage, &filter,
        {.className = record.name, .title = record.name, .style = filter.module ? windowStyle : 0});
  record.window = filter.window;
  if (record.initialise && record.initialise(&record) != 1) {
    if (filter.window) platform::destroyWindow(filter.window);
    record.window = nullptr;
    return false;
  }
  started_.push_back(&filter);
  if (filter.window) platform::sendMessage(filter.window, zenlay::messageWindowSetUp, 0, 0);
  return true;
}

void PluginHost::start(const zenlay::HostFunctionTable* functions, const zenlay::EditHandle* edit,
                       const Settings& settings, platform::Window* mainWindow, std::function<void()> redraw) {
  redraw_ = std::move(redraw);
  if (!mainWindow) ownMainWindow_ = platform::createWindow(nullptr, ignoreMessage, nullptr);
  mainWindow_ = mainWindow ? mainWindow : ownMainWindow_;
  for (auto& filter : filters_) {
    zenlay::HostFilterRecord& record = *filter->record;
    filter->tracks = storedValues(settings, record.name, "track", record.trackCount, record.trackDefaults);
    filter->checks = storedValues(settings, record.name, "check", record.checkCount, record.checkDefaults);
    record.trackValues = filter->tracks.data();
    record.checkValues = filter->checks.data();
    record.functions = functions;
    if ((record.flags & zenlay::filterHasExtraData) && !record.extraData) {
      filter->extraData.resize(record.extraDataSize);
      record.extraData = filter->extraData.data();
    }
  }
  for (bool last : {false, true}) {
    for (size_t i = 0; i < filters_.size();) {
      Filter& filter = *filters_[i];
      if (keepsProject(*filter.record) != last || startFilter(filter, functions, edit, settings)) {
        i++;
        continue;
      }
      if (last)
        editorRefused_ = true;  // told by who wants to use it
      else
        platform::debugOutput(std::string("cinora: warning: filter \"") + filter.record->name + "\" refused to start");
      filters_.erase(filters_.begin() + i);
    }
  }
}

void PluginHost::stop() {
  for (; !started_.empty(); started_.pop_back()) {
    Filter& filter = *started_.back();
    if (filter.window) platform::sendMessage(filter.window, zenlay::messageWindowClose, 0, 0);
    if (filter.record->exit) filter.record->exit(filter.record);
    if (filter.window) platform::destroyWindow(filter.window);
    filter.window = filter.record->window = nullptr;
  }
  filters_.clear();
  if (ownMainWindow_) platform::destroyWindow(ownMainWindow_);
  mainWindow_ = ownMainWindow_ = nullptr;
}

Filter* PluginHost::editor() const {
  auto found = std::find_if(filters_.begin(), filters_.end(), [](auto& f) { return keepsProject(*f->record); });
  return found == filters_.end() ? nullptr : found->get();
}

std::string PluginHost::whyNoEditor() const {
  if (editorRefused_) return "the editing plug-in refused to start";
  return "no editing plug-in was found in " + (folder_.empty() ? "any folder: HOME is not set" : folder_);
}

void PluginHost::broadcast(uint32_t message, intptr_t first, intptr_t second) {
  for (size_t i = 0; i < filters_.size(); i++)
    if (filters_[i]->window) platform::sendMessage(filters_[i]->window, message, first, second);
}

}  // namespace cinora
