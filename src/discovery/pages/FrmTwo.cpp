#include "discovery/pages/FrmTwo.h"

#include "backup/format/job_kinds.h"
#include "backup/format/settings_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/pages/selection_space.h"
#include "core/program/ModGlobal.h"
#include "core/program/command_words.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/process_watch.h"
#include "discovery/products/product_fills.h"

namespace quorvale {
namespace {

constexpr int kKeySpace = 32;
constexpr char kHelpTopic[] = "qvlBackup.htm";

constexpr char kAddFoldersImage[] = "aa1";
constexpr char kAddFilesImage[] = "ab1";
constexpr char kAddedFolderImage[] = "of";
constexpr char kAddedFileImage[] = "dc1";

constexpr char kOtherMailFolders[] = "Outlook Express\\Email Messages\\Other Mail Folders";
constexpr char kFolderIndex[] = "Outlook Express\\Email Messages\\Other Mail Folders\\Folders.dbx";
constexpr char kWindowsMails[] = "Windows Mail\\Mails";

// A root on which the user adds folders or files.
bool IsAddRoot(const ui::TreeNode& node) {
  return node.image == kAddFoldersImage || node.image == kAddFilesImage;
}

// A node that may be removed when it is unticked.
bool IsRemovable(const ui::TreeNode& node) {
  return node.image == kAddedFolderImage || node.image == kAddedFileImage;
}

bool IsAddCaption(const std::string& caption) {
  return caption == "Add Other Folders" || caption == "Add More Files";
}

bool HasTickedParent(const ui::TreeNode& node) {
  return node.Parent() != nullptr && node.Parent()->Checked();
}

// Takes the tick back from a root on which nothing was added.
void Withdraw(ui::TreeNode* root) {
  if (root->Children() == 0) root->SetChecked(false);
}

}  // namespace

FrmTwo::FrmTwo(Application& app) : WizardPage(app, kName, PageRole::kBackupItems) { WireEvents(); }

void FrmTwo::Load() {
  Session& session = app_.session();
  if (session.gBackupProcessName.empty()) {
    session.gBackupProcessName = kMainBackup;
    session.gBackupProcessDesc = kMainBackupDescription;
    session.gBackupName = "My Backup";
  }
  page_layout::HostPage(app_, *this);
  LayOut();
  Label32_Click();
}

void FrmTwo::WireEvents() {
  OpenHelpOnF1(app_, *this, kHelpTopic);
  Label32.on_click = [this] { Label32_Click(); };
  tvwMain.on_node_check = [this](ui::TreeNode* node) { tvwMain_NodeCheck(node); };
  tvwMain.on_node_click = [this](ui::TreeNode* node) { tvwMain_NodeClick(node); };
  tvwMain.on_expand = [this](ui::TreeNode* node) { tvwMain_Expand(node); };
  tvwMain.on_collapse = [this](ui::TreeNode* node) { tvwMain_Collapse(node); };
  tvwMain.on_click = [this] { tvwMain_Click(); };
  tvwMain.on_got_focus = [this] { tvwMain_GotFocus(); };
  tvwMain.on_lost_focus = [this] { tvwMain_LostFocus(); };
  tvwMain.on_mouse_up = [this](int, int) { tvwMain_MouseUp(); };
  tvwMain.on_key_down = [this](int code, int modifiers) {
    return tvwMain_KeyDown(code, modifiers);
  };
  txtpath.text.on_change = [this] { txtpath_Change(); };
  cmdselectfolder.on_click = [this] { cmdselectfolder_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
}

void FrmTwo::LayOut() {
  using namespace page_layout;
  constexpr int kTreeWidth = 330;
  constexpr int kDetailsLeft = kContentLeft + kTreeWidth + 10;
  constexpr int kDetailsWidth = kContentRight - kDetailsLeft;
  constexpr int kTreeTop = kContentTop + kRowHeight;
  constexpr int kPathTop = kContentBottom - kLineHeight;
  constexpr int kTreeHeight = kPathTop - 8 - kTreeTop;
  constexpr int kItemHeight = 60;
  constexpr int kPathLabelWidth = 120;
  constexpr int kBrowseWidth = 90;

  PlaceHeader(&PicHeader, &lblHeader);
  Label32.is_link = true;
  Label32.bounds = {kContentLeft, kContentTop, 100, kLineHeight};
  tvwMain.bounds = {kContentLeft, kTreeTop, kTreeWidth, kTreeHeight};
  Label5.bounds = {kDetailsLeft, kContentTop, kDetailsWidth, kLineHeight};
  Label5.fore_color = kHeadingColor;
  Label5.visible = false;
  frmfor.bounds = {kDetailsLeft, kTreeTop, kDetailsWidth, kItemHeight};
  lblDesc.bounds = {kDetailsLeft, kTreeTop + kItemHeight + 8, kDetailsWidth,
                    kTreeHeight - kItemHeight - 8};
  lblpath.bounds = {kContentLeft, kPathTop, kPathLabelWidth, kLineHeight};
  txtpath.bounds = {kContentLeft + kPathLabelWidth, kPathTop,
                    kContentWidth - kPathLabelWidth - kBrowseWidth - 8, kLineHeight};
  cmdselectfolder.bounds = {kContentRight - kBrowseWidth, kPathTop - 1, kBrowseWidth,
                            kLineHeight + 2};
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
  LvW.visible = false;

  int tab = 0;
  for (ui::Control* control :
       {static_cast<ui::Control*>(&Label32), static_cast<ui::Control*>(&tvwMain),
        static_cast<ui::Control*>(&frmfor), static_cast<ui::Control*>(&lblDesc),
        static_cast<ui::Control*>(&lblpath), static_cast<ui::Control*>(&txtpath),
        static_cast<ui::Control*>(&cmdselectfolder)}) {
    control->tab_index = tab++;
  }
}

// The tree ---------------------------------------------------------------------------------------

void FrmTwo::FillExplorer() {
  tvwMain.BeginUpdate();
  tvwMain.Clear();
  if (IsVista(app_)) {
    FillWindowsMailNodes(app_, tvwMain);
  } else {
    FillOutlookExpressNodes(app_, tvwMain);
  }
  if (HasMicrosoftOutlook(app_)) FillMicrosoftOutlookNodes(app_, tvwMain);
  FillInternetExplorerNodes(app_, tvwMain);
  FillOtherFilesNodes(app_, tvwMain);
  tvwMain.EndUpdate();

  const std::string folder = app_.settings().backup_folder();
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
    if (!IsAddCaption(node->Root()->Text())) node->SetChecked(true);
  }
  tvwMain.EndUpdate();
}

void FrmTwo::LoadTreeState(const std::string& path) {
  if (!app_.files().FileExists(path)) return;
  SettingsFile settings;
  if (ReadSettingsFile(app_, path, &settings)) {
    Session& session = app_.session();
    session.gRestoreBackupFolder = settings.backup_folder;
    tvwMain.BeginUpdate();
    for (const char* root :
         {"Outlook Express", "Microsoft Outlook", "Internet Explorer", "Windows Mail",
          "Other Files", "Add Other Folders", "Add More Files"}) {
      TickFromItems(root, settings.items);
    }
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
  app_.files().files().RemoveFile(HandOverPath(app_), true);
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
  if (root->Key() == "Microsoft Outlook" && below_root) {
    const size_t colon = key.find(':');
    if (Contains(key, ":Outlook.Application")) {
      app_.session().gRestoreSettingsField = key.substr(colon + 1);
      key.resize(colon);
    } else if (key.ends_with(':')) {
      key.pop_back();
    }
  }
  if (ui::TreeNode* node = tvwMain.Find(key)) node->SetChecked(true);
  if (root->Key() != "Outlook Express") root->SetChecked(true);
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
    UpdateNodeChecks(tvwMain, node);
  }
  if (IsRemovable(*node) && !node->Checked()) {
    UpdateNodeChecks(tvwMain, node);
    AskRemove(node);
  } else if (IsAddRoot(*node)) {
    if (node->Children() == 0) {
      node->SetChecked(false);
    } else {
      UpdateNodeChecks(tvwMain, node);
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
  for (const char* caption : {"Microsoft Outlook", "Outlook Express", "Internet Explorer",
                              "Other Files", "Add Other Folders", "Add More Files"}) {
    if (node->Text() == caption) return;
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
    UpdateNodeChecks(tvwMain, node);
    if (IsRemovable(*node)) AskRemove(node);
    return true;
  }
  const bool add_root = IsAddRoot(*node);
  if (add_root) RunAddDialog(node);
  UpdateNodeChecks(tvwMain, node);
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
  if (!app_.files().FolderExists(path)) {
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

// The destination --------------------------------------------------------------------------------

void FrmTwo::cmdselectfolder_Click() {
  const std::string path = ui().BrowseForFolder("&Select a directory for Backup:", txtpath.text);
  if (path.empty()) return;
  if (ContainsNoCase(path, "Recycle Bin") || ContainsNoCase(path, "Recycle.Bin") ||
      ContainsNoCase(path, "Recycled")) {
    app_.Inform("You cannot select Recycle Bin.");
    return;
  }
  if (!IsNetworkPath(path) &&
      app_.files().files().KindOfDrive(path.substr(0, 2)) != DriveKind::kFixed) {
    app_.Inform("Please select a fixed drive.");
    return;
  }
  if (IsVista(app_) && ContainsNoCase(path, "Program Files")) {
    app_.Inform("You cannot select Program Files.");
    return;
  }
  if (!FolderIsWritable(app_, path)) {
    app_.Inform("You do not have sufficient permissions on the selected folder or drive");
    return;
  }
  txtpath.text = path;
}

// The folder last used here is the default of the whole program.
void FrmTwo::txtpath_Change() {
  ProgramSettings& settings = app_.settings();
  if (settings.backup_folder() == txtpath.text.get()) return;
  settings.UseBackupFolder(txtpath.text);
  settings.Save();
}

// The commit -------------------------------------------------------------------------------------

std::string FrmTwo::CommittedKey(const ui::TreeNode& node) const {
  if (node.Root()->Key() != "Microsoft Outlook") return node.Key();
  // A file of a group whose own name ends like row numbers keeps its name.
  const bool is_data_file =
      node.Parent() != nullptr && node.Parent()->Text() == "Account Emails-Files";
  if (!is_data_file && node.Key().ends_with("\\" + node.Text())) return node.Key();
  return WithoutRowNumbers(node.Key());
}

bool FrmTwo::savedetails() {
  Session& session = app_.session();
  session.gBackupFolder = txtpath.text;
  session.gBackupItemPaths.clear();
  session.gBackupItemKeys.clear();
  const auto add = [&](const std::string& path, const std::string& key) {
    session.gBackupItemPaths.push_back(path);
    session.gBackupItemKeys.push_back(key);
  };
  bool mail_folders_ticked = false;
  for (int index = 1; index <= tvwMain.Count(); ++index) {
    ui::TreeNode* node = tvwMain.Node(index);
    const std::string path = node->FullPath();
    if (Contains(path, "Account Settings") && HasTickedParent(*node)) node->SetChecked(true);
    if (node->Checked()) {
      if (path == kOtherMailFolders || path == kWindowsMails) mail_folders_ticked = true;
      if (path == "Microsoft Outlook\\Identities") {
        add(path, node->Key() + ":" + OutlookCurVer(app_));
      } else {
        add(path, needs_elevation_ ? node->Key() : CommittedKey(*node));
      }
    } else if (path == kFolderIndex && mail_folders_ticked) {
      // The folder index of the mail store travels with the mail folders.
      add(path, node->Key());
    }
  }
  session.gBackupTotalSize = sizeCount() / 1048576.0;
  session.gBackupEstimatedSize = session.gBackupTotalSize - session.gBackupTotalSize * 0.225;
  return true;
}

double FrmTwo::sizeCount() { return SizeOfSelection(app_); }

void FrmTwo::getDriveSize(const std::string& drive) { MeasureFreeSpace(app_, drive); }

double FrmTwo::OnlyDriveSize(const std::string& drive) { return UsedSpace(app_, drive); }

void FrmTwo::processeslisting() {
  LvW.Clear();
  LvW.columns = {"Processes", "ID"};
  int number = 0;
  for (const ProcessInfo& process : app_.platform().processes.List()) {
    LvW.AddRow({std::to_string(++number) + "first", {process.image, std::to_string(process.id)}});
  }
}

bool FrmTwo::CheckIfOpen() {
  processeslisting();
  std::vector<ProcessInfo> processes;
  for (const ui::ListView::Row& row : LvW.rows()) {
    processes.push_back({row.cells[0], static_cast<std::uint32_t>(std::stoul(row.cells[1]))});
  }
  for (const WatchedProgram& program : WatchedPrograms()) {
    const ui::TreeNode* root = tvwMain.Find(program.root);
    if (root == nullptr || !root->Checked()) continue;
    if (FindProcessId(processes, program.image) == 0) continue;
    ui().MessageBox(
        {.text = program.backup_message, .title = kApplicationTitle, .to_foreground = true});
    return true;
  }
  return false;
}

// The buttons ------------------------------------------------------------------------------------

bool FrmTwo::CheckAccountSettings() {
  needs_elevation_ = false;
  const bool vista = IsVista(app_);
  for (int index = 1; index <= tvwMain.Count(); ++index) {
    const ui::TreeNode& node = *tvwMain.Node(index);
    const std::string path = node.FullPath();
    const bool both_ticked = HasTickedParent(node) && node.Checked();
    if (Contains(path, "Account Settings")) {
      if (HasTickedParent(node) && !node.Checked()) {
        app_.Inform("Please select Account Settings for proper backup");
        return false;
      }
      if (vista && both_ticked) needs_elevation_ = true;
    } else if (Contains(path, "IESettings") || Contains(path, "Offline folders")) {
      if (vista && both_ticked) needs_elevation_ = true;
    }
  }
  if (!NeedsElevation(app_)) needs_elevation_ = false;
  return true;
}

bool FrmTwo::MakeDestination(const std::string& path) {
  if (!MakeDirectoryPath(app_, path)) return false;
  // The call above makes what stands before the last "\".
  return app_.files().MakeFolderChain(path) || MakeDirectoryPath(app_, WithBackslash(path));
}

bool FrmTwo::CheckDestination(const std::string& path) {
  Session& session = app_.session();
  session.gAnyItemChecked = false;
  for (int index = 1; index <= tvwMain.Count() && !session.gAnyItemChecked; ++index) {
    session.gAnyItemChecked = tvwMain.Node(index)->Checked();
  }
  if (path.empty()) {
    session.gAnyItemChecked = false;
    app_.Inform("Please Enter Backup Destination");
    return false;
  }
  if (!MakeDestination(path)) session.gAnyItemChecked = false;
  if (!session.gAnyItemChecked) {
    app_.Inform("No item is selected for Backup. Check the item to proceed");
    PageOf(PageRole::kBackupOptions).AllowNext(false);
    PageOf(PageRole::kBackupReview).AllowNext(false);
    return false;
  }
  return true;
}

bool FrmTwo::CheckSpace(const std::string& path) {
  Session& session = app_.session();
  if (!ReadFreeSpace(app_, DriveOf(path))) return false;
  const double needed = session.gSelectedFolderBytes;  // as savedetails() has just found it
  if (session.gFreeBytes / 1024 < needed / 1024) {
    app_.Inform(
        "There is not sufficient space on disk. Please customize backup items or change backup "
        "location");
    cmdselectfolder_Click();
    return false;
  }
  return true;
}

bool FrmTwo::RaiseRights() {
  if (!needs_elevation_ || !NeedsElevation(app_)) return true;
  SaveTreeState(
      app_, HandOverPath(app_),
      {.name = app_.session().gBackupName, .kind = kCustomWordOfJob, .path = txtpath.text});
  if (RestartElevated(app_) == Elevation::kRefused) {
    app_.page_host().SetEnabled(true);
    app_.Inform(
        "Administrator privileges are required for this action. You do not have sufficient access "
        "privileges to perform this action.");
  }
  return false;
}

void FrmTwo::cmdNext_Click() {
  if (!CheckAccountSettings()) return;
  const std::string path = Trim(txtpath.text.get());
  if (!CheckDestination(path)) return;
  savedetails();
  if (!CheckSpace(path)) return;
  if (CheckIfOpen()) return;
  app_.page_host().SetEnabled(false);
  if (RaiseRights()) ShowNextPage();
}

void FrmTwo::ShowNextPage() {
  app_.page_host().SetEnabled(true);
  PageOf(PageRole::kBackupReview).AllowNext(true);
  GoOnTo(PageRole::kBackupOptions);
}

void FrmTwo::cmdBack_Click() { Back(); }

void FrmTwo::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
