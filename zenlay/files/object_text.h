// What the files that hold objects have in common: the keys of an object, its effect sections, and how a file is
// written and its sections are turned into effects.
#pragma once

#include <functional>
#include <string>

#include "zenlay/files/section_reader.h"
#include "zenlay/model/records.h"

namespace zenlay {

/// Appends "key=value" and a line end.
void writeLine(std::string& out, const char* key, int64_t value);
/// Appends the keys `clipping` and `camera` of an object with these flags.
void writeObjectKeys(std::string& out, uint32_t objectFlags);
/// Appends the section "[header]" of one effect with all its lines.
void writeEffect(std::string& out, const std::string& header, int object, int slot, bool withExtraData);
/// Creates the file and writes its parts 0..count - 1 in order. 1, or 0 with a message; the file is then partial.
int writeTextFile(const char* path, int count, const std::function<std::string(int)>& part);

/// What a file says of an object before its effects.
struct ObjectKeys {
  bool audio, draws;  // select the twin of an effect name: see findEffect
  bool clipping;
  bool cameraGiven, camera;
};

/// The value of the first line with that key as a number, 0 without one.
int32_t integerOf(const std::string& section, const char* key);
/// Whether the section has a line key=1.
bool isOn(const std::string& section, const char* key);
/// Reads `clipping` and `camera`.
void readObjectKeys(const std::string& section, ObjectKeys*);

/// The effect section "[prefix.number]" that comes next in the file, read into `section`; its effect's name, or null
/// when another section, or one whose first line is not `_name`, comes next, which is then left to be read.
const char* nextEffect(SectionFile*, const std::string& prefix, int number, std::string& section);
/// Applies an effect section's lines to the slot; in a continuation of a chain those of the head stay.
void applyEffect(const std::string& section, int object, int slot);
/// Adds the effect to the object, with its definition's defaults in every section of the chain; a new source takes the
/// object's name away. The slot, or -1 when a limit forbids it.
int addChainEffect(int object, int effect);
/// Applies an effect section's lines to the slot in every section of the chain: a movement is the head's, the other
/// sections go on from it.
void applyToChain(const std::string& section, int object, int slot);
/// The slot of the object that holds the effect, or -1.
int slotHolding(int object, int effect);
/// Sets the object's camera target flag as the file, or else the effect just added, has it.
void setCameraTarget(int object, const ObjectKeys&, int effect);
/// Where the effects of one object, or of one section of its chain, come from and go.
struct EffectReading {
  std::string prefix;
  ObjectKeys keys;
  bool continuation;  // of a chain, whose effects must be in their slots already
  /// Called with effect section 0, `effect` being -1 when it is unknown; gives the object, or -1.
  std::function<int(const char* name, int effect)> start;
  /// Told of an effect that the object does not take, and why. May be empty.
  std::function<void(const char* name, const char* why)> leftOut;
};
/// Of an effect's name that no effect has, or none with the object's keys.
const char* whyUnknown(const char* effect);
/// Reads the effect sections 0..11; the object, or -1.
int readEffects(SectionFile*, const EffectReading&);

}  // namespace zenlay
