// Disc writers on the running system.
#pragma once

#include "platform/disc_writer.h"

namespace quorvale::windows {

// A computer without a disc writer.
class WindowsDiscWriter : public DiscWriter {
 public:
  bool Initialise() override { return false; }
  std::vector<DiscDrive> Drives() override { return {}; }
  bool Open(int) override { return false; }
  bool MediumLoaded() override { return false; }
  std::uint64_t FreeBytes() override { return 0; }
};

}  // namespace quorvale::windows
