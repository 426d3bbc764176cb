// Track evaluation: the value of every track at any frame, in every movement mode. Stateless.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

/// TrackMode word: mode number in bits 0..3, options above.
enum TrackMode : int32_t {
  modeNone, modeRectilinear, modeCurve, modeTeleport, modeIgnoreMidpoints, modeAmount, modeRandom, modeAccelerate,
  modeRepeat, modeScript = 15,
  modeNumber = 0xF,
  modeDecelerationBit = 0x20,
  modeAccelerationBit = 0x40,
};

/// Flags in the sub-frame argument.
enum EvaluationFlag : int32_t { evaluateExactEnds = 0x40000000, evaluateForScript = 0x20000000 };
/// Bit of the track count: a single track whose index is first + (count ^ this).
inline constexpr int32_t evaluateSingle = 0x40000000;

/// Writes one value per track. `frame` is a scene frame, `subFrame` 0..99 hundredths or'ed with EvaluationFlags,
/// `individual` the index of the individual object (0 normally). Tracks in modes 9..14 keep what `out` holds.
void evaluateTracks(int32_t* out, int frame, int32_t subFrame, int object, int individual, int firstTrack,
                    int32_t trackCount, const EffectDefinition*);

/// A movement script's value (mode 15); null while no script engine is present, and then the start value holds.
struct ScriptTrack {
  int32_t mode;
  int object, track, trackInEffect;
  double time, sectionProgress, chainProgress;
  const int32_t* scale;
  const int32_t* link;
  int32_t flags;
};
extern double (*evaluateScriptTrack)(const ScriptTrack&);

/// The movement scripts' names; index = script number of mode words (bits 16..31). Empty without scripts.
int movementScriptCount();
const char* movementScriptName(int script);
/// Script number, registering an unknown name so that files keep it; -1 when the table (512) is full.
int movementScriptNumber(const char* name);

// The helpers of the interpolation formulas, for tests and for scripts.
int32_t bezierValue(int32_t p0, int32_t p1, int32_t p2, int32_t p3, int64_t n, int64_t d);
int32_t linearValue(int32_t a, int32_t b, int64_t n, int64_t d);
uint32_t randomValue(uint32_t seed, uint32_t n, uint32_t range);

}  // namespace zenlay
