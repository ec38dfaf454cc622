// Which paths a restore may write to. The paths come out of the backup, so they are not trusted.
#pragma once

#include <string>

namespace quorvale {

// True for a path that stands on a drive or share and whose parts are all names that a file can
// have: no "..", no device, no wildcard, no second colon. A trailing "\" is allowed.
bool IsSafeTarget(const std::string& path);

// True for a name, with or without folders, that stays below the folder it is put into.
bool IsSafeBelow(const std::string& name);

}  // namespace quorvale
