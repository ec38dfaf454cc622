// The jobs of a machine folder.
#include "platform/host/task_scheduler.h"

#include "machine_fixture.h"

namespace quorvale::host {
namespace {

class HostTasks : public MachineTest {
 protected:
  TaskScheduler& tasks() { return platform_->scheduler(); }
  std::string File() { return folder_ / "tasks.ini"; }
  static ScheduledTask Nightly() {
    ScheduledTask task;
    task.name = "Nightly mail";
    task.application = "C:\\Program Files\\Quorvale\\Quorvale.exe";
    task.parameters = "qbackup";
    task.comment = "Quorvale Scheduler";
    task.flags = 8193;
    task.account = "Anna";
    TaskTrigger trigger;
    trigger.type = TaskTriggerType::kWeekly;
    trigger.begin = *ParseLocalTime("2026-11-14 09:07:00");
    trigger.days = 34;
    task.triggers.push_back(trigger);
    return task;
  }
  // The reason why a machine with this tasks.ini cannot be used; "" if it can.
  std::string WhyNot(const std::string& text) {
    WriteHost(File(), text);
    MachineError error;
    const bool opened = HostPlatform::Open(folder_.path(), &error) != nullptr;
    EXPECT_EQ(opened, error.message.empty());
    return opened ? "" : error.Text().substr(error.Text().find("tasks.ini"));
  }
};

TEST_F(HostTasks, AMachineWithoutTheFileHasNoJobs) {
  EXPECT_TRUE(tasks().Names().empty());
  EXPECT_FALSE(tasks().Read("Nightly mail"));
  EXPECT_FALSE(tasks().Delete("Nightly mail"));
  EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(HostTasks, AJobIsOnDiskAtOnceWithAllItsFields) {
  ASSERT_TRUE(tasks().Create(Nightly()).saved);
  EXPECT_EQ(ReadHost(File()),
            "[Nightly mail]\n"
            "application = C:\\Program Files\\Quorvale\\Quorvale.exe\n"
            "parameters = qbackup\n"
            "comment = Quorvale Scheduler\n"
            "flags = 8193\n"
            "account = Anna\n"
            "creator = Anna\n"
            "trigger = weekly, 2026-11-14 09:07:00, 1, MO FR\n");
  Reopen();
  EXPECT_EQ(tasks().Names(), std::vector<std::string>{"Nightly mail"});
  const std::optional<ScheduledTask> read = tasks().Read("NIGHTLY MAIL");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->name, "Nightly mail");
  EXPECT_EQ(read->application, Nightly().application);
  EXPECT_EQ(read->parameters, "qbackup");
  EXPECT_EQ(read->comment, "Quorvale Scheduler");
  EXPECT_EQ(read->flags, 8193u);
  EXPECT_EQ(read->account, "Anna");
  EXPECT_EQ(read->creator, "Anna");
  EXPECT_EQ(read->status_text, "Not yet run");
  EXPECT_FALSE(read->last_run);
  ASSERT_EQ(read->triggers.size(), 1u);
  EXPECT_EQ(read->triggers[0].type, TaskTriggerType::kWeekly);
  EXPECT_EQ(read->triggers[0].days, 34);
  EXPECT_EQ(read->triggers[0].begin.hour, 9);
  EXPECT_EQ(read->triggers[0].text, "At 9:07 AM every Mon, Fri of every week, starting 11/14/2026");
  // The machine's clock says Saturday, 2026-11-14 22:05:09.
  ASSERT_TRUE(read->next_run);
  EXPECT_EQ(read->next_run->day, 16);
  EXPECT_EQ(read->next_run->hour, 9);
}

TEST_F(HostTasks, ASecondJobOfTheNameIsRefusedAndTheFirstStays) {
  ASSERT_TRUE(tasks().Create(Nightly()).saved);
  const std::string before = ReadHost(File());
  ScheduledTask other = Nightly();
  other.name = "NIGHTLY MAIL";
  other.comment = "Another";
  EXPECT_FALSE(tasks().Create(other).saved);
  EXPECT_EQ(ReadHost(File()), before);
}

TEST_F(HostTasks, DeletingLeavesTheOthers) {
  ASSERT_TRUE(tasks().Create(Nightly()).saved);
  ScheduledTask other = Nightly();
  other.name = "Zweite \xC3\xA4 [1]";
  ASSERT_TRUE(tasks().Create(other).saved);
  EXPECT_TRUE(tasks().Delete("nightly mail"));
  EXPECT_EQ(tasks().Names(), std::vector<std::string>{other.name});
  EXPECT_TRUE(tasks().Read(other.name));
  EXPECT_TRUE(tasks().Delete(other.name));
  EXPECT_TRUE(tasks().Names().empty());
}

TEST_F(HostTasks, NamesThatTheFileCannotHoldAreRefused) {
  for (const char* name : {"", " blank", "a\\b", "a/b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a|b",
                           "two\nlines", "\xFF"}) {
    ScheduledTask task = Nightly();
    task.name = name;
    EXPECT_FALSE(tasks().Create(task).saved) << name;
  }
  ScheduledTask task = Nightly();
  task.triggers.front().type = TaskTriggerType::kOther;
  EXPECT_FALSE(tasks().Create(task).saved);
  EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(HostTasks, TextsThatTheFileCannotHoldAreLeftOutAndNamed) {
  ScheduledTask task = Nightly();
  task.comment = "a\nflags = 0";
  task.account = "two\r\nlines";
  const TaskCreation creation = tasks().Create(task);
  EXPECT_TRUE(creation.saved);
  EXPECT_EQ(creation.refused, (std::vector<std::string>{"comment", "account"}));
  const std::optional<ScheduledTask> made = tasks().Read(task.name);
  ASSERT_TRUE(made);
  EXPECT_EQ(made->comment, "");
  EXPECT_EQ(made->account, "");
  EXPECT_EQ(made->flags, task.flags);
  EXPECT_EQ(made->application, task.application);
}

TEST_F(HostTasks, AHandWrittenFileIsRead) {
  EXPECT_EQ(WhyNot("\xEF\xBB\xBF# jobs\r\n[Other]\r\nComment = Of another program\r\n"
                   "trigger = once, 2026-12-24 18:00:00, 1\r\ntrigger = daily, 2026-11-14 "
                   "08:00:00, 2\r\nlast_run = 2026-11-13 08:00:00\r\n\r\n[Off]\r\nflags = 4\r\n"
                   "trigger = daily, 2026-11-14 08:00:00, 1\r\n[Idle]\r\n"),
            "");
  Reopen();
  const std::optional<ScheduledTask> other = tasks().Read("Other");
  ASSERT_TRUE(other && other->last_run && other->next_run);
  EXPECT_EQ(other->last_run->day, 13);
  EXPECT_EQ(other->next_run->day, 16);
  EXPECT_EQ(other->status_text, "Ready");
  EXPECT_EQ(tasks().Read("Off")->status_text, "Disabled");
  EXPECT_FALSE(tasks().Read("Off")->next_run);
  EXPECT_EQ(tasks().Read("Idle")->status_text, "Not scheduled");
}

TEST_F(HostTasks, AFileThatCannotBeUnderstoodIsToldWithItsLine) {
  EXPECT_EQ(WhyNot("flags = 1\n"), "tasks.ini, line 1: the line stands before the first job");
  EXPECT_EQ(WhyNot("[A]\nflags = x\n"), "tasks.ini, line 2: \"x\" is no number of flags");
  EXPECT_EQ(WhyNot("[A]\ncolour = red\n"), "tasks.ini, line 2: a job has no \"colour\"");
  EXPECT_EQ(WhyNot("[A]\n\nno sign\n"), "tasks.ini, line 3: the line has no \"=\"");
  EXPECT_EQ(WhyNot("[A]\n[a]\n"), "tasks.ini, line 2: job \"a\" stands twice");
  EXPECT_EQ(WhyNot("[A\n"), "tasks.ini, line 1: \"[A\" names no job");
  EXPECT_EQ(WhyNot("[A]\nlast_run = yesterday\n"),
            "tasks.ini, line 2: \"yesterday\" is no moment; one looks like 2026-11-14 22:05:09");
  for (const char* trigger :
       {"", "hourly, 2026-11-14 22:05:00, 1", "daily, 2026-13-14 22:05:00, 1",
        "daily, 2026-11-14 22:05:00", "daily, 2026-11-14 22:05:00, 0",
        "weekly, 2026-11-14 22:05:00, 1", "weekly, 2026-11-14 22:05:00, 1, XX",
        "weekly, 2026-11-14 22:05:00, 1, "}) {
    EXPECT_NE(WhyNot(std::string("[A]\ntrigger = ") + trigger + "\n")
                  .find("line 2: \"" + std::string(trigger).substr(0, 5)),
              std::string::npos)
        << trigger;
  }
}

TEST_F(HostTasks, ADamagedFileIsNeverOverwritten) {
  ASSERT_TRUE(tasks().Create(Nightly()).saved);
  WriteHost(File(), "[A]\ndamaged\n");
  EXPECT_TRUE(tasks().Names().empty());
  ScheduledTask task = Nightly();
  task.name = "B";
  EXPECT_FALSE(tasks().Create(task).saved);
  EXPECT_FALSE(tasks().Delete("A"));
  EXPECT_EQ(ReadHost(File()), "[A]\ndamaged\n");
}

}  // namespace
}  // namespace quorvale::host
