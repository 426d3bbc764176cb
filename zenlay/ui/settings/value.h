// Track values as text.
#pragma once

#include <cstdint>
#include <string>

namespace zenlay::settings {

/// `scale` units a shown unit: below 2 an integer, 10 one decimal, 100 two, any other three.
std::string formatValue(int32_t value, int32_t scale);
/// Without a scale a decimal integer. Otherwise a sign counts wherever it stands and digits beyond the scale's are cut
/// off. 0 without a digit; beyond 32 bits the nearest limit.
int32_t parseValue(const char* text, int32_t scale);

}  // namespace zenlay::settings
