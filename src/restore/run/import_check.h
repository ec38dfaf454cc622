// Whether the registry editor did what it was asked for. It is started and not waited for, and a
// silent run of it ends well also where it wrote nothing: what it was given is looked for in the
// registry instead of an exit status.
#pragma once

#include <string>

#include "core/program/program.h"

namespace quorvale {

// True if the keys of a registry file are there with all values that the file has for them: some
// alone may have been there before. The run of the editor has just ended.
bool ImportTook(Program& program, const std::string& file);

}  // namespace quorvale
