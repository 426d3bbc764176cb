#include "zenlay/ui/settings/value.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace zenlay::settings {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

int32_t limited(int64_t value) { return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX)); }

constexpr int64_t enough = int64_t{1} << 40;  // beyond any value, far from overflow

}  // namespace

std::string formatValue(int32_t value, int32_t scale) {
  char text[32];
  if (scale < 2) {
    snprintf(text, sizeof text, "%d", value);
    return text;
  }
  const char* form = scale == 10 ? "%s%lld.%01lld" : scale == 100 ? "%s%lld.%02lld" : "%s%lld.%03lld";
  long long size = std::llabs(static_cast<long long>(value));
  snprintf(text, sizeof text, form, value < 0 ? "-" : "", size / scale, size % scale);
  return text;
}

int32_t parseValue(const char* text, int32_t scale) {
  if (scale < 2) return limited(strtoll(text, nullptr, 10));
  bool negative = strchr(text, '-') != nullptr;
  int64_t value = 0;
  while (*text && *text != '.' && !isDigit(*text)) text++;
  for (; isDigit(*text); text++) value = std::min(value * 10 + (*text - '0'), enough);
  value *= scale;
  int32_t unit = scale;
  if (*text == '.')
    for (text++; isDigit(*text) && (unit /= 10) > 0; text++) value += (*text - '0') * unit;
  return limited(negative ? -value : value);
}

}  // namespace zenlay::settings
