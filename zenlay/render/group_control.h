// Group control: membership, and the transform it adds to the objects it governs.
#pragma once

#include "zenlay/render/draw.h"
#include "zenlay/render/targets.h"

namespace zenlay {

/// Checks of a group control.
bool affectedByUpperGroup(const ObjectRecord* control);
/// Whether the control's membership rule takes the object (its group, or any object).
bool groupTakes(const ObjectRecord* control, const ObjectRecord*);

/// The transform of the group controls around the object of a layer, innermost first, each evaluated at the object's
/// time. False when none governs it. `turned` tells whether there is any rotation; `zoom` is the product of their
/// zooms.
bool groupTransform(const EffectProcessInfo*, SpaceTransform*, bool* turned, double* zoom);

}  // namespace zenlay
