#include "cinora/media/picture_turn.h"

extern "C" {
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace cinora {
namespace {

struct Plane {
  uint8_t* data;
  ptrdiff_t stride;
  int width, height;
};

/// In blocks, because a column of the source is a row of the result.
template <int bytes>
void turnPlane(const Plane& to, const uint8_t* origin, ptrdiff_t right, ptrdiff_t down) {
  constexpr int block = 32;
  for (int top = 0; top < to.height; top += block) {
    for (int left = 0; left < to.width; left += block) {
      int bottom = std::min(top + block, to.height), end = std::min(left + block, to.width);
      for (int y = top; y < bottom; y++) {
        uint8_t* row = to.data + y * to.stride;
        const uint8_t* from = origin + y * down;
        for (int x = left; x < end; x++) memcpy(row + x * bytes, from + x * right, bytes);
      }
    }
  }
}

/// `bytes` a sample: 1 to 4.
void turnPlane(const Plane& to, const Plane& from, int bytes, int quarters) {
  ptrdiff_t lastColumn = ptrdiff_t{from.width - 1} * bytes, lastRow = (from.height - 1) * from.stride;
  const uint8_t* origin = from.data;
  ptrdiff_t right = bytes, down = from.stride;
  if (quarters == 1) origin += lastRow, right = -from.stride, down = bytes;
  if (quarters == 2) origin += lastRow + lastColumn, right = -bytes, down = -from.stride;
  if (quarters == 3) origin += lastColumn, right = from.stride, down = -bytes;
  constexpr void (*turns[])(const Plane&, const uint8_t*, ptrdiff_t, ptrdiff_t) = {turnPlane<1>, turnPlane<2>,
                                                                                   turnPlane<3>, turnPlane<4>};
  turns[bytes - 1](to, origin, right, down);
}

Plane planeOf(const AVFrame& frame, const AVPixFmtDescriptor& format, int plane) {
  bool chroma = plane == 1 || plane == 2;
  return {frame.data[plane], frame.linesize[plane], AV_CEIL_RSHIFT(frame.width, chroma ? format.log2_chroma_w : 0),
          AV_CEIL_RSHIFT(frame.height, chroma ? format.log2_chroma_h : 0)};
}

}  // namespace

int quarterTurns(const AVStream& stream) {
  size_t bytes = 0;
  const uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &bytes);
  if (!data || bytes < 9 * sizeof(int32_t)) return 0;
  double counterClockwise = av_display_rotation_get(reinterpret_cast<const int32_t*>(data));
  return std::isfinite(counterClockwise) ? static_cast<int>(std::lround(-counterClockwise / 90)) & 3 : 0;
}

bool canQuarterTurn(AVPixelFormat format) {
  const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(format);
  return d && d->log2_chroma_w == d->log2_chroma_h;
}

void turnPicture(AVFrame& to, const AVFrame& from, int quarters) {
  auto format = static_cast<AVPixelFormat>(from.format);
  const AVPixFmtDescriptor& d = *av_pix_fmt_desc_get(format);
  for (int i = 0; i < av_pix_fmt_count_planes(format); i++)
    turnPlane(planeOf(to, d, i), planeOf(from, d, i), d.comp[0].step, quarters);
}

}  // namespace cinora
