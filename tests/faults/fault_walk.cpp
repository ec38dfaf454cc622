#include "faults/fault_walk.h"

#include <gtest/gtest.h>

#include <iostream>

namespace quorvale::fault_test {
namespace {

constexpr std::size_t kMostTold = 60;

}  // namespace

void TryEveryFault(const std::string& what, const FaultyRun& run) {
  const FaultOutcome sound = run(0);
  for (const std::string& problem : sound.problems) ADD_FAILURE() << "no fault: " << problem;
  std::uint64_t tried = 0;
  std::size_t problems = 0;
  for (std::uint64_t number = FirstFault();; number += FaultStep()) {
    const FaultOutcome outcome = run(number);
    if (outcome.failed_call.empty()) break;
    ++tried;
    for (const std::string& problem : outcome.problems) {
      if (++problems <= kMostTold) {
        ADD_FAILURE() << number << " " << outcome.failed_call << ": " << problem;
      }
    }
  }
  EXPECT_GT(tried, 0u);
  EXPECT_EQ(problems, 0u) << "in " << what;
  std::cout << tried << " faults tried in " << what << std::endl;
}

}  // namespace quorvale::fault_test
