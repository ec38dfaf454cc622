#include "backup/pages/frmOne.h"

#include <gtest/gtest.h>

#include <string>

#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "discovery/pages/FrmTwo.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kSpecialCharacters[] = "Backup name cannot contain special characters.";
constexpr char kOverwrite[] =
    "Backup job with the same name has already been created before. Do you want to overwrite?";

class FrmOne : public testing::Test {
 protected:
  frmOne& Open() {
    FrmWelcome& main_window = machine_.app().Get<FrmWelcome>();
    main_window.Show();
    machine_.Click(main_window.cmdWC_TakeBackup);
    return machine_.app().Get<frmOne>();
  }
  bool OnItemsPage() {
    FrmTwo* items = machine_.app().Loaded<FrmTwo>();
    return items != nullptr && items->Visible() && !machine_.app().Get<frmOne>().Visible();
  }
  void Next(const std::string& name) {
    frmOne& page = machine_.app().Get<frmOne>();
    page.txtBackupname.text = name;
    machine_.Click(page.cmdNext);
  }
  std::string BackupFile(const std::string& name) {
    return machine_.app().Get<frmSettings>().txtBackup.text.get() + "\\" + name + ".obk";
  }

  TestMachine machine_;
};

TEST_F(FrmOne, OpensWithItsDefaults) {
  machine_.computer().SetClock(
      {.year = 2026, .month = 11, .day = 14, .hour = 22, .minute = 5, .second = 9, .weekday = 7});
  const frmOne& page = Open();
  EXPECT_EQ(page.txtBackupname.text.get(), "Backup file");
  EXPECT_TRUE(page.OptCustBackup.value);
  EXPECT_FALSE(page.OptQuick.value);
  EXPECT_EQ(page.TxtBName.text.get(), "7_14_11_2026_22_5_9");
  EXPECT_FALSE(page.TxtBName.IsShown());
}

TEST_F(FrmOne, ABlankNameIsRefused) {
  frmOne& page = Open();
  machine_.Expect(ui::Answer::kOk, "Name of backup cannot be blank");
  Next("   ");
  EXPECT_TRUE(page.Visible());
  EXPECT_EQ(page.focused, &page.txtBackupname);
}

TEST_F(FrmOne, NameOf129CharactersIsRefused) {
  Open();
  machine_.Expect(ui::Answer::kOk, kSpecialCharacters);
  Next(std::string(129, 'a'));
  EXPECT_FALSE(OnItemsPage());
}

TEST_F(FrmOne, NameOf128CharactersPasses) {
  Open();
  Next(std::string(128, 'a'));
  EXPECT_TRUE(OnItemsPage());
}

TEST_F(FrmOne, EachSpecialCharacterIsRefused) {
  Open();
  for (char c : std::string("?><./\\:;*|'\"")) {
    machine_.Expect(ui::Answer::kOk, kSpecialCharacters);
    Next(std::string("a") + c + "b");
    EXPECT_FALSE(OnItemsPage()) << c;
  }
}

TEST_F(FrmOne, AFullStopCanBeTypedAndIsRefusedAtNext) {
  frmOne& page = Open();
  EXPECT_EQ(page.txtBackupname.on_key_press('.'), '.');
  machine_.Expect(ui::Answer::kOk, kSpecialCharacters);
  Next("a.b");
}

TEST_F(FrmOne, AnExclamationMarkCannotBeTypedButPasses) {
  frmOne& page = Open();
  EXPECT_EQ(page.txtBackupname.on_key_press('!'), 0);
  Next("Hurray!");
  EXPECT_TRUE(OnItemsPage());
  EXPECT_EQ(machine_.session().gBackupName, "Hurray!");
}

TEST_F(FrmOne, TypingLetsOnlySomeCharactersThrough) {
  frmOne& page = Open();
  for (int code : {32, 8, 35, 122}) EXPECT_EQ(page.txtBackupname.on_key_press(code), code);
  for (int code : {9, 33, 34, 123, 126, 228}) EXPECT_EQ(page.txtBackupname.on_key_press(code), 0);
}

TEST_F(FrmOne, EnterGoesOn) {
  frmOne& page = Open();
  machine_.Do([&] { EXPECT_EQ(page.txtBackupname.on_key_press(13), 0); });
  EXPECT_TRUE(OnItemsPage());
}

TEST_F(FrmOne, NextTrimsCommitsAndMarksTheNextStep) {
  frmOne& page = Open();
  Next("  My job ");
  EXPECT_EQ(page.txtBackupname.text.get(), "My job");
  EXPECT_EQ(machine_.session().gBackupName, "My job");
  EXPECT_EQ(machine_.session().gBackupProcessName, "Main Backup");
  EXPECT_EQ(machine_.session().gBackupProcessDesc,
            "Save your current settings and data for later restore to this or other computer.");
  EXPECT_TRUE(OnItemsPage());
  const FrmWelcome& main_window = machine_.app().Get<FrmWelcome>();
  EXPECT_FALSE(main_window.lblBackupOptions[0]->bold);
  EXPECT_TRUE(main_window.lblBackupOptions[1]->bold);
}

TEST_F(FrmOne, OverwritingDeletesTheOldBackupAtOnceAlsoIfTheWizardIsCancelled) {
  Open();
  machine_.WriteFile(BackupFile("Old"), "x");
  machine_.Expect(ui::Answer::kYes, kOverwrite);
  Next("Old");
  EXPECT_FALSE(machine_.Exists(BackupFile("Old")));
  EXPECT_TRUE(OnItemsPage());
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kInformation);
  machine_.Click(machine_.app().Get<FrmTwo>().cmdCancel);
  EXPECT_FALSE(machine_.Exists(BackupFile("Old")));
}

TEST_F(FrmOne, ANameThatIsRefusedLeavesTheOldBackupOfThatName) {
  Open();
  for (const char* name : {"Mail 2.0", "Bob's", "a;b"}) {
    machine_.WriteFile(BackupFile(name), "the old one");
    machine_.Expect(ui::Answer::kYes, kOverwrite);
    machine_.Expect(ui::Answer::kOk, kSpecialCharacters);
    Next(name);
    EXPECT_FALSE(OnItemsPage()) << name;
    EXPECT_EQ(machine_.ReadFile(BackupFile(name)), "the old one") << name;
  }
}

TEST_F(FrmOne, KeepingTheOldBackupStays) {
  frmOne& page = Open();
  machine_.WriteFile(BackupFile("Old"), "x");
  machine_.Expect(ui::Answer::kNo, kOverwrite);
  Next("Old");
  EXPECT_TRUE(machine_.Exists(BackupFile("Old")));
  EXPECT_TRUE(page.Visible());
  EXPECT_EQ(page.focused, &page.txtBackupname);
}

TEST_F(FrmOne, TheChoiceSetsTheKindOfJob) {
  frmOne& page = Open();
  page.OptQuick.Click();
  EXPECT_EQ(machine_.session().gBackupProcessName, "Quick Backup");
  EXPECT_EQ(machine_.session().gBackupProcessDesc,
            "Allow you to take a Complete backup of Outlook Express, Microsoft Outlook, Internet "
            "Explorer files, My Documents and My Desktop files");
  page.OptCustBackup.Click();
  EXPECT_EQ(machine_.session().gBackupProcessName, "Main Backup");
}

TEST_F(FrmOne, TheCompleteBackupGoesStraightToTheReview) {
  frmOne& page = Open();
  machine_.session().gMediaFtp = true;
  page.OptQuick.Click();
  Next("All of it");
  EXPECT_FALSE(page.Visible());
  const frmfour& review = machine_.app().Get<frmfour>();
  EXPECT_TRUE(review.Visible());
  EXPECT_TRUE(review.cmdNext.enabled);
  EXPECT_EQ(machine_.session().gBackupFileName, "All of it.obk");
  EXPECT_EQ(machine_.session().gCompressionLevel, "6");
  EXPECT_FALSE(machine_.session().gMediaFtp);
  EXPECT_TRUE(machine_.app().Get<FrmWelcome>().lblBackupOptions[4]->bold);
  EXPECT_TRUE(machine_.app().Get<FrmWelcome>().Enabled());
  for (const std::string& path : machine_.session().gBackupItemPaths) {
    EXPECT_FALSE(path.starts_with("Add ")) << path;
  }
}

TEST_F(FrmOne, CancelGoesHomeAndTheNextStartHasTheDefaults) {
  Open();
  machine_.app().Get<frmOne>().txtBackupname.text = "Other";
  machine_.Click(machine_.app().Get<frmOne>().cmdCancel);
  EXPECT_EQ(machine_.app().Loaded<frmOne>(), nullptr);
  const FrmWelcome& main_window = machine_.app().Get<FrmWelcome>();
  EXPECT_FALSE(main_window.PicMainBackupBase.visible);
  EXPECT_TRUE(main_window.cmdWC_TakeBackup.enabled);
  EXPECT_EQ(Open().txtBackupname.text.get(), "Backup file");
}

TEST_F(FrmOne, F1OpensTheHelpAndAltTabIsSwallowed) {
  frmOne& page = Open();
  EXPECT_TRUE(page.on_key_down(112, 0));
  EXPECT_TRUE(page.on_key_down(9, ui::kAltMask));
  EXPECT_FALSE(page.on_key_down(9, 0));
  ASSERT_EQ(machine_.host().shell().help_shown().size(), 1u);
  EXPECT_EQ(machine_.host().shell().help_shown()[0].topic, "qvlBackup.htm");
}

TEST(FrmOneOpenedFile, ABackupFileOnTheCommandLineIsNoted) {
  TestMachine machine;
  machine.computer().SetCommandLine("\"D:\\Old.obk\"");
  machine.computer().SetSpecialFolder(special_folder::kPrograms, "C:\\Anna\\Menu\\Programs");
  machine.MakeFolder("C:\\Anna\\Recent");
  machine.app().Get<FrmWelcome>();
  machine.app().Get<frmOne>();
  EXPECT_EQ(machine.session().gBackupFileName, "\"D:\\Old.obk\"");
  ASSERT_EQ(machine.host().shell().links_made().size(), 1u);
  EXPECT_EQ(machine.host().shell().links_made()[0].target, "D:\\Old.obk");
  EXPECT_TRUE(machine.Exists("C:\\Anna\\Recent\\Old.obk.lnk"));
}

TEST(FrmOneOpenedFile, APlaceholderOrAWordIsNoFile) {
  for (const char* word : {"%1", "custom", "qvlrunasadmin"}) {
    TestMachine machine;
    machine.computer().SetCommandLine(word);
    if (std::string(word) == "custom") {
      machine.Expect(ui::Answer::kOk, "Ready for Scheduled Custom Backup");
    }
    machine.app().Get<FrmWelcome>();
    machine.app().Get<frmOne>();
    EXPECT_EQ(machine.session().gBackupFileName, "") << word;
    EXPECT_TRUE(machine.host().shell().links_made().empty()) << word;
  }
}

class FrmOneOnVista : public testing::Test {
 protected:
  void PressCompleteBackup() {
    FrmWelcome& main_window = machine_.app().Get<FrmWelcome>();
    main_window.Show();
    machine_.Click(main_window.cmdWC_TakeBackup);
    frmOne& page = machine_.app().Get<frmOne>();
    page.OptQuick.Click();
    machine_.Click(page.cmdNext);
  }
  std::string HandOver() { return machine_.session().gAppDataPath + "\\temp.xml"; }

  TestMachine machine_{"vista"};
};

TEST_F(FrmOneOnVista, ARefusedRestartIsToldAndLeavesNoFile) {
  machine_.computer().RefuseElevation();
  machine_.Expect(ui::Answer::kOk,
                  "Administrator privileges are required for this action. You do not have "
                  "sufficient access privileges to perform this action.");
  PressCompleteBackup();
  EXPECT_FALSE(machine_.Exists(HandOver()));
  EXPECT_TRUE(machine_.app().Get<FrmWelcome>().Enabled());
  EXPECT_TRUE(machine_.app().Get<frmOne>().Visible());
}

TEST_F(FrmOneOnVista, AnAcceptedRestartEndsThisCopyAndHandsTheJobOver) {
  PressCompleteBackup();
  EXPECT_TRUE(machine_.app().Ended());
  const std::string text = machine_.ReadFile(HandOver());
  EXPECT_NE(text.find("<BackupName>Backup file</BackupName>\r\n<BackupType>Quick</BackupType>"),
            std::string::npos);
}

// Each of the first calls of Next fails once: where the look at the file is the one, no question
// comes, and nothing may go.
TEST_F(FrmOne, AnEarlierBackupStaysUnlessItsEndWasAgreedTo) {
  bool look_failed = false;
  for (std::uint64_t call = 1; call <= 4; ++call) {
    machine_.Restart();
    frmOne& page = Open();
    const std::string file = BackupFile("Job");
    machine_.WriteFile(file, "all the mail");
    page.txtBackupname.text = "Job";
    machine_.ui().on_box = [this](const ui::MessageBoxRequest& box) {
      if (box.text == kOverwrite) machine_.Expect(ui::Answer::kNo, kOverwrite);
    };
    machine_.faults().FailCall(call);
    page.cmdNext.Click();
    look_failed = look_failed || machine_.faults().failed_call() == "Files::Stat " + file;
    machine_.faults().FailCall(0);
    machine_.ui().on_box = nullptr;
    EXPECT_TRUE(machine_.Exists(file)) << call;
  }
  EXPECT_TRUE(look_failed);
}

}  // namespace
}  // namespace quorvale
