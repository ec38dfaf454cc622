// A computer over a machine folder: everything that the program asks of one, in one object.
#pragma once

#include <memory>
#include <string>

#include "platform/host/code_page.h"
#include "platform/host/disc_writer.h"
#include "platform/host/files.h"
#include "platform/host/ftp_client.h"
#include "platform/host/machine_folder.h"
#include "platform/host/processes.h"
#include "platform/host/registry_store.h"
#include "platform/host/services.h"
#include "platform/host/shell.h"
#include "platform/host/system_info.h"
#include "platform/host/task_scheduler.h"
#include "platform/host/threads.h"
#include "platform/platform.h"

namespace quorvale::host {

class HostPlatform {
 public:
  // Reads a machine folder (host path) and writes nothing. Null, and the reason in `error`, if it
  // cannot be used.
  static std::unique_ptr<HostPlatform> Open(const std::string& machine_folder, MachineError* error);
  HostPlatform(const HostPlatform&) = delete;
  HostPlatform& operator=(const HostPlatform&) = delete;

  // The bundle for an application; it must not outlive this object.
  Platform Bundle(ui::Ui& ui);

  // The end of the program's run: lets outstanding runs of the registry editor end and writes the
  // registry where it was changed. False, and the reason, if that failed. Nothing is written by
  // destruction alone.
  bool Flush(std::string* error);

  HostRegistryStore& registry() { return registry_; }
  HostFiles& files() { return files_; }
  HostSystemInfo& system() { return system_; }
  HostShell& shell() { return shell_; }
  HostProcesses& processes() { return processes_; }
  HostServices& services() { return services_; }
  HostFtpClient& ftp() { return ftp_; }
  HostDiscWriter& discs() { return discs_; }
  HostTaskScheduler& scheduler() { return scheduler_; }
  HostThreads& threads() { return threads_; }

 private:
  HostPlatform(const MachineFolder& machine, std::unique_ptr<CodePage> code_page);

  std::unique_ptr<CodePage> code_page_;
  HostRegistryStore registry_;
  HostFiles files_;
  HostSystemInfo system_;
  HostShell shell_;
  HostProcesses processes_;
  HostServices services_;
  HostFtpClient ftp_;
  HostDiscWriter discs_;
  HostTaskScheduler scheduler_;
  HostThreads threads_;
};

}  // namespace quorvale::host
