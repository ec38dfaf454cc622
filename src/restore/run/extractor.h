// Takes the items of a restore job out of its backup file, each straight to the place where it
// belongs. What it only stages on the way, it can take away again.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "backup/format/archive_layout.h"
#include "backup/format/backup_file.h"
#include "core/program/program.h"
#include "restore/run/backup_members.h"
#include "restore/run/restore_account.h"
#include "restore/run/run_monitor.h"

namespace quorvale {

class Extractor {
 public:
  Extractor(Program& program, const RestoreJob& job, RunMonitor& monitor, RestoreAccount& account);

  // Tests the backup file and reads its directory. Until then, and where the file is gone or is no
  // backup, nothing is held and nothing comes out: kMissing or kDamaged then, else kNone.
  AccountReason Open();

  // The full name of a member, with "\": the backup's own folder and the entry.
  std::string MemberName(const std::string& entry) const;
  // Where an item stands in the backup; the name is one that a file can have.
  ItemEntry EntryOf(const RestoreOrigin& origin) const;

  // True if the backup file holds this item, and not just another one of the same name.
  bool HoldsItem(const RestoreOrigin& origin) const;
  // The same of an item that is a folder: something below it.
  bool HoldsAny(const RestoreOrigin& origin) const;
  const BackupMembers& members() const { return members_; }
  // Extracts the file of an item to `target`, whose folder is made. False if it is not held, if the
  // target is not safe, or if it could not be written whole. This and the next ones tell the
  // account what became of the item.
  bool ExtractFile(const RestoreOrigin& origin, const std::string& target);
  // Extracts the tree of a folder item below `target`. True if something was written.
  bool ExtractFolder(const RestoreOrigin& origin, const std::string& target);

  // For what cannot go home: extracts an item's file to the folder for left items, into a folder of
  // the given name. No two items of a run get one place. False as of ExtractFile.
  bool KeepFile(const RestoreOrigin& origin, const std::string& folder);
  // Extracts the tree of a folder item to the folder for left items, under the names that it has in
  // the backup, where each member has one of its own. True if something was written.
  bool KeepFolder(const RestoreOrigin& origin);
  // Gives what was extracted a moment before it is used.
  void SettleAfterExtract();

  // Stages the registry export of an item and imports it. True if the export was there.
  bool RestoreRegistryItem(const RestoreOrigin& origin);
  // Waits for the imports and tells the account which of them the registry editor took.
  void FinishImports();
  // Imports a staged registry file: `folder`, "\", `name` with "_" for blanks, and ".reg".
  bool ImportRegFile(const std::string& folder, const std::string& name);
  // False if the registry editor could not be started.
  bool RunRegImport(const std::string& file);

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
  // A member by the table, where it is written, and where it belongs.
  struct MemberWay {
    const TableMember* member;
    std::string target;
    std::string belongs;
  };
  // One call of the archive component.
  struct Extraction {
    // By the table: where each entry goes, by its folded name without a final "\".
    std::unordered_map<std::string, std::string> targets;
    // Without a table.
    std::string folder;  // the member folder whose tree is extracted; "" for a single file
    std::string target;  // the file, or the folder for the tree
    size_t nth = 0;      // which of several members of one name
    size_t seen = 0;
    size_t written = 0;
    // What the account does not know yet, by folded entry name: where the file or key belongs.
    std::unordered_map<std::string, std::string> pending;
    bool is_home = true;  // what is written stands where it belongs then
    bool is_registry = false;
  };
  // An export that the registry editor was given.
  struct Import {
    RestoreOrigin origin;
    std::string file;
    bool started = false;
  };

  // The place of an item's member among those of its name; nothing if it is not held.
  std::optional<size_t> PlaceOfMember(const RestoreOrigin& origin, const ItemEntry& entry) const;
  // Without a table: the tree of a member folder.
  bool ExtractNamed(const std::string& entry, const std::string& target, bool is_home);
  // By the table.
  bool ExtractMembers(const std::vector<MemberWay>& ways, Extraction extraction);
  // The file of an item; where it belongs is another place than `target` if that is no home.
  bool ExtractSingle(const RestoreOrigin& origin, const std::string& target,
                     const std::string& belongs, Extraction extraction);
  std::string LeftPath(const RestoreOrigin& origin, const std::string& folder);
  // By the table: below `root`, the folder for left items. The item's place there, or "".
  std::string KeepMembers(const RestoreOrigin& origin, const std::string& root);
  zip::Result Extract(const std::vector<std::string>& members, Extraction extraction);
  // Tells the account of entries of which the archive component told nothing.
  void TellPending(zip::Result result);
  AccountThing ThingOf(bool is_folder) const;
  void TellWarning(const zip::Warning& warning);
  void TellUnzipped(const zip::UnzippedFile& file);
  void SendNamed(zip::BeforeFile& file);
  void BeforeFile(zip::BeforeFile& file);
  void ConnectEvents(zip::Archive& archive);

  Program& program_;
  const RestoreJob& job_;
  RunMonitor& monitor_;
  RestoreAccount& account_;
  std::unique_ptr<BackupFile> backup_;
  zip::Archive* archive_ = nullptr;  // the component of backup_
  BackupMembers members_;
  Extraction extraction_;
  std::unordered_set<std::string> left_;  // folded paths that LeftPath gave
  std::vector<Staged> staged_;
  std::vector<Import> imports_;  // of which the account knows nothing yet
};

}  // namespace quorvale
