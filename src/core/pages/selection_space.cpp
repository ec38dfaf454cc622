#include "core/pages/selection_space.h"

#include <cstdint>
#include <utility>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr std::uint64_t kPumpInterval = 100;  // milliseconds

// The fourth character from the end of a UTF-8 text is a full stop.
bool HasThreeLetterExtension(const std::string& text) {
  size_t at = text.size();
  for (int characters = 0; characters < 4; ++characters) {
    if (at == 0) return false;
    --at;
    while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) --at;
  }
  return text[at] == '.';
}

bool IsDriveRoot(const std::string& path) {
  return !path.empty() && path.find('\\') == path.size() - 1;
}

// What an item's key stands for on the disk; 0 for a key that names no path.
double SizeOfItem(Program& program, const std::string& key) {
  if (key.size() < 2 || key[1] != ':') return 0;
  if (HasThreeLetterExtension(key)) {
    const std::optional<FileInfo> file = program.platform().files.Stat(key);
    return file && !file->IsFolder() ? static_cast<double>(file->size) : 0;
  }
  if (!program.files().FolderExists(key)) return 0;
  return IsDriveRoot(key) ? UsedSpace(program, key) : program.files().FolderSize(key);
}

}  // namespace

double SizeOfSelection(Application& app) {
  PageHost& main = app.page_host();
  const bool was_enabled = main.IsEnabled();
  std::uint64_t last_pump = app.platform().system.Ticks();
  double total = 0;
  for (const std::string& key : app.session().gBackupItemKeys) {
    if (app.platform().system.Ticks() - last_pump >= kPumpInterval) {
      main.SetEnabled(false);
      app.Pump();
      last_pump = app.platform().system.Ticks();
    }
    total += SizeOfItem(app, Trim(key));
  }
  if (main.IsEnabled() != was_enabled) main.SetEnabled(was_enabled);
  app.session().gSelectedFolderBytes = total;
  return total;
}

void MeasureFreeSpace(Program& program, const std::string& drive) {
  const std::optional<DiskSpace> space = program.platform().files.Space(drive);
  if (!space) {
    program.session().gDriveInfoFailed = true;
    return;
  }
  program.session().gFreeBytes = static_cast<double>(space->free_bytes);
}

bool ReadFreeSpace(Program& program, const std::string& drive) {
  MeasureFreeSpace(program, drive);
  return !std::exchange(program.session().gDriveInfoFailed, false);
}

double UsedSpace(Program& program, const std::string& drive) {
  const std::optional<DiskSpace> space = program.platform().files.Space(drive);
  if (!space) {
    program.session().gDriveInfoFailed = true;
    return 0;
  }
  return static_cast<double>(space->total_bytes) - static_cast<double>(space->free_bytes);
}

}  // namespace quorvale
