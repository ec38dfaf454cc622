// The player itself: what goes otherwise than a scenario says is a failure with the right line.
#include "play/scenario_player.h"

#include <gtest/gtest.h>

#include "play/pages_stage.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

std::vector<ScenarioError> Played(const std::string& text) {
  const ScratchFolder scratch;
  PagesStage stage(scratch.path(), nullptr);
  ScenarioPlayer player(stage);
  return player.Play(ReadScenario(text));
}

// The one failure of a scenario, as "line: message".
std::string FailureOf(const std::string& text) {
  const std::vector<ScenarioError> failures = Played(text);
  if (failures.empty()) return "";
  return std::to_string(failures[0].line) + ": " + failures[0].message;
}

const char kStart[] = "machine xp\nstart\nclick FrmWelcome.cmdWC_TakeBackup\n";

TEST(ScenarioPlayer, AScenarioThatIsRightPasses) {
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect-form frmOne\n"
                                            "expect frmOne.txtBackupname Backup file\n"),
            "");
}

TEST(ScenarioPlayer, AnotherTextThanExpectedFails) {
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect frmOne.txtBackupname Other\n"),
            "4: frmOne.txtBackupname is \"Backup file\", not \"Other\"");
}

TEST(ScenarioPlayer, APatternThatDoesNotFitAndATextThatMustNotBeFail) {
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect-like frmOne.txtBackupname B*file\n"
                                            "expect-not frmOne.txtBackupname Other\n"),
            "");
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect-like frmOne.txtBackupname B##*\n"),
            "4: frmOne.txtBackupname is \"Backup file\", not \"B##*\"");
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect-not frmOne.txtBackupname Backup file\n"),
            "4: frmOne.txtBackupname is \"Backup file\"");
}

TEST(ScenarioPlayer, ValuesOfARegistryKeyAreTakenAwayWithThoseOfItsSubkeys) {
  const std::string key = "HKEY_CURRENT_USER\\Software\\Test";
  EXPECT_EQ(FailureOf("machine xp\nseed-value " + key + "\\a = 1\nseed-value " + key +
                      "\\Below\\b = 2\nremove-values " + key + "\nexpect-no-registry " + key +
                      "\\a\nexpect-no-registry " + key + "\\Below\\b\n"),
            "");
  EXPECT_EQ(FailureOf("machine xp\nremove-values " + key + "\n"),
            "2: there is no value below " + key);
  EXPECT_EQ(FailureOf("machine xp\nremove-values Nowhere\n"), "2: \"Nowhere\" is no key");
}

// A headless program has no place before or behind others: nothing is said to be well.
TEST(ScenarioPlayer, WhatOnlyRealWindowsTellFails) {
  EXPECT_EQ(FailureOf("machine xp\nstart\nexpect-front FrmWelcome\n"),
            "3: only real windows tell about \"expect-front\"");
  EXPECT_EQ(FailureOf("machine xp\nstart\nexpect-copies 1\n"),
            "3: only real windows tell about \"expect-copies\"");
  EXPECT_NE(FailureOf("machine xp\nstart\nstart-beside\n"), "");
  EXPECT_NE(FailureOf("machine xp\nscreen 800x600\n"), "");
}

TEST(ScenarioPlayer, JobsOfTheSchedulerAreMadeSeenAndTakenAway) {
  EXPECT_EQ(FailureOf("machine xp\ntask A job = A comment\nexpect-task A job = A comment\n"
                      "expect-no-task Another\ntask A job = gone\nexpect-no-task A job\n"),
            "");
  EXPECT_EQ(FailureOf("machine xp\nexpect-task A job = A comment\n"), "2: there is no job A job");
  EXPECT_EQ(FailureOf("machine xp\ntask A job = A comment\nexpect-task A job = Other\n"),
            "3: the comment of A job is \"A comment\", not \"Other\"");
  EXPECT_EQ(FailureOf("machine xp\ntask A job = A comment\nexpect-no-task A job\n"),
            "3: there is a job A job");
  EXPECT_EQ(FailureOf("machine xp\ntask A job = gone\n"), "2: there is no job A job");
}

TEST(ScenarioPlayer, TimesAreSetIntoAPickerAndOtherTextsAreNot) {
  const std::string page = "machine xp\nstart\nclick FrmWelcome.lblQuicklinks(2)\n";
  EXPECT_EQ(FailureOf(page + "set frmSchedule.DTPTime 11:45 PM\n"
                             "expect frmSchedule.DTPTime 11:45 PM\n"),
            "");
  EXPECT_EQ(FailureOf(page + "set frmSchedule.DTPTime noon\n"),
            "4: \"noon\" is no time like 09:07 AM");
}

TEST(ScenarioPlayer, AnotherPageThanExpectedFails) {
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect-form FrmTwo\n"), "4: form FrmTwo is not shown");
  EXPECT_EQ(FailureOf(std::string(kStart) + "expect-no-form frmOne\n"), "4: form frmOne is shown");
}

TEST(ScenarioPlayer, ABoxThatNobodyForesawFails) {
  EXPECT_EQ(FailureOf(std::string(kStart) + "set frmOne.txtBackupname\nclick frmOne.cmdNext\n"),
            "5: unexpected message box: Name of backup cannot be blank");
}

TEST(ScenarioPlayer, ABoxWithAnotherTextFails) {
  const std::string failure = FailureOf(std::string(kStart) +
                                        "set frmOne.txtBackupname\nanswer OK Something else\n"
                                        "click frmOne.cmdNext\n");
  EXPECT_TRUE(failure.starts_with("6: unexpected message box: Name of backup cannot be blank"))
      << failure;
  EXPECT_NE(failure.find("Something else"), std::string::npos);
}

TEST(ScenarioPlayer, ABoxThatNeverComesFails) {
  EXPECT_EQ(FailureOf(std::string(kStart) + "answer OK Never said\nexpect-form frmOne\n"),
            "5: this message box never came: Never said");
}

TEST(ScenarioPlayer, AConditionThatNeverHoldsFails) {
  EXPECT_EQ(FailureOf(std::string(kStart) +
                      "when frmOne.lblHeader contains no such words click frmOne.cmdNext\n"
                      "expect-form frmOne\n"),
            "5: the condition of a \"when\" never held");
}

TEST(ScenarioPlayer, AnActWhoseConditionHoldsIsDone) {
  EXPECT_EQ(FailureOf(std::string(kStart) +
                      "when frmOne.txtBackupname equals Mine check frmOne.OptQuick\n"
                      "expect frmOne.OptQuick 0\nset frmOne.txtBackupname Mine\n"
                      "expect frmOne.OptQuick 1\n"),
            "");
}

TEST(ScenarioPlayer, WhatIsNotOnTheScreenCannotBeClicked) {
  EXPECT_EQ(FailureOf("machine xp\nstart\nclick frmOne.cmdNext\n"), "3: form frmOne is not loaded");
  EXPECT_EQ(FailureOf(std::string(kStart) + "click frmOne.cmdNext\nclick frmOne.cmdNext\n"),
            "5: form frmOne is not shown");
  EXPECT_EQ(FailureOf(std::string(kStart) + "click frmOne.cmdNext\n"
                                            "click FrmTwo.cmdNowhere\n"),
            "5: form FrmTwo has no control cmdNowhere");
  EXPECT_EQ(FailureOf("machine xp\nstart\nclick FrmWelcome.cmdWC_Restore\n"
                      "click frmROne.cmdNext\n"),
            "4: frmROne.cmdNext is disabled");
  EXPECT_EQ(FailureOf(std::string(kStart) + "click frmOne.cmdNowhere\n"),
            "4: form frmOne has no control cmdNowhere");
}

TEST(ScenarioPlayer, WrongTicksAndNodesFail) {
  const std::string tree = std::string(kStart) + "click frmOne.cmdNext\n";
  EXPECT_EQ(FailureOf(tree + "expect-tick FrmTwo.tvwMain Other Files\n"),
            "5: Other Files is not ticked");
  EXPECT_EQ(FailureOf(tree + "tick FrmTwo.tvwMain Other Files\n"
                             "expect-no-tick FrmTwo.tvwMain Other Files\\My Documents\n"),
            "6: Other Files\\My Documents is ticked");
  EXPECT_EQ(FailureOf(tree + "tick FrmTwo.tvwMain No such node\n"),
            "5: FrmTwo.tvwMain has no node \"No such node\"");
  EXPECT_EQ(FailureOf(tree + "expect-no-node FrmTwo.tvwMain Other Files\n"),
            "5: there is a node \"Other Files\"");
}

TEST(ScenarioPlayer, WrongFilesAndRegistryValuesFail) {
  const std::string machine = "machine xp\nseed C:\\a.txt = one\n";
  EXPECT_EQ(FailureOf(machine + "expect-file C:\\b.txt\n"), "3: there is no file C:\\b.txt");
  EXPECT_EQ(FailureOf(machine + "expect-file C:\\a.txt = two\n"),
            "3: C:\\a.txt is \"one\", not \"two\"");
  EXPECT_EQ(FailureOf(machine + "expect-no-file C:\\a.txt\n"), "3: there is a C:\\a.txt");
  EXPECT_EQ(FailureOf(machine + "expect-entry C:\\a.txt = x\n"), "3: C:\\a.txt is no archive");
  EXPECT_EQ(FailureOf(machine + "expect-registry HKEY_CURRENT_USER\\Nothing\\Here\n"),
            "3: there is no HKEY_CURRENT_USER\\Nothing\\Here");
  EXPECT_EQ(FailureOf(machine + "seed-value HKEY_CURRENT_USER\\K\\N = one\n"
                                "expect-registry HKEY_CURRENT_USER\\K\\N = two\n"),
            "4: HKEY_CURRENT_USER\\K\\N is \"one\", not \"two\"");
}

TEST(ScenarioPlayer, AFailureEndsThePlay) {
  EXPECT_EQ(Played(std::string(kStart) + "expect-form FrmTwo\nexpect-form frmThree\n").size(), 1u);
}

TEST(ScenarioPlayer, ALineThatIsNoActFailsBeforeAnythingIsPlayed) {
  EXPECT_EQ(FailureOf("machine xp\nexpect-no-file C:\\x\ndance\n"), "3: there is no act \"dance\"");
}

TEST(ScenarioPlayer, ActsWithoutAMachineFail) {
  EXPECT_EQ(FailureOf("start\n"), "1: there is no machine yet");
  EXPECT_EQ(FailureOf("machine xp\nclick FrmWelcome.CmdWC_Home\n"), "2: no program runs");
  EXPECT_NE(FailureOf("machine os2\n"), "");
}

TEST(ScenarioPlayer, WhatAControlShowsWhileABoxIsUpIsCompared) {
  const std::string blank = std::string(kStart) + "set frmOne.txtBackupname\n";
  const std::string rest = "answer OK Name of backup cannot be blank\nclick frmOne.cmdNext\n";
  EXPECT_EQ(FailureOf(blank + "at-box frmOne.lblHeader Create a new backup job\n" + rest), "");
  EXPECT_EQ(FailureOf(blank + "at-box frmOne.lblHeader Another\n" + rest),
            "5: frmOne.lblHeader is \"Create a new backup job\", not \"Another\"");
}

}  // namespace
}  // namespace quorvale
