// What a run does by its command line, and the restart with raised rights.
#include "core/main/run_modes.h"

#include <gtest/gtest.h>

#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/main/maker.h"
#include "core/program/ModGlobal.h"
#include "discovery/pages/FrmTwo.h"
#include "discovery/products/watched_programs.h"
#include "platform/host/host_platform.h"
#include "restore/pages/frmROne.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kSettings[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";
constexpr char kHistory[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale";
constexpr char kRefused[] =
    "Administrator privileges are required for this action. You do not have sufficient access "
    "privileges to perform this action";

std::string HandOver(TestMachine& machine) {
  return machine.AppData() + "\\Tarnwick\\Quorvale\\temp.xml";
}

void Start(TestMachine& machine, const std::string& command_line = "") {
  machine.computer().SetCommandLine(command_line);
  machine.Do([&] { SubMain(machine.app()); });
}

void WriteHandOver(TestMachine& machine, const std::string& type,
                   const std::string& name = "Handed over") {
  machine.WriteFile(HandOver(machine),
                    "<?xml version='1.0'?>\r\n<BackupSettings>\r\n<Main Process='Main Backup'>\r\n"
                    "<ProcessDesc>x</ProcessDesc>\r\n<DateTime>7_14_11_2026_22_5</DateTime>\r\n"
                    "<BackupFolder></BackupFolder>\r\n<ItemsForBackup>\r\n</ItemsForBackup>\r\n" +
                        (name.empty() ? "" : "<BackupName>" + name + "</BackupName>\r\n") +
                        "<BackupType>" + type +
                        "</BackupType>\r\n</Main>\r\n</BackupSettings>\r\n");
}

size_t CountRunas(TestMachine& machine) {
  size_t count = 0;
  for (const std::string& started : machine.computer().Started()) {
    if (FoldCase(started).starts_with("runas|")) ++count;
  }
  return count;
}

bool PageShows(TestMachine& machine, const std::string& name) {
  const ui::Form* page = machine.app().FindLoaded(name);
  return page != nullptr && page->Visible();
}

// What the backup pages say of a running mail program.
std::string WatchedMessage(const std::string& root) {
  for (const WatchedProgram& program : WatchedPrograms()) {
    if (program.root == root) return program.backup_message;
  }
  ADD_FAILURE() << root << " is not watched";
  return "";
}

// Documents that a quick backup takes.
void GiveDocuments(TestMachine& machine) {
  machine.WriteFile(machine.Documents() + "\\letter.txt", "Dear all");
  machine.WriteFile(machine.Documents() + "\\notes\\list.txt", "1 2 3");
}

std::vector<std::string> BackupFiles(TestMachine& machine) {
  std::vector<std::string> found;
  for (const std::string& path :
       machine.AllBelow(machine.AppData() + "\\Tarnwick\\Quorvale\\Backup")) {
    if (EndsWithNoCase(path, ".obk")) found.push_back(path);
  }
  return found;
}

// --- Start --------------------------------------------------------------------------------------

TEST(SubMain, MakesTheDataFoldersAndShowsTheHomePage) {
  TestMachine machine;
  Start(machine);
  const std::string data = machine.AppData() + "\\Tarnwick\\Quorvale";
  EXPECT_EQ(machine.session().gAppDataPath, data);
  EXPECT_TRUE(machine.Exists(data + "\\Files\\Logs"));
  EXPECT_EQ(machine.session().gOSName, "Windows 2000");
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_TRUE(welcome.Visible());
  EXPECT_FALSE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.PicHomeBase.visible);
}

TEST(SubMain, AFolderThatCannotBeMadeIsToldAndTheStartGoesOn) {
  TestMachine machine;
  const std::string data = machine.AppData() + "\\Tarnwick\\Quorvale";
  machine.WriteFile(machine.AppData() + "\\Tarnwick", "a file in the way");
  machine.Expect(ui::Answer::kOk, "Sorry Could not make the directory [" + data + "\\] path. ");
  machine.Expect(ui::Answer::kOk,
                 "Sorry Could not make the directory [" + data + "\\Files\\logs\\] path. ");
  Start(machine);
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Visible());
}

TEST(SubMain, TheWindowHasItsSizeAndRoundCorners) {
  TestMachine machine;
  Start(machine);
  const FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_EQ(welcome.Width(), 820);
  EXPECT_EQ(welcome.Height(), 565);
  EXPECT_EQ(welcome.corner, 12);
  EXPECT_TRUE(welcome.borderless);
  EXPECT_EQ(welcome.Caption(), "Quorvale");
}

TEST(SubMain, OnlyTheNumberOneInTheUpdateSettingOpensTheBrowser) {
  for (const std::string value : {"", "0", "2", "x", "1"}) {
    TestMachine machine;
    machine.SetString("HKEY_CLASSES_ROOT\\http\\shell\\open\\command", "", "\"C:\\web.exe\"");
    if (!value.empty()) machine.SetString(kSettings, "chkGUpdate", value);
    Start(machine);
    std::vector<std::string> opened;
    if (value == "1") opened = {std::string("run|C:\\web.exe ") + kMakerHomePage};
    EXPECT_EQ(machine.computer().Started(), opened) << value;
  }
}

// --- Words --------------------------------------------------------------------------------------

TEST(RunModes, UnknownWordsAndPathsLeaveTheHomePage) {
  for (const char* text :
       {"QBACKUP", "Auto", "CUSTOM", "backup", "C:\\Jobs\\Mail.obk", "%1", "qbackup now", " "}) {
    TestMachine machine;
    Start(machine, text);
    const FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
    EXPECT_TRUE(welcome.Visible()) << text;
    EXPECT_FALSE(welcome.PicMainBackupBase.visible) << text;
    EXPECT_EQ(machine.app().LoadedForms().size(), 1u) << text;
    EXPECT_EQ(welcome.mCommandLine, "") << text;
    EXPECT_EQ(machine.app().CommandLine(), text);
  }
}

TEST(RunModes, QbackupPreparesAQuickBackupAndWaitsForAPerson) {
  TestMachine machine;
  GiveDocuments(machine);
  machine.Expect(ui::Answer::kOk, "Ready for Scheduled Quick Backup");
  Start(machine, "qbackup");
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_TRUE(PageShows(machine, "frmfour"));
  EXPECT_FALSE(PageShows(machine, "FrmQuickSteps"));
  EXPECT_FALSE(PageShows(machine, "frmOne"));
  EXPECT_TRUE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.PicStepBase.visible);
  EXPECT_TRUE(welcome.lblBackupOptions[4]->bold);
  EXPECT_TRUE(BackupFiles(machine).empty());
  EXPECT_EQ(machine.ui().boxes.back().request.icon, ui::Icon::kInformation);
}

TEST(RunModes, CustomOpensTheFirstPageWithNothingFilledIn) {
  TestMachine machine;
  GiveDocuments(machine);
  machine.Expect(ui::Answer::kOk, "Ready for Scheduled Custom Backup");
  Start(machine, "custom");
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_TRUE(PageShows(machine, "frmOne"));
  EXPECT_TRUE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.PicStepBase.visible);
  EXPECT_TRUE(welcome.lblBackupOptions[0]->bold);
  EXPECT_FALSE(welcome.lblBackupOptions[3]->bold);
  EXPECT_TRUE(welcome.ImgBackupGradient.visible);
  EXPECT_FALSE(welcome.cmdWC_TakeBackup.enabled);
  machine.Click(machine.app().Get<frmOne>().cmdNext);
  FrmTwo& items = machine.app().Get<FrmTwo>();
  for (int i = 1; i <= items.tvwMain.Count(); ++i) {
    EXPECT_FALSE(items.tvwMain.Node(i)->Checked()) << items.tvwMain.Node(i)->FullPath();
  }
}

TEST(RunModes, AutoRunsExactlyOneBackupAndReturnsHome) {
  TestMachine machine;
  GiveDocuments(machine);
  machine.Expect(ui::Answer::kOk, "Backup successfully completed");
  Start(machine, "auto");
  machine.RunUntilIdle();
  EXPECT_EQ(BackupFiles(machine).size(), 1u);
  EXPECT_TRUE(machine.GetValue(kHistory, "Last Backup").has_value());
}

TEST(RunModes, AutoShowsTheRunPageWhileTheBackupRuns) {
  TestMachine machine;
  GiveDocuments(machine);
  bool seen = false;
  machine.ui().When([&] { return PageShows(machine, "frmFinish"); },
                    [&] {
                      seen = true;
                      EXPECT_FALSE(PageShows(machine, "frmfour"));
                      EXPECT_FALSE(PageShows(machine, "FrmTwo"));
                    });
  machine.Expect(ui::Answer::kOk, "Backup successfully completed");
  Start(machine, "auto");
  EXPECT_TRUE(seen);
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().lblBackupOptions[5]->bold);
}

// Filling the review page presses on at once, and its timer does so a second time.
TEST(RunModes, AutoWithARunningMailProgramStaysOnTheReviewPage) {
  TestMachine machine;
  GiveDocuments(machine);
  machine.MakeKey("HKEY_CURRENT_USER\\Identities");
  machine.computer().RunProcess("msimn.exe");
  const std::string message = WatchedMessage("Outlook Express");
  machine.Expect(ui::Answer::kOk, message);
  machine.Expect(ui::Answer::kOk, message);
  Start(machine, "auto");
  machine.RunUntilIdle();
  EXPECT_TRUE(PageShows(machine, "frmfour"));
  EXPECT_FALSE(PageShows(machine, "frmFinish"));
  EXPECT_TRUE(machine.app().Get<frmfour>().cmdNext.enabled);
  EXPECT_TRUE(BackupFiles(machine).empty());
}

TEST(RunModes, AutoWithTooLittleSpaceEndsOnTheItemPage) {
  TestMachine machine;
  GiveDocuments(machine);
  machine.computer().SetFreeSpace("C", 1);
  machine.Expect(ui::Answer::kOk,
                 "There is not sufficient space on disk. Please customize backup items or change "
                 "backup location");
  Start(machine, "auto");
  machine.RunUntilIdle();
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_TRUE(PageShows(machine, "FrmTwo"));
  EXPECT_FALSE(PageShows(machine, "frmfour"));
  EXPECT_TRUE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.lblBackupOptions[1]->bold);
  EXPECT_TRUE(welcome.Enabled());
  EXPECT_TRUE(BackupFiles(machine).empty());
}

TEST(RunModes, ClosingTheWindowDuringAnAutomaticRunLeavesNoArchiveAndNoStaging) {
  TestMachine machine;
  GiveDocuments(machine);
  for (int i = 0; i < 50; ++i) {
    machine.WriteFile(machine.Documents() + "\\many\\" + std::to_string(i) + ".txt", "text");
  }
  machine.ui().When(
      [&] {
        return PageShows(machine, "frmFinish") && machine.session().gFileCollection.Count() > 0;
      },
      [&] { machine.app().Get<FrmWelcome>().on_close_request(); });
  Start(machine, "auto");
  machine.RunUntilIdle();
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_EQ(machine.AllBelow(machine.AppData() + "\\Tarnwick\\Quorvale\\Backup"),
            std::vector<std::string>{});
  EXPECT_EQ(machine.app().Loaded<FrmWelcome>(), nullptr);
  EXPECT_EQ(machine.GetValue(kHistory, "Last Backup"), std::nullopt);
}

TEST(RunModes, ClosingTheWindowBeforeTheWordIsReadEndsTheRun) {
  for (const char* word : {"auto", "qbackup", "custom"}) {
    TestMachine machine;
    GiveDocuments(machine);
    machine.ui().When(
        [&] {
          return machine.app().Loaded<FrmWelcome>() != nullptr &&
                 machine.app().Loaded<FrmWelcome>()->Visible();
        },
        [&] { machine.app().Get<FrmWelcome>().on_close_request(); });
    Start(machine, word);
    EXPECT_TRUE(machine.app().Ended()) << word;
    EXPECT_TRUE(machine.app().LoadedForms().empty()) << word;
    EXPECT_TRUE(BackupFiles(machine).empty()) << word;
  }
}

// --- A second copy ------------------------------------------------------------------------------

TEST(RunModes, ASecondStartWithoutAWordGivesWay) {
  TestMachine machine;
  machine.faults().system.SetOtherCopyRuns(true);
  Start(machine);
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_EQ(machine.host().processes().activations(), 1);
  const FrmWelcome* welcome = machine.app().Loaded<FrmWelcome>();
  EXPECT_TRUE(welcome == nullptr || !welcome->Visible());
}

TEST(RunModes, ASecondStartWithAutoRunsABackupBesideTheFirst) {
  TestMachine machine;
  GiveDocuments(machine);
  machine.faults().system.SetOtherCopyRuns(true);
  machine.Expect(ui::Answer::kOk, "Backup successfully completed");
  Start(machine, "auto");
  machine.RunUntilIdle();
  EXPECT_FALSE(machine.app().Ended());
  EXPECT_EQ(machine.host().processes().activations(), 0);
  EXPECT_EQ(BackupFiles(machine).size(), 1u);
}

// --- Raised rights ------------------------------------------------------------------------------

TEST(Elevation, OnOtherSystemsNoRestartEverHappens) {
  for (const char* like : {"95", "98", "me", "nt40", "2000", "xp"}) {
    TestMachine machine(like);
    Start(machine);
    machine.Click(machine.app().Get<FrmWelcome>().cmdWC_Restore);
    EXPECT_TRUE(PageShows(machine, "frmROne")) << like;
    machine.Click(machine.app().Get<FrmWelcome>().CmdWC_Home);
    machine.Do([&] { machine.app().Get<FrmWelcome>().QuickLink(0); });
    EXPECT_TRUE(PageShows(machine, "frmfour")) << like;
    EXPECT_EQ(CountRunas(machine), 0u) << like;
    EXPECT_FALSE(machine.Exists(HandOver(machine))) << like;
  }
}

TEST(Elevation, AcceptedTheQuickLinkEndsThisCopyAndLeavesTheHandOverFile) {
  TestMachine machine("vista");
  machine.computer().RefuseElevation(false);
  Start(machine);
  machine.Do([&] { machine.app().Get<FrmWelcome>().QuickLink(0); });
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_EQ(CountRunas(machine), 1u);
  EXPECT_TRUE(EndsWithNoCase(machine.computer().Started().back(), "\\Quorvale.exe|qvlrunasadmin"));
  const std::string text = machine.ReadFile(HandOver(machine));
  EXPECT_TRUE(Contains(text, "<BackupType>quickbackup</BackupType>")) << text;
  EXPECT_TRUE(Contains(text, "<BackupName>Backup file</BackupName>")) << text;
  EXPECT_EQ(machine.app().FindLoaded("FrmQuickSteps"), nullptr);
  EXPECT_TRUE(machine.Boxes().empty());
}

TEST(Elevation, RefusedTheHandOverFileIsGoneAndTheRunIsAlive) {
  TestMachine machine("vista");
  machine.computer().RefuseElevation();
  Start(machine);
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  machine.Expect(ui::Answer::kOk, kRefused);
  machine.Do([&] { welcome.QuickLink(0); });
  EXPECT_FALSE(machine.app().Ended());
  EXPECT_TRUE(welcome.mQuickCancelled);
  EXPECT_TRUE(welcome.Enabled());
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
  EXPECT_FALSE(PageShows(machine, "frmfour"));
  EXPECT_FALSE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.cmdWC_TakeBackup.enabled);
  EXPECT_EQ(machine.ui().boxes.back().request.icon, ui::Icon::kInformation);
}

TEST(Elevation, ARestoreIsGuardedTheSameWay) {
  TestMachine machine("vista");
  machine.computer().RefuseElevation();
  Start(machine);
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  machine.Expect(ui::Answer::kOk, kRefused);
  machine.Click(welcome.cmdWC_Restore);
  EXPECT_FALSE(PageShows(machine, "frmROne"));
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
  EXPECT_TRUE(welcome.cmdWC_Restore.enabled);

  machine.computer().RefuseElevation(false);
  machine.Click(welcome.cmdWC_Restore);
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_TRUE(Contains(machine.ReadFile(HandOver(machine)), "<BackupType>Restore</BackupType>"));

  machine.Restart("qvlrunasadmin");
  machine.Do([&] { SubMain(machine.app()); });
  EXPECT_TRUE(PageShows(machine, "frmROne"));
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Enabled());
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
  EXPECT_FALSE(machine.app().Ended());
}

TEST(Elevation, TheWordsOfTheSchedulerAreRefusedInSilenceBeyondTheOneMessage) {
  for (const char* word : {"qbackup", "auto"}) {
    TestMachine machine("vista");
    machine.computer().RefuseElevation();
    machine.Expect(ui::Answer::kOk, kRefused);
    Start(machine, word);
    EXPECT_EQ(machine.Boxes().size(), 1u) << word;
    EXPECT_FALSE(PageShows(machine, "frmfour")) << word;
    EXPECT_FALSE(machine.app().Ended()) << word;
  }
}

TEST(Elevation, AutoHandsItsWordOverAndTheTwinRunsTheBackup) {
  TestMachine machine("vista");
  GiveDocuments(machine);
  machine.computer().RefuseElevation(false);
  Start(machine, "auto");
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_TRUE(Contains(machine.ReadFile(HandOver(machine)), "<BackupType>auto</BackupType>"));
  machine.Restart("qvlrunasadmin");
  machine.Expect(ui::Answer::kOk, "Backup successfully completed");
  machine.Do([&] { SubMain(machine.app()); });
  machine.RunUntilIdle();
  EXPECT_EQ(BackupFiles(machine).size(), 1u);
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

// The copy with raised rights starts as this user.
void RestartRaisedAs(TestMachine& machine, const std::string& user, const std::string& app_data) {
  machine.SetUser(user);
  machine.computer().SetEnvironment("appdata", app_data);
  machine.Restart("qvlrunasadmin");
  machine.Do([&] { SubMain(machine.app()); });
}

std::string RightsOf(const std::string& user) {
  return "The administrator privileges are those of another user (" + user +
         "). Nothing has been done, as it would have been done with that user's data. Anna needs "
         "administrator privileges of his or her own for it.";
}

constexpr char kSharedData[] = "C:\\ProgramData";
constexpr char kRequest[] = "C:\\ProgramData\\Tarnwick\\Quorvale\\Rights for Anna.txt";

TEST(Elevation, AnotherUsersRightsSaveNothingOfHis) {
  TestMachine machine("vista");
  GiveDocuments(machine);
  machine.computer().SetEnvironment("allusersprofile", kSharedData);
  Start(machine, "auto");
  EXPECT_TRUE(machine.app().Ended());
  machine.Expect(ui::Answer::kOk, RightsOf("Admin"));
  RestartRaisedAs(machine, "Admin", "C:\\Users\\Admin\\AppData\\Roaming");
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_FALSE(PageShows(machine, "frmfour"));
  EXPECT_TRUE(BackupFiles(machine).empty());
  EXPECT_FALSE(machine.Exists(kRequest));
}

// A profile of the same name on another computer of the network is another user.
TEST(Elevation, TheSameNameWithAnotherDataFolderIsAnotherUser) {
  TestMachine machine("vista");
  machine.computer().SetEnvironment("allusersprofile", kSharedData);
  Start(machine);
  machine.Click(machine.app().Get<FrmWelcome>().cmdWC_Restore);
  machine.Expect(ui::Answer::kOk, RightsOf("Anna"));
  RestartRaisedAs(machine, "Anna", "C:\\Users\\Anna.OFFICE\\AppData\\Roaming");
  EXPECT_TRUE(machine.app().Ended());
  EXPECT_FALSE(PageShows(machine, "frmROne"));
}

TEST(Elevation, TheSameUsersRequestIsTakenAndLeavesNothing) {
  TestMachine machine("vista");
  machine.computer().SetEnvironment("allusersprofile", kSharedData);
  Start(machine);
  machine.Click(machine.app().Get<FrmWelcome>().cmdWC_Restore);
  EXPECT_TRUE(machine.Exists(kRequest));
  machine.Restart("qvlrunasadmin");
  machine.Do([&] { SubMain(machine.app()); });
  EXPECT_TRUE(PageShows(machine, "frmROne"));
  EXPECT_FALSE(machine.Exists(kRequest));
}

TEST(Elevation, RefusedRightsLeaveNoRequest) {
  TestMachine machine("vista");
  machine.computer().SetEnvironment("allusersprofile", kSharedData);
  machine.computer().RefuseElevation();
  Start(machine);
  machine.Expect(ui::Answer::kOk, kRefused);
  machine.Click(machine.app().Get<FrmWelcome>().cmdWC_Restore);
  EXPECT_FALSE(machine.Exists(kRequest));
}

TEST(Elevation, TheOpenedBackupIsChosenInTheCopyWithRaisedRights) {
  TestMachine machine("vista");
  machine.WriteFile("D:\\Zoë.obk", "a backup");
  Start(machine, "\"D:\\Zoë.obk\"");
  machine.Click(machine.app().Get<FrmWelcome>().cmdWC_Restore);
  EXPECT_TRUE(machine.app().Ended());
  machine.Restart("qvlrunasadmin");
  machine.Do([&] { SubMain(machine.app()); });
  ASSERT_TRUE(PageShows(machine, "frmROne"));
  EXPECT_EQ(machine.app().Get<frmROne>().txtpath.text.get(), "D:\\Zoë.obk");
}

// --- The replay ---------------------------------------------------------------------------------

TEST(ResumeAfterElevation, WithoutAFileTheRunStaysOnTheHomePage) {
  TestMachine machine("vista");
  Start(machine, "qvlrunasadmin");
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Visible());
  EXPECT_FALSE(machine.app().Get<FrmWelcome>().PicMainBackupBase.visible);
  // This run counts as one with raised rights.
  machine.Click(machine.app().Get<FrmWelcome>().cmdWC_Restore);
  EXPECT_TRUE(PageShows(machine, "frmROne"));
  EXPECT_EQ(CountRunas(machine), 0u);
}

TEST(ResumeAfterElevation, ADamagedFileReplaysNothingAndIsRemoved) {
  for (const char* text : {"", "not a settings file", "<?xml version='1.0'?>\r\n<BackupSettings>",
                           "<BackupType>quickbackup"}) {
    TestMachine machine("vista");
    machine.WriteFile(HandOver(machine), text);
    Start(machine, "qvlrunasadmin");
    EXPECT_FALSE(machine.app().Get<FrmWelcome>().PicMainBackupBase.visible) << text;
    EXPECT_FALSE(machine.Exists(HandOver(machine))) << text;
  }
}

TEST(ResumeAfterElevation, AnUnknownTypeReplaysNothing) {
  TestMachine machine("vista");
  WriteHandOver(machine, "custom");  // the word is "Custom"
  Start(machine, "qvlrunasadmin");
  EXPECT_FALSE(machine.app().Get<FrmWelcome>().PicMainBackupBase.visible);
  EXPECT_EQ(machine.app().Get<frmOne>().txtBackupname.text.get(), "Handed over");
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

TEST(ResumeAfterElevation, CustomComesBackToTheItemPageWithTheJobsName) {
  TestMachine machine("vista");
  GiveDocuments(machine);
  WriteHandOver(machine, "Custom");
  // Nothing is ticked in this file, so the item page has something to say about it.
  Start(machine, "qvlrunasadmin");
  machine.TakeUnexpected();
  EXPECT_TRUE(PageShows(machine, "FrmTwo"));
  EXPECT_EQ(machine.app().Get<frmOne>().txtBackupname.text.get(), "Handed over");
  EXPECT_TRUE(machine.app().Get<frmOne>().OptCustBackup.value);
  EXPECT_FALSE(machine.app().Get<FrmWelcome>().cmdWC_TakeBackup.enabled);
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

TEST(ResumeAfterElevation, QuickPreparesTheReviewUnderTheJobsName) {
  TestMachine machine("vista");
  GiveDocuments(machine);
  WriteHandOver(machine, "Quick");
  Start(machine, "qvlrunasadmin");
  EXPECT_TRUE(PageShows(machine, "frmfour"));
  EXPECT_EQ(machine.session().gBackupFileName, "Handed over.obk");
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().lblBackupOptions[4]->bold);
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

TEST(ResumeAfterElevation, QuickbackupPreparesTheReviewPage) {
  TestMachine machine("vista");
  GiveDocuments(machine);
  WriteHandOver(machine, "quickbackup");
  Start(machine, "qvlrunasadmin");
  EXPECT_TRUE(PageShows(machine, "frmfour"));
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Enabled());
  EXPECT_TRUE(BackupFiles(machine).empty());
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

TEST(ResumeAfterElevation, AutoRunsTheBackup) {
  TestMachine machine("vista");
  GiveDocuments(machine);
  WriteHandOver(machine, "auto");
  machine.Expect(ui::Answer::kOk, "Backup successfully completed");
  Start(machine, "qvlrunasadmin");
  machine.RunUntilIdle();
  EXPECT_EQ(BackupFiles(machine).size(), 1u);
}

TEST(ResumeAfterElevation, RestoreOpensTheRestorePages) {
  TestMachine machine("vista");
  WriteHandOver(machine, "Restore");
  Start(machine, "qvlrunasadmin");
  FrmWelcome& welcome = machine.app().Get<FrmWelcome>();
  EXPECT_TRUE(PageShows(machine, "frmROne"));
  EXPECT_TRUE(welcome.ImgRestoreGradient.visible);
  EXPECT_TRUE(welcome.Enabled());
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

TEST(ResumeAfterElevation, AScheduleWithoutAJobNameIsRead) {
  TestMachine machine("vista");
  WriteHandOver(machine, "Schedule", "");
  Start(machine, "qvlrunasadmin");
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Enabled());
  EXPECT_EQ(machine.app().Loaded<frmOne>(), nullptr);
  EXPECT_FALSE(machine.Exists(HandOver(machine)));
}

}  // namespace
}  // namespace quorvale
