#include "zenlay/render/blend.h"

#include <algorithm>

namespace zenlay {

namespace {

/// Clips one axis: `extent` pixels of the source from `origin` land at `position` of a target `size` long. There is
/// nothing before the start of either.
void clipAxis(int32_t size, int64_t* position, int64_t* origin, int64_t* extent) {
  int64_t before = std::max<int64_t>({-*position, -*origin, 0});
  *position += before;
  *origin += before;
  *extent = std::min<int64_t>(*extent - before, size - *position);
}

template <class Destination, class Source>
using RowKernel = void (*)(Destination*, const Source*, int, int);

template <class Destination, class Source>
void blendRows(const HostFunctionTable* host, uint8_t* to, ptrdiff_t toLine, const uint8_t* from, ptrdiff_t fromLine,
               int width, int height, RowKernel<Destination, Source> kernel, int weight) {
  overRows(host, height, [=](int first, int last) {
    for (int row = first; row < last; ++row) {
      kernel(reinterpret_cast<Destination*>(to + row * toLine), reinterpret_cast<const Source*>(from + row * fromLine),
             width, weight);
    }
  });
}

}  // namespace

void blendCopy(const HostFunctionTable* host, const ImageTarget& target, int x, int y, const ImageRegion& region,
               int transparency, uint32_t flags) {
  int64_t toX = x, toY = y, fromX = region.x, fromY = region.y, width = region.width, height = region.height;
  clipAxis(target.width, &toX, &fromX, &width);
  clipAxis(target.height, &toY, &fromY, &height);
  int weight = fullAlpha - std::clamp(transparency, 0, fullAlpha);
  if (width <= 0 || height <= 0 || weight == 0) return;

  bool sourceAlpha = flags & blendSourceAlpha, destinationAlpha = flags & blendDestinationAlpha;
  uint8_t* to = static_cast<uint8_t*>(target.pixels) + toY * target.lineBytes +
                toX * (destinationAlpha ? sizeof(ObjectPixel) : sizeof(FramePixel));
  const uint8_t* from = static_cast<const uint8_t*>(region.pixels) + fromY * region.lineBytes +
                        fromX * (sourceAlpha ? sizeof(ObjectPixel) : sizeof(FramePixel));
  const BlendKernels& kernels = blendKernels(blendModeOf(flags));
  auto rows = [&](auto kernel) {
    blendRows(host, to, target.lineBytes, from, region.lineBytes, static_cast<int>(width), static_cast<int>(height),
              kernel, weight);
  };
  if (destinationAlpha) {
    sourceAlpha ? rows(kernels.toObject) : rows(kernels.opaqueToObject);
  } else {
    sourceAlpha ? rows(kernels.toFrame) : rows(kernels.opaqueToFrame);
  }
}

}  // namespace zenlay
