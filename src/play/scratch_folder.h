// A folder of the host for temporary files, gone when its object goes.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace quorvale {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::error_code error;
    std::string pattern =
        (std::filesystem::temp_directory_path(error) / "quorvale_XXXXXX").string();
    if (!error && mkdtemp(pattern.data()) != nullptr) path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove_all(path_, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  // "" if it could not be made.
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace quorvale
