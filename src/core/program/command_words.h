// The words of the command line that are no file.
#pragma once

namespace quorvale {

// Words that a job of the task scheduler starts the program with.
inline constexpr char kQuickBackupWord[] = "qbackup";
inline constexpr char kCustomWord[] = "custom";
inline constexpr char kAutoWord[] = "auto";
// The command line of a run that was restarted with raised rights.
inline constexpr char kElevatedWord[] = "qvlrunasadmin";

}  // namespace quorvale
