// Media files of the fake host: described by path, every operation counted. Pixel (x, y) of frame n is Y n, Cb x, Cr y.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/fake_host.h"

namespace zenlay::test {

struct FakeMedia {
  std::map<std::string, HostFileInfo> files;  // what the host can open
  std::vector<std::string> opened, closed;    // paths in order
  std::vector<uint32_t> openFlags;
  std::map<MediaHandle, std::string> open;
  int nextHandle = 1;
  int lastFrame = -1;
  bool failReads = false;
  std::vector<uint8_t> bitmap;  // delivered by getVideoFramePixels
};

inline FakeMedia fakeMedia;

inline HostFileInfo videoInfo(int width, int height, int bits = 24, int frames = 100) {
  HostFileInfo info{};
  info.flags = fileHasVideo;
  info.width = width;
  info.height = height;
  info.rate = 30;
  info.scale = 1;
  info.videoBits = bits;
  info.frameCount = frames;
  return info;
}

/// Call after resetFakeHost.
inline void installFakeMedia() {
  fakeMedia = FakeMedia{};
  HostFunctionTable& f = fakeHost.functions;
  f.openMediaFile = [](const char* path, HostFileInfo* info, uint32_t flags) -> MediaHandle {
    auto found = fakeMedia.files.find(path);
    if (found == fakeMedia.files.end()) return nullptr;
    fakeMedia.opened.push_back(path);
    fakeMedia.openFlags.push_back(flags);
    auto handle = reinterpret_cast<MediaHandle>(static_cast<intptr_t>(fakeMedia.nextHandle++) * 16);
    fakeMedia.open[handle] = path;
    *info = found->second;
    return handle;
  };
  f.closeMediaFile = [](MediaHandle handle) -> int32_t {
    fakeMedia.closed.push_back(fakeMedia.open.at(handle));
    fakeMedia.open.erase(handle);
    return 1;
  };
  f.readVideoFrame = [](MediaHandle handle, int32_t frame, FramePixel* image) -> int32_t {
    if (fakeMedia.failReads) return 0;
    const HostFileInfo& info = fakeMedia.files.at(fakeMedia.open.at(handle));
    fakeMedia.lastFrame = frame;
    for (int y = 0; y < info.height; y++)
      for (int x = 0; x < info.width; x++)
        image[y * environment.bufferWidth + x] = {static_cast<int16_t>(frame), static_cast<int16_t>(x),
                                                  static_cast<int16_t>(y)};
    return 1;
  };
  f.getVideoFramePixels = [](MediaHandle, int32_t frame) -> const void* {
    fakeMedia.lastFrame = frame;
    return fakeMedia.failReads ? nullptr : fakeMedia.bitmap.data();
  };
}

}  // namespace zenlay::test
