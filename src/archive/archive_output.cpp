#include "archive/archive_output.h"

#include <algorithm>
#include <cstring>

#include "archive/archive_input.h"
#include "archive/zip_format.h"

namespace quorvale::zip {
namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
constexpr std::uint64_t kSmallestPart = 64 * 1024;

}  // namespace

ArchiveOutput::ArchiveOutput(Files& files, const std::string& archive_name, std::uint64_t part_size)
    : files_(files),
      archive_name_(archive_name),
      part_size_(part_size == 0 ? 0 : std::max(part_size, kSmallestPart)),
      buffer_(kBufferSize) {}

ArchiveOutput::~ArchiveOutput() {
  file_.reset();
  for (const std::string& path : temporary_paths_) files_.RemoveFile(path, true);
}

std::string ArchiveOutput::TemporaryPath(std::size_t index) const {
  return archive_name_ + ".tmp" + (index == 0 ? "" : std::to_string(index + 1));
}

FileStatus ArchiveOutput::OpenNextPart() {
  const std::string path = TemporaryPath(temporary_paths_.size());
  FileStatus status = FileStatus::kFailed;
  file_ = files_.Create(path, &status);
  if (file_ == nullptr) return status == FileStatus::kOk ? FileStatus::kFailed : status;
  temporary_paths_.push_back(path);
  offset_ = 0;
  longest_ = 0;
  buffer_.size = 0;
  return FileStatus::kOk;
}

FileStatus ArchiveOutput::Open() {
  const FileStatus status = OpenNextPart();
  if (status != FileStatus::kOk || part_size_ == 0) return status;
  std::string mark;
  Put32(&mark, kSpannedSignature);
  return Write(mark.data(), mark.size());
}

FileStatus ArchiveOutput::Flush() {
  if (buffer_.size == 0) return FileStatus::kOk;
  const FileStatus status = file_->Write(buffer_.data.get(), buffer_.size);
  buffer_.size = 0;
  return status;
}

FileStatus ArchiveOutput::CloseFile() {
  const FileStatus flushed = Flush();
  const FileStatus closed = file_->Close();
  file_.reset();
  return flushed != FileStatus::kOk ? flushed : closed;
}

FileStatus ArchiveOutput::Reserve(std::size_t count) {
  if (part_size_ == 0 || offset_ + count <= part_size_) return FileStatus::kOk;
  const FileStatus status = CloseFile();
  return status == FileStatus::kOk ? OpenNextPart() : status;
}

FileStatus ArchiveOutput::Write(const void* data, std::size_t count) {
  const std::uint8_t* from = static_cast<const std::uint8_t*>(data);
  while (count > 0) {
    FileStatus status = Reserve(1);
    if (status != FileStatus::kOk) return status;
    std::size_t take = std::min(count, buffer_.capacity - buffer_.size);
    if (part_size_ != 0) {
      take = static_cast<std::size_t>(std::min<std::uint64_t>(take, part_size_ - offset_));
    }
    std::memcpy(buffer_.data.get() + buffer_.size, from, take);
    buffer_.size += take;
    offset_ += take;
    longest_ = std::max(longest_, offset_);
    from += take;
    count -= take;
    if (buffer_.size == buffer_.capacity) status = Flush();
    if (status != FileStatus::kOk) return status;
  }
  return FileStatus::kOk;
}

FileStatus ArchiveOutput::WriteRecord(const std::string& record) {
  const FileStatus status = Reserve(record.size());
  return status == FileStatus::kOk ? Write(record.data(), record.size()) : status;
}

FileStatus ArchiveOutput::Rewrite(std::uint64_t offset, const std::string& bytes) {
  FileStatus status = Flush();
  if (status != FileStatus::kOk) return status;
  if (!file_->Seek(offset)) return FileStatus::kFailed;
  status = file_->Write(bytes.data(), bytes.size());
  if (status != FileStatus::kOk) return status;
  return file_->Seek(offset_) ? FileStatus::kOk : FileStatus::kFailed;
}

FileStatus ArchiveOutput::Rewind(std::uint32_t part, std::uint64_t offset) {
  if (part != Part()) return FileStatus::kOk;
  const FileStatus status = Flush();
  if (status != FileStatus::kOk) return status;
  if (!file_->Seek(offset)) return FileStatus::kFailed;
  offset_ = offset;
  return FileStatus::kOk;
}

FileStatus ArchiveOutput::CoverRemains(std::uint64_t count) {
  if (offset_ + count >= longest_) return FileStatus::kOk;
  const FileStatus status = Flush();
  if (status != FileStatus::kOk) return status;
  offset_ = longest_ - count;
  return file_->Seek(offset_) ? FileStatus::kOk : FileStatus::kFailed;
}

FileStatus ArchiveOutput::Finish() {
  FileStatus status = FileStatus::kOk;
  if (part_size_ != 0 && Part() == 0) {
    std::string mark;
    Put32(&mark, kSinglePartSignature);
    status = Rewrite(0, mark);
  }
  const FileStatus closed = CloseFile();
  return status != FileStatus::kOk ? status : closed;
}

FileStatus ArchiveOutput::Publish() {
  const std::uint32_t count = static_cast<std::uint32_t>(temporary_paths_.size());
  for (std::uint32_t i = 0; i < count; ++i) {
    const FileStatus status =
        files_.Replace(temporary_paths_[i], PartPath(archive_name_, i, count));
    if (status != FileStatus::kOk) return status;
  }
  temporary_paths_.clear();
  return FileStatus::kOk;
}

}  // namespace quorvale::zip
