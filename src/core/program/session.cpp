#include "core/program/session.h"

namespace quorvale {

bool FileCollection::Add(const FileArr& file) {
  return by_source_.emplace(file.SourceFilePath, file.DestFilePath).second;
}

std::string FileCollection::FindStagedDest(const std::string& source) const {
  auto found = by_source_.find(source);
  return found == by_source_.end() ? std::string() : found->second;
}

}  // namespace quorvale
