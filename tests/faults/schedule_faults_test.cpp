// Every call that the making of a schedule takes fails once. No schedule is called created that is
// not there as it was wanted, unless an account says so; nobody else's is touched.
#include <gtest/gtest.h>

#include <algorithm>

#include "core/main/FrmWelcome.h"
#include "core/main/page_sets.h"
#include "faults/fault_computer.h"
#include "faults/fault_walk.h"
#include "schedule/pages/frmSchedule.h"

namespace quorvale::fault_test {
namespace {

constexpr char kName[] = "Evening mail";
constexpr char kCreated[] = "Schedule created successfully";

// All that makes a job what it is.
std::string Told(const ScheduledTask& job) {
  std::string text = job.name + "|" + job.application + "|" + job.parameters + "|" + job.comment +
                     "|" + job.account + "|" + std::to_string(job.flags);
  for (const TaskTrigger& trigger : job.triggers) {
    text += "|" + std::to_string(static_cast<int>(trigger.type)) + " " +
            std::to_string(trigger.interval) + " " + std::to_string(trigger.days) + " " +
            std::to_string(trigger.begin.day) + " " + std::to_string(trigger.begin.hour) + ":" +
            std::to_string(trigger.begin.minute);
  }
  return text;
}

std::string Told(const MemoryScheduler& scheduler, const std::string& name) {
  for (const ScheduledTask& job : scheduler.tasks) {
    if (job.name == name) return Told(job);
  }
  return "";
}

ScheduledTask JobOf(const std::string& name, const std::string& comment) {
  ScheduledTask job;
  job.name = name;
  job.comment = comment;
  job.triggers.emplace_back();
  return job;
}

// The page of schedules on a computer that has some.
class Scheduling {
 public:
  Scheduling() {
    computer.memory.scheduler.tasks = {JobOf("Nightly", "Quorvale Scheduler"),
                                       JobOf("Tidy up", "of another program")};
    ui().loaded_forms = [this] { return app_.LoadedForms(); };
    ui().after_step = [this] { app_.CollectUnloaded(); };
    ui().box_handler = [](const ui::MessageBoxRequest&) { return ui::Answer::kOk; };
    app_.Get<FrmWelcome>().Show();
  }
  ~Scheduling() {
    ui().loaded_forms = nullptr;
    ui().after_step = nullptr;
  }

  // A person's schedule for Mondays and Fridays, of whose creation the Nth call fails.
  void Create(std::uint64_t number) {
    frmSchedule& page = app_.Get<frmSchedule>();
    page.txtSchedName.text = kName;
    page.DTPTime.value.hour = 21;
    page.DTPTime.value.minute = 7;
    page.ChkM.value = 1;
    page.ChkF.value = 1;
    ui().boxes.clear();
    computer.faults.FailCall(number);
    ui().Step([&page] { page.Command6.Click(); });
    ui().RunUntilIdle();
  }
  bool SaysCreated() {
    return std::any_of(ui().boxes.begin(), ui().boxes.end(),
                       [](const auto& box) { return box.request.text == kCreated; });
  }
  // True if an account says that something went wrong.
  bool AccountTells() {
    const Account& account = app_.account();
    return !account.entries().empty() || account.end() == AccountEnd::kFailed;
  }

  FaultComputer computer;

 private:
  ui::HeadlessUi& ui() { return computer.memory.ui; }

  Application app_{computer.faults.platform(), ProgramPages()};
};

FaultOutcome CreateWithFault(std::uint64_t number, const std::string& wanted) {
  Scheduling scheduling;
  const MemoryScheduler& scheduler = scheduling.computer.memory.scheduler;
  const std::string others = Told(scheduler, "Nightly") + Told(scheduler, "Tidy up");
  scheduling.Create(number);
  FaultOutcome outcome;
  outcome.failed_call = scheduling.computer.faults.failed_call();
  const std::string made = Told(scheduler, kName);
  if (scheduling.SaysCreated() && made != wanted && !scheduling.AccountTells()) {
    outcome.problems.push_back("called created, and is not, nor does an account say so");
  }
  if (!made.empty() && made != wanted) outcome.problems.push_back("half made: " + made);
  if (Told(scheduler, "Nightly") + Told(scheduler, "Tidy up") != others) {
    outcome.problems.push_back("another schedule was touched");
  }
  if (scheduling.computer.faults.files.open_files() != 0) {
    outcome.problems.push_back("a file stays open");
  }
  return outcome;
}

TEST(ScheduleFaults, AScheduleWithAFaultIsMadeOrNotCalledMade) {
  Scheduling sound;
  sound.Create(0);
  const std::string wanted = Told(sound.computer.memory.scheduler, kName);
  ASSERT_TRUE(sound.SaysCreated());
  ASSERT_NE(wanted, "");
  EXPECT_FALSE(sound.AccountTells());
  TryEveryFault("a schedule",
                [&wanted](std::uint64_t number) { return CreateWithFault(number, wanted); });
}

}  // namespace
}  // namespace quorvale::fault_test
