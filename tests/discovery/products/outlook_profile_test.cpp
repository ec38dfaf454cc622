#include "discovery/products/outlook_profile.h"

#include <gtest/gtest.h>

#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

TEST(OutlookProfile, ProfilesRootBySystem) {
  for (const char* os : {"Windows NT", "Windows 2000", "Windows Vista"}) {
    EXPECT_EQ(ProfilesRoot(os), kNtProfilesRoot) << os;
  }
  for (const char* os : {"Windows 98", "Windows ME"}) EXPECT_EQ(ProfilesRoot(os), k98ProfilesRoot);
  EXPECT_EQ(ProfilesRoot(""), "");
}

TEST(OutlookProfile, RowNumbersAreCutOffOnlyWhereTheyAre) {
  EXPECT_EQ(DataFileKey("C:\\a.pst", 2, 1), "C:\\a.pst,21");
  EXPECT_EQ(DataFileKey("", 1, 1), ",11");
  EXPECT_EQ(WithoutRowNumbers("C:\\a.pst,21"), "C:\\a.pst");
  EXPECT_EQ(WithoutRowNumbers(",11"), "");
  EXPECT_EQ(WithoutRowNumbers("C:\\Smith, Anna.pst,11"), "C:\\Smith, Anna.pst");
  EXPECT_EQ(WithoutRowNumbers("C:\\Smith, Anna.pst"), "C:\\Smith, Anna.pst");
  EXPECT_EQ(WithoutRowNumbers("HKEY_CURRENT_USER\\Profiles\\Sales,2"),
            "HKEY_CURRENT_USER\\Profiles\\Sales,2");
  EXPECT_EQ(WithoutRowNumbers("a,"), "a,");
}

TEST(OutlookProfile, SixteenBitTextEndsAtItsNulPair) {
  EXPECT_EQ(EncodeProfileText16("a"), std::string("a\0\0\0", 4));
  EXPECT_EQ(EncodeProfileText16(""), std::string(2, '\0'));
  EXPECT_EQ(DecodeProfileText16(""), "");
  EXPECT_EQ(DecodeProfileText16("a"), "");  // half a unit
  EXPECT_EQ(DecodeProfileText16(std::string("a\0b", 3)), "a");
  EXPECT_EQ(DecodeProfileText16(std::string("a\0\0\0b\0", 6)), "a");
  // A unit whose low byte is 0 is no end.
  EXPECT_EQ(DecodeProfileText16(EncodeProfileText16("\u0100x")), "\u0100x");
}

// The write side of an older form: the text with a NUL behind each character but the last one, and
// three NULs behind that, is the same.
TEST(OutlookProfile, SixteenBitTextIsThatOfInterleavedNuls) {
  const std::string path = "C:\\Mail\\outlook.pst";
  EXPECT_EQ(EncodeProfileText16(path), InterleaveNuls(path) + std::string(3, '\0'));
}

}  // namespace
}  // namespace quorvale
