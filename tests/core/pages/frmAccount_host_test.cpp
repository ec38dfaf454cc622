// The window with the account of a run: when it opens, what it shows, and its buttons.
#include "core/pages/frmAccount.h"

#include <gtest/gtest.h>

#include "core/main/FrmWelcome.h"
#include "core/pages/account_window.h"
#include "core/program/account_folder.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

class FrmAccountTest : public testing::Test {
 protected:
  FrmAccountTest() { machine_.app().Get<FrmWelcome>(); }

  static AccountEntry LeftOut(const std::string& source, AccountReason reason,
                              const std::string& item) {
    AccountEntry entry;
    entry.source = source;
    entry.reason = reason;
    entry.item = item;
    return entry;
  }
  // A backup that lacks two files, as its end leaves it.
  Account& RunBackup() {
    Account& account = machine_.app().account();
    account.Begin(AccountRun::kBackup, "Mail", "2026-11-22 05:08:12");
    account.archive = "D:\\Backups\\Mail.obk";
    account.Add(LeftOut("C:\\Docs\\b & c.txt", AccountReason::kUnreadable, "Other Files\\Docs"));
    account.Add(LeftOut("C:\\Gone\\A.txt", AccountReason::kMissing, "Add More Files\\A"));
    account.End(AccountEnd::kDone, "2026-11-22 05:09:00");
    return account;
  }
  std::string Keep() {
    std::string path;
    EXPECT_EQ(WriteAccount(machine_.app(), machine_.app().account(), &path), FileStatus::kOk);
    return path;
  }
  frmAccount* Shown() {
    frmAccount* window = machine_.app().Loaded<frmAccount>();
    return window != nullptr && window->Visible() ? window : nullptr;
  }
  frmAccount& ShowBackup() {
    RunBackup();
    Keep();
    machine_.Do([&] { ShowAccount(machine_.app(), AccountRun::kBackup, true); });
    return machine_.app().Get<frmAccount>();
  }
  static std::string Files(const frmAccount& window) {
    std::string files;
    for (const ui::ListView::Row& row : window.lvwEntries.rows()) files += row.cells[0] + "\n";
    return files;
  }
  ui::Label& Line() { return machine_.app().Get<FrmWelcome>().LblAccount; }

  TestMachine machine_;
};

// --- When it opens ------------------------------------------------------------------------------

TEST_F(FrmAccountTest, ItOpensAtTheEndOfARunThatHasSomethingToTellAndCountsAsLookedAt) {
  ShowBackup();
  ASSERT_NE(Shown(), nullptr);
  EXPECT_EQ(Shown()->host_panel, nullptr);
  EXPECT_EQ(Shown()->Caption(), "Quorvale - Result of the backup");
  EXPECT_EQ(UnseenAccount(machine_.app()), "");
  EXPECT_FALSE(Line().visible);
}

TEST_F(FrmAccountTest, ARunThatDidAllShowsNothing) {
  Account& account = machine_.app().account();
  account.Begin(AccountRun::kBackup, "Mail", "2026-11-22 05:08:12");
  account.End(AccountEnd::kDone, "2026-11-22 05:09:00");
  ShowAccount(machine_.app(), AccountRun::kBackup, true);
  EXPECT_EQ(Shown(), nullptr);
}

TEST_F(FrmAccountTest, BeforeTheFirstRunAndForAnotherKindOfRunNothingIsShown) {
  ShowAccount(machine_.app(), AccountRun::kBackup, true);
  EXPECT_EQ(Shown(), nullptr);
  RunBackup();
  ShowAccount(machine_.app(), AccountRun::kSchedule, true);
  EXPECT_EQ(Shown(), nullptr);
}

TEST_F(FrmAccountTest, ARunThatWasOnlyStoppedIsKnown) {
  Account& account = RunBackup();
  account.End(AccountEnd::kStopped, "2026-11-22 05:09:00");
  Keep();
  ShowAccount(machine_.app(), AccountRun::kBackup, true);
  EXPECT_EQ(Shown(), nullptr);
  EXPECT_EQ(UnseenAccount(machine_.app()), "");

  account.Begin(AccountRun::kRestore, "Mail", "2026-11-22 05:08:12");
  account.Add(LeftOut("C:\\a", AccountReason::kStopped, "Docs"));
  account.End(AccountEnd::kStopped, "2026-11-22 05:09:00");
  ShowAccount(machine_.app(), AccountRun::kRestore, true);
  EXPECT_EQ(Shown(), nullptr);
  account.Add(LeftOut("C:\\b", AccountReason::kNoRights, "Docs"));
  ShowAccount(machine_.app(), AccountRun::kRestore, true);
  EXPECT_NE(Shown(), nullptr);
}

TEST_F(FrmAccountTest, ARunThatNobodyAttendsLeavesItToTheHomePageOfTheNextStart) {
  RunBackup();
  const std::string path = Keep();
  ShowAccount(machine_.app(), AccountRun::kBackup, false);
  EXPECT_EQ(Shown(), nullptr);
  EXPECT_EQ(UnseenAccount(machine_.app()), path);

  machine_.Restart();
  machine_.app().Get<FrmWelcome>();
  ASSERT_TRUE(Line().IsShown());
  EXPECT_EQ(Line().caption.get(), "2 files are not in this backup.");
  EXPECT_EQ(Line().tooltip.get(), "2 files are not in this backup.");
  machine_.Click(Line());
  ASSERT_NE(Shown(), nullptr);
  EXPECT_EQ(Shown()->lblRun.caption.get(), "Backup \"Mail\", 2026-11-22 05:08:12");
  EXPECT_FALSE(Line().visible);

  machine_.Restart();
  machine_.app().Get<FrmWelcome>();
  EXPECT_FALSE(Line().visible);
}

TEST_F(FrmAccountTest, TheLineGoesWithItsAccount) {
  RunBackup();
  const std::string path = Keep();
  machine_.app().Get<FrmWelcome>().cmdWC_Home_Click();
  ASSERT_TRUE(Line().visible);
  machine_.RemoveFile(path);
  machine_.Click(Line());
  EXPECT_FALSE(Line().visible);
  EXPECT_EQ(Shown(), nullptr);
}

TEST_F(FrmAccountTest, ItGoesWhenTheNextPagesComeOrThePersonGoesHome) {
  FrmWelcome& welcome = machine_.app().Get<FrmWelcome>();
  ShowBackup();
  machine_.Click(welcome.CmdWC_Home);
  EXPECT_EQ(Shown(), nullptr);
  ShowBackup();
  ASSERT_NE(Shown(), nullptr);
  machine_.Click(welcome.cmdWC_TakeBackup);
  EXPECT_EQ(Shown(), nullptr);
}

// --- What it shows ------------------------------------------------------------------------------

TEST_F(FrmAccountTest, ItHoldsTheSentenceAndARowForEachEntry) {
  frmAccount& window = ShowBackup();
  EXPECT_EQ(window.lblSentence.caption.get(), "2 files are not in this backup.");
  EXPECT_EQ(window.lvwEntries.columns,
            (std::vector<std::string>{"File", "Reason", "Item", "Place"}));
  ASSERT_EQ(window.lvwEntries.rows().size(), 2u);
  EXPECT_EQ(window.lvwEntries.rows()[0].cells,
            (std::vector<std::string>{"C:\\Docs\\b & c.txt", "in use, or no rights to read it",
                                      "Other Files\\Docs", ""}));
  window.lvwEntries.selected = 0;
  EXPECT_EQ(window.lblEntry.caption.get(), "C:\\Docs\\b && c.txt: in use, or no rights to read it");
}

TEST_F(FrmAccountTest, AHeadingOrTheBoxSortsAndTheSelectionStaysWithItsRow) {
  frmAccount& window = ShowBackup();
  EXPECT_EQ(Files(window), "C:\\Docs\\b & c.txt\nC:\\Gone\\A.txt\n");
  window.lvwEntries.selected = 0;
  window.lvwEntries.on_column_click(0);
  EXPECT_EQ(Files(window), "C:\\Gone\\A.txt\nC:\\Docs\\b & c.txt\n");
  EXPECT_EQ(window.lvwEntries.selected.get(), 1);
  window.lvwEntries.on_column_click(2);
  EXPECT_EQ(window.cboSort.SelectedText(), "Item");
  EXPECT_EQ(Files(window), "C:\\Gone\\A.txt\nC:\\Docs\\b & c.txt\n");
  window.cboSort.SelectText("Reason");
  EXPECT_EQ(Files(window), "C:\\Docs\\b & c.txt\nC:\\Gone\\A.txt\n");
  EXPECT_EQ(window.lvwEntries.selected.get(), 0);
}

TEST_F(FrmAccountTest, ARunThatFailedWithoutEntriesShowsItsSentenceAlone) {
  Account& account = machine_.app().account();
  account.Begin(AccountRun::kBackup, "Mail", "2026-11-22 05:08:12");
  account.End(AccountEnd::kFailed, "2026-11-22 05:09:00", AccountReason::kNoPlace, "F:\\Backup");
  ShowAccount(machine_.app(), AccountRun::kBackup, true);
  ASSERT_NE(Shown(), nullptr);
  frmAccount& window = *Shown();
  EXPECT_EQ(window.lblSentence.caption.get(),
            "The backup was not made: its drive or folder is not on this computer: F:\\Backup.");
  EXPECT_FALSE(window.lvwEntries.visible);
  EXPECT_FALSE(window.cmdCopy.visible);
  EXPECT_TRUE(window.cmdClose.visible);
  const int alone = window.Height();
  RunBackup();
  ShowAccount(machine_.app(), AccountRun::kBackup, true);
  EXPECT_TRUE(window.lvwEntries.visible);
  EXPECT_GT(window.Height(), alone);
}

// A window that is shown again with fewer entries than before.
TEST_F(FrmAccountTest, AnotherAccountTakesThePlaceOfTheOneBefore) {
  frmAccount& window = ShowBackup();
  window.lvwEntries.selected = 1;
  Account& account = machine_.app().account();
  account.Begin(AccountRun::kRestore, "Mail", "2026-11-22 06:00:00");
  account.Add(LeftOut("C:\\a", AccountReason::kNoRights, "Docs"));
  account.End(AccountEnd::kDone, "2026-11-22 06:01:00");
  ShowAccount(machine_.app(), AccountRun::kRestore, true);
  EXPECT_EQ(Files(window), "C:\\a\n");
  EXPECT_EQ(window.lvwEntries.selected.get(), -1);
  EXPECT_EQ(window.Caption(), "Quorvale - Result of the restore");
}

// --- Its buttons --------------------------------------------------------------------------------

TEST_F(FrmAccountTest, OpenFolderOpensTheEntrysFolderOrTheBackups) {
  machine_.MakeFolder("C:\\Docs");
  machine_.MakeFolder("D:\\Backups");
  frmAccount& window = ShowBackup();
  machine_.Click(window.cmdOpen);
  window.lvwEntries.selected = 0;
  machine_.Click(window.cmdOpen);
  window.lvwEntries.selected = 1;  // its folder is gone
  window.lvwEntries.on_double_click();
  EXPECT_EQ(machine_.computer().Started(),
            (std::vector<std::string>{"run|Explorer D:\\Backups", "run|Explorer C:\\Docs",
                                      "run|Explorer D:\\Backups"}));
  machine_.RemoveTree("D:\\Backups");
  machine_.Click(window.cmdOpen);
  EXPECT_EQ(machine_.computer().Started().size(), 3u);
  EXPECT_EQ(window.lblEntry.caption.get(), "There is no folder to open.");
}

TEST_F(FrmAccountTest, OpenFolderGoesWhereAFileWasPut) {
  machine_.MakeFolder("C:\\Restored");
  Account& account = machine_.app().account();
  account.Begin(AccountRun::kRestore, "Mail", "2026-11-22 05:08:12");
  AccountEntry entry = LeftOut("E:\\a.txt", AccountReason::kNoPlace, "Docs");
  entry.fate = AccountFate::kPutElsewhere;
  entry.place = "C:\\Restored\\a.txt";
  account.Add(entry);
  account.End(AccountEnd::kDone, "2026-11-22 05:09:00");
  ShowAccount(machine_.app(), AccountRun::kRestore, true);
  frmAccount& window = machine_.app().Get<frmAccount>();
  window.lvwEntries.selected = 0;
  machine_.Click(window.cmdOpen);
  EXPECT_EQ(machine_.computer().Started(), std::vector<std::string>{"run|Explorer C:\\Restored"});
}

TEST_F(FrmAccountTest, CopyListPutsTheShownRowsOntoTheClipboard) {
  frmAccount& window = ShowBackup();
  window.lvwEntries.on_column_click(0);  // the other way round
  machine_.Click(window.cmdCopy);
  EXPECT_EQ(machine_.ui().clipboard(),
            "File\tReason\tItem\tPlace\r\n"
            "C:\\Gone\\A.txt\tnot there\tAdd More Files\\A\t\r\n"
            "C:\\Docs\\b & c.txt\tin use, or no rights to read it\tOther Files\\Docs\t\r\n");
  EXPECT_EQ(window.lblEntry.caption.get(), "The list can be pasted into another program now.");
  machine_.ui().clipboard_refuses = true;
  machine_.Click(window.cmdCopy);
  EXPECT_EQ(window.lblEntry.caption.get(),
            "The list could not be copied: another program keeps the clipboard.");
}

TEST_F(FrmAccountTest, CloseIsForEnterAndEscapeAndForTheWindowsOwnButton) {
  frmAccount& window = ShowBackup();
  EXPECT_TRUE(window.cmdClose.is_default);
  EXPECT_TRUE(window.cmdClose.is_cancel);
  machine_.Click(window.cmdClose);
  EXPECT_EQ(machine_.app().Loaded<frmAccount>(), nullptr);
  machine_.Do([&] { ShowBackup().on_close_request(); });
  EXPECT_EQ(machine_.app().Loaded<frmAccount>(), nullptr);
}

TEST_F(FrmAccountTest, InItTheTabKeyMovesOn) {
  ShowBackup();
  machine_.ui().GuardKeyboard(true);  // as the main window does when it goes behind
  Shown()->Activate();
  EXPECT_FALSE(machine_.ui().keyboard_guarded());
}

}  // namespace
}  // namespace quorvale
