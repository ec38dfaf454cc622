// Bytes as a file that libraries open by its name. They read a copy: a disk that fails, or a file
// that changes meanwhile, cannot reach them.
#pragma once

#include <string>

namespace quorvale::host {

class MemoryFile {
 public:
  explicit MemoryFile(const std::string& bytes);
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  // "" if it could not be made.
  const std::string& path() const { return path_; }

 private:
  int file_ = -1;
  std::string path_;
};

}  // namespace quorvale::host
