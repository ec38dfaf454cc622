// The console edition: the program's pages worked from a command line.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace quorvale {

// What a command came to: the exit status of the process.
enum class ExitStatus {
  kDone = 0,
  kFailed = 1,  // refused or failed; the last message says why
  kWrongUsage = 2,
  kStopped = 3,
  kIncomplete = 4,  // done, and something was left out
};

// Where a command reads and writes.
struct Terminal {
  std::istream& in;
  std::ostream& out;    // results and message boxes
  std::ostream& error;  // why a command was refused; progress
  bool asks = false;    // a person can answer questions
  bool shows_progress = false;
};

// Carries out one command. `arguments` are those behind the program's name.
ExitStatus RunConsole(const std::vector<std::string>& arguments, Terminal& terminal);

// Asks the run at work to stop, as its Stop button does. May be called from a signal handler.
void RequestStop();

}  // namespace quorvale
