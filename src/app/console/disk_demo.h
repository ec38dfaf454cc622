// The third part of the demo: the disk of a dead computer with Windows XP, its two users listed,
// one of them backed up and restored onto a computer with Windows Vista.
#pragma once

#include <string>

#include "app/console/console.h"

namespace quorvale {

// Works in a folder of the host that stands.
ExitStatus RunDiskDemo(const std::string& folder, Terminal& terminal);

// What it makes in the folder beside the backup.
inline constexpr const char* kDiskDemoFolders[] = {"dead computer", "old disk of Emma",
                                                   "computer of Frida"};

}  // namespace quorvale
