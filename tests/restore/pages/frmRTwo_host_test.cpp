#include "restore/pages/frmRTwo.h"

#include <chrono>

#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kProfileKey[] =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\"
    "Windows Messaging Subsystem\\Profiles\\";
constexpr char kSkipsDefault[] =
    "Skiping of Default Profile may get ambigues recovery of Microsoft Outlook setting";

JobArchive FullArchive() {
  JobArchive archive;
  archive.Item("Outlook Express\\Account Settings", "Account Settings")
      .Item("Outlook Express\\Account Settings\\Home", "HKEY_CURRENT_USER\\Software\\Acc\\1")
      .Item("Outlook Express\\Email Messages", "Email Messages")
      .Item("Outlook Express\\Email Messages\\Inbox.dbx", "C:\\Store\\Inbox.dbx")
      .Item("Outlook Express\\Email Messages\\Other Mail Folders", "Other Mail Folders")
      .Item("Outlook Express\\Email Messages\\Other Mail Folders\\Choir.dbx",
            "C:\\Store\\Choir.dbx")
      .Item("Outlook Express\\Email Messages\\Other Mail Folders\\Folders.dbx",
            "C:\\Store\\Folders.dbx")
      .Item("Microsoft Outlook\\Identities", "Identities:Outlook.Application.11")
      .Item("Microsoft Outlook\\Identities\\Work", "Work")
      .Item("Microsoft Outlook\\Identities\\Work\\Account Settings",
            std::string(kProfileKey) + "Work")
      .Item("Microsoft Outlook\\Identities\\Work\\Account Emails-Files", "Account Emails-Files1")
      .Item("Microsoft Outlook\\Identities\\Work\\Account Emails-Files\\Personal Folders",
            "C:\\Mail\\work.pst")
      .Item("Microsoft Outlook\\Identities\\Home (Default)", "Home")
      .Item("Microsoft Outlook\\Identities\\Home (Default)\\Account Settings",
            std::string(kProfileKey) + "Home")
      .Item("Microsoft Outlook\\Identities\\Home (Default)\\Account Emails-Files\\Personal Folders",
            "C:\\Mail\\home.pst")
      .Item("Microsoft Outlook\\Identities\\Home (Default)\\Account Emails-Files\\Mailbox",
            "Exchange Mails")
      .Item("Microsoft Outlook\\Signatures", "Signatures")
      .Item("Microsoft Outlook\\Signatures\\a.htm", "C:\\Sig\\a.htm")
      .Item("Microsoft Outlook\\Offline folders\\x.ost", "C:\\Off\\x.ost")
      .Item("Microsoft Outlook\\Registry Settings\\ProfileOptions",
            "HKEY_CURRENT_USER\\Software\\Opt")
      .Item("Internet Explorer\\Typed Urls", "HKEY_CURRENT_USER\\Software\\Typed")
      .Item("Internet Explorer\\Favorites", "C:\\Fav")
      .Item("Internet Explorer\\IESettings", "IESettings")
      .Item("Internet Explorer\\IESettings\\Local Machine Settings", "HKEY_LOCAL_MACHINE\\X")
      .Item("Windows Mail\\Mails", "C:\\WM\\")
      .Item("Windows Mail\\Account Settings", "Account Settings")
      .Item("Windows Mail\\Account Settings\\WMRegistrySettings", "HKEY_CURRENT_USER\\Software\\WM")
      .Item("Other Files\\My Documents", "C:\\Old\\My Documents\\")
      .Item("Other Files\\My Desktop Files", "C:\\Old\\Desktop\\")
      .Item("Add Other Folders\\D:\\Work\\House", "D:\\Work\\House")
      .Item("Add More Files\\D:\\a & b.txt", "D:\\a & b.txt");
  return archive;
}

std::vector<std::string> Lines(const ui::TreeView& tree) {
  std::vector<std::string> lines;
  for (int i = 1; i <= tree.Count(); ++i) {
    const ui::TreeNode& node = *tree.Node(i);
    lines.push_back(node.FullPath() + "|" + node.Key() + "|" + node.image);
  }
  return lines;
}

TEST(FrmRTwo, TheTreeIsRebuiltFromTheItems) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  const std::string profiles = kProfileKey;
  const std::vector<std::string> expected = {
      "Outlook Express|Outlook Express|oea",
      "Outlook Express\\Account Settings|Account Settings|ma1",
      "Outlook Express\\Account Settings\\Home|HKEY_CURRENT_USER\\Software\\Acc\\1|bkp",
      "Outlook Express\\Email Messages|Email Messages|ma1",
      "Outlook Express\\Email Messages\\Inbox.dbx|C:\\Store\\Inbox.dbx|bkp",
      "Outlook Express\\Email Messages\\Other Mail Folders|Other Mail Folders|ma1",
      "Outlook Express\\Email Messages\\Other Mail Folders\\Choir.dbx|C:\\Store\\Choir.dbx|bkp",
      "Outlook Express\\Email Messages\\Other Mail Folders\\Folders.dbx|C:\\Store\\Folders.dbx|bkp",
      "Microsoft Outlook|Microsoft Outlook|moa",
      "Microsoft Outlook\\Identities|Identities|ma1",
      "Microsoft Outlook\\Identities\\Work|Work|ma1",
      "Microsoft Outlook\\Identities\\Work\\Account Settings|" + profiles + "Work|reg",
      "Microsoft Outlook\\Identities\\Work\\Personal Folders|C:\\Mail\\work.pst,11|bkp",
      "Microsoft Outlook\\Identities\\Home (Default)|Home (Default)|ma1",
      "Microsoft Outlook\\Identities\\Home (Default)\\Account Settings|" + profiles + "Home|reg",
      "Microsoft Outlook\\Identities\\Home (Default)\\Personal Folders|C:\\Mail\\home.pst,12|bkp",
      "Microsoft Outlook\\Identities\\Home (Default)\\Mailbox|Exchange Mails,22|bkp",
      "Microsoft Outlook\\Signatures|Signatures|ma1",
      "Microsoft Outlook\\Signatures\\a.htm|C:\\Sig\\a.htm|bkp",
      "Microsoft Outlook\\Offline folders|Offline folders|ma1",
      "Microsoft Outlook\\Offline folders\\x.ost|C:\\Off\\x.ost|bkp",
      "Microsoft Outlook\\Registry Settings|Registry Settings|ma1",
      "Microsoft Outlook\\Registry Settings\\ProfileOptions|HKEY_CURRENT_USER\\Software\\Opt|reg",
      "Internet Explorer|Internet Explorer|iea",
      "Internet Explorer\\Typed Urls|HKEY_CURRENT_USER\\Software\\Typed|ma1",
      "Internet Explorer\\Favorites|C:\\Fav|ma1",
      "Internet Explorer\\IESettings|IESettings|ma1",
      "Internet Explorer\\IESettings\\Local Machine Settings|HKEY_LOCAL_MACHINE\\X|reg",
      "Other Files|Other Files|af",
      "Other Files\\My Documents|C:\\Old\\My Documents\\|ma1",
      "Other Files\\My Desktop Files|C:\\Old\\Desktop\\|ma1",
      "Added Other Folders|Added Other Folders|aa1",
      "Added Other Folders\\D:\\Work\\House|D:\\Work\\House|ma1",
      "Added More Files|Added More Files|aa1",
      "Added More Files\\D:\\a & b.txt|D:\\a & b.txt|rf"};
  EXPECT_EQ(Lines(wizard.two().tvwMain), expected);
  EXPECT_EQ(machine.session().gRestoreSettingsField, "Outlook.Application.11");
  EXPECT_EQ(machine.session().gRestoreBackupFolder, "C:\\Backups");
  for (int i = 1; i <= wizard.two().tvwMain.Count(); ++i) {
    const ui::TreeNode& node = *wizard.two().tvwMain.Node(i);
    EXPECT_EQ(node.Expanded(), node.Parent() == nullptr) << node.FullPath();
    EXPECT_FALSE(node.Checked());
  }
}

TEST(FrmRTwo, WindowsMailHasARootOnVistaOnly) {
  for (const char* like : {"98", "xp", "vista"}) {
    TestMachine machine(like);
    RestoreWizard wizard(machine);
    wizard.Open(FullArchive().Write(machine));
    const bool vista = std::string(like) == "vista";
    EXPECT_EQ(wizard.two().tvwMain.FindPath("Windows Mail") != nullptr, vista) << like;
    const ui::TreeNode* settings =
        wizard.two().tvwMain.FindPath("Windows Mail\\Account Settings\\WMRegistrySettings");
    EXPECT_EQ(settings != nullptr, vista) << like;
  }
}

TEST(FrmRTwo, AnUntickedStoreIndexComesBackWithTheOtherMailFolders) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.Tick("Outlook Express\\Account Settings");
  wizard.Tick("Outlook Express\\Email Messages\\Other Mail Folders\\Choir.dbx");
  wizard.two().savedetails();
  const std::vector<std::string>& paths = machine.session().gRestoreItemPaths;
  const auto has = [&paths](const std::string& path) {
    return std::find(paths.begin(), paths.end(), path) != paths.end();
  };
  EXPECT_TRUE(has("Outlook Express\\Email Messages\\Other Mail Folders\\Folders.dbx"));
  EXPECT_FALSE(has("Outlook Express\\Email Messages\\Inbox.dbx"));
}

TEST(FrmRTwo, AStoreIndexListedBesideTheInboxComesBackAsWell) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive;
  archive.Item("Outlook Express\\Email Messages\\Folders.dbx", "C:\\Store\\Folders.dbx")
      .Item("Outlook Express\\Email Messages\\Other Mail Folders\\Choir.dbx",
            "C:\\Store\\Choir.dbx");
  wizard.Open(archive.Write(machine));
  wizard.Tick("Outlook Express\\Email Messages\\Other Mail Folders");
  wizard.two().savedetails();
  EXPECT_EQ(machine.session().gRestoreItemPaths[3], "Outlook Express\\Email Messages\\Folders.dbx");
}

TEST(FrmRTwo, AccountSettingsUntickedUnderATickedProfileStopNext) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.Tick("Microsoft Outlook\\Identities\\Home (Default)\\Personal Folders");
  machine.Expect(ui::Answer::kOk, "Please select Account Settings for proper restoration");
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
  wizard.two().savedetails();
  EXPECT_TRUE(
      wizard.two()
          .tvwMain.FindPath("Microsoft Outlook\\Identities\\Home (Default)\\Account Settings")
          ->Checked());
}

TEST(FrmRTwo, AGroupOfManyItemsIsAddedOnce) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive;
  // The group's items do not stand together.
  archive.Item("Outlook Express\\Stationery\\a.htm", "C:\\a.htm")
      .Item("Outlook Express\\Signature\\s", "HKEY_CURRENT_USER\\s")
      .Item("Outlook Express\\Stationery\\b.htm", "C:\\b.htm")
      .Item("Outlook Express\\Stationery", "Stationery");
  wizard.Open(archive.Write(machine));
  int groups = 0;
  for (const std::string& line : Lines(wizard.two().tvwMain)) {
    if (line.starts_with("Outlook Express\\Stationery|")) ++groups;
  }
  EXPECT_EQ(groups, 1);
  wizard.Tick("Outlook Express\\Stationery");
  EXPECT_TRUE(wizard.two().tvwMain.FindPath("Outlook Express\\Stationery\\b.htm")->Checked());
  EXPECT_FALSE(wizard.two().tvwMain.FindPath("Outlook Express\\Signature\\s")->Checked());
}

TEST(FrmRTwo, AnOutlookKeyIsCutAtItsFirstCommaInBothTables) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.Tick("Microsoft Outlook\\Identities\\Work");
  wizard.two().savedetails();
  const Session& session = machine.session();
  const auto row =
      std::find_if(session.gRestoreSelection.begin(), session.gRestoreSelection.end(),
                   [](const RestoreRow& each) {
                     return each.item == "Microsoft Outlook\\Identities\\Work\\Personal Folders";
                   });
  ASSERT_NE(row, session.gRestoreSelection.end());
  EXPECT_EQ(row->location, "C:\\Mail\\work.pst");
  EXPECT_EQ(session.gRestoreItemKeys.back(), "");
  EXPECT_EQ(session.gRestoreItemKeys[session.gRestoreItemKeys.size() - 2], "C:\\Mail\\work.pst");
}

TEST(FrmRTwo, TheSelectionTableHoldsWhatTheRoutinesExpect) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.TickAll();
  wizard.two().savedetails();
  std::vector<std::string> items;
  for (const RestoreRow& row : machine.session().gRestoreSelection) items.push_back(row.item);
  for (const char* item :
       {"Other Files\\My Documents", "Other Files\\My Desktop Files", "Added More Files\\a & b.txt",
        "Added Other Folders\\House", "Microsoft Outlook\\Offline folders\\x.ost",
        "Microsoft Outlook\\Identities\\Work\\Account_Settings.reg", "Signatures\\a.htm",
        "Microsoft Outlook\\Signatures", "Registry Settings\\ProfileOptions",
        "Internet Explorer\\Typed Urls\\Typed_Urls.reg",
        "Internet Explorer\\IESettings\\Local_Machine_Settings.reg", "Internet Explorer\\Favorites",
        "Outlook Express\\Account Settings\\Home.reg",
        "Outlook Express\\Email Messages\\Inbox.dbx"}) {
    EXPECT_EQ(std::count(items.begin(), items.end(), item), 1) << item;
  }
}

TEST(FrmRTwo, ARenamedArchiveIsToldAndTheFirstPageStays) {
  TestMachine machine("xp");
  const std::string path = FullArchive().Write(machine);
  machine.WriteFile("C:\\Backups\\Renamed.obk", machine.ReadFile(path));
  RestoreWizard wizard(machine);
  machine.Expect(ui::Answer::kOk, "Either the file is Corrupt or Renamed");
  wizard.Open("C:\\Backups\\Renamed.obk");
  EXPECT_EQ(machine.ui().boxes.back().request.icon, ui::Icon::kCritical);
  EXPECT_TRUE(machine.session().gRestoreFileBad);
  EXPECT_TRUE(wizard.Shown("frmROne"));
  EXPECT_FALSE(wizard.Shown("frmRTwo"));
  EXPECT_TRUE(machine.app().Get<FrmWelcome>().lblRestoreOptions[0]->bold);
}

TEST(FrmRTwo, TheOutcomeOfAnEarlierArchiveDoesNotStandInForTheNext) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  EXPECT_GT(wizard.two().tvwMain.Count(), 1);
  machine.Click(wizard.two().cmdBack);
  JobArchive empty;
  machine.WriteFile("C:\\Backups\\Job.obk", empty.zip().Add("Job/other.txt", "x").Bytes());
  machine.Expect(ui::Answer::kOk, "Either the file is Corrupt or Renamed");
  machine.Click(wizard.one().cmdNext);
  EXPECT_TRUE(machine.session().gRestoreFileBad);
}

TEST(FrmRTwo, UntickingTheDefaultProfileWarnsAndAsksBeforeItGoesOn) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.Tick("Microsoft Outlook");
  machine.Expect(ui::Answer::kOk, kSkipsDefault);
  wizard.Tick("Microsoft Outlook\\Identities\\Home (Default)", false);
  EXPECT_EQ(machine.ui().boxes.back().request.icon, ui::Icon::kCritical);
  EXPECT_TRUE(machine.session().gDefaultProfileSkipped);
  const std::string question = std::string(kSkipsDefault) + ", Are you proceed forward";
  machine.Expect(ui::Answer::kNo, question);
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
  EXPECT_FALSE(machine.session().gDefaultProfileSkipped);
  machine.Expect(ui::Answer::kYes, question);
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRfour"));
  wizard.Tick("Microsoft Outlook\\Identities\\Home (Default)");
  EXPECT_FALSE(machine.session().gDefaultProfileSkipped);
}

TEST(FrmRTwo, NothingTickedIsRefused) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  machine.Expect(ui::Answer::kOk, "No item is selected for Restore. Check the item to proceed");
  machine.Click(wizard.two().cmdNext);
  EXPECT_FALSE(wizard.review().cmdNext.enabled);
}

TEST(FrmRTwo, ARunningMailProgramStopsNextOnlyIfItsRootIsTicked) {
  TestMachine machine("xp");
  machine.computer().RunProcess("MSIMN.EXE");
  machine.computer().RunProcess("outlook.exe", 12);
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.Tick("Outlook Express");
  wizard.Tick("Microsoft Outlook");
  machine.Expect(ui::Answer::kOk, "Please close Outlook Express to continue");
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(machine.ui().boxes.back().request.to_foreground);
  machine.computer().EndProcess("MSIMN.EXE");
  machine.Expect(ui::Answer::kOk, "Please close Microsoft Outlook to continue");
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
  wizard.Tick("Microsoft Outlook", false);
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRfour"));
}

TEST(FrmRTwo, ABackupThatIsGoneAtNextIsTold) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  const std::string path = FullArchive().Write(machine);
  wizard.Open(path);
  wizard.Tick("Other Files");
  machine.RemoveFile(path);
  machine.Expect(ui::Answer::kOk, "Backup file has been deleted or renamed");
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmROne"));
}

TEST(FrmRTwo, AnEmptyRestoreFolderStopsNextWithoutAWord) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  wizard.Tick("Other Files");
  wizard.two().txtpath.text = "";
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
  wizard.two().txtpath.text = "D:\\New folder\\for it";
  machine.Click(wizard.two().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRfour"));
  EXPECT_TRUE(machine.Exists("D:\\New folder\\for it"));
  EXPECT_EQ(machine.session().gRestoreFolder, "D:\\New folder\\for it");
}

TEST(FrmRTwo, RestoreFoldersAreRefusedInTheirOrder) {
  TestMachine machine("vista");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  const std::string before = wizard.two().txtpath.text;
  const auto choose = [&](const std::string& folder) {
    machine.ui().ExpectFolder(folder);
    machine.Click(wizard.two().cmdselectfolder);
  };
  machine.Expect(ui::Answer::kOk, "You cannot select Recycle Bin");
  choose("E:\\$recycle.bin");
  machine.Expect(ui::Answer::kOk, "Please select a fixed drive");
  choose("E:\\disc");
  machine.Expect(ui::Answer::kOk, "You cannot select Program Files");
  choose("C:\\Program Files\\x");
  machine.Expect(ui::Answer::kOk,
                 "You do not have sufficient permissions on the selected folder or drive");
  choose("C:\\not there");
  EXPECT_EQ(wizard.two().txtpath.text.get(), before);
  machine.MakeFolder("D:\\Here");
  choose("D:\\Here");
  EXPECT_EQ(machine.app().Get<frmSettings>().txtRestore.text.get(), "D:\\Here");
}

TEST(FrmRTwo, SelectingANodeShowsItsPlace) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  ui::TreeView& tree = wizard.two().tvwMain;
  machine.Do([&] {
    tree.UserClicks(tree.FindPath("Microsoft Outlook\\Identities\\Work\\Personal Folders"));
  });
  EXPECT_EQ(wizard.two().frmfor.text.get(), "Item: Personal Folders");
  EXPECT_EQ(wizard.two().lblDesc.text.get(), "Location: C:\\Mail\\work.pst");
  machine.Do([&] { tree.UserClicks(tree.FindPath("Added More Files\\D:\\a & b.txt")); });
  EXPECT_EQ(wizard.two().lblDesc.text.get(), "Location: D:\\a & b.txt");
}

TEST(FrmRTwo, TheSpaceBarUnticksANodeWithAllBelowIt) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  wizard.Open(FullArchive().Write(machine));
  ui::TreeView& tree = wizard.two().tvwMain;
  wizard.Tick("Other Files");
  tree.Select(tree.FindPath("Other Files"));
  EXPECT_TRUE(wizard.two().tvwMain.on_key_down(32, 0));
  EXPECT_FALSE(tree.FindPath("Other Files\\My Documents")->Checked());
  EXPECT_FALSE(wizard.two().tvwMain.on_key_down(32, 0));
  tree.Select(tree.FindPath("Added More Files"));
  EXPECT_TRUE(wizard.two().tvwMain.on_key_down(32, 0));
}

TEST(FrmRTwo, PathsWithUnescapedMarksAreReadAsTheyStand) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive;
  archive.Item("Add More Files\\D:\\Tom's <a> & 'b' >.txt", "D:\\Tom's <a> & 'b' >.txt")
      .Item("Add Other Folders\\D:\\Outlook Express\\Old", "D:\\Outlook Express\\Old")
      .Item("Add Other Folders\\D:\\Outlook Express\\Old", "D:\\Outlook Express\\Old");
  wizard.Open(archive.Write(machine));
  const ui::TreeNode* node =
      wizard.two().tvwMain.FindPath("Added More Files\\D:\\Tom's <a> & 'b' >.txt");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->Key(), "D:\\Tom's <a> & 'b' >.txt");
  const ui::TreeNode* folders = wizard.two().tvwMain.FindPath("Added Other Folders");
  ASSERT_EQ(folders->Children(), 1);
  EXPECT_EQ(folders->Child()->Key(), "D:\\Outlook Express\\Old");
}

TEST(FrmRTwo, AnItemIsNotLostToAKeyThatStandsElsewhere) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  JobArchive archive;
  archive.Item("Outlook Express\\Email Messages\\Inbox.dbx", "C:\\Store\\Inbox.dbx")
      .Item("Add More Files\\C:\\Store\\Inbox.dbx", "C:\\Store\\Inbox.dbx")
      .Item("Outlook Express\\Signature\\x", "Added More Files");
  wizard.Open(archive.Write(machine));
  EXPECT_NE(wizard.two().tvwMain.FindPath("Added More Files\\C:\\Store\\Inbox.dbx"), nullptr);
  EXPECT_EQ(wizard.two().tvwMain.Find("Added More Files")->Parent(), nullptr);
  wizard.Tick("Added More Files");
  wizard.two().savedetails();
  EXPECT_EQ(machine.session().restore_items.back().origin.key, "C:\\Store\\Inbox.dbx");
}

TEST(FrmRTwo, AProgramWithoutAnOpenWindowIsNoObstacle) {
  TestMachine machine("xp");
  frmRTwo& page = machine.app().Get<frmRTwo>();
  EXPECT_TRUE(page.CloseApplication("No such window"));
  EXPECT_EQ(frmRTwo::extractLastFolder("a\\b\\c.txt"), "b");
}

}  // namespace
}  // namespace quorvale::restore_test
