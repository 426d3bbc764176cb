// Track evaluation: the value of every track at any frame, in every movement mode. Stateless.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_definition.h"
#include "zenlay/model/records.h"

namespace zenlay {

/// Flags in the sub-frame argument.
enum EvaluationFlag : int32_t { evaluateExactEnds = 0x40000000, evaluateForScript = 0x20000000 };
/// Bit of the track count: a single track whose index is first + (count ^ this).
inline constexpr int32_t evaluateSingle = 0x40000000;

/// Writes one value per track. `frame` is a scene frame, `subFrame` 0..99 hundredths or'ed with EvaluationFlags,
/// `individual` the index of the individual object (0 normally). Tracks in modes 9..14 keep what `out` holds.
void evaluateTracks(int32_t* out, int frame, int32_t subFrame, int object, int individual, int firstTrack,
                    int32_t trackCount, const EffectDefinition*);

/// The tracks of one slot at a frame, in the first place. For ModelHooks::trackValues.
void evaluateSlot(int32_t* out, int object, int slot, int frame);

/// What a movement script (mode 15) is asked. The result is truncated and clamped to the track's limits.
struct ScriptTrack {
  int32_t mode;
  int object, track, trackInEffect;             // `track` in the object's arrays
  double time, sectionProgress, chainProgress;  // scene frame with its fraction; 0..1
  const int32_t* scale;                         // the effect's arrays, one entry a track; null for host filters
  const int32_t* link;
  int32_t flags;  // evaluateForScript or 0
};
/// Null while no script engine is present, and then the start value holds.
extern double (*evaluateScriptTrack)(const ScriptTrack&);

/// The movement scripts' names; index = script number of mode words (bits 16..31). Empty without scripts.
inline constexpr int maxMovementScripts = 512;
inline constexpr int maxMovementScriptName = 127;  // characters, without the terminator
int movementScriptCount();
/// Null for a number that no script has.
const char* movementScriptName(int script);
/// Script number, registering an unknown name so that files keep it; -1 when the table is full or the name is empty or
/// too long.
int movementScriptNumber(const char* name);
void resetMovementScripts();

// The helpers of the interpolation formulas, for tests and for scripts. Results saturate at 32 bits; `d` is not 0.

/// Cubic Bezier at n/d, biased by 0.05 away from zero and truncated.
int32_t bezierValue(int32_t p0, int32_t p1, int32_t p2, int32_t p3, int64_t n, int64_t d);
/// a + trunc((b - a) * n / d).
int32_t linearValue(int32_t a, int32_t b, int64_t n, int64_t d);
/// The n-th of the seed's numbers, 0..range - 1; range 0 stands for all 32 bits.
uint32_t randomValue(uint32_t seed, uint32_t n, uint32_t range);

}  // namespace zenlay
