#include "zenlay/media/waveform_drawing.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace zenlay {

namespace {

constexpr double halfLine = 0.75;                                 // of the line's thickness, pixels
constexpr int strips = 8;                                         // of a column, for the edges of steep lines
constexpr int reach = static_cast<int>(halfLine * strips - 0.5);  // of the pen, strips
constexpr double sampleRange = 32768.0;

int chosen(int wanted, int most) { return wanted <= 0 || wanted > most ? most : wanted; }

/// A strip of a column is covered from top to bottom, with fractions at both ends.
void coverStrip(const WaveformImage& image, int x, double top, double bottom) {
  int first = std::max(static_cast<int>(std::floor(top)), 0);
  int last = std::min(static_cast<int>(std::ceil(bottom)), image.height);
  for (int y = first; y < last; y++) {
    double covered = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
    int16_t& alpha = image.pixels[static_cast<ptrdiff_t>(y) * image.line + x].a;
    alpha = static_cast<int16_t>(alpha + std::lround(covered * (fullAlpha / strips)));
  }
}

/// The line's heights: point i of `count` lies at i * width / (count - 1).
struct Polyline {
  const int16_t* samples;
  int sampleCount, count;
  double middle, scale;  // pixels, pixels per unit

  double at(int point) const {
    int64_t sample = int64_t{point} * sampleCount / count;
    return middle - samples[sample] * scale;
  }
  double between(double place) const {
    int point = std::clamp(static_cast<int>(place), 0, count - 2);
    double part = place - point;
    return at(point) * (1 - part) + at(point + 1) * part;
  }
};

struct Extent {
  double low, high;
};
/// Of the heights between two places on the line.
Extent extentOf(const Polyline& line, double from, double to) {
  double a = line.between(from), b = line.between(to);
  Extent extent{std::min(a, b), std::max(a, b)};
  for (int point = static_cast<int>(std::ceil(from)); point <= to && point < line.count; point++) {
    extent.low = std::min(extent.low, line.at(point));
    extent.high = std::max(extent.high, line.at(point));
  }
  return extent;
}

/// What a pen with a round tip covers in the middle of a strip, `tip` being its height where a strip next to it ends.
/// The line is connected, so this is one extent.
Extent penOver(const Extent (&heights)[2 * reach + 1], const double (&tip)[2 * reach + 1]) {
  const double middle = (heights[reach].low + heights[reach].high) / 2;
  Extent pen = {middle - halfLine, middle + halfLine};
  for (int i = 0; i <= 2 * reach; i++) {
    pen.low = std::min(pen.low, heights[i].low - tip[i]);
    pen.high = std::max(pen.high, heights[i].high + tip[i]);
  }
  return pen;
}

/// Both, as one where they touch.
void coverMirrored(const WaveformImage& image, int x, const Extent& pen) {
  Extent other{image.height - pen.high, image.height - pen.low};
  if (other.low <= pen.high && pen.low <= other.high)
    return coverStrip(image, x, std::min(pen.low, other.low), std::max(pen.high, other.high));
  coverStrip(image, x, pen.low, pen.high);
  coverStrip(image, x, other.low, other.high);
}

struct Span {
  int first, last;  // pixels, `last` exclusive
};
/// The filled part of cell `index` of `count` that share `size` pixels; the gap lies behind it.
Span cellOf(int index, int count, int size, int gap) {
  int first = static_cast<int>(int64_t{size} * index / count);
  int end = static_cast<int>(int64_t{size} * (index + 1) / count);
  int filled = static_cast<int>((int64_t{end - first} * (100 - std::clamp(gap, 0, 100)) + 50) / 100);
  if (gap > 0 && gap < 100) filled = std::clamp(filled, 1, std::max(end - first - 1, 1));
  return {first, std::min(first + filled, end)};
}

void coverRows(const WaveformImage& image, Span columns, Span rows) {
  for (int y = std::max(rows.first, 0); y < std::min(rows.last, image.height); y++)
    for (int x = columns.first; x < columns.last; x++)
      image.pixels[static_cast<ptrdiff_t>(y) * image.line + x].a = fullAlpha;
}

}  // namespace

void drawWaveLine(const WaveformImage& image, const int16_t* mono, int count, const WaveformShape& shape) {
  if (count < 1) return;
  const double tall = std::max(chosen(shape.rows, image.height) / 2.0 - halfLine, 0.0);
  const int points = std::max(shape.columns > 0 && shape.columns < image.width ? shape.columns : std::max(count, 2), 2);
  const Polyline line{mono, count, points, image.height / 2.0, tall / sampleRange};
  const int last = image.width * strips - 1;
  const double step = (points - 1.0) / (last + 1);
  double tip[2 * reach + 1];
  for (int i = -reach; i <= reach; i++) {
    const double away = (std::abs(i) + 0.5) / strips;
    tip[i + reach] = std::sqrt(halfLine * halfLine - away * away);
  }
  Extent heights[2 * reach + 1];
  auto take = [&](int strip) {
    strip = std::clamp(strip, 0, last);
    std::copy(heights + 1, std::end(heights), heights);
    heights[2 * reach] = extentOf(line, strip * step, (strip + 1) * step);
  };
  for (int strip = -reach; strip < reach; strip++) take(strip);
  for (int strip = 0; strip <= last; strip++) {
    take(strip + reach);
    const Extent pen = penOver(heights, tip);
    if (shape.mirror)
      coverMirrored(image, strip / strips, pen);
    else
      coverStrip(image, strip / strips, pen.low, pen.high);
  }
}

void drawLevelBars(const WaveformImage& image, const float* levels, int count, const WaveformShape& shape) {
  int bars = chosen(shape.columns, image.width), steps = chosen(shape.rows, image.height);
  int middle = image.height / 2, tall = shape.mirror ? image.height - middle : image.height;
  if (shape.mirror) steps = (steps + 1) / 2;
  for (int bar = 0; bar < bars; bar++) {
    int from = static_cast<int>(int64_t{count} * bar / bars), to = static_cast<int>(int64_t{count} * (bar + 1) / bars);
    float level = *std::max_element(levels + from, levels + std::max(to, from + 1));
    int lit = static_cast<int>(std::lround(std::clamp(level, 0.0f, 1.0f) * static_cast<float>(steps)));
    Span columns = cellOf(bar, bars, image.width, shape.columnGap);
    for (int i = 0; i < lit; i++) {
      Span cell = cellOf(i, steps, tall, shape.rowGap);  // counted from where the bar grows
      if (!shape.mirror) {
        coverRows(image, columns, {image.height - cell.last, image.height - cell.first});
      } else {
        coverRows(image, columns, {middle + cell.first, middle + cell.last});
        coverRows(image, columns, {image.height - middle - cell.last, image.height - middle - cell.first});
      }
    }
  }
}

}  // namespace zenlay
