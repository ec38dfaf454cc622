// The main window: its furniture, its steps, and the ways between home page and pages.
#include "core/main/FrmWelcome.h"

#include <gtest/gtest.h>

#include <set>

#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmMinimize.h"
#include "core/main/frmAbout.h"
#include "core/main/frmSettings.h"
#include "core/main/maker.h"
#include "core/main/run_modes.h"
#include "core/program/ModGlobal.h"
#include "core/program/version.h"
#include "discovery/pages/FrmTwo.h"
#include "logs/pages/frmLogs.h"
#include "restore/pages/frmROne.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kHistory[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale";
constexpr ui::Color kRed = ui::Rgb(255, 0, 0);
constexpr int kF1 = 112;

class FrmWelcomeTest : public testing::Test {
 protected:
  FrmWelcome& welcome() { return machine_.app().Get<FrmWelcome>(); }
  bool Shows(const std::string& name) {
    const ui::Form* page = machine_.app().FindLoaded(name);
    return page != nullptr && page->Visible();
  }
  std::string HelpFile() { return machine_.platform().system.ProgramFolder() + "\\Quorvale.chm"; }

  TestMachine machine_;
};

template <class Labels>
std::vector<int> BoldOnes(const Labels& labels) {
  std::vector<int> bold;
  for (size_t i = 0; i < labels.size(); ++i) {
    if (labels[i]->bold) bold.push_back(static_cast<int>(i));
  }
  return bold;
}

// --- Furniture ----------------------------------------------------------------------------------

TEST_F(FrmWelcomeTest, TheStepTextsAreInOrder) {
  const char* backup[] = {"Backup Job Description", "Select Items to Backup",
                          "Compression && Privacy", "Backup Media",
                          "Review Backup Settings", "Taking Backup"};
  const char* restore[] = {"Select Backup Job", "Select Items to Restore", "Review Items",
                           "Restoring Data"};
  for (size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(welcome().lblBackupOptions[i]->caption.get(), backup[i]);
    EXPECT_EQ(welcome().lblBackupOptions[i]->name(), "lblBackupOptions(" + std::to_string(i) + ")");
  }
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(welcome().lblRestoreOptions[i]->caption.get(), restore[i]);
  }
  EXPECT_EQ(welcome().lblSettings[0]->caption.get(), "Settings && Configurations");
  EXPECT_EQ(welcome().lblSettings[1]->caption.get(), "Startup and Installation");
  EXPECT_EQ(welcome().lblLog[0]->caption.get(), "Log Settings && Details");
  EXPECT_EQ(welcome().lblSchedule[0]->caption.get(), "Create Schedule");
  EXPECT_EQ(welcome().lblSchedule[1]->caption.get(), "Manage Schedule");
}

TEST_F(FrmWelcomeTest, EveryImageButtonHasItsThreePictures) {
  struct Case {
    ui::ImageButton& button;
    const char *normal, *hover, *pressed;
  };
  const Case cases[] = {
      {welcome().cmdWC_TakeBackup, "TAKEBACKUP", "TAKEBACKUP_HOVER", "TAKEBACKUP_HOVER"},
      {welcome().cmdWC_Restore, "RESTOREBACKUP", "RESTOREBACKUP_HOVER", "RESTOREBACKUP_HOVER"},
      {welcome().CmdWC_ViewLog, "LOG_NORMAL", "LOG_HOVER", "LOG_DOWN"},
      {welcome().CmdWC_Home, "HOME_NORMAL", "HOME_HOVER", "HOME_HOVER"},
      {welcome().CmdWC_Help, "HELP", "HELP_HOVER", "HELP_HOVER"},
      {welcome().CmdWC_Minimize, "MINI_NORMAL", "MINI_HOVER", "MINI_DOWN"},
      {welcome().CmdWC_Close, "CLOSE_NORMAL", "CLOSE_HOVER", "CLOSE_Down"},
      {welcome().CmdSupport, "Support_Normal", "Support_Hover", "Support_Down"},
      {welcome().CmdWebsite, "Web_Normal", "Web_Hover", "Web_Down"},
      {welcome().CmdAbout, "About_Normal", "About_Hover", "About_Down"},
      {welcome().CmdOther, "Other_Normal", "Other_Hover", "Other_Down"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.button.normal_picture, c.normal);
    EXPECT_EQ(c.button.hover_picture, c.hover);
    EXPECT_EQ(c.button.pressed_picture, c.pressed);
  }
}

TEST_F(FrmWelcomeTest, TheWindowMovesByItsTopAndByOneStripAtTheBottom) {
  for (int y : {0, 34, 507, 533}) EXPECT_TRUE(FrmWelcome::IsDragArea(y)) << y;
  for (int y : {35, 300, 506, 534, 564}) EXPECT_FALSE(FrmWelcome::IsDragArea(y)) << y;
  ASSERT_TRUE(welcome().drag_area);
  EXPECT_TRUE(welcome().drag_area(400, 10));
  EXPECT_FALSE(welcome().drag_area(400, 100));
}

TEST_F(FrmWelcomeTest, HelpOpensTheHelpFileByButtonAndByKey) {
  machine_.Click(welcome().CmdWC_Help);
  EXPECT_TRUE(welcome().on_key_down(kF1, 0));
  EXPECT_FALSE(welcome().on_key_down('A', 0));
  const std::string opened = "Open|" + HelpFile() + "|";
  EXPECT_EQ(machine_.computer().Started(), (std::vector<std::string>{opened, opened}));
}

TEST_F(FrmWelcomeTest, TheShellButtonsOpenTheMakersAddresses) {
  machine_.Click(welcome().CmdWebsite);
  machine_.Click(welcome().CmdOther);
  machine_.Click(welcome().CmdSupport);
  EXPECT_EQ(machine_.computer().Started(),
            (std::vector<std::string>{std::string("Open|") + kMakerHomePage + "|",
                                      std::string("Open|") + kMakerProductsPage + "|",
                                      std::string("Open|") + kMakerSupportMail + "|"}));
}

TEST_F(FrmWelcomeTest, MinimizeSetsTheWindowsState) {
  machine_.Click(welcome().CmdWC_Minimize);
  EXPECT_EQ(welcome().State(), ui::WindowState::kMinimized);
}

// --- Steps --------------------------------------------------------------------------------------

TEST_F(FrmWelcomeTest, MarkingAStepMovesTheArrowToItsLabel) {
  for (int step = 0; step < 6; ++step) {
    welcome().MarkBackupStep(step);
    EXPECT_EQ(BoldOnes(welcome().lblBackupOptions), std::vector<int>{step});
    EXPECT_EQ(welcome().ImgStepArrow.bounds->top,
              welcome().lblBackupOptions[static_cast<size_t>(step)]->bounds->top);
  }
  for (int step = 0; step < 4; ++step) {
    welcome().MarkRestoreStep(step);
    EXPECT_EQ(BoldOnes(welcome().lblRestoreOptions), std::vector<int>{step});
    EXPECT_EQ(welcome().ImgStepArrowRestore.bounds->top,
              welcome().lblRestoreOptions[static_cast<size_t>(step)]->bounds->top);
  }
}

TEST_F(FrmWelcomeTest, EachSideHasItsOwnBackground) {
  const auto visible = [&] {
    std::set<std::string> names;
    for (const ui::PictureBox* box : {&welcome().ImgBackupGradient, &welcome().ImgRestoreGradient,
                                      &welcome().ImgProgramSettings, &welcome().ImgScheduleOptions,
                                      &welcome().ImgLogGradient}) {
      EXPECT_EQ(box->picture.get(), "BASEGRADIENT");
      if (box->visible) names.insert(box->overlays.at(0).picture);
    }
    return names;
  };
  welcome().ShowSide(StepSide::kBackup);
  EXPECT_EQ(visible(), std::set<std::string>{"BACKUP_LEFT"});
  welcome().ShowSide(StepSide::kRestore);
  EXPECT_EQ(visible(), std::set<std::string>{"RESTORE_LEFT"});
  welcome().ShowSide(StepSide::kSettings);
  EXPECT_EQ(visible(), std::set<std::string>{"SETTINGS_LEFT"});
  welcome().ShowSide(StepSide::kSchedule);
  EXPECT_EQ(visible(), std::set<std::string>{"SCHEDULE_LEFT"});
  welcome().ShowSide(StepSide::kLog);
  EXPECT_EQ(visible(), std::set<std::string>{"LOG_LEFT"});
}

TEST_F(FrmWelcomeTest, ShowStepPanelPutsTheHostPanelInItsPlace) {
  welcome().PicMainBackupBase.bounds = ui::Bounds{0, 0, 1, 1};
  welcome().ShowStepPanel();
  EXPECT_EQ(welcome().PicMainBackupBase.bounds.get(), (ui::Bounds{11, 63, 780, 442}));
  EXPECT_EQ(welcome().PicMainBackupBase.back_color.get(), ui::Rgb(255, 255, 255));
  EXPECT_TRUE(welcome().PicMainBackupBase.visible);
  EXPECT_TRUE(welcome().PicStepBase.IsShown());
  EXPECT_FALSE(welcome().PicHomeBase.visible);
}

// --- Pages --------------------------------------------------------------------------------------

TEST_F(FrmWelcomeTest, TakeBackupOpensTheFirstPageAndLocksTheMainButtons) {
  machine_.Click(welcome().cmdWC_TakeBackup);
  EXPECT_TRUE(Shows("frmOne"));
  EXPECT_EQ(machine_.app().Get<frmOne>().host_panel, &welcome().PicMainBackupBase);
  EXPECT_TRUE(welcome().PicMainBackupBase.visible);
  EXPECT_TRUE(welcome().ImgBackupGradient.IsShown());
  EXPECT_EQ(BoldOnes(welcome().lblBackupOptions), std::vector<int>{0});
  for (ui::ImageButton* button :
       {&welcome().cmdWC_TakeBackup, &welcome().cmdWC_Restore, &welcome().CmdWC_ViewLog}) {
    EXPECT_FALSE(button->enabled) << button->name();
    machine_.Click(*button);
  }
  EXPECT_FALSE(Shows("frmROne"));
  EXPECT_FALSE(Shows("frmLogs"));
}

TEST_F(FrmWelcomeTest, RestoreAndLogOpenTheirSides) {
  machine_.Click(welcome().cmdWC_Restore);
  EXPECT_TRUE(Shows("frmROne"));
  EXPECT_TRUE(welcome().ImgRestoreGradient.IsShown());
  EXPECT_EQ(BoldOnes(welcome().lblRestoreOptions), std::vector<int>{0});
  machine_.Click(welcome().CmdWC_Home);
  machine_.Click(welcome().CmdWC_ViewLog);
  EXPECT_TRUE(Shows("frmLogs"));
  EXPECT_FALSE(Shows("frmROne"));
  EXPECT_TRUE(welcome().ImgLogGradient.IsShown());
  EXPECT_EQ(BoldOnes(welcome().lblLog), std::vector<int>{0});
}

TEST_F(FrmWelcomeTest, AfterCancelOnTheOptionsPageANewStartShowsDefaults) {
  machine_.Click(welcome().cmdWC_TakeBackup);
  machine_.app().Get<frmOne>().txtBackupname.text = "Typed";
  machine_.app().Get<frmThree>().Show();
  machine_.Click(machine_.app().Get<frmThree>().cmdCancel);
  EXPECT_FALSE(welcome().PicMainBackupBase.visible);
  EXPECT_TRUE(welcome().cmdWC_TakeBackup.enabled);
  machine_.Click(welcome().cmdWC_TakeBackup);
  EXPECT_EQ(machine_.app().Get<frmOne>().txtBackupname.text.get(), "Backup file");
  EXPECT_TRUE(Shows("frmOne"));
  EXPECT_FALSE(Shows("frmThree"));
}

TEST_F(FrmWelcomeTest, AfterBackTheTreeShowsItsEarlierTicks) {
  machine_.WriteFile(machine_.Documents() + "\\letter.txt", "Dear all");
  machine_.Click(welcome().cmdWC_TakeBackup);
  machine_.Click(machine_.app().Get<frmOne>().cmdNext);
  FrmTwo& items = machine_.app().Get<FrmTwo>();
  items.selectall();
  const int count = items.tvwMain.Count();
  ASSERT_GT(count, 1);
  machine_.Click(items.cmdNext);
  ASSERT_TRUE(Shows("frmThree"));
  EXPECT_FALSE(items.Visible());
  machine_.Click(machine_.app().Get<frmThree>().cmdBack);
  EXPECT_TRUE(Shows("FrmTwo"));
  EXPECT_FALSE(Shows("frmThree"));
  EXPECT_EQ(&machine_.app().Get<FrmTwo>(), &items);
  EXPECT_EQ(items.tvwMain.Count(), count);
  EXPECT_TRUE(items.tvwMain.FindPath("Other Files")->Checked());
}

TEST_F(FrmWelcomeTest, HomeHidesAllPagesAndForgetsTheRunsOfPages) {
  machine_.Click(welcome().cmdWC_TakeBackup);
  machine_.Click(machine_.app().Get<frmOne>().cmdNext);
  machine_.Click(welcome().CmdWC_Home);
  EXPECT_FALSE(welcome().PicMainBackupBase.visible);
  EXPECT_TRUE(welcome().PicHomeBase.visible);
  EXPECT_TRUE(welcome().cmdWC_TakeBackup.enabled);
  EXPECT_TRUE(welcome().CmdWC_ViewLog.enabled);
  EXPECT_EQ(machine_.app().Loaded<frmOne>(), nullptr);
  EXPECT_EQ(machine_.app().Loaded<FrmTwo>(), nullptr);
  machine_.Do([&] { welcome().QuickLink(1); });
  machine_.Click(welcome().CmdWC_Home);
  EXPECT_NE(machine_.app().Loaded<frmSettings>(), nullptr);
  EXPECT_FALSE(Shows("frmSettings"));
}

// --- Status -------------------------------------------------------------------------------------

TEST_F(FrmWelcomeTest, AFreshUserSeesNeverTwiceAndNoSchedule) {
  EXPECT_EQ(welcome().LblLastBackup.caption.get(), "Never");
  EXPECT_EQ(welcome().lblLastRestore.caption.get(), "Never");
  EXPECT_EQ(welcome().LblNextSchedule.caption.get(), "No Schedule yet Created");
  for (const ui::Label* label :
       {&welcome().LblLastBackup, &welcome().lblLastRestore, &welcome().LblNextSchedule}) {
    EXPECT_EQ(label->fore_color.get(), kRed) << label->name();
  }
}

TEST_F(FrmWelcomeTest, TheLastRunsAreShownInBlueFromTheRegistry) {
  machine_.SetString(kHistory, "Last Backup", " 11/14/2026 10:05:09 PM ");
  machine_.SetString(kHistory, "Last Restore", "   ");
  EXPECT_EQ(welcome().LblLastBackup.caption.get(), "11/14/2026 10:05:09 PM");
  EXPECT_EQ(welcome().LblLastBackup.fore_color.get(), ui::Rgb(19, 89, 166));
  EXPECT_EQ(welcome().lblLastRestore.caption.get(), "Never");
  machine_.SetString(kHistory, "Last Restore", "11/15/2026 1:00:00 AM");
  machine_.Click(welcome().CmdWC_Home);
  EXPECT_EQ(welcome().lblLastRestore.caption.get(), "11/15/2026 1:00:00 AM");
  EXPECT_EQ(welcome().lblLastRestore.fore_color.get(), ui::Rgb(19, 89, 166));
}

// --- Quick links --------------------------------------------------------------------------------

TEST_F(FrmWelcomeTest, TheQuickLinksHaveTheirTexts) {
  const char* captions[] = {"Take Quick Backup", "Settings && Configurations",
                            "Schedule your Backup"};
  const char* tooltips[] = {"Click to take complete backup quickly",
                            "Click to open settings and configurations",
                            "Click to schedule a backup"};
  const char* descriptions[] = {"Quickly take a backup of your data in  just one click",
                                "Manage settings for best and customized use of Quorvale",
                                "Schedule Quorvale to automatically take backup of mails and data"};
  const char* pictures[] = {"QUICKBACKUP", "SETTINGS", "SCHEDULE"};
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(welcome().lblQuicklinks[i]->caption.get(), captions[i]);
    EXPECT_EQ(welcome().lblQuicklinks[i]->tooltip.get(), tooltips[i]);
    EXPECT_EQ(welcome().lblQuickDescription[i]->caption.get(), descriptions[i]);
    EXPECT_EQ(welcome().ImgQuickLink[i]->picture.get(), pictures[i]);
    EXPECT_EQ(welcome().ImgQuickArrow[i]->picture.get(), "ARROW");
    EXPECT_EQ(welcome().ImgQuickLine[i]->picture.get(), "RIGHTGRADIENTLINE");
    EXPECT_EQ(welcome().lblQuicklinks[i]->fore_color.get(), ui::Rgb(0, 45, 78));
  }
  EXPECT_EQ(welcome().cmdWC_TakeBackup.tooltip.get(),
            "Click to backup your mails and important files and folders");
  EXPECT_EQ(welcome().cmdWC_Restore.tooltip.get(),
            "Restore the previous backup created to same or different computer");
}

TEST_F(FrmWelcomeTest, OnlyTheLinkUnderTheMouseIsUnderlined) {
  welcome().lblQuicklinks[0]->on_mouse_enter();
  welcome().lblQuicklinks[1]->on_mouse_enter();
  EXPECT_FALSE(welcome().lblQuicklinks[0]->underline);
  EXPECT_TRUE(welcome().lblQuicklinks[1]->underline);
  EXPECT_EQ(welcome().lblQuicklinks[1]->fore_color.get(), ui::Rgb(76, 105, 241));
  welcome().PicQuickLink.on_mouse_enter();
  for (const auto& link : welcome().lblQuicklinks) {
    EXPECT_FALSE(link->underline);
    EXPECT_EQ(link->fore_color.get(), ui::Rgb(0, 45, 78));
  }
}

TEST_F(FrmWelcomeTest, TheSecondLinkOpensTheSettings) {
  machine_.Click(*welcome().lblQuicklinks[1]);
  EXPECT_TRUE(Shows("frmSettings"));
  EXPECT_TRUE(welcome().ImgProgramSettings.IsShown());
  EXPECT_EQ(BoldOnes(welcome().lblSettings), std::vector<int>{0});
  EXPECT_FALSE(welcome().cmdWC_TakeBackup.enabled);
}

// --- About, minimise form, end ------------------------------------------------------------------

TEST_F(FrmWelcomeTest, AboutShowsNameVersionAndLinksAndCloses) {
  machine_.ui().When([&] { return Shows("frmAbout"); },
                     [&] {
                       frmAbout& about = machine_.app().Get<frmAbout>();
                       EXPECT_EQ(about.Caption(), "About");
                       EXPECT_EQ(about.lblTitle.caption.get(), "Quorvale");
                       EXPECT_EQ(about.lblVersion.caption->find("Version "), 0u);
                       EXPECT_EQ(about.lblWebsite.caption.get(), "Website:");
                       EXPECT_EQ(about.lblSupport.caption.get(), "Support:");
                       EXPECT_EQ(about.lblVersion.caption.get(),
                                 std::string("Version ") + kProgramVersion);
                       about.Lnkweblink.on_mouse_enter();
                       EXPECT_TRUE(about.Lnkweblink.underline);
                       EXPECT_EQ(about.Lnkweblink.tooltip.get(), kMakerHomePage);
                       about.Lnkweblink.Click();
                       about.Lnksupport.Click();
                       about.LnkUpdate.Click();
                       about.cmdOK.Click();
                     });
  machine_.Click(welcome().CmdAbout);
  EXPECT_FALSE(Shows("frmAbout"));
  EXPECT_EQ(machine_.computer().Started(),
            (std::vector<std::string>{std::string("Open|") + kMakerHomePage + "|",
                                      std::string("Open|") + kMakerSupportMail + "|",
                                      std::string("Open|") + kMakerHomePage + "|"}));
}

TEST_F(FrmWelcomeTest, TheStandByWindowLeadsBackAndIsSparedByHome) {
  FrmMinimize& stand_by = machine_.app().Get<FrmMinimize>();
  stand_by.Show();
  machine_.Click(welcome().CmdWC_Home);
  EXPECT_TRUE(stand_by.Visible());
  welcome().Hide();
  machine_.Click(stand_by.Command1);
  EXPECT_FALSE(stand_by.Visible());
  EXPECT_TRUE(welcome().Visible());
  EXPECT_FALSE(machine_.app().Ended());
  machine_.app().Unload<FrmMinimize>();
  EXPECT_TRUE(machine_.app().Ended());
}

TEST_F(FrmWelcomeTest, TheKeyboardIsGuardedWhileTheWindowIsInactiveAndFreeAfterItsEnd) {
  ASSERT_TRUE(welcome().on_deactivate);
  EXPECT_FALSE(machine_.ui().keyboard_guarded());
  welcome().on_deactivate();
  EXPECT_TRUE(machine_.ui().keyboard_guarded());
  welcome().Activate();
  EXPECT_FALSE(machine_.ui().keyboard_guarded());
  welcome().on_deactivate();
  machine_.Click(welcome().CmdWC_Close);
  EXPECT_FALSE(machine_.ui().keyboard_guarded());
}

TEST_F(FrmWelcomeTest, CloseUnloadsAllFormsAndEndsTheRun) {
  machine_.Click(welcome().cmdWC_TakeBackup);
  machine_.app().Get<frmSettings>();
  machine_.Click(welcome().CmdWC_Close);
  EXPECT_TRUE(machine_.app().LoadedForms().empty());
  EXPECT_TRUE(machine_.app().Ended());
  EXPECT_TRUE(machine_.session().gStopRequested);
}

TEST_F(FrmWelcomeTest, ClosingByTheSystemRestoresTheWindowAndEndsTheRun) {
  FrmWelcome& window = welcome();
  window.SetState(ui::WindowState::kMinimized);
  window.on_close_request();
  EXPECT_EQ(window.State(), ui::WindowState::kNormal);
  EXPECT_TRUE(machine_.app().Ended());
  EXPECT_TRUE(machine_.app().LoadedForms().empty());
}

}  // namespace
}  // namespace quorvale
