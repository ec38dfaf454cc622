#include "core/main/FrmWelcome.h"

#include <array>

#include "backup/format/settings_file.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmfour.h"
#include "base/text.h"
#include "core/main/FrmMinimize.h"
#include "core/main/FrmQuickSteps.h"
#include "core/main/frmAbout.h"
#include "core/main/frmSettings.h"
#include "core/main/frmStartUp.h"
#include "core/main/page_sets.h"
#include "core/main/quick_backup.h"
#include "core/main/run_modes.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "discovery/pages/FrmTwo.h"
#include "logs/pages/frmLogs.h"
#include "restore/pages/frmROne.h"
#include "schedule/pages/frmSchedTwo.h"
#include "schedule/pages/frmSchedule.h"
#include "schedule/run/schedule_jobs.h"

namespace quorvale {
namespace {

constexpr ui::Color kWhite = ui::Rgb(255, 255, 255);
constexpr ui::Color kRed = ui::Rgb(255, 0, 0);
constexpr ui::Color kLinkColor = ui::Rgb(0, 45, 78);
constexpr ui::Color kLinkHoverColor = ui::Rgb(76, 105, 241);
constexpr ui::Color kStepColor = ui::Rgb(9, 82, 172);
constexpr ui::Color kStatusColor = ui::Rgb(19, 89, 166);
constexpr ui::Color kPanelBorder = ui::Rgb(209, 221, 246);
constexpr ui::Color kQuickLinkBorder = ui::Rgb(209, 228, 248);
constexpr int kPanelCornerPercent = 2;

// The window's size in twips at 96 dots per inch, and how many twips an inch has.
constexpr int kWindowWidth = 12300;
constexpr int kWindowHeight = 8480;
constexpr int kTwipsPerInch = 1440;

constexpr ui::Bounds kHostPanel = {11, 63, page_layout::kPageWidth, page_layout::kPageHeight};

// Where each side picture lies over its background.
constexpr int kSidePictureLeft = 50;
constexpr int kSidePictureTop = 160;

constexpr int kF1 = 112;
constexpr int kPause = 1000;  // milliseconds: lets a user read the rows

struct QuickLinkText {
  const char* caption;
  const char* tooltip;
  const char* description;
  const char* picture;
};
constexpr QuickLinkText kQuickLinks[] = {
    {"Take Quick Backup", "Click to take complete backup quickly",
     "Quickly take a backup of your data in  just one click", "QUICKBACKUP"},
    {"Settings && Configurations", "Click to open settings and configurations",
     "Manage settings for best and customized use of Quorvale", "SETTINGS"},
    {"Schedule your Backup", "Click to schedule a backup",
     "Schedule Quorvale to automatically take backup of mails and data", "SCHEDULE"},
};
constexpr const char* kBackupSteps[] = {"Backup Job Description", "Select Items to Backup",
                                        "Compression && Privacy", "Backup Media",
                                        "Review Backup Settings", "Taking Backup"};
constexpr const char* kRestoreSteps[] = {"Select Backup Job", "Select Items to Restore",
                                         "Review Items", "Restoring Data"};
constexpr const char* kSettingsSteps[] = {"Settings && Configurations", "Startup and Installation"};
constexpr const char* kScheduleSteps[] = {"Create Schedule", "Manage Schedule"};
constexpr const char* kLogSteps[] = {"Log Settings && Details"};

std::string Indexed(const char* name, size_t index) {
  return std::string(name) + "(" + std::to_string(index) + ")";
}

template <class T, size_t N>
void MakeArray(ui::Form& form, std::array<std::unique_ptr<T>, N>& members, const char* name) {
  for (size_t i = 0; i < N; ++i) members[i] = std::make_unique<T>(form, Indexed(name, i));
}

// The labels of one list of steps with their arrow, on one background.
template <size_t N>
void PlaceSteps(FrmWelcome::Labels<N>& labels, const char* const (&captions)[N],
                ui::PictureBox& background, const char* side_picture, ui::PictureBox& arrow) {
  constexpr int kFirstTop = 12;
  constexpr int kStep = 24;
  background.bounds = {0, 0, page_layout::kStepsWidth, page_layout::kPageHeight};
  background.picture = "BASEGRADIENT";
  background.overlays = {{side_picture, kSidePictureLeft, kSidePictureTop}};
  background.visible = false;
  for (size_t i = 0; i < N; ++i) {
    ui::Label& label = *labels[i];
    label.container = &background;
    label.caption = captions[i];
    label.fore_color = kStepColor;
    label.bounds = {28, kFirstTop + static_cast<int>(i) * kStep, 158, 18};
  }
  arrow.container = &background;
  arrow.picture = "ARROW";
  arrow.bounds = {8, kFirstTop, 16, 16};
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
  PlaceFrame();
  PlaceHomePage();
  PlaceStepPanel();
  WireEvents();
}

// --- What stands where --------------------------------------------------------------------------

void FrmWelcome::PlaceFrame() {
  borderless = true;
  back_color = kWhite;
  SetCaption(kApplicationTitle);

  PicTopLeft.bounds = {0, 0, 12, 35};
  PicTopBase.bounds = {12, 0, 796, 35};
  PicTopRight.bounds = {808, 0, 12, 35};
  PicSideLeft.bounds = {0, 35, 11, 500};
  PicSideRight.bounds = {809, 35, 11, 500};
  PicBottomLeft.bounds = {0, 535, 12, 30};
  PicBottomMiddle.bounds = {12, 535, 796, 30};
  PicBottomRight.bounds = {808, 535, 12, 30};
  PicLogo.container = &PicTopBase;
  PicLogo.bounds = {4, 4, 160, 27};

  struct Place {
    ui::ImageButton* button;
    ui::Control* container;
    ui::Bounds bounds;
    const char* caption;
    const char* tooltip;
  };
  const Place places[] = {
      {&CmdWC_Home, nullptr, {11, 37, 90, 24}, "&Home", "Back to the home page"},
      {&CmdWC_ViewLog, nullptr, {105, 37, 90, 24}, "&Log", "View backup and restore logs"},
      {&CmdWC_Help, &PicTopBase, {706, 6, 26, 22}, "Help", "Help (F1)"},
      {&CmdWC_Minimize, &PicTopBase, {736, 6, 26, 22}, "Minimize", "Minimize"},
      {&CmdWC_Close, &PicTopBase, {766, 6, 26, 22}, "Close", "Close"},
      {&CmdSupport, &PicBottomMiddle, {415, 3, 88, 24}, "S&upport", "Write to support"},
      {&CmdWebsite, &PicBottomMiddle, {507, 3, 88, 24}, "&Website", "Open our home page"},
      {&CmdOther, &PicBottomMiddle, {599, 3, 88, 24}, "&Other Products", "See other products"},
      {&CmdAbout, &PicBottomMiddle, {691, 3, 88, 24}, "&About", "About Quorvale"},
  };
  int tab = 10;
  for (const Place& place : places) {
    place.button->container = place.container;
    place.button->bounds = place.bounds;
    place.button->caption = place.caption;
    place.button->tooltip = place.tooltip;
    place.button->tab_index = tab++;
  }
}

void FrmWelcome::PlaceHomePage() {
  PicHomeBase.bounds = kHostPanel;
  PicHomeBase.back_color = kWhite;
  PicHomeBase.border_color = kPanelBorder;
  PicHomeBase.corner_percent = kPanelCornerPercent;

  PicMainImage.container = &PicHomeBase;
  PicMainImage.bounds = {10, 8, 760, 66};
  cmdWC_TakeBackup.container = &PicHomeBase;
  cmdWC_TakeBackup.bounds = {20, 84, 240, 114};
  cmdWC_TakeBackup.caption = "&Backup";
  cmdWC_TakeBackup.tooltip = "Click to backup your mails and important files and folders";
  cmdWC_TakeBackup.tab_index = 1;
  cmdWC_Restore.container = &PicHomeBase;
  cmdWC_Restore.bounds = {20, 216, 240, 114};
  cmdWC_Restore.caption = "&Restore";
  cmdWC_Restore.tooltip = "Restore the previous backup created to same or different computer";
  cmdWC_Restore.tab_index = 2;
  PicGradientLine.container = &PicHomeBase;
  PicGradientLine.bounds = {20, 342, 740, 2};

  PicQuickLink.container = &PicHomeBase;
  PicQuickLink.bounds = {290, 84, 470, 246};
  PicQuickLink.border_color = kQuickLinkBorder;
  PicQuickLink.corner_percent = kPanelCornerPercent;
  for (size_t i = 0; i < lblQuicklinks.size(); ++i) {
    const QuickLinkText& text = kQuickLinks[i];
    const int top = static_cast<int>(i) * 82;
    ui::Label& link = *lblQuicklinks[i];
    for (ui::Control* control : std::initializer_list<ui::Control*>{
             ImgQuickLink[i].get(), ImgQuickArrow[i].get(), ImgQuickLine[i].get(), &link,
             lblQuickDescription[i].get()}) {
      control->container = &PicQuickLink;
    }
    ImgQuickLink[i]->picture = text.picture;
    ImgQuickLink[i]->bounds = {8, top + 10, 56, 56};
    link.caption = text.caption;
    link.tooltip = text.tooltip;
    link.is_link = true;
    link.bold = true;
    link.font_size = 10;
    link.fore_color = kLinkColor;
    link.tab_index = 3 + static_cast<int>(i);
    link.bounds = {76, top + 8, 340, 20};
    lblQuickDescription[i]->caption = text.description;
    lblQuickDescription[i]->fore_color = kLinkColor;
    lblQuickDescription[i]->bounds = {76, top + 38, 380, 34};
    ImgQuickArrow[i]->picture = "ARROW";
    ImgQuickArrow[i]->bounds = {440, top + 10, 16, 16};
    ImgQuickLine[i]->picture = "RIGHTGRADIENTLINE";
    ImgQuickLine[i]->bounds = {76, top + 31, 386, 2};
  }

  ui::Label* const captions[] = {&lblLastBackupCaption, &lblLastRestoreCaption,
                                 &lblNextScheduleCaption};
  ui::Label* const values[] = {&LblLastBackup, &lblLastRestore, &LblNextSchedule};
  for (int row = 0; row < 3; ++row) {
    captions[row]->container = &PicHomeBase;
    captions[row]->bounds = {20, 356 + row * 26, 130, 20};
    captions[row]->fore_color = kStepColor;
    captions[row]->bold = true;
    values[row]->container = &PicHomeBase;
    values[row]->bounds = {156, 356 + row * 26, 604, 20};
    values[row]->fore_color = kStatusColor;
  }
}

void FrmWelcome::PlaceStepPanel() {
  PicMainBackupBase.bounds = kHostPanel;
  PicMainBackupBase.visible = false;
  PicMainBackupBase.border_color = kPanelBorder;
  PicMainBackupBase.corner_percent = kPanelCornerPercent;
  PicStepBase.container = &PicMainBackupBase;
  PicStepBase.bounds = {0, 0, page_layout::kStepsWidth, page_layout::kPageHeight};
  PicStepBase.picture = "BASE";
  PicStepBase.visible = false;
  for (ui::PictureBox* background : {&ImgBackupGradient, &ImgRestoreGradient, &ImgProgramSettings,
                                     &ImgScheduleOptions, &ImgLogGradient}) {
    background->container = &PicStepBase;
  }
  PlaceSteps(lblBackupOptions, kBackupSteps, ImgBackupGradient, "BACKUP_LEFT", ImgStepArrow);
  PlaceSteps(lblRestoreOptions, kRestoreSteps, ImgRestoreGradient, "RESTORE_LEFT",
             ImgStepArrowRestore);
  PlaceSteps(lblSettings, kSettingsSteps, ImgProgramSettings, "SETTINGS_LEFT", ImgSettingsSteps);
  PlaceSteps(lblSchedule, kScheduleSteps, ImgScheduleOptions, "SCHEDULE_LEFT", ImgStepsSchedule);
  PlaceSteps(lblLog, kLogSteps, ImgLogGradient, "LOG_LEFT", ImgLogSteps);
}

void FrmWelcome::LoadPictures() {
  struct ButtonPictures {
    ui::ImageButton* button;
    const char *normal, *hover, *pressed;
  };
  const ButtonPictures buttons[] = {
      {&cmdWC_TakeBackup, "TAKEBACKUP", "TAKEBACKUP_HOVER", "TAKEBACKUP_HOVER"},
      {&cmdWC_Restore, "RESTOREBACKUP", "RESTOREBACKUP_HOVER", "RESTOREBACKUP_HOVER"},
      {&CmdWC_ViewLog, "LOG_NORMAL", "LOG_HOVER", "LOG_DOWN"},
      {&CmdWC_Home, "HOME_NORMAL", "HOME_HOVER", "HOME_HOVER"},
      {&CmdWC_Help, "HELP", "HELP_HOVER", "HELP_HOVER"},
      {&CmdWC_Minimize, "MINI_NORMAL", "MINI_HOVER", "MINI_DOWN"},
      {&CmdWC_Close, "CLOSE_NORMAL", "CLOSE_HOVER", "CLOSE_Down"},
      {&CmdSupport, "Support_Normal", "Support_Hover", "Support_Down"},
      {&CmdWebsite, "Web_Normal", "Web_Hover", "Web_Down"},
      {&CmdAbout, "About_Normal", "About_Hover", "About_Down"},
      {&CmdOther, "Other_Normal", "Other_Hover", "Other_Down"},
  };
  for (const ButtonPictures& pictures : buttons) {
    pictures.button->normal_picture = pictures.normal;
    pictures.button->hover_picture = pictures.hover;
    pictures.button->pressed_picture = pictures.pressed;
    pictures.button->Notify(ui::Property::kPicture);
  }
  PicTopLeft.picture = "TOPHEADERLEFT";
  PicTopBase.picture = "TOPHEADERBASE";
  PicTopRight.picture = "TOPHEADERRIGHT";
  PicSideLeft.picture = "SIDEBORDER";
  PicSideRight.picture = "SIDEBORDERRight";
  PicBottomLeft.picture = "BOTTOMLEFT";
  PicBottomMiddle.picture = "BOTTOMMIDDLE";
  PicBottomRight.picture = "BOTTOMRIGHT";
  PicMainImage.picture = "MAINIMAGE";
  PicGradientLine.picture = "GRADIENTLINE";
  PicLogo.picture = "tarnwickLogo";
}

void FrmWelcome::WireEvents() {
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
  for (int i = 0; i < static_cast<int>(lblQuicklinks.size()); ++i) {
    ui::Label& link = *lblQuicklinks[static_cast<size_t>(i)];
    link.on_click = [this, i] { QuickLink(i); };
    link.on_mouse_enter = [this, i] { lblQuicklinks_Hover(i); };
    link.on_mouse_leave = [this] { PicQuickLink_Hover(); };
  }
  PicQuickLink.on_mouse_enter = [this] { PicQuickLink_Hover(); };
  PicMainBackupBase.visible.on_change = [this] {
    PicHomeBase.visible = !PicMainBackupBase.visible;
  };

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

  on_key_down = [this](int code, int) {
    if (code != kF1) return false;
    CmdWC_Help_Click();
    return true;
  };
  drag_area = [](int, int y) { return IsDragArea(y); };
  on_deactivate = [this] { app_.ui().GuardKeyboard(true); };
  on_close_request = [this] {
    SetState(ui::WindowState::kNormal);
    app_.Unload(kName);
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

void FrmWelcome::ShowStepPanel() {
  PicMainBackupBase.bounds = kHostPanel;
  PicMainBackupBase.back_color = kWhite;
  PicMainBackupBase.visible = true;
  PicStepBase.visible = true;
}

void FrmWelcome::ShowSide(StepSide side) {
  ImgBackupGradient.visible = side == StepSide::kBackup;
  ImgRestoreGradient.visible = side == StepSide::kRestore;
  ImgProgramSettings.visible = side == StepSide::kSettings;
  ImgScheduleOptions.visible = side == StepSide::kSchedule;
  ImgLogGradient.visible = side == StepSide::kLog;
}

void FrmWelcome::OpenPages(StepSide side) {
  ShowStepPanel();
  MarkBackupStep(0);
  MarkRestoreStep(0);
  MarkSettingsStep(0);
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
    link->fore_color = kLinkColor;
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
  if (!NeedsElevation(app_)) return true;
  WriteRestartSettings(app_, HandOverPath(app_),
                       {.name = app_.Get<frmOne>().txtBackupname.text, .kind = action_word});
  mQuickCancelled = true;
  if (RestartElevated(app_) == Elevation::kRestarted) return false;
  SetEnabled(true);
  app_.Inform(kElevationRefused);
  return false;
}

// --- Quick backup -------------------------------------------------------------------------------

void FrmWelcome::QuickBackup() {
  app_.Pump();
  if (app_.Ended()) return;
  SetEnabled(false);
  if (!HasRights(app_.CommandLine() == kAutoWord ? "auto" : "quickbackup")) return;
  EnableMainButtons(false);
  PrepareQuickBackup();
  if (app_.Ended()) return;
  ShowPreparedBackup();
}

void FrmWelcome::PrepareQuickBackup() {
  FrmQuickSteps& steps = app_.Get<FrmQuickSteps>();
  const auto pause = [this] {
    app_.Pump();
    app_.platform().system.Sleep(kPause);
  };
  steps.Show();
  steps.BeginRow(1);
  pause();
  steps.EndRow(1);
  if (app_.Ended()) return;

  steps.BeginRow(2);
  frmOne& job = app_.Get<frmOne>();
  job.savedetails();
  job.OptQuick.value = true;
  pause();
  if (app_.Ended()) return;
  CommitCompleteBackup(app_, "");
  pause();
  steps.EndRow(2);
  if (app_.Ended()) return;

  steps.BeginRow(3);
  app_.Pump();
  if (app_.Ended()) return;
  // Filling the page presses its Next in an automatic run, which needs an enabled window.
  SetEnabled(true);
  app_.Get<frmfour>().FillReview();
  steps.EndRow(3);
}

void FrmWelcome::ShowPreparedBackup() {
  app_.Get<FrmQuickSteps>().Hide();
  ShowStepPanel();
  ShowSide(StepSide::kBackup);
  // In an automatic run the review page may have pressed on already: to the run, or, with too
  // little space, back to the items. Then that page is the one to see.
  const frmFinish* run = app_.Loaded<frmFinish>();
  const FrmTwo* items = app_.Loaded<FrmTwo>();
  if (run != nullptr && run->Visible()) {
    MarkBackupStep(5);
  } else if (items != nullptr && items->Visible()) {
    MarkBackupStep(1);
  } else {
    app_.Get<frmfour>().Show();
    MarkBackupStep(4);
  }
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
