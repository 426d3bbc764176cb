#include "tests/fuzz/mutator.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <string>

namespace zenlay::test {
namespace {

constexpr int32_t boundaries[] = {0, 1, -1, 2, 15, 49, 50, 63, 64, 65, 99, 100, 255, 320, 15000, 65535, 0x7FFFFFFF};

void mutate(std::vector<uint8_t>& data, std::mt19937& random) {
  auto pick = [&](size_t n) { return n ? static_cast<size_t>(random()) % n : 0; };
  if (data.size() < 8) data.resize(8);
  size_t at = pick(data.size() - 4);
  // Half of the mutations hit the front, where the counts and sizes are.
  if (random() % 2) at = pick(std::min<size_t>(data.size() - 4, 256));
  int32_t value = boundaries[pick(std::size(boundaries))];
  switch (random() % 7) {
    case 0:
      data[at] = static_cast<uint8_t>(random());
      break;
    case 1:
      for (int i = 0; i < 4; i++)
        data[(at & ~size_t{3}) + static_cast<size_t>(i)] = static_cast<uint8_t>(value >> 8 * i);
      break;
    case 2:
      data.resize(std::max<size_t>(at, 8));
      break;
    case 3: {
      size_t count = std::min(pick(64), data.size() - at);
      std::vector<uint8_t> part(data.begin() + static_cast<std::ptrdiff_t>(at),
                                data.begin() + static_cast<std::ptrdiff_t>(at + count));
      data.insert(data.begin() + static_cast<std::ptrdiff_t>(pick(data.size())), part.begin(), part.end());
      break;
    }
    case 4:
      data.erase(data.begin() + static_cast<std::ptrdiff_t>(at),
                 data.begin() + static_cast<std::ptrdiff_t>(at + std::min(pick(64), data.size() - at)));
      break;
    case 5: {
      std::string digits = std::to_string(value);
      std::copy_n(digits.begin(), std::min(digits.size(), data.size() - at),
                  data.begin() + static_cast<std::ptrdiff_t>(at));
      break;
    }
    default:
      data[at] ^= static_cast<uint8_t>(1u << random() % 8);
  }
}

}  // namespace

int fuzzFor(double seconds, const std::vector<uint8_t>& seed,
            const std::function<void(const uint8_t*, size_t)>& target) {
  std::mt19937 random(20);
  auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  int runs = 0;
  for (; std::chrono::steady_clock::now() < end; runs++) {
    std::vector<uint8_t> data = seed;
    for (unsigned i = 0, n = 1 + random() % 6; i < n; i++) mutate(data, random);
    target(data.data(), data.size());
  }
  return runs;
}

}  // namespace zenlay::test
