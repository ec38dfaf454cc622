// Where an item of the tree stands in the archive. The backup engine calls this to write, the
// restore engine to find.
#pragma once

#include <string>

namespace quorvale {

struct ItemEntry {
  enum class Kind {
    kNone,      // a grouping node: nothing is stored
    kFile,      // one file
    kFolder,    // a folder with all below it
    kRegistry,  // a registry export
  };
  Kind kind = Kind::kNone;
  // The folder below the archive's stem in which the item stands: "Outlook Express\Address Book",
  // without a final "\".
  std::string folder;
  // The full entry name below the stem: the file, the export, or the folder whose tree it is.
  // Without a final "\"; empty for kNone.
  std::string name;
};

// `path` is the item's path in the backup tree ("Add Other Folders\D:\Work\Backup"), `key` its key
// as the settings file holds it, `os_name` the system's name word.
ItemEntry EntryOfItem(const std::string& path, const std::string& key, const std::string& os_name);

// "Typed Urls" gives "Typed_Urls.reg".
std::string ExportFileName(const std::string& leaf);

// The entry name of a folder or file below the staging folder ("C:\Backup\Job_1\Other Files" gives
// "Job_1\Other Files" with the backup folder "C:\Backup"). A path outside of the backup folder is
// cut at that folder's length.
std::string EntryNameBelow(const std::string& backup_folder, const std::string& target);

// The settings file's entry for an archive of this stem: stem "\" stem ".xml".
std::string SettingsEntryName(const std::string& stem);

}  // namespace quorvale
