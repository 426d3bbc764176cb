// Time control: shows the layers below at another time. The pipeline evaluates it while it collects the layers; as an
// effect it does nothing.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"

namespace zenlay {

namespace {

constexpr TrackColumns tracks({
    {"Position", 0, 0, 10000, 100, 0, 10000},
    {"Repeat", 1, 1, 100, 1, 1, 100},
    {"Decimation", 1, 1, 100, 1, 1, 100},
});
constexpr CheckColumns checks({{"Specified frame number", 0}});

int proc(EffectDefinition*, EffectProcessInfo*) { return 1; }

}  // namespace

constinit EffectDefinition timeControl = defineEffect({
    .flag = effectControl,
    .name = "Time control",
    .tracks = tracks,
    .checks = checks,
    .proc = proc,
    .exdata_size = sizeof(LayerRange),
    .exdata_fields = layerRangeFields,
});

}  // namespace zenlay
