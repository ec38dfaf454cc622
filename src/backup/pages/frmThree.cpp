#include "backup/pages/frmThree.h"

#include "backup/format/job_kinds.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr char kNormal[] = "Normal";
constexpr char kNoCompression[] = "No Compression";
constexpr char kPartSize[] = "1024";

// The name becomes a folder's and a file's name.
bool CanBeFileName(const std::string& name) {
  std::string checked = name;
  return IsValidName(checked) && checked.find_first_not_of(". ") != std::string::npos;
}

}  // namespace

frmThree::frmThree(Application& app) : WizardPage(app, kName, PageRole::kBackupOptions) {
  cmbCompLevel.AddItem("Maximum", 9);
  cmbCompLevel.AddItem(kNormal, 6);
  cmbCompLevel.AddItem("Low", 1);
  cmbCompLevel.AddItem(kNoCompression, 0);
  cmbCompLevel.SelectText(kNormal);
  txtpwd.password = true;
  txtpwd2.password = true;
  PlaceControls();
  ConnectHandlers();
  chkProtectArchive_Click();
  chkSplit_Click();
}

void frmThree::PlaceControls() {
  using namespace page_layout;
  constexpr int kLabelWidth = 170;
  constexpr int kIndent = 20;
  constexpr int kFieldLeft = kContentLeft + kLabelWidth + 8;
  constexpr int kFieldWidth = 260;
  lblHeader.fore_color = kHeaderColor;
  lblcurrent.bounds = ContentRow(0, kContentLeft, kLabelWidth);
  txtcurrent.bounds = ContentRow(0, kFieldLeft, kFieldWidth);
  chklogdetails.bounds = ContentRow(1);
  chkcompression.bounds = ContentRow(2);
  lblCompLevel.bounds = ContentRow(3, kContentLeft + kIndent, kLabelWidth - kIndent);
  cmbCompLevel.bounds = ContentRow(3, kFieldLeft, kFieldWidth);
  chkProtectArchive.bounds = ContentRow(5);
  Label2.bounds = ContentRow(6, kContentLeft + kIndent, kLabelWidth - kIndent);
  txtpwd.bounds = ContentRow(6, kFieldLeft, kFieldWidth);
  Label5.bounds = ContentRow(7, kContentLeft + kIndent, kLabelWidth - kIndent);
  txtpwd2.bounds = ContentRow(7, kFieldLeft, kFieldWidth);
  chkSplit.bounds = ContentRow(9);
  Label7.bounds = ContentRow(10, kContentLeft + kIndent, kLabelWidth - kIndent);
  txtsizeSplit.bounds = ContentRow(10, kFieldLeft, 80);
  Label8.bounds = ContentRow(10, kFieldLeft + 88, 60);
  SetTabOrder({&txtcurrent, &chklogdetails, &chkcompression, &cmbCompLevel, &chkProtectArchive,
               &txtpwd, &txtpwd2, &chkSplit, &txtsizeSplit});
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
}

void frmThree::ConnectHandlers() {
  chklogdetails.on_click = [this] { chklogdetails_Click(); };
  chkcompression.on_click = [this] { chkcompression_Click(); };
  chkProtectArchive.on_click = [this] { chkProtectArchive_Click(); };
  chkSplit.on_click = [this] { chkSplit_Click(); };
  cmbCompLevel.on_click = [this] { cmbCompLevel_Change(); };
  txtpwd.on_got_focus = [this] { app_.ui().SetCapsLock(false); };
  txtpwd2.on_got_focus = [this] { app_.ui().SetCapsLock(false); };
  txtsizeSplit.on_key_press = [](int code) { return OnlyDigitKey(code); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  watch_ = app_.settings().OnChange([this](ProgramSettings::Setting setting) {
    if (setting == ProgramSettings::Setting::kLog) chklogdetails.value = app_.settings().log();
  });
  OpenHelpOnF1(app_, *this, "qvlBackup.htm");
}

void frmThree::Load() {
  page_layout::HostPage(app_, *this);
  txtcurrent.text = DefaultFileName(app_);
  ReadLogOption();
}

void frmThree::Activate() {
  ReadLogOption();
  app_.ui().SetCapsLock(false);
}

void frmThree::Unload() { watch_.reset(); }

bool frmThree::TakeOver() {
  txtcurrent.text = app_.session().gBackupName;
  return true;
}

void frmThree::Entered() {
  chklogdetails.value = app_.session().gLogDetails == "True" ? 1 : 0;
  cmdNext.enabled = true;
}

void frmThree::ArchiveOver() { txtcurrent.text = DefaultFileName(app_); }

void frmThree::RunOver() { Timer1.enabled = false; }

std::string frmThree::DefaultFileName(Application& app) {
  return "BKP_" + DateStamp(app.platform().system.Now());
}

void frmThree::ReadLogOption() { chklogdetails.value = app_.settings().Switch("chklog"); }

void frmThree::chklogdetails_Click() { app_.settings().UseLog(chklogdetails.value); }

void frmThree::chkcompression_Click() {
  const bool compress = chkcompression.value == 1;
  cmbCompLevel.enabled = compress;
  cmbCompLevel.SelectText(compress ? kNormal : kNoCompression);
}

void frmThree::cmbCompLevel_Change() {
  if (cmbCompLevel.list_index < 0) return;
  const std::string level = cmbCompLevel.SelectedText();
  if (level == kNormal || level == "Low") return;
  if (level == "Maximum" && chkcompression.value == 1) return;
  chkcompression.value = 0;
}

void frmThree::chkProtectArchive_Click() {
  const bool protect = chkProtectArchive.value == 1;
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&Label2, &Label5, &txtpwd, &txtpwd2}) {
    control->visible = protect;
  }
  if (protect) app_.ui().SetCapsLock(false);
}

void frmThree::chkSplit_Click() {
  const bool split = chkSplit.value == 1;
  txtsizeSplit.enabled = split;
  txtsizeSplit.text = split ? kPartSize : "";
  Label7.visible = split;
  Label8.visible = split;
}

void frmThree::savedetails() {
  Session& session = app_.session();
  session.gBackupFileName = txtcurrent.text.get() + ".obk";
  session.gLogDetails = BoolWord(chklogdetails.value == 1);
  session.gUseCompression = BoolWord(chkcompression.value == 1);
  session.gProtectWithPassword = BoolWord(chkProtectArchive.value == 1);
  if (cmbCompLevel.list_index < 0) cmbCompLevel.list_index = 1;
  session.gCompressionLevel = std::to_string(cmbCompLevel.ItemData(cmbCompLevel.list_index));
  session.gArchivePassword = txtpwd.text;
}

bool frmThree::FileNameIsUsable() {
  const std::string name = Trim(txtcurrent.text.get());
  if (name.empty()) {
    app_.Inform("Enter a settings file name!");
    return false;
  }
  if (!CanBeFileName(name)) {
    app_.Inform("Backup name cannot contain special characters.");
    txtcurrent.SetFocus();
    return false;
  }
  txtcurrent.text = name;
  return true;
}

bool frmThree::PasswordIsUsable() {
  if (chkProtectArchive.value == 0) return true;
  if (txtpwd.text.get() != txtpwd2.text.get()) {
    app_.Inform("Password are not same!");
    txtpwd2.SetFocus();
    return false;
  }
  if (!Trim(txtpwd.text.get()).empty()) return true;
  app_.Inform("Password cannot be blank!");
  txtpwd.text = "";
  txtpwd2.text = "";
  txtpwd.SetFocus();
  return false;
}

void frmThree::cmdNext_Click() {
  if (!FileNameIsUsable() || !PasswordIsUsable()) return;
  savedetails();
  // A main backup has its review page made before the media page comes on top.
  if (app_.session().gBackupProcessName == kMainBackup) PageOf(PageRole::kBackupReview);
  GoOnTo(PageRole::kBackupMedia);
}

void frmThree::cmdBack_Click() { Back(); }

void frmThree::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
