#include "archive/memory_files.h"

#include <algorithm>
#include <cstring>

#include "base/paths.h"
#include "base/text.h"

namespace quorvale::zip_test {

class MemoryInput : public InputFile {
 public:
  MemoryInput(MemoryFiles& files, std::string path, std::shared_ptr<std::string> bytes)
      : files_(files), path_(std::move(path)), bytes_(std::move(bytes)) {}

  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    if (files_.before_read) files_.before_read(path_, position_);
    const auto fault = files_.read_fails_at.find(path_);
    count = std::min(count, files_.longest_read);
    if (fault != files_.read_fails_at.end()) {
      if (position_ >= fault->second) return -1;
      count = static_cast<std::size_t>(std::min<std::uint64_t>(count, fault->second - position_));
    }
    if (position_ >= bytes_->size()) return 0;
    count = std::min(count, bytes_->size() - static_cast<std::size_t>(position_));
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
    std::string& bytes = *files_.nodes_.at(key_).bytes;
    const std::size_t end = static_cast<std::size_t>(position_) + count;
    const std::size_t more = end > bytes.size() ? end - bytes.size() : 0;
    if (files_.used_ + more > files_.room) return FileStatus::kNoSpace;
    if (files_.writes_fail_after < count) return FileStatus::kFailed;
    if (files_.writes_fail_after != ~0ull) files_.writes_fail_after -= count;
    files_.used_ += more;
    if (more > 0) bytes.resize(end);
    std::memcpy(bytes.data() + position_, buffer, count);
    position_ = end;
    files_.nodes_.at(key_).info.size = bytes.size();
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

MemoryFiles::MemoryFiles() { nodes_[KeyOf("C:")].info.attributes = file_attribute::kFolder; }

std::string MemoryFiles::KeyOf(const std::string& path) { return FoldCase(WithoutBackslash(path)); }

const MemoryFiles::Node* MemoryFiles::Find(const std::string& path) const {
  const auto found = nodes_.find(KeyOf(path));
  return found == nodes_.end() ? nullptr : &found->second;
}

void MemoryFiles::PutFolder(const std::string& path) {
  const std::string parent = ParentFolder(path);
  if (!parent.empty() && Find(parent) == nullptr) PutFolder(parent);
  Node& node = nodes_[KeyOf(path)];
  node.path = path;
  node.info.name = FileNameOf(path);
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
  const std::string key = KeyOf(folder);
  for (const auto& [other, node] : nodes_) {
    if (ParentFolder(other) == key) infos.push_back(node.info);
  }
  return infos;
}

std::unique_ptr<InputFile> MemoryFiles::OpenRead(const std::string& path) {
  const Node* node = Find(path);
  if (node == nullptr || node->bytes == nullptr || locked.count(path) != 0) return nullptr;
  return std::make_unique<MemoryInput>(*this, path, node->bytes);
}

std::unique_ptr<OutputFile> MemoryFiles::Create(const std::string& path, FileStatus* status) {
  const Node* parent = Find(ParentFolder(path));
  FileStatus result = MayChange() ? FileStatus::kOk : FileStatus::kFailed;
  if (parent == nullptr || !parent->info.IsFolder()) result = FileStatus::kNotFound;
  const Node* old = Find(path);
  if (old != nullptr && (old->info.attributes & (file_attribute::kFolder | 1)) != 0) {
    result = FileStatus::kDenied;
  }
  if (locked.count(path) != 0) result = FileStatus::kDenied;
  if (status != nullptr) *status = result;
  if (result != FileStatus::kOk) return nullptr;
  Put(path, "");
  return std::make_unique<MemoryOutput>(*this, KeyOf(path));
}

FileStatus MemoryFiles::MakeFolder(const std::string& path) {
  if (!MayChange()) return FileStatus::kFailed;
  const Node* node = Find(path);
  if (node != nullptr) return node->info.IsFolder() ? FileStatus::kOk : FileStatus::kDenied;
  if (Find(ParentFolder(path)) == nullptr) return FileStatus::kNotFound;
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

FileStatus MemoryFiles::RemoveFolder(const std::string& path, bool) {
  if (!MayChange()) return FileStatus::kFailed;
  if (Find(path) == nullptr) return FileStatus::kNotFound;
  nodes_.erase(KeyOf(path));
  return FileStatus::kOk;
}

FileStatus MemoryFiles::Replace(const std::string& from, const std::string& to) {
  if (!MayChange()) return FileStatus::kFailed;
  const Node* source = Find(from);
  const Node* old = Find(to);
  if (source == nullptr) return FileStatus::kNotFound;
  if (locked.count(to) != 0) return FileStatus::kDenied;
  if (old != nullptr && (old->info.attributes & (file_attribute::kFolder | 1)) != 0) {
    return FileStatus::kDenied;
  }
  Node moved = *source;
  moved.path = to;
  moved.info.name = FileNameOf(to);
  Remove(to);
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
  if (Find(path) == nullptr) return FileStatus::kNotFound;
  std::uint32_t& now = nodes_.at(KeyOf(path)).info.attributes;
  const std::uint32_t settable = 1 | 2 | 4 | 32;
  now = (now & ~settable) | (attributes & settable);
  return FileStatus::kOk;
}

bool MemoryFiles::DriveExists(const std::string& drive) { return drive.substr(0, 2) == "C:"; }

std::optional<DiskSpace> MemoryFiles::Space(const std::string&) {
  return DiskSpace{room - std::min(room, used_), room};
}

}  // namespace quorvale::zip_test
