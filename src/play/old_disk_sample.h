// Turns a machine folder's drive C into the disk of that computer as it stood in it: hives where
// the system keeps them, beside the files. The sample of an old disk.
#pragma once

#include <string>
#include <vector>

#include "play/new_machine.h"
#include "play/running_machine.h"

namespace quorvale {

struct OldDiskPlan {
  MachinePlan machine;                   // a system of the NT family
  std::vector<std::string> other_users;  // with a profile and next to nothing in it
};

// Writes SOFTWARE, SYSTEM and a NTUSER.DAT for each user onto drive C of the machine folder, from
// the computer's registry. "" or a sentence that says why not.
std::string WriteHives(RunningMachine& computer, const OldDiskPlan& plan);

}  // namespace quorvale
