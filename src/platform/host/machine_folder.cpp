#include "platform/host/machine_folder.h"

#include <sys/stat.h>

#include <set>

#include "base/dates.h"
#include "base/text.h"
#include "platform/host/host_file.h"
#include "platform/host/ini_text.h"

namespace quorvale::host {
namespace {

bool IsFolder(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// Takes machine.ini line by line; the first broken line ends it.
class Reader {
 public:
  Reader(const std::string& folder, MachineFolder* machine) : machine_(machine) {
    machine_->path = folder;
  }

  // False, with the reason in message(), if the line cannot be understood.
  bool Read(const IniLine& line);
  const std::string& message() const { return message_; }

 private:
  bool Fail(const std::string& message) {
    message_ = message;
    return false;
  }
  bool EnterSection(const std::string& name);
  bool ReadEntry(const std::string& name, const std::string& value);
  bool ReadSystem(const std::string& name, const std::string& value);
  bool ReadVersion(const std::string& value);
  bool ReadFolder(const std::string& name, const std::string& value);
  bool ReadDrive(const std::string& name, const std::string& value);
  bool ReadDriveFolder(const std::string& folder, MachineDrive* drive);
  bool ReadProcess(const std::string& name, const std::string& value);
  bool ReadService(const std::string& name, const std::string& value);
  bool ReadClock(const std::string& name, const std::string& value);
  bool ReadDisc(const std::string& name, const std::string& value);

  MachineFolder* machine_;
  int line_ = 0;
  std::string section_;
  std::set<std::string> seen_;  // "section\name" of the entries that may stand only once
  std::string message_;
};

bool Reader::Read(const IniLine& line) {
  line_ = line.number;
  if (line.kind == IniLine::Kind::kBroken) return Fail(line.name);
  if (line.kind == IniLine::Kind::kEntry) {
    if (line.name.empty()) return Fail("there is no name before the \"=\"");
    return ReadEntry(line.name, line.value);
  }
  if (line.text.back() != ']') return Fail("a section name lacks its \"]\"");
  return EnterSection(line.name);
}

bool Reader::EnterSection(const std::string& name) {
  static const char* const kSections[] = {"system",    "environment", "folders", "drives",
                                          "processes", "services",    "clock",   "disc"};
  section_ = FoldCase(name);
  for (const char* known : kSections) {
    if (section_ == known) return true;
  }
  return Fail("there is no section \"" + name + "\"");
}

bool Reader::ReadEntry(const std::string& name, const std::string& value) {
  if (section_.empty()) return Fail("the line stands before the first section");
  // Two copies of a program may run; everything else stands once.
  if (section_ != "processes" && !seen_.insert(section_ + "\\" + FoldCase(name)).second) {
    return Fail("\"" + name + "\" stands twice in [" + section_ + "]");
  }
  if (section_ == "system") return ReadSystem(FoldCase(name), value);
  if (section_ == "folders") return ReadFolder(name, value);
  if (section_ == "drives") return ReadDrive(name, value);
  if (section_ == "processes") return ReadProcess(name, value);
  if (section_ == "services") return ReadService(name, value);
  if (section_ == "clock") return ReadClock(FoldCase(name), value);
  if (section_ == "disc") return ReadDisc(FoldCase(name), value);
  machine_->environment.emplace_back(name, value);
  return true;
}

bool Reader::ReadSystem(const std::string& name, const std::string& value) {
  if (name == "version") return ReadVersion(value);
  if (name == "user") {
    machine_->user = value;
    return true;
  }
  if (name == "computer") {
    machine_->computer = value;
    return true;
  }
  if (name == "codepage") {
    if (!ParseNumber(value, &machine_->codepage) || machine_->codepage <= 0) {
      return Fail("\"" + value + "\" is no code page number");
    }
    machine_->codepage_line = line_;
    return true;
  }
  if (name == "elevation") {
    if (value != "refused" && value != "accepted") {
      return Fail("elevation is \"accepted\" or \"refused\", not \"" + value + "\"");
    }
    machine_->elevation_refused = value == "refused";
    return true;
  }
  return Fail("[system] has no \"" + name + "\"");
}

bool Reader::ReadVersion(const std::string& value) {
  const std::vector<std::string> parts = Split(value, ".");
  SystemVersion version;
  if (parts.size() != 3 || !ParseNumber(parts[0], &version.platform_id) ||
      !ParseNumber(parts[1], &version.major) || !ParseNumber(parts[2], &version.minor)) {
    return Fail("\"" + value + "\" is no version; one looks like 2.5.1");
  }
  machine_->version = version;
  return true;
}

bool Reader::ReadFolder(const std::string& name, const std::string& value) {
  int number = 0;
  if (!ParseNumber(name, &number)) return Fail("\"" + name + "\" is no special folder number");
  machine_->folders[number] = value;
  return true;
}

bool Reader::ReadDrive(const std::string& name, const std::string& value) {
  const std::string letter = name.size() == 2 && name[1] == ':' ? name.substr(0, 1) : name;
  const char upper = letter.size() == 1 ? static_cast<char>(letter[0] & ~0x20) : '\0';
  if (upper < 'A' || upper > 'Z') return Fail("\"" + name + "\" is no drive letter");
  if (upper == 'Z') return Fail("Z: is the host's own file system");
  if (machine_->drives.count(upper) != 0) return Fail("drive " + name + " stands twice");

  static const std::pair<const char*, DriveKind> kKinds[] = {{"fixed", DriveKind::kFixed},
                                                             {"removable", DriveKind::kRemovable},
                                                             {"remote", DriveKind::kRemote},
                                                             {"cdrom", DriveKind::kCdRom},
                                                             {"ramdisk", DriveKind::kRamDisk}};
  std::vector<std::string> parts = Split(value, ",");
  for (std::string& part : parts) part = Stripped(part);
  MachineDrive drive;
  bool known = false;
  for (const auto& [word, kind] : kKinds) {
    if (parts[0] == word) {
      drive.kind = kind;
      known = true;
    }
  }
  if (!known) return Fail("\"" + parts[0] + "\" is no kind of drive");
  if (parts.size() > 2 && parts.back() == "readonly") {
    drive.read_only = true;
    parts.pop_back();
    // A folder of the host may have commas in its name.
    const std::string folder = value.substr(value.find(',') + 1);
    parts = {parts[0], Stripped(folder.substr(0, folder.rfind(',')))};
  }
  if (parts.size() > 3) return Fail("a drive has a kind, a folder and its free bytes, no more");
  if (parts.size() == 3) {
    std::uint64_t bytes = 0;
    if (!ParseNumber(parts[2], &bytes)) return Fail("\"" + parts[2] + "\" is no number of bytes");
    drive.free_bytes = bytes;
  }
  if (parts.size() > 1 && !ReadDriveFolder(parts[1], &drive)) return false;
  machine_->drives[upper] = drive;
  return true;
}

bool Reader::ReadDriveFolder(const std::string& folder, MachineDrive* drive) {
  if (folder.empty()) return true;
  if (drive->read_only && folder.starts_with("/")) {
    drive->folder = folder;
    if (!IsFolder(folder)) return Fail("there is no folder \"" + folder + "\"");
    return true;
  }
  if (folder == "." || folder == ".." || folder.find('/') != std::string::npos) {
    return Fail("\"" + folder + "\" is not the name of a folder beside machine.ini");
  }
  drive->folder = machine_->path + "/" + folder;
  if (!IsFolder(drive->folder)) return Fail("there is no folder \"" + folder + "\"");
  return true;
}

bool Reader::ReadProcess(const std::string& name, const std::string& value) {
  ProcessInfo process;
  process.image = name;
  if (!ParseNumber(value, &process.id) || process.id == 0) {
    return Fail("\"" + value + "\" is no process id");
  }
  machine_->processes.push_back(process);
  return true;
}

bool Reader::ReadService(const std::string& name, const std::string& value) {
  if (value != "running" && value != "stopped") {
    return Fail("a service is \"running\" or \"stopped\", not \"" + value + "\"");
  }
  machine_->services.push_back({name, value == "running"});
  return true;
}

bool Reader::ReadClock(const std::string& name, const std::string& value) {
  if (name != "now") return Fail("[clock] has no \"" + name + "\"");
  machine_->now = ParseLocalTime(value);
  if (!machine_->now) {
    return Fail("\"" + value + "\" is no moment; one looks like 2026-11-14 22:05:09");
  }
  return true;
}

bool Reader::ReadDisc(const std::string& name, const std::string& value) {
  MachineDisc& disc = machine_->disc;
  if (name == "writer") {
    if (!IsDiscWriter(value)) {
      return Fail("\"" + value + "\" is no disc writer; one is file:disc.iso, /dev/sr0 or drives");
    }
    disc.writer = value;
    return true;
  }
  if (name == "size") {
    if (!ParseNumber(value, &disc.size)) return Fail("\"" + value + "\" is no number of bytes");
    return true;
  }
  if (name == "media") {
    int media = 0;
    if (!ParseNumber(value, &media) || media < 0) return Fail("\"" + value + "\" is no number");
    disc.media = media;
    return true;
  }
  return Fail("[disc] has no \"" + name + "\"");
}

}  // namespace

std::string MachineError::Text() const {
  if (line == 0) return file + ": " + message;
  return file + ", line " + std::to_string(line) + ": " + message;
}

std::optional<MachineFolder> ReadMachineFolder(const std::string& folder, MachineError* error) {
  if (!IsFolder(folder)) {
    *error = {folder, 0, "there is no such machine folder"};
    return std::nullopt;
  }
  const std::string file = folder + "/machine.ini";
  const std::optional<std::string> text = ReadHostFile(file);
  if (!text) {
    *error = {file, 0, "the file is missing or cannot be read"};
    return std::nullopt;
  }
  MachineFolder machine;
  Reader reader(folder, &machine);
  IniReader lines(*text);
  for (IniLine line; lines.Next(&line);) {
    if (!reader.Read(line)) {
      *error = {file, line.number, reader.message()};
      return std::nullopt;
    }
  }
  return machine;
}

bool IsDiscWriter(const std::string& text) {
  return text == "drives" || text.starts_with("/dev/") ||
         (text.starts_with("file:") && text.size() > 5 && !text.ends_with("/"));
}

}  // namespace quorvale::host
