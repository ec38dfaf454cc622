// What the desktop shell does for the program: special folders, starting things, links, help,
// sound.
#pragma once

#include <cstdint>
#include <string>

namespace quorvale {

// Special folder numbers (the shell's CSIDL values).
namespace special_folder {
inline constexpr int kPrograms = 2;  // of the start menu
inline constexpr int kDocuments = 5;
inline constexpr int kFavorites = 6;
inline constexpr int kDesktop = 16;
inline constexpr int kAppData = 26;
inline constexpr int kLocalAppData = 28;
inline constexpr int kCookies = 33;
inline constexpr int kCommonFiles = 43;
}  // namespace special_folder

// A program that this one started; 0 stands for none.
using RunId = std::uint32_t;

enum class WindowStyle { kHidden = 0, kNormal = 1, kMinimized = 2 };

struct ShellLink {
  std::string link_path;  // full path of the ".lnk" file
  std::string target;
  std::string arguments;
  std::string working_folder;
  std::string hot_key;
  std::string description;
  int window_style = 1;
  int icon_index = 0;
};

class Shell {
 public:
  virtual ~Shell() = default;

  // The folder's path without a trailing "\" (but "C:\" for a root), or "".
  virtual std::string SpecialFolder(int folder) = 0;

  // Starts a command line and returns at once. 0 if it could not be started.
  virtual RunId Run(const std::string& command_line, WindowStyle style) = 0;
  // ShellExecute. 32 or more: started; less: the system's refusal. `run` receives the started
  // program, 0 where the shell gives none.
  virtual int Execute(const std::string& verb, const std::string& file,
                      const std::string& parameters, const std::string& folder, int show,
                      RunId* run = nullptr) = 0;
  // True while a started program has not ended.
  virtual bool IsRunning(RunId run) = 0;

  // Makes or replaces a link file. False if it could not be made.
  virtual bool CreateLink(const ShellLink& link) = 0;
  // Opens a topic of a help file; "" is its first page.
  virtual void ShowHelp(const std::string& help_file, const std::string& topic) = 0;
  // Plays a wave file and returns at once.
  virtual void PlaySoundFile(const std::string& path) = 0;
};

}  // namespace quorvale
