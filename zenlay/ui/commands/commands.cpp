#include "zenlay/ui/commands/commands.h"

#include "platform/window.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace commands {
namespace {

constexpr const std::span<const Row>* tables[] = {&objectCommands,   &selectionCommands, &effectCommands,
                                                  &settingsCommands, &layerCommands,     &viewCommands,
                                                  &projectCommands};
constexpr int customControlsBegin = 22000, customControlsEnd = 25072;

int waiting;  // commands that have not come back from a dialog or the host

const Row* findRow(int id) {
  for (const std::span<const Row>* table : tables)
    for (const Row& row : *table)
      if (row.id == id) return &row;
  return nullptr;
}

const Range* findRange(int id) {
  for (const Range& range : createCommands)
    if (id >= range.first && id < range.end) return &range;
  return nullptr;
}

bool met(uint8_t needs) {
  if (!(needs & anyTime) && (environment.saving || waiting > 0 || movesObjects(timelineView.dragMode))) return false;
  if (needs & needsProject && timelineView.sceneLength < 1) return false;
  if (needs & needsNoProject && timelineView.sceneLength > 0) return false;
  if (needs & needsCurrent && !onTimeline(currentObject)) return false;
  if (needs & needsSelection && selection().empty()) return false;
  return !(needs & needsTarget) || !selection().empty() || onTimeline(currentObject);
}

int show(int changed, uint8_t shows) {
  if (!changed) return 0;
  if (shows & showsTimeline) redrawTimeline();
  if (shows & showsSettings) onTimeline(currentObject) ? relayoutSettings() : showObject(-1);
  return 1;
}

template <class Run>
int runGuarded(uint8_t needs, uint8_t shows, Run run) {
  if (!met(needs)) return 0;
  const bool alone = !(needs & (anyTime | leadsOn));
  waiting += alone;
  int changed = run();
  waiting -= alone;
  return show(changed, shows);
}

ActiveWindow activeWindow() {
  platform::Window* active = platform::activeWindow();
  if (!active) return activeOther;
  if (active == settingsWindow()) return activeSettings;
  return active == environment.hostMainWindow ? activeHost : activeOther;
}

int dispatch(int word, intptr_t parameter, bool fromHost) {
  int id = word & 0xFFFF;
  if (id >= customControlsBegin && id < customControlsEnd)
    return runGuarded(needsCurrent, showsNothing, [&] { return customControl(id, static_cast<int>(parameter)); });
  if (const Row* row = findRow(id)) {
    const Call call{parameter, word >> 16, fromHost, activeWindow()};
    return runGuarded(row->needs, row->shows, [&] { return row->run(call); });
  }
  const Range* range = findRange(id);
  return range ? runGuarded(range->needs, range->shows, [&] { return range->run(id - range->first); }) : 0;
}

}  // namespace
}  // namespace commands

int runCommand(int id, intptr_t parameter) { return commands::dispatch(id, parameter, false); }
int runHostCommand(int id, intptr_t parameter) { return commands::dispatch(id, parameter, true); }

}  // namespace zenlay
