#include "platform/host/disk/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

namespace quorvale::host {
namespace {

bool WriteWhole(int file, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

MemoryFile::MemoryFile(const std::string& bytes) : file_(memfd_create("hive", MFD_CLOEXEC)) {
  if (file_ >= 0 && WriteWhole(file_, bytes)) path_ = "/proc/self/fd/" + std::to_string(file_);
}

MemoryFile::~MemoryFile() {
  if (file_ >= 0) close(file_);
}

}  // namespace quorvale::host
