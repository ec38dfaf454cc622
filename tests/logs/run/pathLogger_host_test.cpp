#include "logs/run/pathLogger.h"

#include <gtest/gtest.h>

#include "support/test_machine.h"

namespace quorvale {
namespace {

using Strings = std::vector<std::string>;

class PathLogger : public testing::Test {
 protected:
  void MakeTree() {
    machine_.WriteFile("C:\\Root\\b\\deep\\last.txt", "5");
    machine_.WriteFile("C:\\Root\\a\\inner.txt", "3");
    machine_.WriteFile("C:\\Root\\b\\no_extension", "4");
    machine_.WriteFile("C:\\Root\\top.txt", "1");
    machine_.WriteFile("C:\\Root\\also.txt", "2");
  }

  TestMachine machine_;
  int pumps_ = 0;
  pathLogger walk_{machine_.files(), [this] { ++pumps_; }};
};

TEST_F(PathLogger, RecordsFullNamesUnlessToldOtherwise) {
  MakeTree();
  EXPECT_TRUE(walk_.fullFileNamesOnly);
  EXPECT_TRUE(walk_.LogPath("C:\\Root"));
  EXPECT_EQ(walk_.Count(), 5);
  EXPECT_EQ(walk_.fullFileNames().entries(),
            (Strings{"C:\\Root\\also.txt", "C:\\Root\\top.txt", "C:\\Root\\a\\inner.txt",
                     "C:\\Root\\b\\no_extension", "C:\\Root\\b\\deep\\last.txt"}));
  EXPECT_EQ(walk_.fileNames().Count(), 0);
  EXPECT_EQ(walk_.pathPointers().Count(), 0);
  EXPECT_EQ(pumps_, 4);
}

TEST_F(PathLogger, WalksLevelByLevelInTheOrderOfTheFileSystem) {
  MakeTree();
  walk_.LogPath("C:\\Root");
  EXPECT_EQ(walk_.pathNames().entries(),
            (Strings{"C:\\Root", "C:\\Root\\a", "C:\\Root\\b", "C:\\Root\\b\\deep"}));
  const std::vector<FileInfo> listed = machine_.files().List("C:\\Root");
  Strings folders;
  for (const FileInfo& entry : listed) {
    if (entry.IsFolder()) folders.push_back("C:\\Root\\" + entry.name);
  }
  EXPECT_EQ(folders, (Strings{walk_.pathNames().Item(2), walk_.pathNames().Item(3)}));
}

TEST_F(PathLogger, NamesAndPointersTellWhereAFileLies) {
  MakeTree();
  walk_.fullFileNamesOnly = false;
  EXPECT_TRUE(walk_.LogPath("C:\\Root"));
  EXPECT_EQ(walk_.Count(), 5);
  EXPECT_EQ(walk_.fullFileNames().Count(), 0);
  EXPECT_EQ(walk_.fileNames().entries(),
            (Strings{"also.txt", "top.txt", "inner.txt", "no_extension", "last.txt"}));
  EXPECT_EQ(walk_.pathPointers().entries(), (std::vector<int>{1, 1, 2, 3, 4}));
  EXPECT_EQ(walk_.pathNames().Item(walk_.pathPointers().Item(5)), "C:\\Root\\b\\deep");
}

TEST_F(PathLogger, EntriesAreFoundByTheirKeys) {
  MakeTree();
  walk_.LogPath("C:\\Root");
  ASSERT_NE(walk_.pathNames().Find("K0"), nullptr);
  EXPECT_EQ(*walk_.pathNames().Find("K0"), "C:\\Root");
  EXPECT_EQ(*walk_.pathNames().Find("K3"), "C:\\Root\\b\\deep");
  EXPECT_EQ(*walk_.fullFileNames().Find("K0"), "C:\\Root\\also.txt");
  EXPECT_EQ(walk_.pathNames().Find("K4"), nullptr);
}

TEST_F(PathLogger, ARootThatDoesNotExistLeavesTheListsEmpty) {
  EXPECT_TRUE(walk_.LogPath("C:\\Nowhere"));
  EXPECT_EQ(walk_.Count(), 0);
  EXPECT_EQ(walk_.pathNames().Count(), 0);
}

TEST_F(PathLogger, AFileIsNoRoot) {
  machine_.WriteFile("C:\\file.txt", "x");
  EXPECT_TRUE(walk_.LogPath("C:\\file.txt"));
  EXPECT_EQ(walk_.pathNames().Count(), 0);
}

TEST_F(PathLogger, AnEmptyRootIsOnePathWithoutFiles) {
  machine_.MakeFolder("C:\\Empty");
  EXPECT_TRUE(walk_.LogPath("C:\\Empty\\"));
  EXPECT_EQ(walk_.pathNames().entries(), (Strings{"C:\\Empty"}));
  EXPECT_EQ(walk_.Count(), 0);
}

TEST_F(PathLogger, ADrivesRootGivesPathsWithOneBackslash) {
  machine_.computer().SetDrive("E", DriveKind::kFixed);
  machine_.WriteFile("E:\\sub\\x.bin", "x");
  machine_.WriteFile("E:\\y.bin", "y");
  EXPECT_TRUE(walk_.LogPath("E:\\"));
  EXPECT_EQ(walk_.pathNames().entries(), (Strings{"E:", "E:\\sub"}));
  EXPECT_EQ(walk_.fullFileNames().entries(), (Strings{"E:\\y.bin", "E:\\sub\\x.bin"}));
}

TEST_F(PathLogger, AFolderThatGoesDuringTheWalkEndsItAndIsTold) {
  MakeTree();
  pathLogger walk(machine_.files(), [this] {
    if (++pumps_ == 2) machine_.RemoveTree("C:\\Root\\b");
  });
  EXPECT_FALSE(walk.LogPath("C:\\Root"));
  EXPECT_EQ(walk.fullFileNames().Count(), 3);
}

TEST_F(PathLogger, ASecondWalkNeedsEmptyLists) {
  MakeTree();
  EXPECT_TRUE(walk_.LogPath("C:\\Root"));
  EXPECT_FALSE(walk_.LogPath("C:\\Root\\a"));
  EXPECT_EQ(walk_.Count(), 5);
  walk_.fullFileNamesOnly = false;
  walk_.PathLogInit();
  EXPECT_TRUE(walk_.fullFileNamesOnly);
  EXPECT_TRUE(walk_.LogPath("C:\\Root\\a"));
  EXPECT_EQ(walk_.Count(), 1);
  walk_.Terminate();
  EXPECT_EQ(walk_.Count(), 0);
  EXPECT_EQ(walk_.pathNames().Count(), 0);
}

}  // namespace
}  // namespace quorvale
