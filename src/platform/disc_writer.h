// The CD/DVD writers of the computer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvale {

struct DiscDrive {
  int index = 0;
  bool can_write = false;
  std::string text1, text2, text3;  // the three description texts of the drive
};

class DiscWriter {
 public:
  virtual ~DiscWriter() = default;
  // False where the computer has no way to write discs.
  virtual bool Initialise() = 0;
  virtual std::vector<DiscDrive> Drives() = 0;
  virtual bool Open(int index) = 0;
  virtual bool MediumLoaded() = 0;
  // Free bytes of the loaded medium.
  virtual std::uint64_t FreeBytes() = 0;
};

}  // namespace quorvale
