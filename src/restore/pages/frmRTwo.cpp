#include "restore/pages/frmRTwo.h"

#include <algorithm>
#include <utility>

#include "backup/format/archive_layout.h"
#include "backup/format/backup_file.h"
#include "base/text.h"
#include "core/pages/folder_choice.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_express_places.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_table.h"
#include "discovery/products/watched_programs.h"
#include "restore/pages/restore_tree.h"
#include "restore/run/restore_places.h"
#include "restore/run/restore_selection.h"

namespace quorvale {
namespace {

constexpr int kSpace = 32;
constexpr char kFolderPrompt[] = "&Select a directory for Backup:";
constexpr char kSkipsDefault[] =
    "Skiping of Default Profile may get ambigues recovery of Microsoft Outlook setting";

bool IsDefaultProfile(const ui::TreeNode& node) {
  return node.Parent() != nullptr && Contains(node.Parent()->Text(), "Identities") &&
         Contains(node.Text(), "Default");
}

// The store's index, in the place of either tree.
bool IsStoreIndex(const std::string& path) {
  return EqualsNoCase(path, std::string(kMailStoresPath) + "\\" + kMailStoreIndex) ||
         EqualsNoCase(path, std::string(kOtherMailFoldersPath) + "\\" + kMailStoreIndex);
}

}  // namespace

frmRTwo::frmRTwo(Application& app) : WizardPage(app, kName, PageRole::kRestoreItems) {
  Label32.is_link = true;
  PlaceControls();
  ConnectHandlers();
}

void frmRTwo::ConnectHandlers() {
  Label32.on_click = [this] { Label32_Click(); };
  Command2.on_click = [this] { Command2_Click(); };
  tvwMain.on_node_check = [this](ui::TreeNode* node) { tvwMain_NodeCheck(node); };
  tvwMain.on_node_click = [this](ui::TreeNode* node) { tvwMain_NodeClick(node); };
  tvwMain.on_key_down = [this](int code, int modifiers) {
    return tvwMain_KeyDown(code, modifiers);
  };
  txtpath.text.on_change = [this] { txtpath_Change(); };
  cmdselectfolder.on_click = [this] { cmdselectfolder_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "Restoration.htm");
}

void frmRTwo::Load() {
  page_layout::HostPage(app_, *this);
  LvW.columns = {"Processes", "ID"};
}

void frmRTwo::PlaceControls() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
  lblTree.bounds = ContentRow(0, kContentLeft, 220);
  // The tree and, to its right, what is known of the selected item, as on the backup's page.
  constexpr int kTreeWidth = 330;
  constexpr int kDetailsLeft = kContentLeft + kTreeWidth + 10;
  constexpr int kDetailsWidth = kContentRight - kDetailsLeft;
  constexpr int kTreeHeight = 9 * kRowHeight - 8;
  constexpr int kItemHeight = 60;
  Label32.bounds = ContentRow(0, kContentLeft + kTreeWidth - 70, 70);
  tvwMain.bounds = ContentRow(1, kContentLeft, kTreeWidth, kTreeHeight);
  frmfor.bounds = ContentRow(1, kDetailsLeft, kDetailsWidth, kItemHeight);
  lblDesc.bounds = {kDetailsLeft, kContentTop + kRowHeight + kItemHeight + 8, kDetailsWidth,
                    kTreeHeight - kItemHeight - 8};
  lblFolder.bounds = ContentRow(10);
  txtpath.bounds = ContentRow(11, kContentLeft, kContentWidth - 104);
  cmdselectfolder.bounds = ButtonInRow(11, kContentRight - 96, 96);
  for (ui::Control* hidden : std::initializer_list<ui::Control*>{&Command2, &LvW}) {
    hidden->visible = false;
  }
  SetTabOrder(
      {&Label32, &lblTree, &tvwMain, &frmfor, &lblDesc, &lblFolder, &txtpath, &cmdselectfolder}, 0);
}

std::string frmRTwo::StagingFolder() const {
  if (app_.session().gNoRestoreFolder) return TempXmlFolder(app_);
  return app_.settings().restore_folder();
}

std::string frmRTwo::SettingsFilePath(const std::string& base) const {
  return CollapseBackslashes(StagingFolder() + "\\" + base + "\\" + base + ".xml");
}

bool frmRTwo::LoadValues() {
  app_.session().gRestoreFileBad = false;
  Label32_Click();
  txtpath.text = app_.settings().restore_folder();
  return !app_.session().gRestoreFileBad;
}

void frmRTwo::Label32_Click() {
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  Command2_Click();
  app_.ui().SetPointer(ui::Pointer::kDefault);
}

void frmRTwo::Command2_Click() {
  Session& session = app_.session();
  session.gBackupFileName = session.gRestoreFilePath;
  if (session.gBackupFileName.empty()) {
    app_.Inform("No backup file is selected for Restore, please select an obk file to restore");
    return;
  }
  if (!ExtractSettingsFile(SettingsEntryName(BackupBaseName(session)), session.gRestoreFilePath)) {
    return;
  }
  if (!ReadTable(session.gRestoreFilePath)) return Refuse(zip::Result::kFailed);
  LoadRestoreTree(BackupBaseName(session));
  if (session.again_archive == session.gRestoreFilePath) TickAgain();
  cmdNext.enabled = true;
}

void frmRTwo::TickAgain() {
  const std::vector<std::string>& wanted = app_.session().again_items;
  for (int i = 1; i <= tvwMain.Count(); ++i) {
    ui::TreeNode* node = tvwMain.Node(i);
    const int item = ItemOfNode(*node);
    if (item < 0) continue;
    const std::string& path = items_[static_cast<size_t>(item)].path;
    if (std::find(wanted.begin(), wanted.end(), path) != wanted.end()) {
      tvwMain.UserChecks(node, true);
    }
  }
  // No product's items come back without its account settings.
  for (int i = 1; i <= tvwMain.Count(); ++i) {
    ui::TreeNode& node = *tvwMain.Node(i);
    const bool parent_ticked = node.Parent() != nullptr && node.Parent()->Checked();
    if (parent_ticked && Contains(node.FullPath(), "Account Settings")) node.SetChecked(true);
  }
}

bool frmRTwo::ExtractSettingsFile(const std::string& member, const std::string& archive) {
  const std::string folder = StagingFolder();
  if (!app_.files().MakeFolderChain(folder)) {
    RefuseFolder(folder);
    return false;
  }
  const zip::Result result = UnpackSettings(member, archive);
  if (result == zip::Result::kDone) return true;
  if (result == zip::Result::kNoSpace || !FolderIsWritable(app_, folder)) {
    RefuseFolder(folder);
    return false;
  }
  Refuse(result);
  if (result != zip::Result::kWrongPassword) TellFirstName(archive);
  return false;
}

zip::Result frmRTwo::UnpackSettings(const std::string& member, const std::string& archive) {
  Session& session = app_.session();
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  const std::string target = CollapseBackslashes(StagingFolder() + "\\" + member);
  const zip::Result result =
      BackupFile(app_, archive, session.gRestorePassword).ExtractAs(member, target);
  app_.ui().SetPointer(ui::Pointer::kDefault);
  if (result != zip::Result::kDone) return result;
  session.restore_settings_file = target;
  session.gRestoreFileBad = false;
  return result;
}

// False for a table that cannot be read.
bool frmRTwo::ReadTable(const std::string& archive) {
  const FoundTable found = BackupFile(app_, archive, app_.session().gRestorePassword).Table();
  table_ = found.table;
  return table_ != nullptr || !found.is_there;
}

void frmRTwo::Refuse(zip::Result result) {
  if (result == zip::Result::kWrongPassword) {
    app_.Inform("Please enter the correct password");
  } else {
    app_.Warn("Either the file is Corrupt or Renamed");
  }
  cmdBack_Click();
  app_.session().gRestoreFileBad = true;
}

void frmRTwo::TellFolder(const std::string& folder) {
  app_.Inform("The restore folder cannot be used: " + folder);
}

void frmRTwo::RefuseFolder(const std::string& folder) {
  TellFolder(folder);
  cmdBack_Click();
  app_.session().gRestoreFileBad = true;
}

// A renamed backup is refused. One whose table tells its first name can be gone on with.
void frmRTwo::TellFirstName(const std::string& archive) {
  Session& session = app_.session();
  const bool is_known = ReadTable(archive) && table_ != nullptr &&
                        !EqualsNoCase(table_->stem, BackupBaseName(session));
  session.refused_first_name = is_known ? table_->stem : "";
}

void frmRTwo::LoadRestoreTree(const std::string& base) {
  Session& session = app_.session();
  tvwMain.Clear();
  items_.clear();
  session.gRestoreSettingsField.clear();
  SettingsFile settings;
  if (!ReadSettingsFile(app_, SettingsFilePath(base), &settings)) return;
  session.gRestoreBackupFolder = settings.backup_folder;
  ReadOptions(settings);
  // The table has the names in full.
  if (table_ != nullptr) settings.items = table_->items;
  for (SettingsItem& item : settings.items) {
    // A path that holds the words of two products is listed twice.
    const bool repeated =
        !items_.empty() && items_.back().path == item.path && items_.back().key == item.key;
    if (!repeated) items_.push_back(std::move(item));
  }
  FillRestoreTree(items_, IsVista(app_), tvwMain, &session.gRestoreSettingsField);
}

void frmRTwo::ReadOptions(const SettingsFile& settings) {
  Session& session = app_.session();
  const SettingsOptions& told = settings.options;
  session.gRestoreLogDetails = told.log.value_or("");
  session.gRestoreUseCompression = told.compression.value_or("");
  session.gRestoreSelfExtracting = told.level.value_or("");
  // The password that opened the archive counts; the stored one may be of another time.
  if (session.gRestorePassword.empty()) session.gRestorePassword = told.password.value_or("");
  session.gRestoreProtectWithPassword = told.protection.value_or("");
}

bool frmRTwo::CheckIfOpen() {
  processeslisting();
  for (int i = 1; i <= tvwMain.Count(); ++i) {
    const ui::TreeNode& node = *tvwMain.Node(i);
    if (!node.Checked()) continue;
    for (const WatchedProgram& program : WatchedPrograms()) {
      if (node.Key() != program.root || FindProcessId(program.image) == 0) continue;
      app_.ui().MessageBox(
          {.text = program.restore_message, .title = kApplicationTitle, .to_foreground = true});
      return false;
    }
  }
  return true;
}

bool frmRTwo::CheckProfileRules() {
  Session& session = app_.session();
  for (int i = 1; i <= tvwMain.Count(); ++i) {
    const ui::TreeNode& node = *tvwMain.Node(i);
    const bool left_out = !node.Checked() && node.Parent() != nullptr && node.Parent()->Checked();
    if (!left_out) continue;
    if (Contains(node.FullPath(), "Account Settings")) {
      app_.Inform("Please select Account Settings for proper restoration");
      return false;
    }
    if (IsDefaultProfile(node)) session.gDefaultProfileSkipped = true;
  }
  if (!session.gDefaultProfileSkipped) return true;
  if (app_.Ask(std::string(kSkipsDefault) + ", Are you proceed forward", ui::Icon::kInformation)) {
    return true;
  }
  session.gDefaultProfileSkipped = false;
  return false;
}

void frmRTwo::savedetails() {
  Session& session = app_.session();
  session.gBackupFolder = txtpath.text;
  if (!session.gNoRestoreFolder) session.gRestoreFolder = txtpath.text;
  const ui::TreeNode* other_folders = tvwMain.FindPath(kOtherMailFoldersPath);
  const bool with_index = other_folders != nullptr && other_folders->Checked();
  RestoreSelection selection(app_, items_);
  for (int i = 1; i <= tvwMain.Count(); ++i) {
    ui::TreeNode& node = *tvwMain.Node(i);
    const std::string path = node.FullPath();
    const bool parent_ticked = node.Parent() != nullptr && node.Parent()->Checked();
    if (parent_ticked && Contains(path, "Account Settings")) node.SetChecked(true);
    if (node.Checked() || (with_index && IsStoreIndex(path))) {
      selection.Add(path, node.Key(), ItemOfNode(node));
    } else {
      selection.PassOver(node.Key());
    }
  }
}

void frmRTwo::processeslisting() {
  LvW.Clear();
  for (const ProcessInfo& process : app_.platform().processes.List()) {
    const std::string id = std::to_string(process.id);
    LvW.AddRow({id + "first", {process.image, id}});
  }
}

std::uint32_t frmRTwo::FindProcessId(const std::string& image) {
  for (const ui::ListView::Row& row : LvW.rows()) {
    if (EqualsNoCase(row.cells[0], image)) {
      return static_cast<std::uint32_t>(std::stoul(row.cells[1]));
    }
  }
  return 0;
}

bool frmRTwo::CloseApplication(const std::string& window_title) {
  if (!app_.platform().processes.WindowExists(window_title)) return true;
  app_.Inform("It is recommended that you close : [" + window_title + "] to proceed");
  return false;
}

std::string frmRTwo::extractLastFolder(const std::string& path) {
  return FileNameOf(ParentFolder(path));
}

void frmRTwo::tvwMain_NodeCheck(ui::TreeNode* node) {
  if (Contains(node->FullPath() + node->Text(), "\\Personal Folders\\")) {
    CheckChildren(tvwMain, node);
    return;
  }
  UpdateNodeChecks(tvwMain, node);
  if (!IsDefaultProfile(*node)) return;
  app_.session().gDefaultProfileSkipped = !node->Checked();
  if (!node->Checked()) app_.Warn(kSkipsDefault);
}

void frmRTwo::tvwMain_NodeClick(ui::TreeNode* node) {
  const bool is_outlook =
      Contains(node->FullPath(), ProductOf(ProductId::kMicrosoftOutlook).caption);
  frmfor.text = "Item: " + node->Text();
  lblDesc.text = "Location: " + (is_outlook ? UpToComma(node->Key()) : node->Key());
}

bool frmRTwo::tvwMain_KeyDown(int code, int) {
  ui::TreeNode* node = tvwMain.Selected();
  if (code != kSpace || node == nullptr) return false;
  if (!node->Checked()) {
    UpdateNodeChecks(tvwMain, node);
    return node->image == "aa1" || node->image == "ab1";
  }
  node->SetChecked(false);
  tvwMain_NodeCheck(node);
  if ((node->image == "of" || node->image == "dc1") &&
      app_.Ask("Remove the folder/file: [" + node->Text() + "] ?", ui::Icon::kInformation)) {
    tvwMain.Remove(node);
  }
  return true;
}

void frmRTwo::txtpath_Change() {
  ProgramSettings& settings = app_.settings();
  if (settings.restore_folder() == txtpath.text.get()) return;
  settings.UseRestoreFolder(txtpath.text);
  settings.Save();
}

void frmRTwo::cmdselectfolder_Click() {
  const std::string folder = app_.ui().BrowseForFolder(kFolderPrompt, txtpath.text);
  if (folder.empty()) return;
  if (!FolderMayBeUsed(app_, folder)) return;
  // A chosen folder takes back that none was wanted.
  if (app_.session().gNoRestoreFolder) PageOf(PageRole::kRestoreJob).FolderWanted();
  txtpath.text = folder;
}

bool frmRTwo::AnythingTicked() const {
  for (int i = 1; i <= tvwMain.Count(); ++i) {
    if (tvwMain.Node(i)->Checked()) return true;
  }
  return false;
}

void frmRTwo::cmdNext_Click() {
  txtpath.text = TypedFolder(app_, txtpath.text);
  const std::string folder = txtpath.text;
  if (folder.empty() && !app_.session().gNoRestoreFolder) return;
  if (!folder.empty() && !app_.files().MakeFolderChain(folder)) return TellFolder(folder);
  if (!app_.files().FileExists(app_.session().gRestoreFilePath)) {
    app_.Warn("Backup file has been deleted or renamed");
    cmdBack_Click();
    return;
  }
  if (!AnythingTicked()) {
    app_.Inform("No item is selected for Restore. Check the item to proceed");
    PageOf(PageRole::kRestoreReview).AllowNext(false);
    return;
  }
  if (!CheckIfOpen() || !CheckProfileRules()) return;
  savedetails();
  GoOnTo(PageRole::kRestoreReview);
}

void frmRTwo::cmdBack_Click() { Back(); }

void frmRTwo::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
