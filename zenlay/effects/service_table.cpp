#include <utility>

#include "zenlay/effects/drawing_services.h"
#include "zenlay/effects/object_services.h"
#include "zenlay/effects/service_hooks.h"
#include "zenlay/effects/track_integral.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/audio_mix.h"
#include "zenlay/render/flattening.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/render/nested_scene.h"
#include "zenlay/render/object_render.h"
#include "zenlay/render/placement.h"
#include "zenlay/render/targets.h"
#include "zenlay/render/work_memory.h"

namespace zenlay {

constinit ServiceHooks serviceHooks{};
constinit ServiceState serviceState{};

namespace {

constexpr int systemVersion = 9200;

void addHandle(ObjectRef ref, int x, int y, int w, int h, const int16_t p[4], uint32_t kind, int value) {
  if (ref) recordHandle({ref, -1, -1, x, y, w, h, {p[0], p[1], p[2], p[3]}, kind, value});
}

void addFreeHandle(int x, int y, int w, int h, const int16_t p[4], uint32_t flags) {
  recordHandle({0, -1, -1, x, y, w, h, {p[0], p[1], p[2], p[3]}, flags | handleFree, 0});
}

void addHandle3d(ObjectRef ref, int coordinate1, int coordinate2, int x, int y, int w, int h, const int16_t p[4],
                 uint32_t flags, int value) {
  if (ref)
    recordHandle({ref, coordinate1, coordinate2, x, y, w, h, {p[0], p[1], p[2], p[3]}, flags | handleSpace, value});
}

void setTransform3d(const void* camera, const void* object) {
  serviceState.camera = camera;
  serviceState.object = object;
}

/// Calls what a room has installed; 0 until then.
template <auto hook>
struct Installed;
template <class Result, class... Arguments, Result (*ServiceHooks::*hook)(Arguments...)>
struct Installed<hook> {
  static Result call(Arguments... arguments) {
    return serviceHooks.*hook ? (serviceHooks.*hook)(arguments...) : Result();
  }
};

WindowHandle getSettingsControl(ObjectRef ref, int kind, int index) {
  return serviceHooks.getSettingsControl && isSelectedRef(ref) ? serviceHooks.getSettingsControl(ref, kind, index)
                                                               : nullptr;
}

int setTrackRange(ObjectRef ref, int track, int min, int max, int denominator) {
  if (!serviceHooks.setTrackRange || !isSelectedRef(ref)) return 0;
  return serviceHooks.setTrackRange(ref, track, min, max, denominator == 0 ? 1 : denominator);
}

int setOperatedObject(ObjectRef ref, int value) {
  if (ref && !objectOf(ref)) return 0;
  serviceState.operatedObject = ref;
  serviceState.operatedValue = ref ? value : 0;
  return 1;
}

int chooseColour(ObjectRef ref, void* colour, uint32_t flags) {
  return ref && serviceHooks.chooseColour ? serviceHooks.chooseColour(ref, colour, flags) : 0;
}

int getSystem(SystemDescription* out) {
  *out = {systemVersion,          environment.workW,      environment.workH,
          environment.workStride, environment.workRows,   environment.workLineBytes,
          environment.clip.rate,  environment.clip.scale, renderLevels[0].images[0].memory != nullptr};
  return 1;
}

int getHostFrame() {
  return environment.hostFunctions->getCurrentFrame ? environment.hostFunctions->getCurrentFrame(environment.edit) : 0;
}

int setHostFrame(int frame) {
  return environment.hostFunctions->setCurrentFrame
             ? environment.hostFunctions->setCurrentFrame(environment.edit, frame)
             : 0;
}

void swapImages(EffectProcessInfo* info) { std::swap(info->objectImage, info->workImage); }

const PreviousObject* previousObject() {
  static constinit const PreviousObject none{};
  return sceneDepth >= 0 ? &renderLevels[sceneDepth].previous : &none;
}

}  // namespace

const EffectServiceTable effectServices = {
    .objectChanged = objectChangedService,
    .getObjectData = getObjectData,
    .nextSection = nextSectionRef,
    .previousSection = previousSectionRef,
    .chainHead = chainHeadRef,
    .chainHeadViaLast = chainHeadViaLastRef,
    .chainLength = chainLength,
    .findObject = findObjectRef,
    .findNextSlot = findNextSlotRef,
    .addHandle = addHandle,
    .addFreeHandle = addFreeHandle,
    .addHandle3d = addHandle3d,
    .setTransform3d = setTransform3d,
    .drawImage3d = drawImage3d,
    .loadImage = Installed<&ServiceHooks::loadImage>::call,
    .imageFileFilter = Installed<&ServiceHooks::imageFileFilter>::call,
    .drawText = Installed<&ServiceHooks::drawText>::call,
    .blendCopy = blendCopyAt,
    .fill = fillArea,
    .getSettingsControl = getSettingsControl,
    .setTrackRange = setTrackRange,
    .setObjectName = setObjectNameService,
    .drawPolygon = drawPolygon,
    .convertRgb = convertRgb,
    .empty24 = nullptr,
    .getTrackValues = getTrackValues,
    .setOperatedObject = setOperatedObject,
    .chooseColour = chooseColour,
    .changeObjectLength = changeObjectLength,
    .getSystem = getSystem,
    .getHostFrame = getHostFrame,
    .setHostFrame = setHostFrame,
    .recordUndo = recordUndoService,
    .isSelected = isSelectedRef,
    .effectCache = effectImage,
    .workMemory = workMemory,
    .trackIntegral = trackIntegral,
    .trackIntegralOf = trackIntegralOf,
    .companion = companionRef,
    .mixScene = mixScene,
    .sceneLength = sceneLength,
    .swapImages = swapImages,
    .addAlpha = addAlpha,
    .flattenObject = flattenObject,
    .drawObject = drawObject,
    .placeObject = placeObject,
    .renderScene = renderScenePicture,
    .renderLayersBelow = renderLayersBelow,
    .previousObject = previousObject,
    .drawFigure = Installed<&ServiceHooks::drawFigure>::call,
    .openMedia = Installed<&ServiceHooks::openMedia>::call,
    .openMediaByPath = Installed<&ServiceHooks::openMediaByPath>::call,
    .releaseMedia = Installed<&ServiceHooks::releaseMedia>::call,
    .pickColour = Installed<&ServiceHooks::pickColour>::call,
    .chooseScene = Installed<&ServiceHooks::chooseScene>::call,
    .sceneName = sceneName,
    .askNumbers = Installed<&ServiceHooks::askNumbers>::call,
};

}  // namespace zenlay
