#include "play/scenario.h"

#include <optional>
#include <utility>

#include "base/text.h"

namespace quorvale {
namespace {

// The first word of a text, which is cut off it together with the blanks behind.
std::string TakeWord(std::string* text) {
  const size_t end = text->find(' ');
  std::string word = text->substr(0, end);
  *text = end == std::string::npos ? "" : Trim(text->substr(end));
  return word;
}

bool TakeControl(std::string* rest, ScenarioAct* act) {
  const std::string name = TakeWord(rest);
  const size_t dot = name.find('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return false;
  act->form = name.substr(0, dot);
  act->control = name.substr(dot + 1);
  return true;
}

// Reads one act. The answer is "" or what is wrong with it.
std::string ReadAct(const std::string& source, ScenarioAct* act);

std::string ReadCondition(std::string rest, ScenarioAct* act) {
  if (!TakeControl(&rest, act)) return "a control is named FORM.CONTROL";
  act->word = TakeWord(&rest);
  if (act->word != "contains" && act->word != "equals") {
    return "behind the control stands \"contains\" or \"equals\"";
  }
  // The text ends where the last act's verb stands.
  size_t cut = std::string::npos;
  for (const ScenarioVerb& verb : ScenarioVerbs()) {
    const size_t found = rest.rfind(" " + std::string(verb.name) + " ");
    if (found != std::string::npos && (cut == std::string::npos || found > cut)) cut = found;
  }
  if (cut == std::string::npos || cut == 0) return "no act stands behind the text";
  act->text = Trim(rest.substr(0, cut));
  ScenarioAct then;
  then.line = act->line;
  if (Contains(rest, " when ")) return "an act of \"when\" cannot be another \"when\"";
  const std::string problem = ReadAct(Trim(rest.substr(cut)), &then);
  if (!problem.empty()) return problem;
  act->then.push_back(std::move(then));
  return "";
}

std::string ReadPaths(const std::string& rest, bool both, ScenarioAct* act) {
  const size_t equal = rest.find(" = ");
  const bool ends_open = equal == std::string::npos && rest.ends_with(" =");
  if (equal == std::string::npos && !ends_open) {
    if (both) return "two paths have \" = \" between them";
    act->path = rest;
  } else {
    act->has_text = true;
    act->path = Trim(rest.substr(0, ends_open ? rest.size() - 2 : equal));
    act->text = ends_open ? "" : Trim(rest.substr(equal + 3));
  }
  if (act->path.empty() || (both && act->text.empty())) return "a path is missing";
  return "";
}

std::string ReadAct(const std::string& source, ScenarioAct* act) {
  act->source = source;
  std::string rest = source;
  const std::string word = TakeWord(&rest);
  act->verb = FindVerb(word);
  if (act->verb == nullptr) return "there is no act \"" + word + "\"";
  switch (act->verb->shape) {
    case ActShape::kNothing:
      return rest.empty() ? "" : "nothing stands behind \"" + word + "\"";
    case ActShape::kText:
      if (rest.empty()) return "a text is missing";
      act->text = rest;
      return "";
    case ActShape::kOptionalText:
      act->text = rest;
      return "";
    case ActShape::kWordText:
      act->word = TakeWord(&rest);
      act->text = rest;
      return act->word.empty() ? "a word is missing" : "";
    case ActShape::kForm:
      act->form = TakeWord(&rest);
      if (act->form.empty()) return "a form is missing";
      return rest.empty() ? "" : "nothing stands behind the form";
    case ActShape::kControl:
      if (!TakeControl(&rest, act)) return "a control is named FORM.CONTROL";
      return rest.empty() ? "" : "nothing stands behind the control";
    case ActShape::kControlText:
      if (!TakeControl(&rest, act)) return "a control is named FORM.CONTROL";
      act->text = rest;
      return "";
    case ActShape::kPathText:
      return ReadPaths(rest, false, act);
    case ActShape::kTwoPaths:
      return ReadPaths(rest, true, act);
    case ActShape::kCondition:
      return ReadCondition(rest, act);
  }
  return "";
}

std::string WithoutComment(std::string line) {
  if (line.ends_with('\r')) line.pop_back();
  line = Trim(ReplaceAll(std::move(line), "\t", " "));
  if (line.starts_with("#")) return "";
  const size_t comment = line.find(" # ");
  return Trim(line.substr(0, comment));
}

}  // namespace

bool IsLike(std::string_view text, std::string_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern.front() == '*') {
    for (size_t taken = 0; taken <= text.size(); ++taken) {
      if (IsLike(text.substr(taken), pattern.substr(1))) return true;
    }
    return false;
  }
  if (text.empty()) return false;
  const bool is_digit = text.front() >= '0' && text.front() <= '9';
  const bool fits = pattern.front() == '#' ? is_digit : text.front() == pattern.front();
  return fits && IsLike(text.substr(1), pattern.substr(1));
}

std::string WithVariables(const std::string& text,
                          const std::function<std::string(const std::string& name)>& value_of) {
  std::string result;
  size_t done = 0;
  for (size_t start = text.find('%'); start != std::string::npos; start = text.find('%', start)) {
    const size_t end = text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_", start + 1);
    const bool named = end != std::string::npos && text[end] == '%' && end > start + 1;
    std::string value = named ? value_of(text.substr(start + 1, end - start - 1)) : "";
    if (value.empty()) {
      ++start;
      continue;
    }
    if (value.starts_with("/")) value = "Z:" + ReplaceAll(std::move(value), "/", "\\");
    result += text.substr(done, start - done) + value;
    start = done = end + 1;
  }
  return result + text.substr(done);
}

Scenario ReadScenario(std::string_view text) {
  Scenario scenario;
  int number = 0;
  for (const std::string& raw : Split(text, "\n")) {
    ++number;
    const std::string line = WithoutComment(raw);
    if (line.empty()) continue;
    ScenarioAct act;
    act.line = number;
    const std::string problem = ReadAct(line, &act);
    if (problem.empty()) {
      scenario.acts.push_back(std::move(act));
    } else {
      scenario.errors.push_back({number, problem});
    }
  }
  return scenario;
}

}  // namespace quorvale
