// Where Microsoft Outlook keeps what, for a backup that takes it and a restore that brings it back.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace quorvale {

// The registry key that the application makes when it is installed, under HKEY_LOCAL_MACHINE.
inline constexpr char kOutlookProgramKey[] =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\OUTLOOK.EXE";

// Folders below the user's profile folder.
inline constexpr char kOutlookRoamingFolder[] = "\\Application Data\\Microsoft\\Outlook";
inline constexpr char kOutlookLocalFolder[] =
    "\\Local Settings\\Application Data\\Microsoft\\Outlook";
// The same data files' folder on Windows Vista.
inline constexpr char kOutlookLocalFolderOfVista[] = "\\AppData\\Local\\Microsoft\\Outlook";
inline constexpr char kMicrosoftRoamingFolder[] = "\\Application Data\\Microsoft";

// The groups of loose files, in the tree's order.
struct OutlookFileGroup {
  const char* caption;  // of its node, and its name in the items' paths
  const char* pattern;
  const char* picture;
};
inline constexpr std::array<OutlookFileGroup, 7> kOutlookFileGroups = {{
    {"Adult-Junk Senders", "*.txt", "bs"},
    {"Dictionary", "*.dic", "dc"},
    {"Macros and VBA programs", "*.otm", "af"},
    {"Offline folders", "*.ost", "of"},
    {"Personal Address Book", "*.pab", "ab"},
    {"Signatures", "*.*", "sg"},
    {"Setting Files", "*.*", "set"},
}};

// The folder of a group's files, without a final "\". `profile` is the user's profile folder,
// `version` the installed version as OutlookCurVer names it: it decides where the dictionaries lie.
// "" for a caption that names no group.
std::string OutlookGroupFolder(std::string_view caption, const std::string& profile,
                               const std::string& version);

}  // namespace quorvale
