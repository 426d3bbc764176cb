#include "zenlay/ui/menus/fill.h"

#include "zenlay/effects/registry.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/menus/tables.h"

namespace zenlay {
namespace {

using platform::Menu;

// Control objects that only make sense with a camera.
constexpr int cameraAdvanced = 96, cameraEffect = 97, cameraShadow = 98, cameraScript = 99;

uint32_t flagsOf(int effect) { return effectList[effect]->flag; }
bool has(int effect, uint32_t flags) { return flagsOf(effect) & flags; }
bool isAudio(int effect) { return has(effect, effectAudio); }
/// A built-in that belongs to objects with a picture or sound of their own; the others work on what lies below them.
bool isObjectEffect(int effect) {
  return isBuiltIn(effectList[effect]) && has(effect, effectMedia | effectDrawing | effectFilter);
}
bool isStandalone(int effect) { return !isObjectEffect(effect) && !has(effect, effectControl | effectBasic); }
bool isBuiltInFilter(int effect) { return isBuiltIn(effectList[effect]) && has(effect, effectFilter); }
bool isCameraHelper(int effect) { return effect == cameraEffect || effect == cameraShadow || effect == cameraScript; }

bool isNewObject(int effect) {
  if (!isObjectEffect(effect) || has(effect, effectNotListed | effectControl)) return false;
  return !has(effect, effectFilter) || !isAudio(effect);
}
bool isNewFilterObject(int effect) { return isStandalone(effect) && !has(effect, effectNotListed); }
bool isControlObject(int effect) {
  return has(effect, effectControl) && !has(effect, effectBasic) && effect != cameraAdvanced;
}
bool isVideoEffect(int effect) {
  return isBuiltInFilter(effect) && !isAudio(effect) && !has(effect, effectControl | effectTimelineOnly);
}
bool isVideoFilter(int effect) { return isStandalone(effect) && !isAudio(effect) && !has(effect, effectTimelineOnly); }
bool isAudioEffect(int effect) {
  return isBuiltInFilter(effect) && isAudio(effect) && !has(effect, effectControl | effectTimelineOnly | effectBasic);
}
bool isAudioFilter(int effect) { return isStandalone(effect) && isAudio(effect) && !has(effect, effectTimelineOnly); }
/// Sources and the drawing effects they end in.
bool isSource(int effect) {
  return isBuiltIn(effectList[effect]) && has(effect, effectMedia | effectDrawing) &&
         !has(effect, effectControl | effectTimelineOnly | effectBasic);
}
bool isVideoSource(int effect) { return isSource(effect) && !isAudio(effect); }
bool isAudioSource(int effect) { return isSource(effect) && isAudio(effect); }
bool isCameraEffect(int effect) { return has(effect, effectControl) && !isAudio(effect) && isCameraHelper(effect); }

struct EffectListRow {
  ContextMenu menu;
  const char* submenu;  // null: the menu itself
  bool (*takes)(int effect);
};
constexpr EffectListRow effectLists[] = {
    {menuRow, textNewObject, isNewObject},
    {menuRow, textNewFilterObject, isNewFilterObject},
    {menuRow, textNewObject, isControlObject},
    {menuVideoEffects, textAddEffect, isVideoEffect},
    {menuVideoFilters, textAddEffect, isVideoFilter},
    {menuAudioEffects, textAddEffect, isAudioEffect},
    {menuAudioFilters, textAddEffect, isAudioFilter},
    {menuVideoSource, nullptr, isVideoSource},
    {menuAudioSource, nullptr, isAudioSource},
    {menuCameraEffects, textAddEffect, isCameraEffect},
};

Menu* listOf(Menu* menu, const char* submenu) { return submenu ? platform::findSubmenu(menu, submenu) : menu; }

/// The submenu of that name, made on first use before the standing ones at the list's end; the list itself without a
/// name.
Menu* groupOf(Menu* list, const char* name) {
  if (!name || !*name) return list;
  Menu* group = platform::findSubmenu(list, name);
  return group ? group : platform::addSubmenu(list, name, platform::findSubmenu(list, textNewFilterEffect));
}

void addEffect(Menu* list, int effect) {
  const EffectDefinition* d = effectList[effect];
  const char* group = d->flag & effectBasic ? textBasicEffect : d->category;
  platform::addMenuItem(groupOf(list, group), d->name, menuEffect + effect);
}

/// Where an effect stands in the list of new objects, whose last entries are "New filter effect", the control objects
/// and "Camera control".
void addNewObject(Menu* list, int effect) {
  const EffectDefinition* d = effectList[effect];
  Menu* filters = platform::findSubmenu(list, textNewFilterEffect);
  Menu* cameras = platform::findSubmenu(list, textCameraControl);
  if (d->flag & effectControl) {
    bool camera = effect == effectCameraControl || isCameraHelper(effect);
    Menu* to = camera ? cameras : groupOf(list, d->category);
    platform::addMenuItem(to, d->name, menuEffect + effect, to == list ? cameras : nullptr);
  } else if (d->flag & effectFilter) {
    addEffect(filters, effect);
  } else {
    Menu* to = groupOf(list, d->category);
    platform::addMenuItem(to, d->name, menuEffect + effect, to == list ? filters : nullptr);
  }
}

void addEffects(Menu* const (&menus)[contextMenus]) {
  for (const EffectListRow& row : effectLists) {
    Menu* list = listOf(menus[row.menu], row.submenu);
    bool newObjects = row.submenu == textNewObject;
    for (int effect = 0; effect < effectCount; effect++)
      if (row.takes(effect)) (newObjects ? addNewObject : addEffect)(list, effect);
  }
}

// ---- Aliases and templates ----

enum AliasSort { wholeAlias, mediaAlias, effectAlias, filterAlias };

/// What the user can do with it: place an object, or use it as an object's source, effect or filter.
AliasSort sortOf(int kind) {
  if (kind & aliasIsObject) return wholeAlias;
  if (!(kind & aliasDraws)) return filterAlias;
  return kind & aliasHasSecondEffect ? mediaAlias : effectAlias;
}

struct AliasRow {
  AliasSort sort;
  ContextMenu video, audio;
  const char* submenu;
  const char* inner;  // submenu of the submenu, or null
  bool videoOnly;
};
constexpr AliasRow aliasRows[] = {
    {wholeAlias, menuRow, menuRow, textNewObject, nullptr, false},
    {mediaAlias, menuRow, menuRow, textNewObject, nullptr, false},
    {mediaAlias, menuVideoSource, menuAudioSource, nullptr, nullptr, false},
    {effectAlias, menuVideoEffects, menuAudioEffects, textAddEffect, nullptr, false},
    {effectAlias, menuRow, menuRow, textNewObject, textNewFilterEffect, true},
    {filterAlias, menuRow, menuRow, textNewFilterObject, nullptr, false},
    {filterAlias, menuVideoFilters, menuAudioFilters, textAddEffect, nullptr, false},
};

void addAlias(Menu* const (&menus)[contextMenus], const AliasEntry& alias, int kind, int id) {
  bool audio = kind & aliasAudio;
  for (const AliasRow& row : aliasRows) {
    if (row.sort != sortOf(kind) || (audio && row.videoOnly)) continue;
    Menu* list = listOf(menus[audio ? row.audio : row.video], row.submenu);
    if (row.inner) list = platform::findSubmenu(list, row.inner);
    Menu* to = groupOf(list, alias.subfolder.c_str());
    platform::addMenuItem(to, alias.name.c_str(), id,
                          to == list ? platform::findSubmenu(list, textNewFilterEffect) : nullptr);
  }
}

/// Some numbers behind menuAlias are other entries' ids.
bool isAliasId(int id) { return id < menuTemplate && id != settingsRemoveEffect; }

void addAliases(Menu* const (&menus)[contextMenus]) {
  for (size_t k = 0; k < aliasList.size(); k++) {
    const AliasEntry& alias = aliasList[k];
    int id = menuAlias + static_cast<int>(k);
    int kind = isAliasId(id) ? aliasKind(aliasPath(alias.subfolder, alias.name).c_str()) : 0;
    if (kind) addAlias(menus, alias, kind, id);
  }
}

void addTemplates(Menu* list) {
  for (size_t k = 0; k < objectTemplates.size() && menuTemplate + k < menuTemplateEnd; k++)
    platform::addMenuItem(list, objectTemplates[k].c_str(), menuTemplate + static_cast<int>(k),
                          platform::findSubmenu(list, textNewFilterEffect));
}

}  // namespace

bool isGenerated(ContextMenu menu) {
  for (const EffectListRow& row : effectLists)
    if (row.menu == menu) return true;
  return false;
}

bool menuLists(ContextMenu menu, int effect) {
  if (effect < 0 || effect >= effectCount) return false;
  for (const EffectListRow& row : effectLists)
    if (row.menu == menu && row.takes(effect)) return true;
  return false;
}

void fillMenus(Menu* const (&menus)[contextMenus]) {
  addEffects(menus);
  addAliases(menus);
  addTemplates(platform::findSubmenu(menus[menuRow], textNewObject));
}

}  // namespace zenlay
