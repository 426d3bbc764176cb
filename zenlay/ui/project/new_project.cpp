#include "zenlay/ui/project/new_project.h"

#include <cstdio>

#include "platform/text.h"
#include "zenlay/host/environment.h"

namespace zenlay {

using platform::isDigit;
using platform::takeDigits;

namespace {

constexpr int64_t maxNumber = 0x7FFFFFFF, maxScale = 1000000000;

}  // namespace

bool parseFrameRate(const char* text, int32_t* rate, int32_t* scale) {
  while (*text == ' ') text++;
  if (!isDigit(*text)) return false;
  int64_t numerator = takeDigits(text, maxNumber + 1), denominator = 1;
  if (*text == '.') {
    for (text++; isDigit(*text) && numerator * 10 + (*text - '0') <= maxNumber && denominator < maxScale; text++) {
      numerator = numerator * 10 + (*text - '0');
      denominator *= 10;
    }
  } else if (*text == '/' && isDigit(text[1])) {
    denominator = takeDigits(++text, maxNumber + 1);
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
  const std::string name = clipName(format);
  if (environment.hostFunctions->openEdit(environment.edit, name.c_str(), 0) != 1 || !environment.projectOpen)
    return false;
  const HostFileInfo& clip = environment.clip;
  if (int64_t{clip.rate} * format.scale != int64_t{format.rate} * clip.scale)
    showMessage("The project was opened with another frame rate.", boxWarning);
  return true;
}

}  // namespace zenlay
