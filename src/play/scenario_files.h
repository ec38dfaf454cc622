// The acts of a scenario that concern the computer's files, registry and scheduled jobs, and what
// it expects of them. They ask the platform alone, so that the player of headless pages and the
// driver of real windows share them.
#pragma once

#include <charconv>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

#include "platform/platform.h"
#include "play/scenario.h"

namespace quorvale {

class ScenarioFiles {
 public:
  explicit ScenarioFiles(Platform& platform) : platform_(platform) {}

  // Reads a file of the former computer by its path there; null: there is no former computer.
  std::function<std::optional<std::string>(const std::string& path)> former;

  // True for the verbs that Do and Expect play.
  static bool IsAct(const std::string& verb);
  static bool IsExpectation(const std::string& verb);

  // Each answers "" or what went wrong.
  std::string Do(const ScenarioAct& act);
  std::string Expect(const ScenarioAct& act);

 private:
  std::string SeedFile(const std::string& path, const std::string& bytes);
  std::string ExpectFiles(const ScenarioAct& act);
  std::string ExpectEntry(const ScenarioAct& act);
  std::string ExpectRegistry(const ScenarioAct& act);
  std::string DoTask(const ScenarioAct& act);
  std::string ExpectTask(const ScenarioAct& act);

  Platform& platform_;
};

// The number that a text is, as a whole.
template <class Number>
bool ReadNumber(const std::string& text, Number* number) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, *number);
  return result.ec == std::errc() && result.ptr == end;
}
std::string NotANumber(const std::string& text);

// True for the verbs that compare the text of a control, which CompareText does: "" or what is
// otherwise than the act says.
bool IsTextExpectation(const std::string& verb);
std::string CompareText(const ScenarioAct& act, const std::string& name, const std::string& text);

// The sentence about a text that is another one than expected.
std::string Different(const std::string& what, const std::string& is, const std::string& expected);

}  // namespace quorvale
