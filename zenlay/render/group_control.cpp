#include "zenlay/render/group_control.h"

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/placement.h"

namespace zenlay {

namespace {

enum { x, y, z, zoomTrack, spinX, spinY, spinZ, groupTracks };
enum { affectedByUpper, sameGroupOnly };
constexpr double wholeZoom = 10000;

bool check(const ObjectRecord* control, int index) { return control->checks[checkOf(*control, 0, index)]; }

int groupOf(const ObjectRecord* object) { return objects[headOf(indexOf(object))].group; }

struct GroupStep {
  SpaceTransform transform;
  bool turned;
  double zoom;
};

GroupStep evaluateGroup(const ObjectRecord* control, int frame, int subFrame) {
  int object = sectionAt(indexOf(control), frame);
  int32_t v[groupTracks]{};
  evaluateTracks(v, frame, subFrame, object, 0, trackOf(objects[object], 0, 0), groupTracks, &groupControl);
  GroupStep step{};
  step.zoom = v[zoomTrack] / wholeZoom;
  int rx = turnUnits(v[spinX]), ry = turnUnits(v[spinY]), rz = turnUnits(v[spinZ]);
  step.turned = rx || ry || rz;
  rotationMatrix(step.transform.rotation, rx, ry, rz, step.zoom);
  auto position = [](int32_t tenths) { return static_cast<double>(int64_t{tenths} * subPixel / 10); };
  step.transform.x = position(v[x]);
  step.transform.y = position(v[y]);
  step.transform.z = position(v[z]);
  return step;
}

/// outer(inner(p))
SpaceTransform compose(const SpaceTransform& outer, const SpaceTransform& inner) {
  SpaceTransform result;
  const double from[3] = {inner.x, inner.y, inner.z};
  double to[3] = {outer.x, outer.y, outer.z};
  for (int i = 0; i < 3; i++)
    for (int k = 0; k < 3; k++) {
      to[i] += outer.rotation[i][k] * from[k];
      result.rotation[i][k] = 0;
      for (int j = 0; j < 3; j++) result.rotation[i][k] += outer.rotation[i][j] * inner.rotation[j][k];
    }
  result.x = to[0];
  result.y = to[1];
  result.z = to[2];
  return result;
}

}  // namespace

bool affectedByUpperGroup(const ObjectRecord* control) { return check(control, affectedByUpper); }

bool groupTakes(const ObjectRecord* control, const ObjectRecord* object) {
  return !check(control, sameGroupOnly) || groupOf(control) == groupOf(object);
}

bool groupTransform(const EffectProcessInfo* info, SpaceTransform* result, bool* turned, double* zoom) {
  if (!info->layerGroups || !info->drawableObject) return false;
  const ObjectRecord* control = info->layerGroups[info->drawableObject->homeLayer];
  if (!control) return false;
  *turned = false;
  *zoom = 1;
  for (bool first = true; control; control = info->layerGroups[control->homeLayer], first = false) {
    GroupStep step = evaluateGroup(control, info->absoluteFrame, info->subFrame);
    *turned |= step.turned;
    *zoom *= step.zoom;
    *result = first ? step.transform : compose(step.transform, *result);
  }
  return true;
}

}  // namespace zenlay
