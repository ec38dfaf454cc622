// Stands between an operation and its caller: counts progress, raises events, looks for the abort.
#pragma once

#include <cstdint>
#include <string>

#include "archive/archive.h"
#include "platform/system_info.h"
#include "platform/workers.h"

namespace quorvale::zip {

class OperationMonitor {
 public:
  OperationMonitor(Archive& archive, SystemInfo& system) : archive_(archive), system_(system) {}

  // What follows is a stage of the operation: so many units of work, which take the total progress
  // from one percentage to the other.
  void BeginStage(std::uint64_t units, int first_percent, int last_percent);
  // So much more is done. Raises the progress events that are due. False after an abort.
  bool Advance(std::uint64_t units);
  // To be called while waiting: raises an event now and then, so that messages are pumped. False
  // after an abort.
  bool Beat();
  // Waits for a job. False after an abort; the job may still run then.
  bool WaitFor(Workers& workers, const JobHandle& job);
  // The progress within a file, if the percentage is a new one. False after an abort.
  bool FileProgress(std::uint64_t done, std::uint64_t size);
  void NewFile() { file_percent_ = -1; }
  // The last event of an operation that was not ended early.
  void Finish();

  bool BeforeFile(BeforeFile* file);
  void Warn(const std::string& name, WarningReason reason, const std::string& text);
  void Unzipped(const UnzippedFile& file);

  bool Aborted() const { return archive_.abort; }
  bool Warned() const { return warned_; }

 private:
  void RaiseTotal(int percent);

  Archive& archive_;
  SystemInfo& system_;
  std::uint64_t stage_units_ = 0;
  std::uint64_t stage_done_ = 0;
  int stage_first_ = 0;
  int stage_last_ = 100;
  int total_percent_ = -1;
  int file_percent_ = -1;
  std::uint64_t last_event_ = 0;  // ticks
  bool warned_ = false;
};

}  // namespace quorvale::zip
