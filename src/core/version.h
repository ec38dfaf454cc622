// The program's version.
#pragma once

namespace quorvale {

// The same numbers as the project's version in CMakeLists.txt.
inline constexpr char kProgramVersion[] = "1.0.0";

}  // namespace quorvale
