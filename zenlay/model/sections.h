// Section chains: objects with midpoints, one record per section.
//
// After every completed operation all sections of a chain have the same object flags, effects, slot flags, movement
// modes, mode parameters and checks; a track without movement has one value throughout; a moving track is continuous
// from section to section, unless its mode goes by the whole chain, and then its start and end values are the same in
// every section. Operations record undo into the current step (beginUndoStep is the caller's), leave the order valid
// and, when they fail, the model as it was. Objects of other scenes are not edited.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

enum TrackCourse {
  courseStill,       // no movement
  courseContinuous,  // from section to section
  courseWholeChain,  // ignored midpoints, amount, random and repetitive movement, two-point scripts
};
TrackCourse courseOf(int32_t mode);

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

/// The new section, or -1. The frame is clamped into the object; at its first frame the cut comes one frame later.
/// Appending fails unless the object is the last section of its chain, ends inside the scene and has room behind it.
int addSection(int object, int frame, SectionMode how);
/// Appends a section behind the last section of the object's chain, from `start` to `end` (0-based, inclusive) and
/// without undo of the chain: same effects, every continuous track starting and ending at the old end value with its
/// mode and parameter, checks copied. The new object, or -1 when `start` does not follow the chain's end or the frames
/// are taken.
int appendSection(int object, int start, int end);
/// Merges the object into its previous section, which takes its end values and end frame; the previous section, or -1
/// when there is none.
int removeSection(int object);
/// Carries the object's flags, modes, parameters, values and checks to the rest of its chain after an edit of it. The
/// end of an object's still track follows its start, chained or not. Records no undo.
void syncChain(int object);
/// Makes every chain of every scene keep the rules after something foreign was read: flags, modes, parameters, checks
/// and the values of still and whole-chain tracks become the head's; elsewhere a section ends where the next starts.
void settleChains();
/// Cuts the object (its whole chain) in two independent objects at the frame: the first ends at frame - 1, the second,
/// with its own copy of the extra data, keeps the group. Values at the cut are those of a new section, but a movement
/// that goes by the whole chain with ignored midpoints or a fixed amount goes on where it was, as long as divide_mode
/// is on. The effects of the second hear objectDivided before it is cut off. The second object, or -1 when the frame is
/// not inside the chain or nothing more can be had.
int splitObject(int object, int frame);
/// A step of the operations: makes the section and those behind it a chain of their own with the head's name, slot
/// flags and extra data: a copy, for which there must be room (makeExtraDataRoom), or the head's own block when
/// `handOver` is set. Records no undo.
void detachSections(int section, bool handOver);

}  // namespace zenlay
