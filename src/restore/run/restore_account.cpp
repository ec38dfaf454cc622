#include "restore/run/restore_account.h"

#include <utility>

#include "backup/format/account_reasons.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/account_folder.h"
#include "restore/run/restore_places.h"

namespace quorvale {
namespace {

// The word of a table as a person reads it; that of a later release stays as it is.
std::string TextOfGap(const std::string& word) {
  const AccountReason reason = ReasonOfGap(word);
  return reason == AccountReason::kNone ? word : ReasonText(reason);
}

std::string IdOf(const RestoreOrigin& origin) { return origin.path + "\n" + origin.key; }

bool IsRegistryKey(const std::string& key) { return key.starts_with("HKEY_"); }

// Where a part of an item belongs; `inner` is "" for the item itself.
std::string PlaceOf(const RestoreOrigin& origin, const std::string& inner) {
  return inner.empty() ? origin.key : WithBackslash(origin.key) + inner;
}

AccountThing ThingOf(const RestoreOrigin& origin, const std::string& inner) {
  if (IsRegistryKey(origin.key)) return AccountThing::kRegistryKey;
  return inner.empty() && origin.key.ends_with("\\") ? AccountThing::kFolder : AccountThing::kFile;
}

}  // namespace

void RestoreAccount::Begin(const RestoreJob& job) {
  program_.account().Begin(AccountRun::kRestore, BackupBaseName(job), AccountMoment(program_));
  program_.account().archive = job.gRestoreFilePath;
  begun_.clear();
}

void RestoreAccount::BeginItem(const RestoreOrigin& origin) {
  program_.account().BeginItem(origin.path, origin.key);
  begun_.insert(IdOf(origin));
  item_ = origin.path;
}

void RestoreAccount::NotRestored(AccountReason why, const std::string& target, AccountThing thing,
                                 const std::string& detail) {
  AccountEntry entry;
  entry.fate = AccountFate::kNotRestored;
  entry.reason = why;
  entry.thing = thing;
  entry.item = item_;
  entry.source = target;
  entry.detail = detail;
  program_.account().Add(std::move(entry));
}

void RestoreAccount::NotRestored(const zip::Warning& warning, const std::string& target,
                                 AccountThing thing) {
  const bool says_more = warning.reason == zip::WarningReason::kUnsupported ||
                         warning.reason == zip::WarningReason::kUnsafe;
  NotRestored(ReasonOfWarning(warning.reason), target, thing, says_more ? warning.text : "");
}

void RestoreAccount::PutElsewhere(AccountReason why, const std::string& target,
                                  const std::string& place, AccountThing thing) {
  AccountEntry entry;
  entry.fate = AccountFate::kPutElsewhere;
  entry.reason = why;
  entry.thing = thing;
  entry.item = item_;
  entry.source = target;
  entry.place = place;
  program_.account().Add(std::move(entry));
}

void RestoreAccount::TellGaps(const RestoreOrigin& origin, const std::vector<MemberGap>& gaps) {
  BeginItem(origin);
  for (const MemberGap& gap : gaps) {
    const std::string target = PlaceOf(origin, gap.inner);
    if (gap.is_damaged) {
      NotRestored(AccountReason::kDamaged, target, ThingOf(origin, gap.inner));
    } else {
      NotRestored(AccountReason::kNotInBackup, target, ThingOf(origin, gap.inner),
                  TextOfGap(gap.reason));
    }
  }
}

void RestoreAccount::TellNone(const RestoreOrigin& origin, AccountReason why) {
  BeginItem(origin);
  NotRestored(why, origin.key, ThingOf(origin, ""));
}

bool RestoreAccount::HadItsTurn(const RestoreOrigin& origin) const {
  return begun_.contains(IdOf(origin));
}

}  // namespace quorvale
