// The runs that schedules start: a schedule is made on the page, and its stored words are started
// by hand as the scheduler would at its time.
#include <gtest/gtest.h>

#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmfour.h"
#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/main/run_modes.h"
#include "discovery/pages/FrmTwo.h"
#include "schedule/pages/frmSchedule.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kDone[] = "Backup successfully completed";
constexpr char kSettings[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";

class ScheduledRun : public testing::Test {
 protected:
  explicit ScheduledRun(const std::string& like = "xp") : machine_(like) {
    machine_.WriteFile(machine_.Documents() + "\\letter.txt", "Dear all");
  }

  Application& app() { return machine_.app(); }
  // Makes a schedule of this type on the page.
  void MakeSchedule(const std::string& type) {
    machine_.Do([this] { SubMain(app()); });
    machine_.Do([this] { app().Get<FrmWelcome>().QuickLink(2); });
    frmSchedule& page = app().Get<frmSchedule>();
    page.txtSchedName.text = "The job";
    ASSERT_TRUE(page.cmbCommandLine.SelectText(type));
    machine_.Click(page.chkDaily);
    machine_.Expect(ui::Answer::kOk, "Schedule created successfully");
    machine_.Click(page.Command6);
  }
  // Starts what the job says.
  void Fire() {
    const std::optional<ScheduledTask> job = machine_.platform().scheduler.Read("The job");
    ASSERT_TRUE(job);
    EXPECT_EQ(job->application, machine_.platform().system.ProgramFolder() + "\\Quorvale.exe");
    machine_.Restart(job->parameters);
    machine_.Do([this] { SubMain(app()); });
    machine_.RunUntilIdle();
  }
  bool Shows(const std::string& name) {
    const ui::Form* form = app().FindLoaded(name);
    return form != nullptr && form->Visible();
  }
  size_t BackupsIn(const std::string& folder) {
    size_t count = 0;
    for (const std::string& path : machine_.AllBelow(folder)) {
      if (EndsWithNoCase(path, ".obk")) ++count;
    }
    return count;
  }
  std::string DefaultFolder() { return machine_.AppData() + "\\Tarnwick\\Quorvale\\Backup"; }

  TestMachine machine_;
};

class VistaScheduledRun : public ScheduledRun {
 protected:
  VistaScheduledRun() : ScheduledRun("vista") {}
};

TEST_F(ScheduledRun, AQuickBackupIsPreparedAndWaitsForAPersonToPressOn) {
  MakeSchedule("QuickBackup(Complete)");
  machine_.Expect(ui::Answer::kOk, "Ready for Scheduled Quick Backup");
  Fire();
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kInformation);
  EXPECT_TRUE(Shows("frmfour"));
  FrmWelcome& welcome = app().Get<FrmWelcome>();
  EXPECT_TRUE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.lblBackupOptions[4]->bold);
  EXPECT_EQ(welcome.ImgStepArrow.bounds->top, welcome.lblBackupOptions[4]->bounds->top);
  EXPECT_EQ(BackupsIn(DefaultFolder()), 0u);
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Click(app().Get<frmfour>().cmdNext);
  EXPECT_EQ(BackupsIn(DefaultFolder()), 1u);
}

TEST_F(ScheduledRun, ACustomBackupHasNoMemoryOfEarlierChoices) {
  machine_.Do([this] { SubMain(app()); });
  // A run by hand that ticks everything and is given up.
  FrmWelcome& welcome = app().Get<FrmWelcome>();
  machine_.Click(welcome.cmdWC_TakeBackup);
  app().Get<frmOne>().txtBackupname.text = "By hand";
  machine_.Click(app().Get<frmOne>().cmdNext);
  machine_.Do([this] { app().Get<FrmTwo>().TickAll(); });
  machine_.Click(welcome.CmdWC_Home);
  MakeSchedule("Custom Backup");
  machine_.Expect(ui::Answer::kOk, "Ready for Scheduled Custom Backup");
  Fire();
  EXPECT_TRUE(Shows("frmOne"));
  EXPECT_EQ(app().Get<frmOne>().txtBackupname.text.get(), "Backup file");
  EXPECT_TRUE(app().Get<FrmWelcome>().lblBackupOptions[0]->bold);
  machine_.Click(app().Get<frmOne>().cmdNext);
  const FrmTwo& items = app().Get<FrmTwo>();
  ASSERT_GT(items.tvwMain.Count(), 0);
  for (int i = 1; i <= items.tvwMain.Count(); ++i) {
    EXPECT_FALSE(items.tvwMain.Node(i)->Checked()) << items.tvwMain.Node(i)->FullPath();
  }
}

TEST_F(ScheduledRun, AnAutomaticBackupRunsWithNobodyThereAndTellsItsEnd) {
  MakeSchedule("Automatic Backup");
  machine_.Expect(ui::Answer::kOk, kDone);
  Fire();
  EXPECT_EQ(BackupsIn(DefaultFolder()), 1u);
  EXPECT_NE(machine_.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Backup"),
            std::nullopt);
}

TEST_F(ScheduledRun, AnAutomaticBackupStopsAtARunningMailProgramUntilItsMessageIsDismissed) {
  machine_.MakeKey("HKEY_CURRENT_USER\\Identities");
  MakeSchedule("Automatic Backup");
  machine_.computer().RunProcess("msimn.exe");
  // Once as the page is filled, once by its timer.
  machine_.Expect(ui::Answer::kOk, "Please close Outlook Express to continue.");
  machine_.Expect(ui::Answer::kOk, "Please close Outlook Express to continue.");
  Fire();
  EXPECT_TRUE(Shows("frmfour"));
  EXPECT_FALSE(Shows("frmFinish"));
  EXPECT_EQ(BackupsIn(DefaultFolder()), 0u);
  // With the program closed, the page goes on from where it stayed.
  machine_.computer().EndProcess("msimn.exe");
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Click(app().Get<frmfour>().cmdNext);
  EXPECT_EQ(BackupsIn(DefaultFolder()), 1u);
}

TEST_F(ScheduledRun, AChangedBackupFolderTakesEffectAtTheNextFiring) {
  MakeSchedule("Automatic Backup");
  machine_.Expect(ui::Answer::kOk, kDone);
  Fire();
  EXPECT_EQ(BackupsIn(DefaultFolder()), 1u);
  machine_.MakeFolder("D:\\Other backups");
  machine_.SetString(kSettings, "txtBackup", "D:\\Other backups");
  machine_.Expect(ui::Answer::kOk, kDone);
  Fire();
  EXPECT_EQ(BackupsIn(DefaultFolder()), 1u);
  EXPECT_EQ(BackupsIn("D:\\Other backups"), 1u);
}

TEST_F(VistaScheduledRun, TheWordIsHandedToTheTwinWithRaisedRights) {
  MakeSchedule("Automatic Backup");
  machine_.computer().RefuseElevation(false);
  Fire();
  EXPECT_TRUE(app().Ended());
  const std::string hand_over = machine_.AppData() + "\\Tarnwick\\Quorvale\\temp.xml";
  EXPECT_TRUE(Contains(machine_.ReadFile(hand_over), "<BackupType>auto</BackupType>"));
  machine_.Restart("qvlrunasadmin");
  machine_.Expect(ui::Answer::kOk, kDone);
  machine_.Do([this] { SubMain(app()); });
  machine_.RunUntilIdle();
  EXPECT_EQ(BackupsIn(DefaultFolder()), 1u);
}

}  // namespace
}  // namespace quorvale
