#include "platform/host/disk/old_disk.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "base/paths.h"
#include "base/text.h"
#include "platform/host/code_page.h"
#include "platform/host/disk/classic_hive.h"
#include "platform/host/disk/damaged_file.h"
#include "platform/host/disk/nt_hive.h"
#include "platform/host/disk/wine_registry.h"

namespace quorvale::host {
namespace {

constexpr char kNtProfiles[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
constexpr char kClassicProfiles[] = "Software\\Microsoft\\Windows\\CurrentVersion\\ProfileList";

std::string RealFolder(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return "";
  const std::string result = resolved;
  std::free(resolved);
  struct stat info {};
  return stat(result.c_str(), &info) == 0 && S_ISDIR(info.st_mode) ? result : "";
}

// Parts of a computer's registry that hold nothing of a person's, but most of its bytes.
bool IsWantedOfMachine(const std::string& path) {
  static const char* const kLeftOut[] = {
      "Software\\Classes\\CLSID",
      "Software\\Classes\\Interface",
      "Software\\Classes\\TypeLib",
      "Software\\Classes\\Installer",
      "Software\\Classes\\Wow6432Node",
      "Software\\Wow6432Node\\Classes",
      "Software\\Microsoft\\Windows\\CurrentVersion\\Component Based Servicing",
      "Software\\Microsoft\\Windows\\CurrentVersion\\Installer",
      "Software\\Microsoft\\Windows\\CurrentVersion\\SideBySide",
      "Software\\Microsoft\\Windows NT\\CurrentVersion\\Perflib",
      "Enum",
      "Hardware",
  };
  for (const char* left_out : kLeftOut) {
    if (EqualsNoCase(path, left_out)) return false;
  }
  // Of the system's part, only what says which computer it was.
  const std::vector<std::string> names = Split(FoldCase(path), "\\");
  if (names[0] != "system" || names.size() < 2) return true;
  if (names[1] == "select" || names[1] == "mounteddevices") return true;
  if (names[1] != "currentcontrolset" && !names[1].starts_with("controlset0")) return false;
  if (names.size() > 2 && names[2] != "control") return false;
  return names.size() < 4 || names[3] == "nls" || names[3] == "computername";
}

// The drives of a Wine prefix, as far as they lie in it.
void AddPrefixDrives(const std::string& prefix, std::map<char, std::string>* drives) {
  for (char letter = 'a'; letter < 'z'; ++letter) {
    const std::string folder = RealFolder(prefix + "/dosdevices/" + letter + ":");
    if (folder.starts_with(prefix + "/")) drives->emplace(letter & ~0x20, folder);
  }
  const std::string main = RealFolder(prefix + "/drive_c");
  if (!main.empty()) drives->emplace('C', main);
}

// Two paths of the host that lead to one file.
bool AreOneFile(const std::string& a, const std::string& b) {
  struct stat first {
  }, second{};
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// HKEY_CURRENT_USER of a USER.DAT, which holds the users by their names.
HiveKey ClassicUserKey(HiveKey root, const std::string& name) {
  for (const std::string& own : {name, std::string(".Default")}) {
    for (HiveKey& key : root.subkeys) {
      if (EqualsNoCase(key.name, own)) return HiveKey(std::move(key));
    }
  }
  return root;
}

}  // namespace

OldDisk::OldDisk(const std::string& folder, const std::map<char, std::string>& drives)
    : folder_(folder), drives_(drives) {}

std::unique_ptr<OldDisk> OldDisk::Open(const std::string& folder,
                                       const std::map<char, std::string>& drives,
                                       std::string* problem) {
  std::map<char, std::string> real_drives;
  for (const auto& [letter, path] : drives) {
    real_drives[letter] = RealFolder(path);
    if (real_drives[letter].empty()) {
      *problem = "there is no folder " + path + ".";
      return nullptr;
    }
  }
  const std::string real = RealFolder(folder);
  if (real.empty()) {
    *problem = "there is no folder " + folder + ".";
    return nullptr;
  }
  std::unique_ptr<OldDisk> disk(new OldDisk(real, real_drives));
  if (!disk->FindSystem(problem) || !disk->ReadMachineRegistry(problem)) return nullptr;
  disk->facts_ = ReadDiskFacts(disk->machine_, disk->kind_, disk->windows_);
  if (!disk->PlaceDrives(problem)) return nullptr;
  disk->FindUsers();
  return disk;
}

void OldDisk::Remark(const std::string& sentence) {
  if (std::find(remarks_.begin(), remarks_.end(), sentence) == remarks_.end()) {
    remarks_.push_back(sentence);
  }
}

bool OldDisk::IsFile(const std::string& path) const {
  const auto info = files_->Stat(path);
  return info && !info->IsFolder();
}

bool OldDisk::FindSystem(std::string* problem) {
  struct stat info {};
  if (stat((folder_ + "/system.reg").c_str(), &info) == 0 && S_ISREG(info.st_mode)) {
    kind_ = DiskKind::kWine;
    AddPrefixDrives(folder_, &drives_);
    windows_ = "C:\\windows";
    return true;
  }
  ShowDrives({{'C', folder_}});
  if (FindWindows()) return true;
  *problem = folder_ + " holds neither a Windows folder with its registry nor a Wine prefix.";
  return false;
}

bool OldDisk::FindWindows() {
  std::vector<std::string> names = {"WINDOWS", "WINNT", "WIN95", "WIN98"};
  for (const FileInfo& entry : files_->List("C:\\")) {
    if (entry.IsFolder()) names.push_back(entry.name);
  }
  for (const std::string& name : names) {
    const std::string folder = "C:\\" + name;
    if (IsFile(folder + "\\system32\\config\\SOFTWARE")) {
      kind_ = DiskKind::kNt;
    } else if (IsFile(folder + "\\SYSTEM.DAT")) {
      kind_ = DiskKind::kClassic;
    } else {
      continue;
    }
    windows_ = folder;
    return true;
  }
  return false;
}

// The disk becomes the drive that the registry of its system names.
bool OldDisk::PlaceDrives(std::string* problem) {
  if (kind_ != DiskKind::kWine) {
    const char letter = facts_.SystemDrive();
    const std::string& folder = drives_.emplace(letter, folder_).first->second;
    if (folder != folder_) {
      *problem = std::string("drive ") + letter + ": is the disk itself; it cannot be " + folder +
                 " as well.";
      return false;
    }
  }
  ShowDrives(drives_);
  return true;
}

void OldDisk::ShowDrives(const std::map<char, std::string>& drives) {
  MachineFolder machine;
  for (const auto& [drive, folder] : drives) {
    MachineDrive& described = machine.drives[drive];
    described.folder = folder;
    described.read_only = true;
  }
  files_ = std::make_unique<HostFiles>(machine);
}

std::optional<Hive> OldDisk::ReadRegistry(const std::string& host_path, const HiveFilter& wanted,
                                          std::string* problem) {
  const auto file = ReadDamagedFile(host_path, HiveBounds::kFileBytes);
  if (!file) {
    *problem = host_path + " cannot be read.";
    return std::nullopt;
  }
  if (file->lost_bytes > 0) {
    Remark(host_path + ": the disk is damaged, " + std::to_string(file->lost_bytes) +
           " bytes of it could not be read.");
  }
  std::optional<Hive> hive;
  if (IsWineRegistry(file->bytes)) {
    hive = ReadWineRegistry(file->bytes, wanted, problem);
  } else if (IsClassicHive(file->bytes)) {
    auto code_page = CodePage::Open(facts_.codepage);
    if (!code_page) code_page = CodePage::Open(1252);
    hive = ReadClassicHive(file->bytes, *code_page, wanted, problem);
  } else {
    hive = ReadNtHive(file->bytes, wanted, problem);
  }
  if (!hive) *problem = host_path + ": " + *problem + ".";
  if (hive) {
    for (const std::string& remark : hive->remarks) Remark(host_path + ": " + remark + ".");
  }
  return hive;
}

bool OldDisk::ReadInto(const std::string& host_path, const std::string& name,
                       std::string* problem) {
  const std::string above = name.empty() ? "" : name + "\\";
  auto hive = ReadRegistry(
      host_path, [&above](const std::string& path) { return IsWantedOfMachine(above + path); },
      problem);
  if (!hive) return false;
  if (name.empty()) {
    machine_ = std::move(hive->root);
  } else {
    hive->root.name = name;
    machine_.subkeys.push_back(std::move(hive->root));
  }
  return true;
}

bool OldDisk::ReadMachineRegistry(std::string* problem) {
  if (kind_ == DiskKind::kWine) return ReadInto(folder_ + "/system.reg", "", problem);
  if (kind_ == DiskKind::kClassic) {
    const std::string path = HostPath(windows_ + "\\SYSTEM.DAT");
    if (!ReadInto(path, "", problem)) return false;
    // The names in it are in the code page that it names itself.
    const int codepage = ReadDiskFacts(machine_, kind_, windows_).codepage;
    if (codepage == facts_.codepage) return true;
    facts_.codepage = codepage;
    return ReadInto(path, "", problem);
  }
  // One of the two is enough to find the users.
  const std::string config = windows_ + "\\system32\\config\\";
  for (const char* name : {"SOFTWARE", "SYSTEM"}) {
    if (!ReadInto(HostPath(config + name), name, problem)) Remark(*problem);
  }
  return true;
}

std::string OldDisk::UserRegistry(const DiskUser& user) const {
  if (kind_ == DiskKind::kWine) return folder_ + "/user.reg";
  const std::string name = kind_ == DiskKind::kNt ? "NTUSER.DAT" : "USER.DAT";
  const std::string path = WithBackslash(user.profile) + name;
  return IsFile(path) ? HostPath(path) : "";
}

void OldDisk::AddUser(DiskUser user) {
  user.registry = UserRegistry(user);
  if (user.registry.empty()) return;
  for (const DiskUser& known : users_) {
    if (EqualsNoCase(known.profile, user.profile)) return;
    // The profiles of newer systems stand under their former names too.
    if (kind_ != DiskKind::kWine && AreOneFile(known.registry, user.registry)) return;
  }
  struct stat info {};
  if (stat(user.registry.c_str(), &info) == 0) user.last_use = ToFileTime(info.st_mtim);
  if (const auto file = ReadDamagedFile(user.registry, HiveBounds::kFileBytes)) {
    if (const std::int64_t written = NtHiveWritten(file->bytes)) user.last_use = written;
    if (kind_ == DiskKind::kWine && !user.id.empty() &&
        !EndsWithNoCase(WineRegistryBase(file->bytes), "\\" + user.id)) {
      return;  // a prefix keeps the registry of one user
    }
  }
  // The name of the account may be another one than that of the folder.
  std::string problem;
  const auto is_explorer = [](const std::string& path) {
    static const std::string kExplorer = "software\\microsoft\\windows\\currentversion\\explorer";
    return kExplorer.starts_with(FoldCase(path));
  };
  if (kind_ == DiskKind::kNt) {
    if (const auto hive = ReadRegistry(user.registry, is_explorer, &problem)) {
      const HiveKey* key =
          hive->root.Find("Software\\Microsoft\\Windows\\CurrentVersion\\Explorer");
      const std::string name = key == nullptr ? "" : key->Text("Logon User Name");
      if (!name.empty()) user.name = name;
    }
  }
  users_.push_back(std::move(user));
}

void OldDisk::AddListedUsers() {
  const HiveKey* list = machine_.Find(kind_ == DiskKind::kClassic ? kClassicProfiles : kNtProfiles);
  if (list == nullptr) return;
  const Variables variables = MachineVariables(facts_);
  for (const HiveKey& key : list->subkeys) {
    // The accounts of services have short numbers.
    const bool is_person = key.name.starts_with("S-1-5-21-") || key.name.starts_with("S-1-12-1-");
    if (kind_ != DiskKind::kClassic && !is_person) continue;
    DiskUser user;
    user.profile = WithoutBackslash(WithVariablesReplaced(key.Text("ProfileImagePath"), variables));
    user.id = kind_ == DiskKind::kClassic ? "" : key.name;
    user.name = kind_ == DiskKind::kClassic ? key.name : FileNameOf(user.profile);
    if (!user.profile.empty()) AddUser(std::move(user));
  }
}

// Where profiles lie. Their folder has another name in each language: without a list it can be any.
std::vector<std::string> OldDisk::ProfileFolders() const {
  const std::string drive = facts_.windows.substr(0, 2);
  std::vector<std::string> folders = {drive + "\\Documents and Settings", drive + "\\Users",
                                      facts_.windows + "\\Profiles"};
  if (kind_ != DiskKind::kNt || !users_.empty()) return folders;
  for (const FileInfo& entry : files_->List(drive + "\\")) {
    const std::string folder = drive + "\\" + entry.name;
    // The system's own folder keeps a hive for repairs, which is nobody's.
    if (entry.IsFolder() && !EqualsNoCase(folder, facts_.windows)) folders.push_back(folder);
  }
  return folders;
}

// Profiles that the list does not name, or cannot, since its hive is damaged.
void OldDisk::AddUnlistedUsers() {
  for (const std::string& folder : ProfileFolders()) {
    for (const FileInfo& entry : files_->List(folder)) {
      static const char* const kNobody[] = {"All Users",    "Default",        "Default User",
                                            "LocalService", "NetworkService", "Public"};
      const bool is_nobody =
          std::any_of(std::begin(kNobody), std::end(kNobody),
                      [&entry](const char* name) { return EqualsNoCase(entry.name, name); });
      if (entry.IsFolder() && !is_nobody)
        AddUser({entry.name, "", folder + "\\" + entry.name, "", {}});
    }
  }
}

// Without profiles all share the registry of the Windows folder.
void OldDisk::AddClassicUser() {
  DiskUser user;
  user.profile = facts_.windows;
  for (const auto& [key, value] :
       {std::pair("Network\\Logon", "username"),
        std::pair("Software\\Microsoft\\Windows\\CurrentVersion", "RegisteredOwner")}) {
    const HiveKey* found = machine_.Find(key);
    if (found != nullptr && user.name.empty()) user.name = found->Text(value);
  }
  if (user.name.empty()) user.name = "User";
  AddUser(std::move(user));
}

void OldDisk::FindUsers() {
  AddListedUsers();
  if (kind_ != DiskKind::kWine) AddUnlistedUsers();
  if (kind_ == DiskKind::kClassic && users_.empty()) AddClassicUser();
  if (kind_ == DiskKind::kWine && users_.empty()) {
    for (const FileInfo& entry : files_->List("C:\\users")) {
      if (!entry.IsFolder() || EqualsNoCase(entry.name, "Public")) continue;
      AddUser({entry.name, "", "C:\\users\\" + entry.name, "", {}});
    }
  }
  std::sort(users_.begin(), users_.end(), [](const DiskUser& a, const DiskUser& b) {
    return FoldCase(a.name) < FoldCase(b.name);
  });
}

const DiskUser* OldDisk::FindUser(const std::string& name, std::string* problem) const {
  std::string names;
  for (const DiskUser& user : users_) {
    if (!name.empty() && (EqualsNoCase(user.name, name) || EqualsNoCase(user.id, name) ||
                          EqualsNoCase(FileNameOf(user.profile), name))) {
      return &user;
    }
    names += (names.empty() ? "" : ", ") + user.name;
  }
  if (name.empty() && users_.size() == 1) return &users_.front();
  if (users_.empty()) {
    *problem = folder_ + " has no user whose registry is there.";
  } else if (name.empty()) {
    *problem = "the disk has several users; name one of them with --user: " + names + ".";
  } else {
    *problem = "the disk has no user \"" + name + "\"; it has " + names + ".";
  }
  return nullptr;
}

std::optional<HiveKey> OldDisk::ReadUser(const DiskUser& user, std::string* problem) {
  auto hive = ReadRegistry(user.registry, {}, problem);
  if (!hive) return std::nullopt;
  if (kind_ == DiskKind::kClassic) return ClassicUserKey(std::move(hive->root), user.name);
  return std::move(hive->root);
}

}  // namespace quorvale::host
