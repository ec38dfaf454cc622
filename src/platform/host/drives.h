// The drives and shares of a machine folder: host folders that no machine path leaves.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/files.h"
#include "platform/host/machine_folder.h"

namespace quorvale::host {

struct Drive {
  DriveKind kind = DriveKind::kFixed;
  std::string root;  // host path without links; "" without a medium
  std::optional<std::uint64_t> free_bytes;
  std::uint64_t total_bytes = 0;  // of a drive with free_bytes
  bool read_only = false;         // an old disk: nothing is ever written on it

  bool CanBeWritten() const { return kind != DriveKind::kCdRom && !read_only; }
  // Takes bytes off the free ones. False if there are not so many.
  bool Take(std::uint64_t bytes);
  void GiveBack(std::uint64_t bytes);
};

class Drives {
 public:
  // The drives of the machine, and the host's own file system as Z:.
  explicit Drives(const MachineFolder& machine);

  // The drive or share that a machine path names; null if there is none. Valid until it is removed.
  Drive* Find(const std::string& path);
  // "C:"; "" for a share.
  std::string NameOf(const Drive& drive) const;

  // As HostFiles has them.
  void SetDrive(char letter, DriveKind kind, const std::string& folder);
  void RemoveDrive(char letter) { drives_.erase(letter); }
  void SetShare(const std::string& share, const std::string& folder);
  void RemoveShare(const std::string& share);

 private:
  std::map<char, Drive> drives_;         // by capital letter
  std::map<std::string, Drive> shares_;  // by folded name
};

// "\\\\server\\share" of a network path, else "".
std::string ShareOf(const std::string& path);

// The host's own name of a file or folder, without links; "" if nothing is there.
std::string RealPath(const std::string& path);

}  // namespace quorvale::host
