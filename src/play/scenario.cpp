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

const ActKind* FindKind(const std::string& verb) {
  for (const ActKind& kind : ActKinds()) {
    if (verb == kind.verb) return &kind;
  }
  return nullptr;
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
  for (const ActKind& kind : ActKinds()) {
    const size_t found = rest.rfind(" " + std::string(kind.verb) + " ");
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
  act->verb = TakeWord(&rest);
  const ActKind* kind = FindKind(act->verb);
  if (kind == nullptr) return "there is no act \"" + act->verb + "\"";
  act->shape = kind->shape;
  switch (kind->shape) {
    case ActShape::kNothing:
      return rest.empty() ? "" : "nothing stands behind \"" + act->verb + "\"";
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

const std::vector<ActKind>& ActKinds() {
  static const std::vector<ActKind> kinds = {
      // The computer.
      {"machine", ActShape::kWordText},     // machine xp [user]: a new computer with things in it
      {"bring", ActShape::kTwoPaths},       // a file of the former computer = its path on this one
      {"seed", ActShape::kPathText},        // a file = its text
      {"seed-bytes", ActShape::kTwoPaths},  // a file = its length
      {"seed-folder", ActShape::kText},
      {"seed-value", ActShape::kPathText},  // key\name = text
      {"seed-key", ActShape::kText},
      {"remove", ActShape::kText},         // a file, or a folder with all in it
      {"remove-values", ActShape::kText},  // all values of a registry key and of the keys below it
      {"rename", ActShape::kTwoPaths},
      {"process", ActShape::kWordText},  // process msimn.exe 77, process msimn.exe gone
      {"service", ActShape::kTwoPaths},  // service Name = running
      {"task", ActShape::kTwoPaths},     // a job of another program = its comment; = gone
      {"free", ActShape::kWordText},     // free C 1000: bytes
      {"drive", ActShape::kWordText},    // drive D fixed; drive D gone
      {"share", ActShape::kTwoPaths},    // share \\\\server\\share = answers; = silent
      {"elevation", ActShape::kText},    // accepted, refused
      {"clock", ActShape::kText},        // 2026-11-14 22:05:09
      {"disc",
       ActShape::kWordText},  // disc writer 700000000: blank media of so many bytes; disc gone
      {"environment",
       ActShape::kPathText},        // a variable = its text; nothing behind "=": it is gone
      {"screen", ActShape::kText},  // 800x600; real windows only
      // The person.
      {"start", ActShape::kOptionalText},
      {"start-beside", ActShape::kOptionalText},  // while a copy runs; real windows only
      {"click", ActShape::kControl},
      {"double-click", ActShape::kControl},
      {"close", ActShape::kForm},  // the window, as by its own button
      {"set", ActShape::kControlText},
      {"check", ActShape::kControl},
      {"uncheck", ActShape::kControl},
      {"choose", ActShape::kControlText},
      {"tick", ActShape::kControlText},
      {"untick", ActShape::kControlText},
      {"select", ActShape::kControlText},
      {"answer", ActShape::kWordText},
      {"at-box", ActShape::kControlText},  // what the control shows while the next box is up
      {"folder", ActShape::kText},
      {"file", ActShape::kText},
      {"cancel-dialog", ActShape::kText},  // folder or file
      {"wait", ActShape::kNothing},
      {"when", ActShape::kCondition},
      // What must be so now.
      {"expect", ActShape::kControlText},
      {"expect-contains", ActShape::kControlText},
      {"expect-like", ActShape::kControlText},  // "#" is a digit, "*" any text
      {"expect-not", ActShape::kControlText},   // another text than this
      {"expect-form", ActShape::kForm},
      {"expect-no-form", ActShape::kForm},
      {"expect-enabled", ActShape::kControl},
      {"expect-disabled", ActShape::kControl},
      {"expect-visible", ActShape::kControl},
      {"expect-hidden", ActShape::kControl},
      {"expect-bold", ActShape::kControl},
      {"expect-node", ActShape::kControlText},
      {"expect-no-node", ActShape::kControlText},
      {"expect-tick", ActShape::kControlText},
      {"expect-no-tick", ActShape::kControlText},
      {"expect-file", ActShape::kPathText},  // a path, or a path = the whole text of the file
      {"expect-no-file", ActShape::kText},   // neither file nor folder
      {"expect-same", ActShape::kTwoPaths},  // two files with the same bytes
      {"expect-folder", ActShape::kText},
      {"expect-entry", ActShape::kTwoPaths},  // archive = entry name
      {"expect-no-entry", ActShape::kTwoPaths},
      {"expect-registry", ActShape::kPathText},  // key\name, or key\name = text
      {"expect-no-registry", ActShape::kText},
      {"expect-task", ActShape::kTwoPaths},  // a job of the scheduler = its comment
      {"expect-no-task", ActShape::kText},
      {"expect-box", ActShape::kText},      // a message box with this text has been shown
      {"expect-started", ActShape::kText},  // a program was started whose line contains this
      {"expect-not-started", ActShape::kText},
      {"expect-ended", ActShape::kNothing},  // the program has ended by itself
      {"expect-running", ActShape::kNothing},
      {"expect-copies", ActShape::kText},     // of the program run; real windows only
      {"expect-front", ActShape::kForm},      // it is the window that takes the keys; likewise
      {"expect-not-front", ActShape::kForm},  // likewise
  };
  return kinds;
}

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
