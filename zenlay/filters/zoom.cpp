// "Zoom%": enlarges or shrinks the object, evenly and along its axes.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/effects/scales_and_turns.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum ZoomTrack { trackZoom, trackX, trackY };

int processZoom(EffectDefinition* effect, EffectProcessInfo* info) {
  auto zoomed = [&](int32_t scale, int track) { return scaled(scale, effect->track[track], fullZoom); };
  Scales s = decodeZoom(info->zoom, info->aspect);
  encodeZoom({zoomed(zoomed(s.x, trackZoom), trackX), zoomed(zoomed(s.y, trackZoom), trackY)}, &info->zoom,
             &info->aspect);
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
