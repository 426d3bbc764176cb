// "Add border": an outline around the object's shape.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum AddBorderTrack { trackSize, trackBlur };
enum AddBorderCheck { checkColor, checkPattern };

struct AddBorderData {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
  char file[256];  // pattern picture
};
static_assert(sizeof(AddBorderData) == 260);

constexpr TrackColumns tracks({
    {"Size", 3, 0, 500, 1, 0, 50},
    {"Blur", 10, 0, 100, 1, 0, 100},
});
constexpr CheckColumns checks({
    {"Setting the border color", checkButton},
    {"Pattern image file", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(AddBorderData::color), "color"},
    {exdataReserved, sizeof(AddBorderData::reserved), nullptr},
    {exdataString, sizeof(AddBorderData::file), "file"},
};

}  // namespace

constinit EffectDefinition addBorderEffect = defineEffect({
    .flag = effectFilter | effectPreview,
    .name = "Add border",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(AddBorderData),
    .exdata_fields = fields,
});

}  // namespace zenlay
