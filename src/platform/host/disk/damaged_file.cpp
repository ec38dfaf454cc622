#include "platform/host/disk/damaged_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace quorvale::host {
namespace {

// A failed read costs a disk many tries: what surrounds the damage is read in steps of this size.
constexpr std::size_t kStep = 4096;
constexpr std::size_t kStride = 1u << 20;

// Reads up to `count` bytes. False if the disk fails.
bool ReadAt(int file, char* buffer, std::size_t count, std::size_t at) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = pread(file, buffer + done, count - done, static_cast<off_t>(at + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) return true;  // it became shorter
    done += static_cast<std::size_t>(got);
  }
  return true;
}

void ReadInSteps(int file, std::size_t at, std::size_t count, DamagedFile* result) {
  for (std::size_t end = at + count; at < end; at += kStep) {
    const std::size_t step = std::min(kStep, end - at);
    if (ReadAt(file, result->bytes.data() + at, step, at)) continue;
    std::fill_n(result->bytes.begin() + static_cast<std::ptrdiff_t>(at), step, '\0');
    result->lost_bytes += step;
  }
}

}  // namespace

std::optional<DamagedFile> ReadDamagedFile(const std::string& host_path, std::uint64_t most) {
  const int file = open(host_path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return std::nullopt;
  struct stat info {};
  if (fstat(file, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size < 0 ||
      static_cast<std::uint64_t>(info.st_size) > most) {
    close(file);
    return std::nullopt;
  }
  DamagedFile result;
  result.bytes.resize(static_cast<std::size_t>(info.st_size));
  for (std::size_t at = 0; at < result.bytes.size(); at += kStride) {
    const std::size_t count = std::min(kStride, result.bytes.size() - at);
    if (!ReadAt(file, result.bytes.data() + at, count, at)) ReadInSteps(file, at, count, &result);
  }
  close(file);
  return result;
}

}  // namespace quorvale::host
