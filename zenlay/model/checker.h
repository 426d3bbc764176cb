// A walk over the whole model that says what is broken; for tests.
#pragma once

#include <string>

namespace zenlay {

/// The first fault found in the object table, the packing of slots, the extra-data blocks, the chains, the derived
/// order or the names; empty when the model is sound.
std::string modelFault();

}  // namespace zenlay
