#include "discovery/pages/FrmTwo.h"

#include "backup/format/job_kinds.h"
#include "backup/format/settings_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/folder_choice.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/pages/raised_rights.h"
#include "core/pages/selection_space.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_express_places.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_table.h"
#include "discovery/products/watched_programs.h"

namespace quorvale {
namespace {

constexpr char kHelpTopic[] = "qvlBackup.htm";

constexpr char kWindowsMails[] = "Windows Mail\\Mails";

bool HasTickedParent(const ui::TreeNode& node) {
  return node.Parent() != nullptr && node.Parent()->Checked();
}

}  // namespace

FrmTwo::FrmTwo(Application& app) : WizardPage(app, kName, PageRole::kBackupItems) {
  PlaceControls();
  ConnectHandlers();
}

void FrmTwo::Load() {
  Session& session = app_.session();
  if (session.gBackupProcessName.empty()) {
    session.gBackupProcessName = kMainBackup;
    session.gBackupProcessDesc = kMainBackupDescription;
    session.gBackupName = "My Backup";
  }
  page_layout::HostPage(app_, *this);
  Label32_Click();
}

void FrmTwo::ConnectHandlers() {
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

void FrmTwo::PlaceControls() {
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

  SetTabOrder({&Label32, &tvwMain, &frmfor, &lblDesc, &lblpath, &txtpath, &cmdselectfolder}, 0);
}

// The destination --------------------------------------------------------------------------------

void FrmTwo::cmdselectfolder_Click() {
  const std::string path = ui().BrowseForFolder("&Select a directory for Backup:", txtpath.text);
  if (path.empty() || !FolderMayBeUsed(app_, path, SentenceEnd::kFullStop)) return;
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
  if (node.Root()->Key() != ProductOf(ProductId::kMicrosoftOutlook).caption) return node.Key();
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
  const std::string folder_index = std::string(kOtherMailFoldersPath) + "\\" + kMailStoreIndex;
  bool mail_folders_ticked = false;
  for (int index = 1; index <= tvwMain.Count(); ++index) {
    ui::TreeNode* node = tvwMain.Node(index);
    const std::string path = node->FullPath();
    if (Contains(path, "Account Settings") && HasTickedParent(*node)) node->SetChecked(true);
    if (node->Checked()) {
      if (path == kOtherMailFoldersPath || path == kWindowsMails) mail_folders_ticked = true;
      if (path == "Microsoft Outlook\\Identities") {
        add(path, node->Key() + ":" + OutlookCurVer(app_));
      } else {
        add(path, selection_needs_rights_ ? node->Key() : CommittedKey(*node));
      }
    } else if (path == folder_index && mail_folders_ticked) {
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
  selection_needs_rights_ = false;
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
      if (vista && both_ticked) selection_needs_rights_ = true;
    } else if (Contains(path, "IESettings") || Contains(path, "Offline folders")) {
      if (vista && both_ticked) selection_needs_rights_ = true;
    }
  }
  if (!NeedsElevation(app_)) selection_needs_rights_ = false;
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
  if (!selection_needs_rights_) return true;
  const auto hand_over = [this] {
    SaveTreeState(
        app_, HandOverPath(app_),
        {.name = app_.session().gBackupName, .kind = kCustomWordOfJob, .path = txtpath.text});
  };
  return quorvale::RaiseRights(app_, hand_over, kElevationRefusedStop);
}

void FrmTwo::cmdNext_Click() {
  CommitAndGoOn();
  // It counts for this commit alone: a quick backup that follows saves all under its own keys.
  selection_needs_rights_ = false;
}

void FrmTwo::CommitAndGoOn() {
  if (!CheckAccountSettings()) return;
  txtpath.text = TypedFolder(app_, txtpath.text);
  const std::string path = txtpath.text;
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
