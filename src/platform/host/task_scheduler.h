// The task scheduler of a machine folder. Its jobs lie in tasks.ini beside machine.ini:
//
//   [Nightly mail]                              the job's name
//   application = C:\Program Files\Quorvale\Quorvale.exe
//   parameters = qbackup
//   comment = Quorvale Scheduler
//   flags = 8193
//   account = Anna
//   creator = Anna
//   trigger = weekly, 2026-11-14 22:05:00, 1, MO FR     also daily, once; 1: every week
//   last_run = 2026-11-20 22:05:00
//
// Nothing is ever started; the next run is reckoned by the machine's clock.
#pragma once

#include <string>
#include <vector>

#include "platform/host/machine_folder.h"
#include "platform/task_scheduler.h"

namespace quorvale::host {

class HostTaskScheduler : public TaskScheduler {
 public:
  // `system` must live as long as this object.
  HostTaskScheduler(std::string machine_folder, SystemInfo& system);

  // False, and the reason, if the machine's tasks.ini cannot be understood.
  bool Check(MachineError* error) const;

  std::vector<std::string> Names() override;
  std::optional<ScheduledTask> Read(const std::string& name) override;
  TaskCreation Create(const ScheduledTask& task) override;
  bool Delete(const std::string& name) override;

 private:
  // Nothing, and the reason, if the file cannot be understood.
  std::optional<std::vector<ScheduledTask>> ReadAll(MachineError* error) const;
  bool WriteAll(const std::vector<ScheduledTask>& tasks) const;

  std::string file_;
  SystemInfo& system_;
};

}  // namespace quorvale::host
