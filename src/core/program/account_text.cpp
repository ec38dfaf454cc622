#include "core/program/account_text.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>
#include <vector>

#include "base/escaped_text.h"

namespace quorvale {
namespace {

constexpr char kHead[] = "Quorvale account";
constexpr char kVersion[] = "1";
constexpr char kLineEnd[] = "\r\n";

// A word of the file for each value, in the order of the enumeration.
constexpr const char* kRuns[] = {"backup", "restore", "schedule"};
constexpr const char* kFates[] = {"left out", "not restored", "put elsewhere", "note"};
constexpr const char* kThings[] = {"file", "folder", "key", "other"};
constexpr const char* kEnds[] = {"not ended", "done", "stopped", "failed"};

template <typename Value, size_t kCount>
const char* WordOf(const char* const (&words)[kCount], Value value) {
  return words[static_cast<size_t>(value)];
}

template <typename Value, size_t kCount>
bool ReadWord(const char* const (&words)[kCount], const std::string& word, Value* value) {
  for (size_t i = 0; i < kCount; ++i) {
    if (word != words[i]) continue;
    *value = static_cast<Value>(i);
    return true;
  }
  return false;
}

constexpr auto kLastReason = AccountReason::kStopped;

// A reason that a later release has is none here; its entry stays.
AccountReason ReadReason(const std::string& text) {
  for (int i = 0; i <= static_cast<int>(kLastReason); ++i) {
    const auto reason = static_cast<AccountReason>(i);
    if (text == ReasonText(reason)) return reason;
  }
  return AccountReason::kNone;
}

bool ReadCount(const std::string& text, std::uint64_t* count) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, *count);
  return error == std::errc() && stop == end;
}

class Reader {
 public:
  bool Take(const std::vector<std::string>& fields, Account* account) {
    const std::string& word = fields[0];
    const auto field = [&](size_t i) { return i < fields.size() ? fields[i] : std::string(); };
    if (word == "run") {
      if (!ReadWord(kRuns, field(1), &run_)) return false;
      account->Begin(run_, field(2), field(3));
    } else if (word == "archive") {
      account->archive = field(1);
    } else if (word == "item") {
      std::uint64_t count = 0;
      if (!ReadCount(field(3), &count)) return false;
      account->BeginItem(field(1), field(2));
      account->CountGood(count);
    } else if (word == "end") {
      AccountEnd end = AccountEnd::kNotEnded;
      if (!ReadWord(kEnds, field(1), &end)) return false;
      account->End(end, field(2), ReadReason(field(3)), field(4));
    } else {
      return TakeEntry(fields, account);
    }
    return true;
  }

 private:
  static bool TakeEntry(const std::vector<std::string>& fields, Account* account) {
    AccountEntry entry;
    if (!ReadWord(kFates, fields[0], &entry.fate)) return true;  // of a later release
    if (fields.size() != 7 || !ReadWord(kThings, fields[1], &entry.thing)) return false;
    entry.source = fields[2];
    entry.reason = ReadReason(fields[3]);
    entry.place = fields[4];
    entry.detail = fields[5];
    entry.item = fields[6];
    account->Add(std::move(entry));
    return true;
  }

  AccountRun run_ = AccountRun::kBackup;
};

}  // namespace

std::string AccountText(const Account& account) {
  std::string text;
  const auto add = [&text](const std::vector<std::string>& fields) {
    text += TabbedLine(fields) + kLineEnd;
  };
  add({kHead, kVersion});
  add({account.Sentence()});
  add({"run", WordOf(kRuns, account.run()), account.name(), account.began()});
  if (!account.archive.empty()) add({"archive", account.archive});
  for (const AccountEntry& entry : account.entries()) {
    add({WordOf(kFates, entry.fate), WordOf(kThings, entry.thing), entry.source,
         ReasonText(entry.reason), entry.place, entry.detail, entry.item});
  }
  for (const AccountItem& item : account.items()) {
    add({"item", item.path, item.key, std::to_string(item.good)});
  }
  add({"end", WordOf(kEnds, account.end()), account.ended(), ReasonText(account.why()),
       account.detail()});
  return text;
}

bool ReadAccountText(const std::string& text, Account* account) {
  *account = Account();
  Reader reader;
  size_t number = 0;
  bool has_run = false;
  for (size_t begin = 0; begin < text.size(); ++number) {
    const size_t end = std::min(text.find('\n', begin), text.size());
    std::string_view line(text.data() + begin, end - begin);
    begin = end + 1;
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::vector<std::string> fields;
    if (!ReadTabbedLine(line, &fields)) return false;
    // The first line says what the file is, the second one is the sentence for people.
    if (number == 0 && (fields.size() != 2 || fields[0] != kHead || fields[1] != kVersion)) {
      return false;
    }
    if (number < 2) continue;
    has_run = has_run || fields[0] == "run";
    if (!has_run || !reader.Take(fields, account)) return false;
  }
  return has_run;
}

}  // namespace quorvale
