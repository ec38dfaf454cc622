// What a backup holds of each item: by its member table, or where it has none by the names of
// archive_layout.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "backup/format/backup_file.h"
#include "backup/format/member_table.h"
#include "core/program/program.h"
#include "restore/run/member_index.h"

namespace quorvale {

// What an item should have and the backup does not give.
struct MemberGap {
  std::string inner;        // the path below the item's own folder, "" for the item itself
  std::string reason;       // a word of gap_reason; "" for a damaged one
  bool is_damaged = false;  // the table and the archive contradict each other
};

class BackupMembers {
 public:
  // Lists the backup file and reads its table. A row of the table that contradicts the archive, or
  // whose path is not safe below a folder, is refused: nothing is found by it. The result is that
  // of the listing.
  zip::Result Read(BackupFile& backup);

  // True if the backup has a table, also one that cannot be read: no item is found then.
  bool HasTable() const { return has_table_; }
  const MemberIndex& names() const { return names_; }

  // By the table: the entry that is the item itself; null if the backup does not hold it.
  const TableMember* Single(const RestoreOrigin& origin) const;
  // By the table: the item's folder, and all that stands below it.
  std::vector<const TableMember*> Below(const RestoreOrigin& origin) const;
  // By the table: what is not, as far as it was asked for.
  std::vector<MemberGap> Gaps(const RestoreOrigin& origin) const;
  // The bytes of an item; `stem` is the folder of all members of a backup without a table.
  double Size(const RestoreOrigin& origin, const std::string& stem,
              const std::string& os_name) const;

 private:
  using EntriesByName = std::unordered_map<std::string, const zip::Entry*>;
  void TakeTable(const MemberTable& table, const std::vector<zip::Entry>& entries);
  // True if nothing contradicts the row.
  static bool Holds(const TableMember& member, const EntriesByName& entries);
  const std::vector<std::uint32_t>* RowsOf(const RestoreOrigin& origin) const;

  bool has_table_ = false;
  MemberIndex names_;
  std::shared_ptr<const MemberTable> table_;
  std::unordered_map<std::string, size_t> items_;  // by path and key
  std::vector<std::vector<std::uint32_t>> rows_;   // of each item: places in the table's members
  std::vector<std::vector<MemberGap>> gaps_;       // of each item
};

}  // namespace quorvale
