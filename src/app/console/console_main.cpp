// The entry of the console edition.
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "app/console/console.h"

namespace {

volatile std::sig_atomic_t interrupts = 0;

// The first interruption presses Stop; another one, where there is nothing to stop, ends at once.
void OnInterrupt(int signal) {
  if (interrupts != 0) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    return;
  }
  interrupts = 1;
  quorvale::RequestStop();
}

}  // namespace

int main(int count, char** words) {
  std::signal(SIGINT, OnInterrupt);
  quorvale::Terminal terminal{std::cin, std::cout, std::cerr};
  terminal.asks = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  terminal.shows_progress = isatty(STDERR_FILENO) != 0;
  const std::vector<std::string> arguments(words + 1, words + count);
  const quorvale::ExitStatus status = quorvale::RunConsole(arguments, terminal);
  std::cout.flush();
  return static_cast<int>(status);
}
