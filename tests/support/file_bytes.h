// Files made byte by byte, and the tone found in samples.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <vector>

namespace test {

/// Little-endian.
inline void append(std::string& out, uint64_t value, int bytes) {
  for (int i = 0; i < bytes; i++) out += static_cast<char>(value >> (8 * i));
}

/// 16-bit samples, channels interleaved.
inline std::string wavFile(const std::vector<int16_t>& samples, int channels, int rate) {
  const uint64_t size = samples.size() * 2;
  std::string file = "RIFF";
  append(file, 36 + size, 4);
  file += "WAVEfmt ";
  for (auto [value, bytes] : {std::pair{16, 4}, {1, 2}, {channels, 2}, {rate, 4}, {rate * channels * 2, 4}})
    append(file, static_cast<uint64_t>(value), bytes);
  append(file, static_cast<uint64_t>(channels) * 2, 2);
  append(file, 16, 2);
  file += "data";
  append(file, size, 4);
  for (int16_t sample : samples) append(file, static_cast<uint16_t>(sample), 2);
  return file;
}

struct Tone {
  double amplitude, delay;  // delay in samples, against a sine that begins at sample 0
  double rest;              // RMS of what is not the tone
};

/// Of one channel of `channels` in `count` sample frames, which are whole periods. `samples` begins at sample `first`.
inline Tone toneOf(const int16_t* samples, int channels, int count, double frequency, int rate, int64_t first) {
  const double step = 2 * std::numbers::pi * frequency / rate;
  double re = 0, im = 0, power = 0;
  for (int i = 0; i < count; i++) {
    const double value = samples[static_cast<int64_t>(i) * channels], angle = step * static_cast<double>(first + i);
    re += value * std::sin(angle);
    im += value * std::cos(angle);
    power += value * value;
  }
  const double amplitude = 2 * std::hypot(re, im) / count;
  return {amplitude, -std::atan2(im, re) / step, std::sqrt(std::max(0.0, power / count - amplitude * amplitude / 2))};
}

}  // namespace test
