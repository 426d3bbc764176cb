// The render service published for other plug-ins of the process: they open the shared memory by its name
// ("zenlay_12337_<process id>") and call the three entry points on the host's user-interface thread, never while the
// host is inside a call of this plug-in.
#pragma once

#include <cstdint>

namespace zenlay {

/// The layout of the shared memory.
struct RenderService {
  /// values: first and last frame of the save range, output width and height, rate and scale of the clip. 0 when the
  /// project has no frames or memory is short.
  int (*beginRender)(int32_t values[6]);
  int (*endRender)();
  /// The frame as 32-bit bottom-up rows with straight alpha, in the work buffer; null outside begin and end.
  void* (*renderFrame)(int32_t frame);
};

/// A failure is ignored: the plug-in works without the service.
void publishRenderService();
void closeRenderService();

}  // namespace zenlay
