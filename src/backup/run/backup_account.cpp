#include "backup/run/backup_account.h"

#include <optional>
#include <utility>

#include "backup/format/account_reasons.h"
#include "base/paths.h"
#include "base/text.h"
#include "platform/registry_text.h"

namespace quorvale {
namespace {

AccountThing ThingOf(const PlannedItem& item) {
  switch (item.kind) {
    case ItemEntry::Kind::kRegistry:
      return AccountThing::kRegistryKey;
    case ItemEntry::Kind::kFolder:
      return AccountThing::kFolder;
    case ItemEntry::Kind::kFile:
      return AccountThing::kFile;
    case ItemEntry::Kind::kNone:
      break;
  }
  return AccountThing::kOther;
}

AccountThing ThingOf(const PlannedMember& member) {
  switch (member.kind) {
    case TableMember::Kind::kRegistry:
      return AccountThing::kRegistryKey;
    case TableMember::Kind::kFolder:
      return AccountThing::kFolder;
    case TableMember::Kind::kFile:
      break;
  }
  return AccountThing::kFile;
}

// What the member stands for on the person's computer: an export is made of a key, a copy of a
// file.
std::string SourceOf(Program& program, const PlannedItem& item, const PlannedMember& member) {
  if (member.kind == TableMember::Kind::kRegistry) return item.key;
  if (!member.original.empty()) return member.original;
  std::string source = program.session().gFileCollection.At(member.file).SourceFilePath;
  if (source.ends_with("\\*.*")) source.resize(source.size() - 4);
  return source;
}

void AddGap(const PlannedItem& item, AccountThing thing, std::string source, AccountReason reason,
            Account* account, AccountFate fate = AccountFate::kLeftOut) {
  AccountEntry entry;
  entry.fate = fate;
  entry.reason = reason;
  entry.thing = thing;
  entry.item = item.path;
  entry.source = std::move(source);
  account->Add(std::move(entry));
}

}  // namespace

AccountReason WhyNotStored(Program& program, const PlannedItem& item, const PlannedMember& member,
                           const MemberFates& fates) {
  const AccountReason known = fates.ReasonOf(member.file);
  if (fates.Of(member.file).is_stored) return known;
  if (member.kind == TableMember::Kind::kRegistry) {
    const std::optional<RegistryPath> key = ParseRegistryPath(item.key);
    const bool is_there = key && program.registry().store().KeyExists(key->root, key->subkey);
    return is_there ? AccountReason::kImportRefused : AccountReason::kMissing;
  }
  const std::string source = SourceOf(program, item, member);
  if (!program.platform().files.Stat(source)) return AccountReason::kMissing;
  // A copy that could not be made is missing for the archive.
  const bool is_known = known != AccountReason::kNone && known != AccountReason::kMissing;
  return is_known ? known : AccountReason::kUnreadable;
}

bool IsLost(const PlannedItem& item) {
  return item.kind != ItemEntry::Kind::kNone && item.members.empty() && item.gaps.empty() &&
         (!item.is_taken || !item.is_there);
}

void FillBackupAccount(Program& program, const BackupPlan& plan, const MemberFates& fates,
                       Account* account) {
  for (const PlannedItem& item : plan.items) {
    if (item.kind == ItemEntry::Kind::kNone) continue;
    account->BeginItem(item.path, item.key);
    for (const PlannedMember& member : item.members) {
      const AccountReason why = WhyNotStored(program, item, member, fates);
      const bool is_stored = fates.Of(member.file).is_stored;
      if (is_stored && member.kind != TableMember::Kind::kFolder) account->CountGood();
      if (why == AccountReason::kNone) continue;
      AddGap(item, ThingOf(member), SourceOf(program, item, member), why, account,
             is_stored ? AccountFate::kNote : AccountFate::kLeftOut);
    }
    for (const PlannedGap& gap : item.gaps) {
      AddGap(item, gap.is_folder ? AccountThing::kFolder : AccountThing::kFile, gap.source,
             ReasonOfGap(gap.reason), account);
    }
    if (IsLost(item)) {
      AddGap(item, ThingOf(item), item.key,
             item.is_taken ? AccountReason::kMissing : AccountReason::kNotInstalled, account);
    }
  }
}

}  // namespace quorvale
