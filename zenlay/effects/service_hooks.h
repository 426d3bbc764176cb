// Services whose subject lies in rooms above the effects: they are installed here by those rooms. Until then the
// service returns 0 and nothing happens.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

struct ServiceHooks {
  int (*drawText)(const TextRequest*);
  int (*chooseColour)(ObjectRef, void* colour, uint32_t flags);
  WindowHandle (*getSettingsControl)(ObjectRef, int kind, int index);
  /// Called for the selected object only, with a denominator of at least 1.
  int (*setTrackRange)(ObjectRef, int track, int min, int max, int denominator);
  decltype(EffectServiceTable::pickColour) pickColour;
  decltype(EffectServiceTable::chooseScene) chooseScene;
  decltype(EffectServiceTable::askNumbers) askNumbers;
  // Installed by installMediaServices.
  decltype(EffectServiceTable::loadImage) loadImage;
  decltype(EffectServiceTable::imageFileFilter) imageFileFilter;
  decltype(EffectServiceTable::drawFigure) drawFigure;
  decltype(EffectServiceTable::openMedia) openMedia;
  decltype(EffectServiceTable::openMediaByPath) openMediaByPath;
  decltype(EffectServiceTable::releaseMedia) releaseMedia;
};
extern ServiceHooks serviceHooks;

/// What effects told about the 3D transform and the operated object, for the rooms that will use it.
struct ServiceState {
  const void* camera;
  const void* object;
  ObjectRef operatedObject;  // 0 = none
  int operatedValue;
};
extern ServiceState serviceState;

}  // namespace zenlay
