// The facts of a machine folder, given to the system that runs here.
#pragma once

#include <string>

namespace quorvale::driver {

// Its registry, its user's folders, its version. Names the user and the folders to the programs
// started from here. "" or what went wrong.
std::string TakeFactsOf(const std::string& machine_folder);

}  // namespace quorvale::driver
