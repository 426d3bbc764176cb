#include "zenlay/media/spectrum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <utility>

namespace zenlay {

namespace {

using Complex = std::complex<float>;
constexpr float fullScale = 32768.0f;
constexpr double turn = 2 * std::numbers::pi;

struct Tables {
  Complex roots[spectrumBlock / 2];  // e^(-2 pi i k / N)
  float window[spectrumBlock];       // Hann, so that a tone does not spread over the bands beside it
  float place[spectrumLevels];       // bin of a band's middle, with its fraction
};

const Tables& tables() {
  static const Tables made = [] {
    Tables t;
    for (int i = 0; i < spectrumBlock / 2; i++)
      t.roots[i] = {static_cast<float>(std::cos(turn * i / spectrumBlock)),
                    static_cast<float>(-std::sin(turn * i / spectrumBlock))};
    for (int i = 0; i < spectrumBlock; i++)
      t.window[i] = static_cast<float>(0.5 - 0.5 * std::cos(turn * i / spectrumBlock));
    for (int i = 0; i < spectrumLevels; i++)
      t.place[i] = static_cast<float>(std::pow(spectrumBins - 1.0, i / (spectrumLevels - 1.0)));
    return t;
  }();
  return made;
}

/// Radix-2 decimation in time, in place.
void transform(Complex* data, const Tables& t) {
  for (int i = 1, j = 0; i < spectrumBlock; i++) {
    int bit = spectrumBlock >> 1;
    for (; j & bit; bit >>= 1) j ^= bit;
    j ^= bit;
    if (i < j) std::swap(data[i], data[j]);
  }
  for (int half = 1; half < spectrumBlock; half *= 2) {
    int step = spectrumBlock / (2 * half);
    for (int first = 0; first < spectrumBlock; first += 2 * half)
      for (int k = 0; k < half; k++) {
        Complex a = data[first + k], b = data[first + half + k], root = t.roots[k * step];
        Complex turned(b.real() * root.real() - b.imag() * root.imag(),
                       b.real() * root.imag() + b.imag() * root.real());
        data[first + k] = a + turned;
        data[first + half + k] = a - turned;
      }
  }
}

/// The strongest bin inside the band; bands narrower than a bin take what lies between its neighbours.
float bandOf(const float* bins, const Tables& t, int band) {
  float at = t.place[band];
  float from = band > 0 ? (t.place[band - 1] + at) / 2 : at,
        to = band + 1 < spectrumLevels ? (at + t.place[band + 1]) / 2 : at;
  int below = std::min(static_cast<int>(at), spectrumBins - 2);
  float part = at - static_cast<float>(below);
  float level = bins[below] * (1 - part) + bins[below + 1] * part;
  for (int bin = static_cast<int>(std::ceil(from)); bin <= static_cast<int>(to) && bin < spectrumBins; bin++)
    level = std::max(level, bins[bin]);
  return level;
}

}  // namespace

void soundSpectrum(const int16_t* mono, int count, float levels[spectrumLevels]) {
  const Tables& t = tables();
  // The window halves a tone, and half of it lies in the mirrored bins.
  constexpr float scale = 4.0f / spectrumBlock;
  std::fill_n(levels, spectrumLevels, 0.0f);
  Complex data[spectrumBlock];
  float bins[spectrumBins];
  for (int first = 0; first < count; first += spectrumBlock) {
    for (int i = 0; i < spectrumBlock; i++)
      data[i] = first + i < count ? static_cast<float>(mono[first + i]) / fullScale * t.window[i] : 0.0f;
    transform(data, t);
    for (int i = 0; i < spectrumBins; i++)
      bins[i] = std::sqrt(data[i].real() * data[i].real() + data[i].imag() * data[i].imag()) * scale;
    for (int i = 0; i < spectrumLevels; i++) levels[i] = std::max(levels[i], bandOf(bins, t, i));
  }
}

}  // namespace zenlay
