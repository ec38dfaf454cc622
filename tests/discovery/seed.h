// What the discovery tests put on a computer, and how they read a tree.
#pragma once

#include <string>
#include <vector>

#include "discovery/pages/FrmTwo.h"
#include "support/test_machine.h"

namespace quorvale::discovery_test {

// The default identity of the seeded computers and the folder of its mail stores.
inline constexpr char kIdentity[] = "{11111111-2222-3333-4444-555555555555}";
std::string StoreFolder(TestMachine& machine);
// A key of the default identity, from HKEY_CURRENT_USER on; `below` without a leading "\".
std::string IdentityKey(const std::string& below);

// Accounts of all four kinds, blocked senders, rules, signatures, settings, stores, address book
// and stationery.
void SeedOutlookExpress(TestMachine& machine);

// The application is registered with this version.
void SeedOutlook(TestMachine& machine, const std::string& cur_ver = "Outlook.Application.11");
// The profiles root of the NT systems.
std::string NtProfile(const std::string& name);
std::string OldProfile(const std::string& name);

// One store of a profile as a version of the mail program writes it.
struct Store {
  std::string name;
  std::string path;
  bool wide = true;  // 16-bit values, else 8-bit ones
};
// Adds a profile with these stores; an empty list of stores is a profile without a store list.
void SeedProfile(TestMachine& machine, const std::string& profile_key,
                 const std::vector<Store>& stores);
// The name of the section of a profile's store, from 1 on.
std::string SectionName(size_t store);
void SetDefaultProfile(TestMachine& machine, const std::string& name);
void SetOfflineStore(TestMachine& machine, const std::string& profile_key, const std::string& path);
// 16-bit text with its NUL pair, in little-endian order.
std::string Wide(const std::string& utf8);

// One line a node: FullPath TAB Key TAB Image TAB SelectedImage.
std::vector<std::string> TreeLines(const ui::TreeView& tree);
// `lines` with {profile}, {appdata}, {local}, {documents}, {desktop}, {favorites}, {cookies},
// {common}, {store}, {id} filled in.
std::vector<std::string> FillIn(TestMachine& machine, std::vector<std::string> lines);
// Paths of a tree's ticked nodes.
std::vector<std::string> TickedPaths(const ui::TreeView& tree);

// The page as it stands after the wizard's first page; the main window is loaded before it.
FrmTwo& OpenPage(TestMachine& machine);
// The node of a path; the test fails if there is none.
ui::TreeNode* NodeAt(const FrmTwo& page, const std::string& full_path);

}  // namespace quorvale::discovery_test
