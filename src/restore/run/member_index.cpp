#include "restore/run/member_index.h"

#include <algorithm>

#include "base/text.h"

namespace quorvale {

void MemberIndex::Read(BackupFile& backup) {
  members_.clear();
  std::vector<zip::Entry> entries;
  if (backup.Members(&entries) != zip::Result::kDone) return;
  members_.reserve(entries.size());
  for (const zip::Entry& entry : entries) {
    members_.push_back({FoldCase(entry.name), 0, static_cast<double>(entry.size)});
  }
  std::sort(members_.begin(), members_.end(),
            [](const Member& a, const Member& b) { return a.name < b.name; });
  double sum = 0;
  for (Member& member : members_) {
    member.before = sum;
    sum += member.size;
  }
}

std::pair<size_t, size_t> MemberIndex::Range(const std::string& pattern) const {
  std::string first = FoldCase(pattern);
  std::string behind = first;
  if (first.ends_with("\\*")) {
    first.pop_back();
    behind = first;
    behind.back() = '\\' + 1;  // the next character: all names below the folder lie before it
  } else {
    behind += '\0';
  }
  const auto by_name = [](const Member& member, const std::string& name) {
    return member.name < name;
  };
  const auto from = std::lower_bound(members_.begin(), members_.end(), first, by_name);
  const auto to = std::lower_bound(from, members_.end(), behind, by_name);
  return {static_cast<size_t>(from - members_.begin()), static_cast<size_t>(to - members_.begin())};
}

double MemberIndex::Size(const std::string& pattern) const {
  const auto [from, to] = Range(pattern);
  if (from == to) return 0;
  const Member& last = members_[to - 1];
  return last.before + last.size - members_[from].before;
}

size_t MemberIndex::Count(const std::string& name) const {
  const auto [from, to] = Range(name);
  return to - from;
}

bool MemberIndex::Has(const std::string& pattern) const { return Count(pattern) > 0; }

}  // namespace quorvale
