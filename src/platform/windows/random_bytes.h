// Bytes that nobody foresees.
#pragma once

#include <cstddef>
#include <string>

namespace quorvale::windows {

// From the system's own source. "" if it has none: the first Windows 95 and NT have no such calls.
std::string SystemRandomBytes(std::size_t count);
// For those systems: a hash over what a stranger does not know to the last digit, the processor's
// cycle count during many calls before all. Good for salts; a key should not be made of it.
std::string JitterBytes(std::size_t count);

}  // namespace quorvale::windows
