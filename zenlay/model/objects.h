// The object table: creation, deletion and look-up of timeline objects. An object is named by its index, which stays
// valid until the object is deleted; deletion never moves other records. The table grows in steps and never moves.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

extern ObjectRecord* objects;  // objectCapacity records; free when flags is 0
extern int objectCapacity;
extern int currentObject;    // selected on the timeline, or -1
extern int objectUnderEdit;  // in the settings window, or -1

/// Object index, or -1. `chainFrom` is -1 or the object whose chain the new one extends.
int createObject(int frame, int layer, int effect, int chainFrom);
/// A free record, zeroed and still without flags, growing the table; -1 (with the message "Unable to add more object")
/// when none can be had.
int takeFreeObject();
/// Frees the record and its extra data without undo, notification or a new order.
void releaseObject(int object);
/// Deletes without undo and without a new order: tells its effects (for a chain, through the head), lets the windows go
/// of it and releases it.
void dropObject(int object);
/// Records undo. A chain is deleted section by section; the head's extra data goes with the head.
void deleteObject(int object);
void deleteAllObjects();
/// Gives all storage back; the model is as at start-up.
void freeObjects();

/// On that layer of the current scene, or -1.
int objectAt(int frame, int layer);
/// The first object on the layer overlapping first..last, or -1.
int objectsInRange(int first, int last, int layer);
/// Valid until the next call.
const char* objectDisplayName(int object);
/// Object flags that follow from the definition flags of an object's first effect.
uint32_t objectFlagsOf(const EffectDefinition*);
inline int indexOf(const ObjectRecord* object) { return static_cast<int>(object - objects); }
/// The chain's head, or the object itself.
int headOf(int object);
/// First frame of the first section and last frame of the last.
struct FrameRange {
  int first, last;
};
FrameRange chainRange(int object);
/// The section of the object's chain that holds the frame (the nearest end outside the chain).
int sectionAt(int object, int frame);

/// What the model tells the rooms above it; every entry may be null.
struct ModelHooks {
  void (*objectReleased)(int object);  // the current object is about to be deleted
  void (*objectChanged)(int object);   // settings window and timeline refresh
  void (*objectDeleted)(int object);   // its record is about to be freed
  /// Sends messageEffectCommand to the effect of a slot, bound as for rendering (see render/effect_commands.h).
  void (*sendCommand)(int object, int slot, int command, intptr_t value);
};
extern ModelHooks modelHooks;

/// Sends messageEffectCommand(commandObjectEvent, event) to every effect of the object that takes messages.
void notifyEffects(int object, ObjectEvent event);

}  // namespace zenlay
