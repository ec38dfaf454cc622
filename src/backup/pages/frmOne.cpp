#include "backup/pages/frmOne.h"

#include "backup/format/settings_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr int kEnter = 13;
constexpr int kBackspace = 8;
constexpr int kTab = 9;
constexpr int kF1 = 112;

}  // namespace

frmOne::frmOne(Application& app) : WizardPage(app, kName, PageRole::kBackupJob) {
  LayOut();
  WireEvents();
}

void frmOne::LayOut() {
  using namespace page_layout;
  lblHeader.fore_color = kHeaderColor;
  lblBackupname.bounds = ContentRow(0);
  txtBackupname.bounds = ContentRow(1, kContentLeft, 360);
  OptCustBackup.bounds = ContentRow(3);
  OptQuick.bounds = ContentRow(4);
  txtBackupname.tab_index = 1;
  OptCustBackup.tab_index = 2;
  OptQuick.tab_index = 3;
  TxtBName.visible = false;
  File1.visible = false;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(nullptr, &cmdNext, &cmdCancel);
}

void frmOne::WireEvents() {
  txtBackupname.on_key_press = [this](int code) { return txtBackupname_KeyPress(code); };
  OptCustBackup.on_click = [this] { OptCustBackup_Click(); };
  OptQuick.on_click = [this] { OptQuick_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  on_key_down = [this](int code, int modifiers) {
    if (code == kF1) ShowHelp(app_, "qvlBackup.htm");
    return code == kF1 || (code == kTab && (modifiers & ui::kAltMask) != 0);
  };
}

void frmOne::Load() {
  page_layout::HostPage(app_, *this);
  const LocalTime now = app_.platform().system.Now();
  TxtBName.text = DateStamp(now) + "_" + std::to_string(now.second);
  for (const std::string& name : app_.files().ListFileNames(LogFolder(app_), "*.*")) {
    File1.AddItem(name);
  }
  RegisterOpenedFile(app_);
}

void frmOne::savedetails() {
  Session& session = app_.session();
  session.gBackupProcessName = kMainBackup;
  session.gBackupProcessDesc = kMainBackupDescription;
  session.gBackupName = txtBackupname.text;
}

HandOver frmOne::JobHandOver() const {
  return {.name = txtBackupname.text,
          .kind = OptCustBackup.value ? kCustomWordOfJob : kQuickWordOfJob};
}

void frmOne::SaveJobState(const std::string& path) {
  quorvale::SaveJobState(app_, path, JobHandOver());
}

void frmOne::OptCustBackup_Click() {
  app_.session().gBackupProcessName = kMainBackup;
  app_.session().gBackupProcessDesc = kMainBackupDescription;
}

void frmOne::OptQuick_Click() {
  app_.session().gBackupProcessName = kQuickBackup;
  app_.session().gBackupProcessDesc = kQuickBackupDescription;
}

int frmOne::txtBackupname_KeyPress(int code) {
  if (code == kEnter) {
    cmdNext.Click();
    return 0;
  }
  const bool usable = code == ' ' || code == kBackspace || (code >= 35 && code <= 122);
  return usable ? code : 0;
}

void frmOne::cmdNext_Click() {
  if (NameIsBlank()) return;
  std::string name = txtBackupname.text;
  if (!IsValidName(name)) return RefuseName();
  if (!MayUseName(name)) return;
  if (name.find_first_of("?><./\\:;*|'\"") != std::string::npos) return RefuseName();
  txtBackupname.text = name;
  savedetails();
  if (OptCustBackup.value) return GoToItems();
  if (OptQuick.value) PrepareQuickBackup();
}

bool frmOne::NameIsBlank() {
  if (!Trim(txtBackupname.text.get()).empty()) return false;
  app_.Inform("Name of backup cannot be blank");
  txtBackupname.SetFocus();
  return true;
}

void frmOne::RefuseName() {
  app_.Inform("Backup name cannot contain special characters.");
  txtBackupname.SetFocus();
}

bool frmOne::MayUseName(const std::string& name) {
  const std::string file = WithBackslash(app_.settings().backup_folder()) + name + ".obk";
  if (!app_.files().FileExists(file)) return true;
  if (!app_.Ask("Backup job with the same name has already been created before. Do you want to "
                "overwrite?",
                ui::Icon::kInformation)) {
    txtBackupname.SetFocus();
    return false;
  }
  app_.platform().files.RemoveFile(file, true);
  return true;
}

void frmOne::GoToItems() {
  if (NameIsBlank()) return;
  GoOnTo(PageRole::kBackupItems);
}

void frmOne::PrepareQuickBackup() {
  if (NameIsBlank()) return;
  PageHost& main_window = app_.page_host();
  main_window.SetEnabled(false);
  if (!RaiseRights()) return;
  main_window.SetEnabled(true);
  app_.pages().commit_complete_backup(app_, txtBackupname.text);
  Hide();
  GoOnTo(PageRole::kBackupReview);
}

bool frmOne::RaiseRights() {
  if (!NeedsElevation(app_)) return true;
  SaveJobState(HandOverPath(app_));
  if (RestartElevated(app_) == Elevation::kRefused) {
    app_.page_host().SetEnabled(true);
    app_.Inform(
        "Administrator privileges are required for this action. You do not have sufficient access "
        "privileges to perform this action.");
  }
  return false;
}

void frmOne::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
