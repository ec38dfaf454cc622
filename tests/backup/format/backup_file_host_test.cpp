#include "backup/format/backup_file.h"

#include <gtest/gtest.h>

#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kArchive[] = "C:\\Backup\\Job.obk";

class BackupFileTest : public testing::Test {
 protected:
  // An archive with a file and an empty folder.
  void MakeArchive(const std::string& password = "") {
    machine_.WriteFile("C:\\Data\\letter.txt", "Dear Bob");
    machine_.MakeFolder("C:\\Data\\Empty");
    machine_.MakeFolder("C:\\Backup");
    zip::Archive archive(machine_.platform());
    archive.archive_name = kArchive;
    archive.files_to_process = {"C:\\Data\\letter.txt", "C:\\Data\\Empty\\"};
    archive.encrypt = !password.empty();
    archive.password = password;
    archive.on_before_file = [](zip::BeforeFile& file) {
      file.entry_name = file.source.ends_with("\\") ? "Job\\Empty\\" : "Job\\letter.txt";
    };
    ASSERT_EQ(archive.Zip(), zip::Result::kDone);
  }
  BackupFile Open(const std::string& password = "") { return {program_, kArchive, password}; }

  TestMachine machine_;
  Program program_{machine_.platform()};
};

TEST_F(BackupFileTest, ListsFilesAndFolders) {
  MakeArchive();
  BackupFile file = Open();
  EXPECT_EQ(file.path(), kArchive);
  std::vector<zip::Entry> entries;
  ASSERT_EQ(file.Members(&entries), zip::Result::kDone);
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].name, "Job\\letter.txt");
  EXPECT_EQ(entries[0].size, 8u);
  EXPECT_EQ(entries[1].name, "Job\\Empty\\");
  EXPECT_TRUE(entries[1].is_folder);
}

TEST_F(BackupFileTest, WhatIsNoArchiveFailsAndHasNoMembers) {
  machine_.WriteFile(kArchive, "no archive");
  BackupFile file = Open();
  std::vector<zip::Entry> entries(1);
  EXPECT_EQ(file.Members(&entries), zip::Result::kFailed);
  EXPECT_TRUE(entries.empty());
  EXPECT_EQ(file.Test(), zip::Result::kFailed);
  EXPECT_FALSE(file.IsEncrypted());
}

TEST_F(BackupFileTest, AProtectedFileIsKnownAndNeedsItsPassword) {
  MakeArchive("secret");
  EXPECT_TRUE(Open().IsEncrypted());
  EXPECT_EQ(Open().Test(), zip::Result::kWrongPassword);
  EXPECT_EQ(Open("secret").Test(), zip::Result::kDone);
}

TEST_F(BackupFileTest, AnOpenFileIsNotEncrypted) {
  MakeArchive();
  EXPECT_FALSE(Open().IsEncrypted());
  EXPECT_EQ(Open().Test(), zip::Result::kDone);
}

TEST_F(BackupFileTest, ATestEndsAsSoonAsItMayNotGoOn) {
  MakeArchive();
  int asked = 0;
  BackupFile file = Open();
  EXPECT_EQ(file.Test([&asked] {
    ++asked;
    return false;
  }),
            zip::Result::kAborted);
  EXPECT_GT(asked, 0);
  // The next call is not aborted by the one before.
  EXPECT_EQ(file.Test(), zip::Result::kDone);
}

TEST_F(BackupFileTest, AMemberGoesToThePathThatIsNamedInAnyLetters) {
  MakeArchive("secret");
  BackupFile file = Open("secret");
  EXPECT_EQ(file.ExtractAs("JOB\\LETTER.TXT", "C:\\Out\\copy.txt"), zip::Result::kDone);
  EXPECT_EQ(machine_.ReadFile("C:\\Out\\copy.txt"), "Dear Bob");
  EXPECT_EQ(file.ExtractAs("Job\\none.txt", "C:\\Out\\none.txt"), zip::Result::kFailed);
  EXPECT_FALSE(machine_.Exists("C:\\Out\\none.txt"));
}

TEST_F(BackupFileTest, TheUnpackerWritesBelowItsFolder) {
  MakeArchive();
  machine_.MakeFolder("C:\\Out");
  BackupFile file = Open();
  EXPECT_EQ(file.ExtractAs("Job\\letter.txt", "C:\\Other\\x.txt"), zip::Result::kDone);
  // Nothing of the call before is left in it.
  EXPECT_EQ(file.Unpacker("C:\\Out").Unzip(), zip::Result::kDone);
  EXPECT_EQ(machine_.ReadFile("C:\\Out\\Job\\letter.txt"), "Dear Bob");
  EXPECT_TRUE(machine_.Exists("C:\\Out\\Job\\Empty"));
}

}  // namespace
}  // namespace quorvale
