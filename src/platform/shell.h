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

// What the shell does with files on its own, with its own progress window: the numbers of its
// file operation (shellapi.h, FO_...).
enum class FileOperation { kMove = 1, kCopy = 2, kDelete = 3, kRename = 4 };

// How it does it: the sum of these (shellapi.h, FOF_...).
namespace file_operation_flag {
inline constexpr int kSilent = 4;             // no progress window
inline constexpr int kRenameOnCollision = 8;  // a target that is there stays; a new name is found
inline constexpr int kNoConfirmation = 16;    // no question is asked
inline constexpr int kSimpleProgress = 256;   // no names in the progress window
inline constexpr int kNoConfirmMakeDir = 512;
}  // namespace file_operation_flag

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
  // The same by the script host's shell object. False also where that object is missing.
  virtual bool CreateScriptedLink(const ShellLink& link) { return CreateLink(link); }
  // Copies, moves, renames or deletes a file or folder; `target` is "" for a deletion. False if it
  // failed or the user cancelled it.
  virtual bool Operate(FileOperation /*operation*/, const std::string& /*source*/,
                       const std::string& /*target*/, int /*flags*/) {
    return false;
  }
  // Opens a topic of a help file; "" is its first page.
  virtual void ShowHelp(const std::string& help_file, const std::string& topic) = 0;
  // Plays a wave file and returns at once.
  virtual void PlaySoundFile(const std::string& path) = 0;
};

}  // namespace quorvale
