// The running programs that a machine folder tells of.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "base/text.h"
#include "platform/processes.h"

namespace quorvale::host {

class HostProcesses : public Processes {
 public:
  explicit HostProcesses(std::vector<ProcessInfo> running) : running_(std::move(running)) {}

  std::vector<ProcessInfo> List() override { return running_; }
  // The programs of a machine folder show no windows.
  bool WindowExists(const std::string& /*title*/) override { return false; }
  void ActivatePreviousInstance() override { ++activations_; }

  // A program starts, or all copies of it end.
  void Start(const std::string& image, std::uint32_t id) { running_.push_back({image, id}); }
  void End(const std::string& image) {
    std::erase_if(running_,
                  [&](const ProcessInfo& process) { return EqualsNoCase(process.image, image); });
  }
  // How often the other copy of the program was brought to the front.
  int activations() const { return activations_; }

 private:
  std::vector<ProcessInfo> running_;
  int activations_ = 0;
};

}  // namespace quorvale::host
