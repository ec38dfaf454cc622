// The quick tests: every seventh fault.
#include "faults/fault_walk.h"

namespace quorvale::fault_test {

std::uint64_t FirstFault() { return 3; }
std::uint64_t FaultStep() { return 7; }

}  // namespace quorvale::fault_test
