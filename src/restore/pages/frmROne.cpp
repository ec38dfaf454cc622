#include "restore/pages/frmROne.h"

#include <algorithm>

#include "backup/format/backup_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "restore/run/damaged_backup.h"

namespace quorvale {
namespace {

constexpr char kFolderPrompt[] = "&Select a directory for Backup:";

}  // namespace

frmROne::frmROne(Application& app) : WizardPage(app, kName, PageRole::kRestoreJob) {
  txtDefaultPassword.password = true;
  Label32.is_link = true;
  LblDelete.is_link = true;
  LblFirstName.is_link = true;
  LblWhole.is_link = true;
  LblUnread.visible = false;
  HideOffers();
  PlaceControls();
  ConnectHandlers();
}

void frmROne::ConnectHandlers() {
  File1.on_click = [this] { File1_Click(); };
  Command1.on_click = [this] { Command1_Click(); };
  Label32.on_click = [this] { Label32_Click(); };
  LblDelete.on_click = [this] { LblDelete_Click(); };
  Check1.on_click = [this] { Check1_Click(); };
  txtpath.on_lost_focus = [this] { EnablePassword(); };
  txtpath.text.on_change = [this] { HideOffers(); };
  txtRestore.text.on_change = [this] { txtRestore_Change(); };
  cmdselectfolder.on_click = [this] { cmdselectfolder_Click(); };
  LblFirstName.on_click = [this] { LblFirstName_Click(); };
  LblWhole.on_click = [this] { LblWhole_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "Restoration.htm");
}

void frmROne::Load() {
  page_layout::HostPage(app_, *this);
  cmdNext.enabled = false;
  txtDefaultPassword.enabled = false;
  FillBackupList();
  UseOpenedFile();
  app_.session().gNoRestoreFolder = false;
  const std::string folder = app_.settings().restore_folder();
  // An earlier run that declined the folder left the setting empty.
  txtRestore.text = folder.empty() ? app_.session().gAppDataPath + "\\Restore" : folder;
}

void frmROne::PlaceControls() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(nullptr, &cmdNext, &cmdCancel);
  lblDescription.bounds = ContentRow(0);
  lblJobs.bounds = ContentRow(1, kContentLeft, 220);
  Label32.bounds = ContentRow(1, kContentRight - 218, 70);
  LblDelete.bounds = ContentRow(1, kContentRight - 132, 132);
  File1.bounds = ContentRow(2, kContentLeft, kContentWidth, 4 * kRowHeight - 6);
  txtpath.bounds = ContentRow(6, kContentLeft, kContentWidth - 104);
  Command1.bounds = ButtonInRow(6, kContentRight - 96, 96);
  lblPassword.bounds = ContentRow(7);
  constexpr int kPasswordWidth = 260;
  txtDefaultPassword.bounds = ContentRow(8, kContentLeft, kPasswordWidth);
  LblFirstName.bounds =
      ContentRow(8, kContentLeft + kPasswordWidth + 8, kContentWidth - kPasswordWidth - 8);
  LblWhole.bounds = LblFirstName.bounds;  // one of the three is shown at a time
  LblUnread.bounds = LblFirstName.bounds;
  lblRestore.bounds = ContentRow(9);
  txtRestore.bounds = ContentRow(10, kContentLeft, kContentWidth - 104);
  cmdselectfolder.bounds = ButtonInRow(10, kContentRight - 96, 96);
  Check1.bounds = ContentRow(11, kContentLeft, 260);
  // A heading stands just before what it names, so that its access key leads there.
  SetTabOrder({&Label32, &LblDelete, &lblJobs, &File1, &txtpath, &Command1, &lblPassword,
               &txtDefaultPassword, &LblFirstName, &LblWhole, &lblRestore, &txtRestore,
               &cmdselectfolder, &Check1},
              0);
}

void frmROne::FillBackupList() {
  ProgramSettings& settings = app_.settings();
  const std::string folder = settings.backup_folder();
  app_.files().MakeFolderChain(folder);
  const std::string restore_folder = settings.restore_folder();
  if (!restore_folder.empty()) app_.files().MakeFolderChain(restore_folder);
  std::vector<std::string> names = app_.files().ListFileNames(folder, "*.obk");
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return FoldCase(a) < FoldCase(b); });
  File1.Clear();
  for (std::string& name : names) File1.AddItem(std::move(name));
  LblUnread.visible = names.empty() && !app_.platform().files.CanList(folder);
  if (File1.Count() == 0) return;
  File1.list_index = 0;
  cmdNext.enabled = true;
}

bool frmROne::CheckArchiveEncrypted() {
  txtDefaultPassword.enabled = false;
  return BackupFile(app_, txtpath.text, "").IsEncrypted();
}

void frmROne::EnablePassword() { txtDefaultPassword.enabled = CheckArchiveEncrypted(); }

// What the page offers behind a refusal is about the file that was refused.
void frmROne::HideOffers() {
  LblFirstName.visible = false;
  LblWhole.visible = false;
}

void frmROne::UseArchivePath(const std::string& path) {
  HideOffers();
  LblUnread.visible = false;
  txtpath.text = path;
  EnablePassword();
}

void frmROne::UseOpenedFile() {
  const std::string path = OpenedBackupFile(app_);
  if (path.empty()) return;
  cmdNext.enabled = true;
  UseArchivePath(path);
}

void frmROne::File1_Click() {
  if (File1.list_index < 0) return;
  txtDefaultPassword.text = "";
  const std::string folder = app_.settings().backup_folder();
  const std::string path = folder + "\\" + File1.SelectedText();
  UseArchivePath(IsNetworkPath(path) ? path : ReplaceAll(path, "\\\\", "\\"));
}

void frmROne::Command1_Click() {
  const std::string path = app_.ui().OpenFileDialog("Outlook Backup Files(*.obk)|*.obk",
                                                    app_.settings().backup_folder());
  if (!path.empty()) UseBackup(path);
}

void frmROne::UseBackup(const std::string& path) {
  txtDefaultPassword.text = "";
  cmdNext.enabled = true;
  UseArchivePath(path);
}

void frmROne::Label32_Click() {
  txtDefaultPassword.text = "";
  FillBackupList();
  if (File1.Count() == 0) cmdNext.enabled = false;
  app_.Pump();
}

void frmROne::LblDelete_Click() {
  if (Trim(txtpath.text.get()).empty()) return;
  const std::string path = txtpath.text;
  if (app_.files().FileExists(path)) {
    if (app_.Ask("Are you sure you want to remove the backup file permanently",
                 ui::Icon::kInformation)) {
      app_.platform().files.RemoveFile(path, false);
    }
  } else {
    app_.Inform("Cannot delete as the backup file has either been remove or renamed");
  }
  Label32_Click();
}

void frmROne::Check1_Click() {
  const bool declined = Check1.value == 1;
  app_.session().gNoRestoreFolder = declined;
  txtRestore.enabled = !declined;
  cmdselectfolder.enabled = !declined;
  txtRestore.text = declined ? std::string() : app_.session().gAppDataPath + "\\Restore";
}

void frmROne::txtRestore_Change() {
  ProgramSettings& settings = app_.settings();
  if (settings.restore_folder() == txtRestore.text.get()) return;
  settings.UseRestoreFolder(txtRestore.text);
  settings.Save();
}

void frmROne::cmdselectfolder_Click() {
  const std::string folder = app_.ui().BrowseForFolder(kFolderPrompt, txtRestore.text);
  if (folder.empty()) return;
  Check1.value = 0;
  if (FolderIsWritable(app_, folder)) {
    txtRestore.text = folder;
  } else {
    app_.Inform("You do not have sufficient permissions on the selected folder or drive");
  }
}

void frmROne::SaveRestoreSession() {
  Session& session = app_.session();
  session.gRestoreFilePath = txtpath.text;
  session.backup_stem.clear();
  session.refused_first_name.clear();
  session.gBackupFileName = txtpath.text;
  session.gRestorePassword = txtDefaultPassword.text;
  session.gRestoreFolder = txtRestore.text;
  session.gRestoreProcessName = "Main Restore";
  session.gRestoreProcessDesc = lblDescription.caption;
}

void frmROne::EnableButtons() {
  app_.ui().SetPointer(ui::Pointer::kDefault);
  cmdNext.enabled = true;
  Command1.enabled = true;
  // A declined folder stays declined.
  cmdselectfolder.enabled = Check1.value == 0;
}

void frmROne::RefusePassword() {
  app_.Inform(Trim(txtDefaultPassword.text.get()).empty() ? "Password cannot be left blank."
                                                          : "Please enter the correct password.");
  txtDefaultPassword.SetFocus();
  EnableButtons();
}

// A large archive takes its time: the window repaints meanwhile, but nothing can be pressed.
zip::Result frmROne::TestArchive() {
  PageHost& main = app_.page_host();
  main.SetEnabled(false);
  BackupFile backup(app_, txtpath.text, txtDefaultPassword.text);
  const zip::Result result = backup.Test([this] {
    app_.Pump();
    return !app_.Ended();
  });
  if (!app_.Ended()) main.SetEnabled(true);
  return result;
}

bool frmROne::BackupIsThere() {
  if (app_.files().FileExists(txtpath.text)) return true;
  app_.Warn("Backup file has been deleted or renamed");
  Label32_Click();
  app_.ui().SetPointer(ui::Pointer::kDefault);
  return false;
}

void frmROne::cmdNext_Click() {
  if (Trim(txtpath.text.get()).empty()) {
    app_.Inform("Select a backup file to Restore");
    return;
  }
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  if (!BackupIsThere()) return;
  cmdNext.enabled = false;
  const zip::Result result = TestArchive();
  if (app_.Ended()) return;
  if (result == zip::Result::kDone) return GoOn();
  if (result == zip::Result::kWrongPassword) {
    RefusePassword();
  } else {
    app_.Inform("Invalid backup file selected.");
    EnableButtons();
  }
  HideOffers();
  // Damage may also look like a wrong password.
  LblWhole.visible = GivesWhatIsWhole(app_, txtpath.text, txtDefaultPassword.text,
                                      WithoutLastFour(FileNameOf(txtpath.text)));
}

void frmROne::GoOn() {
  cmdNext.enabled = true;
  txtRestore.text = TypedFolder(app_, txtRestore.text);
  SaveRestoreSession();
  OpenItems();
}

void frmROne::LblWhole_Click() {
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  if (BackupIsThere()) GoOn();
}

void frmROne::OpenItems() {
  GoOnTo(PageRole::kRestoreItems);
  const std::string& first_name = app_.session().refused_first_name;
  HideOffers();
  LblFirstName.visible = !first_name.empty();
  LblFirstName.caption = "It was made as \"" + first_name + "\". Go on with it";
  app_.ui().SetPointer(ui::Pointer::kDefault);
}

void frmROne::LblFirstName_Click() {
  Session& session = app_.session();
  session.backup_stem = session.refused_first_name;
  session.refused_first_name.clear();
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  OpenItems();
}

void frmROne::cmdCancel_Click() { Cancel(); }

void frmROne::RegisterOpenedFile() { quorvale::RegisterOpenedFile(app_); }

}  // namespace quorvale
