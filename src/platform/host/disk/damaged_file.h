// A file of a disk that may be damaged, read as far as it goes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorvale::host {

struct DamagedFile {
  std::string bytes;             // what could not be read is zero
  std::uint64_t lost_bytes = 0;  // how much of it
};

// Nothing if the file cannot be opened, is no plain file or is larger than `most` bytes.
std::optional<DamagedFile> ReadDamagedFile(const std::string& host_path, std::uint64_t most);

}  // namespace quorvale::host
