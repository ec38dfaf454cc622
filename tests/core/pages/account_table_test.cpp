// An account as rows, as a list for other programs, and as a text.
#include "core/pages/account_table.h"

#include <gtest/gtest.h>

#include <utility>

namespace quorvale {
namespace {

AccountEntry Entry(AccountFate fate, AccountReason reason, const std::string& source,
                   const std::string& item = "") {
  AccountEntry entry;
  entry.fate = fate;
  entry.reason = reason;
  entry.source = source;
  entry.item = item;
  return entry;
}

Account Sample(AccountRun run = AccountRun::kBackup) {
  Account account;
  account.Begin(run, "Mail", "2026-11-22 05:08:12");
  account.BeginItem("Other Files\\My Documents", "C:\\Docs");
  account.CountGood(3);
  account.Add(Entry(AccountFate::kLeftOut, AccountReason::kUnreadable, "C:\\Docs\\b.txt",
                    "Other Files\\My Documents"));
  AccountEntry refused = Entry(AccountFate::kLeftOut, AccountReason::kServerRefused,
                               "C:\\Docs\\A.txt", "Other Files\\My Documents");
  refused.detail = "550 No\tspace";
  account.Add(std::move(refused));
  account.End(AccountEnd::kDone, "2026-11-22 05:09:00");
  return account;
}

std::vector<std::string> FirstCells(const std::vector<AccountRow>& rows) {
  std::vector<std::string> cells;
  for (const AccountRow& row : rows) cells.push_back(row.cells[0]);
  return cells;
}

TEST(AccountRows, HoldOneRowAnEntryWithItsReasonInWords) {
  const std::vector<AccountRow> rows = AccountRows(Sample());
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].cells[0], "C:\\Docs\\b.txt");
  EXPECT_EQ(rows[0].cells[1], "in use, or no rights to read it");
  EXPECT_EQ(rows[0].cells[2], "Other Files\\My Documents");
  EXPECT_EQ(rows[0].cells[3], "");
  EXPECT_EQ(rows[1].cells[1],
            "refused by the server, or the server cannot be reached: 550 No\tspace");
}

TEST(AccountRows, AreSortedWithoutRegardToCaseAndKeepTheOrderOfTheirAlike) {
  std::vector<AccountRow> rows = AccountRows(Sample());
  SortAccountRows(&rows, 0, false);
  EXPECT_EQ(FirstCells(rows), (std::vector<std::string>{"C:\\Docs\\A.txt", "C:\\Docs\\b.txt"}));
  EXPECT_EQ(rows[0].entry, 1u);
  SortAccountRows(&rows, 2, false);
  EXPECT_EQ(FirstCells(rows), (std::vector<std::string>{"C:\\Docs\\A.txt", "C:\\Docs\\b.txt"}));
  SortAccountRows(&rows, 0, true);
  EXPECT_EQ(FirstCells(rows), (std::vector<std::string>{"C:\\Docs\\b.txt", "C:\\Docs\\A.txt"}));
}

TEST(AccountList, HasTabsBetweenItsCellsAndNoneInThem) {
  std::vector<AccountRow> rows = AccountRows(Sample());
  SortAccountRows(&rows, 0, false);
  EXPECT_EQ(AccountList(rows),
            "File\tReason\tItem\tPlace\r\n"
            "C:\\Docs\\A.txt\trefused by the server, or the server cannot be reached: 550 No "
            "space\tOther Files\\My Documents\t\r\n"
            "C:\\Docs\\b.txt\tin use, or no rights to read it\tOther Files\\My Documents\t\r\n");
}

TEST(AccountPage, TellsAllInWordsOfAPerson) {
  EXPECT_EQ(AccountPage(Sample()),
            "2 files are not in this backup.\r\n\r\n"
            "Backup \"Mail\", 2026-11-22 05:08:12\r\n"
            "Ended: 2026-11-22 05:09:00\r\n"
            "\r\nNot in this backup:\r\n"
            "C:\\Docs\\b.txt: in use, or no rights to read it\r\n"
            "C:\\Docs\\A.txt: refused by the server, or the server cannot be reached: 550 "
            "No\tspace\r\n"
            "\r\nFiles and keys that went well:\r\n"
            "Other Files\\My Documents: 3\r\n");
}

TEST(AccountPage, TellsWhereAFileIsThatWasPutElsewhere) {
  Account account;
  account.Begin(AccountRun::kRestore, "", "2026-11-22 05:08:12");
  AccountEntry entry = Entry(AccountFate::kPutElsewhere, AccountReason::kNoPlace, "E:\\a.txt");
  entry.place = "C:\\Restore\\a.txt";
  account.Add(entry);
  account.archive = "D:\\Mail.obk";
  account.End(AccountEnd::kDone, "");
  EXPECT_EQ(AccountPage(account),
            "1 file is put elsewhere.\r\n\r\n"
            "Restore, 2026-11-22 05:08:12\r\n"
            "Backup file: D:\\Mail.obk\r\n"
            "\r\nPut elsewhere:\r\n"
            "E:\\a.txt: its drive or folder is not on this computer. It is at "
            "C:\\Restore\\a.txt\r\n");
}

TEST(EntriesToTryAgain, AreThoseThatABackupLacks) {
  const std::vector<AccountEntry> entries = EntriesToTryAgain(Sample());
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[1].source, "C:\\Docs\\A.txt");
}

TEST(EntriesToTryAgain, AreAllItemsOfABackupThatWasNotMade) {
  Account account = Sample();
  account.End(AccountEnd::kFailed, "2026-11-22 05:09:00", AccountReason::kNoRoom);
  const std::vector<AccountEntry> entries = EntriesToTryAgain(account);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].item, "Other Files\\My Documents");
  EXPECT_EQ(entries[0].source, "C:\\Docs");
}

TEST(EntriesToTryAgain, AreThoseThatARestoreLacksWhileItsBackupIsKnown) {
  Account account;
  account.Begin(AccountRun::kRestore, "Mail", "2026-11-22 05:08:12");
  account.Add(Entry(AccountFate::kNotRestored, AccountReason::kNoRights, "C:\\a.txt", "Docs"));
  account.Add(Entry(AccountFate::kPutElsewhere, AccountReason::kNoPlace, "E:\\b.txt", "Docs"));
  account.Note(AccountReason::kNone, "Take care.");
  account.End(AccountEnd::kDone, "");
  EXPECT_TRUE(EntriesToTryAgain(account).empty());
  account.archive = "D:\\Mail.obk";
  ASSERT_EQ(EntriesToTryAgain(account).size(), 1u);
  EXPECT_EQ(EntriesToTryAgain(account)[0].source, "C:\\a.txt");
}

TEST(EntriesToTryAgain, AreNoneOfASchedule) {
  EXPECT_TRUE(EntriesToTryAgain(Sample(AccountRun::kSchedule)).empty());
}

}  // namespace
}  // namespace quorvale
