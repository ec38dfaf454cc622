// What is still to be had of a damaged backup.
#pragma once

#include <string>

#include "core/program/program.h"

namespace quorvale {

// True if a restore can go on with what is whole in a backup file that did not pass its test: its
// directory, its settings file and its member table (if it has one) read well with this password.
// `stem` is the name that the file has now, without its extension.
bool GivesWhatIsWhole(Program& program, const std::string& path, const std::string& password,
                      const std::string& stem);

}  // namespace quorvale
