// "Script control" and "Script (camera control)": run a script typed into the settings window.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

struct ScriptTextData {
  char16_t text[1024];  // ends in NUL
};
static_assert(sizeof(ScriptTextData) == 2048);

constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(ScriptTextData::text), "text"},
};

}  // namespace

constinit EffectDefinition scriptControlEffect = defineEffect({
    .flag = effectFilter,
    .name = "Script control",
    .exdata_size = sizeof(ScriptTextData),
    .exdata_fields = fields,
});

constinit EffectDefinition scriptCameraControl = defineEffect({
    .flag = effectControl,
    .name = "Script (camera control)",
    .exdata_size = sizeof(ScriptTextData),
    .exdata_fields = fields,
});

}  // namespace zenlay
