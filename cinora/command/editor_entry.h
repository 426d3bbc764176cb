// The one entry of the module that holds the editor's windows.
#pragma once

#include <string>

namespace cinora {

struct EditorArguments {
  std::string file;     // to open; empty: none
  std::string plugins;  // folder of the modules; empty: PluginHost::defaultFolder
};
/// Runs until the user quits and gives the exit status.
using EditorEntry = int (*)(const EditorArguments&);
inline constexpr char editorModule[] = "cinora_desktop.so";
inline constexpr char editorEntry[] = "runCinoraEditor";

}  // namespace cinora
