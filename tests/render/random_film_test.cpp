// A frame depends on the film alone: not on what was rendered before it, which images happened to be dirty, or how many
// workers there are. Random films bring together what single cases do not.
#include <random>

#include "tests/render/test_film.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/render/targets.h"

namespace zenlay::test {
namespace {

constexpr int width = 64, height = 72, filmFrames = 60;  // high enough to be split over workers

class RandomFilm {
 public:
  explicit RandomFilm(unsigned seed) : random_(seed) {
    setUpFilm(width, height);
    scenes[1].flags = sceneSetUp | (below(2) ? sceneHasAlpha + 0u : 0u);
    scenes[1].width = 30;
    scenes[1].height = 70;
    for (int layer = 0; layer < 14; layer++) fillLayer(layer, below(5) == 0);
    recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) { return act(d, info); };
  }

 private:
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  std::vector<int> chain() {
    switch (below(9)) {
      case 0:
        return {filterObject};
      case 1:
        return {recorder};
      case 2:
        return {time};
      case 3:
        return {group};
      case 4:
        return {solid, offScreen, recorder, placing};
      case 5:
        return {solid, recorder, offScreen, opaquePlacing};
      case 6:
        return {solid, recorder, recorder, placing};
      case 7:
        return {solid, opaquePlacing};
      default:
        return {solid, placing};
    }
  }

  void fillLayer(int layer, bool nested) {
    std::vector<int> effects = chain();
    int head = -1;
    for (int start = below(10); start < filmFrames; start += 15) {
      int object = addObject(
          {.layer = layer, .start = start, .end = start + 14, .scene = nested, .effects = effects, .chainHead = head});
      if (head < 0 && below(2)) head = object;
      objects[object].flags |= below(3) == 0 ? objectClipAbove + 0u : 0u;
      if (effects[0] == time) moveTrack(object, 0, 0, below(10000), below(10000));
      if (effects[0] == group) setGroup(object);
      if (effects[0] == solid) setSolid(object, static_cast<int>(effects.size()) - 1);
      if (effects[0] == time || effects[0] == group) setRange(head >= 0 ? head : object, below(4));
    }
    layerTable[layer + (nested ? layersPerScene : 0)].flags = below(8) == 0 ? layerHidden + 0u : 0u;
  }

  void setGroup(int object) {
    setTrack(object, 0, 0, below(200) - 100);
    setTrack(object, 0, 3, 5000 + below(10000));
    setTrack(object, 0, 6, below(3) * 4500);
    setCheck(object, 0, 0, below(2));
  }

  void setSolid(int object, int last) {
    setTrack(object, 0, solidLuma, below(4097));
    setTrack(object, 0, solidAlpha, below(2) ? 4096 : below(4097));
    setTrack(object, 0, solidWidth, 1 + below(64));
    setTrack(object, 0, solidHeight, 1 + below(72));
    setCheck(object, 0, 0, below(2));
    moveTrack(object, last, placingX, below(800) - 400, below(800) - 400);
    moveTrack(object, last, placingZoom, 2000 + below(20000), 2000 + below(20000));
    if (below(3) == 0) setTrack(object, last, placingZoom, 10000), objects[object].modes[4 + placingZoom] = 0;
    if (below(3) == 0) setTrack(object, last, placingRotation, below(36000));
    setTrack(object, last, placingClearness, below(3) ? 0 : below(1001));
    setCheck(object, last, 0, below(13));
  }

  /// What an effect may do, decided by where it stands.
  static int act(EffectDefinition* d, EffectProcessInfo* info) {
    const EffectServiceTable* s = d->services;
    switch ((d->layer * 7 + slotOfRef(d->object_ref)) % 6) {
      case 0:
        s->fill(info->host.frame, d->layer * 3, 5, 9, 60, {1500, 100, -100, 3000},
                info->host.flags & processFlattening ? blendDestinationAlpha + 0u : 0u);
        return 1;
      case 1: {
        int32_t w, h, line;
        bool alpha;
        if (info->depth == 0 && info->drawableObject)
          s->renderScene(info, 1, info->absoluteFrame, 0, &w, &h, &line, &alpha);
        return 1;
      }
      case 2:
        if (!info->drawableObject) return 1;
        for (int i = 0; i < 3; i++) {
          info->ox = (i - 1) * 9 * subPixel;
          s->drawObject(info);
        }
        return 0;
      case 3:  // leaves its image everywhere
        for (int y = 0; y < height; y++)
          std::fill_n(info->workImage + y * info->bufferLine, width, ObjectPixel{3333, 1, 2, 4096});
        return 1;
      case 4:
        info->transparency = 1000;
        return 1;
      default:
        info->oy += 3 * subPixel;
        return 1;
    }
  }

  std::mt19937 random_;
};

std::vector<int16_t> pixelsOf(const Frame& f) {
  std::vector<int16_t> all;
  for (int y = 0; y < f.info.height; y++)
    for (int x = 0; x < f.info.width; x++) all.insert(all.end(), {f.at(x, y).y, f.at(x, y).cb, f.at(x, y).cr});
  return all;
}

TEST(RandomFilms, AFrameDependsOnTheFilmAlone) {
  for (unsigned seed = 0; seed < 60; seed++) {
    RandomFilm film(seed);
    std::vector<std::vector<int16_t>> warm;
    const int frames[] = {0, 7, 16, 15, 31, 44, 3, 59};
    for (int frame : frames) warm.push_back(pixelsOf(renderFrame(frame, 700)));
    fakeHost.threads = 3;
    for (size_t i = 0; i < warm.size(); i++) {
      freeRenderBuffers();
      initialiseImageCache(seed % 2 ? 4 : 0);
      ASSERT_EQ(pixelsOf(renderFrame(frames[i], 700)), warm[i]) << "film " << seed << ", frame " << frames[i];
    }
    ASSERT_EQ(sceneDepth, -1);
  }
}

}  // namespace
}  // namespace zenlay::test
