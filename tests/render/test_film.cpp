#include "tests/render/test_film.h"

#include <algorithm>
#include <cstring>

#include "zenlay/effects/registry.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/image_cache.h"

namespace zenlay::test {

std::vector<Call> calls;
std::function<int(EffectDefinition*, EffectProcessInfo*)> recorderAction;
std::function<int(int, intptr_t)> recorderEvent;

namespace {

constexpr TrackRow solidRows[] = {
    {"Luma", 4096, 0, 4096, 1, 0, 4096},
    {"Alpha", 4096, 0, 4096, 1, 0, 4096},
    {"Width", 8, 0, 4000, 1, 0, 4000},
    {"Height", 6, 0, 4000, 1, 0, 4000},
};
constexpr TrackColumns solidTracks(solidRows);
constexpr CheckRow solidCheckRows[] = {{"Opaque", 0}};
constexpr CheckColumns solidChecks(solidCheckRows);

int solidProc(EffectDefinition* d, EffectProcessInfo* info) {
  info->objectWidth = d->track[solidWidth];
  info->objectHeight = d->track[solidHeight];
  info->opaqueImage = d->check[0] && info->host.flags & processTakesOpaque;
  int16_t luma = static_cast<int16_t>(d->track[solidLuma]), alpha = static_cast<int16_t>(d->track[solidAlpha]);
  for (int y = 0; y < info->objectHeight; y++) {
    ObjectPixel* row = info->objectImage + y * info->bufferLine;
    if (info->opaqueImage)
      std::fill_n(reinterpret_cast<FramePixel*>(row), info->objectWidth, FramePixel{luma, 0, 0});
    else
      std::fill_n(row, info->objectWidth, ObjectPixel{luma, 0, 0, alpha});
  }
  return 1;
}

constexpr TrackRow placingRows[] = {
    {"X", 0, -999999, 999999, 10, 0, 0, 1},  {"Y", 0, -999999, 999999, 10, 0, 0, 1},
    {"Z", 0, -999999, 999999, 10, 0, 0, -2}, {"Zoom%", 10000, 0, 500000, 100, 0, 0},
    {"Clearness", 0, 0, 1000, 10, 0, 1000},  {"Rotation", 0, -360000, 360000, 100, 0, 0},
};
constexpr TrackColumns placingTracks(placingRows);
constexpr CheckRow placingCheckRows[] = {{"Blend", 0}};
constexpr CheckColumns placingChecks(placingCheckRows);
constexpr int32_t placingMap[coordinateSlots] = {0, 1, 2, -1, -1, 5, -1, -1, -1, 3, -1, 4};

int placingProc(EffectDefinition* d, EffectProcessInfo* info) {
  return d->services->placeObject(d, info, blendFlags(d->check[0]));
}

int record(EffectDefinition* d, EffectProcessInfo* info) {
  calls.push_back({info->host.flags, objectOfRef(d->object_ref), slotOfRef(d->object_ref), info->absoluteFrame,
                   info->subFrame, info->host.frameNumber, info->host.frameCount, info->drawableObject != nullptr,
                   info->objectWidth, info->objectHeight});
  return recorderAction ? recorderAction(d, info) : 1;
}
int recordEvent(EffectDefinition*, int32_t code, intptr_t argument, EffectProcessInfo*) {
  return recorderEvent ? recorderEvent(code, argument) : 0;
}

constexpr TrackRow recorderRows[] = {{"Value", 0, -1000000, 1000000, 1, 0, 0}};
constexpr TrackColumns recorderTracks(recorderRows);

EffectDefinition solidEffect, placingEffect, recorderEffect, opaquePlacingEffect, filterObjectEffect;

}  // namespace

void setUpFilm(int width, int height) {
  resetFakeHost(width, height);
  freeRenderBuffers();
  initialiseImageCache(4);
  calls.clear();
  recorderAction = nullptr;
  recorderEvent = nullptr;
  solidEffect = defineEffect(
      {.flag = effectMedia, .name = "Solid", .tracks = solidTracks, .checks = solidChecks, .proc = solidProc});
  placingEffect = defineEffect({.flag = effectDrawing,
                                .name = "Placing",
                                .tracks = placingTracks,
                                .checks = placingChecks,
                                .proc = placingProc,
                                .coordinate_map = placingMap});
  recorderEffect = defineEffect(
      {.flag = effectFilter, .name = "Recorder", .tracks = recorderTracks, .proc = record, .event = recordEvent});
  opaquePlacingEffect = placingEffect;
  opaquePlacingEffect.flag |= effectTakesOpaque;
  filterObjectEffect = defineEffect({.name = "Filter object", .proc = record});
  EffectDefinition* const list[testEffects] = {
      &solidEffect, &placingEffect, &recorderEffect,         &opaquePlacingEffect,
      &timeControl, &groupControl,  &offScreenDrawingEffect, &filterObjectEffect};
  effectCount = testEffects;
  for (int i = 0; i < testEffects; i++) {
    EffectDefinition* d = effectList[i] = list[i];
    d->flag |= effectBuiltIn;
    if (d->exdata_size) d->flag |= effectHasExtraData;
    d->services = &effectServices;
    d->host_functions = &fakeHost.functions;
    if (d->track_tables) d->track_scale = d->track_tables[0];
  }
}

int addObject(const ObjectPlan& plan) {
  int index = takeFreeObject();
  ObjectRecord& o = objects[index];
  o = {};
  const EffectDefinition* first = effectList[plan.effects[0]];
  o.flags = objectInUse | objectFlagsOf(first);
  o.layer = plan.scene == currentScene ? plan.layer : -1;
  o.homeLayer = plan.layer;
  o.scene = plan.scene;
  o.start = plan.start;
  o.end = plan.end;
  o.chainHead = -1;
  if (plan.chainHead >= 0) o.chainHead = objects[plan.chainHead].chainHead = plan.chainHead;
  int extra = 0;
  for (int slot = 0; slot < maxSlots; slot++) {
    EffectSlot& s = o.slots[slot];
    s.effect = -1;
    if (slot >= static_cast<int>(plan.effects.size())) continue;
    s.effect = plan.effects[slot];
    const EffectDefinition* d = effectList[s.effect];
    s.firstTrack = static_cast<int16_t>(o.trackCount);
    s.firstCheck = static_cast<int16_t>(o.checkCount);
    s.extraDataOffset = extra;
    for (int t = 0; t < d->track_count; t++)
      o.startValues[o.trackCount + t] = o.endValues[o.trackCount + t] = d->track_defaults[t];
    for (int c = 0; c < d->check_count; c++) o.checks[o.checkCount + c] = d->check_defaults[c];
    o.trackCount = static_cast<uint16_t>(o.trackCount + d->track_count);
    o.checkCount = static_cast<uint16_t>(o.checkCount + d->check_count);
    extra += d->exdata_size;
    o.slotFlags[slot] = newSlotFlags;
  }
  if (extra && plan.chainHead < 0) {
    reserveExtraData(index, static_cast<uint32_t>(extra));
    memset(extraDataOf(index, 0), 0, static_cast<size_t>(extra));
  }
  rebuildOrder();
  return index;
}

void setTrack(int object, int slot, int track, int value) {
  ObjectRecord& o = objects[object];
  o.startValues[trackOf(o, slot, track)] = o.endValues[trackOf(o, slot, track)] = value;
}

void moveTrack(int object, int slot, int track, int from, int to) {
  ObjectRecord& o = objects[object];
  int index = trackOf(o, slot, track);
  o.startValues[index] = from;
  o.endValues[index] = to;
  o.modes[index] = modeRectilinear;
}

void setCheck(int object, int slot, int check, int value) {
  objects[object].checks[checkOf(objects[object], slot, check)] = value;
}

void setRange(int control, int layers) { memcpy(extraDataOf(control, 0), &layers, sizeof layers); }

FramePixel Frame::at(int x, int y) const { return info.frame[y * (info.lineBytes / 6) + x]; }

std::vector<int> Frame::bounds(int background) const {
  int left = info.width, top = info.height, right = 0, bottom = 0;
  for (int y = 0; y < info.height; y++)
    for (int x = 0; x < info.width; x++)
      if (luma(x, y) != background) {
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x + 1);
        bottom = std::max(bottom, y + 1);
      }
  return {left, top, right, bottom};
}

Frame blankFrame(int number, int luma) {
  Frame frame;
  size_t pixels = static_cast<size_t>(environment.bufferWidth) * environment.bufferHeight;
  frame.first.assign(pixels, {static_cast<int16_t>(luma), 0, 0});
  frame.second.assign(pixels, {-1, -1, -1});
  frame.info = {};
  frame.info.frame = frame.first.data();
  frame.info.scratch = frame.second.data();
  frame.info.width = environment.clip.width;
  frame.info.height = environment.clip.height;
  frame.info.maxWidth = environment.maxWidth;
  frame.info.maxHeight = environment.maxHeight;
  frame.info.frameNumber = number;
  frame.info.frameCount = fakeHost.frameCount;
  frame.info.pixelBytes = sizeof(FramePixel);
  frame.info.lineBytes = environment.bufferWidth * static_cast<int>(sizeof(FramePixel));
  return frame;
}

Frame renderFrame(int number, int luma) {
  Frame frame = blankFrame(number, luma);
  EXPECT_EQ(renderSceneFrame(&frame.info, layersPerScene, 0, 0, 0), 1);
  return frame;
}

}  // namespace zenlay::test
