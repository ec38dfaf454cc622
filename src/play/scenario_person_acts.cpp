// What a person does before the screen.
#include "base/text.h"
#include "play/scenario_acts.h"

namespace quorvale::acts {

std::string Start(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::string problem = player.stage().Start(act.text);
  return problem.empty() ? player.stage().Rest() : problem;
}

std::string StartBeside(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::string problem = player.stage().StartBeside(act.text);
  return problem.empty() ? player.stage().Rest() : problem;
}

std::string Wait(ScenarioPlayer& player, const ScenarioAct&) { return player.stage().Rest(); }

std::string Click(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Click(act.form, act.control);
}
std::string DoubleClick(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().DoubleClick(act.form, act.control);
}
std::string Close(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Close(act.form);
}
std::string Set(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Set(act.form, act.control, act.text);
}
std::string Check(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Check(act.form, act.control, true);
}
std::string Uncheck(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Check(act.form, act.control, false);
}
std::string Choose(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Choose(act.form, act.control, act.text);
}
std::string Tick(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Tick(act.form, act.control, act.text, true);
}
std::string Untick(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Tick(act.form, act.control, act.text, false);
}
std::string Select(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().Select(act.form, act.control, act.text);
}

std::string Answer(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text.empty()) return "the text of the message box is missing";
  if (act.word == "OK") {
    player.stage().ForeseeBox(ui::Answer::kOk, act.text);
  } else if (act.word == "Yes") {
    player.stage().ForeseeBox(ui::Answer::kYes, act.text);
  } else if (act.word == "No") {
    player.stage().ForeseeBox(ui::Answer::kNo, act.text);
  } else {
    return "an answer is OK, Yes or No";
  }
  return "";
}

std::string AtBox(ScenarioPlayer& player, const ScenarioAct& act) {
  player.stage().AtNextBox([&player, act] {
    const std::string problem = ExpectText(player, act);
    if (!problem.empty()) player.FailAt(act.line, problem);
  });
  return "";
}

std::string Folder(ScenarioPlayer& player, const ScenarioAct& act) {
  player.stage().ForeseeFolder(act.text);
  return "";
}

std::string File(ScenarioPlayer& player, const ScenarioAct& act) {
  player.stage().ForeseeFile(act.text);
  return "";
}

std::string CancelDialog(ScenarioPlayer& player, const ScenarioAct& act) {
  if (act.text == "folder") {
    player.stage().ForeseeFolder("");
  } else if (act.text == "file") {
    player.stage().ForeseeFile("");
  } else {
    return "a dialog asks for a folder or a file";
  }
  return "";
}

std::string When(ScenarioPlayer& player, const ScenarioAct& act) {
  const auto right = [act](const std::string& shown) {
    return act.word == "equals" ? shown == act.text : Contains(shown, act.text);
  };
  const auto then = [&player, act] {
    const std::string problem = player.PlayAct(act.then.front());
    if (!problem.empty()) player.FailAt(act.line, problem);
  };
  player.stage().When(act.form, act.control, right, then);
  return "";
}

}  // namespace quorvale::acts
