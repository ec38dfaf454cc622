// The logs of backups and restores that the log page shows: one format, from the job in the
// session.
#pragma once

#include <string>
#include <vector>

namespace quorvale {

class Program;

// Both kinds of log of a backup stand in one file, the later in place of the earlier.
std::string BackupLogPath(const Program& program);
// An existing log is replaced by each of these.
void WriteReviewLog(Program& program, const std::string& path);
void WriteRunLog(Program& program, const std::string& path,
                 const std::vector<std::string>& skipped);
void WriteRestoreLog(Program& program, const std::string& path);

}  // namespace quorvale
