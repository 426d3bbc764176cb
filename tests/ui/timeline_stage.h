// A timeline window over an empty model and the fake host: 640 x 197 pixels, 5 rows, one pixel a frame, 1000 frames.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "platform/backend.h"
#include "platform/user_input.h"
#include "platform/window_record.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/test_effects.h"
#include "tests/ui/stage.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/input/window_procedure.h"
#include "zenlay/ui/project/clip.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::test {

inline constexpr intptr_t shift = platform::mouseShift, ctrl = platform::mouseCtrl, alt = platform::mouseAlt;

class Timeline : public Stage {
 protected:
  void SetUp() override {
    resetFakeHost();
    useTestEffects();
    fakeHost.frameCount = 1000;
    fakeHost.selectionLast = 999;
    fakeHost.intSettings = {{"zoom", 19}, {"object_snap", 0}};
    modelHooks = {.objectDeleted = forgetObject, .trackValues = evaluateSlot};
    mainWindow = platform::createWindow(nullptr, noteMessage, this, {.style = platform::windowVisible});
    window = platform::createWindow(mainWindow, forward, nullptr, {.style = platform::windowVisible});
    environment.timelineWindow = window;
    environment.hostMainWindow = mainWindow;
    timelineView.sceneLength = fakeHost.frameCount;
    clearSelection();
    send(messageWindowSetUp);
    platform::focusWindow(window);
  }
  void TearDown() override {
    EXPECT_EQ(modelFault(), "");
    abandonDrag();
    clearSelection();
    send(messageWindowClose);
    platform::destroyWindow(mainWindow);
    environment.timelineWindow = nullptr;
    platform::user::releaseAll();
    modelHooks = {};
    resetFakeHost();
  }

  int send(uint32_t message, intptr_t first = 0, intptr_t second = 0) {
    return static_cast<int>(platform::sendMessage(window, message, first, second));
  }
  static int xOf(int frame) { return xOfFrame(frame); }
  /// Middle of the layer's row.
  static int rowOf(int layer) { return 42 + (layer - timelineView.topLayer) * timelineView.layerHeight + 15; }

  intptr_t press(int x, int y, intptr_t state = 0) {
    return platform::user::mouse(window, platform::messageLeftDown, {x, y}, state | platform::mouseLeft);
  }
  intptr_t moveTo(int x, int y, intptr_t state = 0) {
    return platform::user::mouse(window, platform::messageMouseMove, {x, y}, state | platform::mouseLeft);
  }
  intptr_t release(int x, int y, intptr_t state = 0) {
    return platform::user::mouse(window, platform::messageLeftUp, {x, y}, state);
  }
  void click(int x, int y, intptr_t state = 0) {
    press(x, y, state);
    release(x, y, state);
  }
  /// From a frame of a layer to another, in one move.
  void drag(int frame, int layer, int toFrame, int toLayer, intptr_t state = 0) {
    press(xOf(frame), rowOf(layer), state);
    moveTo(xOf(toFrame), rowOf(toLayer), state);
    release(xOf(toFrame), rowOf(toLayer), state);
  }

  /// .avi is a film, .mov one with sound unless its name says "silent", .wav a sound.
  static void acceptMedia() {
    constexpr char table[] = ".avi\0Video file\0.mov\0Video file\0.MOV\0Audio file\0.wav\0Audio file\0.odd\0Nothing\0";
    memcpy(extensionTable, table, sizeof table);
    fakeHost.functions.openMediaFile = [](const char* path, HostFileInfo*, uint32_t) {
      static int anyMedia;
      return strstr(path, "silent") ? nullptr : reinterpret_cast<MediaHandle>(&anyMedia);
    };
    fakeHost.functions.closeMediaFile = [](MediaHandle) -> int32_t { return 1; };
  }
  int drop(const std::string& path, platform::Point at) {
    platform::DroppedFiles dropped{at, &path, 1};
    return send(platform::messageFilesDropped, 0, reinterpret_cast<intptr_t>(&dropped));
  }

  static int create(int first, int last, int layer, int effect = testFilterObject) {
    return Stage::create(first, last, layer, effect);
  }
  /// Cuts the object at the frames; its sections.
  static std::vector<int> createChain(int first, int last, int layer, const std::vector<int>& cuts) {
    int piece = create(first, last, layer);
    int head = piece;
    for (int frame : cuts) piece = addSectionAt(piece, frame);
    return sectionsOf(head);
  }
  static int addSectionAt(int object, int frame) { return addSection(object, frame, sectionSplit); }

  platform::Window* window;
  platform::Window* mainWindow;
  struct Noted {
    uint32_t message;
    intptr_t first;
  };
  std::vector<Noted> noted;  // by the host's main window

 private:
  static intptr_t forward(platform::Window* w, uint32_t message, intptr_t first, intptr_t second, void*) {
    return timelineWindowProcedure(w, message, first, second, nullptr, nullptr);
  }
  static intptr_t noteMessage(platform::Window*, uint32_t message, intptr_t first, intptr_t, void* user) {
    static_cast<Timeline*>(user)->noted.push_back({message, first});
    return 0;
  }
};

}  // namespace zenlay::test
