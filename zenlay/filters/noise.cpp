// "Noise": multiplies the object with moving noise.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum NoiseTrack { trackStrength, trackSpeedX, trackSpeedY, trackChange, trackCycleX, trackCycleY, trackThreshold };
enum NoiseCheck { checkMix, checkPattern, checkSetting };

struct NoiseData {
  int32_t type;  // index into patternList
  int32_t mode;  // index into mixList
  int32_t seed;
  uint8_t reserved[4];
};
static_assert(sizeof(NoiseData) == 16);

constexpr char mixList[] =
    "Multiply with alpha\0"
    "Multiply with luminance\0";
constexpr char patternList[] =
    "Type1\0"
    "Type2\0"
    "Type3\0"
    "Type4\0"
    "Type5\0"
    "Type6\0";

// Speeds along the picture in tenths of a cell, through time and the cycles in hundredths.
constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 2000, 10, 0, 2000},
    {"Speed X", 0, -4000, 8000, 10, -1000, 1000},
    {"Speed Y", 0, -4000, 8000, 10, -1000, 1000},
    {"dy/dx", 0, 0, 8000, 100, 0, 2000},
    {"Cycle X", 100, 0, 10000, 100, 0, 2000},
    {"Cycle Y", 100, 0, 10000, 100, 0, 2000},
    {"Threshold", 0, 0, 1000, 10, 0, 1000},
});
constexpr CheckColumns checks({
    {mixList, checkDropDown},
    {patternList, checkDropDown},
    {"Setting", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(NoiseData::type), "type"},
    {exdataInteger, sizeof(NoiseData::mode), "mode"},
    {exdataInteger, sizeof(NoiseData::seed), "seed"},
    {exdataReserved, sizeof(NoiseData::reserved), nullptr},
};
constexpr ExtraControl controls[] = {
    {checkMix, extraList, offsetof(NoiseData, mode)},
    {checkPattern, extraList, offsetof(NoiseData, type)},
    {checkSetting, extraNumber, offsetof(NoiseData, seed), 0, {"Seed", 4, 0, 65535}},
};

}  // namespace

constinit EffectDefinition noiseEffect = defineEffect({
    .flag = effectFilter,
    .name = "Noise",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(NoiseData),
    .exdata_fields = fields,
});

}  // namespace zenlay
