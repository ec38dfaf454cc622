#include "archive/join_operation.h"

#include <algorithm>
#include <cstring>

#include "archive/bytes.h"
#include "archive/read_back.h"
#include "platform/workers.h"

namespace quorvale::zip {
namespace {

constexpr std::size_t kCopySize = 1024 * 1024;
constexpr int kCopiedPercent = 50;  // the rest is for reading back

std::string Mark(std::uint32_t signature) {
  std::string mark;
  Put32(&mark, signature);
  return mark;
}

}  // namespace

JoinOperation::JoinOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                             OperationMonitor& monitor, const std::string& target)
    : archive_(archive),
      files_(files),
      system_(system),
      threads_(threads),
      monitor_(monitor),
      output_(files, target, 0) {}

Result JoinOperation::Run() {
  if (!ReadParts()) return Result::kFailed;
  if (!Check(output_.Open()) || !CopyEntries() || !WriteDirectory() || !Check(output_.Finish())) {
    return FailureResult();
  }
  const int wanted = archive_.worker_threads;
  const int processors = threads_.ProcessorCount();
  Workers workers(threads_, wanted >= 0 ? wanted : (processors > 1 ? processors : 0));
  ReadBack read_back = {files_, system_, workers, monitor_};
  if (!read_back.Fits(output_.TemporaryPaths(), records_, archive_.password, kCopiedPercent)) {
    return FailureResult();
  }
  if (monitor_.Aborted() || !Check(output_.Publish())) return FailureResult();
  monitor_.Finish();
  return Result::kDone;
}

bool JoinOperation::ReadParts() {
  std::string missing;
  if (!ReadDirectory(files_, system_, archive_.archive_name, &directory_, &missing)) return false;
  records_ = directory_.records;
  for (Record& record : records_) {
    // The field that this cipher needs is not written here.
    if (record.aes_version != 0 || !directory_.Locate(record, &record.offset)) return false;
    record.part = 0;
  }
  return !records_.empty();
}

bool JoinOperation::CopyEntries() {
  ArchiveInput& input = *directory_.input;
  const std::uint64_t size = directory_.start;
  monitor_.BeginStage(size, 0, kCopiedPercent);
  Bytes buffer(kCopySize);
  for (std::uint64_t at = 0; at < size;) {
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(size - at, buffer.capacity));
    if (!input.Read(at, buffer.data.get(), count)) return Check(FileStatus::kFailed);
    const std::string mark = Mark(kSpannedSignature);
    if (at == 0 && count >= mark.size() &&
        std::memcmp(buffer.data.get(), mark.data(), mark.size()) == 0) {
      const std::string single = Mark(kSinglePartSignature);
      std::memcpy(buffer.data.get(), single.data(), single.size());
    }
    if (!Check(output_.Write(buffer.data.get(), count)) || !monitor_.Advance(count)) return false;
    at += count;
  }
  return true;
}

bool JoinOperation::WriteDirectory() {
  DirectoryEnd end;
  end.count = records_.size();
  end.directory_offset = output_.Offset();
  for (const Record& record : records_) {
    const std::string header = CentralHeader(record);
    end.directory_size += header.size();
    if (!monitor_.Beat() || !Check(output_.WriteRecord(header))) return false;
  }
  return Check(output_.WriteRecord(EndRecords(end, output_.Offset(), end.count)));
}

bool JoinOperation::Check(FileStatus status) {
  if (status_ == FileStatus::kOk) status_ = status;
  return status == FileStatus::kOk;
}

Result JoinOperation::FailureResult() const {
  if (monitor_.Aborted()) return Result::kAborted;
  return status_ == FileStatus::kNoSpace ? Result::kNoSpace : Result::kFailed;
}

}  // namespace quorvale::zip
