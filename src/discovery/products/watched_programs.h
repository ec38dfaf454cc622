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
// Those of the products, in the products' order: the first that runs is named to the user.
std::vector<WatchedProgram> WatchedPrograms();

// The id of the first process with this image name, without regard to case, else 0.
std::uint32_t FindProcessId(const std::vector<ProcessInfo>& processes, const std::string& image);

// True if the service's state is "RUNNING", without regard to case.
bool ServiceIsRunning(Services& services, const std::string& service_name);

// The numbers are those of the system's calls; a start is none of its control codes.
enum class ServiceAction { kStart = 0, kStop = 1, kPause = 2, kContinue = 3 };
// True when it succeeded; throws std::invalid_argument for a number that is no action.
bool ControlServiceByName(Services& services, const std::string& service_name,
                          ServiceAction action);

}  // namespace quorvale
