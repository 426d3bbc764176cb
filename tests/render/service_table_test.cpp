
#include "tests/render/test_film.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/effects/service_hooks.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/targets.h"
#include "zenlay/render/work_memory.h"

namespace zenlay::test {
namespace {

const EffectServiceTable& services = effectServices;

struct Services : Film {
  Services() { serviceHooks = {}; }
};

TEST_F(Services, EveryPlaceButOneIsFilled) {
  const void* const* places = reinterpret_cast<const void* const*>(&services);
  for (size_t i = 0; i < sizeof services / sizeof places[0]; i++) EXPECT_EQ(places[i] != nullptr, i != 24) << i;
}

TEST_F(Services, WalkChains) {
  int head = addObject({.start = 0, .end = 9});
  int middle = addObject({.start = 10, .end = 19, .chainHead = head});
  int last = addObject({.start = 20, .end = 29, .chainHead = head});
  int alone = addObject({.layer = 1});
  auto ref = [](int object) { return makeObjectRef(object, 1); };
  EXPECT_EQ(services.nextSection(ref(head)), ref(middle));
  EXPECT_EQ(services.nextSection(ref(last)), 0u);
  EXPECT_EQ(services.previousSection(ref(last)), ref(middle));
  EXPECT_EQ(services.previousSection(ref(head)), 0u);
  EXPECT_EQ(services.chainHead(ref(last)), ref(head));
  EXPECT_EQ(services.chainHeadViaLast(ref(middle)), ref(head));
  EXPECT_EQ(services.chainLength(ref(middle)), 3);
  EXPECT_EQ(services.chainHead(ref(alone)), ref(alone));
  EXPECT_EQ(services.chainHeadViaLast(ref(alone)), 0u);
  EXPECT_EQ(services.chainLength(ref(alone)), 1);
  EXPECT_EQ(services.nextSection(ref(alone)), 0u);
  ObjectData data;
  ASSERT_EQ(services.getObjectData(ref(middle), &data), 1);
  EXPECT_EQ(data.firstFrame, 10);
  EXPECT_EQ(data.lastFrame, 20);
  EXPECT_EQ(data.startValues, objects[middle].startValues + 4);
  ASSERT_EQ(services.getObjectData(ref(last), &data), 1);
  EXPECT_EQ(data.lastFrame, 29);
  EXPECT_EQ(services.getObjectData(0, &data), 0);
  EXPECT_EQ(services.getObjectData(makeObjectRef(head, 5), &data), 0);
  currentObject = head;
  EXPECT_TRUE(services.isSelected(ref(last)));
  EXPECT_FALSE(services.isSelected(ref(alone)));
}

TEST_F(Services, FindObjectsAndSlots) {
  int object = addObject({.layer = 4, .start = 10, .end = 20, .effects = {solid, recorder, recorder, placing}});
  int nested = addObject({.layer = 4, .start = 0, .end = 5, .scene = 3});
  objects[object].flags |= objectCameraTarget;
  struct Row {
    int frame, layer, scene;
    const char* name;
    uint32_t filter;
    ObjectRef expected;
  };
  for (const Row& row : {Row{10, 4, 0, nullptr, 0, makeObjectRef(object, 0)}, Row{9, 4, 0, nullptr, 0, 0},
                         Row{21, 4, 0, nullptr, 0, 0}, Row{15, 3, 0, nullptr, 0, 0}, Row{15, 100, 0, nullptr, 0, 0},
                         Row{15, 4, 0, "Recorder", 0, makeObjectRef(object, 1)}, Row{15, 4, 0, "recorder", 0, 0},
                         Row{15, 4, 0, nullptr, findDrawing, makeObjectRef(object, 3)},
                         Row{15, 4, 0, nullptr, findFilterEffect | findNotAudio, makeObjectRef(object, 1)},
                         Row{15, 4, 0, nullptr, findAudio, 0}, Row{15, 4, 0, nullptr, findCamera, 0},
                         Row{15, 4, 0, nullptr, findCameraTarget, makeObjectRef(object, 0)},
                         Row{5, 4, 3, nullptr, 0, makeObjectRef(nested, 0)}, Row{6, 4, 3, nullptr, 0, 0},
                         Row{5, 4, 3, nullptr, findCameraTarget, 0}})
    EXPECT_EQ(services.findObject(row.frame, row.layer, row.scene, row.name, row.filter), row.expected)
        << row.frame << " " << row.layer << " " << row.filter;
  EXPECT_EQ(services.findNextSlot(makeObjectRef(object, 1), "Recorder", 0), makeObjectRef(object, 2));
  EXPECT_EQ(services.findNextSlot(makeObjectRef(object, 2), "Recorder", 0), makeObjectRef(object, 1));  // around
  EXPECT_EQ(services.findNextSlot(makeObjectRef(object, 3), "Placing", 0), 0u);
  objects[object].slotFlags[1] = 0;
  EXPECT_EQ(services.findObject(15, 4, 0, "Recorder", 0), makeObjectRef(object, 2));
  layerTable[4].flags = layerHidden;
  EXPECT_EQ(services.findObject(15, 4, 0, nullptr, 0), 0u);
}

TEST_F(Services, EvaluateTracks) {
  int head = addObject({.start = 0, .end = 9, .effects = {recorder, placing}});
  int second = addObject({.start = 10, .end = 20, .effects = {recorder, placing}, .chainHead = head});
  moveTrack(second, 1, placingY, 0, 1000);
  int32_t values[8] = {};
  ObjectRef ref = makeObjectRef(head, 1);  // the piece that contains the frame is used
  EXPECT_EQ(services.getTrackValues(ref, 13, 0, values, 0), 6);
  EXPECT_EQ(values[placingY], 300);
  EXPECT_EQ(values[placingZoom], 10000);
  EXPECT_EQ(services.getTrackValues(ref, 13, 50, values, placingY + 1), 1);
  EXPECT_EQ(values[0], 350);
  EXPECT_EQ(services.getTrackValues(ref, 13, 0, values, reinterpret_cast<intptr_t>("Zoom%")), 1);
  EXPECT_EQ(values[0], 10000);
  EXPECT_EQ(services.getTrackValues(ref, 13, 0, values, reinterpret_cast<intptr_t>("Nothing")), 0);
  EXPECT_EQ(services.getTrackValues(ref, 13, 0, values, 7), 0);
}

double scriptedValue;
double scripted(const ScriptTrack&) { return scriptedValue; }

TEST_F(Services, IntegralsAreTheSumsOfAllFramesInAnyOrderAndAfterAnyChange) {
  int head = addObject({.start = 3, .end = 902, .effects = {recorder}});
  int second = addObject({.start = 903, .end = 1400, .effects = {recorder}, .chainHead = head});
  const int track = objects[head].slots[0].firstTrack;
  EffectDefinition* definition = nullptr;
  int64_t integral = 0;
  recorderAction = [&](EffectDefinition* d, EffectProcessInfo* info) {
    definition = d;
    integral = d->services->trackIntegral(d, info, 0);
    EXPECT_EQ(d->services->trackIntegral(d, info, 1), 0) << "no such track";
    return 1;
  };
  auto expectSum = [&](int frame, int subFrame) {
    Frame f = blankFrame(frame);
    renderSceneFrame(&f.info, layersPerScene, 0, subFrame, 0);
    int64_t sum = 0;
    for (int i = objects[head].start; i <= frame; i++) {
      int section = i < 903 ? head : second;
      int32_t value = objects[section].startValues[track];
      evaluateTracks(&value, i, 0, section, 0, track, evaluateSingle ^ 0, definition);
      sum += int64_t{value} * (i == frame ? subFrame : 100);
    }
    EXPECT_EQ(integral, sum) << frame << ' ' << subFrame << " mode " << objects[head].modes[track];
  };
  int32_t* const inputs[] = {&objects[head].startValues[track], &objects[second].endValues[track],
                             &objects[head].endValues[track], &objects[head].params[track], &objects[head].start};
  evaluateScriptTrack = scripted;
  for (int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 0x60 | 1, 0x40 | 2, 0x20 | 8}) {
    for (int section : {head, second}) {
      objects[section].modes[track] = mode;
      objects[section].params[track] = 7;
    }
    objects[head].startValues[track] = -500;
    objects[head].endValues[track] = objects[second].startValues[track] = 9000;
    objects[second].endValues[track] = 100;
    for (int frame : {1200, 3, 700, 701, 702, 450, 1399, 1200, 1201}) expectSum(frame, frame % 100);
    for (int32_t* input : inputs) {
      *input += 2;
      expectSum(1201, 0);
    }
    objects[head].start = 3;
    scriptedValue += 10;
    expectSum(1201, 50);
  }
  evaluateScriptTrack = nullptr;
}

TEST_F(Services, ChangeNamesAndLengths) {
  int head = addObject({.start = 0, .end = 9});
  int second = addObject({.start = 10, .end = 19, .chainHead = head});
  addObject({.start = 40, .end = 50});
  EXPECT_EQ(services.setObjectName(makeObjectRef(second, 0), "Title"), 1);
  EXPECT_STREQ(objects[head].name, "Title");
  EXPECT_EQ(services.setObjectName(makeObjectRef(second, 1), "Other"), 0);
  EXPECT_EQ(services.setObjectName(makeObjectRef(second, 0), std::string(64, 'x').c_str()), 0);
  EXPECT_EQ(services.setObjectName(makeObjectRef(second, 0), std::string(63, 'x').c_str()), 1);
  for (auto [length, expected] : {std::pair{30, 30}, {41, 40}, {INT32_MAX, 40}, {5, 11}, {-3, 11}}) {
    EXPECT_EQ(services.changeObjectLength(makeObjectRef(head, 0), length, 0), expected);
    EXPECT_EQ(objects[second].end, expected - 1);
  }
}

TEST_F(Services, RecordAtMost256Handles) {
  int object = addObject({});
  const int16_t parameters[4] = {1, 2, 3, 4};
  clearHandles();
  services.addHandle(0, 1, 2, 3, 4, parameters, 5, 6);
  EXPECT_EQ(previewHandleCount, 0);
  services.addHandle(makeObjectRef(object, 1), 1, 2, 3, 4, parameters, 5, 6);
  services.addFreeHandle(1, 2, 3, 4, parameters, 5);
  services.addHandle3d(makeObjectRef(object, 1), 7, 8, 1, 2, 3, 4, parameters, 5, 6);
  ASSERT_EQ(previewHandleCount, 3);
  EXPECT_EQ(previewHandles[0].kind, 5u);
  EXPECT_EQ(previewHandles[1].kind, 0x18005u);
  EXPECT_EQ(previewHandles[2].kind, 0x41805u);
  EXPECT_EQ(previewHandles[2].coordinate2, 8);
  EXPECT_EQ(previewHandles[0].parameters[3], 4);
  for (int i = 0; i < 300; i++) services.addFreeHandle(0, 0, 0, 0, parameters, 0);
  EXPECT_EQ(previewHandleCount, maxHandles);
  clearHandles();
  layerTable[0].flags = layerLocked;
  services.addHandle(makeObjectRef(object, 1), 1, 2, 3, 4, parameters, 5, 6);
  EXPECT_EQ(previewHandleCount, 0);
}

TEST_F(Services, KeepWorkMemoryPerSlotOfTheChain) {
  int head = addObject({.start = 0, .end = 9});
  int second = addObject({.start = 10, .end = 19, .chainHead = head});
  bool created;
  char* memory = static_cast<char*>(services.workMemory(makeObjectRef(head, 1), 100, &created));
  ASSERT_TRUE(memory && created);
  EXPECT_EQ(memory[99], 0);
  memory[99] = 5;
  EXPECT_EQ(services.workMemory(makeObjectRef(second, 1), 100, &created), memory);
  EXPECT_FALSE(created);
  EXPECT_NE(services.workMemory(makeObjectRef(head, 0), 100, &created), memory);
  EXPECT_TRUE(created);
  memory = static_cast<char*>(services.workMemory(makeObjectRef(head, 1), 200, &created));
  EXPECT_TRUE(created);
  EXPECT_EQ(memory[99], 0);
  freeWorkMemoryOf(head);
  services.workMemory(makeObjectRef(head, 1), 200, &created);
  EXPECT_TRUE(created);
  EXPECT_EQ(services.workMemory(0, 10, &created), nullptr);
  freeWorkMemory();
}

TEST_F(Services, FillAndCopyOnTheFrameAndOnImages) {
  addObject({.effects = {solid, recorder, placing}});
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    const EffectServiceTable* s = d->services;
    s->fill(info->host.frame, -2, 3, 5, 2, {2000, 10, -10, 4096}, 0);
    s->fill(info->host.frame, 60, 47, 99, 99, {2000, 0, 0, 2048}, 0);
    s->fill(info->workImage, 0, 0, 70, 1, {1, 2, 3, 4}, blendDestinationAlpha);
    EXPECT_EQ(info->workImage[63].a, 4);
    EXPECT_EQ(info->workImage[63].cr, 3);
    s->blendCopy(info->host.frame, 10, 40, info->objectImage, 6, 4, 2, 2, 0, blendSourceAlpha);
    s->blendCopy(info->host.frame, 20, 40, info->host.frame, 0, 3, 4, 1, 0, 0);
    return 0;
  };
  Frame f = renderFrame(0);
  EXPECT_EQ(f.luma(0, 3), 2000);
  EXPECT_EQ(f.at(2, 4).cr, -10);
  EXPECT_EQ(f.luma(3, 3), 0);
  EXPECT_EQ(f.luma(63, 47), 1000);
  EXPECT_EQ(f.luma(11, 41), 4096);
  EXPECT_EQ(f.luma(12, 41), 0);
  EXPECT_EQ(f.luma(22, 40), 2000);
  EXPECT_EQ(f.luma(23, 40), 0);
}

TEST_F(Services, ConvertPicturesToppedByTheirLastRow) {
  std::vector<ObjectPixel> out(72 * 2);
  const uint8_t bgr[2][8] = {{0, 0, 255, 0, 0, 0}, {255, 255, 255, 0, 255, 0}};  // two pixels a row, padded to 8
  services.convertRgb(out.data(), bgr, 2, 2, 24);
  EXPECT_EQ(out[72].a, 4096);
  EXPECT_GT(out[72].y, 1000);  // the first stored row, red, is the lower one
  EXPECT_GT(out[0].y, 4000);
  const uint8_t bgra[4] = {255, 255, 255, 0};
  services.convertRgb(out.data(), bgra, 1, 1, 32);
  EXPECT_EQ(out[0].a, 0);
}

TEST_F(Services, AnswerForTheHostAndLaterRooms) {
  SystemDescription system;
  EXPECT_EQ(services.getSystem(&system), 1);
  EXPECT_EQ(system.version, 9200);
  EXPECT_EQ(system.bufferLine, 72);
  EXPECT_EQ(system.bufferLines, 56);
  EXPECT_EQ(system.lineBytes, 576);
  EXPECT_EQ(system.rate, 30);
  EXPECT_EQ(services.setHostFrame(12), 12);
  EXPECT_EQ(services.getHostFrame(), 12);
  int object = addObject({});
  ObjectRef ref = makeObjectRef(object, 0);
  EXPECT_EQ(services.drawText(nullptr), 0);
  EXPECT_EQ(services.chooseColour(ref, nullptr, 0), 0);
  EXPECT_EQ(services.getSettingsControl(ref, 0, 0), nullptr);
  EXPECT_EQ(services.setTrackRange(ref, 0, 0, 1, 0), 0);
  serviceHooks.setTrackRange = [](ObjectRef, int, int, int max, int denominator) { return max * denominator; };
  serviceHooks.chooseColour = [](ObjectRef, void*, uint32_t) { return 1; };
  EXPECT_EQ(services.setTrackRange(ref, 0, 0, 9, 0), 0);  // not selected
  currentObject = object;
  EXPECT_EQ(services.setTrackRange(ref, 0, 0, 9, 0), 9);
  EXPECT_EQ(services.chooseColour(0, nullptr, 0), 0);
  EXPECT_EQ(services.chooseColour(ref, nullptr, 0), 1);
  EXPECT_EQ(services.setOperatedObject(ref, 5), 1);
  EXPECT_EQ(serviceState.operatedValue, 5);
  EXPECT_EQ(services.setOperatedObject(0, 5), 1);
  EXPECT_EQ(serviceState.operatedObject, 0u);
}

TEST_F(Services, AddAlphaWidensInPlace) {
  addObject({.effects = {solid, recorder, placing}});
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    constexpr int width = 64, height = 3;
    info->objectWidth = width;
    info->objectHeight = height;
    for (int y = 0; y < height; y++)
      for (int x = 0; x < width; x++)
        reinterpret_cast<FramePixel*>(info->objectImage + y * info->bufferLine)[x] = {
            static_cast<int16_t>(y * 100 + x), static_cast<int16_t>(x), static_cast<int16_t>(-x)};
    info->opaqueImage = 1;
    d->services->addAlpha(info);
    EXPECT_EQ(info->opaqueImage, 0);
    for (int y = 0; y < height; y++)
      for (int x = 0; x < width; x++) {
        const ObjectPixel& p = info->objectImage[y * info->bufferLine + x];
        EXPECT_TRUE(p.y == y * 100 + x && p.cb == x && p.cr == -x && p.a == 4096) << x << " " << y;
      }
    return 0;
  };
  renderFrame(0);
  EXPECT_EQ(calls.size(), 1u);
}

}  // namespace
}  // namespace zenlay::test
