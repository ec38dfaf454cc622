// What a scenario is played on: a computer with the program, as a person sits before it. There are
// two stages, the headless pages (pages_stage.h) and the real windows of the driver under tests/;
// the player knows neither.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/ui/ui.h"

namespace quorvale {

struct ScenarioAct;

// Whom a stage turns to while an act is at work.
class StageManager {
 public:
  virtual ~StageManager() = default;
  // Plays the scenario's next act. False if there is none, or the play is over.
  virtual bool PlayNext() = 0;
  // Something went otherwise than foreseen, beside what the act at work answers.
  virtual void Fail(const std::string& sentence) = 0;
  virtual bool Failed() const = 0;
};

// What a person sees of a control, but for its text.
struct ControlLook {
  bool enabled = false;
  bool shown = false;
  bool bold = false;
};

struct NodeLook {
  bool found = false;
  bool ticked = false;
};

// Forms, controls and nodes go by their names. Where a method answers a text, that is "" when all
// was done, else a sentence that says why it could not be. Where it answers nothing, `problem` says
// why.
class Stage {
 public:
  virtual ~Stage() = default;
  // Called once, before the play.
  virtual void Enter(StageManager& manager) { manager_ = &manager; }

  // --- The computer. What a stage cannot arrange, its answer says.
  // --------------------------------

  // False: the play of a further machine goes on elsewhere.
  virtual bool TakesAnotherMachine() const { return true; }
  // A new computer, like a system ("xp"), with a user and things in it. The one before it, if
  // there is one, becomes the former one.
  virtual std::string NewMachine(const std::string& like, const std::string& user) = 0;
  // Null before the first machine.
  virtual Platform* platform() = 0;
  virtual bool HasFormerMachine() const = 0;
  // The bytes of a file of the former machine; nothing if it has no such file.
  virtual std::optional<std::string> FormerFile(const std::string& path) = 0;
  virtual std::string RunProcess(const std::string& image, std::uint32_t id) = 0;
  virtual std::string EndProcess(const std::string& image) = 0;
  virtual std::string RemoveDrive(const std::string& letter) = 0;
  // Whether the system lets the program start itself with raised rights.
  virtual std::string RefuseElevation(bool refuse) = 0;
  virtual std::string SetClock(const LocalTime& time) = 0;
  // "" as value: the variable is gone.
  virtual std::string SetEnvironment(const std::string& name, const std::string& value) = 0;
  virtual std::string SetDrive(const std::string& letter, DriveKind kind);
  virtual std::string SetFreeSpace(const std::string& letter, std::uint64_t bytes);
  virtual std::string SetService(const std::string& name, bool running);
  virtual std::string SetShare(const std::string& share, bool answers);
  // The disc writer: none, one without media, one with blank media of so many bytes.
  virtual std::string RemoveDiscWriter();
  virtual std::string EmptyDiscWriter();
  virtual std::string SetDiscWriter(std::uint64_t media_bytes);
  // "800x600"; nothing if there is no screen.
  virtual std::optional<std::string> ScreenSize() { return std::nullopt; }

  // --- The person --------------------------------------------------------------------------------

  virtual std::string Start(const std::string& command_line) = 0;
  // A further copy, while one runs.
  virtual std::string StartBeside(const std::string& command_line) = 0;
  // Waits until the program has nothing more to do and all that is foreseen has come.
  virtual std::string Rest() = 0;
  // Does something by hand as soon as a person could; then rests.
  virtual std::string ByHand(const std::function<std::string()>& attempt) = 0;
  // For use by ByHand: each tries once.
  virtual std::string Click(const std::string& form, const std::string& control) = 0;
  virtual std::string DoubleClick(const std::string& form, const std::string& control) = 0;
  virtual std::string Close(const std::string& form) = 0;
  virtual std::string Set(const std::string& form, const std::string& control,
                          const std::string& text) = 0;
  virtual std::string Check(const std::string& form, const std::string& control, bool checked) = 0;
  virtual std::string Choose(const std::string& form, const std::string& control,
                             const std::string& text) = 0;
  virtual std::string Tick(const std::string& form, const std::string& tree,
                           const std::string& path, bool checked) = 0;
  virtual std::string Select(const std::string& form, const std::string& tree,
                             const std::string& path) = 0;

  // The next message box has this text and gets this answer: OK, Yes or No.
  virtual void ForeseeBox(ui::Answer answer, const std::string& text) = 0;
  // The next folder or file dialog gives this path; "" cancels it.
  virtual void ForeseeFolder(const std::string& path) = 0;
  virtual void ForeseeFile(const std::string& path) = 0;
  // Runs once, while the box is up that comes first behind those already foreseen.
  void AtNextBox(std::function<void()> look);
  // Runs `then` once, in the middle of the program's work, as soon as the control's text is right.
  virtual void When(const std::string& form, const std::string& control,
                    std::function<bool(const std::string& shown)> right,
                    std::function<void()> then) = 0;

  // --- What is seen
  // -------------------------------------------------------------------------------

  // Calls `look` with the act, as often and with as many readings of its moments as this stage
  // needs until it answers "". With `never`, what the act names must be so at no moment.
  virtual std::string Expect(const ScenarioAct& act, bool never,
                             const std::function<std::string(const ScenarioAct& meant)>& look) = 0;
  // For use by Expect: each looks once.
  virtual std::optional<ControlLook> LookAt(const std::string& form, const std::string& control,
                                            std::string* problem) = 0;
  // What a person reads off a control, as one line.
  virtual std::optional<std::string> ShownLine(const std::string& form, const std::string& control,
                                               std::string* problem) = 0;
  virtual std::optional<NodeLook> LookAtNode(const std::string& form, const std::string& tree,
                                             const std::string& path, std::string* problem) = 0;
  virtual bool FormShown(const std::string& form) = 0;
  // The texts of all message boxes so far.
  virtual std::vector<std::string> Boxes() = 0;
  // What the program has started: "run|command line", "runas|file|parameters".
  virtual std::vector<std::string> Started() = 0;
  virtual bool Ended() = 0;
  // How many copies of the program run, and whether a form takes the keys; nothing where only real
  // windows could tell.
  virtual std::optional<int> Copies() { return std::nullopt; }
  virtual std::optional<bool> InFront(const std::string& /*form*/) { return std::nullopt; }

  // --- The play
  // -----------------------------------------------------------------------------------

  // Hands what went otherwise than foreseen since the last call to the manager.
  virtual void TakeNotice() = 0;
  // Boxes that were foreseen and have not come, and conditions of When that have not held.
  virtual std::vector<std::string> AwaitedBoxes() = 0;
  virtual std::size_t AwaitedConditions() = 0;
  // The play is over and all went well.
  virtual void EndPlay() {}

 protected:
  StageManager& manager() { return *manager_; }
  // For the stage to call while a box is up, before it counts among Boxes().
  void BoxIsUp();
  void ForgetBoxes() { box_looks_.clear(); }

 private:
  struct BoxLook {
    std::size_t box = 0;  // so many come before it
    std::function<void()> look;
  };

  StageManager* manager_ = nullptr;
  std::vector<BoxLook> box_looks_;
};

}  // namespace quorvale
