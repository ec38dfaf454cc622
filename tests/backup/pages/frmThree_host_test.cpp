#include "backup/pages/frmThree.h"

#include <gtest/gtest.h>

#include <string>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmOne.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "discovery/pages/FrmTwo.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

class FrmThree : public testing::Test {
 protected:
  FrmThree() {
    machine_.computer().SetClock(
        {.year = 2026, .month = 11, .day = 14, .hour = 22, .minute = 5, .second = 9, .weekday = 7});
    machine_.app().Get<FrmWelcome>().Show();
    page_ = &machine_.app().Get<frmThree>();
    machine_.Do([this] { page_->Show(); });
  }
  bool OnMediaPage() {
    FrmBackupMedia* media = machine_.app().Loaded<FrmBackupMedia>();
    return media != nullptr && media->Visible() && !page_->Visible();
  }
  void Next() { machine_.Click(page_->cmdNext); }
  void ExpectRefused(const std::string& text) {
    machine_.Expect(ui::Answer::kOk, text);
    Next();
    EXPECT_FALSE(OnMediaPage());
  }

  TestMachine machine_;
  frmThree* page_ = nullptr;
};

TEST_F(FrmThree, OpensWithItsDefaults) {
  EXPECT_EQ(page_->txtcurrent.text.get(), "BKP_7_14_11_2026_22_5");
  EXPECT_EQ(page_->chkcompression.value, 1);
  EXPECT_EQ(page_->cmbCompLevel.SelectedText(), "Normal");
  EXPECT_EQ(page_->chkProtectArchive.value, 0);
  EXPECT_FALSE(page_->txtpwd.visible);
  EXPECT_FALSE(page_->txtpwd2.visible);
  EXPECT_FALSE(page_->Label2.visible);
  EXPECT_FALSE(page_->Label5.visible);
  EXPECT_FALSE(page_->txtsizeSplit.enabled);
}

TEST_F(FrmThree, LevelsCarryTheirNumbers) {
  const std::pair<const char*, const char*> levels[] = {
      {"Maximum", "9"}, {"Normal", "6"}, {"Low", "1"}, {"No Compression", "0"}};
  for (const auto& [text, number] : levels) {
    ASSERT_TRUE(page_->cmbCompLevel.SelectText(text));
    page_->savedetails();
    EXPECT_EQ(machine_.session().gCompressionLevel, number) << text;
  }
}

TEST_F(FrmThree, NoCompressionClearsTheBoxAndLeavesLevelZero) {
  page_->cmbCompLevel.SelectText("No Compression");
  EXPECT_EQ(page_->chkcompression.value, 0);
  EXPECT_FALSE(page_->cmbCompLevel.enabled);
  page_->savedetails();
  EXPECT_EQ(machine_.session().gCompressionLevel, "0");
  EXPECT_EQ(machine_.session().gUseCompression, "False");
}

TEST_F(FrmThree, TheCompressionBoxSetsTheLevel) {
  page_->chkcompression.Click();
  EXPECT_EQ(page_->cmbCompLevel.SelectedText(), "No Compression");
  EXPECT_FALSE(page_->cmbCompLevel.enabled);
  page_->chkcompression.Click();
  EXPECT_EQ(page_->cmbCompLevel.SelectedText(), "Normal");
  EXPECT_TRUE(page_->cmbCompLevel.enabled);
}

TEST_F(FrmThree, MaximumKeepsTheCompressionBox) {
  page_->cmbCompLevel.SelectText("Maximum");
  EXPECT_EQ(page_->chkcompression.value, 1);
}

TEST_F(FrmThree, ALostSelectionCountsAsTheSecondLevel) {
  page_->cmbCompLevel.list_index = -1;
  page_->savedetails();
  EXPECT_EQ(machine_.session().gCompressionLevel, "6");
}

TEST_F(FrmThree, SavedetailsCommitsAllOptions) {
  page_->txtcurrent.text = "Mine";
  page_->chkProtectArchive.value = 1;
  page_->txtpwd.text = "secret";
  page_->chklogdetails.value = 1;
  page_->savedetails();
  EXPECT_EQ(machine_.session().gBackupFileName, "Mine.obk");
  EXPECT_EQ(machine_.session().gLogDetails, "True");
  EXPECT_EQ(machine_.session().gUseCompression, "True");
  EXPECT_EQ(machine_.session().gProtectWithPassword, "True");
  EXPECT_EQ(machine_.session().gArchivePassword, "secret");
}

TEST_F(FrmThree, ABlankFileNameIsRefused) {
  page_->txtcurrent.text = "  ";
  ExpectRefused("Enter a settings file name!");
  EXPECT_EQ(machine_.ui().boxes.back().request.title, "Quorvale");
}

TEST_F(FrmThree, AFileNameThatClimbsOutOfTheFolderIsRefused) {
  for (const char* name : {"..\\..\\evil", "a/b", "..", "."}) {
    page_->txtcurrent.text = name;
    ExpectRefused("Backup name cannot contain special characters.");
  }
}

TEST_F(FrmThree, DifferentPasswordsAreRefused) {
  page_->chkProtectArchive.Click();
  page_->txtpwd.text = "a";
  page_->txtpwd2.text = "b";
  ExpectRefused("Password are not same!");
  EXPECT_EQ(page_->focused, &page_->txtpwd2);
  EXPECT_EQ(page_->txtpwd.text.get(), "a");
}

TEST_F(FrmThree, APasswordOfBlanksIsRefusedThoughBothAgree) {
  page_->chkProtectArchive.Click();
  page_->txtpwd.text = "   ";
  page_->txtpwd2.text = "   ";
  ExpectRefused("Password cannot be blank!");
  EXPECT_EQ(page_->txtpwd.text.get(), "");
  EXPECT_EQ(page_->txtpwd2.text.get(), "");
  EXPECT_EQ(page_->focused, &page_->txtpwd);
}

TEST_F(FrmThree, PasswordsDoNotMatterWithoutProtection) {
  page_->txtpwd.text = "a";
  Next();
  EXPECT_TRUE(OnMediaPage());
}

TEST_F(FrmThree, TheProtectionBoxShowsThePasswordsAndTurnsCapsLockOff) {
  machine_.ui().SetCapsLock(true);
  page_->chkProtectArchive.Click();
  EXPECT_TRUE(page_->txtpwd.visible);
  EXPECT_TRUE(page_->txtpwd2.visible);
  EXPECT_TRUE(page_->Label2.visible);
  EXPECT_TRUE(page_->Label5.visible);
  EXPECT_FALSE(machine_.ui().caps_lock());
  page_->chkProtectArchive.Click();
  EXPECT_FALSE(page_->txtpwd.visible);
}

TEST_F(FrmThree, FocusAndActivationTurnCapsLockOff) {
  machine_.ui().SetCapsLock(true);
  page_->txtpwd.on_got_focus();
  EXPECT_FALSE(machine_.ui().caps_lock());
  machine_.ui().SetCapsLock(true);
  page_->Activate();
  EXPECT_FALSE(machine_.ui().caps_lock());
}

TEST_F(FrmThree, TheLogBoxIsSharedWithTheSettings) {
  page_->chklogdetails.Click();
  EXPECT_EQ(machine_.app().Get<frmSettings>().chkLog.value, 1);
  EXPECT_EQ(
      machine_.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings", "chklog"),
      "1");
  page_->chklogdetails.Click();
  EXPECT_EQ(machine_.app().Get<frmSettings>().chkLog.value, 0);
}

TEST_F(FrmThree, TheLogBoxIsReadOnEachActivation) {
  machine_.SetString("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings", "chklog", "1");
  page_->Activate();
  EXPECT_EQ(page_->chklogdetails.value, 1);
}

TEST_F(FrmThree, TheSplitBoxOnlyServesItself) {
  page_->chkSplit.Click();
  EXPECT_TRUE(page_->txtsizeSplit.enabled);
  EXPECT_EQ(page_->txtsizeSplit.text.get(), "1024");
  EXPECT_TRUE(page_->Label7.visible);
  EXPECT_TRUE(page_->Label8.visible);
  EXPECT_EQ(page_->txtsizeSplit.on_key_press('7'), '7');
  EXPECT_EQ(page_->txtsizeSplit.on_key_press('x'), 0);
  page_->chkSplit.Click();
  EXPECT_EQ(page_->txtsizeSplit.text.get(), "");
  EXPECT_FALSE(page_->txtsizeSplit.enabled);
}

TEST_F(FrmThree, NextAndBackMoveTheSteps) {
  Next();
  EXPECT_TRUE(OnMediaPage());
  const FrmWelcome& main_window = machine_.app().Get<FrmWelcome>();
  EXPECT_TRUE(main_window.lblBackupOptions[3]->bold);
  machine_.Click(machine_.app().Get<FrmBackupMedia>().cmdBack);
  EXPECT_TRUE(page_->Visible());
  EXPECT_TRUE(main_window.lblBackupOptions[2]->bold);
  machine_.Click(page_->cmdBack);
  EXPECT_TRUE(machine_.app().Get<FrmTwo>().Visible());
  EXPECT_TRUE(main_window.lblBackupOptions[1]->bold);
  EXPECT_FALSE(page_->Visible());
}

TEST_F(FrmThree, CancelForgetsThePages) {
  machine_.Click(page_->cmdCancel);
  EXPECT_EQ(machine_.app().Loaded<frmThree>(), nullptr);
}

}  // namespace
}  // namespace quorvale
