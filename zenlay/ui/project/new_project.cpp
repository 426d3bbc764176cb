#include "zenlay/ui/project/new_project.h"

#include <cstdio>

#include "zenlay/host/environment.h"

namespace zenlay {
namespace {

constexpr int64_t maxNumber = 0x7FFFFFFF;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

bool parseFrameRate(const char* text, int32_t* rate, int32_t* scale) {
  while (*text == ' ') text++;
  if (!isDigit(*text)) return false;
  int64_t numerator = 0, denominator = 1;
  for (; isDigit(*text) && numerator <= maxNumber; text++) numerator = numerator * 10 + (*text - '0');
  if (*text == '.') {
    for (text++; isDigit(*text) && numerator <= maxNumber && denominator <= maxNumber; text++) {
      numerator = numerator * 10 + (*text - '0');
      denominator *= 10;
    }
  } else if (*text == '/' && isDigit(text[1])) {
    denominator = 0;
    for (text++; isDigit(*text) && denominator <= maxNumber; text++) denominator = denominator * 10 + (*text - '0');
  }
  if (numerator < 1 || denominator < 1 || numerator > maxNumber || denominator > maxNumber) return false;
  *rate = static_cast<int32_t>(numerator);
  *scale = static_cast<int32_t>(denominator);
  return true;
}

std::string clipName(const ClipFormat& format) {
  char name[128];
  const char* channels = format.audioChannels == 1 ? "_1ch" : "";
  if (format.scale == 1) {
    snprintf(name, sizeof name, "%dx%d_%dfps_%dHz%s.zenlay", format.width, format.height, format.rate, format.audioRate,
             channels);
  } else {
    snprintf(name, sizeof name, "%dx%d_%d-%dfps_%dHz%s.zenlay", format.width, format.height, format.rate, format.scale,
             format.audioRate, channels);
  }
  return name;
}

bool createProject(const ClipFormat& format) {
  std::string name = clipName(format);
  return environment.hostFunctions->openEdit(environment.edit, name.c_str(), 0) == 1 && environment.projectOpen;
}

}  // namespace zenlay
