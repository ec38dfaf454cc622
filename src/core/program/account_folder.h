// Where accounts are kept: as texts in the folder "Accounts" of the log folder, the newest 50.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/program/account.h"
#include "platform/files.h"

namespace quorvale {

class Program;

inline constexpr std::size_t kKeptAccounts = 50;

// The present moment as an account has it: "2026-11-22 05:08:12".
std::string AccountMoment(Program& program);
// The folder, with its final "\".
std::string AccountFolder(const Program& program);
// Writes an account that has ended and removes those beyond the newest 50. `path` receives its
// file. Where it has something to tell it is noted as unseen.
FileStatus WriteAccount(Program& program, const Account& account, std::string* path);
// The same with the program's own account. Where it cannot be written it says so itself, to
// whoever shows it now.
void KeepAccount(Program& program);
// Why something could not be written.
AccountReason ReasonOfStatus(FileStatus status);
// Full paths, the newest first.
std::vector<std::string> KeptAccounts(Program& program);
// False if the file is not there or is no account.
bool LoadAccount(Program& program, const std::string& path, Account* account);

// The newest account that has something to tell and was not looked at yet: its file; "" if there
// is none.
std::string UnseenAccount(Program& program);
// It was looked at.
void MarkAccountsSeen(Program& program);

}  // namespace quorvale
