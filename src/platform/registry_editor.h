// Runs of the system's registry editor. A run is started and not waited for; whatever needs its
// result calls WaitForRuns first.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/shell.h"
#include "platform/system_info.h"

namespace quorvale {

class RegistryEditor {
 public:
  RegistryEditor(Shell& shell, SystemInfo& system, std::function<void()> pump)
      : shell_(shell), system_(system), pump_(std::move(pump)) {}

  // Exports a key with all below it into a file. `with_raised_rights` asks the shell's "runas".
  void Export(const std::string& file, const std::string& key, bool with_raised_rights);
  // Imports a file. False if the editor could not be started; what it did with the file is seen in
  // the registry when its run has ended.
  bool Import(const std::string& file);
  // Lets the outstanding runs end, pumping messages, for at most 30 seconds each. False if one was
  // still at work then.
  bool WaitForRuns();

 private:
  Shell& shell_;
  SystemInfo& system_;
  std::function<void()> pump_;
  std::vector<RunId> runs_;
};

}  // namespace quorvale
