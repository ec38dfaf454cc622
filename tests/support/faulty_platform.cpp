#include "support/faulty_platform.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

constexpr int kFileNotFound = 2;  // a refusal of the shell

// The program that a command line starts, without its quotes.
std::string ProgramOf(const std::string& command_line) {
  if (command_line.starts_with("\"")) return command_line.substr(1, command_line.find('"', 1) - 1);
  return command_line.substr(0, command_line.find(' '));
}

std::string KeyOf(const std::string& path) { return FoldCase(WithoutBackslash(path)); }

// One more file is open for as long as this is there.
class OpenMark {
 public:
  explicit OpenMark(std::atomic<int>& open) : open_(open) { ++open_; }
  ~OpenMark() { --open_; }
  OpenMark(const OpenMark&) = delete;
  OpenMark& operator=(const OpenMark&) = delete;

 private:
  std::atomic<int>& open_;
};

class FaultyInput : public InputFile {
 public:
  FaultyInput(std::unique_ptr<InputFile> real, std::string path, const FaultyFiles& files,
              std::atomic<int>& open, CallCount& count)
      : real_(std::move(real)), path_(std::move(path)), files_(files), count_(count), mark_(open) {}

  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    if (count_.Fails("InputFile::Read", path_)) return -1;
    if (const std::optional<std::uint64_t> fault = files_.ReadFault(path_)) {
      if (at_ >= *fault) return -1;
      count = static_cast<std::size_t>(std::min<std::uint64_t>(count, *fault - at_));
    }
    const std::ptrdiff_t done = real_->Read(buffer, count);
    if (done > 0) at_ += static_cast<std::uint64_t>(done);
    return done;
  }
  bool Seek(std::uint64_t offset) override {
    if (count_.Fails("InputFile::Seek", path_) || !real_->Seek(offset)) return false;
    at_ = offset;
    return true;
  }
  std::uint64_t Size() const override { return real_->Size(); }

 private:
  const std::unique_ptr<InputFile> real_;
  const std::string path_;
  const FaultyFiles& files_;
  CallCount& count_;
  const OpenMark mark_;
  std::uint64_t at_ = 0;
};

class FaultyOutput : public OutputFile {
 public:
  FaultyOutput(std::unique_ptr<OutputFile> real, std::string path, std::atomic<int>& open,
               CallCount& count)
      : real_(std::move(real)), path_(std::move(path)), count_(count), mark_(open) {}

  FileStatus Write(const void* buffer, std::size_t size) override {
    if (count_.Fails("OutputFile::Write", path_)) return FileStatus::kFailed;
    return real_ == nullptr ? FileStatus::kFailed : real_->Write(buffer, size);
  }
  bool Seek(std::uint64_t offset) override {
    if (count_.Fails("OutputFile::Seek", path_)) return false;
    return real_ != nullptr && real_->Seek(offset);
  }
  FileStatus Close() override {
    // A close that fails closes all the same.
    const std::unique_ptr<OutputFile> closing = std::move(real_);
    mark_.reset();
    if (count_.Fails("OutputFile::Close", path_)) return FileStatus::kFailed;
    return closing == nullptr ? FileStatus::kFailed : closing->Close();
  }

 private:
  std::unique_ptr<OutputFile> real_;  // null once closed
  const std::string path_;
  CallCount& count_;
  std::optional<OpenMark> mark_;  // likewise
};

}  // namespace

// Counting. ---------------------------------------------------------------------------------------

void CallCount::FailCall(std::uint64_t number) {
  calls_ = 0;
  failing_ = number;
  failed_call_.clear();
}

bool CallCount::Fails(const char* call, const std::string& about) {
  if (++calls_ != failing_) return false;
  failed_call_ = about.empty() ? call : std::string(call) + " " + about;
  return true;
}

// Files. ------------------------------------------------------------------------------------------

void FaultyFiles::SetInUse(const std::string& path, bool in_use) {
  if (in_use) {
    in_use_.insert(KeyOf(path));
  } else {
    in_use_.erase(KeyOf(path));
  }
}

void FaultyFiles::DenyList(const std::string& folder) { closed_.insert(KeyOf(folder)); }

void FaultyFiles::FailReadsAfter(const std::string& path, std::optional<std::uint64_t> bytes) {
  read_faults_.erase(KeyOf(path));
  if (bytes) read_faults_[KeyOf(path)] = *bytes;
}

void FaultyFiles::AlsoList(const std::string& folder, std::vector<FileInfo> entries) {
  more_[KeyOf(folder)] = std::move(entries);
}

std::optional<std::uint64_t> FaultyFiles::ReadFault(const std::string& path) const {
  const auto found = read_faults_.find(KeyOf(path));
  if (found == read_faults_.end()) return std::nullopt;
  return found->second;
}

bool FaultyFiles::IsInUse(const std::string& path) const { return in_use_.count(KeyOf(path)) != 0; }

std::optional<FileInfo> FaultyFiles::Stat(const std::string& path) {
  if (count_.Fails("Files::Stat", path)) return std::nullopt;
  return real_.Stat(path);
}

std::vector<FileInfo> FaultyFiles::List(const std::string& folder) {
  if (count_.Fails("Files::List", folder) || closed_.contains(KeyOf(folder))) return {};
  std::vector<FileInfo> entries = real_.List(folder);
  const auto more = more_.find(KeyOf(folder));
  if (more != more_.end()) entries.insert(entries.end(), more->second.begin(), more->second.end());
  return entries;
}

bool FaultyFiles::CanList(const std::string& folder) {
  return !count_.Fails("Files::CanList", folder) && !closed_.contains(KeyOf(folder)) &&
         real_.CanList(folder);
}

std::unique_ptr<InputFile> FaultyFiles::OpenRead(const std::string& path) {
  if (count_.Fails("Files::OpenRead", path) || IsInUse(path)) return nullptr;
  std::unique_ptr<InputFile> file = real_.OpenRead(path);
  if (file == nullptr) return nullptr;
  return std::make_unique<FaultyInput>(std::move(file), path, *this, open_files_, count_);
}

std::unique_ptr<OutputFile> FaultyFiles::Create(const std::string& path, FileStatus* status) {
  const bool fails = count_.Fails("Files::Create", path);
  if (fails || IsInUse(path)) {
    if (status != nullptr) *status = fails ? FileStatus::kFailed : FileStatus::kDenied;
    return nullptr;
  }
  std::unique_ptr<OutputFile> file = real_.Create(path, status);
  if (file == nullptr) return nullptr;
  return std::make_unique<FaultyOutput>(std::move(file), path, open_files_, count_);
}

FileStatus FaultyFiles::MakeFolder(const std::string& path) {
  if (count_.Fails("Files::MakeFolder", path)) return FileStatus::kFailed;
  return real_.MakeFolder(path);
}

FileStatus FaultyFiles::RemoveFile(const std::string& path, bool force) {
  if (count_.Fails("Files::RemoveFile", path)) return FileStatus::kFailed;
  return IsInUse(path) ? FileStatus::kDenied : real_.RemoveFile(path, force);
}

FileStatus FaultyFiles::RemoveFolder(const std::string& path, bool force) {
  if (count_.Fails("Files::RemoveFolder", path)) return FileStatus::kFailed;
  return real_.RemoveFolder(path, force);
}

FileStatus FaultyFiles::Replace(const std::string& from, const std::string& to) {
  if (count_.Fails("Files::Replace", to)) return FileStatus::kFailed;
  return IsInUse(from) || IsInUse(to) ? FileStatus::kDenied : real_.Replace(from, to);
}

FileStatus FaultyFiles::SetModified(const std::string& path, FileTime modified) {
  if (count_.Fails("Files::SetModified", path)) return FileStatus::kFailed;
  return real_.SetModified(path, modified);
}

FileStatus FaultyFiles::SetAttributes(const std::string& path, std::uint32_t attributes) {
  if (count_.Fails("Files::SetAttributes", path)) return FileStatus::kFailed;
  return real_.SetAttributes(path, attributes);
}

std::string FaultyFiles::ShortPath(const std::string& path) {
  return count_.Fails("Files::ShortPath", path) ? path : real_.ShortPath(path);
}

DriveKind FaultyFiles::KindOfDrive(const std::string& drive) {
  if (count_.Fails("Files::KindOfDrive", drive)) return DriveKind::kUnknown;
  return real_.KindOfDrive(drive);
}

bool FaultyFiles::DriveExists(const std::string& drive) {
  return !count_.Fails("Files::DriveExists", drive) && real_.DriveExists(drive);
}

std::optional<DiskSpace> FaultyFiles::Space(const std::string& path) {
  if (count_.Fails("Files::Space", path)) return std::nullopt;
  return real_.Space(path);
}

// The registry. -----------------------------------------------------------------------------------

bool FaultyRegistry::KeyExists(RegistryRoot root, const std::string& subkey) {
  return !count_.Fails("RegistryStore::KeyExists", subkey) && real_.KeyExists(root, subkey);
}

bool FaultyRegistry::Denies(const char* call, const std::string& about) {
  return count_.Fails(call, about) || refusing_;
}

long FaultyRegistry::CreateKey(RegistryRoot root, const std::string& subkey) {
  if (Denies("RegistryStore::CreateKey", subkey)) return registry_status::kDenied;
  return real_.CreateKey(root, subkey);
}

long FaultyRegistry::QueryValue(RegistryRoot root, const std::string& subkey,
                                const std::string& name, RegistryValue* value) {
  if (Denies("RegistryStore::QueryValue", subkey + "\\" + name)) return registry_status::kDenied;
  return real_.QueryValue(root, subkey, name, value);
}

long FaultyRegistry::SetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                              std::uint32_t type, const std::string& data) {
  if (Denies("RegistryStore::SetValue", subkey + "\\" + name)) return registry_status::kDenied;
  return real_.SetValue(root, subkey, name, type, data);
}

long FaultyRegistry::QueryText(RegistryRoot root, const std::string& subkey,
                               const std::string& name, std::string* text) {
  if (Denies("RegistryStore::QueryText", subkey + "\\" + name)) return registry_status::kDenied;
  return real_.QueryText(root, subkey, name, text);
}

long FaultyRegistry::SetText(RegistryRoot root, const std::string& subkey, const std::string& name,
                             std::uint32_t type, const std::string& text) {
  if (Denies("RegistryStore::SetText", subkey + "\\" + name)) return registry_status::kDenied;
  return real_.SetText(root, subkey, name, type, text);
}

long FaultyRegistry::DeleteValue(RegistryRoot root, const std::string& subkey,
                                 const std::string& name) {
  if (Denies("RegistryStore::DeleteValue", subkey + "\\" + name)) return registry_status::kDenied;
  return real_.DeleteValue(root, subkey, name);
}

long FaultyRegistry::ListSubkeys(RegistryRoot root, const std::string& subkey,
                                 std::vector<std::string>* names) {
  if (Denies("RegistryStore::ListSubkeys", subkey)) return registry_status::kDenied;
  return real_.ListSubkeys(root, subkey, names);
}

long FaultyRegistry::ListValues(RegistryRoot root, const std::string& subkey,
                                std::vector<RegistryValue>* values) {
  if (Denies("RegistryStore::ListValues", subkey)) return registry_status::kDenied;
  return real_.ListValues(root, subkey, values);
}

// The shell. --------------------------------------------------------------------------------------

void FaultyShell::RefuseProgram(const std::string& name) { refused_.insert(FoldCase(name)); }

bool FaultyShell::IsRefused(const std::string& program) const {
  return refused_.count(FoldCase(program)) != 0 ||
         refused_.count(FoldCase(FileNameOf(program))) != 0;
}

void FaultyShell::DelayRuns(int questions, std::uint64_t milliseconds) {
  delay_questions_ = questions;
  delay_milliseconds_ = milliseconds;
}

void FaultyShell::NoteStart(RunId run) {
  if (run != 0 && delay_questions_ > 0) {
    delayed_[run] = {delay_questions_, system_.Ticks() + delay_milliseconds_};
  }
}

std::string FaultyShell::SpecialFolder(int folder) {
  if (count_.Fails("Shell::SpecialFolder", std::to_string(folder))) return "";
  return real_.SpecialFolder(folder);
}

RunId FaultyShell::Run(const std::string& command_line, WindowStyle style) {
  if (count_.Fails("Shell::Run", command_line)) return 0;
  if (IsRefused(ProgramOf(command_line))) return 0;
  if (runs_hang_) return NextHangingRun();
  const RunId run = real_.Run(command_line, style);
  NoteStart(run);
  return run;
}

int FaultyShell::Execute(const std::string& verb, const std::string& file,
                         const std::string& parameters, const std::string& folder, int show,
                         RunId* run) {
  constexpr int kStarted = 42;
  RunId started = 0;
  int result = kFileNotFound;
  if (!count_.Fails("Shell::Execute", file) && !IsRefused(file)) {
    if (runs_hang_) {
      started = NextHangingRun();
      result = kStarted;
    } else {
      result = real_.Execute(verb, file, parameters, folder, show, &started);
      NoteStart(started);
    }
  }
  if (run != nullptr) *run = started;
  return result;
}

bool FaultyShell::IsRunning(RunId run) {
  if (run > kFirstHanging && run <= last_hanging_) return true;
  const auto delayed = delayed_.find(run);
  if (delayed != delayed_.end()) {
    if (delayed->second.questions-- > 0 && system_.Ticks() < delayed->second.until) return true;
    delayed_.erase(delayed);
  }
  return real_.IsRunning(run);
}

bool FaultyShell::CreateLink(const ShellLink& link) {
  return !count_.Fails("Shell::CreateLink", link.link_path) && real_.CreateLink(link);
}

bool FaultyShell::CreateScriptedLink(const ShellLink& link) {
  return !count_.Fails("Shell::CreateScriptedLink", link.link_path) &&
         real_.CreateScriptedLink(link);
}

bool FaultyShell::Operate(FileOperation operation, const std::string& source,
                          const std::string& target, int flags) {
  return !count_.Fails("Shell::Operate", source) && real_.Operate(operation, source, target, flags);
}

void FaultyShell::ShowHelp(const std::string& help_file, const std::string& topic) {
  real_.ShowHelp(help_file, topic);
}

void FaultyShell::PlaySoundFile(const std::string& path) { real_.PlaySoundFile(path); }

// Processes and services. -------------------------------------------------------------------------

std::vector<ProcessInfo> FaultyProcesses::List() {
  if (count_.Fails("Processes::List", "")) return {};
  return real_.List();
}

bool FaultyProcesses::WindowExists(const std::string& title) {
  if (count_.Fails("Processes::WindowExists", title)) return false;
  return windows_.count(title) != 0 || real_.WindowExists(title);
}

void FaultyServices::Refuse(const std::string& name) { refused_.insert(FoldCase(name)); }

std::string FaultyServices::State(const std::string& name) {
  return count_.Fails("Services::State", name) ? "" : real_.State(name);
}

bool FaultyServices::Start(const std::string& name) {
  if (count_.Fails("Services::Start", name) || refused_.count(FoldCase(name)) != 0) return false;
  return real_.Start(name);
}

bool FaultyServices::Control(const std::string& name, int code) {
  if (count_.Fails("Services::Control", name) || refused_.count(FoldCase(name)) != 0) return false;
  return real_.Control(name, code);
}

// Delivery. ---------------------------------------------------------------------------------------

bool FaultyFtp::Connect(const std::string& host, int port, const std::string& user,
                        const std::string& password) {
  return !count_.Fails("FtpClient::Connect", host) && real_.Connect(host, port, user, password);
}

std::string FaultyFtp::CurrentFolder() {
  return count_.Fails("FtpClient::CurrentFolder", "") ? "" : real_.CurrentFolder();
}

bool FaultyFtp::ChangeFolder(const std::string& folder) {
  return !count_.Fails("FtpClient::ChangeFolder", folder) && real_.ChangeFolder(folder);
}

bool FaultyFtp::Send(const std::string& path, const std::string& remote_name) {
  return !count_.Fails("FtpClient::Send", path) && real_.Send(path, remote_name);
}

bool FaultyFtp::Rename(const std::string& name, const std::string& new_name) {
  return !count_.Fails("FtpClient::Rename", name) && real_.Rename(name, new_name);
}

bool FaultyFtp::Remove(const std::string& name) {
  return !count_.Fails("FtpClient::Remove", name) && real_.Remove(name);
}

bool FaultyDiscs::Initialise() {
  return !count_.Fails("DiscWriter::Initialise", "") && real_.Initialise();
}

std::vector<DiscDrive> FaultyDiscs::Drives() {
  if (count_.Fails("DiscWriter::Drives", "")) return {};
  return real_.Drives();
}

bool FaultyDiscs::Open(int index) {
  return !count_.Fails("DiscWriter::Open", std::to_string(index)) && real_.Open(index);
}

bool FaultyDiscs::MediumLoaded() {
  return !count_.Fails("DiscWriter::MediumLoaded", "") && real_.MediumLoaded();
}

std::uint64_t FaultyDiscs::FreeBytes() {
  return count_.Fails("DiscWriter::FreeBytes", "") ? 0 : real_.FreeBytes();
}

bool FaultyDiscs::Burn(const std::string& path, const std::string& name, const DiscEvents& events) {
  return !count_.Fails("DiscWriter::Burn", path) && real_.Burn(path, name, events);
}

// The scheduler. ----------------------------------------------------------------------------------

void FaultyScheduler::MakeUnreadable(const std::string& name) {
  unreadable_.insert(FoldCase(name));
}

std::vector<std::string> FaultyScheduler::Names() {
  if (count_.Fails("TaskScheduler::Names", "")) return {};
  return real_.Names();
}

std::optional<ScheduledTask> FaultyScheduler::Read(const std::string& name) {
  if (count_.Fails("TaskScheduler::Read", name)) return std::nullopt;
  if (unreadable_.count(FoldCase(name)) != 0) return std::nullopt;
  return real_.Read(name);
}

TaskCreation FaultyScheduler::Create(const ScheduledTask& task) {
  if (count_.Fails("TaskScheduler::Create", task.name) || refusing_) return {};
  if (!refuses_account_) return real_.Create(task);
  ScheduledTask without = task;
  without.account.clear();
  TaskCreation creation = real_.Create(without);
  if (creation.saved) creation.refused.push_back(task_field::kAccount);
  return creation;
}

bool FaultyScheduler::Delete(const std::string& name) {
  return !count_.Fails("TaskScheduler::Delete", name) && !refusing_ && real_.Delete(name);
}

// All of it. --------------------------------------------------------------------------------------

FaultyPlatform::FaultyPlatform(const Platform& real)
    : registry(real.registry, count_),
      files(real.files, count_),
      system(real.system),
      shell(real.shell, real.system, count_),
      processes(real.processes, count_),
      services(real.services, count_),
      ftp(real.ftp, count_),
      discs(real.discs, count_),
      scheduler(real.scheduler, count_),
      platform_{registry, files, shell,     system,       processes, services,
                ftp,      discs, scheduler, real.threads, real.ui} {}

}  // namespace quorvale
