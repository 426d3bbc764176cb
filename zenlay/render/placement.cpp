#include "zenlay/render/placement.h"

#include <algorithm>

#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/flattening.h"
#include "zenlay/render/group_control.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/targets.h"

namespace zenlay {

namespace {

constexpr int wholeZoom = 10000;  // Zoom% of 100.00
constexpr int wholeClearness = 1000;
constexpr int wholeAspect = 1000;
constexpr uint32_t drawnOptions = blendModeBits | drawHideBack;

struct Placed {
  ImagePlacement at;
  SpaceTransform group;
  bool turnedByGroup;
};

int32_t saturated(double v) { return static_cast<int32_t>(std::clamp(v, -2147483648.0, 2147483647.0)); }

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
  encodeZoom({scaled(a.x, b.x, zoomOne), scaled(a.y, b.y, zoomOne)}, &at.zoom, &at.aspect);
  at.transparency = combineTransparency(info->transparency, slots.transparency);
  if (info->state & stateFlat) {
    at.rx = at.ry = at.rz = 0;
    at.zoom = zoomOne;
    at.aspect = 0;
  }
  at.cx = info->objectWidth * (subPixel / 2) + info->cx + slots.cx;
  at.cy = info->objectHeight * (subPixel / 2) + info->cy + slots.cy;
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

}  // namespace

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
  int drawn = drawImageInSpace(environment.hostFunctions, shown ? &target : nullptr, objectRegion(info), at,
                               p.turnedByGroup ? &p.group : nullptr, flags, corners);
  if (drawn && shown) noteDrawn(target.pixels, intersect(drawnBounds(corners), {0, 0, target.width, target.height}));
  recordPlacement(effect, info, corners);
  return 1;
}

ScenePoint anchorAt(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t position[3]) {
  EffectDefinition moved = *effect;
  int32_t values[maxTracks];
  std::copy_n(effect->track, effect->track_count, values);
  for (int slot : {slotX, slotY, slotZ})
    if (int track = effect->coordinate_map[slot]; track >= 0) values[track] = position[slot];
  moved.track = values;
  Placed p = combine(&moved, info);
  p.at.zoom = 0;  // the whole picture is one point
  ImageRegion region = objectRegion(info);
  region.width = region.height = 1;
  int32_t corners[8]{};
  drawImageInSpace(environment.hostFunctions, nullptr, region, p.at, p.turnedByGroup ? &p.group : nullptr, 0, corners);
  return {corners[0] / double{subPixel}, corners[1] / double{subPixel}};
}

}  // namespace zenlay
