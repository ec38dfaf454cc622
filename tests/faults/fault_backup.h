// A backup without pages on a computer of faults, and what must be true after it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "backup/run/backup_run.h"
#include "faults/fault_computer.h"
#include "faults/fault_walk.h"

namespace quorvale::fault_test {

inline constexpr char kArchive[] = "C:\\Backups\\Job.obk";

// How a backup is made.
struct BackupWay {
  bool with_password = false;
  bool for_discs = false;  // in parts, which wait for their discs
  bool with_log = false;
  bool on_vista = false;  // exports ask for raised rights
};

// The job of all items: what the pages commit, up to the review page's Next.
void CommitBackup(Program& program, const BackupWay& way = {});
// The archive's name is settled, settings file and log are written; then the engine runs to its
// end. The account is the program's.
BackupResult RunBackup(Program& program);

// A member of a backup, by the tree path of its item and its path below the item.
using MemberName = std::pair<std::string, std::string>;
struct MemberContent {
  std::uint64_t size = 0;
  std::uint32_t crc = 0;
  bool operator==(const MemberContent&) const = default;
};
struct BackupContent {
  bool is_whole = false;  // opens, tests, and has its settings and its member table
  std::vector<std::string> items;
  std::map<MemberName, MemberContent> members;
};
BackupContent ReadBackup(FaultComputer& computer, const std::string& path);

// What a backup of all items has to hold.
BackupContent ContentOfEverything(FaultComputer& computer);

// The problems of a backup that is to hold everything but what the account names.
std::vector<std::string> WhatIsLost(const BackupContent& backup, const BackupContent& everything,
                                    const Account& account);

// What changed of the person's own: files outside of the program's folders, and registry values
// outside of its keys.
std::vector<std::string> WhatChanged(const Contents& before, const Contents& after);

// True for a path of the person's own.
bool IsTheirs(const std::string& path);

}  // namespace quorvale::fault_test
