// The account of a run as the console edition tells it.
#pragma once

#include "app/console/console.h"
#include "core/program/account.h"

namespace quorvale {

// Writes what is missing to the terminal's errors, one a line with its reason. The status of the
// command: kIncomplete for a run that is done and left something out, else `status`.
ExitStatus TellAccount(const Account& account, ExitStatus status, Terminal& terminal);

}  // namespace quorvale
