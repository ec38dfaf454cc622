#include "app/console/console.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "app/console/account_lines.h"
#include "app/console/console_options.h"
#include "app/console/console_screen.h"
#include "app/console/demo.h"
#include "app/console/disk_commands.h"
#include "app/console/page_commands.h"
#include "app/console/schedule_commands.h"
#include "base/text.h"
#include "core/program/version.h"
#include "platform/error_report/HuntERR.h"
#include "play/new_machine.h"
#include "play/page_driver.h"
#include "play/pages_stage.h"
#include "play/running_machine.h"
#include "play/sample_machine.h"
#include "play/scenario_player.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

class Console {
 public:
  Console(const ConsoleOptions& options, Terminal& terminal)
      : options_(options), terminal_(terminal) {}

  ExitStatus Run();

 private:
  ExitStatus Fail(const std::string& sentence) {
    terminal_.error << "quorvale: " << sentence << "\n";
    return ExitStatus::kFailed;
  }
  ExitStatus MakeNewMachine(bool sample);
  ExitStatus PlayScenario();
  ExitStatus RunOnDisk();
  // The same for a machine folder of an old disk that lasts as long as the command.
  ExitStatus RunOnDiskMachine();
  ExitStatus RunOnMachine(const std::string& folder);
  ExitStatus RunCommand(RunningMachine& computer);
  ExitStatus RunPageCommand(RunningMachine& computer);
  ExitStatus RunScheduleCommand(RunningMachine& computer);
  ExitStatus PrintTree(const ui::TreeView* tree, const PageDriver& driver);
  ExitStatus Status(Outcome outcome, const PageDriver& driver);
  void PrintWhereItIs(const PageDriver& driver);
  BackupWishes JobOfOptions() const;

  const ConsoleOptions& options_;
  Terminal& terminal_;
};

std::string LevelEntry(const std::string& word) {
  if (word == "maximum") return "Maximum";
  if (word == "normal") return "Normal";
  if (word == "low") return "Low";
  if (word == "none") return "No Compression";
  return "";
}

ExitStatus Console::Run() {
  switch (options_.command) {
    case ConsoleCommand::kHelp:
      terminal_.out << ConsoleUsage();
      return ExitStatus::kDone;
    case ConsoleCommand::kMachineNew:
      return MakeNewMachine(false);
    case ConsoleCommand::kMachineSample:
      return MakeNewMachine(true);
    case ConsoleCommand::kMachineUsers:
    case ConsoleCommand::kMachineFrom:
      return RunOnDisk();
    case ConsoleCommand::kDemo:
      return RunDemo(options_.target, terminal_);
    case ConsoleCommand::kScenario:
      return PlayScenario();
    default:
      return options_.disk.empty() ? RunOnMachine(options_.machine) : RunOnDiskMachine();
  }
}

ExitStatus Console::MakeNewMachine(bool sample) {
  MachinePlan plan;
  plan.like = options_.like;
  plan.user = options_.user;
  std::string problem = MakeMachine(options_.target, plan);
  if (!problem.empty()) return Fail(problem);
  if (sample) {
    const std::unique_ptr<RunningMachine> computer =
        RunningMachine::Open(options_.target, &problem);
    if (!computer) return Fail(problem);
    if (!FillSample(computer->platform(), plan)) {
      return Fail(options_.target + " could not be filled.");
    }
    problem = computer->SaveRegistry();
    if (!problem.empty()) return Fail(problem);
  }
  terminal_.out << "Made " << (sample ? "a sample" : "a new") << " machine like " << plan.like
                << " in " << options_.target << ".\n";
  return ExitStatus::kDone;
}

std::string HostVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value == nullptr ? "" : value;
}

ExitStatus Console::PlayScenario() {
  std::ifstream file(options_.target, std::ios::binary);
  if (!file) return Fail(options_.target + " cannot be read.");
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::unique_ptr<RunningMachine> computer;
  if (!options_.machine.empty()) {
    std::string problem;
    computer = RunningMachine::Open(options_.machine, &problem);
    if (!computer) return Fail(problem);
  }
  const ScratchFolder scratch;
  if (scratch.path().empty()) return Fail("no folder for temporary files can be made.");
  PagesStage stage(scratch.path(), std::move(computer));
  ScenarioPlayer player(stage);
  const std::vector<ScenarioError> failures =
      player.Play(ReadScenario(WithVariables(text, HostVariable)));
  for (const ScenarioError& failure : failures) {
    terminal_.error << options_.target << ", line " << failure.line << ": " << failure.message
                    << "\n";
  }
  if (!failures.empty()) return ExitStatus::kFailed;
  terminal_.out << options_.target << ": all went as it says.\n";
  return ExitStatus::kDone;
}

BackupWishes Console::JobOfOptions() const {
  BackupWishes job;
  job.name = options_.target;
  job.all = options_.all;
  job.ticks = options_.ticks;
  job.add_folders = options_.add_folders;
  job.add_files = options_.add_files;
  job.to = options_.to;
  job.level = LevelEntry(options_.level);
  job.password = options_.password;
  job.log = options_.log;
  job.ftp = options_.ftp;
  job.disc = IsDiscWriter(options_.disc) ? "1" : options_.disc;
  return job;
}

ExitStatus Console::PrintTree(const ui::TreeView* tree, const PageDriver& driver) {
  if (tree == nullptr) return Status(Outcome::kRefused, driver);
  for (int i = 1; i <= tree->Count(); ++i) {
    const ui::TreeNode* node = tree->Node(i);
    terminal_.out << node->FullPath() << '\t' << node->Key() << '\t' << node->image << '\n';
  }
  return ExitStatus::kDone;
}

ExitStatus Console::Status(Outcome outcome, const PageDriver& driver) {
  if (!driver.problem().empty()) return Fail(driver.problem());
  switch (outcome) {
    case Outcome::kDone:
      return ExitStatus::kDone;
    case Outcome::kStopped:
      return ExitStatus::kStopped;
    case Outcome::kRefused:
      break;
  }
  return ExitStatus::kFailed;
}

ExitStatus Console::RunPageCommand(RunningMachine& computer) {
  PageCommands page(computer, terminal_);
  bool done = false;
  switch (options_.command) {
    case ConsoleCommand::kLogsList:
      done = page.ListLogs();
      break;
    case ConsoleCommand::kLogsShow:
      done = page.ShowLog(options_.target);
      break;
    case ConsoleCommand::kLogsDelete:
      done = page.DeleteLog(options_.target);
      break;
    case ConsoleCommand::kSettingsList:
      done = page.ListSettings();
      break;
    case ConsoleCommand::kSettingsGet:
      done = page.GetSetting(options_.target);
      break;
    default:
      done = page.SetSetting(options_.target, options_.value);
  }
  if (!page.problem().empty()) return Fail(page.problem());
  return done ? ExitStatus::kDone : ExitStatus::kFailed;
}

void Console::PrintWhereItIs(const PageDriver& driver) {
  if (driver.discs() == 0) {
    terminal_.out << "The backup is " << driver.archive() << ".\n";
  } else {
    terminal_.out << "The backup is on " << driver.discs()
                  << (driver.discs() == 1 ? " disc.\n" : " discs.\n");
  }
}

ExitStatus Console::RunScheduleCommand(RunningMachine& computer) {
  ScheduleCommands pages(computer, terminal_);
  bool done = false;
  switch (options_.command) {
    case ConsoleCommand::kScheduleAdd:
      done = pages.Add(
          {options_.target, options_.at, options_.daily, ReadDays(options_.days), options_.type});
      break;
    case ConsoleCommand::kScheduleList:
      done = pages.List();
      break;
    case ConsoleCommand::kScheduleShow:
      done = pages.Show(options_.target);
      break;
    default:
      done = pages.Delete(options_.target);
  }
  if (!pages.problem().empty()) return Fail(pages.problem());
  return done ? ExitStatus::kDone : ExitStatus::kFailed;
}

ExitStatus Console::RunCommand(RunningMachine& computer) {
  PageDriver driver(computer);
  ExitStatus status = ExitStatus::kDone;
  switch (options_.command) {
    case ConsoleCommand::kTree:
      status = PrintTree(driver.ShowComputer(), driver);
      break;
    case ConsoleCommand::kShow:
      status = PrintTree(driver.ShowBackup(options_.target, options_.password), driver);
      break;
    case ConsoleCommand::kBackup:
    case ConsoleCommand::kQuick: {
      const Outcome outcome = options_.command == ConsoleCommand::kQuick
                                  ? driver.QuickBackup()
                                  : driver.Backup(JobOfOptions());
      status = Status(outcome, driver);
      if (status == ExitStatus::kDone) {
        PrintWhereItIs(driver);
      }
      break;
    }
    case ConsoleCommand::kScheduleAdd:
    case ConsoleCommand::kScheduleList:
    case ConsoleCommand::kScheduleShow:
    case ConsoleCommand::kScheduleDelete:
      status = RunScheduleCommand(computer);
      break;
    case ConsoleCommand::kLogsList:
    case ConsoleCommand::kLogsShow:
    case ConsoleCommand::kLogsDelete:
    case ConsoleCommand::kSettingsList:
    case ConsoleCommand::kSettingsGet:
    case ConsoleCommand::kSettingsSet:
      status = RunPageCommand(computer);
      break;
    default: {
      RestoreWishes job;
      job.file = options_.target;
      job.all = options_.all;
      job.ticks = options_.ticks;
      job.password = options_.password;
      job.to = options_.to;
      job.keep = options_.keep;
      job.no_restore_folder = options_.no_restore_folder;
      status = Status(driver.Restore(job), driver);
    }
  }
  return status;
}

ExitStatus Console::RunOnDisk() {
  DiskCommands commands(terminal_);
  if (!commands.Open(options_.target, *ReadDrives(options_.drives))) {
    return Fail(commands.problem());
  }
  const bool lists = options_.command == ConsoleCommand::kMachineUsers;
  if (!(lists ? commands.ListUsers() : commands.MakeMachine(options_.user, options_.value))) {
    return Fail(commands.problem());
  }
  if (!lists) terminal_.out << "Made a machine of the disk in " << options_.value << ".\n";
  return ExitStatus::kDone;
}

ExitStatus Console::RunOnDiskMachine() {
  const ScratchFolder scratch;
  if (scratch.path().empty()) return Fail("no folder for temporary files can be made.");
  const std::string folder = scratch.path() + "/machine";
  DiskCommands commands(terminal_);
  if (!commands.Open(options_.disk, *ReadDrives(options_.drives)) ||
      !commands.MakeMachine(options_.user, folder)) {
    return Fail(commands.problem());
  }
  return RunOnMachine(folder);
}

ExitStatus Console::RunOnMachine(const std::string& folder) {
  std::string problem;
  const std::unique_ptr<RunningMachine> computer = RunningMachine::Open(folder, &problem);
  if (!computer) return Fail(problem);
  const ConsoleScreen screen(*computer, terminal_, options_.answer);
  if (IsDiscWriter(options_.disc)) computer->SetDiscWriter(options_.disc);
  ExitStatus status = ExitStatus::kFailed;
  try {
    status = RunCommand(*computer);
    if (computer->app() != nullptr) {
      status = TellAccount(computer->app()->account(), status, terminal_);
    }
  } catch (...) {
    HuntERR errors(computer->platform().system, kApplicationTitle, kProgramVersion);
    errors.Take(std::current_exception());
    const std::string report =
        errors.ErrorIn("Console.RunCommand", {options_.target}, error_flag::kCallStack);
    return Fail("an error that nobody expected\n" + ReplaceAll(report, "\r\n", "\n"));
  }
  problem = computer->EndProgram();
  return problem.empty() ? status : Fail(problem);
}

}  // namespace

ExitStatus RunConsole(const std::vector<std::string>& arguments, Terminal& terminal) {
  std::string problem;
  const std::optional<ConsoleOptions> options = ReadConsoleOptions(arguments, &problem);
  if (!options) {
    terminal.error << "quorvale: " << problem << "\n" << ConsoleUsage();
    return ExitStatus::kWrongUsage;
  }
  return Console(*options, terminal).Run();
}

}  // namespace quorvale
