// Which paths out of a backup are written to. They come from whoever made the file.
#include "restore/run/safe_target.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvale {
namespace {

TEST(SafeTarget, APathOnADriveOrShareIsOne) {
  for (const char* path : {"C:\\a.txt", "c:\\", "Z:\\My files\\deep\\a.txt", "D:\\folder\\",
                           "C:\\..a\\b..c", "C:\\Почта\\日本.txt", "\\\\server\\share",
                           "\\\\server\\share\\a.txt", "C:\\console.txt"}) {
    EXPECT_TRUE(IsSafeTarget(path)) << path;
  }
}

TEST(SafeTarget, APathWithoutAPlaceOfItsOwnIsNone) {
  for (const char* path : {"", "a.txt", "\\a.txt", "C:", "C:a.txt", "1:\\a.txt", ":\\a.txt",
                           "CC:\\a.txt", "C:/a.txt", "\\\\server", "\\\\server\\", "\\\\"}) {
    EXPECT_FALSE(IsSafeTarget(path)) << path;
  }
}

TEST(SafeTarget, APathThatLeadsElsewhereThanItSaysIsNone) {
  for (const char* path : {"C:\\a\\..\\b", "C:\\..", "C:\\.\\a", "C:\\a\\\\b",
                           "\\\\server\\..\\share", "\\\\.\\C:\\a", "\\\\?\\C:\\a", "C:\\a\\C:\\b",
                           "C:\\a:stream", "C:\\a/../../b", "C:\\a/b.txt", "\\\\server/share\\a"}) {
    EXPECT_FALSE(IsSafeTarget(path)) << path;
  }
}

TEST(SafeTarget, ANameThatNoFileHasIsNone) {
  for (const char* path :
       {"C:\\a.", "C:\\a ", "C:\\a \\b", "C:\\a*", "C:\\a?", "C:\\a|b", "C:\\<a>", "C:\\\"a\"",
        "C:\\a\tb", "C:\\con", "C:\\NUL.txt", "C:\\folder\\Com1\\a", "C:\\\xFF\xFE"}) {
    EXPECT_FALSE(IsSafeTarget(path)) << path;
  }
}

TEST(SafeTarget, BelowAFolderOnlyANameStaysThatHasNoRoot) {
  for (const char* name : {"a.txt", "folder\\a.txt", "folder\\", "a b", ".hidden"}) {
    EXPECT_TRUE(IsSafeBelow(name)) << name;
  }
  for (const char* name : {"", "\\", "\\a", "..", "..\\a", "a\\..\\..\\b", "C:\\a", "C:a", "a\\\\b",
                           "../a", "a/../../b", "/a", "aux"}) {
    EXPECT_FALSE(IsSafeBelow(name)) << name;
  }
}

}  // namespace
}  // namespace quorvale
