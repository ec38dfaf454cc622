// Whether the registry editor did what it was asked for. It is started and not waited for, and a
// silent run of it ends well also where it wrote nothing: what it was given is looked for in the
// registry instead of an exit status.
#pragma once

#include <string>

#include "core/program/program.h"

namespace quorvale {

// True if the keys of a registry file are there, each with at least one of the values that the file
// has for it: others may have been written since. The run of the editor has ended.
bool ImportTook(Program& program, const std::string& file);

}  // namespace quorvale
