// "De-interlacing": rebuilds the picture from one field.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum DeInterlacingCheck { checkMethod };

constexpr char methodList[] =
    "Remove Odd\0"
    "Remove Even\0"
    "BOB\0";

constexpr CheckColumns checks({
    {methodList, checkDropDown},
});
constexpr ExtraControl controls[] = {
    {checkMethod, extraList, offsetof(ListChoice, type)},
};

}  // namespace

constinit EffectDefinition deInterlacingEffect = defineEffect({
    .flag = effectFilter,
    .name = "De-interlacing",
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ListChoice),
    .exdata_fields = listChoiceFields,
});

}  // namespace zenlay
