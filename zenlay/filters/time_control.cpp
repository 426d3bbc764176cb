// Time control: shows the layers below at another time. The pipeline evaluates it while it collects the layers; as an
// effect it does nothing.
#include "zenlay/effects/effect_definition.h"

namespace zenlay {

namespace {

struct Range {
  int32_t layers;  // governed below, 0 = all
  uint8_t reserved[16];
};
constexpr ExdataField fields[] = {{exdataInteger, 4, "range"}, {exdataReserved, 16, nullptr}};
static_assert(sizeof(Range) == 20);

constexpr TrackRow trackRows[] = {
    {"Position", 0, 0, 10000, 100, 0, 10000},
    {"Repeat", 1, 1, 100, 1, 1, 100},
    {"Decimation", 1, 1, 100, 1, 1, 100},
};
constexpr TrackColumns tracks(trackRows);
constexpr CheckRow checkRows[] = {{"Specified frame number", 0}};
constexpr CheckColumns checks(checkRows);

int proc(EffectDefinition*, EffectProcessInfo*) { return 1; }

}  // namespace

extern EffectDefinition timeControl;
constinit EffectDefinition timeControl = defineEffect({
    .flag = effectControl,
    .name = "Time control",
    .tracks = tracks,
    .checks = checks,
    .proc = proc,
    .exdata_size = sizeof(Range),
    .exdata_fields = fields,
});

}  // namespace zenlay
