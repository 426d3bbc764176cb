// Commands that change effect chains: adding, replacing, removing and ordering effects, aliases.
#include <string>

#include "zenlay/effects/registry.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/project/new_alias.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay::commands {
namespace {

const EffectDefinition* effectIn(int object, int slot) { return effectList[objects[object].slots[slot].effect]; }

/// A source, or the drawing effect that a source ends in: it takes the place of the object's own.
bool replaces(const EffectDefinition* d) { return d->flag & (effectMedia | effectDrawing); }

/// Whether the object's menus list the effect.
bool suits(int object, int effect) {
  const ContextMenu menu = effectMenuOf(object);
  if (!replaces(effectList[effect])) return takesEffects(object) && menuLists(menu, effect);
  const ContextMenu source = menu == menuAudioEffects ? menuAudioSource : menuVideoSource;
  return objects[object].flags & objectDrawn && menuLists(source, effect);
}

/// Whether the chain stays within the limits with the effect added or put in place of another.
bool hasRoomFor(int object, int effect) {
  const EffectDefinition* added = effectList[effect];
  const int used = usedSlots(object), last = lastSlot(object);
  int replaced = -1;
  if (added->flag & effectMedia) replaced = 0;
  if (added->flag & effectDrawing && effectIn(object, last)->flag & effectDrawing) replaced = last;
  if (replaced < 0 && used == maxSlots) return false;
  int tracks = added->track_count, checks = added->check_count, extra = extraDataBytes(added);
  for (int slot = 0; slot < used; slot++) {
    if (slot == replaced) continue;
    const EffectDefinition* d = effectIn(object, slot);
    tracks += d->track_count;
    checks += d->check_count;
    extra += extraDataBytes(d);
  }
  return tracks <= maxTracks && checks <= maxChecks && extra <= maxExtraData;
}

/// The selected chains of the current object's kind, or the current object's own.
std::vector<int> chainsOfKind() {
  std::vector<int> chains = heads();
  const int model = onTimeline(currentObject) ? currentObject : chains.front();
  std::erase_if(chains, [=](int head) { return effectMenuOf(head) != effectMenuOf(model); });
  return chains;
}

int addEffectToTarget(int effect) {
  if (effect < 0 || effect >= effectCount) return 0;
  return inOneStep([=] {
    int changed = 0;
    for (int head : chainsOfKind()) {
      if (!suits(head, effect) || !hasRoomFor(head, effect)) continue;
      recordUndo(head, undoSnapshot | undoChain);
      changed |= addEffectWithDefaults(head, effect) >= 0;
    }
    return changed;
  });
}

int addAliasToTarget(int alias) {
  if (alias < 0 || alias >= static_cast<int>(aliasList.size())) return 0;
  const std::string path = aliasPath(aliasList[alias].subfolder, aliasList[alias].name);
  return inOneStep([&] {
    int changed = 0;
    for (int head : chainsOfKind()) {
      int added = addAlias(path.c_str(), head);
      if (added < 0) break;
      changed |= added > 0;
    }
    return changed;
  });
}

bool holdsEffect(int slot) { return slot >= 0 && slot < usedSlots(currentObject); }

/// The first effect makes the object what it is, and a drawing effect is what shows it: they can be replaced only.
int removeSlot(int slot) {
  if (slot < 1 || !holdsEffect(slot)) return 0;
  if (objects[currentObject].flags & objectDrawn && effectIn(currentObject, slot)->flag & effectDrawing) return 0;
  return inOneStep([=] {
    removeEffect(currentObject, slot);
    return 1;
  });
}

int moveSlotBy(int slot, int delta) {
  if (!holdsEffect(slot)) return 0;
  return inOneStep([=] { return moveSlot(currentObject, slot, delta); });
}

int createObjectAlias() {
  const int object = headOf(selection().empty() ? currentObject : selection().front());
  const std::string name = objects[object].name;
  createAlias("New alias <all object>", name.empty() ? effectIn(object, 0)->name : name, object, aliasWholeObject);
  return 0;
}

constexpr Row rows[] = {
    {commandAddEffect, [](const Call& call) { return addEffectToTarget(numberOf(call)); }, needsTarget, showsBoth},
    {commandRemoveEffect, [](const Call& call) { return removeSlot(numberOf(call)); }, needsCurrent, showsBoth},
    {commandAddAlias, [](const Call& call) { return addAliasToTarget(numberOf(call)); }, needsTarget, showsBoth},
    {commandCreateAlias, [](const Call&) { return createObjectAlias(); }, needsTarget},
    {commandMoveEffectUp, [](const Call& call) { return moveSlotBy(numberOf(call), -1); }, needsCurrent, showsBoth},
    {commandMoveEffectDown, [](const Call& call) { return moveSlotBy(numberOf(call), 1); }, needsCurrent, showsBoth},
};

}  // namespace

const std::span<const Row> effectCommands = rows;

}  // namespace zenlay::commands
