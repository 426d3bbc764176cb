// What the plain and the vector blend kernels share.
#pragma once

#include <cstring>

#include "zenlay/render/blend.h"
#include "zenlay/render/convert.h"

namespace zenlay {

inline constexpr BlendKernels replaceKernels = {
    [](FramePixel* d, const ObjectPixel* s, int n, int) { objectToFrameRow(d, s, n); },
    [](FramePixel* d, const FramePixel* s, int n, int) { std::memcpy(d, s, n * sizeof(FramePixel)); },
    [](ObjectPixel* d, const ObjectPixel* s, int n, int) { std::memcpy(d, s, n * sizeof(ObjectPixel)); },
    [](ObjectPixel* d, const FramePixel* s, int n, int) { frameToObjectRow(d, s, n); },
};

}  // namespace zenlay
