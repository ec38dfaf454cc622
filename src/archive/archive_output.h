// Writes an archive under temporary names, in one file or in parts of a given size, and gives it
// its name when it is complete.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "archive/bytes.h"
#include "platform/files.h"

namespace quorvale::zip {

class ArchiveOutput {
 public:
  // `part_size` 0: one file of any size. Parts are at least 64 KiB, so that each record fits.
  ArchiveOutput(Files& files, const std::string& archive_name, std::uint64_t part_size);
  // Removes the temporary files, unless the archive was published.
  ~ArchiveOutput();
  ArchiveOutput(const ArchiveOutput&) = delete;
  ArchiveOutput& operator=(const ArchiveOutput&) = delete;

  FileStatus Open();
  // Data may be cut over parts.
  FileStatus Write(const void* data, std::size_t count);
  // A record stands in one part as a whole; a new part is begun where it does not fit.
  FileStatus WriteRecord(const std::string& record);
  // Begins a new part if fewer than so many bytes fit into this one.
  FileStatus Reserve(std::size_t count);

  // Where the next byte goes: the part, and the offset in it.
  std::uint32_t Part() const { return static_cast<std::uint32_t>(temporary_paths_.size() - 1); }
  std::uint64_t Offset() const { return offset_; }
  // Writes over bytes of the present part.
  FileStatus Rewrite(std::uint64_t offset, const std::string& bytes);
  // Forgets what was written behind a place, as far as it lies in the present part; what lies in
  // parts before it stays as a gap.
  FileStatus Rewind(std::uint32_t part, std::uint64_t offset);
  // Moves forward so that `count` bytes from here reach at least to the last byte ever written:
  // a file that was rewound has nothing behind its end record.
  FileStatus CoverRemains(std::uint64_t count);

  // Hands everything to the system and closes.
  FileStatus Finish();
  // The finished parts.
  const std::vector<std::string>& TemporaryPaths() const { return temporary_paths_; }
  // Gives the finished archive its name, the main file last. An old archive of that name is
  // replaced in one step.
  FileStatus Publish();

 private:
  std::string TemporaryPath(std::size_t index) const;
  FileStatus OpenNextPart();
  FileStatus Flush();
  FileStatus CloseFile();

  Files& files_;
  const std::string archive_name_;
  const std::uint64_t part_size_;
  std::vector<std::string> temporary_paths_;
  std::unique_ptr<OutputFile> file_;
  Bytes buffer_;
  std::uint64_t offset_ = 0;   // behind what is buffered
  std::uint64_t longest_ = 0;  // the most that the present part ever held
};

}  // namespace quorvale::zip
