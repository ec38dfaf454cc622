// The command line of the console edition, read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "play/ftp_address.h"

namespace quorvale {

enum class ConsoleCommand {
  kHelp,
  kMachineNew,
  kMachineSample,
  kMachineUsers,
  kMachineFrom,
  kDemo,
  kTree,
  kBackup,
  kQuick,
  kShow,
  kRestore,
  kScenario,
  kLogsList,
  kLogsShow,
  kLogsDelete,
  kSettingsList,
  kSettingsGet,
  kSettingsSet,
  kScheduleAdd,
  kScheduleList,
  kScheduleShow,
  kScheduleDelete,
};

struct ConsoleOptions {
  ConsoleCommand command = ConsoleCommand::kHelp;
  std::string machine;              // --machine: the machine folder
  std::string disk;                 // --disk: an old disk or a Wine prefix, instead of one
  std::vector<std::string> drives;  // --drive: further ones of that disk's computer
  std::string target;               // the word behind the command: a folder, a name, a file
  std::string value;                // the word behind that
  std::string like = "xp";
  std::string user = "Anna";  // of an old disk: "" unless told
  bool all = false;
  std::vector<std::string> ticks, add_folders, add_files;
  std::string to;
  std::string level;  // maximum, normal, low, none; "" leaves the page's choice
  std::string password;
  std::string disc;                      // --disc: burn the backup with this drive
  std::optional<FtpAddress> ftp;         // --ftp: send the backup to this server
  std::string at, days, type = "quick";  // of a schedule
  bool daily = false;
  bool log = false;
  bool keep = false;  // leave restored data files in the restore folder
  bool no_restore_folder = false;
  std::optional<bool> answer;  // --yes, --no
};

// Nothing, with the reason, if the words are no command.
std::optional<ConsoleOptions> ReadConsoleOptions(const std::vector<std::string>& arguments,
                                                 std::string* problem);

// What all commands are, for a person.
const char* ConsoleUsage();

}  // namespace quorvale
