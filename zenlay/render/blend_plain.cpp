// The definition of every blend mode, a pixel at a time.
#include <algorithm>

#include "zenlay/render/blend.h"
#include "zenlay/render/blend_table.h"
#include "zenlay/render/convert.h"

namespace zenlay {
namespace {

Rgb withoutNegatives(Rgb c) { return {std::max(c.r, 0), std::max(c.g, 0), std::max(c.b, 0)}; }

/// Combines two colours component by component in RGB.
template <int32_t (*combine)(int32_t s, int32_t d)>
Colour inRgb(Colour source, Colour destination) {
  Rgb s = toRgbScale(source), d = toRgbScale(destination);
  return fromRgbScale({combine(s.r, d.r), combine(s.g, d.g), combine(s.b, d.b)});
}
template <int32_t (*combine)(int32_t s, int32_t d)>
Colour inPositiveRgb(Colour source, Colour destination) {
  Rgb s = withoutNegatives(toRgbScale(source)), d = withoutNegatives(toRgbScale(destination));
  return fromRgbScale({combine(s.r, d.r), combine(s.g, d.g), combine(s.b, d.b)});
}

int32_t multiply(int32_t s, int32_t d) { return std::min(s * d >> 12, 8192); }
int32_t screen(int32_t s, int32_t d) { return s + d - (s * d >> 12); }
int32_t overlay(int32_t s, int32_t d) { return d < 2048 ? d * s >> 11 : 2 * (d + s) - 4096 - (d * s >> 11); }
int32_t brighter(int32_t s, int32_t d) { return std::max(s, d); }
int32_t darker(int32_t s, int32_t d) { return std::min(s, d); }
int32_t shadow(int32_t s, int32_t d) { return std::max(s + d - 4096, 0); }
int32_t contrast(int32_t s, int32_t d) { return std::clamp(d + 2 * s - 4096, 0, 8192); }
int32_t difference(int32_t s, int32_t d) { return s < d ? d - s : s - d; }

Colour normal(Colour s, Colour) { return s; }

/// Light above 8192 loses its chroma over the next 4096.
Colour additive(Colour s, Colour d) {
  Colour c{s.y + d.y, s.cb + d.cb, s.cr + d.cr};
  if (c.y <= 8192) return c;
  int32_t rest = std::max(12288 - c.y, 0);
  return {8192, c.cb * rest >> 12, c.cr * rest >> 12};
}

/// What falls below black loses its chroma over 1024.
Colour subtractive(Colour s, Colour d) {
  Colour c{d.y - s.y, d.cb - s.cb, d.cr - s.cr};
  if (c.y >= 0) return c;
  int32_t rest = std::max(c.y + 1024, 0);
  return {0, c.cb * rest >> 10, c.cr * rest >> 10};
}

Colour luminance(Colour s, Colour d) { return {s.y, d.cb, d.cr}; }
Colour colorDifference(Colour s, Colour d) { return {d.y, s.cb, s.cr}; }

Colour colourOf(const FramePixel& p) { return {p.y, p.cb, p.cr}; }
Colour colourOf(const ObjectPixel& p) { return {p.y, p.cb, p.cr}; }

template <class Pixel>
void store(Pixel* p, Colour c) {
  p->y = static_cast<int16_t>(c.y);
  p->cb = static_cast<int16_t>(c.cb);
  p->cr = static_cast<int16_t>(c.cr);
}

int weightOf(const FramePixel&, int weight) { return weight; }
int weightOf(const ObjectPixel& p, int weight) { return std::clamp(p.a * weight >> 12, 0, fullAlpha); }

/// A row of pixels by a rule for one: rule(destination, source colour, a) for a of 1..4096.
template <auto rule, class Destination, class Source>
void row(Destination* d, const Source* s, int n, int weight) {
  weight = std::clamp(weight, 0, fullAlpha);
  for (int i = 0; i < n; ++i) {
    int a = weightOf(s[i], weight);
    if (a > 0) rule(&d[i], colourOf(s[i]), a);
  }
}

/// The rule of an opaque destination.
template <Colour (*mix)(Colour s, Colour d)>
void ontoFrame(FramePixel* p, Colour s, int a) {
  Colour d = colourOf(*p), c = mix(s, d);
  if (a >= fullAlpha) {
    store(p, c);
  } else {
    store(p, {d.y + ((c.y - d.y) * a >> 12), d.cb + ((c.cb - d.cb) * a >> 12), d.cr + ((c.cr - d.cr) * a >> 12)});
  }
}

Colour weighted(Colour d, int wD, Colour s, int wS) {
  return {(d.y * wD + s.y * wS) >> 12, (d.cb * wD + s.cb * wS) >> 12, (d.cr * wD + s.cr * wS) >> 12};
}

int jointAlpha(int A, int a) { return (fullAlpha * fullAlpha + 2048 - (fullAlpha - A) * (fullAlpha - a)) >> 12; }

/// The rule of a destination with alpha.
template <Colour (*mix)(Colour s, Colour d)>
void ontoObject(ObjectPixel* p, Colour s, int a) {
  Colour d = colourOf(*p), c = mix(s, d);
  if (a >= fullAlpha) {
    store(p, c);
    p->a = fullAlpha;
  } else if (p->a >= fullAlpha) {
    store(p, {d.y + ((c.y - d.y) * a >> 12), d.cb + ((c.cb - d.cb) * a >> 12), d.cr + ((c.cr - d.cr) * a >> 12)});
    p->a = fullAlpha;
  } else if (p->a < 1) {
    store(p, c);
    p->a = static_cast<int16_t>(a);
  } else {
    int joint = jointAlpha(p->a, a);
    store(p, weighted(d, (fullAlpha - a) * p->a / joint, c, (a << 12) / joint));
    p->a = static_cast<int16_t>(joint);
  }
}

int alphaOf(const ObjectPixel& p) { return std::clamp<int>(p.a, 0, fullAlpha); }

void mark(ObjectPixel* p, Colour, int a) { p->a = static_cast<int16_t>((p->a * a >> 12) + fullAlpha); }

void addOpaque(ObjectPixel* p, Colour s, int a) {
  int A = alphaOf(*p), joint = jointAlpha(A, a);
  store(p, weighted(colourOf(*p), (A << 12) / joint, s, (a << 12) / joint));
  p->a = static_cast<int16_t>(joint);
}

void behind(ObjectPixel* p, Colour s, int a) {
  int A = alphaOf(*p), joint = jointAlpha(A, a);
  store(p, weighted(colourOf(*p), (A << 12) / joint, s, (fullAlpha - A) * a / joint));
  p->a = static_cast<int16_t>(joint);
}

template <bool largerAlpha>
void average(ObjectPixel* p, Colour s, int a) {
  int A = alphaOf(*p), sum = A + a;
  store(p, {(A * p->y + a * s.y) / sum, (A * p->cb + a * s.cb) / sum, (A * p->cr + a * s.cr) / sum});
  p->a = static_cast<int16_t>(largerAlpha ? std::max(A, a) : std::min(sum, fullAlpha));
}

void cutOut(ObjectPixel* p, Colour, int a) { p->a = static_cast<int16_t>(std::max(p->a - a, 0)); }
void scaleOut(ObjectPixel* p, Colour, int a) { p->a = static_cast<int16_t>(p->a * (fullAlpha - a) >> 12); }

void displacement(ObjectPixel* p, Colour s, int a) {
  Rgb rgb = toRgbScale(s);
  store(p, {(rgb.r - 2048) * a >> 12, (rgb.g - 2048) * a >> 12, 0});
  p->a = fullAlpha;
}

void accumulate(ObjectPixel* p, Colour s, int a) {
  int A = alphaOf(*p), part = std::min(a, fullAlpha - A);
  store(p, {p->y + (s.y * part >> 12), p->cb + (s.cb * part >> 12), p->cr + (s.cr * part >> 12)});
  p->a = static_cast<int16_t>(std::min(A + a, fullAlpha));
}

template <Colour (*mix)(Colour s, Colour d)>
constexpr BlendKernels user() {
  return {row<ontoFrame<mix>, FramePixel, ObjectPixel>, row<ontoFrame<mix>, FramePixel, FramePixel>,
          row<ontoObject<mix>, ObjectPixel, ObjectPixel>, row<ontoObject<mix>, ObjectPixel, FramePixel>};
}

template <void (*rule)(ObjectPixel*, Colour, int)>
constexpr BlendKernels internal() {
  return {row<ontoFrame<normal>, FramePixel, ObjectPixel>, row<ontoFrame<normal>, FramePixel, FramePixel>,
          row<rule, ObjectPixel, ObjectPixel>, row<rule, ObjectPixel, FramePixel>};
}

constexpr BlendKernels plainKernels[blendModeCount] = {
    user<normal>(),                   // blendNormal
    user<additive>(),                 // blendAdditive
    user<subtractive>(),              // blendSubtractive
    user<inPositiveRgb<multiply>>(),  // blendMultiply
    user<inPositiveRgb<screen>>(),    // blendScreen
    user<inPositiveRgb<overlay>>(),   // blendOverlay
    user<inRgb<brighter>>(),          // blendBrighter
    user<inRgb<darker>>(),            // blendDarker
    user<luminance>(),                // blendLuminance
    user<colorDifference>(),          // blendColorDifference
    user<inPositiveRgb<shadow>>(),    // blendShadow
    user<inRgb<contrast>>(),          // blendContrast
    user<inRgb<difference>>(),        // blendDifference
    user<normal>(),
    user<normal>(),
    user<normal>(),
    internal<mark>(),            // blendMark
    internal<addOpaque>(),       // blendAddOpaque
    internal<behind>(),          // blendBehind
    replaceKernels,              // blendReplace
    internal<average<false>>(),  // blendAverage
    internal<average<true>>(),   // blendAverageLargerAlpha
    internal<cutOut>(),          // blendCutOut
    internal<scaleOut>(),        // blendScaleOut
    internal<displacement>(),    // blendDisplacement
    internal<accumulate>(),      // blendAccumulate
    user<normal>(),
    user<normal>(),
    user<normal>(),
    user<normal>(),
    user<normal>(),
    user<normal>(),
};

}  // namespace

const BlendKernels& plainBlendKernels(int mode) {
  return plainKernels[mode >= 0 && mode < blendModeCount ? mode : blendNormal];
}

}  // namespace zenlay
