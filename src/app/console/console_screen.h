// What the console edition shows of a computer's screen: message boxes as lines, questions, the
// progress of a run.
#pragma once

#include <optional>
#include <string>

#include "app/console/console.h"
#include "app/console/progress_bar.h"
#include "play/running_machine.h"

namespace quorvale {

class ConsoleScreen {
 public:
  // `answer` is the answer to all questions; nothing: they are asked, or answered No where nobody
  // can be asked.
  ConsoleScreen(RunningMachine& computer, Terminal& terminal, std::optional<bool> answer);
  ~ConsoleScreen();
  ConsoleScreen(const ConsoleScreen&) = delete;
  ConsoleScreen& operator=(const ConsoleScreen&) = delete;

 private:
  ui::Answer AnswerBox(const ui::MessageBoxRequest& request);
  ui::Answer FixedAnswer(const std::string& question);
  ui::Answer Ask();
  void OnPump();
  // Stops the run, or its delivery, and answers Yes to the question that comes of it.
  void StopRun();

  RunningMachine& computer_;
  Terminal& terminal_;
  std::optional<bool> answer_;
  ProgressBarLine progress_;
  bool stopping_ = false;
  std::string last_question_;
  int repeats_ = 0;
};

}  // namespace quorvale
