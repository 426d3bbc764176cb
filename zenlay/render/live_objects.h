// Which object is alive on which layer, found in the derived order without walking all objects.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// The object whose range holds the frame on that layer of that scene (any scene, hidden layers too), or null.
ObjectRecord* liveObject(int scene, int layer, int frame);
/// A filter object, which also works on the drawable object above it.
bool isFilterObject(const ObjectRecord*);
/// Slots as they count: enabled by the chain head's flags.
bool slotIsEnabled(const ObjectRecord*, int slot);
/// One past the last layer a control object on `layer` governs: its "range" extra data, 0 meaning all.
int governedEnd(const ObjectRecord* control, int layer);

/// Fills the level's per-layer tables for the scene frame: live sections, layer times (time controls applied),
/// governing group controls and clip marks; and points the record at those that are needed. `limit` layers are looked
/// at.
void collectLayers(RenderLevel*, int scene, int frame, int subFrame, int limit);

}  // namespace zenlay
