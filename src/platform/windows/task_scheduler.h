// The task scheduler of the running system, by its own objects. They come with Internet Explorer 4,
// Windows 98 and all later systems; where they are missing there are no jobs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/task_scheduler.h"

namespace quorvale::windows {

class WindowsTaskScheduler : public TaskScheduler {
 public:
  WindowsTaskScheduler();
  ~WindowsTaskScheduler() override;
  std::vector<std::string> Names() override;
  std::optional<ScheduledTask> Read(const std::string& name) override;
  TaskCreation Create(const ScheduledTask& task) override;
  bool Delete(const std::string& name) override;

 private:
  // The system's scheduler, opened on first use: that can take a while, since its service may have
  // to be started.
  class Opened;
  std::unique_ptr<Opened> opened_;
};

}  // namespace quorvale::windows
