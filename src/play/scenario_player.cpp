#include "play/scenario_player.h"

namespace quorvale {

ScenarioPlayer::ScenarioPlayer(Stage& stage) : stage_(stage) { stage_.Enter(*this); }

void ScenarioPlayer::FailAt(int line, const std::string& sentence) {
  failures_.push_back({line, sentence});
}

std::vector<ScenarioError> ScenarioPlayer::Play(const Scenario& scenario, int first_line) {
  failures_ = scenario.errors;
  acts_ = scenario.acts;
  next_ = 0;
  next_machine_line_ = 0;
  while (next_ < acts_.size() && acts_[next_].line < first_line) ++next_;
  while (PlayNext()) {
  }
  if (Failed()) return failures_;
  for (const std::string& text : stage_.AwaitedBoxes()) {
    Fail("this message box never came: " + text);
  }
  if (stage_.AwaitedConditions() != 0) Fail("the condition of a \"when\" never held");
  stage_.EndPlay();
  return failures_;
}

bool ScenarioPlayer::PlayNext() {
  if (Failed() || next_ >= acts_.size()) return false;
  const ScenarioAct act = acts_[next_++];
  line_ = act.line;
  const std::string problem = PlayAct(act);
  if (!problem.empty()) FailAt(act.line, problem);
  stage_.TakeNotice();
  return true;
}

std::string ScenarioPlayer::PlayAct(const ScenarioAct& act) {
  const ScenarioVerb& verb = *act.verb;
  if (verb.way == ActWay::kBegin) return verb.play(*this, act);
  if (stage_.platform() == nullptr) return "there is no machine yet";
  switch (verb.way) {
    case ActWay::kByHand:
      return stage_.ByHand([&] { return verb.play(*this, act); });
    case ActWay::kMustBe:
    case ActWay::kMustNotBe:
      return stage_.Expect(act, verb.way == ActWay::kMustNotBe,
                           [&](const ScenarioAct& meant) { return verb.play(*this, meant); });
    default:
      return verb.play(*this, act);
  }
}

std::string ScenarioPlayer::TakeMachine(const ScenarioAct& act) {
  if (stage_.TakesAnotherMachine()) {
    return stage_.NewMachine(act.word, act.text.empty() ? "Anna" : act.text);
  }
  next_machine_line_ = act.line;
  next_ = acts_.size();
  return "";
}

}  // namespace quorvale
