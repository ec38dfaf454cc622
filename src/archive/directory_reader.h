// Finds and reads an archive's directory.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "archive/archive_input.h"
#include "archive/zip_format.h"
#include "platform/files.h"
#include "platform/system_info.h"

namespace quorvale::zip {

struct Directory {
  std::unique_ptr<ArchiveInput> input;
  std::vector<Record> records;
  // Bytes that stand before the archive in its file (a self-extracting program, say); the offsets
  // of the records do not count them.
  std::uint64_t bias = 0;
  std::uint64_t start = 0;  // of the directory, in `input`

  // Where the local header of a record stands in `input`. False if that is outside.
  bool Locate(const Record& record, std::uint64_t* position) const;
};

// The directory of an archive in one file, kept for later operations.
struct KnownDirectory {
  std::string archive_name;
  FileInfo file;  // what the archive was when it was read
  std::vector<Record> records;
  std::uint64_t bias = 0;
  // Places in `records` by name without regard to case; made when the directory is first used
  // again.
  std::unordered_multimap<std::string, std::size_t> places;

  // True if the archive of this name is still what was read.
  bool Describes(const std::string& name, const FileInfo& now) const;
  void IndexNames();
};

// Reads the directory of the archive. False if this is no archive or a damaged one; `missing_part`
// then names a part that is not there, if that is the reason. A directory of more than 256 MiB is
// refused.
bool ReadDirectory(Files& files, SystemInfo& system, const std::string& archive_name,
                   Directory* directory, std::string* missing_part);

// The same for parts under names of their own.
bool ReadDirectoryOfParts(Files& files, SystemInfo& system,
                          const std::vector<std::string>& part_paths, Directory* directory);

}  // namespace quorvale::zip
