#include "platform/file_toolkit.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

constexpr std::size_t kCopyBytes = 256 * 1024;

// A drive-relative text is read as that drive's root. The result ends in "\".
std::string RepairedFolder(const std::string& folder) {
  if (folder.size() >= 2 && folder[1] == ':' && (folder.size() == 2 || folder[2] != '\\')) {
    return folder.substr(0, 2) + "\\";
  }
  return WithBackslash(folder);
}

// A name without a dot matches "*" alone.
bool Matches(const std::string& name, const std::string& pattern) {
  if (pattern == "*") return true;
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return false;
  if (pattern == "*.*") return true;
  return !pattern.empty() && EqualsNoCase(name.substr(dot), pattern.substr(1));
}

}  // namespace

bool FileToolkit::FileExists(const std::string& path) {
  const auto info = files_.Stat(path);
  return info && !info->IsFolder();
}

bool FileToolkit::FolderExists(const std::string& path) {
  const auto info = files_.Stat(path);
  return info && info->IsFolder();
}

bool FileToolkit::MakeFolderChain(const std::string& path) {
  // The server and the share of a network path are there or cannot be made.
  std::size_t at = 0;
  if (IsNetworkPath(path)) {
    at = path.find('\\', 2);
    if (at != std::string::npos) at = path.find('\\', at + 1);
    if (at == std::string::npos) return FolderExists(path);
    ++at;
  }
  while (at < path.size()) {
    std::size_t end = path.find('\\', at);
    if (end == std::string::npos) end = path.size();
    const std::string folder = path.substr(0, end);
    const bool is_drive = folder.size() == 2 && folder[1] == ':';
    if (end > at && !is_drive && !FolderExists(folder)) files_.MakeFolder(folder);
    at = end + 1;
  }
  return FolderExists(path);
}

std::vector<std::string> FileToolkit::ListFileNames(const std::string& folder,
                                                    const std::string& pattern) {
  pump_();
  std::vector<std::string> names;
  for (const FileInfo& entry : files_.List(RepairedFolder(folder))) {
    if (!entry.IsFolder() && Matches(entry.name, pattern)) names.push_back(entry.name);
  }
  return names;
}

std::string FileToolkit::ListFiles(const std::string& folder, const std::string& pattern) {
  std::string list;
  for (const std::string& name : ListFileNames(folder, pattern)) list += name + "|";
  return list;
}

std::vector<DeepEntry> FileToolkit::ListFilesDeep(const std::string& folder,
                                                  const std::string& pattern,
                                                  const std::function<bool()>& stop,
                                                  const TellPassedOver& passed_over) {
  std::vector<DeepEntry> entries;
  Walk walk{pattern, stop, passed_over, &entries};
  WalkFolder(RepairedFolder(folder), walk, false);
  return entries;
}

// A folder that cannot be read gives nothing, as an empty one does. One that can be read now, and
// perhaps could not a moment ago, is read once more.
std::vector<FileInfo> FileToolkit::ListForWalk(const std::string& folder, const Walk& walk) {
  std::vector<FileInfo> list = files_.List(folder);
  if (!list.empty() || !walk.passed_over) return list;
  if (files_.CanList(folder)) return files_.List(folder);
  walk.passed_over(WithoutBackslash(folder), PassedOver::kUnreadable);
  return list;
}

// Appends what is below a folder and then the folder itself. `is_there`: a listing told of it.
// False when the walk was stopped.
bool FileToolkit::WalkFolder(const std::string& folder, const Walk& walk, bool is_there) {
  pump_();
  const std::size_t before = walk.entries->size();
  bool holds_files = false;
  int since_pump = 0;
  for (const FileInfo& entry : ListForWalk(folder, walk)) {
    if (++since_pump % 64 == 0) pump_();
    if (walk.stop && walk.stop()) return false;
    if (entry.IsFolder()) {
      if (!WalkFolder(folder + entry.name + "\\", walk, true)) return false;
      continue;
    }
    holds_files = true;
    if (Matches(entry.name, walk.pattern)) {
      walk.entries->push_back({folder + entry.name, false});
    } else if (walk.passed_over && !Contains(entry.name, ".")) {
      walk.passed_over(folder + entry.name, PassedOver::kNoDot);
    }
  }
  const bool has_listing = walk.entries->size() > before;
  if (has_listing || (!holds_files && (is_there || FolderExists(folder)))) {
    walk.entries->push_back({WithoutBackslash(folder), true});
  }
  return true;
}

bool FileToolkit::DeleteMatching(const std::string& folder, const std::string& pattern) {
  pump_();
  const std::string base = RepairedFolder(folder);
  for (const FileInfo& entry : files_.List(base)) {
    if (entry.IsFolder()) {
      DeleteMatching(base + entry.name, "*.*");
    } else if (Matches(entry.name, pattern)) {
      files_.RemoveFile(base + entry.name, true);
    }
  }
  return true;
}

bool FileToolkit::KillFolder(const std::string& path) {
  pump_();
  const std::string folder = WithoutBackslash(path);
  if (!FolderExists(folder)) return true;
  for (const FileInfo& entry : files_.List(folder)) {
    const std::string below = WithBackslash(folder) + entry.name;
    if (entry.IsFolder()) {
      KillFolder(below);
    } else {
      files_.RemoveFile(below, true);
    }
  }
  return files_.RemoveFolder(folder, true) == FileStatus::kOk;
}

double FileToolkit::FolderSize(const std::string& folder) {
  pump_();
  double size = 0;
  const std::string base = RepairedFolder(folder);
  for (const FileInfo& entry : files_.List(base)) {
    size += entry.IsFolder() ? FolderSize(base + entry.name) : static_cast<double>(entry.size);
  }
  return size;
}

FileStatus FileToolkit::CopyFile(const std::string& source, const std::string& target) {
  const auto info = files_.Stat(source);
  if (!info) return FileStatus::kNotFound;
  if (info->IsFolder()) return FileStatus::kDenied;
  const auto old = files_.Stat(target);
  if (old && (old->attributes & file_attribute::kReadOnly) != 0) return FileStatus::kDenied;
  const auto input = files_.OpenRead(source);
  if (!input) return FileStatus::kDenied;
  FileStatus status = FileStatus::kOk;
  const std::string fresh = FreshName(target);
  auto output = files_.Create(fresh, &status);
  if (!output) return status;
  std::vector<char> buffer(kCopyBytes);
  while (status == FileStatus::kOk) {
    const std::ptrdiff_t count = input->Read(buffer.data(), buffer.size());
    if (count == 0) break;
    status = count < 0 ? FileStatus::kFailed
                       : output->Write(buffer.data(), static_cast<std::size_t>(count));
    pump_();
  }
  return Finish(std::move(output), status, fresh, target, &*info);
}

std::string FileToolkit::FreshName(const std::string& target) {
  std::string name = target + ".tmp";
  for (int number = 1; files_.Stat(name); ++number) {
    name = target + "." + std::to_string(number) + ".tmp";
  }
  return name;
}

// Closes what was written under `fresh` and gives it its own name; on any failure it goes and the
// old file stays.
FileStatus FileToolkit::Finish(std::unique_ptr<OutputFile> output, FileStatus status,
                               const std::string& fresh, const std::string& target,
                               const FileInfo* like) {
  const FileStatus closed = output->Close();
  output.reset();
  if (status == FileStatus::kOk) status = closed;
  if (status == FileStatus::kOk && like != nullptr) files_.SetModified(fresh, like->modified);
  if (status == FileStatus::kOk) status = files_.Replace(fresh, target);
  if (status != FileStatus::kOk) {
    files_.RemoveFile(fresh, true);
    return status;
  }
  // Last, since a read-only file could not have been renamed everywhere.
  if (like != nullptr) files_.SetAttributes(target, like->attributes);
  return FileStatus::kOk;
}

std::optional<std::string> FileToolkit::ReadWhole(const std::string& path, std::uint64_t limit) {
  const auto input = files_.OpenRead(path);
  if (!input || input->Size() > limit) return std::nullopt;
  std::string bytes;
  std::vector<char> buffer(64 * 1024);
  while (true) {
    const std::ptrdiff_t count = input->Read(buffer.data(), buffer.size());
    if (count == 0) return bytes;
    if (count < 0) return std::nullopt;
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
    // The file may grow while it is read, and some files of a system tell no size.
    if (bytes.size() > limit) return std::nullopt;
  }
}

FileStatus FileToolkit::WriteWhole(const std::string& path, const std::string& bytes) {
  const auto old = files_.Stat(path);
  if (old && (old->IsFolder() || (old->attributes & file_attribute::kReadOnly) != 0)) {
    return FileStatus::kDenied;
  }
  FileStatus status = FileStatus::kOk;
  const std::string fresh = FreshName(path);
  auto output = files_.Create(fresh, &status);
  if (!output) return status;
  status = output->Write(bytes.data(), bytes.size());
  status = Finish(std::move(output), status, fresh, path, nullptr);
  // A hidden file stays hidden.
  if (status == FileStatus::kOk && old) files_.SetAttributes(path, old->attributes);
  return status;
}

}  // namespace quorvale
