// Filters of another maker: "Lift" raises the luma by its track, "Sulk" refuses to start, "Broken" has no track names.
#include "zenlay/host/host_interface.h"

namespace {

using namespace zenlay;

const char* const trackNames[] = {"Amount"};
const int32_t trackDefaults[] = {100}, trackMinima[] = {0}, trackMaxima[] = {4096};

int lift(HostFilterRecord* record, FrameProcessInfo* info) {
  int row = info->lineBytes / info->pixelBytes;
  for (int y = 0; y < info->height; y++)
    for (int x = 0; x < info->width; x++) {
      int16_t& luma = info->frame[static_cast<ptrdiff_t>(y) * row + x].y;
      luma = static_cast<int16_t>(luma + record->trackValues[0]);
    }
  return 1;
}

HostFilterRecord liftRecord{.name = "Lift",
                            .trackCount = 1,
                            .trackNames = trackNames,
                            .trackDefaults = trackDefaults,
                            .trackMinima = trackMinima,
                            .trackMaxima = trackMaxima,
                            .process = lift};
HostFilterRecord sulk{.name = "Sulk", .initialise = [](HostFilterRecord*) { return 0; }};
HostFilterRecord broken{.name = "Broken", .trackCount = 1};

}  // namespace

extern "C" __attribute__((visibility("default"))) HostFilterRecord** GetFilterTableList() {
  static HostFilterRecord* table[] = {&liftRecord, &sulk, &broken, nullptr};
  return table;
}
