// The frequencies in a stretch of sound.
#pragma once

#include <cstdint>

namespace zenlay {

inline constexpr int spectrumBlock = 2048;  // samples under one transform
inline constexpr int spectrumBins = spectrumBlock / 2;
inline constexpr int spectrumLevels = 512;

/// Amplitude of every frequency band, the largest of all blocks: 1.0 is a sine at full scale. Bands are spaced evenly
/// in pitch from bin 1 to the last. Blocks follow each other; the last one is filled up with silence.
void soundSpectrum(const int16_t* mono, int count, float levels[spectrumLevels]);

}  // namespace zenlay
