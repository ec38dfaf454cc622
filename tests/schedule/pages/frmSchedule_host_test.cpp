// The page that makes schedules.
#include "schedule/pages/frmSchedule.h"

#include <gtest/gtest.h>

#include "base/dates.h"
#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/main/run_modes.h"
#include "core/program/account_folder.h"
#include "platform/host/host_platform.h"
#include "schedule/pages/frmSchedTwo.h"
#include "schedule/run/schedule_jobs.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kRefused[] =
    "Administrator privileges are required for this action. You do not have sufficient access "
    "privileges to perform this action";
constexpr char kNotRunning[] =
    "Windows Scheduler service is currently not running. Please enable it to create a schedule.";
constexpr char kSpecial[] = "Schedule name cannot contain special characters";
constexpr char kTaken[] = "Schedule already exists. Please enter a new name";
constexpr char kBlank[] = "Schedule name cannot be blank, please enter a schedule name";
constexpr char kNoDay[] = "Select at least one day for the Schedule";
constexpr char kCreated[] = "Schedule created successfully";

class SchedulePage : public testing::Test {
 protected:
  explicit SchedulePage(const std::string& like = "xp") : machine_(like) {
    LocalTime now = DateOfDay(DayNumber(2026, 11, 14));  // a Saturday
    now.hour = 22;
    now.minute = 5;
    now.second = 9;
    machine_.computer().SetClock(now);
  }

  FrmWelcome& welcome() { return machine_.app().Get<FrmWelcome>(); }
  frmSchedule& page() { return machine_.app().Get<frmSchedule>(); }
  frmSchedule& Open() {
    welcome();
    machine_.Do([this] { welcome().lblQuicklinks[2]->Click(); });
    return page();
  }
  bool Shows(const std::string& name) {
    const ui::Form* form = machine_.app().FindLoaded(name);
    return form != nullptr && form->Visible();
  }
  void SetTime(int hour, int minute) {
    page().DTPTime.value.hour = hour;
    page().DTPTime.value.minute = minute;
  }
  // Presses the button, foreseeing one box.
  void Create(const std::string& box) {
    machine_.Expect(ui::Answer::kOk, box);
    machine_.Click(page().Command6);
  }
  std::optional<ScheduledTask> Job(const std::string& name) {
    return machine_.platform().scheduler.Read(name);
  }
  size_t Jobs() { return machine_.platform().scheduler.Names().size(); }

  TestMachine machine_;
};

class VistaSchedulePage : public SchedulePage {
 protected:
  VistaSchedulePage() : SchedulePage("vista") {}
  std::string HandOver() { return machine_.AppData() + "\\Tarnwick\\Quorvale\\temp.xml"; }
};

// --- The page -----------------------------------------------------------------------------------

TEST_F(SchedulePage, TheQuickLinkOpensItWithTheStepsOfSchedules) {
  Open();
  EXPECT_TRUE(Shows("frmSchedule"));
  EXPECT_TRUE(welcome().PicMainBackupBase.visible);
  EXPECT_TRUE(welcome().PicStepBase.visible);
  EXPECT_TRUE(welcome().ImgScheduleOptions.visible);
  EXPECT_FALSE(welcome().ImgBackupGradient.visible);
  EXPECT_TRUE(welcome().lblSchedule[0]->bold);
  EXPECT_FALSE(welcome().lblSchedule[1]->bold);
  EXPECT_EQ(welcome().ImgStepsSchedule.bounds->top, welcome().lblSchedule[0]->bounds->top);
  EXPECT_FALSE(welcome().mQuickCancelled);
}

TEST_F(SchedulePage, ItOpensWithTheFirstTypeThePresentTimeAndNoDay) {
  frmSchedule& page = Open();
  EXPECT_EQ(page.txtSchedName.text.get(), "");
  ASSERT_EQ(page.cmbCommandLine.Count(), 3);
  EXPECT_EQ(page.cmbCommandLine.Item(0), "QuickBackup(Complete)");
  EXPECT_EQ(page.cmbCommandLine.Item(1), "Custom Backup");
  EXPECT_EQ(page.cmbCommandLine.Item(2), "Automatic Backup");
  EXPECT_EQ(page.cmbCommandLine.SelectedText(), "QuickBackup(Complete)");
  EXPECT_EQ(page.DTPTime.format, "hh:mm AM/PM");
  EXPECT_EQ(page.DTPTime.value.hour, 22);
  EXPECT_EQ(page.DTPTime.value.minute, 5);
  EXPECT_EQ(page.chkDaily.value.get(), 0);
  const std::pair<ui::CheckBox*, const char*> boxes[] = {
      {&page.chkDaily, "Daily"}, {&page.ChkM, "Monday"},   {&page.ChkT, "Tuesday"},
      {&page.ChkW, "Wednesday"}, {&page.ChkR, "Thursday"}, {&page.ChkF, "Friday"},
      {&page.ChkS, "Saturday"},  {&page.ChkU, "Sunday"}};
  for (const auto& [box, caption] : boxes) {
    EXPECT_EQ(box->caption.get(), caption);
    EXPECT_EQ(box->value.get(), 0) << caption;
    EXPECT_TRUE(box->enabled) << caption;
  }
  EXPECT_EQ(page.lblSchedName.caption.get(), "Name your Schedule");
  EXPECT_EQ(page.lblCommandLine.caption.get(), "Type of Backup");
  EXPECT_EQ(page.lblTime.caption.get(), "When to Schedule");
  EXPECT_EQ(ReplaceAll(page.Command6.caption.get(), "&", ""), "Create Schedule");
  EXPECT_EQ(ReplaceAll(page.cmdNext.caption.get(), "&", ""), "Manage Schedule");
  EXPECT_FALSE(page.txttime.visible);
}

TEST_F(SchedulePage, F1OpensTheTopicOfSchedules) {
  frmSchedule& page = Open();
  EXPECT_TRUE(page.on_key_down(112, 0));
  EXPECT_FALSE(page.on_key_down(113, 0));
  ASSERT_FALSE(machine_.host().shell().help_shown().empty());
  EXPECT_TRUE(
      EndsWithNoCase(machine_.host().shell().help_shown().back().topic, "Schedule Backup.htm"));
}

TEST_F(SchedulePage, CancelLeadsHome) {
  frmSchedule& page = Open();
  machine_.Click(page.cmdCancel);
  EXPECT_FALSE(Shows("frmSchedule"));
  EXPECT_FALSE(welcome().PicMainBackupBase.visible);
  EXPECT_TRUE(welcome().cmdWC_TakeBackup.enabled);
}

// --- Day boxes ----------------------------------------------------------------------------------

TEST_F(SchedulePage, DailyTicksTheSevenDaysAndHoldsThem) {
  frmSchedule& page = Open();
  page.ChkW.value = 1;
  machine_.Click(page.chkDaily);
  for (ui::CheckBox* box :
       {&page.ChkM, &page.ChkT, &page.ChkW, &page.ChkR, &page.ChkF, &page.ChkS, &page.ChkU}) {
    EXPECT_EQ(box->value.get(), 1) << box->name();
    EXPECT_FALSE(box->enabled) << box->name();
  }
  machine_.Click(page.chkDaily);
  for (ui::CheckBox* box :
       {&page.ChkM, &page.ChkT, &page.ChkW, &page.ChkR, &page.ChkF, &page.ChkS, &page.ChkU}) {
    EXPECT_EQ(box->value.get(), 0) << box->name();
    EXPECT_TRUE(box->enabled) << box->name();
  }
}

TEST_F(SchedulePage, TheSeventhDayTicksDaily) {
  frmSchedule& page = Open();
  for (ui::CheckBox* box :
       {&page.ChkM, &page.ChkT, &page.ChkW, &page.ChkR, &page.ChkF, &page.ChkS}) {
    machine_.Click(*box);
    EXPECT_EQ(page.chkDaily.value.get(), 0);
  }
  machine_.Click(page.ChkU);
  EXPECT_EQ(page.chkDaily.value.get(), 1);
  EXPECT_FALSE(page.ChkM.enabled);
}

TEST_F(SchedulePage, ClearingTheLastDayLeavesDailyClear) {
  frmSchedule& page = Open();
  machine_.Click(page.ChkT);
  machine_.Click(page.ChkT);
  EXPECT_EQ(page.chkDaily.value.get(), 0);
  EXPECT_TRUE(page.ChkT.enabled);
}

// --- Creating -----------------------------------------------------------------------------------

TEST_F(SchedulePage, ADailyScheduleHasATriggerForEveryDayAndNoMask) {
  machine_.computer().SetEnvironment("USERNAME", "Anna");
  frmSchedule& page = Open();
  page.txtSchedName.text = "  Nightly mail ";
  SetTime(9, 7);
  machine_.Click(page.chkDaily);
  Create(kCreated);
  const std::optional<ScheduledTask> job = Job("Nightly mail");
  ASSERT_TRUE(job);
  EXPECT_EQ(job->name, "Nightly mail");
  EXPECT_EQ(job->application, "C:\\Program Files\\Quorvale\\Quorvale.exe");
  EXPECT_EQ(job->parameters, "qbackup");
  EXPECT_EQ(job->comment, "Quorvale Scheduler");
  EXPECT_EQ(job->flags, 8193u);
  EXPECT_EQ(job->account, "Anna");
  ASSERT_EQ(job->triggers.size(), 1u);
  EXPECT_EQ(job->triggers[0].type, TaskTriggerType::kDaily);
  EXPECT_EQ(job->triggers[0].interval, 1);
  EXPECT_EQ(job->triggers[0].days, 0);
  EXPECT_EQ(job->triggers[0].begin.day, 14);
  EXPECT_EQ(job->triggers[0].begin.hour, 9);
  EXPECT_EQ(job->triggers[0].begin.minute, 7);
}

TEST_F(SchedulePage, MondayAndFridayGiveTheMask34) {
  frmSchedule& page = Open();
  page.txtSchedName.text = "Two days";
  machine_.Click(page.ChkM);
  machine_.Click(page.ChkF);
  Create(kCreated);
  const std::optional<ScheduledTask> job = Job("Two days");
  ASSERT_TRUE(job && job->triggers.size() == 1);
  EXPECT_EQ(job->triggers[0].type, TaskTriggerType::kWeekly);
  EXPECT_EQ(job->triggers[0].interval, 1);
  EXPECT_EQ(job->triggers[0].days, 34);
}

TEST_F(SchedulePage, EachDayHasItsBit) {
  frmSchedule& page = Open();
  const std::pair<ui::CheckBox*, int> days[] = {{&page.ChkU, 1}, {&page.ChkM, 2},  {&page.ChkT, 4},
                                                {&page.ChkW, 8}, {&page.ChkR, 16}, {&page.ChkF, 32},
                                                {&page.ChkS, 64}};
  for (const auto& [box, bit] : days) {
    machine_.Click(*box);
    page.txtSchedName.text = box->name();
    Create(kCreated);
    machine_.Click(*box);
    const std::optional<ScheduledTask> job = Job(box->name());
    ASSERT_TRUE(job && job->triggers.size() == 1) << box->name();
    EXPECT_EQ(job->triggers[0].days, bit) << box->name();
  }
}

TEST_F(SchedulePage, EachTypeHasItsWord) {
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  const std::pair<const char*, const char*> types[] = {{"QuickBackup(Complete)", "qbackup"},
                                                       {"Custom Backup", "custom"},
                                                       {"Automatic Backup", "auto"}};
  for (const auto& [label, word] : types) {
    ASSERT_TRUE(page.cmbCommandLine.SelectText(label));
    page.txtSchedName.text = word;
    Create(kCreated);
    ASSERT_TRUE(Job(word)) << label;
    EXPECT_EQ(Job(word)->parameters, word);
  }
}

TEST_F(SchedulePage, AfterwardsTheNameIsEmptyTheTimePresentAndTheHomePageTold) {
  frmSchedule& page = Open();
  page.txtSchedName.text = "Nightly";
  SetTime(9, 7);
  machine_.Click(page.chkDaily);
  Create(kCreated);
  EXPECT_EQ(page.txtSchedName.text.get(), "");
  EXPECT_EQ(page.DTPTime.value.hour, 22);
  EXPECT_EQ(page.DTPTime.value.minute, 5);
  EXPECT_EQ(page.chkDaily.value.get(), 1);
  EXPECT_TRUE(Shows("frmSchedule"));
  EXPECT_EQ(welcome().LblNextSchedule.caption.get(), "11/15/2026 9:07:00 AM");
  EXPECT_EQ(welcome().LblNextSchedule.fore_color.get(), ui::Rgb(19, 89, 166));
}

TEST_F(SchedulePage, TheEndIsToldEvenIfTheSchedulerTookNothingWithTheAccountBesideIt) {
  frmSchedule& page = Open();
  page.txtSchedName.text = "Nightly";
  machine_.Click(page.chkDaily);
  machine_.faults().scheduler.SetRefusing(true);
  Create(kCreated);
  EXPECT_EQ(Jobs(), 0u);
  EXPECT_TRUE(machine_.app().account().HasToTell());
  EXPECT_TRUE(Shows("frmAccount"));
  EXPECT_EQ(UnseenAccount(machine_.app()), "");  // it is being looked at
  EXPECT_EQ(welcome().LblNextSchedule.caption.get(), "No Schedule yet Created");
}

// --- Refusals -----------------------------------------------------------------------------------

TEST_F(SchedulePage, WithoutTheServiceNothingIsLookedAt) {
  frmSchedule& page = Open();
  page.txtSchedName.text = "a.b";
  for (const char* state : {"Stopped", "Paused", "Start Pending", ""}) {
    machine_.SetService("Schedule", state);
    Create(kNotRunning);
    EXPECT_EQ(machine_.app().Loaded<frmSchedTwo>(), nullptr);
  }
  machine_.SetService("Schedule", "running");
  Create(kSpecial);
}

TEST_F(SchedulePage, ANameWithAFullStopIsRefused) {
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  page.txtSchedName.text = "Mail v1.2";
  Create(kSpecial);
  EXPECT_EQ(page.focused, &page.txtSchedName);
  EXPECT_EQ(page.txtSchedName.text.get(), "Mail v1.2");
  EXPECT_EQ(Jobs(), 0u);
}

TEST_F(SchedulePage, EachSpecialCharacterIsRefused) {
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  for (const char c : std::string("?><./\\:;*|'\"")) {
    page.txtSchedName.text = std::string("Mail") + c;
    Create(kSpecial);
  }
  EXPECT_EQ(Jobs(), 0u);
}

TEST_F(SchedulePage, TheSameNameTwiceIsRefusedOnTheSecondTry) {
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  page.txtSchedName.text = "Nightly";
  Create(kCreated);
  page.txtSchedName.text = "Nightly ";
  Create(kTaken);
  EXPECT_EQ(Jobs(), 1u);
  // Looked at before the days are.
  machine_.Click(page.chkDaily);
  Create(kTaken);
}

TEST_F(SchedulePage, ABlankNamePassesTheTestsOfCharactersAndNamesAndIsRefusedThen) {
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  page.txtSchedName.text = "Nightly";
  Create(kCreated);
  for (const char* blank : {"", "   "}) {
    page.txtSchedName.text = blank;
    Create(kBlank);
    EXPECT_EQ(page.focused, &page.txtSchedName);
  }
  // Looked at before the days are.
  machine_.Click(page.chkDaily);
  Create(kBlank);
}

TEST_F(SchedulePage, WithoutADayNothingIsMade) {
  frmSchedule& page = Open();
  page.txtSchedName.text = "Nightly";
  Create(kNoDay);
  EXPECT_EQ(Jobs(), 0u);
  EXPECT_EQ(page.txtSchedName.text.get(), "Nightly");
}

TEST_F(SchedulePage, ANameThatAnyJobBearsInAnyCaseIsRefused) {
  ScheduledTask other;
  other.name = "Nightly";
  other.application = "C:\\Other\\other.exe";
  other.comment = "Other";
  ASSERT_TRUE(machine_.platform().scheduler.Create(other).saved);
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  for (const char* name : {"Nightly", "NIGHTLY", " nightly "}) {
    page.txtSchedName.text = name;
    Create(kTaken);
    EXPECT_EQ(page.last_creation, frmSchedule::Creation::kNotAsked);
  }
  EXPECT_EQ(Jobs(), 1u);
  ASSERT_TRUE(Job("Nightly"));
  EXPECT_EQ(Job("Nightly")->comment, "Other");
  EXPECT_EQ(Job("Nightly")->application, "C:\\Other\\other.exe");
}

// --- Refresh and the time box -------------------------------------------------------------------

TEST_F(SchedulePage, BothRefreshControlsResetNameAndTime) {
  frmSchedule& page = Open();
  machine_.Click(page.ChkM);
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&page.cmdRefresh, &page.Label32}) {
    page.txtSchedName.text = "Nightly";
    SetTime(1, 2);
    machine_.Click(*control);
    EXPECT_EQ(page.txtSchedName.text.get(), "");
    EXPECT_EQ(page.DTPTime.value.hour, 22);
    EXPECT_EQ(page.DTPTime.value.minute, 5);
    EXPECT_EQ(page.ChkM.value.get(), 1);
  }
}

TEST_F(SchedulePage, TheHiddenTimeBoxTellsWhatIsNoTime) {
  frmSchedule& page = Open();
  machine_.Do([&] { page.txttime.on_lost_focus(); });
  page.txttime.text = "";
  SetTime(1, 2);
  machine_.Expect(ui::Answer::kOk,
                  "Please enter time at which you want the schedule to run. Valid format for time "
                  "is HH:MM AM/PM , hour:minute followed by a blank space then am/pm");
  machine_.Do([&] { page.txttime.on_lost_focus(); });
  EXPECT_EQ(machine_.ui().boxes.back().request.title, "Invalid Time");
  EXPECT_EQ(page.txttime.text.get(), "10:05 PM");
  EXPECT_EQ(page.DTPTime.value.hour, 22);
  page.txttime.text = "25:00";
  machine_.Expect(ui::Answer::kOk,
                  "25:00 is not a valid time. Valid format for time is HH:MM AM/PM , hour:minute "
                  "followed by a blank space then am/pm");
  machine_.Do([&] { page.txttime.on_lost_focus(); });
  EXPECT_EQ(page.txttime.text.get(), "10:05 PM");
}

// --- To the list, and raised rights -------------------------------------------------------------

TEST_F(SchedulePage, NextShowsTheListAndMarksItsStep) {
  frmSchedule& page = Open();
  machine_.Click(page.cmdNext);
  EXPECT_TRUE(Shows("frmSchedTwo"));
  EXPECT_FALSE(Shows("frmSchedule"));
  EXPECT_TRUE(welcome().lblSchedule[1]->bold);
  EXPECT_FALSE(welcome().lblSchedule[0]->bold);
  EXPECT_EQ(welcome().ImgStepsSchedule.bounds->top, welcome().lblSchedule[1]->bounds->top);
  EXPECT_TRUE(machine_.computer().Started().empty());
}

TEST_F(SchedulePage, TheStepsLeadFromOnePageToTheOther) {
  Open();
  machine_.Click(*welcome().lblSchedule[0]);
  EXPECT_TRUE(Shows("frmSchedule"));
  machine_.Click(*welcome().lblSchedule[1]);
  EXPECT_TRUE(Shows("frmSchedTwo"));
  EXPECT_FALSE(Shows("frmSchedule"));
  machine_.Click(*welcome().lblSchedule[0]);
  EXPECT_TRUE(Shows("frmSchedule"));
  EXPECT_FALSE(Shows("frmSchedTwo"));
}

TEST_F(VistaSchedulePage, TheListNeedsRaisedRightsAndTheTwinOpensIt) {
  machine_.computer().RefuseElevation(false);
  frmSchedule& page = Open();
  machine_.Click(page.cmdNext);
  EXPECT_TRUE(machine_.app().Ended());
  ASSERT_EQ(machine_.computer().Started().size(), 1u);
  EXPECT_TRUE(EndsWithNoCase(machine_.computer().Started()[0], "\\Quorvale.exe|qvlrunasadmin"));
  const std::string text = machine_.ReadFile(HandOver());
  EXPECT_TRUE(Contains(text, "<BackupType>Schedule</BackupType>")) << text;
  EXPECT_FALSE(Contains(text, "BackupName")) << text;
  EXPECT_EQ(machine_.app().Loaded<frmSchedTwo>(), nullptr);

  machine_.Restart("qvlrunasadmin");
  machine_.Do([this] { SubMain(machine_.app()); });
  EXPECT_TRUE(Shows("frmSchedTwo"));
  EXPECT_FALSE(Shows("frmSchedule"));
  EXPECT_TRUE(welcome().lblSchedule[1]->bold);
  EXPECT_TRUE(welcome().Enabled());
  EXPECT_FALSE(machine_.Exists(HandOver()));
  EXPECT_EQ(machine_.computer().Started().size(), 1u);
}

TEST_F(VistaSchedulePage, RefusedTheUserIsToldAndThePageStays) {
  machine_.computer().RefuseElevation();
  frmSchedule& page = Open();
  machine_.Expect(ui::Answer::kOk, kRefused);
  machine_.Click(page.cmdNext);
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kInformation);
  EXPECT_FALSE(machine_.app().Ended());
  EXPECT_TRUE(Shows("frmSchedule"));
  EXPECT_FALSE(Shows("frmSchedTwo"));
  EXPECT_TRUE(welcome().Enabled());
  EXPECT_FALSE(machine_.Exists(HandOver()));
}

TEST_F(VistaSchedulePage, MakingAScheduleAsksForNoRights) {
  machine_.computer().RefuseElevation();
  frmSchedule& page = Open();
  machine_.Click(page.chkDaily);
  page.txtSchedName.text = "Nightly";
  Create(kCreated);
  EXPECT_TRUE(Job("Nightly"));
  EXPECT_TRUE(machine_.computer().Started().empty());
}

}  // namespace
}  // namespace quorvale
