// What unloads the pages of the two wizards.
#include "core/main/page_sets.h"

#include <gtest/gtest.h>

#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "core/main/FrmWelcome.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

class PageSets : public testing::Test {
 protected:
  TestMachine machine_;
};

TEST_F(PageSets, ResetBackupPagesKeepsTheSessionAndForgetsTheControls) {
  Application& app = machine_.app();
  app.Get<FrmWelcome>();
  app.Get<frmOne>().txtBackupname.text = "Typed";
  app.Get<frmThree>().txtcurrent.text = "Typed";
  app.session().gBackupName = "Kept";
  app.session().gArchivePassword = "Kept too";
  app.session().gStopRequested = true;
  ResetBackupPages(app);
  EXPECT_EQ(app.Loaded<frmOne>(), nullptr);
  EXPECT_EQ(app.Loaded<frmThree>(), nullptr);
  EXPECT_EQ(app.Get<frmOne>().txtBackupname.text.get(), "Backup file");
  EXPECT_EQ(app.session().gBackupName, "Kept");
  EXPECT_EQ(app.session().gArchivePassword, "Kept too");
  EXPECT_FALSE(app.session().gStopRequested);
  EXPECT_TRUE(app.Get<FrmWelcome>().Visible());
}

TEST_F(PageSets, ResetRestorePagesClearsItsTwoFlags) {
  Application& app = machine_.app();
  app.session().gOutlookProfileEdited = true;
  app.session().gStopRequested = true;
  app.session().gRestoreFolder = "Kept";
  ResetRestorePages(app);
  EXPECT_FALSE(app.session().gOutlookProfileEdited);
  EXPECT_FALSE(app.session().gStopRequested);
  EXPECT_EQ(app.session().gRestoreFolder, "Kept");
}

TEST_F(PageSets, AClosedRunGetsNoNewMainWindow) {
  Application& app = machine_.app();
  app.Get<FrmWelcome>().CmdWC_Close.Click();
  ASSERT_TRUE(app.Ended());
  ResetBackupPages(app);
  ResetRestorePages(app);
  EXPECT_EQ(app.Loaded<FrmWelcome>(), nullptr);
}

}  // namespace
}  // namespace quorvale
