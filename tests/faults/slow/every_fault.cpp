// The slow tests: every fault.
#include "faults/fault_walk.h"

namespace quorvale::fault_test {

std::uint64_t FirstFault() { return 1; }
std::uint64_t FaultStep() { return 1; }

}  // namespace quorvale::fault_test
