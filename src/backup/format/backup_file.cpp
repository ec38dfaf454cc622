#include "backup/format/backup_file.h"

#include <algorithm>
#include <utility>

namespace quorvale {

BackupFile::BackupFile(Program& program, std::string path, std::string password)
    : path_(std::move(path)), password_(std::move(password)), archive_(program.platform()) {}

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
  SetUp();
  archive_.files_to_process = {entry->name};
  MemberTableReader reader;
  archive_.on_tested = [&reader](const std::uint8_t* data, std::size_t count) {
    reader.Feed({reinterpret_cast<const char*>(data), count});
  };
  const zip::Result result = archive_.Test();
  archive_.on_tested = nullptr;
  if (result == zip::Result::kDone) found.table = reader.Finish();
  return found;
}

zip::Archive& BackupFile::Unpacker(const std::string& folder) {
  SetUp();
  archive_.unzip_folder = folder;
  return archive_;
}

}  // namespace quorvale
