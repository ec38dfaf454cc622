// The CD/DVD writers of the computer.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quorvale {

struct DiscDrive {
  int index = 0;
  bool can_write = false;
  std::string place, maker, model;  // the drive's three description texts
};

// What a drive tells while it writes; all on the caller's thread. Each may be empty.
struct DiscEvents {
  std::function<void()> file_added;
  std::function<void()> write_started;
  std::function<void(std::uint64_t done, std::uint64_t total)> progress;  // in blocks
  // Called at least ten times a second: the place to pump messages. False stops the writing where
  // the drive allows it.
  std::function<bool()> keep_going;
};

class DiscWriter {
 public:
  virtual ~DiscWriter() = default;
  // False where the computer has no way to write discs.
  virtual bool Initialise() = 0;
  virtual std::vector<DiscDrive> Drives() = 0;
  // Takes the drive of this index for what follows. False if it cannot be used.
  virtual bool Open(int index) = 0;
  // Of the opened drive.
  virtual bool MediumLoaded() = 0;
  // Free bytes of the loaded medium; 0 if there is none or it cannot be written.
  virtual std::uint64_t FreeBytes() = 0;
  // Writes one file (a path as the program sees it) to the medium under this name, in its root.
  // Returns at the end of the writing. False if it could not be started or was not completed.
  virtual bool Burn(const std::string& path, const std::string& name, const DiscEvents& events) = 0;
  virtual void Eject() = 0;
};

}  // namespace quorvale
