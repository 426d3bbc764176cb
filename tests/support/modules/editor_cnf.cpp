// A small editor for the tests of the host: its films are one line of text, "WIDTH HEIGHT RATE SCALE FRAMES", and show
// a bar of colour over the background.
//
// Pixel (x, y) of frame f, for x < width / 2: luma 256 f, Cb 512, Cr -512 at half transparency; elsewhere the
// background stays. A film of 13 frames tells of a missing file at frame 3; one of 14 breaks its fifth frame, one of 15
// never ends it. A film of 16 frames is never done opening, and the file "opening" tells that it began.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "platform/window.h"
#include "zenlay/host/host_interface.h"

namespace {

using namespace zenlay;

extern HostFilterRecord editor;
std::string text;  // the film
std::string log;   // what the host asked for, in order

void say(const char* message) { platform::messageBox(nullptr, message, "Editor", 0x30); }

bool adopt(EditHandle edit, const std::string& film) {
  int width, height, rate, scale, frames;
  if (sscanf(film.c_str(), "%d %d %d %d %d", &width, &height, &rate, &scale, &frames) != 5) {
    say("Not a film.\nReally not");
    return false;
  }
  if (frames == 16) {
    if (std::FILE* file = fopen("opening", "wb")) fclose(file);
    for (;;) pause();
  }
  char name[128];
  if (scale == 1)
    snprintf(name, sizeof name, "%dx%d_%dfps_44100Hz.zenlay", width, height, rate);
  else
    snprintf(name, sizeof name, "%dx%d_%d-%dfps_44100Hz.zenlay", width, height, rate, scale);
  if (editor.functions->openEdit(edit, name, 0) != 1) return false;
  text = film;
  return editor.functions->setFrameCount(edit, frames) != 0;
}

int process(HostFilterRecord*, FrameProcessInfo* info) {
  if (info->frameCount == 13 && info->frameNumber == 3) say("File not found");
  if (info->frameCount == 14 && info->frameNumber == 4) info->width = 100000;
  while (info->frameCount == 15 && info->frameNumber == 4) pause();
  if (info->frameCount == 17) {  // what lies below another frame
    info->frame[0] = editor.functions->getFrameBeforeFilter(&editor, info->edit, 3, 0)[0];
    return 1;
  }
  std::swap(info->frame, info->scratch);
  struct Work {
    FrameProcessInfo* info;
  } work{info};
  return editor.functions->runOnThreads(
      [](int index, int count, void* first, void*) {
        const FrameProcessInfo& info = *static_cast<Work*>(first)->info;
        int row = info.lineBytes / info.pixelBytes;
        for (int y = info.height * index / count; y < info.height * (index + 1) / count; y++) {
          for (int x = 0; x < info.width; x++) {
            FramePixel below = info.scratch[static_cast<ptrdiff_t>(y) * row + x];
            FramePixel& out = info.frame[static_cast<ptrdiff_t>(y) * row + x];
            if (x >= info.width / 2) {
              out = below;
            } else {
              out.y = static_cast<int16_t>((256 * info.frameNumber + below.y) / 2);
              out.cb = static_cast<int16_t>((512 + below.cb) / 2);
              out.cr = static_cast<int16_t>((-512 + below.cr) / 2);
            }
          }
        }
      },
      &work, nullptr);
}

int openFile(EditHandle edit) {
  char name[260];
  if (!editor.functions->askLoadFileName(name, "", "")) return 0;
  char film[256] = "";
  std::FILE* file = fopen(name, "rb");
  if (file) {
    film[fread(film, 1, sizeof film - 1, file)] = 0;
    fclose(file);
  }
  return adopt(edit, film);
}

int saveFile() {
  char name[260];
  if (!editor.functions->askSaveFileName(name, "", "")) return 0;
  std::FILE* file = fopen(name, "wb");
  bool written = file && fputs(text.c_str(), file) >= 0;
  if (file && fclose(file) != 0) written = false;
  if (!written) say("The disk is full");
  return 0;
}

int answer(intptr_t query, QueryRequest* request) {
  static std::string result;
  if (query == queryProject) {
    result = "{\"log\": \"" + log + "\"}";
  } else if (query == queryEffects) {
    result = request->argument && strcmp(request->argument, "Bar") != 0 ? "[]" : "[{\"index\": 0, \"name\": \"Bar\"}]";
  } else if (query == queryTexts) {
    result = "[]";
  } else if (query == queryWriteBackup) {
    std::FILE* file = fopen(request->argument, "wb");
    if (file) fclose(file);
    request->answer = "nothing to back up";
    return 1;
  } else {
    return 0;
  }
  request->answer = result.c_str();
  return 1;
}

int windowProcedure(WindowHandle, uint32_t message, intptr_t first, intptr_t second, EditHandle edit,
                    HostFilterRecord*) {
  char entry[16];
  snprintf(entry, sizeof entry, "%X ", message);
  if (message >= messageUpdate && message <= messageWindowClose) log += entry;
  if (message == messageCommand && (first == commandOpenObjectFile || first == commandOpenBackup))
    return openFile(edit);
  if (message == messageCommand && first == commandSaveObjectFile) return saveFile();
  if (message == messageQuery) return answer(first, reinterpret_cast<QueryRequest*>(second));
  return 0;
}

int start(HostFilterRecord* record) {
  log += "start ";
  for (int i = 0; HostFilterRecord* other = record->functions->getFilterRecord(i); i++) log += other->name[0];
  log += " ";
  return 1;
}

int save(HostFilterRecord*, EditHandle, void* data, int32_t* size) {
  if (text.empty()) return 0;
  if (data) memcpy(data, text.data(), text.size());
  *size = static_cast<int32_t>(text.size());
  return 1;
}

int load(HostFilterRecord*, EditHandle, const void* data, int32_t size) {
  text.assign(static_cast<const char*>(data), size);
  if (text.find("bad") == std::string::npos) return 1;
  say("That cannot be read");
  return 0;
}

HostFilterRecord editor{.flags = 0x40062004,
                        .name = "Editor",
                        .process = process,
                        .initialise = start,
                        .exit = [](HostFilterRecord*) { return 1; },
                        .windowProcedure = windowProcedure,
                        .projectLoad = load,
                        .projectSave = save};
/// Adds the number of its calls to the block's first sample and the frame's number to the last.
HostFilterRecord audio{.flags = 0x00340004, .name = "Audio", .process = [](HostFilterRecord*, FrameProcessInfo* info) {
                         static int16_t calls = 0;
                         if (info->frame || !info->audio) say("the audio filter was given a picture");
                         if (info->sampleCount < 1) return 1;
                         info->audio[0] = static_cast<int16_t>(info->audio[0] + ++calls);
                         int last = info->sampleCount * info->channelCount - 1;
                         info->audio[last] = static_cast<int16_t>(info->audio[last] + info->frameNumber);
                         return 1;
                       }};

}  // namespace

extern "C" __attribute__((visibility("default"))) HostFilterRecord** GetFilterTableList() {
  static HostFilterRecord* table[] = {&editor, &audio, nullptr};
  return table;
}
