#include "core/program/account.h"

#include <algorithm>
#include <utility>

namespace quorvale {
namespace {

// "1 file is", "12 files are": the noun fits what is counted.
std::string Counted(const std::vector<AccountEntry>& entries, AccountFate fate) {
  std::size_t count = 0;
  bool only_files = true;
  for (const AccountEntry& entry : entries) {
    if (entry.fate != fate) continue;
    ++count;
    only_files = only_files && entry.thing == AccountThing::kFile;
  }
  const std::string noun = only_files ? "file" : "item";
  return std::to_string(count) + " " + noun + (count == 1 ? " is" : "s are");
}

std::string Reason(const Account& account) {
  std::string reason = ReasonText(account.why());
  if (!account.detail().empty()) reason += (reason.empty() ? "" : ": ") + account.detail();
  return reason.empty() ? "." : ": " + reason + (reason.ends_with('.') ? "" : ".");
}

std::string FailedSentence(const Account& account) {
  switch (account.run()) {
    case AccountRun::kBackup:
      return "The backup was not made" + Reason(account);
    case AccountRun::kRestore:
      return "The restore was not done" + Reason(account);
    case AccountRun::kSchedule:
      break;
  }
  return "The schedule was not made" + Reason(account);
}

std::string DoneSentence(AccountRun run) {
  switch (run) {
    case AccountRun::kBackup:
      return "Everything is in this backup.";
    case AccountRun::kRestore:
      return "Everything was restored.";
    case AccountRun::kSchedule:
      break;
  }
  return "The schedule was made.";
}

std::string StoppedSentence(AccountRun run) {
  if (run == AccountRun::kBackup) return "The backup was stopped. It was not made.";
  return "The restore was stopped. What it had restored by then stays.";
}

}  // namespace

void Account::Begin(AccountRun run, const std::string& name, const std::string& began) {
  *this = Account();
  run_ = run;
  name_ = name;
  began_ = began;
}

void Account::BeginItem(const std::string& path, const std::string& key) {
  const auto [place, is_new] = places_.emplace(path + "\n" + key, items_.size());
  if (is_new) items_.push_back({path, key, 0});
  item_ = place->second;
}

void Account::CountGood(std::uint64_t count) {
  if (!items_.empty()) items_[item_].good += count;
}

void Account::Add(AccountEntry entry) { entries_.push_back(std::move(entry)); }

void Account::Note(AccountReason why, const std::string& text, const std::string& detail) {
  AccountEntry entry;
  entry.fate = AccountFate::kNote;
  entry.reason = why;
  entry.thing = AccountThing::kOther;
  entry.source = text;
  entry.detail = detail;
  Add(std::move(entry));
}

void Account::End(AccountEnd end, const std::string& ended, AccountReason why,
                  const std::string& detail) {
  end_ = end;
  ended_ = ended;
  why_ = why;
  detail_ = detail;
}

std::size_t Account::CountOf(AccountFate fate) const {
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(),
                    [fate](const AccountEntry& entry) { return entry.fate == fate; }));
}

bool Account::HasToTell() const { return !entries_.empty() || end_ != AccountEnd::kDone; }

std::string Account::Sentence() const {
  if (end_ == AccountEnd::kFailed) return FailedSentence(*this);
  if (end_ == AccountEnd::kStopped) return StoppedSentence(run_);
  std::string sentence;
  const auto add = [&](AccountFate fate, const char* words) {
    if (CountOf(fate) == 0) return;
    sentence += (sentence.empty() ? "" : " ") + Counted(entries_, fate) + words;
  };
  add(AccountFate::kLeftOut, " not in this backup.");
  add(AccountFate::kNotRestored, " not restored.");
  add(AccountFate::kPutElsewhere, " put elsewhere.");
  if (!sentence.empty()) return sentence;
  for (const AccountEntry& entry : entries_) {
    if (entry.fate != AccountFate::kNote) continue;
    if (entry.thing == AccountThing::kOther) return entry.source;
    return entry.source + ": " + ReasonText(entry.reason) + ".";
  }
  return DoneSentence(run_);
}

const char* ReasonText(AccountReason reason) {
  switch (reason) {
    case AccountReason::kNone:
      return "";
    case AccountReason::kMissing:
      return "not there";
    case AccountReason::kUnreadable:
      return "in use, or no rights to read it";
    case AccountReason::kCutShort:
      return "cannot be read to its end";
    case AccountReason::kChanged:
      return "changed while it was read";
    case AccountReason::kNoDot:
      return "no dot in its name";
    case AccountReason::kNoName:
      return "no name that an archive can hold";
    case AccountReason::kDamaged:
      return "damaged in the backup";
    case AccountReason::kNotInBackup:
      return "not in the backup";
    case AccountReason::kNoRoom:
      return "no room on the disk";
    case AccountReason::kPlaceTaken:
      return "something else of that name stands in its place";
    case AccountReason::kNoRights:
      return "its place is in use, or there are no rights to write it";
    case AccountReason::kNoPlace:
      return "its drive or folder is not on this computer";
    case AccountReason::kImportRefused:
      return "the registry editor did not take it";
    case AccountReason::kNotInstalled:
      return "its program is not on this computer";
    case AccountReason::kServerRefused:
      return "refused by the server, or the server cannot be reached";
    case AccountReason::kDiscRefused:
      return "not written to a disc";
    case AccountReason::kSchedulerRefused:
      return "the task scheduler did not take it";
    case AccountReason::kStopped:
      return "the run was stopped before";
  }
  return "";
}

}  // namespace quorvale
