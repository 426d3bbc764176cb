// The context menus: their rows, what fills them, checks and greying, the shortcut entries.
#include "zenlay/ui/menus/menus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "tests/support/fake_host.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_desktop.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/pipeline.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::test {
namespace {

using platform::Menu;
using platform::test::menuLines;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using Lines = std::vector<std::string>;

class Menus : public testing::Test {
 protected:
  void SetUp() override {
    resetFakeHost();
    registerBuiltIns(&fakeHost.functions, &effectServices, nullptr);
    environment.pluginDirectory = folder.path() + "/";
    aliasList.clear();
    objectTemplates.clear();
    desktop.emplace();
  }
  void TearDown() override {
    destroyMenus();
    desktop.reset();
    aliasList.clear();
    objectTemplates.clear();
    exitEffects();
    resetFakeHost();
  }
  static Menu* newObjects() { return platform::findSubmenu(contextMenu(menuRow), "New media object"); }
  static Menu* effectsOf(ContextMenu menu) { return platform::findSubmenu(contextMenu(menu), "Add a filter effect"); }
  /// "name 2057" of every entry with a number, in order, "Submenu/" in front.
  static Lines entries(const Menu* menu, const std::string& prefix = "") {
    Lines lines;
    for (int i = 0; i < platform::menuEntryCount(menu); i++) {
      platform::MenuEntry entry = platform::menuEntry(menu, i);
      if (entry.id) lines.push_back(prefix + entry.text + " " + std::to_string(entry.id));
      if (!entry.submenu) continue;
      Lines inner = entries(entry.submenu, prefix + entry.text + "/");
      lines.insert(lines.end(), inner.begin(), inner.end());
    }
    return lines;
  }
  Lines shown(ContextMenu menu) {
    Lines lines;
    desktop->menus.push_back([&](const Menu* opened) {
      lines = menuLines(opened);
      return 0;
    });
    EXPECT_EQ(showContextMenu(menu, nullptr, {}), 0);
    return lines;
  }
  /// Entries with these numbers of the registry.
  static Lines listed(std::initializer_list<int> effects) {
    Lines lines;
    for (int effect : effects)
      lines.push_back(std::string(effectList[effect]->name) + " " + std::to_string(2000 + effect));
    return lines;
  }

  ::test::ScratchFolder folder;
  std::optional<platform::test::ScriptedDesktop> desktop;
};

TEST_F(Menus, NewObjectsInTheOrderOfTheRegistry) {
  createMenus();
  Lines lines = entries(newObjects());
  // Sources, the drawing effect that is listed, then the standing submenus.
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + 3), (Lines{"Video file 2000", "Image file 2001", "Audio file 2002"}));
  EXPECT_EQ(Lines(lines.begin() + 9, lines.begin() + 13),
            (Lines{"Previous object 2009", "Particle output 2013", "Custom object 2080",
                   "New filter effect/Color compensation 2015"}));
  auto motionBlur = std::find(lines.begin(), lines.end(), "New filter effect/Motion blur 2049");
  ASSERT_NE(motionBlur, lines.end());
  EXPECT_EQ(motionBlur[1], "New filter effect/Basic effect/Coordinate 2051") << "where the first of them stands";
  EXPECT_EQ(motionBlur[9], "New filter effect/Vibration 2058");
  EXPECT_THAT(lines, Not(Contains("New filter effect/Volume fade 2089")));
  EXPECT_EQ(Lines(lines.end() - 6, lines.end()),
            (Lines{"Time control 2093", "Group control 2094", "Camera control/Camera control 2095",
                   "Camera control/Camera effect 2097", "Camera control/Shadow (camera control) 2098",
                   "Camera control/Script (camera control) 2099"}));
}

TEST_F(Menus, FilterObjects) {
  createMenus();
  EXPECT_EQ(entries(platform::findSubmenu(contextMenu(menuRow), "Add Filter object")),
            listed({14, 16, 20, 22, 24, 27, 29, 44, 46, 48, 50, 59, 61, 64, 67, 72, 74, 77, 88, 91}));
}

TEST_F(Menus, EffectsOfEachKindOfObject) {
  createMenus();
  Lines video = entries(effectsOf(menuVideoEffects));
  EXPECT_EQ(std::count_if(video.begin(), video.end(), [](auto& l) { return l.starts_with("Basic effect/"); }), 8);
  EXPECT_EQ(video.front(), "Color compensation 2015");
  EXPECT_EQ(video.size(), 55u);  // 8 basic ones, 40 from 15 to 79, 7 from 81 to 87
  EXPECT_EQ(entries(effectsOf(menuVideoFilters)),
            listed({14, 16, 20, 22, 24, 27, 29, 44, 46, 48, 50, 59, 61, 64, 67, 72, 74, 77}));
  EXPECT_EQ(entries(effectsOf(menuAudioEffects)), listed({89, 90, 92}));
  EXPECT_EQ(entries(effectsOf(menuAudioFilters)), listed({91}));
  EXPECT_EQ(entries(effectsOf(menuCameraEffects)), listed({97, 98, 99}));
  EXPECT_EQ(entries(contextMenu(menuVideoSource)), listed({0, 1, 3, 4, 5, 6, 7, 9, 10, 11, 13, 80}));
  EXPECT_EQ(entries(contextMenu(menuAudioSource)), listed({2, 8, 12}));
}

TEST_F(Menus, HostFiltersStandUnderTheirCategory) {
  static HostFilterRecord plain, grouped, other, audio;  // read once more when the effects go
  auto process = [](HostFilterRecord*, FrameProcessInfo*) { return 1; };
  const char* names[] = {"Plain", "Grouped", "Other", "Hum"};
  HostFilterRecord* records[] = {&plain, &grouped, &other, &audio};
  for (int i = 0; i < 4; i++) {
    records[i]->name = names[i];
    records[i]->process = process;
  }
  grouped.category = other.category = "Sharp things";
  audio.flags = effectAudio;
  for (HostFilterRecord* record : records) ASSERT_EQ(adoptHostFilter(record), 1);
  createMenus();
  Lines lines = entries(platform::findSubmenu(contextMenu(menuRow), "Add Filter object"));
  EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
            (Lines{"Plain 2100", "Sharp things/Grouped 2101", "Sharp things/Other 2102", "Hum 2103"}));
  EXPECT_THAT(entries(effectsOf(menuVideoFilters)), Contains("Sharp things/Other 2102"));
  EXPECT_THAT(entries(effectsOf(menuVideoFilters)), Not(Contains("Hum 2103")));
  EXPECT_EQ(entries(effectsOf(menuAudioFilters)), (Lines{"Audio delay 2091", "Hum 2103"}));
  EXPECT_THAT(entries(newObjects()), Not(Contains("Plain 2100")));
}

struct AliasCase {
  const char* name;
  const char* text;
  std::vector<std::pair<ContextMenu, std::string>> places;  // the line of its entry, but for the number
};

TEST_F(Menus, AliasesStandWhereTheyCanBeUsed) {
  const std::string media = "New media object/", add = "Add a filter effect/";
  const AliasCase rows[] = {
      {"whole",
       "[vo]\r\nlength=10\r\n[vo.0]\r\n_name=Graphic\r\n[vo.1]\r\n_name=Standard drawing\r\n",
       {{menuRow, media}}},
      {"control", "[v.0]\r\n_name=Time control\r\n", {{menuRow, media}}},
      {"source",
       "[vo.0]\r\n_name=Graphic\r\n[vo.1]\r\n_name=Standard drawing\r\n",
       {{menuRow, media}, {menuVideoSource, ""}}},
      {"sound",
       "[ao.0]\r\n_name=Audio file\r\n[ao.1]\r\n_name=Standard playback\r\n",
       {{menuRow, media}, {menuAudioSource, ""}}},
      {"effect", "[vo.0]\r\n_name=Blur\r\n", {{menuRow, media + "New filter effect/"}, {menuVideoEffects, add}}},
      {"fade", "[ao.0]\r\n_name=Volume fade\r\n", {{menuAudioEffects, add}}},
      {"filter", "[v.0]\r\n_name=Blur\r\n", {{menuRow, "Add Filter object/"}, {menuVideoFilters, add}}},
      {"delay", "[a.0]\r\n_name=Audio delay\r\n", {{menuRow, "Add Filter object/"}, {menuAudioFilters, add}}},
      {"broken", "no alias at all", {}},
  };
  std::filesystem::create_directory(folder / "mine");
  for (const AliasCase& row : rows) {
    folder.write(std::string(row.name) + ".zla", row.text);
    folder.write("mine/" + std::string(row.name) + ".zla", row.text);
  }
  scanAliases();
  createMenus();
  for (size_t k = 0; k < aliasList.size(); k++) {
    const AliasEntry& alias = aliasList[k];
    SCOPED_TRACE(alias.subfolder + "/" + alias.name);
    const AliasCase* row =
        std::find_if(std::begin(rows), std::end(rows), [&](auto& r) { return r.name == alias.name; });
    ASSERT_NE(row, std::end(rows));
    std::string group = alias.subfolder.empty() ? "" : alias.subfolder + "/";
    const std::string last = group + alias.name + " " + std::to_string(3000 + k);
    for (int menu = 0; menu < contextMenus; menu++) {
      Lines expected;
      for (auto& [where, path] : row->places)
        if (where == menu) expected.push_back(path + last);
      Lines found;
      for (const std::string& line : entries(contextMenu(static_cast<ContextMenu>(menu))))
        if (line.ends_with(last)) found.push_back(line);
      EXPECT_EQ(found, expected) << "menu " << menu;
    }
  }
}

TEST_F(Menus, ANewAliasComesInAndAnOldOneKeepsItsNumber) {
  folder.write("first.zla", "[vo.0]\r\n_name=Blur\r\n");
  scanAliases();
  createMenus();
  Lines before = entries(effectsOf(menuVideoEffects));
  EXPECT_EQ(before.back(), "first 3000");
  folder.write("first.zla", "[v.0]\r\n_name=Blur\r\n");
  folder.write("second.zla", "[vo.0]\r\n_name=Glow\r\n");
  EXPECT_EQ(registerAlias("", "first", firstAliasCommand), -3000);
  EXPECT_EQ(registerAlias("", "second", firstAliasCommand), 3001);
  refillAliasMenus();
  EXPECT_EQ(entries(effectsOf(menuVideoEffects)).back(), "second 3001");
  EXPECT_FALSE(platform::hasMenuItem(contextMenu(menuVideoEffects), 3000));
  EXPECT_EQ(entries(effectsOf(menuVideoFilters)).back(), "first 3000");
}

TEST_F(Menus, TheNumberOfAnotherEntryIsNoAliasNumber) {
  folder.write("blur.zla", "[vo.0]\r\n_name=Blur\r\n");
  aliasList.assign(1400, {"", "blur"});
  createMenus();
  Lines lines = entries(contextMenu(menuVideoEffects));
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](auto& l) { return l.ends_with(" 4300"); }), 1);
  EXPECT_THAT(lines, Contains("Remove filter effect 4300"));
  EXPECT_THAT(lines, Contains("Add a filter effect/blur 4301"));
}

TEST_F(Menus, TemplatesAreNewObjects) {
  folder.write("Opening.zlo", "[zenlay]\r\n");
  folder.write("Titles.zlo", "[zenlay]\r\n");
  scanAliases();
  createMenus();
  Lines lines = entries(newObjects());
  EXPECT_EQ(lines[12], "Opening 5000");
  EXPECT_EQ(lines[13], "Titles 5001");
  EXPECT_EQ(lines[14], "New filter effect/Color compensation 2015");
}

TEST_F(Menus, TogglesAreCheckedFromThePreferences) {
  createMenus();
  preferences.grid.grid = 1;
  preferences.grid.grid3d = 0;
  preferences.object_snap = 0;
  for (ContextMenu menu : {menuRow, menuNoProject}) {
    EXPECT_THAT(shown(menu),
                IsSupersetOf({"[x] Display grid (BPM)", "Display grid (XY axis)", "Display grid (camera control)",
                              "[x] Track selected object", "Snap the object", "[x] Display camera viewpoint GUI"}));
  }
  preferences.grid.grid = 0;
  EXPECT_THAT(shown(menuRow), Contains("Display grid (BPM)"));
}

TEST_F(Menus, TheLayerMenuShowsTheClickedLayer) {
  createMenus();
  layers[2].flags = layerHidden | layerLocked | layerClipAbove;
  for (int layer : {2, 3}) {
    clickPosition = {0, layer, -1};
    const std::string mark = layer == 2 ? "[x] " : "";
    EXPECT_THAT(shown(menuLayer), IsSupersetOf({mark + "Lock the layer", mark + "Clip with the object above",
                                                std::string("Coordinate's link"),
                                                std::string(layer == 2 ? "Display layer" : "[x] Display layer")}));
  }
  timelineView.sceneLength = 0;
  for (const std::string& line : shown(menuLayer)) EXPECT_TRUE(line == "-" || line.find('(') != line.npos) << line;
}

TEST_F(Menus, WhatCanDoNothingIsGrey) {
  createMenus();
  EXPECT_THAT(shown(menuRow), IsSupersetOf({"(Paste)", "(Undo)"}));
  EXPECT_THAT(shown(menuObject), IsSupersetOf({"(Remove midpoint)", "(Cut)", "Split"}));
  fakeHost.selectionLast = 10;
  EXPECT_THAT(shown(menuObject), Contains("Cut"));
  environment.projectOpen = false;
  EXPECT_THAT(shown(menuScene), ElementsAre("(Scene settings)"));
}

// ---- Shortcuts ----

struct Registered {
  std::string name;
  int command, key, modifiers;
};
std::vector<Registered> registered;

TEST_F(Menus, ShortcutsAreEachTheirOwn) {
  registered.clear();
  fakeHost.functions.addMenuItem = [](HostFilterRecord*, const char* name, WindowHandle window, int32_t command,
                                      int32_t key, int32_t modifiers) -> int32_t {
    EXPECT_EQ(window, environment.timelineWindow);
    registered.push_back({name, command, key, modifiers});
    return 1;
  };
  environment.timelineWindow = platform::createWindow(nullptr, nullptr, nullptr);
  registerShortcuts();
  EXPECT_EQ(registered.size(), 28u);
  EXPECT_EQ(registered[18].name, "Expand Timeline");
  EXPECT_EQ(registered[18].key, 0xDE);
  std::set<std::string> names;
  std::set<int> commands;
  std::set<std::pair<int, int>> keys;
  for (const Registered& one : registered) {
    EXPECT_TRUE(names.insert(one.name).second && commands.insert(one.command).second) << one.name;
    EXPECT_TRUE(!one.key || keys.insert({one.key, one.modifiers}).second) << one.name;
  }
  platform::destroyWindow(environment.timelineWindow);
}

}  // namespace
}  // namespace zenlay::test
