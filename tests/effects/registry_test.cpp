#include "zenlay/effects/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/media/figures.h"

namespace zenlay {
namespace {

// The names and numbers that files and menus rely on.
constexpr const char* names[registryCount] = {
    // 0
    "Video file", "Image file", "Audio file", "Text", "Graphic", "Frame buffer", "Audio waveform display", "Scene",
    "Scene (audio)", "Previous object",
    // 10
    "Standard drawing", "Advanced drawing", "Standard playback", "Particle output", "Scene change",
    "Color compensation", "Color compensation", "Clipping", "Blur", "Boundary blurring",
    // 20
    "Blur", "Mosaic", "Mosaic", "Emission", "Emission", "Flash", "Diffusion light", "Diffusion light", "Glow", "Glow",
    // 30
    "Chroma Key", "Color Key", "Luminance Key", "Light", "Shadow", "Add border", "Bevel", "Edge extraction", "Sharpen",
    "Fade",
    // 40
    "Wipe", "Mask", "Diagonal clipping", "Radial Blur", "Radial Blur", "Direction blur", "Direction blur", "Lens blur",
    "Lens blur", "Motion blur",
    // 50
    "Motion blur", "Coordinate", "Zoom%", "Clearness", "Rotation", "Region expansion", "Resize", "Locked Rotation",
    "Vibration", "Vibration",
    // 60
    "Reversal", "Reversal", "Mirror", "Raster", "Raster", "Ripple", "Image tiling", "Image tiling",
    "Polar coordinate conversion", "Displacement map",
    // 70
    "Noise", "Color shift", "Color shift", "Monochromatic", "Monochromatic", "Gradient", "Extended color setting",
    "Extended color setting", "Specific color gamut conversion", "Animation effect",
    // 80
    "Custom object", "Script control", "Video files synthesis", "Synthesis image file", "De-interlacing",
    "Camera control options", "Off-screen drawing", "Object split", "Sub-filter", "Volume fade",
    // 90
    "Audio delay", "Audio delay", "Monaural", "Time control", "Group control", "Camera control",
    "Camera control (advanced drawing)", "Camera effect", "Shadow (camera control)", "Script (camera control)"};

/// What the menus and the pipeline go by; all effects that are not named are filter effects, 0x20.
const struct {
  uint32_t flag;
  std::vector<int> effects;
} otherFlags[] = {
    {0x48, {0}},
    {0x8, {1, 3, 4, 5, 6, 7, 9, 80}},
    {0x200008, {2, 8}},
    {0x400000D0, {10, 11}},
    {0x200090, {12}},
    {0x40000050, {13}},
    {0x0, {14, 16, 20, 22, 24, 27, 29, 48, 50, 59, 61, 64, 67, 72, 74}},
    {0x40000020, {34, 35}},
    {0x220, {41, 69, 76}},
    {0x40000000, {44, 46}},
    {0x8020, {51, 52, 53, 54, 55, 56, 57, 60}},
    {0x200, {77}},
    {0x40000100, {88}},
    {0x200020, {89, 90, 92}},
    {0x200000, {91}},
    {0x1000000, {93, 97, 99}},
    {0x41000020, {94}},
    {0x41800000, {95, 96}},
    {0x41000000, {98}},
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
  std::vector<uint32_t> flags(registryCount, 0x20);
  for (const auto& row : otherFlags)
    for (int effect : row.effects) flags[effect] = row.flag;
  for (int i = 0; i < registryCount; i++) {
    const EffectDefinition& d = *effectList[i];
    EXPECT_STREQ(d.name, names[i]) << i;
    EXPECT_EQ(d.flag & ~(effectBuiltIn | effectHasExtraData), flags[i]) << d.name;
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
  for (const EffectDefinition* effect : shown) EXPECT_EQ(listItems(effect->check_names[0]), 9) << effect->name;
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
