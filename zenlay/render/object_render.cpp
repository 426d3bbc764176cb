#include "zenlay/render/object_render.h"

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/clipping.h"
#include "zenlay/render/flattening.h"
#include "zenlay/render/group_control.h"
#include "zenlay/render/live_objects.h"

namespace zenlay {

namespace {

struct TargetList {
  ObjectRecord* objects[2 * layersPerScene];
  int count;
};

constexpr uint32_t perCallFlags = 0x800000FF;  // cleared before every effect call
constexpr uint32_t keptState = stateShadowPass1 | stateShadowPass2;

/// The object, the filter objects that follow it (layers without a live object are passed over), and its group
/// controls, innermost first.
void buildTargets(ObjectRecord* object, const EffectProcessInfo* info, TargetList* list) {
  list->objects[0] = object;
  list->count = 1;
  if (!(object->flags & objectDrawn)) return;
  if (info->layerObjects)
    for (int layer = object->homeLayer + 1; layer < layersPerScene; layer++) {
      ObjectRecord* next = info->layerObjects[layer];
      if (!next) continue;
      if (!isFilterObject(next)) break;
      list->objects[list->count++] = next;
    }
  if (!info->layerGroups) return;
  for (ObjectRecord* group = info->layerGroups[object->homeLayer]; group; group = info->layerGroups[group->homeLayer])
    list->objects[list->count++] = group;
}

void resetObject(EffectProcessInfo* info) {
  info->ox = info->oy = info->oz = 0;
  info->rx = info->ry = info->rz = 0;
  info->cx = info->cy = info->cz = 0;
  info->zoom = zoomOne;
  info->aspect = 0;
  info->transparency = 0;
  info->objectWidth = info->objectHeight = 0;
  info->opaqueImage = 0;
  info->state &= keptState;
  info->index = 0;
  info->num = 1;
  info->blendBits = 0;
}

bool isSelected(const ObjectRecord* object) {
  return currentObject >= 0 && headOf(indexOf(object)) == headOf(currentObject);
}

/// Whether anything but the first object's own chain works on its image.
bool laterTargetsWork(const TargetList& list) {
  for (int i = 1; i < list.count; i++)
    if (slotEffect(list.objects[i], 0) != &groupControl || list.objects[i]->slots[1].effect >= 0) return true;
  return false;
}

uint32_t callFlags(const TargetList& list, int target, int slot, const EffectProcessInfo* info) {
  const ObjectRecord* object = list.objects[target];
  uint32_t flags = target > 0 ? processLaterTarget + 0u : 0u;
  if (isSelected(object) && slotFlagsOf(indexOf(object), slot) & slotHandles) flags |= processHandles;
  if (target == 0 && !frameHasAlpha(info) && slot + 1 < maxSlots && !laterTargetsWork(list)) {
    const EffectDefinition* next = slotEffect(object, slot + 1);
    const EffectDefinition* effect = slotEffect(object, slot);
    if (effect->flag & (effectMedia | effectFilter) && next && next->flag & effectTakesOpaque)
      flags |= processTakesOpaque;
  }
  return flags;
}

void prepare(const TargetList& list, EffectProcessInfo* info) {
  uint32_t flags = info->host.flags;
  for (int t = 0; t < list.count; t++) {
    ObjectRecord* object = list.objects[t];
    info->currentObject = object;
    for (int slot = 0; slot < maxSlots; slot++) {
      const EffectDefinition* d = slotEffect(object, slot);
      if (!d) break;
      if (!(d->flag & effectPreparatory) || !d->proc || !slotIsEnabled(object, slot)) continue;
      info->host.flags = (flags & ~perCallFlags) | processPreparatory;
      runSlot(object, slot, info);
    }
  }
  info->host.flags = flags;
}

enum ChainResult { chainEnded, chainDone, chainStopped };

struct ChainStop {
  const ObjectRecord* object;  // null = run to the end
  int slot;
  bool after;  // the slot itself still runs
};

ChainResult runChain(const TargetList& list, int firstTarget, int firstSlot, const ChainStop& stop,
                     EffectProcessInfo* info) {
  uint32_t flags = info->host.flags & ~perCallFlags;
  ChainResult result = chainDone;
  for (int t = firstTarget; t < list.count && result == chainDone; t++) {
    ObjectRecord* object = list.objects[t];
    info->currentObject = object;
    for (int slot = t == firstTarget ? firstSlot : 0; slot < maxSlots && result == chainDone; slot++) {
      bool stopsHere = object == stop.object && slot == stop.slot;
      if (stopsHere && !stop.after) return chainStopped;
      const EffectDefinition* d = slotEffect(object, slot);
      if (!d) break;
      if (!(d->flag & effectDrawing)) {
        if (slotIsEnabled(object, slot)) {
          if (t > 0 && d != &groupControl) addAlpha(info);
          info->host.flags = flags | callFlags(list, t, slot, info);
          if (runSlot(object, slot, info) != 1) result = chainEnded;
          info->host.flags = flags;
        } else if (d->flag & effectMedia) {
          result = chainEnded;
        }
      }
      if (stopsHere && result == chainDone) result = chainStopped;
    }
  }
  info->currentObject = list.objects[0];
  return result;
}

uint32_t clipMarks(const ObjectRecord* object, const EffectProcessInfo* info) {
  return info->clipFlags ? info->clipFlags[object->homeLayer] : 0;
}

void keepAsPrevious(const EffectProcessInfo* info) {
  levelOf(info).previous = {info->objectImage, info->objectWidth, info->objectHeight, info->opaqueImage,
                            info->ox,          info->oy,          info->oz,           info->rx,
                            info->ry,          info->rz,          info->cx,           info->cy,
                            info->cz,          info->zoom,        info->aspect,       info->transparency};
}

void place(ObjectRecord* object, EffectProcessInfo* info) {
  uint32_t marks = clipMarks(object, info);
  if (marks && flattenForClipping(info)) {
    if (marks & clipped) applyClip(info);
    if (marks & clipSource) storeClip(info);
  }
  info->state |= stateFinal;
  composite(info);
  keepAsPrevious(info);
}

}  // namespace

int drawingSlot(const ObjectRecord* object) {
  int slot = lastSlot(indexOf(object));
  if (slot < 0) return -1;
  const EffectDefinition* d = slotEffect(object, slot);
  return d && d->flag & effectDrawing && slotIsEnabled(object, slot) ? slot : -1;
}

void composite(EffectProcessInfo* info) {
  if (info->state & stateFlattened) {
    copyFlattened(info);
    return;
  }
  ObjectRecord* object = info->drawableObject;
  int slot = object ? drawingSlot(object) : -1;
  if (slot < 0) return;
  uint32_t flags = info->host.flags;
  info->host.flags = flags & ~perCallFlags;
  if (isSelected(object) && slotFlagsOf(indexOf(object), slot) & slotHandles) info->host.flags |= processHandles;
  runSlot(object, slot, info);
  info->host.flags = flags;
}

int renderObject(ObjectRecord* object, EffectProcessInfo* info, uint32_t stopReference) {
  if (object->flags & objectAudio) return 1;
  TargetList list;
  buildTargets(object, info, &list);
  ObjectRef ref = stopReference & 0xFFFFFF;
  int target = 0;
  while (ref && target < list.count && indexOf(list.objects[target]) != objectOfRef(ref)) target++;
  if (target == list.count) return 0;
  bool continues = stopReference & startAfterSlot;
  ChainStop stop{ref && !continues ? list.objects[target] : nullptr, slotOfRef(ref),
                 (stopReference & stopAfterSlot) != 0};

  ObjectRecord* outerDrawable = info->drawableObject;
  info->drawableObject = object->flags & objectDrawn ? object : nullptr;
  info->currentObject = object;
  ChainResult result;
  if (continues) {
    result = runChain(list, target, slotOfRef(ref) + 1, stop, info);
  } else {
    if (!outerDrawable) {
      assignImages(info);
      levelOf(info).individualsDrawn = false;
    }
    resetObject(info);
    prepare(list, info);
    result = runChain(list, 0, 0, stop, info);
  }
  if (result == chainEnded) {
    if (clipMarks(object, info) & clipSource && !levelOf(info).individualsDrawn) info->clipValid = 0;
  } else if (result == chainDone && (info->drawableObject || info->state & stateThroughCamera)) {
    place(object, info);
  }
  info->drawableObject = outerDrawable;
  return result != chainEnded;
}

int drawObject(EffectProcessInfo* info) {
  RenderLevel& level = levelOf(info);
  if (!level.runningObject || !info->drawableObject || level.flattening) return 0;
  EffectProcessInfo saved = *info;
  int result = renderObject(info->drawableObject, info,
                            startAfterSlot | makeObjectRef(indexOf(level.runningObject), level.runningSlot));
  if (result) level.individualsDrawn = true;
  saved.clipValid = info->clipValid;
  saved.host.frame = info->host.frame;
  saved.host.scratch = info->host.scratch;
  *info = saved;
  return result;
}

bool objectIsAllowed(ObjectRecord* object, EffectProcessInfo* info) {
  for (int slot = 0; slot < maxSlots; slot++) {
    EffectDefinition* d = slotEffect(object, slot);
    if (!d) break;
    if (sendEvent(d, eventObject, reinterpret_cast<intptr_t>(object), info)) return false;
  }
  return true;
}

}  // namespace zenlay
