#include "base/paths.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

TEST(Paths, ParentOfAFileAtARootIsTheDrive) {
  EXPECT_EQ(ParentFolder("C:\\x"), "C:");
  EXPECT_EQ(ParentFolder("x"), "");
}

TEST(Paths, FileNameIsTheTextBehindTheLastBackslash) {
  EXPECT_EQ(FileNameOf("C:\\a\\b.txt"), "b.txt");
  EXPECT_EQ(FileNameOf("b.txt"), "b.txt");
  EXPECT_EQ(FileNameOf("C:\\a\\"), "");
}

TEST(Paths, BackslashIsAddedAndTakenOnce) {
  EXPECT_EQ(WithBackslash("C:"), "C:\\");
  EXPECT_EQ(WithBackslash("C:\\"), "C:\\");
  EXPECT_EQ(WithoutBackslash("C:\\a\\"), "C:\\a");
  EXPECT_EQ(WithoutBackslash("C:\\a"), "C:\\a");
}

TEST(Paths, DoubledBackslashesCollapseBehindTheShareMark) {
  EXPECT_EQ(CollapseBackslashes("C:\\\\a\\\\b"), "C:\\a\\b");
  EXPECT_EQ(CollapseBackslashes("\\\\server\\\\share"), "\\\\server\\share");
}

TEST(Paths, WithoutExtensionCutsFourCharacters) {
  EXPECT_EQ(WithoutLastFour("My mail.obk"), "My mail");
  EXPECT_EQ(WithoutLastFour("a"), "");
}

TEST(Paths, ANumberStandsBeforeTheExtensionOfTheFileAlone) {
  EXPECT_EQ(NumberedName("mail.pst", 2), "mail_2.pst");
  EXPECT_EQ(NumberedName("bert.b.wab", 1), "bert.b_1.wab");
  EXPECT_EQ(NumberedName("no extension", 10), "no extension_10");
  EXPECT_EQ(NumberedName("C:\\My.files\\a.txt", 1), "C:\\My.files\\a_1.txt");
  EXPECT_EQ(NumberedName("C:\\My.files\\plain", 1), "C:\\My.files\\plain_1");
}

TEST(Paths, TheRootOfAShareIsItsServerAndItsName) {
  for (const char* root : {"\\\\server\\share", "\\\\server\\share\\"}) {
    EXPECT_TRUE(IsShareRoot(root)) << root;
  }
  for (const char* other : {"\\\\server", "\\\\server\\", "\\\\server\\share\\x", "C:\\share", "",
                            "\\\\", "\\\\\\share"}) {
    EXPECT_FALSE(IsShareRoot(other)) << other;
  }
}

TEST(Paths, ATypedFolderIsTheOneThatIsMeant) {
  for (const char* typed :
       {"D:\\Back", "D:/Back", "D:\\\\Back", "D:\\Back.", "D:\\a\\..\\Back", "  D:\\Back  ",
        "D:\\Back\\", "D:Back", "D:\\.\\Back", "D:\\..\\Back. .", "\\Back", "Back"}) {
    EXPECT_EQ(TypedFolder(typed, "D:"), "D:\\Back") << typed;
  }
  for (const char* typed : {"D:", "D:\\", "D:/", "\\", ".", "D:\\a\\.."}) {
    EXPECT_EQ(TypedFolder(typed, "D:"), "D:\\") << typed;
  }
  for (const char* typed : {"\\\\server\\share\\x", "//server/share/x", " \\\\server\\share\\\\x. ",
                            "\\\\server\\share\\..\\..\\..\\x"}) {
    EXPECT_EQ(TypedFolder(typed, "D:"), "\\\\server\\share\\x") << typed;
  }
  EXPECT_EQ(TypedFolder("\\\\server\\share\\", "D:"), "\\\\server\\share");
  EXPECT_EQ(TypedFolder("  ", "D:"), "");
}

TEST(Paths, DriveOfANetworkPathIsTheWholePath) {
  EXPECT_EQ(DriveOf("D:\\Data"), "D:");
  EXPECT_EQ(DriveOf("\\\\server\\share\\x"), "\\\\server\\share\\x");
}

}  // namespace
}  // namespace quorvale
