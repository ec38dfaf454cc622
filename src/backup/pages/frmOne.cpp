#include "backup/pages/frmOne.h"

#include "backup/format/settings_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/pages/raised_rights.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr int kEnter = 13;
constexpr int kBackspace = 8;
constexpr int kTab = 9;

}  // namespace

frmOne::frmOne(Application& app) : WizardPage(app, kName, PageRole::kBackupJob) {
  PlaceControls();
  ConnectHandlers();
}

void frmOne::PlaceControls() {
  using namespace page_layout;
  lblHeader.fore_color = kHeaderColor;
  lblBackupname.bounds = ContentRow(0);
  txtBackupname.bounds = ContentRow(1, kContentLeft, 360);
  OptCustBackup.bounds = ContentRow(3);
  OptQuick.bounds = ContentRow(4);
  SetTabOrder({&txtBackupname, &OptCustBackup, &OptQuick});
  TxtBName.visible = false;
  File1.visible = false;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(nullptr, &cmdNext, &cmdCancel);
}

void frmOne::ConnectHandlers() {
  txtBackupname.on_key_press = [this](int code) { return txtBackupname_KeyPress(code); };
  OptCustBackup.on_click = [this] { OptCustBackup_Click(); };
  OptQuick.on_click = [this] { OptQuick_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "qvlBackup.htm");
  on_key_down = [help = std::move(on_key_down)](int code, int modifiers) {
    return help(code, modifiers) || (code == kTab && (modifiers & ui::kAltMask) != 0);
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
  const bool is_there = app_.files().FileExists(BackupFileOf(name));
  if (is_there && !MayOverwrite()) return;
  if (HasSpecialCharacters(name)) return RefuseName();
  // Nothing goes for which nobody was asked.
  if (is_there) app_.platform().files.RemoveFile(BackupFileOf(name), true);
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

std::string frmOne::BackupFileOf(const std::string& name) const {
  return WithBackslash(app_.settings().backup_folder()) + name + ".obk";
}

bool frmOne::MayOverwrite() {
  if (app_.Ask("Backup job with the same name has already been created before. Do you want to "
               "overwrite?",
               ui::Icon::kInformation)) {
    return true;
  }
  txtBackupname.SetFocus();
  return false;
}

void frmOne::GoToItems() {
  if (NameIsBlank()) return;
  GoOnTo(PageRole::kBackupItems);
}

void frmOne::PrepareQuickBackup() {
  if (NameIsBlank()) return;
  PageHost& main_window = app_.page_host();
  main_window.SetEnabled(false);
  if (!RaiseRights(
          app_, [this] { SaveJobState(HandOverPath(app_)); }, kElevationRefusedStop))
    return;
  main_window.SetEnabled(true);
  app_.pages().commit_complete_backup(app_, txtBackupname.text);
  Hide();
  GoOnTo(PageRole::kBackupReview);
}

void frmOne::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
