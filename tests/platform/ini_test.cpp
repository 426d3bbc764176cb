#include "platform/ini.h"

#include <gtest/gtest.h>

#include <climits>

#include "platform/paths.h"
#include "tests/support/scratch_folder.h"

namespace platform {
namespace {

using ::test::ScratchFolder;

TEST(Ini, ReadsNamesWithoutRegardToCase) {
  IniFile ini = IniFile::parse(
      "above=1\r\n[One]\r\n; note=2\n  Key = a = b \nkey=second\nquoted=\"  x \"\nbare\n[two]\n[ONE]\nlate=3");
  EXPECT_EQ(ini.get("", "above", "-"), "1");
  EXPECT_EQ(ini.get("one", "KEY", "-"), "a = b");
  EXPECT_EQ(ini.get("One", "quoted", "-"), "  x ");
  EXPECT_EQ(ini.get("one", "late", "-"), "3");
  EXPECT_EQ(ini.find("one", "; note"), nullptr);
  EXPECT_EQ(ini.find("one", "bare"), nullptr);
  EXPECT_EQ(ini.find("three", "key"), nullptr);
  ASSERT_NE(ini.section("two"), nullptr);
  EXPECT_TRUE(ini.section("two")->empty());
}

TEST(Ini, Numbers) {
  const std::pair<const char*, int> rows[] = {
      {"12", 12},
      {"-7", -7},
      {"+3", 3},
      {" 5 frames", 5},
      {"0x1F", 31},
      {"0xFFFFFFFF", -1},
      {"0x", 0},
      {"-0x10", -16},
      {"", -99},
      {"none", -99},
      {"-", -99},
      {"2147483648", INT_MAX},
      {"-2147483649", INT_MIN},
      {"99999999999999999999", INT_MAX},
      {"0x1FFFFFFFF", INT_MAX},
  };
  for (auto [text, number] : rows) {
    IniFile ini;
    ini.set("s", "k", text);
    EXPECT_EQ(ini.getInt("s", "k", -99), number) << text;
  }
  EXPECT_EQ(IniFile().getInt("s", "k", -99), -99);
}

TEST(Ini, WritingKeepsCommentsAndOrder) {
  ScratchFolder scratch;
  scratch.write("a.ini", "; head\n[b]\nx=1\n\n# between\n[a]\ny=2\n");
  IniFile ini = IniFile::read(scratch / "a.ini");
  ini.set("B", "X", "9");
  ini.set("b", "new", " edge\n");
  ini.set("c", "z", "\"q\"");
  ASSERT_TRUE(ini.write(scratch / "a.ini"));
  std::string text;
  ASSERT_TRUE(readFile(scratch / "a.ini", text));
  EXPECT_EQ(text, "; head\n[b]\nx=9\nnew=\" edge \"\n\n# between\n[a]\ny=2\n\n[c]\nz=\"\"q\"\"\n");
  IniFile again = IniFile::read(scratch / "a.ini");
  EXPECT_EQ(again.get("b", "new", ""), " edge ");
  EXPECT_EQ(again.get("c", "z", ""), "\"q\"");
  EXPECT_FALSE(ini.write(scratch / "none/a.ini"));
}

TEST(Ini, File932IsRead) {
  ScratchFolder scratch;
  scratch.write("a.ini", "[s]\nk=\x83\x5C\n");
  EXPECT_EQ(IniFile::read(scratch / "a.ini").get("s", "k", ""), "\u30BD");
}

}  // namespace
}  // namespace platform
