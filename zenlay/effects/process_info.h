// The record handed to every effect: the frame being rendered and the state of the object being built.
#pragma once

#include <cstdint>

#include "zenlay/effects/pixels.h"
#include "zenlay/host/host_interface.h"

namespace zenlay {

struct ObjectRecord;

/// Bits that Zenlay sets in `EffectProcessInfo::host.flags`, besides the host's own.
enum ProcessFlag : uint32_t {
  processHandles = 0x10,         // the selected object, and its slot may draw handles
  processTakesOpaque = 0x40,     // the next slot accepts an opaque image
  processLaterTarget = 0x80,     // runs for an object other than the first of a target list
  processFlattening = 0x100,     // the object is drawn into an empty frame-size image
  processFastPreview = 0x200,
  processPreparatory = 0x400,
  processNested = 0x800,
};
/// Of the host's record: the scene alone, without what is shown over it while it is edited.
inline constexpr uint32_t processWithoutOverlay = 0x1000;

/// Bits of `EffectProcessInfo::state`.
enum PlacementState : uint32_t {
  stateFlattened = 0x1,        // the object image is already a frame-size picture
  stateFinal = 0x2,            // final placement reached
  stateFlat = 0x4,             // no rotation, zoom 1
  stateFaceCamera = 0x100,
  stateFaceCameraBoth = 0x200, // horizontal and vertical only
  stateFaceCameraHorizontal = 0x400,
  stateNoShadow = 0x2000,
  stateThroughCamera = 0x8000,
  stateShadowPass1 = 0x10000,
  stateShadowPass2 = 0x20000,
};

inline constexpr int zoomOne = 0x10000;     // 16.16
inline constexpr int subPixel = 4096;       // positions are in 1/4096 pixel
inline constexpr int fullTurn = 65536;

/// Clip marks per layer.
enum ClipMark : uint32_t { clipSource = 1, clipped = 2 };

/// A block of sound while an audio effect runs. The host's buffer, its sample count and its channels stand in the copy of
/// the host's record (`EffectProcessInfo::host`); `host.sampleCount` counts samples per channel.
struct AudioBlock {
  int16_t* samples;    // the object's own, interleaved like the host's
  int32_t rate;        // samples per second of the project
  int32_t frame;       // scene frame of the block
  int32_t time;        // at which the object is heard, hundredths of a frame; other than `frame` under a time control
  int32_t speed;       // of that time: 100000 = normal, 0 or less while it stands or runs backward
  int32_t start, end;  // first and last frame of the object (of its chain)
};

struct EffectProcessInfo {
  /// Copy of the host's record. `frameNumber` and `frameCount` are rewritten per object: frames since the first frame
  /// of the object (of its chain) and the length of the object (chain). `width`, `height`: the scene's size.
  FrameProcessInfo host;

  int32_t absoluteFrame;        // scene frame at which the object is evaluated
  ObjectPixel* objectImage;     // rows `bufferLine` pixels apart; FramePixel rows (same bytes) while `opaqueImage`
  ObjectPixel* workImage;       // same size, free for effects
  int32_t objectWidth, objectHeight;
  int32_t ox, oy, oz;           // offset from the drawing position, 1/4096 pixel
  int32_t rx, ry, rz;           // 65536 per turn
  int32_t cx, cy, cz;           // rotation centre, 1/4096 pixel
  int32_t zoom, aspect;         // 16.16
  int32_t transparency;         // 0 opaque .. 4096 invisible
  int32_t bufferLine;           // pixels per row: maximum width + 8
  int32_t bufferHeight;         // maximum height, a multiple of 8
  int32_t opaqueImage;          // 1: objectImage holds FramePixels in rows bufferLine * 8 bytes apart
  uint32_t state;               // PlacementState
  int32_t rate, scale;          // frames per second of the project
  int32_t frameOffset;          // frames added to the scene frame
  int32_t hostFrame;            // of the host's film that the picture is for, through all nested scenes
  int32_t subFrame;             // hundredths, 0..99
  int32_t startCorrection;
  int32_t depth;                // nesting of scenes, 0 for the host's frame
  int32_t index, num;           // individual object, 0 and 1 normally
  uint32_t* clipFlags;          // [layersPerScene] ClipMark; null when nothing clips this frame
  int32_t* layerTime;           // [layersPerScene] hundredths of a frame
  ObjectRecord** layerObjects;  // [layersPerScene]; null unless a filter object is present
  ObjectRecord** layerGroups;   // [layersPerScene] governing group control; null unless one is present
  ObjectRecord* currentObject;
  ObjectRecord* drawableObject; // null while a control or filter object runs
  uint32_t blendBits;           // blend mode in bits 24..28
  uint32_t startTick;           // milliseconds
  int32_t offsetX, offsetY;     // where the host's frame lies inside a larger scene frame
  int32_t clipValid;            // 1: the stored clip source is valid for the next layer
  int32_t maxWidth, maxHeight;  // largest image of this run
  AudioBlock* audio;            // null in a video frame, where all above holds; sound leaves the images null
};

inline constexpr int normalTimeSpeed = 100000;

/// Where the last block of an object ended, for effects that go on from there.
struct BlockSequence {
  int32_t nextFrame, nextTime;
};
/// Whether the block goes on from the last one in playback; remembers it for the next call.
inline bool continues(BlockSequence* sequence, const AudioBlock& block) {
  constexpr int64_t frameTime = 100;  // a time control's steps are rounded by less
  int64_t jump = int64_t{block.time} - sequence->nextTime;
  bool next = block.frame == sequence->nextFrame && jump <= frameTime && jump >= -frameTime;
  sequence->nextFrame = block.frame + 1;
  sequence->nextTime = static_cast<int32_t>(block.time + frameTime * block.speed / normalTimeSpeed);
  return next;
}

}  // namespace zenlay
