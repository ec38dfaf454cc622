#include "restore/run/outlook_restore.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_places.h"
#include "restore/run/safe_target.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Microsoft Outlook\\";
constexpr char kIdentities[] = "Microsoft Outlook\\Identities\\";
constexpr size_t kLongestDataFileTable = 1000;

// What stands under a profile and is no registry export is a file that a section of it names,
// whatever its extension.
bool IsDataFile(const RestoreOrigin& origin, const ItemEntry& entry) {
  return entry.kind == ItemEntry::Kind::kFile && origin.path.starts_with(kIdentities);
}

// True for the groups of loose files whose home is the folder of the data files.
bool SharesDataFolder(const RestoreOrigin& origin) {
  return origin.path.starts_with("Microsoft Outlook\\Offline folders\\") ||
         origin.path.starts_with("Microsoft Outlook\\Personal Address Book\\");
}

// The profile that an item of the backup tree stands under, without the mark of the default one.
std::string ProfileOf(const RestoreOrigin& origin) {
  const size_t start = std::string(kIdentities).size();
  const std::string name = origin.path.substr(start, origin.path.find('\\', start) - start);
  return ReplaceAll(name, " (Default)", "");
}

}  // namespace

void OutlookRestore::RestoreOutlook() {
  tools_.result.data_files.clear();
  profile_seen_ = false;
  repaired_.clear();
  pointed_.clear();
  PlanDataFiles();
  for (const RestoreRow& row : tools_.job.gRestoreSelection) {
    if (!tools_.OriginOf(row).path.starts_with(kRoot)) continue;
    if (!tools_.monitor.BeginItem(row.item)) return;
    if (Contains(row.location, "HKEY_")) NoteProfile();
    RestoreOutlookItem(row);
  }
  KeepPointedFiles();
}

void OutlookRestore::NoteProfile() {
  if (profile_seen_) tools_.result.data_files.clear();
  profile_seen_ = !profile_seen_;
}

void OutlookRestore::RestoreOutlookItem(const RestoreRow& row) {
  const RestoreOrigin& origin = tools_.OriginOf(row);
  const ItemEntry entry = tools_.extractor.EntryOf(origin);
  if (entry.kind == ItemEntry::Kind::kNone) return;
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    if (!tools_.extractor.RestoreRegistryItem(origin)) return;
    RewriteProfilePaths(FileNameOf(origin.key), ParentFolder(tools_.PlaceOfLeft(entry.name)));
  } else if (IsDataFile(origin, entry)) {
    RestoreDataFile(origin);
  } else if (!origin.path.starts_with(kIdentities)) {
    RestoreLooseFile(origin);
  }
}

// Decides where each data file goes before the first profile is repaired: to the data files' home,
// or to the folder of its profile below the restore folder.
void OutlookRestore::PlanDataFiles() {
  restored_.Clear();
  extracted_.clear();
  const bool to_home = tools_.job.gRestoreToDefaultFolders;
  const std::string home =
      tools_.program.platform().system.Environment("UserProfile") + kOutlookLocalFolder;
  for (const RestoreRow& row : tools_.job.gRestoreSelection) {
    const RestoreOrigin& origin = tools_.OriginOf(row);
    const ItemEntry entry = tools_.extractor.EntryOf(origin);
    const bool is_data_file = IsDataFile(origin, entry);
    if (!is_data_file && !(to_home && SharesDataFolder(origin))) continue;
    if (!tools_.extractor.HoldsItem(origin)) continue;
    if (to_home) {
      PlanDataFile(origin.key, home, DataFolder());
    } else {
      const std::string kept = ParentFolder(tools_.PlaceOfLeft(entry.name));
      PlanDataFile(origin.key, kept, kept);
    }
  }
}

// Two files of one name from two folders must not end as one; one file that several sections name
// is one file.
void OutlookRestore::PlanDataFile(const std::string& old_path, const std::string& folder,
                                  const std::string& folder_in_profile) {
  if (!restored_.Find(old_path).empty()) return;
  std::string name = FileNameOf(old_path);
  if (!IsSafeBelow(name)) return;
  const auto is_taken = [&](int n) {
    const std::string target = folder + "\\" + name;
    // A number is given only where it takes nobody's place.
    return restored_.Taken(target) || (n > 1 && tools_.program.files().FileExists(target));
  };
  for (int n = 1; is_taken(n); ++n) name = NumberedName(FileNameOf(old_path), n);
  restored_.Add(old_path, folder + "\\" + name, folder_in_profile + "\\" + name);
}

void OutlookRestore::RestoreDataFile(const RestoreOrigin& origin) {
  const std::string target = restored_.Find(origin.key);
  if (target.empty()) return;
  if (extracted_.contains(FoldCase(target))) {
    NoteRestoredBefore(origin);
  } else {
    const bool done = tools_.extractor.ExtractFile(origin, target);
    tools_.extractor.SettleAfterExtract();
    if (!done) return;
    extracted_.insert(FoldCase(target));
  }
  if (!tools_.job.gRestoreToDefaultFolders || !EndsWithNoCase(target, ".pst")) return;
  if (tools_.result.data_files.size() < kLongestDataFileTable) {
    tools_.result.data_files.emplace_back(target, ProfileOf(origin));
  }
}

void OutlookRestore::NoteRestoredBefore(const RestoreOrigin& origin) {
  tools_.account.BeginItem(origin);
  tools_.account.Good();
}

void OutlookRestore::KeepPointedFiles() {
  for (const RestoreRow& row : tools_.job.gRestoreSelection) {
    if (!tools_.monitor.KeepGoing()) return;
    const RestoreOrigin& origin = tools_.OriginOf(row);
    const auto pointed = pointed_.find(FoldCase(origin.key));
    if (pointed == pointed_.end() || !origin.path.starts_with(kRoot)) continue;
    if (!restored_.Taken(pointed->second)) tools_.extractor.ExtractFile(origin, pointed->second);
  }
}

std::string OutlookRestore::HomeOfGroup(const std::string& path) {
  const size_t start = std::string(kRoot).size();
  return OutlookGroupFolder(path.substr(start, path.find('\\', start) - start),
                            tools_.program.platform().system.Environment("USERPROFILE"),
                            OutlookCurVer(tools_.program));
}

// One file of a group: the group's other files come with their own rows, if they are wanted.
void OutlookRestore::RestoreLooseFile(const RestoreOrigin& origin) {
  const std::string home = HomeOfGroup(origin.path);
  if (home.empty()) return;
  const std::string planned = tools_.job.gRestoreToDefaultFolders ? restored_.Find(origin.key) : "";
  if (!planned.empty() && !extracted_.insert(FoldCase(planned)).second) {
    return NoteRestoredBefore(origin);
  }
  tools_.extractor.ExtractFile(origin,
                               planned.empty() ? home + "\\" + FileNameOf(origin.key) : planned);
}

std::string OutlookRestore::DataFolder() const {
  const Program& program = tools_.program;
  return program.platform().system.Environment("USERPROFILE") +
         (IsVista(program) ? kOutlookLocalFolderOfVista : kOutlookLocalFolder);
}

void OutlookRestore::RewriteProfilePaths(const std::string& profile, const std::string& folder) {
  Program& program = tools_.program;
  // The repair reads what the import wrote.
  tools_.extractor.FinishImports();
  if (!EqualsNoCase(profile, repaired_)) program.session().gOutlookProfileEdited = false;
  repaired_ = profile;
  // A data file that nobody asked to restore, and that is still there, stays in use.
  const auto keeps = [this, &program](const std::string& old_path) {
    return restored_.Find(old_path).empty() && program.files().FileExists(old_path);
  };
  const bool to_home = tools_.job.gRestoreToDefaultFolders;
  PointedPaths pointed = RepairOutlookProfile(
      program, profile, to_home ? DataFolder() : WithoutBackslash(folder), restored_, keeps);
  if (!to_home) pointed_.merge(pointed);
}

}  // namespace quorvale
