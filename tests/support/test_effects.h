// A small effect list of its own for tests of the model and the files; independent of the real registry, but with the
// companions at their places.
#pragma once

#include "zenlay/effects/registry.h"

namespace zenlay::test {

enum TestEffect {
  testVideo = 0,   // media; 2 tracks (scale 1, 10), 3 checks (the last a button), "file" (260) + 24 reserved
  testFilter = 1,  // filter "Blur": 3 tracks (1, 10, 1000), 1 check, no extra data
  testAudioFile = 2,
  testFilterObject = 3,  // filter object "Blur": 3 tracks
  testGraphic = 4,       // media; 1 track; "type" (1), "color" (3 raw), "name" (string, 16)
  testGroup = 5,         // control + filter: "range" (4) + 16 reserved, camera target by default
  testWide = 6,          // filter with 20 tracks and 15 checks
  testHeavy = 7,         // filter with 6000 bytes of extra data
  testForeign = 8,       // a host filter: not built in, 1 track, 1 check, 6 bytes of extra data
  testFilterNoTracks = 9,
  testDrawing = 10,   // "Standard drawing": X, Y, Z (10), Zoom% (100); drop-down; "blend" (4)
  testAdvanced = 11,  // another drawing effect, camera target by default
  testPlayback = 12,  // audio drawing
  testEffectCount = 13,
};

/// Fills effectList with the table above.
void useTestEffects();

}  // namespace zenlay::test
