#include "zenlay/effects/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>

#include "tests/support/scratch_folder.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/media/figures.h"

namespace zenlay {
namespace {

struct Entry {
  const char* name;
  uint32_t flag;
};

// The numbers that files and menus rely on.
constexpr Entry entries[registryCount] = {
    {"Video file", 0x48},  // 0
    {"Image file", 0x8},
    {"Audio file", 0x200008},
    {"Text", 0x8},
    {"Graphic", 0x8},
    {"Frame buffer", 0x8},
    {"Audio waveform display", 0x8},
    {"Scene", 0x8},
    {"Scene (audio)", 0x200008},
    {"Previous object", 0x8},
    {"Standard drawing", 0x400000D0},  // 10
    {"Advanced drawing", 0x400000D0},
    {"Standard playback", 0x200090},
    {"Particle output", 0x40000050},
    {"Scene change", 0x0},
    {"Color compensation", 0x20},
    {"Color compensation", 0x0},
    {"Clipping", 0x20},
    {"Blur", 0x20},
    {"Boundary blurring", 0x20},
    {"Blur", 0x0},  // 20
    {"Mosaic", 0x20},
    {"Mosaic", 0x0},
    {"Emission", 0x20},
    {"Emission", 0x0},
    {"Flash", 0x20},
    {"Diffusion light", 0x20},
    {"Diffusion light", 0x0},
    {"Glow", 0x20},
    {"Glow", 0x0},
    {"Chroma Key", 0x20},  // 30
    {"Color Key", 0x20},
    {"Luminance Key", 0x20},
    {"Light", 0x20},
    {"Shadow", 0x40000020},
    {"Add border", 0x40000020},
    {"Bevel", 0x20},
    {"Edge extraction", 0x20},
    {"Sharpen", 0x20},
    {"Fade", 0x20},
    {"Wipe", 0x20},  // 40
    {"Mask", 0x220},
    {"Diagonal clipping", 0x20},
    {"Radial Blur", 0x20},
    {"Radial Blur", 0x40000000},
    {"Direction blur", 0x20},
    {"Direction blur", 0x40000000},
    {"Lens blur", 0x20},
    {"Lens blur", 0x0},
    {"Motion blur", 0x20},
    {"Motion blur", 0x0},  // 50
    {"Coordinate", 0x8020},
    {"Zoom%", 0x8020},
    {"Clearness", 0x8020},
    {"Rotation", 0x8020},
    {"Region expansion", 0x8020},
    {"Resize", 0x8020},
    {"Locked Rotation", 0x8020},
    {"Vibration", 0x20},
    {"Vibration", 0x0},
    {"Reversal", 0x8020},  // 60
    {"Reversal", 0x0},
    {"Mirror", 0x20},
    {"Raster", 0x20},
    {"Raster", 0x0},
    {"Ripple", 0x20},
    {"Image tiling", 0x20},
    {"Image tiling", 0x0},
    {"Polar coordinate conversion", 0x20},
    {"Displacement map", 0x220},
    {"Noise", 0x20},  // 70
    {"Color shift", 0x20},
    {"Color shift", 0x0},
    {"Monochromatic", 0x20},
    {"Monochromatic", 0x0},
    {"Gradient", 0x20},
    {"Extended color setting", 0x220},
    {"Extended color setting", 0x200},
    {"Specific color gamut conversion", 0x20},
    {"Animation effect", 0x20},
    {"Custom object", 0x8},  // 80
    {"Script control", 0x20},
    {"Video files synthesis", 0x20},
    {"Synthesis image file", 0x20},
    {"De-interlacing", 0x20},
    {"Camera control options", 0x20},
    {"Off-screen drawing", 0x20},
    {"Object split", 0x20},
    {"Sub-filter", 0x40000100},
    {"Volume fade", 0x200020},
    {"Audio delay", 0x200020},  // 90
    {"Audio delay", 0x200000},
    {"Monaural", 0x200020},
    {"Time control", 0x1000000},
    {"Group control", 0x41000020},
    {"Camera control", 0x41800000},
    {"Camera control (advanced drawing)", 0x41800000},
    {"Camera effect", 0x1000000},
    {"Shadow (camera control)", 0x41000000},
    {"Script (camera control)", 0x1000000},
};

const HostFunctionTable hostTable{};
const EffectServiceTable serviceTable{};
HostFilterRecord mainRecord{};

struct Registry : testing::Test {
  void SetUp() override { registerBuiltIns(&hostTable, &serviceTable, &mainRecord); }
  void TearDown() override { exitEffects(); }
};

TEST_F(Registry, EntriesInOrder) {
  ASSERT_EQ(effectCount, registryCount);
  for (int i = 0; i < registryCount; i++) {
    const EffectDefinition& d = *effectList[i];
    EXPECT_STREQ(d.name, entries[i].name) << i;
    EXPECT_EQ(d.flag & ~(effectBuiltIn | effectHasExtraData), entries[i].flag) << d.name;
    EXPECT_TRUE(isBuiltIn(&d));
    EXPECT_EQ((d.flag & effectHasExtraData) != 0, d.exdata_size > 0) << d.name;
    EXPECT_EQ(extraDataBytes(&d), d.exdata_size) << d.name;
    EXPECT_EQ(d.host_functions, &hostTable);
    EXPECT_EQ(d.services, &serviceTable);
    EXPECT_EQ(d.main_filter, &mainRecord);
    EXPECT_EQ(d.category, nullptr);
    bool target = d.x & cameraTargetByDefault;
    EXPECT_EQ(target, &d == &advancedDrawing || &d == &groupControl) << d.name;
  }
}

TEST_F(Registry, TracksAreConsistent) {
  for (const EffectDefinition* d : registry) {
    ASSERT_LE(d->track_count, maxTracks);
    std::set<std::string> names;
    for (int t = 0; t < d->track_count; t++) {
      SCOPED_TRACE(std::string(d->name) + " / " + d->track_names[t]);
      EXPECT_TRUE(names.insert(d->track_names[t]).second);
      EXPECT_NE(d->track_names[t][0], 0);
      EXPECT_LE(d->track_min[t], d->track_defaults[t]);
      EXPECT_LE(d->track_defaults[t], d->track_max[t]);
      EXPECT_LE(d->track_min[t], d->track_bar_min[t]);
      EXPECT_LE(d->track_bar_min[t], d->track_bar_max[t]);
      EXPECT_LE(d->track_bar_max[t], d->track_max[t]);
      EXPECT_EQ(d->track_bar_min[t] == d->track_bar_max[t], d->track_min[t] == d->track_max[t]);
      EXPECT_TRUE((std::set{0, 1, 10, 100, 1000}.count(d->track_scale[t])));
      EXPECT_EQ(trackScale(d, t), std::max(d->track_scale[t], 1));
      // Following the links comes back after two or three tracks with the same limits.
      int next = t, steps = 0;
      do {
        next += d->track_link[next];
        ASSERT_TRUE(next >= 0 && next < d->track_count);
        EXPECT_EQ(d->track_max[next], d->track_max[t]);
        EXPECT_EQ(d->track_scale[next], d->track_scale[t]);
        ASSERT_LE(++steps, 3);
      } while (next != t);
    }
    for (int i = 0; d->coordinate_map && i < coordinateSlots; i++) {
      EXPECT_GE(d->coordinate_map[i], -1);
      EXPECT_LT(d->coordinate_map[i], d->track_count) << d->name;
    }
  }
}

/// Items of a drop-down list; -1 when it does not end.
int listItems(const char* list) {
  constexpr int bytes = 4096;
  int items = 0;
  for (const char* item = list; item - list < bytes; item += strlen(item) + 1, items++) {
    if (!*item) return items;
  }
  return -1;
}

TEST_F(Registry, ChecksAreConsistent) {
  for (const EffectDefinition* d : registry) {
    ASSERT_LE(d->check_count, maxChecks);
    std::set<std::string> names;
    for (int c = 0; c < d->check_count; c++) {
      SCOPED_TRACE(std::string(d->name) + " / " + d->check_names[c]);
      EXPECT_TRUE(names.insert(d->check_names[c]).second);
      EXPECT_TRUE((std::set{0, 1, int(checkButton), int(checkDropDown), int(checkToggle)}.count(d->check_defaults[c])));
      if (d->check_defaults[c] != checkDropDown) continue;
      EXPECT_GE(listItems(d->check_names[c]), 0);
      EXPECT_GT(d->exdata_size, 0) << "nowhere to keep the choice";
    }
  }
}

TEST(RegistryCommands, AListStoresItsChoiceAfterOneUndoStep) {
  static int undone, changed;
  undone = changed = 0;
  EffectServiceTable services{};
  services.recordUndo = [](ObjectRef) { undone++; };
  services.objectChanged = [](ObjectRef) { changed += undone; };
  const struct {
    EffectDefinition& effect;
    int at;  // byte of the extra data
  } rows[] = {
      {standardDrawing, 0},    {advancedDrawing, 0},     {particleOutputDrawing, 0},
      {luminanceKeyEffect, 0}, {mirrorEffect, 0},        {colorShiftEffect, 0},
      {colorShiftObject, 0},   {deInterlacingEffect, 0}, {flashEffect, 0},
      {glowEffect, 4},         {glowObject, 4},
  };
  for (auto& row : rows) {
    SCOPED_TRACE(row.effect.name);
    const EffectDefinition kept = row.effect;
    alignas(int32_t) uint8_t data[16] = {}, expected[16] = {};
    expected[row.at] = 2;
    row.effect.services = &services;
    row.effect.exdata = data;
    undone = changed = 0;
    auto send = [&](uint32_t message, intptr_t command) {
      return row.effect.window_proc(nullptr, message, command, 2, nullptr, &row.effect);
    };
    EXPECT_EQ(send(messageEffectCommand, commandCheckFile), 0);
    EXPECT_EQ(send(messageEffectCommand + 1, commandDropDown), 0);
    EXPECT_EQ(undone, 0);
    int list = 0;
    while (row.effect.check_defaults[list] != checkDropDown) list++;
    EXPECT_EQ(send(messageEffectCommand, commandDropDown | (list + 1) << 16), 0);
    EXPECT_EQ(send(messageEffectCommand, commandDropDown | list << 16), 1);
    EXPECT_EQ(memcmp(data, expected, sizeof data), 0);
    EXPECT_EQ(undone, 1);
    EXPECT_EQ(changed, 1);
    row.effect = kept;
  }
}

TEST(RegistryFigures, EveryFigureListShowsThePicturesOfTheFolder) {
  const ::test::ScratchFolder plugin;
  std::filesystem::create_directory(plugin / "figure");
  plugin.write("figure/leaf.png", "only the name counts");
  buildFigureList((plugin / "").c_str());
  registerBuiltIns(&hostTable, &serviceTable, &mainRecord);
  const EffectDefinition* shown[] = {&graphicMedia, &maskEffect, &displacementMapEffect, &subFilterObject};
  for (const EffectDefinition* effect : shown) {
    const char* item = effect->check_names[0];
    ASSERT_EQ(listItems(item), 9) << effect->name;
    for (int i = 0; i < figureStar; i++) item += strlen(item) + 1;
    EXPECT_STREQ(item, "Star");
    item += strlen(item) + 1;
    EXPECT_STREQ(item, "leaf");
    EXPECT_STREQ(item + strlen(item) + 1, "(Select from file)");
  }
  exitEffects();
  freeFigureList();
  registerBuiltIns(&hostTable, &serviceTable, &mainRecord);
  for (const EffectDefinition* effect : shown) EXPECT_EQ(listItems(effect->check_names[0]), 8) << effect->name;
  exitEffects();
}

TEST_F(Registry, ExtraDataFieldsFillTheirBytes) {
  for (const EffectDefinition* d : registry) {
    SCOPED_TRACE(d->name);
    ASSERT_TRUE(d->exdata_size >= 0 && d->exdata_size <= maxExtraData);
    if (d->exdata_size == 0) continue;
    ASSERT_NE(d->exdata_fields, nullptr);
    std::set<std::string> names;
    int bytes = 0;
    for (const ExdataField* field = d->exdata_fields; bytes < d->exdata_size; field++) {
      ASSERT_GT(field->size, 0);
      ASSERT_LE(field->type, exdataBytes);
      EXPECT_EQ(field->name == nullptr, field->type == exdataReserved);
      if (field->name) {
        EXPECT_TRUE(names.insert(field->name).second) << field->name;
      }
      if (field->type == exdataInteger) {
        EXPECT_TRUE(field->size == 1 || field->size == 2 || field->size == 4);
        EXPECT_EQ(bytes % field->size, 0) << field->name;
      }
      bytes += field->size;
    }
    EXPECT_EQ(bytes, d->exdata_size);
  }
}

TEST_F(Registry, TwinsShareTheirTables) {
  int twins = 0;
  for (const EffectDefinition* object : registry) {
    if (object->flag & (effectMedia | effectDrawing | effectFilter | effectControl)) continue;
    int index = findEffect(object->name, (object->flag & effectAudio) != 0, 1);
    if (index < 0) continue;
    const EffectDefinition* effect = effectList[index];
    SCOPED_TRACE(object->name);
    twins++;
    EXPECT_EQ(object->proc, effect->proc);
    EXPECT_EQ(object->exdata_size, effect->exdata_size);
    EXPECT_EQ(object->exdata_fields, effect->exdata_fields);
    EXPECT_EQ(object->exdata_default, effect->exdata_default);
    ASSERT_EQ(object->track_count, effect->track_count);
    for (int t = 0; t < object->track_count; t++) {
      EXPECT_STREQ(object->track_names[t], effect->track_names[t]);
      EXPECT_EQ(object->track_defaults[t], effect->track_defaults[t]);
      EXPECT_EQ(object->track_scale[t], effect->track_scale[t]);
    }
    int c = 0;  // the object's checks are the effect's, in order, some left out
    for (int e = 0; c < object->check_count && e < effect->check_count; e++) {
      if (strcmp(object->check_names[c], effect->check_names[e]) != 0) continue;
      EXPECT_EQ(object->check_defaults[c], effect->check_defaults[e]);
      c++;
    }
    EXPECT_EQ(c, object->check_count);
    for (int i = 0; i < object->check_count; i++) EXPECT_STRNE(object->check_names[i], "Fixed Size");
  }
  EXPECT_EQ(twins, 18);
}

/// What a track shows, in its unit.
struct Shown {
  const char* name;
  double scale, barMin, barMax;
};

TEST_F(Registry, TheSameUnitLooksTheSameEverywhere) {
  const Shown byName[] = {
      {"rAspect", 10, -100, 100}, {"Clearness", 10, 0, 100}, {"In", 100, 0, 10},     {"Out", 100, 0, 10},
      {"Angle", 10, -360, 360},   {"Left", 1, 0, 1000},      {"Volume", 10, 0, 500},
  };
  for (const EffectDefinition* d : registry) {
    for (int t = 0; t < d->track_count; t++) {
      SCOPED_TRACE(std::string(d->name) + " / " + d->track_names[t]);
      const double scale = trackScale(d, t), barMin = d->track_bar_min[t] / scale, barMax = d->track_bar_max[t] / scale;
      for (const Shown& row : byName) {
        if (strcmp(d->track_names[t], row.name) != 0) continue;
        EXPECT_EQ(scale, row.scale);
        EXPECT_EQ(barMin, row.barMin);
        EXPECT_EQ(barMax, row.barMax);
      }
      if (strcmp(d->track_names[t], "Zoom%") == 0) {
        EXPECT_EQ(d->track_defaults[t] / scale, 100);
        EXPECT_EQ(barMax, 800);
      }
      // Ten or a thousand turns in either direction, of which the bar shows one.
      bool turns = d->track_min[t] == -d->track_max[t] && (d->track_max[t] == 360000 || d->track_max[t] == 36000);
      if (turns) {
        EXPECT_EQ(d->track_max[t] / scale, 3600);
        EXPECT_EQ(barMax, 360);
        EXPECT_EQ(barMin, -360);
      }
    }
  }
}

TEST_F(Registry, NamesAreFoundByKind) {
  for (int i = 0; i < registryCount; i++) {
    const EffectDefinition* d = effectList[i];
    bool objectLevel = d->flag & (effectMedia | effectDrawing | effectFilter);
    EXPECT_EQ(findEffect(d->name, (d->flag & effectAudio) != 0, objectLevel), i) << d->name;
  }
  EXPECT_EQ(findEffect("Blur", 0, 1), 18);
  EXPECT_EQ(findEffect("Blur", 0, 0), 20);
  EXPECT_EQ(findEffect("Audio delay", 1, 0), 91);
  EXPECT_EQ(findEffect("Blur", 1, 1), -1);
  EXPECT_EQ(findEffect("blur", 0, 1), -1);
  EXPECT_EQ(findEffect("", 0, 0), -1);
}

int acceptFrame(HostFilterRecord*, FrameProcessInfo*) { return 1; }

TEST_F(Registry, HostFiltersQualifyWithinTheLimits) {
  const std::string longest(62, 'n'), tooLong(63, 'n');
  const struct {
    const char* name;
    uint32_t flags;
    int tracks, checks, bytes;
    bool proc, taken;
  } rows[] = {
      {"Plain", 0, 0, 0, 0, true, true},
      {"Tracks", 0, 64, 0, 0, true, true},
      {"Tracks", 0, 65, 0, 0, true, false},
      {"Tracks", 0, -1, 0, 0, true, false},
      {"Checks", 0, 0, 48, 0, true, true},
      {"Checks", 0, 0, 49, 0, true, false},
      {"Data", 0x400, 0, 0, 1000, true, true},
      {"Data", 0x400, 0, 0, 1001, true, false},
      {"Data", 0x400, 0, 0, -1, true, false},
      {"Undeclared", 0, 0, 0, 1001, true, true},
      {"No process", 0, 0, 0, 0, false, false},
      {longest.c_str(), 0, 0, 0, 0, true, true},
      {tooLong.c_str(), 0, 0, 0, 0, true, false},
      {nullptr, 0, 0, 0, 0, true, false},
      {"Zenlay", 0, 0, 0, 0, true, false},
      {"Zenlay(Audio)", 0, 0, 0, 0, true, false},
      {"Denoise (temporal) filter", 0, 0, 0, 0, true, false},
      {"Maximize volume", 0, 0, 0, 0, true, false},
      {"Maximize volume 2", 0x200000, 0, 0, 0, true, true},
  };
  for (auto& row : rows) {
    HostFilterRecord filter{};
    filter.flags = row.flags;
    filter.name = row.name;
    filter.trackCount = row.tracks;
    filter.checkCount = row.checks;
    filter.extraDataSize = row.bytes;
    filter.process = row.proc ? acceptFrame : nullptr;
    EXPECT_EQ(adoptHostFilter(&filter), row.taken) << (row.name ? row.name : "no name") << " " << row.tracks;
    ASSERT_EQ(effectCount, registryCount + row.taken);
    effectCount = registryCount;
  }
  constexpr uint32_t refused = 0x05C08038;
  for (int bit = 0; bit < 32; bit++) {
    HostFilterRecord filter{};
    filter.flags = uint32_t{1} << bit;
    filter.name = "Flags";
    filter.process = acceptFrame;
    EXPECT_EQ(qualifiesAsEffect(&filter), !(filter.flags & refused)) << bit;
  }
  EXPECT_FALSE(qualifiesAsEffect(nullptr));
}

TEST_F(Registry, TheListHasAnEnd) {
  HostFilterRecord filter{};
  filter.name = "Filter";
  filter.process = acceptFrame;
  int taken = 0;
  while (taken <= maxEffects && adoptHostFilter(&filter)) taken++;
  EXPECT_EQ(taken, maxEffects - registryCount);
  EXPECT_EQ(findEffect("Filter", 0, 0), registryCount);
  EXPECT_EQ(trackScale(effectList[registryCount], 0), 1);
}

int initialised, exited;

TEST(RegistryLifetime, InitAndExitRunOnce) {
  EffectDefinition kept = monauralEffect;
  monauralEffect.init = [](EffectDefinition* effect) {
    initialised += effect == &monauralEffect && effect->services == &serviceTable;
    return 1;
  };
  monauralEffect.exit = [](EffectDefinition* effect) {
    exited += effect == &monauralEffect;
    return 1;
  };
  registerBuiltIns(&hostTable, &serviceTable, &mainRecord);
  EXPECT_EQ(initialised, 1);
  exitEffects();
  exitEffects();
  EXPECT_EQ(exited, 1);
  EXPECT_EQ(effectCount, 0);
  EXPECT_EQ(findEffect("Blur", 0, 1), -1);
  monauralEffect = kept;
}

}  // namespace
}  // namespace zenlay
