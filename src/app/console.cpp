#include "app/console.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "app/computer.h"
#include "app/console_options.h"
#include "app/console_screen.h"
#include "app/demo.h"
#include "app/new_machine.h"
#include "app/sample_machine.h"
#include "app/scenario_player.h"
#include "app/scratch_folder.h"
#include "app/wizard.h"

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
  ExitStatus RunOnMachine();
  ExitStatus PrintTree(const ui::TreeView* tree, const Wizard& wizard);
  ExitStatus Status(Outcome outcome, const Wizard& wizard);
  BackupJob JobOfOptions() const;

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
    case ConsoleCommand::kDemo:
      return RunDemo(options_.target, terminal_);
    case ConsoleCommand::kScenario:
      return PlayScenario();
    default:
      return RunOnMachine();
  }
}

ExitStatus Console::MakeNewMachine(bool sample) {
  MachinePlan plan;
  plan.like = options_.like;
  plan.user = options_.user;
  std::string problem = MakeMachine(options_.target, plan);
  if (!problem.empty()) return Fail(problem);
  if (sample) {
    const std::unique_ptr<Computer> computer = Computer::Open(options_.target, &problem);
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

ExitStatus Console::PlayScenario() {
  std::ifstream file(options_.target, std::ios::binary);
  if (!file) return Fail(options_.target + " cannot be read.");
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::unique_ptr<Computer> computer;
  if (!options_.machine.empty()) {
    std::string problem;
    computer = Computer::Open(options_.machine, &problem);
    if (!computer) return Fail(problem);
  }
  const ScratchFolder scratch;
  if (scratch.path().empty()) return Fail("no folder for temporary files can be made.");
  ScenarioPlayer player(scratch.path(), std::move(computer));
  const std::vector<ScenarioError> failures = player.Play(ReadScenario(text));
  for (const ScenarioError& failure : failures) {
    terminal_.error << options_.target << ", line " << failure.line << ": " << failure.message
                    << "\n";
  }
  if (!failures.empty()) return ExitStatus::kFailed;
  terminal_.out << options_.target << ": all went as it says.\n";
  return ExitStatus::kDone;
}

BackupJob Console::JobOfOptions() const {
  BackupJob job;
  job.name = options_.target;
  job.all = options_.all;
  job.ticks = options_.ticks;
  job.add_folders = options_.add_folders;
  job.add_files = options_.add_files;
  job.to = options_.to;
  job.level = LevelEntry(options_.level);
  job.password = options_.password;
  job.log = options_.log;
  return job;
}

ExitStatus Console::PrintTree(const ui::TreeView* tree, const Wizard& wizard) {
  if (tree == nullptr) return Status(Outcome::kRefused, wizard);
  for (int i = 1; i <= tree->Count(); ++i) {
    const ui::TreeNode* node = tree->Node(i);
    terminal_.out << node->FullPath() << '\t' << node->Key() << '\t' << node->image << '\n';
  }
  return ExitStatus::kDone;
}

ExitStatus Console::Status(Outcome outcome, const Wizard& wizard) {
  if (!wizard.problem().empty()) return Fail(wizard.problem());
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

ExitStatus Console::RunOnMachine() {
  std::string problem;
  const std::unique_ptr<Computer> computer = Computer::Open(options_.machine, &problem);
  if (!computer) return Fail(problem);
  const ConsoleScreen screen(*computer, terminal_, options_.answer);
  Wizard wizard(*computer);
  ExitStatus status = ExitStatus::kDone;
  switch (options_.command) {
    case ConsoleCommand::kTree:
      status = PrintTree(wizard.ShowComputer(), wizard);
      break;
    case ConsoleCommand::kShow:
      status = PrintTree(wizard.ShowBackup(options_.target, options_.password), wizard);
      break;
    case ConsoleCommand::kBackup:
    case ConsoleCommand::kQuick: {
      const Outcome outcome = options_.command == ConsoleCommand::kQuick
                                  ? wizard.QuickBackup()
                                  : wizard.Backup(JobOfOptions());
      status = Status(outcome, wizard);
      if (status == ExitStatus::kDone) {
        terminal_.out << "The backup is " << wizard.archive() << ".\n";
      }
      break;
    }
    default: {
      RestoreJob job;
      job.file = options_.target;
      job.all = options_.all;
      job.ticks = options_.ticks;
      job.password = options_.password;
      job.to = options_.to;
      job.keep = options_.keep;
      job.no_restore_folder = options_.no_restore_folder;
      status = Status(wizard.Restore(job), wizard);
    }
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
