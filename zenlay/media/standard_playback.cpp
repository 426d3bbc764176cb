// "Standard playback": adds the object's sound to the output with its volume and balance.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum PlaybackTrack { trackVolume, trackBalance };

constexpr TrackColumns tracks({
    {"Volume", 1000, 0, 5000, 10, 0, 5000},
    {"Left-Right", 0, -1000, 1000, 10, -1000, 1000},
});

}  // namespace

constinit EffectDefinition standardPlayback = defineEffect({
    .flag = effectDrawing | effectNotListed | effectAudio,
    .name = "Standard playback",
    .tracks = tracks,
});

}  // namespace zenlay
