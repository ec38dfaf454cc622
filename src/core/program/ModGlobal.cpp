#include "core/program/ModGlobal.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/main/run_modes.h"

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

// Characters of a UTF-8 text.
size_t CountCharacters(const std::string& text) {
  size_t count = 0;
  for (char c : text) {
    const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (!continues) ++count;
  }
  return count;
}

bool IsTaken(Application& app, const std::string& candidate) {
  FileToolkit& files = app.files();
  return files.FolderExists(candidate) || files.FileExists(candidate) ||
         files.FileExists(candidate + ".obk");
}

// A run that was closed in the middle of its work gets no new main window.
void ShowMainWindow(Application& app) {
  if (!app.Ended()) app.Get<FrmWelcome>().Show();
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
std::string FreeProbePath(Application& app, const std::string& folder) {
  std::string path = folder + "\\QVL.txt";
  for (int n = 1; app.platform().files.Stat(path) && n < 100; ++n) {
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

bool IsVista(const Application& app) { return app.session().gOSName == kWindowsVista; }

std::string DocumentsWord(const Application& app) {
  return IsVista(app) ? "Documents" : "My Documents";
}

bool MakeDirectoryPath(Application& app, const std::string& path) {
  // What stands behind the last "\" is a file's name, not a folder to make.
  const std::string folder = ParentFolder(path);
  if (!folder.empty() && app.files().MakeFolderChain(folder)) return true;
  app.Inform("Sorry Could not make the directory [" + path + "] path. ");
  return false;
}

void OpenUrl(Application& app, const std::string& url) {
  const std::string browser = DefaultBrowser(app);
  if (browser == "Invalid") {
    app.Inform("Unable to open URL. Install browser first!");
    return;
  }
  app.platform().shell.Run(browser + " " + url, WindowStyle::kNormal);
  app.Pump();
}

std::string DefaultBrowser(Application& app) {
  const std::vector<NamedValue> values =
      app.registry().RegListValues(RegistryRoot::kClassesRoot, "http\\shell\\open\\command");
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

std::string GetWinUserName(Application& app) {
  std::string name = app.platform().system.UserName();
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

std::string OutlookCurVer(Application& app) {
  return app.registry().RegGetValue(RegistryRoot::kClassesRoot, "Outlook.Application\\CurVer", "");
}

void ShowHelp(Application& app, const std::string& topic) {
  app.platform().shell.ShowHelp(app.platform().system.ProgramFolder() + "\\Quorvale.chm", topic);
}

void OpenHelpOnF1(Application& app, ui::Form& page, const std::string& topic) {
  page.on_key_down = [&app, topic](int code, int) {
    constexpr int kF1 = 112;
    if (code == kF1) ShowHelp(app, topic);
    return code == kF1;
  };
}

std::string UniqueBackupName(Application& app) {
  Session& session = app.session();
  session.gBackupBasePath.clear();
  // A drive's root comes with its "\".
  const std::string folder = WithBackslash(app.Get<frmSettings>().txtBackup.text);
  const std::string wanted = folder + WithoutExtension(session.gBackupFileName);
  std::string suffix;
  for (int n = 1; IsTaken(app, wanted + suffix); ++n) suffix = "_" + std::to_string(n);
  session.gBackupBasePath = wanted + suffix;
  return suffix;
}

void ResetBackupPages(Application& app) {
  ShowMainWindow(app);
  for (const char* page : {"frmOne", "FrmTwo", "frmThree", "frmfour", "frmFinish", "FrmProcess",
                           "FrmBackupMedia", "FrmQuickSteps"}) {
    app.Unload(page);
  }
  app.session().gStopRequested = false;
}

void ResetRestorePages(Application& app) {
  ShowMainWindow(app);
  for (const char* page : {"frmROne", "frmRTwo", "frmRfour", "frmRFinish"}) app.Unload(page);
  app.session().gOutlookProfileEdited = false;
  app.session().gStopRequested = false;
}

bool IsValidName(std::string& name) {
  name = Trim(name);
  if (name.empty() || CountCharacters(name) > kLongestJobName) return false;
  return name.find_first_of("/:\\?*<>\"|") == std::string::npos;
}

bool FolderIsWritable(Application& app, const std::string& folder) {
  const std::string path = FreeProbePath(app, WithoutBackslash(folder));
  if (app.files().WriteWhole(path, "testQVL") != FileStatus::kOk) return false;
  return app.platform().files.RemoveFile(path, false) == FileStatus::kOk;
}

int ScaleForDpi(int value, int dpi) {
  if (dpi == 96) return value;
  return static_cast<int>(std::nearbyint(value * (15 - (dpi - 96) * 0.125) / 15));
}

void RoundPage(const Application& app, ui::Form& page) {
  if (page.State() == ui::WindowState::kMinimized) return;
  page.corner = IsVista(app) ? 10 : 11;
}

std::string DateStamp(const LocalTime& time) {
  std::string stamp = std::to_string(time.weekday);
  for (int part : {time.day, time.month, time.year, time.hour, time.minute}) {
    stamp += "_" + std::to_string(part);
  }
  return stamp;
}

std::string HistoryStamp(Application& app, const LocalTime& time) {
  const auto padded = [](int number, size_t width) {
    const std::string digits = std::to_string(number);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
  };
  return padded(time.month, 2) + "/" + padded(time.day, 2) + "/" + padded(time.year, 4) + " " +
         app.platform().system.TimeText(time);
}

int CheckValue(const std::string& text) { return Val(text) == 1 ? 1 : 0; }

void PlayEndSound(Application& app) {
  const std::string off =
      app.registry().RegGetValue(RegistryRoot::kCurrentUser, kSettingsKey, "chkSound");
  if (off != "0" && !off.empty()) return;
  const std::string sound = app.platform().system.ProgramFolder() + "\\chimes.wav";
  if (app.files().FileExists(sound)) app.platform().shell.PlaySoundFile(sound);
}

void OpenFolder(Application& app, const std::string& path) {
  app.platform().shell.Run("Explorer " + path, WindowStyle::kNormal);
}

std::string ShortcutPath(Application& app, int folder) {
  return WithBackslash(app.platform().shell.SpecialFolder(folder)) + "Quorvale.lnk";
}

bool CreateShellLink(Application& app, const std::string& target, const std::string& link_name,
                     const std::string& arguments, const std::string& group) {
  const std::string folder =
      GroupFolder(app.platform().shell.SpecialFolder(special_folder::kPrograms), group);
  const std::string name = ReplaceAll(link_name, "\"", "");
  if (folder.empty() || name.empty()) return false;
  ShellLink link;
  link.link_path = WithBackslash(folder) + name + ".lnk";
  link.target = ReplaceAll(target, "\"", "");
  link.arguments = arguments;
  return app.platform().shell.CreateLink(link);
}

bool CreateShortcutVista(Application& app, const ShellLink& link) {
  Shell& shell = app.platform().shell;
  return shell.CreateScriptedLink(link) || shell.CreateLink(link);
}

bool StartMenuShortcut(Application& app) {
  return CreateShellLink(app, ProgramPath(app), kApplicationTitle, "", kProgramsGroup);
}

void RegisterOpenedFile(Application& app) {
  const std::string command_line = Trim(app.CommandLine());
  if (command_line.empty() || command_line == "%1" || IsRunModeWord(command_line)) return;
  app.session().gBackupFileName = command_line;
  CreateShellLink(app, command_line, FileNameOf(command_line), "", "..\\..\\Recent");
}

void SetShortcut(Application& app, int folder, bool wanted) {
  if (app.platform().shell.SpecialFolder(folder).empty()) return;
  const std::string path = ShortcutPath(app, folder);
  if (!wanted) {
    app.platform().files.RemoveFile(path, false);
  } else if (folder == special_folder::kPrograms) {
    StartMenuShortcut(app);
  } else {
    ShellLink link;
    link.link_path = path;
    link.target = ProgramPath(app);
    link.working_folder = app.platform().system.ProgramFolder();
    link.description = kApplicationTitle;
    CreateShortcutVista(app, link);
  }
}

bool NeedsElevation(const Application& app) {
  return IsVista(app) && app.CommandLine() != kElevatedWord;
}

Elevation RestartElevated(Application& app) {
  if (!NeedsElevation(app)) return Elevation::kNotNeeded;
  constexpr int kFirstSuccess = 32;
  const int result = app.platform().shell.Execute("Runas", ProgramPath(app), kElevatedWord, "", 0);
  if (result >= kFirstSuccess) {
    app.End();
    return Elevation::kRestarted;
  }
  app.platform().files.RemoveFile(HandOverPath(app), true);
  return Elevation::kRefused;
}

std::string DataFolder(const Application& app) {
  return app.platform().system.Environment("appdata") + "\\Tarnwick\\Quorvale";
}

std::string HandOverPath(const Application& app) {
  return app.session().gAppDataPath + "\\temp.xml";
}

std::string LogFolder(const Application& app) {
  return app.session().gAppDataPath + "\\Files\\Logs\\";
}

std::string TempXmlFolder(const Application& app) {
  return app.session().gAppDataPath + "\\tempXML";
}

std::string ProgramPath(Application& app) {
  return app.platform().system.ProgramFolder() + "\\Quorvale.exe";
}

}  // namespace quorvale
