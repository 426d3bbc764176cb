// Extra data of the effects that show a picture file.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

struct ImageData {
  int32_t mode;  // ImageSynthesisMode; unused by "Image file"
  char file[256];
};
static_assert(sizeof(ImageData) == 260);

inline constexpr ExdataField imageDataFields[] = {
    {exdataInteger, sizeof(ImageData::mode), "mode"},
    {exdataString, sizeof(ImageData::file), "file"},
};

/// The path; ends inside the field whatever a file held.
inline const char* fileOf(ImageData& data) {
  data.file[sizeof data.file - 1] = 0;
  return data.file;
}
/// Counts a file that is gone after loading or when asked to check; the name is kept.
int checkImageFile(EffectDefinition*, uint32_t message, intptr_t wparam, intptr_t lparam);

}  // namespace zenlay
