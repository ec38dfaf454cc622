// The console edition's commands, their exit statuses and what they print.
#include "app/console/console.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/console/console_options.h"
#include "app/console/console_screen.h"
#include "app/console/progress_bar.h"
#include "backup/pages/frmFinish.h"
#include "core/main/FrmWelcome.h"
#include "play/new_machine.h"
#include "play/page_driver.h"
#include "play/sample_machine.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

struct Answer {
  ExitStatus status = ExitStatus::kDone;
  std::string out, error;
};

// Runs a command as on a pipe; `typed` is what a person types, if they are asked.
Answer Command(const std::vector<std::string>& arguments, const std::string& typed = "") {
  std::istringstream in(typed);
  std::ostringstream out, error;
  Terminal terminal{in, out, error};
  terminal.asks = !typed.empty();
  Answer answer;
  answer.status = RunConsole(arguments, terminal);
  answer.out = out.str();
  answer.error = error.str();
  return answer;
}

std::vector<std::string> AllPaths(const std::string& folder) {
  std::vector<std::string> paths;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    paths.push_back(entry.path().string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

// A small sample machine on this host.
class Console : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(scratch_.path().empty());
    ASSERT_EQ(MakeMachine(machine_, MachinePlan()), "");
    std::string problem;
    const std::unique_ptr<RunningMachine> computer = RunningMachine::Open(machine_, &problem);
    ASSERT_TRUE(computer) << problem;
    ASSERT_TRUE(FillSample(computer->platform(), MachinePlan(), {20000, 3}));
    ASSERT_EQ(computer->SaveRegistry(), "");
  }

  Answer OnMachine(std::vector<std::string> arguments, const std::string& typed = "") {
    arguments.insert(arguments.begin(), {"--machine", machine_});
    return Command(arguments, typed);
  }
  std::string MachineFile(const std::string& path) const { return MachineHostPath(machine_, path); }

  const ScratchFolder scratch_;
  const std::string machine_ = scratch_.path() + "/machine";
};

const char kBackups[] =
    "C:\\Documents and Settings\\Anna\\Application Data\\Tarnwick\\Quorvale\\Backup\\";

TEST(ConsoleUsage, WrongWordsAreWrongUsage) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {},
           {"dance"},
           {"machine"},
           {"machine", "burn", "x"},
           {"machine", "new"},
           {"machine", "new", "x", "--like", "os2"},
           {"tree"},
           {"--machine", "x", "tree", "more"},
           {"--machine", "x", "backup"},
           {"--machine", "x", "backup", "n", "--level", "huge"},
           {"--machine", "x", "backup", "n", "--tick"},
           {"--machine", "x", "backup", "n", "--keep"},
           {"--machine", "x", "restore"},
           {"--machine", "x", "quick", "--all"},
           {"--machine", "x", "tree", "--yes", "--no"},
           {"--machine", "", "tree"},
           {"logs"},
           {"--machine", "x", "logs", "burn"},
           {"--machine", "x", "logs", "show"},
           {"--machine", "x", "logs", "list", "more"},
           {"--machine", "x", "settings", "get"},
           {"--machine", "x", "settings", "set", "chkLog"},
           {"--machine", "x", "settings", "set", "a", "b", "c"},
           {"--machine", "x", "schedule", "add", "A"},
           {"--machine", "x", "schedule", "add", "--at", "9:07"},
           {"--machine", "x", "schedule", "add", "A", "--at", "9:07", "--daily", "--days", "MO"},
           {"--machine", "x", "schedule", "add", "A", "--at", "9:07", "--days", "MO,XX"},
           {"--machine", "x", "schedule", "add", "A", "--at", "9:07", "--daily", "--type", "full"},
           {"--machine", "x", "schedule", "show"},
           {"--machine", "x", "schedule", "list", "--at", "9:07"},
           {"--machine"}}) {
    const Answer answer = Command(arguments);
    EXPECT_EQ(answer.status, ExitStatus::kWrongUsage) << testing::PrintToString(arguments);
    EXPECT_NE(answer.error.find("quorvale"), std::string::npos);
    EXPECT_EQ(answer.out, "");
  }
}

TEST(ConsoleUsage, HelpIsPrinted) {
  const Answer answer = Command({"--help"});
  EXPECT_EQ(answer.status, ExitStatus::kDone);
  EXPECT_NE(answer.out.find("machine sample DIR"), std::string::npos);
}

TEST(ConsoleMachine, AFolderThatIsNoMachineIsRefusedAndNothingIsWritten) {
  const ScratchFolder scratch;
  const std::string folder = scratch.path() + "/nothing";
  Answer answer = Command({"--machine", folder, "tree"});
  EXPECT_EQ(answer.status, ExitStatus::kFailed);
  EXPECT_NE(answer.error.find(folder), std::string::npos) << answer.error;
  EXPECT_FALSE(fs::exists(folder));
  fs::create_directory(folder);
  answer = Command({"--machine", folder, "backup", "x", "--all"});
  EXPECT_EQ(answer.status, ExitStatus::kFailed);
  EXPECT_NE(answer.error.find("machine.ini"), std::string::npos) << answer.error;
  EXPECT_TRUE(AllPaths(folder).empty());
}

TEST(ConsoleMachine, ABrokenLineIsToldWithFileAndNumberAndNothingIsWritten) {
  const ScratchFolder scratch;
  const std::string folder = scratch.path();
  std::ofstream(folder + "/machine.ini") << "[system]\nuser = Anna\nversion = two\n";
  const std::vector<std::string> before = AllPaths(folder);
  const Answer answer = Command({"--machine", folder, "quick"});
  EXPECT_EQ(answer.status, ExitStatus::kFailed);
  EXPECT_NE(answer.error.find("machine.ini, line 3"), std::string::npos) << answer.error;
  EXPECT_EQ(AllPaths(folder), before);
}

TEST(ConsoleMachine, NewMakesAMachineOnceAndOnlyOnce) {
  const ScratchFolder scratch;
  const std::string folder = scratch.path() + "/m";
  EXPECT_EQ(Command({"machine", "new", folder, "--like", "98", "--user", "Zoe"}).status,
            ExitStatus::kDone);
  const std::vector<std::string> before = AllPaths(folder);
  const Answer again = Command({"machine", "new", folder});
  EXPECT_EQ(again.status, ExitStatus::kFailed);
  EXPECT_NE(again.error.find("holds a machine already"), std::string::npos);
  EXPECT_EQ(AllPaths(folder), before);
  const Answer tree = Command({"--machine", folder, "tree"});
  EXPECT_EQ(tree.status, ExitStatus::kDone);
  EXPECT_NE(tree.out.find("Outlook Express\tOutlook Express\toea\n"), std::string::npos);
  EXPECT_NE(tree.out.find("Other Files\\My Documents\tC:\\My Documents\\\tfc\n"),
            std::string::npos);
  EXPECT_EQ(tree.out.find("Microsoft Outlook"), std::string::npos);
}

TEST_F(Console, TreePrintsPathKeyAndPictureOfEachNode) {
  const Answer answer = OnMachine({"tree"});
  EXPECT_EQ(answer.status, ExitStatus::kDone);
  EXPECT_EQ(answer.error, "");
  EXPECT_TRUE(answer.out.starts_with("Outlook Express\tOutlook Express\toea\n"));
  EXPECT_NE(answer.out.find("Outlook Express\\Address Book\\Anna.wab\tC:\\Documents and Settings"
                            "\\Anna\\Application Data\\Microsoft\\Address Book\\Anna.wab\tab\n"),
            std::string::npos);
  EXPECT_TRUE(answer.out.ends_with("Add More Files\tAdd More Files\tab1\n"));
}

TEST_F(Console, ABackupIsMadeShownAndRestored) {
  const std::string lost = MachineFile("C:\\Documents and Settings\\Anna\\Desktop\\To do.txt");
  const Answer backup = OnMachine({"backup", "Desk", "--tick", "Other Files\\My Desktop Files",
                                   "--add-file", "D:\\Scans\\receipt 12.pdf"});
  EXPECT_EQ(backup.status, ExitStatus::kDone) << backup.out << backup.error;
  EXPECT_EQ(backup.out, "[information] Backup successfully completed\nThe backup is " +
                            std::string(kBackups) + "Desk.obk.\n");
  EXPECT_EQ(backup.error, "");  // no progress on a pipe
  ASSERT_TRUE(fs::exists(MachineFile(std::string(kBackups) + "Desk.obk")));

  const Answer shown = OnMachine({"show", std::string(kBackups) + "Desk.obk"});
  EXPECT_EQ(shown.status, ExitStatus::kDone);
  EXPECT_NE(shown.out.find("Other Files\\My Desktop Files\t"), std::string::npos) << shown.out;
  EXPECT_NE(shown.out.find("\tD:\\Scans\\receipt 12.pdf\t"), std::string::npos) << shown.out;

  fs::remove(lost);
  const Answer restored = OnMachine(
      {"restore", std::string(kBackups) + "Desk.obk", "--tick", "Other Files\\My Desktop Files"});
  EXPECT_EQ(restored.status, ExitStatus::kDone) << restored.out << restored.error;
  EXPECT_EQ(restored.out, "[information] Backup successfully restored\n");
  EXPECT_TRUE(fs::exists(lost));
}

TEST_F(Console, LogsAreListedShownAndDeleted) {
  EXPECT_EQ(OnMachine({"logs"}).out, "");
  ASSERT_EQ(
      OnMachine({"backup", "Desk", "--tick", "Other Files\\My Desktop Files", "--log"}).status,
      ExitStatus::kDone);
  // The account of the run stands behind the log.
  const std::string listed = OnMachine({"logs"}).out;
  ASSERT_TRUE(listed.starts_with("Settings_Desk.xml\n")) << listed;
  ASSERT_TRUE(listed.ends_with(" backup.txt\n")) << listed;
  const std::string account = listed.substr(18, listed.size() - 19);
  EXPECT_EQ(OnMachine({"logs", "list"}).out, listed);
  EXPECT_TRUE(
      OnMachine({"logs", "show", account}).out.starts_with("Everything is in this backup."));
  const Answer shown = OnMachine({"logs", "show", "Settings_Desk.xml"});
  EXPECT_EQ(shown.status, ExitStatus::kDone);
  EXPECT_TRUE(shown.out.starts_with("-------- Log Starts ---------\nBackupSettings: \n"))
      << shown.out;
  EXPECT_EQ(shown.out.find('<'), std::string::npos);
  const Answer missing = OnMachine({"logs", "show", "no.xml"});
  EXPECT_EQ(missing.status, ExitStatus::kFailed);
  EXPECT_NE(missing.error.find("There is no log no.xml."), std::string::npos);

  const Answer declined = OnMachine({"logs", "delete", "Settings_Desk.xml", "--no"});
  EXPECT_EQ(declined.status, ExitStatus::kFailed);
  EXPECT_NE(declined.out.find("Are you sure you want to delete \"Settings_Desk.xml\"?"),
            std::string::npos);
  EXPECT_EQ(OnMachine({"logs", "delete", "no.xml", "--yes"}).status, ExitStatus::kFailed);
  EXPECT_EQ(OnMachine({"logs"}).out, listed);
  EXPECT_EQ(OnMachine({"logs", "delete", "Settings_Desk.xml", "--yes"}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"logs"}).out, account + "\n");
  EXPECT_EQ(OnMachine({"logs", "delete", account, "--yes"}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"logs"}).out, "");
  const Answer none = OnMachine({"logs", "delete", "Settings_Desk.xml", "--yes"});
  EXPECT_EQ(none.status, ExitStatus::kFailed);
  EXPECT_EQ(none.out, "[information] There is no log to delete\n");
}

TEST_F(Console, SettingsAreListedReadAndChanged) {
  const std::string data = "C:\\Documents and Settings\\Anna\\Application Data\\Tarnwick\\Quorvale";
  EXPECT_EQ(OnMachine({"settings"}).out, "txtBackup\t" + data + "\\Backup\ntxtRestore\t" + data +
                                             "\\Restore\nchkSound\t0\nchkLog\t0\n"
                                             "chkNoExtension\t0\nchkGUpdate\t0\n"
                                             "chkShortcut\t0\nChkStartMenu\t0\n");
  EXPECT_EQ(OnMachine({"settings", "set", "chklog", "1"}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"settings", "get", "chkLog"}).out, "1\n");
  EXPECT_EQ(OnMachine({"settings", "set", "chkShortcut", "1"}).status, ExitStatus::kDone);
  EXPECT_TRUE(fs::exists(MachineFile("C:\\Documents and Settings\\Anna\\Desktop\\Quorvale.lnk")));
  EXPECT_EQ(OnMachine({"settings", "set", "txtBackup", "D:\\Projects"}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"settings", "get", "txtBackup"}).out, "D:\\Projects\n");
  const std::string here = scratch_.path();
  EXPECT_EQ(OnMachine({"settings", "set", "txtRestore", here}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"settings", "get", "txtRestore"}).out, ComputerPath(here) + "\n");
}

TEST_F(Console, ASettingThatThePageRefusesStays) {
  const Answer refused = OnMachine({"settings", "set", "txtBackup", "C:\\Recycled"});
  EXPECT_EQ(refused.status, ExitStatus::kFailed);
  EXPECT_EQ(refused.out, "[information] You cannot select Recycle Bin\n");
  EXPECT_EQ(OnMachine({"settings", "set", "chkLog", "2"}).status, ExitStatus::kFailed);
  const Answer unknown = OnMachine({"settings", "set", "chkNothing", "1"});
  EXPECT_EQ(unknown.status, ExitStatus::kFailed);
  EXPECT_NE(unknown.error.find("There is no setting chkNothing."), std::string::npos);
  EXPECT_EQ(OnMachine({"settings", "get", "chkLog"}).out, "0\n");
}

TEST_F(Console, SchedulesAreMadeListedShownAndDeleted) {
  EXPECT_EQ(OnMachine({"schedule"}).out, "");
  const Answer made = OnMachine(
      {"schedule", "add", "Two days", "--at", "21:30", "--days", "MO,FR", "--type", "auto"});
  EXPECT_EQ(made.status, ExitStatus::kDone) << made.error;
  EXPECT_EQ(made.out, "[information] Schedule created successfully\n");
  ASSERT_EQ(OnMachine({"schedule", "add", "Daily", "--at", "9:07", "--daily"}).status,
            ExitStatus::kDone);
  const std::string list = OnMachine({"schedule", "list"}).out;
  EXPECT_EQ(list.find("Two days\tAt 9:30 PM every Mon, Fri of every week, starting "), 0u) << list;
  EXPECT_NE(list.find("\nDaily\tAt 9:07 AM every day, starting "), std::string::npos) << list;
  const Answer shown = OnMachine({"schedule", "show", "Two days"});
  EXPECT_EQ(shown.status, ExitStatus::kDone);
  EXPECT_EQ(shown.out.find("ApplicationName: C:\\Program Files\\Quorvale\\Quorvale.exe\n"
                           "CommandLine: auto\nComment: Quorvale Scheduler\n"
                           "Flags: Interactive - Run only if logged on\nLastRunTime: Never\n"),
            0u)
      << shown.out;
  EXPECT_NE(OnMachine({"schedule", "show", "No such"}).error.find("no schedule \"No such\""),
            std::string::npos);

  EXPECT_EQ(OnMachine({"schedule", "delete", "Two days", "--no"}).status, ExitStatus::kFailed);
  EXPECT_EQ(OnMachine({"schedule", "delete", "Two days", "--yes"}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"schedule", "delete", "Daily", "--yes"}).status, ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"schedule", "delete", "Daily", "--yes"}).status, ExitStatus::kFailed);
  EXPECT_EQ(OnMachine({"schedule"}).out, "");
}

TEST_F(Console, AScheduleThatThePageRefusesIsNotMade) {
  const Answer dotted = OnMachine({"schedule", "add", "v1.2", "--at", "9:07", "--daily"});
  EXPECT_EQ(dotted.status, ExitStatus::kFailed);
  EXPECT_EQ(dotted.out, "[information] Schedule name cannot contain special characters\n");
  const Answer no_day = OnMachine({"schedule", "add", "A", "--at", "9:07"});
  EXPECT_EQ(no_day.status, ExitStatus::kFailed);
  EXPECT_EQ(no_day.out, "[information] Select at least one day for the Schedule\n");
  const Answer no_time = OnMachine({"schedule", "add", "A", "--at", "soon", "--daily"});
  EXPECT_EQ(no_time.status, ExitStatus::kFailed);
  EXPECT_NE(no_time.error.find("\"soon\" is no time of day."), std::string::npos);
  EXPECT_EQ(OnMachine({"schedule"}).out, "");
  // All seven days are a daily one.
  ASSERT_EQ(
      OnMachine({"schedule", "add", "A", "--at", "9:07", "--days", "MO,TU,WE,TH,FR,SA,SU"}).status,
      ExitStatus::kDone);
  EXPECT_EQ(OnMachine({"schedule"}).out.find("A\tAt 9:07 AM every day, "), 0u);
  // The name is taken, in another spelling.
  const Answer twice = OnMachine({"schedule", "add", "a", "--at", "9:07", "--daily"});
  EXPECT_EQ(twice.status, ExitStatus::kFailed);
  EXPECT_EQ(twice.out, "[information] Schedule already exists. Please enter a new name\n");
}

TEST_F(Console, AHostPathIsTheMachinesDriveZ) {
  const std::string folder = scratch_.path() + "/backups";
  fs::create_directory(folder);
  const Answer backup = OnMachine({"backup", "Desk", "--tick", "Other Files\\My Desktop Files",
                                   "--to", folder, "--level", "none", "--log"});
  EXPECT_EQ(backup.status, ExitStatus::kDone) << backup.out << backup.error;
  EXPECT_TRUE(fs::exists(folder + "/Desk.obk"));
  EXPECT_FALSE(fs::exists(folder + "/Desk"));
  EXPECT_TRUE(fs::exists(MachineFile("C:\\Documents and Settings\\Anna\\Application Data\\Tarnwick"
                                     "\\Quorvale\\Files\\Logs\\Settings_Desk.xml")) ||
              fs::exists(MachineFile("C:\\Documents and Settings\\Anna\\Application Data\\Tarnwick"
                                     "\\Quorvale\\Files\\logs\\Settings_Desk.xml")));
  EXPECT_EQ(OnMachine({"show", folder + "/Desk.obk"}).status, ExitStatus::kDone);
}

TEST_F(Console, WhatAPageRefusesIsExitOneWithItsMessage) {
  const Answer nothing = OnMachine({"backup", "Empty"});
  EXPECT_EQ(nothing.status, ExitStatus::kFailed);
  EXPECT_EQ(nothing.out,
            "[information] No item is selected for Backup. Check the item to proceed\n");
  const Answer name = OnMachine({"backup", "a/b", "--all"});
  EXPECT_EQ(name.status, ExitStatus::kFailed);
  EXPECT_EQ(name.out, "[information] Backup name cannot contain special characters.\n");
  const Answer node = OnMachine({"backup", "n", "--tick", "No\\Such"});
  EXPECT_EQ(node.status, ExitStatus::kFailed);
  EXPECT_EQ(node.error, "quorvale: FrmTwo.tvwMain has no node \"No\\Such\"\n");
  const Answer folder = OnMachine({"backup", "n", "--all", "--add-folder", "D:\\None"});
  EXPECT_EQ(folder.status, ExitStatus::kFailed);
  EXPECT_EQ(folder.out,
            "[information] Selected path is a shortcut and will not be included in backup\n");
  const Answer file = OnMachine({"backup", "n", "--all", "--add-file", "D:\\none.txt"});
  EXPECT_EQ(file.status, ExitStatus::kFailed);
  EXPECT_EQ(file.error, "quorvale: there is no file D:\\none.txt.\n");
  const Answer missing = OnMachine({"restore", "C:\\none.obk", "--all"});
  EXPECT_EQ(missing.status, ExitStatus::kFailed);
  EXPECT_EQ(missing.error, "quorvale: there is no file C:\\none.obk.\n");
}

TEST_F(Console, QuestionsTakeYesNoOrAreAsked) {
  const std::vector<std::string> backup = {"backup", "Desk", "--tick",
                                           "Other Files\\My Desktop Files"};
  ASSERT_EQ(OnMachine(backup).status, ExitStatus::kDone);
  const std::string question =
      "Backup job with the same name has already been created before. Do you want to overwrite?";
  std::vector<std::string> no = backup;
  no.push_back("--no");
  EXPECT_EQ(OnMachine(no).status, ExitStatus::kFailed);
  const Answer nobody = OnMachine(backup);
  EXPECT_EQ(nobody.status, ExitStatus::kFailed);
  EXPECT_NE(nobody.out.find(question), std::string::npos);
  EXPECT_NE(nobody.out.find("--yes"), std::string::npos);
  const Answer asked = OnMachine(backup, "what\nyes\n");
  EXPECT_EQ(asked.status, ExitStatus::kDone) << asked.out;
  EXPECT_NE(asked.out.find("Yes or No? Yes or No? "), std::string::npos);
  std::vector<std::string> yes = backup;
  yes.push_back("--yes");
  EXPECT_EQ(OnMachine(yes).status, ExitStatus::kDone);
}

TEST_F(Console, APasswordIsNeededAgain) {
  ASSERT_EQ(OnMachine({"backup", "Locked", "--tick", "Other Files\\My Desktop Files", "--password",
                       "pa ss"})
                .status,
            ExitStatus::kDone);
  const std::string file = std::string(kBackups) + "Locked.obk";
  const Answer none = OnMachine({"show", file});
  EXPECT_EQ(none.status, ExitStatus::kFailed);
  EXPECT_EQ(none.out, "[information] Password cannot be left blank.\n");
  const Answer wrong = OnMachine({"restore", file, "--all", "--password", "pass"});
  EXPECT_EQ(wrong.status, ExitStatus::kFailed);
  EXPECT_EQ(wrong.out, "[information] Please enter the correct password.\n");
  const Answer right = OnMachine({"restore", file, "--all", "--password", "pa ss"});
  EXPECT_EQ(right.status, ExitStatus::kDone) << right.out << right.error;
}

TEST_F(Console, QuickBacksUpWhatWasFound) {
  const Answer answer = OnMachine({"quick"});
  EXPECT_EQ(answer.status, ExitStatus::kIncomplete) << answer.out << answer.error;
  EXPECT_NE(answer.out.find("Backup successfully completed"), std::string::npos);
  EXPECT_NE(answer.out.find("\\BKP_"), std::string::npos);
}

TEST_F(Console, WhatWasLeftOutIsALineAmongTheErrorsAndExitFour) {
  const Answer all = OnMachine({"backup", "All", "--tick", "Other Files"});
  EXPECT_EQ(all.status, ExitStatus::kIncomplete);
  EXPECT_EQ(all.error,
            "left out: C:\\Documents and Settings\\Anna\\My Documents\\Letters\\README: no dot in "
            "its name\n1 file is not in this backup.\n");
  EXPECT_EQ(OnMachine({"settings", "set", "chkNoExtension", "1"}).status, ExitStatus::kDone);
  const Answer more = OnMachine({"backup", "More", "--tick", "Other Files"});
  EXPECT_EQ(more.status, ExitStatus::kDone) << more.error;
  EXPECT_EQ(more.error, "");
}

TEST_F(Console, NoRestoreFolderAndKeepReachThePages) {
  ASSERT_EQ(OnMachine({"backup", "M", "--tick", "Microsoft Outlook"}).status, ExitStatus::kDone);
  const std::string store = MachineFile(
      "C:\\Documents and Settings\\Anna\\Local Settings\\Application Data\\Microsoft\\Outlook"
      "\\Outlook.pst");
  fs::remove(store);
  const std::string file = std::string(kBackups) + "M.obk";
  EXPECT_EQ(OnMachine({"restore", file, "--all", "--keep"}).status, ExitStatus::kDone);
  EXPECT_FALSE(fs::exists(store));
  EXPECT_EQ(OnMachine({"restore", file, "--all", "--no-restore-folder"}).status, ExitStatus::kDone);
  EXPECT_TRUE(fs::exists(store));
}

TEST_F(Console, AStopRequestPressesStopAndIsExitThree) {
  RequestStop();
  const Answer answer = OnMachine({"backup", "Stopped", "--all"});
  EXPECT_EQ(answer.status, ExitStatus::kStopped) << answer.out;
  EXPECT_NE(answer.out.find("[information] Backup Process Aborted by User\n"), std::string::npos);
  EXPECT_FALSE(fs::exists(MachineFile(std::string(kBackups) + "Stopped.obk")));
  EXPECT_FALSE(fs::exists(MachineFile(std::string(kBackups) + "Stopped")));
  // The request is used up.
  EXPECT_EQ(OnMachine({"backup", "After", "--tick", "Other Files\\My Desktop Files"}).status,
            ExitStatus::kDone);
}

TEST_F(Console, AScenarioIsPlayedOnTheMachine) {
  const std::string good = scratch_.path() + "/good.txt";
  const std::string bad = scratch_.path() + "/bad.txt";
  std::ofstream(good) << "start\nexpect-form FrmWelcome\n";
  std::ofstream(bad) << "start\n\nexpect-form frmOne\n";
  EXPECT_EQ(OnMachine({"scenario", good}).status, ExitStatus::kDone);
  const Answer failed = OnMachine({"scenario", bad});
  EXPECT_EQ(failed.status, ExitStatus::kFailed);
  EXPECT_EQ(failed.error, bad + ", line 3: form frmOne is not shown\n");
  EXPECT_EQ(Command({"scenario", scratch_.path() + "/none.txt"}).status, ExitStatus::kFailed);
}

TEST_F(Console, ProgressIsDrawnOnATerminal) {
  std::istringstream in;
  std::ostringstream out, error;
  Terminal terminal{in, out, error};
  terminal.shows_progress = true;
  EXPECT_EQ(RunConsole({"--machine", machine_, "backup", "Bar", "--all"}, terminal),
            ExitStatus::kIncomplete);
  EXPECT_NE(error.str().find("\r["), std::string::npos) << error.str();
  EXPECT_NE(error.str().find("% "), std::string::npos);
  // Nothing of it is left on the line.
  EXPECT_NE(error.str().find("\r\x1b[Kleft out: "), std::string::npos) << error.str();
}

TEST(ConsoleProgress, TheLineSaysWhatIsDoneAndItsShare) {
  RunProgress progress{
      .percent = 60, .archive_percent = 42, .doing = "Compressing all the Files..."};
  EXPECT_EQ(ProgressText(progress, 79),
            "[############........] 60% (42%) Compressing all the Files...");
  EXPECT_EQ(ProgressText(progress, 40), "[############........] 60% (42%) Compres");
  progress.archive_percent.reset();
  EXPECT_EQ(ProgressText(progress, 40), "[############........] 60% Compressing a");
}

TEST(ConsoleProgram, ExitStatusReachesTheShell) {
  const ScratchFolder scratch;
  const auto status = [](const std::string& arguments) {
    const std::string command =
        std::string("'") + QUORVALE_CONSOLE + "' " + arguments + " >/dev/null 2>&1 </dev/null";
    return WEXITSTATUS(std::system(command.c_str()));
  };
  EXPECT_EQ(status("machine new '" + scratch.path() + "/m'"), 0);
  EXPECT_EQ(status("machine new '" + scratch.path() + "/m'"), 1);
  EXPECT_EQ(status("dance"), 2);
  EXPECT_EQ(status("--machine '" + scratch.path() + "/m' tree"), 0);
}

TEST(ConsoleDemo, EndsWithAVerdictOnEveryFileAndKey) {
  const ScratchFolder scratch;
  const Answer answer = Command({"demo", scratch.path() + "/demo"});
  EXPECT_EQ(answer.status, ExitStatus::kDone) << answer.out << answer.error;
  EXPECT_NE(answer.out.find("Backup successfully completed"), std::string::npos);
  EXPECT_NE(answer.out.find("files identical, "), std::string::npos);
  EXPECT_NE(answer.out.find("registry keys present."), std::string::npos);
  for (const char* product :
       {"Outlook Express: ", "Windows Mail: ", "Microsoft Outlook: ", "Internet Explorer: "}) {
    EXPECT_NE(answer.out.find(product), std::string::npos) << product;
  }
  EXPECT_TRUE(fs::exists(scratch.path() + "/demo/Everything of Anna.obk"));
  EXPECT_TRUE(fs::exists(scratch.path() + "/demo/Everything of Clara.obk"));
}

}  // namespace
}  // namespace quorvale
