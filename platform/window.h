// Windows as message targets, message boxes, the keyboard hook. A backend table carries them: without a desktop the
// null backend serves (windows only receive messages; message boxes go to standard error).
#pragma once

#include <cstdint>

namespace platform {

/// A handle stays harmless after its window is gone: messages to it, and to null, are dropped and give 0.
struct Window;
using WindowProcedure = intptr_t (*)(Window*, uint32_t message, intptr_t first, intptr_t second, void* user);

Window* createWindow(Window* owner, WindowProcedure, void* user);
void destroyWindow(Window*);  // and the windows it owns
Window* windowOwner(Window*);
intptr_t sendMessage(Window*, uint32_t message, intptr_t first, intptr_t second);
/// From any thread. Delivered by the next runPostedMessages; dropped when the window goes first.
void postMessage(Window*, uint32_t message, intptr_t first, intptr_t second);
/// Delivers what was posted before the call; what is posted meanwhile waits for the next one. User-interface thread.
void runPostedMessages();

enum BoxResult : int { boxOk = 1, boxCancel = 2, boxYes = 6, boxNo = 7 };
/// `style` as the platform numbers it: buttons in bits 0..3, icon in bits 4..7. Without a desktop the text goes to
/// standard error as one line `caption: text`, and a question is answered by its refusing button.
int messageBox(Window* owner, const char* text, const char* caption, uint32_t style);

/// Sees every key of the program's windows first. 1 = the key was taken.
using KeyHook = int (*)(int key, bool down);
struct HookHandle;
HookHandle* installKeyHook(KeyHook);
void removeKeyHook(HookHandle*);
/// For whoever receives keys: asks the hooks, the last installed first, until one takes the key.
bool runKeyHooks(int key, bool down);

/// A memory drawing surface compatible with the screen: 32 bits a pixel, top-down, `width` pixels a row, black at
/// first. Null when a side is not within 1..32767 or memory lacks.
struct Canvas;
Canvas* createMemoryCanvas(int width, int height);
void releaseCanvas(Canvas*);
uint32_t* canvasPixels(Canvas*);

/// What carries windows out; null entries keep the null backend's behaviour.
struct DesktopBackend {
  int (*messageBox)(Window* owner, const char* text, const char* caption, uint32_t style);
};
void setDesktopBackend(const DesktopBackend*);

}  // namespace platform
