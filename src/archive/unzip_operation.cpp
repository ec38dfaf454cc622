#include "archive/unzip_operation.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

#include "archive/entry_name.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvale::zip {
namespace {

// Less work than this is done sooner than threads are started.
constexpr std::uint64_t kWorthThreads = 256 * 1024;

std::uint64_t PackedBytes(const std::vector<const Record*>& records) {
  std::uint64_t total = 0;
  for (const Record* record : records) total += record->compressed_size;
  return total;
}

// How many worker threads the reading of so many bytes gets.
int WorkersFor(const Archive& archive, std::uint64_t bytes, Threads& threads) {
  if (archive.worker_threads >= 0) return archive.worker_threads;
  const int processors = threads.ProcessorCount();
  return processors > 1 && bytes >= kWorthThreads ? processors : 0;
}

bool AnyEncrypted(const std::vector<const Record*>& records) {
  return std::any_of(records.begin(), records.end(),
                     [](const Record* record) { return record->Encrypted(); });
}

// The bytes that the password may have been to another tool.
std::vector<std::string> PasswordForms(const std::string& password, SystemInfo& system) {
  std::vector<std::string> forms = {password};
  const std::string ansi = system.ToAnsi(password);
  if (ansi != password && system.FromAnsi(ansi) == password) forms.push_back(ansi);
  return forms;
}

void WarnOfEntry(OperationMonitor& monitor, const Record& record, EntryStatus status) {
  if (status == EntryStatus::kUnsupported) {
    monitor.Warn(record.name, WarningReason::kUnsupported,
                 "it is packed in a way that is not known here");
  } else {
    monitor.Warn(record.name, WarningReason::kDamaged, "it is damaged");
  }
}

}  // namespace

Result Selection::Open(Archive& archive, Files& files, SystemInfo& system,
                       OperationMonitor& monitor) {
  const std::optional<FileInfo> file = files.Stat(archive.archive_name);
  known_ = archive.known_directory_;
  if (known_ && file && known_->Describes(archive.archive_name, *file)) {
    directory_.bias = known_->bias;
    directory_.input =
        std::make_unique<ArchiveInput>(files, std::vector<std::string>{archive.archive_name});
    known_->IndexNames();
    return directory_.input->Ok() ? Result::kDone : Result::kFailed;
  }
  archive.known_directory_.reset();
  std::string missing_part;
  if (!ReadDirectory(files, system, archive.archive_name, &directory_, &missing_part)) {
    if (!missing_part.empty())
      monitor.Warn(missing_part, WarningReason::kMissing, "this part of the archive is missing");
    return Result::kFailed;
  }
  known_ = std::make_shared<KnownDirectory>();
  known_->archive_name = archive.archive_name;
  known_->records = std::move(directory_.records);
  known_->bias = directory_.bias;
  if (file && directory_.input->PartCount() == 1) {
    known_->file = *file;
    archive.known_directory_ = known_;
  }
  return Result::kDone;
}

std::vector<std::size_t> Selection::Candidates(const NameFilter& names) const {
  std::vector<std::size_t> candidates;
  const std::unordered_set<std::string>* whole_names = names.WholeNames();
  if (whole_names != nullptr && !known_->places.empty()) {
    for (const std::string& name : *whole_names) {
      const auto [first, last] = known_->places.equal_range(name);
      for (auto place = first; place != last; ++place) candidates.push_back(place->second);
    }
    std::sort(candidates.begin(), candidates.end());
    return candidates;
  }
  for (std::size_t i = 0; i < known_->records.size(); ++i) {
    if (names.Matches(known_->records[i].name)) candidates.push_back(i);
  }
  return candidates;
}

Result Selection::Load(Archive& archive, Files& files, SystemInfo& system,
                       OperationMonitor& monitor) {
  const Result opened = Open(archive, files, system, monitor);
  if (opened != Result::kDone) return opened;
  const std::vector<std::size_t> candidates = Candidates(NameFilter(archive.files_to_process));
  for (const std::size_t place : candidates) {
    const Record& record = known_->records[place];
    if ((record.attributes & archive.required_attributes) != archive.required_attributes) continue;
    if ((record.attributes & archive.excluded_attributes) != 0) continue;
    records_.push_back(&record);
  }
  missed_ = candidates.empty() && !archive.files_to_process.empty();
  return Result::kDone;
}

void Selection::KeepLastOfEachName() {
  std::unordered_set<std::string> seen;
  std::vector<const Record*> kept;
  for (auto record = records_.rbegin(); record != records_.rend(); ++record) {
    if (seen.insert(FoldCase((*record)->name)).second) kept.push_back(*record);
  }
  std::reverse(kept.begin(), kept.end());
  records_ = std::move(kept);
}

TestOperation::TestOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                             OperationMonitor& monitor)
    : archive_(archive), files_(files), system_(system), threads_(threads), monitor_(monitor) {}

Result TestOperation::Run() {
  Selection selection;
  const Result loaded = selection.Load(archive_, files_, system_, monitor_);
  if (loaded != Result::kDone) return loaded;
  if (selection.Missed()) return Result::kFailed;
  const std::vector<const Record*>& records = selection.records();
  if (AnyEncrypted(records) && archive_.password.empty()) return Result::kWrongPassword;
  const std::uint64_t bytes = PackedBytes(records);
  Workers workers(threads_, WorkersFor(archive_, bytes, threads_));
  EntryReader reader(selection.directory(), workers, monitor_,
                     PasswordForms(archive_.password, system_));
  const EntryStatus password = reader.CheckPassword(records);
  if (password == EntryStatus::kWrongPassword) return Result::kWrongPassword;
  if (password == EntryStatus::kDamaged) return Result::kFailed;
  monitor_.BeginStage(bytes, 0, 100);
  reader.Run(records, *this);
  if (monitor_.Aborted()) return Result::kAborted;
  if (result_ == Result::kDone) monitor_.Finish();
  return result_;
}

bool TestOperation::Done(const Record& record, EntryStatus status) {
  if (status == EntryStatus::kGood) return true;
  if (status == EntryStatus::kWrongPassword) {
    result_ = Result::kWrongPassword;
  } else {
    result_ = Result::kFailed;
    WarnOfEntry(monitor_, record, status);
  }
  return false;
}

UnzipOperation::UnzipOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                               OperationMonitor& monitor)
    : archive_(archive), files_(files), system_(system), threads_(threads), monitor_(monitor) {}

UnzipOperation::~UnzipOperation() {
  for (Target& target : targets_) DiscardTarget(&target);
}

Result UnzipOperation::Run() {
  Selection selection;
  const Result loaded = selection.Load(archive_, files_, system_, monitor_);
  if (loaded != Result::kDone) return loaded;
  if (selection.Missed()) return Result::kFailed;
  if (!archive_.every_of_one_name) selection.KeepLastOfEachName();
  const std::vector<const Record*>& records = selection.records();
  if (AnyEncrypted(records) && archive_.password.empty()) return Result::kWrongPassword;
  const std::uint64_t bytes = PackedBytes(records);
  Workers workers(threads_, WorkersFor(archive_, bytes, threads_));
  EntryReader reader(selection.directory(), workers, monitor_,
                     PasswordForms(archive_.password, system_));
  if (reader.CheckPassword(records) == EntryStatus::kWrongPassword) return Result::kWrongPassword;
  monitor_.BeginStage(bytes, 0, 100);
  reader.Run(records, *this);
  SetFolderTimes();
  const Result result = Judge();
  if (result == Result::kDone || result == Result::kWarnings) monitor_.Finish();
  return monitor_.Aborted() ? Result::kAborted : result;
}

Result UnzipOperation::Judge() const {
  if (monitor_.Aborted()) return Result::kAborted;
  if (wrong_password_) return Result::kWrongPassword;
  if (no_space_) return Result::kNoSpace;
  if (damaged_ || (unwritten_ > 0 && written_ == 0)) return Result::kFailed;
  return monitor_.Warned() ? Result::kWarnings : Result::kDone;
}

bool UnzipOperation::Exists(const std::string& path) { return files_.Stat(path).has_value(); }

bool UnzipOperation::Wants(const Record& record) {
  const std::string reason = WhyUnsafe(record.name);
  const auto refuse = [this, &record, &reason] {
    monitor_.Warn(record.name, WarningReason::kUnsafe, "not a safe name: " + reason);
    return false;
  };
  const bool offered = archive_.offer_unusual_names && WhyHostileName(record.name).empty();
  if (!reason.empty() && !offered) return refuse();
  if (record.IsFolder() && !archive_.preserve_paths) return false;
  const std::string name = archive_.preserve_paths ? record.name : FileNameOf(record.name);
  BeforeFile file;
  file.source = record.name;
  file.entry_name = record.name;
  const std::string by_its_name = WithBackslash(archive_.unzip_folder) + name;
  file.destination = by_its_name;
  if (!monitor_.BeforeFile(&file) || file.exclude) return false;
  if (file.destination.empty()) return false;
  // A name that no file can have may stand in an archive, as long as the file gets another one.
  if (!reason.empty() && file.destination == by_its_name) return refuse();
  if (archive_.skip_existing && !record.IsFolder() && Exists(file.destination)) return false;
  Target target;
  target.destination = file.destination;
  targets_.push_back(std::move(target));
  return true;
}

FileStatus UnzipOperation::MakeFolders(const std::string& folder, bool* made) {
  *made = false;
  const std::string path = WithoutBackslash(folder);
  const bool is_root = path.empty() || path.ends_with(":") || path == "\\";
  if (is_root || known_folders_.count(path) != 0) return FileStatus::kOk;
  const std::optional<FileInfo> there = files_.Stat(path);
  if (there) {
    if (!there->IsFolder()) return FileStatus::kDenied;
    known_folders_.insert(path);
    return FileStatus::kOk;
  }
  const std::string parent = ParentFolder(path);
  // The upper parts of a share ("\\server\share") cannot be made.
  if (parent.size() >= path.size() || (IsNetworkPath(path) && !IsNetworkPath(parent))) {
    return FileStatus::kFailed;
  }
  bool parent_made = false;
  FileStatus status = MakeFolders(parent, &parent_made);
  if (status == FileStatus::kOk) status = files_.MakeFolder(path);
  if (status != FileStatus::kOk) return status;
  known_folders_.insert(path);
  *made = true;
  return FileStatus::kOk;
}

std::string UnzipOperation::TemporaryPathFor(const std::string& destination) {
  const std::string folder = ParentFolder(destination);
  // One name serves all files of a folder, since they are written one after the other; unless an
  // entry itself has that name.
  std::string& path = temporary_paths_[folder];
  if (EqualsNoCase(path, destination)) path.clear();
  for (unsigned number = 1; path.empty(); ++number) {
    path = folder + "\\~obk" + std::to_string(number) + ".tmp";
    if (EqualsNoCase(path, destination) || Exists(path)) path.clear();
  }
  return path;
}

FileStatus UnzipOperation::OpenTarget(Target* target) {
  const std::string folder = ParentFolder(target->destination);
  bool made = false;
  FileStatus status = MakeFolders(folder, &made);
  if (status != FileStatus::kOk) return status;
  const std::string path = TemporaryPathFor(target->destination);
  target->file = files_.Create(path, &status);
  if (target->file == nullptr) {
    return status == FileStatus::kOk ? FileStatus::kFailed : status;
  }
  target->temporary_path = path;
  return FileStatus::kOk;
}

bool UnzipOperation::Take(const Record&, const std::uint8_t* data, std::size_t count) {
  Target& target = targets_.front();
  if (target.status == FileStatus::kOk && target.file == nullptr) {
    target.status = OpenTarget(&target);
  }
  if (target.status == FileStatus::kOk) target.status = target.file->Write(data, count);
  return target.status == FileStatus::kOk;
}

void UnzipOperation::DiscardTarget(Target* target) {
  target->file.reset();
  if (!target->temporary_path.empty()) files_.RemoveFile(target->temporary_path, true);
  target->temporary_path.clear();
}

FileStatus UnzipOperation::PutInPlace(const Target& target) {
  FileStatus status = files_.Replace(target.temporary_path, target.destination);
  if (status != FileStatus::kDenied) return status;
  const std::optional<FileInfo> old = files_.Stat(target.destination);
  if (!old || old->IsFolder() || (old->attributes & file_attribute::kReadOnly) == 0) return status;
  files_.SetAttributes(target.destination, old->attributes & ~file_attribute::kReadOnly);
  status = files_.Replace(target.temporary_path, target.destination);
  if (status != FileStatus::kOk) files_.SetAttributes(target.destination, old->attributes);
  return status;
}

FileStatus UnzipOperation::FinishTarget(const Record& record, Target* target) {
  FileStatus status = target->status;
  if (status == FileStatus::kOk && target->file == nullptr) status = OpenTarget(target);
  if (status == FileStatus::kOk) status = target->file->Close();
  target->file.reset();
  if (status == FileStatus::kOk) {
    // A file without its time or attributes is better than none.
    files_.SetModified(target->temporary_path, record.modified);
    if (record.attributes != file_attribute::kArchive) {  // what a new file has anyway
      files_.SetAttributes(target->temporary_path, record.attributes);
    }
    status = PutInPlace(*target);
  }
  if (status == FileStatus::kOk) target->temporary_path.clear();
  return status;
}

FileStatus UnzipOperation::FinishFolder(const Record& record, const Target& target) {
  bool made = false;
  const FileStatus status = MakeFolders(target.destination, &made);
  // A folder that was there keeps its own attributes and time.
  if (made) made_folders_.push_back({WithoutBackslash(target.destination), &record});
  return status;
}

void UnzipOperation::SetFolderTimes() {
  // Only now: writing into a folder changes its time.
  for (const MadeFolder& folder : made_folders_) {
    files_.SetModified(folder.path, folder.record->modified);
    const std::uint32_t attributes = folder.record->attributes & ~file_attribute::kFolder;
    if (attributes != 0) files_.SetAttributes(folder.path, attributes);
  }
}

WarningReason UnzipOperation::WhyUnwritten(const Record& record, const Target& target,
                                           FileStatus status) {
  if (status == FileStatus::kNoSpace) return WarningReason::kNoRoom;
  const std::optional<FileInfo> there = files_.Stat(target.destination);
  if (there && there->IsFolder() != record.IsFolder()) return WarningReason::kPlaceTaken;
  // A file in the place of one of its folders?
  for (std::string folder = ParentFolder(target.destination);
       !there && ParentFolder(folder).size() < folder.size(); folder = ParentFolder(folder)) {
    const std::optional<FileInfo> above = files_.Stat(folder);
    if (above && !above->IsFolder()) return WarningReason::kPlaceTaken;
    if (above) return WarningReason::kNoRights;
  }
  return there ? WarningReason::kNoRights : WarningReason::kNoPlace;
}

bool UnzipOperation::Done(const Record& record, EntryStatus status) {
  Target target = std::move(targets_.front());
  targets_.pop_front();
  FileStatus written = FileStatus::kOk;
  if (status == EntryStatus::kGood) {
    written = record.IsFolder() ? FinishFolder(record, target) : FinishTarget(record, &target);
  }
  DiscardTarget(&target);
  switch (status) {
    case EntryStatus::kWrongPassword:
      wrong_password_ = true;
      return false;
    case EntryStatus::kDamaged:
    case EntryStatus::kUnsupported:
      damaged_ = true;
      WarnOfEntry(monitor_, record, status);
      return true;
    case EntryStatus::kGood:
      break;
  }
  return Written(record, target, written);
}

bool UnzipOperation::Written(const Record& record, const Target& target, FileStatus status) {
  if (status == FileStatus::kOk) {
    ++written_;
    monitor_.Unzipped({record.name, target.destination, record.IsFolder()});
    return true;
  }
  const WarningReason reason = WhyUnwritten(record, target, status);
  if (status == FileStatus::kNoSpace) {
    no_space_ = true;
    monitor_.Warn(record.name, reason, "the disk is full");
    return false;
  }
  ++unwritten_;
  monitor_.Warn(record.name, reason, "it cannot be written");
  return true;
}

}  // namespace quorvale::zip
