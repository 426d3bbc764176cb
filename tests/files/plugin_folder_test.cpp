#include <cstring>

#include "platform/backend.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "tests/files/fixture.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"

namespace zenlay::test {
namespace {

class BesideThePlugin : public Files {
 protected:
  BesideThePlugin() {
    environment.pluginDirectory = folder.path() + "/";
    aliasList.clear();
  }
  ~BesideThePlugin() override { platform::setCodePage(platform::codePageUtf8); }
  std::string textOf(const char* name) {
    std::string text;
    EXPECT_TRUE(platform::readFile(folder / name, text)) << name;
    return text;
  }
};

using DefaultSettings = BesideThePlugin;
using AliasList = BesideThePlugin;

TEST_F(DefaultSettings, AreWhatTheNextObjectBeginsWith) {
  int video = createObject(0, 0, testVideo, -1);
  ASSERT_EQ(addEffect(video, testAdvanced), 1);
  objects[video].startValues[1] = 250;
  objects[video].startValues[trackOf(objects[video], 1, 0)] = -15;
  strcpy(reinterpret_cast<char*>(extraDataOf(video, 0)), "a.avi");
  EXPECT_EQ(writeDefaults(video, 0), 1);
  EXPECT_EQ(textOf("Video file.zlc").substr(0, 43), "[vo.0]\r\n_name=Video file\r\nPlayback position");
  int filter = addEffectWithDefaults(video, testFilter);
  EXPECT_EQ(objects[video].startValues[trackOf(objects[video], filter, 0)], 5) << "no settings yet";
  objects[video].startValues[trackOf(objects[video], filter, 0)] = 77;
  EXPECT_EQ(writeDefaults(video, filter), 1);

  int next = createObjectWithDefaults(0, 1, testVideo);
  const ObjectRecord& o = objects[next];
  EXPECT_EQ(o.startValues[1], 250);
  EXPECT_EQ(o.slots[1].effect, testAdvanced) << "the drawing effect saved along";
  EXPECT_EQ(o.startValues[trackOf(o, 1, 0)], -15);
  EXPECT_EQ(o.flags & objectCameraTarget, unsigned{objectCameraTarget});
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(next, 0)), "a.avi");
  EXPECT_EQ(addEffectWithDefaults(next, testFilter), 1);
  EXPECT_EQ(o.startValues[trackOf(o, 1, 0)], 77);
  int twin = createObjectWithDefaults(0, 2, testFilterObject);
  EXPECT_EQ(objects[twin].startValues[0], 5) << "the twin of that name is another effect";
  EXPECT_EQ(createObjectWithDefaults(0, 100, testVideo), -1);
  EXPECT_EQ(addEffectWithDefaults(twin, -1), -1);
}

TEST_F(DefaultSettings, ReachEverySectionOfAChain) {
  int head = createObject(0, 0, testFilterObject, -1);
  int end = objects[head].end, second = appendSection(head, end + 1, end + 10);
  folder.write("Blur.zlc", "[v.0]\n_name=Blur\nRange=1,9,1\n_disable=1\n");
  EXPECT_EQ(readDefaults(second, 0), 1);
  EXPECT_EQ(objects[head].endValues[0], 9);
  EXPECT_EQ(objects[second].startValues[0], 9);
  EXPECT_EQ(objects[second].slotFlags[0], slotHandles);
  EXPECT_EQ(addEffectWithDefaults(second, testFilterObject), 1);
  EXPECT_EQ(objects[second].modes[3], 1);
}

struct IgnoredRow {
  const char* what;
  const char* text;
};

TEST_F(DefaultSettings, AreIgnoredWhenTheyAreNotTheEffects) {
  const IgnoredRow rows[] = {
      {"another effect", "[vo.0]\n_name=Blurred\nvPlay=1\n"},
      {"another kind", "[v.0]\n_name=Video file\nvPlay=1\n"},
      {"audio", "[ao.0]\n_name=Video file\nvPlay=1\n"},
      {"a header in front", "[vo]\nlength=3\n[vo.0]\n_name=Video file\nvPlay=1\n"},
      {"another section first", "[vo.1]\n_name=Standard drawing\n[vo.0]\n_name=Video file\nvPlay=1\n"},
      {"no name", "[vo.0]\nvPlay=1\n_name=Video file\n"},
      {"cut short", "[vo.0]\n_na"},
      {"nothing", ""},
  };
  int video = createObject(0, 0, testVideo, -1);
  for (const IgnoredRow& row : rows) {
    folder.write("Video file.zlc", row.text);
    EXPECT_EQ(readDefaults(video, 0), 0) << row.what;
    EXPECT_EQ(objects[video].startValues[1], 1000) << row.what;
  }
  // Of a second section only a drawing effect is taken, or lines for the one that is there.
  folder.write("Video file.zlc", "[vo.0]\n_name=Video file\nvPlay=1\n[vo.1]\n_name=Wide\n");
  EXPECT_EQ(readDefaults(video, 0), 1);
  EXPECT_EQ(usedSlots(video), 2);
  folder.write("Video file.zlc", "[vo.0]\n_name=Video file\n[vo.1]\n_name=Standard drawing\nX=2.0\n");
  EXPECT_EQ(readDefaults(video, 0), 1);
  EXPECT_EQ(objects[video].startValues[2], 20);
  EXPECT_EQ(readDefaults(video, 9), 0);
  EXPECT_EQ(readDefaults(-1, 0), 0);
  EXPECT_TRUE(shownMessages().empty());
  EXPECT_EQ(writeDefaults(video, 9), 0);
  EXPECT_EQ(shownMessages().back(), "Failed to save the file");
}

TEST_F(DefaultSettings, OfAHostFilterLieBesideItsModule) {
  EffectDefinition& foreign = *effectList[testForeign];
  EXPECT_EQ(defaultSettingsPath(&foreign), "") << "no module to be found";
  foreign.proc = [](EffectDefinition*, EffectProcessInfo*) { return 1; };
  std::string program(platform::withoutExtension(platform::programPath()));
  EXPECT_EQ(defaultSettingsPath(&foreign), program + ".zlc");
  EXPECT_EQ(defaultSettingsPath(effectList[testVideo]), folder / "Video file.zlc");
}

TEST_F(AliasList, IsFilledFromTheFolderAndItsSubfolders) {
  folder.write("b.zla", "");
  folder.write("A.ZLA", "");
  folder.write("film.zlo", "");
  folder.write("b.zlc", "");
  platform::makeFolders(folder / "Titles/deeper");
  folder.write("Titles/b.zla", "");
  folder.write("Titles/deeper/c.zla", "");
  scanAliases();
  scanAliases();
  ASSERT_EQ(aliasList.size(), 3u);
  EXPECT_EQ(aliasList[0].name, "A");
  EXPECT_EQ(aliasList[1].name, "b");
  EXPECT_EQ(aliasList[2].subfolder, "Titles");
  EXPECT_EQ(aliasPath("Titles", "b"), folder / "Titles/b.zla");
  EXPECT_EQ(aliasPath("", "b"), folder / "b.zla");
  EXPECT_EQ(objectTemplates, std::vector<std::string>{"film"});
  EXPECT_EQ(templatePath("film"), folder / "film.zlo");
  EXPECT_EQ(registerAlias("Titles", "b", firstAliasCommand), -3002);
  EXPECT_EQ(registerAlias("", "new", firstAliasCommand), 3003);
}

TEST_F(AliasList, HoldsSixtyFourKilobytesOfNames) {
  // "\nnnnnn" and its terminator: 8 bytes.
  int count = aliasListBytes / 8;
  for (int i = 0; i < count; i++) ASSERT_EQ(registerAlias("", std::to_string(100000 + i), 3000), 3000 + i);
  EXPECT_EQ(registerAlias("", "", 3000), 0) << "2 bytes more";
  EXPECT_EQ(shownMessages(), std::vector<std::string>{"Unable to add more alias"});
  EXPECT_EQ(registerAlias("", "100001", 3000), -3001) << "what is there needs no room";
}

TEST_F(AliasList, NamesThatPathsCannotHave) {
  for (const char* bad : {"a.b", "a\\b", "a/b", ":", "a,", ";", "*", "?", "<", ">", "|", "\"", "\x83\x5C"}) {
    shownMessages().clear();
    EXPECT_EQ(checkAliasName(bad), 0) << bad;
    EXPECT_EQ(shownMessages(),
              std::vector<std::string>{"The following characters cannot be used\n\\ / . : , ; * ? < > |"});
  }
  shownMessages().clear();
  for (const char* good : {"", "Title 1", "f\xC3\xBC\xC3\x9F (2)", "!#$%&'()=~@`{}[]+-^_"})
    EXPECT_EQ(checkAliasName(good), 1) << good;
  platform::setCodePage(platform::codePage932);
  EXPECT_EQ(checkAliasName("\x83\x5C"), 1) << "a double-byte character that ends in a backslash's code";
  EXPECT_EQ(checkAliasName("\x83\x5C\x5C"), 0);
}

int answerCancel(platform::Window*, const char* text, const char*, uint32_t style) {
  shownMessages().push_back(text);
  EXPECT_EQ(style, 0x42021u);
  return platform::boxCancel;
}

TEST_F(AliasList, NewAliases) {
  EXPECT_EQ(newAliasPath("", "Titles"), "");
  EXPECT_TRUE(shownMessages().empty()) << "an empty name is refused without a word";
  EXPECT_EQ(newAliasPath("a", "b/c"), "");
  EXPECT_EQ(newAliasPath("a", "Titles"), folder / "Titles/a.zla");
  EXPECT_TRUE(platform::folderExists(folder / "Titles"));
  folder.write("Titles/a.zla", "");
  shownMessages().clear();
  EXPECT_EQ(newAliasPath("a", "Titles"), folder / "Titles/a.zla") << "the question was answered with OK";
  const platform::DesktopBackend cancels{answerCancel};
  platform::setDesktopBackend(&cancels);
  EXPECT_EQ(newAliasPath("a", "Titles"), "");
  EXPECT_EQ(shownMessages(),
            std::vector<std::string>(2, "Alias with the same name is present\nDo you want to overwrite it?"));
  platform::setDesktopBackend(nullptr);
}

}  // namespace
}  // namespace zenlay::test
