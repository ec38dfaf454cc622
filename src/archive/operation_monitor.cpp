#include "archive/operation_monitor.h"

#include <algorithm>

namespace quorvale::zip {
namespace {

// A caller that pumps messages in the events answers a person within this time.
constexpr std::uint64_t kLongestSilence = 40;

int Percent(std::uint64_t done, std::uint64_t total) {
  if (total == 0 || done >= total) return 100;
  return static_cast<int>(static_cast<double>(done) * 100.0 / static_cast<double>(total));
}

}  // namespace

void OperationMonitor::BeginStage(std::uint64_t units, int first_percent, int last_percent) {
  stage_units_ = units;
  stage_done_ = 0;
  stage_first_ = first_percent;
  stage_last_ = last_percent;
}

void OperationMonitor::RaiseTotal(int percent) {
  total_percent_ = percent;
  last_event_ = system_.Ticks();
  if (archive_.on_total_progress) archive_.on_total_progress(percent);
}

bool OperationMonitor::Advance(std::uint64_t units) {
  stage_done_ += units;
  return Beat();
}

bool OperationMonitor::WaitFor(Workers& workers, const JobHandle& job) {
  constexpr int kStep = 20;  // milliseconds
  while (!workers.Wait(job, kStep)) {
    if (!Beat()) return false;
  }
  return true;
}

bool OperationMonitor::Beat() {
  if (Aborted()) return false;
  // 100 is told once, at the very end.
  const int within = stage_units_ == 0 ? 0 : Percent(stage_done_, stage_units_);
  const int percent = std::min(stage_first_ + within * (stage_last_ - stage_first_) / 100, 99);
  if (percent > total_percent_ || system_.Ticks() - last_event_ >= kLongestSilence) {
    RaiseTotal(std::max(percent, total_percent_));
  }
  return !Aborted();
}

bool OperationMonitor::FileProgress(std::uint64_t done, std::uint64_t size) {
  if (Aborted()) return false;
  const int percent = Percent(done, size);
  if (percent != file_percent_) {
    file_percent_ = percent;
    if (archive_.on_file_progress) archive_.on_file_progress(percent);
  }
  return !Aborted();
}

void OperationMonitor::Finish() {
  if (!Aborted()) RaiseTotal(100);
}

bool OperationMonitor::BeforeFile(zip::BeforeFile* file) {
  if (archive_.on_before_file) archive_.on_before_file(*file);
  return !Aborted();
}

void OperationMonitor::Warn(const std::string& name, WarningReason reason,
                            const std::string& text) {
  warned_ = true;
  if (archive_.on_warning) archive_.on_warning({name, reason, text});
}

void OperationMonitor::Unzipped(const UnzippedFile& file) {
  if (archive_.on_unzipped) archive_.on_unzipped(file);
}

}  // namespace quorvale::zip
