// The integral of a track over time.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

/// The service of that name: every section's value times the hundredths of a frame it has held, from the chain's start
/// to the moment of `info`. A constant section costs nothing; a moving one is evaluated frame by frame, each frame once
/// while playing forward and at most 1/256 of the section's frames after a jump to where one has been before. Sections
/// moved by a script are evaluated anew each time.
int64_t trackIntegral(EffectDefinition*, EffectProcessInfo*, int track);
int64_t trackIntegralOf(ObjectRef, EffectProcessInfo*, int track);

}  // namespace zenlay
