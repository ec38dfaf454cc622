// Writes hives of Windows NT, for the sample of a dead computer's disk and for tests. The keys and
// values are put in by libhivex.
#pragma once

#include <string>

#include "platform/host/disk/hive.h"

namespace quorvale {

// The bytes of a hive with nothing in it.
std::string EmptyNtHive();

// Writes a hive with this tree (the root's own name does not count) to a new file of the host. ""
// or a sentence that says why not.
std::string WriteNtHive(const std::string& host_path, const host::HiveKey& root);

}  // namespace quorvale
