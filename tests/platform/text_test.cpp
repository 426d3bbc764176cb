#include "platform/text.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct Page932 {
  Page932() { setCodePage(codePage932); }
  ~Page932() { setCodePage(codePageUtf8); }
};

TEST(Text, Utf8AndUtf16) {
  EXPECT_EQ(utf16FromUtf8("a\u00E9\u30BD\U0001F600"), u"a\u00E9\u30BD\U0001F600");
  EXPECT_EQ(utf8FromUtf16(u"a\u00E9\u30BD\U0001F600"), "a\u00E9\u30BD\U0001F600");
  EXPECT_EQ(utf8FromUtf16(u"\u07FF\u0800\uFFFF"), "\u07FF\u0800\uFFFF");
  const char16_t loneHigh[] = {0xD800, 'x', 0xDC00, 0};
  EXPECT_EQ(utf8FromUtf16(loneHigh), "\uFFFDx\uFFFD");
}

TEST(Text, DamagedUtf8) {
  struct Row {
    const char* bytes;
    const char16_t* text;
  };
  const Row rows[] = {
      {"\x80z", u"\uFFFDz"},                              // continuation alone
      {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
      {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
      {"\xE3\x82", u"\uFFFD"},                            // ends within
      {"\xE3\x82z", u"\uFFFDz"},
      {"\xF0\x9F\x98", u"\uFFFD"},
  };
  for (const Row& row : rows) {
    EXPECT_FALSE(validUtf8(row.bytes)) << row.bytes;
    EXPECT_EQ(utf16FromUtf8(row.bytes), row.text) << row.bytes;
  }
  EXPECT_TRUE(validUtf8("\U0010FFFF\uD7FF\uE000"));
}

TEST(Text, Page932) {
  Page932 page;
  EXPECT_EQ(utf16FromAnsi("A\x83\x5C\xB1\x81\x60"), u"A\u30BD\uFF71\uFF5E");
  EXPECT_EQ(ansiFromUtf16(u"A\u30BD\uFF71\uFF5E"), "A\x83\x5C\xB1\x81\x60");
  EXPECT_EQ(utf16FromAnsi("a\xFF"
                          "b"),
            u"a?b");
  EXPECT_EQ(utf16FromAnsi("a\x83"), u"a?");
  EXPECT_EQ(ansiFromUtf16(u"x\U0001F600y\u0E01z"), "x?y?z");
  EXPECT_EQ(utf8FromAnsi(ansiFromUtf8("\u65E5\u672C\\")), "\u65E5\u672C\\");
}

TEST(Text, FilesComeInTheirOwnEncodings) {
  using namespace std::string_view_literals;
  EXPECT_EQ(ansiFromFile("\xEF\xBB\xBF\u30BD"), "\u30BD");
  EXPECT_EQ(ansiFromFile("\x83\x5C="), "\u30BD=");
  EXPECT_EQ(ansiFromFile("\xFF\xFE\xBD\x30"sv), "\u30BD");
  EXPECT_EQ(ansiFromFile("\xFE\xFF\x30\xBD"sv), "\u30BD");
  Page932 page;
  EXPECT_EQ(ansiFromFile("\u30BD"), "\x83\x5C");
  EXPECT_EQ(ansiFromFile("\x83\x5C"), "\x83\x5C");
}

TEST(Text, CharacterBytes) {
  EXPECT_EQ(characterBytes(""), 1);
  EXPECT_EQ(characterBytes("\u30BDx"), 3);
  EXPECT_EQ(characterBytes("\U0001F600"), 4);
  EXPECT_EQ(characterBytes("\xE3\x82"), 1);  // never past the end
  Page932 page;
  EXPECT_EQ(characterBytes("\x83\x5C"), 2);
  EXPECT_EQ(characterBytes("\x83"), 1);
  EXPECT_EQ(characterBytes("\xB1\xB1"), 1);
}

}  // namespace
}  // namespace platform
