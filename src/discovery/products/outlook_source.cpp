// Mail profiles with the data files that they open, and the loose files of the application's
// folders, each group by its file pattern.
#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_fills.h"

namespace quorvale {
namespace {

constexpr char kApplicationPath[] =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\OUTLOOK.EXE";

// The keys of nodes that come after the profiles. A profile of such a name must not take one.
constexpr std::array<std::string_view, 13> kLaterKeys = {"Adult-Junk Senders",
                                                         "Dictionary",
                                                         "Macros and VBA programs",
                                                         "Offline folders",
                                                         "Personal Address Book",
                                                         "Signatures",
                                                         "Setting Files",
                                                         "Registry Settings",
                                                         "Internet Explorer",
                                                         "IESettings",
                                                         "Other Files",
                                                         "Add Other Folders",
                                                         "Add More Files"};

struct FileGroup {
  const char* caption;
  std::string folder;
  const char* pattern;
  const char* image;
  std::function<bool(const std::string& name)> skip;
};

class Fill {
 public:
  Fill(Program& program, ui::TreeView& tree) : program_(program), tree_(tree) {}

  void Run() {
    root_ = tree_.Add(nullptr, "Microsoft Outlook", "Microsoft Outlook", "moa");
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
      const bool is_default = profile.d1 == "1" && profile.name == default_name;
      AddProfile(identities, profile, ++row, is_default);
    }
  }

  void AddProfile(ui::TreeNode* identities, const ProfileRow& profile, size_t row,
                  bool is_default) {
    const bool reserved =
        std::find(kLaterKeys.begin(), kLaterKeys.end(), profile.name) != kLaterKeys.end();
    const std::string key = reserved ? profile.name + "," + std::to_string(row) : profile.name;
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

  // A folder below the user's profile, "" where the system names no profile.
  std::string BelowProfile(const std::string& path) {
    const std::string profile = program_.platform().system.Environment("UserProfile");
    return profile.empty() ? "" : profile + "\\" + path;
  }

  // Where the dictionaries of the installed version lie, below the Microsoft folder.
  std::string ProofFolder() {
    const std::string version = OutlookCurVer(program_);
    if (version == "Outlook.Application.9" || version == "Outlook.Application.10" ||
        version == "Outlook.Application.11") {
      return "\\Proof";
    }
    return version == "Outlook.Application.12" ? "\\UProof" : "";
  }

  void AddFileGroups() {
    const std::string roaming = BelowProfile("Application Data\\Microsoft\\Outlook");
    const std::string local = BelowProfile("Local Settings\\Application Data\\Microsoft\\Outlook");
    const std::string microsoft = BelowProfile("Application Data\\Microsoft");
    const std::string proofing = microsoft.empty() ? "" : microsoft + ProofFolder();
    const std::string signatures = microsoft.empty() ? "" : microsoft + "\\Signatures";

    const auto in_tree = [&](const std::string& name) {
      return tree_.Find(local + "\\" + name) != nullptr;
    };
    const auto in_other_group = [](const std::string& name) {
      return Contains(name, "Adult Content Senders.txt") || Contains(name, "Junk Senders.txt") ||
             Contains(name, ".dic") || ContainsNoCase(name, ".otm") || ContainsNoCase(name, ".ost");
    };
    AddFileGroup({"Adult-Junk Senders", roaming, "*.txt", "bs", nullptr});
    AddFileGroup({"Dictionary", proofing, "*.dic", "dc", nullptr});
    AddFileGroup({"Macros and VBA programs", roaming, "*.otm", "af", nullptr});
    AddFileGroup({"Offline folders", local, "*.ost", "of", in_tree});
    AddFileGroup({"Personal Address Book", local, "*.pab", "ab", nullptr});
    AddFileGroup({"Signatures", signatures, "*.*", "sg", nullptr});
    AddFileGroup({"Setting Files", roaming, "*.*", "set", in_other_group});
  }

  void AddFileGroup(const FileGroup& group) {
    ui::TreeNode* node = tree_.Add(root_, group.caption, group.caption, "fc", "fo");
    if (node == nullptr || group.folder.empty()) return;
    size_t position = 0;
    for (const std::string& name : program_.files().ListFileNames(group.folder, group.pattern)) {
      ++position;
      if (group.skip && group.skip(name)) continue;
      AddWithRow(node, group.folder + "\\" + name, position, name, group.image, group.image);
    }
  }

  Program& program_;
  ui::TreeView& tree_;
  ui::TreeNode* root_ = nullptr;
};

}  // namespace

bool HasMicrosoftOutlook(Program& program) {
  Registry& registry = program.registry();
  return registry.store().KeyExists(RegistryRoot::kLocalMachine, kApplicationPath) &&
         registry.RegCountSubkeys(RegistryRoot::kCurrentUser, WithoutBackslash(kNtProfilesRoot)) >
             0;
}

void FillMicrosoftOutlookNodes(Program& program, ui::TreeView& tree) { Fill(program, tree).Run(); }

}  // namespace quorvale
