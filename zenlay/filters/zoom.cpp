// "Zoom%": enlarges or shrinks the object, evenly and along its axes.
#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum ZoomTrack { trackZoom, trackX, trackY };

int64_t scaled(int64_t scale, int32_t zoom) { return scale * zoom / fullZoom; }

int processZoom(EffectDefinition* effect, EffectProcessInfo* info) {
  // zoom and aspect as a horizontal and a vertical scale
  int64_t sx = info->zoom, sy = info->zoom;
  if (info->aspect > 0) sx = sx * (zoomOne - info->aspect) / zoomOne;
  if (info->aspect < 0) sy = sy * (zoomOne + info->aspect) / zoomOne;
  sx = scaled(scaled(sx, effect->track[trackZoom]), effect->track[trackX]);
  sy = scaled(scaled(sy, effect->track[trackZoom]), effect->track[trackY]);
  int64_t zoom = std::min<int64_t>(std::max(sx, sy), INT32_MAX);
  info->zoom = static_cast<int32_t>(zoom);
  info->aspect =
      zoom == 0 ? 0 : static_cast<int32_t>(std::clamp<int64_t>((sy - sx) * zoomOne / zoom, -zoomOne, zoomOne));
  return 1;
}

constinit TrackColumns tracks({zoomTrack("Zoom%"), zoomTrack("X"), zoomTrack("Y")});

}  // namespace

constinit EffectDefinition zoomEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Zoom%",
    .tracks = tracks,
    .proc = processZoom,
});

}  // namespace zenlay
