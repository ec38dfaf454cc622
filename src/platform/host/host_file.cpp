#include "platform/host/host_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace quorvale::host {
namespace {

bool WriteAll(int file, const std::string& bytes) {
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

std::optional<std::string> ReadHostFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return std::nullopt;
  struct stat info {};
  if (fstat(file, &info) != 0 || !S_ISREG(info.st_mode)) {
    close(file);
    return std::nullopt;
  }
  std::string bytes;
  char buffer[65536];
  ssize_t count = 0;
  while ((count = read(file, buffer, sizeof(buffer))) != 0) {
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) break;
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
  close(file);
  if (count < 0) return std::nullopt;
  return bytes;
}

bool ReplaceHostFile(const std::string& path, const std::string& bytes, std::string* error) {
  const std::string fresh = path + ".new";
  const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  bool done = file >= 0 && WriteAll(file, bytes) && fsync(file) == 0;
  int reason = errno;
  if (file >= 0 && close(file) != 0 && done) {
    done = false;
    reason = errno;
  }
  if (done && rename(fresh.c_str(), path.c_str()) != 0) {
    done = false;
    reason = errno;
  }
  if (done) return true;
  if (file >= 0) unlink(fresh.c_str());
  *error = path + ": " + std::strerror(reason);
  return false;
}

}  // namespace quorvale::host
