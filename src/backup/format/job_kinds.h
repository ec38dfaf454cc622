// The two kinds of a backup job and what the settings file says about them.
#pragma once

namespace quorvale {

inline constexpr char kMainBackup[] = "Main Backup";
inline constexpr char kMainBackupDescription[] =
    "Save your current settings and data for later restore to this or other computer.";
inline constexpr char kQuickBackup[] = "Quick Backup";
inline constexpr char kQuickBackupDescription[] =
    "Allow you to take a Complete backup of Outlook Express, Microsoft Outlook, Internet Explorer "
    "files, My Documents and My Desktop files";

// The same in the hand-over file.
inline constexpr char kCustomWordOfJob[] = "Custom";
inline constexpr char kQuickWordOfJob[] = "Quick";

}  // namespace quorvale
