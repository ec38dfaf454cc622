// What became of the sources of a backup while its archive was made, by their places in the
// session's file collection.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "archive/archive.h"
#include "core/program/account.h"

namespace quorvale {

struct MemberFate {
  bool is_stored = false;
  std::uint32_t crc = 0;
  std::uint64_t size = 0;
};

class MemberFates {
 public:
  void Clear();
  void NoteStored(std::size_t file, const zip::StoredFile& stored);
  // Why a source is not in the archive, or not whole. The first reason of a source counts.
  void NoteReason(std::size_t file, AccountReason reason);

  MemberFate Of(std::size_t file) const;
  // kNone if nothing is known.
  AccountReason ReasonOf(std::size_t file) const;

 private:
  std::vector<MemberFate> stored_;
  std::unordered_map<std::size_t, AccountReason> reasons_;
};

}  // namespace quorvale
