// The whole tree of seeded computers: every node's path, key and pictures.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include "base/paths.h"
#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/main/page_sets.h"
#include "discovery/products/ImgExplore.h"
#include "discovery/seed.h"

namespace quorvale::discovery_test {
namespace {

const std::vector<std::string> kEmptyOutlookExpress = {
    "Outlook Express\tOutlook Express\toea\t",
    "Outlook Express\\Account Settings\tAccount Settings\tfc\tfo",
    "Outlook Express\\Address Book\tAddress Book\tfc\tfo",
    "Outlook Express\\Blocked Senders\tBlocked Senders\tfc\tfo",
    "Outlook Express\\Email Messages\tEmail Messages\tfc\tfo",
    "Outlook Express\\Email Messages\\Other Mail Folders\tOther Mail Folders\tmf\t",
    "Outlook Express\\Message Rules\tMessage Rules\tfc\tfo",
    "Outlook Express\\Signature\tSignature\tfc\tfo",
    "Outlook Express\\Stationery\tStationery\tfc\tfo",
    "Outlook Express\\System Settings\tSystem Settings\tfc\tfo",
    "Outlook Express\\Settings\tOESettings\tfc\tfo",
    "Outlook Express\\Settings\\Account Manager\tHKEY_CURRENT_USER\\Software\\Microsoft\\Internet "
    "Account Manager\treg\t",
    "Outlook Express\\Settings\\Outlook Exp\tHKEY_CURRENT_USER\\Software\\Microsoft\\Outlook "
    "Express\treg\t",
    "Outlook Express\\Settings\\Identities\tHKEY_CURRENT_USER\\Identities\treg\t",
};

const std::vector<std::string> kBrowserAndFiles = {
    "Internet Explorer\tInternet Explorer\tiea\t",
    "Internet Explorer\\Typed Urls\tHKEY_CURRENT_USER\\Software\\Microsoft\\Internet "
    "Explorer\\TypedURLs\tfc\tfc",
    "Internet Explorer\\Cookies\t{cookies}\tfc\tfo",
    "Internet Explorer\\Favorites\t{favorites}\tfc\tfo",
    "Internet Explorer\\IESettings\tIESettings\tfc\tfo",
    "Internet Explorer\\IESettings\\Local Machine "
    "Settings\tHKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer\treg\t",
    "Internet Explorer\\IESettings\\Current User "
    "Settings\tHKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\treg\t",
    "Internet Explorer\\IESettings\\Current User Settings Proxy "
    "Settings\tHKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet "
    "Settings\treg\t",
    "Other Files\tOther Files\taf\t",
    "Other Files\\{word}\t{documents}\\\tfc\tfo",
    "Other Files\\My Desktop Files\t{desktop}\\\tfc\tfo",
    "Add Other Folders\tAdd Other Folders\taa1\t",
    "Add More Files\tAdd More Files\tab1\t",
};

std::vector<std::string> Join(std::vector<std::string> first,
                              const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::vector<std::string> BrowserAndFiles(const std::string& documents_word) {
  std::vector<std::string> lines = kBrowserAndFiles;
  for (std::string& line : lines) line = ReplaceAll(line, "{word}", documents_word);
  return lines;
}

// The folders that every user has on a real computer.
void MakeUserFolders(TestMachine& machine) {
  machine.MakeFolder(machine.Cookies());
  machine.MakeFolder(machine.Favorites());
}

void ExpectTree(TestMachine& machine, const std::vector<std::string>& expected) {
  const std::vector<std::string> lines = TreeLines(OpenPage(machine).tvwMain);
  const std::vector<std::string> wanted = FillIn(machine, expected);
  for (size_t i = 0; i < std::max(lines.size(), wanted.size()); ++i) {
    EXPECT_EQ(i < lines.size() ? lines[i] : "nothing", i < wanted.size() ? wanted[i] : "nothing")
        << "row " << i;
  }
}

TEST(ItemTree, ComputerWithNeitherMailProductStillShowsTheFixedNodes) {
  TestMachine machine("xp");
  MakeUserFolders(machine);
  ExpectTree(machine, Join(kEmptyOutlookExpress, BrowserAndFiles("My Documents")));
}

TEST(ItemTree, EveryNodeOfAComputerWithOutlookExpressAndOutlook) {
  TestMachine machine("xp");
  MakeUserFolders(machine);
  SeedOutlookExpress(machine);
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"),
              {{"Personal Folders", "C:\\Mail\\outlook.pst"}, {"Mailbox - Anna", ""}});
  SetDefaultProfile(machine, "Outlook");
  const std::string roaming = machine.Profile() + "\\Application Data\\Microsoft\\";
  const std::string local =
      machine.Profile() + "\\Local Settings\\Application Data\\Microsoft\\Outlook\\";
  machine.WriteFile(roaming + "Outlook\\Junk Senders.txt", "x");
  machine.WriteFile(roaming + "Outlook\\outcmd.dat", "x");
  machine.WriteFile(roaming + "Outlook\\VbaProject.OTM", "x");
  machine.WriteFile(roaming + "Proof\\CUSTOM.DIC", "x");
  machine.WriteFile(roaming + "Signatures\\Anna.htm", "x");
  machine.WriteFile(local + "outlook.ost", "x");
  machine.WriteFile(local + "people.pab", "x");

  const std::vector<std::string> mail = {
      "Outlook Express\tOutlook Express\toea\t",
      "Outlook Express\\Account Settings\tAccount Settings\tfc\tfo",
      "Outlook Express\\Account Settings\\Office mail\tHKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\"
      "Internet Account Manager\\Accounts\\00000002\tnon\t",
      "Outlook Express\\Account Settings\\Portal\tHKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\"
      "Internet Account Manager\\Accounts\\00000004\tmsn\t",
      "Outlook Express\\Account Settings\\News server\tHKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\"
      "Internet Account Manager\\Accounts\\00000001\tnew\t",
      "Outlook Express\\Account Settings\\Directory\tHKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\"
      "Internet Account Manager\\Accounts\\00000003\tnew\t",
      "Outlook Express\\Address Book\tAddress Book\tfc\tfo",
      "Outlook Express\\Address Book\\Anna.wab\t{appdata}\\Microsoft\\Address "
      "Book\\Anna.wab\tab\t",
      "Outlook Express\\Blocked Senders\tBlocked Senders\tfc\tfo",
      "Outlook Express\\Blocked Senders\\spam@example.org\tHKEY_CURRENT_USER\\Identities\\{id}\\"
      "Software\\Microsoft\\Outlook Express\\5.0\\Block Senders\\Mail\\Criteria\\00000000\tbs\t",
      "Outlook Express\\Email Messages\tEmail Messages\tfc\tfo",
      "Outlook Express\\Email Messages\\Inbox.dbx\t{store}\\Inbox.dbx\tib\t",
      "Outlook Express\\Email Messages\\Outbox.dbx\t{store}\\Outbox.dbx\tob\t",
      "Outlook Express\\Email Messages\\Sent Items.dbx\t{store}\\Sent Items.dbx\tse\t",
      "Outlook Express\\Email Messages\\Deleted Items.dbx\t{store}\\Deleted Items.dbx\tde\t",
      "Outlook Express\\Email Messages\\Drafts.dbx\t{store}\\Drafts.dbx\tdr\t",
      "Outlook Express\\Email Messages\\Other Mail Folders\tOther Mail Folders\tmf\t",
      "Outlook Express\\Email Messages\\Other Mail "
      "Folders\\Clients.dbx\t{store}\\Clients.dbx\tmf\t",
      "Outlook Express\\Email Messages\\Other Mail "
      "Folders\\Folders.dbx\t{store}\\Folders.dbx\tmf\t",
      "Outlook Express\\Message Rules\tMessage Rules\tfc\tfo",
      "Outlook Express\\Message Rules\\Mail\tHKEY_CURRENT_USER\\Identities\\{id}\\Software\\"
      "Microsoft\\Outlook Express\\5.0\\Rules\\Mail\tmr\t",
      "Outlook Express\\Signature\tSignature\tfc\tfo",
      "Outlook Express\\Signature\\Signature #1\tHKEY_CURRENT_USER\\Identities\\{id}\\Software\\"
      "Microsoft\\Outlook Express\\5.0\\signatures\\00000000\tsg\t",
      "Outlook Express\\Stationery\tStationery\tfc\tfo",
      "Outlook Express\\Stationery\\Ivy.htm\t{common}\\Microsoft "
      "Shared\\Stationery\\Ivy.htm\tst\t",
      "Outlook Express\\System Settings\tSystem Settings\tfc\tfo",
      "Outlook Express\\System Settings\\Mail\tHKEY_CURRENT_USER\\Identities\\{id}\\Software\\"
      "Microsoft\\Outlook Express\\5.0\\Mail\tset\t",
      "Outlook Express\\System Settings\\News\tHKEY_CURRENT_USER\\Identities\\{id}\\Software\\"
      "Microsoft\\Outlook Express\\5.0\\News\tset\t",
      "Outlook Express\\Settings\tOESettings\tfc\tfo",
      "Outlook Express\\Settings\\Account Manager\tHKEY_CURRENT_USER\\Software\\Microsoft\\"
      "Internet Account Manager\treg\t",
      "Outlook Express\\Settings\\Outlook Exp\tHKEY_CURRENT_USER\\Software\\Microsoft\\Outlook "
      "Express\treg\t",
      "Outlook Express\\Settings\\Identities\tHKEY_CURRENT_USER\\Identities\treg\t",
      "Microsoft Outlook\tMicrosoft Outlook\tmoa\t",
      "Microsoft Outlook\\Identities\tIdentities\tfc\tfo",
      "Microsoft Outlook\\Identities\\Outlook (Default)\tOutlook\tid\tid",
      "Microsoft Outlook\\Identities\\Outlook (Default)\\Account "
      "Settings\tHKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows "
      "Messaging Subsystem\\Profiles\\Outlook\tfc\tfo",
      "Microsoft Outlook\\Identities\\Outlook (Default)\\Account Emails-Files\tAccount "
      "Emails-Files1\tfc\tfo",
      "Microsoft Outlook\\Identities\\Outlook (Default)\\Account Emails-Files\\Personal "
      "Folders\tC:\\Mail\\outlook.pst,11\tfc\tfo",
      "Microsoft Outlook\\Identities\\Outlook (Default)\\Account Emails-Files\\Mailbox - "
      "Anna\t,21\tfc\tfo",
      "Microsoft Outlook\\Adult-Junk Senders\tAdult-Junk Senders\tfc\tfo",
      "Microsoft Outlook\\Adult-Junk Senders\\Junk Senders.txt\t{profile}\\Application "
      "Data\\Microsoft\\Outlook\\Junk Senders.txt\tbs\tbs",
      "Microsoft Outlook\\Dictionary\tDictionary\tfc\tfo",
      "Microsoft Outlook\\Dictionary\\CUSTOM.DIC\t{profile}\\Application "
      "Data\\Microsoft\\Proof\\CUSTOM.DIC\tdc\tdc",
      "Microsoft Outlook\\Macros and VBA programs\tMacros and VBA programs\tfc\tfo",
      "Microsoft Outlook\\Macros and VBA programs\\VbaProject.OTM\t{profile}\\Application "
      "Data\\Microsoft\\Outlook\\VbaProject.OTM\taf\taf",
      "Microsoft Outlook\\Offline folders\tOffline folders\tfc\tfo",
      "Microsoft Outlook\\Offline folders\\outlook.ost\t{profile}\\Local Settings\\Application "
      "Data\\Microsoft\\Outlook\\outlook.ost\tof\tof",
      "Microsoft Outlook\\Personal Address Book\tPersonal Address Book\tfc\tfo",
      "Microsoft Outlook\\Personal Address Book\\people.pab\t{profile}\\Local "
      "Settings\\Application Data\\Microsoft\\Outlook\\people.pab\tab\tab",
      "Microsoft Outlook\\Signatures\tSignatures\tfc\tfo",
      "Microsoft Outlook\\Signatures\\Anna.htm\t{profile}\\Application "
      "Data\\Microsoft\\Signatures\\Anna.htm\tsg\tsg",
      "Microsoft Outlook\\Setting Files\tSetting Files\tfc\tfo",
      "Microsoft Outlook\\Setting Files\\outcmd.dat\t{profile}\\Application "
      "Data\\Microsoft\\Outlook\\outcmd.dat\tset\tset",
      "Microsoft Outlook\\Registry Settings\tRegistry Settings\tfc\tfo",
      "Microsoft Outlook\\Registry "
      "Settings\\ProfileOptions\tHKEY_CURRENT_USER\\Software\\Microsoft\\Exchange\\Client\\"
      "Options\treg\t",
  };
  ExpectTree(machine, Join(mail, BrowserAndFiles("My Documents")));
}

TEST(ItemTree, EveryNodeOfAnOldComputer) {
  TestMachine machine("98");
  MakeUserFolders(machine);
  ExpectTree(machine, Join(kEmptyOutlookExpress, BrowserAndFiles("My Documents")));
}

TEST(ItemTree, EveryNodeOfAVistaComputer) {
  TestMachine machine("vista");
  MakeUserFolders(machine);
  ExpectTree(machine,
             Join({"Windows Mail\tWindows Mail\tWM\t",
                   "Windows Mail\\Mails\t{local}\\Microsoft\\Windows Mail\\\tfc\tfo",
                   "Windows Mail\\Contacts\t{profile}\\Contacts\tfc\tfo",
                   "Windows Mail\\Account Settings\tAccount Settings\tfc\tfo",
                   "Windows Mail\\Account "
                   "Settings\\WMRegistrySettings\tHKEY_CURRENT_USER\\Software\\Microsoft\\Windows "
                   "Mail\treg\t"},
                  BrowserAndFiles("Documents")));
}

TEST(ItemTree, VistaShowsWindowsMailAndNeverOutlookExpress) {
  TestMachine machine("vista");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  EXPECT_NE(page.tvwMain.FindPath("Windows Mail"), nullptr);
  EXPECT_EQ(page.tvwMain.FindPath("Outlook Express"), nullptr);
}

TEST(ItemTree, SystemsBeforeVistaShowOutlookExpressAndNeverWindowsMail) {
  for (const char* like : {"98", "me", "2000", "xp"}) {
    TestMachine machine(like);
    FrmTwo& page = OpenPage(machine);
    EXPECT_NE(page.tvwMain.FindPath("Outlook Express"), nullptr) << like;
    EXPECT_EQ(page.tvwMain.FindPath("Windows Mail"), nullptr) << like;
  }
}

TEST(ItemTree, OutlookIsMissingWithoutItsApplicationPath) {
  TestMachine machine("xp");
  SeedProfile(machine, NtProfile("Outlook"), {{"Personal Folders", "C:\\outlook.pst"}});
  EXPECT_EQ(OpenPage(machine).tvwMain.Find("Microsoft Outlook"), nullptr);
}

TEST(ItemTree, OutlookIsMissingWithoutAProfileUnderTheNtKey) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  machine.MakeKey(NtProfile(""));
  EXPECT_EQ(OpenPage(machine).tvwMain.Find("Microsoft Outlook"), nullptr);
}

TEST(ItemTree, OldComputerIsTestedForProfilesUnderTheNtKeyToo) {
  TestMachine machine("98");
  SeedOutlook(machine);
  SeedProfile(machine, OldProfile("Outlook"), {{"Personal Folders", "C:\\outlook.pst", false}});
  EXPECT_EQ(OpenPage(machine).tvwMain.Find("Microsoft Outlook"), nullptr);

  machine.MakeKey(NtProfile("Outlook"));
  machine.Restart();
  EXPECT_NE(OpenPage(machine).tvwMain.Find("Microsoft Outlook"), nullptr);
}

TEST(ItemTree, TypedUrlsNeverShowsTheOpenFolder) {
  TestMachine machine("xp");
  ui::TreeNode* typed = NodeAt(OpenPage(machine), "Internet Explorer\\Typed Urls");
  EXPECT_EQ(typed->image, "fc");
  EXPECT_EQ(typed->selected_image, "fc");
}

TEST(ItemTree, ThirdRegistryRowsCaptionIsCutShort) {
  TestMachine machine("xp");
  ui::TreeNode* row =
      OpenPage(machine).tvwMain.Find("HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook Express");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->Text(), "Outlook Exp");
}

TEST(ItemTree, TagsMarkTheFolderNodesAndTheBrowser) {
  TestMachine machine("xp");
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(NodeAt(page, "Other Files\\My Documents")->tag, "N");
  EXPECT_EQ(NodeAt(page, "Other Files\\My Desktop Files")->tag, "N");
  EXPECT_EQ(NodeAt(page, "Internet Explorer")->tag, "Y");
  EXPECT_EQ(NodeAt(page, "Outlook Express")->tag, "");
}

TEST(ItemTree, EveryPictureIsInThePictureList) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Personal Folders", "C:\\outlook.pst"}});
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(kImgExplore.size(), 37u);
  for (int index = 1; index <= page.tvwMain.Count(); ++index) {
    const ui::TreeNode& node = *page.tvwMain.Node(index);
    EXPECT_NE(std::find(kImgExplore.begin(), kImgExplore.end(), node.image), kImgExplore.end())
        << node.FullPath();
  }
}

TEST(ItemTree, AllNodesStartUnticked) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  EXPECT_TRUE(TickedPaths(OpenPage(machine).tvwMain).empty());
}

TEST(ItemTree, IsBuiltOnceInTheLifeOfThePage) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  const int count = page.tvwMain.Count();
  machine.WriteFile(StoreFolder(machine) + "\\Later.dbx", "mail");
  machine.Click(page.Label32);
  EXPECT_EQ(page.tvwMain.Count(), count);
}

TEST(ItemTree, SpecialFoldersThatTheSystemCannotNameAreLeftOut) {
  TestMachine machine("xp");
  for (int folder : {5, 6, 16, 26, 28, 33, 43}) machine.computer().SetSpecialFolder(folder, "");
  machine.computer().SetEnvironment("UserProfile", "");
  SeedOutlook(machine);
  machine.MakeKey(NtProfile("Outlook"));
  FrmTwo& page = OpenPage(machine);
  for (const char* path : {"Outlook Express\\Stationery", "Microsoft Outlook\\Setting Files",
                           "Internet Explorer\\IESettings", "Other Files", "Add More Files"}) {
    EXPECT_NE(page.tvwMain.FindPath(path), nullptr) << path;
  }
  for (int index = 1; index <= page.tvwMain.Count(); ++index) {
    EXPECT_FALSE(page.tvwMain.Node(index)->Key().starts_with("\\"))
        << page.tvwMain.Node(index)->FullPath();
  }
}

TEST(ItemTree, TenThousandMailFilesAreListedAndTickedInUnderASecond) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  // 10,000 more than any disk has to hold.
  std::vector<FileInfo> mail_files;
  for (int n = 0; n < 10000; ++n) {
    mail_files.push_back({.name = "Folder " + std::to_string(n) + ".dbx"});
  }
  machine.faults().files.AlsoList(StoreFolder(machine), std::move(mail_files));
  Application& app = machine.app();
  app.Get<FrmWelcome>();
  // Time of the processor, so that a busy computer fails no test.
  const std::clock_t start = std::clock();
  FrmTwo& page = app.Get<FrmTwo>();
  page.tvwMain.UserChecks(NodeAt(page, "Outlook Express"), true);
  const auto milliseconds =
      static_cast<double>(std::clock() - start) * 1000 / double{CLOCKS_PER_SEC};
  EXPECT_GT(TickedPaths(page.tvwMain).size(), 10000u);
  RecordProperty("milliseconds", std::to_string(milliseconds));
#if defined(__SANITIZE_ADDRESS__)
  EXPECT_LT(milliseconds, 5000);
#else
  EXPECT_LT(milliseconds, 1000);
#endif
}

}  // namespace
}  // namespace quorvale::discovery_test
