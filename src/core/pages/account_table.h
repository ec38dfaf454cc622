// An account as a person reads it: the rows of the account window, a text for the log page, and
// what of it can be tried once more.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "core/program/account.h"

namespace quorvale {

inline constexpr std::size_t kAccountColumns = 4;
inline constexpr std::array<const char*, kAccountColumns> kAccountHeads = {"File", "Reason", "Item",
                                                                           "Place"};

struct AccountRow {
  std::array<std::string, kAccountColumns> cells;  // as the heads
  std::size_t entry = 0;                           // its place among the account's entries
};

std::vector<AccountRow> AccountRows(const Account& account);
// By one column, from A to Z or the other way round; rows that are alike there keep their order.
void SortAccountRows(std::vector<AccountRow>* rows, std::size_t column, bool downwards);
// Lines with a tab between cells, the heads first; each ends in CR LF.
std::string AccountList(const std::vector<AccountRow>& rows);
// Which run it was: `Backup "Mail", 2026-11-22 05:08:12`.
std::string AccountTitle(const Account& account);
// The whole of it; lines end in CR LF.
std::string AccountPage(const Account& account);

// What a person can ask for once more: entries whose `item`, `source` and `thing` say what. Of a
// run that made nothing that is all that it was to do. Empty where nothing can be tried again.
std::vector<AccountEntry> EntriesToTryAgain(const Account& account);

}  // namespace quorvale
