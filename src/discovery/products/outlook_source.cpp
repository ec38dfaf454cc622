// Mail profiles with the data files that they open, and the loose files of the application's
// folders, each group by its file pattern.
#include <string>
#include <string_view>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_places.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_fills.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

// A key of a node that comes after the profiles. A profile of such a name must not take it.
bool IsLaterKey(const std::string& name) {
  for (const OutlookFileGroup& group : kOutlookFileGroups) {
    if (name == group.caption) return true;
  }
  for (const ProductId id : {ProductId::kInternetExplorer, ProductId::kOtherFiles,
                             ProductId::kAddedFolders, ProductId::kAddedFiles}) {
    if (name == ProductOf(id).caption) return true;
  }
  return name == "Registry Settings" || name == "IESettings";
}

// A file of the roaming folder that stands in a group of its own.
bool StandsInOtherGroup(const std::string& name) {
  return Contains(name, "Adult Content Senders.txt") || Contains(name, "Junk Senders.txt") ||
         Contains(name, ".dic") || ContainsNoCase(name, ".otm") || ContainsNoCase(name, ".ost");
}

class OutlookTree {
 public:
  OutlookTree(Program& program, ui::TreeView& tree) : program_(program), tree_(tree) {}

  void Run() {
    root_ = AddProductRoot(tree_, ProductId::kMicrosoftOutlook);
    if (root_ == nullptr) return;
    AddProfiles();
    AddFileGroups();
    ui::TreeNode* settings = tree_.Add(root_, "Registry Settings", "Registry Settings", "fc", "fo");
    tree_.Add(settings, "HKEY_CURRENT_USER\\Software\\Microsoft\\Exchange\\Client\\Options",
              "ProfileOptions", "reg");
    UpdateNodeChecks(tree_, root_);
  }

 private:
  // Adds a node; where another one has its key, row numbers tell the two apart, as they do for
  // data files, and drop out of the selection again.
  ui::TreeNode* AddWithRow(ui::TreeNode* parent, const std::string& key, size_t row,
                           const std::string& text, const std::string& image,
                           const std::string& selected_image) {
    ui::TreeNode* node = tree_.Add(parent, key, text, image, selected_image);
    if (node != nullptr) return node;
    return tree_.Add(parent, key + "," + std::to_string(row), text, image, selected_image);
  }

  void AddProfiles() {
    const std::string default_name = DefaultProfileName(program_);
    ui::TreeNode* identities = tree_.Add(root_, "Identities", "Identities", "fc", "fo");
    const std::string profiles_root = ProfilesRoot(GetOSName(program_.platform().system.Version()));
    if (profiles_root.empty()) return;
    size_t row = 0;
    for (const ProfileRow& profile : SubKeyCountMO(program_, profiles_root)) {
      const bool is_default = profile.from_default_on && profile.name == default_name;
      AddProfile(identities, profile, ++row, is_default);
    }
  }

  void AddProfile(ui::TreeNode* identities, const ProfileRow& profile, size_t row,
                  bool is_default) {
    const std::string key =
        IsLaterKey(profile.name) ? profile.name + "," + std::to_string(row) : profile.name;
    const std::string caption = is_default ? profile.name + " (Default)" : profile.name;
    ui::TreeNode* identity = AddWithRow(identities, key, row, caption, "id", "id");
    if (identity == nullptr) return;
    tree_.Add(identity, profile.key, "Account Settings", "fc", "fo");
    ui::TreeNode* files = AddWithRow(identity, "Account Emails-Files" + std::to_string(row), row,
                                     "Account Emails-Files", "fc", "fo");
    if (files == nullptr) return;
    size_t store_row = 0;
    for (const ProfileStore& store : CollectOutlookStores(program_, profile.name)) {
      tree_.Add(files, DataFileKey(store.path, ++store_row, row), store.name, "fc", "fo");
    }
  }

  void AddFileGroups() {
    const std::string profile = program_.platform().system.Environment("UserProfile");
    const std::string version = OutlookCurVer(program_);
    for (const OutlookFileGroup& group : kOutlookFileGroups) {
      ui::TreeNode* node = tree_.Add(root_, group.caption, group.caption, "fc", "fo");
      // Where the system names no profile, the groups stay empty.
      if (node == nullptr || profile.empty()) continue;
      AddFiles(node, group, OutlookGroupFolder(group.caption, profile, version));
    }
  }

  void AddFiles(ui::TreeNode* node, const OutlookFileGroup& group, const std::string& folder) {
    size_t position = 0;
    for (const std::string& name : program_.files().ListFileNames(folder, group.pattern)) {
      ++position;
      const std::string key = folder + "\\" + name;
      if (IsLeftOut(group, name, key)) continue;
      AddWithRow(node, key, position, name, group.picture, group.picture);
    }
  }

  // An offline folder that a profile's data files hold already, and a file of another group.
  bool IsLeftOut(const OutlookFileGroup& group, const std::string& name, const std::string& key) {
    const std::string_view caption = group.caption;
    if (caption == "Offline folders") return tree_.Find(key) != nullptr;
    return caption == "Setting Files" && StandsInOtherGroup(name);
  }

  Program& program_;
  ui::TreeView& tree_;
  ui::TreeNode* root_ = nullptr;
};

}  // namespace

bool HasMicrosoftOutlook(Program& program) {
  Registry& registry = program.registry();
  return registry.store().KeyExists(RegistryRoot::kLocalMachine, kOutlookProgramKey) &&
         registry.RegCountSubkeys(RegistryRoot::kCurrentUser, WithoutBackslash(kNtProfilesRoot)) >
             0;
}

void FillMicrosoftOutlookNodes(Program& program, ui::TreeView& tree) {
  OutlookTree(program, tree).Run();
}

}  // namespace quorvale
