#include "core/pages/account_table.h"

#include <algorithm>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr char kLineEnd[] = "\r\n";

std::string ReasonOf(const AccountEntry& entry) {
  std::string reason = ReasonText(entry.reason);
  if (!entry.detail.empty()) reason += (reason.empty() ? "" : ": ") + entry.detail;
  return reason;
}

std::string Tabbed(const std::array<std::string, kAccountColumns>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    std::string cell = cells[i];
    // Nothing in a cell begins another one, or another line.
    for (char& byte : cell) {
      if (byte == '\t' || byte == '\r' || byte == '\n') byte = ' ';
    }
    line += (i == 0 ? "" : "\t") + cell;
  }
  return line + kLineEnd;
}

std::string EntryLine(const AccountEntry& entry) {
  std::string line = entry.source;
  const std::string reason = ReasonOf(entry);
  if (!reason.empty()) line += ": " + reason;
  if (!entry.place.empty()) line += ". It is at " + entry.place;
  return line + kLineEnd;
}

std::string Entries(const Account& account, AccountFate fate, const char* heading) {
  std::string lines;
  for (const AccountEntry& entry : account.entries()) {
    if (entry.fate == fate) lines += EntryLine(entry);
  }
  return lines.empty() ? "" : kLineEnd + std::string(heading) + kLineEnd + lines;
}

std::vector<AccountEntry> AllItems(const Account& account) {
  std::vector<AccountEntry> entries;
  for (const AccountItem& item : account.items()) {
    AccountEntry entry;
    entry.thing = AccountThing::kOther;
    entry.item = item.path;
    entry.source = item.key;
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace

std::vector<AccountRow> AccountRows(const Account& account) {
  std::vector<AccountRow> rows;
  for (const AccountEntry& entry : account.entries()) {
    rows.push_back({{entry.source, ReasonOf(entry), entry.item, entry.place}, rows.size()});
  }
  return rows;
}

void SortAccountRows(std::vector<AccountRow>* rows, std::size_t column, bool downwards) {
  std::stable_sort(rows->begin(), rows->end(), [&](const AccountRow& a, const AccountRow& b) {
    const std::string first = FoldCase(a.cells[column]);
    const std::string second = FoldCase(b.cells[column]);
    return downwards ? second < first : first < second;
  });
}

std::string AccountList(const std::vector<AccountRow>& rows) {
  std::array<std::string, kAccountColumns> heads;
  std::copy(kAccountHeads.begin(), kAccountHeads.end(), heads.begin());
  std::string text = Tabbed(heads);
  for (const AccountRow& row : rows) text += Tabbed(row.cells);
  return text;
}

std::string AccountTitle(const Account& account) {
  constexpr std::array<const char*, 3> kRuns = {"Backup", "Restore", "Schedule"};
  std::string title = kRuns[static_cast<std::size_t>(account.run())];
  if (!account.name().empty()) title += " \"" + account.name() + "\"";
  return title + ", " + account.began();
}

std::string AccountPage(const Account& account) {
  std::string text = account.Sentence() + kLineEnd + kLineEnd + AccountTitle(account) + kLineEnd;
  if (!account.ended().empty()) text += "Ended: " + account.ended() + kLineEnd;
  if (!account.archive.empty()) text += "Backup file: " + account.archive + kLineEnd;
  text += Entries(account, AccountFate::kLeftOut, "Not in this backup:");
  text += Entries(account, AccountFate::kNotRestored, "Not restored:");
  text += Entries(account, AccountFate::kPutElsewhere, "Put elsewhere:");
  text += Entries(account, AccountFate::kNote, "Notes:");
  if (account.items().empty()) return text;
  text += kLineEnd + std::string("Files and keys that went well:") + kLineEnd;
  for (const AccountItem& item : account.items()) {
    text += item.path + ": " + std::to_string(item.good) + kLineEnd;
  }
  return text;
}

std::vector<AccountEntry> EntriesToTryAgain(const Account& account) {
  if (account.run() == AccountRun::kSchedule) return {};
  const bool of_backup = account.run() == AccountRun::kBackup;
  if (!of_backup && account.archive.empty()) return {};
  if (of_backup && account.end() != AccountEnd::kDone) return AllItems(account);
  std::vector<AccountEntry> entries;
  for (const AccountEntry& entry : account.entries()) {
    const AccountFate wanted = of_backup ? AccountFate::kLeftOut : AccountFate::kNotRestored;
    if (entry.fate == wanted && !entry.item.empty()) entries.push_back(entry);
  }
  return entries.empty() && account.end() != AccountEnd::kDone ? AllItems(account) : entries;
}

}  // namespace quorvale
