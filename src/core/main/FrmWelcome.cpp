#include "core/main/FrmWelcome.h"

#include <array>

#include "backup/format/settings_file.h"
#include "backup/pages/frmOne.h"
#include "base/text.h"
#include "core/main/FrmMinimize.h"
#include "core/main/frmAbout.h"
#include "core/main/frmSettings.h"
#include "core/main/frmStartUp.h"
#include "core/main/maker.h"
#include "core/main/page_sets.h"
#include "core/main/quick_backup.h"
#include "core/main/run_modes.h"
#include "core/pages/account_window.h"
#include "core/pages/page_procedures.h"
#include "core/pages/raised_rights.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "logs/pages/frmLogs.h"
#include "restore/pages/frmROne.h"
#include "schedule/pages/frmSchedTwo.h"
#include "schedule/pages/frmSchedule.h"
#include "schedule/run/schedule_jobs.h"

namespace quorvale {
namespace {

constexpr ui::Color kRed = ui::Rgb(255, 0, 0);
constexpr ui::Color kStatusColor = ui::Rgb(19, 89, 166);
constexpr ui::Color kLinkHoverColor = ui::Rgb(76, 105, 241);

// The window's size in twips at 96 dots per inch, and how many twips an inch has.
constexpr int kWindowWidth = 12300;
constexpr int kWindowHeight = 8480;
constexpr int kTwipsPerInch = 1440;

std::string Indexed(const char* name, size_t index) {
  return std::string(name) + "(" + std::to_string(index) + ")";
}

template <class T, size_t N>
void MakeArray(ui::Form& form, std::array<std::unique_ptr<T>, N>& members, const char* name) {
  for (size_t i = 0; i < N; ++i) members[i] = std::make_unique<T>(form, Indexed(name, i));
}

template <size_t N>
void MarkLabel(const FrmWelcome::Labels<N>& labels, ui::PictureBox& arrow, int index) {
  for (size_t i = 0; i < N; ++i) {
    const bool active = static_cast<int>(i) == index;
    labels[i]->bold = active;
    if (!active) continue;
    ui::Bounds place = arrow.bounds;
    place.top = labels[i]->bounds->top;
    arrow.bounds = place;
  }
}

void ShowStatus(ui::Label& label, const std::string& text, const char* when_empty) {
  label.caption = text.empty() ? when_empty : text;
  label.fore_color = text.empty() ? kRed : kStatusColor;
}

}  // namespace

FrmWelcome::FrmWelcome(Application& app)
    : ui::Form(app.ui(), kName),
      PicTopLeft(*this, "PicTopLeft"),
      PicTopBase(*this, "PicTopBase"),
      PicTopRight(*this, "PicTopRight"),
      PicSideLeft(*this, "PicSideLeft"),
      PicSideRight(*this, "PicSideRight"),
      PicBottomLeft(*this, "PicBottomLeft"),
      PicBottomMiddle(*this, "PicBottomMiddle"),
      PicBottomRight(*this, "PicBottomRight"),
      PicLogo(*this, "PicLogo"),
      CmdWC_Home(*this, "CmdWC_Home"),
      CmdWC_ViewLog(*this, "CmdWC_ViewLog"),
      CmdWC_Help(*this, "CmdWC_Help"),
      CmdWC_Minimize(*this, "CmdWC_Minimize"),
      CmdWC_Close(*this, "CmdWC_Close"),
      CmdSupport(*this, "CmdSupport"),
      CmdWebsite(*this, "CmdWebsite"),
      CmdOther(*this, "CmdOther"),
      CmdAbout(*this, "CmdAbout"),
      PicHomeBase(*this, "PicHomeBase"),
      PicMainImage(*this, "PicMainImage"),
      PicGradientLine(*this, "PicGradientLine"),
      cmdWC_TakeBackup(*this, "cmdWC_TakeBackup"),
      cmdWC_Restore(*this, "cmdWC_Restore"),
      PicQuickLink(*this, "PicQuickLink"),
      lblLastBackupCaption(*this, "lblLastBackupCaption", "Last Backup:"),
      lblLastRestoreCaption(*this, "lblLastRestoreCaption", "Last Restore:"),
      lblNextScheduleCaption(*this, "lblNextScheduleCaption", "Next Schedule:"),
      LblLastBackup(*this, "LblLastBackup"),
      lblLastRestore(*this, "lblLastRestore"),
      LblNextSchedule(*this, "LblNextSchedule"),
      LblAccount(*this, "LblAccount"),
      PicMainBackupBase(*this, "PicMainBackupBase"),
      PicStepBase(*this, "PicStepBase"),
      ImgBackupGradient(*this, "ImgBackupGradient"),
      ImgRestoreGradient(*this, "ImgRestoreGradient"),
      ImgProgramSettings(*this, "ImgProgramSettings"),
      ImgScheduleOptions(*this, "ImgScheduleOptions"),
      ImgLogGradient(*this, "ImgLogGradient"),
      ImgStepArrow(*this, "ImgStepArrow"),
      ImgStepArrowRestore(*this, "ImgStepArrowRestore"),
      ImgSettingsSteps(*this, "ImgSettingsSteps"),
      ImgStepsSchedule(*this, "ImgStepsSchedule"),
      ImgLogSteps(*this, "ImgLogSteps"),
      app_(app) {
  MakeArray(*this, ImgQuickLink, "ImgQuickLink");
  MakeArray(*this, ImgQuickArrow, "ImgQuickArrow");
  MakeArray(*this, ImgQuickLine, "ImgQuickLine");
  MakeArray(*this, lblQuicklinks, "lblQuicklinks");
  MakeArray(*this, lblQuickDescription, "lblQuickDescription");
  MakeArray(*this, lblBackupOptions, "lblBackupOptions");
  MakeArray(*this, lblRestoreOptions, "lblRestoreOptions");
  MakeArray(*this, lblSettings, "lblSettings");
  MakeArray(*this, lblSchedule, "lblSchedule");
  MakeArray(*this, lblLog, "lblLog");
  PlaceControls();
  ConnectHandlers();
}

void FrmWelcome::ConnectHandlers() {
  cmdWC_TakeBackup.on_click = [this] { cmdWC_TakeBackup_Click(); };
  cmdWC_Restore.on_click = [this] { cmdWC_Restore_Click(); };
  CmdWC_ViewLog.on_click = [this] { CmdWC_ViewLog_Click(); };
  CmdWC_Home.on_click = [this] { cmdWC_Home_Click(); };
  CmdWC_Help.on_click = [this] { CmdWC_Help_Click(); };
  CmdWC_Minimize.on_click = [this] { CmdWC_Minimize_Click(); };
  CmdWC_Close.on_click = [this] { CmdWC_Close_Click(); };
  CmdSupport.on_click = [this] { CmdSupport_Click(); };
  CmdWebsite.on_click = [this] { CmdWebsite_Click(); };
  CmdOther.on_click = [this] { CmdOther_Click(); };
  CmdAbout.on_click = [this] { CmdAbout_Click(); };
  ConnectHomePage();
  ConnectSteps();
  OnF1(*this, [this] { CmdWC_Help_Click(); });
  drag_area = [](int, int y) { return IsDragArea(y); };
  on_deactivate = [this] { app_.ui().GuardKeyboard(true); };
  on_close_request = [this] {
    SetState(ui::WindowState::kNormal);
    app_.Unload(kName);
  };
}

void FrmWelcome::ConnectHomePage() {
  for (int i = 0; i < static_cast<int>(lblQuicklinks.size()); ++i) {
    ui::Label& link = *lblQuicklinks[static_cast<size_t>(i)];
    link.on_click = [this, i] { QuickLink(i); };
    link.on_mouse_enter = [this, i] { lblQuicklinks_Hover(i); };
    link.on_mouse_leave = [this] { PicQuickLink_Hover(); };
  }
  LblAccount.on_click = [this] { LblAccount_Click(); };
  PicQuickLink.on_mouse_enter = [this] { PicQuickLink_Hover(); };
  PicMainBackupBase.visible.on_change = [this] {
    PicHomeBase.visible = !PicMainBackupBase.visible;
  };
}

void FrmWelcome::ConnectSteps() {
  // The two settings pages are reached from each other by their steps.
  lblSettings[0]->on_click = [this] {
    frmStartUp* page = app_.Loaded<frmStartUp>();
    if (page != nullptr && page->Visible()) page->cmdBack_Click();
  };
  lblSettings[1]->on_click = [this] {
    frmSettings* page = app_.Loaded<frmSettings>();
    if (page != nullptr && page->Visible()) page->SwitchToStartUp();
  };

  // So are the two schedule pages.
  lblSchedule[0]->on_click = [this] {
    frmSchedTwo* page = app_.Loaded<frmSchedTwo>();
    if (page != nullptr && page->Visible()) page->cmdBack_Click();
  };
  lblSchedule[1]->on_click = [this] {
    frmSchedule* page = app_.Loaded<frmSchedule>();
    if (page != nullptr && page->Visible()) page->cmdNext_Click();
  };
}

bool FrmWelcome::IsDragArea(int y) { return y < 35 || (y >= 507 && y < 534); }

// --- Start and end ------------------------------------------------------------------------------

void FrmWelcome::Load() {
  if (app_.Ended()) return;  // asked for by work that ends after the run was closed
  Session& session = app_.session();
  session.gAppDataPath = DataFolder(app_);
  MakeDirectoryPath(app_, session.gAppDataPath + "\\");
  MakeDirectoryPath(app_, session.gAppDataPath + "\\Files\\logs\\");
  session.gOSName = GetOSName(app_.platform().system.Version());

  mCommandLine = app_.CommandLine();
  if (GivesWayToOtherCopy(app_)) {
    app_.platform().processes.ActivatePreviousInstance();
    app_.End();
    return;
  }

  const int dpi = app_.ui().DotsPerInch();
  SetSize(ScaleForDpi(kWindowWidth, dpi) * dpi / kTwipsPerInch,
          ScaleForDpi(kWindowHeight, dpi) * dpi / kTwipsPerInch);
  LoadPictures();
  corner = 12;
  if (app_.settings().Switch("chkGUpdate") == 1) OpenUrl(app_, kMakerHomePage);
  GetLastBackupandRestore();
  NextSchedule();

  if (mCommandLine == kElevatedWord) ResumeAfterElevation(app_, HandOverPath(app_));
  if (app_.Ended()) return;
  Show();
  app_.Pump();
  if (app_.Ended()) return;
  const std::string word = Trim(mCommandLine);
  if (!word.empty()) RunCommandLine(app_, word);
  mCommandLine.clear();
}

void FrmWelcome::Activate() { app_.ui().GuardKeyboard(false); }

void FrmWelcome::Unload() {
  if (closing_) return;
  closing_ = true;
  app_.ui().GuardKeyboard(false);
  // A backup or restore that is being closed in its middle ends at its next item.
  app_.session().gStopRequested = true;
  UnloadAllForms();
  app_.End();
}

void FrmWelcome::UnloadAllForms() {
  std::vector<std::string> names;
  for (const ui::Form* form : app_.LoadedForms()) names.push_back(form->name());
  for (const std::string& name : names) {
    if (name != kName) app_.Unload(name);
  }
}

void FrmWelcome::KillForm() { app_.End(); }

void FrmWelcome::CmdWC_Close_Click() {
  UnloadAllForms();
  app_.Unload(kName);
}

void FrmWelcome::CmdWC_Minimize_Click() { SetState(ui::WindowState::kMinimized); }

// --- Steps and panels ---------------------------------------------------------------------------

void FrmWelcome::MarkStep(StepSide side, int step) {
  switch (side) {
    case StepSide::kBackup:
      return MarkLabel(lblBackupOptions, ImgStepArrow, step);
    case StepSide::kRestore:
      return MarkLabel(lblRestoreOptions, ImgStepArrowRestore, step);
    case StepSide::kSettings:
      return MarkLabel(lblSettings, ImgSettingsSteps, step);
    case StepSide::kSchedule:
      return MarkLabel(lblSchedule, ImgStepsSchedule, step);
    case StepSide::kLog:
      return MarkLabel(lblLog, ImgLogSteps, step);
  }
}

void FrmWelcome::ShowSide(StepSide side) {
  ImgBackupGradient.visible = side == StepSide::kBackup;
  ImgRestoreGradient.visible = side == StepSide::kRestore;
  ImgProgramSettings.visible = side == StepSide::kSettings;
  ImgScheduleOptions.visible = side == StepSide::kSchedule;
  ImgLogGradient.visible = side == StepSide::kLog;
}

void FrmWelcome::OpenPages(StepSide side) {
  CloseAccount(app_);  // it is about a run that is over
  ShowStepPanel();
  MarkBackupStep(0);
  MarkRestoreStep(0);
  MarkStep(StepSide::kSettings, 0);
  MarkScheduleStep(0);
  MarkStep(StepSide::kLog, 0);
  ShowSide(side);
}

void FrmWelcome::EnableMainButtons(bool enabled) {
  cmdWC_TakeBackup.enabled = enabled;
  cmdWC_Restore.enabled = enabled;
  CmdWC_ViewLog.enabled = enabled;
}

void FrmWelcome::EnableSideButtons(bool enabled) {
  for (ui::ImageButton* button : {&CmdWC_Home, &CmdSupport, &CmdWebsite, &CmdOther, &CmdAbout}) {
    button->enabled = enabled;
  }
}

void FrmWelcome::HidePanels() {
  PicMainBackupBase.visible = false;
  EnableMainButtons(true);
}

void FrmWelcome::LeavePages(StepSide side) {
  HidePanels();
  if (side == StepSide::kBackup) ResetBackupPages(app_);
  if (side == StepSide::kRestore) ResetRestorePages(app_);
}

void FrmWelcome::HideAllPages() {
  for (ui::Form* form : app_.LoadedForms()) {
    if (form->name() != kName && form->name() != FrmMinimize::kName) form->Hide();
  }
}

// --- Home page ----------------------------------------------------------------------------------

void FrmWelcome::cmdWC_Home_Click() {
  HideAllPages();
  HidePanels();
  ResetBackupPages(app_);
  ResetRestorePages(app_);
  GetLastBackupandRestore();
  NextSchedule();
}

void FrmWelcome::GetLastBackupandRestore() {
  const std::string key = std::string(kHistoryKey) + "\\";
  Registry& registry = app_.registry();
  ShowStatus(LblLastBackup,
             Trim(registry.RegGetValue(RegistryRoot::kCurrentUser, key, "Last Backup")), "Never");
  ShowStatus(lblLastRestore,
             Trim(registry.RegGetValue(RegistryRoot::kCurrentUser, key, "Last Restore")), "Never");
  ShowUnseenAccount();
}

void FrmWelcome::ShowUnseenAccount() {
  Account account;
  const std::string path = UnseenAccount(app_);
  LblAccount.visible = !path.empty() && LoadAccount(app_, path, &account);
  if (!LblAccount.visible) return;
  LblAccount.caption = ReplaceAll(account.Sentence(), "&", "&&");
  // The line may be too short for it.
  LblAccount.tooltip = account.Sentence();
}

void FrmWelcome::LblAccount_Click() {
  if (!OpenAccount(app_, UnseenAccount(app_))) ShowUnseenAccount();
}

void FrmWelcome::NextSchedule() {
  const std::optional<LocalTime> next = NextScheduledRun(app_);
  ShowStatus(LblNextSchedule, next ? HistoryStamp(app_, *next) : "", kNoSchedule);
}

void FrmWelcome::lblQuicklinks_Hover(int index) {
  PicQuickLink_Hover();
  ui::Label& link = *lblQuicklinks.at(static_cast<size_t>(index));
  link.underline = true;
  link.fore_color = kLinkHoverColor;
}

void FrmWelcome::PicQuickLink_Hover() {
  for (const auto& link : lblQuicklinks) {
    link->underline = false;
    link->fore_color = kQuickLinkColor;
  }
}

// --- Opening pages ------------------------------------------------------------------------------

void FrmWelcome::cmdWC_TakeBackup_Click() {
  EnableMainButtons(false);
  app_.Get<frmOne>().Show();
  OpenPages(StepSide::kBackup);
}

void FrmWelcome::cmdWC_Restore_Click() {
  if (!HasRights("Restore")) return;
  EnableMainButtons(false);
  app_.Get<frmROne>().Show();
  OpenPages(StepSide::kRestore);
}

void FrmWelcome::CmdWC_ViewLog_Click() {
  EnableMainButtons(false);
  app_.Get<frmLogs>().Show();
  OpenPages(StepSide::kLog);
}

void FrmWelcome::QuickLink(int index) {
  mQuickCancelled = false;
  if (index == 0) {
    QuickBackup();
  } else if (index == 1) {
    EnableMainButtons(false);
    app_.Get<frmSettings>().Show();
    OpenPages(StepSide::kSettings);
  } else if (index == 2) {
    EnableMainButtons(false);
    app_.Get<frmSchedule>().Show();
    OpenPages(StepSide::kSchedule);
  }
}

bool FrmWelcome::HasRights(const std::string& action_word) {
  const bool may_go_on = RaiseRights(app_, [this, &action_word] {
    WriteRestartSettings(app_, HandOverPath(app_),
                         {.name = app_.Get<frmOne>().txtBackupname.text, .kind = action_word});
  });
  if (!may_go_on) mQuickCancelled = true;
  return may_go_on;
}

// --- Quick backup -------------------------------------------------------------------------------

void FrmWelcome::QuickBackup() {
  CloseAccount(app_);
  app_.Pump();
  if (app_.Ended()) return;
  SetEnabled(false);
  if (!HasRights(app_.CommandLine() == kAutoWord ? "auto" : "quickbackup")) return;
  EnableMainButtons(false);
  PrepareQuickBackup(app_);
  if (app_.Ended()) return;
  ShowPreparedBackup(app_);
}

// --- Help and shell buttons ---------------------------------------------------------------------

void FrmWelcome::CmdWC_Help_Click() {
  app_.platform().shell.Execute("Open", app_.platform().system.ProgramFolder() + "\\Quorvale.chm",
                                "", "", 1);
}

void FrmWelcome::CmdSupport_Click() {
  constexpr int kFirstSuccess = 32;
  if (app_.platform().shell.Execute("Open", kMakerSupportMail, "", "", 1) < kFirstSuccess) {
    app_.Inform("Default mail client not properly configured");
  }
}

void FrmWelcome::CmdWebsite_Click() {
  app_.platform().shell.Execute("Open", kMakerHomePage, "", "", 1);
}

void FrmWelcome::CmdOther_Click() {
  app_.platform().shell.Execute("Open", kMakerProductsPage, "", "", 1);
}

void FrmWelcome::CmdAbout_Click() { app_.Get<frmAbout>().ShowModal(); }

}  // namespace quorvale
