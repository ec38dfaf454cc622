// Takes the items of a restore job out of its backup file, each straight to the place where it
// belongs. What it only stages on the way, it can take away again.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backup/format/archive_layout.h"
#include "backup/format/backup_file.h"
#include "core/program/program.h"
#include "restore/run/member_index.h"
#include "restore/run/run_monitor.h"

namespace quorvale {

class Extractor {
 public:
  Extractor(Program& program, const RestoreJob& job, RunMonitor& monitor);

  // Tests the backup file and reads its directory. Until then, and where the file is gone or is no
  // backup, nothing is held and nothing comes out.
  void Open();

  // The full name of a member, with "\": the backup's own folder and the entry.
  std::string MemberName(const std::string& entry) const;
  ItemEntry EntryOf(const RestoreOrigin& origin) const;

  // True if the backup file holds this item, and not just another one of the same name.
  bool HoldsItem(const RestoreOrigin& origin) const;
  // Extracts the file of an item to `target`, whose folder is made. False if it is not held, if the
  // target is not safe, or if it could not be written whole.
  bool ExtractFile(const RestoreOrigin& origin, const std::string& target);
  // Extracts a folder's tree below `target`. True if something was written.
  bool ExtractFolder(const std::string& entry, const std::string& target);
  // Gives what was extracted a moment before it is used.
  void SettleAfterExtract();

  // Stages the registry export of an item and imports it. True if the export was there.
  bool RestoreRegistryItem(const RestoreOrigin& origin);
  // Imports a staged registry file: `folder`, "\", `name` with "_" for blanks, and ".reg".
  void ImportRegFile(const std::string& folder, const std::string& name);
  void RunRegImport(const std::string& file);

  // The restore folder with its final "\".
  std::string StagingRoot() const;
  // Where an entry is staged.
  std::string StagedPath(const std::string& entry) const;
  // Removes what was staged, and the folders that are empty then: the restore folder may hold files
  // of an earlier run that the user wants.
  void RemoveStaged();

 private:
  // A file that was staged, and the folder up to which empty folders go with it.
  struct Staged {
    std::string path;
    std::string top;
  };
  // One call of the archive component.
  struct Extraction {
    std::string folder;  // the member folder whose tree is extracted; "" for a single file
    std::string target;  // the file, or the folder for the tree
    size_t nth = 0;      // which of several members of one name
    size_t seen = 0;
    size_t written = 0;
  };

  // The place of an item's member among those of its name; nothing if it is not held.
  std::optional<size_t> PlaceOfMember(const RestoreOrigin& origin, const ItemEntry& entry) const;
  zip::Result Extract(const std::string& member, Extraction extraction);
  void BeforeFile(zip::BeforeFile& file);
  void ConnectEvents(zip::Archive& archive);

  Program& program_;
  const RestoreJob& job_;
  RunMonitor& monitor_;
  std::unique_ptr<BackupFile> backup_;
  zip::Archive* archive_ = nullptr;  // the component of backup_
  MemberIndex members_;
  Extraction extraction_;
  std::vector<Staged> staged_;
};

}  // namespace quorvale
