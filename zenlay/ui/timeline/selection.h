// The selection of the timeline: object indices in the order they were added. Independent of the current object, the
// one whose effects the settings window shows.
#pragma once

#include <span>
#include <vector>

namespace zenlay {

std::span<const int> selection();
bool isSelected(int object);
/// Adds the object alone. Ignored for objects on locked layers, of other scenes, already in the list, and when the list
/// is full (maxObjects). Whether it was added.
bool addToSelection(int object);
/// Adds every section of the object's chain.
void selectChain(int object);
/// Adds every object of its group, with their chains.
void selectGroup(int object);
/// Adds the objects with their chains and groups.
void selectWhole(std::span<const int> objects);
/// Adds the layer's objects that meet the frames, with their chains.
void selectMeeting(int firstFrame, int lastFrame, int layer);
/// Adds everything on the layers and within the frames that the two objects span together.
void selectRange(int from, int to);
/// The object clicked before, from which selectRange goes on; -1 when there is none.
extern int rangeAnchor;
void removeChainFromSelection(int object);
void clearSelection();
/// Takes out what could not be added now: objects of other scenes and of layers locked meanwhile.
void dropUnselectable();

/// What commands act on: the selected objects, else the current one (with its chain), else nothing.
std::vector<int> commandTargets();
/// The same, each chain once, by its head.
std::vector<int> commandTargetHeads();

}  // namespace zenlay
