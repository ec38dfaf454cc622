// The account of a backup, from what the person had: what is missing, why, and that it is kept.
#include <gtest/gtest.h>

#include "backup/backup_run.h"
#include "core/pages/frmAccount.h"
#include "core/program/account_folder.h"

namespace quorvale {
namespace {

using backup_test::kAborted;
using backup_test::kDone;

class BackupAccount : public testing::Test {
 protected:
  TestMachine& machine() { return run_.machine(); }
  const Account& account() { return run_.app().account(); }
  // "fate: source: reason" of each entry.
  std::vector<std::string> Told() {
    std::vector<std::string> told;
    for (const AccountEntry& entry : account().entries()) {
      told.push_back(entry.source + ": " + ReasonText(entry.reason));
    }
    return told;
  }
  void BackUpFolder(const std::string& folder) {
    run_.OpenItems();
    run_.AddFolder(folder);
    machine().Expect(ui::Answer::kOk, kDone);
    run_.Finish();
  }
  std::uint64_t Good() {
    std::uint64_t good = 0;
    for (const AccountItem& item : account().items()) good += item.good;
    return good;
  }

  backup_test::BackupRun run_;
};

using Strings = std::vector<std::string>;

TEST_F(BackupAccount, ACompleteBackupHasNothingToTellAndIsKept) {
  machine().WriteFile("C:\\Data\\a.txt", "a");
  BackUpFolder("C:\\Data");
  EXPECT_EQ(account().end(), AccountEnd::kDone);
  EXPECT_EQ(Told(), Strings{});
  EXPECT_GE(Good(), 1u);
  EXPECT_EQ(account().archive, run_.ArchivePath());
  const Strings kept = KeptAccounts(run_.app());
  ASSERT_EQ(kept.size(), 1u);
  Account read;
  ASSERT_TRUE(LoadAccount(run_.app(), kept[0], &read));
  EXPECT_EQ(read.Sentence(), "Everything is in this backup.");
  EXPECT_EQ(UnseenAccount(run_.app()), "");
}

TEST_F(BackupAccount, ALockedFileIsNamed) {
  machine().WriteFile("C:\\Data\\a.txt", "a");
  machine().WriteFile("C:\\Data\\mail.dbx", "all the mail");
  machine().faults().files.SetInUse("C:\\Data\\mail.dbx", true);
  BackUpFolder("C:\\Data");
  EXPECT_EQ(Told(), Strings{"C:\\Data\\mail.dbx: in use, or no rights to read it"});
  EXPECT_EQ(account().Sentence(), "1 file is not in this backup.");
  // Whoever was there has its window.
  ASSERT_NE(run_.app().Loaded<frmAccount>(), nullptr);
  EXPECT_EQ(UnseenAccount(run_.app()), "");
}

TEST_F(BackupAccount, AFileThatCannotBeReadToItsEndIsNamed) {
  machine().WriteFile("C:\\Data\\mail.dbx", std::string(1000, 'm'));
  machine().WriteFile("C:\\Data\\a.txt", "a");
  machine().faults().files.FailReadsAfter("C:\\Data\\mail.dbx", 500);
  BackUpFolder("C:\\Data");
  EXPECT_EQ(Told(), Strings{"C:\\Data\\mail.dbx: cannot be read to its end"});
}

TEST_F(BackupAccount, AFolderWithoutRightsIsNamed) {
  machine().WriteFile("C:\\Data\\a.txt", "a");
  machine().MakeFolder("C:\\Data\\closed");
  machine().faults().files.DenyList("C:\\Data\\closed");
  BackUpFolder("C:\\Data");
  EXPECT_EQ(Told(), Strings{"C:\\Data\\closed: in use, or no rights to read it"});
}

TEST_F(BackupAccount, FilesWithoutADotStayOutAndAreNamed) {
  machine().WriteFile("C:\\Data\\README", "read");
  machine().WriteFile("C:\\Data\\a.txt", "a");
  BackUpFolder("C:\\Data");
  EXPECT_EQ(Told(), Strings{"C:\\Data\\README: no dot in its name"});
  EXPECT_FALSE(run_.HasEntry("Job\\Added Other Folders\\Data\\README"));
}

TEST_F(BackupAccount, FilesWithoutADotAreTakenWhereTheSettingsAskForIt) {
  machine().WriteFile("C:\\Data\\README", "read");
  run_.app().Get<frmSettings>().chkNoExtension.value = 1;
  run_.app().Get<frmSettings>().cmdOK_Click();
  BackUpFolder("C:\\Data");
  EXPECT_EQ(Told(), Strings{});
  EXPECT_EQ(run_.Content("Job\\Added Other Folders\\Data\\README"), "read");
}

TEST_F(BackupAccount, AnAddedFileThatIsGoneIsNamed) {
  machine().WriteFile("C:\\a.txt", "a");
  machine().WriteFile("C:\\gone.txt", "b");
  run_.OpenItems();
  run_.AddFile("C:\\a.txt");
  run_.AddFile("C:\\gone.txt");
  run_.OpenReview();
  machine().RemoveFile("C:\\gone.txt");
  machine().Expect(ui::Answer::kOk, kDone);
  run_.Start();
  EXPECT_EQ(Told(), Strings{"C:\\gone.txt: not there"});
  EXPECT_EQ(account().entries()[0].item, "Add More Files\\C:\\gone.txt");
}

TEST_F(BackupAccount, AStoppedBackupSaysSo) {
  machine().WriteFile("C:\\Data\\a.txt", "a");
  run_.OpenItems();
  run_.AddFolder("C:\\Data");
  run_.OpenReview();
  run_.StopAt("Current Progress: Taking Backup of Other Folders...");
  machine().ui().on_box = [&](const ui::MessageBoxRequest& box) {
    if (box.text == backup_test::kReallyStop) machine().Expect(ui::Answer::kOk, kAborted);
  };
  run_.Start();
  EXPECT_EQ(account().end(), AccountEnd::kStopped);
  EXPECT_EQ(account().Sentence(), "The backup was stopped. It was not made.");
  EXPECT_EQ(KeptAccounts(run_.app()).size(), 1u);
}

}  // namespace
}  // namespace quorvale
