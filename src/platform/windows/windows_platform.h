// The running system as the program sees it.
#pragma once

#include <string>

#include "platform/platform.h"
#include "platform/windows/automation.h"
#include "platform/windows/disc_writer.h"
#include "platform/windows/files.h"
#include "platform/windows/ftp_client.h"
#include "platform/windows/processes.h"
#include "platform/windows/registry_store.h"
#include "platform/windows/services.h"
#include "platform/windows/shell.h"
#include "platform/windows/system_info.h"
#include "platform/windows/task_scheduler.h"
#include "platform/windows/threads.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {

class WindowsPlatform {
 public:
  // `title`: what the main window's text contains; by it another running copy is found.
  explicit WindowsPlatform(const std::string& title) : processes_(title) {}

  Platform& platform() { return platform_; }
  WindowsUi& ui() { return ui_; }

 private:
  ComponentLibrary component_library_;  // first: the others call into it
  WindowsRegistryStore registry_;
  WindowsFiles files_;
  WindowsShell shell_;
  WindowsSystemInfo system_;
  WindowsProcesses processes_;
  WindowsServices services_;
  WindowsFtpClient ftp_{files_};
  WindowsDiscWriter discs_;
  WindowsTaskScheduler scheduler_;
  WindowsThreads threads_;
  WindowsUi ui_;
  Platform platform_{registry_, files_, shell_,     system_,  processes_, services_,
                     ftp_,      discs_, scheduler_, threads_, ui_};
};

}  // namespace quorvale::windows
