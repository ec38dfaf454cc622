// This program's jobs: their fields, their words, and the next run of all.
#include "schedule/run/schedule_jobs.h"

#include <gtest/gtest.h>

#include "base/dates.h"
#include "core/main/FrmWelcome.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

LocalTime At(int month, int day, int hour, int minute, int second = 0) {
  LocalTime time = DateOfDay(DayNumber(2026, month, day));
  time.hour = hour;
  time.minute = minute;
  time.second = second;
  return time;
}

class ScheduleJobs : public testing::Test {
 protected:
  // 2026-11-14 is a Saturday.
  ScheduleJobs() { machine_.computer().SetClock(At(11, 14, 22, 5, 9)); }

  Application& app() { return machine_.app(); }
  // Puts a job into the scheduler that starts once, at that moment.
  void AddJob(const std::string& name, const LocalTime& time,
              const std::string& comment = kScheduleComment) {
    ScheduledTask job = NewScheduleJob(app(), name, comment, time);
    job.triggers.front().type = TaskTriggerType::kOnce;
    job.triggers.front().begin = time;
    job.triggers.front().begin.second = 0;
    ASSERT_TRUE(machine_.platform().scheduler.Create(job).saved);
  }
  std::string Next() {
    const std::optional<LocalTime> next = NextScheduledRun(app());
    return next ? RunTimeText(app(), next) : "none";
  }
  ui::Label& HomeLabel() {
    FrmWelcome& welcome = app().Get<FrmWelcome>();
    welcome.NextSchedule();
    return welcome.LblNextSchedule;
  }

  TestMachine machine_;
};

// --- Fields -------------------------------------------------------------------------------------

TEST_F(ScheduleJobs, ANewJobRunsForTheUserWhoIsThereAndOnlyWhileLoggedOn) {
  machine_.computer().SetEnvironment("USERNAME", "Anna");
  const ScheduledTask job = NewScheduleJob(app(), "Nightly", kScheduleComment, At(1, 1, 9, 7, 33));
  EXPECT_EQ(job.name, "Nightly");
  EXPECT_EQ(job.application, "C:\\Program Files\\Quorvale\\Quorvale.exe");
  EXPECT_EQ(job.comment, "Quorvale Scheduler");
  EXPECT_EQ(job.flags, 8193u);
  EXPECT_EQ(FlagWords(job.flags), "Interactive - Run only if logged on");
  EXPECT_EQ(job.account, "Anna");
  ASSERT_EQ(job.triggers.size(), 1u);
  const TaskTrigger& trigger = job.triggers.front();
  EXPECT_EQ(trigger.type, TaskTriggerType::kDaily);
  EXPECT_EQ(trigger.interval, 1);
  EXPECT_EQ(trigger.days, 0);
  // From today on, at the time of day alone.
  EXPECT_EQ(DayNumber(trigger.begin.year, trigger.begin.month, trigger.begin.day),
            DayNumber(2026, 11, 14));
  EXPECT_EQ(trigger.begin.hour, 9);
  EXPECT_EQ(trigger.begin.minute, 7);
  EXPECT_EQ(trigger.begin.second, 0);
}

TEST_F(ScheduleJobs, EachSpecialCharacterIsFoundAndOthersAreNot) {
  for (const char c : std::string("?></\\.:;*|'\"")) {
    EXPECT_TRUE(HasSpecialCharacters(std::string("a") + c + "b")) << c;
  }
  EXPECT_FALSE(HasSpecialCharacters("Mail, every day! (1) - #2 & [x] =+~`@$%^_{}"));
  EXPECT_FALSE(HasSpecialCharacters(""));
}

// --- Making -------------------------------------------------------------------------------------

TEST_F(ScheduleJobs, ANameIsTakenByAnyJobInAnyCase) {
  EXPECT_FALSE(IsScheduleNameTaken(app(), "Nightly"));
  AddJob("Nightly", At(11, 15, 9, 0), "Of another program");
  EXPECT_TRUE(IsScheduleNameTaken(app(), "Nightly"));
  EXPECT_TRUE(IsScheduleNameTaken(app(), "NIGHTLY"));
  EXPECT_FALSE(IsScheduleNameTaken(app(), "Nightly 2"));
}

class MakingJobs : public ScheduleJobs {
 protected:
  MakingJobs() { app().session().gAppDataPath = DataFolder(app()); }

  bool Make(const std::string& name) {
    return MakeScheduleJob(app(), NewScheduleJob(app(), name, kScheduleComment, At(1, 1, 9, 7)));
  }
  // The account that was kept, not the one at work.
  Account Kept() {
    const std::vector<std::string> kept = KeptAccounts(app());
    Account account;
    EXPECT_EQ(kept.size(), 1u);
    EXPECT_TRUE(!kept.empty() && LoadAccount(app(), kept[0], &account));
    return account;
  }
};

TEST_F(MakingJobs, AGoodOneHasAnAccountWithNothingToTell) {
  EXPECT_TRUE(Make("Nightly"));
  EXPECT_TRUE(machine_.platform().scheduler.Read("Nightly"));
  EXPECT_EQ(Kept().run(), AccountRun::kSchedule);
  EXPECT_EQ(Kept().name(), "Nightly");
  EXPECT_EQ(Kept().end(), AccountEnd::kDone);
  EXPECT_FALSE(Kept().HasToTell());
  EXPECT_EQ(UnseenAccount(app()), "");
}

TEST_F(MakingJobs, WhatTheSchedulerDidNotTakeIsTold) {
  machine_.faults().scheduler.SetRefusing(true);
  EXPECT_FALSE(Make("Nightly"));
  EXPECT_EQ(Kept().Sentence(),
            "The schedule was not made: the task scheduler did not take it: Nightly.");
  EXPECT_NE(UnseenAccount(app()), "");
}

TEST_F(MakingJobs, ARefusedAccountStillSavesTheRestAndIsNamed) {
  machine_.computer().SetEnvironment("USERNAME", "Anna");
  machine_.faults().scheduler.SetRefusingAccount(true);
  EXPECT_TRUE(Make("Nightly"));
  const std::optional<ScheduledTask> job = machine_.platform().scheduler.Read("Nightly");
  ASSERT_TRUE(job);
  EXPECT_EQ(job->account, "");
  EXPECT_EQ(job->comment, kScheduleComment);
  EXPECT_EQ(Kept().end(), AccountEnd::kDone);
  EXPECT_EQ(Kept().Sentence(), "The schedule \"Nightly\" was made without its account.");
}

// --- Flags --------------------------------------------------------------------------------------

TEST_F(ScheduleJobs, EachFlagHasItsWords) {
  const std::pair<std::uint32_t, const char*> words[] = {
      {4, "Disabled"},
      {64, "Don'FlagsText start if on batteries"},
      {1, "Interactive"},
      {128, "Kill if going on batteries"},
      {32, "Kill on idle end"},
      {2048, "Restart on idle resume"},
      {256, "Run only if docked"},
      {8192, "Run only if logged on"},
      {16, "Start only if idle"},
      {4096, "System required"},
  };
  for (const auto& [bit, text] : words) EXPECT_EQ(FlagWords(bit), text);
  EXPECT_EQ(FlagWords(0), "");
  EXPECT_EQ(FlagWords(512), "");
}

TEST_F(ScheduleJobs, TheSecondBitIsSaidInTwoWays) {
  EXPECT_EQ(FlagWords(2), "Delete when done - Hidden");
}

TEST_F(ScheduleJobs, AllFlagsStandInTheirOrder) {
  EXPECT_EQ(FlagWords(0xFFFF),
            "Delete when done - Disabled - Don'FlagsText start if on batteries - Hidden - "
            "Interactive - Kill if going on batteries - Kill on idle end - Restart on idle resume "
            "- Run only if docked - Run only if logged on - Start only if idle - System required");
}

// --- Details ------------------------------------------------------------------------------------

TEST_F(ScheduleJobs, DetailsAreNineLinesInTheirOrder) {
  ScheduledTask job = NewScheduleJob(app(), "Nightly", kScheduleComment, At(1, 1, 9, 7));
  job.parameters = "qbackup";
  job.creator = "Anna";
  job.status_text = "Ready";
  job.last_run = At(11, 13, 9, 7, 4);
  job.next_run = At(11, 15, 9, 7);
  job.triggers.front().text = TriggerText(job.triggers.front());
  EXPECT_EQ(ScheduleDetails(app(), job),
            "ApplicationName: C:\\Program Files\\Quorvale\\Quorvale.exe\r\n"
            "CommandLine: qbackup\r\n"
            "Comment: Quorvale Scheduler\r\n"
            "Flags: Interactive - Run only if logged on\r\n"
            "LastRunTime: 11/13/2026 9:07:04 AM\r\n"
            "NextRunTime: 11/15/2026 9:07:00 AM\r\n"
            "Creator: Anna\r\n"
            "StatusText: Ready\r\n"
            "Triggers: At 9:07 AM every day, starting 11/14/2026 12:00:00 AM\r\n");
}

TEST_F(ScheduleJobs, AJobThatHasNeverRunShowsNever) {
  const std::string text = ScheduleDetails(app(), ScheduledTask());
  EXPECT_NE(text.find("\r\nLastRunTime: Never\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nNextRunTime: Never\r\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\r\nTriggers: \r\n"));
}

TEST_F(ScheduleJobs, EveryTriggerIsToldAndOnlyAnEndThatIsItsDateIsWrittenAnew) {
  const auto last_line = [this](const std::string& words) {
    ScheduledTask job;
    TaskTrigger trigger;
    trigger.begin = At(11, 4, 9, 7);
    trigger.text = words;
    job.triggers = {trigger};
    const std::string text = ScheduleDetails(app(), job);
    return text.substr(text.find("Triggers: ") + 10);
  };
  EXPECT_EQ(last_line("Um 9:07 jeden Tag, ab 04.11.2026"),
            "Um 9:07 jeden Tag, ab 11/04/2026 12:00:00 AM\r\n");
  EXPECT_EQ(last_line("At 9:07 AM on 11/4/26"), "At 9:07 AM on 11/04/2026 12:00:00 AM\r\n");
  EXPECT_EQ(last_line("x 2026-11-04"), "x 11/04/2026 12:00:00 AM\r\n");
  EXPECT_EQ(last_line("Run at user logon"), "Run at user logon\r\n");
  EXPECT_EQ(last_line("starting 11/4/2026 and ending 12/1/2026"),
            "starting 11/4/2026 and ending 12/1/2026\r\n");
  EXPECT_EQ(last_line("Idle"), "Idle\r\n");
  EXPECT_EQ(last_line(""), "\r\n");
  EXPECT_EQ(last_line("ends in a blank "), "ends in a blank \r\n");
  EXPECT_EQ(last_line("number 99999999999999999999"), "number 99999999999999999999\r\n");

  ScheduledTask job;
  for (const char* words : {"At logon", "When idle"}) {
    TaskTrigger trigger;
    trigger.text = words;
    job.triggers.push_back(trigger);
  }
  EXPECT_TRUE(ScheduleDetails(app(), job).ends_with("Triggers: At logon\r\nWhen idle\r\n"));
}

// --- Times --------------------------------------------------------------------------------------

TEST_F(ScheduleJobs, TimeBoxesHaveTwoDigitsAndTheHalfOfTheDay) {
  EXPECT_EQ(TimeBoxText(At(1, 1, 9, 7)), "09:07 AM");
  EXPECT_EQ(TimeBoxText(At(1, 1, 0, 0)), "12:00 AM");
  EXPECT_EQ(TimeBoxText(At(1, 1, 12, 0)), "12:00 PM");
  EXPECT_EQ(TimeBoxText(At(1, 1, 23, 59)), "11:59 PM");
}

TEST_F(ScheduleJobs, TimesThatAPersonTypesAreRead) {
  const auto read = [](const std::string& text) {
    const std::optional<LocalTime> time = ReadTimeBox(text, At(11, 14, 1, 2, 3));
    if (!time) return std::string("none");
    EXPECT_EQ(time->day, 14);
    return std::to_string(time->hour) + ":" + std::to_string(time->minute) + ":" +
           std::to_string(time->second);
  };
  EXPECT_EQ(read("09:07 AM"), "9:7:0");
  EXPECT_EQ(read(" 9:07 pm "), "21:7:0");
  EXPECT_EQ(read("9:07:30PM"), "21:7:30");
  EXPECT_EQ(read("12:00 AM"), "0:0:0");
  EXPECT_EQ(read("12:30 PM"), "12:30:0");
  EXPECT_EQ(read("21:07"), "21:7:0");
  EXPECT_EQ(read("0:5"), "0:5:0");
  for (const char* bad : {"", "noon", "9", "9:", ":07", "24:00", "9:60", "13:00 AM", "0:10 PM",
                          "9:07 XM", "9:07 AM x", "9.07", "9:07:60", "9:07:", "-9:07", "009:07"}) {
    EXPECT_EQ(read(bad), "none") << bad;
  }
}

// --- The next run -------------------------------------------------------------------------------

TEST_F(ScheduleJobs, WithoutAJobTheHomePageSaysSoInRed) {
  EXPECT_EQ(Next(), "none");
  EXPECT_EQ(HomeLabel().caption.get(), "No Schedule yet Created");
  EXPECT_EQ(HomeLabel().fore_color.get(), ui::Rgb(255, 0, 0));
}

TEST_F(ScheduleJobs, TheNearestRunIsShownInBlue) {
  AddJob("Later", At(11, 16, 8, 0));
  AddJob("Soon", At(11, 14, 23, 30));
  AddJob("Latest", At(12, 24, 18, 0));
  EXPECT_EQ(Next(), "11/14/2026 11:30:00 PM");
  EXPECT_EQ(HomeLabel().caption.get(), "11/14/2026 11:30:00 PM");
  EXPECT_EQ(HomeLabel().fore_color.get(), ui::Rgb(19, 89, 166));
}

TEST_F(ScheduleJobs, AJobOfAnotherProgramDoesNotCount) {
  AddJob("Other", At(11, 14, 22, 30), "Another program's work");
  AddJob("Spelled otherwise", At(11, 14, 22, 40), "quorvale scheduler");
  AddJob("Test", At(11, 14, 22, 50), kTestScheduleComment);
  EXPECT_EQ(Next(), "none");
  AddJob("Own", At(11, 14, 23, 0));
  EXPECT_EQ(Next(), "11/14/2026 11:00:00 PM");
}

TEST_F(ScheduleJobs, AJobWhoseNextRunLiesInThePastDoesNotCount) {
  AddJob("Past", At(11, 14, 22, 4));
  AddJob("This minute", At(11, 14, 22, 5));
  EXPECT_EQ(Next(), "none");
  EXPECT_EQ(HomeLabel().caption.get(), "No Schedule yet Created");
}

TEST_F(ScheduleJobs, AJobThatCannotBeReadIsPassedOver) {
  AddJob("Broken", At(11, 14, 22, 30));
  AddJob("Whole", At(11, 14, 23, 0));
  machine_.faults().scheduler.MakeUnreadable("Broken");
  EXPECT_EQ(Next(), "11/14/2026 11:00:00 PM");
  EXPECT_EQ(OwnScheduleJobs(app()).size(), 1u);
}

TEST_F(ScheduleJobs, TheHomePageAsksAgainEachTimeItIsCalledUp) {
  FrmWelcome& welcome = app().Get<FrmWelcome>();
  EXPECT_EQ(welcome.LblNextSchedule.caption.get(), "No Schedule yet Created");
  AddJob("Soon", At(11, 14, 23, 30));
  machine_.Click(welcome.CmdWC_Home);
  EXPECT_EQ(welcome.LblNextSchedule.caption.get(), "11/14/2026 11:30:00 PM");
  machine_.Restart();
  EXPECT_EQ(app().Get<FrmWelcome>().LblNextSchedule.caption.get(), "11/14/2026 11:30:00 PM");
}

}  // namespace
}  // namespace quorvale
