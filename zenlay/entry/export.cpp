// The module's one export.
#include "zenlay/entry/plugin.h"

extern "C" __attribute__((visibility("default"))) zenlay::HostFilterRecord** GetFilterTableList() {
  static zenlay::HostFilterRecord* table[] = {&zenlay::mainFilterRecord, &zenlay::audioFilterRecord, nullptr};
  return table;
}
