#include "base/text.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

TEST(Text, FoldCaseFoldsTheEuropeanAlphabets) {
  EXPECT_EQ(FoldCase("Inbox.DBX"), "inbox.dbx");
  EXPECT_EQ(FoldCase("ÄÖÜß"), "äöüß");
  EXPECT_EQ(FoldCase("ŁÓDŹ"), "łódź");
  EXPECT_EQ(FoldCase("ΑΘΉΝΑ"), "αθήνα");
  EXPECT_EQ(FoldCase("МОСКВА Ё"), "москва ё");
  EXPECT_EQ(FoldCase("×÷"), "×÷");
}

TEST(Text, FoldCaseKeepsBytesThatAreNotUtf8) { EXPECT_EQ(FoldCase("A\xFF\xC3"), "a\xFF\xC3"); }

TEST(Text, EqualsNoCaseComparesWholeTexts) {
  EXPECT_TRUE(EqualsNoCase("OUTLOOK.EXE", "Outlook.exe"));
  EXPECT_FALSE(EqualsNoCase("outlook.exe", "outlook.ex"));
}

TEST(Text, ReplaceAllDoesNotReadItsOwnOutput) {
  EXPECT_EQ(ReplaceAll("a\\\\\\b", "\\\\", "\\"), "a\\\\b");
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
}

TEST(Text, TrimTakesBlanksOnly) {
  EXPECT_EQ(Trim("  a b\t "), "a b\t");
  EXPECT_EQ(Trim("   "), "");
}

TEST(Text, SplitKeepsEmptyParts) {
  EXPECT_EQ(Split("a|b|", "|"), (std::vector<std::string>{"a", "b", ""}));
  EXPECT_EQ(Split("", "|"), std::vector<std::string>{""});
}

TEST(Text, Utf16RoundTripKeepsCharactersBeyondTheFirstPlane) {
  const std::string text = "Grüße 漢字 😀";
  EXPECT_EQ(Utf16BytesToUtf8(Utf8ToUtf16Bytes(text)), text);
  EXPECT_EQ(Utf8ToUtf16Bytes("A"), std::string("A\0", 2));
}

TEST(Text, LoneSurrogatesAndBadBytesBecomeTheReplacementCharacter) {
  EXPECT_EQ(Utf16BytesToUtf8(std::string("\x00\xD8", 2)), "\xEF\xBF\xBD");
  EXPECT_EQ(Utf8ToUtf16Bytes("\xFF"), std::string("\xFD\xFF", 2));
  EXPECT_EQ(Utf16BytesToUtf8("A"), "") << "half a unit is no character";
}

TEST(Text, FoldCaseFoldsEveryPairOfLatinExtendedA) {
  EXPECT_EQ(FoldCase("ĀĮĲĶĹŇŊŶŸŹŽ"), "āįĳķĺňŋŷÿźž");
  EXPECT_EQ(FoldCase("āįĳķĺňŋŷÿźž"), "āįĳķĺňŋŷÿźž");
  EXPECT_EQ(FoldCase("İıĸŉſ"), "İıĸŉſ") << "these have no pair";
}

TEST(Text, CountCharactersCountsEachOnce) {
  EXPECT_EQ(CountCharacters(""), 0u);
  EXPECT_EQ(CountCharacters("aä漢😀"), 4u);
}

TEST(Text, IsUtf8RefusesOverlongAndCutSequences) {
  EXPECT_TRUE(IsUtf8("ä漢😀"));
  EXPECT_FALSE(IsUtf8("\xC0\x80"));
  EXPECT_FALSE(IsUtf8("\xE6\xBC"));
  EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
}

TEST(Text, ValReadsTheNumberAtTheStart) {
  EXPECT_EQ(Val(""), 0);
  EXPECT_EQ(Val("x"), 0);
  EXPECT_EQ(Val(" 1 2 abc"), 12);
  EXPECT_EQ(Val("1"), 1);
  EXPECT_EQ(Val("nan"), 0);
}

}  // namespace
}  // namespace quorvale
