#include "zenlay/host/module_files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/scratch_folder.h"

namespace zenlay {
namespace {

/// Reads the module files of a module whose ini and colour file hold these texts.
void readFrom(const std::string& ini, const std::string& colours) {
  ::test::ScratchFolder folder;
  folder.write("module.ini", ini);
  folder.write("module.col", colours);
  readModuleFiles(folder / "module.cnf");
}

std::string table() {
  const char* end = extensionTable;
  while (*end) end += strlen(end) + 1;
  return std::string(extensionTable, end - extensionTable);
}

TEST(ModuleFiles, ExtensionsReplaceTheDefaults) {
  readFrom("[extension]\na=b\n", "");
  EXPECT_EQ(table(), std::string("a\0b\0", 4));
  readFrom("[extension]\na=b=c\nd=e\n", "");  // every = ends a string
  EXPECT_EQ(table(), std::string("a\0b\0c\0d\0e\0", 10));
  readFrom("[extension]\n", "");
  EXPECT_EQ(table(), std::string(".bmp\0Image file\0.avi\0Video file\0.wav\0Audio file\0", 48));
}

TEST(ModuleFiles, ExtensionTableNeverOverflows) {
  std::string ini = "[extension]\n";
  for (int i = 0; i < 400; i++) ini += ".x" + std::to_string(i) + "=Video file\n";
  readFrom(ini, "");
  EXPECT_LE(table().size() + 1, size_t{extensionTableBytes});
  EXPECT_GT(table().size(), size_t{extensionTableBytes} - 32);
}

TEST(ModuleFiles, PaletteValues) {
  readFrom("", "[color]\nno00=#80FF00\nno01=80ff00\nno02=12xyz\nno04=#1234567890abcdef01\n");
  auto entry = [](int k) { return colourPalette[k].red << 16 | colourPalette[k].green << 8 | colourPalette[k].blue; };
  EXPECT_EQ(entry(0), 0x80FF00);
  EXPECT_EQ(entry(1), 0x80FF00);
  EXPECT_EQ(entry(2), 0x000012);
  EXPECT_EQ(entry(3), 0x00FF00);  // missing: the built-in entry
  EXPECT_EQ(entry(4), 0x90ABCD);  // the low 24 bits of the first 15 characters
}

}  // namespace
}  // namespace zenlay
