#include "backup/run/member_fates.h"

namespace quorvale {

void MemberFates::Clear() {
  stored_.clear();
  reasons_.clear();
}

void MemberFates::NoteStored(std::size_t file, const zip::StoredFile& stored) {
  if (stored_.size() <= file) stored_.resize(file + 1);
  stored_[file] = {.is_stored = true, .crc = stored.crc, .size = stored.size};
}

void MemberFates::NoteReason(std::size_t file, AccountReason reason) {
  reasons_.emplace(file, reason);
}

MemberFate MemberFates::Of(std::size_t file) const {
  return file < stored_.size() ? stored_[file] : MemberFate();
}

AccountReason MemberFates::ReasonOf(std::size_t file) const {
  const auto found = reasons_.find(file);
  return found == reasons_.end() ? AccountReason::kNone : found->second;
}

}  // namespace quorvale
