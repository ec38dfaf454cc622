#include "backup/format/archive_layout.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "core/program/ModGlobal.h"

namespace quorvale {

// For messages of the tests.
std::ostream& operator<<(std::ostream& out, ItemEntry::Kind kind) {
  return out << static_cast<int>(kind);
}

namespace {

using Kind = ItemEntry::Kind;

constexpr char kDocumentsXp[] = "C:\\Documents and Settings\\Anna\\My Documents\\";
constexpr char kDesktopXp[] = "C:\\Documents and Settings\\Anna\\Desktop\\";
constexpr char kStore[] = "C:\\Store\\";

struct NameCase {
  const char* path;
  std::string key;
  Kind kind;
  const char* folder;
  const char* name;
  const char* os = kWindows2000;
};

void PrintTo(const NameCase& c, std::ostream* out) { *out << c.path << " = " << c.key; }

class EntryNames : public testing::TestWithParam<NameCase> {};

TEST_P(EntryNames, FollowThePathAndKeyOfTheItem) {
  const NameCase& c = GetParam();
  const ItemEntry entry = EntryOfItem(c.path, c.key, c.os);
  EXPECT_EQ(entry.kind, c.kind);
  EXPECT_EQ(entry.folder, c.folder);
  EXPECT_EQ(entry.name, c.name);
}

const NameCase kBrowserCases[] = {
    {"Internet Explorer\\Typed Urls",
     "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs", Kind::kRegistry,
     "Internet Explorer\\Typed Urls", "Internet Explorer\\Typed Urls\\Typed_Urls.reg"},
    {"Internet Explorer\\IESettings\\Local Machine Settings",
     "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer", Kind::kRegistry,
     "Internet Explorer\\IESettings", "Internet Explorer\\IESettings\\Local_Machine_Settings.reg"},
    {"Internet Explorer\\IESettings\\Current User Settings Proxy Settings",
     "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings",
     Kind::kRegistry, "Internet Explorer\\IESettings",
     "Internet Explorer\\IESettings\\Current_User_Settings_Proxy_Settings.reg"},
    {"Internet Explorer\\Cookies", "C:\\Users\\Anna\\Cookies", Kind::kFolder,
     "Internet Explorer\\Cookies", "Internet Explorer\\Cookies"},
    {"Internet Explorer\\Favorites", "C:\\Users\\Anna\\Favorites", Kind::kFolder,
     "Internet Explorer\\Favorites", "Internet Explorer\\Favorites"},
    {"Internet Explorer\\IESettings", "IESettings", Kind::kNone, "Internet Explorer\\IESettings",
     ""},
    {"Internet Explorer\\History", "C:\\History\\index.dat", Kind::kNone,
     "Internet Explorer\\History", ""},
    // A name of the second level that is shorter than three characters keeps the third one.
    {"Internet Explorer\\IE\\Local", "HKEY_CURRENT_USER\\X", Kind::kRegistry,
     "Internet Explorer\\IE\\Local", "Internet Explorer\\IE\\Local\\Local.reg"},
    {"Internet Explorer\\IEs\\Local", "HKEY_CURRENT_USER\\X", Kind::kRegistry,
     "Internet Explorer\\IEs", "Internet Explorer\\IEs\\Local.reg"},
};
INSTANTIATE_TEST_SUITE_P(InternetExplorer, EntryNames, testing::ValuesIn(kBrowserCases));

const NameCase kOutlookCases[] = {
    {"Microsoft Outlook\\Identities\\Outlook\\Account Settings",
     "HKEY_CURRENT_USER\\Software\\X\\Outlook", Kind::kRegistry,
     "Microsoft Outlook\\Identities\\Outlook",
     "Microsoft Outlook\\Identities\\Outlook\\Account_Settings.reg"},
    {"Microsoft Outlook\\My Profile\\Account Settings", "HKEY_CURRENT_USER\\X", Kind::kRegistry,
     "Microsoft Outlook\\My Profile", "Microsoft Outlook\\My Profile\\Account_Settings.reg"},
    {"Microsoft Outlook\\Identities\\Anna Work (Default)\\Account Emails-Files\\Personal",
     "C:\\Mail\\outlook.pst", Kind::kFile, "Microsoft Outlook\\Identities\\Anna Work (Default)",
     "Microsoft Outlook\\Identities\\Anna Work (Default)\\outlook.pst"},
    {"Microsoft Outlook\\Identities\\Outlook\\Account Emails-Files\\Mailbox", "", Kind::kNone,
     "Microsoft Outlook\\Identities\\Outlook", ""},
    {"Microsoft Outlook\\Identities", "Identities:Outlook.Application.11", Kind::kNone,
     "Microsoft Outlook\\Identities", ""},
    {"Microsoft Outlook\\Registry Settings\\ProfileOptions",
     "HKEY_CURRENT_USER\\Software\\Microsoft\\Exchange\\Client\\Options", Kind::kRegistry,
     "Microsoft Outlook\\Registry Settings",
     "Microsoft Outlook\\Registry Settings\\ProfileOptions.reg"},
    {"Microsoft Outlook\\Dictionary\\CUSTOM.DIC", "C:\\Proof\\CUSTOM.DIC", Kind::kFile,
     "Microsoft Outlook\\Dictionary", "Microsoft Outlook\\Dictionary\\CUSTOM.DIC"},
};
INSTANTIATE_TEST_SUITE_P(MicrosoftOutlook, EntryNames, testing::ValuesIn(kOutlookCases));

const NameCase kMailCases[] = {
    {"Outlook Express\\Account Settings\\pop.example.com", "HKEY_CURRENT_USER\\Software\\A\\1",
     Kind::kRegistry, "Outlook Express\\Account Settings",
     "Outlook Express\\Account Settings\\pop.example.com.reg"},
    {"Outlook Express\\Email Messages\\Inbox.dbx", std::string(kStore) + "Inbox.dbx", Kind::kFile,
     "Outlook Express\\Email Messages", "Outlook Express\\Email Messages\\Inbox.dbx"},
    {"Outlook Express\\Email Messages\\Other Mail Folders\\Friends.dbx",
     std::string(kStore) + "Friends.dbx", Kind::kFile,
     "Outlook Express\\Email Messages\\Other Mail Folders",
     "Outlook Express\\Email Messages\\Other Mail Folders\\Friends.dbx"},
    {"Outlook Express\\Address Book", "Address Book", Kind::kNone, "Outlook Express", ""},
    {"Outlook Express\\Settings\\Outlook Exp",
     "HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook Express", Kind::kRegistry,
     "Outlook Express\\Settings", "Outlook Express\\Settings\\Outlook_Exp.reg"},
    {"Windows Mail\\Mails", "C:\\Users\\Anna\\AppData\\Local\\Microsoft\\Windows Mail\\",
     Kind::kFolder, "Windows Mail\\Mails", "Windows Mail\\Mails", kWindowsVista},
    {"Windows Mail\\Contacts", "C:\\Users\\Anna\\Contacts", Kind::kFolder, "Windows Mail\\Contacts",
     "Windows Mail\\Contacts", kWindowsVista},
    {"Windows Mail\\Account Settings", "HKEY_CURRENT_USER\\X", Kind::kRegistry,
     "Windows Mail\\Account Settings", "Windows Mail\\Account Settings\\Account_Settings.reg",
     kWindowsVista},
    {"Windows Mail\\Account Settings\\WMRegistrySettings",
     "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail", Kind::kRegistry,
     "Windows Mail\\Account Settings", "Windows Mail\\Account Settings\\WMRegistrySettings.reg",
     kWindowsVista},
    // A name of the second level that is shorter than five characters keeps the third one.
    {"Windows Mail\\News\\Groups", "C:\\News\\", Kind::kFolder, "Windows Mail\\News\\Groups",
     "Windows Mail\\News\\Groups", kWindowsVista},
    {"Windows Mail\\Mails\\Local", "C:\\Mails\\", Kind::kFolder, "Windows Mail\\Mails",
     "Windows Mail\\Mails", kWindowsVista},
};
INSTANTIATE_TEST_SUITE_P(Mail, EntryNames, testing::ValuesIn(kMailCases));

const NameCase kOtherCases[] = {
    {"Other Files\\My Documents", kDocumentsXp, Kind::kFolder, "Other Files\\My Documents",
     "Other Files\\My Documents"},
    {"Other Files\\My Desktop Files", kDesktopXp, Kind::kFolder, "Other Files\\My Desktop Files",
     "Other Files\\My Desktop Files"},
    {"Other Files\\Documents", "C:\\Users\\Anna\\Documents\\", Kind::kFolder,
     "Other Files\\Documents", "Other Files\\Documents", kWindowsVista},
    // The documents folder was moved, the desktop renamed: the caption decides.
    {"Other Files\\My Documents", "D:\\Data\\", Kind::kFolder, "Other Files\\My Documents",
     "Other Files\\My Documents"},
    {"Other Files\\Documents", "D:\\Data\\", Kind::kFolder, "Other Files\\Documents",
     "Other Files\\Documents", kWindowsVista},
    {"Other Files\\My Desktop Files", "C:\\Users\\Anna\\Schreibtisch\\", Kind::kFolder,
     "Other Files\\My Desktop Files", "Other Files\\My Desktop Files"},
    {"Other Files\\My Desktop Files", "C:\\My Documents\\Desktop\\", Kind::kFolder,
     "Other Files\\My Desktop Files", "Other Files\\My Desktop Files"},
    {"Other Files", "Other Files", Kind::kNone, "", ""},
    {"Add Other Folders\\D:\\Work\\Backup", "D:\\Work\\Backup", Kind::kFolder,
     "Added Other Folders\\Backup", "Added Other Folders\\Backup"},
    {"Add Other Folders\\D:\\", "D:\\", Kind::kFolder, "Added Other Folders\\D",
     "Added Other Folders\\D"},
    // An added folder stays one, whatever its path holds.
    {"Add Other Folders\\C:\\Outlook Express\\Mine", "C:\\Outlook Express\\Mine", Kind::kFolder,
     "Added Other Folders\\Mine", "Added Other Folders\\Mine"},
    {"Add Other Folders\\C:\\Desktop\\Other Files", "C:\\Desktop\\Other Files", Kind::kFolder,
     "Added Other Folders\\Other Files", "Added Other Folders\\Other Files"},
    {"Add More Files\\D:\\Work\\a b.txt", "D:\\Work\\a b.txt", Kind::kFile, "Added More Files",
     "Added More Files\\a b.txt"},
    {"Add More Files\\C:\\X\\My Documents\\a.txt", "C:\\X\\My Documents\\a.txt", Kind::kFile,
     "Added More Files", "Added More Files\\a.txt"},
    {"Add More Files", "Add More Files", Kind::kNone, "", ""},
};
INSTANTIATE_TEST_SUITE_P(OtherFiles, EntryNames, testing::ValuesIn(kOtherCases));

TEST(ArchiveLayout, BlanksOfAProfileNameStayAndOnlyExportNamesReplaceThem) {
  const ItemEntry entry = EntryOfItem("Microsoft Outlook\\Identities\\My Work\\Account Settings",
                                      "HKEY_CURRENT_USER\\X", kWindows2000);
  EXPECT_EQ(entry.name, "Microsoft Outlook\\Identities\\My Work\\Account_Settings.reg");
}

TEST(ArchiveLayout, ExportNamesReplaceBlanks) {
  EXPECT_EQ(ExportFileName("Account Settings"), "Account_Settings.reg");
  EXPECT_EQ(ExportFileName("Typed Urls"), "Typed_Urls.reg");
  EXPECT_EQ(ExportFileName("Current User Settings"), "Current_User_Settings.reg");
}

TEST(ArchiveLayout, CharactersThatNoFileNameCanHoldAreReplaced) {
  EXPECT_EQ(ExportFileName("Mail: home/work?"), "Mail__home_work_.reg");
  EXPECT_EQ(
      EntryOfItem("Microsoft Outlook\\Identities\\a:b\\Account Settings", "HKEY_X\\Y", kWindows2000)
          .folder,
      "Microsoft Outlook\\Identities\\a_b");
}

TEST(ArchiveLayout, SameLeafInOneFolderGivesTheSameExport) {
  const std::string path = "Outlook Express\\Account Settings\\Mail";
  EXPECT_EQ(EntryOfItem(path, "HKEY_CURRENT_USER\\A\\1", kWindows2000).name,
            EntryOfItem(path, "HKEY_CURRENT_USER\\A\\2", kWindows2000).name);
}

TEST(ArchiveLayout, TheSettingsEntryIsNamedTwiceAfterTheStem) {
  EXPECT_EQ(SettingsEntryName("My Job_1"), "My Job_1\\My Job_1.xml");
}

TEST(ArchiveLayout, EntryNamesAreTheTextBehindTheBackupFolder) {
  EXPECT_EQ(EntryNameBelow("C:\\Backup", "C:\\Backup\\Job\\Other Files\\a.txt"),
            "Job\\Other Files\\a.txt");
  EXPECT_EQ(EntryNameBelow("C:\\Backup", "C:\\Backup\\\\Job\\a.txt"), "Job\\a.txt");
  EXPECT_EQ(EntryNameBelow("D:\\", "D:\\Job\\a.txt"), "Job\\a.txt");
  EXPECT_EQ(EntryNameBelow("\\\\nas\\backup", "\\\\nas\\backup\\Job\\a.txt"), "Job\\a.txt");
}

TEST(ArchiveLayout, NamesOutsideOfTheBackupFolderAreCutAtItsLength) {
  EXPECT_EQ(EntryNameBelow("C:\\Ab", "D:\\Backup\\Job\\a.txt"), "ckup\\Job\\a.txt");
  EXPECT_EQ(EntryNameBelow("C:\\A long folder name", "D:\\x"), "");
}

}  // namespace
}  // namespace quorvale
