#include "cinora/desktop/editor.h"

extern "C" __attribute__((visibility("default"))) int runCinoraEditor(const cinora::EditorArguments& arguments) {
  return cinora::desktop::runEditor(arguments);
}
