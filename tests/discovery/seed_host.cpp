#include "seed.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "core/main/FrmWelcome.h"

namespace quorvale::discovery_test {
namespace {

constexpr char kUser[] = "HKEY_CURRENT_USER\\";
constexpr char kAccounts[] =
    "HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Internet Account Manager\\Accounts\\";

// The 16 bytes that name a store's section.
std::string SectionBytes(size_t store) {
  std::string bytes(16, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 17);
  bytes[15] = static_cast<char>(store);
  return bytes;
}

}  // namespace

std::string StoreFolder(TestMachine& machine) {
  return machine.LocalAppData() + "\\Identities\\" + kIdentity + "\\Microsoft\\Outlook Express";
}

std::string IdentityKey(const std::string& below) {
  return std::string(kUser) + "Identities\\" + kIdentity +
         "\\Software\\Microsoft\\Outlook Express\\5.0\\" + below;
}

void SeedOutlookExpress(TestMachine& machine) {
  const std::string accounts = kAccounts;
  machine.SetString(accounts + "00000001", "Account Name", "News server");
  machine.SetString(accounts + "00000001", "NNTP Server", "news.example.org");
  machine.SetString(accounts + "00000002", "Account Name", "Office mail");
  machine.SetString(accounts + "00000002", "SMTP Email Address", "anna@example.org");
  machine.SetString(accounts + "00000003", "Account Name", "Directory");
  machine.SetString(accounts + "00000003", "LDAP Server", "ldap.example.org");
  machine.SetString(accounts + "00000004", "Account Name", "Portal");
  machine.SetString(accounts + "00000004", "Domain is MSN.com", "1");

  machine.SetString("HKEY_CURRENT_USER\\Identities", "Default User ID", kIdentity);
  machine.SetString(IdentityKey("Block Senders\\Mail\\Criteria\\00000000"), "Value",
                    "spam@example.org");
  machine.MakeKey(IdentityKey("Rules\\Mail"));
  machine.SetString(IdentityKey("signatures\\00000000"), "name", "Signature #1");
  machine.MakeKey(IdentityKey("Mail"));
  machine.MakeKey(IdentityKey("News"));
  machine.SetString(IdentityKey(""), "Store Root", StoreFolder(machine) + "\\");

  const std::string store = StoreFolder(machine) + "\\";
  for (const char* name : {"Clients.dbx", "Deleted Items.dbx", "Drafts.dbx", "Folders.dbx",
                           "Inbox.dbx", "Outbox.dbx", "Sent Items.dbx"}) {
    machine.WriteFile(store + name, "mail");
  }
  machine.WriteFile(machine.AppData() + "\\Microsoft\\Address Book\\Anna.wab", "people");
  machine.WriteFile(machine.AppData() + "\\Microsoft\\Address Book\\Anna.wab~", "old people");
  machine.WriteFile(machine.CommonFiles() + "\\Microsoft Shared\\Stationery\\Ivy.htm", "leaves");
}

void SeedOutlook(TestMachine& machine, const std::string& cur_ver) {
  machine.MakeKey(
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\OUTLOOK.EXE");
  machine.SetString("HKEY_CLASSES_ROOT\\Outlook.Application\\CurVer", "", cur_ver);
}

std::string NtProfile(const std::string& name) {
  return "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows Messaging "
         "Subsystem\\Profiles\\" +
         name;
}

std::string OldProfile(const std::string& name) {
  return "HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Windows Messaging Subsystem\\Profiles\\" + name;
}

std::string SectionName(size_t store) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string name;
  for (char c : SectionBytes(store)) {
    const auto byte = static_cast<unsigned char>(c);
    name += kDigits[byte >> 4];
    name += kDigits[byte & 15];
  }
  return name;
}

std::string Wide(const std::string& utf8) { return Utf8ToUtf16Bytes(utf8) + std::string(2, '\0'); }

void SeedProfile(TestMachine& machine, const std::string& profile_key,
                 const std::vector<Store>& stores) {
  machine.MakeKey(profile_key);
  if (stores.empty()) return;
  std::string list;
  for (size_t n = 1; n <= stores.size(); ++n) {
    const Store& store = stores[n - 1];
    const std::string section = profile_key + "\\" + SectionName(n);
    machine.MakeKey(section);
    list += SectionBytes(n);
    if (store.wide) {
      machine.SetBinary(section, "001f3001", Wide(store.name));
      if (!store.path.empty()) machine.SetBinary(section, "001f6700", Wide(store.path));
    } else {
      machine.SetString(section, "001e3001", store.name);
      if (!store.path.empty()) machine.SetString(section, "001e6700", store.path);
    }
  }
  machine.SetBinary(profile_key + "\\9207f3e0a3b11019908b08002b2a56c2", "01023d00", list);
}

void SetDefaultProfile(TestMachine& machine, const std::string& name) {
  machine.SetString(NtProfile(""), "DefaultProfile", name);
}

void SetOfflineStore(TestMachine& machine, const std::string& profile_key,
                     const std::string& path) {
  machine.SetBinary(profile_key + "\\13dbb0c8aa05101a9bb000aa002fc45a", "001f6610", Wide(path));
}

std::vector<std::string> TreeLines(const ui::TreeView& tree) {
  std::vector<std::string> lines;
  for (int index = 1; index <= tree.Count(); ++index) {
    const ui::TreeNode& node = *tree.Node(index);
    lines.push_back(node.FullPath() + "\t" + node.Key() + "\t" + node.image + "\t" +
                    node.selected_image);
  }
  return lines;
}

std::vector<std::string> FillIn(TestMachine& machine, std::vector<std::string> lines) {
  const std::pair<const char*, std::string> words[] = {
      {"{profile}", machine.Profile()},    {"{appdata}", machine.AppData()},
      {"{local}", machine.LocalAppData()}, {"{documents}", machine.Documents()},
      {"{desktop}", machine.Desktop()},    {"{favorites}", machine.Favorites()},
      {"{cookies}", machine.Cookies()},    {"{common}", machine.CommonFiles()},
      {"{store}", StoreFolder(machine)},   {"{id}", kIdentity},
  };
  for (std::string& line : lines) {
    for (const auto& [word, meaning] : words) line = ReplaceAll(line, word, meaning);
  }
  return lines;
}

std::vector<std::string> TickedPaths(const ui::TreeView& tree) {
  std::vector<std::string> paths;
  for (int index = 1; index <= tree.Count(); ++index) {
    if (tree.Node(index)->Checked()) paths.push_back(tree.Node(index)->FullPath());
  }
  return paths;
}

FrmTwo& OpenPage(TestMachine& machine) {
  machine.app().Get<FrmWelcome>();
  return machine.app().Get<FrmTwo>();
}

ui::TreeNode* NodeAt(const FrmTwo& page, const std::string& full_path) {
  ui::TreeNode* node = page.tvwMain.FindPath(full_path);
  EXPECT_NE(node, nullptr) << "no node " << full_path;
  return node;
}

}  // namespace quorvale::discovery_test
