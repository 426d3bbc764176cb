// A fixed-seed mutator, so that the fuzz targets run for a while under any compiler.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace zenlay::test {

/// Calls target(data, size) with mutated copies of `seed` for about `seconds`; the number of runs.
int fuzzFor(double seconds, const std::vector<uint8_t>& seed,
            const std::function<void(const uint8_t*, size_t)>& target);

}  // namespace zenlay::test
