// Default-settings files (.zlc): the values that an effect starts with when the user adds it, one file an effect, in
// the sections of an alias file without header.
#pragma once

#include <string>

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

/// In the plug-in's folder under the effect's name; a host filter's beside its module. Empty when there is no such
/// place.
std::string defaultSettingsPath(const EffectDefinition*);
/// Saves the slot's settings as its effect's defaults. 1, or 0 with a message.
int writeDefaults(int object, int slot);
/// Applies the default settings of the slot's effect, in every section of the chain; those of a media effect may also
/// bring another drawing effect. 1 when done; 0 when there are none for this effect in this kind of object.
int readDefaults(int object, int slot);

// What users' commands create and add begins with these settings.

/// The definition's defaults, then the user's.
void fillDefaults(int object, int slot);
/// createObject with every effect's defaults; the object, or -1.
int createObjectWithDefaults(int frame, int layer, int effect);
/// Adds the effect to the object; the slot, or -1 when a limit forbids it.
int addEffectWithDefaults(int object, int effect);

}  // namespace zenlay
