// The account's words for what the archive component warns of and for the gaps of a member table: a
// backup and its restore say the same of the same thing.
#pragma once

#include <string>

#include "archive/archive.h"
#include "core/program/account.h"

namespace quorvale {

AccountReason ReasonOfWarning(zip::WarningReason reason);

// A word of gap_reason; kNone for one that a later release has.
AccountReason ReasonOfGap(const std::string& word);
// The word of gap_reason for why a member is not in an archive.
const char* GapReason(AccountReason reason);

}  // namespace quorvale
