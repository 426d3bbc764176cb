#include "zenlay/render/binding.h"

#include <algorithm>
#include <cstring>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/draw.h"

namespace zenlay {

namespace {

/// Scene time at which the object is evaluated, held inside its section, and the frame numbers that follow.
void setObjectTime(const ObjectRecord* object, EffectProcessInfo* info) {
  int32_t time = info->layerTime ? info->layerTime[object->homeLayer] : object->start * 100;
  if (time < object->start * 100) {
    info->absoluteFrame = object->start;
    info->subFrame = 0;
  } else if (time / 100 > object->end) {
    info->absoluteFrame = object->end;
    info->subFrame = 0;
  } else {
    info->absoluteFrame = time / 100;
    info->subFrame = time % 100;
  }
  FrameRange chain = chainRange(indexOf(object));
  info->host.frameNumber = info->absoluteFrame - chain.first;
  info->host.frameCount = chain.last - chain.first + 1;
}

/// memcpy, for arrays that may be missing when they are empty.
void copyBytes(void* to, const void* from, size_t bytes) {
  if (bytes) memcpy(to, from, bytes);
}

void bindBuiltIn(EffectDefinition* d, ObjectRecord* object, int slot, int32_t* tracks, uint8_t* extra) {
  int index = indexOf(object);
  int track = object->slots[slot].firstTrack, check = object->slots[slot].firstCheck;
  FrameRange chain = chainRange(index);
  d->track = object->startValues + track;
  if (tracks) {
    // Movement modes without a meaning leave the values they find.
    copyBytes(tracks, d->track, static_cast<size_t>(d->track_count) * sizeof(int32_t));
    d->track = tracks;
  }
  d->check = d->check_values = object->checks + check;
  d->exdata = d->exdata_block = extra;
  d->bound_object = object;
  d->object_ref = makeObjectRef(index, slot);
  d->selected_ref = currentObject >= 0 ? makeObjectRef(currentObject, slot) : 0;
  d->frame_begin = object->start;
  d->frame_end = object->end + (nextSection(index) >= 0);
  d->track_begin_values = object->startValues + track;
  d->track_end_values = object->endValues + track;
  d->track_modes = object->modes + track;
  d->track_params = object->params + track;
  bool chained = object->chainHead >= 0;
  d->chain_begin = chained ? chain.first : d->frame_begin;
  d->chain_end = chained ? chain.last : d->frame_end;
  d->layer = object->homeLayer;
  d->scene = object->scene;
}

size_t foreignTracks(const EffectDefinition* d) {
  return d->track ? static_cast<size_t>(std::clamp(d->track_count, 0, maxTracks)) : 0;
}
size_t foreignChecks(const EffectDefinition* d) {
  return d->check ? static_cast<size_t>(std::clamp(d->check_count, 0, maxChecks)) : 0;
}
size_t foreignExtra(const EffectDefinition* d) {
  return d->exdata ? static_cast<size_t>(std::clamp(extraDataBytes(d), 0, maxForeignExtraData)) : 0;
}

/// A host filter works on its own values: they are put aside and the object's take their place.
void bindForeign(EffectDefinition* d, const ObjectRecord* object, int slot, SlotBinding* binding,
                 const uint8_t* extra) {
  size_t tracks = foreignTracks(d) * sizeof(int32_t), checks = foreignChecks(d) * sizeof(int32_t);
  copyBytes(binding->tracks, d->track, tracks);
  copyBytes(binding->checks, d->check, checks);
  copyBytes(d->track, object->startValues + object->slots[slot].firstTrack, tracks);
  copyBytes(d->check, object->checks + object->slots[slot].firstCheck, checks);
  copyBytes(binding->extraData, d->exdata, foreignExtra(d));
  if (extra) copyBytes(d->exdata, extra, foreignExtra(d));
}

/// Host filters know only opaque frames: one with alpha is handed to them without it, and keeps its alpha.
int runForeign(EffectDefinition* d, EffectProcessInfo* info) {
  if (!frameHasAlpha(info)) return d->proc(d, info);
  FrameProcessInfo saved = info->host;
  FramePixel* opaque = reinterpret_cast<FramePixel*>(info->objectImage);
  int line = info->bufferLine * static_cast<int>(sizeof(FramePixel));
  auto row = [&](void* image, int bytes, int y) { return static_cast<uint8_t*>(image) + int64_t{bytes} * y; };
  for (int y = 0; y < saved.height; y++)
    objectToFrameRow(reinterpret_cast<FramePixel*>(row(opaque, line, y)),
                     reinterpret_cast<ObjectPixel*>(row(saved.frame, saved.lineBytes, y)), saved.width);
  info->host.frame = opaque;
  info->host.scratch = reinterpret_cast<FramePixel*>(info->workImage);
  info->host.lineBytes = line;
  info->host.flags &= ~processFlattening;
  int result = d->proc(d, info);
  for (int y = 0; y < saved.height; y++) {
    ObjectPixel* to = reinterpret_cast<ObjectPixel*>(row(saved.frame, saved.lineBytes, y));
    const FramePixel* from = reinterpret_cast<FramePixel*>(row(info->host.frame, line, y));
    for (int x = 0; x < saved.width; x++) to[x] = {from[x].y, from[x].cb, from[x].cr, to[x].a};
  }
  info->host = saved;
  return result;
}

}  // namespace

EffectDefinition* slotEffect(const ObjectRecord* object, int slot) {
  int effect = object->slots[slot].effect;
  return effect >= 0 && effect < effectCount ? effectList[effect] : nullptr;
}

EffectDefinition* bindSlot(ObjectRecord* object, int slot, SlotBinding* binding, EffectProcessInfo* info) {
  EffectDefinition* d = slotEffect(object, slot);
  if (!d) return nullptr;
  int index = indexOf(object);
  uint8_t* extra = d->flag & effectHasExtraData ? extraDataOf(index, slot) : nullptr;
  if (isBuiltIn(d))
    bindBuiltIn(d, object, slot, binding && info ? binding->tracks : nullptr, extra);
  else
    bindForeign(d, object, slot, binding, extra);
  if (binding) binding->flag = d->flag;
  if (!info) return d;
  setObjectTime(object, info);
  if (d->track_count > 0 && d->track)
    evaluateTracks(d->track, info->absoluteFrame, info->subFrame, index, info->index, object->slots[slot].firstTrack,
                   d->track_count, d);
  return d;
}

void unbindSlot(ObjectRecord* object, int slot, SlotBinding* binding) {
  EffectDefinition* d = slotEffect(object, slot);
  if (!d || isBuiltIn(d)) return;
  uint8_t* extra = d->flag & effectHasExtraData ? extraDataOf(indexOf(object), slot) : nullptr;
  if (extra) copyBytes(extra, d->exdata, foreignExtra(d));
  copyBytes(d->exdata, binding->extraData, foreignExtra(d));
  copyBytes(d->check, binding->checks, foreignChecks(d) * sizeof(int32_t));
  copyBytes(d->track, binding->tracks, foreignTracks(d) * sizeof(int32_t));
}

int runSlot(ObjectRecord* object, int slot, EffectProcessInfo* info) {
  EffectDefinition* d = slotEffect(object, slot);
  if (!d || !d->proc) return 1;
  RenderLevel& level = levelOf(info);
  ObjectRecord* outerObject = level.runningObject;
  int outerSlot = level.runningSlot;
  level.runningObject = object;
  level.runningSlot = slot;
  bool foreign = !isBuiltIn(d);  // a host's record, which ends where the extension begins
  bool inside = !foreign && d->flag & effectRunning;
  EffectDefinition outer;
  if (inside) outer = *d;
  SlotBinding binding;
  bindSlot(object, slot, &binding, info);
  resetProjection(info->host.width, info->host.height);
  if (!(d->flag & effectDrawing)) noteTouched(info, foreign || !info->drawableObject);
  d->flag |= effectRunning;
  int result = foreign ? runForeign(d, info) : d->proc(d, info);
  d->flag = binding.flag;
  unbindSlot(object, slot, &binding);
  if (inside) *d = outer;
  level.runningObject = outerObject;
  level.runningSlot = outerSlot;
  return result;
}

int sendEvent(EffectDefinition* d, int32_t code, intptr_t argument, EffectProcessInfo* info) {
  return isBuiltIn(d) && d->event ? d->event(d, code, argument, info) : 0;
}

void broadcastEvent(int32_t code, EffectProcessInfo* info) {
  for (int i = 0; i < effectCount; i++)
    if (!(effectList[i]->flag & effectAudio)) sendEvent(effectList[i], code, 0, info);
}

}  // namespace zenlay
