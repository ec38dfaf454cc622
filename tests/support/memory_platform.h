// A computer in memory, for tests that need no disk: it runs wherever the tests run, starts empty,
// and each part lets a test look at what became of it.
//
//   MemoryPlatform computer;
//   computer.files.Put("C:\\Data\\a.txt", "content");
//   Program program(computer.platform());
//
// It does what a sound computer does. What goes wrong is FaultyPlatform's part, around this one;
// here are only the hooks that have to sit inside a file (how long a read is, what happens before
// it, where the power fails).
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "platform/ui/headless/headless_ui.h"
#include "support/system_threads.h"

namespace quorvale {

// One drive, C:. Folders are listed in the order of their names' small letters.
class MemoryFiles : public Files {
 public:
  MemoryFiles();

  // Making and looking, for the test. Parent folders are made. Without a time a file gets the next
  // second of a clock that only this moves.
  void Put(const std::string& path, const std::string& bytes = "x",
           std::uint32_t attributes = file_attribute::kArchive, FileTime modified = 0);
  void PutFolder(const std::string& path);
  void Remove(const std::string& path);
  // How the present content of a file is made smaller or larger.
  void Resize(const std::string& path, std::size_t size);
  bool Has(const std::string& path) const;
  std::string Bytes(const std::string& path) const;  // "" if it is not there
  // Of all files together.
  std::uint64_t UsedBytes() const { return used_; }
  // The full paths of all files, in order.
  std::vector<std::string> AllFiles() const;

  // Bytes that all files together may hold; writing more gives kNoSpace.
  std::uint64_t room = ~0ull;
  // Writing fails (kFailed) once so many bytes were written; counts down.
  std::uint64_t writes_fail_after = ~0ull;
  // Reads give at most so many bytes at once.
  std::size_t longest_read = ~std::size_t{0};
  // Called before each read, with the path and the offset.
  std::function<void(const std::string& path, std::uint64_t offset)> before_read;
  // Called after a file has taken its name from another one.
  std::function<void(const std::string& path)> after_replace;
  // Asked once before each change of the drive (create, write, remove, replace, make a folder). On
  // false nothing happens: to a process that was killed it is as if it had stopped there.
  std::function<bool()> may_change;

  std::optional<FileInfo> Stat(const std::string& path) override;
  std::vector<FileInfo> List(const std::string& folder) override;
  bool CanList(const std::string& folder) override;
  std::unique_ptr<InputFile> OpenRead(const std::string& path) override;
  std::unique_ptr<OutputFile> Create(const std::string& path, FileStatus* status) override;
  FileStatus MakeFolder(const std::string& path) override;
  FileStatus RemoveFile(const std::string& path, bool force) override;
  FileStatus RemoveFolder(const std::string& path, bool force) override;
  FileStatus Replace(const std::string& from, const std::string& to) override;
  FileStatus SetModified(const std::string& path, FileTime modified) override;
  FileStatus SetAttributes(const std::string& path, std::uint32_t attributes) override;
  std::string ShortPath(const std::string& path) override { return path; }
  DriveKind KindOfDrive(const std::string& drive) override;
  bool DriveExists(const std::string& drive) override;
  std::optional<DiskSpace> Space(const std::string& path) override;

 private:
  friend class MemoryInput;
  friend class MemoryOutput;
  struct Node {
    FileInfo info;
    std::string path;
    std::shared_ptr<std::string> bytes;  // null: a folder
  };

  const Node* Find(const std::string& path) const;
  bool MayChange() const { return !may_change || may_change(); }

  std::map<std::string, Node> nodes_;  // by folded path
  std::uint64_t used_ = 0;
  FileTime clock_ = 128'000'000'000'000'000;
};

// Keys and values keep the order and the case in which they were made.
class MemoryRegistry : public RegistryStore {
 public:
  bool KeyExists(RegistryRoot root, const std::string& subkey) override;
  long CreateKey(RegistryRoot root, const std::string& subkey) override;
  long QueryValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                  RegistryValue* value) override;
  long SetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                std::uint32_t type, const std::string& data) override;
  long DeleteValue(RegistryRoot root, const std::string& subkey, const std::string& name) override;
  long QueryText(RegistryRoot root, const std::string& subkey, const std::string& name,
                 std::string* text) override;
  long SetText(RegistryRoot root, const std::string& subkey, const std::string& name,
               std::uint32_t type, const std::string& text) override;
  long ListSubkeys(RegistryRoot root, const std::string& subkey,
                   std::vector<std::string>* names) override;
  long ListValues(RegistryRoot root, const std::string& subkey,
                  std::vector<RegistryValue>* values) override;

 private:
  struct Key {
    std::vector<std::string> subkeys;
    std::vector<RegistryValue> values;
  };
  // Null if there is none.
  Key* Find(RegistryRoot root, const std::string& subkey);

  std::map<std::pair<RegistryRoot, std::string>, Key> keys_;  // by folded subkey
};

// The clock moves by Sleep alone; the code page is Latin-1.
class MemorySystem : public SystemInfo {
 public:
  SystemVersion Version() override { return version; }
  std::string UserName() override { return "Anna"; }
  std::string ComputerName() override { return "OFFICE"; }
  std::string Environment(const std::string& name) override;
  std::string ProgramFolder() override { return "C:\\Program Files\\Quorvale"; }
  std::string CommandLine() override { return command_line; }
  bool PreviousInstanceRuns() override { return false; }
  bool HoldInstanceMutex(const std::string& /*name*/) override { return true; }
  LocalTime Now() override;
  LocalTime ToLocal(FileTime time) override;
  std::uint64_t Ticks() override { return ticks; }
  void Sleep(int milliseconds) override { ticks += static_cast<std::uint64_t>(milliseconds); }
  // Other bytes with each call, the same in each run.
  std::string RandomBytes(std::size_t count) override;
  // English as in the United States.
  std::string TimeText(const LocalTime& time) override;
  std::string WeekdayName(int weekday) override;
  std::string SystemFolder() override { return "C:\\Windows\\system32"; }
  std::string ToAnsi(const std::string& utf8) override;
  std::string FromAnsi(const std::string& bytes) override;

  SystemVersion version{2, 5, 1, true};
  std::string command_line;
  std::map<std::string, std::string> environment;  // by name, as it was given
  int hours_east = 2;                              // of UTC, where the clock stands
  FileTime start = 128'000'000'000'000'000;        // the moment at which ticks are 0
  std::uint64_t ticks = 0;                         // milliseconds

 private:
  std::minstd_rand random_{2006};
};

// Keeps what was started. A run ends after `polls` questions; what it does then, if anything, is
// `on_end`'s part.
class MemoryShell : public Shell {
 public:
  std::string SpecialFolder(int folder) override;
  RunId Run(const std::string& command_line, WindowStyle style) override;
  int Execute(const std::string& verb, const std::string& file, const std::string& parameters,
              const std::string& folder, int show, RunId* run) override;
  bool IsRunning(RunId run) override;
  bool CreateLink(const ShellLink& link) override;
  bool Operate(FileOperation operation, const std::string& source, const std::string& target,
               int flags) override;
  void ShowHelp(const std::string& help_file, const std::string& topic) override;
  void PlaySoundFile(const std::string& path) override { sounds.push_back(path); }

  std::map<int, std::string> folders;  // special folder number to path
  int polls = 2;
  std::map<RunId, int> left;  // questions until each run ends
  // The command line of Run; "verb|file|parameters|folder|show" of Execute.
  std::vector<std::string> commands;
  std::vector<WindowStyle> styles;                         // of Run
  std::function<void(const std::string& command)> on_end;  // once, with what `commands` has of it
  // "code|source|target|flags" of each file operation; what it does, if anything.
  std::vector<std::string> operations;
  std::function<bool(FileOperation, const std::string&, const std::string&)> on_operation;
  std::vector<ShellLink> links;
  std::vector<std::string> help;  // "file|topic"
  std::vector<std::string> sounds;

 private:
  RunId last_run_ = 0;
};

class MemoryProcesses : public Processes {
 public:
  std::vector<ProcessInfo> List() override { return running; }
  bool WindowExists(const std::string& title) override { return windows.count(title) != 0; }
  void ActivatePreviousInstance() override { ++activations; }

  std::vector<ProcessInfo> running;
  std::set<std::string> windows;
  int activations = 0;
};

// Each service that there is takes every command.
class MemoryServices : public Services {
 public:
  std::string State(const std::string& name) override;
  bool Start(const std::string& name) override;
  bool Control(const std::string& name, int code) override;

  std::map<std::string, std::string> states;  // "Running", "Stopped", "Paused", by name
  std::vector<std::string> told;              // "start NAME", "1 NAME", in order
};

// A server that takes what it is sent.
class MemoryFtp : public FtpClient {
 public:
  // `files` must live as long as this object.
  explicit MemoryFtp(Files& files) : files_(files) {}

  FtpState State() override { return connected_ ? FtpState::kConnected : FtpState::kIdle; }
  void Listen(FtpEvents events) override { events_ = std::move(events); }
  bool Connect(const std::string& host, int port, const std::string& user,
               const std::string& password) override;
  std::string CurrentFolder() override { return connected_ ? folder_ : ""; }
  bool ChangeFolder(const std::string& folder) override;
  bool Send(const std::string& path, const std::string& remote_name) override;
  bool Rename(const std::string& name, const std::string& new_name) override;
  bool Remove(const std::string& name) override;
  void Disconnect() override { connected_ = false; }

  std::map<std::string, std::string> received;  // by "/folder/name"

 private:
  Files& files_;
  FtpEvents events_;
  bool connected_ = false;
  std::string folder_ = "/";
};

// One writer, where `has_drive` says so.
class MemoryDiscs : public DiscWriter {
 public:
  explicit MemoryDiscs(Files& files) : files_(files) {}

  bool Initialise() override { return has_drive; }
  std::vector<DiscDrive> Drives() override;
  bool Open(int index) override { return has_drive && index == 0; }
  bool MediumLoaded() override { return free_bytes > 0; }
  std::uint64_t FreeBytes() override { return free_bytes; }
  bool Burn(const std::string& path, const std::string& name, const DiscEvents& events) override;
  void Eject() override { free_bytes = 0; }

  bool has_drive = false;
  std::uint64_t free_bytes = 0;               // of the medium in the drive; 0: there is none
  std::map<std::string, std::string> burned;  // by name

 private:
  Files& files_;
};

class MemoryScheduler : public TaskScheduler {
 public:
  explicit MemoryScheduler(SystemInfo& system) : system_(system) {}

  std::vector<std::string> Names() override;
  std::optional<ScheduledTask> Read(const std::string& name) override;
  TaskCreation Create(const ScheduledTask& task) override;
  bool Delete(const std::string& name) override;

  std::vector<ScheduledTask> tasks;

 private:
  std::vector<ScheduledTask>::iterator Find(const std::string& name);

  SystemInfo& system_;
};

class MemoryPlatform {
 public:
  MemoryPlatform();
  MemoryPlatform(const MemoryPlatform&) = delete;
  MemoryPlatform& operator=(const MemoryPlatform&) = delete;

  // The bundle for a program; it must not outlive this object.
  Platform& platform() { return platform_; }

  MemoryRegistry registry;
  MemoryFiles files;
  MemorySystem system;
  MemoryShell shell;
  MemoryProcesses processes;
  MemoryServices services;
  MemoryFtp ftp{files};
  MemoryDiscs discs{files};
  MemoryScheduler scheduler{system};
  SystemThreads threads;
  ui::HeadlessUi ui;

 private:
  Platform platform_;
};

}  // namespace quorvale
