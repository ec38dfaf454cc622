// Plays a scenario against the real windows of Quorvale.exe.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/windows_platform.h"
#include "play/scenario.h"
#include "play/scenario_files.h"
#include "program_processes.h"
#include "program_windows.h"

namespace quorvale::driver {

struct DriverOptions {
  std::string program;   // the path of Quorvale.exe
  std::string scenario;  // the scenario file
  std::string machine;   // the folder of the machine whose facts this system shall have
  std::string former;    // the folder that holds the drives of the former machine; may be empty
  int first_line = 0;    // of the "machine" act that starts this part of the scenario
};

class ScenarioDriver {
 public:
  explicit ScenarioDriver(DriverOptions options);

  // Plays until the end or the next "machine" act. Empty: all went as the scenario says.
  std::vector<ScenarioError> Play(const Scenario& scenario);
  // The line of the "machine" act at which the play ended; 0: it was played to its end.
  int next_machine_line() const { return next_machine_line_; }

 private:
  // Each answers "" or what went wrong.
  std::string Do(const ScenarioAct& act);
  std::string DoComputerAct(const ScenarioAct& act);
  std::string TakeDriveAway(const std::string& letter);
  std::string DoPersonAct(const ScenarioAct& act);
  std::string Start(const std::string& command_line);
  std::string StartBeside(const std::string& command_line);
  // "" if a copy of the program has ended or shows a window.
  static std::string EndedOrShown(DWORD copy);
  std::string ActOn(const ScenarioAct& act);
  std::string Expect(const ScenarioAct& act);
  std::string ExpectAtSomeMoment(const ScenarioAct& act);
  std::string ExpectControl(const ScenarioAct& act);
  std::string ExpectNode(const ScenarioAct& act);
  std::string ExpectProgram(const ScenarioAct& act);
  // Tries until it answers "" or the patience is at its end; then the last answer.
  std::string Until(int milliseconds, const std::function<std::string()>& attempt);
  // Waits until all foreseen boxes and dialogs have come and the program is at rest.
  std::string Settle();
  // Looks after boxes, dialogs, conditions and processes.
  void Turn();
  void AnswerDialog(HWND dialog);
  void AnswerBox(HWND box);
  void RunWatchers();
  bool Foreseen() const;
  void Fail(const std::string& message) { failures_.push_back({line_, message}); }

  struct Answer {
    std::string button, text;
  };
  struct BoxCheck {
    size_t box = 0;
    ScenarioAct act;
  };

  DriverOptions options_;
  windows::WindowsPlatform computer_;
  ScenarioFiles files_;
  ProgramProcesses processes_;
  ProgramWindows windows_;
  DWORD program_ = 0;
  std::deque<Answer> answers_;
  std::deque<std::string> folders_, file_paths_;
  std::vector<ScenarioAct> watchers_;
  std::vector<BoxCheck> box_checks_;
  std::vector<std::string> boxes_;
  std::vector<ScenarioError> failures_;
  // The moment that the scenario sets its clock to, and this system's time when it did.
  std::optional<SYSTEMTIME> scenario_clock_;
  SYSTEMTIME clock_set_ = {};
  HWND answered_ = nullptr;  // a dialog that has its answer and may not be gone yet
  int line_ = 0;
  int turns_ = 0;
  int next_machine_line_ = 0;
};

// Gives this system the facts of a machine folder: its registry, its user's folders, its version.
// Names the user and the folders to the programs started from here. "" or what went wrong.
std::string TakeFactsOf(const std::string& machine_folder);

}  // namespace quorvale::driver
