// lay_machine DIR LIKE USER [NUMBER]: makes the machine that a scenario starts from, in a folder of
// this host. NUMBER tells the machines of one scenario apart, from 1.
#include <cstdio>
#include <cstdlib>

#include "play/scenario_machine.h"

int main(int count, char** words) {
  if (count < 4) {
    std::fprintf(stderr, "usage: lay_machine DIR LIKE USER [NUMBER]\n");
    return 2;
  }
  std::string problem;
  const auto computer = quorvale::MakeScenarioMachine(
      words[1], words[2], words[3], count > 4 ? std::atoi(words[4]) : 1, &problem);
  if (computer != nullptr) problem = computer->SaveRegistry();
  if (problem.empty()) return 0;
  std::fprintf(stderr, "%s\n", problem.c_str());
  return 1;
}
