// Commands on effect chains, and what the generated menu entries create.
#include "tests/ui/commands_stage.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/files/default_settings.h"

namespace zenlay::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int fxText = 3, fxScene = 7, fxSceneAudio = 8, fxDrawing = 10, fxAdvanced = 11, fxPlayback = 12;
constexpr int fxMosaicObject = 22, fxTimeControl = 93, fxGroupControl = 94, fxCamera = 95;
constexpr int fxCameraEffect = 97, fxCameraShadow = 98;

class EffectCommands : public CommandsStage {};

struct AddRow {
  const char* what;
  int object, effect;
  std::vector<int> chain;  // afterwards; empty: refused
};

TEST_F(EffectCommands, AnObjectTakesTheEffectsOfItsMenus) {
  const AddRow rows[] = {
      {"before the drawing effect", fxGraphic, fxBlurEffect, {fxGraphic, fxBlurEffect, fxDrawing}},
      {"another source", fxGraphic, fxText, {fxText, fxDrawing}},
      {"another drawing effect", fxGraphic, fxAdvanced, {fxGraphic, fxAdvanced}},
      {"behind a filter", fxBlurObject, fxMosaicObject, {fxBlurObject, fxMosaicObject}},
      {"behind a filter effect", fxBlurEffect, fxGlowEffect, {fxBlurEffect, fxGlowEffect}},
      {"sound", fxAudioFile, fxVolumeFade, {fxAudioFile, fxVolumeFade, fxPlayback}},
      {"another sound", fxAudioFile, fxSceneAudio, {fxSceneAudio, fxPlayback}},
      {"group control takes filter effects", fxGroupControl, fxBlurEffect, {fxGroupControl, fxBlurEffect}},
      {"camera", fxCamera, fxCameraShadow, {fxCamera, fxCameraShadow}},
      {"the other Blur", fxGraphic, fxBlurObject, {}},
      {"a sound effect for a picture", fxGraphic, fxVolumeFade, {}},
      {"a sound for a picture", fxGraphic, fxAudioFile, {}},
      {"a source for a filter", fxBlurObject, fxGraphic, {}},
      {"a source for a filter effect", fxBlurEffect, fxGraphic, {}},
      {"a camera effect for a picture", fxGraphic, fxCameraEffect, {}},
      {"time control takes nothing", fxTimeControl, fxCameraEffect, {}},
      {"no effect", fxGraphic, 10000, {}},
  };
  for (const AddRow& row : rows) {
    SCOPED_TRACE(row.what);
    deleteAllObjects();
    int object = create(0, 99, 0, row.object);
    strcpy(objects[object].name, "named");
    showObject(object);
    if (row.chain.empty()) {
      expectRefused(commandAddEffect, row.effect);
      continue;
    }
    runUndoable(commandAddEffect, row.effect, [&] {
      EXPECT_EQ(effectsIn(object), row.chain);
      bool newSource = row.chain[0] != row.object;
      EXPECT_STREQ(objects[object].name, newSource ? "" : "named");
    });
  }
}

TEST_F(EffectCommands, EveryChainOfTheKindInTheSelectionTakesIt) {
  int a = createChain(0, 99, 0, {50}), b = create(0, 99, 1), c = create(0, 99, 2, fxGraphic), d = create(0, 99, 3);
  select({a, b, c});
  showObject(d);
  runUndoable(commandAddEffect, fxMosaicObject, [&] {
    for (int object : {a, objectAt(50, 0), b})
      EXPECT_THAT(effectsIn(object), ElementsAre(fxBlurObject, fxMosaicObject));
    EXPECT_THAT(effectsIn(c), ElementsAre(fxGraphic, fxDrawing));
    EXPECT_THAT(effectsIn(d), ElementsAre(fxBlurObject));
  });
}

TEST_F(EffectCommands, NewEffectsBeginWithTheUsersDefaults) {
  int object = create(0, 99, 0, fxGraphic);
  showObject(object);
  runCommand(commandAddEffect, fxBlurEffect);
  objects[object].startValues[trackOf(objects[object], 1, 0)] = 77;
  ASSERT_EQ(writeDefaults(object, 1), 1);
  int other = create(0, 99, 1, fxGraphic);
  showObject(other);
  runUndoable(commandAddEffect, fxBlurEffect,
              [&] { EXPECT_EQ(objects[other].startValues[trackOf(objects[other], 1, 0)], 77); });
}

TEST_F(EffectCommands, NothingChangesBeyondTheTwelfth) {
  showObject(create(0, 99, 0, fxGraphic));  // with Standard drawing
  for (int i = 0; i < 10; i++) EXPECT_EQ(runCommand(commandAddEffect, fxBlurEffect), 1);
  expectRefused(commandAddEffect, fxBlurEffect);
}

TEST_F(EffectCommands, RemovingAndMoving) {
  int media = create(0, 99, 1, fxGraphic);
  showObject(media);
  runCommand(commandAddEffect, fxBlurEffect);
  runCommand(commandAddEffect, fxGlowEffect);
  runUndoable(commandRemoveEffect, 1,
              [&] { EXPECT_THAT(effectsIn(media), ElementsAre(fxGraphic, fxGlowEffect, fxDrawing)); });
  for (int slot : {-1, 0, 3, 4, 12}) expectRefused(commandRemoveEffect, slot);
  for (auto [command, slot] : {std::pair{commandMoveEffectUp, 2}, {commandMoveEffectDown, 1}})
    runUndoable(command, slot,
                [&] { EXPECT_THAT(effectsIn(media), ElementsAre(fxGraphic, fxGlowEffect, fxBlurEffect, fxDrawing)); });
  for (int slot : {-1, 0, 1, 3, 4}) expectRefused(commandMoveEffectUp, slot);
  for (int slot : {-1, 0, 2, 3, 4}) expectRefused(commandMoveEffectDown, slot);
}

TEST_F(EffectCommands, AnAliasForTheSelection) {
  folder.write("soft.zla", "[vo.0]\r\n_name=Blur\r\nRange=42\r\n[vo.1]\r\n_name=Glow\r\n");
  scanAliases();
  int a = create(0, 99, 0, fxGraphic), b = create(0, 99, 1, fxGraphic), c = create(0, 99, 2);
  select({a, b, c});
  showObject(a);
  runUndoable(commandAddAlias, 0, [&] {
    for (int object : {a, b}) {
      EXPECT_THAT(effectsIn(object), ElementsAre(fxGraphic, fxBlurEffect, fxGlowEffect, fxDrawing));
      EXPECT_EQ(objects[object].startValues[trackOf(objects[object], 1, 0)], 42);
    }
    EXPECT_THAT(effectsIn(c), ElementsAre(fxBlurObject));
  });
  for (int alias : {-1, 1}) expectRefused(commandAddAlias, alias);
  std::filesystem::remove(folder / "soft.zla");
  select({a, b});
  expectRefused(commandAddAlias, 0);
  EXPECT_THAT(boxes(), ElementsAre("Failed to read the file"));
}

TEST_F(EffectCommands, ANewAliasIsInTheMenusAtOnce) {
  int a = createChain(0, 99, 0, {50});
  select({a});
  answerDialog("mine");
  EXPECT_EQ(runCommand(commandCreateAlias, 0), 0);
  EXPECT_THAT(titles, ElementsAre("New alias <all object>"));
  EXPECT_EQ(aliasKind((folder / "mine.zla").c_str()) & aliasIsObject, aliasIsObject);
  EXPECT_TRUE(platform::hasMenuItem(contextMenu(menuRow), menuAlias));
  click(200, 4);
  runUndoable(menuAlias, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 49, 0}, {50, 99, 0}, {200, 249, 4}, {250, 299, 4}}));
    EXPECT_EQ(currentObject, objectAt(200, 4));
  });
}

// ---- Creating at the click ----

TEST_F(EffectCommands, AnObjectAtTheClick) {
  click(120, 7);
  for (int effect : {fxGraphic, fxBlurObject, fxBlurEffect, fxTimeControl, fxAudioFile}) {
    runUndoable(menuEffect + effect, 0, [&] {
      // 50 pixels and one frame.
      EXPECT_EQ(places(), (Places{{120, 170, 7}}));
      EXPECT_EQ(effectsIn(objectAt(120, 7))[0], effect);
      EXPECT_EQ(currentObject, objectAt(120, 7));
    });
  }
  click(280, 7);
  EXPECT_EQ(runCommand(menuEffect + fxGraphic, 0), 1);
  EXPECT_EQ(timelineView.sceneLength, 331);
  EXPECT_EQ(fakeHost.frameCount, 331);
  expectRefused(menuEffect + fxDrawing);  // is in no menu of the timeline
}

TEST_F(EffectCommands, NoSoundWithoutSound) {
  folder.write("song.zla", "[ao.0]\r\n_name=Audio file\r\n");
  scanAliases();
  environment.clip.flags = fileHasVideo;
  expectRefused(menuEffect + fxAudioFile);
  expectRefused(menuAlias);
  EXPECT_THAT(boxes(), ElementsAre("No sound in the editing project", "No sound in the editing project"));
}

constexpr char templateText[] =
    "[zenlay]\r\nwidth=320\r\nheight=200\r\nrate=30\r\nscale=1\r\nlength=90\r\naudio_rate=44100\r\naudio_ch=2\r\n"
    "alpha=1\r\nname=Opening\r\n"
    "[0]\r\nstart=1\r\nend=90\r\nlayer=1\r\noverlay=1\r\n[0.0]\r\n_name=Graphic\r\n[0.1]\r\n_name=Standard drawing\r\n";
constexpr char soundText[] =
    "[1]\r\nstart=1\r\nend=90\r\nlayer=2\r\noverlay=1\r\naudio=1\r\n[1.0]\r\n_name=Audio file\r\n[1.1]\r\n"
    "_name=Standard playback\r\n";

TEST_F(EffectCommands, ATemplateBecomesAScene) {
  folder.write("opening.zlo", templateText);
  folder.write("with sound.zlo", std::string(templateText) + soundText);
  scanAliases();
  int kept = create(0, 9, 0);
  click(20, 3);
  EXPECT_EQ(runCommand(menuTemplate, 0), 1);
  EXPECT_EQ(currentScene, 0);
  EXPECT_THAT(places(), ElementsAre(placeOf(kept), Place{20, 109, 3}));
  int scene = objectAt(20, 3);
  EXPECT_THAT(effectsIn(scene), ElementsAre(fxScene, fxDrawing));
  EXPECT_EQ(extraDataOf(scene, 0)[0], 1);
  EXPECT_EQ(currentObject, scene);
  EXPECT_STREQ(sceneName(1), "opening");
  EXPECT_EQ(scenes[1].width, 320);
  EXPECT_EQ(scenes[1].height, 200);
  EXPECT_EQ(scenes[1].flags, sceneSetUp | sceneHasAlpha);
  EXPECT_EQ(objectCount, 3);
  undo();
  EXPECT_EQ(objectCount, 1);
  EXPECT_EQ(freeScene(), 1);
  EXPECT_STREQ(sceneName(1), "Scene 1");

  click(20, 5);
  EXPECT_EQ(runCommand(menuTemplate + 1, 0), 1);
  EXPECT_THAT(places(), ElementsAre(placeOf(kept), Place{20, 109, 5}, Place{20, 109, 6}));
  int picture = objectAt(20, 5), sound = objectAt(20, 6);
  EXPECT_EQ(effectsIn(sound)[0], fxSceneAudio);
  EXPECT_EQ(extraDataOf(picture, 0)[0], extraDataOf(sound, 0)[0]);
  EXPECT_GT(objects[picture].group, 0);
  EXPECT_EQ(objects[picture].group, objects[sound].group);
}

TEST_F(EffectCommands, ATemplateThatCannotBePlacedLeavesNoScene) {
  folder.write("opening.zlo", templateText);
  scanAliases();
  create(0, 299, 3);
  click(20, 3);
  expectRefused(menuTemplate);  // the layer is full to the end of the scene
  EXPECT_EQ(freeScene(), 1);
  EXPECT_EQ(objectCount, 1);
  std::filesystem::remove(folder / "opening.zlo");
  click(20, 4);
  expectRefused(menuTemplate);
  EXPECT_THAT(boxes(), ElementsAre("Failed to read the file"));
  EXPECT_EQ(freeScene(), 1);
}

}  // namespace
}  // namespace zenlay::test
