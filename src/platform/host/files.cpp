#include "platform/host/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "base/text.h"
#include "platform/host/disk_links.h"
#include "platform/host/dos_attributes.h"
#include "platform/host/host_file.h"

namespace quorvale::host {
namespace {

using namespace file_attribute;  // NOLINT: the attribute bits, used throughout

constexpr std::uint32_t kSettableBits = kReadOnly | kHidden | kSystem | kArchive;

// Seconds from 1601 to 1970.
constexpr std::int64_t kEpochSeconds = 11644473600;

FileStatus StatusOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return FileStatus::kNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
    case EBUSY:
    case EISDIR:
    case ELOOP:
      return FileStatus::kDenied;
    case ENOSPC:
    case EDQUOT:
      return FileStatus::kNoSpace;
    default:
      return FileStatus::kFailed;
  }
}

std::string RealPath(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return "";
  std::string result = resolved;
  std::free(resolved);
  return result;
}

// "\\\\server\\share" of a network path, else "".
std::string ShareOf(const std::string& path) {
  if (!path.starts_with("\\\\")) return "";
  const std::size_t server_end = path.find('\\', 2);
  if (server_end == std::string::npos) return path;
  return path.substr(0, path.find('\\', server_end + 1));
}

bool IsInside(const std::string& root, const std::string& path) {
  return root == "/" || path == root || path.compare(0, root.size() + 1, root + "/") == 0;
}

// Names lose the dots and blanks at their end, as the system's calls take them.
std::string WithoutEndDots(const std::string& name) {
  const std::size_t last = name.find_last_not_of(". ");
  return last == std::string::npos ? "" : name.substr(0, last + 1);
}

bool IsNewName(const std::string& name) {
  if (name.empty() || name == kAttributesFile) return false;
  return std::none_of(name.begin(), name.end(), [](char c) {
    return (c >= 0 && c < ' ') || std::string_view("/\\:*?\"<>|").find(c) != std::string::npos;
  });
}

// The names of a path below its drive, with "." and ".." resolved.
std::vector<std::string> NamesOf(const std::string& path) {
  std::vector<std::string> names;
  for (std::string& part : Split(path.substr(2), "\\")) {
    if (part.empty() || part == ".") continue;
    if (part != "..") {
      names.push_back(std::move(part));
    } else if (!names.empty()) {
      names.pop_back();
    }
  }
  return names;
}

// Marks a file as open for as long as it lives.
class Hold {
 public:
  Hold(std::shared_ptr<HostFiles::OpenFiles> open,
       std::multiset<std::string> HostFiles::OpenFiles::*kind, const std::string& host)
      : open_(std::move(open)), kind_(kind), mark_((open_.get()->*kind_).insert(host)) {}
  ~Hold() { (open_.get()->*kind_).erase(mark_); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  const std::shared_ptr<HostFiles::OpenFiles> open_;
  std::multiset<std::string> HostFiles::OpenFiles::*const kind_;
  const std::multiset<std::string>::iterator mark_;
};

class HostInputFile : public InputFile {
 public:
  HostInputFile(int file, std::optional<std::uint64_t> fails_at, std::unique_ptr<Hold> hold)
      : file_(file), fails_at_(fails_at), hold_(std::move(hold)) {}
  ~HostInputFile() override { close(file_); }

  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    if (fails_at_) {
      if (at_ >= *fails_at_) return -1;
      count = static_cast<std::size_t>(std::min<std::uint64_t>(count, *fails_at_ - at_));
    }
    ssize_t done = 0;
    do {
      done = read(file_, buffer, count);
    } while (done < 0 && errno == EINTR);
    if (done > 0) at_ += static_cast<std::uint64_t>(done);
    return done;
  }

  bool Seek(std::uint64_t offset) override {
    if (offset > static_cast<std::uint64_t>(INT64_MAX)) return false;
    if (lseek(file_, static_cast<off_t>(offset), SEEK_SET) < 0) return false;
    at_ = offset;
    return true;
  }

  std::uint64_t Size() const override {
    struct stat info {};
    return fstat(file_, &info) == 0 ? static_cast<std::uint64_t>(info.st_size) : 0;
  }

 private:
  const int file_;
  const std::optional<std::uint64_t> fails_at_;
  const std::unique_ptr<Hold> hold_;
  std::uint64_t at_ = 0;
};

class HostOutputFile : public OutputFile {
 public:
  HostOutputFile(int file, HostFiles::Drive* drive, std::unique_ptr<Hold> hold)
      : file_(file), drive_(drive), hold_(std::move(hold)) {}
  ~HostOutputFile() override {
    if (file_ >= 0) close(file_);
  }

  FileStatus Write(const void* buffer, std::size_t count) override {
    if (file_ < 0) return FileStatus::kFailed;
    const std::uint64_t end = at_ + count;
    if (end > size_ && !drive_->Take(end - size_)) return FileStatus::kNoSpace;
    const char* bytes = static_cast<const char*>(buffer);
    while (count > 0) {
      const ssize_t done = write(file_, bytes, count);
      if (done < 0 && errno == EINTR) continue;
      if (done < 0) return StatusOf(errno);
      bytes += done;
      count -= static_cast<std::size_t>(done);
    }
    at_ = end;
    size_ = std::max(size_, end);
    return FileStatus::kOk;
  }

  bool Seek(std::uint64_t offset) override {
    if (file_ < 0 || offset > static_cast<std::uint64_t>(INT64_MAX)) return false;
    if (lseek(file_, static_cast<off_t>(offset), SEEK_SET) < 0) return false;
    at_ = offset;
    return true;
  }

  FileStatus Close() override {
    if (file_ < 0) return FileStatus::kFailed;
    const int result = close(file_);
    file_ = -1;
    hold_.reset();
    return result == 0 ? FileStatus::kOk : StatusOf(errno);
  }

 private:
  int file_;  // -1 once closed
  HostFiles::Drive* drive_;
  std::unique_ptr<Hold> hold_;
  std::uint64_t at_ = 0;
  std::uint64_t size_ = 0;
};

void SetStatus(FileStatus* status, FileStatus value) {
  if (status != nullptr) *status = value;
}

bool CanWriteTo(const HostFiles::Drive& drive) {
  return drive.kind != DriveKind::kCdRom && !drive.read_only;
}

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

bool HostFiles::Drive::Take(std::uint64_t bytes) {
  if (!free_bytes) return true;
  if (*free_bytes < bytes) return false;
  *free_bytes -= bytes;
  return true;
}

void HostFiles::Drive::GiveBack(std::uint64_t bytes) {
  if (!free_bytes) return;
  *free_bytes += bytes;
  total_bytes = std::max(total_bytes, *free_bytes);
}

HostFiles::HostFiles(const MachineFolder& machine) {
  for (const auto& [letter, described] : machine.drives) {
    Drive& drive = drives_[letter];
    drive.kind = described.kind;
    if (!described.folder.empty()) drive.root = RealPath(described.folder);
    drive.free_bytes = described.free_bytes;
    drive.read_only = described.read_only;
    drive.total_bytes = described.free_bytes.value_or(0);
  }
  Drive host;
  host.root = "/";
  drives_['Z'] = host;
}

void HostFiles::SetDrive(char letter, DriveKind kind, const std::string& folder) {
  Drive& drive = drives_[letter];
  drive.kind = kind;
  drive.root = RealPath(folder);
  walked_ = {};
}

void HostFiles::RemoveDrive(char letter) {
  drives_.erase(letter);
  walked_ = {};
}

void HostFiles::SetShare(const std::string& share, const std::string& folder) {
  Drive& drive = shares_[FoldCase(share)];
  drive.kind = DriveKind::kRemote;
  drive.root = RealPath(folder);
  walked_ = {};
}

void HostFiles::RemoveShare(const std::string& share) {
  shares_.erase(FoldCase(share));
  walked_ = {};
}

HostFiles::Drive* HostFiles::FindDrive(const std::string& path) {
  if (path.starts_with("\\\\")) {
    const auto share = shares_.find(FoldCase(ShareOf(path)));
    return share == shares_.end() ? nullptr : &share->second;
  }
  if (path.size() < 2 || path[1] != ':') return nullptr;
  const char letter = path[0];
  const bool is_letter = (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
  const auto found = is_letter ? drives_.find(static_cast<char>(letter & ~0x20)) : drives_.end();
  return found == drives_.end() ? nullptr : &found->second;
}

bool HostFiles::FollowLink(Place* place) {
  std::string target = RealPath(place->host);
  if (target.empty() || !IsInside(place->drive->root, target)) {
    target = place->drive->read_only ? InsideDisk(*place) : "";
  }
  if (target.empty()) return false;
  place->host = target;
  return true;
}

std::string HostFiles::InsideDisk(const Place& place) {
  constexpr int kMostLinks = 8;  // one behind another
  std::string path = LinkOfOldDisk(place.host);
  if (path.empty() || links_followed_ >= kMostLinks) return "";
  if (path[0] == '\\') {
    // Without a letter the link's own drive is meant.
    for (const auto& [letter, drive] : drives_) {
      if (&drive == place.drive) path = std::string(1, letter) + ":" + path;
    }
  }
  ++links_followed_;
  const auto target = Resolve(path);
  --links_followed_;
  return target && target->exists && target->drive->read_only ? target->host : "";
}

bool HostFiles::Step(const std::string& asked, Place* place) {
  // Only what stands has something below it.
  if (!place->exists) return false;
  place->parent = place->host;
  std::optional<FolderEntry> entry = cache_.Find(place->parent, asked);
  const std::string plain = WithoutEndDots(asked);
  if (!entry && plain != asked && !plain.empty()) entry = cache_.Find(place->parent, plain);
  place->exists = entry.has_value();
  place->name = entry ? entry->name : plain;
  place->host = JoinHostPath(place->parent, place->name);
  place->is_link = entry && entry->is_link;
  if (place->is_link && !FollowLink(place)) {
    place->exists = false;
    place->blocked = true;
  }
  return true;
}

bool HostFiles::WasWalked(const std::string& folder) const {
  struct stat info {};
  return !folder.empty() && folder == walked_.path && lstat(walked_.host.c_str(), &info) == 0 &&
         S_ISDIR(info.st_mode) && info.st_dev == walked_.device && info.st_ino == walked_.number;
}

void HostFiles::RememberWalk(const std::string& folder, const Place& place) {
  struct stat info {};
  if (stat(place.host.c_str(), &info) != 0) return;
  walked_ = {folder, place.host, place.drive, info.st_dev, info.st_ino};
}

std::optional<HostFiles::Place> HostFiles::Resolve(const std::string& original) {
  const std::string path = ReplaceAll(original, "/", "\\");
  if (path.find('\0') != std::string::npos) return std::nullopt;
  Place place;
  // Most calls name files of one folder, one after the other.
  const std::size_t name_at = path.rfind('\\') + 1;
  const std::string last = path.substr(name_at);
  const std::string folder =
      last.empty() || last == "." || last == ".." ? "" : path.substr(0, name_at);
  if (WasWalked(folder)) {
    place.drive = walked_.drive;
    place.host = walked_.host;
    place.exists = true;
    Step(last, &place);
    return place;
  }
  place.drive = FindDrive(path);
  if (place.drive == nullptr || place.drive->root.empty()) return std::nullopt;
  place.host = place.drive->root;
  place.exists = true;
  // The names stand behind "C:" or behind the name of the share.
  const std::string share = ShareOf(path);
  const std::vector<std::string> names =
      NamesOf(share.empty() ? path : "C:" + path.substr(share.size()));
  bool exact = !folder.empty() && names.size() >= 2;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i + 1 == names.size() && exact && place.exists) RememberWalk(folder, place);
    if (!Step(names[i], &place)) return std::nullopt;
    exact = exact && place.name == names[i] && !place.is_link;
  }
  return place;
}

std::string HostFiles::HostPath(const std::string& path) {
  const auto place = Resolve(path);
  return place && !place->blocked ? place->host : "";
}

std::optional<std::uint32_t> HostFiles::StoredInFile(const std::string& parent,
                                                     const std::string& name) {
  const FolderListing* listing = cache_.Known(parent);
  if (listing == nullptr) listing = cache_.Listing(parent);
  if (listing == nullptr || listing->attributes.empty()) return std::nullopt;
  const auto found = listing->attributes.find(name);
  if (found == listing->attributes.end()) return std::nullopt;
  return found->second;
}

std::uint32_t HostFiles::AttributesOf(const Drive& drive, const std::string& parent,
                                      const std::string& name, const std::string& host,
                                      const struct stat& info) {
  const bool is_folder = S_ISDIR(info.st_mode);
  std::uint32_t attributes = is_folder ? 0 : kArchive;
  const auto kept = use_attributes_file_ ? std::nullopt : DosAttributesOf(host);
  if (kept) {
    attributes = *kept;
  } else if (const auto stored = parent.empty() ? std::nullopt : StoredInFile(parent, name)) {
    attributes = *stored;
  }
  attributes &= kSettableBits;
  if (is_folder) return attributes | kFolder;
  // Here a file's own right to write is the truth about it. A disk of another computer keeps the
  // bit where it belongs, and its mount says nothing.
  const bool foreign = drive.read_only && kept;
  if (foreign) return attributes;
  attributes &= ~kReadOnly;
  if ((info.st_mode & S_IWUSR) == 0) attributes |= kReadOnly;
  return attributes;
}

bool HostFiles::Describe(const Place& place, FileInfo* result) {
  struct stat info {};
  if (stat(place.host.c_str(), &info) != 0) return false;
  if (!S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode)) return false;
  result->name = place.name;
  result->attributes = AttributesOf(*place.drive, place.parent, place.name, place.host, info);
  result->size = S_ISDIR(info.st_mode) ? 0 : static_cast<std::uint64_t>(info.st_size);
  result->modified = ToFileTime(info.st_mtim);
  return true;
}

std::optional<FileInfo> HostFiles::Stat(const std::string& path) {
  const auto place = Resolve(path);
  FileInfo info;
  if (!place || !place->exists || !Describe(*place, &info)) return std::nullopt;
  return info;
}

std::vector<FileInfo> HostFiles::List(const std::string& folder) {
  std::vector<FileInfo> result;
  const auto place = Resolve(folder);
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
    if (entry.is_link && !FollowLink(&below)) continue;
    if (!Describe(below, &info) || (entry.is_link && info.IsFolder())) continue;
    result.push_back(std::move(info));
  }
  return result;
}

std::unique_ptr<InputFile> HostFiles::OpenRead(const std::string& path) {
  const auto place = Resolve(path);
  if (!place || !place->exists || in_use_.count(place->host) != 0) return nullptr;
  // Without O_NONBLOCK a pipe of the host would be waited for.
  const int file = open(place->host.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return nullptr;
  struct stat info {};
  if (fstat(file, &info) != 0 || !S_ISREG(info.st_mode)) {
    close(file);
    return nullptr;
  }
  std::optional<std::uint64_t> fails_at;
  const auto fault = read_faults_.find(place->host);
  if (fault != read_faults_.end()) fails_at = fault->second;
  return std::make_unique<HostInputFile>(
      file, fails_at, std::make_unique<Hold>(open_, &OpenFiles::read, place->host));
}

bool HostFiles::IsReadOnly(const Place& place) {
  FileInfo info;
  return Describe(place, &info) && (info.attributes & kReadOnly) != 0;
}

std::unique_ptr<OutputFile> HostFiles::Create(const std::string& path, FileStatus* status) {
  const auto place = Resolve(path);
  SetStatus(status, FileStatus::kDenied);
  if (!place) {
    SetStatus(status, FileStatus::kNotFound);
    return nullptr;
  }
  if (!CanWriteTo(*place->drive) || place->blocked || in_use_.count(place->host) != 0 ||
      open_->written.count(place->host) != 0) {
    return nullptr;
  }
  FileInfo old;
  if (place->exists) {
    // Neither a folder nor a device of the host is a file to write to.
    if (!Describe(*place, &old) || old.IsFolder() || (old.attributes & kReadOnly) != 0) {
      return nullptr;
    }
  } else if (!IsNewName(place->name)) {
    SetStatus(status, FileStatus::kFailed);
    return nullptr;
  }
  const int file = open(place->host.c_str(),
                        O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  if (file < 0) {
    SetStatus(status, StatusOf(errno));
    return nullptr;
  }
  place->drive->GiveBack(old.size);
  if (!place->exists) cache_.Added(place->parent, {place->name, false, false});
  SetStatus(status, FileStatus::kOk);
  return std::make_unique<HostOutputFile>(
      file, place->drive, std::make_unique<Hold>(open_, &OpenFiles::written, place->host));
}

FileStatus HostFiles::MakeFolder(const std::string& path) {
  const auto place = Resolve(path);
  if (!place) return FileStatus::kNotFound;
  if (place->exists) {
    FileInfo info;
    return Describe(*place, &info) && info.IsFolder() ? FileStatus::kOk : FileStatus::kDenied;
  }
  if (!CanWriteTo(*place->drive) || place->blocked) return FileStatus::kDenied;
  if (!IsNewName(place->name)) return FileStatus::kFailed;
  if (mkdir(place->host.c_str(), 0777) != 0) return StatusOf(errno);
  cache_.Added(place->parent, {place->name, true, false});
  return FileStatus::kOk;
}

FileStatus HostFiles::RemoveFile(const std::string& path, bool force) {
  const auto place = Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  FileInfo info;
  if (!Describe(*place, &info) || info.IsFolder()) return FileStatus::kDenied;
  if (!CanWriteTo(*place->drive) || IsHeld(place->host)) return FileStatus::kDenied;
  if (!force && (info.attributes & kReadOnly) != 0) return FileStatus::kDenied;
  // A link goes, what it points to stays.
  if (unlink(JoinHostPath(place->parent, place->name).c_str()) != 0) return StatusOf(errno);
  cache_.Removed(place->parent, place->name);
  if (!place->is_link) place->drive->GiveBack(info.size);
  StoreInAttributesFile(place->parent, place->name, std::nullopt);
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
  const auto place = Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  FileInfo info;
  if (!Describe(*place, &info) || !info.IsFolder()) return FileStatus::kDenied;
  if (!CanWriteTo(*place->drive) || place->parent.empty()) return FileStatus::kDenied;
  if (!force && (info.attributes & kReadOnly) != 0) return FileStatus::kDenied;
  if (place->is_link) {
    if (unlink(JoinHostPath(place->parent, place->name).c_str()) != 0) return StatusOf(errno);
  } else {
    const FileStatus status = RemoveHostFolder(*place);
    if (status != FileStatus::kOk) return status;
    cache_.Forget(place->host);
  }
  cache_.Removed(place->parent, place->name);
  StoreInAttributesFile(place->parent, place->name, std::nullopt);
  return FileStatus::kOk;
}

FileStatus HostFiles::Replace(const std::string& from, const std::string& to) {
  const auto source = Resolve(from);
  auto target = Resolve(to);
  if (!source || !source->exists || !target) return FileStatus::kNotFound;
  if (source->drive != target->drive || source->parent.empty()) return FileStatus::kFailed;
  if (!CanWriteTo(*source->drive) || target->blocked) return FileStatus::kDenied;
  if (IsHeld(source->host) || IsHeld(target->host)) return FileStatus::kDenied;
  FileInfo old;
  const bool same = target->exists && target->host == source->host;
  if (target->exists && !same) {
    if (!Describe(*target, &old) || old.IsFolder() || (old.attributes & kReadOnly) != 0) {
      return FileStatus::kDenied;
    }
  } else {
    // A new name, or the same file in another case.
    const std::vector<std::string> names = NamesOf(ReplaceAll(to, "/", "\\"));
    target->name = names.empty() ? "" : WithoutEndDots(names.back());
    if (!IsNewName(target->name)) return FileStatus::kFailed;
    target->host = JoinHostPath(target->parent, target->name);
  }
  FileInfo moved;
  if (!Describe(*source, &moved)) return FileStatus::kDenied;
  const auto stored = StoredInFile(source->parent, source->name);
  const std::string entry = JoinHostPath(source->parent, source->name);
  if (rename(entry.c_str(), target->host.c_str()) != 0) return StatusOf(errno);
  if (moved.IsFolder()) cache_.Forget(source->host);
  cache_.Removed(source->parent, source->name);
  cache_.Added(target->parent, {target->name, moved.IsFolder(), source->is_link});
  source->drive->GiveBack(old.size);
  StoreInAttributesFile(source->parent, source->name, std::nullopt);
  return StoreInAttributesFile(target->parent, target->name, stored);
}

FileStatus HostFiles::SetModified(const std::string& path, FileTime modified) {
  const auto place = Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  if (!CanWriteTo(*place->drive)) return FileStatus::kDenied;
  const struct timespec times[2] = {{0, UTIME_OMIT}, FromFileTime(modified)};
  if (utimensat(AT_FDCWD, place->host.c_str(), times, 0) != 0) return StatusOf(errno);
  return FileStatus::kOk;
}

FileStatus HostFiles::SetAttributes(const std::string& path, std::uint32_t attributes) {
  const auto place = Resolve(path);
  if (!place || !place->exists) return FileStatus::kNotFound;
  FileInfo info;
  if (!CanWriteTo(*place->drive) || !Describe(*place, &info)) return FileStatus::kDenied;
  return StoreAttributes(*place, attributes & kSettableBits, info.IsFolder());
}

FileStatus HostFiles::StoreAttributes(const Place& place, std::uint32_t attributes,
                                      bool is_folder) {
  struct stat info {};
  if (stat(place.host.c_str(), &info) != 0) return StatusOf(errno);
  const mode_t writable = info.st_mode | S_IWUSR;
  // A file that cannot be written takes no attribute either.
  if (!is_folder && info.st_mode != writable && chmod(place.host.c_str(), writable & 07777) != 0) {
    return StatusOf(errno);
  }
  const std::uint32_t usual = is_folder ? 0 : kArchive;
  const std::uint32_t stored = is_folder ? attributes : attributes & ~kReadOnly;
  bool kept = false;
  if (!use_attributes_file_) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%x", stored);
    kept = stored == usual
               ? removexattr(place.host.c_str(), kDosAttributeName) == 0 || errno == ENODATA
               : setxattr(place.host.c_str(), kDosAttributeName, text, std::string(text).size(),
                          0) == 0;
  }
  std::optional<std::uint32_t> in_file;
  if (!kept && stored != usual) in_file = stored;
  const FileStatus status = place.parent.empty()
                                ? (in_file ? FileStatus::kFailed : FileStatus::kOk)
                                : StoreInAttributesFile(place.parent, place.name, in_file);
  if (!is_folder && (attributes & kReadOnly) != 0) {
    const mode_t read_only = writable & ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH);
    if (chmod(place.host.c_str(), read_only & 07777) != 0) return StatusOf(errno);
  }
  return status;
}

FileStatus HostFiles::StoreInAttributesFile(const std::string& parent, const std::string& name,
                                            std::optional<std::uint32_t> attributes) {
  FolderListing* listing = cache_.Listing(parent);
  if (listing == nullptr) return FileStatus::kFailed;
  if (!attributes && listing->attributes.erase(name) == 0) return FileStatus::kOk;
  // A line holds one name.
  if (attributes && name.find('\n') != std::string::npos) return FileStatus::kFailed;
  if (attributes) listing->attributes[name] = *attributes;

  const std::string path = JoinHostPath(parent, kAttributesFile);
  bool done = true;
  if (listing->attributes.empty()) {
    done = unlink(path.c_str()) == 0;
  } else {
    std::string text;
    for (const auto& [entry, bits] : listing->attributes) {
      char number[16];
      std::snprintf(number, sizeof(number), "0x%x", bits);
      text += std::string(number) + " " + entry + "\n";
    }
    std::string error;
    done = ReplaceHostFile(path, text, &error);
  }
  // The listing was changed by hand: it is read anew when it is needed.
  cache_.Forget(parent);
  return done ? FileStatus::kOk : FileStatus::kFailed;
}

std::string HostFiles::ShortPath(const std::string& path) { return path; }

DriveKind HostFiles::KindOfDrive(const std::string& drive) {
  const Drive* found = FindDrive(drive);
  return found == nullptr ? DriveKind::kNoRoot : found->kind;
}

bool HostFiles::DriveExists(const std::string& drive) { return FindDrive(drive) != nullptr; }

std::optional<DiskSpace> HostFiles::Space(const std::string& path) {
  const Drive* drive = FindDrive(path);
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
  Drive* drive = FindDrive(std::string(1, letter) + ":");
  if (drive == nullptr) return;
  drive->free_bytes = bytes;
  drive->total_bytes = std::max(drive->total_bytes, bytes.value_or(0));
}

void HostFiles::SetInUse(const std::string& path, bool in_use) {
  const std::string host = HostPath(path);
  if (in_use) {
    in_use_.insert(host);
  } else {
    in_use_.erase(host);
  }
}

void HostFiles::FailReadsAfter(const std::string& path, std::uint64_t bytes) {
  read_faults_[HostPath(path)] = bytes;
}

}  // namespace quorvale::host
