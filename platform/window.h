// Windows as message targets, message boxes, the keyboard hook. A backend table carries them: without a desktop the null
// backend serves (windows only receive messages; message boxes go to standard error).
#pragma once

#include <cstdint>

namespace platform {

struct Window;
using WindowProcedure = intptr_t (*)(Window*, uint32_t message, intptr_t first, intptr_t second, void* user);

Window* createWindow(Window* owner, WindowProcedure, void* user);
void destroyWindow(Window*);
Window* windowOwner(Window*);
intptr_t sendMessage(Window*, uint32_t message, intptr_t first, intptr_t second);
/// Delivered by the next runPostedMessages; dropped when the window goes first.
void postMessage(Window*, uint32_t message, intptr_t first, intptr_t second);
void runPostedMessages();

enum BoxResult : int { boxOk = 1, boxCancel = 2, boxYes = 6, boxNo = 7 };
/// `style` as the platform numbers it: buttons in bits 0..3, icon in bits 4..7.
int messageBox(Window* owner, const char* text, const char* caption, uint32_t style);

/// 1 = the key was taken.
using KeyHook = int (*)(int key, bool down);
struct HookHandle;
HookHandle* installKeyHook(KeyHook);
void removeKeyHook(HookHandle*);

/// A memory drawing surface compatible with the screen.
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
