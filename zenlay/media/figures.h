// The figure list and the drawing of figures.
#pragma once

#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/figure_list.h"

namespace zenlay {

inline constexpr int maxFigures = 254;

/// Built-in names, then the names (without extension) of figure/*.png beside the plug-in; built once.
void buildFigureList(const char* pluginDirectory);
void freeFigureList();
int figureCount();
const char* figureName(int index);  // empty beyond the list
/// The drop-down list: figureList with the figure pictures before its last item. Valid until the list is built anew or
/// freed; without a list figureList itself.
const char* figureDropDown();

/// 1 when something was drawn into the object image.
int drawFigure(EffectDefinition*, EffectProcessInfo*, const FigureRequest*);

/// The picture of another scene at a frame and its hundredths becomes the object image; 0 when there is none.
int takeScene(EffectDefinition*, EffectProcessInfo*, int scene, int frame, int subFrame);

/// `init` of an effect whose check 0 is the figure list: its items then hold the figure pictures beside the plug-in.
template <auto& checks>
int listFigures(EffectDefinition*) {
  checks.names[0] = figureDropDown();
  return 1;
}

}  // namespace zenlay
