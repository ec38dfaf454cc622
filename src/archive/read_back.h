// Reads an archive that was just written, before it takes its name.
#pragma once

#include <string>
#include <vector>

#include "archive/operation_monitor.h"
#include "archive/zip_format.h"
#include "platform/files.h"
#include "platform/system_info.h"
#include "platform/workers.h"

namespace quorvale::zip {

struct ReadBack {
  Files& files;
  SystemInfo& system;
  Workers& workers;
  OperationMonitor& monitor;

  // True if the directory in these files (the parts in their order) says what was meant, and every
  // entry unpacks. The stage of the progress begins at that percentage.
  bool Fits(const std::vector<std::string>& paths, const std::vector<Record>& meant,
            const std::string& password, int first_percent);
};

}  // namespace quorvale::zip
