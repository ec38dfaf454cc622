// Any bytes as a member table: read, or refused.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "backup/format/member_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  quorvale::MemberTableReader reader;
  const std::size_t half = size / 2;
  reader.Feed(text.substr(0, half));
  reader.Feed(text.substr(half));
  const auto table = reader.Finish();
  if (table == nullptr) return 0;
  for (const quorvale::TableMember& member : table->members) {
    if (member.item >= table->items.size() || member.entry.empty()) __builtin_trap();
  }
  return 0;
}
