// The member table of a backup: which entry of the archive belongs to which item of the selection,
// in full Unicode, and what was asked for and is not in it. It stands beside the settings file as
// an entry of its own. docs/obk-format.md describes the text for other programs.
//
// A restore with a table never finds an item by its name alone. A backup without one (made before
// there were tables, or by another program) is restored by the names of archive_layout.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backup/format/settings_file.h"
#include "platform/files.h"

namespace quorvale {

// One entry as one item has it. Items may share an entry.
struct TableMember {
  enum class Kind : char { kFile = 'f', kFolder = 'd', kRegistry = 'r' };
  Kind kind = Kind::kFile;
  std::uint32_t item = 0;  // a place in MemberTable::items
  std::uint64_t size = 0;  // bytes
  std::uint32_t crc = 0;   // CRC-32
  std::string entry;       // the full name in the archive, "\" between its parts, none at its end
  std::string inner;       // the path below the item's own folder, "" for the item itself
};

// What was asked for and is not in the archive.
struct TableGap {
  std::uint32_t item = 0;
  std::string reason;  // a word: see gap_reason
  std::string inner;   // as in TableMember
};

namespace gap_reason {
inline constexpr char kMissing[] = "missing";             // it was not there
inline constexpr char kUnreadable[] = "unreadable";       // in use, no rights, or a disk that fails
inline constexpr char kNoName[] = "no-name";              // no name that an entry can have
inline constexpr char kNoDot[] = "no-dot";                // a file without a dot in its name
inline constexpr char kNotInstalled[] = "not-installed";  // its program is not on this computer
}  // namespace gap_reason

struct MemberTable {
  std::string stem;  // the folder of all entries: the name that the backup was made under
  std::vector<SettingsItem> items;  // tree path and key of each item of the selection
  std::vector<TableMember> members;
  std::vector<TableGap> gaps;
};

// The table's entry for an archive of this stem: beside the settings file.
std::string TableEntryName(const std::string& stem);
// The stem of a name that a table's entry has; "" of any other name.
std::string StemOfTableEntry(const std::string& entry_name);

// Writes a table line by line, so that it need not be held as a text. Each call tells why it
// failed; after a failure the file is of no use.
class MemberTableWriter {
 public:
  explicit MemberTableWriter(OutputFile& file) : file_(file) {}

  FileStatus Begin(const std::string& stem);
  FileStatus Item(const SettingsItem& item);
  FileStatus Member(const TableMember& member);
  FileStatus Gap(const TableGap& gap);
  // The end, without which no reader takes the table. Does not close the file.
  FileStatus End();

 private:
  FileStatus Line(std::string_view word, const std::vector<std::string>& fields);
  FileStatus Flush();

  OutputFile& file_;
  std::string waiting_;
  std::uint64_t lines_ = 0;
};

// Reads a text that comes in pieces. Lines of unknown words are passed over: they are of a later
// release.
class MemberTableReader {
 public:
  // False once the text is no table.
  bool Feed(std::string_view piece);
  // The whole table; null if the text was none, was cut short, or contradicts itself.
  std::shared_ptr<const MemberTable> Finish();

 private:
  bool TakeLine(std::string_view line);
  bool TakeFields(const std::string& word, const std::vector<std::string>& fields);
  bool TakeMember(const std::vector<std::string>& fields);

  std::shared_ptr<MemberTable> table_ = std::make_shared<MemberTable>();
  std::string rest_;  // the begun line
  std::uint64_t lines_ = 0;
  bool good_ = true;
  bool ended_ = false;
};

}  // namespace quorvale
