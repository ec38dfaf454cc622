// A small computer in memory, for tests of the portable toolkit: it runs wherever the tests run.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "platform/files.h"
#include "platform/registry_store.h"
#include "platform/services.h"
#include "platform/shell.h"
#include "platform/system_info.h"

namespace quorvale {

// The clock moves by Sleep alone; the code page is Latin-1.
class FakeSystem : public SystemInfo {
 public:
  SystemVersion Version() override { return {2, 5, 1, true}; }
  std::string UserName() override { return "Anna"; }
  std::string ComputerName() override { return "OFFICE"; }
  std::string Environment(const std::string&) override { return ""; }
  std::string ProgramFolder() override { return "C:\\Program Files\\Quorvale"; }
  std::string CommandLine() override { return ""; }
  bool PreviousInstanceRuns() override { return false; }
  bool HoldInstanceMutex(const std::string&) override { return true; }
  LocalTime Now() override { return {}; }
  LocalTime ToLocal(FileTime) override { return {}; }
  std::uint64_t Ticks() override { return ticks; }
  void Sleep(int milliseconds) override { ticks += static_cast<std::uint64_t>(milliseconds); }
  std::string RandomBytes(std::size_t count) override { return std::string(count, 'r'); }
  std::string TimeText(const LocalTime&) override { return ""; }
  std::string WeekdayName(int) override { return ""; }
  std::string ToAnsi(const std::string& utf8) override {
    const std::string units = Utf8ToUtf16Bytes(utf8);
    std::string bytes;
    for (std::size_t i = 0; i < units.size(); i += 2) {
      bytes += units[i + 1] == '\0' ? units[i] : '?';
    }
    return bytes;
  }
  std::string FromAnsi(const std::string& bytes) override {
    std::string utf8;
    for (char c : bytes) AppendUtf8(&utf8, static_cast<unsigned char>(c));
    return utf8;
  }

  std::uint64_t ticks = 0;
};

// One flat list of keys. Every key is under HKEY_CURRENT_USER.
class FakeRegistryStore : public RegistryStore {
 public:
  static std::string Folded(const std::string& subkey) {
    return FoldCase(WithoutBackslash(subkey));
  }
  bool KeyExists(RegistryRoot, const std::string& subkey) override {
    return keys.count(Folded(subkey)) != 0;
  }
  long CreateKey(RegistryRoot, const std::string& subkey) override {
    if (refuses) return registry_status::kDenied;
    keys[Folded(subkey)];
    return registry_status::kOk;
  }
  long QueryValue(RegistryRoot, const std::string& subkey, const std::string& name,
                  RegistryValue* value) override {
    if (refuses) return registry_status::kDenied;
    for (const RegistryValue& stored : keys[Folded(subkey)]) {
      if (!EqualsNoCase(stored.name, name)) continue;
      *value = stored;
      return registry_status::kOk;
    }
    return registry_status::kNotFound;
  }
  long SetValue(RegistryRoot, const std::string& subkey, const std::string& name,
                std::uint32_t type, const std::string& data) override {
    if (refuses) return registry_status::kDenied;
    if (!KeyExists({}, subkey)) return registry_status::kNotFound;
    std::vector<RegistryValue>& values = keys[Folded(subkey)];
    for (RegistryValue& stored : values) {
      if (!EqualsNoCase(stored.name, name)) continue;
      stored.type = type;
      stored.data = data;
      return registry_status::kOk;
    }
    values.push_back({name, type, data});
    return registry_status::kOk;
  }
  long DeleteValue(RegistryRoot, const std::string& subkey, const std::string& name) override {
    std::erase_if(keys[Folded(subkey)],
                  [&](const RegistryValue& stored) { return EqualsNoCase(stored.name, name); });
    return registry_status::kOk;
  }
  long ListSubkeys(RegistryRoot, const std::string& subkey,
                   std::vector<std::string>* names) override {
    if (!KeyExists({}, subkey)) return registry_status::kNotFound;
    const std::string start = Folded(subkey) + "\\";
    for (const auto& [key, values] : keys) {
      if (key.starts_with(start) && !Contains(key.substr(start.size()), "\\")) {
        names->push_back(key.substr(start.size()));
      }
    }
    return registry_status::kOk;
  }
  long ListValues(RegistryRoot, const std::string& subkey,
                  std::vector<RegistryValue>* values) override {
    if (!KeyExists({}, subkey)) return registry_status::kNotFound;
    *values = keys[Folded(subkey)];
    return registry_status::kOk;
  }

  std::map<std::string, std::vector<RegistryValue>> keys;
  bool refuses = false;
};

// Files in memory, listed in the order of their names.
class MemoryFiles : public Files {
 public:
  struct Node {
    FileInfo info;
    std::string bytes;
  };

  // Makes a file and the folders above it.
  void Put(const std::string& path, const std::string& bytes = "x") {
    PutFolder(ParentFolder(path));
    Node& node = nodes[FoldCase(path)];
    node.info.name = FileNameOf(path);
    node.info.size = bytes.size();
    node.bytes = bytes;
  }
  void PutFolder(const std::string& path) {
    if (path.size() <= 2) return;
    PutFolder(ParentFolder(path));
    Node& node = nodes[FoldCase(path)];
    node.info.name = FileNameOf(path);
    node.info.attributes |= file_attribute::kFolder;
  }
  std::string Bytes(const std::string& path) { return nodes.at(FoldCase(path)).bytes; }

  std::optional<FileInfo> Stat(const std::string& path) override {
    if (IsRoot(path)) return RootInfo();
    const Node* node = Find(path);
    if (node == nullptr) return std::nullopt;
    return node->info;
  }
  std::vector<FileInfo> List(const std::string& folder) override {
    std::vector<FileInfo> entries;
    const std::string start = FoldCase(WithBackslash(folder));
    for (const auto& [path, node] : nodes) {
      if (path.starts_with(start) && !Contains(path.substr(start.size()), "\\")) {
        entries.push_back(node.info);
      }
    }
    return entries;
  }
  std::unique_ptr<InputFile> OpenRead(const std::string& path) override {
    const Node* node = Find(path);
    if (node == nullptr || node->info.IsFolder() || locked.count(FoldCase(path)) != 0) {
      return nullptr;
    }
    return std::make_unique<Input>(node->bytes, fail_reads);
  }
  std::unique_ptr<OutputFile> Create(const std::string& path, FileStatus* status) override {
    const bool allowed = locked.count(FoldCase(path)) == 0 && Stat(ParentFolder(path));
    if (status != nullptr) *status = allowed ? FileStatus::kOk : FileStatus::kDenied;
    if (!allowed) return nullptr;
    Put(path, "");
    return std::make_unique<Output>(*this, nodes[FoldCase(path)]);
  }
  FileStatus MakeFolder(const std::string& path) override {
    ++folders_made;
    if (!Stat(ParentFolder(path))) return FileStatus::kNotFound;
    if (refuse_folders) return FileStatus::kDenied;
    PutFolder(path);
    return FileStatus::kOk;
  }
  FileStatus RemoveFile(const std::string& path, bool) override {
    if (locked.count(FoldCase(path)) != 0) return FileStatus::kDenied;
    return nodes.erase(FoldCase(path)) != 0 ? FileStatus::kOk : FileStatus::kNotFound;
  }
  FileStatus RemoveFolder(const std::string& path, bool) override {
    if (!List(path).empty()) return FileStatus::kFailed;
    return nodes.erase(FoldCase(path)) != 0 ? FileStatus::kOk : FileStatus::kNotFound;
  }
  FileStatus Replace(const std::string& from, const std::string& to) override {
    if (locked.count(FoldCase(to)) != 0) return FileStatus::kDenied;
    Node node = nodes.at(FoldCase(from));
    nodes.erase(FoldCase(from));
    node.info.name = FileNameOf(to);
    nodes[FoldCase(to)] = node;
    return FileStatus::kOk;
  }
  FileStatus SetModified(const std::string& path, FileTime modified) override {
    Find(path)->info.modified = modified;
    return FileStatus::kOk;
  }
  FileStatus SetAttributes(const std::string& path, std::uint32_t attributes) override {
    Find(path)->info.attributes = attributes;
    return FileStatus::kOk;
  }
  std::string ShortPath(const std::string& path) override { return path; }
  DriveKind KindOfDrive(const std::string&) override { return DriveKind::kFixed; }
  bool DriveExists(const std::string&) override { return true; }
  std::optional<DiskSpace> Space(const std::string&) override { return DiskSpace{free_bytes, 0}; }

  std::map<std::string, Node> nodes;  // by folded path
  std::set<std::string> locked;       // folded paths
  std::uint64_t free_bytes = 1u << 30;
  int folders_made = 0;
  bool refuse_folders = false;
  bool fail_reads = false;

 private:
  class Input : public InputFile {
   public:
    Input(const std::string& bytes, bool fails) : bytes_(bytes), fails_(fails) {}
    std::ptrdiff_t Read(void* buffer, std::size_t count) override {
      if (fails_) return -1;
      const std::size_t done = bytes_.copy(static_cast<char*>(buffer), count, at_);
      at_ += done;
      return static_cast<std::ptrdiff_t>(done);
    }
    bool Seek(std::uint64_t offset) override {
      at_ = static_cast<std::size_t>(offset);
      return at_ <= bytes_.size();
    }
    std::uint64_t Size() const override { return bytes_.size(); }

   private:
    const std::string bytes_;
    const bool fails_;
    std::size_t at_ = 0;
  };

  // Writes at the end.
  class Output : public OutputFile {
   public:
    Output(MemoryFiles& files, Node& node) : files_(files), node_(node) {}
    FileStatus Write(const void* buffer, std::size_t count) override {
      if (count > files_.free_bytes) return FileStatus::kNoSpace;
      files_.free_bytes -= count;
      node_.bytes.append(static_cast<const char*>(buffer), count);
      node_.info.size = node_.bytes.size();
      return FileStatus::kOk;
    }
    bool Seek(std::uint64_t) override { return false; }
    FileStatus Close() override { return FileStatus::kOk; }

   private:
    MemoryFiles& files_;
    Node& node_;
  };

  static bool IsRoot(const std::string& path) { return WithoutBackslash(path).size() == 2; }
  static FileInfo RootInfo() {
    FileInfo info;
    info.attributes = file_attribute::kFolder;
    return info;
  }
  Node* Find(const std::string& path) {
    const auto found = nodes.find(FoldCase(WithoutBackslash(path)));
    return found == nodes.end() ? nullptr : &found->second;
  }
};

// Keeps what was started; each run ends after `polls` questions.
class FakeShell : public Shell {
 public:
  std::string SpecialFolder(int) override { return ""; }
  RunId Run(const std::string& command_line, WindowStyle style) override {
    if (refuses) return 0;
    commands.push_back(command_line);
    styles.push_back(style);
    left[++last_run] = polls;
    return last_run;
  }
  int Execute(const std::string& verb, const std::string& file, const std::string& parameters,
              const std::string& folder, int show, RunId* run) override {
    if (refuses) return 5;
    commands.push_back(verb + "|" + file + "|" + parameters + "|" + folder + "|" +
                       std::to_string(show));
    left[++last_run] = polls;
    if (run != nullptr) *run = last_run;
    return 42;
  }
  bool IsRunning(RunId run) override { return --left[run] >= 0; }
  bool CreateLink(const ShellLink&) override { return false; }
  bool Operate(FileOperation operation, const std::string& source, const std::string& target,
               int flags) override {
    operations.push_back(std::to_string(static_cast<int>(operation)) + "|" + source + "|" + target +
                         "|" + std::to_string(flags));
    return !refuses && (!on_operation || on_operation(operation, source, target));
  }
  void ShowHelp(const std::string&, const std::string&) override {}
  void PlaySoundFile(const std::string&) override {}

  // "code|source|target|flags" of each file operation; what it does, if anything.
  std::vector<std::string> operations;
  std::function<bool(FileOperation, const std::string&, const std::string&)> on_operation;
  std::vector<std::string> commands;
  std::vector<WindowStyle> styles;
  std::map<RunId, int> left;
  RunId last_run = 0;
  int polls = 2;
  bool refuses = false;
};

class FakeServices : public Services {
 public:
  std::string State(const std::string& name) override {
    const auto found = states.find(name);
    return found == states.end() ? "" : found->second;
  }
  bool Start(const std::string& name) override {
    told.push_back("start " + name);
    return accepts;
  }
  bool Control(const std::string& name, int code) override {
    told.push_back(std::to_string(code) + " " + name);
    return accepts;
  }

  std::map<std::string, std::string> states;
  std::vector<std::string> told;
  bool accepts = true;
};

}  // namespace quorvale
