// Plays a scenario on a stage.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "play/scenario.h"
#include "play/stage.h"

namespace quorvale {

class ScenarioPlayer : private StageManager {
 public:
  explicit ScenarioPlayer(Stage& stage);

  // Plays all acts from `first_line` on and tells what went otherwise than the scenario says, each
  // with its line. It stops at the first failure. Empty: all went as it says.
  std::vector<ScenarioError> Play(const Scenario& scenario, int first_line = 0);
  // The line of the "machine" act before which the play ended, since the stage takes no further
  // machine; 0: it was played to its end.
  int next_machine_line() const { return next_machine_line_; }

  // --- For what plays the acts
  // --------------------------------------------------------------------

  Stage& stage() { return stage_; }
  // Answers "" or what went wrong.
  std::string PlayAct(const ScenarioAct& act);
  // A failure of an act that is not, or no longer, at work.
  void FailAt(int line, const std::string& sentence);
  // The machine that the act asks for; or the play ends before it.
  std::string TakeMachine(const ScenarioAct& act);

 private:
  bool PlayNext() override;
  void Fail(const std::string& sentence) override { FailAt(line_, sentence); }
  bool Failed() const override { return !failures_.empty(); }

  Stage& stage_;
  std::vector<ScenarioAct> acts_;
  std::size_t next_ = 0;
  int line_ = 0;  // of the act at work
  int next_machine_line_ = 0;
  std::vector<ScenarioError> failures_;
};

}  // namespace quorvale
