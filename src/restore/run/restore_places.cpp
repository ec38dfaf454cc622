#include "restore/run/restore_places.h"

#include "base/paths.h"
#include "core/program/ModGlobal.h"

namespace quorvale {

std::string BackupBaseName(const RestoreJob& job) {
  if (!job.backup_stem.empty()) return job.backup_stem;
  return WithoutLastFour(FileNameOf(job.gRestoreFilePath));
}

std::string RestoreFolder(const Program& program, const RestoreJob& job) {
  if (job.gNoRestoreFolder) return TempXmlFolder(program);
  return WithoutBackslash(job.gRestoreFolder);
}

std::string FolderForLeftItems(const Program& program, const RestoreJob& job) {
  if (job.gNoRestoreFolder) return program.session().gAppDataPath + "\\Restore";
  return WithoutBackslash(job.gRestoreFolder);
}

}  // namespace quorvale
