// What the registry of an old disk says about its computer and its users. Reads only trees in
// memory.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/files.h"
#include "platform/host/disk/hive.h"
#include "platform/system_info.h"

namespace quorvale::host {

// How a disk keeps its registry.
enum class DiskKind { kNt, kClassic, kWine };

// Names without regard to case (folded) to values.
using Variables = std::map<std::string, std::string>;

// "%UserProfile%\Mail" with the variables put in; one that is not known stays as it stands.
std::string WithVariablesReplaced(const std::string& text, const Variables& variables);

struct DiskFacts {
  SystemVersion version{2, 5, 1, true};
  std::string product = "Windows";  // "Microsoft Windows XP"
  std::string computer = "COMPUTER";
  int codepage = 1252;
  std::string windows = "C:\\WINDOWS";
  std::string program_files, common_files;
  std::map<char, DriveKind> drives;  // all letters that the computer knew

  char SystemDrive() const { return windows[0]; }
};

// The control set that was in use; null if the tree has none.
const HiveKey* CurrentControlSet(const HiveKey& machine);

// `machine` is HKEY_LOCAL_MACHINE; what it does not say stays as above, and the Windows folder as
// `windows`, where the disk has it.
DiskFacts ReadDiskFacts(const HiveKey& machine, DiskKind kind, const std::string& windows);

// The variables that every user of the computer has.
Variables MachineVariables(const DiskFacts& facts);
// Those of one user; `user` is HKEY_CURRENT_USER.
Variables UserVariables(const DiskFacts& facts, const HiveKey& user, const std::string& name,
                        const std::string& profile);

// The special folders of a user, by their numbers, as the two registries name them; those that
// they do not name are where that system has them unless told otherwise.
std::map<int, std::string> SpecialFolders(const DiskFacts& facts, const HiveKey& machine,
                                          const HiveKey& user, const std::string& profile,
                                          const Variables& variables);

}  // namespace quorvale::host
