// A restore without pages on a computer of faults, and what must be true after it.
#pragma once

#include <string>
#include <vector>

#include "faults/fault_computer.h"
#include "restore/run/restore_run.h"

namespace quorvale::fault_test {

// The bytes of a sound backup of everything.
std::string BackupOfEverything();

// The job of restoring all items of the backup at `path`: what the pages commit.
void CommitRestore(Program& program, const std::string& path);
// The engine runs to its end, and removes what it staged. The account is the program's.
RestoreResult RunRestore(Program& program);

// A restore that met a fault, as its problems: `before` is the used computer, `whole` what a sound
// restore makes of it.
std::vector<std::string> WhatIsWrong(const RestoreResult& result, const Account& account,
                                     const Contents& before, const Contents& whole,
                                     const Contents& after);

}  // namespace quorvale::fault_test
