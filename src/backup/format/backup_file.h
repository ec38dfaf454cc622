// One backup file: the archive component, set to that file and its password, and what everybody
// asks of it. Each call sets the component up afresh, so that no property of an earlier call is
// left in it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "backup/format/member_table.h"
#include "core/program/program.h"

namespace quorvale {

// What a backup file has of a member table.
struct FoundTable {
  bool is_there = false;
  std::shared_ptr<const MemberTable> table;  // null also for one that cannot be read
};

class BackupFile {
 public:
  BackupFile(Program& program, std::string path, std::string password);
  BackupFile(const BackupFile&) = delete;
  BackupFile& operator=(const BackupFile&) = delete;

  const std::string& path() const { return path_; }

  // Reads everything and compares the check values. `keep_going` (may be empty) is called while it
  // works and is the place to pump; once it answers false the result is kAborted.
  zip::Result Test(const std::function<bool()>& keep_going = nullptr);
  // The directory: files and folders. kFailed, and no entries, if this is no archive.
  zip::Result Members(std::vector<zip::Entry>* entries);
  // True if a file in it is encrypted; false also if this is no archive.
  bool IsEncrypted();
  // Writes one member to this very path, whatever letters its name has in the archive. kFailed if
  // there is no such member.
  zip::Result ExtractAs(const std::string& member, const std::string& target);
  // The member table, whatever the file is called now. Nothing is written for it.
  FoundTable Table();
  // The component, set up to unzip below a folder: the caller names the members, sets the events
  // and calls Unzip. It is the file's own and lives as long.
  zip::Archive& Unpacker(const std::string& folder);

 private:
  void SetUp();

  std::string path_;
  std::string password_;
  zip::Archive archive_;
};

}  // namespace quorvale
