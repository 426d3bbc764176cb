// The exported entry and the callbacks of the two filter records.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

extern HostFilterRecord mainFilterRecord;
extern HostFilterRecord audioFilterRecord;

/// The render service published for other plug-ins of the process, in this order.
struct RenderService {
  int (*beginRender)(int32_t values[6]);  // save range, output size, rate, scale
  int (*endRender)();
  void* (*renderFrame)(int32_t frame);
};

int startUp(HostFilterRecord*);
int shutDown(HostFilterRecord*);

}  // namespace zenlay
