// The record that describes one effect, and how a source file builds it from tables.
//
// The head of `EffectDefinition` is laid out like the host's filter record, so that a host filter can be used through
// the same pointer; built-in definitions (flag bit `effectBuiltIn`) add an extension behind it. Built-in definitions are
// static data; their runtime part is written at start-up and each time the definition is bound to an object's slot, so
// one definition is bound to one slot at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zenlay/host/host_interface.h"

namespace zenlay {

struct EffectDefinition;
struct EffectProcessInfo;
struct EffectServiceTable;

inline constexpr int maxTracks = 64;            // per object
inline constexpr int maxChecks = 48;            // per object
inline constexpr int maxSlots = 12;             // per object
inline constexpr int maxExtraData = 20000;      // bytes per object
inline constexpr int maxForeignExtraData = 1000;

/// (object index + 1) | (slot << 16); 0 = none.
using ObjectRef = uint32_t;
constexpr ObjectRef makeObjectRef(int object, int slot) {
  return static_cast<uint32_t>(object + 1) | static_cast<uint32_t>(slot) << 16;
}
constexpr int objectOfRef(ObjectRef ref) { return static_cast<int>(ref & 0xFFFF) - 1; }
constexpr int slotOfRef(ObjectRef ref) { return static_cast<int>(ref >> 16 & 0xFF); }

enum EffectFlag : uint32_t {
  effectRunning = 0x1,            // set for the duration of every call into the effect
  effectMedia = 0x8,              // produces the object's image or sound; stands in slot 0
  effectDrawing = 0x10,           // places the object's image into the scene
  effectFilter = 0x20,            // may be added to an object's chain
  effectTakesOpaque = 0x40,       // drawing effect: accepts an object image without alpha
  effectNotListed = 0x80,         // never offered in an add menu
  effectTimelineOnly = 0x100,     // never offered in the settings window
  effectPreparatory = 0x200,      // also called before the chain of its object
  effectHasExtraData = 0x400,     // set at start-up
  effectBasic = 0x8000,           // listed under "Basic effect"
  effectAudio = 0x200000,
  effectCamera = 0x800000,        // defines the camera
  effectControl = 0x1000000,      // acts on the layers below it
  effectBuiltIn = 0x4000000,      // set at start-up on every registry entry
  effectPreview = 0x40000000,     // takes preview operations
};

inline constexpr int cameraTargetByDefault = 0x10000;  // bit of EffectDefinition::x

/// Whether a track's mode word makes it move; else its start value holds for the whole section.
constexpr bool moves(int32_t mode) { return (mode & 0xF) != 0; }

enum CheckDefault : int32_t {
  checkButton = -1,     // push button
  checkDropDown = -2,   // the label is a list of NUL-separated items ended by an empty one
  checkToggle = 10000,  // push-like toggle, off
};

enum ExdataType : uint16_t {
  exdataReserved = 0,  // not written to files
  exdataInteger = 1,   // 1, 2 or 4 bytes, little-endian
  exdataString = 2,    // NUL-terminated in an array of `size` bytes
  exdataBytes = 3,     // two hex digits a byte
};

struct ExdataField {
  uint16_t type, size;  // bytes
  const char* name;     // key in object files; null for reserved bytes
};

/// `event` codes.
enum EffectEvent : int32_t {
  eventSceneBegin = 1,
  eventSceneEnd = 2,
  eventObject = 3,  // argument: the ObjectRecord about to be drawn; non-zero skips it for this frame
};

inline constexpr uint32_t messageEffectCommand = 0x702;  // to `window_proc`: wparam = command, lparam = value

/// Command codes of messageEffectCommand. The high word of wparam: the effect's check that was operated.
enum EffectCommand : int32_t {
  commandObjectEvent = 0x1E14,   // lparam: ObjectEvent
  commandPushed = 0x1E1A,        // a push button
  commandChecked = 0x1E1B,       // lparam: the new value of a check box or toggle
  commandDropDown = 0x1E1C,      // lparam: chosen index, stored into the extra data
  commandCheckFile = 0x1E1D,     // lparam: 1 = count a missing file without a message
  commandTakeFile = 0x1E1E,      // lparam: const char*, path of a file dropped onto the effect
  commandTakeColor = 0x1E1F,     // lparam: the colour picked from the screen for `pickColour`
  commandCustomControl = 0x1E20, // high word: number of the custom control; lparam: its notification
  // What the user does on the image, to effects with effectPreview; 1 = taken, nothing else happens. High word: 1 + the
  // place of the handle pressed among the frame's handles, 0 for none. lparam: the point in scene pixels, x in the low
  // 32 bits and y in the high ones.
  commandPreviewPress = 0x1E6E,
  commandPreviewMove = 0x1E6F,  // while the button is down
  commandPreviewRelease = 0x1E70,
  commandPreviewKey = 0x1E71,  // lparam: the key
  commandPreviewDoubleClick = 0x1E72,
  commandPreviewRightPress = 0x1E73,
  commandPreviewWheel = 0x1E74,  // lparam: notches, positive away from the user
  commandPreviewFirst = commandPreviewPress,
  commandPreviewLast = commandPreviewWheel,
};
/// objectDivided: the bound section and those behind it are about to become an object of their own. What counts from
/// the chain's first frame can still be asked for; the section's values are kept for the new object.
enum ObjectEvent : intptr_t {
  objectLoaded = 1,
  objectPasted = 2,
  objectDeleted = 3,
  objectSlotRemoved = 4,
  objectDivided = 5,
};

/// Messages to `show_controls`, whose window is the settings window; the slot is bound. The effect makes custom controls
/// once, as children of that window, and `hide_controls` hides them.
enum ShowControls : uint32_t {
  controlsPlace = 1,  // wparam: id of the first custom control, lparam: y to place them at; the height they take
  controlsFill = 2,   // show what the extra data holds; also of a folded slot, for its title
};

/// Coordinate slots of `coordinate_map`.
enum CoordinateSlot {
  slotX, slotY, slotZ, slotRx, slotRy, slotRz, slotCx, slotCy, slotCz, slotZoom, slotAspect, slotAlpha,
  coordinateSlots
};

using EffectProcess = int (*)(EffectDefinition*, EffectProcessInfo*);
using EffectCall = int (*)(EffectDefinition*);
using EffectEventHandler = int (*)(EffectDefinition*, int32_t code, intptr_t argument, EffectProcessInfo*);
using EffectWindowProcedure = int (*)(void* windowOrServices, uint32_t message, intptr_t wparam, intptr_t lparam,
                                      EditHandle, EffectDefinition*);

struct EffectDefinition {
  uint32_t flag;
  int32_t x, y;
  const char* name;
  int32_t track_count;
  const char* const* track_names;
  const int32_t* track_defaults;  // stored units: shown value x scale
  const int32_t* track_min;
  const int32_t* track_max;
  int32_t check_count;
  const char* const* check_names;
  const int32_t* check_defaults;  // 1, 0 or a CheckDefault
  EffectProcess proc;             // 1 continues, anything else ends the object for this frame
  EffectCall init;
  EffectCall exit;
  EffectEventHandler event;
  EffectWindowProcedure window_proc;
  int32_t* track;                 // current values, set before each call
  int32_t* check;
  void* exdata;                   // current extra data of the slot
  int32_t exdata_size;
  const char* information;
  EffectWindowProcedure show_controls;
  void (*hide_controls)();
  const HostFunctionTable* host_functions;
  const EffectServiceTable* services;
  void* hostWord;
  const void* exdata_default;     // exdata_size bytes; null = zeros
  const ExdataField* exdata_fields;         // sizes add up to exdata_size; null = one unnamed block
  const int32_t* const* track_tables;       // scale, link, bar minimum, bar maximum
  const int32_t* coordinate_map;            // [coordinateSlots] track index or -1
  void* unusedWord;
  const char* category;

  // Runtime part.
  const int32_t* track_scale;     // display denominators: 0 and 1 integer, 10, 100, 1000
  const int32_t* track_link;      // relative index of the next track of a ring, 0 = none
  const int32_t* track_bar_min;
  const int32_t* track_bar_max;
  HostFilterRecord* main_filter;
  struct ObjectRecord* bound_object;
  ObjectRef object_ref;           // 0 = no object
  ObjectRef selected_ref;         // the selected object with the same slot; 0 = nothing selected
  int32_t frame_begin, frame_end; // frame_end is one larger when another section follows
  int32_t* track_begin_values;
  int32_t* track_end_values;
  int32_t* track_modes;
  int32_t* check_values;
  void* exdata_block;
  int32_t* track_params;
  int32_t chain_begin, chain_end; // first frame of the first section, last of the last
  int32_t layer, scene;
};

static_assert(offsetof(EffectDefinition, name) == offsetof(HostFilterRecord, name));
static_assert(offsetof(EffectDefinition, proc) == offsetof(HostFilterRecord, process));
static_assert(offsetof(EffectDefinition, window_proc) == offsetof(HostFilterRecord, windowProcedure));
static_assert(offsetof(EffectDefinition, exdata_size) == offsetof(HostFilterRecord, extraDataSize));
static_assert(offsetof(EffectDefinition, host_functions) == offsetof(HostFilterRecord, functions));
static_assert(offsetof(EffectDefinition, category) == offsetof(HostFilterRecord, category));

// ---- Building a definition from tables ----

struct TrackRow {
  const char* name;
  int32_t value, min, max;  // default and limits, stored units
  int32_t scale;            // display denominator
  int32_t barMin, barMax;   // range of the track bar
  int32_t link = 0;
};

struct CheckRow {
  const char* name;
  int32_t value;
};

/// The parallel arrays of EffectDefinition, seen through pointers.
struct TrackSet {
  int32_t count = 0;
  const char* const* names = nullptr;
  const int32_t* defaults = nullptr;
  const int32_t* min = nullptr;
  const int32_t* max = nullptr;
  const int32_t* const* tables = nullptr;
};

struct CheckSet {
  int32_t count = 0;
  const char* const* names = nullptr;
  const int32_t* defaults = nullptr;
};

/// Transposes a table of rows into parallel arrays. Must have static storage duration.
template <size_t N>
struct TrackColumns {
  const char* names[N]{};
  int32_t defaults[N]{}, min[N]{}, max[N]{}, scale[N]{}, link[N]{}, barMin[N]{}, barMax[N]{};
  const int32_t* tables[4];

  constexpr explicit TrackColumns(const TrackRow (&rows)[N]) : tables{scale, link, barMin, barMax} {
    for (size_t i = 0; i < N; i++) {
      names[i] = rows[i].name;
      defaults[i] = rows[i].value;
      min[i] = rows[i].min;
      max[i] = rows[i].max;
      scale[i] = rows[i].scale;
      link[i] = rows[i].link;
      barMin[i] = rows[i].barMin;
      barMax[i] = rows[i].barMax;
    }
  }
  constexpr operator TrackSet() const { return {N, names, defaults, min, max, tables}; }
};

template <size_t N>
struct CheckColumns {
  const char* names[N]{};
  int32_t defaults[N]{};

  constexpr explicit CheckColumns(const CheckRow (&rows)[N]) {
    for (size_t i = 0; i < N; i++) {
      names[i] = rows[i].name;
      defaults[i] = rows[i].value;
    }
  }
  constexpr operator CheckSet() const { return {N, names, defaults}; }
};

/// What a source file says about its effect; everything left out is zero.
struct EffectSource {
  uint32_t flag = 0;
  const char* name = nullptr;
  TrackSet tracks = {};
  CheckSet checks = {};
  EffectProcess proc = nullptr;
  EffectCall init = nullptr;
  EffectCall exit = nullptr;
  EffectEventHandler event = nullptr;
  EffectWindowProcedure window_proc = nullptr;
  EffectWindowProcedure show_controls = nullptr;
  void (*hide_controls)() = nullptr;
  int32_t exdata_size = 0;
  const void* exdata_default = nullptr;
  const ExdataField* exdata_fields = nullptr;
  const int32_t* coordinate_map = nullptr;
  bool cameraTarget = false;
};

constexpr EffectDefinition defineEffect(const EffectSource& source) {
  EffectDefinition d{};
  d.flag = source.flag;
  d.x = source.cameraTarget ? cameraTargetByDefault : 0;
  d.name = source.name;
  d.track_count = source.tracks.count;
  d.track_names = source.tracks.names;
  d.track_defaults = source.tracks.defaults;
  d.track_min = source.tracks.min;
  d.track_max = source.tracks.max;
  d.track_tables = source.tracks.tables;
  d.check_count = source.checks.count;
  d.check_names = source.checks.names;
  d.check_defaults = source.checks.defaults;
  d.proc = source.proc;
  d.init = source.init;
  d.exit = source.exit;
  d.event = source.event;
  d.window_proc = source.window_proc;
  d.show_controls = source.show_controls;
  d.hide_controls = source.hide_controls;
  d.exdata_size = source.exdata_size;
  d.exdata_default = source.exdata_default;
  d.exdata_fields = source.exdata_fields;
  d.coordinate_map = source.coordinate_map;
  return d;
}

template <class Data>
Data& extraData(EffectDefinition* effect) {
  return *static_cast<Data*>(effect->exdata);
}

}  // namespace zenlay
