// "De-interlacing": rebuilds the picture from one field.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum DeInterlacingCheck { checkMethod };

struct DeInterlacingData {
  int32_t type;  // index into methodList
};
static_assert(sizeof(DeInterlacingData) == 4);

constexpr char methodList[] =
    "Remove Odd\0"
    "Remove Even\0"
    "BOB\0";

constexpr CheckColumns checks({
    {methodList, checkDropDown},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(DeInterlacingData::type), "type"},
};

}  // namespace

constinit EffectDefinition deInterlacingEffect = defineEffect({
    .flag = effectFilter,
    .name = "De-interlacing",
    .checks = checks,
    .exdata_size = sizeof(DeInterlacingData),
    .exdata_fields = fields,
});

}  // namespace zenlay
