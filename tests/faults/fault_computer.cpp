#include "faults/fault_computer.h"

#include <random>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_places.h"
#include "discovery/products/outlook_profile.h"

namespace quorvale::fault_test {
namespace {

constexpr char kMailKey[] = "\\Software\\Microsoft\\Outlook Express\\5.0";
constexpr char kAccounts[] = "Software\\Microsoft\\Internet Account Manager\\Accounts\\00000001";
constexpr char kTypedUrls[] = "Software\\Microsoft\\Internet Explorer\\TypedURLs";
constexpr char kStoreSection[] = "30313233343536373839414243444546";
constexpr char kSectionId[] = "0123456789ABCDEF";  // the same as bytes
constexpr char kUserRoot[] = "HKEY_CURRENT_USER\\";

std::string Home(const std::string& below) { return std::string(kProfile) + "\\" + below; }

std::string StoreOf(const std::string& identity) {
  return Home("Local Settings\\Application Data\\Identities\\" + identity +
              "\\Microsoft\\Outlook Express");
}

std::string MailKeyOf(const std::string& identity) { return "Identities\\" + identity + kMailKey; }

std::string DataFile() {
  return Home("Local Settings\\Application Data\\Microsoft\\Outlook\\Outlook.pst");
}

std::string Wide(const std::string& text) { return Utf8ToUtf16Bytes(text) + std::string(2, '\0'); }

}  // namespace

std::string Noise(std::size_t size, unsigned seed) {
  std::minstd_rand random(seed + 1);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random() >> 8);
  return bytes;
}

bool IsAtOrBelow(const std::string& path, const std::string& folder) {
  return FoldCase(WithBackslash(path)).starts_with(FoldCase(WithBackslash(folder)));
}

void CommitFacts(Program& program) {
  program.session().gOSName = kWindows2000;
  program.session().gAppDataPath = kAppData;
}

FaultComputer::FaultComputer(int processors)
    : threads_(processors), real_{memory.registry,  memory.files,    memory.shell, memory.system,
                                  memory.processes, memory.services, memory.ftp,   memory.discs,
                                  memory.scheduler, threads_,        memory.ui} {
  memory.system.environment = {{"UserProfile", kProfile}, {"appdata", Home("Application Data")}};
  memory.shell.folders = {{special_folder::kPrograms, Home("Start Menu\\Programs")},
                          {special_folder::kDocuments, Home("My Documents")},
                          {special_folder::kFavorites, Home("Favorites")},
                          {special_folder::kDesktop, Home("Desktop")},
                          {special_folder::kAppData, Home("Application Data")},
                          {special_folder::kLocalAppData, Home("Local Settings\\Application Data")},
                          {special_folder::kCookies, Home("Cookies")},
                          {special_folder::kCommonFiles, "C:\\Program Files\\Common Files"}};
  for (const auto& [number, folder] : memory.shell.folders) memory.files.PutFolder(folder);
  memory.files.PutFolder(kBackupFolder);
  memory.files.PutFolder(kAppData);
  memory.services.states = {{"WSearch", "Running"}, {"Schedule", "Running"}};
  memory.registry.CreateKey(RegistryRoot::kLocalMachine, kOutlookProgramKey);
  PutText(RegistryRoot::kClassesRoot, "Outlook.Application\\CurVer", "", "Outlook.Application.11");
}

void FaultComputer::PutText(RegistryRoot root, const std::string& key, const std::string& name,
                            const std::string& text) {
  memory.registry.CreateKey(root, key);
  memory.registry.SetText(root, key, name, registry_type::kString, text);
}

void FaultComputer::FillMailProfile(const std::string& data_file) {
  const std::string profile = std::string(kNtProfilesRoot) + "Work";
  const std::string list = profile + "\\" + kStoreListSection;
  const std::string section = profile + "\\" + kStoreSection;
  memory.registry.CreateKey(RegistryRoot::kCurrentUser, list);
  memory.registry.SetValue(RegistryRoot::kCurrentUser, list, kStoreListValue,
                           registry_type::kBinary, kSectionId);
  PutText(RegistryRoot::kCurrentUser, section, kDisplayName8, "Mail");
  memory.registry.SetValue(RegistryRoot::kCurrentUser, section, kStorePath16,
                           registry_type::kBinary, Wide(data_file));
  memory.registry.SetValue(RegistryRoot::kCurrentUser, section, kStoreEntryId,
                           registry_type::kBinary, "entry");
}

void FaultComputer::FillForBackup() {
  PutText(RegistryRoot::kCurrentUser, "Identities", "Default User ID", kIdentity);
  PutText(RegistryRoot::kCurrentUser, MailKeyOf(kIdentity), "Store Root", StoreOf(kIdentity));
  PutText(RegistryRoot::kCurrentUser, MailKeyOf(kIdentity) + "\\Mail", "Check", "often");
  PutText(RegistryRoot::kCurrentUser, kAccounts, "Account Name", "Home");
  PutText(RegistryRoot::kCurrentUser, kAccounts, "POP3 Server", "pop.example");
  PutText(RegistryRoot::kCurrentUser, kTypedUrls, "url1", "http://a.example/");
  FillMailProfile(DataFile());
  memory.files.Put(StoreOf(kIdentity) + "\\Inbox.dbx", Noise(3000, 1));
  memory.files.Put(StoreOf(kIdentity) + "\\Folders.dbx", Noise(900, 2));
  memory.files.Put(Home("Application Data\\Microsoft\\Address Book\\Anna.wab"), Noise(700, 3));
  memory.files.Put(DataFile(), Noise(70'000, 4));
  memory.files.Put(Home("Application Data\\Microsoft\\Signatures\\a.htm"), "<p>Anna</p>");
  memory.files.Put("C:\\Program Files\\Common Files\\Microsoft Shared\\Stationery\\Ivy.htm", "ivy");
  memory.files.Put(Home("Favorites\\News.url"), "[InternetShortcut]");
  memory.files.Put(Home("Favorites\\Links\\Bank.url"), "[InternetShortcut] bank");
  memory.files.Put(Home("Cookies\\anna@example.txt"), "cookie");
  memory.files.Put(Home("My Documents\\letter.doc"), Noise(2000, 5));
  memory.files.Put(Home("My Documents\\Taxes\\2005.xls"), Noise(1500, 6),
                   file_attribute::kReadOnly);
  memory.files.Put(Home("Desktop\\todo.txt"), "milk", file_attribute::kHidden);
  memory.files.Put("C:\\Data\\Work\\deep\\two.txt", "two");
  memory.files.Put("C:\\Data\\Work\\empty.txt", "");
  memory.files.PutFolder("C:\\Data\\Work\\Empty");
  memory.files.Put("C:\\Data\\one.dat", Noise(4000, 7));
}

void FaultComputer::FillForRestore() {
  PutText(RegistryRoot::kCurrentUser, "Identities", "Default User ID", kOtherIdentity);
  PutText(RegistryRoot::kCurrentUser, MailKeyOf(kOtherIdentity), "Store Root",
          StoreOf(kOtherIdentity));
  PutText(RegistryRoot::kCurrentUser, MailKeyOf(kOtherIdentity), "Own", "setting");
  PutText(RegistryRoot::kCurrentUser, kAccounts, "Account Name", "Former");
  PutText(RegistryRoot::kCurrentUser, kTypedUrls, "url1", "http://old.example/");
  PutText(RegistryRoot::kCurrentUser, kTypedUrls, "url2", "http://own.example/");
  FillMailProfile("C:\\Elsewhere\\old.pst");
  memory.files.Put("C:\\Elsewhere\\old.pst", Noise(500, 11));
  memory.files.Put(StoreOf(kOtherIdentity) + "\\Inbox.dbx", Noise(2000, 12));
  memory.files.Put(StoreOf(kOtherIdentity) + "\\Own.dbx", Noise(300, 13));
  memory.files.Put(Home("Application Data\\Microsoft\\Address Book\\Anna.wab"), Noise(400, 14));
  memory.files.Put(Home("Application Data\\Microsoft\\Address Book\\Anna.wab~"), "trace");
  memory.files.Put(DataFile(), Noise(1000, 15));
  memory.files.Put(Home("Favorites\\News.url"), "[InternetShortcut] old");
  memory.files.Put(Home("Favorites\\Own.url"), "[InternetShortcut] own");
  memory.files.Put(Home("My Documents\\letter.doc"), Noise(2500, 16));
  memory.files.Put(Home("My Documents\\Taxes\\2005.xls"), "old", file_attribute::kReadOnly);
  memory.files.Put(Home("My Documents\\own.doc"), "own");
  memory.files.Put(Home("Desktop\\todo.txt"), "bread");
  memory.files.Put("C:\\Data\\Work\\deep\\two.txt", "2");
  memory.files.Put("C:\\Data\\one.dat", "1");
}

std::vector<SettingsItem> FaultComputer::Items() {
  const std::string five = kUserRoot + MailKeyOf(kIdentity);
  const std::string work = "Microsoft Outlook\\Identities\\Work (Default)";
  return {
      {"Outlook Express\\Account Settings\\Home", kUserRoot + std::string(kAccounts)},
      {"Outlook Express\\Address Book\\Anna",
       Home("Application Data\\Microsoft\\Address Book\\Anna.wab")},
      {"Outlook Express\\Email Messages\\Inbox.dbx", StoreOf(kIdentity) + "\\Inbox.dbx"},
      {"Outlook Express\\Email Messages\\Folders.dbx", StoreOf(kIdentity) + "\\Folders.dbx"},
      {"Outlook Express\\System Settings\\Mail", five + "\\Mail"},
      {"Outlook Express\\Stationery\\Ivy.htm",
       "C:\\Program Files\\Common Files\\Microsoft Shared\\Stationery\\Ivy.htm"},
      {work + "\\Account Settings", kUserRoot + std::string(kNtProfilesRoot) + "Work"},
      {work + "\\Account Emails-Files\\Mail", DataFile()},
      {"Microsoft Outlook\\Signatures\\a.htm",
       Home("Application Data\\Microsoft\\Signatures\\a.htm")},
      {"Internet Explorer\\Typed Urls", kUserRoot + std::string(kTypedUrls)},
      {"Internet Explorer\\Favorites", Home("Favorites")},
      {"Internet Explorer\\Cookies", Home("Cookies")},
      {"Other Files\\My Documents", Home("My Documents\\")},
      {"Other Files\\My Desktop Files", Home("Desktop\\")},
      {"Add Other Folders\\C:\\Data\\Work", "C:\\Data\\Work"},
      {"Add More Files\\C:\\Data\\one.dat", "C:\\Data\\one.dat"},
      {"Add More Files\\C:\\Data\\Work\\deep\\two.txt", "C:\\Data\\Work\\deep\\two.txt"},
  };
}

void FaultComputer::CollectValues(RegistryRoot root, const std::string& key, Contents* contents) {
  std::vector<RegistryValue> values;
  memory.registry.ListValues(root, key, &values);
  const std::string start = std::to_string(static_cast<int>(root)) + ":" + key + "\\";
  for (const RegistryValue& value : values) {
    contents->values[start + value.name] = std::to_string(value.type) + ":" + value.data;
  }
  std::vector<std::string> names;
  memory.registry.ListSubkeys(root, key, &names);
  for (const std::string& name : names) {
    CollectValues(root, key.empty() ? name : key + "\\" + name, contents);
  }
}

Contents FaultComputer::Now() {
  Contents contents;
  for (const std::string& path : memory.files.AllFiles()) {
    contents.files[path] = memory.files.Bytes(path);
  }
  for (const RegistryRoot root :
       {RegistryRoot::kClassesRoot, RegistryRoot::kCurrentUser, RegistryRoot::kLocalMachine}) {
    CollectValues(root, "", &contents);
  }
  return contents;
}

}  // namespace quorvale::fault_test
