#include "platform/host/open_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace quorvale::host {
namespace {

// Marks a file as open for as long as it lives.
class Hold {
 public:
  Hold(std::shared_ptr<OpenFiles> open, std::multiset<std::string> OpenFiles::*kind,
       const std::string& host)
      : open_(std::move(open)), kind_(kind), mark_((open_.get()->*kind_).insert(host)) {}
  ~Hold() { (open_.get()->*kind_).erase(mark_); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  const std::shared_ptr<OpenFiles> open_;
  std::multiset<std::string> OpenFiles::*const kind_;
  const std::multiset<std::string>::iterator mark_;
};

bool SeekTo(int file, std::uint64_t offset) {
  return offset <= static_cast<std::uint64_t>(INT64_MAX) &&
         lseek(file, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

class HostInputFile : public InputFile {
 public:
  HostInputFile(int file, std::unique_ptr<Hold> hold) : file_(file), hold_(std::move(hold)) {}
  ~HostInputFile() override { close(file_); }

  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    ssize_t done = 0;
    do {
      done = read(file_, buffer, count);
    } while (done < 0 && errno == EINTR);
    return done;
  }
  bool Seek(std::uint64_t offset) override { return SeekTo(file_, offset); }
  std::uint64_t Size() const override {
    struct stat info {};
    return fstat(file_, &info) == 0 ? static_cast<std::uint64_t>(info.st_size) : 0;
  }

 private:
  const int file_;
  const std::unique_ptr<Hold> hold_;
};

class HostOutputFile : public OutputFile {
 public:
  HostOutputFile(int file, Drive* drive, std::unique_ptr<Hold> hold)
      : file_(file), drive_(drive), hold_(std::move(hold)) {}
  ~HostOutputFile() override {
    if (file_ >= 0) close(file_);
  }

  FileStatus Write(const void* buffer, std::size_t count) override {
    if (file_ < 0) return FileStatus::kFailed;
    const std::uint64_t end = at_ + count;
    if (end > size_ && !drive_->Take(end - size_)) return FileStatus::kNoSpace;
    const char* bytes = static_cast<const char*>(buffer);
    while (count > 0) {
      const ssize_t done = write(file_, bytes, count);
      if (done < 0 && errno == EINTR) continue;
      if (done < 0) return StatusOf(errno);
      bytes += done;
      count -= static_cast<std::size_t>(done);
    }
    at_ = end;
    size_ = std::max(size_, end);
    return FileStatus::kOk;
  }

  bool Seek(std::uint64_t offset) override {
    if (file_ < 0 || !SeekTo(file_, offset)) return false;
    at_ = offset;
    return true;
  }

  FileStatus Close() override {
    if (file_ < 0) return FileStatus::kFailed;
    const int result = close(file_);
    file_ = -1;
    hold_.reset();
    return result == 0 ? FileStatus::kOk : StatusOf(errno);
  }

 private:
  int file_;  // -1 once closed
  Drive* drive_;
  std::unique_ptr<Hold> hold_;
  std::uint64_t at_ = 0;
  std::uint64_t size_ = 0;
};

}  // namespace

FileStatus StatusOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return FileStatus::kNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
    case EBUSY:
    case EISDIR:
    case ELOOP:
      return FileStatus::kDenied;
    case ENOSPC:
    case EDQUOT:
      return FileStatus::kNoSpace;
    default:
      return FileStatus::kFailed;
  }
}

std::unique_ptr<InputFile> OpenHostInput(const std::string& host,
                                         const std::shared_ptr<OpenFiles>& open_files) {
  // Without O_NONBLOCK a pipe of the host would be waited for.
  const int file = open(host.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return nullptr;
  struct stat info {};
  if (fstat(file, &info) != 0 || !S_ISREG(info.st_mode)) {
    close(file);
    return nullptr;
  }
  return std::make_unique<HostInputFile>(
      file, std::make_unique<Hold>(open_files, &OpenFiles::read, host));
}

std::unique_ptr<OutputFile> CreateHostOutput(const std::string& host, Drive* drive,
                                             const std::shared_ptr<OpenFiles>& open_files,
                                             FileStatus* status) {
  const int file =
      open(host.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  *status = file < 0 ? StatusOf(errno) : FileStatus::kOk;
  if (file < 0) return nullptr;
  return std::make_unique<HostOutputFile>(
      file, drive, std::make_unique<Hold>(open_files, &OpenFiles::written, host));
}

}  // namespace quorvale::host
