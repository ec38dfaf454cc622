#include "platform/host/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>

#include "base/text.h"
#include "platform/host/open_files.h"

namespace quorvale::host {
namespace {

using namespace file_attribute;  // NOLINT: the attribute bits, used throughout

// Seconds from 1601 to 1970.
constexpr std::int64_t kEpochSeconds = 11644473600;

}  // namespace

FileTime ToFileTime(const struct timespec& time) {
  return (time.tv_sec + kEpochSeconds) * 10000000 + time.tv_nsec / 100;
}

struct timespec FromFileTime(FileTime time) {
  struct timespec result {};
  std::int64_t seconds = time / 10000000;
  std::int64_t ticks = time % 10000000;
  if (ticks < 0) {
    ticks += 10000000;
    --seconds;
  }
  result.tv_sec = seconds - kEpochSeconds;
  result.tv_nsec = ticks * 100;
  return result;
}

std::string MachinePathOf(const std::string& path) {
  const bool has_drive = path.size() >= 2 && path[1] == ':' &&
                         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
  if (path.empty() || has_drive || path[0] == '\\') return path;
  std::string absolute = path;
  if (path[0] != '/') {
    char folder[PATH_MAX];
    if (getcwd(folder, sizeof(folder)) == nullptr) return path;
    absolute = std::string(folder) + "/" + path;
  }
  return "Z:" + ReplaceAll(absolute, "/", "\\");
}

HostFiles::HostFiles(const MachineFolder& machine, std::unique_ptr<ExtendedAttribute> extended)
    : drives_(machine),
      walk_(drives_, cache_),
      attributes_(cache_, std::move(extended)),
      open_(std::make_shared<OpenFiles>()) {}

void HostFiles::SetDrive(char letter, DriveKind kind, const std::string& folder) {
  drives_.SetDrive(letter, kind, folder);
  walk_.Forget();
}

void HostFiles::RemoveDrive(char letter) {
  drives_.RemoveDrive(letter);
  walk_.Forget();
}

void HostFiles::SetShare(const std::string& share, const std::string& folder) {
  drives_.SetShare(share, folder);
  walk_.Forget();
}

void HostFiles::RemoveShare(const std::string& share) {
  drives_.RemoveShare(share);
  walk_.Forget();
}

bool HostFiles::IsHeld(const Place& place) const { return open_->Holds(place.host); }

std::string HostFiles::HostPath(const std::string& path) {
  const auto place = walk_.Resolve(path);
  return place && !place->blocked ? place->host : "";
}

bool HostFiles::Describe(const Place& place, FileInfo* result) {
  struct stat info {};
  if (stat(place.host.c_str(), &info) != 0) return false;
  if (!S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode)) return false;
  result->name = place.name;
  result->attributes = attributes_.Read(place, info);
  result->size = S_ISDIR(info.st_mode) ? 0 : static_cast<std::uint64_t>(info.st_size);
  result->modified = ToFileTime(info.st_mtim);
  return true;
}

std::optional<FileInfo> HostFiles::Stat(const std::string& path) {
  const auto place = walk_.Resolve(path);
  FileInfo info;
  if (!place || !place->exists || !Describe(*place, &info)) return std::nullopt;
  return info;
}

bool HostFiles::CanList(const std::string& folder) {
  const auto place = walk_.Resolve(folder);
  return place && place->exists && cache_.Listing(place->host) != nullptr;
}

std::vector<FileInfo> HostFiles::List(const std::string& folder) {
  std::vector<FileInfo> result;
  const auto place = walk_.Resolve(folder);
  if (!place || !place->exists) return result;
  const FolderListing* listing = cache_.Listing(place->host);
  if (listing == nullptr) return result;
  // A link of an old disk may lead through this very folder, and have it listed anew.
  std::optional<FolderListing> kept;
  if (place->drive->read_only) listing = &kept.emplace(*listing);
  result.reserve(listing->entries.size());
  for (const auto& [key, entry] : listing->entries) {
    Place below;
    below.drive = place->drive;
    below.parent = place->host;
    below.name = entry.name;
    below.host = JoinHostPath(place->host, entry.name);
    below.exists = true;
    FileInfo info;
    if (entry.is_link && !walk_.FollowLink(&below)) continue;
    if (!Describe(below, &info) || (entry.is_link && info.IsFolder())) continue;
    result.push_back(std::move(info));
  }
  return result;
}

std::unique_ptr<InputFile> HostFiles::OpenRead(const std::string& path) {
  const auto place = walk_.Resolve(path);
  if (!place || !place->exists) return nullptr;
  return OpenHostInput(place->host, open_);
}

FileStatus HostFiles::MayBeWritten(const Place& place, std::uint64_t* old_size) {
  if (!place.drive->CanBeWritten() || place.blocked || open_->written.count(place.host) != 0) {
    return FileStatus::kDenied;
  }
  if (!place.exists) return IsNewName(place.name) ? FileStatus::kOk : FileStatus::kFailed;
  // Neither a folder nor a device of the host is a file to write to.
  FileInfo old;
  if (!Describe(place, &old) || old.IsFolder() || (old.attributes & kReadOnly) != 0) {
    return FileStatus::kDenied;
  }
  *old_size = old.size;
  return FileStatus::kOk;
}

std::unique_ptr<OutputFile> HostFiles::Create(const std::string& path, FileStatus* status) {
  const auto place = walk_.Resolve(path);
  std::uint64_t old_size = 0;
  FileStatus result = place ? MayBeWritten(*place, &old_size) : FileStatus::kNotFound;
  std::unique_ptr<OutputFile> file;
  if (result == FileStatus::kOk) file = CreateHostOutput(place->host, place->drive, open_, &result);
  if (status != nullptr) *status = result;
  if (file == nullptr) return nullptr;
  place->drive->GiveBack(old_size);
  if (!place->exists) cache_.Added(place->parent, {place->name, false, false});
  return file;
}

FileStatus HostFiles::MakeFolder(const std::string& path) {
  const auto place = walk_.Resolve(path);
  if (!place) return FileStatus::kNotFound;
  if (place->exists) {
    FileInfo info;
    return Describe(*place, &info) && info.IsFolder() ? FileStatus::kOk : FileStatus::kDenied;
  }
  if (!place->drive->CanBeWritten() || place->blocked) return FileStatus::kDenied;
  if (!IsNewName(place->name)) return FileStatus::kFailed;
  if (mkdir(place->host.c_str(), 0777) != 0) return StatusOf(errno);
  cache_.Added(place->parent, {place->name, true, false});
  return FileStatus::kOk;
}

FileStatus HostFiles::RemoveFile(const std::string& path, bool force) {
  const auto place = walk_.Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  FileInfo info;
  if (!Describe(*place, &info) || info.IsFolder()) return FileStatus::kDenied;
  if (!place->drive->CanBeWritten() || IsHeld(*place)) return FileStatus::kDenied;
  if (!force && (info.attributes & kReadOnly) != 0) return FileStatus::kDenied;
  // A link goes, what it points to stays.
  if (unlink(place->Entry().c_str()) != 0) return StatusOf(errno);
  cache_.Removed(place->parent, place->name);
  if (!place->is_link) place->drive->GiveBack(info.size);
  attributes_.StoreInFile(place->parent, place->name, std::nullopt);
  return FileStatus::kOk;
}

FileStatus HostFiles::RemoveHostFolder(const Place& place) {
  if (rmdir(place.host.c_str()) == 0) return FileStatus::kOk;
  if (errno != ENOTEMPTY && errno != EEXIST) return StatusOf(errno);
  const FolderListing* listing = cache_.Listing(place.host);
  if (listing == nullptr || !listing->entries.empty()) return FileStatus::kFailed;
  unlink(JoinHostPath(place.host, kAttributesFile).c_str());
  return rmdir(place.host.c_str()) == 0 ? FileStatus::kOk : FileStatus::kFailed;
}

FileStatus HostFiles::RemoveFolder(const std::string& path, bool force) {
  const auto place = walk_.Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  FileInfo info;
  if (!Describe(*place, &info) || !info.IsFolder()) return FileStatus::kDenied;
  if (!place->drive->CanBeWritten() || place->parent.empty()) return FileStatus::kDenied;
  if (!force && (info.attributes & kReadOnly) != 0) return FileStatus::kDenied;
  if (place->is_link) {
    if (unlink(place->Entry().c_str()) != 0) return StatusOf(errno);
  } else {
    const FileStatus status = RemoveHostFolder(*place);
    if (status != FileStatus::kOk) return status;
    cache_.Forget(place->host);
  }
  cache_.Removed(place->parent, place->name);
  attributes_.StoreInFile(place->parent, place->name, std::nullopt);
  return FileStatus::kOk;
}

FileStatus HostFiles::PrepareReplace(const Place& source, const std::string& to, Place* target,
                                     std::uint64_t* old_size) {
  if (source.drive != target->drive || source.parent.empty()) return FileStatus::kFailed;
  if (!source.drive->CanBeWritten() || target->blocked) return FileStatus::kDenied;
  if (IsHeld(source) || IsHeld(*target)) return FileStatus::kDenied;
  if (target->exists && target->host != source.host) {
    FileInfo old;
    if (!Describe(*target, &old) || old.IsFolder() || (old.attributes & kReadOnly) != 0) {
      return FileStatus::kDenied;
    }
    *old_size = old.size;
    return FileStatus::kOk;
  }
  // A new name, or the same file in another case.
  target->name = NewNameOf(to);
  if (!IsNewName(target->name)) return FileStatus::kFailed;
  target->host = target->Entry();
  return FileStatus::kOk;
}

FileStatus HostFiles::Replace(const std::string& from, const std::string& to) {
  const auto source = walk_.Resolve(from);
  auto target = walk_.Resolve(to);
  if (!source || !source->exists || !target) return FileStatus::kNotFound;
  std::uint64_t old_size = 0;
  const FileStatus status = PrepareReplace(*source, to, &*target, &old_size);
  if (status != FileStatus::kOk) return status;
  FileInfo moved;
  if (!Describe(*source, &moved)) return FileStatus::kDenied;
  const auto stored = attributes_.InFile(source->parent, source->name);
  if (rename(source->Entry().c_str(), target->host.c_str()) != 0) return StatusOf(errno);
  if (moved.IsFolder()) cache_.Forget(source->host);
  cache_.Removed(source->parent, source->name);
  cache_.Added(target->parent, {target->name, moved.IsFolder(), source->is_link});
  source->drive->GiveBack(old_size);
  attributes_.StoreInFile(source->parent, source->name, std::nullopt);
  return attributes_.StoreInFile(target->parent, target->name, stored);
}

FileStatus HostFiles::SetModified(const std::string& path, FileTime modified) {
  const auto place = walk_.Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  if (!place->drive->CanBeWritten()) return FileStatus::kDenied;
  const struct timespec times[2] = {{0, UTIME_OMIT}, FromFileTime(modified)};
  if (utimensat(AT_FDCWD, place->host.c_str(), times, 0) != 0) return StatusOf(errno);
  return FileStatus::kOk;
}

FileStatus HostFiles::SetAttributes(const std::string& path, std::uint32_t attributes) {
  const auto place = walk_.Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  FileInfo info;
  if (!place->drive->CanBeWritten() || !Describe(*place, &info)) return FileStatus::kDenied;
  return attributes_.Store(*place, attributes & kSettableAttributes, info.IsFolder());
}

std::string HostFiles::ShortPath(const std::string& path) { return path; }

DriveKind HostFiles::KindOfDrive(const std::string& drive) {
  const Drive* found = drives_.Find(drive);
  return found == nullptr ? DriveKind::kNoRoot : found->kind;
}

bool HostFiles::DriveExists(const std::string& drive) { return drives_.Find(drive) != nullptr; }

std::optional<DiskSpace> HostFiles::Space(const std::string& path) {
  const Drive* drive = drives_.Find(path);
  if (drive == nullptr || drive->root.empty()) return std::nullopt;
  DiskSpace space;
  if (drive->free_bytes) {
    space.free_bytes = *drive->free_bytes;
    space.total_bytes = drive->total_bytes;
    return space;
  }
  struct statvfs info {};
  if (statvfs(drive->root.c_str(), &info) != 0) return std::nullopt;
  space.free_bytes = static_cast<std::uint64_t>(info.f_bavail) * info.f_frsize;
  space.total_bytes = static_cast<std::uint64_t>(info.f_blocks) * info.f_frsize;
  return space;
}

void HostFiles::SetFreeBytes(char letter, std::optional<std::uint64_t> bytes) {
  Drive* drive = drives_.Find(std::string(1, letter) + ":");
  if (drive == nullptr) return;
  drive->free_bytes = bytes;
  drive->total_bytes = std::max(drive->total_bytes, bytes.value_or(0));
}

}  // namespace quorvale::host
