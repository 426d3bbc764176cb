#include "tests/support/fake_host.h"

#include <cstring>
#include <thread>

#include "platform/backend.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay::test {

FakeHost fakeHost;

namespace {

std::vector<std::string> messages;

int recordBox(platform::Window*, const char* text, const char*, uint32_t) {
  messages.push_back(text);
  return platform::boxOk;
}
const platform::DesktopBackend recordingBackend{recordBox};

int32_t runThreads(ThreadWork work, void* first, void* second) {
  int count = fakeHost.threads < 1 ? 1 : fakeHost.threads;
  std::vector<std::thread> workers;
  for (int i = 1; i < count; i++) workers.emplace_back(work, i, count, first, second);
  work(0, count, first, second);
  for (std::thread& worker : workers) worker.join();
  return 1;
}

int32_t readInt(HostFilterRecord*, const char* key, int32_t fallback) {
  auto found = fakeHost.intSettings.find(key);
  return found == fakeHost.intSettings.end() ? fallback : found->second;
}
int32_t writeInt(HostFilterRecord*, const char* key, int32_t value) {
  fakeHost.intSettings[key] = value;
  return 1;
}
int32_t readString(HostFilterRecord*, const char* key, char* buffer, const char* fallback) {
  auto found = fakeHost.stringSettings.find(key);
  std::string value = found == fakeHost.stringSettings.end() ? fallback : found->second;
  strncpy(buffer, value.c_str(), 255);
  buffer[255] = 0;
  return 1;
}
int32_t writeString(HostFilterRecord*, const char* key, const char* value) {
  fakeHost.stringSettings[key] = value;
  return 1;
}
int32_t answerFileName(char* name, const char*, const char*) {
  if (fakeHost.fileName.empty()) return 0;
  strcpy(name, fakeHost.fileName.c_str());
  return 1;
}

HostFunctionTable fakeFunctions() {
  HostFunctionTable f{};
  f.getCurrentFrame = [](EditHandle) -> int32_t { return fakeHost.currentFrame; };
  f.getFrameCount = [](EditHandle) -> int32_t { return fakeHost.frameCount; };
  f.setCurrentFrame = [](EditHandle, int32_t frame) -> int32_t {
    fakeHost.calls.push_back("setCurrentFrame");
    return fakeHost.currentFrame = frame;
  };
  f.setFrameCount = [](EditHandle, int32_t count) -> int32_t {
    fakeHost.calls.push_back("setFrameCount");
    fakeHost.frameCount = count;
    return 1;
  };
  f.getFileInfo = [](EditHandle, HostFileInfo* info) -> int32_t {
    if (fakeHost.clipOpen) *info = fakeHost.clip;
    return fakeHost.clipOpen;
  };
  f.getSelection = [](EditHandle, int32_t* first, int32_t* last) -> int32_t {
    *first = fakeHost.selectionFirst;
    *last = fakeHost.selectionLast;
    return 1;
  };
  f.setSelection = [](EditHandle, int32_t first, int32_t last) -> int32_t {
    fakeHost.calls.push_back("setSelection");
    fakeHost.selectionFirst = first;
    fakeHost.selectionLast = last;
    return 1;
  };
  f.askLoadFileName = answerFileName;
  f.askSaveFileName = answerFileName;
  f.readIntSetting = readInt;
  f.writeIntSetting = writeInt;
  f.readStringSetting = readString;
  f.writeStringSetting = writeString;
  f.getSystemInfo = [](EditHandle, HostSystemInfo* info) -> int32_t {
    *info = fakeHost.system;
    info->filterCount = static_cast<int32_t>(fakeHost.filters.size());
    return 1;
  };
  f.getFilterRecord = [](int32_t index) -> HostFilterRecord* { return fakeHost.filters[index]; };
  f.runOnThreads = runThreads;
  f.addMenuItem = [](HostFilterRecord*, const char*, WindowHandle, int32_t, int32_t, int32_t) -> int32_t { return 1; };
  f.getMediaFileFilter = [](int32_t) -> const char* { return "Media\0*.*\0"; };
  return f;
}

}  // namespace

std::vector<std::string>& shownMessages() { return messages; }

void resetFakeHost(int maxWidth, int maxHeight) {
  fakeHost = FakeHost{};
  fakeHost.functions = fakeFunctions();
  fakeHost.system.maxWidth = maxWidth;
  fakeHost.system.maxHeight = maxHeight;
  fakeHost.system.maxFrames = 320000;
  fakeHost.system.bufferWidth = maxWidth + 8;
  fakeHost.system.bufferHeight = maxHeight;
  fakeHost.system.build = 9933;
  fakeHost.clip.flags = fileHasVideo | fileHasAudio;
  fakeHost.clip.name = "";
  fakeHost.clip.width = maxWidth;
  fakeHost.clip.height = maxHeight;
  fakeHost.clip.rate = 30;
  fakeHost.clip.scale = 1;
  fakeHost.clip.audioRate = 44100;
  fakeHost.clip.audioChannels = 2;
  fakeHost.clip.frameCount = fakeHost.frameCount;
  messages.clear();
  platform::setDesktopBackend(&recordingBackend);

  freeObjects();
  environment = Environment{};
  environment.hostFunctions = &fakeHost.functions;
  environment.clip = fakeHost.clip;
  environment.hostBuild = fakeHost.system.build;
  environment.maxWidth = maxWidth;
  environment.maxHeight = maxHeight;
  environment.maxFrames = fakeHost.system.maxFrames;
  environment.bufferWidth = fakeHost.system.bufferWidth;
  environment.bufferHeight = fakeHost.system.bufferHeight;
  environment.shadowMax = environment.shadowMaxAligned = 2048;
  environment.projectOpen = true;
  deriveWorkSize(environment, 0, 0);
  resetPreferences();
  resetTimelineView();
  timelineView.sceneLength = fakeHost.frameCount;
  clearScenes();
  rebuildOrder();
}

}  // namespace zenlay::test
