// The shared procedures that look at nothing but their arguments.
#include "core/program/ModGlobal.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

TEST(GetOSName, KnowsEverySystemByItsNumbers) {
  struct Case {
    int platform_id, major, minor;
    const char* word;
  };
  const Case cases[] = {
      {2, 3, 51, "Windows NT"},
      {2, 4, 0, "Windows NT"},
      {2, 5, 0, "Windows 2000"},
      {2, 5, 1, "Windows 2000"},
      {2, 5, 2, "Windows 2000"},
      {2, 6, 0, "Windows Vista"},
      {2, 6, 1, "Windows Vista"},
      {2, 7, 0, ""},
      {2, 10, 0, ""},
      {1, 4, 0, "Windows 95"},
      {1, 4, 10, "Windows 98"},
      {1, 4, 90, "Windows ME"},
      {1, 4, 5, "Windows 9?"},
      {0, 3, 10, ""},
      {3, 5, 0, ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetOSName({c.platform_id, c.major, c.minor}), c.word)
        << c.platform_id << " " << c.major << " " << c.minor;
  }
}

TEST(GetOSName, AFailedCallHasAWordOfItsOwn) {
  EXPECT_EQ(GetOSName({.platform_id = 2, .major = 6, .minor = 0, .known = false}),
            "Microsoft Windows (Unknown)");
}

TEST(IsValidName, AcceptsOrdinaryNamesAndTrimsThemInPlace) {
  std::string name = "  My mail 2026  ";
  EXPECT_TRUE(IsValidName(name));
  EXPECT_EQ(name, "My mail 2026");
}

TEST(IsValidName, RefusesNothingAndBlanks) {
  for (std::string name : {"", "   "}) EXPECT_FALSE(IsValidName(name)) << "'" << name << "'";
}

TEST(IsValidName, RefusesEachForbiddenCharacter) {
  for (char forbidden : std::string("/:\\?*<>\"|")) {
    std::string name = std::string("a") + forbidden + "b";
    EXPECT_FALSE(IsValidName(name)) << forbidden;
  }
  for (char allowed : std::string("!#$%&'()+,-.;=@[]^_`{}~")) {
    std::string name = std::string("a") + allowed + "b";
    EXPECT_TRUE(IsValidName(name)) << allowed;
  }
}

TEST(IsValidName, NameOf129CharactersIsRefusedAndOneOf128Accepted) {
  std::string longest(128, 'x');
  std::string too_long(129, 'x');
  EXPECT_TRUE(IsValidName(longest));
  EXPECT_FALSE(IsValidName(too_long));
}

TEST(IsValidName, CountsCharactersNotBytes) {
  std::string longest, too_long;
  for (int i = 0; i < 128; ++i) longest += "\xC3\xA4";
  too_long = longest + "x";
  EXPECT_TRUE(IsValidName(longest));
  EXPECT_FALSE(IsValidName(too_long));
}

TEST(OnlyDigitKey, PassesDigitsAndBackspaceOnly) {
  for (int code = 0; code < 256; ++code) {
    const bool passes = code == 8 || (code >= '0' && code <= '9');
    EXPECT_EQ(OnlyDigitKey(code), passes ? code : 0) << code;
  }
}

TEST(StripNuls, DropsThemAnywhere) {
  EXPECT_EQ(StripNuls(std::string("\0a\0b\0\0", 6)), "ab");
  EXPECT_EQ(StripNuls(""), "");
}

TEST(InterleaveNuls, PutsANulBetweenTheCharacters) {
  EXPECT_EQ(InterleaveNuls("abc"), std::string("a\0b\0c", 5));
  EXPECT_EQ(InterleaveNuls("a"), "a");
  EXPECT_EQ(InterleaveNuls(""), "");
}

TEST(DecodeStorePath, KeepsUnicodeTextAndPrefixesOtherText) {
  EXPECT_EQ(DecodeStorePath(std::string("C\0:\0", 4), true, "X"), "C:");
  EXPECT_EQ(DecodeStorePath("mail.pst", false, "C:\\Data\\"), "C:\\Data\\mail.pst");
}

TEST(ToHexText, WritesTwoUpperCaseDigitsForEachByte) {
  EXPECT_EQ(ToHexText(std::string("\0\x0F\xAB\xFF", 4)), "000FABFF");
  EXPECT_EQ(ToHexText(""), "");
}

TEST(ScaleForDpi, LeavesValuesAloneAt96) {
  EXPECT_EQ(ScaleForDpi(12300, 96), 12300);
  EXPECT_EQ(ScaleForDpi(8480, 96), 8480);
  EXPECT_EQ(ScaleForDpi(-7, 96), -7);
}

TEST(ScaleForDpi, At120TheWindowIsSmallerThanAStraightSize) {
  EXPECT_EQ(ScaleForDpi(12300, 120), 9840);
  EXPECT_EQ(ScaleForDpi(8480, 120), 6784);
  EXPECT_EQ(ScaleForDpi(12300, 144), 7380);
  // An inch has 1440 twips: 820 pixels instead of the 1025 of a straight size.
  EXPECT_EQ(ScaleForDpi(12300, 120) * 120 / 1440, 820);
  EXPECT_EQ(12300 * 120 / 1440, 1025);
}

TEST(DateStamp, JoinsTheUnpaddedParts) {
  EXPECT_EQ(DateStamp({2026, 11, 14, 22, 5, 9, 7}), "7_14_11_2026_22_5");
  EXPECT_EQ(DateStamp({2026, 1, 2, 0, 0, 0, 6}), "6_2_1_2026_0_0");
}

TEST(CheckValue, OnlyTheNumberOneTicks) {
  for (const char* ticked : {"1", " 1", "1.0", "1 "}) EXPECT_EQ(CheckValue(ticked), 1) << ticked;
  for (const char* clear : {"", "0", "2", "-1", "x", "10", "0.5"}) {
    EXPECT_EQ(CheckValue(clear), 0) << clear;
  }
}

TEST(BoolWord, IsTheWordOfTheFiles) {
  EXPECT_STREQ(BoolWord(true), "True");
  EXPECT_STREQ(BoolWord(false), "False");
}

}  // namespace
}  // namespace quorvale
