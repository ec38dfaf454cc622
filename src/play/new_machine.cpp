#include "play/new_machine.h"

#include <cctype>
#include <filesystem>
#include <fstream>

#include "base/text.h"
#include "platform/registry_text.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

MachineLayout ClassicLayout(int minor) {
  MachineLayout layout;
  layout.version = {1, 4, minor, true};
  layout.windows = "C:\\WINDOWS";
  layout.profile = layout.windows;
  layout.app_data = layout.windows + "\\Application Data";
  layout.local_app_data = layout.windows + "\\Local Settings\\Application Data";
  layout.documents = "C:\\My Documents";
  return layout;
}

MachineLayout NtLayout(int major, int minor, const std::string& windows,
                       const std::string& profile) {
  MachineLayout layout;
  layout.version = {2, major, minor, true};
  layout.windows = windows;
  layout.profile = profile;
  layout.app_data = profile + "\\Application Data";
  layout.local_app_data = profile + "\\Local Settings\\Application Data";
  layout.documents = profile + "\\My Documents";
  return layout;
}

MachineLayout VistaLayout(const std::string& profile) {
  MachineLayout layout = NtLayout(6, 0, "C:\\Windows", profile);
  layout.app_data = profile + "\\AppData\\Roaming";
  layout.local_app_data = profile + "\\AppData\\Local";
  layout.documents = profile + "\\Documents";
  layout.cookies = layout.app_data + "\\Microsoft\\Windows\\Cookies";
  layout.programs = layout.app_data + "\\Microsoft\\Windows\\Start Menu\\Programs";
  return layout;
}

// Collects the statements of one registry root.
class RegistryWriter {
 public:
  void Key(const std::string& key) {
    RegistryStatement statement;
    statement.kind = RegistryStatement::Kind::kKey;
    statement.key = key_ = key;
    statements_.push_back(statement);
  }
  void String(const std::string& name, const std::string& text,
              std::uint32_t type = registry_type::kString) {
    RegistryStatement statement;
    statement.kind = RegistryStatement::Kind::kValue;
    statement.key = key_;
    statement.name = name;
    statement.type = type;
    statement.data = Utf8ToUtf16Bytes(text) + std::string(2, '\0');
    statements_.push_back(statement);
  }
  std::string Text() const {
    return WriteRegistryText(statements_, RegistryTextVersion::kVersion5,
                             [](const std::string& text) { return text; });
  }

 private:
  std::string key_;
  std::vector<RegistryStatement> statements_;
};

std::string CurrentUserText(const MachinePlan& plan, const MachineLayout& layout) {
  RegistryWriter writer;
  if (!plan.mail_program_started) return writer.Text();
  if (!layout.IsVista()) {
    writer.Key("HKEY_CURRENT_USER\\Identities");
    writer.String("Default User ID", plan.identity);
    writer.String("Last Username", "Main Identity");
    writer.String("Last User ID", plan.identity);
    writer.Key(IdentityKey(plan));
    writer.String("Username", "Main Identity");
    writer.String("User ID", plan.identity);
    writer.Key(IdentityKey(plan) + "\\Software\\Microsoft\\Outlook Express\\5.0");
    const std::string store = MailStoreFolder(plan, layout);
    const std::string below_profile = layout.profile + "\\";
    if (layout.IsNtFamily() && store.starts_with(below_profile)) {
      writer.String("Store Root", "%UserProfile%\\" + store.substr(below_profile.size()),
                    registry_type::kExpandString);
    } else {
      writer.String("Store Root", store);
    }
    writer.Key("HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook Express");
    writer.String("DefaultIdentity", plan.identity);
    writer.Key("HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts");
  }
  writer.Key("HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\Main");
  writer.String("Start Page", "http://start.example.org/");
  writer.Key("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings");
  writer.String("User Agent", "Mozilla/4.0 (compatible)");
  return writer.Text();
}

std::string LocalMachineText(const MachinePlan& plan) {
  RegistryWriter writer;
  if (!plan.mail_program_started) return writer.Text();
  writer.Key("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer");
  writer.String("Version", "6.0.2900.2180");
  writer.Key(
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\OUTLOOK.EXE");
  writer.String("", "C:\\Program Files\\Microsoft Office\\OUTLOOK.EXE");
  return writer.Text();
}

// The Outlook that came with the time of a system.
std::string OutlookVersion(const std::string& like) {
  if (like == "vista") return "12";
  if (like == "xp") return "11";
  return like == "2000" ? "10" : "9";
}

std::string ClassesText(const MachinePlan& plan) {
  RegistryWriter writer;
  if (!plan.mail_program_started) return writer.Text();
  writer.Key("HKEY_CLASSES_ROOT\\regfile\\shell\\open\\command");
  writer.String("", "regedit.exe \"%1\"");
  writer.Key("HKEY_CLASSES_ROOT\\http\\shell\\open\\command");
  writer.String("", "\"C:\\Program Files\\Internet Explorer\\iexplore.exe\" -nohome");
  writer.Key("HKEY_CLASSES_ROOT\\Outlook.Application\\CurVer");
  writer.String("", "Outlook.Application." + OutlookVersion(plan.like));
  return writer.Text();
}

std::string MachineIni(const MachinePlan& plan, const MachineLayout& layout) {
  const auto number = [](int value) { return std::to_string(value); };
  std::string text;
  const auto line = [&text](const std::string& content) { text += content + "\n"; };
  line("# A computer in a folder. Names stand left of the equal sign, facts right of it.");
  line("[system]");
  line("version = " + number(layout.version.platform_id) + "." + number(layout.version.major) +
       "." + number(layout.version.minor));
  line("user = " + plan.user);
  line("computer = " + plan.computer);
  line("codepage = " + number(plan.codepage));
  line("[environment]");
  line("appdata = " + layout.app_data);
  line("UserProfile = " + layout.profile);
  if (layout.IsNtFamily()) line("USERNAME = " + plan.user);
  line("windir = " + layout.windows);
  line("[folders]");
  line("2 = " + layout.programs);
  line("5 = " + layout.documents);
  line("6 = " + layout.favorites);
  line("16 = " + layout.desktop);
  line("26 = " + layout.app_data);
  line("28 = " + layout.local_app_data);
  line("33 = " + layout.cookies);
  line("43 = " + layout.common_files);
  line("[drives]");
  for (const PlannedDrive& drive : plan.drives) {
    line(drive.letter + " = " + drive.kind + ", drive_" + FoldCase(drive.letter));
  }
  line("[processes]");
  line("explorer.exe = 1234");
  line("[services]");
  line("Schedule = running");
  return text;
}

// The folders that this system shows under their former names too.
void LinkFormerFolders(const std::string& host_folder, const MachineLayout& layout) {
  if (!layout.IsVista()) return;
  const fs::path profile = MachineHostPath(host_folder, layout.profile);
  std::error_code error;
  fs::create_directory_symlink("AppData/Roaming", profile / "Application Data", error);
  fs::create_directory_symlink("AppData/Local", profile / "Local Settings", error);
  fs::create_directory_symlink(".", profile / "AppData/Local/Application Data", error);
}

bool WriteText(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  return file.good();
}

}  // namespace

std::optional<MachineLayout> LayoutOf(const std::string& like, const std::string& user) {
  MachineLayout layout;
  if (like == "95") {
    layout = ClassicLayout(0);
  } else if (like == "98") {
    layout = ClassicLayout(10);
  } else if (like == "me") {
    layout = ClassicLayout(90);
  } else if (like == "nt40") {
    layout = NtLayout(4, 0, "C:\\WINNT", "C:\\WINNT\\Profiles\\" + user);
  } else if (like == "2000") {
    layout = NtLayout(5, 0, "C:\\WINNT", "C:\\Documents and Settings\\" + user);
  } else if (like == "xp") {
    layout = NtLayout(5, 1, "C:\\WINDOWS", "C:\\Documents and Settings\\" + user);
  } else if (like == "vista") {
    layout = VistaLayout("C:\\Users\\" + user);
  } else {
    return std::nullopt;
  }
  layout.desktop = layout.profile + "\\Desktop";
  layout.favorites = layout.profile + "\\Favorites";
  if (layout.programs.empty()) layout.programs = layout.profile + "\\Start Menu\\Programs";
  if (layout.cookies.empty()) layout.cookies = layout.profile + "\\Cookies";
  layout.common_files = "C:\\Program Files\\Common Files";
  return layout;
}

std::string IdentityKey(const MachinePlan& plan) {
  return "HKEY_CURRENT_USER\\Identities\\" + plan.identity;
}

std::string MailStoreFolder(const MachinePlan& plan, const MachineLayout& layout) {
  return layout.local_app_data + "\\Identities\\" + plan.identity + "\\Microsoft\\Outlook Express";
}

std::string MachineHostPath(const std::string& host_folder, const std::string& path) {
  const std::string letter = FoldCase(path.substr(0, 1));
  std::string rest = path.size() > 3 ? ReplaceAll(path.substr(3), "\\", "/") : "";
  return host_folder + "/drive_" + letter + (rest.empty() ? "" : "/" + rest);
}

std::string MakeMachine(const std::string& host_folder, const MachinePlan& plan) {
  const std::optional<MachineLayout> layout = LayoutOf(plan.like, plan.user);
  if (!layout) return "\"" + plan.like + "\" is no system that a machine can be like.";
  if (plan.user.empty() || plan.user.find_first_of("\\/:*?\"<>|\n\r=") != std::string::npos) {
    return "\"" + plan.user + "\" is no name for a user.";
  }
  const fs::path root(host_folder);
  std::error_code error;
  if (fs::exists(root / "machine.ini", error)) {
    return host_folder + " holds a machine already.";
  }
  std::vector<std::string> folders = {
      layout->windows,   layout->app_data,     layout->local_app_data,
      layout->documents, layout->desktop,      layout->favorites,
      layout->cookies,   layout->common_files, layout->programs};
  if (plan.mail_program_started) {
    folders.push_back(layout->app_data + "\\Microsoft\\Address Book");
    if (!layout->IsVista()) folders.push_back(MailStoreFolder(plan, *layout));
  }
  for (const PlannedDrive& drive : plan.drives) {
    fs::create_directories(MachineHostPath(host_folder, drive.letter + ":\\"), error);
    if (error) return host_folder + " cannot be made: " + error.message() + ".";
  }
  for (const std::string& folder : folders) {
    fs::create_directories(MachineHostPath(host_folder, folder), error);
    if (error) return host_folder + " cannot be made: " + error.message() + ".";
  }
  LinkFormerFolders(host_folder, *layout);
  fs::create_directories(root / "registry", error);
  const bool written =
      WriteText(root / "registry" / "HKEY_CURRENT_USER.reg", CurrentUserText(plan, *layout)) &&
      WriteText(root / "registry" / "HKEY_LOCAL_MACHINE.reg", LocalMachineText(plan)) &&
      WriteText(root / "registry" / "HKEY_CLASSES_ROOT.reg", ClassesText(plan)) &&
      WriteText(root / "machine.ini", MachineIni(plan, *layout));
  return written ? "" : host_folder + " cannot be written.";
}

}  // namespace quorvale
