// A program of the host that is run and listened to.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quorvale::host {

// Runs a program (a name that is looked up in PATH) and hands each line that it writes, to either
// of its outputs, to `on_line`. `keep_going` is called about twenty times a second meanwhile, and
// its false ends the program. The exit status; -1 if the program could not be started or did not
// end by itself. Both functions may be empty.
int RunChild(const std::vector<std::string>& words,
             const std::function<void(const std::string& line)>& on_line,
             const std::function<bool()>& keep_going);

// True if PATH has a program of this name.
bool ProgramExists(const std::string& name);

}  // namespace quorvale::host
