#include "support/classic_disk_host.h"

#include <algorithm>

#include "base/text.h"
#include "platform/host/code_page.h"
#include "platform/host/host_platform.h"
#include "support/classic_hive_writer.h"

namespace quorvale::test {
namespace {

std::string Ansi(const std::string& text) { return host::CodePage::Open(1252)->FromUtf8(text); }

// The key at a path below another one, made where it is missing. Good until the next key is made.
ClassicKey& KeyAt(ClassicKey& root, const std::string& path) {
  ClassicKey* key = &root;
  for (const std::string& part : Split(path, "\\")) {
    if (part.empty()) continue;
    const std::string name = Ansi(part);
    const auto found =
        std::find_if(key->subkeys.begin(), key->subkeys.end(),
                     [&name](const ClassicKey& sub) { return EqualsNoCase(sub.name, name); });
    if (found != key->subkeys.end()) {
      key = &*found;
      continue;
    }
    key->subkeys.push_back({name, {}, {}});
    key = &key->subkeys.back();
  }
  return *key;
}

void PutText(ClassicKey& key, const std::string& name, const std::string& text) {
  key.values.push_back({Ansi(name), registry_type::kString, Ansi(text)});
}

// What a registry has below a key, put below a key of the tree.
void Take(RunningMachine& computer, RegistryRoot root, const std::string& from, ClassicKey& to) {
  const std::string top = RegistryRootName(root) + (from.empty() ? "" : "\\" + from);
  for (const RegistryStatement& statement : computer.host().registry().Export(root, from)) {
    ClassicKey& key = KeyAt(to, statement.key.substr(std::min(top.size(), statement.key.size())));
    if (statement.kind != RegistryStatement::Kind::kValue) continue;
    std::string data = statement.data;
    if (statement.type == registry_type::kString) {
      const std::string text = Utf16BytesToUtf8(data);
      data = Ansi(text.substr(0, text.find('\0')));
    }
    key.values.push_back({Ansi(statement.name), statement.type, data});
  }
}

}  // namespace

std::string ClassicSystemHive(RunningMachine& computer, const MachinePlan& plan,
                              const std::vector<std::string>& listed_users) {
  const MachineLayout layout = *LayoutOf(plan.like, plan.user);
  ClassicKey root;
  Take(computer, RegistryRoot::kLocalMachine, "SOFTWARE", KeyAt(root, "Software"));
  Take(computer, RegistryRoot::kClassesRoot, "", KeyAt(root, "Software\\Classes"));
  const std::string current = "Software\\Microsoft\\Windows\\CurrentVersion";
  ClassicKey& version = KeyAt(root, current);
  PutText(version, "ProductName", "Microsoft Windows 98");
  PutText(version, "VersionNumber", "4." + std::to_string(layout.version.minor) + ".1998");
  PutText(version, "SystemRoot", layout.windows);
  PutText(version, "CommonFilesDir", layout.common_files);
  for (const std::string& user : listed_users) {
    PutText(KeyAt(root, current + "\\ProfileList\\" + user), "ProfileImagePath",
            layout.windows + "\\Profiles\\" + user);
  }
  const std::string control = "System\\CurrentControlSet\\control\\";
  PutText(KeyAt(root, control + "Nls\\Codepage"), "ACP", "1252");
  PutText(KeyAt(root, control + "ComputerName\\ComputerName"), "ComputerName", plan.computer);
  PutText(KeyAt(root, "Network\\Logon"), "username", plan.user);
  return ClassicHiveBytes(root);
}

std::string ClassicUserHive(RunningMachine& computer, const MachinePlan& plan,
                            const std::string& key) {
  const MachineLayout layout = *LayoutOf(plan.like, plan.user);
  ClassicKey root;
  Take(computer, RegistryRoot::kCurrentUser, "", KeyAt(root, key));
  ClassicKey& folders =
      KeyAt(root, key + "\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders");
  PutText(folders, "Personal", layout.documents);
  PutText(folders, "AppData", layout.app_data);
  PutText(folders, "Local AppData", layout.local_app_data);
  return ClassicHiveBytes(root);
}

}  // namespace quorvale::test
