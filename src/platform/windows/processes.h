// The running programs of the running system.
#pragma once

#include "platform/processes.h"

namespace quorvale::windows {

class WindowsProcesses : public Processes {
 public:
  // `title`: what the text of the main window of this program contains.
  explicit WindowsProcesses(std::string title) : title_(std::move(title)) {}

  std::vector<ProcessInfo> List() override;
  bool WindowExists(const std::string& title) override;
  void ActivatePreviousInstance() override;

 private:
  std::string title_;
};

// The id of another process that runs this program's file, 0 if there is none.
std::uint32_t FindOtherInstance();

}  // namespace quorvale::windows
