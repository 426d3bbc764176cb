// Services about objects: look-up, chains, values, names, lengths. See EffectServiceTable for the contracts.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

/// The object of a ref, null when it names none in use.
ObjectRecord* objectOf(ObjectRef);

void objectChangedService(ObjectRef);
int getObjectData(ObjectRef, ObjectData*);
ObjectRef nextSectionRef(ObjectRef);
ObjectRef previousSectionRef(ObjectRef);
ObjectRef chainHeadRef(ObjectRef);
ObjectRef chainHeadViaLastRef(ObjectRef);
int chainLength(ObjectRef);
ObjectRef findObjectRef(int frame, int layer, int scene, const char* name, uint32_t filter);
ObjectRef findNextSlotRef(ObjectRef, const char* name, uint32_t filter);
int setObjectNameService(ObjectRef, const char* name);
int getTrackValues(ObjectRef, int frame, int subFrame, int32_t* values, intptr_t which);
/// Moves the end of the chain's last section so that the chain lasts `length` frames; at least one frame of that
/// section stays, and it ends before the next object of its layer. The resulting length.
int changeObjectLength(ObjectRef, int length, uint32_t flags);
void recordUndoService(ObjectRef);
int isSelectedRef(ObjectRef);
ObjectRef companionRef(ObjectRef, const char* name);

}  // namespace zenlay
