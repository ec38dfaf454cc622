#include "play/old_disk_sample.h"

#include <filesystem>

#include "base/text.h"
#include "platform/host/host_platform.h"
#include "play/hive_writer.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;
using host::HiveKey;
using host::HiveValue;

// The key at a path below another one, made where it is missing. Good until the next key is made.
HiveKey& KeyAt(HiveKey& root, const std::string& path) {
  HiveKey* key = &root;
  for (const std::string& name : Split(path, "\\")) {
    if (name.empty()) continue;
    HiveKey* next = nullptr;
    for (HiveKey& sub : key->subkeys) {
      if (EqualsNoCase(sub.name, name)) next = &sub;
    }
    if (next == nullptr) {
      key->subkeys.emplace_back();
      next = &key->subkeys.back();
      next->name = name;
    }
    key = next;
  }
  return *key;
}

void PutText(HiveKey& key, const std::string& name, const std::string& text,
             std::uint32_t type = registry_type::kString) {
  key.values.push_back({name, type, Utf8ToUtf16Bytes(text) + std::string(2, '\0')});
}

void PutNumber(HiveKey& key, const std::string& name, std::uint32_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>(number >> (8 * i) & 0xFF));
  key.values.push_back({name, registry_type::kDword, bytes});
}

// What a registry has below a key, put below a key of the tree.
void Take(RunningMachine& computer, RegistryRoot root, const std::string& from, HiveKey& to) {
  const std::string top = RegistryRootName(root) + (from.empty() ? "" : "\\" + from);
  for (const RegistryStatement& statement : computer.host().registry().Export(root, from)) {
    HiveKey& key = KeyAt(to, statement.key.substr(std::min(top.size(), statement.key.size())));
    if (statement.kind == RegistryStatement::Kind::kValue) {
      key.values.push_back({statement.name, statement.type, statement.data});
    }
  }
}

std::string ProfileOf(const OldDiskPlan& plan, const std::string& user) {
  return LayoutOf(plan.machine.like, user)->profile;
}

void PutUsers(HiveKey& software, const OldDiskPlan& plan, const MachineLayout& layout) {
  HiveKey& list = KeyAt(software, "Microsoft\\Windows NT\\CurrentVersion\\ProfileList");
  std::vector<std::string> users = plan.other_users;
  users.insert(users.begin(), plan.machine.user);
  int number = 1003;
  for (const std::string& user : users) {
    HiveKey& key =
        KeyAt(list, "S-1-5-21-1085031214-1563985344-725345543-" + std::to_string(number++));
    const std::string profile = ProfileOf(plan, user);
    // NT 4 kept the profiles in the system's own folder.
    const bool in_windows = profile.starts_with(layout.windows + "\\");
    PutText(key, "ProfileImagePath",
            in_windows ? "%SystemRoot%" + profile.substr(layout.windows.size())
                       : "%SystemDrive%" + profile.substr(2),
            registry_type::kExpandString);
  }
  PutText(KeyAt(list, "S-1-5-18"), "ProfileImagePath", layout.windows + "\\system32\\config",
          registry_type::kExpandString);
}

std::string ProductName(const std::string& like) {
  if (like == "vista") return "Windows Vista (TM) Home Basic";
  if (like == "xp") return "Microsoft Windows XP";
  return like == "2000" ? "Microsoft Windows 2000" : "";
}

HiveKey SoftwareHive(RunningMachine& computer, const OldDiskPlan& plan,
                     const MachineLayout& layout) {
  HiveKey software;
  Take(computer, RegistryRoot::kLocalMachine, "SOFTWARE", software);
  Take(computer, RegistryRoot::kClassesRoot, "", KeyAt(software, "Classes"));
  HiveKey& version = KeyAt(software, "Microsoft\\Windows NT\\CurrentVersion");
  // NT 4 named no product.
  const std::string product = ProductName(plan.machine.like);
  if (!product.empty()) PutText(version, "ProductName", product);
  PutText(version, "CurrentVersion",
          std::to_string(layout.version.major) + "." + std::to_string(layout.version.minor));
  PutText(version, "SystemRoot", layout.windows);
  HiveKey& folders = KeyAt(software, "Microsoft\\Windows\\CurrentVersion");
  PutText(folders, "ProgramFilesDir", "C:\\Program Files");
  PutText(folders, "CommonFilesDir", layout.common_files);
  PutUsers(software, plan, layout);
  return software;
}

HiveKey SystemHive(const OldDiskPlan& plan) {
  HiveKey system;
  PutNumber(KeyAt(system, "Select"), "Current", 2);
  PutText(KeyAt(system, "ControlSet001\\Control\\Nls\\CodePage"), "ACP", "437");
  PutText(KeyAt(system, "ControlSet002\\Control\\Nls\\CodePage"), "ACP", "1252");
  PutText(KeyAt(system, "ControlSet002\\Control\\ComputerName\\ComputerName"), "ComputerName",
          plan.machine.computer);
  if (plan.machine.like == "nt40") return system;  // it had no mount manager
  HiveKey& mounted = KeyAt(system, "MountedDevices");
  for (const PlannedDrive& drive : plan.machine.drives) {
    const std::string device = drive.kind == "cdrom" ? "\\??\\IDE#CdRomDrive#5&1" : "";
    // A volume of a disk: the disk's signature and where the volume begins.
    const std::string volume = std::string("\x12\x34\x56\x78\x00\x7E\x00\x00\x00\x00\x00\x00", 12);
    mounted.values.push_back({"\\DosDevices\\" + drive.letter + ":", registry_type::kBinary,
                              device.empty() ? volume : Utf8ToUtf16Bytes(device)});
  }
  return system;
}

// The folders of the user as the system keeps them: with a variable, and once more without.
void PutFolders(HiveKey& user, const MachineLayout& layout) {
  HiveKey with_variables, plain;
  for (const auto& [name, path] :
       {std::pair("Personal", layout.documents), std::pair("Desktop", layout.desktop),
        std::pair("Favorites", layout.favorites), std::pair("Cookies", layout.cookies),
        std::pair("Programs", layout.programs), std::pair("AppData", layout.app_data),
        std::pair("Local AppData", layout.local_app_data)}) {
    const std::string below = path.substr(layout.profile.size());
    PutText(with_variables, name, "%USERPROFILE%" + below, registry_type::kExpandString);
    PutText(plain, name, path);
  }
  const std::string key = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\";
  KeyAt(user, key + "User Shell Folders").values = std::move(with_variables.values);
  KeyAt(user, key + "Shell Folders").values = std::move(plain.values);
}

std::string WriteHive(RunningMachine& computer, const std::string& path, const HiveKey& root) {
  const fs::path host = MachineHostPath(computer.folder(), path);
  std::error_code error;
  fs::create_directories(host.parent_path(), error);
  if (error) return host.parent_path().string() + " cannot be made: " + error.message() + ".";
  return WriteNtHive(host.string(), root);
}

}  // namespace

std::string WriteHives(RunningMachine& computer, const OldDiskPlan& plan) {
  const std::optional<MachineLayout> layout = LayoutOf(plan.machine.like, plan.machine.user);
  if (!layout || !layout->IsNtFamily()) return plan.machine.like + " has no such hives.";
  const std::string config = layout->windows + "\\system32\\config\\";
  std::string problem =
      WriteHive(computer, config + "software", SoftwareHive(computer, plan, *layout));
  if (problem.empty()) problem = WriteHive(computer, config + "system", SystemHive(plan));
  HiveKey user;
  Take(computer, RegistryRoot::kCurrentUser, "", user);
  PutFolders(user, *layout);
  if (problem.empty()) problem = WriteHive(computer, layout->profile + "\\NTUSER.DAT", user);
  for (const std::string& name : plan.other_users) {
    HiveKey other;
    PutFolders(other, *LayoutOf(plan.machine.like, name));
    if (problem.empty())
      problem = WriteHive(computer, ProfileOf(plan, name) + "\\NTUSER.DAT", other);
  }
  return problem;
}

}  // namespace quorvale
