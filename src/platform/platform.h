// Everything that the program asks of a computer, in one bundle. A binding makes one.
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
#include "platform/ui/ui.h"

namespace quorvale {

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
