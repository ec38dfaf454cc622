#include "play/scenario_machine.h"

#include "play/sample_machine.h"

namespace quorvale {

MachinePlan ScenarioPlan(const std::string& like, const std::string& user, int number) {
  MachinePlan plan;
  plan.like = like;
  plan.user = user;
  plan.identity[plan.identity.size() - 2] = static_cast<char>('0' + number);
  return plan;
}

std::unique_ptr<RunningMachine> MakeScenarioMachine(const std::string& folder,
                                                    const std::string& like,
                                                    const std::string& user, int number,
                                                    std::string* problem) {
  const MachinePlan plan = ScenarioPlan(like, user, number);
  *problem = MakeMachine(folder, plan);
  if (!problem->empty()) return nullptr;
  std::unique_ptr<RunningMachine> computer = RunningMachine::Open(folder, problem);
  if (!computer) return nullptr;
  SampleOptions small;
  small.big_file_bytes = 100000;
  small.messages_per_folder = 4;
  if (FillSample(computer->platform(), plan, small)) return computer;
  *problem = "the machine could not be filled";
  return nullptr;
}

}  // namespace quorvale
