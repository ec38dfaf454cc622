#include "core/program/session.h"

#include <functional>

namespace quorvale {

bool FileCollection::Add(const FileArr& file) {
  if (Find(file.SourceFilePath)) return false;
  places_.emplace(std::hash<std::string>()(file.SourceFilePath),
                  static_cast<std::uint32_t>(files_.size()));
  files_.push_back(file);
  return true;
}

std::optional<size_t> FileCollection::Find(const std::string& source) const {
  const auto [first, last] = places_.equal_range(std::hash<std::string>()(source));
  for (auto place = first; place != last; ++place) {
    if (files_[place->second].SourceFilePath == source) return place->second;
  }
  return std::nullopt;
}

std::string FileCollection::FindStagedDest(const std::string& source) const {
  const std::optional<size_t> place = Find(source);
  return place ? files_[*place].DestFilePath : "";
}

void FileCollection::Clear() {
  files_.clear();
  places_.clear();
}

}  // namespace quorvale
