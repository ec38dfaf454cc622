// The hives of Windows NT and its successors (NTUSER.DAT, SOFTWARE, SYSTEM, UsrClass.dat), read by
// libhivex.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/host/disk/hive.h"

namespace quorvale::host {

// True for bytes that begin as such a hive does.
bool IsNtHive(const std::string& bytes);

// When the hive was written last, in ticks of 100 ns since 1601; 0 if it does not say.
std::int64_t NtHiveWritten(const std::string& bytes);

// The tree of a hive's bytes. A hive that was not closed, or is damaged, is read as far as it goes
// and says so in its remarks. Nothing, and the reason, if there is no tree to be read.
std::optional<Hive> ReadNtHive(const std::string& bytes, const HiveFilter& wanted,
                               std::string* problem);

}  // namespace quorvale::host
