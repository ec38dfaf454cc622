#include "platform/host/disk/disk_facts.h"

#include <cstdio>
#include <cstdlib>

#include "base/paths.h"
#include "base/text.h"

namespace quorvale::host {
namespace {

constexpr char kNtVersion[] = "Software\\Microsoft\\Windows NT\\CurrentVersion";
constexpr char kVersion[] = "Software\\Microsoft\\Windows\\CurrentVersion";
constexpr char kShellFolders[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr char kUserShellFolders[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

struct FolderRule {
  int number;
  const char* name;  // of its value in the registry
  bool common;       // of all users: named by the computer's registry
  // Where it is unless told otherwise, below the profile; behind a leading "\" below the drive.
  const char* classic;
  const char* nt5;
  const char* nt6;
};
constexpr FolderRule kFolders[] = {
    {2, "Programs", false, "Start Menu\\Programs", "Start Menu\\Programs",
     "AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs"},
    {5, "Personal", false, "\\My Documents", "My Documents", "Documents"},
    {6, "Favorites", false, "Favorites", "Favorites", "Favorites"},
    {7, "Startup", false, "", "", ""},
    {8, "Recent", false, "Recent", "Recent", "AppData\\Roaming\\Microsoft\\Windows\\Recent"},
    {9, "SendTo", false, "", "", ""},
    {11, "Start Menu", false, "", "", ""},
    {13, "My Music", false, "", "", ""},
    {14, "My Video", false, "", "", ""},
    {16, "Desktop", false, "Desktop", "Desktop", "Desktop"},
    {21, "Templates", false, "", "", ""},
    {26, "AppData", false, "Application Data", "Application Data", "AppData\\Roaming"},
    {28, "Local AppData", false, "Local Settings\\Application Data",
     "Local Settings\\Application Data", "AppData\\Local"},
    {32, "Cache", false, "", "", ""},
    {33, "Cookies", false, "Cookies", "Cookies", "AppData\\Roaming\\Microsoft\\Windows\\Cookies"},
    {34, "History", false, "", "", ""},
    {39, "My Pictures", false, "", "", ""},
    {22, "Common Start Menu", true, "", "", ""},
    {23, "Common Programs", true, "", "", ""},
    {24, "Common Startup", true, "", "", ""},
    {25, "Common Desktop", true, "", "", ""},
    {31, "Common Favorites", true, "", "", ""},
    {35, "Common AppData", true, "", "", ""},
    {46, "Common Documents", true, "", "", ""},
};

bool IsDrivePath(const std::string& path) {
  return path.size() >= 3 &&
         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z')) &&
         path[1] == ':' && path[2] == '\\';
}

std::string TextAt(const HiveKey& root, const std::string& key, const std::string& value) {
  const HiveKey* found = root.Find(key);
  return found == nullptr ? "" : found->Text(value);
}

// The number at the start of a text; 0 if there is none.
int NumberOf(const std::string& text) { return static_cast<int>(Val(text)); }

// "5.1" or "4.10.1998" to its first two numbers.
void ReadVersion(const std::string& text, SystemVersion* version) {
  const std::vector<std::string> parts = Split(text, ".");
  if (parts.size() < 2 || NumberOf(parts[0]) <= 0) return;
  version->major = NumberOf(parts[0]);
  version->minor = NumberOf(parts[1]);
}

void ReadSystem(const HiveKey& machine, DiskKind kind, DiskFacts* facts) {
  const bool classic = kind == DiskKind::kClassic;
  const std::string key = classic ? kVersion : kNtVersion;
  facts->version = classic ? SystemVersion{1, 4, 10, true} : SystemVersion{2, 5, 1, true};
  ReadVersion(TextAt(machine, key, classic ? "VersionNumber" : "CurrentVersion"), &facts->version);
  // Since the tenth Windows the former value says 6.3 for ever.
  if (const HiveKey* version = machine.Find(kNtVersion); version != nullptr && !classic) {
    if (const auto major = version->Number("CurrentMajorVersionNumber")) {
      facts->version.major = static_cast<int>(*major & 0xFFFF);
      facts->version.minor =
          static_cast<int>(version->Number("CurrentMinorVersionNumber").value_or(0) & 0xFFFF);
    }
  }
  std::string product = TextAt(machine, key, "ProductName");
  if (product.empty()) product = TextAt(machine, kVersion, "Version");
  // NT 4 and its forerunners name no product.
  if (product.empty() && kind == DiskKind::kNt && facts->version.major < 5) {
    product = "Microsoft Windows NT " + std::to_string(facts->version.major) + "." +
              std::to_string(facts->version.minor);
  }
  if (!product.empty()) facts->product = product;
  const std::string windows = TextAt(machine, key, "SystemRoot");
  if (IsDrivePath(windows)) facts->windows = WithoutBackslash(windows);
}

// The drive letters that the mount manager knew: a device's name in UTF-16 for drives with media
// that go, the signature of a disk for all others.
void ReadDrives(const HiveKey& machine, DiskFacts* facts) {
  const HiveKey* mounted = machine.Find("System\\MountedDevices");
  if (mounted != nullptr) {
    for (const HiveValue& value : mounted->values) {
      const std::string name = FoldCase(value.name);
      if (!name.starts_with("\\dosdevices\\") || name.size() != 14 || name[13] != ':') continue;
      const char letter = static_cast<char>(name[12] & ~0x20);
      if (letter < 'A' || letter > 'Y') continue;
      const std::string device = FoldCase(Utf16BytesToUtf8(value.data));
      DriveKind drive = DriveKind::kFixed;
      if (device.find("cdrom") != std::string::npos) {
        drive = DriveKind::kCdRom;
      } else if (device.find("removable") != std::string::npos ||
                 device.find("fdc#") != std::string::npos) {
        drive = DriveKind::kRemovable;
      }
      facts->drives[letter] = drive;
    }
  }
  facts->drives[facts->SystemDrive()] = DriveKind::kFixed;
}

std::string DefaultFolder(const FolderRule& rule, const DiskFacts& facts,
                          const std::string& profile) {
  const bool classic = facts.version.platform_id == 1;
  const std::string below = classic ? rule.classic : facts.version.major >= 6 ? rule.nt6 : rule.nt5;
  if (below.empty()) return "";
  if (below[0] == '\\') return facts.windows.substr(0, 2) + below;
  return WithBackslash(profile) + below;
}

// A folder as one of the two keys names it: "" if it does not, or by a variable nobody knows.
std::string NamedFolder(const HiveKey& root, const char* key, const char* name,
                        const Variables& variables) {
  const std::string path = WithVariablesReplaced(TextAt(root, key, name), variables);
  const bool usable = IsDrivePath(path) || IsNetworkPath(path);
  return usable && path.find('%') == std::string::npos ? WithoutBackslash(path) : "";
}

// A folder as the two keys name it, else where that system has it.
std::string FolderOf(const FolderRule& rule, const DiskFacts& facts, const HiveKey& root,
                     const std::string& profile, const Variables& variables) {
  std::string path = NamedFolder(root, kUserShellFolders, rule.name, variables);
  if (path.empty()) path = NamedFolder(root, kShellFolders, rule.name, variables);
  return path.empty() ? DefaultFolder(rule, facts, profile) : path;
}

std::string UserFolder(const DiskFacts& facts, const HiveKey& user, const std::string& profile,
                       const Variables& variables, const std::string& name) {
  for (const FolderRule& rule : kFolders) {
    if (rule.name == name) return FolderOf(rule, facts, user, profile, variables);
  }
  return "";
}

}  // namespace

std::string WithVariablesReplaced(const std::string& text, const Variables& variables) {
  std::string result;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t start = text.find('%', at);
    const std::size_t end =
        start == std::string::npos ? std::string::npos : text.find('%', start + 1);
    if (end == std::string::npos) break;
    result += text.substr(at, start - at);
    const auto found = variables.find(FoldCase(text.substr(start + 1, end - start - 1)));
    if (found == variables.end()) {
      // The second sign may open the next name.
      result += text.substr(start, end - start);
      at = end;
      continue;
    }
    result += found->second;
    at = end + 1;
  }
  return result + text.substr(at);
}

const HiveKey* CurrentControlSet(const HiveKey& machine) {
  const HiveKey* select = machine.Find("System\\Select");
  const std::uint32_t number = select == nullptr ? 1 : select->Number("Current").value_or(1);
  char name[32];
  std::snprintf(name, sizeof(name), "System\\ControlSet%03u", static_cast<unsigned>(number % 1000));
  const HiveKey* set = machine.Find(name);
  return set != nullptr ? set : machine.Find("System\\CurrentControlSet");
}

DiskFacts ReadDiskFacts(const HiveKey& machine, DiskKind kind, const std::string& windows) {
  DiskFacts facts;
  facts.windows = windows;
  ReadSystem(machine, kind, &facts);
  if (const HiveKey* set = CurrentControlSet(machine)) {
    const int codepage = NumberOf(TextAt(*set, "Control\\Nls\\CodePage", "ACP"));
    if (codepage > 0) facts.codepage = codepage;
    const std::string computer =
        TextAt(*set, "Control\\ComputerName\\ComputerName", "ComputerName");
    if (!computer.empty()) facts.computer = computer;
  }
  const Variables variables = MachineVariables(facts);
  const std::string drive = facts.windows.substr(0, 2);
  facts.program_files = NamedFolder(machine, kVersion, "ProgramFilesDir", variables);
  if (facts.program_files.empty()) facts.program_files = drive + "\\Program Files";
  facts.common_files = NamedFolder(machine, kVersion, "CommonFilesDir", variables);
  if (facts.common_files.empty()) facts.common_files = facts.program_files + "\\Common Files";
  ReadDrives(machine, &facts);
  return facts;
}

Variables MachineVariables(const DiskFacts& facts) {
  const std::string drive = facts.windows.substr(0, 2);
  return {{"systemroot", facts.windows},
          {"windir", facts.windows},
          {"systemdrive", drive},
          {"homedrive", drive},
          {"programfiles", facts.program_files},
          {"commonprogramfiles", facts.common_files}};
}

Variables UserVariables(const DiskFacts& facts, const HiveKey& user, const std::string& name,
                        const std::string& profile) {
  Variables variables = MachineVariables(facts);
  if (const HiveKey* own = user.Find("Environment")) {
    for (const HiveValue& value : own->values) {
      const std::string text = own->Text(value.name);
      if (!text.empty()) variables.emplace(FoldCase(value.name), text);
    }
  }
  variables["userprofile"] = profile;
  variables["username"] = name;
  variables["homepath"] = profile.size() > 2 ? profile.substr(2) : "\\";
  const std::string parent = ParentFolder(profile);
  const bool vista = facts.version.major >= 6;
  variables.emplace("allusersprofile",
                    vista ? facts.windows.substr(0, 2) + "\\ProgramData" : parent + "\\All Users");
  variables.emplace("public", parent + "\\Public");
  for (const auto& [variable, value] :
       {std::pair("appdata", "AppData"), std::pair("localappdata", "Local AppData")}) {
    const std::string folder = UserFolder(facts, user, profile, variables, value);
    if (!folder.empty()) variables.emplace(variable, folder);
  }
  return variables;
}

std::map<int, std::string> SpecialFolders(const DiskFacts& facts, const HiveKey& machine,
                                          const HiveKey& user, const std::string& profile,
                                          const Variables& variables) {
  std::map<int, std::string> folders;
  for (const FolderRule& rule : kFolders) {
    const std::string path =
        FolderOf(rule, facts, rule.common ? machine : user, profile, variables);
    if (!path.empty()) folders[rule.number] = path;
  }
  folders[36] = facts.windows;
  folders[38] = facts.program_files;
  folders[40] = profile;
  folders[43] = facts.common_files;
  return folders;
}

}  // namespace quorvale::host
