// What the steps of a restore tell the account of the run: which item is at work, which of its
// files stand where they belong, and why the others do not.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "archive/archive.h"
#include "core/program/program.h"
#include "restore/run/backup_members.h"

namespace quorvale {

class RestoreAccount {
 public:
  explicit RestoreAccount(Program& program) : program_(program) {}

  void Begin(const RestoreJob& job);
  // What is told from now on is about this item.
  void BeginItem(const RestoreOrigin& origin);
  // One more file or registry key of the item stands where it belongs.
  void Good() { program_.account().CountGood(); }
  // `target` is where it belongs.
  void NotRestored(AccountReason why, const std::string& target,
                   AccountThing thing = AccountThing::kFile, const std::string& detail = "");
  void NotRestored(const zip::Warning& warning, const std::string& target, AccountThing thing);
  // It stands at `place`, since it could not go where it belongs.
  void PutElsewhere(AccountReason why, const std::string& target, const std::string& place,
                    AccountThing thing);
  // What the backup does not hold of an item.
  void TellGaps(const RestoreOrigin& origin, const std::vector<MemberGap>& gaps);
  // Nothing of an item was restored.
  void TellNone(const RestoreOrigin& origin, AccountReason why);
  // True if BeginItem was called for the item in this run.
  bool HadItsTurn(const RestoreOrigin& origin) const;

 private:
  Program& program_;
  std::string item_;                       // at work
  std::unordered_set<std::string> begun_;  // items
};

}  // namespace quorvale
