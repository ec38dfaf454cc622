// What a person sees, compared with what the scenario expects.
#include <algorithm>
#include <optional>

#include "base/text.h"
#include "play/scenario_acts.h"

namespace quorvale::acts {
namespace {

std::string NameOf(const ScenarioAct& act) { return act.form + "." + act.control; }

// What the act's control shows must be right.
template <class Right>
std::string ExpectShown(ScenarioPlayer& player, const ScenarioAct& act, const std::string& expected,
                        const Right& right) {
  std::string problem;
  const std::optional<std::string> text = player.stage().ShownLine(act.form, act.control, &problem);
  if (!text) return problem;
  return right(*text) ? "" : Different(NameOf(act), *text, expected);
}

// The act's control must have a trait, or must not have it.
std::string ExpectLook(ScenarioPlayer& player, const ScenarioAct& act, bool ControlLook::*trait,
                       bool wanted, const std::string& otherwise) {
  std::string problem;
  const std::optional<ControlLook> look = player.stage().LookAt(act.form, act.control, &problem);
  if (!look) return problem;
  return (*look).*trait == wanted ? "" : NameOf(act) + otherwise;
}

// The act's node, which must be there, into `look`.
std::string FindNode(ScenarioPlayer& player, const ScenarioAct& act, NodeLook* look) {
  std::string problem;
  const std::optional<NodeLook> node =
      player.stage().LookAtNode(act.form, act.control, act.text, &problem);
  if (!node) return problem;
  *look = *node;
  return look->found ? "" : NameOf(act) + " has no node \"" + act.text + "\"";
}

bool OneContains(const std::vector<std::string>& lines, const std::string& text) {
  return std::any_of(lines.begin(), lines.end(),
                     [&text](const std::string& line) { return Contains(line, text); });
}

std::string Listed(const std::vector<std::string>& started) {
  std::string all = "\n  started:";
  for (const std::string& line : started) all += "\n  " + line;
  return all;
}

std::string OnlyWindowsTell(const ScenarioAct& act) {
  return std::string("only real windows tell about \"") + act.verb->name + "\"";
}

}  // namespace

std::string Different(const std::string& what, const std::string& is, const std::string& expected) {
  constexpr size_t kLongest = 300;
  const std::string shown = is.size() <= kLongest ? is : is.substr(0, kLongest) + "...";
  return what + " is \"" + shown + "\", not \"" + expected + "\"";
}

std::string ExpectText(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectShown(player, act, act.text,
                     [&act](const std::string& text) { return text == act.text; });
}

std::string ExpectContains(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectShown(player, act, "..." + act.text + "...",
                     [&act](const std::string& text) { return Contains(text, act.text); });
}

std::string ExpectLike(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectShown(player, act, act.text,
                     [&act](const std::string& text) { return IsLike(text, act.text); });
}

std::string ExpectNot(ScenarioPlayer& player, const ScenarioAct& act) {
  std::string problem;
  const std::optional<std::string> text = player.stage().ShownLine(act.form, act.control, &problem);
  if (!text) return problem;
  return *text != act.text ? "" : NameOf(act) + " is \"" + *text + "\"";
}

std::string ExpectEnabled(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectLook(player, act, &ControlLook::enabled, true, " is disabled");
}
std::string ExpectDisabled(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectLook(player, act, &ControlLook::enabled, false, " is enabled");
}
std::string ExpectVisible(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectLook(player, act, &ControlLook::shown, true, " is not shown");
}
std::string ExpectHidden(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectLook(player, act, &ControlLook::shown, false, " is shown");
}
std::string ExpectBold(ScenarioPlayer& player, const ScenarioAct& act) {
  return ExpectLook(player, act, &ControlLook::bold, true, " is not bold");
}

std::string ExpectForm(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().FormShown(act.form) ? "" : "form " + act.form + " is not shown";
}
std::string ExpectNoForm(ScenarioPlayer& player, const ScenarioAct& act) {
  return player.stage().FormShown(act.form) ? "form " + act.form + " is shown" : "";
}

std::string ExpectNode(ScenarioPlayer& player, const ScenarioAct& act) {
  NodeLook node;
  return FindNode(player, act, &node);
}

std::string ExpectNoNode(ScenarioPlayer& player, const ScenarioAct& act) {
  std::string problem;
  const std::optional<NodeLook> node =
      player.stage().LookAtNode(act.form, act.control, act.text, &problem);
  if (!node) return problem;
  return node->found ? "there is a node \"" + act.text + "\"" : "";
}

std::string ExpectTick(ScenarioPlayer& player, const ScenarioAct& act) {
  NodeLook node;
  const std::string problem = FindNode(player, act, &node);
  return node.ticked || !problem.empty() ? problem : act.text + " is not ticked";
}

std::string ExpectNoTick(ScenarioPlayer& player, const ScenarioAct& act) {
  NodeLook node;
  const std::string problem = FindNode(player, act, &node);
  return node.ticked ? act.text + " is ticked" : problem;
}

std::string ExpectBox(ScenarioPlayer& player, const ScenarioAct& act) {
  return OneContains(player.stage().Boxes(), act.text) ? "" : "no message box said: " + act.text;
}

std::string ExpectStarted(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::vector<std::string> started = player.stage().Started();
  if (OneContains(started, act.text)) return "";
  return "there was no start of " + act.text + Listed(started);
}

std::string ExpectNotStarted(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::vector<std::string> started = player.stage().Started();
  if (!OneContains(started, act.text)) return "";
  return "there was a start of " + act.text + Listed(started);
}

std::string ExpectEnded(ScenarioPlayer& player, const ScenarioAct&) {
  return player.stage().Ended() ? "" : "the program still runs";
}
std::string ExpectRunning(ScenarioPlayer& player, const ScenarioAct&) {
  return player.stage().Ended() ? "the program has ended" : "";
}

std::string ExpectCopies(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<int> copies = player.stage().Copies();
  if (!copies) return OnlyWindowsTell(act);
  const std::string count = std::to_string(*copies);
  return count == act.text ? "" : Different("the number of copies", count, act.text);
}

std::string ExpectFront(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<bool> front = player.stage().InFront(act.form);
  if (!front) return OnlyWindowsTell(act);
  return *front ? "" : act.form + " is not in front";
}

std::string ExpectNotFront(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<bool> front = player.stage().InFront(act.form);
  if (!front) return OnlyWindowsTell(act);
  return *front ? act.form + " is in front" : "";
}

}  // namespace quorvale::acts
