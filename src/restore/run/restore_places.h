// The folders of a restore job.
#pragma once

#include <string>

#include "core/program/program.h"

namespace quorvale {

// "Backup" of "C:\x\Backup.obk", or the name that a renamed file was made under: the folder in
// which all members of the backup file stand.
std::string BackupBaseName(const RestoreJob& job);
// Where a run stages what it does not put home at once, without a final "\": the user's restore
// folder, or the program's own where the user wants none.
std::string RestoreFolder(const Program& program, const RestoreJob& job);
// Where items stay that cannot go home, without a final "\": the restore folder, or the program's
// usual one where the user wants none.
std::string FolderForLeftItems(const Program& program, const RestoreJob& job);

}  // namespace quorvale
