// The program's version.
#pragma once

namespace quorvale {

// The project's version, from the build: "1.0.0".
extern const char kProgramVersion[];

}  // namespace quorvale
