#include "backup/format/account_reasons.h"

#include <utility>

#include "backup/format/member_table.h"

namespace quorvale {
namespace {

constexpr std::pair<const char*, AccountReason> kGapWords[] = {
    {gap_reason::kMissing, AccountReason::kMissing},
    {gap_reason::kUnreadable, AccountReason::kUnreadable},
    {gap_reason::kNoName, AccountReason::kNoName},
    {gap_reason::kNoDot, AccountReason::kNoDot},
    {gap_reason::kNotInstalled, AccountReason::kNotInstalled},
};

}  // namespace

AccountReason ReasonOfWarning(zip::WarningReason reason) {
  switch (reason) {
    case zip::WarningReason::kMissing:
      return AccountReason::kMissing;
    case zip::WarningReason::kUnreadable:
      return AccountReason::kUnreadable;
    case zip::WarningReason::kCutShort:
      return AccountReason::kCutShort;
    case zip::WarningReason::kChanged:
      return AccountReason::kChanged;
    case zip::WarningReason::kNoName:
    case zip::WarningReason::kUnsafe:
      return AccountReason::kNoName;
    case zip::WarningReason::kDamaged:
    case zip::WarningReason::kUnsupported:
      return AccountReason::kDamaged;
    case zip::WarningReason::kPlaceTaken:
      return AccountReason::kPlaceTaken;
    case zip::WarningReason::kNoPlace:
      return AccountReason::kNoPlace;
    case zip::WarningReason::kNoRights:
      return AccountReason::kNoRights;
    case zip::WarningReason::kNoRoom:
      return AccountReason::kNoRoom;
  }
  return AccountReason::kNone;
}

AccountReason ReasonOfGap(const std::string& word) {
  for (const auto& [known, reason] : kGapWords) {
    if (word == known) return reason;
  }
  return AccountReason::kNone;
}

const char* GapReason(AccountReason reason) {
  for (const auto& [word, known] : kGapWords) {
    if (reason == known) return word;
  }
  return gap_reason::kUnreadable;
}

}  // namespace quorvale
