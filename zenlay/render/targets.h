// The images a frame is built in: per nesting level three object-sized images (object, work, spare) and, for nested
// scenes, the scene's own picture.
//
// Every image knows the rectangle outside of which its pixels are zero, so that an empty image costs what was drawn
// into it last. Whatever draws through the pipeline reports its rectangle (noteDrawn); an effect that is handed an
// image may write anywhere, which makes the whole image used (noteTouched).
#pragma once

#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/model/records.h"
#include "zenlay/render/pipeline.h"

namespace zenlay {

/// Right and bottom are exclusive; empty when left >= right or top >= bottom.
struct PixelRect {
  int left, top, right, bottom;
};
inline bool isEmpty(const PixelRect& r) { return r.left >= r.right || r.top >= r.bottom; }
PixelRect unite(const PixelRect&, const PixelRect&);
PixelRect intersect(const PixelRect&, const PixelRect&);

struct WorkImage {
  void* memory;  // the reservation; null until needed
  size_t bytes;
  uint8_t* pixels;
  int lineBytes, pixelBytes;  // geometry in which `used` counts
  PixelRect used;
};

inline constexpr int imagesPerLevel = 3;

/// State of the scene being rendered at one nesting depth.
struct RenderLevel {
  EffectProcessInfo info;
  WorkImage images[imagesPerLevel];
  WorkImage picture[2];  // frame and scratch of a nested scene; unused at depth 0
  ObjectRecord* live[layersPerScene];
  ObjectRecord* groups[layersPerScene];
  uint32_t clipFlags[layersPerScene];
  int32_t layerTime[layersPerScene];
  PreviousObject previous;
  bool previousWanted;    // an object of the frame shows the previous one again, whose picture has to stay until then
  WorkImage clipImage;    // where the image cache has too few slots
  PixelRect clipArea;     // of the clip source, outside of which it counts as transparent
  bool individualsDrawn;  // an effect has drawn the current object in pieces (drawObject)
  ObjectRecord* runningObject;  // whose slot is being called, null outside calls
  int runningSlot;
  bool flattening;        // the frame is an empty image that becomes the object image
  uint32_t flattenBlend;  // blend mode bits the drawing effect asked for meanwhile
};
extern RenderLevel renderLevels[maxSceneDepth];
extern int sceneDepth;  // depth being rendered, -1 outside rendering

inline RenderLevel& levelOf(const EffectProcessInfo* info) { return renderLevels[info->depth]; }

/// Where the pipeline and the image cache get their memory from; tests replace it to make it fail.
extern void* (*reserveRenderMemory)(size_t bytes);

/// The level's images for the current work size. 0 when out of memory.
int prepareLevel(int depth);
/// The pictures of a nested scene at that depth.
int preparePictures(int depth);

/// The current frame as a target. Frames are ObjectPixels while flag processFlattening is set, else FramePixels.
inline bool frameHasAlpha(const EffectProcessInfo* info) { return info->host.flags & processFlattening; }
ImageTarget frameTarget(const EffectProcessInfo*);
/// The object image as a region, and the blend flag that tells its pixel format.
ImageRegion objectRegion(const EffectProcessInfo*);
inline uint32_t objectFormat(const EffectProcessInfo* info) { return info->opaqueImage ? 0u : blendSourceAlpha; }

/// `rect` of the image starting at `pixels` may have been drawn into; ignored for images of others.
void noteDrawn(const void* pixels, const PixelRect& rect);
/// Pixels that a picture with these corners (1/4096 pixel, as drawImageInSpace gives them) can have reached.
PixelRect drawnBounds(const int32_t corners[8]);
/// The object and work image may have been written anywhere; with `frame` the frame and its scratch image too.
void noteTouched(const EffectProcessInfo*, bool frame);
/// Part of the object image that may hold anything but zeros, inside its size.
PixelRect objectCoverage(const EffectProcessInfo*);

/// Gives the object and work image of the record two of the level's images. The spare is the previous object's picture
/// where that has to stay (also controls and filter objects leave it alone), else the one known to be nearly empty.
void assignImages(EffectProcessInfo*);
/// The image that is neither object nor work image, cleared.
WorkImage* emptySpare(const EffectProcessInfo*);
/// Zeroes what is used and takes on a new geometry.
void clearImage(WorkImage*, int lineBytes, int pixelBytes);

}  // namespace zenlay
