// The main window: the host of all pages, the lists of their steps, and the home page.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

// Of a quick link that the mouse is not over.
inline constexpr ui::Color kQuickLinkColor = ui::Rgb(0, 45, 78);

class FrmWelcome : public ui::Form, public PageHost {
 public:
  static constexpr char kName[] = "FrmWelcome";
  explicit FrmWelcome(Application& app);

  // Makes the data folders, decides the run mode from the command line and carries it out.
  void Load() override;
  // Takes the keyboard guard off.
  void Activate() override;
  // Unloads all forms and ends the run.
  void Unload() override;

  template <std::size_t N>
  using Labels = std::array<std::unique_ptr<ui::Label>, N>;
  template <std::size_t N>
  using Pictures = std::array<std::unique_ptr<ui::PictureBox>, N>;

  // Frame.
  ui::PictureBox PicTopLeft, PicTopBase, PicTopRight;
  ui::PictureBox PicSideLeft, PicSideRight;
  ui::PictureBox PicBottomLeft, PicBottomMiddle, PicBottomRight;
  ui::PictureBox PicLogo;

  // Image buttons.
  ui::ImageButton CmdWC_Home, CmdWC_ViewLog, CmdWC_Help, CmdWC_Minimize, CmdWC_Close;
  ui::ImageButton CmdSupport, CmdWebsite, CmdOther, CmdAbout;

  // Home page: shown while the host panel is hidden.
  ui::PictureBox PicHomeBase;
  ui::PictureBox PicMainImage, PicGradientLine;
  ui::ImageButton cmdWC_TakeBackup, cmdWC_Restore;
  ui::PictureBox PicQuickLink;
  Pictures<3> ImgQuickLink, ImgQuickArrow, ImgQuickLine;
  Labels<3> lblQuicklinks, lblQuickDescription;
  ui::Label lblLastBackupCaption, lblLastRestoreCaption, lblNextScheduleCaption;
  ui::Label LblLastBackup, lblLastRestore, LblNextSchedule;
  ui::Label LblAccount;  // what the newest run that nobody has looked at yet has to tell

  // The host of the pages, and in it, over the left part of the page, the panel with the steps:
  // five backgrounds of which one is visible, each with its labels and its arrow.
  ui::PictureBox PicMainBackupBase, PicStepBase;
  ui::PictureBox ImgBackupGradient, ImgRestoreGradient, ImgProgramSettings, ImgScheduleOptions,
      ImgLogGradient;
  Labels<6> lblBackupOptions;
  Labels<4> lblRestoreOptions;
  Labels<2> lblSettings;
  Labels<2> lblSchedule;
  Labels<1> lblLog;
  ui::PictureBox ImgStepArrow, ImgStepArrowRestore, ImgSettingsSteps, ImgStepsSchedule, ImgLogSteps;

  // The command line of this run until it has been acted on.
  std::string mCommandLine;
  // The quick backup was not prepared: its caller goes no further.
  bool mQuickCancelled = false;

  // What the pages use.
  ui::Control& panel() override { return PicMainBackupBase; }
  void Show() override { ui::Form::Show(); }
  void MarkStep(StepSide side, int step) override;
  void EnableSideButtons(bool enabled) override;
  void EnableHomeButton() override { CmdWC_Home.enabled = true; }
  void LeavePages(StepSide side) override;
  void HomePage() override { cmdWC_Home_Click(); }
  void ShowNextSchedule() override { NextSchedule(); }
  void ShowUnseenAccount() override;
  void SetEnabled(bool enabled) override { ui::Form::SetEnabled(enabled); }
  bool IsEnabled() const override { return ui::Form::Enabled(); }

  // The same as MarkStep, for one side each.
  void MarkBackupStep(int index) { MarkStep(StepSide::kBackup, index); }
  void MarkRestoreStep(int index) { MarkStep(StepSide::kRestore, index); }
  void MarkScheduleStep(int index) { MarkStep(StepSide::kSchedule, index); }
  // Shows the host panel and the step panel at their places.
  void ShowStepPanel();
  // Shows the background of one side and hides the four others.
  void ShowSide(StepSide side);
  void EnableMainButtons(bool enabled);  // backup, restore, log
  // Hides the panels and gives the main buttons back.
  void HidePanels();
  void HideAllPages();
  void GetLastBackupandRestore();
  void NextSchedule();
  // Quick link 0 prepares a quick backup, 1 opens the settings, 2 the schedule page.
  void QuickLink(int index);
  void LoadPictures();
  void KillForm();
  // True where a mouse press moves the window; y in pixels.
  static bool IsDragArea(int y);

  void cmdWC_TakeBackup_Click();
  void cmdWC_Restore_Click();
  void CmdWC_ViewLog_Click();
  void cmdWC_Home_Click();
  void CmdWC_Help_Click();
  void CmdWC_Minimize_Click();
  void CmdWC_Close_Click();
  void CmdSupport_Click();
  void CmdWebsite_Click();
  void CmdOther_Click();
  void CmdAbout_Click();
  // Opens the window with that run's account.
  void LblAccount_Click();
  void lblQuicklinks_Hover(int index);
  void PicQuickLink_Hover();

 private:
  // welcome_layout.cpp
  void PlaceControls();
  void PlaceFrame();
  void PlaceHomePage();
  void PlaceQuickLinks();
  void PlaceQuickLink(std::size_t index);
  void PlaceStatus();
  void PlaceStepPanel();

  void ConnectHandlers();
  void ConnectHomePage();
  void ConnectSteps();
  void OpenPages(StepSide side);
  // The elevation rule. False if the action must not go on: this copy is ending, or the rights were
  // refused, which the user has been told.
  bool HasRights(const std::string& action_word);
  void QuickBackup();
  void UnloadAllForms();

  Application& app_;
  bool closing_ = false;
};

}  // namespace quorvale
