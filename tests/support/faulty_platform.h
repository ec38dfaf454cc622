// A computer on which things go wrong: a wrapper around any Platform that passes every call on,
// counts them, and lets the one fail that a test names.
//
//   FaultyPlatform faults(real);               // real: a Platform that outlives it
//   Program program(faults.platform());
//   faults.FailCall(0);                        // count only
//   RunABackup(program);
//   const std::uint64_t calls = faults.calls();
//   for (std::uint64_t n = 1; n <= calls; ++n) {
//     faults.FailCall(n);                      // the Nth call from here on fails, once
//     RunABackup(program);                     // ... and nothing may be lost or left half done
//     SCOPED_TRACE(faults.failed_call());      // "Files::Create C:\Out\a.obk"
//   }
//
// A call fails the way its interface says that it does: kFailed, null, false, nothing, "", an empty
// list, kDenied of the registry, 0 of a started program. It then does nothing: the computer behind
// is not asked. Calls that cannot fail (clock, texts, the state of a run, sizes, sounds, the user
// interface) are passed on and not counted.
//
// Beside that each part has faults with a name, which stay until they are taken back: a file that
// is in use, a program that does not start, a scheduler that refuses. They count as answered calls.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace quorvale {

// The count of calls, which all parts of one computer share. Calls may come from several threads;
// what arranges or reads it does so while none is under way.
class CallCount {
 public:
  // Counts from 0 again; the Nth call from now on fails, once. 0: none does.
  void FailCall(std::uint64_t number);
  // Calls since then, the failed one included.
  std::uint64_t calls() const { return calls_; }
  // The call that was made to fail, with what it was about: "Files::Create C:\a.txt". "" if none
  // was so far.
  const std::string& failed_call() const { return failed_call_; }

  // Counts a call. True if it has to fail.
  bool Fails(const char* call, const std::string& about);

 private:
  std::atomic<std::uint64_t> calls_{0};
  std::uint64_t failing_ = 0;
  std::string failed_call_;
};

class FaultyFiles : public Files {
 public:
  // Both must live as long as this object.
  FaultyFiles(Files& real, CallCount& count) : real_(real), count_(count) {}

  // Another program holds the file open: it can be neither read, written, replaced nor removed.
  void SetInUse(const std::string& path, bool in_use);
  // Reading the file fails once this many bytes of it were passed, also where it is open already;
  // nothing: it can be read again.
  void FailReadsAfter(const std::string& path, std::optional<std::uint64_t> bytes);
  // The entries of the folder cannot be read, as those of a junction of Windows Vista: its files
  // can.
  void DenyList(const std::string& folder);
  // The folder lists these as well, behind what it holds. No other call knows of them.
  void AlsoList(const std::string& folder, std::vector<FileInfo> entries);

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
  std::string ShortPath(const std::string& path) override;
  DriveKind KindOfDrive(const std::string& drive) override;
  bool DriveExists(const std::string& drive) override;
  std::optional<DiskSpace> Space(const std::string& path) override;

  // For the files that are open: the offset from which reads of this one fail, if they do.
  std::optional<std::uint64_t> ReadFault(const std::string& path) const;
  // Files that were opened, by OpenRead or Create, and are not closed yet.
  int open_files() const { return open_files_; }

 private:
  bool IsInUse(const std::string& path) const;

  Files& real_;
  CallCount& count_;
  std::atomic<int> open_files_{0};
  std::set<std::string> in_use_;  // the keys of all four: folded paths
  std::set<std::string> closed_;
  std::map<std::string, std::uint64_t> read_faults_;
  std::map<std::string, std::vector<FileInfo>> more_;
};

class FaultyRegistry : public RegistryStore {
 public:
  FaultyRegistry(RegistryStore& real, CallCount& count) : real_(real), count_(count) {}

  // While true, every call that has a status is denied.
  void SetRefusing(bool refusing) { refusing_ = refusing; }

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
  // Counts a call. True if it is denied.
  bool Denies(const char* call, const std::string& about);

  RegistryStore& real_;
  CallCount& count_;
  bool refusing_ = false;
};

// The shell, and with it the registry editor, which is a program that it starts.
class FaultyShell : public Shell {
 public:
  FaultyShell(Shell& real, SystemInfo& system, CallCount& count)
      : real_(real), system_(system), count_(count) {}

  // The program of this name (a path or a bare name, without regard to case) cannot be started.
  void RefuseProgram(const std::string& name);
  // Programs that are started from now on never end and never do anything.
  void HangRuns(bool hang) { runs_hang_ = hang; }
  // Programs that are started from now on do nothing before they were asked for this often, or
  // this many milliseconds have gone by.
  void DelayRuns(int questions, std::uint64_t milliseconds);

  std::string SpecialFolder(int folder) override;
  RunId Run(const std::string& command_line, WindowStyle style) override;
  int Execute(const std::string& verb, const std::string& file, const std::string& parameters,
              const std::string& folder, int show, RunId* run) override;
  bool IsRunning(RunId run) override;
  bool CreateLink(const ShellLink& link) override;
  bool CreateScriptedLink(const ShellLink& link) override;
  bool Operate(FileOperation operation, const std::string& source, const std::string& target,
               int flags) override;
  void ShowHelp(const std::string& help_file, const std::string& topic) override;
  void PlaySoundFile(const std::string& path) override;

 private:
  struct Delay {
    int questions = 0;
    std::uint64_t until = 0;  // in the system's ticks
  };

  bool IsRefused(const std::string& program) const;
  RunId NextHangingRun() { return ++last_hanging_; }
  void NoteStart(RunId run);

  Shell& real_;
  SystemInfo& system_;
  CallCount& count_;
  std::set<std::string> refused_;  // folded
  bool runs_hang_ = false;
  RunId last_hanging_ = kFirstHanging;
  int delay_questions_ = 0;
  std::uint64_t delay_milliseconds_ = 0;
  std::map<RunId, Delay> delayed_;

  // No shell counts its runs that far.
  static constexpr RunId kFirstHanging = 0x80000000;
};

class FaultySystem : public SystemInfo {
 public:
  explicit FaultySystem(SystemInfo& real) : real_(real) {}

  // Another copy of the program runs and holds its mutex.
  void SetOtherCopyRuns(bool runs) { other_copy_runs_ = runs; }

  SystemVersion Version() override { return real_.Version(); }
  std::string UserName() override { return real_.UserName(); }
  std::string ComputerName() override { return real_.ComputerName(); }
  std::string Environment(const std::string& name) override { return real_.Environment(name); }
  std::string ProgramFolder() override { return real_.ProgramFolder(); }
  std::string CommandLine() override { return real_.CommandLine(); }
  bool PreviousInstanceRuns() override { return other_copy_runs_ || real_.PreviousInstanceRuns(); }
  bool HoldInstanceMutex(const std::string& name) override {
    return !other_copy_runs_ && real_.HoldInstanceMutex(name);
  }
  LocalTime Now() override { return real_.Now(); }
  LocalTime ToLocal(FileTime time) override { return real_.ToLocal(time); }
  std::uint64_t Ticks() override { return real_.Ticks(); }
  void Sleep(int milliseconds) override { real_.Sleep(milliseconds); }
  std::string RandomBytes(std::size_t count) override { return real_.RandomBytes(count); }
  std::string TimeText(const LocalTime& time) override { return real_.TimeText(time); }
  std::string WeekdayName(int weekday) override { return real_.WeekdayName(weekday); }
  std::string LocaleText(int type) override { return real_.LocaleText(type); }
  std::string SystemFolder() override { return real_.SystemFolder(); }
  std::string ErrorText(int number) override { return real_.ErrorText(number); }
  std::string ToAnsi(const std::string& utf8) override { return real_.ToAnsi(utf8); }
  std::string FromAnsi(const std::string& bytes) override { return real_.FromAnsi(bytes); }

 private:
  SystemInfo& real_;
  bool other_copy_runs_ = false;
};

class FaultyProcesses : public Processes {
 public:
  FaultyProcesses(Processes& real, CallCount& count) : real_(real), count_(count) {}

  // A window with this title stands open.
  void OpenWindow(const std::string& title) { windows_.insert(title); }

  std::vector<ProcessInfo> List() override;
  bool WindowExists(const std::string& title) override;
  void ActivatePreviousInstance() override { real_.ActivatePreviousInstance(); }

 private:
  Processes& real_;
  CallCount& count_;
  std::set<std::string> windows_;
};

class FaultyServices : public Services {
 public:
  FaultyServices(Services& real, CallCount& count) : real_(real), count_(count) {}

  // The service of this name (without regard to case) takes no command.
  void Refuse(const std::string& name);

  std::string State(const std::string& name) override;
  bool Start(const std::string& name) override;
  bool Control(const std::string& name, int code) override;

 private:
  Services& real_;
  CallCount& count_;
  std::set<std::string> refused_;  // folded
};

class FaultyFtp : public FtpClient {
 public:
  FaultyFtp(FtpClient& real, CallCount& count) : real_(real), count_(count) {}

  FtpState State() override { return real_.State(); }
  void Listen(FtpEvents events) override { real_.Listen(std::move(events)); }
  bool Connect(const std::string& host, int port, const std::string& user,
               const std::string& password) override;
  std::string CurrentFolder() override;
  bool ChangeFolder(const std::string& folder) override;
  bool Send(const std::string& path, const std::string& remote_name) override;
  bool Rename(const std::string& name, const std::string& new_name) override;
  bool Remove(const std::string& name) override;
  void Disconnect() override { real_.Disconnect(); }

 private:
  FtpClient& real_;
  CallCount& count_;
};

class FaultyDiscs : public DiscWriter {
 public:
  FaultyDiscs(DiscWriter& real, CallCount& count) : real_(real), count_(count) {}

  bool Initialise() override;
  std::vector<DiscDrive> Drives() override;
  bool Open(int index) override;
  bool MediumLoaded() override;
  std::uint64_t FreeBytes() override;
  bool Burn(const std::string& path, const std::string& name, const DiscEvents& events) override;
  void Eject() override { real_.Eject(); }

 private:
  DiscWriter& real_;
  CallCount& count_;
};

class FaultyScheduler : public TaskScheduler {
 public:
  FaultyScheduler(TaskScheduler& real, CallCount& count) : real_(real), count_(count) {}

  // While true, nothing is created or deleted.
  void SetRefusing(bool refusing) { refusing_ = refusing; }
  // While true, jobs are saved without their account.
  void SetRefusingAccount(bool refusing) { refuses_account_ = refusing; }
  // A job of this name (without regard to case) is in the list and cannot be read.
  void MakeUnreadable(const std::string& name);

  std::vector<std::string> Names() override;
  std::optional<ScheduledTask> Read(const std::string& name) override;
  TaskCreation Create(const ScheduledTask& task) override;
  bool Delete(const std::string& name) override;

 private:
  TaskScheduler& real_;
  CallCount& count_;
  bool refusing_ = false;
  bool refuses_account_ = false;
  std::set<std::string> unreadable_;  // folded
};

class FaultyPlatform {
 public:
  // `real` must outlive this object.
  explicit FaultyPlatform(const Platform& real);
  FaultyPlatform(const FaultyPlatform&) = delete;
  FaultyPlatform& operator=(const FaultyPlatform&) = delete;

  // The bundle for a program; it must not outlive this object.
  Platform& platform() { return platform_; }

  // As CallCount tells.
  void FailCall(std::uint64_t number) { count_.FailCall(number); }
  std::uint64_t calls() const { return count_.calls(); }
  const std::string& failed_call() const { return count_.failed_call(); }

 private:
  CallCount count_;

 public:
  // The parts, for the faults that have a name.
  FaultyRegistry registry;
  FaultyFiles files;
  FaultySystem system;
  FaultyShell shell;
  FaultyProcesses processes;
  FaultyServices services;
  FaultyFtp ftp;
  FaultyDiscs discs;
  FaultyScheduler scheduler;

 private:
  Platform platform_;
};

}  // namespace quorvale
