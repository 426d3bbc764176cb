// The timeline window as the rest of the editor sees it: what to redraw, where the view stands. Frames are 0-based.
#pragma once

#include <cstdint>
#include <span>

#include "zenlay/model/records.h"

namespace zenlay {

// Within a message to the timeline window these only note what is to be drawn when it has been dealt with; otherwise
// they draw at once.
void redrawTimeline();  // all of it
void redrawLayers(const bool (&touched)[layersPerScene]);
void redrawObjects(std::span<const int> objects);
void redrawChain(int object);
void redrawRuler();

/// Shows the object in the settings window, and which one that is on the timeline.
void makeCurrent(int object);
/// Clamped to the scene; moves the cursor line, updates the title, follows with the current object and the view as the
/// preferences ask. Does not tell the host.
void setCursorFrame(int frame);
/// The same, telling the host first, which then asks for the frame to be redrawn.
void moveCursor(int frame);
void setPlaybackFrame(int frame);  // -1 removes the marker
void setLeftFrame(int frame);
void setTopLayer(int layer);
void setTimelineZoom(int level);  // the cursor stays at the same x
void centreCursor();              // when it is out of view
void zoomToFit();                 // the closest level that shows the whole scene
/// Scrolls until the object's layer and its start are in view.
void revealObject(int object);
/// As far as "Track selected object" asks for it, the object under the cursor becomes current in place of the one on
/// its layer.
void followCursor();
void updateScrollBars();
void updateTitle();
/// The frames of the current scene and of the host's clip with it. False after a message when the host refuses.
bool setSceneLength(int frames);
/// Lets the current scene reach as far as this frame; never shortens it.
void extendScene(int lastFrame);
/// The layer and mark height follow `small_layer`; the window is resized to show the same rows.
void applyLayerHeight();

/// Called by the host's playback window.
void playbackNotification(int frame, uint32_t flags);

/// Where the press that opened the context menu lay: the frame as it stands, the layer, and the section boundary near
/// it (the object behind the boundary, or -1).
struct ClickPosition {
  int frame = 0, layer = 0, section = -1;
};
extern ClickPosition clickPosition;
/// Where the last clicks were, as another scene is entered.
void forgetClicks();
/// To be told of every object before it goes.
void forgetObject(int object);

/// To the timeline window: moves what is being dragged by `first` frames, without snapping.
inline constexpr uint32_t messageNudge = 0x8000;

}  // namespace zenlay
