#include "zenlay/host/environment.h"

#include <algorithm>

#include "platform/window.h"

namespace zenlay {

Environment environment;

namespace {

int roundUp(int value, int unit) { return (value + unit - 1) / unit * unit; }

}  // namespace

void deriveWorkSize(Environment& e, int maxW, int maxH) {
  e.workW = e.maxWidth;
  e.workH = e.maxHeight;
  if (maxW != 0 && maxH != 0) {
    e.workW = std::max(roundUp(maxW, workAlignment), e.maxWidth);
    e.workH = std::max(roundUp(maxH, workAlignment), e.maxHeight);
  }
  e.workStride = e.workW + 8;
  e.workRows = e.workH + 8;
  e.workLineBytes = e.workStride * static_cast<int>(sizeof(ObjectPixel));
  e.workBufferBytes = std::max(int64_t{e.workLineBytes} * e.workRows + 16, minWorkBuffer);
}

void showMessage(const char* text, uint32_t style) { platform::messageBox(nullptr, text, "Zenlay", style); }

}  // namespace zenlay
