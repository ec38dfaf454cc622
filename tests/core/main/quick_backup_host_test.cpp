// The quick backup: its preparation, and what it makes.
#include <gtest/gtest.h>

#include "backup/format/archive_layout.h"
#include "backup/format/backup_file.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/main/FrmQuickSteps.h"
#include "core/main/FrmWelcome.h"
#include "core/main/run_modes.h"
#include "core/program/ModGlobal.h"
#include "discovery/pages/FrmTwo.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

class QuickBackupTest : public testing::Test {
 protected:
  QuickBackupTest() {
    machine_.WriteFile(machine_.Documents() + "\\letter.txt", "Dear all");
    machine_.WriteFile(machine_.Desktop() + "\\list.txt", "1 2 3");
  }
  void ClickQuickLink() { machine_.Click(*machine_.app().Get<FrmWelcome>().lblQuicklinks[0]); }
  bool Shows(const std::string& name) {
    const ui::Form* page = machine_.app().FindLoaded(name);
    return page != nullptr && page->Visible();
  }

  std::vector<std::string> BackupsIn(const std::string& folder) {
    std::vector<std::string> backups = machine_.AllBelow(folder);
    std::erase_if(backups, [](const std::string& path) { return !EndsWithNoCase(path, ".obk"); });
    return backups;
  }

  TestMachine machine_;
};

TEST_F(QuickBackupTest, LandsOnTheReviewPageWithEverythingTicked) {
  ClickQuickLink();
  FrmWelcome& welcome = machine_.app().Get<FrmWelcome>();
  EXPECT_TRUE(Shows("frmfour"));
  for (const char* unseen : {"frmOne", "FrmTwo", "frmThree", "FrmQuickSteps"}) {
    EXPECT_FALSE(Shows(unseen)) << unseen;
  }
  EXPECT_TRUE(welcome.Enabled());
  EXPECT_FALSE(welcome.cmdWC_TakeBackup.enabled);
  EXPECT_TRUE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.ImgBackupGradient.IsShown());
  EXPECT_TRUE(welcome.lblBackupOptions[4]->bold);
  EXPECT_EQ(welcome.ImgStepArrow.bounds->top, welcome.lblBackupOptions[4]->bounds->top);
  FrmTwo& items = machine_.app().Get<FrmTwo>();
  for (int i = 1; i <= items.tvwMain.Count(); ++i) {
    const ui::TreeNode* node = items.tvwMain.Node(i);
    const std::string root = node->Root()->Text();
    const bool added = root == "Add Other Folders" || root == "Add More Files";
    EXPECT_EQ(node->Checked(), !added) << node->FullPath();
  }
}

TEST_F(QuickBackupTest, UsesTheDefaultOptions) {
  machine_.SetString("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings", "chklog", "1");
  machine_.session().gMediaFtp = true;
  machine_.session().gMediaDisc = true;
  machine_.session().gMediaDiscCount = 3;
  ClickQuickLink();
  const Session& session = machine_.session();
  EXPECT_EQ(session.gBackupProcessName, kQuickBackup);
  EXPECT_EQ(session.gBackupProcessDesc, kQuickBackupDescription);
  EXPECT_EQ(session.gCompressionLevel, "6");
  EXPECT_EQ(session.gUseCompression, "True");
  EXPECT_EQ(session.gProtectWithPassword, "False");
  EXPECT_EQ(session.gArchivePassword, "");
  EXPECT_EQ(session.gLogDetails, "True");
  EXPECT_TRUE(session.gBackupFileName.starts_with("BKP_")) << session.gBackupFileName;
  EXPECT_FALSE(session.gMediaFtp);
  EXPECT_FALSE(session.gMediaDisc);
  EXPECT_EQ(session.gMediaDiscCount, 0);
}

TEST_F(QuickBackupTest, TheWindowIsLockedAndTheRowsTellHowFarItIs) {
  std::vector<std::string> seen;
  machine_.ui().on_pump = [&] {
    FrmQuickSteps* steps = machine_.app().Loaded<FrmQuickSteps>();
    if (steps == nullptr || !steps->Visible()) return;
    EXPECT_FALSE(machine_.app().Get<FrmWelcome>().Enabled());
    std::string state = steps->Img1.picture.get() + "," + steps->Img2.picture.get() + "," +
                        steps->Img3.picture.get() + " ";
    for (const ui::Label* row : {&steps->LblStep1, &steps->LblStep3, &steps->LblStep4}) {
      state += row->bold ? 'B' : '-';
    }
    if (seen.empty() || seen.back() != state) seen.push_back(state);
  };
  ClickQuickLink();
  machine_.ui().on_pump = nullptr;
  EXPECT_EQ(seen,
            (std::vector<std::string>{"SCANNING,, B--", "OK,SCANNING, -B-", "OK,OK,SCANNING --B"}));
}

TEST_F(QuickBackupTest, TheStepsWindowHasItsTextsAndColours) {
  const FrmQuickSteps& steps = machine_.app().Get<FrmQuickSteps>();
  EXPECT_EQ(steps.Label1.caption.get(), "Getting ready for Quick Backup");
  EXPECT_EQ(steps.LblStep1.caption.get(), "Preparing Backup");
  EXPECT_EQ(steps.LblStep3.caption.get(), "Listing items for backup");
  EXPECT_EQ(steps.LblStep4.caption.get(), "Preparing backup items for review");
  EXPECT_EQ(steps.back_color, ui::Rgb(130, 172, 216));
  EXPECT_EQ(steps.LblStep1.fore_color.get(), ui::Rgb(65, 65, 65));
  EXPECT_GT(steps.corner, 0);
}

TEST_F(QuickBackupTest, ThreePausesOfASecondLetAUserReadTheRows) {
  const std::uint64_t before = machine_.platform().system.Ticks();
  machine_.Do([&] {
    machine_.app().Get<FrmWelcome>().QuickLink(0);
    EXPECT_GE(machine_.platform().system.Ticks() - before, 3000u);
  });
}

TEST_F(QuickBackupTest, AFolderAddedInAnEarlierWizardIsNotTicked) {
  machine_.WriteFile("C:\\Extra\\x.txt", "x");
  FrmTwo& items = machine_.app().Get<FrmTwo>();
  ui::TreeNode* root = items.tvwMain.FindPath("Add Other Folders");
  ASSERT_NE(root, nullptr);
  ASSERT_NE(items.tvwMain.Add(root, "C:\\Extra", "C:\\Extra", "folder"), nullptr);
  ClickQuickLink();
  EXPECT_FALSE(items.tvwMain.FindPath("Add Other Folders\\C:\\Extra")->Checked());
  for (const std::string& path : machine_.session().gBackupItemPaths) {
    EXPECT_FALSE(Contains(path, "Extra")) << path;
  }
}

TEST_F(QuickBackupTest, AChangedBackupFolderIsUsedByTheNextRun) {
  machine_.MakeFolder("C:\\Elsewhere");
  machine_.SetString("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings", "txtBackup",
                     "C:\\Elsewhere");
  machine_.computer().SetCommandLine("auto");
  machine_.Expect(ui::Answer::kOk, "Backup successfully completed");
  machine_.Do([&] { SubMain(machine_.app()); });
  machine_.RunUntilIdle();
  EXPECT_EQ(BackupsIn("C:\\Elsewhere").size(), 1u);
}

TEST_F(QuickBackupTest, TheSettingsInsideSayQuick) {
  ClickQuickLink();
  machine_.Expect(ui::Answer::kOk, "Backup successfully completed");
  machine_.Click(machine_.app().Get<frmfour>().cmdNext);
  const std::vector<std::string> backups =
      BackupsIn(machine_.AppData() + "\\Tarnwick\\Quorvale\\Backup");
  ASSERT_EQ(backups.size(), 1u);
  const std::string stem = WithoutLastFour(FileNameOf(backups[0]));
  BackupFile backup(machine_.app(), backups[0], "");
  ASSERT_EQ(backup.ExtractAs(SettingsEntryName(stem), "C:\\settings.xml"), zip::Result::kDone);
  EXPECT_TRUE(Contains(machine_.ReadFile("C:\\settings.xml"), "<Main Process='Quick Backup'>"));
  const std::string letter = stem + "\\Other Files\\My Documents\\letter.txt";
  EXPECT_EQ(backup.ExtractAs(letter, "C:\\letter.txt"), zip::Result::kDone);
  EXPECT_EQ(machine_.session().gBackupProcessName, kMainBackup);
}

TEST_F(QuickBackupTest, WithAnEmptyTreeTheReviewPageSaysSoAndAutoStopsThere) {
  for (const char* word : {"", "auto"}) {
    TestMachine machine;
    machine.computer().SetCommandLine(word);
    // A computer on which nothing is found.
    Application& app = machine.app();
    app.Get<FrmTwo>();
    machine.RemoveTree(machine.Profile());
    machine.Do([&] {
      FrmTwo& items = app.Get<FrmTwo>();
      items.tvwMain.Clear();
      app.Get<FrmWelcome>().QuickLink(0);
      StartPreparedBackup(app);
    });
    frmfour* review = app.Loaded<frmfour>();
    ASSERT_NE(review, nullptr) << word;
    EXPECT_TRUE(review->Visible()) << word;
    EXPECT_EQ(review->lblnoitem.caption.get(), "No items selected for backup") << word;
    EXPECT_FALSE(review->cmdNext.enabled) << word;
    EXPECT_EQ(app.FindLoaded("frmFinish"), nullptr) << word;
  }
}

TEST_F(QuickBackupTest, ClosingTheWindowDuringThePreparationEndsTheRun) {
  machine_.ui().When([&] { return Shows("FrmQuickSteps"); },
                     [&] { machine_.app().Get<FrmWelcome>().on_close_request(); });
  ClickQuickLink();
  EXPECT_TRUE(machine_.app().Ended());
  EXPECT_FALSE(Shows("frmfour"));
}

}  // namespace
}  // namespace quorvale
