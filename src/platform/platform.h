// Everything that the program asks of a computer, in one bundle. A binding makes one.
//
// This room is the seam: an interface for each role of a computer, and what is said once above
// those (registry, registry_text, registry_editor, file_toolkit, workers, ftp_conversation). It may
// use base/ and platform/ui/, and knows no product and no page. The two bindings are platform/host/
// and platform/windows/. Start reading here, then at the role that you need.
#pragma once

#include "platform/disc_writer.h"
#include "platform/files.h"
#include "platform/ftp_client.h"
#include "platform/processes.h"
#include "platform/registry_store.h"
#include "platform/services.h"
#include "platform/shell.h"
#include "platform/system_info.h"
#include "platform/task_scheduler.h"
#include "platform/threads.h"

namespace quorvale {

namespace ui {
class Ui;
}

struct Platform {
  RegistryStore& registry;
  Files& files;
  Shell& shell;
  SystemInfo& system;
  Processes& processes;
  Services& services;
  FtpClient& ftp;
  DiscWriter& discs;
  TaskScheduler& scheduler;
  Threads& threads;
  ui::Ui& ui;
};

}  // namespace quorvale
