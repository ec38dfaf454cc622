#include "archive/archive_input.h"

#include <algorithm>
#include <cstring>

namespace quorvale::zip {
namespace {

constexpr std::size_t kWindowSize = 256 * 1024;

}  // namespace

std::string PartPath(const std::string& archive_name, std::uint32_t index, std::uint32_t count) {
  if (index + 1 == count) return archive_name;
  const std::size_t name_start = archive_name.rfind('\\') + 1;
  const std::size_t dot = archive_name.rfind('.');
  const bool has_extension = dot != std::string::npos && dot > name_start;
  const std::string number = std::to_string(index + 1);
  return (has_extension ? archive_name.substr(0, dot) : archive_name) + ".z" +
         (number.size() < 2 ? "0" : "") + number;
}

ArchiveInput::ArchiveInput(Files& files, const std::vector<std::string>& part_paths)
    : files_(files) {
  for (const std::string& path : part_paths) {
    const std::optional<FileInfo> info = files_.Stat(path);
    if (!info || info->IsFolder()) {
      missing_ = path;
      return;
    }
    parts_.push_back({path, size_, info->size});
    size_ += info->size;
  }
  window_ = Bytes(static_cast<std::size_t>(std::min<std::uint64_t>(size_, kWindowSize)));
}

const ArchiveInput::Part* ArchiveInput::PartAt(std::uint64_t position) const {
  if (position >= size_) return nullptr;
  auto after = std::upper_bound(parts_.begin(), parts_.end(), position,
                                [](std::uint64_t at, const Part& part) { return at < part.start; });
  while (after != parts_.begin()) {
    --after;
    if (after->size > 0) return &*after;
  }
  return nullptr;
}

bool ArchiveInput::ReadDirectly(std::uint64_t position, std::uint8_t* buffer, std::size_t count) {
  const Part* part = PartAt(position);
  if (part == nullptr) return false;
  if (part != open_part_ || file_ == nullptr) {
    file_ = files_.OpenRead(part->path);
    open_part_ = part;
    file_position_ = 0;
    if (file_ == nullptr) return false;
  }
  if (file_position_ != position - part->start) {
    if (!file_->Seek(position - part->start)) return false;
    file_position_ = position - part->start;
  }
  while (count > 0) {
    const std::ptrdiff_t got = file_->Read(buffer, count);
    if (got <= 0) return false;
    buffer += got;
    count -= static_cast<std::size_t>(got);
    file_position_ += static_cast<std::uint64_t>(got);
  }
  return true;
}

bool ArchiveInput::FillWindow(std::uint64_t position) {
  const Part* part = PartAt(position);
  window_.size = 0;
  if (part == nullptr) return false;
  const std::uint64_t left = part->start + part->size - position;
  const std::size_t count =
      static_cast<std::size_t>(std::min<std::uint64_t>(left, window_.capacity));
  if (!ReadDirectly(position, window_.data.get(), count)) return false;
  window_start_ = position;
  window_.size = count;
  return true;
}

bool ArchiveInput::Read(std::uint64_t position, void* buffer, std::size_t count) {
  if (position > size_ || count > size_ - position) return false;
  std::uint8_t* out = static_cast<std::uint8_t*>(buffer);
  while (count > 0) {
    const bool in_window = position >= window_start_ && position - window_start_ < window_.size;
    if (!in_window) {
      const Part* part = PartAt(position);
      if (part == nullptr) return false;
      const std::uint64_t left = part->start + part->size - position;
      if (count >= kWindowSize && left >= kWindowSize) {
        const std::size_t direct = static_cast<std::size_t>(std::min<std::uint64_t>(left, count));
        if (!ReadDirectly(position, out, direct)) return false;
        position += direct;
        out += direct;
        count -= direct;
        continue;
      }
      if (!FillWindow(position)) return false;
    }
    const std::size_t from = static_cast<std::size_t>(position - window_start_);
    const std::size_t take = std::min(count, window_.size - from);
    std::memcpy(out, window_.data.get() + from, take);
    position += take;
    out += take;
    count -= take;
  }
  return true;
}

}  // namespace quorvale::zip
