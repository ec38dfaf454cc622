// A scenario: a text that plays a person, one act a line. This is the reading of such texts.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "play/scenario_verbs.h"

namespace quorvale {

struct ScenarioAct {
  int line = 0;                        // 1-based
  const ScenarioVerb* verb = nullptr;  // of the table
  std::string form, control;           // of kForm, kControl, kControlText, kCondition
  std::string word;       // the first word of kWordText; "contains" or "equals" of kCondition
  std::string path;       // of kPathText and kTwoPaths
  std::string text;       // the rest
  bool has_text = false;  // kPathText: " = " was there
  // kCondition: the one act to do when the condition holds.
  std::vector<ScenarioAct> then;
  // The act as it was written, without its comment.
  std::string source;
};

struct ScenarioError {
  int line = 0;
  std::string message;
};

struct Scenario {
  std::vector<ScenarioAct> acts;
  std::vector<ScenarioError> errors;  // lines that are no act
};

// A line is empty, an act, or a comment behind "#" at its start; " #" with a blank on both sides
// starts a comment behind an act.
Scenario ReadScenario(std::string_view text);

// The text with the value of NAME in the place of each %NAME% for which `value_of` has one. A value
// that is a path of the host stands as the computer sees it: "Z:\\tmp\\x" for "/tmp/x".
std::string WithVariables(const std::string& text,
                          const std::function<std::string(const std::string& name)>& value_of);

// True if the text is as the pattern says: "#" stands for one digit, "*" for any text, every other
// character for itself.
bool IsLike(std::string_view text, std::string_view pattern);

}  // namespace quorvale
