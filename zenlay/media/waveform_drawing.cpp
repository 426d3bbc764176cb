#include "zenlay/media/waveform_drawing.h"

#include <algorithm>
#include <cmath>

namespace zenlay {

namespace {

constexpr double halfLine = 0.75;  // of the line's thickness, pixels
constexpr double sampleRange = 32768.0;

int chosen(int wanted, int most) { return wanted <= 0 || wanted > most ? most : wanted; }

/// Covers part of a column: rows top..bottom, fractions at both ends.
void coverColumn(const WaveformImage& image, int x, double top, double bottom) {
  int first = std::max(static_cast<int>(std::floor(top)), 0);
  int last = std::min(static_cast<int>(std::ceil(bottom)), image.height);
  for (int y = first; y < last; y++) {
    double covered = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
    int16_t& alpha = image.pixels[static_cast<ptrdiff_t>(y) * image.line + x].a;
    alpha = std::max(alpha, static_cast<int16_t>(std::lround(covered * fullAlpha)));
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
  double middle = image.height / 2.0;
  double reach = std::max(chosen(shape.rows, image.height) / 2.0 - halfLine, 0.0);
  int points = std::max(shape.columns > 0 && shape.columns < image.width ? shape.columns : std::max(count, 2), 2);
  Polyline line{mono, count, points, middle, reach / sampleRange};
  double step = (points - 1.0) / image.width;
  for (int x = 0; x < image.width; x++) {
    Extent extent = extentOf(line, x * step, (x + 1) * step);
    coverColumn(image, x, extent.low - halfLine, extent.high + halfLine);
    if (shape.mirror) coverColumn(image, x, 2 * middle - extent.high - halfLine, 2 * middle - extent.low + halfLine);
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
