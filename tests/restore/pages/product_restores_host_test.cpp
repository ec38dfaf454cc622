// What each product's routine does with its rows.
#include "discovery/products/outlook_profile.h"
#include "restore/mail_profile.h"
#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

JobArchive OneMail(const std::string& key = "E:\\Anna's store\\Inbox.dbx") {
  JobArchive archive;
  archive.With("Outlook Express\\Email Messages\\Inbox.dbx", key,
               "Outlook Express\\Email Messages\\Inbox.dbx", "mail");
  return archive;
}

std::string StoreRoot(TestMachine& machine, const std::string& identity) {
  return machine
      .GetValue("HKEY_CURRENT_USER\\Identities\\" + identity +
                    "\\Software\\Microsoft\\Outlook Express\\5.0",
                "Store Root")
      .value_or("none");
}

// Outlook Express. -----------------------------------------------------------------------------

TEST(OutlookExpressRestore, ADotInTheUserNameBecomesAnUnderscoreInTheAddressBook) {
  TestMachine machine("xp");
  machine.SetUser("bert.b");
  const std::string folder = machine.AppData() + "\\Microsoft\\Address Book\\";
  machine.WriteFile(folder + "bert.b.wab", "old");
  machine.WriteFile(folder + "bert.b.wab~", "trace");
  JobArchive archive;
  archive.With("Outlook Express\\Address Book\\Anna.wab", "C:\\A\\Anna.wab",
               "Outlook Express\\Address Book\\Anna.wab", "people");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.AllBelow(folder), std::vector<std::string>{folder + "bert_b.wab"});
  EXPECT_EQ(machine.ReadFile(folder + "bert_b.wab"), "people");
}

TEST(OutlookExpressRestore, ALivingBookThatCannotBeCopiedIsLeftAndTheRestoredOneStandsBesideIt) {
  TestMachine machine("xp");
  machine.SetUser("bert.b");
  const std::string folder = machine.AppData() + "\\Microsoft\\Address Book\\";
  machine.WriteFile(folder + "bert.b.wab", "own");
  machine.WriteFile(folder + "bert_b.wab", "living");
  JobArchive archive;
  archive.With("Outlook Express\\Address Book\\Anna.wab", "C:\\A\\Anna.wab",
               "Outlook Express\\Address Book\\Anna.wab", "people");
  const std::string path = archive.Write(machine);
  machine.faults().files.SetInUse(folder + "bert_b.wab", true);
  RestoreWizard(machine).RestoreAll(path);
  machine.faults().files.SetInUse(folder + "bert_b.wab", false);
  EXPECT_EQ(machine.ReadFile(folder + "bert.b.wab"), "own");
  EXPECT_EQ(machine.ReadFile(folder + "bert_b.wab"), "living");
  EXPECT_EQ(machine.ReadFile(folder + "bert_b_1.wab"), "people");
}

TEST(OutlookExpressRestore, AnAddressBookRowWithoutAFileKeepsTheUsersBook) {
  TestMachine machine("xp");
  const std::string book = machine.AppData() + "\\Microsoft\\Address Book\\Anna.wab";
  machine.WriteFile(book, "mine");
  machine.WriteFile(book + "~", "trace");
  JobArchive archive;
  archive.Item("Outlook Express\\Address Book", "Address Book")
      .Item("Outlook Express\\Address Book\\Anna.wab", "C:\\A\\Anna.wab");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.ReadFile(book), "mine");
  EXPECT_EQ(machine.ReadFile(book + "~"), "trace");
}

TEST(OutlookExpressRestore, ADamagedAddressBookKeepsTheUsersBook) {
  TestMachine machine("xp");
  const std::string book = machine.AppData() + "\\Microsoft\\Address Book\\Anna.wab";
  JobArchive archive;
  archive.With("Outlook Express\\Address Book\\Anna.wab", "C:\\A\\Anna.wab",
               "Outlook Express\\Address Book\\Anna.wab", "people of the backup");
  const std::string path = archive.Write(machine);
  RestoreWizard wizard(machine);
  wizard.Open(path);
  wizard.TickAll();
  wizard.ToReview();
  // Damaged after the first page has tested it.
  machine.WriteFile(path, ReplaceAll(machine.ReadFile(path), "people of", "pEople of"));
  machine.WriteFile(book, "mine");
  machine.WriteFile(book + "~", "trace");
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_EQ(machine.ReadFile(book), "mine");
  EXPECT_EQ(machine.ReadFile(book + "~"), "trace");
}

TEST(OutlookExpressRestore, OfSeveralAddressBooksOnlyOneBecomesTheUsers) {
  TestMachine machine("xp", "Bert");
  JobArchive archive;
  for (const char* name : {"Anna.wab", "Club.wab", "notes.txt"}) {
    archive.With(
        "Outlook Express\\Address Book\\" + std::string(name), "C:\\A\\" + std::string(name),
        "Outlook Express\\Address Book\\" + std::string(name), "content of " + std::string(name));
  }
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  const std::string folder = machine.AppData() + "\\Microsoft\\Address Book\\";
  EXPECT_EQ(machine.ReadFile(folder + "Bert.wab"), "content of Anna.wab");
  EXPECT_EQ(machine.ReadFile(folder + "Club.wab"), "content of Club.wab");
  EXPECT_EQ(machine.ReadFile(folder + "notes.txt"), "content of notes.txt");
}

TEST(OutlookExpressRestore, AnIdentityWithoutAStoreRootGetsTheDefaultFolderFirst) {
  TestMachine machine("xp", "Bert");
  SeedIdentity(machine, kIdentity);
  RestoreWizard wizard(machine);
  wizard.Open(OneMail().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  std::string root_at_extraction;
  frmRFinish& run = wizard.run();
  run.LblFileinprocess.caption.on_change = [&] {
    const bool is_test = Contains(run.lblCurrent.caption.get(), "Extracting Items");
    if (is_test || !Contains(run.LblFileinprocess.caption.get(), "Inbox")) return;
    root_at_extraction = StoreRoot(machine, kIdentity);
  };
  wizard.Run();
  const std::string store = StoreOf(machine, kIdentity);
  EXPECT_EQ(root_at_extraction, store + "\\");
  EXPECT_EQ(StoreRoot(machine, kIdentity), store + "\\");
  EXPECT_EQ(machine.ReadFile(store + "\\Inbox.dbx"), "mail");
}

TEST(OutlookExpressRestore, AStoreRootInsideAnEarlierRestoreStaysAsItStands) {
  TestMachine machine("xp");
  SeedIdentity(machine, kIdentity, "D:\\Restored\\Job\\Store\\");
  RestoreWizard(machine).RestoreAll(OneMail().Write(machine));
  EXPECT_EQ(machine.ReadFile("D:\\Restored\\Job\\Store\\Inbox.dbx"), "mail");
  EXPECT_EQ(StoreRoot(machine, kIdentity), "D:\\Restored\\Job\\Store\\");
}

TEST(OutlookExpressRestore, TheUserProfileVariableOfAStoreRootIsFilledIn) {
  TestMachine machine("xp");
  SeedIdentity(machine, kIdentity, "%UserProfile%\\Mail\\Outlook Express\\");
  RestoreWizard(machine).RestoreAll(OneMail().Write(machine));
  EXPECT_EQ(machine.ReadFile(machine.Profile() + "\\Mail\\Outlook Express\\Inbox.dbx"), "mail");
}

TEST(OutlookExpressRestore, MailDoesNotGoToThePathOfTheBackupEvenIfThatExists) {
  TestMachine machine("xp");
  SeedIdentity(machine, kIdentity);
  machine.WriteFile("D:\\Anna's store\\Inbox.dbx", "left alone");
  RestoreWizard(machine).RestoreAll(OneMail("D:\\Anna's store\\Inbox.dbx").Write(machine));
  EXPECT_EQ(machine.ReadFile("D:\\Anna's store\\Inbox.dbx"), "left alone");
  EXPECT_EQ(machine.ReadFile(StoreOf(machine, kIdentity) + "\\Inbox.dbx"), "mail");
}

TEST(OutlookExpressRestore, AMailRowWithoutAFileMakesNoStore) {
  TestMachine machine("xp");
  SeedIdentity(machine, kIdentity, "D:\\Mail\\Store\\");
  JobArchive archive;
  archive.Item("Outlook Express\\Email Messages", "Email Messages")
      .Item("Outlook Express\\Email Messages\\Inbox.dbx", "C:\\S\\Inbox.dbx");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(StoreRoot(machine, kIdentity), "D:\\Mail\\Store\\");
  EXPECT_FALSE(machine.Exists("D:\\Mail"));
}

TEST(OutlookExpressRestore, RegistryItemsOfAnotherIdentityComeBackUnderIt) {
  TestMachine machine("xp");
  SeedIdentity(machine, kIdentity);
  const std::string key = "HKEY_CURRENT_USER\\Identities\\" + std::string(kOtherIdentity) +
                          "\\Software\\Microsoft\\Outlook Express\\5.0\\signatures\\00000000";
  JobArchive archive;
  archive.With("Outlook Express\\Signature\\Work & home", key,
               "Outlook Express\\Signature\\Work_&_home.reg", RegText(key, "name", "Work & home"));
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.GetValue(key, "name"), "Work & home");
  EXPECT_FALSE(machine.KeyExists("HKEY_CURRENT_USER\\Identities\\" + std::string(kIdentity) +
                                 "\\Software\\Microsoft\\Outlook Express\\5.0\\signatures"));
  EXPECT_EQ(frmRFinish::RemapIdentityKey(key, kIdentity),
            "HKEY_CURRENT_USER\\Identities\\" + std::string(kIdentity) +
                "\\Software\\Microsoft\\Outlook Express\\5.0\\signatures\\00000000");
  EXPECT_EQ(frmRFinish::RemapIdentityKey("HKEY_CURRENT_USER\\Identities", kIdentity),
            "HKEY_CURRENT_USER\\Identities");
}

TEST(OutlookExpressRestore, StationeryGoesToTheCommonFolder) {
  TestMachine machine("xp");
  JobArchive archive;
  archive.With("Outlook Express\\Stationery\\Leaves.htm", "D:\\Old\\Stationery\\Leaves.htm",
               "Outlook Express\\Stationery\\Leaves.htm", "<html>");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.ReadFile(machine.CommonFiles() + "\\Microsoft Shared\\Stationery\\Leaves.htm"),
            "<html>");
}

// Microsoft Outlook. ---------------------------------------------------------------------------

TEST(OutlookRestore, TheLooseFilesOfEachGroupGoToTheirOwnHome) {
  struct Group {
    const char* name;
    const char* file;
    const char* home;
  };
  const std::vector<Group> groups = {
      {"Adult-Junk Senders", "Junk Senders.txt", "\\Application Data\\Microsoft\\Outlook"},
      {"Dictionary", "CUSTOM.DIC", "\\Application Data\\Microsoft\\Proof"},
      {"Macros and VBA programs", "Vba.OTM", "\\Application Data\\Microsoft\\Outlook"},
      {"Offline folders", "o.ost", "\\Local Settings\\Application Data\\Microsoft\\Outlook"},
      {"Personal Address Book", "p.pab", "\\Local Settings\\Application Data\\Microsoft\\Outlook"},
      {"Signatures", "s.htm", "\\Application Data\\Microsoft\\Signatures"},
      {"Setting Files", "set.dat", "\\Application Data\\Microsoft\\Outlook"}};
  for (const Group& wanted : groups) {
    TestMachine machine("xp", "Bert");
    UseOutlook(machine, "11");
    JobArchive archive;
    for (const Group& group : groups) {
      const std::string item = "Microsoft Outlook\\" + std::string(group.name);
      archive.Item(item, group.name)
          .With(item + "\\" + group.file, "C:\\Anna\\" + std::string(group.file),
                item + "\\" + group.file, group.name);
    }
    RestoreWizard wizard(machine);
    wizard.Open(archive.Write(machine));
    const std::vector<std::string> before = machine.AllBelow(machine.Profile());
    wizard.Tick("Microsoft Outlook\\" + std::string(wanted.name));
    wizard.ToReview();
    machine.Expect(ui::Answer::kOk, "Backup successfully restored");
    wizard.Run();
    std::vector<std::string> files;
    for (const std::string& path : machine.AllBelow(machine.Profile())) {
      const bool is_new = std::find(before.begin(), before.end(), path) == before.end();
      if (Contains(FoldCase(path), "\\logs\\accounts\\")) continue;
      if (is_new && !path.ends_with("\\")) files.push_back(path);
    }
    EXPECT_EQ(files,
              std::vector<std::string>{machine.Profile() + wanted.home + "\\" + wanted.file});
    EXPECT_EQ(machine.ReadFile(machine.Profile() + wanted.home + "\\" + wanted.file), wanted.name);
  }
}

TEST(OutlookRestore, TheDictionaryFollowsTheInstalledVersion) {
  for (const auto& [version, folder] :
       std::vector<std::pair<std::string, std::string>>{{"9", "\\Proof"},
                                                        {"10", "\\Proof"},
                                                        {"11", "\\Proof"},
                                                        {"12", "\\UProof"},
                                                        {"14", ""}}) {
    TestMachine machine("xp");
    UseOutlook(machine, version);
    JobArchive archive;
    archive.With("Microsoft Outlook\\Dictionary\\C.dic", "C:\\A\\C.dic",
                 "Microsoft Outlook\\Dictionary\\C.dic", "words");
    RestoreWizard(machine).RestoreAll(archive.Write(machine));
    EXPECT_TRUE(
        machine.Exists(machine.Profile() + "\\Application Data\\Microsoft" + folder + "\\C.dic"))
        << version;
  }
}

// A profile "P" of another user with one data file.
JobArchive ProfileArchive(const std::string& profile = "P", const std::string& mark = "") {
  const std::string item = "Microsoft Outlook\\Identities\\" + profile + mark;
  const std::string key = kProfiles + profile;
  std::string wide;
  for (const char c : Wide("C:\\Anna\\mail.pst")) {
    wide += (wide.empty() ? "" : ",");
    wide += ToHexText(std::string(1, c));
  }
  const std::string reg =
      "REGEDIT4\r\n\r\n[" + key + "]\r\n\r\n[" + key + "\\" + kStoreListSection + "]\r\n\"" +
      kStoreListValue + "\"=hex:30,31,32,33,34,35,36,37,38,39,41,42,43,44,45,46\r\n\r\n[" + key +
      "\\" + kSection + "]\r\n\"" + kStorePath8 + "\"=\"C:\\\\Anna\\\\mail.pst\"\r\n\"" +
      kStorePath16 + "\"=hex:" + wide + "\r\n\"" + kStoreEntryId + "\"=hex:01,02\r\n\r\n";
  JobArchive archive;
  archive.Item("Microsoft Outlook\\Identities", "Identities:Outlook.Application.11")
      .Item(item, profile)
      .With(item + "\\Account Settings", key, item + "\\Account_Settings.reg", reg)
      .With(item + "\\Account Emails-Files\\Mail", "C:\\Anna\\mail.pst", item + "\\mail.pst",
            "letters of " + profile);
  return archive;
}

TEST(OutlookRestore, AProfileOpensTheFileThatWasRestored) {
  for (const char* version : {"9", "10", "11", "12"}) {
    TestMachine machine("xp", "Bert");
    UseOutlook(machine, version);
    RestoreWizard(machine).RestoreAll(ProfileArchive("P", " (Default)").Write(machine));
    const std::string file =
        machine.Profile() + "\\Local Settings\\Application Data\\Microsoft\\Outlook\\mail.pst";
    EXPECT_EQ(machine.ReadFile(file), "letters of P");
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath8), file) << version;
    EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide(file)) << version;
    EXPECT_EQ(machine.GetValue(Section("P"), kStoreEntryId), std::nullopt) << version;
  }
}

TEST(OutlookRestore, OnVistaFileAndProfileKeepTheirTwoPaths) {
  TestMachine machine("vista", "Bert");
  UseOutlook(machine, "12");
  RestoreWizard(machine).RestoreAll(ProfileArchive().Write(machine));
  EXPECT_TRUE(machine.Exists(machine.Profile() +
                             "\\Local Settings\\Application Data\\Microsoft\\Outlook\\mail.pst"));
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16),
            Wide(machine.Profile() + "\\AppData\\Local\\Microsoft\\Outlook\\mail.pst"));
}

TEST(OutlookRestore, KeepingTheFilesPointsTheProfileAtTheRestoreFolder) {
  TestMachine machine("xp", "Bert");
  UseOutlook(machine, "11");
  RestoreWizard wizard(machine);
  wizard.Open(ProfileArchive().Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  machine.Click(wizard.review().optRestore);
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16),
            Wide(machine.session().gAppDataPath +
                 "\\Restore\\Job\\Microsoft Outlook\\Identities\\P\\mail.pst"));
  EXPECT_FALSE(machine.Exists(machine.Profile() + "\\Local Settings\\Application Data\\Microsoft"
                                                  "\\Outlook\\mail.pst"));
}

TEST(OutlookRestore, TwoFilesOfOneNameStayTwoFiles) {
  TestMachine machine("xp", "Bert");
  UseOutlook(machine, "11");
  JobArchive archive = ProfileArchive("P");
  const std::string q = "Microsoft Outlook\\Identities\\Q";
  archive.Item(q, "Q")
      .With(q + "\\Account Settings", std::string(kProfiles) + "Q", q + "\\Account_Settings.reg",
            "REGEDIT4\r\n\r\n[" + std::string(kProfiles) + "Q\\" + kStoreListSection + "]\r\n\"" +
                kStoreListValue +
                "\"=hex:30,31,32,33,34,35,36,37,38,39,41,42,43,44,45,46\r\n\r\n[" + kProfiles +
                "Q\\" + kSection + "]\r\n\"" + kStorePath8 +
                "\"=\"D:\\\\Other\\\\MAIL.pst\"\r\n\r\n")
      .With(q + "\\Account Emails-Files\\Mail", "D:\\Other\\MAIL.pst", q + "\\MAIL.pst",
            "letters of Q");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  const std::string folder =
      machine.Profile() + "\\Local Settings\\Application Data\\Microsoft\\Outlook\\";
  EXPECT_EQ(machine.ReadFile(folder + "mail.pst"), "letters of P");
  EXPECT_EQ(machine.ReadFile(folder + "MAIL_1.pst"), "letters of Q");
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide(folder + "mail.pst"));
  EXPECT_EQ(machine.GetValue(Section("Q"), kStorePath8), folder + "MAIL_1.pst");
}

TEST(OutlookRestore, ADataFileThatIsStillThereAndNotRestoredStaysInUse) {
  TestMachine machine("xp");
  UseOutlook(machine, "11");
  machine.WriteFile("C:\\Anna\\mail.pst", "present letters");
  RestoreWizard wizard(machine);
  wizard.Open(ProfileArchive().Write(machine));
  wizard.Tick("Microsoft Outlook\\Identities\\P\\Account Settings");
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_EQ(machine.GetValue(Section("P"), kStorePath16), Wide("C:\\Anna\\mail.pst"));
  EXPECT_EQ(machine.ReadFile("C:\\Anna\\mail.pst"), "present letters");
}

TEST(OutlookRestore, AnArchiveFileIsNeverAddedToASession) {
  TestMachine machine("xp");
  frmRFinish& page = machine.app().Get<frmRFinish>();
  page.DataFileTable = {{"C:\\mail.pst", "P"},
                        {"C:\\Old\\Archive.PST", "P"},
                        {"C:\\b.pst", "Q"},
                        {"", ""},
                        {"C:\\behind the end.pst", "Q"}};
  std::vector<std::string> added;
  page.RegisterDataFiles([&](const std::string& path) {
    added.push_back(path);
    EXPECT_EQ(page.LblRegData.caption.get(),
              "Registering Data File for Profile : " + std::string(added.size() == 1 ? "P" : "Q") +
                  "  " + path);
  });
  EXPECT_EQ(added, (std::vector<std::string>{"C:\\mail.pst", "C:\\b.pst"}));
  EXPECT_FALSE(page.LblRegData.visible);
}

// Windows Mail. --------------------------------------------------------------------------------

TEST(WindowsMailRestore, StoreContactsAndSettingsGoToThePresentUser) {
  TestMachine machine("vista", "Bert");
  const std::string key = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail";
  JobArchive archive;
  archive
      .With("Windows Mail\\Mails", "D:\\Anna\\Windows Mail\\", "Windows Mail\\Mails\\Inbox\\1.eml",
            "letter")
      .Member("Windows Mail\\Mails\\store.db", "store")
      .With("Windows Mail\\Contacts", "C:\\Users\\Anna\\Contacts",
            "Windows Mail\\Contacts\\a.contact", "person")
      .Item("Windows Mail\\Account Settings", "Account Settings")
      .With("Windows Mail\\Account Settings\\WMRegistrySettings", key,
            "Windows Mail\\Account Settings\\WMRegistrySettings.reg",
            RegText(key, "Store Root", "C:\\\\Users\\\\Anna\\\\Mail"));
  const std::string store = machine.LocalAppData() + "\\Microsoft\\Windows Mail";
  machine.WriteFile(store + "\\Inbox\\1.eml", "older");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.ReadFile(store + "\\Inbox\\1.eml"), "letter");
  EXPECT_EQ(machine.ReadFile(store + "\\store.db"), "store");
  EXPECT_EQ(machine.ReadFile(machine.Profile() + "\\Contacts\\a.contact"), "person");
  EXPECT_EQ(machine.GetValue(key, "Store Root"), "C:\\Users\\Anna\\Mail");
  EXPECT_FALSE(machine.Exists("D:\\Anna"));
}

// Internet Explorer and files. -----------------------------------------------------------------

TEST(BrowserRestore, SettingsAreFoundWhereTheBackupPutThem) {
  TestMachine machine("xp");
  JobArchive archive;
  const std::string typed = "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs";
  const std::string proxy =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
  archive
      .With("Internet Explorer\\Typed Urls", typed, "Internet Explorer\\Typed Urls\\Typed_Urls.reg",
            RegText(typed, "url1", "http://a.example/"))
      .Item("Internet Explorer\\IESettings", "IESettings")
      .With("Internet Explorer\\IESettings\\Current User Settings Proxy Settings", proxy,
            "Internet Explorer\\IESettings\\Current_User_Settings_Proxy_Settings.reg",
            RegText(proxy, "ProxyServer", "proxy:8080"));
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.GetValue(typed, "url1"), "http://a.example/");
  EXPECT_EQ(machine.GetValue(proxy, "ProxyServer"), "proxy:8080");
}

JobArchive Cookies() {
  JobArchive archive;
  archive
      .With("Internet Explorer\\Cookies", "C:\\Old\\Cookies",
            "Internet Explorer\\Cookies\\anna@site.txt", "crumb")
      .With("Internet Explorer\\Favorites", "C:\\Old\\Favorites",
            "Internet Explorer\\Favorites\\News\\Paper.url", "link");
  return archive;
}

TEST(BrowserRestore, FavoritesAndCookiesGoToThePresentUser) {
  TestMachine machine("xp", "Bert");
  RestoreWizard(machine).RestoreAll(Cookies().Write(machine));
  EXPECT_EQ(machine.ReadFile(machine.Favorites() + "\\News\\Paper.url"), "link");
  EXPECT_EQ(machine.ReadFile(machine.Cookies() + "\\anna@site.txt"), "crumb");
}

TEST(BrowserRestore, WithoutACookieFolderTheyGoBesideTheFavorites) {
  TestMachine machine("xp", "Bert");
  machine.computer().SetSpecialFolder(special_folder::kCookies, "");
  RestoreWizard(machine).RestoreAll(Cookies().Write(machine));
  EXPECT_EQ(machine.ReadFile(machine.Profile() + "\\cookies\\anna@site.txt"), "crumb");
}

TEST(FilesRestore, ASilentShareKeepsItsItemsInTheRestoreFolder) {
  TestMachine machine("xp");
  JobArchive archive;
  archive
      .With("Add More Files\\\\\\server\\share\\a.txt", "\\\\server\\share\\a.txt",
            "Added More Files\\a.txt", "file")
      .With("Add Other Folders\\\\\\server\\share\\Far", "\\\\server\\share\\Far",
            "Added Other Folders\\Far\\b.txt", "folder");
  RestoreWizard wizard(machine);
  wizard.Open(archive.Write(machine));
  wizard.TickAll();
  wizard.ToReview();
  const std::string left = machine.session().gAppDataPath + "\\Restore\\Job";
  machine.Expect(ui::Answer::kOk, "");
  wizard.Run();
  EXPECT_TRUE(Contains(machine.Boxes().back(), "has been copied to location: " + left));
  EXPECT_EQ(machine.ReadFile(left + "\\Added more Files\\a.txt"), "file");
  EXPECT_EQ(machine.ReadFile(left + "\\Added Other Folders\\Far\\b.txt"), "folder");
}

// The documents folder of Windows XP restored on Vista, and the other way: there is no place of
// that name for them, so they stay in the restore folder, and that is said.
TEST(FilesRestore, DocumentsOfAnotherSystemsWordStayInTheRestoreFolder) {
  struct Case {
    const char* like;
    const char* item;
    const char* old_folder;
  };
  for (const Case& wanted :
       {Case{"vista", "Other Files\\My Documents",
             "C:\\Documents and Settings\\Anna\\My Documents\\"},
        Case{"xp", "Other Files\\Documents", "C:\\Users\\Anna\\Documents\\"}}) {
    SCOPED_TRACE(wanted.like);
    TestMachine machine(wanted.like, "Bert");
    JobArchive archive;
    archive.With(wanted.item, wanted.old_folder, wanted.item + std::string("\\deep\\a.txt"),
                 "text");
    RestoreWizard wizard(machine);
    wizard.Open(archive.Write(machine));
    wizard.TickAll();
    wizard.ToReview();
    machine.Expect(ui::Answer::kOk, "");
    wizard.Run();
    const std::string left = machine.session().gAppDataPath + "\\Restore\\Job";
    EXPECT_TRUE(Contains(machine.Boxes().back(), "has been copied to location: " + left));
    EXPECT_EQ(machine.ReadFile(left + "\\" + wanted.item + "\\deep\\a.txt"), "text");
    EXPECT_FALSE(machine.Exists(machine.Documents() + "\\deep"));
    EXPECT_FALSE(machine.Exists(wanted.old_folder));
  }
}

JobArchive DesktopAndDocuments() {
  JobArchive archive;
  archive
      .With("Other Files\\My Documents", "C:\\Documents and Settings\\Anna\\My Documents\\",
            "Other Files\\My Documents\\deep\\a.txt", "text")
      .With("Other Files\\My Desktop Files", "C:\\Documents and Settings\\Anna\\Desktop\\",
            "Other Files\\My Desktop Files\\b.txt", "desk")
      .With("Add More Files\\C:\\Documents and Settings\\Anna\\Desktop\\x\\c.txt",
            "C:\\Documents and Settings\\Anna\\Desktop\\x\\c.txt", "Added More Files\\c.txt",
            "added")
      .With("Add More Files\\C:\\Documents and Settings\\Anna\\My Documents\\y\\d.txt",
            "C:\\Documents and Settings\\Anna\\My Documents\\y\\d.txt", "Added More Files\\d.txt",
            "added too");
  return archive;
}

TEST(FilesRestore, AnotherUsersFoldersAreMappedToThePresentOnes) {
  TestMachine machine("xp", "Bert");
  RestoreWizard(machine).RestoreAll(DesktopAndDocuments().Write(machine));
  EXPECT_EQ(machine.ReadFile(machine.Documents() + "\\deep\\a.txt"), "text");
  EXPECT_EQ(machine.ReadFile(machine.Desktop() + "\\b.txt"), "desk");
  EXPECT_EQ(machine.ReadFile(machine.Desktop() + "\\x\\c.txt"), "added");
  EXPECT_EQ(machine.ReadFile(machine.Documents() + "\\y\\d.txt"), "added too");
  EXPECT_FALSE(machine.Exists("C:\\Documents and Settings\\Anna"));
}

TEST(FilesRestore, FoldersThatAreStillThereGetTheirFilesBack) {
  TestMachine machine("xp", "Bert");
  machine.MakeFolder("C:\\Documents and Settings\\Anna\\Desktop");
  machine.MakeFolder("C:\\Documents and Settings\\Anna\\My Documents");
  RestoreWizard(machine).RestoreAll(DesktopAndDocuments().Write(machine));
  const std::string anna = "C:\\Documents and Settings\\Anna";
  EXPECT_EQ(machine.ReadFile(anna + "\\My Documents\\deep\\a.txt"), "text");
  EXPECT_EQ(machine.ReadFile(anna + "\\Desktop\\b.txt"), "desk");
  EXPECT_EQ(machine.ReadFile(anna + "\\Desktop\\x\\c.txt"), "added");
  EXPECT_EQ(machine.ReadFile(anna + "\\My Documents\\y\\d.txt"), "added too");
}

TEST(FilesRestore, AnAddedFolderKeepsItsInnerTreeAndItsEmptyFolders) {
  TestMachine machine("xp");
  JobArchive archive;
  archive.Item("Add Other Folders\\D:\\Work\\House", "D:\\Work\\House")
      .Member("Added Other Folders\\House\\one.txt", "1")
      .Member("Added Other Folders\\House\\a\\b\\two.txt", "2")
      .Member("Added Other Folders\\House\\empty\\", "")
      .Member("Added Other Folders\\Household\\not mine.txt", "3");
  RestoreWizard(machine).RestoreAll(archive.Write(machine));
  EXPECT_EQ(machine.AllBelow("D:\\Work"),
            (std::vector<std::string>{"D:\\Work\\House\\", "D:\\Work\\House\\a\\",
                                      "D:\\Work\\House\\a\\b\\", "D:\\Work\\House\\a\\b\\two.txt",
                                      "D:\\Work\\House\\empty\\", "D:\\Work\\House\\one.txt"}));
}

}  // namespace
}  // namespace quorvale::restore_test
