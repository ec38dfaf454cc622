#include "restore/pages/frmRFinish.h"

#include "platform/host/host_platform.h"
#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kSettings[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";
constexpr char kStopQuestion[] = "Are you sure, you want to stop the process?";

JobArchive SomeFiles(int count = 3) {
  JobArchive archive;
  for (int i = 0; i < count; ++i) {
    const std::string name = "file" + std::to_string(i) + ".txt";
    archive.With("Add More Files\\C:\\New\\" + name, "C:\\New\\" + name,
                 "Added More Files\\" + name, "content " + std::to_string(i));
  }
  return archive;
}

// The text of the second end message for files that stayed in a folder.
std::string LeftMessage(const std::string& folder) {
  return "Backup successfully restored, some files/folders could not be restored on to there "
         "default locations. Files/foldes has been copied to location: " +
         folder;
}

// The run begins with a test of the whole archive.
bool IsTesting(const frmRFinish& run) {
  return run.lblCurrent.caption.get() == "Current Progress: Extracting Items...";
}

bool IsExtracting(const frmRFinish& run, const std::string& name) {
  return !IsTesting(run) && Contains(run.LblFileinprocess.caption.get(), name);
}

std::vector<std::string> Sounds(TestMachine& machine) {
  return machine.host().shell().sounds_played();
}

TEST(FrmRFinish, ARunPutsFilesHomeAndRecordsItself) {
  TestMachine machine("xp");
  machine.computer().SetClock({2026, 3, 5, 9, 7, 1, 5});
  RestoreWizard wizard(machine);
  wizard.RestoreAll(SomeFiles().Write(machine));
  EXPECT_EQ(machine.ReadFile("C:\\New\\file0.txt"), "content 0");
  EXPECT_EQ(machine.ReadFile("C:\\New\\file2.txt"), "content 2");
  EXPECT_EQ(machine.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Restore"),
            "03/05/2026 9:07:01 AM");
  EXPECT_EQ(machine.GetValue("HKEY_CLASSES_ROOT\\regfile\\shell\\open\\command", ""),
            "regedit.exe \"%1\"");
  // The pages are gone, the home page is back, and nothing is left in the restore folder.
  EXPECT_EQ(machine.app().FindLoaded("frmRFinish"), nullptr);
  EXPECT_EQ(machine.app().FindLoaded("frmRTwo"), nullptr);
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().cmdWC_Restore.enabled);
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().CmdWC_Home.enabled);
  EXPECT_EQ(machine.AllBelow(machine.session().gAppDataPath + "\\Restore"),
            std::vector<std::string>());
  EXPECT_EQ(machine.ui().pointer(), ui::Pointer::kDefault);
}

TEST(FrmRFinish, OnlyTickedFilesComeBack) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(SomeFiles().Write(machine));
  wizard.Tick("Added More Files\\C:\\New\\file1.txt");
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_EQ(machine.AllBelow("C:\\New"), std::vector<std::string>{"C:\\New\\file1.txt"});
}

TEST(FrmRFinish, AStoppedRunDoesNoFurtherPhaseAndKeepsWhatItRestored) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive = SomeFiles(6);
  archive.With("Add Other Folders\\C:\\Later", "C:\\Later", "Added Other Folders\\Later\\a.txt",
               "x");
  wizard.Open(archive.Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kYes, kStopQuestion);
  machine.Expect(ui::Answer::kOk, "Restore Process Aborted by User");
  frmRFinish& run = wizard.run();
  std::vector<std::string> lines;
  run.lblCurrent.caption.on_change = [&] { lines.push_back(run.lblCurrent.caption); };
  machine.ui().When([&] { return IsExtracting(run, "file2"); }, [&] { run.cmdstop.Click(); });
  wizard.Run();
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2],
            "Current Progress: Stopping the Process. Deleting temperory Files ");
  EXPECT_EQ(lines.back(), "Current Status: Restore Process Aborted by the User. ");
  EXPECT_EQ(machine.ReadFile("C:\\New\\file0.txt"), "content 0");
  EXPECT_FALSE(machine.Exists("C:\\New\\file4.txt"));
  EXPECT_FALSE(machine.Exists("C:\\Later"));
  EXPECT_EQ(machine.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Restore"),
            std::nullopt);
  EXPECT_EQ(machine.app().FindLoaded("frmRFinish"), nullptr);
  EXPECT_FALSE(machine.session().gStopRequested);
}

TEST(FrmRFinish, AStopInsideAFileLeavesItOldOrNew) {
  const std::string old_content(300000, 'o');
  std::string new_content;
  for (int i = 0; i < 3000000; ++i) new_content += static_cast<char>('a' + i * 7 % 26);
  TestMachine machine("xp");
  machine.WriteFile("C:\\New\\big.txt", old_content);
  RestoreWizard wizard(machine);
  JobArchive archive;
  archive.With("Add More Files\\C:\\New\\big.txt", "C:\\New\\big.txt", "Added More Files\\big.txt",
               new_content);
  wizard.Open(archive.Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kYes, kStopQuestion);
  machine.Expect(ui::Answer::kOk, "Restore Process Aborted by User");
  frmRFinish& run = wizard.run();
  machine.ui().When([&] { return IsExtracting(run, "big"); }, [&] { run.cmdstop.Click(); });
  wizard.Run();
  const std::string after = machine.ReadFile("C:\\New\\big.txt");
  EXPECT_TRUE(after == old_content || after == new_content);
  EXPECT_EQ(machine.AllBelow("C:\\New"), std::vector<std::string>{"C:\\New\\big.txt"});
}

TEST(FrmRFinish, AnsweringNoToStopChangesNothing) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(SomeFiles(4).Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kNo, kStopQuestion);
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  frmRFinish& run = wizard.run();
  machine.ui().When([&] { return IsExtracting(run, "file1"); }, [&] { run.cmdstop.Click(); });
  wizard.Run();
  EXPECT_EQ(machine.AllBelow("C:\\New").size(), 4u);
}

TEST(FrmRFinish, APageThatGoesAwayEndsItsRun) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(SomeFiles(6).Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  frmRFinish& run = wizard.run();
  machine.ui().When([&] { return IsExtracting(run, "file1"); },
                    [&] { machine.app().Get<FrmWelcome>().cmdWC_Home_Click(); });
  wizard.Run();
  EXPECT_FALSE(machine.Exists("C:\\New\\file5.txt"));
  EXPECT_EQ(machine.app().FindLoaded("frmRFinish"), nullptr);
}

TEST(FrmRFinish, TheChimeFollowsTheSetting) {
  for (const char* off : {"", "0", "1", "x"}) {
    TestMachine machine("xp");
    machine.WriteFile(machine.platform().system.ProgramFolder() + "\\chimes.wav", "RIFF");
    RestoreWizard wizard(machine);
    wizard.Open(SomeFiles().Write(machine));
    wizard.TickAll();
    wizard.ToReview();
    machine.SetString(kSettings, "chkSound", off);
    machine.Expect(ui::Answer::kOk, "Backup successfully restored");
    const size_t before = Sounds(machine).size();
    wizard.Run();
    const bool silent = std::string(off) == "1" || std::string(off) == "x";
    EXPECT_EQ(Sounds(machine).size() - before, silent ? 0u : 1u) << off;
  }
}

TEST(FrmRFinish, WithoutTheWaveFileTheRunIsSilent) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.RestoreAll(SomeFiles().Write(machine));
  EXPECT_TRUE(Sounds(machine).empty());
}

TEST(FrmRFinish, RowsOfWindowsMailAreNotLookedAtBeforeVista) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive = SomeFiles();
  archive.Member("Windows Mail\\Mails\\inbox.eml", "mail");
  wizard.Open(archive.Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.session().restore_items.push_back(
      {"Windows Mail\\Mails", {"Windows Mail\\Mails", "C:\\Users\\X\\Windows Mail\\"}});
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_FALSE(machine.Exists(machine.Profile() + "\\AppData"));
}

TEST(FrmRFinish, TheWindowsMailLineFollowsThePhasesWork) {
  TestMachine machine("vista");
  RestoreWizard wizard(machine);
  JobArchive archive;
  archive.With("Windows Mail\\Mails", "C:\\Users\\X\\WM\\", "Windows Mail\\Mails\\a.eml", "mail");
  wizard.Open(archive.Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  frmRFinish& run = wizard.run();
  std::vector<std::string> lines;
  bool restored_before_line = false;
  run.lblCurrent.caption.on_change = [&] {
    lines.push_back(run.lblCurrent.caption);
    if (lines.back() == "Current Progress: Taking Restore of Windows Mail Items...") {
      restored_before_line =
          machine.Exists(machine.LocalAppData() + "\\Microsoft\\Windows Mail\\a.eml");
    }
  };
  wizard.Run();
  EXPECT_TRUE(restored_before_line);
  const std::vector<std::string> start = {
      "Initializing...",
      "Current Progress: Extracting Items...",
      "Current Progress: Extracted Successfully",
      "Current Progress: Restoration of Windows Mail Items...Windows Mail\\Mails",
      "Current Progress: Taking Restore of Windows Mail Items...",
      "Current Progress: Taking Restore of Outlook Express Items..."};
  ASSERT_GE(lines.size(), start.size());
  EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + 6), start);
}

TEST(FrmRFinish, AFileOfAGoneDriveStaysInTheRestoreFolderWhichIsShown) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive = SomeFiles(1);
  archive.With("Add More Files\\Q:\\gone.txt", "Q:\\gone.txt", "Added More Files\\gone.txt", "kept")
      .With("Add Other Folders\\R:\\Far\\Away", "R:\\Far\\Away",
            "Added Other Folders\\Away\\b\\c.txt", "kept too");
  const std::string folder = machine.session().gAppDataPath + "\\Restore\\Job";
  wizard.Open(archive.Write(machine));
  const std::string left = machine.session().gAppDataPath + "\\Restore\\Job";
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, LeftMessage(left));
  wizard.Run();
  EXPECT_EQ(machine.ReadFile(left + "\\Added more Files\\gone.txt"), "kept");
  EXPECT_EQ(machine.ReadFile(left + "\\Added Other Folders\\Away\\b\\c.txt"), "kept too");
  EXPECT_EQ(machine.ReadFile("C:\\New\\file0.txt"), "content 0");
  EXPECT_EQ(machine.computer().Started().back(), "run|Explorer " + left);
}

TEST(FrmRFinish, WithTheRestoreFolderDeclinedLeftFilesAreKeptAndNoFolderIsShown) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive = SomeFiles(1);
  archive.With("Add More Files\\Q:\\gone.txt", "Q:\\gone.txt", "Added More Files\\gone.txt",
               "kept");
  archive.With("Internet Explorer\\Typed Urls", "HKEY_CURRENT_USER\\Software\\Typed",
               "Internet Explorer\\Typed Urls\\Typed_Urls.reg",
               RegText("HKEY_CURRENT_USER\\Software\\Typed", "url1", "http://a.example/"));
  wizard.Choose(archive.Write(machine));
  machine.Click(wizard.one().Check1);
  machine.Click(wizard.one().cmdNext);
  wizard.TickAll();
  wizard.ToReview();
  const std::string left = machine.session().gAppDataPath + "\\Restore\\Job";
  machine.Expect(ui::Answer::kOk, LeftMessage(left));
  wizard.Run();
  EXPECT_EQ(machine.ReadFile(left + "\\Added more Files\\gone.txt"), "kept");
  EXPECT_EQ(machine.GetValue("HKEY_CURRENT_USER\\Software\\Typed", "url1"), "http://a.example/");
  EXPECT_FALSE(machine.Exists(machine.session().gAppDataPath + "\\tempXML"));
  EXPECT_FALSE(machine.session().gNoRestoreFolder);
  for (const std::string& line : machine.computer().Started())
    EXPECT_FALSE(Contains(line, "Explorer ")) << line;
  // The next restore begins with a restore folder again.
  wizard.Choose("C:\\Backups\\Job.obk");
  EXPECT_EQ(wizard.one().txtRestore.text.get(), machine.session().gAppDataPath + "\\Restore");
}

TEST(FrmRFinish, WhatLayInTheRestoreFolderBeforeIsNotDeleted) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  machine.session().gAppDataPath = machine.AppData() + "\\Tarnwick\\Quorvale";
  const std::string own =
      machine.session().gAppDataPath + "\\Restore\\Job\\Added more Files\\x.txt";
  machine.WriteFile(own, "of an earlier run");
  JobArchive archive = SomeFiles(1);
  archive.With("Internet Explorer\\Typed Urls", "HKEY_CURRENT_USER\\Software\\Typed",
               "Internet Explorer\\Typed Urls\\Typed_Urls.reg",
               RegText("HKEY_CURRENT_USER\\Software\\Typed", "url1", "http://a.example/"));
  wizard.RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.ReadFile(own), "of an earlier run");
  EXPECT_EQ(machine.AllBelow(machine.session().gAppDataPath + "\\Restore\\Job").size(), 2u);
}

TEST(FrmRFinish, RegistryFilesAreReadBeforeTheStagingFolderGoes) {
  TestMachine machine("98");
  RestoreWizard wizard(machine);
  JobArchive archive;
  for (int i = 0; i < 5; ++i) {
    const std::string n = std::to_string(i);
    archive.With("Outlook Express\\Signature\\My sign " + n, "HKEY_CURRENT_USER\\Software\\S\\" + n,
                 "Outlook Express\\Signature\\My_sign_" + n + ".reg",
                 RegText("HKEY_CURRENT_USER\\Software\\S\\" + n, "name", "My sign " + n));
  }
  wizard.RestoreAll(archive.Write(machine));
  for (int i = 0; i < 5; ++i) {
    const std::string n = std::to_string(i);
    EXPECT_EQ(machine.GetValue("HKEY_CURRENT_USER\\Software\\S\\" + n, "name"), "My sign " + n);
  }
  EXPECT_FALSE(machine.Exists(machine.session().gAppDataPath + "\\Restore\\Job"));
}

TEST(FrmRFinish, ABackupThatVanishesBeforeTheRunChangesNothing) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  const std::string path = SomeFiles().Write(machine);
  wizard.Open(path);
  wizard.TickAll();
  wizard.ToReview();
  machine.RemoveFile(path);
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_FALSE(machine.Exists("C:\\New"));
}

TEST(FrmRFinish, AnArchiveOfACommonToolWithOtherLettersAndNoFoldersRestores) {
  TestMachine machine("xp");
  JobArchive archive;
  archive.Item("Add Other Folders\\C:\\Kept\\House", "C:\\Kept\\House")
      .Item("Add More Files\\C:\\Kept\\Note.txt", "C:\\Kept\\Note.txt");
  const std::string xml = SettingsText(archive.items());
  RawZip zip;
  zip.Add("JOB/job.XML", xml)
      .Add("JOB/ADDED OTHER FOLDERS/HOUSE/Rooms/Kitchen.txt", "table")
      .Add("job/added other folders/house/Attic.txt", "dust")
      .Add("Job/Added more Files/NOTE.TXT", "note");
  machine.WriteFile("C:\\Backups\\Job.obk", zip.Bytes());
  RestoreWizard wizard(machine);
  wizard.RestoreAll("C:\\Backups\\Job.obk");
  EXPECT_EQ(machine.ReadFile("C:\\Kept\\House\\Rooms\\Kitchen.txt"), "table");
  EXPECT_EQ(machine.ReadFile("C:\\Kept\\House\\Attic.txt"), "dust");
  EXPECT_EQ(machine.ReadFile("C:\\Kept\\Note.txt"), "note");
}

TEST(FrmRFinish, TwoAddedFilesOfOneNameEachGoHome) {
  TestMachine machine("xp");
  JobArchive archive;
  archive
      .With("Add More Files\\C:\\a\\note.txt", "C:\\a\\note.txt", "Added More Files\\note.txt",
            "of a")
      .With("Add More Files\\D:\\b\\note.txt", "D:\\b\\note.txt", "Added More Files\\note.txt",
            "of b");
  RestoreWizard wizard(machine);
  const std::string path = archive.Write(machine);
  wizard.RestoreAll(path);
  EXPECT_EQ(machine.ReadFile("C:\\a\\note.txt"), "of a");
  EXPECT_EQ(machine.ReadFile("D:\\b\\note.txt"), "of b");
  machine.RemoveFile("C:\\a\\note.txt");
  wizard.Open(path);
  wizard.Tick("Added More Files\\D:\\b\\note.txt");
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  machine.WriteFile("D:\\b\\note.txt", "changed");
  wizard.Run();
  EXPECT_FALSE(machine.Exists("C:\\a\\note.txt"));
  EXPECT_EQ(machine.ReadFile("D:\\b\\note.txt"), "of b");
}

TEST(FrmRFinish, AFileWhoseNameAnotherTookInTheArchiveIsNotReplacedByThatOne) {
  TestMachine machine("xp");
  JobArchive archive;
  archive.Item("Add More Files\\C:\\a\\note.txt", "C:\\a\\note.txt")
      .With("Add More Files\\D:\\b\\note.txt", "D:\\b\\note.txt", "Added More Files\\note.txt",
            "of b");
  machine.WriteFile("C:\\a\\note.txt", "mine");
  RestoreWizard wizard(machine);
  wizard.RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.ReadFile("C:\\a\\note.txt"), "mine");
  EXPECT_EQ(machine.ReadFile("D:\\b\\note.txt"), "of b");
}

TEST(FrmRFinish, SmallHelpersOfThePage) {
  TestMachine machine("xp");
  frmRFinish& page = machine.app().Get<frmRFinish>();
  EXPECT_EQ(frmRFinish::extractDesktopPath("C:\\Users\\A\\Desktop\\x\\y.txt"),
            "C:\\Users\\A\\Desktop");
  EXPECT_EQ(frmRFinish::restDesktopPath("C:\\Users\\A\\Desktop\\x\\y.txt"), "\\x\\y.txt");
  EXPECT_EQ(frmRFinish::extractDesktopPath("C:\\DesktopX\\Desktop\\y"), "C:\\DesktopX\\Desktop");
  EXPECT_EQ(page.extractPath("C:\\A\\My Documents\\y"), "C:\\A\\My Documents");
  EXPECT_EQ(page.restPath("C:\\A\\My Documents\\y"), "\\y");
  EXPECT_EQ(page.extractPath("C:\\A"), "");
  EXPECT_EQ(frmRFinish::exchangeDriveLetter("C:\\A\\b", "E"), "E:\\A\\b");
  EXPECT_EQ(frmRFinish::folderOnly("a\\b\\c"), "a\\");
}

}  // namespace
}  // namespace quorvale::restore_test
