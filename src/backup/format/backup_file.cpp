#include "backup/format/backup_file.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "core/program/ModGlobal.h"

namespace quorvale {

BackupFile::BackupFile(Program& program, std::string path, std::string password)
    : program_(program),
      path_(std::move(path)),
      password_(std::move(password)),
      archive_(program.platform()) {}

void BackupFile::SetUp() {
  archive_.ResetDefaults();
  archive_.archive_name = path_;
  archive_.password = password_;
}

zip::Result BackupFile::Test(const std::function<bool()>& keep_going) {
  SetUp();
  archive_.on_total_progress = [this, &keep_going](int) {
    if (keep_going && !keep_going()) archive_.abort = true;
  };
  const zip::Result result = archive_.Test();
  archive_.on_total_progress = nullptr;
  return result;
}

zip::Result BackupFile::Members(std::vector<zip::Entry>* entries) {
  SetUp();
  entries->clear();
  return archive_.List(entries);
}

bool BackupFile::IsEncrypted() {
  std::vector<zip::Entry> entries;
  if (Members(&entries) != zip::Result::kDone) return false;
  return std::any_of(entries.begin(), entries.end(),
                     [](const zip::Entry& entry) { return !entry.is_folder && entry.encrypted; });
}

zip::Result BackupFile::ExtractAs(const std::string& member, const std::string& target) {
  SetUp();
  archive_.files_to_process = {member};
  bool found = false;
  archive_.on_before_file = [&found, &target](zip::BeforeFile& file) {
    file.destination = target;
    found = true;
  };
  const zip::Result result = archive_.Unzip();
  archive_.on_before_file = nullptr;
  if (result == zip::Result::kDone && !found) return zip::Result::kFailed;
  return result;
}

FoundTable BackupFile::Table() {
  FoundTable found;
  std::vector<zip::Entry> entries;
  if (Members(&entries) != zip::Result::kDone) return found;
  const auto entry = std::find_if(entries.begin(), entries.end(), [](const zip::Entry& e) {
    return !e.is_folder && !StemOfTableEntry(e.name).empty();
  });
  if (entry == entries.end()) return found;
  found.is_there = true;
  Files& files = program_.platform().files;
  const std::string folder = TempXmlFolder(program_);
  const bool is_ours = program_.files().FolderExists(folder);
  program_.files().MakeFolderChain(folder);
  const std::string copy = folder + "\\" + FileNameOf(entry->name);
  const zip::Result result = ExtractAs(entry->name, copy);
  if (result == zip::Result::kDone) found.table = ReadMemberTable(files, copy);
  // A full disk says nothing about the table: the backup is looked at as one without.
  if (result == zip::Result::kNoSpace) found.is_there = false;
  // What stays here is overwritten by the next one.
  files.RemoveFile(copy, true);
  if (!is_ours) files.RemoveFolder(folder, true);
  return found;
}

zip::Archive& BackupFile::Unpacker(const std::string& folder) {
  SetUp();
  archive_.unzip_folder = folder;
  return archive_;
}

}  // namespace quorvale
