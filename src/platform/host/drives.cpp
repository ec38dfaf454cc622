#include "platform/host/drives.h"

#include <algorithm>
#include <cstdlib>

#include "base/text.h"

namespace quorvale::host {

std::string RealPath(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return "";
  std::string result = resolved;
  std::free(resolved);
  return result;
}

std::string ShareOf(const std::string& path) {
  if (!path.starts_with("\\\\")) return "";
  const std::size_t server_end = path.find('\\', 2);
  if (server_end == std::string::npos) return path;
  return path.substr(0, path.find('\\', server_end + 1));
}

bool Drive::Take(std::uint64_t bytes) {
  if (!free_bytes) return true;
  if (*free_bytes < bytes) return false;
  *free_bytes -= bytes;
  return true;
}

void Drive::GiveBack(std::uint64_t bytes) {
  if (!free_bytes) return;
  *free_bytes += bytes;
  total_bytes = std::max(total_bytes, *free_bytes);
}

Drives::Drives(const MachineFolder& machine) {
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

std::string Drives::NameOf(const Drive& drive) const {
  for (const auto& [letter, known] : drives_) {
    if (&known == &drive) return std::string(1, letter) + ":";
  }
  return "";
}

Drive* Drives::Find(const std::string& path) {
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

void Drives::SetDrive(char letter, DriveKind kind, const std::string& folder) {
  Drive& drive = drives_[letter];
  drive.kind = kind;
  drive.root = RealPath(folder);
}

void Drives::SetShare(const std::string& share, const std::string& folder) {
  Drive& drive = shares_[FoldCase(share)];
  drive.kind = DriveKind::kRemote;
  drive.root = RealPath(folder);
}

void Drives::RemoveShare(const std::string& share) { shares_.erase(FoldCase(share)); }

}  // namespace quorvale::host
