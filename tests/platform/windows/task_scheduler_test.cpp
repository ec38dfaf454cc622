// The binding to the system's task scheduler, on the scheduler of the system that runs here.
#include "platform/windows/task_scheduler.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/dates.h"
#include "discovery/products/watched_programs.h"
#include "platform/windows/automation.h"
#include "platform/windows/services.h"
#include "platform/windows/system_info.h"

namespace quorvale::windows {
namespace {

constexpr char kName[] = "Quorvale scheduler test";

class TaskSchedulerTest : public testing::Test {
 protected:
  TaskSchedulerTest() { tasks_.Delete(kName); }
  ~TaskSchedulerTest() override { tasks_.Delete(kName); }

  static ScheduledTask Weekly() {
    ScheduledTask task;
    task.name = kName;
    task.application = "C:\\Program Files\\Quorvale\\Quorvale.exe";
    task.parameters = "auto";
    task.comment = "A comment \xC3\xA4";
    task.flags = 8193;
    task.account = WindowsSystemInfo().Environment("USERNAME");
    TaskTrigger trigger;
    trigger.type = TaskTriggerType::kWeekly;
    trigger.begin = WindowsSystemInfo().Now();
    trigger.begin.hour = 9;
    trigger.begin.minute = 7;
    trigger.begin.second = 0;
    trigger.days = 34;
    task.triggers.push_back(trigger);
    return task;
  }
  bool IsListed() {
    const std::vector<std::string> names = tasks_.Names();
    return std::count(names.begin(), names.end(), kName) == 1;
  }

  ComponentLibrary library_;
  WindowsTaskScheduler tasks_;
};

TEST_F(TaskSchedulerTest, AJobComesBackWithAllItsFields) {
  EXPECT_FALSE(IsListed());
  const TaskCreation creation = tasks_.Create(Weekly());
  ASSERT_TRUE(creation.saved);
  EXPECT_EQ(creation.refused, std::vector<std::string>());
  EXPECT_TRUE(IsListed());
  const std::optional<ScheduledTask> read = tasks_.Read(kName);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->name, kName);
  EXPECT_EQ(read->application, Weekly().application);
  EXPECT_EQ(read->parameters, "auto");
  EXPECT_EQ(read->comment, Weekly().comment);
  EXPECT_EQ(read->flags, 8193u);
  EXPECT_EQ(read->status_text, "Not yet run");
  EXPECT_FALSE(read->last_run);
  ASSERT_EQ(read->triggers.size(), 1u);
  const TaskTrigger& trigger = read->triggers[0];
  EXPECT_EQ(trigger.type, TaskTriggerType::kWeekly);
  EXPECT_EQ(trigger.interval, 1);
  EXPECT_EQ(trigger.days, 34);
  EXPECT_EQ(trigger.begin.day, Weekly().triggers[0].begin.day);
  EXPECT_EQ(trigger.begin.hour, 9);
  EXPECT_EQ(trigger.begin.minute, 7);
  EXPECT_NE(trigger.text.find(' '), std::string::npos);
}

// The system's own reckoning and ours agree.
TEST_F(TaskSchedulerTest, TheNextRunIsTheSystems) {
  for (const std::uint16_t days : {1, 2, 34, 64, 127}) {
    ScheduledTask task = Weekly();
    task.triggers[0].days = days;
    ASSERT_TRUE(tasks_.Create(task).saved);
    const std::optional<ScheduledTask> read = tasks_.Read(kName);
    ASSERT_TRUE(read && read->next_run) << days;
    const std::optional<LocalTime> ours = NextRunOf(task.triggers, WindowsSystemInfo().Now());
    ASSERT_TRUE(ours);
    EXPECT_EQ(MinuteNumber(*read->next_run), MinuteNumber(*ours)) << days;
    EXPECT_TRUE(tasks_.Delete(kName));
  }
}

TEST_F(TaskSchedulerTest, ADailyTriggerHasNoMask) {
  ScheduledTask task = Weekly();
  task.triggers[0].type = TaskTriggerType::kDaily;
  task.triggers[0].days = 0;
  ASSERT_TRUE(tasks_.Create(task).saved);
  const std::optional<ScheduledTask> read = tasks_.Read(kName);
  ASSERT_TRUE(read && read->triggers.size() == 1);
  EXPECT_EQ(read->triggers[0].type, TaskTriggerType::kDaily);
  EXPECT_EQ(read->triggers[0].interval, 1);
  EXPECT_EQ(read->triggers[0].days, 0);
}

TEST_F(TaskSchedulerTest, ASecondJobOfTheNameIsRefusedAndTheFirstStays) {
  ASSERT_TRUE(tasks_.Create(Weekly()).saved);
  ScheduledTask second = Weekly();
  second.comment = "Second";
  EXPECT_FALSE(tasks_.Create(second).saved);
  second.name = "QUORVALE SCHEDULER TEST";
  EXPECT_FALSE(tasks_.Create(second).saved);
  EXPECT_EQ(tasks_.Read(kName)->comment, Weekly().comment);
}

TEST_F(TaskSchedulerTest, WhatIsNotThereIsNeitherReadNorDeleted) {
  EXPECT_FALSE(tasks_.Read(kName));
  EXPECT_FALSE(tasks_.Delete(kName));
  ASSERT_TRUE(tasks_.Create(Weekly()).saved);
  EXPECT_TRUE(tasks_.Delete(kName));
  EXPECT_FALSE(tasks_.Read(kName));
  EXPECT_FALSE(IsListed());
}

TEST_F(TaskSchedulerTest, ATriggerOfAnotherTypeCannotBeMadeAndLeavesNoJob) {
  ScheduledTask task = Weekly();
  task.triggers[0].type = TaskTriggerType::kOther;
  EXPECT_FALSE(tasks_.Create(task).saved);
  EXPECT_FALSE(IsListed());
}

// The state is what the system tells: with its objects in use, the scheduler's service runs.
TEST_F(TaskSchedulerTest, TheServiceOfTheSchedulerRuns) {
  tasks_.Names();
  WindowsServices services;
  EXPECT_TRUE(ServiceIsRunning(services, "Schedule"));
  EXPECT_TRUE(ServiceIsRunning(services, "SCHEDULE"));
  EXPECT_FALSE(ServiceIsRunning(services, "Schedule2"));
}

}  // namespace
}  // namespace quorvale::windows
