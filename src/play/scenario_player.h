// Plays a scenario on a computer of the host.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "play/computer.h"
#include "play/new_machine.h"
#include "play/scenario.h"
#include "play/scenario_files.h"

namespace quorvale {

class ScenarioPlayer {
 public:
  // `scratch_folder` on this host takes the computers that the scenario makes. `computer` is the
  // one it plays on before its first "machine" act; may be null.
  ScenarioPlayer(std::string scratch_folder, std::unique_ptr<Computer> computer);
  ~ScenarioPlayer();

  // Plays all acts and tells what went otherwise than the scenario says, each with its line. It
  // stops at the first failure. Empty: all went as it says.
  std::vector<ScenarioError> Play(const Scenario& scenario);

 private:
  // Each answers "" or what went wrong.
  std::string Do(const ScenarioAct& act);
  std::string DoComputerAct(const ScenarioAct& act);
  std::string SetDisc(const ScenarioAct& act);
  std::string DoPersonAct(const ScenarioAct& act);
  std::string DoExpectation(const ScenarioAct& act);
  std::string ExpectControl(const ScenarioAct& act);
  std::string ExpectNode(const ScenarioAct& act);
  std::string ExpectProgram(const ScenarioAct& act);
  std::string NewComputer(const std::string& like, const std::string& user);
  // The hands for files and registry of the present computer.
  ScenarioFiles Files();
  std::string Answer(const ScenarioAct& act);
  std::string AtBox(const ScenarioAct& act);
  std::string Watch(const ScenarioAct& act);
  bool PlayNext();
  void WireUi();
  void TakeUiFailures(int line);

  std::string scratch_folder_;
  std::unique_ptr<Computer> former_, computer_;
  std::vector<ScenarioAct> acts_;
  size_t next_ = 0;
  int line_ = 0;  // of the act at work
  // Looks at a control while the box after so many others is shown.
  struct BoxCheck {
    size_t box = 0;
    ScenarioAct act;
  };
  std::vector<BoxCheck> box_checks_;
  size_t expected_boxes_ = 0;
  std::vector<ScenarioError> failures_;
  int machines_ = 0;
};

}  // namespace quorvale
