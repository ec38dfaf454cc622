#include "platform/host/code_page.h"

#include <gtest/gtest.h>

namespace quorvale::host {
namespace {

using namespace std::string_literals;

TEST(CodePageTest, WesternEuropean) {
  const auto page = CodePage::Open(1252);
  ASSERT_TRUE(page);
  EXPECT_EQ("M\xFCller \x80 \x96", page->FromUtf8("M\u00FCller \u20AC \u2013"));
  EXPECT_EQ("M\u00FCller \u20AC \u2013", page->ToUtf8("M\xFCller \x80 \x96"));
}

TEST(CodePageTest, CentralEuropeanAndCyrillic) {
  EXPECT_EQ("\xB3\xF3\x9F", CodePage::Open(1250)->FromUtf8("\u0142\u00F3\u017A"));
  EXPECT_EQ("\u0142\u00F3\u017A", CodePage::Open(1250)->ToUtf8("\xB3\xF3\x9F"));
  EXPECT_EQ("\xC6\xF3", CodePage::Open(1251)->FromUtf8("\u0416\u0443"));
  EXPECT_EQ("\u0416\u0443", CodePage::Open(1251)->ToUtf8("\xC6\xF3"));
}

TEST(CodePageTest, CodePageOfSeveralBytes) {
  const auto page = CodePage::Open(932);
  ASSERT_TRUE(page);
  EXPECT_EQ("\x93\xFA.txt", page->FromUtf8("\u65E5.txt"));
  EXPECT_EQ("\u65E5.txt", page->ToUtf8("\x93\xFA.txt"));
}

TEST(CodePageTest, CharacterOutsideBecomesAQuestionMark) {
  const auto page = CodePage::Open(1252);
  EXPECT_EQ("a?b?c", page->FromUtf8("a\u65E5b\U0001F600c"));
  EXPECT_EQ("??", page->FromUtf8("\xFF\xC3"));
  EXPECT_EQ("?x", page->FromUtf8("\u0142x"));
}

TEST(CodePageTest, EveryByteFindsBack) {
  for (int number : {1250, 1251, 1252}) {
    const auto page = CodePage::Open(number);
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    EXPECT_EQ(bytes, page->FromUtf8(page->ToUtf8(bytes))) << number;
  }
}

TEST(CodePageTest, ControlCharacterWhoseByteIsTakenIsOutside) {
  // Byte 80 is the Euro sign there, byte 81 nothing.
  EXPECT_EQ("?\x81", CodePage::Open(1252)->FromUtf8("\u0080\u0081"));
}

TEST(CodePageTest, LongTextsAndNuls) {
  const auto page = CodePage::Open(1252);
  std::string utf8;
  std::string ansi;
  for (int i = 0; i < 10000; ++i) {
    utf8 += "\u00FC\0\u65E5"s;
    ansi += "\xFC\0?"s;
  }
  EXPECT_EQ(ansi, page->FromUtf8(utf8));
  EXPECT_EQ("", page->FromUtf8(""));
}

TEST(CodePageTest, UnknownCodePage) { EXPECT_FALSE(CodePage::Open(4711)); }

}  // namespace
}  // namespace quorvale::host
