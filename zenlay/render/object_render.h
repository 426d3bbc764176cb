// One object: its target list, its effect chain and its placement (renderObject of pipeline.h), and the ways an effect
// can place the object before its chain is over.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// The last used slot when it holds an enabled drawing effect, else -1.
int drawingSlot(const ObjectRecord*);
/// Runs the compositing step with the record as it stands: a flattened object is copied onto the frame, another one
/// goes through its drawing effect.
void composite(EffectProcessInfo*);
/// See EffectServiceTable.
int drawObject(EffectProcessInfo*);
/// Whether every event handler of the object's slots lets it be drawn.
bool objectIsAllowed(ObjectRecord*, EffectProcessInfo*);

}  // namespace zenlay
