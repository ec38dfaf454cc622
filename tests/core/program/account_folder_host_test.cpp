// The folder that keeps the newest accounts.
#include "core/program/account_folder.h"

#include <gtest/gtest.h>

#include "core/program/ModGlobal.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

class AccountFolderTest : public ::testing::Test {
 protected:
  AccountFolderTest() { program_.session().gAppDataPath = DataFolder(program_); }

  std::string Keep(const std::string& began, bool with_gap) {
    Account account;
    account.Begin(AccountRun::kBackup, "Mail", began);
    if (with_gap) {
      AccountEntry entry;
      entry.source = "C:\\Mail\\a.dbx";
      account.Add(entry);
    }
    account.End(AccountEnd::kDone, began);
    std::string path;
    EXPECT_EQ(WriteAccount(program_, account, &path), FileStatus::kOk);
    return path;
  }

  TestMachine machine_;
  Program& program_ = machine_.app();
};

TEST_F(AccountFolderTest, TheNewestFiftyStay) {
  for (int i = 0; i < 53; ++i) {
    Keep("2026-11-22 05:08:" + std::string(1, static_cast<char>('0' + i / 10)) +
             std::to_string(i % 10),
         false);
  }
  const std::vector<std::string> kept = KeptAccounts(program_);
  ASSERT_EQ(kept.size(), kKeptAccounts);
  EXPECT_TRUE(kept.front().ends_with("2026-11-22 05-08-52 backup.txt")) << kept.front();
  EXPECT_TRUE(kept.back().ends_with("2026-11-22 05-08-03 backup.txt")) << kept.back();
}

TEST_F(AccountFolderTest, TwoOfOneSecondAreBothKept) {
  EXPECT_NE(Keep("2026-11-22 05:08:12", false), Keep("2026-11-22 05:08:12", false));
  EXPECT_EQ(KeptAccounts(program_).size(), 2u);
}

TEST_F(AccountFolderTest, WhatHasSomethingToTellIsUnseenUntilItWasLookedAt) {
  Keep("2026-11-22 05:08:12", false);
  EXPECT_EQ(UnseenAccount(program_), "");
  const std::string path = Keep("2026-11-22 05:08:13", true);
  EXPECT_EQ(UnseenAccount(program_), path);
  Account account;
  ASSERT_TRUE(LoadAccount(program_, path, &account));
  EXPECT_EQ(account.Sentence(), "1 file is not in this backup.");
  MarkAccountsSeen(program_);
  EXPECT_EQ(UnseenAccount(program_), "");
}

}  // namespace
}  // namespace quorvale
