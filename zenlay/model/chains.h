// Section chains: objects with midpoints, one record per section.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

/// Appends a section behind the last section of the object's chain, from `start` to `end` (0-based, inclusive): same
/// effects, every track starting and ending at the old end value with its mode and parameter, checks copied. The new
/// object, or -1 when `start` does not follow the chain's end or the frames are taken.
int appendSection(int object, int start, int end);
/// A group number that no object carries, or 0 when none is left.
int newGroupNumber();
/// Gives every negative group number (set by imports) a fresh one, in layerOrder; objects that share a number keep
/// sharing one. 0 when no number is left.
void renumberMarkedGroups();

}  // namespace zenlay
