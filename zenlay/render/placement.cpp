#include "zenlay/render/placement.h"

#include <algorithm>

#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/render/blend.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/flattening.h"
#include "zenlay/render/group_control.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/targets.h"

namespace zenlay {

namespace {

constexpr int wholeAngle = 36000;  // hundredths of a degree in a turn
constexpr int wholeZoom = 10000;   // Zoom% of 100.00
constexpr int wholeClearness = 1000;
constexpr int wholeAspect = 1000;
constexpr uint32_t drawnOptions = 31u << 24 | drawHideBack;

/// Everything the drawing needs: the placement with `cx`, `cy` from the picture's own centre taken apart.
struct Placed {
  ImagePlacement at;
  int centreX, centreY;  // offset of the rotation centre from the picture's centre, 1/4096 pixel
  SpaceTransform group;
  bool turnedByGroup;
};

int32_t saturated(double v) { return static_cast<int32_t>(std::clamp(v, -2147483648.0, 2147483647.0)); }
int32_t saturated(int64_t v) { return static_cast<int32_t>(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); }

Placed combine(const EffectDefinition* effect, const EffectProcessInfo* info) {
  Placed p{};
  ImagePlacement slots;
  readPlacement(effect, &slots);
  ImagePlacement& at = p.at;
  at.x = info->ox + slots.x;
  at.y = info->oy + slots.y;
  at.z = info->oz + slots.z;
  at.rx = info->rx + slots.rx;
  at.ry = info->ry + slots.ry;
  at.rz = info->rz + slots.rz;
  Scales a = decodeZoom(info->zoom, info->aspect), b = decodeZoom(slots.zoom, slots.aspect);
  encodeZoom({saturated(int64_t{a.x} * b.x / zoomOne), saturated(int64_t{a.y} * b.y / zoomOne)}, &at.zoom, &at.aspect);
  at.transparency = combineTransparency(info->transparency, slots.transparency);
  if (info->state & stateFlat) {
    at.rx = at.ry = at.rz = 0;
    at.zoom = zoomOne;
    at.aspect = 0;
  }
  p.centreX = info->cx + slots.cx;
  p.centreY = info->cy + slots.cy;
  at.cx = info->objectWidth * (subPixel / 2) + p.centreX;
  at.cy = info->objectHeight * (subPixel / 2) + p.centreY;
  at.cz = info->cz + slots.cz;

  double zoom;
  if (groupTransform(info, &p.group, &p.turnedByGroup, &zoom) && !p.turnedByGroup) {
    // Without rotation the group only moves and scales, which the placement can carry itself.
    auto moved = [zoom](int32_t v, double by) { return saturated(v * zoom + by); };
    at.x = moved(at.x, p.group.x);
    at.y = moved(at.y, p.group.y);
    at.z = moved(at.z, p.group.z);
    at.zoom = saturated(at.zoom * zoom);
  }
  return p;
}

bool isUnscaled(const ImagePlacement& at) {
  return !at.rx && !at.ry && !at.rz && at.zoom == zoomOne && !at.aspect && !at.z && !at.cz;
}

/// Left or top edge of an unscaled picture: both halves truncated, so that parity never moves it by half a pixel.
int plainEdge(int frame, int picture, int position) { return frame / 2 + position / subPixel - picture / 2; }

/// What the truncated halves of plainEdge add to the exact centre, 1/4096 pixel.
int parityShift(int frame, int picture) { return ((picture & 1) - (frame & 1)) * (subPixel / 2); }

PixelRect boundsOf(const int32_t corners[8]) {
  int64_t left = corners[0], right = corners[0], top = corners[1], bottom = corners[1];
  for (int i = 2; i < 8; i += 2) {
    left = std::min<int64_t>(left, corners[i]);
    right = std::max<int64_t>(right, corners[i]);
    top = std::min<int64_t>(top, corners[i + 1]);
    bottom = std::max<int64_t>(bottom, corners[i + 1]);
  }
  // A pixel around for softened edges; shifts round downwards.
  return {static_cast<int>((left >> 12) - 1), static_cast<int>((top >> 12) - 1), static_cast<int>((right >> 12) + 2),
          static_cast<int>((bottom >> 12) + 2)};
}

void drawPlain(EffectProcessInfo* info, int x, int y, int transparency, uint32_t flags, int32_t corners[8]) {
  ImageTarget target = frameTarget(info);
  int right = x + info->objectWidth, bottom = y + info->objectHeight;
  const int edges[8] = {x, y, right, y, right, bottom, x, bottom};
  for (int i = 0; i < 8; i++) corners[i] = edges[i] * subPixel;
  if (transparency >= fullAlpha) return;
  blendCopy(environment.hostFunctions, target, x, y, objectRegion(info), transparency, flags);
  noteDrawn(target.pixels, intersect({x, y, right, bottom}, {0, 0, target.width, target.height}));
}

}  // namespace

Scales decodeZoom(int zoom, int aspect) {
  auto scaled = [zoom](int by) { return static_cast<int32_t>(int64_t{zoom} * by / zoomOne); };
  if (aspect > 0) return {scaled(zoomOne - aspect), zoom};
  if (aspect < 0) return {zoom, scaled(zoomOne + aspect)};
  return {zoom, zoom};
}

void encodeZoom(Scales s, int32_t* zoom, int32_t* aspect) {
  *zoom = std::max(s.x, s.y);
  *aspect = *zoom == 0 || s.x == s.y ? 0 : static_cast<int32_t>((int64_t{s.y} - s.x) * zoomOne / *zoom);
}

int32_t turnUnits(int32_t hundredths) {
  return static_cast<int32_t>(int64_t{hundredths % wholeAngle} * fullTurn / wholeAngle);
}

int32_t combineTransparency(int32_t a, int32_t b) { return fullAlpha - ((fullAlpha - a) * (fullAlpha - b) >> 12); }

void readPlacement(const EffectDefinition* effect, ImagePlacement* p) {
  *p = {};
  p->zoom = zoomOne;
  if (!effect->coordinate_map || !effect->track) return;
  auto value = [&](int slot, int64_t (*convert)(int64_t value, int64_t scale), int32_t* to) {
    int track = effect->coordinate_map[slot];
    if (track >= 0) *to = static_cast<int32_t>(convert(effect->track[track], trackScale(effect, track)));
  };
  auto length = [](int64_t v, int64_t scale) { return v * subPixel / scale; };
  auto angle = [](int64_t v, int64_t) { return int64_t{turnUnits(static_cast<int32_t>(v))}; };
  value(slotX, length, &p->x);
  value(slotY, length, &p->y);
  value(slotZ, length, &p->z);
  value(slotRx, angle, &p->rx);
  value(slotRy, angle, &p->ry);
  value(slotRz, angle, &p->rz);
  value(slotCx, length, &p->cx);
  value(slotCy, length, &p->cy);
  value(slotCz, length, &p->cz);
  value(
      slotZoom, [](int64_t v, int64_t) { return v * zoomOne / wholeZoom; }, &p->zoom);
  value(
      slotAspect, [](int64_t v, int64_t) { return v * zoomOne / wholeAspect; }, &p->aspect);
  value(
      slotAlpha, [](int64_t v, int64_t) { return v * fullAlpha / wholeClearness; }, &p->transparency);
}

int placeObject(EffectDefinition* effect, EffectProcessInfo* info, uint32_t options) {
  Placed p = combine(effect, info);
  ImagePlacement& at = p.at;
  uint32_t flags = frameFlags(info, (options & drawnOptions) | objectFormat(info));
  ImageTarget target = frameTarget(info);
  int32_t corners[8]{};
  Scales scales = decodeZoom(at.zoom, at.aspect);
  bool shown = scales.x != 0 && scales.y != 0 && at.transparency < fullAlpha;
  int x = at.x - p.centreX, y = at.y - p.centreY;
  if (isUnscaled(at) && !p.turnedByGroup && x % subPixel == 0 && y % subPixel == 0) {
    drawPlain(info, plainEdge(target.width, info->objectWidth, x), plainEdge(target.height, info->objectHeight, y),
              at.transparency, flags, corners);
  } else {
    if (isUnscaled(at) && !p.turnedByGroup) {
      at.x += parityShift(target.width, info->objectWidth);
      at.y += parityShift(target.height, info->objectHeight);
    }
    int drawn = drawImageInSpace(environment.hostFunctions, shown ? &target : nullptr, objectRegion(info), at,
                                 p.turnedByGroup ? &p.group : nullptr, flags, corners);
    if (drawn && shown) noteDrawn(target.pixels, intersect(boundsOf(corners), {0, 0, target.width, target.height}));
  }
  if (info->host.flags & processHandles && info->depth == 0) addPlacementHandles(effect, info, corners);
  return 1;
}

}  // namespace zenlay
