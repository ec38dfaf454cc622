#include "support/memory_platform.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

#include "base/paths.h"
#include "base/text.h"
#include "platform/file_toolkit.h"

namespace quorvale {
namespace {

std::string KeyOf(const std::string& path) { return FoldCase(WithoutBackslash(path)); }

std::optional<std::string> Content(Files& files, const std::string& path) {
  return FileToolkit(files, [] {}).ReadWhole(path);
}

}  // namespace

// Files. ------------------------------------------------------------------------------------------

class MemoryInput : public InputFile {
 public:
  MemoryInput(MemoryFiles& files, std::string path, std::shared_ptr<std::string> bytes)
      : files_(files), path_(std::move(path)), bytes_(std::move(bytes)) {}

  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    if (files_.before_read) files_.before_read(path_, position_);
    if (position_ >= bytes_->size()) return 0;
    const std::size_t left = bytes_->size() - static_cast<std::size_t>(position_);
    count = std::min({count, files_.longest_read, left});
    std::memcpy(buffer, bytes_->data() + position_, count);
    position_ += count;
    return static_cast<std::ptrdiff_t>(count);
  }
  bool Seek(std::uint64_t offset) override {
    position_ = offset;
    return true;
  }
  std::uint64_t Size() const override { return bytes_->size(); }

 private:
  MemoryFiles& files_;
  const std::string path_;
  std::shared_ptr<std::string> bytes_;
  std::uint64_t position_ = 0;
};

class MemoryOutput : public OutputFile {
 public:
  MemoryOutput(MemoryFiles& files, std::string key) : files_(files), key_(std::move(key)) {}

  FileStatus Write(const void* buffer, std::size_t count) override {
    if (!files_.MayChange()) return FileStatus::kFailed;
    MemoryFiles::Node& node = files_.nodes_.at(key_);
    const std::size_t end = static_cast<std::size_t>(position_) + count;
    const std::size_t more = end > node.bytes->size() ? end - node.bytes->size() : 0;
    if (files_.used_ + more > files_.room) return FileStatus::kNoSpace;
    if (files_.writes_fail_after < count) return FileStatus::kFailed;
    if (files_.writes_fail_after != ~0ull) files_.writes_fail_after -= count;
    files_.used_ += more;
    if (more > 0) node.bytes->resize(end);
    if (count > 0) std::memcpy(node.bytes->data() + position_, buffer, count);
    position_ = end;
    node.info.size = node.bytes->size();
    return FileStatus::kOk;
  }
  bool Seek(std::uint64_t offset) override {
    position_ = offset;
    return true;
  }
  FileStatus Close() override { return FileStatus::kOk; }

 private:
  MemoryFiles& files_;
  const std::string key_;
  std::uint64_t position_ = 0;
};

MemoryFiles::MemoryFiles() { nodes_["c:"].info.attributes = file_attribute::kFolder; }

const MemoryFiles::Node* MemoryFiles::Find(const std::string& path) const {
  const auto found = nodes_.find(KeyOf(path));
  return found == nodes_.end() ? nullptr : &found->second;
}

void MemoryFiles::PutFolder(const std::string& path) {
  const std::string parent = ParentFolder(WithoutBackslash(path));
  if (!parent.empty() && Find(parent) == nullptr) PutFolder(parent);
  Node& node = nodes_[KeyOf(path)];
  node.path = WithoutBackslash(path);
  node.info.name = FileNameOf(node.path);
  node.info.attributes |= file_attribute::kFolder;
}

void MemoryFiles::Put(const std::string& path, const std::string& bytes, std::uint32_t attributes,
                      FileTime modified) {
  PutFolder(ParentFolder(path));
  Remove(path);
  Node& node = nodes_[KeyOf(path)];
  node.path = path;
  node.bytes = std::make_shared<std::string>(bytes);
  if (modified == 0) modified = clock_ += 10'000'000;
  node.info = {FileNameOf(path), attributes, bytes.size(), modified};
  used_ += bytes.size();
}

bool MemoryFiles::Has(const std::string& path) const { return Find(path) != nullptr; }

std::string MemoryFiles::Bytes(const std::string& path) const {
  const Node* node = Find(path);
  return node == nullptr || node->bytes == nullptr ? "" : *node->bytes;
}

std::vector<std::string> MemoryFiles::AllFiles() const {
  std::vector<std::string> paths;
  for (const auto& [key, node] : nodes_) {
    if (node.bytes != nullptr) paths.push_back(node.path);
  }
  return paths;
}

void MemoryFiles::Resize(const std::string& path, std::size_t size) {
  Node& node = nodes_.at(KeyOf(path));
  used_ = used_ - node.bytes->size() + size;
  node.bytes->resize(size);
  node.info.size = size;
}

void MemoryFiles::Remove(const std::string& path) {
  const Node* node = Find(path);
  if (node == nullptr) return;
  if (node->bytes != nullptr) used_ -= node->bytes->size();
  nodes_.erase(KeyOf(path));
}

std::optional<FileInfo> MemoryFiles::Stat(const std::string& path) {
  const Node* node = Find(path);
  if (node == nullptr) return std::nullopt;
  return node->info;
}

std::vector<FileInfo> MemoryFiles::List(const std::string& folder) {
  std::vector<FileInfo> infos;
  const std::string start = KeyOf(folder) + "\\";
  for (auto at = nodes_.lower_bound(start); at != nodes_.end() && at->first.starts_with(start);
       ++at) {
    if (at->first.find('\\', start.size()) == std::string::npos) infos.push_back(at->second.info);
  }
  return infos;
}

bool MemoryFiles::CanList(const std::string& folder) {
  const Node* node = Find(folder);
  return node != nullptr && node->info.IsFolder();
}

std::unique_ptr<InputFile> MemoryFiles::OpenRead(const std::string& path) {
  const Node* node = Find(path);
  if (node == nullptr || node->bytes == nullptr) return nullptr;
  return std::make_unique<MemoryInput>(*this, path, node->bytes);
}

std::unique_ptr<OutputFile> MemoryFiles::Create(const std::string& path, FileStatus* status) {
  const Node* parent = Find(ParentFolder(path));
  FileStatus result = MayChange() ? FileStatus::kOk : FileStatus::kFailed;
  if (parent == nullptr || !parent->info.IsFolder()) result = FileStatus::kNotFound;
  const Node* old = Find(path);
  if (old != nullptr &&
      (old->info.attributes & (file_attribute::kFolder | file_attribute::kReadOnly)) != 0) {
    result = FileStatus::kDenied;
  }
  if (status != nullptr) *status = result;
  if (result != FileStatus::kOk) return nullptr;
  Put(path, "");
  return std::make_unique<MemoryOutput>(*this, KeyOf(path));
}

FileStatus MemoryFiles::MakeFolder(const std::string& path) {
  if (!MayChange()) return FileStatus::kFailed;
  const Node* node = Find(path);
  if (node != nullptr) return node->info.IsFolder() ? FileStatus::kOk : FileStatus::kDenied;
  if (Find(ParentFolder(WithoutBackslash(path))) == nullptr) return FileStatus::kNotFound;
  PutFolder(path);
  return FileStatus::kOk;
}

FileStatus MemoryFiles::RemoveFile(const std::string& path, bool force) {
  if (!MayChange()) return FileStatus::kFailed;
  const Node* node = Find(path);
  if (node == nullptr) return FileStatus::kNotFound;
  if (node->info.IsFolder()) return FileStatus::kDenied;
  if (!force && (node->info.attributes & file_attribute::kReadOnly) != 0) {
    return FileStatus::kDenied;
  }
  Remove(path);
  return FileStatus::kOk;
}

FileStatus MemoryFiles::RemoveFolder(const std::string& path, bool /*force*/) {
  if (!MayChange()) return FileStatus::kFailed;
  const Node* node = Find(path);
  if (node == nullptr) return FileStatus::kNotFound;
  if (!node->info.IsFolder()) return FileStatus::kDenied;
  if (!List(path).empty()) return FileStatus::kFailed;
  nodes_.erase(KeyOf(path));
  return FileStatus::kOk;
}

FileStatus MemoryFiles::Replace(const std::string& from, const std::string& to) {
  if (!MayChange()) return FileStatus::kFailed;
  const Node* source = Find(from);
  const Node* old = Find(to);
  if (source == nullptr) return FileStatus::kNotFound;
  if (old != nullptr && old != source &&
      (old->info.attributes & (file_attribute::kFolder | file_attribute::kReadOnly)) != 0) {
    return FileStatus::kDenied;
  }
  Node moved = *source;
  moved.path = to;
  moved.info.name = FileNameOf(to);
  if (old != source) Remove(to);
  nodes_.erase(KeyOf(from));
  nodes_[KeyOf(to)] = moved;
  if (after_replace) after_replace(to);
  return FileStatus::kOk;
}

FileStatus MemoryFiles::SetModified(const std::string& path, FileTime modified) {
  if (Find(path) == nullptr) return FileStatus::kNotFound;
  nodes_.at(KeyOf(path)).info.modified = modified;
  return FileStatus::kOk;
}

FileStatus MemoryFiles::SetAttributes(const std::string& path, std::uint32_t attributes) {
  constexpr std::uint32_t kSettable = file_attribute::kReadOnly | file_attribute::kHidden |
                                      file_attribute::kSystem | file_attribute::kArchive;
  if (Find(path) == nullptr) return FileStatus::kNotFound;
  std::uint32_t& now = nodes_.at(KeyOf(path)).info.attributes;
  now = (now & ~kSettable) | (attributes & kSettable);
  return FileStatus::kOk;
}

DriveKind MemoryFiles::KindOfDrive(const std::string& drive) {
  return DriveExists(drive) ? DriveKind::kFixed : DriveKind::kNoRoot;
}

bool MemoryFiles::DriveExists(const std::string& drive) {
  return FoldCase(drive.substr(0, 2)) == "c:";
}

std::optional<DiskSpace> MemoryFiles::Space(const std::string& path) {
  if (!DriveExists(path)) return std::nullopt;
  return DiskSpace{room - std::min(room, used_), room};
}

// The registry. -----------------------------------------------------------------------------------

namespace {

// Without a leading, trailing or doubled "\".
std::vector<std::string> KeyNames(const std::string& subkey) {
  std::vector<std::string> names = Split(subkey, "\\");
  std::erase(names, "");
  return names;
}

RegistryValue* FindValue(std::vector<RegistryValue>& values, const std::string& name) {
  const auto found = std::find_if(values.begin(), values.end(), [&](const RegistryValue& value) {
    return EqualsNoCase(value.name, name);
  });
  return found == values.end() ? nullptr : &*found;
}

}  // namespace

MemoryRegistry::Key* MemoryRegistry::Find(RegistryRoot root, const std::string& subkey) {
  std::string path;
  for (const std::string& name : KeyNames(subkey)) path += "\\" + FoldCase(name);
  if (path.empty()) return &keys_[{root, ""}];
  const auto found = keys_.find({root, path});
  return found == keys_.end() ? nullptr : &found->second;
}

bool MemoryRegistry::KeyExists(RegistryRoot root, const std::string& subkey) {
  return Find(root, subkey) != nullptr;
}

long MemoryRegistry::CreateKey(RegistryRoot root, const std::string& subkey) {
  std::string path;
  for (const std::string& name : KeyNames(subkey)) {
    Key& parent = keys_[{root, path}];
    path += "\\" + FoldCase(name);
    if (keys_.count({root, path}) == 0) parent.subkeys.push_back(name);
    keys_[{root, path}];
  }
  return registry_status::kOk;
}

long MemoryRegistry::QueryValue(RegistryRoot root, const std::string& subkey,
                                const std::string& name, RegistryValue* value) {
  Key* key = Find(root, subkey);
  const RegistryValue* found = key == nullptr ? nullptr : FindValue(key->values, name);
  if (found == nullptr) return registry_status::kNotFound;
  *value = *found;
  return registry_status::kOk;
}

long MemoryRegistry::SetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                              std::uint32_t type, const std::string& data) {
  Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  RegistryValue* value = FindValue(key->values, name);
  if (value == nullptr) value = &key->values.emplace_back(RegistryValue{name, type, data});
  value->type = type;
  value->data = data;
  return registry_status::kOk;
}

long MemoryRegistry::QueryText(RegistryRoot root, const std::string& subkey,
                               const std::string& name, std::string* text) {
  RegistryValue value;
  const long status = QueryValue(root, subkey, name, &value);
  if (status != registry_status::kOk) return status;
  if (!registry_type::IsText(value.type)) return registry_status::kNotFound;
  *text = MemorySystem().FromAnsi(value.data);
  if (text->ends_with('\0')) text->pop_back();
  return registry_status::kOk;
}

long MemoryRegistry::SetText(RegistryRoot root, const std::string& subkey, const std::string& name,
                             std::uint32_t type, const std::string& text) {
  return SetValue(root, subkey, name, type, MemorySystem().ToAnsi(text) + '\0');
}

long MemoryRegistry::DeleteValue(RegistryRoot root, const std::string& subkey,
                                 const std::string& name) {
  Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  const auto removed = std::erase_if(
      key->values, [&](const RegistryValue& value) { return EqualsNoCase(value.name, name); });
  return removed == 0 ? registry_status::kNotFound : registry_status::kOk;
}

long MemoryRegistry::ListSubkeys(RegistryRoot root, const std::string& subkey,
                                 std::vector<std::string>* names) {
  const Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  *names = key->subkeys;
  return registry_status::kOk;
}

long MemoryRegistry::ListValues(RegistryRoot root, const std::string& subkey,
                                std::vector<RegistryValue>* values) {
  const Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  *values = key->values;
  return registry_status::kOk;
}

// Facts and the clock. ----------------------------------------------------------------------------

std::string MemorySystem::Environment(const std::string& name) {
  for (const auto& [known, value] : environment) {
    if (EqualsNoCase(known, name)) return value;
  }
  return "";
}

LocalTime MemorySystem::Now() { return ToLocal(start + static_cast<FileTime>(ticks) * 10'000); }

LocalTime MemorySystem::ToLocal(FileTime time) {
  using namespace std::chrono;  // NOLINT: the calendar, used throughout
  const seconds since_1601(time / 10'000'000 + hours_east * 3600);
  const sys_seconds moment = sys_days(year(1601) / January / 1) + since_1601;
  const sys_days day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss clock(moment - day);
  LocalTime local;
  local.year = static_cast<int>(date.year());
  local.month = static_cast<int>(static_cast<unsigned>(date.month()));
  local.day = static_cast<int>(static_cast<unsigned>(date.day()));
  local.hour = static_cast<int>(clock.hours().count());
  local.minute = static_cast<int>(clock.minutes().count());
  local.second = static_cast<int>(clock.seconds().count());
  local.weekday = static_cast<int>(weekday(day).c_encoding()) + 1;
  return local;
}

std::string MemorySystem::RandomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random_());
  return bytes;
}

std::string MemorySystem::TimeText(const LocalTime& time) {
  char text[64];
  std::snprintf(text, sizeof(text), "%d:%02d:%02d %s", time.hour % 12 == 0 ? 12 : time.hour % 12,
                time.minute, time.second, time.hour < 12 ? "AM" : "PM");
  return text;
}

std::string MemorySystem::WeekdayName(int weekday) {
  static const char* const kNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                       "Thursday", "Friday", "Saturday"};
  return weekday >= 1 && weekday <= 7 ? kNames[weekday - 1] : "";
}

std::string MemorySystem::ToAnsi(const std::string& utf8) {
  const std::string units = Utf8ToUtf16Bytes(utf8);
  std::string bytes;
  for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
    bytes += units[i + 1] == '\0' ? units[i] : '?';
  }
  return bytes;
}

std::string MemorySystem::FromAnsi(const std::string& bytes) {
  std::string utf8;
  for (const char c : bytes) AppendUtf8(&utf8, static_cast<unsigned char>(c));
  return utf8;
}

// The shell. --------------------------------------------------------------------------------------

std::string MemoryShell::SpecialFolder(int folder) {
  const auto found = folders.find(folder);
  return found == folders.end() ? "" : found->second;
}

RunId MemoryShell::Run(const std::string& command_line, WindowStyle style) {
  commands.push_back(command_line);
  styles.push_back(style);
  left[++last_run_] = polls;
  return last_run_;
}

int MemoryShell::Execute(const std::string& verb, const std::string& file,
                         const std::string& parameters, const std::string& folder, int show,
                         RunId* run) {
  constexpr int kStarted = 42;
  commands.push_back(verb + "|" + file + "|" + parameters + "|" + folder + "|" +
                     std::to_string(show));
  left[++last_run_] = polls;
  if (run != nullptr) *run = last_run_;
  return kStarted;
}

bool MemoryShell::IsRunning(RunId run) {
  const int left_now = --left[run];
  if (left_now >= 0) return true;
  if (left_now == -1 && on_end && run > 0 && run <= commands.size()) on_end(commands[run - 1]);
  return false;
}

bool MemoryShell::CreateLink(const ShellLink& link) {
  links.push_back(link);
  return true;
}

bool MemoryShell::Operate(FileOperation operation, const std::string& source,
                          const std::string& target, int flags) {
  operations.push_back(std::to_string(static_cast<int>(operation)) + "|" + source + "|" + target +
                       "|" + std::to_string(flags));
  return !on_operation || on_operation(operation, source, target);
}

void MemoryShell::ShowHelp(const std::string& help_file, const std::string& topic) {
  help.push_back(help_file + "|" + topic);
}

// Services, delivery, jobs. -----------------------------------------------------------------------

std::string MemoryServices::State(const std::string& name) {
  for (const auto& [known, state] : states) {
    if (EqualsNoCase(known, name)) return state;
  }
  return "";
}

bool MemoryServices::Start(const std::string& name) {
  told.push_back("start " + name);
  if (State(name).empty()) return false;
  states[name] = "Running";
  return true;
}

bool MemoryServices::Control(const std::string& name, int code) {
  static const char* const kStates[] = {"", "Stopped", "Paused", "Running"};
  told.push_back(std::to_string(code) + " " + name);
  if (State(name).empty() || code < 1 || code > 3) return false;
  states[name] = kStates[code];
  return true;
}

bool MemoryFtp::Connect(const std::string& /*host*/, int /*port*/, const std::string& /*user*/,
                        const std::string& /*password*/) {
  connected_ = true;
  folder_ = "/";
  return true;
}

bool MemoryFtp::ChangeFolder(const std::string& folder) {
  if (!connected_) return false;
  folder_ = folder.starts_with("/") ? folder : folder_ + folder;
  if (!folder_.ends_with("/")) folder_ += "/";
  return true;
}

bool MemoryFtp::Send(const std::string& path, const std::string& remote_name) {
  const std::optional<std::string> bytes = connected_ ? Content(files_, path) : std::nullopt;
  if (!bytes) return false;
  received[folder_ + remote_name] = *bytes;
  if (events_.progress) events_.progress(100);
  return true;
}

bool MemoryFtp::Rename(const std::string& name, const std::string& new_name) {
  const auto found = received.find(folder_ + name);
  if (!connected_ || found == received.end()) return false;
  received[folder_ + new_name] = found->second;
  received.erase(folder_ + name);
  return true;
}

bool MemoryFtp::Remove(const std::string& name) {
  return connected_ && received.erase(folder_ + name) > 0;
}

std::vector<DiscDrive> MemoryDiscs::Drives() {
  if (!has_drive) return {};
  return {{0, true, "Maker", "Model", "1.0"}};
}

bool MemoryDiscs::Burn(const std::string& path, const std::string& name, const DiscEvents& events) {
  const std::optional<std::string> bytes = Content(files_, path);
  if (!has_drive || !bytes || bytes->size() > free_bytes) return false;
  if (events.file_added) events.file_added();
  if (events.write_started) events.write_started();
  if (events.progress) events.progress(1, 1);
  burned[name] = *bytes;
  free_bytes -= bytes->size();
  return true;
}

std::vector<ScheduledTask>::iterator MemoryScheduler::Find(const std::string& name) {
  return std::find_if(tasks.begin(), tasks.end(),
                      [&](const ScheduledTask& task) { return EqualsNoCase(task.name, name); });
}

std::vector<std::string> MemoryScheduler::Names() {
  std::vector<std::string> names;
  for (const ScheduledTask& task : tasks) names.push_back(task.name);
  return names;
}

std::optional<ScheduledTask> MemoryScheduler::Read(const std::string& name) {
  const auto found = Find(name);
  if (found == tasks.end()) return std::nullopt;
  ScheduledTask task = *found;
  for (TaskTrigger& trigger : task.triggers) trigger.text = TriggerText(trigger);
  const bool disabled = (task.flags & kTaskDisabled) != 0;
  if (!disabled) task.next_run = NextRunOf(task.triggers, system_.Now());
  task.status_text = TaskStatusText(disabled ? kTaskIsDisabled : kTaskReady);
  return task;
}

TaskCreation MemoryScheduler::Create(const ScheduledTask& task) {
  if (task.name.empty() || Find(task.name) != tasks.end()) return {};
  tasks.push_back(task);
  tasks.back().creator = system_.UserName();
  return {.saved = true, .refused = {}};
}

bool MemoryScheduler::Delete(const std::string& name) {
  const auto found = Find(name);
  if (found == tasks.end()) return false;
  tasks.erase(found);
  return true;
}

// All of it. --------------------------------------------------------------------------------------

MemoryPlatform::MemoryPlatform()
    : platform_{registry, files, shell,     system,  processes, services,
                ftp,      discs, scheduler, threads, ui} {
  ui.ticks = [this] { return system.Ticks(); };
}

}  // namespace quorvale
