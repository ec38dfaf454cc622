// Makes one file of an archive in parts: the parts' bytes as they are, and behind them a directory
// that says where each entry stands now.
#pragma once

#include <string>
#include <vector>

#include "archive/archive.h"
#include "archive/archive_output.h"
#include "archive/directory_reader.h"
#include "archive/operation_monitor.h"
#include "platform/files.h"
#include "platform/system_info.h"

namespace quorvale::zip {

class JoinOperation {
 public:
  JoinOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                OperationMonitor& monitor, const std::string& target);

  Result Run();

 private:
  bool ReadParts();
  // These return false when the operation is to end: after an abort, or when status_ tells why.
  bool CopyEntries();
  bool WriteDirectory();
  bool Check(FileStatus status);
  Result FailureResult() const;

  Archive& archive_;
  Files& files_;
  SystemInfo& system_;
  Threads& threads_;
  OperationMonitor& monitor_;
  Directory directory_;          // of the parts
  std::vector<Record> records_;  // as they stand in the one file
  ArchiveOutput output_;
  FileStatus status_ = FileStatus::kOk;
};

}  // namespace quorvale::zip
