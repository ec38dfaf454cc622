// What each product's fill takes and leaves.
#include <gtest/gtest.h>

#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_fills.h"
#include "discovery/seed.h"

namespace quorvale::discovery_test {
namespace {

std::vector<std::string> ChildTexts(const ui::TreeNode* node) {
  std::vector<std::string> texts;
  if (node == nullptr) return texts;
  for (const ui::TreeNode* child : node->ChildNodes()) texts.push_back(child->Text());
  return texts;
}

using Texts = std::vector<std::string>;

// Outlook Express --------------------------------------------------------------------------------

TEST(OutlookExpressSource, MsnAccountWithANewsServerIsAnMsnAccount) {
  TestMachine machine("xp");
  const std::string key =
      "HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Internet Account Manager\\Accounts\\00000001";
  machine.SetString(key, "Account Name", "Portal");
  machine.SetString(key, "Domain is MSN.com", "1");
  machine.SetString(key, "NNTP Server", "news.example.org");
  EXPECT_EQ(NodeAt(OpenPage(machine), "Outlook Express\\Account Settings\\Portal")->image, "msn");
}

TEST(OutlookExpressSource, NewsAndDirectoryAccountsComeLast) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Outlook Express\\Account Settings")),
            (Texts{"Office mail", "Portal", "News server", "Directory"}));
}

TEST(OutlookExpressSource, StandardStoreIsFoundInAnyCaseAndKeepsItsCaption) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.RemoveFile(StoreFolder(machine) + "\\Inbox.dbx");
  machine.WriteFile(StoreFolder(machine) + "\\INBox.DBX", "mail");
  ui::TreeNode* inbox = NodeAt(OpenPage(machine), "Outlook Express\\Email Messages\\INBox.DBX");
  ASSERT_NE(inbox, nullptr);
  EXPECT_EQ(inbox->image, "ib");
}

TEST(OutlookExpressSource, StandardStoresComeInTheirFixedOrder) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Outlook Express\\Email Messages")),
            (Texts{"Inbox.dbx", "Outbox.dbx", "Sent Items.dbx", "Deleted Items.dbx", "Drafts.dbx",
                   "Other Mail Folders"}));
}

TEST(OutlookExpressSource, OtherFilesOfTheStoreFolderNeedNoExtension) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.WriteFile(StoreFolder(machine) + "\\cleanup", "log");
  NodeAt(OpenPage(machine), "Outlook Express\\Email Messages\\Other Mail Folders\\cleanup");
}

TEST(OutlookExpressSource, ScratchCopyOfAnAddressBookIsNotOffered) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Outlook Express\\Address Book")),
            Texts{"Anna.wab"});
}

TEST(OutlookExpressSource, MissingAddressBookFolderIsMade) {
  TestMachine machine("xp");
  OpenPage(machine);
  EXPECT_TRUE(machine.Exists(machine.AppData() + "\\Microsoft\\Address Book"));
}

TEST(OutlookExpressSource, MissingDefaultIdentityLeavesItsGroupsEmpty) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.SetString("HKEY_CURRENT_USER\\Identities", "Default User ID", "");
  machine.MakeKey(
      "HKEY_CURRENT_USER\\Identities\\Software\\Microsoft\\Outlook Express\\5.0\\Rules"
      "\\Wrong");
  FrmTwo& page = OpenPage(machine);
  for (const char* group : {"Blocked Senders", "Message Rules", "Signature", "System Settings"}) {
    EXPECT_EQ(NodeAt(page, std::string("Outlook Express\\") + group)->Children(), 0) << group;
  }
  EXPECT_EQ(ChildTexts(NodeAt(page, "Outlook Express\\Email Messages")),
            Texts{"Other Mail Folders"});
  EXPECT_EQ(NodeAt(page, "Outlook Express\\Account Settings")->Children(), 4);
}

TEST(OutlookExpressSource, SignaturesAndRulesKeepTheCaseOfTheirKeys) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  FrmTwo& page = OpenPage(machine);
  EXPECT_TRUE(NodeAt(page, "Outlook Express\\Signature\\Signature #1")
                  ->Key()
                  .ends_with("\\5.0\\signatures\\00000000"));
  EXPECT_TRUE(
      NodeAt(page, "Outlook Express\\Message Rules\\Mail")->Key().ends_with("\\5.0\\Rules\\Mail"));
}

TEST(OutlookExpressSource, SystemSettingsLeaveOutWhatOtherGroupsHold) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.MakeKey(IdentityKey("block senders list"));  // another case is another name
  const Texts texts = ChildTexts(NodeAt(OpenPage(machine), "Outlook Express\\System Settings"));
  EXPECT_EQ(texts.size(), 3u);
  for (const std::string& text : texts) {
    EXPECT_TRUE(text == "Mail" || text == "News" || text == "block senders list") << text;
  }
}

TEST(OutlookExpressSource, UserProfileInTheStoreRootIsExpandedInItsExactCase) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.SetString(IdentityKey(""), "Store Root", "%UserProfile%\\Mail\\");
  machine.WriteFile(machine.Profile() + "\\Mail\\Inbox.dbx", "mail");
  EXPECT_EQ(NodeAt(OpenPage(machine), "Outlook Express\\Email Messages\\Inbox.dbx")->Key(),
            machine.Profile() + "\\Mail\\Inbox.dbx");

  machine.SetString(IdentityKey(""), "Store Root", "%USERPROFILE%\\Mail\\");
  machine.Restart();
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Outlook Express\\Email Messages")),
            Texts{"Other Mail Folders"});
}

TEST(OutlookExpressSource, MissingStoreRootListsNoOtherFolder) {
  TestMachine machine("xp");
  machine.SetString("HKEY_CURRENT_USER\\Identities", "Default User ID", kIdentity);
  machine.WriteFile(machine.platform().system.ProgramFolder() + "\\Inbox.dbx", "not mail");
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Outlook Express\\Email Messages")),
            Texts{"Other Mail Folders"});
}

TEST(OutlookExpressSource, NamesOutsideAsciiKeepTheirLetters) {
  TestMachine machine("xp");
  SeedOutlookExpress(machine);
  machine.WriteFile(StoreFolder(machine) + "\\Gr\u00fc\u00dfe.dbx", "mail");
  machine.SetString(IdentityKey("signatures\\00000001"), "name", "Gr\u00fc\u00dfe");
  FrmTwo& page = OpenPage(machine);
  NodeAt(page, "Outlook Express\\Email Messages\\Other Mail Folders\\Gr\u00fc\u00dfe.dbx");
  NodeAt(page, "Outlook Express\\Signature\\Gr\u00fc\u00dfe");
}

// Windows Mail -----------------------------------------------------------------------------------

TEST(WindowsMailSource, AccountSettingsHaveTheirBareWordAsKey) {
  TestMachine machine("vista");
  EXPECT_EQ(NodeAt(OpenPage(machine), "Windows Mail\\Account Settings")->Key(), "Account Settings");
}

TEST(WindowsMailSource, StoreFolderEndsInABackslashAndContactsDoNot) {
  TestMachine machine("vista");
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(NodeAt(page, "Windows Mail\\Mails")->Key(),
            machine.LocalAppData() + "\\Microsoft\\Windows Mail\\");
  EXPECT_EQ(NodeAt(page, "Windows Mail\\Contacts")->Key(), machine.Profile() + "\\Contacts");
}

// Microsoft Outlook ------------------------------------------------------------------------------

TEST(OutlookSource, ProfilesBehindTheDefaultOneAreMarkedButNotCalledDefault) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  for (const char* name : {"Alpha", "Beta", "Gamma"}) SeedProfile(machine, NtProfile(name), {});
  SetDefaultProfile(machine, "Beta");
  const std::vector<ProfileRow> rows = SubKeyCountMO(machine.app(), kNtProfilesRoot);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_FALSE(rows[0].from_default_on);
  EXPECT_TRUE(rows[1].from_default_on);
  EXPECT_TRUE(rows[2].from_default_on);
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Microsoft Outlook\\Identities")),
            (Texts{"Alpha", "Beta (Default)", "Gamma"}));
}

TEST(OutlookSource, DefaultProfileMayBeFirstOrLast) {
  for (const char* name : {"Alpha", "Gamma"}) {
    TestMachine machine("xp");
    SeedOutlook(machine);
    for (const char* each : {"Alpha", "Beta", "Gamma"}) SeedProfile(machine, NtProfile(each), {});
    SetDefaultProfile(machine, name);
    FrmTwo& page = OpenPage(machine);
    NodeAt(page, std::string("Microsoft Outlook\\Identities\\") + name + " (Default)");
    EXPECT_EQ(NodeAt(page, "Microsoft Outlook\\Identities\\Beta")->Key(), "Beta");
  }
}

TEST(OutlookSource, EightBitAndSixteenBitValuesAreReadAlike) {
  for (const bool wide : {false, true}) {
    TestMachine machine("xp");
    SeedOutlook(machine);
    SeedProfile(machine, NtProfile("Outlook"),
                {{"Pers\u00f6nlich", "C:\\B\u00fcro\\outlook.pst", wide},
                 {"Archive Folders", "C:\\Mail\\archive.pst", wide}});
    const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
    ASSERT_EQ(stores.size(), 2u) << wide;
    EXPECT_EQ(stores[0].name, "Pers\u00f6nlich");
    EXPECT_EQ(stores[0].path, "C:\\B\u00fcro\\outlook.pst");
    EXPECT_EQ(stores[1].path, "C:\\Mail\\archive.pst");
  }
}

TEST(OutlookSource, SixteenBitTextOutsideTheCodePageComesOutRight) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"),
              {{"\u041f\u043e\u0447\u0442\u0430", "C:\\\u041f\u043e\u0447\u0442\u0430\\a.pst"}});
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 1u);
  EXPECT_EQ(stores[0].name, "\u041f\u043e\u0447\u0442\u0430");
  EXPECT_EQ(stores[0].path, "C:\\\u041f\u043e\u0447\u0442\u0430\\a.pst");
}

TEST(OutlookSource, EightBitValuesComeBeforeSixteenBitOnes) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Wide", "C:\\wide.pst"}});
  const std::string section = NtProfile("Outlook") + "\\" + SectionName(1);
  machine.SetBinary(section, "001e3001", std::string("Narrow\0", 7));
  machine.SetBinary(section, "001e6700", std::string("C:\\narrow.pst\0", 14));
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 1u);
  EXPECT_EQ(stores[0].name, "Narrow");
  EXPECT_EQ(stores[0].path, "C:\\narrow.pst");
}

TEST(OutlookSource, StoreWithoutAPathHasTheOfflineStores) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Mailbox - Anna", ""}});
  SetOfflineStore(machine, NtProfile("Outlook"), "C:\\Mail\\outlook.ost");
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 1u);
  EXPECT_EQ(stores[0].path, "C:\\Mail\\outlook.ost");
}

TEST(OutlookSource, MailboxWithNoFileAtAllHasAKeyOfOnlyItsNumbers) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Mailbox - Anna", ""}});
  EXPECT_EQ(NodeAt(OpenPage(machine),
                   "Microsoft Outlook\\Identities\\Outlook\\Account Emails-Files\\Mailbox - Anna")
                ->Key(),
            ",11");
}

TEST(OutlookSource, TwoProfilesMayOpenTheSameFile) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Alpha"), {{"Personal", "C:\\shared.pst"}});
  SeedProfile(machine, NtProfile("Beta"),
              {{"Personal", "C:\\own.pst"}, {"Shared", "C:\\shared.pst"}});
  FrmTwo& page = OpenPage(machine);
  EXPECT_NE(page.tvwMain.Find("C:\\shared.pst,11"), nullptr);
  EXPECT_NE(page.tvwMain.Find("C:\\own.pst,12"), nullptr);
  EXPECT_NE(page.tvwMain.Find("C:\\shared.pst,22"), nullptr);
}

TEST(OutlookSource, ProfileWithoutAStoreListHasNoDataFiles) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {});
  FrmTwo& page = OpenPage(machine);
  const std::string identity = "Microsoft Outlook\\Identities\\Outlook";
  EXPECT_EQ(NodeAt(page, identity + "\\Account Emails-Files")->Children(), 0);
  EXPECT_EQ(NodeAt(page, identity + "\\Account Settings")->Key(), NtProfile("Outlook"));
}

TEST(OutlookSource, StoreListThatEndsWithinAnIdentifierIsCountedToTheNearestNumber) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"One", "C:\\one.pst"}, {"Two", "C:\\two.pst"}});
  const std::string list_key = NtProfile("Outlook") + "\\9207f3e0a3b11019908b08002b2a56c2";
  const std::string list = *machine.GetValue(list_key, "01023d00");
  machine.SetBinary(list_key, "01023d00", list.substr(0, 20));
  EXPECT_EQ(CollectOutlookStores(machine.app(), "Outlook").size(), 1u);

  machine.SetBinary(list_key, "01023d00", list.substr(0, 30));
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 2u);
  EXPECT_EQ(stores[0].path, "C:\\one.pst");
  EXPECT_EQ(stores[1].path, "");  // no such section
}

TEST(OutlookSource, SectionIdentifierThatEndsInANulByteIsWhole) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  const std::string id = std::string("0123456789ABCDE") + '\0';
  machine.SetBinary(NtProfile("Outlook") + "\\9207f3e0a3b11019908b08002b2a56c2", "01023d00", id);
  machine.SetBinary(NtProfile("Outlook") + "\\30313233343536373839414243444500", "001f6700",
                    Wide("C:\\a.pst"));
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 1u);
  EXPECT_EQ(stores[0].path, "C:\\a.pst");
}

TEST(OutlookSource, MissingSectionStillHasARow) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  machine.SetBinary(NtProfile("Outlook") + "\\9207f3e0a3b11019908b08002b2a56c2", "01023d00",
                    std::string(16, '\x41'));
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 1u);
  EXPECT_EQ(stores[0].name, "");
  EXPECT_EQ(stores[0].path, "");
}

TEST(OutlookSource, PathWithoutItsNulAndPathOfTwoThousandCharactersAreReadWhole) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"One", "C:\\x.pst"}, {"Two", "C:\\x.pst"}});
  const std::string profile = NtProfile("Outlook") + "\\";
  const std::string without_nul = Wide("C:\\one.pst").substr(0, 20);
  machine.SetBinary(profile + SectionName(1), "001f6700", without_nul);
  const std::string path = "C:\\" + std::string(2000, 'x') + ".pst";
  machine.SetBinary(profile + SectionName(2), "001f6700", Wide(path));
  const std::vector<ProfileStore> stores = CollectOutlookStores(machine.app(), "Outlook");
  ASSERT_EQ(stores.size(), 2u);
  EXPECT_EQ(stores[0].path, "C:\\one.pst");
  EXPECT_EQ(stores[1].path, path);
}

TEST(OutlookSource, OfflineStorePathMayLackItsNulPair) {
  TestMachine machine("xp");
  machine.SetBinary(NtProfile("Outlook") + "\\13dbb0c8aa05101a9bb000aa002fc45a", "001f6610",
                    Wide("C:\\a.ost").substr(0, 16));
  EXPECT_EQ(OfflineStorePath(machine.app(), std::string(kNtProfilesRoot) + "Outlook"), "C:\\a.ost");
}

TEST(OutlookSource, OldComputerReadsItsProfilesUnderTheOtherRoot) {
  TestMachine machine("98");
  SeedOutlook(machine, "Outlook.Application.9");
  machine.MakeKey(NtProfile("Only a name"));
  SeedProfile(machine, OldProfile("Outlook"), {{"Personal Folders", "C:\\outlook.pst", false}});
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(ChildTexts(NodeAt(page, "Microsoft Outlook\\Identities")), Texts{"Outlook"});
  EXPECT_EQ(NodeAt(page, "Microsoft Outlook\\Identities\\Outlook\\Account Settings")->Key(),
            OldProfile("Outlook"));
  EXPECT_NE(page.tvwMain.Find("C:\\outlook.pst,11"), nullptr);
}

TEST(OutlookSource, SystemWithNoProfilesRootShowsNoIdentities) {
  TestMachine machine("95");
  SeedOutlook(machine);
  SeedProfile(machine, NtProfile("Outlook"), {{"Personal Folders", "C:\\outlook.pst"}});
  EXPECT_EQ(NodeAt(OpenPage(machine), "Microsoft Outlook\\Identities")->Children(), 0);
  EXPECT_EQ(ProfilesRoot("Windows 95"), "");
}

TEST(OutlookSource, ProofingFolderDependsOnTheVersion) {
  struct Case {
    const char* version;
    const char* folder;
  };
  for (const Case& each :
       {Case{"Outlook.Application.9", "\\Proof"}, Case{"Outlook.Application.10", "\\Proof"},
        Case{"Outlook.Application.11", "\\Proof"}, Case{"Outlook.Application.12", "\\UProof"},
        Case{"Outlook.Application.14", ""}, Case{"", ""}}) {
    TestMachine machine("xp");
    SeedOutlook(machine, each.version);
    machine.MakeKey(NtProfile("Outlook"));
    const std::string microsoft = machine.Profile() + "\\Application Data\\Microsoft";
    machine.WriteFile(microsoft + "\\loose.dic", "x");
    machine.WriteFile(microsoft + "\\Proof\\old.dic", "x");
    machine.WriteFile(microsoft + "\\UProof\\new.dic", "x");
    ui::TreeNode* group = NodeAt(OpenPage(machine), "Microsoft Outlook\\Dictionary");
    ASSERT_EQ(group->Children(), 1) << each.version;
    EXPECT_TRUE(
        group->Child()->Key().starts_with(microsoft + each.folder + "\\" + group->Child()->Text()))
        << group->Child()->Key();
    EXPECT_EQ(machine.Exists(group->Child()->Key()), true);
  }
}

TEST(OutlookSource, OfflineStoreStandsUnderTheProfileAndUnderOfflineFolders) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  const std::string store =
      machine.Profile() + "\\Local Settings\\Application Data\\Microsoft\\Outlook\\outlook.ost";
  machine.WriteFile(store, "mail");
  SeedProfile(machine, NtProfile("Outlook"), {{"Mailbox", store}});
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(
      NodeAt(page, "Microsoft Outlook\\Identities\\Outlook\\Account Emails-Files\\Mailbox")->Key(),
      store + ",11");
  EXPECT_EQ(NodeAt(page, "Microsoft Outlook\\Offline folders\\outlook.ost")->Key(), store);
}

// A computer with files of the roaming Outlook folder.
void SeedRoaming(TestMachine& machine, const std::vector<std::string>& names) {
  SeedOutlook(machine);
  machine.MakeKey(NtProfile("Outlook"));
  for (const std::string& name : names) {
    machine.WriteFile(machine.Profile() + "\\Application Data\\Microsoft\\Outlook\\" + name, "x");
  }
}

TEST(OutlookSource, JunkListsNeverStandInSettingFiles) {
  TestMachine machine("xp");
  SeedRoaming(machine, {"Junk Senders.txt", "Adult Content Senders.txt"});
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(NodeAt(page, "Microsoft Outlook\\Adult-Junk Senders")->Children(), 2);
  EXPECT_EQ(NodeAt(page, "Microsoft Outlook\\Setting Files")->Children(), 0);
}

TEST(OutlookSource, AnyOtherTextFileStandsInBothGroupsAndIsSavedFromEither) {
  TestMachine machine("xp");
  SeedRoaming(machine, {"notes.txt"});
  FrmTwo& page = OpenPage(machine);
  const std::string path = machine.Profile() + "\\Application Data\\Microsoft\\Outlook\\notes.txt";
  EXPECT_EQ(NodeAt(page, "Microsoft Outlook\\Adult-Junk Senders\\notes.txt")->Key(), path);
  machine.Tick(page.tvwMain, "Microsoft Outlook\\Setting Files\\notes.txt");
  page.savedetails();
  const std::vector<std::string>& paths = machine.session().gBackupItemPaths;
  for (size_t i = 0; i < paths.size(); ++i) {
    if (paths[i] == "Microsoft Outlook\\Setting Files\\notes.txt") {
      EXPECT_EQ(machine.session().gBackupItemKeys[i], path);
      return;
    }
  }
  ADD_FAILURE() << "the file is not in the selection";
}

TEST(OutlookSource, SettingFilesLookAtTheCaseOfDictionariesButNotOfMacros) {
  TestMachine machine("xp");
  SeedRoaming(machine, {"small.dic", "LARGE.DIC", "Vba.OTM", "vba.otm", "mail.OST", "outcmd.dat"});
  const Texts texts = ChildTexts(NodeAt(OpenPage(machine), "Microsoft Outlook\\Setting Files"));
  EXPECT_EQ(texts.size(), 2u);
  for (const std::string& text : texts) {
    EXPECT_TRUE(text == "LARGE.DIC" || text == "outcmd.dat") << text;
  }
}

TEST(OutlookSource, MissingGroupFoldersGiveEmptyGroups) {
  TestMachine machine("xp");
  SeedOutlook(machine);
  machine.MakeKey(NtProfile("Outlook"));
  FrmTwo& page = OpenPage(machine);
  for (const char* group :
       {"Adult-Junk Senders", "Dictionary", "Macros and VBA programs", "Offline folders",
        "Personal Address Book", "Signatures", "Setting Files"}) {
    EXPECT_EQ(NodeAt(page, std::string("Microsoft Outlook\\") + group)->Children(), 0) << group;
  }
}

TEST(OutlookSource, ProfileNamedLikeAGroupKeepsItsDataApartFromIt) {
  TestMachine machine("xp");
  SeedRoaming(machine, {});
  for (const char* name :
       {"Signatures", "Identities", "Account Settings", "Account Emails-Files1", "Other Files"}) {
    SeedProfile(machine, NtProfile(name), {{"Personal", std::string("C:\\") + name + ".pst"}});
  }
  machine.WriteFile(machine.Profile() + "\\Application Data\\Microsoft\\Signatures\\Anna.htm", "x");
  FrmTwo& page = OpenPage(machine);
  NodeAt(page, "Microsoft Outlook\\Signatures\\Anna.htm");
  NodeAt(page, "Other Files\\My Documents");
  for (const char* name :
       {"Signatures", "Identities", "Account Settings", "Account Emails-Files1", "Other Files"}) {
    const std::string identity = std::string("Microsoft Outlook\\Identities\\") + name;
    EXPECT_EQ(NodeAt(page, identity + "\\Account Settings")->Key(), NtProfile(name));
    NodeAt(page, identity + "\\Account Emails-Files\\Personal");
  }
}

TEST(OutlookSource, TextOfProfileValuesGoesThereAndBack) {
  TestMachine machine("xp");
  Application& app = machine.app();
  for (const char* text : {"", "C:\\Mail\\outlook.pst", "C:\\B\u00fcro\\a.pst"}) {
    EXPECT_EQ(DecodeProfileText8(app, EncodeProfileText8(app, text)), text);
    EXPECT_EQ(DecodeProfileText16(EncodeProfileText16(text)), text);
  }
  EXPECT_EQ(EncodeProfileText16("a"), std::string("a\0\0\0", 4));
  EXPECT_EQ(EncodeProfileText8(app, "\u00fc"), std::string("\xFC\0", 2));
  EXPECT_EQ(DecodeProfileText16("a"), "");  // half a unit
  EXPECT_EQ(DecodeProfileText16(std::string("a\0\0\0b\0", 6)), "a");
}

// Internet Explorer ------------------------------------------------------------------------------

TEST(InternetExplorerSource, CookiesBesideTheFavoritesStandInForAMissingCookiesFolder) {
  TestMachine machine("98");
  machine.computer().SetSpecialFolder(33, "");
  machine.computer().SetSpecialFolder(6, "C:\\WINDOWS\\Favorites");
  machine.MakeFolder("C:\\WINDOWS\\Favorites");
  machine.MakeFolder("C:\\WINDOWS\\Cookies");
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(NodeAt(page, "Internet Explorer\\Cookies")->Key(), "C:\\WINDOWS\\cookies");
  EXPECT_EQ(NodeAt(page, "Internet Explorer\\Favorites")->Key(), "C:\\WINDOWS\\Favorites");
}

TEST(InternetExplorerSource, FoldersThatAreGoneAreLeftOut) {
  TestMachine machine("xp");
  machine.computer().SetSpecialFolder(33, "C:\\Gone\\Cookies");
  machine.computer().SetSpecialFolder(6, "C:\\Gone\\Favorites");
  EXPECT_EQ(ChildTexts(NodeAt(OpenPage(machine), "Internet Explorer")),
            (Texts{"Typed Urls", "IESettings"}));
}

TEST(InternetExplorerSource, TypedAddressesAreSelectedAtFirst) {
  TestMachine machine("xp");
  EXPECT_EQ(OpenPage(machine).tvwMain.Selected()->Text(), "Typed Urls");
}

// Other files ------------------------------------------------------------------------------------

TEST(OtherFilesSource, FoldersEndInOneBackslash) {
  TestMachine machine("xp");
  machine.computer().SetDrive("D", DriveKind::kFixed);
  machine.computer().SetSpecialFolder(5, "D:\\");
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(NodeAt(page, "Other Files\\My Documents")->Key(), "D:\\");
  EXPECT_EQ(NodeAt(page, "Other Files\\My Desktop Files")->Key(), machine.Desktop() + "\\");
}

TEST(OtherFilesSource, FillEndsAtItsFirstError) {
  TestMachine machine("xp");
  machine.computer().SetSpecialFolder(16, machine.Documents());
  FrmTwo& page = OpenPage(machine);
  EXPECT_EQ(ChildTexts(NodeAt(page, "Other Files")), Texts{"My Documents"});
  EXPECT_EQ(page.tvwMain.Find("Add Other Folders"), nullptr);
}

}  // namespace
}  // namespace quorvale::discovery_test
