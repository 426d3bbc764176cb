// The operations the host hands to its filters: the rows of HostFunctionTable over the living Host.
#include <algorithm>
#include <cstring>

#include "cinora/host/frame_renderer.h"
#include "cinora/host/host.h"
#include "cinora/host/media_files.h"
#include "cinora/picture/frame_text.h"
#include "cinora/picture/resize_image.h"
#include "platform/paths.h"

namespace cinora {
namespace {

using namespace zenlay;

constexpr size_t stringSettingBytes = 256;
constexpr char videoFilter[] =
    "VideoFile (*.avi;*.mp4;*.mkv;*.mov;*.webm;*.mpg;*.wmv;*.flv)\0*.avi;*.mp4;*.mkv;*.mov;*.webm;*.mpg;*.wmv;*.flv\0"
    "AllFile (*.*)\0*.*\0";
constexpr char audioFilter[] =
    "AudioFile (*.wav;*.mp3;*.flac;*.ogg;*.m4a)\0*.wav;*.mp3;*.flac;*.ogg;*.m4a\0AllFile (*.*)\0*.*\0";
constexpr std::string_view alphaExport = "(RGBA)";

bool opened(EditHandle edit) { return edit && edit->open; }

// The edit.

int32_t getCurrentFrame(EditHandle edit) { return opened(edit) ? edit->currentFrame : 0; }
int32_t getFrameCount(EditHandle edit) { return opened(edit) ? edit->frameCount : 0; }

int32_t setCurrentFrame(EditHandle edit, int32_t frame) {
  if (!opened(edit)) return 0;
  int32_t before = edit->currentFrame;
  if (moveTo(*edit, frame) != before) {
    host().plugins.broadcast(messageUpdate);
    host().noteChange(false);
  }
  return edit->currentFrame;
}

int32_t setFrameCount(EditHandle edit, int32_t count) { return opened(edit) && host().setFrameCount(count); }

bool frameOf(EditHandle edit, int32_t frame) { return opened(edit) && frame >= 0 && frame < edit->frameCount; }

int32_t getFrameStatus(EditHandle edit, int32_t frame, FrameStatus* status) {
  if (!frameOf(edit, frame)) return 0;
  *status = static_cast<size_t>(frame) < edit->status.size() ? edit->status[frame] : FrameStatus{frame, frame, 0, 0};
  return 1;
}

int32_t setFrameStatus(EditHandle edit, int32_t frame, const FrameStatus* status) {
  if (!frameOf(edit, frame)) return 0;
  for (int32_t i = static_cast<int32_t>(edit->status.size()); i <= frame; i++) edit->status.push_back({i, i, 0, 0});
  edit->status[frame] = *status;
  return 1;
}

/// Low byte of each frame's flags.
const uint8_t* getFrameStatusTable(EditHandle edit, int32_t kind) {
  if (!opened(edit) || kind < 0 || kind > mediaAudio) return nullptr;
  std::vector<uint8_t>& table = edit->statusTables[kind];
  table.assign(edit->frameCount, 0);
  for (size_t i = 0; i < edit->status.size(); i++) table[i] = static_cast<uint8_t>(edit->status[i].flags);
  return table.data();
}

int32_t getFileInfo(EditHandle edit, HostFileInfo* info) {
  if (!opened(edit)) return 0;
  fillFileInfo(*edit, info);
  return 1;
}

int32_t getAudioFiltered(EditHandle edit, int32_t frame, int16_t* samples) {
  if (!frameOf(edit, frame) || !samples) return 0;
  const SoundBlock& block = host().sound.block(host(), frame);
  std::copy(block.samples.begin(), block.samples.end(), samples);
  return block.count;
}

int32_t getSelection(EditHandle edit, int32_t* first, int32_t* last) {
  if (!opened(edit)) return 0;
  *first = edit->selectionFirst;
  *last = edit->selectionLast;
  return 1;
}

int32_t setSelection(EditHandle edit, int32_t first, int32_t last) {
  if (!opened(edit)) return 0;
  selectFrames(*edit, first, last);
  host().noteChange(false);
  return 1;
}

int32_t openEdit(EditHandle, const char* name, uint32_t) {
  if (!name) return 0;
  bool project = platform::equalNoCase(platform::extensionOf(name), ".cnp");
  return project && host().desktop.openProject ? host().desktop.openProject(name) : host().openEdit(name);
}

/// The selection to `name`, by its extension; with alpha when the output is an RGBA one.
int32_t exportEdit(EditHandle edit, const char* name, uint32_t, const char* output) {
  if (!opened(edit) || !name) return 0;
  bool alpha = output && std::string_view(output).find(alphaExport) != std::string_view::npos;
  return host().desktop.exportSelection && host().desktop.exportSelection(name, alpha);
}

// Dialogs and menus.

/// The answer prepared, else what the user says.
int32_t askFileName(bool save, char* name, const char* filter, const char* initial) {
  std::string answer = save ? host().dialogs.save : host().dialogs.load;
  if (answer.empty() && host().desktop.askFileName) answer = host().desktop.askFileName(save, filter, initial);
  if (answer.empty()) return 0;
  if (answer.size() >= fileNameBytes) {
    host().tell(pathTooLong(answer));
    return 0;
  }
  memcpy(name, answer.c_str(), answer.size() + 1);
  return 1;
}
int32_t askLoadFileName(char* name, const char* filter, const char* initial) {
  return askFileName(false, name, filter, initial);
}
int32_t askSaveFileName(char* name, const char* filter, const char* initial) {
  return askFileName(true, name, filter, initial);
}

int32_t addMenuItem(HostFilterRecord* filter, const char* entry, WindowHandle window, int32_t command, int32_t key,
                    int32_t modifiers) {
  if (!entry) return 0;
  host().menuItems.push_back({filter, entry, window, command, key, modifiers});
  return 1;
}

// Settings.

int32_t readIntSetting(HostFilterRecord* filter, const char* key, int32_t fallback) {
  return host().settings.getInt(filter->name, key, fallback);
}
int32_t writeIntSetting(HostFilterRecord* filter, const char* key, int32_t value) {
  host().settings.set(filter->name, key, std::to_string(value));
  return 1;
}
int32_t readStringSetting(HostFilterRecord* filter, const char* key, char* buffer, const char* fallback) {
  std::string value = host().settings.get(filter->name, key, fallback ? fallback : "");
  size_t length = std::min(value.size(), stringSettingBytes - 1);
  memcpy(buffer, value.data(), length);
  buffer[length] = 0;
  return 1;
}
int32_t writeStringSetting(HostFilterRecord* filter, const char* key, const char* value) {
  host().settings.set(filter->name, key, value ? value : "");
  return 1;
}

// The system.

/// `font` stays null, which hostDrawText takes for the host's own: fonts are looked up only when text is drawn.
int32_t getSystemInfo(EditHandle, HostSystemInfo* info) {
  Host& h = host();
  *info = {};
  info->filterCount = static_cast<int32_t>(h.plugins.filters().size());
  info->projectFile = h.projectFile.c_str();
  info->maxWidth = h.limits.maxWidth;
  info->maxHeight = h.limits.maxHeight;
  info->maxFrames = maxFrameCount;
  info->bufferWidth = h.limits.rowPixels;
  info->bufferHeight = h.limits.rows;
  info->build = hostBuild;
  return 1;
}

HostFilterRecord* getFilterRecord(int32_t index) {
  const auto& filters = host().plugins.filters();
  return index >= 0 && static_cast<size_t>(index) < filters.size() ? filters[index]->record : nullptr;
}

int32_t runOnThreads(ThreadWork work, void* first, void* second) {
  host().pool.run(work, first, second);
  return 1;
}

// Images.

FramePixel* getFrameBeforeFilter(HostFilterRecord* filter, EditHandle, int32_t frame, int32_t) {
  return frameBefore(host(), filter, frame);
}

int32_t resizeImage(FramePixel* destination, int32_t width, int32_t height, const FramePixel* source, int32_t x,
                    int32_t y, int32_t sourceWidth, int32_t sourceHeight) {
  const Limits& limits = host().limits;
  auto fits = [](int from, int size, int limit) { return from >= 0 && size >= 1 && from <= limit - size; };
  if (!destination || !source || !fits(0, width, limits.maxWidth) || !fits(0, height, limits.maxHeight) ||
      !fits(x, sourceWidth, limits.rowPixels) || !fits(y, sourceHeight, limits.rows))
    return 0;
  const FramePixel* corner = source + static_cast<size_t>(y) * limits.rowPixels + x;
  resizeFrame(host().pool, destination, limits.rowPixels, width, height,
              {corner, limits.rowPixels, sourceWidth, sourceHeight});
  return 1;
}

int32_t hostDrawText(FramePixel* image, int32_t x, int32_t y, const char* text, int32_t red, int32_t green,
                     int32_t blue, int32_t transparency, FontHandle font, int32_t* width, int32_t* height) {
  Host& h = host();
  if (!font) font = h.hostFont();
  if (!font || !text) return 0;
  const Limits& limits = h.limits;
  TextSize size = drawFrameText({image, limits.rowPixels, limits.maxWidth, limits.maxHeight}, x, y, text,
                                {red, green, blue, transparency}, font);
  if (width) *width = size.width;
  if (height) *height = size.height;
  return 1;
}

// Media files.

MediaHandle openMediaFile(const char* path, HostFileInfo* info, uint32_t flags) {
  return path ? openMedia(path, info, flags) : nullptr;
}
int32_t closeMediaFile(MediaHandle media) {
  closeMedia(media);
  return media != nullptr;
}
int32_t readVideoFrame(MediaHandle media, int32_t frame, FramePixel* image) {
  return media && image && readMediaFrame(host(), *media, frame, image);
}
const void* getVideoFramePixels(MediaHandle media, int32_t frame) {
  return media ? mediaFramePixels(*media, frame) : nullptr;
}
const char* getMediaFileFilter(int32_t kind) { return kind == mediaAudio ? audioFilter : videoFilter; }

int32_t readAudioSamples(MediaHandle media, int32_t first, int32_t count, int16_t* buffer) {
  return media && buffer ? readMediaSound(*media, first, count, buffer) : 0;
}
int32_t setAudioSampleRate(MediaHandle media, int32_t rate, int32_t channels) {
  return media ? setMediaSoundRate(*media, rate, channels) : 0;
}

constexpr HostFunctionTable makeTable() {
  HostFunctionTable t{};
  t.getCurrentFrame = getCurrentFrame;
  t.getFrameCount = getFrameCount;
  t.setCurrentFrame = setCurrentFrame;
  t.setFrameCount = setFrameCount;
  t.getFrameStatus = getFrameStatus;
  t.setFrameStatus = setFrameStatus;
  t.getFileInfo = getFileInfo;
  t.getAudioFiltered = getAudioFiltered;
  t.getSelection = getSelection;
  t.setSelection = setSelection;
  t.askLoadFileName = askLoadFileName;
  t.askSaveFileName = askSaveFileName;
  t.readIntSetting = readIntSetting;
  t.writeIntSetting = writeIntSetting;
  t.readStringSetting = readStringSetting;
  t.writeStringSetting = writeStringSetting;
  t.getSystemInfo = getSystemInfo;
  t.getFilterRecord = getFilterRecord;
  t.getFrameBeforeFilter = getFrameBeforeFilter;
  t.runOnThreads = runOnThreads;
  t.resizeImage = resizeImage;
  t.hostDrawText = hostDrawText;
  t.openMediaFile = openMediaFile;
  t.closeMediaFile = closeMediaFile;
  t.readVideoFrame = readVideoFrame;
  t.getVideoFramePixels = getVideoFramePixels;
  t.getMediaFileFilter = getMediaFileFilter;
  t.readAudioSamples = readAudioSamples;
  t.setAudioSampleRate = setAudioSampleRate;
  t.getFrameStatusTable = getFrameStatusTable;
  t.addMenuItem = addMenuItem;
  t.openEdit = openEdit;
  t.exportEdit = exportEdit;
  return t;
}

}  // namespace

constinit const HostFunctionTable hostFunctions = makeTable();

}  // namespace cinora
