#include "archive/directory_reader.h"

#include <algorithm>
#include <cstring>

#include "base/text.h"

namespace quorvale::zip {
namespace {

constexpr std::uint64_t kLargestDirectory = 256ull * 1024 * 1024;
constexpr std::size_t kLargestHeader = kCentralHeaderSize + 3 * 65535;

// The end record as it stands, and where it was found.
struct FoundEnd {
  DirectoryEnd end;
  std::uint64_t position = 0;  // in the run of bytes of the file that was looked at
  bool has_locator = false;
  std::uint32_t zip64_part = 0;
  std::uint64_t zip64_offset = 0;
};

void ParseEnd(const std::uint8_t* p, DirectoryEnd* end) {
  end->this_part = Get16(p + 4);
  end->directory_part = Get16(p + 6);
  end->count = Get16(p + 10);
  end->directory_size = Get32(p + 12);
  end->directory_offset = Get32(p + 16);
}

// Looks for the end record in the last bytes. A comment that reaches exactly to the file's end is
// preferred; behind others some transfer has left bytes of its own.
bool FindEnd(ArchiveInput& last, FoundEnd* found) {
  const std::uint64_t size = last.Size();
  if (size < kEndSize) return false;
  const std::size_t tail_size = static_cast<std::size_t>(
      std::min<std::uint64_t>(size, kEndSize + kLongestComment + kZip64LocatorSize));
  std::vector<std::uint8_t> tail(tail_size);
  const std::uint64_t tail_start = size - tail_size;
  if (!last.Read(tail_start, tail.data(), tail_size)) return false;

  std::size_t best = tail_size;
  for (std::size_t at = tail_size - kEndSize + 1; at-- > 0;) {
    if (Get32(&tail[at]) != kEndSignature) continue;
    const std::size_t behind = tail_size - at - kEndSize;
    const std::size_t comment = Get16(&tail[at + 20]);
    if (comment == behind) {
      best = at;
      break;
    }
    if (comment < behind && best == tail_size) best = at;
  }
  if (best == tail_size) return false;
  found->position = tail_start + best;
  ParseEnd(&tail[best], &found->end);
  if (best >= kZip64LocatorSize) {
    const std::uint8_t* locator = &tail[best - kZip64LocatorSize];
    if (Get32(locator) == kZip64LocatorSignature) {
      found->has_locator = true;
      found->zip64_part = Get32(locator + 4);
      found->zip64_offset = Get64(locator + 8);
      const std::uint32_t parts = Get32(locator + 16);
      if (found->end.this_part == 0xFFFF && parts > 0) found->end.this_part = parts - 1;
    }
  }
  return true;
}

// Takes the long numbers of the Zip64 end record, where the short record has no room.
bool ReadZip64End(ArchiveInput& input, std::uint64_t position, DirectoryEnd* end) {
  std::uint8_t p[kZip64EndSize];
  if (!input.Read(position, p, sizeof p) || Get32(p) != kZip64EndSignature) return false;
  if (end->this_part == 0xFFFF) end->this_part = Get32(p + 16);
  if (end->directory_part == 0xFFFF) end->directory_part = Get32(p + 20);
  if (end->count == 0xFFFF) end->count = Get64(p + 32);
  if (end->directory_size == 0xFFFFFFFF) end->directory_size = Get64(p + 40);
  if (end->directory_offset == 0xFFFFFFFF) end->directory_offset = Get64(p + 48);
  return true;
}

bool HasSignature(ArchiveInput& input, std::uint64_t position, std::uint32_t signature) {
  std::uint8_t p[4];
  return input.Read(position, p, sizeof p) && Get32(p) == signature;
}

// The position of an offset within a part. False if it is outside.
bool PositionIn(const ArchiveInput& input, std::uint32_t part, std::uint64_t offset,
                std::uint64_t* position) {
  if (part >= input.PartCount()) return false;
  if (offset > input.Size() - input.PartStart(part)) return false;
  *position = input.PartStart(part) + offset;
  return true;
}

// Where the directory begins. In a file with something in front of the archive the stated offset
// is too small by that much.
bool FindDirectory(ArchiveInput& input, const DirectoryEnd& end, std::uint64_t records_end,
                   std::uint64_t* position, std::uint64_t* bias) {
  *bias = 0;
  if (!PositionIn(input, end.directory_part, end.directory_offset, position)) return false;
  if (end.count == 0) return end.directory_size == 0;
  if (*position <= records_end && end.directory_size <= records_end - *position &&
      HasSignature(input, *position, kCentralSignature)) {
    return true;
  }
  if (input.PartCount() > 1 || end.directory_size > records_end) return false;
  const std::uint64_t true_start = records_end - end.directory_size;
  if (true_start < end.directory_offset || !HasSignature(input, true_start, kCentralSignature)) {
    return false;
  }
  *bias = true_start - end.directory_offset;
  *position = true_start;
  return true;
}

bool ReadRecords(ArchiveInput& input, SystemInfo& system, std::uint64_t position,
                 std::uint64_t size, std::vector<Record>* records) {
  std::vector<std::uint8_t> buffer(
      static_cast<std::size_t>(std::min<std::uint64_t>(size, 4 * kLargestHeader)));
  std::size_t filled = 0;
  std::size_t at = 0;
  std::uint64_t unread = size;
  while (at < filled || unread > 0) {
    if (filled - at < kLargestHeader && unread > 0) {
      std::memmove(buffer.data(), buffer.data() + at, filled - at);
      filled -= at;
      at = 0;
      const std::size_t take =
          static_cast<std::size_t>(std::min<std::uint64_t>(unread, buffer.size() - filled));
      if (!input.Read(position, buffer.data() + filled, take)) return false;
      position += take;
      filled += take;
      unread -= take;
    }
    Record record;
    const std::size_t used = ParseCentralHeader(buffer.data() + at, filled - at, system, &record);
    if (used == 0) {
      // A digital signature of the directory may follow the last header; it says nothing of files.
      constexpr std::uint32_t kDirectorySignature = 0x05054b50;
      return filled - at >= 6 && Get32(buffer.data() + at) == kDirectorySignature;
    }
    at += used;
    records->push_back(std::move(record));
  }
  return true;
}

bool ReadWithEnd(SystemInfo& system, FoundEnd found, Directory* directory) {
  ArchiveInput& input = *directory->input;
  std::uint64_t records_end = found.position;  // behind the directory
  if (found.has_locator) {
    records_end -= kZip64LocatorSize;
    std::uint64_t zip64_position = 0;
    bool read = PositionIn(input, found.zip64_part, found.zip64_offset, &zip64_position) &&
                ReadZip64End(input, zip64_position, &found.end);
    if (!read && records_end >= kZip64EndSize) {
      zip64_position = records_end - kZip64EndSize;
      read = ReadZip64End(input, zip64_position, &found.end);
    }
    if (!read) return false;
    records_end = zip64_position;
  }
  if (found.end.directory_size > kLargestDirectory) return false;
  if (!FindDirectory(input, found.end, records_end, &directory->start, &directory->bias)) {
    return false;
  }
  const std::uint64_t possible = found.end.directory_size / kCentralHeaderSize;
  directory->records.reserve(static_cast<std::size_t>(std::min(found.end.count, possible)));
  if (found.end.count > 0 && !ReadRecords(input, system, directory->start, found.end.directory_size,
                                          &directory->records)) {
    return false;
  }
  // Old tools count modulo 65,536.
  const std::uint64_t count = directory->records.size();
  if (count != found.end.count && (count & 0xFFFF) != found.end.count) return false;
  // Entries do not overlap: together they are no longer than the archive. This also bounds the
  // work that an archive can cause.
  std::uint64_t left = input.Size();
  for (const Record& record : directory->records) {
    if (record.compressed_size > left) return false;
    left -= record.compressed_size;
  }
  return true;
}

}  // namespace

bool Directory::Locate(const Record& record, std::uint64_t* position) const {
  if (!PositionIn(*input, record.part, record.offset, position)) return false;
  *position += bias;
  return true;
}

bool KnownDirectory::Describes(const std::string& name, const FileInfo& now) const {
  return name == archive_name && now.size == file.size && now.modified == file.modified;
}

void KnownDirectory::IndexNames() {
  if (!places.empty()) return;
  for (std::size_t i = 0; i < records.size(); ++i) places.emplace(FoldCase(records[i].name), i);
}

bool ReadDirectoryOfParts(Files& files, SystemInfo& system,
                          const std::vector<std::string>& part_paths, Directory* directory) {
  FoundEnd found;
  {
    ArchiveInput last(files, {part_paths.back()});
    if (!last.Ok() || !FindEnd(last, &found)) return false;
  }
  directory->input = std::make_unique<ArchiveInput>(files, part_paths);
  if (!directory->input->Ok()) return false;
  found.position += directory->input->PartStart(directory->input->PartCount() - 1);
  return ReadWithEnd(system, found, directory);
}

bool ReadDirectory(Files& files, SystemInfo& system, const std::string& archive_name,
                   Directory* directory, std::string* missing_part) {
  FoundEnd found;
  {
    ArchiveInput last(files, {archive_name});
    if (!last.Ok() || !FindEnd(last, &found)) return false;
  }
  std::vector<std::string> paths;
  for (std::uint32_t i = 0; i <= found.end.this_part; ++i) {
    paths.push_back(PartPath(archive_name, i, found.end.this_part + 1));
    if (i < found.end.this_part && !files.Stat(paths.back())) {
      *missing_part = paths.back();
      return false;
    }
  }
  return ReadDirectoryOfParts(files, system, paths, directory);
}

}  // namespace quorvale::zip
