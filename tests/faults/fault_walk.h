// Makes every call of a run fail in its turn, one in each run, until a run meets none.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quorvale::fault_test {

// What one run with a fault came to.
struct FaultOutcome {
  std::string failed_call;            // "" if the run had fewer calls
  std::vector<std::string> problems;  // what must not be, a sentence each
};

// Runs with the Nth call failing; 0: without a fault.
using FaultyRun = std::function<FaultOutcome(std::uint64_t number)>;

// Tries the faults of `what` ("a backup") and says how many; each problem is a failure of the test.
// Which ones are tried is told by FirstFault and FaultStep.
void TryEveryFault(const std::string& what, const FaultyRun& run);

// The program of the quick tests tries a sample; the slow one tries all. Each defines these.
std::uint64_t FirstFault();
std::uint64_t FaultStep();

}  // namespace quorvale::fault_test
