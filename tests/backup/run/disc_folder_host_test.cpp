#include "backup/run/disc_folder.h"

#include <gtest/gtest.h>

#include "core/program/ModGlobal.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

using Strings = std::vector<std::string>;

constexpr char kPath[] = "C:\\Out\\CDBackup";
constexpr char kArchive[] = "C:\\Out\\CDBackup\\Job.obk";
constexpr char kNote[] = "C:\\Out\\CDBackup\\my own.txt";

class DiscFolderTest : public testing::Test {
 protected:
  // What a run leaves in the folder.
  void WriteParts() {
    machine_.WriteFile("C:\\Out\\CDBackup\\Job.z01", "first");
    machine_.WriteFile(kArchive, "last");
  }

  TestMachine machine_;
  Program program_{machine_.platform()};
  DiscFolder folder_{program_, kPath};
};

TEST_F(DiscFolderTest, AFolderThatWasMadeGoesWithAllInIt) {
  EXPECT_TRUE(folder_.Make());
  EXPECT_TRUE(folder_.IsOurs());
  WriteParts();
  EXPECT_TRUE(machine_.Exists("C:\\Out\\CDBackup.mark"));
  folder_.Remove(kArchive);
  EXPECT_FALSE(machine_.Exists(kPath));
  EXPECT_FALSE(machine_.Exists("C:\\Out\\CDBackup.mark"));
}

TEST_F(DiscFolderTest, AFolderMadeByHandIsNotOursForTheMarkOfOneThatIsGone) {
  folder_.Make();
  machine_.RemoveTree(kPath);
  EXPECT_FALSE(folder_.IsOurs());
  folder_.Remove("");
  machine_.WriteFile(kNote, "mine");
  folder_.Remove("");
  EXPECT_TRUE(machine_.Exists(kNote));
}

TEST_F(DiscFolderTest, AllFilesOfAFolderOfOursAreParts) {
  folder_.Make();
  WriteParts();
  EXPECT_EQ(folder_.Parts("Job"), (Strings{kArchive, "C:\\Out\\CDBackup\\Job.z01"}));
}

TEST_F(DiscFolderTest, OfAnotherFolderOnlyThePartsOfTheBackupCount) {
  machine_.WriteFile(kNote, "mine");
  machine_.WriteFile("C:\\Out\\CDBackup\\Old\\Job.obk", "mine");
  machine_.WriteFile("C:\\Out\\CDBackup\\Job.zip", "mine");
  EXPECT_TRUE(folder_.Make());
  EXPECT_FALSE(folder_.IsOurs());
  WriteParts();
  EXPECT_EQ(folder_.Parts("Job"), (Strings{kArchive, "C:\\Out\\CDBackup\\Job.z01"}));
  folder_.Remove("");
  EXPECT_TRUE(machine_.Exists(kArchive));
  folder_.Remove(kArchive);
  EXPECT_FALSE(machine_.Exists(kArchive));
  EXPECT_FALSE(machine_.Exists("C:\\Out\\CDBackup\\Job.z01"));
  for (const char* kept : {"my own.txt", "Old\\Job.obk", "Job.zip"}) {
    EXPECT_TRUE(machine_.Exists(std::string(kPath) + "\\" + kept)) << kept;
  }
}

TEST_F(DiscFolderTest, PartsThatAreKeptStayAtTheNextRun) {
  folder_.Make();
  WriteParts();
  folder_.Keep();
  folder_.Remove("");
  EXPECT_TRUE(machine_.Exists(kArchive));
  // A disc backup of that name takes another one.
  program_.session().gBackupFileName = "Job.obk";
  EXPECT_EQ(UniqueBackupName(program_, "C:\\Out"), "");
  program_.session().gMediaDisc = true;
  EXPECT_EQ(UniqueBackupName(program_, "C:\\Out"), "_1");
}

TEST_F(DiscFolderTest, AnEmptyFolderOfTheUsersStaysToo) {
  machine_.MakeFolder(kPath);
  folder_.Make();
  WriteParts();
  folder_.Remove(kArchive);
  EXPECT_TRUE(machine_.Exists(kPath));
}

TEST_F(DiscFolderTest, WithoutItsDriveNoFolderIsMade) {
  EXPECT_FALSE(DiscFolder(program_, "Q:\\Out\\CDBackup").Make());
}

}  // namespace
}  // namespace quorvale
