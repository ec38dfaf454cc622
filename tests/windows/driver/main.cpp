// scenario_driver.exe --program FILE --scenario FILE --machine FOLDER [--former FOLDER]
//                     [--first LINE]
//
// Plays a scenario on the system that it runs on. Ends with 0 when all went as the scenario says,
// with 1 when not, and with 10 when the rest of the scenario needs another machine; the last line
// it writes is then the number of the line that asks for it.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/file_toolkit.h"
#include "platform/windows/files.h"
#include "platform/windows/system_info.h"
#include "play/scenario_player.h"
#include "windows_stage.h"

namespace {

constexpr int kNextMachine = 10;

bool ReadOptions(int count, char** words, quorvale::driver::DriverOptions* options) {
  for (int i = 1; i + 1 < count; i += 2) {
    const std::string word = words[i], value = words[i + 1];
    if (word == "--program") {
      options->program = value;
    } else if (word == "--scenario") {
      options->scenario = value;
    } else if (word == "--machine") {
      options->machine = value;
    } else if (word == "--former") {
      options->former = value;
    } else if (word == "--first") {
      options->first_line = std::atoi(value.c_str());
    } else {
      return false;
    }
  }
  return count % 2 == 1 && !options->program.empty() && !options->scenario.empty() &&
         !options->machine.empty();
}

int PlayScenario(const quorvale::driver::DriverOptions& options) {
  quorvale::windows::WindowsFiles system_files;
  quorvale::FileToolkit files(system_files, [] {});
  const std::optional<std::string> text = files.ReadWhole(options.scenario);
  if (!text) {
    std::printf("%s cannot be read\n", options.scenario.c_str());
    return 1;
  }
  const quorvale::Scenario scenario =
      quorvale::ReadScenario(quorvale::WithVariables(*text, [](const std::string& name) {
        return quorvale::windows::WindowsSystemInfo().Environment(name);
      }));
  quorvale::driver::WindowsStage stage(options);
  quorvale::ScenarioPlayer player(stage);
  const auto failures = player.Play(scenario, options.first_line);
  for (const quorvale::ScenarioError& failure : failures) {
    std::printf("line %d: %s\n", failure.line, failure.message.c_str());
  }
  if (!failures.empty()) return 1;
  if (scenario.acts.empty()) {
    std::printf("there is no act in it\n");
    return 1;
  }
  if (player.next_machine_line() == 0) return 0;
  std::printf("%d\n", player.next_machine_line());
  return kNextMachine;
}

}  // namespace

int main(int count, char** words) {
  if (count == 2 && std::string(words[1]) == quorvale::driver::kStandInWord) {
    Sleep(INFINITE);
    return 0;
  }
  if (quorvale::driver::IsGate()) {
    quorvale::driver::WaitAtGate();
    return 0;
  }
  quorvale::driver::DriverOptions options;
  if (!ReadOptions(count, words, &options)) {
    std::printf(
        "usage: scenario_driver --program FILE --scenario FILE --machine FOLDER\n"
        "                       [--former FOLDER] [--first LINE]\n");
    return 2;
  }
  return PlayScenario(options);
}
