// Microsoft Outlook: profiles and settings are imported, data files and loose files go to their
// fixed homes, and the profiles are pointed at the files that were restored.
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "restore/pages/frmRFinish.h"
#include "restore/run/safe_target.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Microsoft Outlook\\";
constexpr char kIdentities[] = "Microsoft Outlook\\Identities\\";
constexpr char kDataFolder[] = "\\Local Settings\\Application Data\\Microsoft\\Outlook";
constexpr char kMicrosoftFolder[] = "\\Application Data\\Microsoft";
constexpr char kRoamingFolder[] = "\\Application Data\\Microsoft\\Outlook";
constexpr size_t kLongestDataFileTable = 1000;

bool IsDataFile(const RestoreOrigin& origin) {
  return origin.path.starts_with(kIdentities) &&
         (EndsWithNoCase(origin.key, ".pst") || EndsWithNoCase(origin.key, ".ost"));
}

// The profile that an item of the backup tree stands under, without the mark of the default one.
std::string ProfileOf(const RestoreOrigin& origin) {
  const size_t start = std::string(kIdentities).size();
  const std::string name = origin.path.substr(start, origin.path.find('\\', start) - start);
  return ReplaceAll(name, " (Default)", "");
}

std::string ProofFolder(const std::string& version) {
  for (const char* older :
       {"Outlook.Application.9", "Outlook.Application.10", "Outlook.Application.11"}) {
    if (version == older) return "\\Proof";
  }
  return version == "Outlook.Application.12" ? "\\UProof" : "";
}

// "mail.pst" and 2 gives "mail_2.pst".
std::string NumberedName(const std::string& name, int number) {
  const size_t dot = name.rfind('.');
  const size_t end = dot == std::string::npos ? name.size() : dot;
  return name.substr(0, end) + "_" + std::to_string(number) + name.substr(end);
}

}  // namespace

void frmRFinish::RestoreOutlook() {
  DataFileTable.clear();
  mProfileMarker.clear();
  repaired_.clear();
  PlanDataFiles();
  const std::vector<RestoreRow>& rows = app_.session().gRestoreSelection;
  for (const RestoreRow& row : rows) {
    if (!OriginOf(row).path.starts_with(kRoot)) continue;
    RichTextBox1.visible = true;
    RichTextBox1.text = row.item;
    if (!BeginItem("Current Progress: Taking Restore of Microsoft Outlook Items..." + row.item)) {
      return;
    }
    if (Contains(row.location, "HKEY_")) {
      if (!mProfileMarker.empty()) {
        DataFileTable.clear();
        mProfileMarker.clear();
      } else {
        mProfileMarker = "Profile";
      }
    }
    RestoreOutlookItem(row);
  }
}

void frmRFinish::RestoreOutlookItem(const RestoreRow& row) {
  const ItemEntry entry = EntryOf(OriginOf(row));
  if (entry.kind == ItemEntry::Kind::kNone) return;
  StagedPath = StagedName(entry.name);
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    if (!RestoreRegistryItem(OriginOf(row), row.location)) return;
    RewriteProfilePaths(FileNameOf(OriginOf(row).key), ParentFolder(StagedPath));
  } else if (IsDataFile(OriginOf(row))) {
    if (app_.session().gRestoreToDefaultFolders) RestoreDataFile(row);
  } else if (!OriginOf(row).path.starts_with(kIdentities)) {
    RestoreLooseFile(row);
  }
}

// Decides where each data file goes before the first profile is repaired. Two files of one name
// from two folders must not end as one.
void frmRFinish::PlanDataFiles() {
  restored_.Clear();
  const Session& session = app_.session();
  if (!session.gRestoreToDefaultFolders) return;
  const std::string folder = app_.platform().system.Environment("UserProfile") + kDataFolder + "\\";
  for (const RestoreRow& row : session.gRestoreSelection) {
    const bool is_offline = OriginOf(row).path.starts_with("Microsoft Outlook\\Offline folders\\");
    if (!is_offline && !IsDataFile(OriginOf(row))) continue;
    if (!HoldsItem(OriginOf(row), EntryOf(OriginOf(row)))) continue;
    const std::string& old_path = OriginOf(row).key;
    if (!restored_.Find(old_path).empty()) continue;
    std::string name = FileNameOf(old_path);
    if (!IsSafeBelow(name)) continue;
    // A number is given only where it takes nobody's place.
    for (int n = 1;
         restored_.Taken(folder + name) || (n > 1 && app_.files().FileExists(folder + name)); ++n) {
      name = NumberedName(FileNameOf(old_path), n);
    }
    restored_.Add(old_path, folder + name);
  }
}

void frmRFinish::RestoreDataFile(const RestoreRow& row) {
  const std::string target = restored_.Find(OriginOf(row).key);
  if (target.empty()) return;
  const bool done = ExtractFile(OriginOf(row), target);
  SettleAfterExtract();
  if (!done || !EndsWithNoCase(target, ".pst")) return;
  if (DataFileTable.size() < kLongestDataFileTable) {
    DataFileTable.emplace_back(target, ProfileOf(OriginOf(row)));
  }
}

std::string frmRFinish::HomeOfGroup(const std::string& path) {
  const std::string profile = app_.platform().system.Environment("USERPROFILE");
  const auto is = [&path](const char* group) {
    return path.starts_with(kRoot + std::string(group));
  };
  if (is("Adult-Junk Senders\\") || is("Macros and VBA programs\\") || is("Setting Files\\")) {
    return profile + kRoamingFolder;
  }
  if (is("Offline folders\\") || is("Personal Address Book\\")) return profile + kDataFolder;
  if (is("Signatures\\")) return profile + kMicrosoftFolder + "\\Signatures";
  if (is("Dictionary\\")) return profile + kMicrosoftFolder + ProofFolder(OutlookCurVer(app_));
  return "";
}

// One file of a group: the group's other files come with their own rows, if they are wanted.
void frmRFinish::RestoreLooseFile(const RestoreRow& row) {
  const std::string home = HomeOfGroup(OriginOf(row).path);
  if (home.empty()) return;
  const std::string planned = restored_.Find(OriginOf(row).key);
  ExtractFile(OriginOf(row),
              planned.empty() ? home + "\\" + FileNameOf(OriginOf(row).key) : planned);
}

void frmRFinish::RewriteProfilePaths(const std::string& profile, const std::string& folder) {
  // The repair reads what the import wrote.
  app_.registry_editor().WaitForRuns();
  Session& session = app_.session();
  if (!EqualsNoCase(profile, repaired_)) session.gOutlookProfileEdited = false;
  repaired_ = profile;
  if (!session.gRestoreToDefaultFolders) {
    return RepairOutlookProfile(app_, profile, WithoutBackslash(folder));
  }
  const std::string user = app_.platform().system.Environment("USERPROFILE");
  const std::string data_folder =
      user + (IsVista(app_) ? "\\AppData\\Local\\Microsoft\\Outlook" : kDataFolder);
  // A data file that nobody asked to restore, and that is still there, stays in use.
  const auto keeps = [this](const std::string& old_path) {
    return restored_.Find(old_path).empty() && app_.files().FileExists(old_path);
  };
  RepairOutlookProfile(app_, profile, data_folder, restored_, keeps);
}

void frmRFinish::RegisterDataFiles(const std::function<void(const std::string& path)>& add_store) {
  for (const auto& [path, profile] : DataFileTable) {
    if (path.empty()) break;
    LblRegData.visible = true;
    LblRegData.caption = "Registering Data File for Profile : " + profile + "  " + path;
    if (!Contains(FoldCase(path), "archive.pst")) add_store(path);
  }
  LblRegData.visible = false;
}

}  // namespace quorvale
