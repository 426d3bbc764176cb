// The table of commands: a part a file, joined in commands.cpp.
#pragma once

#include <cstdint>
#include <span>

#include "zenlay/ui/commands/command_ids.h"

namespace zenlay::commands {

enum ActiveWindow { activeOther, activeHost, activeSettings };

struct Call {
  intptr_t parameter;
  int slot;             // high half of the id word
  bool fromHost;        // the host's command message
  ActiveWindow active;  // when it came
};

inline int numberOf(const Call& call) { return static_cast<int>(call.parameter); }

/// What must be there; without it the command does nothing.
enum Need : uint8_t {
  needsNothing,
  needsProject = 0x1,  // the scene has frames
  needsNoProject = 0x2,
  needsCurrent = 0x4,  // object
  needsTarget = 0x8,   // selected objects or a current one
  needsSelection = 0x10,
  anyTime = 0x20,  // a note of what happened, not an edit: also while the host saves or a dialog is open
  leadsOn = 0x40,  // shows a menu that sends other commands
};

/// What shows the change, beside the frame that the host redraws.
enum Shows : uint8_t { showsNothing, showsTimeline = 0x1, showsSettings = 0x2, showsBoth = 0x3 };

struct Row {
  int id;
  /// 1 when something changed: the frame is to be redrawn.
  int (*run)(const Call&);
  uint8_t needs;  // Need
  uint8_t shows = showsNothing;
};

/// Commands first..end - 1 of generated menu entries.
struct Range {
  int first, end;
  int (*run)(int index);
  uint8_t needs;
  uint8_t shows;
};

extern const std::span<const Row> objectCommands, selectionCommands, effectCommands, settingsCommands, layerCommands,
    viewCommands, projectCommands;
extern const std::span<const Range> createCommands;

}  // namespace zenlay::commands
