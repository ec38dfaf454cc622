// The machine folder that is made for a user of an old disk.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/paths.h"
#include "base/text.h"
#include "platform/host/code_page.h"
#include "platform/host/disk/old_disk.h"
#include "platform/host/host_file.h"
#include "platform/host/registry_store.h"

namespace quorvale::host {
namespace {

constexpr char kProgramFolder[] = "program";  // beside machine.ini: what the program itself writes

// Lines of machine.ini. What a forged disk says cannot begin a line of its own.
class IniWriter {
 public:
  void Section(const std::string& name) { text_ += "[" + name + "]\n"; }
  void Entry(const std::string& name, const std::string& value) {
    const auto is_control = [](char c) { return c >= 0 && c < ' '; };
    if (std::any_of(value.begin(), value.end(), is_control)) return;
    text_ += name + " = " + value + "\n";
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

const char* WordOf(DriveKind kind) {
  if (kind == DriveKind::kCdRom) return "cdrom";
  return kind == DriveKind::kRemovable ? "removable" : "fixed";
}

// A letter that the computer did not know; '\0' if it knew them all.
char FreeLetter(const std::map<char, DriveKind>& known, const std::map<char, std::string>& here) {
  for (char letter = 'Y'; letter > 'C'; --letter) {
    if (known.count(letter) == 0 && here.count(letter) == 0) return letter;
  }
  return '\0';
}

// A path that a line of machine.ini can hold.
bool FitsInLine(const std::string& path) {
  const auto is_control = [](char c) { return c >= 0 && c < ' '; };
  return IsUtf8(path) && !path.ends_with(' ') && std::none_of(path.begin(), path.end(), is_control);
}

std::string MakeFolders(const std::string& folder) {
  for (const std::string& path :
       {folder, folder + "/" + kProgramFolder, folder + "/" + kProgramFolder + "/Application Data",
        folder + "/" + kProgramFolder + "/Temp"}) {
    if (mkdir(path.c_str(), 0777) != 0 && errno != EEXIST) {
      return path + " cannot be made: " + std::strerror(errno) + ".";
    }
  }
  return "";
}

// The registry of one user as the living system shows it, from the parts on the disk.
std::vector<RegistryStatement> Statements(const HiveKey& machine, const HiveKey& user,
                                          const HiveKey* user_classes) {
  std::vector<RegistryStatement> statements;
  const std::string local = "HKEY_LOCAL_MACHINE";
  for (const HiveKey& key : machine.subkeys) {
    if (!EqualsNoCase(key.name, "Software")) {
      AppendStatements(key, local + "\\" + key.name, &statements);
      continue;
    }
    for (const HiveKey& sub : key.subkeys) {
      const bool is_classes = EqualsNoCase(sub.name, "Classes");
      AppendStatements(sub, is_classes ? "HKEY_CLASSES_ROOT" : local + "\\SOFTWARE\\" + sub.name,
                       &statements);
    }
  }
  if (const HiveKey* set = CurrentControlSet(machine)) {
    AppendStatements(*set, local + "\\SYSTEM\\CurrentControlSet", &statements);
  }
  AppendStatements(user, "HKEY_CURRENT_USER", &statements);
  if (const HiveKey* classes = user.Find("Software\\Classes")) {
    AppendStatements(*classes, "HKEY_CLASSES_ROOT", &statements);
  }
  if (user_classes != nullptr) AppendStatements(*user_classes, "HKEY_CLASSES_ROOT", &statements);
  return statements;
}

}  // namespace

std::string OldDisk::WriteRegistry(const DiskUser& user, const HiveKey& hive,
                                   const std::string& folder) {
  std::optional<Hive> classes;
  if (kind_ == DiskKind::kNt) {
    const Variables variables = UserVariables(facts_, hive, user.name, user.profile);
    const std::string path = variables.at("localappdata") + "\\Microsoft\\Windows\\UsrClass.dat";
    std::string problem;
    const auto wanted = [](const std::string& key) {
      return IsHiveKeyName(key) && !EqualsNoCase(key, "CLSID") && !EqualsNoCase(key, "Interface");
    };
    if (IsFile(path)) {
      classes = ReadRegistry(
          HostPath(path),
          [&](const std::string& key) { return key.find('\\') != key.npos || wanted(key); },
          &problem);
      if (!classes) Remark(problem);
    }
  }
  const auto code_page = CodePage::Open(facts_.codepage);
  HostRegistryStore store(folder, *code_page);
  store.Merge(Statements(machine_, hive, classes ? &classes->root : nullptr));
  std::string error;
  return store.Flush(&error) ? "" : error + ".";
}

std::string OldDisk::WriteMachine(const DiskUser& user, const std::string& folder) {
  struct stat info {};
  if (stat((folder + "/machine.ini").c_str(), &info) == 0)
    return folder + " holds a machine already.";
  for (const auto& [letter, path] : drives_) {
    if (!FitsInLine(path)) return "machine.ini cannot hold the name of the folder " + path + ".";
  }
  std::string problem;
  const auto hive = ReadUser(user, &problem);
  if (!hive) return problem;
  if (!CodePage::Open(facts_.codepage)) {
    Remark("Code page " + std::to_string(facts_.codepage) + " is not known here; 1252 is taken.");
    facts_.codepage = 1252;
  }
  const char own = FreeLetter(facts_.drives, drives_);
  if (own == '\0') return "the disk's computer knew every drive letter; none is left.";
  problem = MakeFolders(folder);
  if (problem.empty()) problem = WriteRegistry(user, *hive, folder);
  if (!problem.empty()) return problem;
  std::string error;
  return ReplaceHostFile(folder + "/machine.ini", MachineText(user, *hive, own), &error)
             ? ""
             : error + ".";
}

std::string OldDisk::MachineText(const DiskUser& user, const HiveKey& hive, char own) const {
  const Variables variables = UserVariables(facts_, hive, user.name, user.profile);
  const SystemVersion& version = facts_.version;
  IniWriter ini;
  ini.Section("system");
  ini.Entry("version", std::to_string(version.platform_id) + "." + std::to_string(version.major) +
                           "." + std::to_string(version.minor));
  ini.Entry("user", user.name);
  ini.Entry("computer", facts_.computer);
  ini.Entry("codepage", std::to_string(facts_.codepage));
  ini.Section("environment");
  const std::string program = std::string(1, own) + ":";
  // Where the program keeps its own things: the disk is never written on.
  ini.Entry("appdata", program + "\\Application Data");
  ini.Entry("temp", program + "\\Temp");
  ini.Entry("UserProfile", user.profile);
  ini.Entry("USERNAME", user.name);
  for (const char* name :
       {"windir", "SystemRoot", "SystemDrive", "ProgramFiles", "ALLUSERSPROFILE", "LOCALAPPDATA"}) {
    const auto found = variables.find(FoldCase(name));
    if (found != variables.end()) {
      ini.Entry(name, WithVariablesReplaced(found->second, variables));
    }
  }
  ini.Section("folders");
  for (const auto& [number, path] :
       SpecialFolders(facts_, machine_, hive, user.profile, variables)) {
    ini.Entry(std::to_string(number), path);
  }
  ini.Section("drives");
  for (const auto& [letter, kind] : facts_.drives) {
    if (drives_.count(letter) == 0) ini.Entry(std::string(1, letter), WordOf(kind));
  }
  for (const auto& [letter, path] : drives_) {
    ini.Entry(std::string(1, letter), "fixed, " + path + ", readonly");
  }
  ini.Entry(std::string(1, own), std::string("fixed, ") + kProgramFolder);
  return ini.text();
}

std::vector<char> OldDisk::MissingDrives() const {
  std::vector<char> missing;
  for (const auto& [letter, kind] : facts_.drives) {
    if (kind == DriveKind::kFixed && drives_.count(letter) == 0) missing.push_back(letter);
  }
  return missing;
}

}  // namespace quorvale::host
