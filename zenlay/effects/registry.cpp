#include "zenlay/effects/registry.h"

#include <cstring>

#include "zenlay/effects/definitions.h"

namespace zenlay {

EffectDefinition* const registry[registryCount] = {
    &videoFileMedia,  // 0
    &imageFileMedia,
    &audioFileMedia,
    &textMedia,
    &graphicMedia,
    &frameBufferMedia,
    &audioWaveformDisplayMedia,
    &sceneMedia,
    &sceneAudioMedia,
    &previousObjectMedia,
    &standardDrawing,  // 10
    &advancedDrawing,
    &standardPlayback,
    &particleOutputDrawing,
    &sceneChangeObject,
    &colorCompensationEffect,
    &colorCompensationObject,
    &clippingEffect,
    &blurEffect,
    &boundaryBlurringEffect,
    &blurObject,  // 20
    &mosaicEffect,
    &mosaicObject,
    &emissionEffect,
    &emissionObject,
    &flashEffect,
    &diffusionLightEffect,
    &diffusionLightObject,
    &glowEffect,
    &glowObject,
    &chromaKeyEffect,  // 30
    &colorKeyEffect,
    &luminanceKeyEffect,
    &lightEffect,
    &shadowEffect,
    &addBorderEffect,
    &bevelEffect,
    &edgeExtractionEffect,
    &sharpenEffect,
    &fadeEffect,
    &wipeEffect,  // 40
    &maskEffect,
    &diagonalClippingEffect,
    &radialBlurEffect,
    &radialBlurObject,
    &directionBlurEffect,
    &directionBlurObject,
    &lensBlurEffect,
    &lensBlurObject,
    &motionBlurEffect,
    &motionBlurObject,  // 50
    &coordinateEffect,
    &zoomEffect,
    &clearnessEffect,
    &rotationEffect,
    &regionExpansionEffect,
    &resizeEffect,
    &lockedRotationEffect,
    &vibrationEffect,
    &vibrationObject,
    &reversalEffect,  // 60
    &reversalObject,
    &mirrorEffect,
    &rasterEffect,
    &rasterObject,
    &rippleEffect,
    &imageTilingEffect,
    &imageTilingObject,
    &polarCoordinateConversionEffect,
    &displacementMapEffect,
    &noiseEffect,  // 70
    &colorShiftEffect,
    &colorShiftObject,
    &monochromaticEffect,
    &monochromaticObject,
    &gradientEffect,
    &extendedColorSettingEffect,
    &extendedColorSettingObject,
    &specificColorGamutConversionEffect,
    &animationEffect,
    &customObjectMedia,  // 80
    &scriptControlEffect,
    &videoFilesSynthesisEffect,
    &synthesisImageFileEffect,
    &deInterlacingEffect,
    &cameraControlOptionsEffect,
    &offScreenDrawingEffect,
    &objectSplitEffect,
    &subFilterObject,
    &volumeFadeEffect,
    &audioDelayEffect,  // 90
    &audioDelayObject,
    &monauralEffect,
    &timeControl,
    &groupControl,
    &cameraControl,
    &cameraControlAdvanced,
    &cameraEffectControl,
    &shadowCameraControl,
    &scriptCameraControl,
};

EffectDefinition* effectList[maxEffects];
int effectCount = 0;

namespace {

constexpr uint32_t refusedFilterFlags = 0x05C08000 | effectMedia | effectDrawing | effectFilter;
constexpr size_t maxFilterName = 62;
// Filters of the host, or of Zenlay itself, that make no sense inside an object.
constexpr const char* refusedNames[] = {"Zenlay", "Zenlay(Audio)", "Denoise (temporal) filter", "Maximize volume"};

constexpr uint32_t objectLevelFlags = effectMedia | effectDrawing | effectFilter;

bool nameRefused(const char* name) {
  for (const char* refused : refusedNames) {
    if (strcmp(name, refused) == 0) return true;
  }
  return false;
}

}  // namespace

void registerBuiltIns(const HostFunctionTable* host, const EffectServiceTable* services, HostFilterRecord* mainFilter) {
  effectCount = 0;
  for (EffectDefinition* effect : registry) {
    effect->flag |= effectBuiltIn;
    effect->host_functions = host;
    effect->services = services;
    effect->main_filter = mainFilter;
    if (effect->track_tables) {
      effect->track_scale = effect->track_tables[0];
      effect->track_link = effect->track_tables[1];
      effect->track_bar_min = effect->track_tables[2];
      effect->track_bar_max = effect->track_tables[3];
    }
    if (effect->exdata_size != 0) effect->flag |= effectHasExtraData;
    if (effect->init) effect->init(effect);
    effectList[effectCount++] = effect;
  }
}

bool qualifiesAsEffect(const HostFilterRecord* filter) {
  if (!filter || !filter->name || !filter->process || filter->flags & refusedFilterFlags) return false;
  if (strnlen(filter->name, maxFilterName + 1) > maxFilterName || nameRefused(filter->name)) return false;
  if (filter->trackCount < 0 || filter->trackCount > maxTracks) return false;
  if (filter->checkCount < 0 || filter->checkCount > maxChecks) return false;
  bool declaresExtraData = filter->flags & filterHasExtraData;
  return !declaresExtraData || (filter->extraDataSize >= 0 && filter->extraDataSize <= maxForeignExtraData);
}

int adoptHostFilter(HostFilterRecord* filter) {
  if (effectCount >= maxEffects || !qualifiesAsEffect(filter)) return 0;
  // The head of both records is the same (see the assertions in effect_definition.h).
  effectList[effectCount++] = reinterpret_cast<EffectDefinition*>(filter);
  return 1;
}

void exitEffects() {
  for (int i = 0; i < effectCount; i++) {
    if (isBuiltIn(effectList[i]) && effectList[i]->exit) effectList[i]->exit(effectList[i]);
  }
  effectCount = 0;
}

int findEffect(const char* name, int audio, int objectLevel) {
  for (int i = 0; i < effectCount; i++) {
    const EffectDefinition* effect = effectList[i];
    bool isAudio = effect->flag & effectAudio, isObjectLevel = effect->flag & objectLevelFlags;
    if (isAudio == (audio != 0) && isObjectLevel == (objectLevel != 0) && strcmp(effect->name, name) == 0) return i;
  }
  return -1;
}

}  // namespace zenlay
