// The records of a Zip archive, as the public description of the format (APPNOTE.TXT by PKWARE,
// Inc.) lays them out. Everything here is bytes in, values out, and back; no file is touched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/system_info.h"

namespace quorvale::zip {

inline constexpr std::uint32_t kLocalSignature = 0x04034b50;
inline constexpr std::uint32_t kCentralSignature = 0x02014b50;
inline constexpr std::uint32_t kEndSignature = 0x06054b50;
inline constexpr std::uint32_t kZip64EndSignature = 0x06064b50;
inline constexpr std::uint32_t kZip64LocatorSignature = 0x07064b50;
inline constexpr std::uint32_t kDescriptorSignature = 0x08074b50;
// At the start of an archive in parts; and where it was begun as one, but needed a single part.
inline constexpr std::uint32_t kSpannedSignature = 0x08074b50;
inline constexpr std::uint32_t kSinglePartSignature = 0x30304b50;

inline constexpr std::size_t kLocalHeaderSize = 30;
inline constexpr std::size_t kCentralHeaderSize = 46;
inline constexpr std::size_t kEndSize = 22;
inline constexpr std::size_t kZip64EndSize = 56;
inline constexpr std::size_t kZip64LocatorSize = 20;
inline constexpr std::size_t kLongestComment = 65535;

inline constexpr std::uint16_t kFlagEncrypted = 1;
inline constexpr std::uint16_t kFlagDescriptor = 8;  // sizes and check value follow the data
inline constexpr std::uint16_t kFlagUtf8 = 0x800;

inline constexpr std::uint16_t kMethodStored = 0;
inline constexpr std::uint16_t kMethodDeflated = 8;
inline constexpr std::uint16_t kMethodAes = 99;  // the true method stands in an extra field

// What a large file is cut into; each block is compressed by itself, and the pieces follow each
// other as one deflate stream.
inline constexpr std::size_t kBlockSize = 1024 * 1024;
// Ends a stream made of joined pieces: an empty last block.
inline const std::string kStreamEnd("\x03\x00", 2);

// One entry, as the directory tells it.
struct Record {
  std::string name;  // UTF-8, with "\"; a folder's ends in "\"
  std::uint16_t made_by = 0;
  std::uint16_t flags = 0;
  std::uint16_t method = kMethodStored;  // after looking into the AES field
  std::uint16_t aes_version = 0;         // 1 or 2; 0: not AES
  std::uint8_t aes_strength = 0;         // 1, 2, 3: keys of 128, 192, 256 bits
  bool zip64 = false;                    // writing: the local header has room for long sizes
  std::uint32_t dos_time = 0;            // date in the upper half
  std::uint32_t crc = 0;
  std::uint32_t attributes = 0;
  std::uint32_t part = 0;    // the part that its local header is in, from 0
  std::uint64_t offset = 0;  // of the local header, in that part
  std::uint64_t compressed_size = 0;
  std::uint64_t size = 0;
  FileTime modified = 0;
  // The packed sizes of its blocks, in a field of this program's own; other tools pass over it.
  // Empty: the stream is to be read as a whole.
  std::vector<std::uint32_t> pieces;

  bool IsFolder() const { return !name.empty() && name.back() == '\\'; }
  bool Encrypted() const { return (flags & kFlagEncrypted) != 0; }
};

// What stands at the end of an archive about its directory.
struct DirectoryEnd {
  std::uint32_t this_part = 0;
  std::uint32_t directory_part = 0;
  std::uint64_t count = 0;
  std::uint64_t directory_size = 0;
  std::uint64_t directory_offset = 0;
};

// Writing. A size in a local header is left 0 where the flags say that it follows the data.
std::string LocalHeader(const Record& record);
std::string DataDescriptor(const Record& record);
std::string CentralHeader(const Record& record);
// The records behind the directory: the long form, where a number needs it, and the short one.
// `end_offset` is where they begin, in the last part. `count_here` of the headers are in that part.
std::string EndRecords(const DirectoryEnd& end, std::uint64_t end_offset, std::uint64_t count_here);

// Reading. A directory header at `p`, of which `available` bytes are there. The bytes it takes, or
// 0 if it is damaged or cut off. Names without the UTF-8 flag are taken in the code page.
std::size_t ParseCentralHeader(const std::uint8_t* p, std::size_t available, SystemInfo& system,
                               Record* record);

// The format's local time in steps of two seconds, and back. Years outside 1980 to 2107 become the
// nearest moment it can hold.
std::uint32_t DosTimeOf(const LocalTime& time);
FileTime FromDosTime(std::uint32_t dos_time, SystemInfo& system);

}  // namespace quorvale::zip
