#include "zenlay/effects/evaluation.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>

#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"

namespace zenlay {

double (*evaluateScriptTrack)(const ScriptTrack&) = nullptr;

namespace {

constexpr int framePart = 100;  // sub-frame positions per frame
constexpr int64_t warpOne = 0x100000;
constexpr int64_t widestPiece = int64_t{1} << 48;  // keeps 512 x the remapped time of modeAccelerate in 64 bits

int32_t saturate(long double value) {
  constexpr long double least = std::numeric_limits<int32_t>::min(), greatest = std::numeric_limits<int32_t>::max();
  if (std::isnan(value)) return 0;
  return static_cast<int32_t>(std::clamp(value, least, greatest));
}

int64_t truncated(double value) {
  constexpr double limit = 4.0e18;
  return std::isnan(value) ? 0 : static_cast<int64_t>(std::clamp(value, -limit, limit));
}

double squared(double value) { return value * value; }

/// One evaluation's place in time. Positions count frames, or hundredths when `unit` is 100. What only some modes need
/// is found on first use.
struct Moment {
  const ObjectRecord* record;
  int object, individual, frame;
  int32_t flags;
  int hundredths;            // 0..99
  int previous, next, head;  // object indices; -1 = no such section
  int64_t unit;
  int64_t t, length;            // within the section
  int64_t chainT, chainLength;  // within the chain; valid after findChain
  int chainStart, chainEnd;
  int32_t lastSection;
  bool chainFound;

  bool chained() const { return previous >= 0 || next >= 0; }
};

Moment momentAt(int frame, int32_t subFrame, int object, int individual) {
  constexpr int32_t allFlags = evaluateExactEnds | evaluateForScript;
  Moment m{};
  m.record = &objects[object];
  m.object = object;
  m.individual = individual;
  m.frame = frame;
  m.flags = subFrame & allFlags;
  m.hundredths = std::clamp(subFrame & ~allFlags, 0, framePart - 1);
  m.previous = previousSection(object);
  m.next = nextSection(object);
  m.head = m.record->chainHead >= 0 ? m.record->chainHead : object;
  m.unit = m.hundredths ? framePart : 1;
  m.t = int64_t{frame} - m.record->start;
  m.length = std::max<int64_t>(int64_t{m.record->end} - m.record->start + (m.next >= 0), 1);
  if (m.hundredths) {
    m.length *= framePart;
    m.t = std::min(m.t * framePart + m.hundredths, m.length);
  }
  return m;
}

void findChain(Moment& m) {
  if (m.chainFound) return;
  m.chainFound = true;
  m.lastSection = m.object;
  if (!m.chained()) {
    m.chainStart = m.record->start;
    m.chainEnd = m.record->end;
    m.chainT = m.t;
    m.chainLength = m.length;
    return;
  }
  for (int next = m.next; next >= 0; next = nextSection(next)) m.lastSection = next;
  m.chainStart = objects[m.head].start;
  m.chainEnd = objects[m.lastSection].end;
  m.chainT = int64_t{m.frame} - m.chainStart;
  m.chainLength = std::max<int64_t>(int64_t{m.chainEnd} - m.chainStart, 1);
  if (m.hundredths) {
    m.chainLength *= framePart;
    m.chainT = std::min(m.chainT * framePart + m.hundredths, m.chainLength);
  }
}

uint32_t randomSeed(const Moment& m) {
  uint32_t end = static_cast<uint32_t>(m.chainEnd), start = static_cast<uint32_t>(m.chainStart);
  uint32_t owner = static_cast<uint32_t>(m.chained() ? m.head : m.object);
  return ((end * 16 + static_cast<uint32_t>(m.individual)) << 12) ^ (start << 8) ^ owner;
}

/// One track of the evaluation.
struct Track {
  int index;  // in the object's arrays
  int inEffect;
  int32_t start, end, mode, param;
  const EffectDefinition* effect;

  bool accelerates() const { return mode & modeAccelerationBit; }
  bool decelerates() const { return mode & modeDecelerationBit; }
  int32_t randomPoint(uint32_t seed, int64_t n) const {
    uint32_t spread = static_cast<uint32_t>(std::max(start, end)) - static_cast<uint32_t>(std::min(start, end));
    uint32_t low = static_cast<uint32_t>(std::min(start, end));
    return static_cast<int32_t>(low + randomValue(seed, static_cast<uint32_t>(n), spread + 1));
  }
};

/// Straight from `from` to `to`, or bent by the control values when acceleration or deceleration moved one of them.
int32_t eased(int32_t from, int32_t to, const Track& track, bool accelerate, bool decelerate, int64_t n, int64_t d) {
  if (!accelerate && !decelerate) return linearValue(from, to, n, d);
  int32_t middle = static_cast<int32_t>((int64_t{from} + to) >> 1);
  return bezierValue(from, accelerate ? track.start : middle, decelerate ? track.end : middle, to, n, d);
}

int32_t still(Moment&, const Track& track) { return track.start; }

int32_t rectilinear(Moment& m, const Track& track) {
  return eased(track.start, track.end, track, track.accelerates() && m.previous < 0, track.decelerates() && m.next < 0,
               m.t, m.length);
}

int32_t ignoringMidpoints(Moment& m, const Track& track) {
  findChain(m);
  return eased(objects[m.head].startValues[track.index], objects[m.lastSection].endValues[track.index], track,
               track.accelerates(), track.decelerates(), m.chainT, m.chainLength);
}

int32_t movedByAmount(Moment& m, const Track& track) {
  findChain(m);
  int64_t frames = m.chainT / m.unit, part = m.chainT % m.unit;
  int64_t value = int64_t{track.end} * frames + int64_t{track.end} * part / m.unit + track.start;
  int64_t least = track.effect->track_min[track.inEffect], greatest = track.effect->track_max[track.inEffect];
  int64_t range = greatest - least;
  if (range > 0 && value > greatest) value -= (value - greatest + range - 1) / range * range;
  if (range > 0 && value < least) value += (least - value + range - 1) / range * range;
  return static_cast<int32_t>(value);
}

// ---- Curves through midpoints ----

/// The four points a section's curve is made from, for one track.
struct Points {
  double before, start, end, after;
};

/// The tracks of a ring, the evaluated one first.
struct Ring {
  int count;
  Points points[maxTracks];

  double distance(double Points::*a, double Points::*b) const {
    double sum = 0;
    for (int i = 0; i < count; i++) sum += squared(points[i].*a - points[i].*b);
    return sum;
  }
};

/// A missing outer point mirrors the known one across the section: `far` lies beyond `near`, the new point beyond
/// `own`.
void substitute(Ring& ring, double Points::*missing, double Points::*own, double Points::*near, double Points::*far) {
  double toFar = ring.distance(near, far), across = ring.distance(own, near), whole = ring.distance(far, own);
  double sum = toFar + across;
  for (int i = 0; i < ring.count; i++) {
    Points& p = ring.points[i];
    double shift = sum >= 1.0 ? 2.0 * std::trunc((whole - across) * (p.*own - p.*near) / sum) : 0.0;
    p.*missing = p.*far + shift;
  }
}

Ring ringOf(const Moment& m, const Track& track) {
  Ring ring;
  ring.count = 0;
  const int32_t* links = isBuiltIn(track.effect) ? track.effect->track_link : nullptr;
  int inEffect = track.inEffect;
  do {
    int index = track.index + inEffect - track.inEffect;
    Points& p = ring.points[ring.count++];
    p.start = m.record->startValues[index];
    p.end = m.record->endValues[index];
    if (m.previous >= 0) p.before = objects[m.previous].startValues[index];
    if (m.next >= 0) p.after = objects[m.next].endValues[index];
    if (!links || !links[inEffect]) break;
    inEffect += links[inEffect];
  } while (inEffect != track.inEffect && inEffect >= 0 && inEffect < track.effect->track_count &&
           ring.count < maxTracks);
  if (m.previous < 0) substitute(ring, &Points::before, &Points::start, &Points::end, &Points::after);
  if (m.next < 0) substitute(ring, &Points::after, &Points::end, &Points::start, &Points::before);
  return ring;
}

/// How far the control point beside `own` lies from it, toward `other`; `outer` is the neighbour on the far side of
/// `own`. Both sections at a midpoint find the same length, in opposite directions.
int64_t controlOffset(const Ring& ring, double Points::*outer, double Points::*own, double Points::*other) {
  double near = ring.distance(outer, own) + ring.distance(own, other);
  double sum = near + ring.distance(other, outer);
  if (sum < 1.0) return 0;
  const Points& p = ring.points[0];
  return truncated(near * (p.*other - p.*outer) / sum) / 2;
}

struct ControlOffsets {
  int64_t start, end;
};
ControlOffsets controlOffsets(const Moment& m, const Track& track) {
  Ring ring = ringOf(m, track);
  return {controlOffset(ring, &Points::before, &Points::start, &Points::end),
          controlOffset(ring, &Points::after, &Points::end, &Points::start)};
}

int32_t alongCurve(const Track& track, ControlOffsets offsets, int64_t n, int64_t d) {
  return bezierValue(track.start, saturate(static_cast<long double>(track.start) + offsets.start),
                     saturate(static_cast<long double>(track.end) + offsets.end), track.end, n, d);
}

int32_t curve(Moment& m, const Track& track) {
  if (!m.chained()) return rectilinear(m, track);
  int64_t n = m.t, d = m.length;
  int32_t one = static_cast<int32_t>(std::min(std::max(d, warpOne), int64_t{INT32_MAX}));
  if (track.accelerates() && m.previous < 0) {
    n = bezierValue(0, 0, one / 2, one, n, d);
    d = one;
  } else if (track.decelerates() && m.next < 0) {
    n = bezierValue(0, one / 2, one, one, n, d);
    d = one;
  }
  return alongCurve(track, controlOffsets(m, track), n, d);
}

// ---- Acceleration movement ----
//
// Time within a section is remapped by two parabolas, one a half, whose outer slopes follow the lengths of this section
// and its neighbour. At a midpoint the two sections' slopes differ; the control offset of the side with the steeper
// one is shortened by their ratio, so that the value passes through the midpoint at one speed. Sections of equal length
// move as in a curve.

int64_t frameLength(int object) {
  return object < 0 ? 0 : std::max<int64_t>(int64_t{objects[object].end} - objects[object].start + 1, 1);
}

/// Length that a half of the section borrows from the neighbour on its side.
int64_t borrowedLength(int64_t own, int64_t neighbour) {
  return neighbour < own ? own : std::min(neighbour / own * neighbour + neighbour % own * neighbour / own, widestPiece);
}

/// Sections' remapped progress per frame at the end that touches `neighbour`.
double outerSlope(int object, int neighbour) {
  int64_t own = frameLength(object);
  double moving = std::max<double>(static_cast<double>(own) - (nextSection(object) < 0), 1.0);
  return 2.0 * own / ((own + borrowedLength(own, frameLength(neighbour))) * moving);
}

int64_t shortened(int64_t offset, int object, int neighbour) {
  if (neighbour < 0) return offset;
  return truncated(offset * std::min(outerSlope(neighbour, object) / outerSlope(object, neighbour), 1.0));
}

int32_t accelerating(Moment& m, const Track& track) {
  if (!m.chained()) return rectilinear(m, track);
  double progress = static_cast<double>(m.t) / m.length;
  // Starting from rest, or ending in it, with the other end's speed kept.
  if (track.accelerates() && m.previous < 0) progress = progress * progress * (2.0 - progress);
  if (track.decelerates() && m.next < 0) progress = progress * (1.0 + progress - progress * progress);

  double length = static_cast<double>(frameLength(m.object));
  bool firstHalf = progress < 0.5;
  int64_t borrowed = borrowedLength(frameLength(m.object), frameLength(firstHalf ? m.previous : m.next));
  double half = firstHalf ? 2.0 * progress : 2.0 * progress - 1.0;
  int64_t sum = frameLength(m.object) + borrowed;
  int64_t time = firstHalf ? truncated(256.0 * ((borrowed - length) * half + 2.0 * length) * half)
                           : 256 * sum - truncated(-256.0 * ((length - borrowed) * half + 2.0 * borrowed) * half);
  ControlOffsets offsets = controlOffsets(m, track);
  return alongCurve(track, {shortened(offsets.start, m.object, m.previous), shortened(offsets.end, m.object, m.next)},
                    time, 512 * sum);
}

// ---- Random and repetitive movement ----

/// Where exact ends are asked for: the section's first and last value.
bool atExactEnd(const Moment& m, const Track& track, int32_t* value) {
  if (!(m.flags & evaluateExactEnds) || (m.t != 0 && m.t != m.length)) return false;
  *value = m.t == 0 ? track.start : track.end;
  return true;
}

/// A smooth curve through random points, one every `param` frames. Control points stay between the track's two values,
/// and so does the curve.
int32_t randomCurve(const Moment& m, const Track& track, uint32_t seed) {
  int64_t interval = track.param * m.unit;
  int64_t point = m.chainT / interval - (m.chainT % interval < 0);
  seed += static_cast<uint32_t>(track.index);
  int32_t values[4];
  for (int i = 0; i < 4; i++) values[i] = track.randomPoint(seed, point + i - 1);
  Ring own{1, {}};
  own.points[0] = {double(values[0]), double(values[1]), double(values[2]), double(values[3])};
  int64_t least = std::min(track.start, track.end), greatest = std::max(track.start, track.end);
  auto control = [&](int32_t from, int64_t offset) {
    return static_cast<int32_t>(std::clamp(from + offset, least, greatest));
  };
  int32_t first = control(values[1], controlOffset(own, &Points::before, &Points::start, &Points::end));
  int32_t second = control(values[2], controlOffset(own, &Points::after, &Points::end, &Points::start));
  return bezierValue(values[1], first, second, values[2], m.chainT - point * interval, interval);
}

int32_t random(Moment& m, const Track& track) {
  int32_t value;
  if (atExactEnd(m, track, &value)) return value;
  findChain(m);
  uint32_t seed = randomSeed(m);
  return track.param <= 0 ? track.randomPoint(seed, m.chainT) : randomCurve(m, track, seed);
}

/// Factor by which the swing of a repetitive movement is narrowed toward its middle.
double narrowing(const Moment& m, const Track& track) {
  double t = static_cast<double>(m.chainT), n = static_cast<double>(m.chainLength);
  if (track.accelerates() && track.decelerates()) return squared((n - 2 * t) / n);
  if (track.accelerates()) return squared((n - t) / n);
  if (track.decelerates()) return squared(t / n);
  return 0;
}

int32_t repeating(Moment& m, const Track& track) {
  int32_t value;
  if (atExactEnd(m, track, &value)) return value;
  findChain(m);
  int64_t period = 2 * track.param * m.unit;
  if (period <= 0) return (m.chainT + m.unit / 2) / m.unit % 2 ? track.end : track.start;
  double middle = static_cast<double>((int64_t{track.start} + track.end + 1) >> 1);
  double factor = narrowing(m, track);
  double from = track.start + std::trunc((middle - track.start) * factor);
  double to = track.end + std::trunc((middle - track.end) * factor);
  double phase = static_cast<double>(m.chainT % period) / period;
  return saturate(from + std::trunc((to - from) * (1.0 - std::cos(2.0 * std::numbers::pi * phase)) / 2.0));
}

int32_t scripted(Moment& m, const Track& track) {
  if (!evaluateScriptTrack) return track.start;
  findChain(m);
  const EffectDefinition* effect = track.effect;
  bool builtIn = isBuiltIn(effect);
  double value = evaluateScriptTrack({.mode = track.mode,
                                      .object = m.object,
                                      .track = track.index,
                                      .trackInEffect = track.inEffect,
                                      .time = m.frame + m.hundredths / double(framePart),
                                      .sectionProgress = static_cast<double>(m.t) / m.length,
                                      .chainProgress = static_cast<double>(m.chainT) / m.chainLength,
                                      .scale = builtIn ? effect->track_scale : nullptr,
                                      .link = builtIn ? effect->track_link : nullptr,
                                      .flags = m.flags & evaluateForScript});
  int32_t least = effect->track_min[track.inEffect], greatest = effect->track_max[track.inEffect];
  int32_t result = saturate(value);
  return least == 0 && greatest == 0 ? result : std::max(least, std::min(result, greatest));
}

/// By mode number; null leaves the value as it was.
constexpr int32_t (*modes[])(Moment&, const Track&) = {
    still,     rectilinear, curve,   still,   ignoringMidpoints, movedByAmount, random,  accelerating,
    repeating, nullptr,     nullptr, nullptr, nullptr,           nullptr,       nullptr, scripted,
};
static_assert(std::size(modes) == modeNumber + 1);

}  // namespace

void evaluateTracks(int32_t* out, int frame, int32_t subFrame, int object, int individual, int firstTrack,
                    int32_t trackCount, const EffectDefinition* effect) {
  if (object < 0 || object >= objectCapacity || firstTrack < 0) return;
  bool single = trackCount > 0 && (trackCount & evaluateSingle);
  int first = single ? trackCount ^ evaluateSingle : 0;
  int last = single ? first : trackCount - 1;
  last = std::min({last, effect->track_count - 1, maxTracks - 1 - firstTrack});
  const ObjectRecord& record = objects[object];
  Moment moment;
  bool timed = false;
  for (int i = first; i <= last; i++) {
    int index = firstTrack + i;
    int32_t mode = record.modes[index];
    int32_t& value = out[i - first];
    auto evaluate = modes[mode & modeNumber];
    if (evaluate == still) {
      value = record.startValues[index];
      continue;
    }
    if (!timed) moment = momentAt(frame, subFrame, object, individual);
    timed = true;
    Track track{index, i, record.startValues[index], record.endValues[index], mode, record.params[index], effect};
    if (evaluate) value = evaluate(moment, track);
  }
}

void evaluateSlot(int32_t* out, int object, int slot, int frame) {
  const EffectSlot& s = objects[object].slots[slot];
  const EffectDefinition* d = effectList[s.effect];
  evaluateTracks(out, frame, 0, object, 0, s.firstTrack, d->track_count, d);
}

int32_t bezierValue(int32_t p0, int32_t p1, int32_t p2, int32_t p3, int64_t n, int64_t d) {
  double u = static_cast<double>(n) / static_cast<double>(d), v = 1.0 - u;
  double b = u * u * u * p3 + 3.0 * v * v * u * p1 + 3.0 * u * u * v * p2 + v * v * v * p0;
  return saturate(b >= 0 ? b + 0.05 : b - 0.05);
}

int32_t linearValue(int32_t a, int32_t b, int64_t n, int64_t d) {
  long double moved = static_cast<long double>(int64_t{b} - a) * n / d;
  return saturate(a + std::trunc(moved));
}

uint32_t randomValue(uint32_t seed, uint32_t n, uint32_t range) {
  constexpr uint32_t prime = 7213, factor = 73, mask = 0x137BD137;
  uint32_t x = seed + ((n << 7) ^ (n >> 2) ^ n);
  uint32_t y = x % prime + x + ((x * factor) ^ mask);
  uint32_t z = y ^ (y << 7) ^ (y >> 2);
  uint32_t result = (z >> 16) ^ z;
  return range == 0 ? result : result % range;
}

}  // namespace zenlay
