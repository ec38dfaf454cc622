#include "discovery/products/process_watch.h"

#include <stdexcept>

#include "base/text.h"

namespace quorvale {

const std::vector<WatchedProgram>& WatchedPrograms() {
  static const std::vector<WatchedProgram> programs = {
      {"Outlook Express", "msimn.exe", "Please close Outlook Express to continue.",
       "Please close Outlook Express to continue"},
      {"Microsoft Outlook", "OUTLOOK.exe", "Please close Microsoft Outlook to continue.",
       "Please close Microsoft Outlook to continue"},
      {"Windows Mail", "WinMail.exe", "Please close Windows Mail to continue.",
       "Please close Windows Mail to continue."},
  };
  return programs;
}

std::uint32_t FindProcessId(const std::vector<ProcessInfo>& processes, const std::string& image) {
  for (const ProcessInfo& process : processes) {
    if (EqualsNoCase(process.image, image)) return process.id;
  }
  return 0;
}

bool ServiceIsRunning(Services& services, const std::string& service_name) {
  return EqualsNoCase(services.State(service_name), "RUNNING");
}

bool ControlServiceByName(Services& services, const std::string& service_name, int action) {
  if (action < 0 || action > 3) throw std::invalid_argument("no such service action");
  return action == 0 ? services.Start(service_name) : services.Control(service_name, action);
}

}  // namespace quorvale
