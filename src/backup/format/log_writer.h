// The logs of backups and restores that the log page shows: one format, from the job in the
// session.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"

namespace quorvale {

class Program;

// Both kinds of log of a backup stand in one file, the later in place of the earlier.
std::string BackupLogPath(const Program& program);
// An existing log is replaced by each of these. They tell why it could not be written.
FileStatus WriteReviewLog(Program& program, const std::string& path);
FileStatus WriteRunLog(Program& program, const std::string& path,
                       const std::vector<std::string>& skipped);
FileStatus WriteRestoreLog(Program& program, const std::string& path);

}  // namespace quorvale
