// The state that the pages share: what one page commits, later pages and the engines read.
//
// Fields that reach files as "True" and "False" are kept as those words. Unloading the pages
// leaves the session as it was; the next job overwrites it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/shell.h"

namespace quorvale {

// One file that goes into the archive. A mapping of a whole folder ends in "*.*".
struct FileArr {
  std::string SourceFilePath;
  std::string DestFilePath;  // the entry name
};

// Every file of a job, found by its source path (case-sensitive, as it was added).
class FileCollection {
 public:
  // False, with nothing changed, if the source is there already.
  bool Add(const FileArr& file);
  // The destination of a source path, or "".
  std::string FindStagedDest(const std::string& source) const;
  // The place of a source path in the order in which the files were added.
  std::optional<size_t> Find(const std::string& source) const;
  const FileArr& At(size_t place) const { return files_[place]; }
  size_t Count() const { return files_.size(); }
  void Clear();

 private:
  std::vector<FileArr> files_;
  // By the hash of the source path: the path itself is not held twice.
  std::unordered_multimap<size_t, std::uint32_t> places_;
};

// The item of the backup that a node of the restore's tree stands for, as the settings file holds
// it.
struct RestoreOrigin {
  std::string path;
  std::string key;
  // Items of the settings file can have one entry name: this one's place among them, and how many
  // there are.
  size_t place_among_namesakes = 0;
  size_t namesakes = 1;
};

// One ticked node of the restore's tree.
struct RestoreItem {
  std::string path;
  RestoreOrigin origin;  // empty for a group
};

struct RestoreRow {
  std::string item;      // column 0: the item's name as the restore routines expect it
  std::string location;  // column 1: where it belongs on this computer
  size_t node = 0;       // its ticked node, a place in RestoreJob::restore_items
};

// What the program is and where: committed once, by the main window's load; read everywhere.
struct ProgramFacts {
  std::string gAppDataPath;  // no trailing backslash
  std::string gOSName;
  std::string opened_file;  // in a copy with raised rights: what the copy before it was opened with
};

// Where a backup is uploaded to.
struct FtpServer {
  std::string host;
  std::string port;
  std::string user;
  std::string password;
  std::string folder;
  bool anonymous = false;  // in place of user and password
};

// What a person asks of a backup: committed by the pages of the backup, each as it is left; read by
// the pages after it, by the settings file and its log form, and by the run.
struct BackupJob {
  std::string gBackupProcessName;
  std::string gBackupProcessDesc;
  std::string gBackupName;                    // as typed; the backup's on a server, with ".obk"
  std::string gBackupFolder;                  // the restore's tree page commits its folder here too
  std::vector<std::string> gBackupItemPaths;  // the ticked nodes, in the order of the tree
  std::vector<std::string> gBackupItemKeys;   // parallel to gBackupItemPaths
  std::string gLogDetails;
  std::string gUseCompression;
  std::string gCompressionLevel;
  std::string gArchivePassword;
  std::string gProtectWithPassword;
  std::string gBackupFileName;  // the first page of a restore names the file it opens here too
  bool gMediaFtp = false;
  bool gMediaDisc = false;
  int gMediaDiscCount = 0;
  FtpServer ftp_server;  // while gMediaFtp is set
  int disc_drive = -1;   // the disc writer's number of it, while gMediaDisc is set
};

// What the program finds out and does for a backup: committed by FrmTwo (sizes), frmfour (where the
// backup is staged), frmFinish and FrmProcess (the run and its delivery); read by the same.
struct BackupState {
  std::string gBackupBasePath;
  std::string gUniqueSuffix;
  std::string gDeliverySource;
  double gBackupTotalSize = 0;      // units of 1048576 bytes
  double gBackupEstimatedSize = 0;  // units of 1048576 bytes
  double gSelectedFolderBytes = 0;
  double gFreeBytes = 0;
  bool gDriveInfoFailed = false;
  bool gAnyItemChecked = false;
  bool unattended = false;  // started by a command word that asks nobody; until its pages are left
  bool gDelivered = false;  // the server has the whole file, or every disc is written
  int discs_written = 0;    // of the last delivery
  bool gBackupZipBusy = false;
  FileCollection gFileCollection;
};

// What a person asks of a restore: committed by the pages of the restore, each as it is left (the
// options of the backup by the page that reads its settings file); read by the pages after it and
// by the run.
struct RestoreJob {
  std::string gRestoreProcessName;
  std::string gRestoreProcessDesc;
  std::string gRestoreFilePath;
  // The name that the backup was made under, where its file has another one by now and the user
  // wants to go on with it; else "".
  std::string backup_stem;
  std::string gRestoreFolder;
  std::string gRestorePassword;
  std::string gRestoreLogDetails;
  std::string gRestoreUseCompression;
  std::string gRestoreSelfExtracting;
  std::string gRestoreProtectWithPassword;
  std::vector<RestoreItem> restore_items;     // in the order of the tree
  std::vector<RestoreRow> gRestoreSelection;  // of the items below a root
  bool gNoRestoreFolder = false;
  bool gRestoreToDefaultFolders = false;
  std::string restore_settings_file;  // the backup's, as the tree page took it out of the archive
};

// What the program finds out for a restore: committed and read by the tree page (a file that can't
// be read, the default profile unticked) and by the run (the Outlook profile that it edits).
struct RestoreState {
  // What a person wants once more: of which backup, and the paths of the items in its tree.
  std::string again_archive;
  std::vector<std::string> again_items;
  bool gDefaultProfileSkipped = false;
  bool gRestoreFileBad = false;
  // The name that the refused backup was made under; "" if that is not known.
  std::string refused_first_name;
  bool gOutlookProfileEdited = false;
};

// Named by the design and kept up to date; nothing in the program reads them.
struct UnreadFields {
  bool gStopRequested = false;
  bool gBackupTreeChanged = false;
  std::string gRestoreSettingsField;
  std::string gRestoreBackupFolder;
  // The ticked nodes of a restore: parallel, from row 1, with an empty last row.
  // RestoreJob::restore_items is what a restore goes by.
  std::vector<std::string> gRestoreItemPaths;
  std::vector<std::string> gRestoreItemKeys;
  std::vector<std::string> gRestoreItemAux;
  std::vector<std::string> gRestoreItemDest;
};

// All of it, under the names that the pages write. An engine takes the part that it needs.
struct Session : ProgramFacts, BackupJob, BackupState, RestoreJob, RestoreState, UnreadFields {};

}  // namespace quorvale
