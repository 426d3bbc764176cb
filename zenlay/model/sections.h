// Section chains: objects with midpoints, one record per section.
//
// After every completed operation all sections of a chain have the same object flags, effects, movement modes, mode
// parameters and checks; a track without movement has one value throughout; a moving track is continuous from section
// to section, unless its mode is independent per section, whose start and end values are the same in every section.
// Operations record undo into the current step and leave the order valid.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

enum SectionMode : int {
  sectionSplit = 0,                   // the object ends at frame - 1, the new section covers frame..old end
  sectionAppend = 1,                  // a new section of default length behind the object's end
  sectionSplitFirstValues = 0x10000,  // split; the values at the new point come from valueSets[0]
  sectionSplitSecondValues = 0x10001,
};

/// Values for the tracks of one object in track order, copied by the settings window.
struct ValueSet {
  int32_t values[maxTracks];
};
extern ValueSet valueSets[2];

/// The new section, or -1 (the model is unchanged). The frame is clamped into the object.
int addSection(int object, int frame, SectionMode how);
/// Appends a section behind the last section of the object's chain, from `start` to `end` (0-based, inclusive): same
/// effects, every track starting and ending at the old end value with its mode and parameter, checks copied. The new
/// object, or -1 when `start` does not follow the chain's end or the frames are taken.
int appendSection(int object, int start, int end);
/// Merges the object into its previous section, which takes its end values and end frame; the previous section, or -1
/// when there is none.
int removeSection(int object);
/// Carries the object's flags, modes, parameters, values and checks to the rest of its chain after an edit of it.
void syncChain(int object);
/// Cuts the object (its whole chain) in two independent objects at the frame: the first ends at frame - 1. The second,
/// with its own extra data, keeps the group. -1 when the frame is not inside the chain or nothing more can be had.
int splitObject(int object, int frame);

}  // namespace zenlay
