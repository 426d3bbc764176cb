// Reads the sources: who may include whom, from the ground up. An include that runs back up is a defect.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// Plain records, constants and tables of callbacks; they include each other only.
const Names records = {
    "zenlay/host/host_interface.h",  "zenlay/effects/effect_definition.h",
    "zenlay/effects/process_info.h", "zenlay/effects/effect_services.h",
    "zenlay/effects/pixels.h",       "zenlay/effects/blend_modes.h",
    "zenlay/effects/figure_list.h",  "zenlay/effects/script_data.h",
    "zenlay/effects/definitions.h",  "zenlay/effects/scales_and_turns.h",
};
/// Process-wide state, filled by the entry and read by every room.
const Names state = {"zenlay/host/environment.h", "zenlay/host/preferences.h", "zenlay/host/module_files.h"};

const Names middle = {"zenlay/effects/", "zenlay/render/", "zenlay/files/", "zenlay/script/"};

Names together(std::initializer_list<Names> parts) {
  Names all;
  for (const Names& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

/// The host sees nothing of the plug-in but the interface between them. Each of its rooms stands on those before it.
Names hostUpTo(const std::string& room) {
  const Names ladder = {"cinora/support/", "cinora/picture/", "cinora/media/",   "cinora/sound/",
                        "cinora/host/",    "cinora/export/",  "cinora/command/", "cinora/desktop/"};
  Names allowed = {"platform/", "zenlay/host/host_interface.h"};
  allowed.insert(allowed.end(), ladder.begin(), std::find(ladder.begin(), ladder.end(), room) + 1);
  return allowed;
}

/// What sources of `folder` may include of this tree: files, or folders ending in a slash.
struct Room {
  const char* folder;
  Names allowed;
};

const Room rooms[] = {
    {"platform/", {"platform/"}},
    {"cinora/support/", hostUpTo("cinora/support/")},
    {"cinora/picture/", hostUpTo("cinora/picture/")},
    {"cinora/media/", hostUpTo("cinora/media/")},
    {"cinora/sound/", hostUpTo("cinora/sound/")},
    {"cinora/host/", hostUpTo("cinora/host/")},
    {"cinora/export/", hostUpTo("cinora/export/")},
    {"cinora/command/", hostUpTo("cinora/command/")},
    {"cinora/desktop/", hostUpTo("cinora/desktop/")},
    {"zenlay/model/", together({{"platform/", "zenlay/model/", "zenlay/effects/registry.h"}, records, state})},
    {"zenlay/effects/", together({{"platform/", "zenlay/model/"}, middle, records, state})},
    {"zenlay/render/", together({{"platform/", "zenlay/model/"}, middle, records, state})},
    {"zenlay/files/", together({{"platform/", "zenlay/model/"}, middle, records, state})},
    {"zenlay/script/", together({{"platform/", "zenlay/model/"}, middle, records, state})},
    // The services behind pictures, figures and media files live beside the effects that show them.
    {"zenlay/media/",
     together({{"platform/", "zenlay/media/", "zenlay/render/", "zenlay/effects/service_hooks.h"}, records, state})},
    {"zenlay/filters/", together({{"platform/", "zenlay/media/", "zenlay/filters/"}, records})},
    {"zenlay/ui/", together({{"platform/", "zenlay/model/", "zenlay/media/", "zenlay/ui/"}, middle, records, state})},
    {"zenlay/host/", together({{"platform/", "zenlay/model/records.h"}, records, state})},
    {"zenlay/entry/", {"platform/", "zenlay/"}},
};

const fs::path root = SOURCE_DIR;

std::string contentOf(const std::string& file) {
  std::stringstream text;
  text << std::ifstream(root / file).rdbuf();
  return text.str();
}

/// The quoted includes of the file, as they stand, but for those of libraries.
Names includesOf(const std::string& file) {
  Names found;
  std::stringstream text(contentOf(file));
  const std::string directive = "#include \"";
  for (std::string line; std::getline(text, line);) {
    if (line.rfind(directive, 0) != 0) continue;
    std::string name = line.substr(directive.size(), line.find('"', directive.size()) - directive.size());
    if (name.rfind("hwy/", 0) != 0) found.push_back(name);
  }
  return found;
}

Names sourcesIn(const std::string& folder) {
  Names found;
  if (!fs::exists(root / folder)) return found;
  for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
    const fs::path extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h") found.push_back(fs::relative(entry.path(), root).generic_string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

bool isAllowed(const std::string& include, const Names& allowed) {
  return std::any_of(allowed.begin(), allowed.end(), [&](const std::string& name) {
    return name.back() == '/' ? include.rfind(name, 0) == 0 : include == name;
  });
}

TEST(Layers, NoIncludeRunsUp) {
  for (const Room& room : rooms) {
    for (const std::string& file : sourcesIn(room.folder)) {
      for (const std::string& include : includesOf(file)) {
        EXPECT_TRUE(isAllowed(include, room.allowed)) << file << " includes " << include;
      }
    }
  }
}

TEST(Layers, EverySourceLiesInARoom) {
  const Names tops = {"platform/", "cinora/", "zenlay/"};
  for (const std::string& top : tops) {
    for (const std::string& file : sourcesIn(top)) {
      EXPECT_TRUE(std::any_of(std::begin(rooms), std::end(rooms), [&](const Room& room) {
        return file.rfind(room.folder, 0) == 0;
      })) << file;
    }
  }
}

TEST(Layers, RecordsIncludeRecordsOnly) {
  for (const std::string& file : records) {
    ASSERT_TRUE(fs::exists(root / file)) << file;
    for (const std::string& include : includesOf(file)) {
      EXPECT_TRUE(isAllowed(include, records)) << file << " includes " << include;
    }
  }
}

/// So that any effect can be read, tested and timed alone: everything else it reaches through its services.
TEST(Layers, AnEffectSeesOnlyTheRecords) {
  const Names allowed = together({{"platform/", "zenlay/media/", "zenlay/filters/"}, records});
  int effects = 0;
  for (const char* folder : {"zenlay/media/", "zenlay/filters/"}) {
    for (const std::string& file : sourcesIn(folder)) {
      if (contentOf(file).find("= defineEffect(") == std::string::npos) continue;
      effects++;
      std::set<std::string> seen;
      Names open = {file};
      while (!open.empty()) {
        const std::string at = open.back();
        open.pop_back();
        if (!seen.insert(at).second || isAllowed(at, records)) continue;
        for (const std::string& include : includesOf(at)) {
          EXPECT_TRUE(isAllowed(include, allowed)) << file << " sees " << include << " through " << at;
          if (include.rfind("zenlay/", 0) == 0) open.push_back(include);
        }
      }
    }
  }
  EXPECT_GT(effects, 70) << "the effects were not found";
}

}  // namespace
