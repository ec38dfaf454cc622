// The watch on programs and services that stand in the way of a backup or restore.
#pragma once

#include <string>
#include <vector>

#include "platform/processes.h"
#include "platform/services.h"

namespace quorvale {

// The mail programs whose data cannot be touched while they run.
struct WatchedProgram {
  const char* root;             // the tree root that triggers the check
  const char* image;            // image name, compared without regard to case
  const char* backup_message;   // shown on the backup pages
  const char* restore_message;  // shown on the restore pages
};
const std::vector<WatchedProgram>& WatchedPrograms();

// The id of the first process with this image name, without regard to case, else 0.
std::uint32_t FindProcessId(const std::vector<ProcessInfo>& processes, const std::string& image);

// True if the service's state is "RUNNING", without regard to case.
bool ServiceIsRunning(Services& services, const std::string& service_name);

// Action 0 starts; 1 to 3 are control codes. True when it succeeded; throws std::invalid_argument
// for any other action.
bool ControlServiceByName(Services& services, const std::string& service_name, int action);

}  // namespace quorvale
