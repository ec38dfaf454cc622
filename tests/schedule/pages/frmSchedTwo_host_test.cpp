// The page that lists and deletes schedules.
#include "schedule/pages/frmSchedTwo.h"

#include <gtest/gtest.h>

#include "base/dates.h"
#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/pages/page_layout.h"
#include "platform/host/host_platform.h"
#include "schedule/pages/frmSchedule.h"
#include "schedule/run/schedule_jobs.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kGone[] = "The selected schedule has either been removed or renamed";

class ManagePage : public testing::Test {
 protected:
  ManagePage() {
    LocalTime now = DateOfDay(DayNumber(2026, 11, 14));  // a Saturday
    now.hour = 22;
    now.minute = 5;
    machine_.computer().SetClock(now);
  }

  Application& app() { return machine_.app(); }
  TaskScheduler& scheduler() { return machine_.platform().scheduler; }
  frmSchedTwo& page() { return app().Get<frmSchedTwo>(); }
  void AddJob(const std::string& name, const std::string& comment = kScheduleComment,
              int hour = 9) {
    LocalTime time = machine_.platform().system.Now();
    time.hour = hour;
    ScheduledTask job = NewScheduleJob(app(), name, comment, time);
    job.parameters = "custom";
    ASSERT_TRUE(scheduler().Create(job).saved);
  }
  frmSchedTwo& Open() {
    app().Get<FrmWelcome>();
    machine_.Do([this] { app().Get<FrmWelcome>().QuickLink(2); });
    machine_.Click(app().Get<frmSchedule>().cmdNext);
    return page();
  }
  std::vector<std::string> Rows() {
    std::vector<std::string> names;
    for (const ui::ListView::Row& row : page().ListView1.rows()) names.push_back(row.cells[0]);
    return names;
  }
  // Selects a row as a click does.
  void Select(int row) {
    machine_.Do([this, row] {
      page().ListView1.selected = row;
      page().ListView1.on_item_click();
    });
  }
  void Delete(ui::Answer answer, const std::string& name) {
    machine_.Expect(
        answer, "The operation can't be undone. Are you sure you want to delete \"" + name + "\"?");
    machine_.Click(page().cmdDelete);
  }

  TestMachine machine_;
};

using Names = std::vector<std::string>;

// --- The list -----------------------------------------------------------------------------------

TEST_F(ManagePage, OnlyThisProgramsJobsAreListed) {
  AddJob("Alpha");
  AddJob("Another program's", "Another comment");
  AddJob("In small letters", "quorvale scheduler");
  AddJob("Beta");
  Open();
  EXPECT_EQ(Rows(), (Names{"Alpha", "Beta"}));
  EXPECT_EQ(page().ListView1.columns, (Names{"Name", "Details"}));
  EXPECT_EQ(page().ListView1.rows()[1].key, "KeyBeta");
  EXPECT_EQ(page().lblHeader.caption.get(), "Review / Delete Scheduled Backup");
}

TEST_F(ManagePage, TheFirstRowIsSelectedShownAndHasTheFocus) {
  AddJob("Alpha");
  AddJob("Beta");
  Open();
  EXPECT_EQ(page().ListView1.selected.get(), 0);
  EXPECT_EQ(page().focused, &page().ListView1);
  EXPECT_EQ(page().Text1.text.get(), ScheduleDetails(app(), *scheduler().Read("Alpha")));
}

TEST_F(ManagePage, WithoutAScheduleTheTextSaysSo) {
  AddJob("Another program's", "Another comment");
  Open();
  EXPECT_TRUE(Rows().empty());
  EXPECT_EQ(page().Text1.text.get(), "No Schedule yet Created");
}

TEST_F(ManagePage, AJobThatYieldsNoNameIsSkipped) {
  AddJob("Alpha");
  AddJob("Beta");
  machine_.faults().scheduler.MakeUnreadable("Alpha");
  Open();
  EXPECT_EQ(Rows(), Names{"Beta"});
}

TEST_F(ManagePage, RefreshReadsTheListAnew) {
  Open();
  AddJob("Alpha");
  EXPECT_TRUE(Rows().empty());
  machine_.Click(page().cmdRefresh);
  EXPECT_EQ(Rows(), Names{"Alpha"});
  EXPECT_TRUE(scheduler().Delete("Alpha"));
  machine_.Click(page().cmdRefresh);
  EXPECT_TRUE(Rows().empty());
  EXPECT_EQ(page().Text1.text.get(), "No Schedule yet Created");
}

TEST_F(ManagePage, AHiddenListTakesNoFocus) {
  AddJob("Alpha");
  frmSchedTwo& hidden = page();
  machine_.Do([&] { hidden.cmdRefresh.Click(); });
  EXPECT_EQ(Rows(), Names{"Alpha"});
  EXPECT_EQ(hidden.focused, nullptr);
  EXPECT_FALSE(hidden.Visible());
}

TEST_F(ManagePage, ARowIsFoundByExactlyItsText) {
  AddJob("Alpha");
  Open();
  EXPECT_TRUE(page().checkAllReadyExist("Alpha"));
  EXPECT_FALSE(page().checkAllReadyExist("alpha"));
  EXPECT_FALSE(page().checkAllReadyExist("Alpha "));
  EXPECT_FALSE(page().checkAllReadyExist(""));
  // The second column does not count.
  EXPECT_FALSE(page().checkAllReadyExist(page().ListView1.rows()[0].cells[1]));
}

// --- Details ------------------------------------------------------------------------------------

TEST_F(ManagePage, SelectingShowsAllAboutAJob) {
  AddJob("Alpha");
  AddJob("Beta", kScheduleComment, 23);
  machine_.computer().SetEnvironment("USERNAME", "Anna");
  Open();
  Select(1);
  EXPECT_EQ(page().Text1.text.get(),
            "ApplicationName: C:\\Program Files\\Quorvale\\Quorvale.exe\r\n"
            "CommandLine: custom\r\n"
            "Comment: Quorvale Scheduler\r\n"
            "Flags: Interactive - Run only if logged on\r\n"
            "LastRunTime: Never\r\n"
            "NextRunTime: 11/14/2026 11:05:00 PM\r\n"
            "Creator: Anna\r\n"
            "StatusText: Not yet run\r\n"
            "Triggers: At 11:05 PM every day, starting 11/14/2026 12:00:00 AM\r\n");
}

TEST_F(ManagePage, AJobThatHasNeverRunShowsNever) {
  AddJob("Alpha");
  Open();
  EXPECT_TRUE(Contains(page().Text1.text.get(), "\r\nLastRunTime: Never\r\n"));
}

TEST_F(ManagePage, AJobThatWasRemovedElsewhereIsToldAndTheListReadAnew) {
  AddJob("Alpha");
  AddJob("Beta");
  Open();
  ASSERT_TRUE(scheduler().Delete("Beta"));
  machine_.Expect(ui::Answer::kOk, kGone);
  Select(1);
  EXPECT_EQ(Rows(), Names{"Alpha"});
  EXPECT_TRUE(Contains(page().Text1.text.get(), "CommandLine: custom"));
  ASSERT_TRUE(scheduler().Delete("Alpha"));
  machine_.Expect(ui::Answer::kOk, kGone);
  Select(0);
  EXPECT_TRUE(Rows().empty());
  EXPECT_EQ(page().Text1.text.get(), "No Schedule yet Created");
}

// --- Deleting -----------------------------------------------------------------------------------

TEST_F(ManagePage, WithoutARowThereIsNothingToDelete) {
  Open();
  machine_.Expect(ui::Answer::kOk, "There is no schedule to be deleted");
  machine_.Click(page().cmdDelete);
}

TEST_F(ManagePage, DeletingAsksWithNoPreselectedAndNoChangesNothing) {
  AddJob("Alpha");
  Open();
  const std::string before = page().Text1.text;
  Delete(ui::Answer::kNo, "Alpha");
  const ui::MessageBoxRequest& request = machine_.ui().boxes.back().request;
  EXPECT_EQ(request.buttons, ui::Buttons::kYesNo);
  EXPECT_TRUE(request.second_is_default);
  EXPECT_EQ(Rows(), Names{"Alpha"});
  EXPECT_TRUE(scheduler().Read("Alpha"));
  EXPECT_EQ(page().Text1.text.get(), before);
}

TEST_F(ManagePage, DeletingLeavesTheNextOneSelectedAndTheLastOneTheText) {
  AddJob("Alpha");
  AddJob("Beta", kScheduleComment, 23);
  AddJob("Another program's", "Another comment");
  Open();
  Select(1);
  Delete(ui::Answer::kYes, "Beta");
  EXPECT_EQ(Rows(), Names{"Alpha"});
  EXPECT_EQ(page().ListView1.selected.get(), 0);
  EXPECT_EQ(page().focused, &page().ListView1);
  EXPECT_TRUE(Contains(page().Text1.text.get(), "NextRunTime: 11/15/2026 9:05:00 AM"));
  FrmWelcome& welcome = app().Get<FrmWelcome>();
  EXPECT_EQ(welcome.LblNextSchedule.caption.get(), "11/15/2026 9:05:00 AM");
  Delete(ui::Answer::kYes, "Alpha");
  EXPECT_TRUE(Rows().empty());
  EXPECT_EQ(page().Text1.text.get(), "No Schedule yet Created");
  EXPECT_EQ(welcome.LblNextSchedule.caption.get(), "No Schedule yet Created");
  EXPECT_EQ(welcome.LblNextSchedule.fore_color.get(), ui::Rgb(255, 0, 0));
  EXPECT_TRUE(scheduler().Read("Another program's"));
}

TEST_F(ManagePage, AJobThatCannotBeDeletedStaysInTheList) {
  AddJob("Alpha");
  Open();
  machine_.faults().scheduler.SetRefusing(true);
  Delete(ui::Answer::kYes, "Alpha");
  EXPECT_EQ(Rows(), Names{"Alpha"});
  EXPECT_NE(page().Text1.text.get(), "");
}

// --- The test schedule --------------------------------------------------------------------------

TEST_F(ManagePage, ATestScheduleIsADailyJobWithItsOwnMarkAndInNoList) {
  machine_.computer().SetEnvironment("USERNAME", "Anna");
  Open();
  EXPECT_EQ(page().txttime.text.get(), "10:05 PM");
  EXPECT_EQ(page().Check1.caption.get(), "Every Day");
  EXPECT_EQ(page().Check1.value.get(), 1);
  page().txtSchedName.text = " Try ";
  page().txttime.text = "11:15 pm";
  machine_.Click(page().cmdTest);
  EXPECT_TRUE(Rows().empty());
  EXPECT_EQ(page().Text1.text.get(), "No Schedule yet Created");
  const std::optional<ScheduledTask> job = scheduler().Read("Try");
  ASSERT_TRUE(job && job->triggers.size() == 1);
  EXPECT_EQ(job->application, "C:\\Program Files\\Quorvale\\Quorvale.exe");
  EXPECT_EQ(job->parameters, "");
  EXPECT_EQ(job->comment, "Outlook Backup Scheduler");
  EXPECT_EQ(job->flags, 8193u);
  EXPECT_EQ(job->account, "Anna");
  EXPECT_EQ(job->triggers[0].type, TaskTriggerType::kDaily);
  EXPECT_EQ(job->triggers[0].interval, 1);
  EXPECT_EQ(job->triggers[0].begin.day, 14);
  EXPECT_EQ(job->triggers[0].begin.hour, 23);
  EXPECT_EQ(job->triggers[0].begin.minute, 15);
  EXPECT_EQ(app().Get<FrmWelcome>().LblNextSchedule.caption.get(), "No Schedule yet Created");
}

TEST_F(ManagePage, ATestScheduleNeedsAFreeNameWithoutSpecialCharacters) {
  AddJob("Alpha");
  Open();
  const auto refused = [this](const std::string& name, const std::string& box) {
    page().txtSchedName.text = name;
    machine_.Expect(ui::Answer::kOk, box);
    machine_.Click(page().cmdTest);
    EXPECT_EQ(scheduler().Names().size(), 1u) << name;
  };
  for (const char c : std::string("?><./\\:;*|'\"")) {
    refused(std::string("Try") + c, "Schedule name cannot contain special characters");
  }
  EXPECT_EQ(page().focused, &page().txtSchedName);
  refused("Alpha", "The task already exists. Please enter a new name");
  refused("", "Enter a task name");
  refused("  ", "Enter a task name");
}

TEST_F(ManagePage, ASecondTestScheduleOfTheNameIsRefusedThoughTheListHasNone) {
  Open();
  page().txtSchedName.text = "Try";
  machine_.Click(page().cmdTest);
  machine_.Expect(ui::Answer::kOk, "The task already exists. Please enter a new name");
  machine_.Click(page().cmdTest);
  EXPECT_EQ(scheduler().Names().size(), 1u);
}

TEST_F(ManagePage, ATestScheduleNeedsATime) {
  Open();
  page().txtSchedName.text = "Try";
  page().txttime.text = "later";
  machine_.Expect(ui::Answer::kOk,
                  "later is not a valid time. Valid format for time is HH:MM AM/PM , hour:minute "
                  "followed by a blank space then am/pm");
  machine_.Click(page().cmdTest);
  EXPECT_EQ(page().txttime.text.get(), "10:05 PM");
  EXPECT_TRUE(scheduler().Names().empty());
}

// --- Leaving and layout -------------------------------------------------------------------------

TEST_F(ManagePage, BackLeadsToCreatingAndCancelHome) {
  Open();
  machine_.Click(page().cmdBack);
  EXPECT_FALSE(page().Visible());
  EXPECT_TRUE(app().Get<frmSchedule>().Visible());
  EXPECT_TRUE(app().Get<FrmWelcome>().lblSchedule[0]->bold);
  machine_.Click(app().Get<frmSchedule>().cmdNext);
  machine_.Click(page().cmdCancel);
  EXPECT_FALSE(page().Visible());
  EXPECT_FALSE(app().Get<FrmWelcome>().PicMainBackupBase.visible);
  EXPECT_TRUE(app().Get<FrmWelcome>().cmdWC_Restore.enabled);
}

TEST_F(ManagePage, F1OpensTheTopicOfSchedules) {
  Open();
  EXPECT_TRUE(page().on_key_down(112, 0));
  ASSERT_FALSE(machine_.host().shell().help_shown().empty());
  EXPECT_TRUE(
      EndsWithNoCase(machine_.host().shell().help_shown().back().topic, "Schedule Backup.htm"));
}

TEST_F(ManagePage, NoControlOfTheTwoPagesLiesOverAnotherOrOutside) {
  for (ui::Form* form : std::initializer_list<ui::Form*>{&app().Get<frmSchedule>(), &page()}) {
    for (const ui::Control* control : form->controls()) {
      const ui::Bounds& place = control->bounds.get();
      const std::string name = form->name() + "." + control->name();
      EXPECT_GT(place.width, 0) << name;
      EXPECT_GT(place.height, 0) << name;
      const int left = control->container == nullptr ? page_layout::kStepsWidth : 0;
      const int width = control->container ? control->container->bounds->width : form->Width();
      const int height = control->container ? control->container->bounds->height : form->Height();
      EXPECT_GE(place.left, left) << name;
      EXPECT_GE(place.top, 0) << name;
      EXPECT_LE(place.left + place.width, width) << name;
      EXPECT_LE(place.top + place.height, height) << name;
      for (const ui::Control* other : form->controls()) {
        if (other == control || other->container != control->container) continue;
        const ui::Bounds& its = other->bounds.get();
        const bool apart = place.left + place.width <= its.left ||
                           its.left + its.width <= place.left ||
                           place.top + place.height <= its.top || its.top + its.height <= place.top;
        EXPECT_TRUE(apart) << name << " and " << other->name();
      }
    }
  }
}

}  // namespace
}  // namespace quorvale
