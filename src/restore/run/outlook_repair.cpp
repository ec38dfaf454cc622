#include "restore/run/outlook_repair.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_profile.h"

namespace quorvale {
namespace {

// How a version of Outlook wants its sections repaired.
enum class Repair { kNone, kNarrowPath, kWidePath };

Repair RepairOfVersion(const std::string& version) {
  if (version == "Outlook.Application.11" || version == "Outlook.Application.12") {
    return Repair::kWidePath;
  }
  if (version == "Outlook.Application.10") return Repair::kNarrowPath;
  return Repair::kNone;
}

class ProfileRepair {
 public:
  ProfileRepair(Program& program, const std::string& profile_key, const std::string& folder,
                const RestoredFiles& restored, const std::function<bool(const std::string&)>& keeps)
      : program_(program),
        profile_key_(profile_key),
        folder_(folder),
        restored_(restored),
        keeps_(keeps),
        repair_(RepairOfVersion(OutlookCurVer(program))) {}

  PointedPaths Run() {
    for (const std::string& section : StoreSections(program_, profile_key_)) {
      if (RepairSection(profile_key_ + "\\" + section)) RepairOfflineOnce();
    }
    const std::string offline = OfflineStorePath(program_, profile_key_);
    if (IsRestored(offline)) RepairOffline(offline);
    return pointed_;
  }

 private:
  // True if the section was rewritten.
  bool RepairSection(const std::string& key) {
    const std::string narrow = ReadProfileText(program_, key, kStorePath8);
    const std::string wide = ReadProfileText(program_, key, kStorePath16);
    const std::string& old_path = narrow.empty() ? wide : narrow;
    if (Stays(old_path)) return false;
    if (IsRestored(narrow) || IsRestored(wide)) {
      PointAtRestored(key, narrow, wide);
      return true;
    }
    // A section without the 8-bit path is not one of a data file of these versions.
    if (narrow.empty()) return false;
    if (repair_ == Repair::kWidePath) return RepairWide(key, wide);
    if (repair_ == Repair::kNarrowPath) return RepairNarrow(key, narrow, wide);
    return false;
  }

  // Every form of the path that the section has, since each may be the one that is read.
  void PointAtRestored(const std::string& key, const std::string& narrow, const std::string& wide) {
    if (!narrow.empty()) Write(key, kStorePath8, NewPath(IsRestored(narrow) ? narrow : wide));
    if (!wide.empty()) Write(key, kStorePath16, NewPath(IsRestored(wide) ? wide : narrow));
    ForgetEntryId(key);
  }

  bool RepairWide(const std::string& key, const std::string& wide) {
    ForgetEntryId(key);
    if (wide.empty()) return false;
    Write(key, kStorePath16, NewPath(wide));
    return true;
  }

  bool RepairNarrow(const std::string& key, const std::string& narrow, const std::string& wide) {
    ForgetEntryId(key);
    std::string path = NewPath(narrow);
    if (path.ends_with("\\")) path += FileNameOf(wide);
    Write(key, kStorePath8, path);
    return true;
  }

  void RepairOfflineOnce() {
    Session& session = program_.session();
    if (session.gOutlookProfileEdited) return;
    session.gOutlookProfileEdited = true;
    const std::string offline = OfflineStorePath(program_, profile_key_);
    if (!offline.empty() && !Stays(offline)) RepairOffline(offline);
  }

  void RepairOffline(const std::string& old_path) {
    Write(profile_key_ + "\\" + kOfflineStoreSection, kOfflinePath16, NewPath(old_path));
  }

  bool IsRestored(const std::string& old_path) const {
    return !old_path.empty() && !restored_.Find(old_path).empty();
  }

  bool Stays(const std::string& old_path) const {
    return keeps_ && !old_path.empty() && keeps_(old_path);
  }

  std::string NewPath(const std::string& old_path) {
    const std::string restored = restored_.PathInProfile(old_path);
    if (!restored.empty()) return CollapseBackslashes(restored);
    const std::string path = CollapseBackslashes(folder_ + "\\" + FileNameOf(old_path));
    pointed_[FoldCase(old_path)] = path;
    return path;
  }

  void ForgetEntryId(const std::string& key) {
    program_.registry().RegKillValue(RegistryRoot::kCurrentUser, key, kStoreEntryId);
  }

  // The type that the value has; a new one is a string. One that cannot be read just now has the
  // type that goes with its name: no mail program reads wide text out of a string.
  std::uint32_t TypeFor(const std::string& key, const std::string& name) {
    RegistryValue old;
    const long status =
        program_.registry().store().QueryValue(RegistryRoot::kCurrentUser, key, name, &old);
    if (status == registry_status::kOk) return old.type;
    if (status == registry_status::kNotFound) return registry_type::kString;
    return name.starts_with("001f") ? registry_type::kBinary : registry_type::kString;
  }

  // Keeps the type that the value has. A text value is 8-bit text whatever its name says.
  void Write(const std::string& key, const std::string& name, const std::string& path) {
    const std::uint32_t type = TypeFor(key, name);
    if (registry_type::IsText(type)) {
      program_.registry().store().SetText(RegistryRoot::kCurrentUser, key, name, type, path);
      return;
    }
    const bool is_wide = name.starts_with("001f") && type == registry_type::kBinary;
    program_.registry().store().SetValue(
        RegistryRoot::kCurrentUser, key, name, type,
        is_wide ? EncodeProfileText16(path) : EncodeProfileText8(program_, path));
  }

  Program& program_;
  std::string profile_key_;
  std::string folder_;
  const RestoredFiles& restored_;
  const std::function<bool(const std::string&)>& keeps_;
  Repair repair_;
  PointedPaths pointed_;
};

}  // namespace

void RestoredFiles::Add(const std::string& old_path, const std::string& new_path,
                        const std::string& path_in_profile) {
  by_old_path_[FoldCase(old_path)] = {new_path, path_in_profile};
  taken_.insert(FoldCase(new_path));
}

std::string RestoredFiles::Find(const std::string& old_path) const {
  const auto found = by_old_path_.find(FoldCase(old_path));
  return found == by_old_path_.end() ? "" : found->second.file;
}

std::string RestoredFiles::PathInProfile(const std::string& old_path) const {
  const auto found = by_old_path_.find(FoldCase(old_path));
  return found == by_old_path_.end() ? "" : found->second.path_in_profile;
}

bool RestoredFiles::Taken(const std::string& new_path) const {
  return taken_.contains(FoldCase(new_path));
}

void RestoredFiles::Clear() {
  by_old_path_.clear();
  taken_.clear();
}

PointedPaths RepairOutlookProfile(Program& program, const std::string& profile,
                                  const std::string& folder, const RestoredFiles& restored,
                                  const std::function<bool(const std::string&)>& keeps) {
  const std::string root = ProfilesRoot(program.session().gOSName);
  if (root.empty() || profile.empty()) return {};
  return ProfileRepair(program, root + profile, folder, restored, keeps).Run();
}

}  // namespace quorvale
