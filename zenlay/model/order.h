// The derived order of the objects. Invalid between a change of the object table and the next rebuildOrder, which every
// editing operation calls before it returns.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

/// Objects of the current scene grouped by layer and sorted by start frame, then those of the other scenes sorted by
/// scene, home layer and start.
extern ObjectRecord* layerOrder[maxObjects];

struct LayerRange {
  int first, last;  // entries of layerOrder; first > last for an empty layer
};
extern LayerRange layerRanges[layersPerScene];
extern int layersInUse;       // highest layer holding objects, plus one
extern int sceneObjectCount;  // of the current scene
extern int objectCount;       // of all scenes

void rebuildOrder();
/// Puts one new object into an order that is valid otherwise: the result of rebuildOrder without sorting the rest. The
/// object's chain head is -1 or real, not provisional.
void addToOrder(int object);
/// The links around one object, after its or its neighbours' chain heads changed; everything else is still in order.
void relinkAround(int object);
/// Entries begin..end - 1 of layerOrder.
struct EntryRange {
  int begin, end;
};
/// The layer's objects that meet the frames; an empty range stands where they would be.
EntryRange entriesMeeting(int firstFrame, int lastFrame, int layer);
/// Object index along the chain, or -1.
int nextSection(int object);
int previousSection(int object);

}  // namespace zenlay
