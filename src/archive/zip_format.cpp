#include "archive/zip_format.h"

#include <libdeflate.h>

#include <algorithm>

#include "archive/bytes.h"
#include "archive/classic_cipher.h"
#include "base/text.h"

namespace quorvale::zip {
namespace {

constexpr std::uint64_t kMax32 = 0xFFFFFFFF;
constexpr std::uint64_t kMax16 = 0xFFFF;

// Identifiers of extra fields.
constexpr std::uint16_t kExtraZip64 = 0x0001;
constexpr std::uint16_t kExtraNtfs = 0x000A;
constexpr std::uint16_t kExtraUnixTime = 0x5455;
constexpr std::uint16_t kExtraUnicodePath = 0x7075;
constexpr std::uint16_t kExtraAes = 0x9901;
constexpr std::uint16_t kExtraPieces = 0x7651;  // of this program: version, then the sizes

constexpr char kPiecesVersion = 1;
// More do not fit the field; entries beyond this (15 GB) are read as one stream.
constexpr std::size_t kMostPieces = 15'000;

constexpr std::uint16_t kVersionPlain = 20;
constexpr std::uint16_t kVersionZip64 = 45;
constexpr int kMadeByUnix = 3;

constexpr FileTime kTicksPerSecond = 10'000'000;
constexpr FileTime kUnixEpoch = 116'444'736'000'000'000;  // 1970-01-01

std::string NameOnDisk(const std::string& name) { return ReplaceAll(name, "\\", "/"); }

bool IsAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::uint16_t VersionNeeded(const Record& record) {
  return record.zip64 ? kVersionZip64 : kVersionPlain;
}

std::uint16_t FlagsOnDisk(const Record& record) {
  return static_cast<std::uint16_t>(record.flags | (IsAscii(record.name) ? 0 : kFlagUtf8));
}

// Seconds since 1970, where they fit the field.
void PutUnixTime(std::string* extra, FileTime modified) {
  const FileTime seconds = (modified - kUnixEpoch) / kTicksPerSecond;
  if (modified < kUnixEpoch || seconds > 0x7FFFFFFF) return;
  Put16(extra, kExtraUnixTime);
  Put16(extra, 5);
  extra->push_back(1);  // only the time of modification
  Put32(extra, static_cast<std::uint64_t>(seconds));
}

void PutNtfsTimes(std::string* extra, FileTime modified) {
  Put16(extra, kExtraNtfs);
  Put16(extra, 32);
  Put32(extra, 0);
  Put16(extra, 1);  // the tag of the times
  Put16(extra, 24);
  for (int i = 0; i < 3; ++i) Put64(extra, static_cast<std::uint64_t>(modified));
}

void PutPieces(std::string* extra, const std::vector<std::uint32_t>& pieces) {
  if (pieces.empty() || pieces.size() > kMostPieces) return;
  Put16(extra, kExtraPieces);
  Put16(extra, 1 + 4 * pieces.size());
  extra->push_back(kPiecesVersion);
  for (const std::uint32_t size : pieces) Put32(extra, size);
}

// Reads the numbers of a field one after the other; a missing one spoils it.
class FieldReader {
 public:
  FieldReader(const std::uint8_t* p, std::size_t size) : p_(p), left_(size) {}

  bool Take32(std::uint32_t* value) {
    if (left_ < 4) return false;
    *value = Get32(p_);
    Advance(4);
    return true;
  }
  bool Take64(std::uint64_t* value) {
    if (left_ < 8) return false;
    *value = Get64(p_);
    Advance(8);
    return true;
  }

 private:
  void Advance(std::size_t count) {
    p_ += count;
    left_ -= count;
  }
  const std::uint8_t* p_;
  std::size_t left_;
};

// The long numbers, in their order, of those that the header has no room for.
bool ParseZip64(const std::uint8_t* p, std::size_t size, std::uint32_t part16, Record* record) {
  FieldReader field(p, size);
  if (record->size == kMax32 && !field.Take64(&record->size)) return false;
  if (record->compressed_size == kMax32 && !field.Take64(&record->compressed_size)) return false;
  if (record->offset == kMax32 && !field.Take64(&record->offset)) return false;
  if (part16 == kMax16 && !field.Take32(&record->part)) return false;
  record->zip64 = true;
  return true;
}

FileTime ParseNtfsTime(const std::uint8_t* p, std::size_t size) {
  std::size_t at = 4;
  while (at + 4 <= size) {
    const std::uint16_t tag = Get16(p + at);
    const std::size_t length = Get16(p + at + 2);
    at += 4;
    if (length > size - at) return 0;
    if (tag == 1 && length >= 8) {
      const std::uint64_t ticks = Get64(p + at);
      return ticks <= 0x7FFFFFFFFFFFFFFF ? static_cast<FileTime>(ticks) : 0;
    }
    at += length;
  }
  return 0;
}

FileTime ParseUnixTime(const std::uint8_t* p, std::size_t size) {
  if (size < 5 || (p[0] & 1) == 0) return 0;
  const FileTime seconds = static_cast<std::int32_t>(Get32(p + 1));
  return kUnixEpoch + seconds * kTicksPerSecond;
}

// The name in UTF-8, valid only as long as the header's own name is the one it was made for.
std::string ParseUnicodePath(const std::uint8_t* p, std::size_t size, const std::string& raw_name) {
  if (size < 5 || p[0] != 1) return "";
  if (Get32(p + 1) != libdeflate_crc32(0, raw_name.data(), raw_name.size())) return "";
  return std::string(reinterpret_cast<const char*>(p + 5), size - 5);
}

bool ParseAes(const std::uint8_t* p, std::size_t size, Record* record) {
  if (size < 7) return false;
  record->aes_version = Get16(p);
  record->aes_strength = p[4];
  record->method = Get16(p + 5);
  return record->aes_version >= 1 && record->aes_version <= 2 && record->aes_strength >= 1 &&
         record->aes_strength <= 3;
}

void ParsePieces(const std::uint8_t* p, std::size_t size, Record* record) {
  record->pieces.clear();
  if (size < 1 || p[0] != kPiecesVersion || size % 4 != 1) return;
  for (std::size_t at = 1; at < size; at += 4) record->pieces.push_back(Get32(p + at));
}

// Whether the pieces can be what the entry consists of.
bool PiecesFit(const Record& record) {
  if (record.method != kMethodDeflated || record.size == 0) return false;
  if ((record.size - 1) / kBlockSize + 1 != record.pieces.size()) return false;
  std::uint64_t packed = 0;
  for (const std::uint32_t size : record.pieces) {
    // A block that does not shrink takes a little more than its size.
    if (size == 0 || size > kBlockSize + kBlockSize / 64) return false;
    packed += size;
  }
  // Where the sizes are not those of this stream, another program has packed it anew.
  const std::size_t around = kStreamEnd.size() + (record.Encrypted() ? kClassicHeaderSize : 0);
  return packed + around == record.compressed_size;
}

struct Extras {
  std::string unicode_path;
  FileTime ntfs_time = 0;
  FileTime unix_time = 0;
  bool aes = false;
};

// False only where a field is wrong that the entry cannot be read without.
bool ParseExtras(const std::uint8_t* p, std::size_t size, std::uint32_t part16,
                 const std::string& raw_name, Record* record, Extras* extras) {
  std::size_t at = 0;
  bool zip64_seen = false;
  while (at + 4 <= size) {
    const std::uint16_t id = Get16(p + at);
    const std::size_t length = Get16(p + at + 2);
    at += 4;
    if (length > size - at) break;  // the rest is padding
    const std::uint8_t* field = p + at;
    if (id == kExtraZip64 && !zip64_seen) {
      zip64_seen = true;
      if (!ParseZip64(field, length, part16, record)) return false;
    } else if (id == kExtraNtfs) {
      extras->ntfs_time = ParseNtfsTime(field, length);
    } else if (id == kExtraUnixTime) {
      extras->unix_time = ParseUnixTime(field, length);
    } else if (id == kExtraUnicodePath) {
      extras->unicode_path = ParseUnicodePath(field, length, raw_name);
    } else if (id == kExtraAes && record->method == kMethodAes) {
      if (!ParseAes(field, length, record)) return false;
      extras->aes = true;
    } else if (id == kExtraPieces) {
      ParsePieces(field, length, record);
    }
    at += length;
  }
  return record->method != kMethodAes || extras->aes;
}

std::string DecodeName(const std::string& raw, const Record& record, const Extras& extras,
                       SystemInfo& system) {
  if (IsAscii(raw) || (record.flags & kFlagUtf8) != 0) return raw;
  if (!extras.unicode_path.empty()) return extras.unicode_path;
  // Tools of Unix systems write names as their file system holds them, mostly UTF-8.
  if ((record.made_by >> 8) == kMadeByUnix && IsUtf8(raw)) return raw;
  return system.FromAnsi(raw);
}

std::int64_t DaysFromCivil(int year, int month, int day) {
  // Days since 1970-01-01 by the Gregorian calendar, with years that begin in March.
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const std::int64_t year_of_era = y - era * 400;
  const std::int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const std::int64_t day_of_era =
      year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

// The moment at which a clock without a time zone shows this.
FileTime AsIfUtc(const LocalTime& time) {
  const std::int64_t days = DaysFromCivil(time.year, time.month, time.day);
  const std::int64_t seconds = days * 86400 + time.hour * 3600 + time.minute * 60 + time.second;
  return kUnixEpoch + seconds * kTicksPerSecond;
}

}  // namespace

std::string LocalHeader(const Record& record) {
  const std::string name = NameOnDisk(record.name);
  const bool later = (record.flags & kFlagDescriptor) != 0;
  const std::uint64_t size = later ? 0 : record.size;
  const std::uint64_t compressed_size = later ? 0 : record.compressed_size;
  std::string extra;
  if (record.zip64) {
    Put16(&extra, kExtraZip64);
    Put16(&extra, 16);
    Put64(&extra, size);
    Put64(&extra, compressed_size);
  }
  PutUnixTime(&extra, record.modified);

  std::string header;
  Put32(&header, kLocalSignature);
  Put16(&header, VersionNeeded(record));
  Put16(&header, FlagsOnDisk(record));
  Put16(&header, record.method);
  Put32(&header, record.dos_time);
  Put32(&header, later ? 0 : record.crc);
  Put32(&header, record.zip64 ? kMax32 : compressed_size);
  Put32(&header, record.zip64 ? kMax32 : size);
  Put16(&header, name.size());
  Put16(&header, extra.size());
  return header + name + extra;
}

std::string DataDescriptor(const Record& record) {
  std::string descriptor;
  Put32(&descriptor, kDescriptorSignature);
  Put32(&descriptor, record.crc);
  if (record.zip64) {
    Put64(&descriptor, record.compressed_size);
    Put64(&descriptor, record.size);
  } else {
    Put32(&descriptor, record.compressed_size);
    Put32(&descriptor, record.size);
  }
  return descriptor;
}

std::string CentralHeader(const Record& record) {
  const std::string name = NameOnDisk(record.name);
  const bool long_size = record.size >= kMax32;
  const bool long_compressed = record.compressed_size >= kMax32;
  const bool long_offset = record.offset >= kMax32;
  std::string long_numbers;
  if (long_size) Put64(&long_numbers, record.size);
  if (long_compressed) Put64(&long_numbers, record.compressed_size);
  if (long_offset) Put64(&long_numbers, record.offset);
  std::string extra;
  if (!long_numbers.empty()) {
    Put16(&extra, kExtraZip64);
    Put16(&extra, long_numbers.size());
    extra += long_numbers;
  }
  PutNtfsTimes(&extra, record.modified);
  PutPieces(&extra, record.pieces);
  PutUnixTime(&extra, record.modified);
  const std::uint16_t version = long_numbers.empty() ? VersionNeeded(record) : kVersionZip64;

  std::string header;
  Put32(&header, kCentralSignature);
  Put16(&header, version);  // made by: a system with DOS attributes
  Put16(&header, version);
  Put16(&header, FlagsOnDisk(record));
  Put16(&header, record.method);
  Put32(&header, record.dos_time);
  Put32(&header, record.crc);
  Put32(&header, long_compressed ? kMax32 : record.compressed_size);
  Put32(&header, long_size ? kMax32 : record.size);
  Put16(&header, name.size());
  Put16(&header, extra.size());
  Put16(&header, 0);  // comment
  Put16(&header, record.part);
  Put16(&header, 0);  // internal attributes
  Put32(&header, record.attributes);
  Put32(&header, long_offset ? kMax32 : record.offset);
  return header + name + extra;
}

std::string EndRecords(const DirectoryEnd& end, std::uint64_t end_offset,
                       std::uint64_t count_here) {
  const bool long_form = end.count >= kMax16 || end.directory_size >= kMax32 ||
                         end.directory_offset >= kMax32 || end.this_part >= kMax16;
  std::string records;
  if (long_form) {
    Put32(&records, kZip64EndSignature);
    Put64(&records, kZip64EndSize - 12);
    Put16(&records, kVersionZip64);
    Put16(&records, kVersionZip64);
    Put32(&records, end.this_part);
    Put32(&records, end.directory_part);
    Put64(&records, count_here);
    Put64(&records, end.count);
    Put64(&records, end.directory_size);
    Put64(&records, end.directory_offset);
    Put32(&records, kZip64LocatorSignature);
    Put32(&records, end.this_part);
    Put64(&records, end_offset);
    Put32(&records, end.this_part + 1);
  }
  Put32(&records, kEndSignature);
  Put16(&records, std::min<std::uint64_t>(end.this_part, kMax16));
  Put16(&records, std::min<std::uint64_t>(end.directory_part, kMax16));
  Put16(&records, std::min(count_here, kMax16));
  Put16(&records, std::min(end.count, kMax16));
  Put32(&records, std::min(end.directory_size, kMax32));
  Put32(&records, std::min(end.directory_offset, kMax32));
  Put16(&records, 0);  // comment
  return records;
}

std::size_t ParseCentralHeader(const std::uint8_t* p, std::size_t available, SystemInfo& system,
                               Record* record) {
  if (available < kCentralHeaderSize || Get32(p) != kCentralSignature) return 0;
  const std::size_t name_size = Get16(p + 28);
  const std::size_t extra_size = Get16(p + 30);
  const std::size_t comment_size = Get16(p + 32);
  const std::size_t total = kCentralHeaderSize + name_size + extra_size + comment_size;
  if (total > available) return 0;

  record->made_by = Get16(p + 4);
  record->flags = Get16(p + 8);
  record->method = Get16(p + 10);
  record->dos_time = Get32(p + 12);
  record->crc = Get32(p + 16);
  record->compressed_size = Get32(p + 20);
  record->size = Get32(p + 24);
  record->part = Get16(p + 34);
  record->offset = Get32(p + 42);
  const std::uint32_t known = file_attribute::kReadOnly | file_attribute::kHidden |
                              file_attribute::kSystem | file_attribute::kFolder |
                              file_attribute::kArchive;
  record->attributes = Get32(p + 38) & known;

  const std::string raw(reinterpret_cast<const char*>(p + kCentralHeaderSize), name_size);
  Extras extras;
  const std::uint32_t part16 = record->part;
  if (!ParseExtras(p + kCentralHeaderSize + name_size, extra_size, part16, raw, record, &extras)) {
    return 0;
  }
  if (!record->pieces.empty() && !PiecesFit(*record)) record->pieces.clear();
  record->name = ReplaceAll(DecodeName(raw, *record, extras, system), "/", "\\");
  if ((record->attributes & file_attribute::kFolder) != 0 && !record->IsFolder()) {
    record->name += '\\';
  }
  if (record->IsFolder()) record->attributes |= file_attribute::kFolder;
  if (extras.ntfs_time != 0) {
    record->modified = extras.ntfs_time;
  } else if (extras.unix_time != 0) {
    record->modified = extras.unix_time;
  } else {
    record->modified = FromDosTime(record->dos_time, system);
  }
  return total;
}

std::uint32_t DosTimeOf(const LocalTime& time) {
  if (time.year < 1980) return (1u << 21) | (1u << 16);
  if (time.year > 2107)
    return (127u << 25) | (12u << 21) | (31u << 16) | (23u << 11) | (59u << 5) | 29u;
  const auto part = [](int value, int shift) { return static_cast<std::uint32_t>(value) << shift; };
  return part(time.year - 1980, 25) | part(time.month, 21) | part(time.day, 16) |
         part(time.hour, 11) | part(time.minute, 5) | part(std::min(time.second, 59) / 2, 0);
}

FileTime FromDosTime(std::uint32_t dos_time, SystemInfo& system) {
  const auto field = [&](int shift, std::uint32_t mask) {
    return static_cast<int>((dos_time >> shift) & mask);
  };
  LocalTime local;
  local.year = 1980 + field(25, 127);
  local.month = std::clamp(field(21, 15), 1, 12);
  local.day = std::max(field(16, 31), 1);
  local.hour = std::min(field(11, 31), 23);
  local.minute = std::min(field(5, 63), 59);
  local.second = std::min(field(0, 31) * 2, 59);
  // The time zone is only asked in the other direction: a second look corrects the first near a
  // change of summer time.
  const FileTime shown = AsIfUtc(local);
  FileTime utc = shown;
  for (int i = 0; i < 2; ++i) utc += shown - AsIfUtc(system.ToLocal(utc));
  return utc;
}

}  // namespace quorvale::zip
