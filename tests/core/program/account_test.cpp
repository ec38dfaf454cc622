// What an account says of a run, and its text.
#include "core/program/account.h"

#include <gtest/gtest.h>

#include "core/program/account_text.h"

namespace quorvale {
namespace {

Account DoneBackup() {
  Account account;
  account.Begin(AccountRun::kBackup, "Mail", "2026-11-22 05:08:12");
  account.archive = "F:\\Backup\\Mail.obk";
  account.BeginItem("Outlook Express\\Mail Folder", "C:\\Mail");
  account.CountGood(12);
  account.End(AccountEnd::kDone, "2026-11-22 05:09:00");
  return account;
}

AccountEntry LeftOut(const std::string& source, AccountThing thing = AccountThing::kFile) {
  AccountEntry entry;
  entry.thing = thing;
  entry.reason = AccountReason::kUnreadable;
  entry.source = source;
  entry.item = "Outlook Express\\Mail Folder";
  return entry;
}

TEST(Account, ACompleteRunHasNothingToTell) {
  const Account account = DoneBackup();
  EXPECT_FALSE(account.HasToTell());
  EXPECT_EQ(account.Sentence(), "Everything is in this backup.");
}

TEST(Account, OfAScheduleThatWasMadeSaysSo) {
  Account account;
  account.Begin(AccountRun::kSchedule, "Nightly", "2026-11-22 05:08:12");
  account.End(AccountEnd::kDone, "2026-11-22 05:08:12");
  EXPECT_FALSE(account.HasToTell());
  EXPECT_EQ(account.Sentence(), "The schedule was made.");
}

TEST(Account, CountsWhatIsMissing) {
  Account account = DoneBackup();
  account.Add(LeftOut("C:\\Mail\\a.dbx"));
  EXPECT_TRUE(account.HasToTell());
  EXPECT_EQ(account.Sentence(), "1 file is not in this backup.");
  account.Add(LeftOut("C:\\Mail\\b.dbx"));
  EXPECT_EQ(account.Sentence(), "2 files are not in this backup.");
  account.Add(LeftOut("C:\\Mail\\c", AccountThing::kFolder));
  EXPECT_EQ(account.Sentence(), "3 items are not in this backup.");
}

TEST(Account, AFailedRunSaysWhy) {
  Account account = DoneBackup();
  account.End(AccountEnd::kFailed, "", AccountReason::kNoPlace, "F:\\Backup");
  EXPECT_EQ(account.Sentence(),
            "The backup was not made: its drive or folder is not on this computer: F:\\Backup.");
}

TEST(Account, ComesBackFromItsText) {
  Account account = DoneBackup();
  AccountEntry entry = LeftOut("C:\\Mail\\tab\there 100%.dbx");
  entry.detail = "line\r\nbreak";
  account.Add(entry);
  account.Note(AccountReason::kServerRefused, "The backup is not on the server.", "550 No");
  Account read;
  ASSERT_TRUE(ReadAccountText(AccountText(account), &read));
  EXPECT_EQ(AccountText(read), AccountText(account));
  EXPECT_EQ(read.Sentence(), account.Sentence());
  ASSERT_EQ(read.entries().size(), 2u);
  EXPECT_EQ(read.entries()[0].source, entry.source);
  EXPECT_EQ(read.entries()[0].detail, entry.detail);
  EXPECT_EQ(read.entries()[0].reason, AccountReason::kUnreadable);
  EXPECT_EQ(read.items()[0].good, 12u);
  EXPECT_EQ(read.archive, "F:\\Backup\\Mail.obk");
}

TEST(Account, OtherTextsAreNone) {
  Account account;
  EXPECT_FALSE(ReadAccountText("", &account));
  EXPECT_FALSE(ReadAccountText("Quorvale account\t2\r\n", &account));
  EXPECT_FALSE(ReadAccountText("<xml>\r\n", &account));
  EXPECT_FALSE(ReadAccountText("Quorvale account\t1\r\nx\r\nrun\tlunch\ta\tb\r\n", &account));
}

}  // namespace
}  // namespace quorvale
