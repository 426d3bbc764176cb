// "Graphic": a figure of one colour.
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/figures.h"

namespace zenlay {

namespace {

enum GraphicTrack { trackSize, trackAspect, trackLineWidth };
enum GraphicCheck { checkFigure, checkColor };

struct GraphicData {
  int32_t type;      // Figure; 0 when `name` is set
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
  char name[256];  // figure picture, "*" and a path, or ":" and a scene number
};
static_assert(sizeof(GraphicData) == 264);

int processGraphic(EffectDefinition* effect, EffectProcessInfo* info) {
  GraphicData& data = extraData<GraphicData>(effect);
  data.name[sizeof data.name - 1] = 0;
  FigureRequest request{};
  request.name = data.name;
  request.type = data.type;
  memcpy(request.color, data.color, sizeof request.color);
  request.size = effect->track[trackSize];
  request.aspect = effect->track[trackAspect];
  request.lineWidth = effect->track[trackLineWidth];
  request.colourise = true;
  return effect->services->drawFigure(effect, info, &request);
}

constinit TrackColumns tracks({
    {"Size", 100, 0, 4000, 1, 0, 1000},
    {"rAspect", 0, -1000, 1000, 10, -1000, 1000},
    {"Line width", 4000, 0, 4000, 1, 0, 4000},
});
constinit CheckColumns checks({
    {figureList, checkDropDown},
    {"Color settings", checkButton},
});

constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(GraphicData::type), "type"},
    {exdataBytes, sizeof(GraphicData::color), "color"},
    {exdataReserved, sizeof(GraphicData::reserved), nullptr},
    {exdataString, sizeof(GraphicData::name), "name"},
};
constexpr GraphicData white = {0, {255, 255, 255}, 0, {}};
constexpr ExtraControl controls[] = {
    {checkFigure, extraFigure, offsetof(GraphicData, type), offsetof(GraphicData, name)},
    {checkColor, extraColor, offsetof(GraphicData, color)},
};

}  // namespace

constinit EffectDefinition graphicMedia = defineEffect({
    .flag = effectMedia,
    .name = "Graphic",
    .tracks = tracks,
    .checks = checks,
    .proc = processGraphic,
    .init = listFigures<checks>,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(GraphicData),
    .exdata_default = &white,
    .exdata_fields = fields,
});

}  // namespace zenlay
