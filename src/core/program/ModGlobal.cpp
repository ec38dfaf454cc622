#include "core/program/ModGlobal.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "core/program/command_words.h"
#include "core/program/full_text.h"
#include "core/program/raised_request.h"

namespace quorvale {
namespace {

constexpr size_t kLongestUserName = 512;
constexpr size_t kLongestJobName = 128;

std::string NtName(int major) {
  if (major == 3 || major == 4) return kWindowsNT;
  if (major == 5) return kWindows2000;
  if (major == 6) return kWindowsVista;
  return "";
}

std::string OldName(int minor) {
  if (minor == 0) return kWindows95;
  if (minor == 10) return kWindows98;
  if (minor == 90) return kWindowsME;
  return "Windows 9?";
}

// Parts of that name that an earlier run left for the user.
bool HasPartsKept(Program& program, const std::string& candidate) {
  return program.session().gMediaDisc &&
         program.files().FileExists(DiscFolderBelow(ParentFolder(candidate)) + "\\" +
                                    FileNameOf(candidate) + ".obk");
}

bool IsTaken(Program& program, const std::string& candidate) {
  FileToolkit& files = program.files();
  if (HasPartsKept(program, candidate)) return true;
  return files.FolderExists(candidate) || files.FileExists(candidate) ||
         files.FileExists(candidate + ".obk");
}

bool IsRunModeWord(const std::string& command_line) {
  for (const char* word : {kQuickBackupWord, kCustomWord, kAutoWord, kElevatedWord}) {
    if (command_line == word) return true;
  }
  return false;
}

// The folder that a group of links is, "" if there are no programs in the start menu.
std::string GroupFolder(std::string programs, const std::string& group) {
  if (programs.empty() || group.empty() || group == kProgramsGroup) return programs;
  for (const std::string& step : Split(group, "\\")) {
    programs = step == ".." ? ParentFolder(programs) : WithBackslash(programs) + step;
  }
  return programs;
}

// A name for the probe that is not a file of the user's.
std::string FreeProbePath(Program& program, const std::string& folder) {
  std::string path = folder + "\\QVL.txt";
  for (int n = 1; program.platform().files.Stat(path) && n < 100; ++n) {
    path = folder + "\\QVL" + std::to_string(n) + ".txt";
  }
  return path;
}

}  // namespace

std::string GetOSName(const SystemVersion& version) {
  if (!version.known) return "Microsoft Windows (Unknown)";
  if (version.platform_id == 2) return NtName(version.major);
  if (version.platform_id == 1) return OldName(version.minor);
  return "";
}

bool IsVista(const Program& program) { return program.session().gOSName == kWindowsVista; }

std::string DocumentsWord(const std::string& os_name) {
  return os_name == kWindowsVista ? "Documents" : "My Documents";
}

std::string DocumentsWord(const Program& program) {
  return DocumentsWord(program.session().gOSName);
}

std::string DefaultBrowser(Program& program) {
  const std::vector<NamedValue> values =
      program.registry().RegListValues(RegistryRoot::kClassesRoot, "http\\shell\\open\\command");
  if (values.empty()) return "Invalid";
  const std::string& command = values.front().value;
  const size_t first = command.find('"');
  if (first == std::string::npos) return "Invalid";
  const size_t second = command.find('"', first + 1);
  if (second == std::string::npos || second == first + 1) return "Invalid";
  return command.substr(first + 1, second - first - 1);
}

int OnlyDigitKey(int code) {
  constexpr int kBackspace = 8;
  return (code >= '0' && code <= '9') || code == kBackspace ? code : 0;
}

std::string GetWinUserName(Program& program) {
  std::string name = program.platform().system.UserName();
  name = name.substr(0, std::min(name.find('\0'), kLongestUserName));
  return Trim(name);
}

std::string StripNuls(const std::string& text) {
  std::string kept = text;
  std::erase(kept, '\0');
  return kept;
}

std::string InterleaveNuls(const std::string& text) {
  std::string spread;
  spread.reserve(text.size() * 2);
  for (char c : text) {
    spread += c;
    spread += '\0';
  }
  if (!spread.empty()) spread.pop_back();
  return spread;
}

std::string DecodeStorePath(const std::string& text, bool is_unicode, const std::string& prefix) {
  return is_unicode ? StripNuls(text) : prefix + text;
}

std::string ToHexText(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string hex;
  hex.reserve(bytes.size() * 2);
  for (char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

std::string OutlookCurVer(Program& program) {
  return program.registry().RegGetValue(RegistryRoot::kClassesRoot, "Outlook.Application\\CurVer",
                                        "");
}

void ShowHelp(Program& program, const std::string& topic) {
  program.platform().shell.ShowHelp(program.platform().system.ProgramFolder() + "\\Quorvale.chm",
                                    topic);
}

std::string UniqueBackupName(Program& program, const std::string& folder) {
  Session& session = program.session();
  session.gBackupBasePath.clear();
  // A drive's root comes with its "\".
  const std::string wanted = WithBackslash(folder) + WithoutLastFour(session.gBackupFileName);
  std::string suffix;
  for (int n = 1; IsTaken(program, wanted + suffix); ++n) suffix = "_" + std::to_string(n);
  session.gBackupBasePath = wanted + suffix;
  return suffix;
}

bool IsValidName(std::string& name) {
  name = Trim(name);
  if (name.empty() || CountCharacters(name) > kLongestJobName) return false;
  return name.find_first_of("/:\\?*<>\"|") == std::string::npos;
}

bool HasSpecialCharacters(const std::string& name) {
  return name.find_first_of("?><./\\:;*|'\"") != std::string::npos;
}

bool FolderIsWritable(Program& program, const std::string& folder) {
  // What is written there must be found again.
  if (!program.platform().files.CanList(folder)) return false;
  const std::string path = FreeProbePath(program, WithoutBackslash(folder));
  if (program.files().WriteWhole(path, "testQVL") != FileStatus::kOk) return false;
  return program.platform().files.RemoveFile(path, false) == FileStatus::kOk;
}

int ScaleForDpi(int value, int dpi) {
  if (dpi == 96) return value;
  return static_cast<int>(std::nearbyint(value * (15 - (dpi - 96) * 0.125) / 15));
}

std::string DateStamp(const LocalTime& time) {
  std::string stamp = std::to_string(time.weekday);
  for (int part : {time.day, time.month, time.year, time.hour, time.minute}) {
    stamp += "_" + std::to_string(part);
  }
  return stamp;
}

std::string HistoryStamp(Program& program, const LocalTime& time) {
  const auto padded = [](int number, size_t width) {
    const std::string digits = std::to_string(number);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
  };
  return padded(time.month, 2) + "/" + padded(time.day, 2) + "/" + padded(time.year, 4) + " " +
         program.platform().system.TimeText(time);
}

int CheckValue(const std::string& text) { return Val(text) == 1 ? 1 : 0; }

void PlayEndSound(Program& program) {
  if (program.settings().EndSoundIsOff()) return;
  const std::string sound = program.platform().system.ProgramFolder() + "\\chimes.wav";
  if (program.files().FileExists(sound)) program.platform().shell.PlaySoundFile(sound);
}

void OpenFolder(Program& program, const std::string& path) {
  program.platform().shell.Run("Explorer " + path, WindowStyle::kNormal);
}

std::string ShortcutPath(Program& program, int folder) {
  return WithBackslash(program.platform().shell.SpecialFolder(folder)) + "Quorvale.lnk";
}

bool CreateShellLink(Program& program, const std::string& target, const std::string& link_name,
                     const std::string& arguments, const std::string& group) {
  const std::string folder =
      GroupFolder(program.platform().shell.SpecialFolder(special_folder::kPrograms), group);
  const std::string name = ReplaceAll(link_name, "\"", "");
  if (folder.empty() || name.empty()) return false;
  ShellLink link;
  link.link_path = WithBackslash(folder) + name + ".lnk";
  link.target = ReplaceAll(target, "\"", "");
  link.arguments = arguments;
  return program.platform().shell.CreateLink(link);
}

bool CreateShortcutVista(Program& program, const ShellLink& link) {
  Shell& shell = program.platform().shell;
  return shell.CreateScriptedLink(link) || shell.CreateLink(link);
}

bool StartMenuShortcut(Program& program) {
  return CreateShellLink(program, ProgramPath(program), kApplicationTitle, "", kProgramsGroup);
}

void RegisterOpenedFile(Program& program) {
  const std::string command_line = Trim(program.CommandLine());
  if (command_line.empty() || command_line == "%1" || IsRunModeWord(command_line)) return;
  program.session().gBackupFileName = command_line;
  CreateShellLink(program, command_line, FileNameOf(command_line), "", "..\\..\\Recent");
}

std::string OpenedBackupFile(Program& program) {
  // The shell hands the path over in quotes.
  const std::string path = program.CommandLine() == kElevatedWord
                               ? program.session().opened_file
                               : Trim(ReplaceAll(program.CommandLine(), "\"", ""));
  return EndsWithNoCase(path, ".obk") && program.files().FileExists(path) ? path : "";
}

void SetShortcut(Program& program, int folder, bool wanted) {
  if (program.platform().shell.SpecialFolder(folder).empty()) return;
  const std::string path = ShortcutPath(program, folder);
  if (!wanted) {
    program.platform().files.RemoveFile(path, false);
  } else if (folder == special_folder::kPrograms) {
    StartMenuShortcut(program);
  } else {
    ShellLink link;
    link.link_path = path;
    link.target = ProgramPath(program);
    link.working_folder = program.platform().system.ProgramFolder();
    link.description = kApplicationTitle;
    CreateShortcutVista(program, link);
  }
}

bool NeedsElevation(const Program& program) {
  return IsVista(program) && program.CommandLine() != kElevatedWord;
}

Elevation RestartElevated(Program& program) {
  if (!NeedsElevation(program)) return Elevation::kNotNeeded;
  constexpr int kFirstSuccess = 32;
  // Without it the next copy still goes by temp.xml.
  LeaveRaisedRequest(program);
  const int result =
      program.platform().shell.Execute("Runas", ProgramPath(program), kElevatedWord, "", 0);
  if (result >= kFirstSuccess) {
    program.End();
    return Elevation::kRestarted;
  }
  RemoveTextFile(program, HandOverPath(program), true);
  TakeRaisedRequest(program);
  return Elevation::kRefused;
}

std::string TypedFolder(const Program& program, const std::string& text) {
  return TypedFolder(text, DriveOf(program.platform().system.ProgramFolder()));
}

std::string DiscFolderBelow(const std::string& backup_folder) {
  return WithBackslash(backup_folder) + "CDBackup";
}

std::string DataFolder(const Program& program) {
  return program.platform().system.Environment("appdata") + "\\Tarnwick\\Quorvale";
}

std::string HandOverPath(const Program& program) {
  return program.session().gAppDataPath + "\\temp.xml";
}

std::string LogFolder(const Program& program) {
  return program.session().gAppDataPath + "\\Files\\Logs\\";
}

std::string TempXmlFolder(const Program& program) {
  return program.session().gAppDataPath + "\\tempXML";
}

std::string ProgramPath(Program& program) {
  return program.platform().system.ProgramFolder() + "\\Quorvale.exe";
}

}  // namespace quorvale
