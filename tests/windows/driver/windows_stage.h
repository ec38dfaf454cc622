// The real windows of Quorvale.exe as a stage for scenarios.
#pragma once

#include <deque>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/windows_platform.h"
#include "play/stage.h"
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

// It looks after boxes, dialogs, conditions and processes whenever it waits. Nothing is waited for
// by time alone: an act is tried until it can be done, and an expectation until it holds.
class WindowsStage : public Stage {
 public:
  explicit WindowsStage(DriverOptions options);

  bool TakesAnotherMachine() const override;
  std::string NewMachine(const std::string& like, const std::string& user) override;
  Platform* platform() override { return has_machine_ ? &computer_.platform() : nullptr; }
  bool HasFormerMachine() const override { return !options_.former.empty(); }
  std::optional<std::string> FormerFile(const std::string& path) override;
  std::string RunProcess(const std::string& image, std::uint32_t id) override;
  std::string EndProcess(const std::string& image) override;
  std::string RemoveDrive(const std::string& letter) override;
  std::string RefuseElevation(bool refuse) override;
  std::string SetClock(const LocalTime& time) override;
  std::string SetEnvironment(const std::string& name, const std::string& value) override;
  std::optional<std::string> ScreenSize() override;

  std::string Start(const std::string& command_line) override;
  std::string StartBeside(const std::string& command_line) override;
  std::string Rest() override;
  std::string ByHand(const std::function<std::string()>& attempt) override;
  std::string Click(const std::string& form, const std::string& control) override;
  std::string DoubleClick(const std::string& form, const std::string& control) override;
  std::string Close(const std::string& form) override;
  std::string Set(const std::string& form, const std::string& control,
                  const std::string& text) override;
  std::string Check(const std::string& form, const std::string& control, bool checked) override;
  std::string Choose(const std::string& form, const std::string& control,
                     const std::string& text) override;
  std::string Tick(const std::string& form, const std::string& tree, const std::string& path,
                   bool checked) override;
  std::string Select(const std::string& form, const std::string& tree,
                     const std::string& path) override;
  void ForeseeBox(ui::Answer answer, const std::string& text) override;
  void ForeseeFolder(const std::string& path) override;
  void ForeseeFile(const std::string& path) override;
  void When(const std::string& form, const std::string& control,
            std::function<bool(const std::string& shown)> right,
            std::function<void()> then) override;

  std::string Expect(const ScenarioAct& act, bool never,
                     const std::function<std::string(const ScenarioAct& meant)>& look) override;
  std::optional<ControlLook> LookAt(const std::string& form, const std::string& control,
                                    std::string* problem) override;
  std::optional<std::string> ShownLine(const std::string& form, const std::string& control,
                                       std::string* problem) override;
  std::optional<NodeLook> LookAtNode(const std::string& form, const std::string& tree,
                                     const std::string& path, std::string* problem) override;
  bool FormShown(const std::string& form) override;
  std::vector<std::string> Boxes() override { return boxes_; }
  std::vector<std::string> Started() override;
  bool Ended() override;
  std::optional<int> Copies() override;
  std::optional<bool> InFront(const std::string& form) override;

  void TakeNotice() override { Turn(); }
  std::vector<std::string> AwaitedBoxes() override;
  std::size_t AwaitedConditions() override { return watchers_.size(); }

 private:
  struct Answer {
    ui::Answer button;
    std::string text;
  };
  struct Watcher {
    std::string form, control;
    std::function<bool(const std::string& shown)> right;
    std::function<void()> then;
  };

  // "" if a copy of the program has ended or shows a window.
  static std::string EndedOrShown(DWORD copy);
  // Does something with a control that a person can reach now.
  std::string OnControl(const std::string& form, const std::string& control,
                        const std::function<std::string(HWND)>& act) const;
  // Null with the reason.
  HWND Find(const std::string& form, const std::string& control, std::string* problem) const;
  std::string AtSomeMoment(const ScenarioAct& act, bool never,
                           const std::function<std::string(const ScenarioAct& meant)>& look);
  // Tries until it answers "" or the patience is at its end; then the last answer.
  std::string Until(int milliseconds, const std::function<std::string()>& attempt);
  // Looks after boxes, dialogs, conditions and processes.
  void Turn();
  void AnswerDialog(HWND dialog);
  void AnswerBox(HWND box);
  void RunWatchers();
  bool Foreseen() const;

  DriverOptions options_;
  windows::WindowsPlatform computer_;
  ProgramProcesses processes_;
  ProgramWindows windows_;
  bool has_machine_ = false;
  DWORD program_ = 0;
  std::deque<Answer> answers_;
  std::deque<std::string> folders_, file_paths_;
  std::list<Watcher> watchers_;
  bool watching_ = false;  // the program is held: what is done now must not wait for it
  std::vector<std::string> boxes_;
  // The moment that the scenario sets its clock to, and this system's time when it did.
  std::optional<SYSTEMTIME> scenario_clock_;
  SYSTEMTIME clock_set_ = {};
  HWND answered_ = nullptr;  // a dialog that has its answer and may not be gone yet
  int turns_ = 0;
};

}  // namespace quorvale::driver
