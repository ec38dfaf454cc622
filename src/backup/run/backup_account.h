// The account of a backup: what of its plan is in the archive, and what is not and why.
#pragma once

#include "backup/run/backup_plan.h"
#include "backup/run/member_fates.h"
#include "core/program/account.h"
#include "core/program/program.h"

namespace quorvale {

// Why a member is not in the archive, or not whole; kNone if it is.
AccountReason WhyNotStored(Program& program, const PlannedItem& item, const PlannedMember& member,
                           const MemberFates& fates);
// True if nothing of an item can be there: its source was not, or its program is not on this
// computer. A group of the tree is nothing that could be missing.
bool IsLost(const PlannedItem& item);

// Adds each item with what is in the archive of it, and an entry for each gap.
void FillBackupAccount(Program& program, const BackupPlan& plan, const MemberFates& fates,
                       Account* account);

}  // namespace quorvale
