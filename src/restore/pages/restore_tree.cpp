#include "restore/pages/restore_tree.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_express_places.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

constexpr size_t kNoItem = static_cast<size_t>(-1);
constexpr char kGroupImage[] = "ma1";
constexpr char kFileImage[] = "bkp";
constexpr char kRegistryImage[] = "reg";
constexpr char kOtherImage[] = "rf";
constexpr char kMailFiles[] = "Account Emails-Files";
constexpr char kBelowMailFiles[] = "Account Emails-Files\\";

// How the items of one product become nodes.
struct Pass {
  ProductId product;
  // 1-based place in an item's path from which the "\" behind the group's name is sought; 0: the
  // root has no groups.
  size_t group_position;
  const char* leaf_image;  // "" where the leaf's key decides
  // A group with one level more: the name behind it is a group, sought from `inner_position`. ""
  // for none.
  const char* inner_group;
  size_t inner_position;
};

// In the order of the products.
constexpr std::array<Pass, 7> kPasses = {{
    {ProductId::kOutlookExpress, 21, kFileImage, "", 0},
    {ProductId::kMicrosoftOutlook, 19, "", "Identities", 30},
    {ProductId::kInternetExplorer, 21, kRegistryImage, "", 0},
    {ProductId::kWindowsMail, 19, "", "Mails", 30},
    {ProductId::kOtherFiles, 21, kFileImage, "", 0},
    {ProductId::kAddedFolders, 0, kGroupImage, "", 0},
    {ProductId::kAddedFiles, 0, kOtherImage, "", 0},
}};

// True for the path of a node itself and of any below it.
bool IsAtOrBelow(std::string_view path, std::string_view node) {
  return path.starts_with(node) && (path.size() == node.size() || path[node.size()] == '\\');
}

// A group before its node is made. What stands below it is a group or an item, in order.
struct Group {
  struct Child {
    std::uint32_t place;  // of a group, or in the items
    bool is_group;
  };
  std::string text;
  std::string key;
  size_t item = kNoItem;
  size_t row = 0;  // its place in its parent, from 1
  std::vector<Child> children;
};

// The nodes of one root. They are made only when all are known, so that each group's nodes are
// created in one piece: the tick rules go by the order of creation.
class RootPlan {
 public:
  RootPlan(const Pass& pass, const std::vector<SettingsItem>& items)
      : pass_(pass),
        product_(ProductOf(pass.product)),
        prefix_(PathPrefix(pass.product)),
        inner_prefix_(*pass.inner_group == '\0' ? "" : prefix_ + pass.inner_group + "\\"),
        items_(items) {
    groups_.push_back({product_.restore_caption, product_.restore_caption, kNoItem, 0, {}});
  }

  void AddItem(size_t item) {
    const std::string& path = items_[item].path;
    if (!path.starts_with(prefix_)) return;
    if (pass_.group_position == 0) return AddLeaf(0, item);
    if (!inner_prefix_.empty() && path.starts_with(inner_prefix_)) return AddInner(item);
    if (IsAtOrBelow(path, kOtherMailFoldersPath)) return AddOtherMail(item);
    const size_t end = path.find('\\', pass_.group_position - 1);
    if (end == std::string::npos) return MarkGroup(0, path.substr(prefix_.size()), item);
    AddLeaf(FindGroup(0, path.substr(prefix_.size(), end - prefix_.size())), item);
  }

  void Emit(ui::TreeView& tree) const {
    ui::TreeNode* root = tree.Add(nullptr, product_.restore_caption, product_.restore_caption,
                                  product_.restore_picture);
    EmitChildren(tree, root, groups_[0]);
    root->SetExpanded(true);
    UpdateNodeChecks(tree, root);
  }

 private:
  // Below a profile: its settings and its data files, all directly under it.
  void AddInner(size_t item) {
    const std::string& path = items_[item].path;
    const size_t start = inner_prefix_.size();
    const size_t parent = FindGroup(0, pass_.inner_group);
    const size_t end = path.find('\\', pass_.inner_position - 1);
    if (end == std::string::npos) return MarkGroup(parent, path.substr(start), item);
    const size_t profile = FindGroup(parent, path.substr(start, end - start));
    const std::string_view rest = std::string_view(path).substr(end + 1);
    // The group of the data files stands for nothing by itself.
    if (rest == kMailFiles) return;
    if (rest.starts_with(kBelowMailFiles)) NumberDataFile(profile, item);
    AddLeaf(profile, item);
  }

  void NumberDataFile(size_t profile, size_t item) {
    data_file_keys_[item] =
        DataFileKey(WithoutRowNumbers(items_[item].key), ++stores_[profile], groups_[profile].row);
  }

  void AddOtherMail(size_t item) {
    const std::string& path = items_[item].path;
    const size_t messages = FindGroup(0, "Email Messages");
    if (path == kOtherMailFoldersPath) return MarkGroup(messages, FileNameOf(path), item);
    AddLeaf(FindGroup(messages, "Other Mail Folders"), item);
  }

  // The group of this name below another one; it is made if need be.
  size_t FindGroup(size_t parent, const std::string& text) {
    const auto [found, added] =
        places_.emplace(std::to_string(parent) + "\n" + text, groups_.size());
    if (added) {
      groups_.push_back({text, text, kNoItem, groups_[parent].children.size() + 1, {}});
      groups_[parent].children.push_back({static_cast<std::uint32_t>(found->second), true});
    }
    return found->second;
  }

  // The item is itself a group. Its key stays what it was only if it stands for something.
  void MarkGroup(size_t parent, const std::string& text, size_t item) {
    Group& group = groups_[FindGroup(parent, text)];
    if (group.item != kNoItem) return;
    group.item = item;
    const std::string& key = items_[item].key;
    if (Contains(key, "\\")) {
      group.key = key;
    } else if (Contains(key, ":Outlook.Application")) {
      group.key = key.substr(0, key.find(':'));
    }
  }

  void AddLeaf(size_t parent, size_t item) {
    groups_[parent].children.push_back({static_cast<std::uint32_t>(item), false});
  }

  // An item of a root without groups shows its whole path.
  std::string TextOfLeaf(size_t item) const {
    const std::string& path = items_[item].path;
    if (pass_.group_position == 0) return path.substr(prefix_.size());
    return FileNameOf(path);
  }

  const char* ImageOfLeaf(size_t item) const {
    if (data_file_keys_.contains(item)) return kFileImage;
    if (*pass_.leaf_image != '\0') return pass_.leaf_image;
    const std::string& key = items_[item].key;
    if (Contains(key, "HKEY_")) return kRegistryImage;
    return Contains(key, "\\") ? kFileImage : kOtherImage;
  }

  static bool IsRootName(const std::string& key) {
    for (const Product& product : Products()) {
      if (key == product.restore_caption) return true;
    }
    return false;
  }

  static ui::TreeNode* Make(ui::TreeView& tree, ui::TreeNode* parent, const std::string& key,
                            const std::string& text, const char* image, size_t item) {
    ui::TreeNode* node = nullptr;
    // A root's key is the root's alone.
    if (!IsRootName(key)) node = tree.Add(parent, key, text, image);
    // A key can stand in the tree once, but an item is never left out for that.
    for (int n = tree.Count() + 1; node == nullptr; ++n) {
      node = tree.Add(parent, key + "," + std::to_string(n), text, image);
    }
    if (item != kNoItem) node->tag = std::to_string(item);
    return node;
  }

  void EmitChildren(ui::TreeView& tree, ui::TreeNode* parent, const Group& group) const {
    for (const Group::Child& child : group.children) {
      if (child.is_group) {
        const Group& inner = groups_[child.place];
        EmitChildren(tree, Make(tree, parent, inner.key, inner.text, kGroupImage, inner.item),
                     inner);
        continue;
      }
      const auto numbered = data_file_keys_.find(child.place);
      const std::string& key =
          numbered == data_file_keys_.end() ? items_[child.place].key : numbered->second;
      Make(tree, parent, key, TextOfLeaf(child.place), ImageOfLeaf(child.place), child.place);
    }
  }

  const Pass& pass_;
  const Product& product_;
  const std::string prefix_;        // of the items' paths
  const std::string inner_prefix_;  // of those below the inner group, "" without one
  const std::vector<SettingsItem>& items_;
  std::vector<Group> groups_;  // the root is the first
  std::unordered_map<std::string, size_t> places_;
  std::unordered_map<size_t, size_t> stores_;               // data files met of a profile
  std::unordered_map<size_t, std::string> data_file_keys_;  // by item
};

}  // namespace

void FillRestoreTree(const std::vector<SettingsItem>& items, bool with_windows_mail,
                     ui::TreeView& tree, std::string* outlook_version) {
  tree.BeginUpdate();
  for (const Pass& pass : kPasses) {
    if (pass.product == ProductId::kWindowsMail && !with_windows_mail) continue;
    RootPlan plan(pass, items);
    for (size_t i = 0; i < items.size(); ++i) plan.AddItem(i);
    plan.Emit(tree);
  }
  tree.EndUpdate();
  for (const SettingsItem& item : items) {
    if (Contains(item.key, ":Outlook.Application")) {
      *outlook_version = item.key.substr(item.key.find(':') + 1);
    }
  }
}

int ItemOfNode(const ui::TreeNode& node) { return node.tag.empty() ? -1 : std::stoi(node.tag); }

}  // namespace quorvale
