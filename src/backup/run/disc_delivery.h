// Writes the parts of a finished backup to discs, one part to a disc.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/program/program.h"

namespace quorvale {

// Sizes are compared in whole megabytes, rounded.
std::int64_t WholeMegabytes(std::uint64_t bytes);

class DiscDelivery {
 public:
  enum class Room {
    kEnough,
    kTooLittle,     // of the medium in the drive; also where there is none
    kNoWriter,      // the computer's writers do not answer
    kDriveRefused,  // the drive of the job cannot be used
  };

  explicit DiscDelivery(Program& program) : program_(program) {}

  // The files below a folder, each of which takes a disc.
  std::vector<std::string> Parts(const std::string& folder);
  // Opens the job's drive and looks whether its medium has room for the file.
  Room FindRoom(const std::string& path);
  // Writes the file to the medium for which FindRoom said kEnough. False if that could not be
  // started or was not completed.
  bool Burn(const std::string& path, const DiscEvents& events);
  void Eject();

 private:
  Program& program_;
};

}  // namespace quorvale
