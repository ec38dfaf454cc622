#include "restore/run/backup_members.h"

#include "backup/format/archive_layout.h"
#include "base/text.h"
#include "discovery/products/outlook_profile.h"
#include "restore/run/safe_target.h"

namespace quorvale {
namespace {

std::string IdOf(const std::string& path, const std::string& key) { return path + "\n" + key; }

// The directory of an archive by folded name. An entry whose name occurs twice is nobody's.
std::unordered_map<std::string, const zip::Entry*> ByName(const std::vector<zip::Entry>& entries) {
  std::unordered_map<std::string, const zip::Entry*> by_name;
  for (const zip::Entry& entry : entries) {
    const auto [found, added] = by_name.emplace(FoldCase(entry.name), &entry);
    if (!added && !entry.is_folder) found->second = nullptr;
  }
  return by_name;
}

bool Agrees(const TableMember& member, const zip::Entry* entry) {
  if (entry == nullptr) return false;
  const bool is_folder = member.kind == TableMember::Kind::kFolder;
  if (entry->is_folder != is_folder) return false;
  return is_folder || (entry->size == member.size && entry->crc == member.crc);
}

}  // namespace

zip::Result BackupMembers::Read(BackupFile& backup) {
  *this = BackupMembers();
  names_.Read(backup);
  const FoundTable found = backup.Table();
  has_table_ = found.is_there;
  std::vector<zip::Entry> entries;
  const zip::Result result = backup.Members(&entries);
  if (found.table == nullptr || result != zip::Result::kDone) return result;
  table_ = found.table;
  TakeTable(*table_, entries);
  return result;
}

bool BackupMembers::Holds(const TableMember& member, const EntriesByName& entries) {
  const bool is_folder = member.kind == TableMember::Kind::kFolder;
  const auto entry = entries.find(FoldCase(member.entry + (is_folder ? "\\" : "")));
  if (entry == entries.end() || !Agrees(member, entry->second)) return false;
  return member.inner.empty() || IsSafeBelow(member.inner);
}

void BackupMembers::TakeTable(const MemberTable& table, const std::vector<zip::Entry>& entries) {
  rows_.resize(table.items.size());
  gaps_.resize(table.items.size());
  for (size_t i = 0; i < table.items.size(); ++i) {
    items_.emplace(IdOf(table.items[i].path, WithoutRowNumbers(table.items[i].key)), i);
  }
  const auto by_name = ByName(entries);
  for (size_t i = 0; i < table.members.size(); ++i) {
    const TableMember& member = table.members[i];
    if (Holds(member, by_name)) {
      rows_[member.item].push_back(static_cast<std::uint32_t>(i));
    } else {
      gaps_[member.item].push_back({member.inner, "", true});
    }
  }
  for (const TableGap& gap : table.gaps) {
    gaps_[gap.item].push_back({gap.inner, gap.reason, false});
  }
}

const std::vector<std::uint32_t>* BackupMembers::RowsOf(const RestoreOrigin& origin) const {
  const auto found = items_.find(IdOf(origin.path, origin.key));
  return found == items_.end() ? nullptr : &rows_[found->second];
}

std::vector<MemberGap> BackupMembers::Gaps(const RestoreOrigin& origin) const {
  const auto found = items_.find(IdOf(origin.path, origin.key));
  return found == items_.end() ? std::vector<MemberGap>() : gaps_[found->second];
}

const TableMember* BackupMembers::Single(const RestoreOrigin& origin) const {
  const std::vector<std::uint32_t>* rows = RowsOf(origin);
  if (rows == nullptr) return nullptr;
  for (const std::uint32_t row : *rows) {
    const TableMember& member = table_->members[row];
    if (member.inner.empty() && member.kind != TableMember::Kind::kFolder) return &member;
  }
  return nullptr;
}

std::vector<const TableMember*> BackupMembers::Below(const RestoreOrigin& origin) const {
  std::vector<const TableMember*> below;
  const std::vector<std::uint32_t>* rows = RowsOf(origin);
  if (rows == nullptr) return below;
  for (const std::uint32_t row : *rows) {
    const TableMember& member = table_->members[row];
    const bool is_folder = member.kind == TableMember::Kind::kFolder;
    if (is_folder || !member.inner.empty()) below.push_back(&member);
  }
  return below;
}

double BackupMembers::Size(const RestoreOrigin& origin, const std::string& stem,
                           const std::string& os_name) const {
  if (!has_table_) {
    const ItemEntry entry = EntryOfItem(origin.path, origin.key, os_name);
    if (entry.kind == ItemEntry::Kind::kNone) return 0;
    const std::string name = stem + "\\" + entry.name;
    return names_.Size(entry.kind == ItemEntry::Kind::kFolder ? name + "\\*" : name);
  }
  double size = 0;
  const std::vector<std::uint32_t>* rows = RowsOf(origin);
  if (rows == nullptr) return 0;
  for (const std::uint32_t row : *rows) size += static_cast<double>(table_->members[row].size);
  return size;
}

}  // namespace quorvale
