// Alias files (.zla): a saved object with its section chain, or saved effects, without frame or layer.
//
// Sections are named by the kind of object: "v" or "a" for picture or sound, then "o" for a drawn or filter object;
// "[vo]" heads a section of the chain and "[vo.0]", "[vo.1]"... are its effects. Effects alone have no "[vo]".
#pragma once

#include <string>

#include "zenlay/model/records.h"

namespace zenlay {

enum AliasKind : int {
  aliasReadable = 0x1,
  aliasDraws = 0x2,  // of a drawn or filter object
  aliasAudio = 0x4,
  aliasHasSecondEffect = 0x8,
  aliasIsObject = 0x10,  // an object to place; otherwise effects to add
};

/// As `firstSlot` of writeAlias: the whole object with every section of its chain.
inline constexpr int aliasWholeObject = -2;

/// "v", "vo", "a" or "ao".
std::string aliasPrefix(uint32_t objectFlags);
/// Writes the slots firstSlot..lastSlot, or the whole object. A media effect alone takes the object's last drawing
/// effect along. 1, or 0 with a message.
int writeAlias(int object, int firstSlot, int lastSlot, const char* path);
/// AliasKind bits; 0 when the file cannot be read or is no alias.
int aliasKind(const char* path);
/// Creates the alias's object at the frame, or behind what is in the way of its whole chain there; effects alone make
/// an object of default length. Only the creation is recorded for undo. The first section, or -1, with a message when
/// the file cannot be read or is no alias.
int placeAlias(const char* path, int frame, int layer);
/// Adds the alias's effects to the object, in every section of its chain; a media or drawing effect takes the place of
/// the object's own. Effects that the object cannot take are left out. Nothing happens when the object is of another
/// kind than the alias's. Records undo. The number of effects added, or -1 with a message when the file cannot be read
/// or is no alias.
int addAlias(const char* path, int object);

}  // namespace zenlay
