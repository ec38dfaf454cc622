// What stands where in the main window.
#include <initializer_list>

#include "core/main/FrmWelcome.h"
#include "core/pages/page_layout.h"

namespace quorvale {
namespace {

constexpr ui::Color kWhite = ui::Rgb(255, 255, 255);
constexpr ui::Color kStepColor = ui::Rgb(9, 82, 172);
constexpr ui::Color kStatusColor = ui::Rgb(19, 89, 166);
constexpr ui::Color kAccountColor = ui::Rgb(192, 0, 0);  // it is about what is missing
constexpr ui::Color kPanelBorder = ui::Rgb(209, 221, 246);
constexpr ui::Color kQuickLinkBorder = ui::Rgb(209, 228, 248);
constexpr int kPanelCornerPercent = 2;

constexpr ui::Bounds kHostPanel = {11, 63, page_layout::kPageWidth, page_layout::kPageHeight};

// Where each side picture lies over its background.
constexpr int kSidePictureLeft = 50;
constexpr int kSidePictureTop = 160;

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

}  // namespace

void FrmWelcome::PlaceControls() {
  PlaceFrame();
  PlaceHomePage();
  PlaceStepPanel();
}

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
  PlaceQuickLinks();
  PlaceStatus();
}

void FrmWelcome::PlaceQuickLinks() {
  PicQuickLink.container = &PicHomeBase;
  PicQuickLink.bounds = {290, 84, 470, 246};
  PicQuickLink.border_color = kQuickLinkBorder;
  PicQuickLink.corner_percent = kPanelCornerPercent;
  for (size_t i = 0; i < lblQuicklinks.size(); ++i) PlaceQuickLink(i);
}

void FrmWelcome::PlaceQuickLink(size_t i) {
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
  link.fore_color = kQuickLinkColor;
  link.tab_index = 3 + static_cast<int>(i);
  link.bounds = {76, top + 8, 340, 20};
  lblQuickDescription[i]->caption = text.description;
  lblQuickDescription[i]->fore_color = kQuickLinkColor;
  lblQuickDescription[i]->bounds = {76, top + 38, 380, 34};
  ImgQuickArrow[i]->picture = "ARROW";
  ImgQuickArrow[i]->bounds = {440, top + 10, 16, 16};
  ImgQuickLine[i]->picture = "RIGHTGRADIENTLINE";
  ImgQuickLine[i]->bounds = {76, top + 31, 386, 2};
}

void FrmWelcome::PlaceStatus() {
  ui::Label* const captions[] = {&lblLastBackupCaption, &lblLastRestoreCaption,
                                 &lblNextScheduleCaption};
  ui::Label* const values[] = {&LblLastBackup, &lblLastRestore, &LblNextSchedule};
  for (int row = 0; row < 3; ++row) {
    captions[row]->container = &PicHomeBase;
    captions[row]->bounds = {20, 356 + row * 26, 130, 20};
    captions[row]->fore_color = kStepColor;
    captions[row]->bold = true;
    values[row]->container = &PicHomeBase;
    values[row]->bounds = {156, 356 + row * 26, row == 0 ? 170 : 604, 20};
    values[row]->fore_color = kStatusColor;
  }
  LblAccount.container = &PicHomeBase;
  LblAccount.bounds = {336, 356, 424, 20};
  LblAccount.is_link = true;
  LblAccount.visible = false;
  LblAccount.fore_color = kAccountColor;
  LblAccount.tab_index = 6;
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

void FrmWelcome::ShowStepPanel() {
  PicMainBackupBase.bounds = kHostPanel;
  PicMainBackupBase.back_color = kWhite;
  PicMainBackupBase.visible = true;
  PicStepBase.visible = true;
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

}  // namespace quorvale
