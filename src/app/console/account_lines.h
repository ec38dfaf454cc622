// The account of a run as the console edition tells it.
#pragma once

#include <iosfwd>

#include "app/console/console.h"
#include "core/program/account.h"

namespace quorvale {

// One line for each entry: what became of what, and why.
void PrintEntries(const Account& account, std::ostream& out, const char* indent = "");

// Writes what is missing to the terminal's errors, one a line with its reason. The status of the
// command: kIncomplete for a run that is done and left something out, else `status`.
ExitStatus TellAccount(const Account& account, ExitStatus status, Terminal& terminal);

}  // namespace quorvale
