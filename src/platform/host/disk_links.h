// Links and junctions of an old disk, which name their targets as its own computer saw them.
#pragma once

#include <string>

namespace quorvale::host {

// The target of a link as a path of the machine: "C:\Users" where it has a drive letter, "\Users"
// where it has none. "" for a relative target, a share or no link at all.
std::string PathOfLinkTarget(const std::string& target);

// The same of the link at a host path.
std::string LinkOfOldDisk(const std::string& host_path);

}  // namespace quorvale::host
