// Track rows that everything with a place in space shares: drawing, basic and control effects.
#pragma once

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

inline constexpr int positionScale = 10;      // tenths of a pixel
inline constexpr int fullZoom = 10000;        // hundredths of a percent
inline constexpr int fullClearness = 1000;    // tenths of a percent, invisible
inline constexpr int degreesPerTurn = 36000;  // hundredths

/// `link`: distance to the next track of the ring.
constexpr TrackRow positionTrack(const char* name, int link, int value = 0) {
  return {name, value, -999999, 999999, positionScale, -20000, 20000, link};
}
/// A point that a camera or light looks from or at.
constexpr TrackRow sightTrack(const char* name, int link, int value = 0) {
  return {name, value, -200000, 200000, positionScale, -20000, 20000, link};
}
constexpr TrackRow zoomTrack(const char* name) { return {name, fullZoom, 0, 500000, 100, 0, 80000}; }
constexpr TrackRow clearnessTrack() { return {"Clearness", 0, 0, fullClearness, 10, 0, fullClearness}; }
constexpr TrackRow aspectTrack() { return {"rAspect", 0, -1000, 1000, 10, -1000, 1000}; }
constexpr TrackRow angleTrack(const char* name, int link = 0) {
  return {name, 0, -360000, 360000, 100, -degreesPerTurn, degreesPerTurn, link};
}
constexpr TrackRow centreTrack(const char* name) { return {name, 0, -20000, 20000, positionScale, -10000, 10000}; }

}  // namespace zenlay
