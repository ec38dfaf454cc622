#include "restore/run/damaged_backup.h"

#include <algorithm>
#include <vector>

#include "archive/archive.h"
#include "backup/format/archive_layout.h"
#include "backup/format/backup_file.h"
#include "base/text.h"

namespace quorvale {

bool GivesWhatIsWhole(Program& program, const std::string& path, const std::string& password,
                      const std::string& stem) {
  BackupFile backup(program, path, password);
  std::vector<zip::Entry> entries;
  if (backup.Members(&entries) != zip::Result::kDone) return false;
  const FoundTable found = backup.Table();
  if (found.is_there && found.table == nullptr) return false;
  const std::string settings = SettingsEntryName(found.table != nullptr ? found.table->stem : stem);
  // A wrong password opens what is not protected; that is not what it was given for.
  const bool any_protected = std::any_of(entries.begin(), entries.end(),
                                         [](const zip::Entry& entry) { return entry.encrypted; });
  const bool is_proof = std::any_of(entries.begin(), entries.end(), [&](const zip::Entry& entry) {
    return EqualsNoCase(entry.name, settings) && entry.encrypted == any_protected;
  });
  if (!is_proof) return false;
  zip::Archive archive(program.platform());
  archive.archive_name = path;
  archive.password = password;
  archive.files_to_process = {settings};
  return archive.Test() == zip::Result::kDone;
}

}  // namespace quorvale
