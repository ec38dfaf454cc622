// Makes machine folders: the computer that a fresh installation of a system would be, with one
// user, the mail program started once, and nothing of the user's own in it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/system_info.h"

namespace quorvale {

// Where a system keeps a user's things. Paths as the program sees them, no trailing backslash.
struct MachineLayout {
  SystemVersion version;
  std::string windows;  // the system's own folder
  std::string profile, app_data, local_app_data;
  std::string programs;  // of the start menu
  std::string documents, desktop, favorites, cookies, common_files;
  bool IsVista() const { return version.platform_id == 2 && version.major == 6; }
  bool IsNtFamily() const { return version.platform_id == 2; }
};

// `like`: 95, 98, me, nt40, 2000, xp or vista. Nothing for another word.
std::optional<MachineLayout> LayoutOf(const std::string& like, const std::string& user);

struct PlannedDrive {
  std::string letter;  // "C"
  std::string kind;    // the word of machine.ini: fixed, cdrom, removable, remote, ramdisk
};

struct MachinePlan {
  std::string like = "xp";
  std::string user = "Anna";
  std::string computer = "OFFICE";
  std::string identity = "{3F0A1C52-7D44-4B8E-9A61-0C55E2D7B901}";  // of the mail program
  std::vector<PlannedDrive> drives = {{"C", "fixed"}, {"D", "fixed"}, {"E", "cdrom"}};
  int codepage = 1252;
  // False: an empty registry and no mail store, as tests of single units want it.
  bool mail_program_started = true;
};

// The identity's key, the store folder of its mail and its address book file.
std::string IdentityKey(const MachinePlan& plan);  // "HKEY_CURRENT_USER\Identities\{...}"
std::string MailStoreFolder(const MachinePlan& plan, const MachineLayout& layout);

// Writes machine.ini, the drives' folders and the registry into a folder on this host, which is
// made. The answer is "" or a sentence that says why not; a folder that holds a machine already
// is left as it is.
std::string MakeMachine(const std::string& host_folder, const MachinePlan& plan);

// The path on this host of a path on one of the machine's drives.
std::string MachineHostPath(const std::string& host_folder, const std::string& path);

}  // namespace quorvale
