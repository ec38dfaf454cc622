#include "platform/file_toolkit.h"

#include <gtest/gtest.h>

#include "base/paths.h"
#include "support/faulty_platform.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

class FileToolkitTest : public testing::Test {
 protected:
  // "path:F" and "path:D", as the entries stand.
  std::vector<std::string> Deep(const std::string& folder, const std::string& pattern = "*.*") {
    std::vector<std::string> lines;
    for (const DeepEntry& entry : toolkit_.ListFilesDeep(folder, pattern)) {
      lines.push_back(entry.path + (entry.is_folder ? ":D" : ":F"));
    }
    return lines;
  }

  MemoryFiles files_;
  CallCount calls_;
  FaultyFiles faulty_files_{files_, calls_};
  int pumps_ = 0;
  FileToolkit toolkit_{faulty_files_, [this] { ++pumps_; }};
};

using Lines = std::vector<std::string>;

TEST_F(FileToolkitTest, ExtensionIsComparedInLowerCase) {
  files_.Put("C:\\d\\a.LNK");
  files_.Put("C:\\d\\b.txt");
  EXPECT_EQ("a.LNK|", toolkit_.ListFiles("C:\\d", "*.lnk"));
  EXPECT_EQ("a.LNK|", toolkit_.ListFiles("C:\\d\\", "*.Lnk"));
}

// Whatever call of the listing of a tree fails, once: what is not listed is told.
TEST_F(FileToolkitTest, AFaultInADeepListingLeavesNothingOutInSilence) {
  files_.Put("C:\\d\\a.txt");
  files_.Put("C:\\d\\in\\b.txt");
  files_.PutFolder("C:\\d\\empty");
  const Lines all = Deep("C:\\d");
  Lines told;
  const auto passed_over = [&told](const std::string& path, PassedOver) { told.push_back(path); };
  toolkit_.ListFilesDeep("C:\\d", "*.*", nullptr, passed_over);
  const std::uint64_t calls = calls_.calls();
  EXPECT_TRUE(told.empty());
  for (std::uint64_t number = 1; number <= calls; ++number) {
    calls_.FailCall(number);
    told.clear();
    const auto entries = toolkit_.ListFilesDeep("C:\\d", "*.*", nullptr, passed_over);
    EXPECT_TRUE(entries.size() == all.size() || !told.empty()) << calls_.failed_call();
  }
}

TEST_F(FileToolkitTest, ExtensionIsWhatStandsBehindTheLastDot) {
  files_.Put("C:\\d\\a.htm");
  files_.Put("C:\\d\\b.html");
  files_.Put("C:\\d\\c.htm.txt");
  EXPECT_EQ("a.htm|", toolkit_.ListFiles("C:\\d", "*.htm"));
}

TEST_F(FileToolkitTest, FileWithoutADotIsNeverListed) {
  files_.Put("C:\\d\\readme");
  files_.Put("C:\\d\\a.txt");
  EXPECT_EQ("a.txt|", toolkit_.ListFiles("C:\\d", "*.*"));
  EXPECT_EQ((Lines{"C:\\d\\a.txt:F", "C:\\d:D"}), Deep("C:\\d"));
}

TEST_F(FileToolkitTest, ListIsFlatAndKeepsItsFinalSeparator) {
  files_.Put("C:\\d\\a.txt");
  files_.Put("C:\\d\\b.txt");
  files_.Put("C:\\d\\sub.txt\\c.txt");
  EXPECT_EQ("a.txt|b.txt|", toolkit_.ListFiles("C:\\d", "*.*"));
  EXPECT_EQ((Lines{"a.txt", "b.txt"}), toolkit_.ListFileNames("C:\\d", "*.*"));
  EXPECT_EQ("", toolkit_.ListFiles("C:\\none", "*.*"));
}

TEST_F(FileToolkitTest, DriveRelativeTextIsReadAsTheRoot) {
  files_.Put("C:\\root.txt");
  files_.Put("C:\\d\\a.txt");
  EXPECT_EQ("root.txt|", toolkit_.ListFiles("C:", "*.*"));
  EXPECT_EQ("root.txt|", toolkit_.ListFiles("C:d", "*.*"));
}

TEST_F(FileToolkitTest, EachListingPumps) {
  files_.PutFolder("C:\\d");
  toolkit_.ListFiles("C:\\d", "*.*");
  EXPECT_EQ(1, pumps_);
  files_.Put("C:\\d\\sub\\a.txt");
  toolkit_.ListFilesDeep("C:\\d", "*.*");
  EXPECT_EQ(3, pumps_);
}

TEST_F(FileToolkitTest, LongListingPumpsWhileItRuns) {
  for (int i = 0; i < 1000; ++i) files_.Put("C:\\d\\" + std::to_string(i) + ".eml");
  EXPECT_EQ(1001u, toolkit_.ListFilesDeep("C:\\d", "*.*").size());
  EXPECT_GT(pumps_, 10);
}

TEST_F(FileToolkitTest, EmptyFolderIsListedItself) {
  files_.PutFolder("C:\\d");
  EXPECT_EQ(Lines{"C:\\d:D"}, Deep("C:\\d"));
  EXPECT_EQ(Lines{"C:\\d:D"}, Deep("C:\\d\\"));
  EXPECT_EQ(Lines{}, Deep("C:\\none"));
}

TEST_F(FileToolkitTest, FolderFollowsWhatIsBelowIt) {
  files_.Put("C:\\d\\a.txt");
  files_.PutFolder("C:\\d\\empty");
  files_.Put("C:\\d\\full\\deep\\b.txt");
  files_.Put("C:\\d\\z.txt");
  EXPECT_EQ((Lines{"C:\\d\\a.txt:F", "C:\\d\\empty:D", "C:\\d\\full\\deep\\b.txt:F",
                   "C:\\d\\full\\deep:D", "C:\\d\\full:D", "C:\\d\\z.txt:F", "C:\\d:D"}),
            Deep("C:\\d"));
}

TEST_F(FileToolkitTest, FolderOfOtherFilesOnlyIsNotListed) {
  files_.Put("C:\\d\\a.txt");
  files_.Put("C:\\d\\sub\\b.txt");
  files_.PutFolder("C:\\d\\empty");
  EXPECT_EQ((Lines{"C:\\d\\empty:D", "C:\\d:D"}), Deep("C:\\d", "*.eml"));
  EXPECT_EQ(Lines{}, Deep("C:\\d\\sub", "*.eml"));
}

TEST_F(FileToolkitTest, StopCutsTheListingShort) {
  for (int i = 0; i < 10; ++i) files_.Put("C:\\d\\sub\\" + std::to_string(i) + ".txt");
  int left = 5;
  const auto entries = toolkit_.ListFilesDeep("C:\\d", "*.*", [&left] { return --left < 0; });
  EXPECT_EQ(4u, entries.size());
  for (const DeepEntry& entry : entries) EXPECT_FALSE(entry.is_folder);
}

TEST_F(FileToolkitTest, DeleteMatchingWalksSubfoldersWithEveryFile) {
  files_.Put("C:\\d\\a.tmp");
  files_.Put("C:\\d\\b.txt");
  files_.Put("C:\\d\\sub\\c.txt");
  EXPECT_TRUE(toolkit_.DeleteMatching("C:\\d", "*.tmp"));
  EXPECT_FALSE(toolkit_.FileExists("C:\\d\\a.tmp"));
  EXPECT_TRUE(toolkit_.FileExists("C:\\d\\b.txt"));
  EXPECT_FALSE(toolkit_.FileExists("C:\\d\\sub\\c.txt"));
  EXPECT_TRUE(toolkit_.FolderExists("C:\\d\\sub"));
}

TEST_F(FileToolkitTest, DeleteMatchingSkipsWhatCannotBeDeleted) {
  files_.Put("C:\\d\\a.tmp");
  files_.Put("C:\\d\\b.tmp");
  faulty_files_.SetInUse("C:\\d\\a.tmp", true);
  EXPECT_TRUE(toolkit_.DeleteMatching("C:\\d", "*.*"));
  EXPECT_EQ("a.tmp|", toolkit_.ListFiles("C:\\d", "*.*"));
}

TEST_F(FileToolkitTest, KillFolderTakesAllWithIt) {
  files_.Put("C:\\d\\stage\\sub\\readme");
  files_.Put("C:\\d\\stage\\a.txt");
  EXPECT_TRUE(toolkit_.KillFolder("C:\\d\\stage\\"));
  EXPECT_FALSE(toolkit_.FolderExists("C:\\d\\stage"));
  EXPECT_TRUE(toolkit_.FolderExists("C:\\d"));
  EXPECT_TRUE(toolkit_.KillFolder("C:\\d\\stage"));
}

TEST_F(FileToolkitTest, KillFolderTellsWhatStays) {
  files_.Put("C:\\stage\\a.txt");
  files_.Put("C:\\stage\\b.txt");
  faulty_files_.SetInUse("C:\\stage\\a.txt", true);
  EXPECT_FALSE(toolkit_.KillFolder("C:\\stage"));
  EXPECT_FALSE(toolkit_.FileExists("C:\\stage\\b.txt"));
}

TEST_F(FileToolkitTest, MakeFolderChainMakesWhatIsMissing) {
  files_.PutFolder("C:\\a");
  int folders_made = 0;
  files_.may_change = [&folders_made] { return ++folders_made > 0; };
  EXPECT_TRUE(toolkit_.MakeFolderChain("C:\\a\\b\\\\c\\"));
  EXPECT_TRUE(toolkit_.FolderExists("C:\\a\\b\\c") || toolkit_.FolderExists("C:\\a\\b\\\\c"));
  EXPECT_EQ(2, folders_made);
  EXPECT_TRUE(toolkit_.MakeFolderChain("C:\\a\\b"));
  EXPECT_EQ(2, folders_made);
  EXPECT_TRUE(toolkit_.MakeFolderChain("C:\\"));
  files_.may_change = [] { return false; };
  EXPECT_FALSE(toolkit_.MakeFolderChain("C:\\x\\y"));
  EXPECT_FALSE(toolkit_.MakeFolderChain(""));
}

TEST_F(FileToolkitTest, MakeFolderChainLeavesServerAndShareAlone) {
  int changes = 0;
  files_.may_change = [&changes] { return ++changes > 0; };
  EXPECT_FALSE(toolkit_.MakeFolderChain("\\\\server"));
  EXPECT_FALSE(toolkit_.MakeFolderChain("\\\\server\\share"));
  EXPECT_EQ(0, changes);
}

TEST_F(FileToolkitTest, FolderSizeSumsTheTree) {
  files_.Put("C:\\d\\a.txt", "12345");
  files_.Put("C:\\d\\sub\\readme", "123");
  EXPECT_EQ(8.0, toolkit_.FolderSize("C:\\d"));
  EXPECT_EQ(0.0, toolkit_.FolderSize("C:\\none"));
}

TEST_F(FileToolkitTest, CopyKeepsTimeAndAttributes) {
  files_.Put("C:\\a.txt", "content");
  files_.SetModified("C:\\a.txt", 12345);
  files_.SetAttributes("C:\\a.txt", file_attribute::kHidden);
  EXPECT_EQ(FileStatus::kOk, toolkit_.CopyFile("C:\\a.txt", "C:\\b.txt"));
  EXPECT_EQ("content", files_.Bytes("C:\\b.txt"));
  EXPECT_EQ(12345, files_.Stat("C:\\b.txt")->modified);
  EXPECT_EQ(file_attribute::kHidden, files_.Stat("C:\\b.txt")->attributes);
  EXPECT_EQ("content", files_.Bytes("C:\\a.txt"));
}

TEST_F(FileToolkitTest, FailedCopyLeavesTheOldFileAndNothingElse) {
  files_.Put("C:\\a.txt", "new content");
  files_.Put("C:\\b.txt", "old");
  files_.room = files_.UsedBytes() + 4;
  EXPECT_EQ(FileStatus::kNoSpace, toolkit_.CopyFile("C:\\a.txt", "C:\\b.txt"));
  files_.room = 1000;
  faulty_files_.FailReadsAfter("C:\\a.txt", 0);
  EXPECT_EQ(FileStatus::kFailed, toolkit_.CopyFile("C:\\a.txt", "C:\\b.txt"));
  faulty_files_.FailReadsAfter("C:\\a.txt", std::nullopt);
  faulty_files_.SetInUse("C:\\b.txt", true);
  EXPECT_EQ(FileStatus::kDenied, toolkit_.CopyFile("C:\\a.txt", "C:\\b.txt"));
  EXPECT_EQ("old", files_.Bytes("C:\\b.txt"));
  EXPECT_EQ(2u, files_.AllFiles().size());
  EXPECT_EQ(FileStatus::kNotFound, toolkit_.CopyFile("C:\\none", "C:\\b.txt"));
}

TEST_F(FileToolkitTest, ReadOnlyFileIsNotReplaced) {
  files_.Put("C:\\a.txt", "new");
  files_.Put("C:\\b.txt", "old");
  files_.SetAttributes("C:\\b.txt", file_attribute::kReadOnly);
  EXPECT_EQ(FileStatus::kDenied, toolkit_.CopyFile("C:\\a.txt", "C:\\b.txt"));
  EXPECT_EQ(FileStatus::kDenied, toolkit_.WriteWhole("C:\\b.txt", "new"));
  EXPECT_EQ("old", files_.Bytes("C:\\b.txt"));
}

TEST_F(FileToolkitTest, WholeFiles) {
  EXPECT_EQ(FileStatus::kOk, toolkit_.WriteWhole("C:\\a.xml", "<a/>"));
  EXPECT_EQ("<a/>", toolkit_.ReadWhole("C:\\a.xml"));
  EXPECT_EQ(FileStatus::kOk, toolkit_.WriteWhole("C:\\a.xml", ""));
  EXPECT_EQ("", toolkit_.ReadWhole("C:\\a.xml"));
  EXPECT_FALSE(toolkit_.ReadWhole("C:\\none"));
  files_.Put("C:\\big", std::string(101, 'x'));
  EXPECT_FALSE(toolkit_.ReadWhole("C:\\big", 100));
  EXPECT_TRUE(toolkit_.ReadWhole("C:\\big", 101));
  faulty_files_.FailReadsAfter("C:\\big", 0);
  EXPECT_FALSE(toolkit_.ReadWhole("C:\\big"));
}

TEST_F(FileToolkitTest, FailedWriteLeavesTheOldFileAndNothingElse) {
  files_.Put("C:\\a.xml", "old");
  files_.Put("C:\\a.xml.tmp", "someone else's");
  files_.room = files_.UsedBytes() + 2;
  EXPECT_EQ(FileStatus::kNoSpace, toolkit_.WriteWhole("C:\\a.xml", "longer"));
  EXPECT_EQ("old", files_.Bytes("C:\\a.xml"));
  EXPECT_EQ("someone else's", files_.Bytes("C:\\a.xml.tmp"));
  EXPECT_EQ(2u, files_.AllFiles().size());
}

TEST_F(FileToolkitTest, HiddenFileStaysHiddenWhenItIsWritten) {
  files_.Put("C:\\a.xml", "old");
  files_.SetAttributes("C:\\a.xml", file_attribute::kHidden);
  EXPECT_EQ(FileStatus::kOk, toolkit_.WriteWhole("C:\\a.xml", "new"));
  EXPECT_EQ(file_attribute::kHidden, files_.Stat("C:\\a.xml")->attributes);
}

TEST(PathsTest, ParentFolderOfAFileInTheRootIsTheDrive) { EXPECT_EQ("C:", ParentFolder("C:\\x")); }

}  // namespace
}  // namespace quorvale
