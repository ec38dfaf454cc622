// Turns a machine folder's drive C into the disk of a computer with Windows 95, 98 or ME: its hives
// beside the files.
#pragma once

#include <string>
#include <vector>

#include "play/new_machine.h"
#include "play/running_machine.h"

namespace quorvale::test {

// The bytes of the hives that such a computer would have. Names and texts are in code page 1252.
std::string ClassicSystemHive(RunningMachine& computer, const MachinePlan& plan,
                              const std::vector<std::string>& listed_users = {});
// The user's own registry, below a key of this name; the special folders are those of the plan.
std::string ClassicUserHive(RunningMachine& computer, const MachinePlan& plan,
                            const std::string& key);

}  // namespace quorvale::test
