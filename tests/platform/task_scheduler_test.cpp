// Reckoning and words of triggers, as far as no system has them itself.
#include "platform/task_scheduler.h"

#include <gtest/gtest.h>

#include "base/dates.h"

namespace quorvale {
namespace {

LocalTime At(int year, int month, int day, int hour, int minute, int second = 0) {
  LocalTime time = DateOfDay(DayNumber(year, month, day));
  time.hour = hour;
  time.minute = minute;
  time.second = second;
  return time;
}

TaskTrigger Trigger(TaskTriggerType type, const LocalTime& begin, std::uint16_t days = 0,
                    int interval = 1) {
  TaskTrigger trigger;
  trigger.type = type;
  trigger.begin = begin;
  trigger.days = days;
  trigger.interval = interval;
  return trigger;
}

// "11-16 22:05", or "none".
std::string Next(const TaskTrigger& trigger, const LocalTime& now) {
  const std::optional<LocalTime> run = NextRunOf(trigger, now);
  if (!run) return "none";
  EXPECT_EQ(run->second, 0);
  EXPECT_EQ(run->weekday, DateOfDay(DayNumber(run->year, run->month, run->day)).weekday);
  char text[64];
  std::snprintf(text, sizeof(text), "%d-%d %02d:%02d", run->month, run->day, run->hour,
                run->minute);
  return text;
}

// 2026-11-14 is a Saturday.
const LocalTime kSaturday = At(2026, 11, 14, 22, 5);

TEST(NextRunOf, DailyRunsTodayWhileItsTimeIsToComeAndElseTomorrow) {
  const TaskTrigger trigger = Trigger(TaskTriggerType::kDaily, kSaturday);
  EXPECT_EQ(Next(trigger, At(2026, 11, 14, 22, 4, 59)), "11-14 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 11, 14, 22, 5, 0)), "11-15 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 11, 14, 22, 5, 30)), "11-15 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 12, 31, 23, 0)), "1-1 22:05");
}

TEST(NextRunOf, NothingRunsBeforeItsFirstDay) {
  EXPECT_EQ(Next(Trigger(TaskTriggerType::kDaily, kSaturday), At(2026, 10, 1, 8, 0)),
            "11-14 22:05");
  EXPECT_EQ(Next(Trigger(TaskTriggerType::kWeekly, kSaturday, 2), At(2026, 10, 1, 8, 0)),
            "11-16 22:05");
}

TEST(NextRunOf, EveryThirdDayCountsFromTheFirst) {
  const TaskTrigger trigger = Trigger(TaskTriggerType::kDaily, kSaturday, 0, 3);
  EXPECT_EQ(Next(trigger, At(2026, 11, 14, 23, 0)), "11-17 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 11, 18, 8, 0)), "11-20 22:05");
}

TEST(NextRunOf, MondayAndFridayFollowEachOther) {
  const TaskTrigger trigger = Trigger(TaskTriggerType::kWeekly, kSaturday, 34);
  EXPECT_EQ(Next(trigger, At(2026, 11, 14, 8, 0)), "11-16 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 11, 16, 22, 5)), "11-20 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 11, 20, 23, 0)), "11-23 22:05");
}

TEST(NextRunOf, EachDayBitIsItsDay) {
  // Sunday 1 to Saturday 64; the week after that Saturday begins with Sunday the 15th.
  for (int day = 0; day < 7; ++day) {
    const TaskTrigger trigger =
        Trigger(TaskTriggerType::kWeekly, kSaturday, static_cast<std::uint16_t>(1 << day));
    EXPECT_EQ(Next(trigger, At(2026, 11, 15, 8, 0)), "11-" + std::to_string(15 + day) + " 22:05");
  }
}

TEST(NextRunOf, EverySecondWeekCountsFromTheWeekOfTheFirstDay) {
  const TaskTrigger trigger = Trigger(TaskTriggerType::kWeekly, kSaturday, 2, 2);
  EXPECT_EQ(Next(trigger, At(2026, 11, 14, 23, 0)), "11-23 22:05");
  EXPECT_EQ(Next(trigger, At(2026, 11, 23, 22, 5)), "12-7 22:05");
}

TEST(NextRunOf, OnceIsOnceAndUnknownTypesNever) {
  const TaskTrigger once = Trigger(TaskTriggerType::kOnce, kSaturday);
  EXPECT_EQ(Next(once, At(2026, 11, 1, 8, 0)), "11-14 22:05");
  EXPECT_EQ(Next(once, At(2026, 11, 14, 22, 5)), "none");
  EXPECT_EQ(Next(Trigger(TaskTriggerType::kOther, kSaturday), At(2026, 11, 1, 8, 0)), "none");
  EXPECT_EQ(Next(Trigger(TaskTriggerType::kWeekly, kSaturday, 0), At(2026, 11, 1, 8, 0)), "none");
}

TEST(NextRunOf, TheFirstOfSeveralTriggersCounts) {
  const std::vector<TaskTrigger> triggers = {
      Trigger(TaskTriggerType::kWeekly, kSaturday, 32),
      Trigger(TaskTriggerType::kWeekly, kSaturday, 2),
  };
  const std::optional<LocalTime> run = NextRunOf(triggers, At(2026, 11, 14, 8, 0));
  ASSERT_TRUE(run);
  EXPECT_EQ(run->day, 16);
  EXPECT_FALSE(NextRunOf(std::vector<TaskTrigger>(), kSaturday));
}

TEST(TriggerText, SaysTimeDaysAndFirstDay) {
  const LocalTime morning = At(2026, 11, 4, 9, 7);
  EXPECT_EQ(TriggerText(Trigger(TaskTriggerType::kDaily, morning)),
            "At 9:07 AM every day, starting 11/4/2026");
  EXPECT_EQ(TriggerText(Trigger(TaskTriggerType::kDaily, morning, 0, 2)),
            "At 9:07 AM every 2 days, starting 11/4/2026");
  EXPECT_EQ(TriggerText(Trigger(TaskTriggerType::kWeekly, kSaturday, 34)),
            "At 10:05 PM every Mon, Fri of every week, starting 11/14/2026");
  EXPECT_EQ(TriggerText(Trigger(TaskTriggerType::kWeekly, At(2026, 1, 1, 0, 0), 65, 3)),
            "At 12:00 AM every Sat, Sun of every 3 weeks, starting 1/1/2026");
  EXPECT_EQ(TriggerText(Trigger(TaskTriggerType::kOnce, At(2026, 1, 1, 12, 30))),
            "At 12:30 PM on 1/1/2026");
}

TEST(TaskStatusText, HasAWordForEachState) {
  EXPECT_EQ(TaskStatusText(kTaskReady), "Ready");
  EXPECT_EQ(TaskStatusText(kTaskIsDisabled), "Disabled");
  EXPECT_EQ(TaskStatusText(kTaskHasNotRun), "Not yet run");
  EXPECT_EQ(TaskStatusText(kTaskNotScheduled), "Not scheduled");
  for (std::uint32_t status = 0x41300; status <= 0x41308; ++status) {
    EXPECT_NE(TaskStatusText(status), "") << status;
  }
  EXPECT_EQ(TaskStatusText(0), "");
}

}  // namespace
}  // namespace quorvale
