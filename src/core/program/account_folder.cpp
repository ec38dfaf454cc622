#include "core/program/account_folder.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_text.h"
#include "core/program/program.h"

namespace quorvale {
namespace {

constexpr char kEnding[] = ".txt";
constexpr char kUnseenValue[] = "Unseen Account";
// The text begins with it, so that every editor takes it for UTF-8.
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

// "2026-11-22 05-08-12 backup": the names sort by time.
std::string FileNameFor(const Account& account) {
  const char* kinds[] = {" backup", " restore", " schedule"};
  return ReplaceAll(account.began(), ":", "-") + kinds[static_cast<size_t>(account.run())];
}

std::string FreePath(Program& program, const Account& account) {
  const std::string base = AccountFolder(program) + FileNameFor(account);
  std::string path = base + kEnding;
  for (int number = 1; program.files().FileExists(path); ++number) {
    path = base + "_" + std::to_string(number) + kEnding;
  }
  return path;
}

// What cannot be removed is tried again at the next run.
void RemoveOldOnes(Program& program) {
  const std::vector<std::string> paths = KeptAccounts(program);
  for (size_t i = kKeptAccounts; i < paths.size(); ++i) {
    program.platform().files.RemoveFile(paths[i], true);
  }
}

}  // namespace

std::string AccountMoment(Program& program) {
  const LocalTime now = program.platform().system.Now();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", now.year, now.month, now.day,
                now.hour, now.minute, now.second);
  return text;
}

std::string AccountFolder(const Program& program) { return LogFolder(program) + "Accounts\\"; }

FileStatus WriteAccount(Program& program, const Account& account, std::string* path) {
  program.files().MakeFolderChain(WithoutBackslash(AccountFolder(program)));
  *path = FreePath(program, account);
  const FileStatus status =
      program.files().WriteWhole(*path, kByteOrderMark + AccountText(account));
  if (status != FileStatus::kOk) return status;
  RemoveOldOnes(program);
  if (account.HasToTell()) {
    program.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, kUnseenValue,
                                     FileNameOf(*path));
  }
  return status;
}

void KeepAccount(Program& program) {
  std::string path;
  const FileStatus status = WriteAccount(program, program.account(), &path);
  if (status == FileStatus::kOk) return;
  program.account().Note(ReasonOfStatus(status), "This account could not be kept.", path);
}

AccountReason ReasonOfStatus(FileStatus status) {
  if (status == FileStatus::kNoSpace) return AccountReason::kNoRoom;
  return status == FileStatus::kNotFound ? AccountReason::kNoPlace : AccountReason::kNoRights;
}

std::vector<std::string> KeptAccounts(Program& program) {
  std::vector<std::string> paths;
  for (const FileInfo& file : program.platform().files.List(AccountFolder(program))) {
    if (!file.IsFolder() && EndsWithNoCase(file.name, kEnding)) {
      paths.push_back(AccountFolder(program) + file.name);
    }
  }
  std::sort(paths.begin(), paths.end(), std::greater<>());
  return paths;
}

bool LoadAccount(Program& program, const std::string& path, Account* account) {
  std::optional<std::string> text = program.files().ReadWhole(path);
  if (!text) return false;
  if (text->starts_with(kByteOrderMark)) text->erase(0, sizeof kByteOrderMark - 1);
  return ReadAccountText(*text, account);
}

std::string UnseenAccount(Program& program) {
  const std::string name =
      program.registry().RegGetValue(RegistryRoot::kCurrentUser, kHistoryKey, kUnseenValue);
  if (name.empty() || FileNameOf(name) != name) return "";
  const std::string path = AccountFolder(program) + name;
  return program.files().FileExists(path) ? path : "";
}

void MarkAccountsSeen(Program& program) {
  if (UnseenAccount(program).empty()) return;
  program.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, kUnseenValue, "");
}

}  // namespace quorvale
