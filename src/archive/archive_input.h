// Reads an archive as one run of bytes, whether it is one file or several parts.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "archive/bytes.h"
#include "platform/files.h"

namespace quorvale::zip {

// The file name of a part: `index` from 0 of `count`; the last is the archive's own name, those
// before it have it with ".z01", ".z02" and so on in place of its extension. This is what common
// tools expect of a split archive.
std::string PartPath(const std::string& archive_name, std::uint32_t index, std::uint32_t count);

class ArchiveInput {
 public:
  // The parts in their order. Ok() tells whether all are there; MissingPart() names the first that
  // is not.
  ArchiveInput(Files& files, const std::vector<std::string>& part_paths);

  bool Ok() const { return missing_.empty(); }
  const std::string& MissingPart() const { return missing_; }
  std::uint64_t Size() const { return size_; }
  std::uint32_t PartCount() const { return static_cast<std::uint32_t>(parts_.size()); }
  // Where a part begins in the run of bytes; `part` is below PartCount().
  std::uint64_t PartStart(std::uint32_t part) const { return parts_[part].start; }

  // Reads exactly so many bytes. False at the end or on an error.
  bool Read(std::uint64_t position, void* buffer, std::size_t count);

 private:
  struct Part {
    std::string path;
    std::uint64_t start = 0;
    std::uint64_t size = 0;
  };

  // Reads from the file itself, within one part.
  bool ReadDirectly(std::uint64_t position, std::uint8_t* buffer, std::size_t count);
  bool FillWindow(std::uint64_t position);
  const Part* PartAt(std::uint64_t position) const;

  Files& files_;
  std::vector<Part> parts_;
  std::string missing_;
  std::uint64_t size_ = 0;
  const Part* open_part_ = nullptr;
  std::unique_ptr<InputFile> file_;
  std::uint64_t file_position_ = 0;
  Bytes window_;  // what was read last, for many small reads one after the other
  std::uint64_t window_start_ = 0;
};

}  // namespace quorvale::zip
