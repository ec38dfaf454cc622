#include "restore/pages/frmROne.h"

#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kBackups[] =
    "C:\\Documents and Settings\\Anna\\Application Data\\Tarnwick\\Quorvale\\Backup";

std::string ListedFile(const std::string& name) { return std::string(kBackups) + "\\" + name; }

std::string Encrypted(TestMachine& machine, const std::string& path) {
  zip::Archive archive(machine.platform());
  const std::string base = WithoutLastFour(FileNameOf(path));
  machine.WriteFile("C:\\stage\\settings.xml",
                    SettingsText({{"Add More Files\\C:\\a.txt", "C:\\a.txt"}}));
  machine.MakeFolder(ParentFolder(path));
  archive.archive_name = path;
  archive.files_to_process = {"C:\\stage\\settings.xml"};
  archive.encrypt = true;
  archive.password = "secret";
  archive.on_before_file = [&base](zip::BeforeFile& file) {
    file.entry_name = base + "\\" + base + ".xml";
  };
  EXPECT_EQ(archive.Zip(), zip::Result::kDone);
  return path;
}

void OpenPage(TestMachine& machine) {
  machine.Do([&machine] {
    machine.app().Get<FrmWelcome>().Show();
    machine.app().Get<FrmWelcome>().cmdWC_Restore.Click();
  });
}

TEST(FrmROne, AnEmptyBackupFolderLeavesNextDisabledUntilAFileIsBrowsedTo) {
  TestMachine machine("xp");
  const std::string path = JobArchive().Item("Other Files", "Other Files").Write(machine);
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  EXPECT_EQ(page.File1.Count(), 0);
  EXPECT_FALSE(page.cmdNext.enabled);
  EXPECT_EQ(page.txtpath.text.get(), "");
  machine.ui().ExpectFile(path);
  machine.Click(page.Command1);
  EXPECT_TRUE(page.cmdNext.enabled);
  EXPECT_EQ(page.txtpath.text.get(), path);
}

TEST(FrmROne, TheFirstListedBackupIsSelectedAndOnlyBackupFilesAreListed) {
  TestMachine machine("xp");
  machine.WriteFile(ListedFile("b.obk"), "x");
  machine.WriteFile(ListedFile("A.OBK"), "x");
  machine.WriteFile(ListedFile("notes.txt"), "x");
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  ASSERT_EQ(page.File1.Count(), 2);
  EXPECT_EQ(page.File1.Item(0), "A.OBK");
  EXPECT_EQ(page.txtpath.text.get(), ListedFile("A.OBK"));
  EXPECT_TRUE(page.cmdNext.enabled);
  machine.Do([&page] { page.File1.list_index = 1; });
  EXPECT_EQ(page.txtpath.text.get(), ListedFile("b.obk"));
}

TEST(FrmROne, AFolderAtADrivesRootGivesNoDoubledSeparator) {
  TestMachine machine("xp");
  machine.WriteFile("D:\\x.obk", "x");
  OpenPage(machine);
  machine.app().Get<frmSettings>().txtBackup.text = "D:\\";
  frmROne& page = machine.app().Get<frmROne>();
  machine.Click(page.Label32);
  EXPECT_EQ(page.txtpath.text.get(), "D:\\x.obk");
}

TEST(FrmROne, ANetworkPathKeepsItsLeadingBackslashes) {
  TestMachine machine("xp");
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  machine.app().Get<frmSettings>().txtBackup.text = "\\\\server\\share";
  page.File1.Clear();
  page.File1.AddItem("x.obk");
  machine.Do([&page] { page.File1.list_index = 0; });
  EXPECT_EQ(page.txtpath.text.get(), "\\\\server\\share\\x.obk");
}

TEST(FrmROne, AnUnencryptedArchiveLeavesTheBoxDisabledAndThePasswordEmpty) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(JobArchive().Item("Add More Files\\C:\\a.txt", "C:\\a.txt").Write(machine));
  EXPECT_FALSE(wizard.one().txtDefaultPassword.enabled);
  EXPECT_EQ(machine.session().gRestorePassword, "");
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
}

TEST(FrmROne, ABackupDeletedAfterItsSelectionIsToldSo) {
  TestMachine machine("xp");
  const std::string path = JobArchive().Item("Other Files", "Other Files").Write(machine);
  RestoreWizard wizard(machine);
  wizard.Choose(path);
  machine.RemoveFile(path);
  machine.Expect(ui::Answer::kOk, "Backup file has been deleted or renamed");
  machine.Click(wizard.one().cmdNext);
  EXPECT_EQ(machine.ui().boxes.back().request.icon, ui::Icon::kCritical);
  EXPECT_TRUE(wizard.Shown("frmROne"));
  EXPECT_FALSE(wizard.one().cmdNext.enabled);
}

TEST(FrmROne, DecliningTheRestoreFolderReachesTheSettingsAndComesBack) {
  TestMachine machine("xp");
  OpenPage(machine);
  machine.app().Get<frmSettings>();  // looked at before
  frmROne& page = machine.app().Get<frmROne>();
  const std::string standard = machine.session().gAppDataPath + "\\Restore";
  const std::string key = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";
  EXPECT_EQ(page.txtRestore.text.get(), standard);
  machine.Click(page.Check1);
  EXPECT_TRUE(machine.session().gNoRestoreFolder);
  EXPECT_EQ(page.txtRestore.text.get(), "");
  EXPECT_FALSE(page.txtRestore.enabled);
  EXPECT_FALSE(page.cmdselectfolder.enabled);
  EXPECT_EQ(machine.app().Get<frmSettings>().txtRestore.text.get(), "");
  EXPECT_EQ(machine.GetValue(key, "txtRestore"), "");
  machine.Click(page.Check1);
  EXPECT_FALSE(machine.session().gNoRestoreFolder);
  EXPECT_EQ(page.txtRestore.text.get(), standard);
  EXPECT_TRUE(page.txtRestore.enabled);
  EXPECT_EQ(machine.GetValue(key, "txtRestore"), standard);
}

TEST(FrmROne, AnEncryptedArchiveAsksForItsPasswordUntilItIsRight) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Choose(Encrypted(machine, "C:\\Backups\\Safe.obk"));
  frmROne& page = wizard.one();
  EXPECT_TRUE(page.txtDefaultPassword.enabled);
  machine.Expect(ui::Answer::kOk, "Password cannot be left blank.");
  machine.Click(page.cmdNext);
  EXPECT_EQ(page.focused, &page.txtDefaultPassword);
  page.txtDefaultPassword.text = "wrong";
  machine.Expect(ui::Answer::kOk, "Please enter the correct password.");
  machine.Click(page.cmdNext);
  EXPECT_TRUE(page.cmdNext.enabled);
  EXPECT_TRUE(page.Command1.enabled);
  EXPECT_TRUE(page.cmdselectfolder.enabled);
  EXPECT_EQ(machine.ui().pointer(), ui::Pointer::kDefault);
  page.txtDefaultPassword.text = "secret";
  machine.Click(page.cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
  EXPECT_FALSE(wizard.Shown("frmROne"));
  EXPECT_EQ(machine.session().gRestorePassword, "secret");
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().lblRestoreOptions[1]->bold);
}

TEST(FrmROne, APasswordDoesNotSurviveAChangeOfFile) {
  TestMachine machine("xp");
  machine.WriteFile(ListedFile("a.obk"), "x");
  machine.WriteFile(ListedFile("b.obk"), "x");
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  page.txtDefaultPassword.text = "typed";
  machine.Do([&page] { page.File1.list_index = 1; });
  EXPECT_EQ(page.txtDefaultPassword.text.get(), "");
  page.txtDefaultPassword.text = "typed";
  machine.Do([&page] { page.Label32.Click(); });
  EXPECT_EQ(page.txtDefaultPassword.text.get(), "");
}

TEST(FrmROne, WhatIsNoArchiveIsRefused) {
  TestMachine machine("xp");
  machine.WriteFile("C:\\Backups\\Job.obk", "this is no archive");
  RestoreWizard wizard(machine);
  machine.Expect(ui::Answer::kOk, "Invalid backup file selected.");
  wizard.Open("C:\\Backups\\Job.obk");
  EXPECT_TRUE(wizard.Shown("frmROne"));
  EXPECT_TRUE(wizard.one().cmdNext.enabled);
}

TEST(FrmROne, NothingChosenIsRefused) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Choose(JobArchive().Item("Other Files", "Other Files").Write(machine));
  wizard.one().txtpath.text = "  ";
  machine.Expect(ui::Answer::kOk, "Select a backup file to Restore");
  machine.Click(wizard.one().cmdNext);
}

TEST(FrmROne, DeletingAsksFirstAndTellsOfAVanishedFile) {
  TestMachine machine("xp");
  machine.WriteFile(ListedFile("a.obk"), "x");
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  const std::string question = "Are you sure you want to remove the backup file permanently";
  machine.Expect(ui::Answer::kNo, question);
  machine.Click(page.LblDelete);
  EXPECT_TRUE(machine.Exists(ListedFile("a.obk")));
  machine.Expect(ui::Answer::kYes, question);
  machine.Click(page.LblDelete);
  EXPECT_FALSE(machine.Exists(ListedFile("a.obk")));
  EXPECT_EQ(page.File1.Count(), 0);
  EXPECT_FALSE(page.cmdNext.enabled);
  machine.Expect(ui::Answer::kOk,
                 "Cannot delete as the backup file has either been remove or renamed");
  machine.Click(page.LblDelete);
}

TEST(FrmROne, AFolderThatCannotBeWrittenIsRefusedAndTheDeclineTakenBack) {
  TestMachine machine("xp");
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  machine.Click(page.Check1);
  page.cmdselectfolder.enabled = true;  // a click that was on its way already
  machine.ui().ExpectFolder("Q:\\nowhere");
  machine.Expect(ui::Answer::kOk,
                 "You do not have sufficient permissions on the selected folder or drive");
  machine.Click(page.cmdselectfolder);
  EXPECT_EQ(page.Check1.value, 0);
  EXPECT_EQ(page.txtRestore.text.get(), machine.session().gAppDataPath + "\\Restore");
  machine.MakeFolder("D:\\Back");
  machine.ui().ExpectFolder("D:\\Back");
  machine.Click(page.cmdselectfolder);
  EXPECT_EQ(page.txtRestore.text.get(), "D:\\Back");
  EXPECT_EQ(machine.app().Get<frmSettings>().txtRestore.text.get(), "D:\\Back");
}

TEST(FrmROne, CancelLeadsHome) {
  TestMachine machine("xp");
  OpenPage(machine);
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_FALSE(welcome.cmdWC_Restore.enabled);
  machine.Click(machine.app().Get<frmROne>().cmdCancel);
  EXPECT_TRUE(welcome.cmdWC_Restore.enabled);
  EXPECT_EQ(machine.app().FindLoaded("frmROne"), nullptr);
}

TEST(FrmROne, AFileGivenAtTheStartIsRememberedAndLinked) {
  TestMachine machine("xp");
  machine.computer().SetCommandLine("\"C:\\Backups\\My mail.obk\"");
  machine.computer().SetSpecialFolder(special_folder::kPrograms,
                                      machine.Profile() + "\\Start Menu\\Programs");
  machine.MakeFolder(machine.Profile() + "\\Recent");
  machine.app().Get<frmROne>().RegisterOpenedFile();
  EXPECT_EQ(machine.session().gBackupFileName, "\"C:\\Backups\\My mail.obk\"");
  EXPECT_TRUE(machine.Exists(machine.Profile() + "\\Recent\\My mail.obk.lnk"));
}

TEST(FrmROne, ABackupThatTheProgramWasOpenedWithIsTheChosenOne) {
  TestMachine machine("xp");
  machine.WriteFile(ListedFile("a.obk"), "x");
  const std::string path = Encrypted(machine, "D:\\From the old computer\\My mail.obk");
  machine.computer().SetCommandLine("\"" + path + "\"");
  OpenPage(machine);
  frmROne& page = machine.app().Get<frmROne>();
  EXPECT_EQ(page.txtpath.text.get(), path);
  EXPECT_TRUE(page.cmdNext.enabled);
  EXPECT_TRUE(page.txtDefaultPassword.enabled) << "it is protected";
}

TEST(FrmROne, WithoutABackupListTheOpenedOneEnablesNext) {
  TestMachine machine("xp");
  machine.WriteFile("D:\\x.OBK", "x");
  machine.computer().SetCommandLine("D:\\x.OBK");
  OpenPage(machine);
  EXPECT_EQ(machine.app().Get<frmROne>().txtpath.text.get(), "D:\\x.OBK");
  EXPECT_TRUE(machine.app().Get<frmROne>().cmdNext.enabled);
}

TEST(FrmROne, AnOpenedFileThatIsGoneOrNoBackupChoosesNothing) {
  for (const char* line : {"\"D:\\gone.obk\"", "D:\\letter.txt", "custom.obk"}) {
    TestMachine machine("xp");
    machine.WriteFile("D:\\letter.txt", "x");
    machine.WriteFile(ListedFile("a.obk"), "x");
    machine.computer().SetCommandLine(line);
    OpenPage(machine);
    EXPECT_EQ(machine.app().Get<frmROne>().txtpath.text.get(), ListedFile("a.obk")) << line;
  }
}

TEST(FrmROne, TheBareFileMarkOfTheShellIsNoFile) {
  TestMachine machine("xp");
  machine.computer().SetCommandLine("%1");
  machine.app().Get<frmROne>().RegisterOpenedFile();
  EXPECT_EQ(machine.session().gBackupFileName, "");
}

}  // namespace
}  // namespace quorvale::restore_test
