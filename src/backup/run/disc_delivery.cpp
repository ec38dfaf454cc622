#include "backup/run/disc_delivery.h"

#include <cmath>

#include "backup/run/disc_folder.h"
#include "base/paths.h"

namespace quorvale {
namespace {

constexpr double kBytesPerMegabyte = 1048576;

}  // namespace

std::int64_t WholeMegabytes(std::uint64_t bytes) {
  return std::llround(static_cast<double>(bytes) / kBytesPerMegabyte);
}

std::vector<std::string> DiscDelivery::Parts(const std::string& folder) {
  return DiscFolder(program_, folder).Parts(FileNameOf(program_.session().gBackupBasePath));
}

DiscDelivery::Room DiscDelivery::FindRoom(const std::string& path) {
  DiscWriter& discs = program_.platform().discs;
  if (!discs.Initialise()) return Room::kNoWriter;
  const int drive = program_.session().disc_drive;
  if (drive < 0 || !discs.Open(drive)) return Room::kDriveRefused;
  const auto file = program_.platform().files.Stat(path);
  const std::uint64_t free_bytes = discs.MediumLoaded() ? discs.FreeBytes() : 0;
  // A small file has no whole megabyte, and neither has a drive without a medium.
  if (!file || free_bytes == 0) return Room::kTooLittle;
  return WholeMegabytes(free_bytes) >= WholeMegabytes(file->size) ? Room::kEnough
                                                                  : Room::kTooLittle;
}

bool DiscDelivery::Burn(const std::string& path, const DiscEvents& events) {
  return program_.platform().discs.Burn(path, FileNameOf(path), events);
}

void DiscDelivery::Eject() { program_.platform().discs.Eject(); }

}  // namespace quorvale
