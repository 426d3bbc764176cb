// Extra data of the effects that run a chosen script.
#pragma once

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

struct ScriptData {
  int16_t type;     // index into the default collection (or the built-in transitions) while `name` is empty
  int16_t filter;   // what the selector lists: 0 all, 1 the root folder, 2 the chosen script's folder
  char name[256];   // the chosen script
  char param[256];  // statements put in front of the script
};
static_assert(sizeof(ScriptData) == 516);

inline constexpr ExdataField scriptDataFields[] = {
    {exdataInteger, sizeof(ScriptData::type), "type"},
    {exdataInteger, sizeof(ScriptData::filter), "filter"},
    {exdataString, sizeof(ScriptData::name), "name"},
    {exdataString, sizeof(ScriptData::param), "param"},
};

}  // namespace zenlay
