// The one table through which built-in effects reach the rest of Zenlay (`EffectDefinition::services`).
//
// The first 34 places are the stated interface, in order; what follows serves the built-in effects. All operations run
// on the host's user-interface thread. Operations taking a ref return 0, or do nothing, for ref 0.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_definition.h"
#include "zenlay/effects/process_info.h"

namespace zenlay {

struct ObjectData {
  int32_t firstFrame, lastFrame;  // lastFrame is one more when another section follows
  int32_t* startValues;
  int32_t* endValues;
  int32_t* modes;
  int32_t* checks;
  void* extraData;
  int32_t* params;
};

/// Filter bits of `findObject` and `findNextSlot`.
enum FindFilter : uint32_t {
  findCameraTarget = 0x1,
  findMedia = 0x8,
  findDrawing = 0x10,
  findFilterEffect = 0x20,
  findCamera = 0x40,
  findCameraEffect = 0x80,
  findNotAudio = 0x10000,
  findAudio = 0x20000,
};

/// Flags of blendCopy, fill and drawImage3d; bits 24..28 carry the blend mode.
enum BlendFlag : uint32_t {
  blendSourceAlpha = 0x1,        // the source holds ObjectPixels
  blendDestinationAlpha = 0x2,   // the destination holds ObjectPixels
  blendClip3d = 0x4,             // clip to the 3D drawing area
  blendClipSecondary = 0x10,     // clip to the secondary drawing area
  drawHideBack = 0x100000,       // drawImage3d: an image seen from behind is not drawn
};
inline constexpr uint32_t blendModeBits = 31u << 24;
constexpr uint32_t blendFlags(int mode) { return static_cast<uint32_t>(mode) << 24; }
constexpr int blendModeOf(uint32_t flags) { return static_cast<int>(flags >> 24 & 31); }

/// One placement of a rectangle of an image in space (see render/draw.h for the arithmetic).
struct ImagePlacement {
  int32_t x, y, z;        // 1/4096 pixel from the frame's centre
  int32_t rx, ry, rz;     // 65536 per turn
  int32_t zoom, aspect;   // 16.16
  int32_t transparency;   // 0..4096
  int32_t cx, cy, cz;     // rotation centre within the source rectangle, 1/4096 pixel
};

/// Part of an image. Object images have rows `bufferLine` pixels apart.
struct ImageRegion {
  const void* pixels;  // ObjectPixel with blendSourceAlpha, else FramePixel
  int32_t x, y, width, height;
  int32_t lineBytes;
};

/// An image to draw onto.
struct ImageTarget {
  void* pixels;           // ObjectPixel with blendDestinationAlpha, else FramePixel
  int32_t width, height;
  int32_t lineBytes;
};

/// Corner of a projected quadrilateral or polygon.
struct DrawVertex {
  float x, y;  // destination, pixels (pixel centres at .5)
  float w;     // perspective: 1 / depth, 1 when flat
  float u, v;  // source, pixels
};

struct SystemDescription {
  int32_t version;  // 9200
  int32_t maxWidth, maxHeight;
  int32_t bufferLine, bufferLines, lineBytes;
  int32_t rate, scale;
  int32_t bufferState;
};

/// What `loadImage` may be asked besides the picture.
enum LoadImageFlag : uint32_t { loadImageExists = 0x10000 };
struct ImageClip {
  int32_t left, top, right, bottom;
};

/// `drawFigure`: see media/figures.h.
struct FigureRequest {
  const char* name;   // empty for built-in figures
  int32_t type;       // 0 "Background" .. 6 "Star"
  uint8_t color[3];   // red, green, blue
  int32_t size, lineWidth, aspect;
  bool colourise;
};

/// `openMedia`: the tail of a media effect's extra data.
struct MediaReference {
  char file[260];
  uint32_t handleKey;    // generation | slot of the cached handle last used, 0 = none
  uint32_t handleStamp;  // tick count at which it was opened, 0 = none
};

/// Flag of chooseColour and pickColour: Y, Cb and Cr instead of 0xRRGGBB.
inline constexpr uint32_t chooseYcc = 0x200;
/// chooseColour's colour when the user wants none; never with chooseYcc.
inline constexpr int32_t chosenNoColour = 0x1000000;
/// chooseScene's options.
enum SceneOption { sceneMatchLength = 0x1, scenePlayReverse = 0x2 };
/// A picked colour as a message parameter; 48 bits.
inline intptr_t packedYcc(FramePixel c) {
  return static_cast<intptr_t>(uint64_t{static_cast<uint16_t>(c.cr)} << 32 |
                               uint64_t{static_cast<uint16_t>(c.cb)} << 16 | static_cast<uint16_t>(c.y));
}
inline FramePixel unpackedYcc(intptr_t c) {
  return {static_cast<int16_t>(c), static_cast<int16_t>(c >> 16), static_cast<int16_t>(c >> 32)};
}

/// A number that the user is asked for.
struct NumberItem {
  const char* label;
  int32_t value, min, max;
};

/// Kinds of getSettingsControl: the controls of a track, those of a check, and the slot's (index 0).
enum SettingsControl : int {
  trackNameButton,
  trackStartBox,
  trackEndBox,
  firstCheckControl,
  checkBoxControl = firstCheckControl,
  checkLabelControl,
  checkButtonControl,
  checkListControl,
  checkToggleControl,
  slotTitle,  // the check box with the effect's name, which follows a new text's width
  settingsControls
};

struct EffectServiceTable {
  void (*objectChanged)(ObjectRef);                                                          // 0
  int (*getObjectData)(ObjectRef, ObjectData*);
  ObjectRef (*nextSection)(ObjectRef);
  ObjectRef (*previousSection)(ObjectRef);
  ObjectRef (*chainHead)(ObjectRef);
  ObjectRef (*chainHeadViaLast)(ObjectRef);                                                  // 5
  int (*chainLength)(ObjectRef);
  ObjectRef (*findObject)(int frame, int layer, int scene, const char* name, uint32_t filter);
  ObjectRef (*findNextSlot)(ObjectRef, const char* name, uint32_t filter);
  /// Handles are recorded (render/handles.h): at most 256 a frame, of the host's own frame, not for locked layers.
  void (*addHandle)(ObjectRef, int x, int y, int w, int h, const int16_t parameters[4], uint32_t kind, int value);
  void (*addFreeHandle)(int x, int y, int w, int h, const int16_t parameters[4], uint32_t flags);  // 10
  void (*addHandle3d)(ObjectRef, int coordinate1, int coordinate2, int x, int y, int w, int h,
                      const int16_t parameters[4], uint32_t flags, int value);
  /// Kept (effects/service_hooks.h) for the camera objects; drawing uses the default camera until they come.
  void (*setTransform3d)(const void* camera, const void* object);
  /// Eight corner coordinates (x, y of four corners, 1/4096 pixel) of what was drawn, valid until the next call; null
  /// when nothing can be drawn. A null destination only computes the corners. `corners`, when given, receives a copy.
  const int32_t* (*drawImage3d)(const ImageTarget*, const ImageRegion*, const ImagePlacement*, uint32_t flags,
                                int32_t corners[8]);
  /// Destination rows are bufferLine pixels apart; null only reports the size. 1 / 0.
  int (*loadImage)(ObjectPixel*, const char* path, int32_t* width, int32_t* height, const ImageClip*, uint32_t flags);
  const char* (*imageFileFilter)();                                                          // 15
  /// drawText, getSettingsControl, setTrackRange and chooseColour are 0 until their rooms install themselves in
  /// effects/service_hooks.h, as media/ does at start-up.
  int (*drawText)(const struct TextRequest*);
  /// Destination geometry: the current frame, or the maximum image with blendDestinationAlpha.
  void (*blendCopy)(void* destination, int x, int y, const void* source, int sx, int sy, int w, int h,
                    int transparency, uint32_t flags);
  /// A destination with alpha takes the colour as it is, an opaque one is mixed with it; other modes than Normal blend.
  void (*fill)(void* destination, int x, int y, int w, int h, ObjectPixel colour, uint32_t flags);
  WindowHandle (*getSettingsControl)(ObjectRef, int kind, int index);
  int (*setTrackRange)(ObjectRef, int track, int min, int max, int denominator);             // 20
  int (*setObjectName)(ObjectRef, const char* name);
  /// At most 16 vertices.
  void (*drawPolygon)(const ImageTarget*, const DrawVertex*, int count, const ImageRegion*, int transparency,
                      uint32_t flags);
  /// Bottom-up rows padded to 4 bytes become top-down rows bufferLine pixels apart. bits 24 or 32.
  void (*convertRgb)(ObjectPixel*, const void* source, int width, int height, int bits);
  void* empty24;
  /// which: 0 all tracks of the slot (returns their number); 1..255 track which - 1; else a `const char*` name.
  int (*getTrackValues)(ObjectRef, int frame, int subFrame, int32_t* values, intptr_t which);  // 25
  int (*setOperatedObject)(ObjectRef, int value);
  int (*chooseColour)(ObjectRef, void* colour, uint32_t flags);
  /// Moves the chain's end, up to the next object of the layer; the last section keeps a frame. Flags mean nothing yet.
  int (*changeObjectLength)(ObjectRef, int length, uint32_t flags);
  int (*getSystem)(SystemDescription*);
  int (*getHostFrame)();                                                                     // 30
  int (*setHostFrame)(int frame);
  void (*recordUndo)(ObjectRef);
  int (*isSelected)(ObjectRef);                                                              // 33

  // ---- For the built-in effects ----

  /// The entry's pixels (see render/image_cache.h); `found` tells whether they are from an earlier call.
  void* (*effectCache)(int32_t key, int width, int height, int bits, int index, bool* found);
  /// Work memory of `size` bytes owned by (ref's chain head, slot), zeroed when created; null when out of memory.
  void* (*workMemory)(ObjectRef, size_t size, bool* created);
  /// Integral of a track over the frames since the object's start, in value x hundredths of a frame.
  int64_t (*trackIntegral)(EffectDefinition*, EffectProcessInfo*, int track);
  /// The same of any slot, at the record's time.
  int64_t (*trackIntegralOf)(ObjectRef, EffectProcessInfo*, int track);
  /// Slot 0 of the object whose time another one follows: the last in the order of layers before the object, in its
  /// scene, that starts on the same frame, heads its chain and begins with the effect of that name. 0 when there is none.
  ObjectRef (*companion)(ObjectRef, const char* name);
  /// Adds the sound of `scene` at its frame to `samples`, `count` samples per channel of the record's channels; 0 when
  /// refused (nested too deep, no such scene). A frame that follows the last one continues its sound.
  int (*mixScene)(EffectProcessInfo*, int scene, int frame, int16_t* samples, int count);
  /// Frames of the scene.
  int (*sceneLength)(int scene);
  /// Makes the object image's two buffers change places.
  void (*swapImages)(EffectProcessInfo*);
  /// Turns an opaque object image into one with full alpha, in place.
  void (*addAlpha)(EffectProcessInfo*);
  /// Places the object with its current values into an empty frame-size image, which becomes the object image.
  int (*flattenObject)(EffectProcessInfo*);
  /// Draws the object image as an object of its own with the placement values of `info`: it runs through the rest of
  /// the chain and is placed; `info` is as before afterwards, the images' pixels are not. 1, or 0 when that ended it.
  int (*drawObject)(EffectProcessInfo*);
  /// Combines the drawing effect's twelve slots with the placement of `info` and draws (render/placement.h).
  int (*placeObject)(EffectDefinition*, EffectProcessInfo*, uint32_t flags);
  /// Renders `scene` at `frame` and `subFrame` into an own frame; null when refused. Valid until the next call at the
  /// same depth. Rows are `lineBytes` apart; with `alpha` set the picture holds ObjectPixels.
  const void* (*renderScene)(EffectProcessInfo*, int scene, int frame, int subFrame, int32_t* width, int32_t* height,
                             int32_t* lineBytes, bool* alpha);
  /// Renders the layers below the object that is running at frame `frame` of its scene, as a picture of the size and
  /// pixel format of the current frame; null when refused. Valid until the next call of this or of renderScene at the
  /// same depth. Rows are `lineBytes` apart.
  const void* (*renderLayersBelow)(EffectProcessInfo*, int frame, int32_t* lineBytes);
  const struct PreviousObject* (*previousObject)();
  int (*drawFigure)(EffectDefinition*, EffectProcessInfo*, const FigureRequest*);
  MediaHandle (*openMedia)(MediaReference*, uint32_t flags, HostFileInfo*);
  MediaHandle (*openMediaByPath)(const char* path, uint32_t flags, HostFileInfo*);
  void (*releaseMedia)(MediaReference*);
  /// Waits for the next click on the screen, whose colour comes as commandTakeColor with the check. 1 / 0.
  int (*pickColour)(ObjectRef, int check, uint32_t flags);
  /// The scene chosen from a dialog, or -1. `options` (SceneOption) are offered beside it unless null.
  int (*chooseScene)(ObjectRef, int current, int* options);
  const char* (*sceneName)(int scene);
  /// A dialog with the numbers, at most 16; 0 when cancelled, and then they are as before.
  int (*askNumbers)(ObjectRef, NumberItem*, int count);
};

/// The object drawn last, for "Previous object".
struct PreviousObject {
  const void* image;  // null when nothing was drawn yet
  int32_t width, height;
  int32_t opaqueImage;
  int32_t ox, oy, oz, rx, ry, rz, cx, cy, cz, zoom, aspect, transparency;
};

/// Spreads rows over the host's workers: work(first, last) on disjoint ranges, inline when there are few rows.
inline constexpr int minThreadedRows = 64;
template <class Work>
void overRows(const HostFunctionTable* host, int rows, Work&& work) {
  if (rows < minThreadedRows) {
    work(0, rows);
    return;
  }
  struct Job {
    Work* work;
    int rows;
  } job{&work, rows};
  host->runOnThreads(
      [](int index, int count, void* first, void*) {
        Job* job = static_cast<Job*>(first);
        int begin = static_cast<int>(int64_t{job->rows} * index / count);
        int end = static_cast<int>(int64_t{job->rows} * (index + 1) / count);
        if (begin < end) (*job->work)(begin, end);
      },
      &job, nullptr);
}

}  // namespace zenlay
