// The procedures that all pages share.
#pragma once

#include <string>

#include "base/paths.h"
#include "core/pages/application.h"
#include "platform/system_info.h"

namespace quorvale {

// The words of GetOSName that branches test.
inline constexpr char kWindowsVista[] = "Windows Vista";
inline constexpr char kWindows2000[] = "Windows 2000";  // every NT 5 system
inline constexpr char kWindowsNT[] = "Windows NT";
inline constexpr char kWindowsME[] = "Windows ME";
inline constexpr char kWindows98[] = "Windows 98";
inline constexpr char kWindows95[] = "Windows 95";

inline constexpr char kSettingsKey[] = "Software\\Tarnwick\\Quorvale\\Settings\\";
inline constexpr char kHistoryKey[] = "Software\\Tarnwick\\Quorvale";

// The command line of a run that was restarted with raised rights.
inline constexpr char kElevatedWord[] = "qvlrunasadmin";

// The fixed word of the operating system.
std::string GetOSName(const SystemVersion& version);
bool IsVista(const Application& app);
// "Documents" on Windows Vista, "My Documents" on every other system.
std::string DocumentsWord(const Application& app);

// Makes the folder of a path that ends in "\"; tells the user when that fails.
bool MakeDirectoryPath(Application& app, const std::string& path);
void OpenUrl(Application& app, const std::string& url);
// The browser's program, or "Invalid".
std::string DefaultBrowser(Application& app);
int OnlyDigitKey(int code);
std::string GetWinUserName(Application& app);
std::string StripNuls(const std::string& text);
std::string InterleaveNuls(const std::string& text);
// Unicode text as the bytes of a registry value, without their NULs; other text behind `prefix`.
std::string DecodeStorePath(const std::string& text, bool is_unicode, const std::string& prefix);
// Bytes as upper-case hexadecimal digits, two for each.
std::string ToHexText(const std::string& bytes);
// "Outlook.Application.11" and the like, "" if absent.
std::string OutlookCurVer(Application& app);
void ShowHelp(Application& app, const std::string& topic);
// From now on F1 on the page opens a topic of the help.
void OpenHelpOnF1(Application& app, ui::Form& page, const std::string& topic);
// Fills gBackupBasePath with a free name; returns its suffix, "" or "_" and a number.
std::string UniqueBackupName(Application& app);
void ResetBackupPages(Application& app);
void ResetRestorePages(Application& app);
// True for 1 to 128 characters with none of / : \ ? * < > " |, after trimming `name` in place.
bool IsValidName(std::string& name);
// Tries to write and remove a small file.
bool FolderIsWritable(Application& app, const std::string& folder);
// Window sizes: twips or pixels, unchanged at 96 dots per inch.
int ScaleForDpi(int value, int dpi);
// The rounding of a page's corners, unless it is minimised.
void RoundPage(const Application& app, ui::Form& page);

// "7_14_11_2026_22_5": weekday number, day, month, year, hour, minute, not padded.
std::string DateStamp(const LocalTime& time);
// "11/14/2026 10:05:09 PM": the form of the run history.
std::string HistoryStamp(Application& app, const LocalTime& time);
// The name word for a boolean that reaches a file.
inline const char* BoolWord(bool value) { return value ? "True" : "False"; }
// A check box value from its registry text: 1 for the number 1, else 0.
int CheckValue(const std::string& text);

// The end-of-run sound, unless the user turned it off.
void PlayEndSound(Application& app);

// Shows a folder in the file manager.
void OpenFolder(Application& app, const std::string& path);

// Stands for the programs of the start menu.
inline constexpr char kProgramsGroup[] = "$(Programs)";
// A link made by the shell. `group` is its folder, as the way from the programs of the start menu
// ("..\\..\\Recent"); "" stands for these themselves. Quotes around paths are taken off. False if
// it could not be made.
bool CreateShellLink(Application& app, const std::string& target, const std::string& link_name,
                     const std::string& arguments, const std::string& group);
// A link at a path of its own, made by the script host's shell object; by the shell itself where
// there is no script host. False if it could not be made.
bool CreateShortcutVista(Application& app, const ShellLink& link);
// The program's link among the programs of the start menu.
bool StartMenuShortcut(Application& app);

// A start with a backup file as command line: gBackupFileName takes it, and a link to it goes into
// the folder of recent files. Nothing happens for an empty command line, "%1" and the words of the
// run modes.
void RegisterOpenedFile(Application& app);

// The program's link on the desktop or in the start menu.
std::string ShortcutPath(Application& app, int folder);  // a number of special_folder
// Makes it, or removes it. Nothing is said when that fails.
void SetShortcut(Application& app, int folder, bool wanted);

// What the user is told when raised rights were refused.
inline constexpr char kElevationRefused[] =
    "Administrator privileges are required for this action. You do not have sufficient access "
    "privileges to perform this action";

// What the elevation rule came to.
enum class Elevation { kNotNeeded, kRestarted, kRefused };
// True on Windows Vista in a run that was not restarted with raised rights.
bool NeedsElevation(const Application& app);
// Starts the program again with raised rights. kRestarted: this copy is ending. kRefused:
// temp.xml is gone again and nothing is shown yet.
Elevation RestartElevated(Application& app);

// Paths of the program's own files.
std::string DataFolder(const Application& app);    // what the main window's load makes gAppDataPath
std::string HandOverPath(const Application& app);  // ...\temp.xml
std::string LogFolder(const Application& app);     // ...\Files\Logs\ (with the final "\")
std::string TempXmlFolder(const Application& app);  // ...\tempXML
std::string ProgramPath(Application& app);          // ...\Quorvale.exe

}  // namespace quorvale
