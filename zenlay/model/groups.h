// Object groups: objects that carry the same number above 0 are selected and moved together.
#pragma once

#include <span>

namespace zenlay {

/// A group number that no object carries, or 0 when none is left.
int newGroupNumber();
/// The object joins the other's group, which is a new one when there was none.
void joinGroup(int object, int other);
/// Gives every negative group number (set by imports and pastes) a fresh one, in layerOrder; objects that share a
/// number keep sharing one. 0 when no number is left.
void renumberMarkedGroups();
/// One undo step each, the chains of the given objects whole. The objects join the smallest group among them, or a new
/// one; without a number left nothing happens.
void groupSelection(std::span<const int> selection);
void ungroupSelection(std::span<const int> selection);

}  // namespace zenlay
