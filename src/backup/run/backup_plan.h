// The plan of a backup: the frozen selection turned into a list of members, each with the item it
// belongs to, its source, its entry name and its kind. It is made before the run, looks at files
// and changes none; nothing computes an entry name later.
//
// Entry names are those of archive_layout.h. Where they give one name to two sources, the later
// one keeps it (it is the one that a reader of names finds) and the earlier ones take the next
// free "_1", "_2" before their extension. Names are compared without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "backup/format/archive_layout.h"
#include "backup/format/member_table.h"
#include "core/program/program.h"

namespace quorvale {

enum class BackupPhase {
  kPlanning,
  kWindowsMail,
  kOutlookExpress,
  kOutlook,
  kBrowser,
  kOtherFiles,
  kSettling,  // what the registry editor still writes is waited for
  kArchive,
};

struct PlannedMember {
  TableMember::Kind kind = TableMember::Kind::kFile;
  // The source has to be made first: a registry export, or a copy of a file that stands under two
  // items.
  bool is_staged = false;
  // Another member brings the source into the archive; this one only has it too.
  bool is_shared = false;
  std::uint32_t file = 0;  // source and entry name: a place in the session's gFileCollection
  std::string original;    // of a copy: the user's file
  std::string inner;       // the path below the item's own folder, "" for the item itself
};

// What cannot be a member, whatever happens.
struct PlannedGap {
  std::string source;
  std::string inner;
  const char* reason;
  bool is_folder = false;
};

struct PlannedItem {
  std::string path;  // in the tree
  std::string key;   // a file, a folder or a registry key
  BackupPhase phase = BackupPhase::kOtherFiles;
  ItemEntry::Kind kind = ItemEntry::Kind::kNone;
  std::string target;     // the item's folder below the staging folder, with a final "\"
  bool is_taken = false;  // false: its phase does not apply to this computer
  bool is_there = true;
  std::vector<PlannedMember> members;
  std::vector<PlannedGap> gaps;
};

struct BackupPlan {
  std::vector<PlannedItem> items;  // as the selection has them
};

// True if the phase of an item applies to this computer.
using PhaseApplies = std::function<bool(BackupPhase)>;

// Plans the job in the session for its staging folder (gBackupBasePath), and fills gFileCollection.
// `keep_going` is called at each element of a folder and is the place to pump; a plan that it ends
// is of no use.
BackupPlan PlanBackup(Program& program, const PhaseApplies& applies,
                      const std::function<bool()>& keep_going);

}  // namespace quorvale
