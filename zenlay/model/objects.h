// The object table: creation, deletion and look-up of timeline objects. An object is named by its index, which stays
// valid until the object is deleted; deletion never moves other records. The table grows in steps and never moves.
#pragma once

#include <span>
#include <vector>

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
/// Records undo. Of a chain one section goes: the sections behind it become an object of their own, with the head's
/// name, slot flags and extra data. Refused, with a message, when a copy of the extra data cannot be had.
void deleteObject(int object);
/// Deletes the objects with their whole chains; records undo.
void deleteObjects(std::span<const int> list);
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
  bool operator==(const FrameRange&) const = default;
};
FrameRange chainRange(int object);
/// Every section of the object's chain from its head on; the object alone when it has no chain.
std::vector<int> sectionsOf(int object);
/// The section of the object's chain that holds the frame (the nearest end outside the chain).
int sectionAt(int object, int frame);

/// What the model tells the rooms above it; every entry may be null.
struct ModelHooks {
  void (*objectReleased)(int object);  // the current object is about to be deleted
  void (*objectChanged)(int object);   // settings window and timeline refresh
  void (*objectDeleted)(int object);   // its record is about to be freed
  /// Sends messageEffectCommand to the effect of a slot, bound as for rendering (see render/effect_commands.h).
  void (*sendCommand)(int object, int slot, int command, intptr_t value);
  /// Calls hide_controls of the slot's effect, bound likewise.
  void (*hideControls)(int object, int slot);
  /// The values of the slot's tracks at a frame of the scene. The start values stand in for it.
  void (*trackValues)(int32_t* out, int object, int slot, int frame);
  /// Whether the script of a mode word sees only a start and an end point (see courseOf).
  bool (*scriptIgnoresMidpoints)(int32_t mode);
};
extern ModelHooks modelHooks;

/// Whether the index names an object; on the timeline when it belongs to the current scene.
inline bool inUse(int object) { return object >= 0 && object < objectCapacity && objects[object].flags; }
inline bool onTimeline(int object) { return inUse(object) && objects[object].layer >= 0; }

/// Shows "Unable to reserve the extended region for object".
void tellExtraDataRefused();

/// Sends messageEffectCommand(commandObjectEvent, event) to every effect of the object that takes messages.
void notifyEffects(int object, ObjectEvent event);

}  // namespace zenlay
