#include "app/console/account_lines.h"

#include <ostream>

namespace quorvale {
namespace {

const char* WordsOf(AccountFate fate) {
  switch (fate) {
    case AccountFate::kLeftOut:
      return "left out: ";
    case AccountFate::kNotRestored:
      return "not restored: ";
    case AccountFate::kPutElsewhere:
      return "put elsewhere: ";
    case AccountFate::kNote:
      break;
  }
  return "note: ";
}

// A name may hold anything; it is one line here.
std::string OnOneLine(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20) c = ' ';
  }
  return text;
}

std::string LineOf(const AccountEntry& entry) {
  std::string line = WordsOf(entry.fate) + entry.source;
  if (entry.source.empty()) line += entry.item;
  if (!entry.place.empty()) line += " -> " + entry.place;
  const std::string reason = ReasonText(entry.reason);
  if (!reason.empty()) line += ": " + reason;
  if (!entry.detail.empty()) line += ": " + entry.detail;
  return OnOneLine(line);
}

}  // namespace

void PrintEntries(const Account& account, std::ostream& out, const char* indent) {
  for (const AccountEntry& entry : account.entries()) out << indent << LineOf(entry) << "\n";
}

ExitStatus TellAccount(const Account& account, ExitStatus status, Terminal& terminal) {
  if (account.end() == AccountEnd::kNotEnded || !account.HasToTell()) return status;
  PrintEntries(account, terminal.error);
  if (account.end() == AccountEnd::kFailed || !account.entries().empty()) {
    terminal.error << account.Sentence() << "\n";
  }
  const bool incomplete =
      account.CountOf(AccountFate::kLeftOut) + account.CountOf(AccountFate::kNotRestored) > 0;
  return status == ExitStatus::kDone && incomplete ? ExitStatus::kIncomplete : status;
}

}  // namespace quorvale
