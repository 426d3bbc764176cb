#include "zenlay/host/environment.h"

#include <algorithm>
#include <cstring>

#include "platform/window.h"

namespace zenlay {

Environment environment;

namespace {

constexpr int workMargin = 8;  // pixels beside and rows below a work image
constexpr int64_t maxWorkSide = INT32_MAX / static_cast<int>(sizeof(ObjectPixel)) - workMargin;

int64_t workSide(int wanted, int hostMax) {
  return std::max((int64_t{wanted} + workAlignment - 1) / workAlignment * workAlignment, int64_t{hostMax});
}

}  // namespace

bool deriveWorkSize(Environment& e, int maxW, int maxH) {
  bool wanted = maxW != 0 && maxH != 0;
  int64_t width = wanted ? workSide(maxW, e.maxWidth) : e.maxWidth;
  int64_t height = wanted ? workSide(maxH, e.maxHeight) : e.maxHeight;
  if (width > maxWorkSide || height > maxWorkSide) return false;
  e.workW = static_cast<int32_t>(width);
  e.workH = static_cast<int32_t>(height);
  e.workStride = e.workW + workMargin;
  e.workRows = e.workH + workMargin;
  e.workLineBytes = e.workStride * static_cast<int>(sizeof(ObjectPixel));
  e.workBufferBytes = std::max(int64_t{e.workLineBytes} * e.workRows + 16, minWorkBuffer);
  return true;
}

void showMessage(const char* text, uint32_t style) { platform::messageBox(nullptr, text, "Zenlay", style); }

bool pathFits(const char* path, size_t bytes) {
  if (strlen(path) < bytes) return true;
  showMessage("The path of the file is too long", boxWarning);
  return false;
}

}  // namespace zenlay
