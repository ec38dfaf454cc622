#include "restore/pages/frmRfour.h"

#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kNoSpace[] =
    "Insufficient disk space\r\nRestoration drive(s): Space Informations\r\n\r\n"
    "Drive Name\tAvailable Space\tRequired Space\r\n";

std::string Dashes() { return std::string(75, '-') + "\r\n"; }

JobArchive TwoDrives() {
  JobArchive archive;
  archive
      .With("Add More Files\\C:\\x\\a.txt", "C:\\x\\a.txt", "Added More Files\\a.txt",
            std::string(1536, 'a'))
      .With("Add More Files\\D:\\x\\b.txt", "D:\\x\\b.txt", "Added More Files\\b.txt",
            std::string(2000, 'b'))
      .With("Add Other Folders\\D:\\Work\\House", "D:\\Work\\House",
            "Added Other Folders\\House\\plan.txt", std::string(1000, 'c'));
  return archive;
}

TEST(FrmRfour, OnlyADriveThatIsShortIsNamedByItsLetter) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.computer().SetFreeSpace("D", 1024);
  const std::string text = std::string(kNoSpace) + Dashes() + "D\t1.000 KB\t2.930 KB\r\n" +
                           Dashes() + "Please customize items selected for restoration process";
  machine.Expect(ui::Answer::kOk, ReplaceAll(text, "\r\n", " "));
  wizard.Run();
  EXPECT_EQ(machine.ui().boxes.back().request.text, text);
  EXPECT_TRUE(wizard.Shown("frmRfour"));
  EXPECT_TRUE(wizard.review().cmdNext.enabled);
  EXPECT_TRUE(wizard.review().cmdBack.enabled);
  EXPECT_TRUE(wizard.review().cmdCancel.enabled);
  EXPECT_FALSE(machine.Exists("C:\\x\\a.txt"));
}

TEST(FrmRfour, RowsWithTargetsOnOneDriveAddUp) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  EXPECT_TRUE(wizard.review().ComputeRestoreSpace());
  ASSERT_EQ(wizard.review().needs().size(), 2u);
  EXPECT_EQ(wizard.review().needs()[0].lstrRestorePath, "D:\\Work\\House");
  EXPECT_EQ(wizard.review().needs()[0].lRestoreFilesize, 3000);
  EXPECT_EQ(wizard.review().needs()[1].lRestoreFilesize, 1536);
}

TEST(FrmRfour, KeepingTheFilesChangesNeitherRowsNorDrives) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  wizard.review().optRestore.value = true;
  EXPECT_FALSE(wizard.review().optDefault.value);
  EXPECT_TRUE(wizard.review().ComputeRestoreSpace());
  ASSERT_EQ(wizard.review().needs().size(), 2u);
  EXPECT_EQ(wizard.review().needs()[0].lRestoreFilesize, 3000);
}

TEST(FrmRfour, AnArchiveWithoutTheMembersNeedsNoSpace) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  // As after a rename: the prefix of the names is the file's name.
  machine.WriteFile("C:\\Backups\\Renamed.obk", machine.ReadFile("C:\\Backups\\Job.obk"));
  machine.session().gRestoreFilePath = "C:\\Backups\\Renamed.obk";
  machine.computer().SetFreeSpace("D", 0);
  EXPECT_TRUE(wizard.review().ComputeRestoreSpace());
  EXPECT_EQ(wizard.review().SizeOfItem("Renamed\\Added More Files\\a.txt"), 0);
  EXPECT_EQ(wizard.review().SizeOfItem("job\\added more files\\A.TXT"), 1536);
  EXPECT_EQ(wizard.review().SizeOfItem("Job\\Added Other Folders\\House\\*"), 1000);
}

TEST(FrmRfour, WhatCannotGoHomeCountsForTheRestoreFoldersDrive) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.computer().RemoveDrive("D");
  EXPECT_TRUE(wizard.review().ComputeRestoreSpace());
  ASSERT_EQ(wizard.review().needs().size(), 1u);
  EXPECT_EQ(wizard.review().needs()[0].lRestoreFilesize, 4536);
}

TEST(FrmRfour, SizesHaveThreeDecimalsAndAUnit) {
  EXPECT_EQ(frmRfour::FormatSize(0), "0.000 Bytes");
  EXPECT_EQ(frmRfour::FormatSize(1023), "1023.000 Bytes");
  EXPECT_EQ(frmRfour::FormatSize(1024), "1.000 KB");
  EXPECT_EQ(frmRfour::FormatSize(1536.0 * 1024), "1.500 MB");
  EXPECT_EQ(frmRfour::FormatSize(5.0 * 1024 * 1024 * 1024 * 1024), "5120.000 GB");
}

TEST(FrmRfour, TheDriveOfATarget) {
  EXPECT_EQ(frmRfour::DriveOfTarget("D:\\a\\b"), "D:\\");
  EXPECT_EQ(frmRfour::DriveOfTarget("\\\\server\\share\\a"), "\\\\server\\share");
  EXPECT_EQ(frmRfour::DriveOfTarget(""), "");
}

TEST(FrmRfour, TheSummarySaysWhatIsAboutToHappen) {
  TestMachine machine("xp");
  machine.computer().SetClock({2026, 11, 14, 22, 5, 9, 7});
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Log("True").Write(machine));
  wizard.Tick("Added More Files\\C:\\x\\a.txt");
  wizard.ToReview();
  const std::string rule = "   " + std::string(138, '-') + "\r\n";
  EXPECT_EQ(wizard.review().RichTextBox1.text.get(),
            "   MAIN PROCESS: Main Restore (" + wizard.one().lblDescription.caption.get() +
                ")\r\n" + rule + "   DATE/TIME: 11/14/2026 10:05:09 PM\r\n" + rule +
                "RESTORE FOLDER: " + machine.session().gAppDataPath + "\\Restore\r\n" + rule +
                "SELECTED ITEMS FOR RESTORE: \r\n   Added More Files\r\n"
                "   Added More Files\\C:\\x\\a.txt\r\n" +
                rule + "ADVANCED SETTINGS: \r\n" + rule +
                "   Log Details: True\r\n   Use Compression: True\r\n"
                "   Compression Type: Normal\r\n   Protect Archive with Password: False\r\n"
                "   Password: \r\n   Backup Settings file:\r\n");
}

TEST(FrmRfour, TheLogIsWrittenOnlyIfItIsWanted) {
  for (const bool wanted : {false, true}) {
    TestMachine machine("xp");
    machine.computer().SetClock({2026, 11, 14, 22, 5, 9, 7});
    RestoreWizard wizard(machine);
    wizard.RestoreAll(TwoDrives().Log(wanted ? "True" : "False").Write(machine));
    const std::string log =
        machine.session().gAppDataPath + "\\Files\\Logs\\Settings_RST_Job_11_14_2026_22_5_9.xml";
    ASSERT_EQ(machine.Exists(log), wanted);
    if (!wanted) continue;
    const std::string text = machine.ReadFile(log);
    EXPECT_TRUE(
        text.starts_with("<?xml version='1.0'?>\r\n<BackupSettings>\r\n"
                         "<Main Process: Main Restore>\r\n<Process Description>"));
    EXPECT_TRUE(Contains(text, "<DateTime>Saturday_11/14/2026_10:05:09 PM</DateTime>\r\n"));
    EXPECT_TRUE(Contains(text, "<Restore Folder>" + machine.session().gAppDataPath +
                                   "\\Restore</Restore Folder>\r\n\r\n<ItemsForBackup>\r\n\r\n"));
    EXPECT_TRUE(Contains(text, "<Added More Files\\C:\\x\\a.txt\r\n"));
    EXPECT_TRUE(Contains(text,
                         "<Backup File Name>Job.obk</Backup File Name>\r\n"
                         "</AdvancedSettings>\r\n</Main>\r\n</BackupSettings>\r\n"));
  }
}

TEST(FrmRfour, AMailProgramStartedMeanwhileStopsTheRun) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive;
  archive.With("Outlook Express\\Email Messages\\Inbox.dbx", "C:\\S\\Inbox.dbx",
               "Outlook Express\\Email Messages\\Inbox.dbx", "mail");
  wizard.Open(archive.Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.computer().RunProcess("msimn.exe");
  machine.Expect(ui::Answer::kOk, "Please close Outlook Express to continue");
  wizard.Run();
  EXPECT_TRUE(wizard.Shown("frmRfour"));
  EXPECT_EQ(machine.app().FindLoaded("frmRFinish"), nullptr);
}

TEST(FrmRfour, BackShowsTheTreeWithItsTicks) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(TwoDrives().Write(machine));
  wizard.Tick("Added More Files\\C:\\x\\a.txt");
  wizard.ToReview();
  machine.Click(wizard.review().cmdBack);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
  EXPECT_TRUE(wizard.two().tvwMain.FindPath("Added More Files\\C:\\x\\a.txt")->Checked());
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().lblRestoreOptions[1]->bold);
}

}  // namespace
}  // namespace quorvale::restore_test
