// A host substitute for tests: a function table whose answers and records of calls are plain data.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "zenlay/host/environment.h"
#include "zenlay/host/host_interface.h"

namespace zenlay::test {

struct FakeHost {
  HostFunctionTable functions{};
  HostSystemInfo system{};
  HostFileInfo clip{};
  bool clipOpen = true;
  int threads = 2;               // workers of runOnThreads (0: refuses nothing, runs on the caller as one)
  int currentFrame = 0;
  int frameCount = 300;
  int selectionFirst = 0, selectionLast = 299;
  std::map<std::string, int> intSettings;
  std::map<std::string, std::string> stringSettings;
  std::vector<HostFilterRecord*> filters;
  std::string fileName;          // what the file dialogs answer; empty = cancelled
  std::vector<std::string> calls; // names of operations with side effects, in order
};

extern FakeHost fakeHost;

/// A fresh host (640x480 largest image unless given, 30 frames per second) put into `environment`, an empty model,
/// default preferences, message boxes recorded.
void resetFakeHost(int maxWidth = 640, int maxHeight = 480);
/// Texts of the message boxes shown since the last reset.
std::vector<std::string>& shownMessages();

}  // namespace zenlay::test
