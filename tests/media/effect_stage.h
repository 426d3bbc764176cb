// One effect on a stage of its own: a process record with buffers, a service table of stand-ins, values to set.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/fake_host.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay::test {

inline constexpr int stageBytes = 1024;

struct EffectStage {
  EffectDefinition effect;
  EffectServiceTable services{};
  EffectProcessInfo info{};
  std::vector<int32_t> tracks, beginValues, endValues, modes, checks;
  alignas(8) char data[stageBytes] = {};
  std::vector<ObjectPixel> object, work;

  EffectStage(const EffectDefinition& definition, int maxWidth = 64, int maxHeight = 48) : effect(definition) {
    resetFakeHost(maxWidth, maxHeight);
    tracks.assign(effect.track_defaults, effect.track_defaults + effect.track_count);
    beginValues = endValues = tracks;
    modes.resize(effect.track_count);
    checks.resize(effect.check_count);
    for (int i = 0; i < effect.check_count; i++) checks[i] = effect.check_defaults[i] == 1;
    if (effect.exdata_default) memcpy(data, effect.exdata_default, effect.exdata_size);
    effect.track = tracks.data();
    effect.track_begin_values = beginValues.data();
    effect.track_end_values = endValues.data();
    effect.track_modes = modes.data();
    effect.check = checks.data();
    effect.exdata = data;
    effect.object_ref = makeObjectRef(0, 0);
    effect.host_functions = &fakeHost.functions;
    effect.services = &services;

    info.bufferLine = environment.workStride;
    info.bufferHeight = environment.workRows;
    object.resize(static_cast<size_t>(info.bufferLine) * info.bufferHeight);
    work.resize(object.size());
    info.objectImage = object.data();
    info.workImage = work.data();
    info.maxWidth = environment.workW;
    info.maxHeight = environment.workH;
    info.host.width = maxWidth;
    info.host.height = maxHeight;
    info.zoom = zoomOne;
    info.rate = 30;
    info.scale = 1;
    info.num = 1;

    services.swapImages = [](EffectProcessInfo* i) { std::swap(i->objectImage, i->workImage); };
    services.addAlpha = [](EffectProcessInfo* i) {
      for (int y = 0; y < i->objectHeight; y++) {
        ObjectPixel* row = i->objectImage + y * i->bufferLine;
        for (int x = i->objectWidth; x-- > 0;) {
          FramePixel p = reinterpret_cast<FramePixel*>(row)[x];
          row[x] = {p.y, p.cb, p.cr, fullAlpha};
        }
      }
      i->opaqueImage = 0;
    };
    services.chainHead = [](ObjectRef ref) { return ref; };
    services.getObjectData = [](ObjectRef, ObjectData*) { return 0; };
  }

  int run() { return effect.proc(&effect, &info); }
  ObjectPixel& pixel(int x, int y) { return info.objectImage[y * info.bufferLine + x]; }
  FramePixel& opaquePixel(int x, int y) {
    return reinterpret_cast<FramePixel*>(info.objectImage + y * info.bufferLine)[x];
  }
  void setData(size_t offset, const void* bytes, size_t size) { memcpy(data + offset, bytes, size); }
  void setText(size_t offset, const std::string& text) { memcpy(data + offset, text.c_str(), text.size() + 1); }
};

/// (y, cb, cr, a) of a pixel, for comparing.
inline std::vector<int> parts(const ObjectPixel& p) { return {p.y, p.cb, p.cr, p.a}; }
inline std::vector<int> parts(const FramePixel& p) { return {p.y, p.cb, p.cr}; }

}  // namespace zenlay::test
