// The procedures that the whole program shares, as far as they need no window.
#pragma once

#include <string>

#include "base/paths.h"
#include "core/program/program.h"
#include "platform/system_info.h"

namespace quorvale {

// The words of GetOSName that branches test.
inline constexpr char kWindowsVista[] = "Windows Vista";
inline constexpr char kWindows2000[] = "Windows 2000";  // every NT 5 system
inline constexpr char kWindowsNT[] = "Windows NT";
inline constexpr char kWindowsME[] = "Windows ME";
inline constexpr char kWindows98[] = "Windows 98";
inline constexpr char kWindows95[] = "Windows 95";

inline constexpr char kHistoryKey[] = "Software\\Tarnwick\\Quorvale";

// The fixed word of the operating system.
std::string GetOSName(const SystemVersion& version);
bool IsVista(const Program& program);
// "Documents" on Windows Vista, "My Documents" on every other system.
std::string DocumentsWord(const std::string& os_name);
std::string DocumentsWord(const Program& program);  // of this computer

// The browser's program, or "Invalid".
std::string DefaultBrowser(Program& program);
int OnlyDigitKey(int code);
std::string GetWinUserName(Program& program);
std::string StripNuls(const std::string& text);
std::string InterleaveNuls(const std::string& text);
// Unicode text as the bytes of a registry value, without their NULs; other text behind `prefix`.
std::string DecodeStorePath(const std::string& text, bool is_unicode, const std::string& prefix);
// Bytes as upper-case hexadecimal digits, two for each.
std::string ToHexText(const std::string& bytes);
// "Outlook.Application.11" and the like, "" if absent.
std::string OutlookCurVer(Program& program);
void ShowHelp(Program& program, const std::string& topic);
// Fills gBackupBasePath with a free name in the folder; returns its suffix, "" or "_" and a number.
std::string UniqueBackupName(Program& program, const std::string& folder);
// True for 1 to 128 characters with none of / : \ ? * < > " |, after trimming `name` in place.
bool IsValidName(std::string& name);
// True if one of ? > < . / \ : ; * | ' " is in the name of a job or a schedule.
bool HasSpecialCharacters(const std::string& name);
// True if the folder's entries can be read: tries to write and remove a small file then.
bool FolderIsWritable(Program& program, const std::string& folder);
// Window sizes: twips or pixels, unchanged at 96 dots per inch.
int ScaleForDpi(int value, int dpi);
// "7_14_11_2026_22_5": weekday number, day, month, year, hour, minute, not padded.
std::string DateStamp(const LocalTime& time);
// "11/14/2026 10:05:09 PM": the form of the run history.
std::string HistoryStamp(Program& program, const LocalTime& time);
// The name word for a boolean that reaches a file.
inline const char* BoolWord(bool value) { return value ? "True" : "False"; }
// A check box value from its registry text: 1 for the number 1, else 0.
int CheckValue(const std::string& text);

// The end-of-run sound, unless the user turned it off.
void PlayEndSound(Program& program);

// Shows a folder in the file manager.
void OpenFolder(Program& program, const std::string& path);

// Stands for the programs of the start menu.
inline constexpr char kProgramsGroup[] = "$(Programs)";
// A link made by the shell. `group` is its folder, as the way from the programs of the start menu
// ("..\\..\\Recent"); "" stands for these themselves. Quotes around paths are taken off. False if
// it could not be made.
bool CreateShellLink(Program& program, const std::string& target, const std::string& link_name,
                     const std::string& arguments, const std::string& group);
// A link at a path of its own, made by the script host's shell object; by the shell itself where
// there is no script host. False if it could not be made.
bool CreateShortcutVista(Program& program, const ShellLink& link);
// The program's link among the programs of the start menu.
bool StartMenuShortcut(Program& program);

// A start with a backup file as command line: gBackupFileName takes it, and a link to it goes into
// the folder of recent files. Nothing happens for an empty command line, "%1" and the words of the
// run modes.
void RegisterOpenedFile(Program& program);

// The backup file with which the program was opened, also by way of a copy that asked for raised
// rights; "" if there is none, or none any more.
std::string OpenedBackupFile(Program& program);

// The program's link on the desktop or in the start menu.
std::string ShortcutPath(Program& program, int folder);  // a number of special_folder
// Makes it, or removes it. Nothing is said when that fails.
void SetShortcut(Program& program, int folder, bool wanted);

// What the elevation rule came to.
enum class Elevation { kNotNeeded, kRestarted, kRefused };
// True on Windows Vista in a run that was not restarted with raised rights.
bool NeedsElevation(const Program& program);
// Starts the program again with raised rights. kRestarted: this copy is ending. kRefused:
// temp.xml is gone again and nothing is shown yet.
Elevation RestartElevated(Program& program);

// What a person means by a folder that was typed (base/paths.h); one without a drive lies on the
// program's own.
std::string TypedFolder(const Program& program, const std::string& text);

// The folder below a backup folder in which the parts of a backup wait for their discs.
std::string DiscFolderBelow(const std::string& backup_folder);

// Paths of the program's own files.
std::string DataFolder(const Program& program);    // what the main window's load makes gAppDataPath
std::string HandOverPath(const Program& program);  // ...\temp.xml
std::string LogFolder(const Program& program);     // ...\Files\Logs\ (with the final "\")
std::string TempXmlFolder(const Program& program);  // ...\tempXML
std::string ProgramPath(Program& program);          // ...\Quorvale.exe

}  // namespace quorvale
