// "Try these again" in the window with a run's account.
#include "core/main/try_again.h"

#include <gtest/gtest.h>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/pages/account_window.h"
#include "core/pages/frmAccount.h"
#include "discovery/pages/FrmTwo.h"
#include "restore/pages/frmROne.h"
#include "restore/pages/frmRTwo.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kDesktopItem[] = "Other Files\\My Desktop Files";

class TryAgainTest : public testing::Test {
 protected:
  TryAgainTest() {
    machine_.WriteFile(machine_.Desktop() + "\\note.txt", "note");
    machine_.WriteFile(machine_.Documents() + "\\letter.txt", "letter");
    machine_.WriteFile("D:\\Data\\a.txt", "a");
    machine_.app().Get<FrmWelcome>();
  }
  Application& app() { return machine_.app(); }

  static AccountEntry Entry(AccountFate fate, AccountThing thing, const std::string& item,
                            const std::string& source) {
    AccountEntry entry;
    entry.fate = fate;
    entry.reason = AccountReason::kUnreadable;
    entry.thing = thing;
    entry.item = item;
    entry.source = source;
    return entry;
  }
  void LeftOut(AccountThing thing, const std::string& item, const std::string& source) {
    app().account().Add(Entry(AccountFate::kLeftOut, thing, item, source));
  }
  void Begin(AccountRun run) { app().account().Begin(run, "Mail", "2026-11-22 05:08:12"); }
  // Shows the account and presses the button.
  void PressAgain() {
    Account& account = app().account();
    if (account.end() == AccountEnd::kNotEnded) account.End(AccountEnd::kDone, "2026-11-22 05:09");
    machine_.Do([&] { ShowAccount(app(), account.run(), true); });
    frmAccount& window = app().Get<frmAccount>();
    ASSERT_TRUE(window.cmdAgain.visible);
    machine_.Click(window.cmdAgain);
    EXPECT_EQ(app().Loaded<frmAccount>(), nullptr);
  }
  static std::vector<std::string> Ticked(const ui::TreeView& tree) {
    std::vector<std::string> paths;
    for (int i = 1; i <= tree.Count(); ++i) {
      if (tree.Node(i)->Checked()) paths.push_back(tree.Node(i)->FullPath());
    }
    return paths;
  }
  std::string BackupFile(const std::string& name) {
    return app().settings().backup_folder() + "\\" + name + ".obk";
  }
  // From the page of items on, to the end.
  void FinishBackup() {
    machine_.Click(app().Get<FrmTwo>().cmdNext);
    machine_.Click(app().Get<frmThree>().cmdNext);
    machine_.Click(app().Get<FrmBackupMedia>().cmdNext);
    machine_.Expect(ui::Answer::kOk, "Backup successfully completed");
    machine_.Click(app().Get<frmfour>().cmdNext);
  }
  void MakeBackup(const std::string& password) {
    machine_.Click(app().Get<FrmWelcome>().cmdWC_TakeBackup);
    app().Get<frmOne>().txtBackupname.text = "Mail";
    machine_.Click(app().Get<frmOne>().cmdNext);
    machine_.Tick(app().Get<FrmTwo>().tvwMain, kDesktopItem);
    machine_.ui().ExpectFile("D:\\Data\\a.txt");
    machine_.Tick(app().Get<FrmTwo>().tvwMain, "Add More Files");
    machine_.Click(app().Get<FrmTwo>().cmdNext);
    frmThree& options = app().Get<frmThree>();
    if (!password.empty()) {
      machine_.Click(options.chkProtectArchive);
      options.txtpwd.text = password;
      options.txtpwd2.text = password;
    }
    machine_.Click(options.cmdNext);
    machine_.Click(app().Get<FrmBackupMedia>().cmdNext);
    machine_.Expect(ui::Answer::kOk, "Backup successfully completed");
    machine_.Click(app().Get<frmfour>().cmdNext);
    ASSERT_TRUE(machine_.Exists(BackupFile("Mail")));
  }
  void NotRestored(const std::string& item) {
    Begin(AccountRun::kRestore);
    app().account().archive = BackupFile("Mail");
    app().account().Add(Entry(AccountFate::kNotRestored, AccountThing::kFile, item,
                              machine_.Desktop() + "\\note.txt"));
  }

  TestMachine machine_;
};

TEST_F(TryAgainTest, ABackupTicksWhatWasLeftOutAndNothingElse) {
  Begin(AccountRun::kBackup);
  LeftOut(AccountThing::kFolder, kDesktopItem, machine_.Desktop());
  LeftOut(AccountThing::kFile, "Add Other Folders\\D:\\Data", "D:\\Data\\a.txt");
  LeftOut(AccountThing::kFolder, "Add Other Folders\\D:\\Gone", "D:\\Gone");
  LeftOut(AccountThing::kFile, "Add More Files\\D:\\lost.txt", "D:\\lost.txt");
  PressAgain();
  FrmTwo& items = app().Get<FrmTwo>();
  EXPECT_TRUE(items.Visible());
  EXPECT_EQ(
      Ticked(items.tvwMain),
      (std::vector<std::string>{"Other Files", kDesktopItem, "Add Other Folders", "Add More Files",
                                "Add More Files\\D:\\Data\\a.txt", "Add Other Folders\\D:\\Gone",
                                "Add More Files\\D:\\lost.txt"}));
}

TEST_F(TryAgainTest, ABackupTakesAFreeNameAndHoldsWhatWasLeftOut) {
  MakeBackup("");
  Begin(AccountRun::kBackup);
  LeftOut(AccountThing::kFile, "Add Other Folders\\D:\\Data", "D:\\Data\\a.txt");
  PressAgain();
  EXPECT_EQ(app().Get<frmOne>().txtBackupname.text.get(), "Mail 2");
  const std::string before = machine_.ReadFile(BackupFile("Mail"));
  FinishBackup();
  EXPECT_TRUE(machine_.Exists(BackupFile("Mail 2")));
  EXPECT_EQ(machine_.ReadFile(BackupFile("Mail")), before);
  EXPECT_EQ(machine_.session().gBackupItemPaths,
            (std::vector<std::string>{"Add More Files", "Add More Files\\D:\\Data\\a.txt"}));
}

TEST_F(TryAgainTest, ABackupThatWasNotMadeIsTriedAgainWhole) {
  Begin(AccountRun::kBackup);
  app().account().BeginItem(kDesktopItem, machine_.Desktop());
  app().account().BeginItem("Add Other Folders\\D:\\Data", "D:\\Data");
  app().account().BeginItem("Add More Files\\D:\\Data\\a.txt", "D:\\Data\\a.txt");
  app().account().End(AccountEnd::kFailed, "2026-11-22 05:09", AccountReason::kNoRoom);
  PressAgain();
  EXPECT_EQ(app().Get<frmOne>().txtBackupname.text.get(), "Mail");
  EXPECT_EQ(
      Ticked(app().Get<FrmTwo>().tvwMain),
      (std::vector<std::string>{"Other Files", kDesktopItem, "Add Other Folders", "Add More Files",
                                "Add Other Folders\\D:\\Data", "Add More Files\\D:\\Data\\a.txt"}));
}

TEST_F(TryAgainTest, ARestoreOpensTheSameBackupWithWhatWasNotRestored) {
  MakeBackup("");
  NotRestored(kDesktopItem);
  PressAgain();
  frmRTwo& items = app().Get<frmRTwo>();
  EXPECT_TRUE(items.Visible());
  EXPECT_EQ(Ticked(items.tvwMain), (std::vector<std::string>{"Other Files", kDesktopItem}));
}

// The tree of a restore calls the added files otherwise than the backup did.
TEST_F(TryAgainTest, ARestoreFindsAddedFiles) {
  MakeBackup("");
  NotRestored("Add More Files\\D:\\Data\\a.txt");
  PressAgain();
  EXPECT_EQ(Ticked(app().Get<frmRTwo>().tvwMain),
            (std::vector<std::string>{"Added More Files", "Added More Files\\D:\\Data\\a.txt"}));
}

TEST_F(TryAgainTest, AProtectedBackupWaitsForItsPassword) {
  MakeBackup("secret");
  NotRestored(kDesktopItem);
  PressAgain();
  frmROne& job = app().Get<frmROne>();
  ASSERT_TRUE(job.Visible());
  EXPECT_EQ(job.txtpath.text.get(), BackupFile("Mail"));
  job.txtDefaultPassword.text = "secret";
  machine_.Click(job.cmdNext);
  EXPECT_EQ(Ticked(app().Get<frmRTwo>().tvwMain),
            (std::vector<std::string>{"Other Files", kDesktopItem}));
}

TEST_F(TryAgainTest, ARestoreThatIsLeftForgetsWhatWasWanted) {
  MakeBackup("");
  NotRestored(kDesktopItem);
  PressAgain();
  machine_.Click(app().Get<frmRTwo>().cmdCancel);
  machine_.Click(app().Get<FrmWelcome>().cmdWC_Restore);
  machine_.Click(app().Get<frmROne>().cmdNext);
  EXPECT_TRUE(Ticked(app().Get<frmRTwo>().tvwMain).empty());
}

TEST_F(TryAgainTest, ItIsNotOfferedWhereNothingCanBeTriedAgain) {
  Begin(AccountRun::kBackup);
  app().account().Note(AccountReason::kNone, "Take care.");
  app().account().End(AccountEnd::kDone, "2026-11-22 05:09");
  ShowAccount(app(), AccountRun::kBackup, true);
  EXPECT_FALSE(app().Get<frmAccount>().cmdAgain.visible);
}

}  // namespace
}  // namespace quorvale
