// The headless pages of a computer of the host as a stage for scenarios.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "play/running_machine.h"
#include "play/stage.h"

namespace quorvale {

class Hands;

class PagesStage : public Stage {
 public:
  // `scratch_folder` on this host takes the computers that the scenario makes. `computer` is the
  // one it plays on before its first "machine" act; may be null.
  PagesStage(std::string scratch_folder, std::unique_ptr<RunningMachine> computer);
  ~PagesStage() override;

  void Enter(StageManager& manager) override;
  std::string NewMachine(const std::string& like, const std::string& user) override;
  Platform* platform() override;
  bool HasFormerMachine() const override { return former_ != nullptr; }
  std::optional<std::string> FormerFile(const std::string& path) override;
  std::string RunProcess(const std::string& image, std::uint32_t id) override;
  std::string EndProcess(const std::string& image) override;
  std::string RemoveDrive(const std::string& letter) override;
  std::string RefuseElevation(bool refuse) override;
  std::string SetClock(const LocalTime& time) override;
  std::string SetEnvironment(const std::string& name, const std::string& value) override;
  std::string SetDrive(const std::string& letter, DriveKind kind) override;
  std::string SetFreeSpace(const std::string& letter, std::uint64_t bytes) override;
  std::string SetService(const std::string& name, bool running) override;
  std::string SetShare(const std::string& share, bool answers) override;
  std::string RemoveDiscWriter() override;
  std::string EmptyDiscWriter() override;
  std::string SetDiscWriter(std::uint64_t media_bytes) override;

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
  std::vector<std::string> Boxes() override;
  std::vector<std::string> Started() override;
  bool Ended() override;

  void TakeNotice() override;
  std::vector<std::string> AwaitedBoxes() override;
  std::size_t AwaitedConditions() override;
  void EndPlay() override;

 private:
  // Only while a program runs.
  Hands hands();
  bool ProgramRuns() { return computer_->app() != nullptr; }
  // Null with the reason.
  const ui::Control* Find(const std::string& form, const std::string& control,
                          std::string* problem);
  void WireUi();

  const std::string scratch_folder_;
  std::unique_ptr<RunningMachine> former_, computer_;
  int machines_ = 0;
};

}  // namespace quorvale
