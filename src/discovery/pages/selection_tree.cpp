// The tree of the page "Select Items to Backup": how it is filled, ticked and added to.
#include <algorithm>

#include "backup/format/settings_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "core/program/account.h"
#include "core/program/command_words.h"
#include "core/program/full_text.h"
#include "discovery/pages/FrmTwo.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

constexpr int kKeySpace = 32;

constexpr char kAddFoldersImage[] = "aa1";
constexpr char kAddFilesImage[] = "ab1";
constexpr char kAddedFolderImage[] = "of";
constexpr char kAddedFileImage[] = "dc1";

// A root on which the user adds folders or files.
bool IsAddRoot(const ui::TreeNode& node) {
  return node.image == kAddFoldersImage || node.image == kAddFilesImage;
}

// A node that may be removed when it is unticked.
bool IsRemovable(const ui::TreeNode& node) {
  return node.image == kAddedFolderImage || node.image == kAddedFileImage;
}

bool IsAddCaption(const std::string& caption) {
  return caption == ProductOf(ProductId::kAddedFolders).caption ||
         caption == ProductOf(ProductId::kAddedFiles).caption;
}

bool IsRootOf(const ui::TreeNode& node, ProductId id) {
  return node.Key() == ProductOf(id).caption;
}

// UpdateNodeChecks for any node of the page. What the user adds goes to two roots in any order, so
// a range of nodes made one after the other would reach from one root into the other: there the
// children themselves are looked at.
void UpdateTicks(ui::TreeView& tree, ui::TreeNode* node) {
  if (IsAddRoot(*node)) {
    for (ui::TreeNode* child : node->ChildNodes()) child->SetChecked(node->Checked());
  } else if (node->Parent() != nullptr && IsAddRoot(*node->Parent())) {
    const std::vector<ui::TreeNode*>& added = node->Parent()->ChildNodes();
    node->Parent()->SetChecked(std::any_of(
        added.begin(), added.end(), [](const ui::TreeNode* each) { return each->Checked(); }));
  } else {
    UpdateNodeChecks(tree, node);
  }
}

// Takes the tick back from a root on which nothing was added.
void Withdraw(ui::TreeNode* root) {
  if (root->Children() == 0) root->SetChecked(false);
}

}  // namespace

// The tree ---------------------------------------------------------------------------------------

void FrmTwo::FillExplorer() {
  tvwMain.BeginUpdate();
  tvwMain.Clear();
  FillProducts(app_, tvwMain);
  tvwMain.EndUpdate();

  const std::string folder = TypedFolder(app_, app_.settings().backup_folder());
  if (app_.files().MakeFolderChain(folder + "\\")) txtpath.text = folder;
}

void FrmTwo::Label32_Click() {
  if (tvwMain.Count() > 0) return;
  FillExplorer();
  if (app_.CommandLine() == kElevatedWord) LoadTreeState(HandOverPath(app_));
}

void FrmTwo::selectall() { CheckAllButAddRoots(true); }

void FrmTwo::Deselectall() { CheckAllButAddRoots(false); }

void FrmTwo::CheckAllButAddRoots(bool checked) {
  tvwMain.BeginUpdate();
  for (int index = 1; index <= tvwMain.Count(); ++index) {
    ui::TreeNode* node = tvwMain.Node(index);
    if (!IsAddCaption(node->Text())) node->SetChecked(checked);
  }
  tvwMain.EndUpdate();
}

void FrmTwo::TickAll() {
  tvwMain.BeginUpdate();
  for (int index = 1; index <= tvwMain.Count(); ++index) {
    ui::TreeNode* node = tvwMain.Node(index);
    node->SetChecked(!IsAddCaption(node->Root()->Text()));
  }
  tvwMain.EndUpdate();
}

void FrmTwo::TickAgain(const std::vector<AccountEntry>& entries) {
  Deselectall();
  for (const AccountEntry& entry : entries) TickEntry(entry);
  // No product's items are saved without its account settings.
  for (int index = 1; index <= tvwMain.Count(); ++index) {
    ui::TreeNode* node = tvwMain.Node(index);
    const bool parent_ticked = node->Parent() != nullptr && node->Parent()->Checked();
    if (parent_ticked && Contains(node->FullPath(), "Account Settings")) node->SetChecked(true);
  }
}

void FrmTwo::TickEntry(const AccountEntry& entry) {
  ui::TreeNode* node = tvwMain.FindPath(entry.item);
  const bool is_path = entry.thing == AccountThing::kFile || entry.thing == AccountThing::kFolder;
  const auto is_of = [&](const ui::TreeNode& each) {
    return EqualsNoCase(WithoutBackslash(CommittedKey(each)), WithoutBackslash(entry.source));
  };
  if (node != nullptr && (!is_path || is_of(*node))) {
    if (!IsAddRoot(*node)) tvwMain.UserChecks(node, true);
    return;
  }
  const bool was_added_folder = entry.item.starts_with(PathPrefix(ProductId::kAddedFolders));
  const bool was_added_file = entry.item.starts_with(PathPrefix(ProductId::kAddedFiles));
  if (is_path) {
    AddAgain(entry.source, entry.thing == AccountThing::kFolder);
  } else if (was_added_folder || was_added_file) {
    AddAgain(entry.source, was_added_folder);
  }
}

void FrmTwo::AddAgain(const std::string& path, bool is_folder) {
  if (ui::TreeNode* node = tvwMain.Find(path)) return tvwMain.UserChecks(node, true);
  const ProductId id = is_folder ? ProductId::kAddedFolders : ProductId::kAddedFiles;
  ui::TreeNode* root = tvwMain.Find(ProductOf(id).caption);
  if (root != nullptr) AddChosen(root, path, is_folder ? kAddedFolderImage : kAddedFileImage);
}

void FrmTwo::LoadTreeState(const std::string& path) {
  if (!app_.files().FileExists(path)) return;
  SettingsFile settings;
  if (ReadHandOver(app_, path, &settings)) {
    Session& session = app_.session();
    session.gRestoreBackupFolder = settings.backup_folder;
    tvwMain.BeginUpdate();
    for (const Product& product : Products()) TickFromItems(product.caption, settings.items);
    tvwMain.EndUpdate();
    // What the file does not tell stays as it was.
    const SettingsOptions& told = settings.options;
    session.gRestoreLogDetails = told.log.value_or(session.gRestoreLogDetails);
    session.gRestoreUseCompression = told.compression.value_or(session.gRestoreUseCompression);
    session.gRestoreSelfExtracting = told.level.value_or(session.gRestoreSelfExtracting);
    session.gRestorePassword = told.password.value_or(session.gRestorePassword);
    session.gRestoreProtectWithPassword =
        told.protection.value_or(session.gRestoreProtectWithPassword);
    if (settings.backup_path) txtpath.text = *settings.backup_path;
  }
  RemoveTextFile(app_, HandOverPath(app_), true);
}

void FrmTwo::TickFromItems(const std::string& root_key, const std::vector<SettingsItem>& items) {
  ui::TreeNode* root = tvwMain.Find(root_key);
  if (root == nullptr) return;
  for (const SettingsItem& item : items) {
    if (Contains(item.path, root_key + "\\")) TickFromItem(root, item);
  }
}

void FrmTwo::TickFromItem(ui::TreeNode* root, const SettingsItem& item) {
  if (IsAddRoot(*root)) {
    AddItemAnew(root, item);
    return;
  }
  std::string key = item.key;
  const bool below_root = item.path.starts_with(root->Text() + "\\") &&
                          item.path.find('\\', root->Text().size() + 1) == std::string::npos;
  if (IsRootOf(*root, ProductId::kMicrosoftOutlook) && below_root) {
    const size_t colon = key.find(':');
    if (Contains(key, ":Outlook.Application")) {
      app_.session().gRestoreSettingsField = key.substr(colon + 1);
      key.resize(colon);
    } else if (key.ends_with(':')) {
      key.pop_back();
    }
  }
  if (ui::TreeNode* node = tvwMain.Find(key)) node->SetChecked(true);
  if (!IsRootOf(*root, ProductId::kOutlookExpress)) root->SetChecked(true);
}

void FrmTwo::AddItemAnew(ui::TreeNode* root, const SettingsItem& item) {
  const std::string caption = item.path.substr(item.path.find('\\') + 1);
  const bool folder = root->image == kAddFoldersImage;
  ui::TreeNode* node =
      tvwMain.Add(root, item.key, caption, folder ? kAddedFolderImage : kAddedFileImage);
  if (node == nullptr) return;
  node->tag = "N";
  node->SetChecked(true);
  root->SetChecked(true);
}

// Events of the tree -----------------------------------------------------------------------------

void FrmTwo::tvwMain_NodeCheck(ui::TreeNode* node) {
  app_.session().gBackupTreeChanged = true;
  tvwMain.Select(node);
  TickProfileSettings(node);
  if (IsAddRoot(*node) && node->Checked()) {
    RunAddDialog(node);
  } else {
    UpdateTicks(tvwMain, node);
  }
  if (IsRemovable(*node) && !node->Checked()) {
    UpdateTicks(tvwMain, node);
    AskRemove(node);
  } else if (IsAddRoot(*node)) {
    if (node->Children() == 0) {
      node->SetChecked(false);
    } else {
      UpdateTicks(tvwMain, node);
    }
  }
  tvwMain.Refresh();
}

// A profile's mail is never saved without its settings, which are the profile's first child.
void FrmTwo::TickProfileSettings(ui::TreeNode* node) {
  if (!Contains(node->FullPath(), "\\Account Emails")) return;
  ui::TreeNode* parent = node->Parent();
  if (parent == nullptr) return;
  if (parent->Text() == "Account Emails-Files" && parent->Parent() != nullptr) {
    parent->Parent()->Child()->SetChecked(true);
  } else if (node->Text() == "Account Emails-Files") {
    parent->Child()->SetChecked(true);
  }
}

void FrmTwo::tvwMain_NodeClick(ui::TreeNode* node) {
  if (IsAddRoot(*node)) RunAddDialog(node);
  Refresh();
  ShowDetails();
}

// The view reports each press on a node as a click or a tick, so only the roots are looked at.
void FrmTwo::tvwMain_MouseUp() {
  ui::TreeNode* node = tvwMain.Selected();
  if (node != nullptr && IsAddRoot(*node)) Withdraw(node);
  tvwMain.Refresh();
}

void FrmTwo::tvwMain_Click() {
  ShowDetails();
  Label5.visible = true;
}

void FrmTwo::tvwMain_GotFocus() { ShowDetails(); }

void FrmTwo::tvwMain_LostFocus() {
  frmfor.text = "";
  lblDesc.text = "";
  Label5.visible = false;
}

void FrmTwo::tvwMain_Expand(ui::TreeNode* node) {
  // Of the roots only that of Windows Mail changes its picture.
  for (const Product& product : Products()) {
    if (node->Text() == product.caption && product.id != ProductId::kWindowsMail) return;
  }
  if (node->Parent() != nullptr && node->Parent()->Text() == "Identities") return;
  tvwMain.Select(node);
  node->selected_image = "fo";
  tvwMain.Notify(ui::Property::kSelection);
}

void FrmTwo::tvwMain_Collapse(ui::TreeNode* node) { tvwMain_Expand(node); }

bool FrmTwo::tvwMain_KeyDown(int code, int modifiers) {
  ui::TreeNode* node = tvwMain.Selected();
  if (code != kKeySpace || modifiers != 0 || node == nullptr) return false;
  if (node->Checked()) {
    node->SetChecked(false);
    UpdateTicks(tvwMain, node);
    if (IsRemovable(*node)) AskRemove(node);
    return true;
  }
  const bool add_root = IsAddRoot(*node);
  if (add_root) RunAddDialog(node);
  UpdateTicks(tvwMain, node);
  return add_root;
}

void FrmTwo::ShowDetails() {
  const ui::TreeNode* node = tvwMain.Selected();
  if (node == nullptr) return;
  frmfor.text = "Item: " + node->Text();
  lblDesc.text = "Location: " + CommittedKey(*node);
}

// Added folders and files ------------------------------------------------------------------------

void FrmTwo::RunAddDialog(ui::TreeNode* root) {
  if (root->image == kAddFoldersImage) {
    AddFolder(root);
  } else {
    AddFile(root);
  }
  Refresh();
  ShowDetails();
}

void FrmTwo::AddFolder(ui::TreeNode* root) {
  const std::string path = ui().BrowseForFolder("&Select a Folder for Backup:", txtpath.text);
  if (Trim(path).empty()) {
    Withdraw(root);
    return;
  }
  if (!app_.files().FolderExists(path) || !app_.platform().files.CanList(path)) {
    app_.Inform("Selected path is a shortcut and will not be included in backup");
    Withdraw(root);
    return;
  }
  if (tvwMain.Find(path) != nullptr) {
    app_.Inform("Folder: [" + path + "] already exists");
    Withdraw(root);
    return;
  }
  AddChosen(root, path, kAddedFolderImage);
}

void FrmTwo::AddFile(ui::TreeNode* root) {
  const std::string path =
      ui().OpenFileDialog("All Files(*.*)|*.*", app_.platform().system.ProgramFolder());
  if (Trim(path).empty()) {
    Withdraw(root);
    return;
  }
  if (tvwMain.Find(path) != nullptr) {
    app_.Inform("File: [" + path + "] already exists");
    Withdraw(root);
    return;
  }
  AddChosen(root, path, kAddedFileImage);
}

void FrmTwo::AddChosen(ui::TreeNode* root, const std::string& path, const std::string& image) {
  ui::TreeNode* node = tvwMain.Add(root, path, path, image);
  if (node == nullptr) return;
  node->tag = "N";
  node->SetChecked(true);
  root->SetChecked(true);
  tvwMain.EnsureVisible(node);
}

void FrmTwo::AskRemove(ui::TreeNode* node) {
  if (app_.Ask("Remove the folder/file: [" + node->Text() + "] ?")) tvwMain.Remove(node);
}

}  // namespace quorvale
