#include "backup/pages/frmfour.h"

#include <gtest/gtest.h>

#include <string>

#include "backup/backup_run.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

using backup_test::BackupRun;
using backup_test::kDone;

class FrmFour : public testing::Test {
 protected:
  FrmFour() {
    machine_.WriteFile(machine_.Documents() + "\\letter.txt", "Dear Bob");
    run_.OpenItems();
  }
  void OpenFilledReview() {
    run_.Tick("Other Files\\My Documents");
    run_.OpenReview();
  }
  frmfour& Page() { return run_.app().Get<frmfour>(); }

  BackupRun run_;
  TestMachine& machine_ = run_.machine();
};

TEST_F(FrmFour, TheReviewTellsTheWholeJob) {
  run_.Tick("Other Files\\My Documents");
  run_.OpenOptions();
  frmThree& options = run_.app().Get<frmThree>();
  options.chkProtectArchive.Click();
  options.txtpwd.text = "geheimß";
  options.txtpwd2.text = "geheimß";
  machine_.Click(options.cmdNext);
  machine_.Click(run_.app().Get<FrmBackupMedia>().cmdNext);
  const std::string separator = "   " + std::string(100, '-') + "\r\n";
  EXPECT_EQ(Page().RichTextBox1.text.get(),
            "   MAIN PROCESS: Main Backup (Save your current settings and data for later restore "
            "to this or other computer.)\r\n"
            "   DATE/TIME: 22:05:09 11-14-2026\r\n" +
                separator + "BACKUP FOLDER: " + run_.BackupFolder() + "\r\n" + separator +
                "SELECTED ITEMS FOR BACKUP: \r\nOther Files\r\nOther Files\\My Documents\r\n" +
                separator +
                "ADVANCED SETTINGS: \r\n   Log Details: False\r\n   Use Compression: True\r\n"
                "   Compression Type: 6\r\n   Protect Archive with Password: True\r\n"
                "   Password: *******\r\n   Backup Settings file:Job.obk\r\n");
}

TEST_F(FrmFour, ThePasswordNeverShowsOnlyItsLength) {
  run_.Tick("Other Files\\My Documents");
  run_.OpenOptions();
  frmThree& options = run_.app().Get<frmThree>();
  options.chkProtectArchive.Click();
  options.txtpwd.text = "abc";
  options.txtpwd2.text = "abc";
  machine_.Click(options.cmdNext);
  machine_.Click(run_.app().Get<FrmBackupMedia>().cmdNext);
  EXPECT_EQ(Page().RichTextBox1.text->find("abc"), std::string::npos);
  EXPECT_NE(Page().RichTextBox1.text->find("   Password: ***\r\n"), std::string::npos);
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  EXPECT_NE(run_.Content("Job\\Job.xml", "Job", "abc").find("<VerifyArchive>abc</VerifyArchive>"),
            std::string::npos);
}

TEST_F(FrmFour, TheGridHasHeadRowsAndChildRows) {
  Session& session = machine_.session();
  session.gBackupItemPaths = {"Other Files",
                              "Other Files\\My Documents",
                              "Add Other Folders",
                              "Add Other Folders\\D:\\W",
                              "Add More Files",
                              "Add More Files\\D:\\a.txt",
                              "Outlook Express",
                              "Outlook Express\\Signature",
                              ""};
  session.gBackupItemKeys.assign(9, "");
  Page().FillReview();
  const auto& rows = Page().Ms.rows();
  ASSERT_EQ(rows.size(), 8u);
  EXPECT_EQ(rows[0].cells[0], "Other Files");
  EXPECT_TRUE(rows[0].bold);
  EXPECT_EQ(rows[0].back_color, ui::Rgb(210, 228, 249));
  EXPECT_EQ(rows[1].cells[1], "My Documents");
  EXPECT_FALSE(rows[1].bold);
  EXPECT_EQ(rows[2].cells[0], "Other Folders");
  EXPECT_EQ(rows[2].back_color, ui::Rgb(255, 233, 131));
  EXPECT_EQ(rows[3].cells[1], "D:\\W");
  EXPECT_EQ(rows[3].back_color, ui::Rgb(239, 239, 239));
  EXPECT_EQ(rows[4].cells[0], "Other Files");
  EXPECT_EQ(rows[4].back_color, ui::Rgb(252, 240, 212));
  EXPECT_EQ(rows[5].cells[1], "D:\\a.txt");
  EXPECT_EQ(rows[7].cells[1], "Outlook Express\\Signature");
}

TEST_F(FrmFour, ChildRowsAlternateBetweenTwoTints) {
  machine_.session().gBackupItemPaths = {"Outlook Express\\a", "Outlook Express\\b",
                                         "Outlook Express\\c"};
  Page().FillReview();
  const auto& rows = Page().Ms.rows();
  EXPECT_EQ(rows[0].back_color, ui::Rgb(231, 231, 231));
  EXPECT_NE(rows[1].back_color, rows[0].back_color);
  EXPECT_EQ(rows[2].back_color, rows[0].back_color);
}

TEST_F(FrmFour, ALongPathWidensTheSecondColumn) {
  machine_.session().gBackupItemPaths = {"Outlook Express", "Outlook Express\\a"};
  Page().FillReview();
  EXPECT_EQ(Page().Ms.column_widths, (std::vector<int>{2000, 4900}));
  machine_.session().gBackupItemPaths.push_back("Outlook Express\\" + std::string(200, 'x'));
  Page().FillReview();
  EXPECT_EQ(Page().Ms.column_widths[0], 2000);
  EXPECT_GT(Page().Ms.column_widths[1], 4900);
}

TEST_F(FrmFour, WithNothingSelectedThePageCannotGoOn) {
  Page().FillReview();
  EXPECT_EQ(Page().lblnoitem.caption.get(), "No items selected for backup");
  EXPECT_EQ(Page().lblnoitem.fore_color.get(), ui::Rgb(255, 0, 0));
  EXPECT_FALSE(Page().cmdNext.enabled);
  machine_.Click(Page().cmdNext);
  EXPECT_EQ(run_.Run(), nullptr);
}

TEST_F(FrmFour, WithASelectionNextWaits) {
  OpenFilledReview();
  EXPECT_EQ(Page().lblnoitem.caption.get(), "Press next to begin Backup");
  EXPECT_EQ(Page().lblnoitem.fore_color.get(), ui::Rgb(0, 128, 0));
  EXPECT_TRUE(Page().cmdNext.enabled);
}

TEST_F(FrmFour, ARunningMailProgramKeepsThePage) {
  run_.Tick("Outlook Express");
  OpenFilledReview();
  machine_.computer().RunProcess("MSIMN.EXE");
  machine_.Expect(ui::Answer::kOk, "Please close Outlook Express to continue.");
  run_.Start();
  EXPECT_TRUE(Page().Visible());
  EXPECT_TRUE(Page().cmdNext.enabled);
  EXPECT_EQ(run_.Run(), nullptr);
}

TEST_F(FrmFour, TooLittleSpaceLeadsBackToTheItems) {
  machine_.WriteFile(machine_.Documents() + "\\large.bin", std::string(200000, 'x'));
  OpenFilledReview();
  machine_.computer().SetFreeSpace("C", 50000);
  machine_.Expect(ui::Answer::kOk,
                  "There is not sufficient space on disk. Please customize backup items or change "
                  "backup location");
  run_.Start();
  EXPECT_FALSE(Page().Visible());
  EXPECT_TRUE(run_.app().Get<FrmTwo>().Visible());
  EXPECT_TRUE(run_.app().Get<FrmWelcome>().lblBackupOptions[1]->bold);
  EXPECT_TRUE(run_.LeftInBackupFolder().empty());
}

TEST_F(FrmFour, NextMakesTheStagingFolderAndShowsTheRunPage) {
  OpenFilledReview();
  machine_.SetString("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings", "chklog", "1");
  machine_.session().gLogDetails = "True";
  bool seen = false;
  run_.machine().ui().When(
      [this] { return run_.Run() != nullptr && run_.Run()->Timer1.enabled; },
      [&] {
        seen = true;
        const frmFinish& page = *run_.Run();
        EXPECT_TRUE(page.Visible());
        EXPECT_FALSE(Page().Visible());
        EXPECT_FALSE(page.cmdNext.enabled);
        EXPECT_FALSE(page.Command2.enabled);
        EXPECT_EQ(page.lblCurrent.caption.get(), "Initializing...");
        EXPECT_EQ(page.Label7.caption.get(), "Copy Progress");
        EXPECT_EQ(page.pbCurrent.value, 0);
        EXPECT_EQ(page.prbGlobalProgress.value, 0);
        EXPECT_FALSE(page.Frame3.visible);
        EXPECT_FALSE(page.prbGlobalProgress.visible);
        EXPECT_TRUE(machine_.session().gBackupZipBusy);
        EXPECT_EQ(machine_.ui().pointer(), ui::Pointer::kHourglass);
        const FrmWelcome& main_window = run_.app().Get<FrmWelcome>();
        EXPECT_TRUE(main_window.lblBackupOptions[5]->bold);
        EXPECT_FALSE(main_window.CmdWC_Home.enabled);
        EXPECT_FALSE(main_window.CmdSupport.enabled);
        EXPECT_TRUE(machine_.Exists(run_.BackupFolder() + "\\Job\\Job.xml"));
        EXPECT_TRUE(machine_.Exists(LogFolder(run_.app()) + "Settings_Job.xml"));
      });
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  EXPECT_TRUE(seen);
}

TEST_F(FrmFour, WithoutTheLogOptionNoLogIsWritten) {
  OpenFilledReview();
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  EXPECT_FALSE(machine_.Exists(LogFolder(run_.app()) + "Settings_Job.xml"));
}

TEST_F(FrmFour, ASecondRunOfTheJobGetsASuffixThatStaysOutOfTheSettings) {
  OpenFilledReview();
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  ASSERT_TRUE(run_.ArchiveExists("Job"));

  // The question of the job page is about a file of the job's own name: the options page can
  // still lead to a name that is taken.
  run_.OpenItems("Another");
  run_.Tick("Other Files\\My Documents");
  run_.OpenOptions();
  run_.app().Get<frmThree>().txtcurrent.text = "Job";
  machine_.Click(run_.app().Get<frmThree>().cmdNext);
  machine_.Click(run_.app().Get<FrmBackupMedia>().cmdNext);
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  ASSERT_TRUE(run_.ArchiveExists("Job_1"));
  EXPECT_TRUE(run_.HasEntry("Job_1\\Job_1.xml", "Job_1"));
  EXPECT_TRUE(run_.HasEntry("Job_1\\Other Files\\My Documents\\letter.txt", "Job_1"));
  EXPECT_NE(run_.Content("Job_1\\Job_1.xml", "Job_1")
                .find("<BackupSettingsFiles>Job.obk</BackupSettingsFiles>"),
            std::string::npos);
  EXPECT_EQ(run_.LeftInBackupFolder(),
            (std::vector<std::string>{run_.ArchivePath("Job"), run_.ArchivePath("Job_1")}));
}

TEST_F(FrmFour, BackShowsTheMediaPageAndCancelGoesHome) {
  OpenFilledReview();
  machine_.Click(Page().cmdBack);
  EXPECT_TRUE(run_.app().Get<FrmBackupMedia>().Visible());
  EXPECT_TRUE(run_.app().Get<FrmWelcome>().lblBackupOptions[3]->bold);
  machine_.Click(run_.app().Get<FrmBackupMedia>().cmdNext);
  machine_.Click(Page().cmdCancel);
  EXPECT_EQ(run_.app().Loaded<frmfour>(), nullptr);
  EXPECT_TRUE(run_.app().Get<FrmWelcome>().cmdWC_TakeBackup.enabled);
}

TEST_F(FrmFour, TheTimerPressesNextOnce) {
  OpenFilledReview();
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Do([this] { Page().Timer2.enabled = true; });
  EXPECT_TRUE(run_.ArchiveExists());
  EXPECT_EQ(run_.LeftInBackupFolder().size(), 1u);
}

// The automatic run. ------------------------------------------------------------------------------

TEST(AutomaticRun, StartsExactlyOnceAndIsRecorded) {
  BackupRun run;
  TestMachine& machine = run.machine();
  machine.WriteFile(machine.Documents() + "\\letter.txt", "Dear Bob");
  machine.computer().SetCommandLine("auto");
  machine.Expect(ui::Answer::kOk, kDone);
  machine.Do([&] { run.app().Get<FrmWelcome>().Show(); });
  const std::vector<std::string> left = run.LeftInBackupFolder();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_NE(left[0].find("\\BKP_7_14_11_2026_22_"), std::string::npos) << left[0];
  EXPECT_TRUE(machine.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Backup"));
  EXPECT_EQ(machine.Boxes().size(), 1u);
}

TEST(AutomaticRun, WithARunningMailProgramThePageStaysUp) {
  BackupRun run;
  TestMachine& machine = run.machine();
  machine.computer().SetCommandLine("auto");
  machine.computer().RunProcess("msimn.exe");
  // Once when the page is filled, once by the timer.
  machine.Expect(ui::Answer::kOk, "Please close Outlook Express to continue.");
  machine.Expect(ui::Answer::kOk, "Please close Outlook Express to continue.");
  machine.Do([&] { run.app().Get<FrmWelcome>().Show(); });
  EXPECT_TRUE(run.app().Get<frmfour>().Visible());
  EXPECT_TRUE(run.LeftInBackupFolder().empty());
}

TEST(AutomaticRun, WithNothingSelectedItStopsOnTheReviewPage) {
  BackupRun run;
  run.OpenItems();
  run.machine().computer().SetCommandLine("auto");
  frmfour& page = run.app().Get<frmfour>();
  run.machine().Do([&] {
    page.FillReview();
    page.Timer2.enabled = true;
  });
  EXPECT_FALSE(page.RunStarted());
  EXPECT_EQ(page.lblnoitem.caption.get(), "No items selected for backup");
  EXPECT_EQ(run.Run(), nullptr);
}

}  // namespace
}  // namespace quorvale
