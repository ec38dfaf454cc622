// The prepared backup of everything, by the home page's link and by the words of the scheduler, as
// far as the backup pages and the archive show it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "backup/backup_run.h"

namespace quorvale {
namespace {

using backup_test::BackupRun;
using backup_test::kDone;

class QuickBackup : public testing::Test {
 protected:
  QuickBackup() { machine_.WriteFile(machine_.Documents() + "\\letter.txt", "Dear Bob"); }
  void StartProgram(const std::string& command_line) {
    machine_.computer().SetCommandLine(command_line);
    machine_.Do([this] { run_.app().Get<FrmWelcome>().Show(); });
  }

  BackupRun run_;
  TestMachine& machine_ = run_.machine();
};

TEST_F(QuickBackup, TheSettingsInsideSayQuick) {
  StartProgram("");
  machine_.Do([this] { run_.app().Get<FrmWelcome>().QuickLink(0); });
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  const std::vector<std::string> left = run_.LeftInBackupFolder();
  ASSERT_EQ(left.size(), 1u);
  const std::string name = left[0].substr(left[0].rfind('\\') + 1);
  const std::string stem = name.substr(0, name.size() - 4);
  EXPECT_NE(run_.Content(stem + "\\" + stem + ".xml", stem).find("<Main Process='Quick Backup'>"),
            std::string::npos);
  EXPECT_TRUE(run_.HasEntry(stem + "\\Other Files\\My Documents\\letter.txt", stem));
  EXPECT_EQ(machine_.session().gBackupProcessName, "Main Backup");
}

TEST_F(QuickBackup, TheScheduledQuickBackupWaitsForAPerson) {
  machine_.Expect(ui::Answer::kOk, "Ready for Scheduled Quick Backup");
  StartProgram("qbackup");
  EXPECT_TRUE(run_.app().Get<frmfour>().Visible());
  EXPECT_TRUE(run_.app().Get<FrmWelcome>().lblBackupOptions[4]->bold);
  EXPECT_TRUE(run_.LeftInBackupFolder().empty());
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  EXPECT_EQ(run_.LeftInBackupFolder().size(), 1u);
}

TEST_F(QuickBackup, TheScheduledCustomBackupRemembersNothing) {
  machine_.Expect(ui::Answer::kOk, "Ready for Scheduled Custom Backup");
  StartProgram("custom");
  EXPECT_TRUE(run_.app().Get<frmOne>().Visible());
  machine_.Click(run_.app().Get<frmOne>().cmdNext);
  const FrmTwo& items = run_.app().Get<FrmTwo>();
  ASSERT_TRUE(items.Visible());
  for (int i = 1; i <= items.tvwMain.Count(); ++i) {
    EXPECT_FALSE(items.tvwMain.Node(i)->Checked()) << items.tvwMain.Node(i)->FullPath();
  }
}

}  // namespace
}  // namespace quorvale
