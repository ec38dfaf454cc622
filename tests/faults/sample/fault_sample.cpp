// The quick tests: every seventeenth fault.
#include "faults/fault_walk.h"

namespace quorvale::fault_test {

std::uint64_t FirstFault() { return 3; }
std::uint64_t FaultStep() { return 17; }

}  // namespace quorvale::fault_test
