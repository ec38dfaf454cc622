#include "backup/pages/frmFinish.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "backup/backup_run.h"
#include "backup/exported_values.h"
#include "backup/format/settings_file.h"
#include "backup/run/disc_folder.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

using backup_test::BackupRun;
using backup_test::ExportedValues;
using backup_test::kAborted;
using backup_test::kDone;

constexpr char kHistory[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale";
constexpr char kSettings[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";
constexpr char kStore[] = "C:\\Mail store";
constexpr char kIdentity[] = "{11111111-2222-3333-4444-555555555555}";

// What Seed types into the browser.
const std::map<std::string, std::string> kTypedUrls = {
    {"HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs\\url1",
     "http://www.example.com/"}};

// Mail, accounts and files of an ordinary computer.
void Seed(TestMachine& machine) {
  const std::string user = "HKEY_CURRENT_USER\\";
  const std::string identity = user + "Identities\\" + kIdentity;
  machine.SetString(user + "Identities", "Default User ID", kIdentity);
  const std::string express = identity + "\\Software\\Microsoft\\Outlook Express\\5.0";
  machine.SetString(express, "Store Root", std::string(kStore) + "\\");
  machine.SetString(express + "\\Rules\\Mail", "Version", "1");
  machine.SetString(express + "\\signatures\\00000000", "name", "Signature #1");
  machine.SetString(user + "Software\\Microsoft\\Internet Account Manager\\Accounts\\00000001",
                    "Account Name", "pop.example.com");
  machine.SetString(user + "Software\\Microsoft\\Internet Explorer\\TypedURLs", "url1",
                    "http://www.example.com/");
  machine.WriteFile(std::string(kStore) + "\\Inbox.dbx", std::string(3000, 'i'));
  machine.WriteFile(std::string(kStore) + "\\Friends.dbx", "friends");
  machine.WriteFile(std::string(kStore) + "\\Folders.dbx", "folders");
  machine.WriteFile(machine.Documents() + "\\letter.txt", "Dear Bob");
  machine.WriteFile(machine.Documents() + "\\R&D\\Zürich plan.txt", "plan");
  machine.WriteFile(machine.Documents() + "\\README", "no dot, not listed");
  machine.WriteFile(machine.Documents() + "\\zero.txt", "");
  machine.MakeFolder(machine.Documents() + "\\Empty folder");
  machine.WriteFile(machine.Desktop() + "\\note.txt", "note");
  machine.WriteFile(machine.Favorites() + "\\Example.url", "[InternetShortcut]");
  machine.WriteFile("C:\\Extra\\Work\\deep\\deeper.txt", "deep");
  machine.WriteFile("C:\\Extra\\one.dat", "one");
}

class FrmFinish : public testing::Test {
 protected:
  FrmFinish() { Seed(machine_); }

  // A whole run by hand of what is ticked.
  void RunToTheEnd() {
    machine_.Expect(ui::Answer::kOk, kDone);
    run_.Finish();
  }
  bool Recorded() { return machine_.GetValue(kHistory, "Last Backup").has_value(); }
  // After a run that did not come to its good end.
  void ExpectNothingLeft() {
    EXPECT_TRUE(run_.LeftInBackupFolder().empty());
    EXPECT_FALSE(Recorded());
    ExpectHome();
  }
  void ExpectHome() {
    EXPECT_EQ(run_.Run(), nullptr);
    EXPECT_EQ(run_.app().Loaded<frmfour>(), nullptr);
    FrmWelcome& main_window = run_.app().Get<FrmWelcome>();
    EXPECT_TRUE(main_window.Visible());
    EXPECT_FALSE(main_window.PicMainBackupBase.visible);
    EXPECT_TRUE(main_window.cmdWC_TakeBackup.enabled);
    EXPECT_TRUE(main_window.CmdWC_Home.enabled);
    EXPECT_TRUE(main_window.CmdSupport.enabled);
    EXPECT_EQ(machine_.ui().pointer(), ui::Pointer::kDefault);
    EXPECT_FALSE(machine_.session().gStopRequested);
    EXPECT_FALSE(machine_.session().gBackupZipBusy);
  }
  bool OpenedInExplorer() {
    for (const std::string& started : machine_.computer().Started()) {
      if (Contains(started, "Explorer " + run_.BackupFolder())) return true;
    }
    return false;
  }

  BackupRun run_;
  TestMachine& machine_ = run_.machine();
};

// Whole backups. ----------------------------------------------------------------------------------

TEST_F(FrmFinish, AWholeBackupHoldsEverythingUnderItsName) {
  run_.OpenItems();
  for (const char* root : {"Outlook Express", "Internet Explorer", "Other Files"}) run_.Tick(root);
  run_.AddFolder("C:\\Extra\\Work");
  run_.AddFile("C:\\Extra\\one.dat");
  RunToTheEnd();

  const std::vector<std::string> names = run_.Entries();
  const std::set<std::string> entries(names.begin(), names.end());
  EXPECT_EQ(entries.size(), names.size());
  for (const char* name : {"Job\\Job.xml",
                           "Job\\Outlook Express\\Account Settings\\pop.example.com.reg",
                           "Job\\Outlook Express\\Email Messages\\Inbox.dbx",
                           "Job\\Outlook Express\\Email Messages\\Other Mail Folders\\Friends.dbx",
                           "Job\\Outlook Express\\Email Messages\\Other Mail Folders\\Folders.dbx",
                           "Job\\Outlook Express\\Message Rules\\Mail.reg",
                           "Job\\Outlook Express\\Signature\\Signature_#1.reg",
                           "Job\\Outlook Express\\Settings\\Identities.reg",
                           "Job\\Internet Explorer\\Typed Urls\\Typed_Urls.reg",
                           "Job\\Internet Explorer\\IESettings\\Current_User_Settings.reg",
                           "Job\\Internet Explorer\\Favorites\\Example.url",
                           "Job\\Other Files\\My Documents\\letter.txt",
                           "Job\\Other Files\\My Documents\\R&D\\Zürich plan.txt",
                           "Job\\Other Files\\My Documents\\R&D\\",
                           "Job\\Other Files\\My Documents\\Empty folder\\",
                           "Job\\Other Files\\My Documents\\zero.txt",
                           "Job\\Other Files\\My Documents\\",
                           "Job\\Other Files\\My Desktop Files\\note.txt",
                           "Job\\Added Other Folders\\Work\\deep\\deeper.txt",
                           "Job\\Added Other Folders\\Work\\deep\\",
                           "Job\\Added Other Folders\\Work\\",
                           "Job\\Added More Files\\one.dat"}) {
    EXPECT_TRUE(entries.count(name)) << name;
  }
  EXPECT_FALSE(entries.count("Job\\Other Files\\My Documents\\README"));
  EXPECT_EQ(run_.Content("Job\\Outlook Express\\Email Messages\\Inbox.dbx"),
            std::string(3000, 'i'));
  EXPECT_EQ(run_.Content("Job\\Other Files\\My Documents\\R&D\\Zürich plan.txt"), "plan");
  EXPECT_EQ(run_.Content("Job\\Added More Files\\one.dat"), "one");
  EXPECT_EQ(
      ExportedValues(machine_, run_.Content("Job\\Internet Explorer\\Typed Urls\\Typed_Urls.reg")),
      kTypedUrls);
  for (const std::string& name : names) EXPECT_TRUE(name.starts_with("Job\\")) << name;
  EXPECT_EQ(run_.LeftInBackupFolder(), std::vector<std::string>{run_.ArchivePath()});
  ExpectHome();
  EXPECT_TRUE(OpenedInExplorer());
}

TEST_F(FrmFinish, TheSettingsInsideTellWhatWasTaken) {
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  run_.AddFile("C:\\Extra\\one.dat");
  RunToTheEnd();
  SettingsFile settings;
  machine_.WriteFile("C:\\job.xml", run_.Content("Job\\Job.xml"));
  ASSERT_TRUE(ReadSettingsFile(run_.app(), "C:\\job.xml", &settings));
  std::vector<std::string> paths;
  for (const SettingsItem& item : settings.items) paths.push_back(item.path);
  EXPECT_EQ(paths, (std::vector<std::string>{"Other Files\\My Documents",
                                             "Add More Files\\C:\\Extra\\one.dat"}));
  EXPECT_EQ(settings.backup_folder, run_.BackupFolder());
}

TEST_F(FrmFinish, AMovedDocumentsFolderStandsUnderItsCaption) {
  machine_.WriteFile("C:\\Data\\moved.txt", "moved");
  machine_.WriteFile("C:\\Schreibtisch\\d.txt", "d");
  machine_.computer().SetSpecialFolder(5, "C:\\Data");
  machine_.computer().SetSpecialFolder(16, "C:\\Schreibtisch");
  run_.OpenItems();
  run_.Tick("Other Files");
  RunToTheEnd();
  EXPECT_TRUE(run_.HasEntry("Job\\Other Files\\My Documents\\moved.txt"));
  EXPECT_TRUE(run_.HasEntry("Job\\Other Files\\My Desktop Files\\d.txt"));
}

TEST_F(FrmFinish, TheBackupFolderInsideTheDocumentsDoesNotBackUpItsOwnStage) {
  run_.OpenItems();
  run_.app().Get<FrmTwo>().txtpath.text = machine_.Documents() + "\\Backups";
  run_.Tick("Other Files\\My Documents");
  run_.Tick("Internet Explorer\\Typed Urls");
  RunToTheEnd();
  EXPECT_TRUE(run_.HasEntry("Job\\Job.xml"));
  EXPECT_TRUE(run_.HasEntry("Job\\Other Files\\My Documents\\letter.txt"));
  for (const std::string& name : run_.Entries()) {
    EXPECT_EQ(name.find("Backups\\Job"), std::string::npos) << name;
  }
}

TEST_F(FrmFinish, ABackupToADrivesRootIsNamedLikeAnyOther) {
  machine_.computer().SetDrive("D", DriveKind::kFixed);
  run_.OpenItems();
  run_.app().Get<FrmTwo>().txtpath.text = "D:\\";
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_TRUE(run_.HasEntry("Job\\Job.xml"));
  EXPECT_TRUE(run_.HasEntry("Job\\Other Files\\My Documents\\letter.txt"));
}

TEST_F(FrmFinish, AWholeDriveCanBeAdded) {
  machine_.computer().SetDrive("D", DriveKind::kFixed, 1000000000);
  machine_.WriteFile("D:\\top.txt", "top");
  machine_.WriteFile("D:\\sub\\low.txt", "low");
  run_.OpenItems();
  run_.AddFolder("D:\\");
  RunToTheEnd();
  EXPECT_TRUE(run_.HasEntry("Job\\Added Other Folders\\D\\top.txt"));
  EXPECT_TRUE(run_.HasEntry("Job\\Added Other Folders\\D\\sub\\low.txt"));
}

TEST_F(FrmFinish, FoldersOfOneNameMergeAndKeepEveryFile) {
  machine_.WriteFile("C:\\A\\Backup\\a.txt", "a");
  machine_.WriteFile("C:\\B\\Backup\\b.txt", "b");
  run_.OpenItems();
  run_.AddFolder("C:\\A\\Backup");
  run_.AddFolder("C:\\B\\Backup");
  RunToTheEnd();
  EXPECT_EQ(run_.Content("Job\\Added Other Folders\\Backup\\a.txt"), "a");
  EXPECT_EQ(run_.Content("Job\\Added Other Folders\\Backup\\b.txt"), "b");
}

TEST_F(FrmFinish, AFileSelectedTwiceStandsTwice) {
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  run_.AddFile(machine_.Documents() + "\\letter.txt");
  RunToTheEnd();
  EXPECT_EQ(run_.Content("Job\\Other Files\\My Documents\\letter.txt"), "Dear Bob");
  EXPECT_EQ(run_.Content("Job\\Added More Files\\letter.txt"), "Dear Bob");
}

TEST_F(FrmFinish, AFileOfTwoProfilesStandsTwiceOnceFromItsCopy) {
  machine_.WriteFile("C:\\Mail\\outlook.pst", "mail");
  machine_.MakeKey(
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App "
      "Paths\\OUTLOOK.EXE");
  run_.Select(
      {{"Microsoft Outlook\\Identities\\One\\Account Emails-Files\\P", "C:\\Mail\\outlook.pst"},
       {"Microsoft Outlook\\Identities\\Two\\Account Emails-Files\\P", "C:\\Mail\\outlook.pst"}});
  frmFinish& page = run_.app().Get<frmFinish>();
  page.BackupOutlookItems();
  const std::string copy = run_.BackupFolder() +
                           "\\Job\\Microsoft Outlook\\Identities\\Two\\"
                           "outlook.pst";
  EXPECT_EQ(machine_.ReadFile(copy), "mail");
  EXPECT_EQ(page.run.archive.files_to_process,
            (std::vector<std::string>{"C:\\Mail\\outlook.pst", copy}));
  EXPECT_EQ(machine_.session().gFileCollection.FindStagedDest("C:\\Mail\\outlook.pst"),
            "Job\\Microsoft Outlook\\Identities\\One\\outlook.pst");
  EXPECT_EQ(machine_.session().gFileCollection.FindStagedDest(copy),
            "Job\\Microsoft Outlook\\Identities\\Two\\outlook.pst");
}

TEST_F(FrmFinish, WithoutOutlookNoOutlookItemIsProcessed) {
  run_.Select({{"Microsoft Outlook\\Dictionary\\a.dic", "C:\\Extra\\one.dat"},
               {"Add More Files\\C:\\Extra\\one.dat", "C:\\Extra\\one.dat"}});
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Do([this] { run_.app().Get<frmFinish>().TAKEALLBACKUP(); });
  EXPECT_EQ(run_.Entries(), (std::vector<std::string>{"Job\\Added More Files\\one.dat",
                                                      "Job\\Job.xml", "Job\\Members.txt"}));
}

TEST_F(FrmFinish, WindowsMailItemsAreSkippedOnOtherSystemsThoughTheSettingsNameThem) {
  run_.Select({{"Windows Mail\\Mails", "C:\\Extra\\"},
               {"Windows Mail\\Account Settings\\WMRegistrySettings",
                "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail"}});
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Do([this] { run_.app().Get<frmFinish>().TAKEALLBACKUP(); });
  EXPECT_EQ(run_.Entries(), (std::vector<std::string>{"Job\\Job.xml", "Job\\Members.txt"}));
  EXPECT_NE(run_.Content("Job\\Job.xml").find("<WM Key='C:\\Extra\\' >"), std::string::npos);
}

TEST(FrmFinishOnVista, WindowsMailKeepsTheWholeTree) {
  BackupRun run("vista");
  TestMachine& machine = run.machine();
  const std::string mails = machine.LocalAppData() + "\\Microsoft\\Windows Mail";
  machine.WriteFile(mails + "\\Local Folders\\Inbox\\1.eml", "mail");
  machine.WriteFile(machine.Profile() + "\\Contacts\\Bob.contact", "bob");
  machine.SetString("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail", "x", "y");
  run.OpenItems();
  run.Tick("Windows Mail\\Mails");
  run.Tick("Windows Mail\\Contacts");
  run.Select({{"Windows Mail\\Mails", mails + "\\"},
              {"Windows Mail\\Contacts", machine.Profile() + "\\Contacts"},
              {"Windows Mail\\Account Settings\\WMRegistrySettings",
               "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail"}});
  machine.Expect(ui::Answer::kOk, kDone);
  machine.Do([&run] { run.app().Get<frmFinish>().TAKEALLBACKUP(); });
  EXPECT_EQ(run.Content("Job\\Windows Mail\\Mails\\Local Folders\\Inbox\\1.eml"), "mail");
  EXPECT_EQ(run.Content("Job\\Windows Mail\\Contacts\\Bob.contact"), "bob");
  EXPECT_TRUE(run.HasEntry("Job\\Windows Mail\\Account Settings\\WMRegistrySettings.reg"));
  const auto& exports = machine.host().shell().registry_editor_runs();
  ASSERT_EQ(exports.size(), 1u);
  EXPECT_EQ(exports[0].verb, "runas");
  EXPECT_EQ(exports[0].file, "regedit.exe");
  EXPECT_TRUE(exports[0].parameters.starts_with("/e \""));
  EXPECT_EQ(exports[0].show, 0);
}

// Options. ----------------------------------------------------------------------------------------

TEST_F(FrmFinish, WithLevelZeroTheEntriesAreStored) {
  run_.OpenItems();
  run_.Tick("Outlook Express\\Account Settings");
  run_.Tick("Outlook Express\\Email Messages");
  run_.OpenOptions();
  run_.app().Get<frmThree>().cmbCompLevel.SelectText("No Compression");
  machine_.Click(run_.app().Get<frmThree>().cmdNext);
  machine_.Click(run_.app().Get<FrmBackupMedia>().cmdNext);
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  zip::Archive archive(machine_.platform());
  archive.archive_name = run_.ArchivePath();
  std::vector<zip::Entry> entries;
  ASSERT_EQ(archive.List(&entries), zip::Result::kDone);
  for (const zip::Entry& entry : entries) EXPECT_EQ(entry.size, entry.compressed_size);
}

TEST_F(FrmFinish, AProtectedBackupNeedsItsPassword) {
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  run_.OpenOptions();
  frmThree& options = run_.app().Get<frmThree>();
  options.chkProtectArchive.Click();
  options.txtpwd.text = "secret";
  options.txtpwd2.text = "secret";
  machine_.Click(options.cmdNext);
  machine_.Click(run_.app().Get<FrmBackupMedia>().cmdNext);
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  zip::Archive archive(machine_.platform());
  archive.archive_name = run_.ArchivePath();
  EXPECT_EQ(archive.Test(), zip::Result::kWrongPassword);
  archive.password = "secret";
  EXPECT_EQ(archive.Test(), zip::Result::kDone);
}

// Registry exports. -------------------------------------------------------------------------------

TEST_F(FrmFinish, AnExportThatEndsLateIsInTheArchive) {
  machine_.faults().shell.DelayRuns(200, 20000);
  run_.OpenItems();
  run_.Tick("Internet Explorer\\Typed Urls");
  RunToTheEnd();
  const std::string entry = "Job\\Internet Explorer\\Typed Urls\\Typed_Urls.reg";
  ASSERT_TRUE(run_.HasEntry(entry));
  EXPECT_EQ(ExportedValues(machine_, run_.Content(entry)), kTypedUrls);
  EXPECT_EQ(machine_.host().shell().OutstandingRuns(), 0);
}

TEST_F(FrmFinish, AnExportThatNeverEndsDoesNotHoldTheRunForEver) {
  machine_.faults().shell.HangRuns(true);
  run_.OpenItems();
  run_.Tick("Internet Explorer\\Typed Urls");
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_FALSE(run_.HasEntry("Job\\Internet Explorer\\Typed Urls\\Typed_Urls.reg"));
  EXPECT_TRUE(run_.HasEntry("Job\\Other Files\\My Documents\\letter.txt"));
}

TEST_F(FrmFinish, AKeyThatDoesNotExistMakesNoEntryAndNoFuss) {
  run_.Select({{"Internet Explorer\\Typed Urls", "HKEY_CURRENT_USER\\No\\Such\\Key"}});
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Do([this] { run_.app().Get<frmFinish>().TAKEALLBACKUP(); });
  EXPECT_EQ(run_.Entries(), (std::vector<std::string>{"Job\\Job.xml", "Job\\Members.txt"}));
}

TEST_F(FrmFinish, OfTwoExportsOfOneNameTheLastOneHasItAndTheFirstANumber) {
  machine_.SetString("HKEY_CURRENT_USER\\Software\\First", "a", "first");
  machine_.SetString("HKEY_CURRENT_USER\\Software\\Second", "a", "second");
  run_.Select({{"Outlook Express\\Account Settings\\mail", "HKEY_CURRENT_USER\\Software\\First"},
               {"Outlook Express\\Account Settings\\mail", "HKEY_CURRENT_USER\\Software\\Second"}});
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Do([this] { run_.app().Get<frmFinish>().TAKEALLBACKUP(); });
  const auto text = [this](const std::string& leaf) {
    return ReplaceAll(run_.Content("Job\\Outlook Express\\Account Settings\\" + leaf),
                      std::string(1, '\0'), "");
  };
  EXPECT_NE(text("mail.reg").find("Second"), std::string::npos);
  EXPECT_EQ(text("mail.reg").find("First"), std::string::npos);
  EXPECT_NE(text("mail_1.reg").find("First"), std::string::npos);
  EXPECT_EQ(run_.Entries().size(), 4u);
}

TEST_F(FrmFinish, TheCommandLineOfAnExportNamesFileAndKeyInQuotes) {
  run_.Select({});
  frmFinish& page = run_.app().Get<frmFinish>();
  page.ExportRegistryKey(run_.BackupFolder() + "\\Job", "Typed Urls", "HKEY_CURRENT_USER\\A b");
  EXPECT_EQ(page.run.mExportFile, run_.BackupFolder() + "\\Job\\Typed_Urls.reg");
  const auto& runs = machine_.host().shell().registry_editor_runs();
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_TRUE(runs[0].command_line.starts_with("regedit.exe /s /e \""));
  EXPECT_TRUE(runs[0].command_line.ends_with("\\Typed_Urls.reg\" \"HKEY_CURRENT_USER\\A b\""));
  EXPECT_EQ(runs[0].style, WindowStyle::kHidden);
}

// What cannot be read. ----------------------------------------------------------------------------

TEST_F(FrmFinish, AnUnreadableFileIsLeftOutAndTheRunGoesOn) {
  machine_.faults().files.SetInUse(machine_.Documents() + "\\letter.txt", true);
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_FALSE(run_.HasEntry("Job\\Other Files\\My Documents\\letter.txt"));
  EXPECT_TRUE(run_.HasEntry("Job\\Other Files\\My Documents\\R&D\\Zürich plan.txt"));
  EXPECT_TRUE(Recorded());
}

TEST_F(FrmFinish, AnAddedFileThatIsGoneIsToldInTheRunLog) {
  machine_.SetString(kSettings, "chklog", "1");
  run_.OpenItems();
  run_.AddFile("C:\\Extra\\one.dat");
  run_.AddFolder("C:\\Extra\\Work");
  run_.Tick("Other Files\\My Documents");
  run_.OpenReview();
  machine_.RemoveFile("C:\\Extra\\one.dat");
  machine_.RemoveTree("C:\\Extra\\Work");
  machine_.Expect(ui::Answer::kOk, kDone);
  run_.Start();
  const std::string log = machine_.ReadFile(LogFolder(run_.app()) + "Settings_Job.xml");
  EXPECT_NE(log.find("<Skipped File/Folders>\r\nC:\\Extra\\one.dat\r\nC:\\Extra\\Work\r\n" +
                     machine_.Documents() + "\\README\r\n</Skipped File/Folder>\r\n"),
            std::string::npos)
      << log;
  EXPECT_FALSE(run_.HasEntry("Job\\Added More Files\\one.dat"));
}

TEST_F(FrmFinish, WithNothingSkippedTheReviewLogStays) {
  machine_.SetString(kSettings, "chklog", "1");
  machine_.RemoveFile(machine_.Documents() + "\\README");
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  const std::string log = machine_.ReadFile(LogFolder(run_.app()) + "Settings_Job.xml");
  EXPECT_EQ(log.find("Skipped"), std::string::npos);
}

TEST_F(FrmFinish, ANameThatNoEntryCanHaveIsKeptInTheSkipList) {
  run_.Select({});
  machine_.session().gBackupFolder = "";
  frmFinish& page = run_.app().Get<frmFinish>();
  machine_.session().gBackupBasePath = std::string(66000, 'x');
  machine_.session().gBackupItemPaths = {"Add More Files\\C:\\Extra\\one.dat"};
  machine_.session().gBackupItemKeys = {"C:\\Extra\\one.dat"};
  machine_.Expect(ui::Answer::kOk, "");  // the staging folder cannot be made
  page.BackupOtherItems();
  EXPECT_EQ(page.run.mSkipped, std::vector<std::string>{"C:\\Extra\\one.dat"});
  EXPECT_TRUE(page.run.archive.files_to_process.empty());
}

TEST_F(FrmFinish, CopiesAreMadeOnlyOverOlderTargets) {
  run_.Select({});
  frmFinish& page = run_.app().Get<frmFinish>();
  machine_.WriteFile("C:\\Extra\\new.txt", "new");
  EXPECT_TRUE(page.CopyFileToStage("C:\\Extra\\new.txt", "C:\\Stage\\\\sub\\new.txt"));
  EXPECT_EQ(machine_.ReadFile("C:\\Stage\\sub\\new.txt"), "new");
  EXPECT_TRUE(page.lblStatus.caption->starts_with("Moving: "));
  machine_.WriteFile("C:\\Stage\\sub\\new.txt", "kept");
  machine_.SetModified("C:\\Stage\\sub\\new.txt",
                       machine_.files().Stat("C:\\Extra\\new.txt")->modified);
  EXPECT_FALSE(page.CopyFileToStage("C:\\Extra\\new.txt", "C:\\Stage\\sub\\new.txt"));
  EXPECT_EQ(machine_.ReadFile("C:\\Stage\\sub\\new.txt"), "kept");
  EXPECT_FALSE(page.CopyFileToStage("C:\\Extra\\none.txt", "C:\\Stage\\none.txt"));
}

TEST_F(FrmFinish, KillFolderRemovesReadOnlyContent) {
  machine_.WriteFile("C:\\Kill\\a\\b.txt", "x");
  machine_.SetAttributes("C:\\Kill\\a\\b.txt", file_attribute::kReadOnly);
  EXPECT_TRUE(run_.app().Get<frmFinish>().KillFolder("C:\\Kill\\"));
  EXPECT_FALSE(machine_.Exists("C:\\Kill"));
}

// The run's states. -------------------------------------------------------------------------------

struct PhaseSeen {
  std::string text;
  int percent;
};

TEST_F(FrmFinish, EachPhaseShowsItsTextAndItsPercentage) {
  const PhaseSeen phases[] = {
      {"Current Progress: Taking Backup of Outlook Express Items...", 20},
      {"Current Progress: Taking Backup of Microsoft Outlook Items...", 30},
      {"Current Progress: Taking Backup of Internet Explorer Settings...", 40},
      {"Current Progress: Taking Backup of Internet Explorer Items...Internet Explorer\\Typed Urls",
       40},
      {"Current Progress: Taking Backup of Other Folders...", 50},
      {"Current Progress: Taking Backup of My Documents...", 50},
      {"Current Progress: Taking Backup of Desktop...", 50},
      {"Current Progress: Taking Backup of C:\\Extra\\Work...", 50},
      {"Current Progress: Compressing all the Data Files... ", 60},
      {"Current Progress: Removing Temporary Files ... ", 90},
  };
  size_t seen = 0;
  for (const PhaseSeen& phase : phases) {
    run_.When(phase.text, [this, &phase, &seen] {
      const frmFinish& page = *run_.Run();
      EXPECT_EQ(page.pbCurrent.value, phase.percent) << phase.text;
      EXPECT_EQ(page.pbCurrent.maximum, 100);
      const bool other = phase.percent == 50;
      EXPECT_EQ(page.Frame3.visible, other) << phase.text;
      EXPECT_EQ(page.Label7.visible, other || phase.percent < 50) << phase.text;
      EXPECT_EQ(page.LblCompressProgress.visible, phase.percent > 60) << phase.text;
      EXPECT_TRUE(page.Command2.enabled) << phase.text;
      ++seen;
    });
  }
  machine_.faults().shell.DelayRuns(10, 500);  // so that the archive stage has to wait
  run_.OpenItems();
  for (const char* root : {"Outlook Express", "Internet Explorer", "Other Files"}) run_.Tick(root);
  run_.AddFolder("C:\\Extra\\Work");
  RunToTheEnd();
  EXPECT_EQ(seen, std::size(phases));
}

TEST_F(FrmFinish, AnItemsPathFollowsThePhasesWords) {
  std::set<std::string> captions;
  machine_.ui().on_pump = [&] {
    if (run_.Run() != nullptr) captions.insert(run_.Run()->lblCurrent.caption);
  };
  run_.OpenItems();
  run_.Tick("Outlook Express\\Account Settings");
  run_.Tick("Outlook Express\\Email Messages\\Inbox.dbx");
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  machine_.ui().on_pump = nullptr;
  EXPECT_TRUE(
      captions.count("Current Progress: Taking Backup of Outlook Express Items...Outlook "
                     "Express\\Email Messages\\Inbox.dbx"));
}

TEST_F(FrmFinish, TheArchiveStageShowsTheFileInWorkAndItsBar) {
  std::set<std::string> captions;
  int highest = 0;
  run_.When("Current Progress: Taking Backup of Other Folders...", [&] {
    // Listens to what the page does with the events of the archive component.
    frmFinish& page = *run_.Run();
    page.run.archive.on_before_file = [&,
                                       name_entry = page.run.archive.on_before_file](auto& file) {
      name_entry(file);
      EXPECT_TRUE(page.prbGlobalProgress.visible);
      EXPECT_TRUE(page.LblCompressProgress.visible);
      EXPECT_TRUE(page.LblCurrentFileinProgress.visible);
      captions.insert(page.LblCurrentFileinProgress.caption);
    };
    page.run.archive.on_file_progress = [&, show = page.run.archive.on_file_progress](int percent) {
      show(percent);
      EXPECT_EQ(page.prbGlobalProgress.value, percent);
      EXPECT_EQ(page.LblCurrentFileinProgress.caption.get(), "");
      highest = std::max(highest, percent);
    };
    // The percentage of the whole is not shown while an archive is made.
    page.run.archive.on_total_progress = [&,
                                          show = page.run.archive.on_total_progress](int percent) {
      page.prbGlobalProgress.value = 7;
      show(percent);
      EXPECT_EQ(page.prbGlobalProgress.value, 7);
    };
  });
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_TRUE(captions.count("File Name: " + machine_.Documents() + "\\letter.txt"));
  EXPECT_TRUE(captions.count("File Name: " + machine_.Documents() + "\\Empty folder\\"));
  EXPECT_EQ(highest, 100);
}

TEST_F(FrmFinish, TheGoodEndShowsItsStateBehindTheMessage) {
  bool seen = false;
  machine_.ui().on_box = [&](const ui::MessageBoxRequest& box) {
    if (box.text != kDone) return;
    seen = true;
    const frmFinish& page = *run_.Run();
    EXPECT_EQ(page.lblCurrent.caption.get(), "Current Status: Backup Successfully Completed. ");
    EXPECT_EQ(page.pbCurrent.value, 100);
    EXPECT_FALSE(page.prbGlobalProgress.visible);
    EXPECT_FALSE(page.LblCompressProgress.visible);
    EXPECT_FALSE(page.Frame3.visible);
    EXPECT_FALSE(page.Label7.visible);
    EXPECT_EQ(page.Label7.caption.get(), "DONE !");
    EXPECT_FALSE(page.Command2.enabled);
    EXPECT_TRUE(run_.app().Get<FrmWelcome>().CmdWC_Home.enabled);
    EXPECT_EQ(machine_.ui().pointer(), ui::Pointer::kDefault);
    EXPECT_EQ(box.icon, ui::Icon::kInformation);
    EXPECT_TRUE(run_.ArchiveExists());
    // Recorded only after the box is closed.
    EXPECT_FALSE(Recorded());
  };
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  machine_.ui().on_box = nullptr;
  EXPECT_TRUE(seen);
  EXPECT_EQ(machine_.GetValue(kHistory, "Last Backup"),
            HistoryStamp(run_.app(), machine_.platform().system.Now()));
  EXPECT_EQ(run_.app().Get<FrmWelcome>().LblLastBackup.caption.get(),
            machine_.GetValue(kHistory, "Last Backup"));
  EXPECT_EQ(machine_.session().gBackupProcessName, "Main Backup");
}

TEST_F(FrmFinish, TheSoundFollowsItsSetting) {
  machine_.WriteFile(machine_.platform().system.ProgramFolder() + "\\chimes.wav", "RIFF");
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_EQ(machine_.host().shell().sounds_played().size(), 1u);
  machine_.SetString(kSettings, "chkSound", "1");
  run_.OpenItems("Silent");
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_EQ(machine_.host().shell().sounds_played().size(), 1u);
}

TEST_F(FrmFinish, ALeftoverOfADiscRunIsRemoved) {
  run_.OpenItems();
  const std::string parts = run_.BackupFolder() + "\\CDBackup";
  ASSERT_TRUE(DiscFolder(run_.app(), parts).Make());
  machine_.WriteFile(parts + "\\old.obk", "old");
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_FALSE(machine_.Exists(parts));
}

TEST_F(FrmFinish, AFolderOfTheUsersWithTheNameOfTheDiscFolderStays) {
  run_.OpenItems();
  const std::string note = run_.BackupFolder() + "\\CDBackup\\my own.txt";
  machine_.WriteFile(note, "mine");
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_EQ(machine_.ReadFile(note), "mine");
}

TEST_F(FrmFinish, TheSearchServiceRestsWhileTheArchiveIsMade) {
  machine_.SetService("WSearch", "Running");
  std::set<std::string> states;
  machine_.ui().on_pump = [&] {
    const frmFinish* page = run_.Run();
    if (page != nullptr && page->run.archive.current_operation() == zip::Operation::kZipping) {
      states.insert(machine_.platform().services.State("WSearch"));
    }
  };
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  machine_.ui().on_pump = nullptr;
  EXPECT_EQ(states, std::set<std::string>{"Stopped"});
  EXPECT_EQ(machine_.platform().services.State("WSearch"), "Running");
}

// Stop. -------------------------------------------------------------------------------------------

TEST_F(FrmFinish, StopInEachPhaseLeavesNothing) {
  for (const char* phase : {"Current Progress: Taking Backup of Outlook Express Items...",
                            "Current Progress: Taking Backup of Microsoft Outlook Items...",
                            "Current Progress: Taking Backup of Internet Explorer Settings...",
                            "Current Progress: Taking Backup of Internet Explorer Items...",
                            "Current Progress: Taking Backup of Other Folders...",
                            "Current Progress: Taking Backup of My Documents...",
                            "Current Progress: Removing Temporary Files ... "}) {
    SCOPED_TRACE(phase);
    run_.OpenItems();
    for (const char* root : {"Outlook Express", "Internet Explorer", "Other Files"}) {
      run_.Tick(root);
    }
    run_.OpenReview();
    run_.StopAt(phase);
    bool seen = false;
    machine_.ui().on_box = [&](const ui::MessageBoxRequest& box) {
      if (box.text == backup_test::kReallyStop) {
        EXPECT_EQ(box.buttons, ui::Buttons::kYesNo);
        machine_.Expect(ui::Answer::kOk, kAborted);
      }
      if (box.text != kAborted) return;
      seen = true;
      EXPECT_EQ(run_.Run()->lblCurrent.caption.get(),
                "Current Status: Backup Process Aborted by User");
    };
    run_.Start();
    machine_.ui().on_box = nullptr;
    EXPECT_TRUE(seen);
    ExpectNothingLeft();
    EXPECT_FALSE(OpenedInExplorer());
  }
}

TEST_F(FrmFinish, StopDuringCompressionIsToldByTheArchiveStageAndByTheRun) {
  machine_.WriteFile(machine_.Documents() + "\\large.bin", std::string(4 << 20, 'x'));
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  run_.OpenReview();
  machine_.ui().When(
      [this] {
        const frmFinish* page = run_.Run();
        return page != nullptr && page->run.archive.current_operation() == zip::Operation::kZipping;
      },
      [this] {
        machine_.Expect(ui::Answer::kYes, backup_test::kReallyStop);
        machine_.Expect(ui::Answer::kOk, kAborted);
        machine_.Expect(ui::Answer::kOk, kAborted);
        run_.Run()->Command2.Click();
        EXPECT_TRUE(machine_.session().gStopRequested);
        EXPECT_TRUE(run_.app().Get<FrmWelcome>().CmdWC_Home.enabled);
      });
  run_.Start();
  ExpectNothingLeft();
}

TEST_F(FrmFinish, StopAnsweredWithNoChangesNothing) {
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  run_.OpenReview();
  run_.When("Current Progress: Taking Backup of Other Folders...", [this] {
    machine_.Expect(ui::Answer::kNo, backup_test::kReallyStop);
    machine_.Expect(ui::Answer::kOk, kDone);
    run_.Run()->Command2.Click();
  });
  run_.Start();
  EXPECT_TRUE(run_.ArchiveExists());
  EXPECT_TRUE(Recorded());
}

TEST_F(FrmFinish, GoingHomeAfterStopDoesNotTakeTheNextJobsPagesAway) {
  run_.OpenItems();
  run_.Tick("Other Files");
  run_.OpenReview();
  run_.When("Current Progress: Taking Backup of Other Folders...", [this] {
    machine_.Expect(ui::Answer::kYes, backup_test::kReallyStop);
    machine_.Expect(ui::Answer::kOk, kAborted);
    run_.Run()->Command2.Click();
    FrmWelcome& main_window = run_.app().Get<FrmWelcome>();
    main_window.CmdWC_Home.Click();
    main_window.cmdWC_TakeBackup.Click();
  });
  run_.Start();
  ASSERT_NE(run_.app().Loaded<frmOne>(), nullptr);
  EXPECT_TRUE(run_.app().Get<frmOne>().Visible());
  EXPECT_TRUE(run_.LeftInBackupFolder().empty());
}

TEST_F(FrmFinish, ClosingTheProgramStopsTheRunAndLeavesNothing) {
  run_.OpenItems();
  run_.Tick("Other Files");
  run_.OpenReview();
  const std::string folder = run_.BackupFolder();
  run_.When("Current Progress: Taking Backup of Other Folders...",
            [this] { run_.app().Get<FrmWelcome>().CmdWC_Close_Click(); });
  run_.Start();
  EXPECT_TRUE(run_.app().Ended());
  EXPECT_TRUE(machine_.AllBelow(folder).empty());
  EXPECT_EQ(run_.app().Loaded<FrmWelcome>(), nullptr);
}

// Space and failure. ------------------------------------------------------------------------------

std::string SpaceText(const std::string& folder) {
  return "There is not enough space in the backup folder " + folder +
         ". Please make space or change the location of backup file and run the backup again.";
}

class FullDisk : public FrmFinish {
 protected:
  void OpenReviewOfLargeFile() {
    std::string noise;
    unsigned state = 1;
    for (int i = 0; i < 400000; ++i) {
      state = state * 1664525u + 1013904223u;
      noise += static_cast<char>(state >> 24);
    }
    machine_.WriteFile(machine_.Documents() + "\\large.bin", noise);
    run_.OpenItems();
    run_.Tick("Other Files\\My Documents");
    run_.OpenReview();
    folder_ = run_.BackupFolder();
    run_.When("Current Progress: Taking Backup of My Documents...",
              [this] { machine_.computer().SetFreeSpace("C", 100000); });
  }
  std::string folder_;
};

TEST_F(FullDisk, WithACancelledFolderChoiceNothingIsLeft) {
  OpenReviewOfLargeFile();
  machine_.Expect(ui::Answer::kOk, SpaceText(folder_));
  machine_.ui().ExpectFolder("");
  run_.Start();
  ExpectNothingLeft();
  // A failed run opens the backup folder like a good one.
  EXPECT_TRUE(OpenedInExplorer());
}

TEST_F(FullDisk, AChosenFolderNeverLeadsToTheSuccessMessage) {
  machine_.MakeFolder("C:\\Other place");
  OpenReviewOfLargeFile();
  machine_.Expect(ui::Answer::kOk, SpaceText(folder_));
  machine_.ui().ExpectFolder("C:\\Other place");
  machine_.Expect(ui::Answer::kOk, SpaceText("C:\\Other place"));
  machine_.ui().ExpectFolder("");
  run_.Start();
  EXPECT_TRUE(machine_.AllBelow(folder_).empty());
  EXPECT_TRUE(machine_.AllBelow("C:\\Other place").empty());
  EXPECT_FALSE(Recorded());
  EXPECT_EQ(machine_.GetValue(kSettings, "txtBackup"), "C:\\Other place");
  ExpectHome();
}

TEST_F(FullDisk, AFreedDiskStillEndsAsFailedAndKeepsTheWholeArchive) {
  machine_.MakeFolder("C:\\Other place");
  OpenReviewOfLargeFile();
  machine_.Expect(ui::Answer::kOk, SpaceText(folder_));
  machine_.ui().ExpectFolder("C:\\Other place");
  machine_.ui().on_box = [this](const ui::MessageBoxRequest&) {
    machine_.computer().SetFreeSpace("C", 100000000);
  };
  run_.Start();
  machine_.ui().on_box = nullptr;
  EXPECT_EQ(machine_.AllBelow(folder_), std::vector<std::string>{folder_ + "\\Job.obk"});
  EXPECT_FALSE(Recorded());
  EXPECT_EQ(machine_.Boxes().size(), 1u);
}

TEST_F(FrmFinish, AFailedArchiveEndsWithoutAWordAndLeavesNothing) {
  run_.OpenItems();
  run_.Tick("Other Files\\My Documents");
  run_.OpenReview();
  run_.When("Current Progress: Taking Backup of Other Folders...",
            [this] { machine_.RemoveFile(run_.BackupFolder() + "\\Job\\Job.xml"); });
  run_.Start();
  ExpectNothingLeft();
  EXPECT_TRUE(machine_.Boxes().empty());
}

TEST_F(FrmFinish, ALeftStagingFolderOnlyMovesTheNextRunToAnotherName) {
  run_.OpenItems();
  machine_.WriteFile(run_.BackupFolder() + "\\Job\\Job.xml", "left by a run that was killed");
  run_.Tick("Other Files\\My Documents");
  RunToTheEnd();
  EXPECT_TRUE(run_.ArchiveExists("Job_1"));
  EXPECT_TRUE(run_.HasEntry("Job_1\\Job_1.xml", "Job_1"));
}

}  // namespace
}  // namespace quorvale
