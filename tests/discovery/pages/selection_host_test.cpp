// The commit of the ticks: what is refused, what is frozen, what is measured, how rights are
// raised.
#include <gtest/gtest.h>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/program/ModGlobal.h"
#include "discovery/seed.h"

namespace quorvale::discovery_test {
namespace {

constexpr char kAccounts[] = "Outlook Express\\Account Settings";
constexpr char kInbox[] = "Outlook Express\\Email Messages\\Inbox.dbx";
constexpr char kOtherFolders[] = "Outlook Express\\Email Messages\\Other Mail Folders";
constexpr char kFolderIndex[] = "Outlook Express\\Email Messages\\Other Mail Folders\\Folders.dbx";
constexpr char kRefusedRights[] =
    "Administrator privileges are required for this action. You do not have sufficient access "
    "privileges to perform this action.";

// The key of a selected path; "not selected" if it is not in the selection.
std::string SelectedKey(TestMachine& machine, const std::string& path) {
  const Session& session = machine.session();
  for (size_t i = 0; i < session.gBackupItemPaths.size(); ++i) {
    if (session.gBackupItemPaths[i] == path) return session.gBackupItemKeys[i];
  }
  return "not selected";
}

bool IsSelected(TestMachine& machine, const std::string& path) {
  return SelectedKey(machine, path) != "not selected";
}

void ExpectStays(TestMachine& machine, const std::string& message) {
  FrmTwo& page = OpenPage(machine);
  page.Show();
  if (!message.empty()) machine.Expect(ui::Answer::kOk, message);
  machine.Click(page.cmdNext);
  EXPECT_TRUE(page.Visible());
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Enabled());
  frmThree* next = machine.app().Loaded<frmThree>();
  EXPECT_FALSE(next != nullptr && next->Visible());
}

void ExpectGoesOn(TestMachine& machine) {
  FrmTwo& page = OpenPage(machine);
  page.Show();
  machine.Click(page.cmdNext);
  EXPECT_FALSE(page.Visible());
  EXPECT_TRUE(machine.app().Get<frmThree>().Visible());
}

// savedetails ------------------------------------------------------------------------------------

TEST(SaveDetails, FreezesTickedNodesInTheOrderOfTheTree) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, kInbox);
  EXPECT_TRUE(page.savedetails());
  EXPECT_EQ(machine.session().gBackupItemPaths,
            (std::vector<std::string>{"Outlook Express", "Outlook Express\\Account Settings",
                                      "Outlook Express\\Account Settings\\Office mail",
                                      "Outlook Express\\Account Settings\\Portal",
                                      "Outlook Express\\Account Settings\\News server",
                                      "Outlook Express\\Account Settings\\Directory",
                                      "Outlook Express\\Email Messages", kInbox}));
  EXPECT_EQ(SelectedKey(machine, kInbox), StoreFolder(machine) + "\\Inbox.dbx");
  EXPECT_EQ(SelectedKey(machine, "Outlook Express"), "Outlook Express");
  EXPECT_EQ(machine.session().gBackupFolder, page.txtpath.text.get());
}

TEST(SaveDetails, ReplacesTheSelectionOfAnEarlierJob) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.session().gBackupItemPaths = {"old"};
  machine.session().gBackupItemKeys = {"old"};
  page.savedetails();
  EXPECT_TRUE(machine.session().gBackupItemPaths.empty());
  EXPECT_TRUE(machine.session().gBackupItemKeys.empty());
}

TEST(SaveDetails, TicksAccountSettingsUnderATickedParent) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, kInbox);
  page.savedetails();
  EXPECT_TRUE(NodeAt(page, kAccounts)->Checked());
}

TEST(SaveDetails, DataFileKeysLoseTheirRowNumbers) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"),
              {{"Personal", "C:\\Mail\\Smith, Anna.pst"}, {"Mailbox", ""}});
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Microsoft Outlook");
  page.savedetails();
  const std::string files = "Microsoft Outlook\\Identities\\Outlook\\Account Emails-Files";
  EXPECT_EQ(SelectedKey(machine, files + "\\Personal"), "C:\\Mail\\Smith, Anna.pst");
  EXPECT_EQ(SelectedKey(machine, files + "\\Mailbox"), "");
}

TEST(SaveDetails, ProfileWithACommaInItsNameKeepsItsWholeRegistryKey) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Sales"), {});
  SeedProfile(machine, NtProfile("Sales, 2"), {});
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Microsoft Outlook\\Identities\\Sales, 2");
  page.savedetails();
  EXPECT_EQ(SelectedKey(machine, "Microsoft Outlook\\Identities\\Sales, 2\\Account Settings"),
            NtProfile("Sales, 2"));
}

TEST(SaveDetails, IdentitiesCarryTheVersion) {
  TestMachine machine("xp");
  SeedOutlook(machine, "Outlook.Application.11");
  SeedProfile(machine, NtProfile("Outlook"), {});
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Microsoft Outlook\\Identities");
  page.savedetails();
  EXPECT_EQ(SelectedKey(machine, "Microsoft Outlook\\Identities"),
            "Identities:Outlook.Application.11");
}

TEST(SaveDetails, CommaInAnAddedFolderNamedLikeTheProductStays) {
  TestMachine machine("xp");
  machine.MakeFolder("C:\\Microsoft Outlook\\old, 11");
  FrmTwo& page = OpenPage(machine);
  machine.ui().ExpectFolder("C:\\Microsoft Outlook\\old, 11");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add Other Folders")); });
  page.savedetails();
  EXPECT_EQ(SelectedKey(machine, "Add Other Folders\\C:\\Microsoft Outlook\\old, 11"),
            "C:\\Microsoft Outlook\\old, 11");
}

TEST(SaveDetails, OtherMailFoldersTakeTheirIndexAlongThoughItIsUnticked) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, kOtherFolders);
  machine.Tick(page.tvwMain, kFolderIndex, false);
  ASSERT_FALSE(NodeAt(page, kFolderIndex)->Checked());
  page.savedetails();
  EXPECT_EQ(SelectedKey(machine, kFolderIndex), StoreFolder(machine) + "\\Folders.dbx");
  EXPECT_FALSE(NodeAt(page, kFolderIndex)->Checked());
}

TEST(SaveDetails, IndexStaysWhereNoOtherMailFolderIsTicked) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, kInbox);
  page.savedetails();
  EXPECT_FALSE(IsSelected(machine, kFolderIndex));
}

TEST(SaveDetails, MeasuresTheSelectionInMegabytes) {
  TestMachine machine("xp");
  machine.WriteFile("C:\\Big\\a.bin", std::string(2 * 1048576, 'a'));
  FrmTwo& page = OpenPage(machine);
  machine.ui().ExpectFile("C:\\Big\\a.bin");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add More Files")); });
  page.savedetails();
  EXPECT_DOUBLE_EQ(machine.session().gSelectedFolderBytes, 2097152);
  EXPECT_DOUBLE_EQ(machine.session().gBackupTotalSize, 2);
  EXPECT_DOUBLE_EQ(machine.session().gBackupEstimatedSize, 1.55);
}

// sizeCount and the drive ------------------------------------------------------------------------

class SizeCount : public testing::Test {
 protected:
  double Size(const std::vector<std::string>& keys) {
    FrmTwo& page = OpenPage(machine);
    machine.session().gBackupItemKeys = keys;
    const double size = page.sizeCount();
    EXPECT_DOUBLE_EQ(machine.session().gSelectedFolderBytes, size);
    return size;
  }
  TestMachine machine{"xp"};
};

TEST_F(SizeCount, AddsFilesAndWholeFolders) {
  machine.WriteFile("C:\\Data\\one.txt", "12345");
  machine.WriteFile("C:\\Data\\Deep\\two.txt", "123");
  EXPECT_DOUBLE_EQ(Size({"C:\\Data\\one.txt", "  C:\\Data  "}), 5 + 8);
  EXPECT_DOUBLE_EQ(Size({"C:\\Data\\"}), 8);
}

TEST_F(SizeCount, RegistryKeysAndBareWordsCostNothing) {
  EXPECT_DOUBLE_EQ(Size({"HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs",
                         "Email Messages", "", "x"}),
                   0);
}

TEST_F(SizeCount, FileWithoutAThreeLetterExtensionCountsNothing) {
  machine.WriteFile("C:\\Data\\page.html", "12345");
  machine.WriteFile("C:\\Data\\readme", "12345");
  EXPECT_DOUBLE_EQ(Size({"C:\\Data\\page.html", "C:\\Data\\readme"}), 0);
}

TEST_F(SizeCount, FolderWithADotInTheFourthPlaceFromTheEndCountsNothing) {
  machine.WriteFile("C:\\Data\\Version1.25\\x.txt", "12345");
  machine.WriteFile("C:\\Data\\Release.old\\x.txt", "12345");
  EXPECT_DOUBLE_EQ(Size({"C:\\Data\\Release.old"}), 0);
  EXPECT_DOUBLE_EQ(Size({"C:\\Data\\Version1.25"}), 5);
}

TEST_F(SizeCount, PlacesAreCountedInCharacters) {
  machine.WriteFile("C:\\Data\\x.\u00e4\u00f6\u00fc", "12345");
  EXPECT_DOUBLE_EQ(Size({"C:\\Data\\x.\u00e4\u00f6\u00fc"}), 5);
}

TEST_F(SizeCount, WhatIsGoneCountsNothing) {
  EXPECT_DOUBLE_EQ(Size({"C:\\Gone\\a.txt", "C:\\Gone", "Q:\\"}), 0);
}

TEST_F(SizeCount, DriveRootCountsItsUsedBytes) {
  machine.computer().SetDrive("D", DriveKind::kFixed, 1000);
  FrmTwo& page = OpenPage(machine);
  const std::optional<DiskSpace> space = machine.files().Space("D:\\");
  ASSERT_TRUE(space.has_value());
  const double used =
      static_cast<double>(space->total_bytes) - static_cast<double>(space->free_bytes);
  EXPECT_DOUBLE_EQ(page.OnlyDriveSize("D:\\"), used);
  EXPECT_DOUBLE_EQ(Size({"D:\\"}), used);
}

TEST_F(SizeCount, FreeBytesComeFromTheDrive) {
  machine.computer().SetDrive("D", DriveKind::kFixed, 123456);
  FrmTwo& page = OpenPage(machine);
  page.getDriveSize("D:");
  EXPECT_DOUBLE_EQ(machine.session().gFreeBytes, 123456);
  EXPECT_FALSE(machine.session().gDriveInfoFailed);
  page.getDriveSize("Q:");
  EXPECT_TRUE(machine.session().gDriveInfoFailed);
}

// cmdNext ----------------------------------------------------------------------------------------

TEST(FrmTwoNext, MailOfAProfileWithoutItsAccountSettingsIsRefused) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Personal", "C:\\a.pst"}});
  FrmTwo& page = OpenPage(machine);
  const std::string identity = "Microsoft Outlook\\Identities\\Outlook";
  machine.Tick(page.tvwMain, identity + "\\Account Emails-Files\\Personal");
  machine.Tick(page.tvwMain, identity + "\\Account Settings", false);
  ExpectStays(machine, "Please select Account Settings for proper backup");
  EXPECT_EQ(machine.Boxes().back(), "Please select Account Settings for proper backup");
}

TEST(FrmTwoNext, StoresWithoutAccountSettingsAreRefused) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.Tick(OpenPage(machine).tvwMain, kInbox);
  ExpectStays(machine, "Please select Account Settings for proper backup");
}

TEST(FrmTwoNext, EmptyDestinationIsRefused) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Other Files");
  page.txtpath.text = "   ";
  ExpectStays(machine, "Please Enter Backup Destination");
  EXPECT_FALSE(machine.session().gAnyItemChecked);
}

TEST(FrmTwoNext, NothingTickedIsRefusedAndClosesTheLaterPages) {
  TestMachine machine("xp");
  ExpectStays(machine, "No item is selected for Backup. Check the item to proceed");
  EXPECT_EQ(machine.ui().boxes.back().request.title, "Quorvale");
  EXPECT_FALSE(machine.app().Get<frmThree>().cmdNext.enabled);
  EXPECT_FALSE(machine.app().Get<frmfour>().cmdNext.enabled);
}

TEST(FrmTwoNext, FolderThatCannotBeMadeEndsWithTwoMessages) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Other Files");
  page.txtpath.text = "Q:\\Safe\\Mail";
  machine.Expect(ui::Answer::kOk, "Sorry Could not make the directory [Q:\\Safe\\Mail] path. ");
  ExpectStays(machine, "No item is selected for Backup. Check the item to proceed");
}

TEST(FrmTwoNext, FileInTheWayOfTheDestinationIsRefused) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile("C:\\Safe", "a file");
  machine.Tick(page.tvwMain, "Other Files");
  page.txtpath.text = "C:\\Safe";
  machine.Expect(ui::Answer::kOk, "Sorry Could not make the directory [C:\\Safe\\] path. ");
  ExpectStays(machine, "No item is selected for Backup. Check the item to proceed");
  EXPECT_EQ(machine.ReadFile("C:\\Safe"), "a file");
}

TEST(FrmTwoNext, DriveThatTellsNoSpaceEndsInSilence) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile(machine.Documents() + "\\a.txt", "x");
  machine.Tick(page.tvwMain, "Other Files");
  machine.session().gDriveInfoFailed = true;  // as the failed call leaves it
  ExpectStays(machine, "");
  EXPECT_FALSE(machine.session().gDriveInfoFailed);
}

TEST(FrmTwoNext, TooLittleSpaceIsRefusedAndAsksForAnotherFolder) {
  TestMachine machine("xp");
  machine.computer().SetDrive("D", DriveKind::kFixed, 2000);
  machine.MakeFolder("C:\\Safe");
  machine.WriteFile(machine.Documents() + "\\a.txt", std::string(5000, 'x'));
  FrmTwo& page = OpenPage(machine);
  page.txtpath.text = "D:\\Safe";
  machine.Tick(page.tvwMain, "Other Files");
  machine.ui().ExpectFolder("C:\\Safe");
  ExpectStays(machine,
              "There is not sufficient space on disk. Please customize backup items or change "
              "backup location");
  EXPECT_EQ(page.txtpath.text.get(), "C:\\Safe");
}

TEST(FrmTwoNext, SelectionOfRegistryKeysPassesTheSpaceTestOfAFullDrive) {
  TestMachine machine("xp");
  machine.computer().SetDrive("D", DriveKind::kFixed, 0);
  FrmTwo& page = OpenPage(machine);
  page.txtpath.text = "D:\\Safe";
  machine.Tick(page.tvwMain, "Internet Explorer\\Typed Urls");
  ExpectGoesOn(machine);
  EXPECT_DOUBLE_EQ(machine.session().gSelectedFolderBytes, 0);
}

TEST(FrmTwoNext, RunningMailProgramIsRefusedInAnyCase) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {});
  machine.computer().RunProcess("OUTLOOK.EXE");
  machine.Tick(OpenPage(machine).tvwMain, "Microsoft Outlook");
  ExpectStays(machine, "Please close Microsoft Outlook to continue.");
  EXPECT_TRUE(machine.ui().boxes.back().request.to_foreground);
  EXPECT_EQ(machine.ui().boxes.back().request.icon, ui::Icon::kInformation);

  machine.computer().EndProcess("OUTLOOK.EXE");
  ExpectGoesOn(machine);
}

TEST(FrmTwoNext, TwoRunningMailProgramsGiveOneMessage) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {});
  machine.computer().RunProcess("OUTLOOK.EXE", 10);
  machine.computer().RunProcess("msimn.exe", 11);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Microsoft Outlook");
  machine.Tick(page.tvwMain, "Outlook Express");
  ExpectStays(machine, "Please close Outlook Express to continue.");
  EXPECT_EQ(machine.Boxes().size(), 1u);
}

TEST(FrmTwoNext, RunningWindowsMailIsRefused) {
  TestMachine machine("vista");
  machine.computer().RunProcess("WinMail.exe");
  machine.Tick(OpenPage(machine).tvwMain, "Windows Mail");
  ExpectStays(machine, "Please close Windows Mail to continue.");
}

TEST(FrmTwoNext, RunningMailProgramIsNoObstacleWithoutATickedMailNode) {
  TestMachine machine("xp");
  machine.computer().RunProcess("msimn.exe");
  machine.Tick(OpenPage(machine).tvwMain, "Other Files");
  ExpectGoesOn(machine);
}

TEST(FrmTwoNext, ProcessListHasANumberedRowForEachProcess) {
  TestMachine machine("xp");
  machine.computer().RunProcess("one.exe", 7);
  FrmTwo& page = OpenPage(machine);
  page.processeslisting();
  ASSERT_FALSE(page.LvW.rows().empty());
  EXPECT_EQ(page.LvW.columns, (std::vector<std::string>{"Processes", "ID"}));
  EXPECT_EQ(page.LvW.rows().front().key, "1first");
  EXPECT_EQ(page.LvW.rows().back().cells, (std::vector<std::string>{"one.exe", "7"}));
}

TEST(FrmTwoNext, HandsOverToTheOptionsPage) {
  TestMachine machine("xp");
  machine.app().Get<FrmWelcome>();
  machine.session().gLogDetails = "True";
  machine.app().Get<frmOne>().txtBackupname.text = "My mail";
  machine.app().Get<frmOne>().savedetails();
  FrmTwo& page = OpenPage(machine);
  page.txtpath.text = "C:\\Safe\\Deep";
  machine.Tick(page.tvwMain, "Other Files");
  machine.app().Get<frmfour>().cmdNext.enabled = false;
  machine.app().Get<frmThree>().cmdNext.enabled = false;
  machine.session().gLogDetails = "True";
  ExpectGoesOn(machine);
  EXPECT_TRUE(machine.Exists("C:\\Safe\\Deep"));
  EXPECT_EQ(machine.session().gBackupFolder, "C:\\Safe\\Deep");
  EXPECT_TRUE(machine.session().gAnyItemChecked);
  EXPECT_EQ(machine.app().Get<FrmBackupMedia>().txtpath.text.get(), "C:\\Safe\\Deep");
  EXPECT_EQ(machine.app().Get<frmThree>().txtcurrent.text.get(), "My mail");
  EXPECT_EQ(machine.app().Get<frmThree>().chklogdetails.value.get(), 1);
  EXPECT_TRUE(machine.app().Get<frmfour>().cmdNext.enabled);
  EXPECT_TRUE(machine.app().Get<frmThree>().cmdNext.enabled);
  const auto& steps = machine.app().Get<FrmWelcome>().lblBackupOptions;
  for (size_t step = 0; step < steps.size(); ++step) {
    EXPECT_EQ(steps[step]->bold.get(), step == 2) << step;
  }
}

TEST(FrmTwoNext, BackKeepsTheTicks) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Other Files");
  page.Show();
  machine.Click(page.cmdBack);
  EXPECT_FALSE(page.Visible());
  EXPECT_TRUE(machine.app().Get<frmOne>().Visible());
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().lblBackupOptions[0]->bold);
  EXPECT_TRUE(NodeAt(OpenPage(machine), "Other Files")->Checked());
}

TEST(FrmTwoNext, CancelDropsTheTicks) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Other Files");
  page.Show();
  machine.Click(page.cmdCancel);
  EXPECT_EQ(machine.app().Loaded<FrmTwo>(), nullptr);
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().Visible());
  EXPECT_FALSE(machine.app().Get<FrmWelcome>().PicMainBackupBase.visible);
  EXPECT_FALSE(NodeAt(OpenPage(machine), "Other Files")->Checked());
}

TEST(FrmTwoNext, FirstLoadNamesAMainBackup) {
  TestMachine machine("xp");
  machine.app().Get<FrmWelcome>();
  machine.session().gBackupProcessName = "";
  OpenPage(machine);
  EXPECT_EQ(machine.session().gBackupProcessName, "Main Backup");
  EXPECT_EQ(machine.session().gBackupProcessDesc,
            "Save your current settings and data for later restore to this or other computer.");
  EXPECT_EQ(machine.session().gBackupName, "My Backup");
}

// Raised rights ----------------------------------------------------------------------------------

TEST(FrmTwoRights, TickedBrowserSettingsNeedThemOnVista) {
  TestMachine machine("vista");
  machine.computer().RefuseElevation(false);
  FrmTwo& page = OpenPage(machine);
  machine.Tick(page.tvwMain, "Internet Explorer\\IESettings");
  machine.Click(page.cmdNext);
  EXPECT_TRUE(machine.app().Ended());
  const std::vector<std::string> started = machine.computer().Started();
  ASSERT_EQ(started.size(), 1u);
  EXPECT_TRUE(started[0].starts_with("Runas|"));
  EXPECT_TRUE(started[0].ends_with("\\Quorvale.exe|qvlrunasadmin"));
  EXPECT_TRUE(machine.Exists(HandOverPath(machine.app())));
}

TEST(FrmTwoRights, AreNotNeededForFoldersOnVista) {
  TestMachine machine("vista");
  machine.Tick(OpenPage(machine).tvwMain, "Other Files");
  ExpectGoesOn(machine);
  EXPECT_TRUE(machine.computer().Started().empty());
}

TEST(FrmTwoRights, AreNeverAskedForBeforeVista) {
  TestMachine machine("xp");
  machine.Tick(OpenPage(machine).tvwMain, "Internet Explorer");
  ExpectGoesOn(machine);
  EXPECT_TRUE(machine.computer().Started().empty());
}

TEST(FrmTwoRights, RefusalLeavesThePageAndNoHandOverFile) {
  TestMachine machine("vista");
  machine.computer().RefuseElevation();
  machine.Tick(OpenPage(machine).tvwMain, "Windows Mail");
  ExpectStays(machine, kRefusedRights);
  EXPECT_EQ(machine.Boxes().back(), kRefusedRights);
  EXPECT_FALSE(machine.app().Ended());
  EXPECT_FALSE(machine.Exists(HandOverPath(machine.app())));
}

TEST(FrmTwoRights, RestartedCopyHasTheSameTicksAndGoesOnByItself) {
  TestMachine machine("vista");
  SeedOutlook(machine, "Outlook.Application.12");
  SeedProfile(machine, NtProfile("Alpha"), {{"Shared", "C:\\shared.pst"}});
  SeedProfile(machine, NtProfile("Beta"), {{"Shared", "C:\\shared.pst"}, {"Own", "C:\\own.pst"}});
  machine.MakeFolder("C:\\Work");
  machine.WriteFile("C:\\Work\\list.txt", "x");
  machine.MakeFolder(machine.Cookies());
  machine.computer().RefuseElevation(false);
  machine.app().Get<FrmWelcome>();
  machine.app().Get<frmOne>().txtBackupname.text = "Whole";
  machine.app().Get<frmOne>().savedetails();
  FrmTwo& page = OpenPage(machine);
  page.txtpath.text = "C:\\Safe";
  const std::string beta = "Microsoft Outlook\\Identities\\Beta";
  machine.Tick(page.tvwMain, beta + "\\Account Emails-Files\\Shared");
  machine.Tick(page.tvwMain, "Internet Explorer\\Cookies");
  machine.Tick(page.tvwMain, "Windows Mail");
  machine.ui().ExpectFolder("C:\\Work");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add Other Folders")); });
  machine.ui().ExpectFile("C:\\Work\\list.txt");
  machine.Do([&] { page.tvwMain.UserClicks(NodeAt(page, "Add More Files")); });
  const std::vector<std::string> ticked = TickedPaths(page.tvwMain);
  machine.Click(page.cmdNext);
  ASSERT_TRUE(machine.app().Ended());

  machine.Restart("qvlrunasadmin");
  machine.Do([&] { machine.app().Get<FrmWelcome>(); });
  FrmTwo* again = machine.app().Loaded<FrmTwo>();
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(TickedPaths(again->tvwMain), ticked);
  EXPECT_EQ(again->txtpath.text.get(), "C:\\Safe");
  EXPECT_TRUE(machine.app().Get<frmThree>().Visible());
  EXPECT_EQ(machine.app().Get<frmThree>().txtcurrent.text.get(), "Whole");
  EXPECT_EQ(SelectedKey(machine, beta + "\\Account Emails-Files\\Shared"), "C:\\shared.pst");
  EXPECT_FALSE(machine.Exists(HandOverPath(machine.app())));
}

// LoadTreeState ----------------------------------------------------------------------------------

std::string StateFile(const std::string& items, const std::string& tail = "") {
  return "<?xml version='1.0'?>\r\n<BackupSettings>\r\n<Main Process='Main Backup'>\r\n"
         "<ProcessDesc>x</ProcessDesc>\r\n<DateTime>1_5_3_2007_9_7</DateTime>\r\n"
         "<BackupFolder>C:\\Old</BackupFolder>\r\n<ItemsForBackup>\r\n" +
         items + "</ItemsForBackup>\r\n" + tail + "</Main>\r\n</BackupSettings>\r\n";
}

TEST(LoadTreeState, DoesNothingWithoutAFile) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile(HandOverPath(machine.app()), "kept");
  page.LoadTreeState("C:\\Gone.xml");
  EXPECT_TRUE(TickedPaths(page.tvwMain).empty());
  EXPECT_TRUE(machine.Exists(HandOverPath(machine.app())));
}

TEST(LoadTreeState, TicksItemsByTheirKeysAndPassesOverUnknownOnes) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile(
      "C:\\state.xml",
      StateFile("<OE Key='" + StoreFolder(machine) + "\\Inbox.dbx' >" + kInbox +
                "\r\n</OE>\r\n<OE Key='C:\\Gone.dbx' >Outlook Express\\Gone\r\n</OE>\r\n"
                "<IE Key='IESettings' >Internet Explorer\\IESettings\r\n</IE>\r\n"));
  page.LoadTreeState("C:\\state.xml");
  EXPECT_EQ(TickedPaths(page.tvwMain), (std::vector<std::string>{kInbox, "Internet Explorer",
                                                                 "Internet Explorer\\IESettings"}));
  EXPECT_EQ(machine.session().gRestoreBackupFolder, "C:\\Old");
}

TEST(LoadTreeState, OtherMailFoldersThemselvesAreTicked) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile("C:\\state.xml", StateFile(std::string("<OE Key='Other Mail Folders' >") +
                                               kOtherFolders + "\r\n</OE>\r\n"));
  page.LoadTreeState("C:\\state.xml");
  EXPECT_EQ(TickedPaths(page.tvwMain), std::vector<std::string>{kOtherFolders});
}

TEST(LoadTreeState, VersionBehindTheColonIsKept) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {});
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile(
      "C:\\state.xml",
      StateFile("<MO Key='Identities:Outlook.Application.11' >Microsoft Outlook\\Identities\r\n"
                "</MO>\r\n<MO Key='Signatures:' >Microsoft Outlook\\Signatures\r\n</MO>\r\n"));
  page.LoadTreeState("C:\\state.xml");
  EXPECT_EQ(machine.session().gRestoreSettingsField, "Outlook.Application.11");
  EXPECT_EQ(TickedPaths(page.tvwMain),
            (std::vector<std::string>{"Microsoft Outlook", "Microsoft Outlook\\Identities",
                                      "Microsoft Outlook\\Signatures"}));
}

TEST(LoadTreeState, AddedFoldersAndFilesComeAnew) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile("C:\\state.xml",
                    StateFile("<AOF Key='C:\\A & B' >Add Other Folders\\C:\\A & B\r\n</AOF>\r\n"
                              "<AMF Key='C:\\c.txt' >Add More Files\\C:\\c.txt\r\n</AMF>\r\n"));
  page.LoadTreeState("C:\\state.xml");
  ui::TreeNode* folder = NodeAt(page, "Add Other Folders\\C:\\A & B");
  ui::TreeNode* file = NodeAt(page, "Add More Files\\C:\\c.txt");
  EXPECT_EQ(folder->Key(), "C:\\A & B");
  EXPECT_EQ(folder->image, "of");
  EXPECT_EQ(file->image, "dc1");
  EXPECT_TRUE(folder->Checked() && file->Checked());
  EXPECT_TRUE(folder->Parent()->Checked() && file->Parent()->Checked());
}

TEST(LoadTreeState, OptionsGoIntoTheSessionInTheirOrder) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  machine.WriteFile(
      "C:\\state.xml",
      StateFile("",
                "<AdvancedSettings>\r\n<LogDetails>True</LogDetails>\r\n"
                "<UseCompression>False</UseCompression>\r\n"
                "<SelfExtractingBackup>9</SelfExtractingBackup>\r\n"
                "<VerifyArchive>abc</VerifyArchive>\r\n"
                "<ProtectWithPassword>True</ProtectWithPassword>\r\n</AdvancedSettings>\r\n"));
  page.LoadTreeState("C:\\state.xml");
  const Session& session = machine.session();
  EXPECT_EQ(session.gRestoreLogDetails, "True");
  EXPECT_EQ(session.gRestoreUseCompression, "False");
  EXPECT_EQ(session.gRestoreSelfExtracting, "9");
  EXPECT_EQ(session.gRestorePassword, "abc");
  EXPECT_EQ(session.gRestoreProtectWithPassword, "True");
}

TEST(LoadTreeState, DamagedFileTicksNothingAndIsRemoved) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  const std::string path = HandOverPath(machine.app());
  for (const char* text : {"", "<?xml", "<Main>", "<Main><a/></Main>", "\xff\xfe\x00"}) {
    machine.WriteFile(path, text);
    page.LoadTreeState(path);
    EXPECT_TRUE(TickedPaths(page.tvwMain).empty());
    EXPECT_FALSE(machine.Exists(path));
  }
}

}  // namespace
}  // namespace quorvale::discovery_test
