#include "restore/run/extractor.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "restore/run/restore_places.h"
#include "restore/run/safe_target.h"

namespace quorvale {
namespace {

constexpr int kSettleMilliseconds = 100;

// What stands in a member's name behind the folder `prefix`, with its leading "\". The two agree
// but for the case of letters, whose bytes may differ in number: the parts are counted.
std::string TextBehind(const std::string& name, const std::string& prefix) {
  const auto parts = std::count(prefix.begin(), prefix.end(), '\\') + 1;
  size_t end = 0;
  for (auto part = parts; part > 0; --part) {
    end = name.find('\\', part == parts ? 0 : end + 1);
    if (end == std::string::npos) return "";
  }
  return name.substr(end);
}

}  // namespace

Extractor::Extractor(Program& program, const RestoreJob& job, RunMonitor& monitor)
    : program_(program), job_(job), monitor_(monitor) {}

void Extractor::Open() {
  if (!job_.restore_settings_file.empty()) {
    staged_.push_back({job_.restore_settings_file, ParentFolder(job_.restore_settings_file)});
  }
  if (!program_.files().FileExists(job_.gRestoreFilePath)) return;
  const std::string folder = RestoreFolder(program_, job_);
  program_.files().MakeFolderChain(folder);
  backup_ = std::make_unique<BackupFile>(program_, job_.gRestoreFilePath, job_.gRestorePassword);
  archive_ = &backup_->Unpacker(folder);
  ConnectEvents(*archive_);
  // A page has refused a bad file already; what is damaged since is left out member by member.
  backup_->Test([this] { return monitor_.KeepGoing(); });
  if (monitor_.KeepGoing()) members_.Read(*backup_);
  // The calls before have used some of the events themselves.
  ConnectEvents(*archive_);
  backup_->Unpacker(folder);
}

void Extractor::ConnectEvents(zip::Archive& archive) {
  archive.on_before_file = [this](zip::BeforeFile& file) { BeforeFile(file); };
  archive.on_file_progress = [this, &archive](int percent) {
    monitor_.events().percent(percent);
    if (!monitor_.KeepGoing()) archive.abort = true;
  };
  archive.on_total_progress = [this, &archive](int percent) {
    if (archive.current_operation() == zip::Operation::kUnzipping) {
      monitor_.events().percent(percent);
    }
    if (!monitor_.KeepGoing()) archive.abort = true;
  };
}

// Names and places. ----------------------------------------------------------------------------

std::string Extractor::MemberName(const std::string& entry) const {
  return BackupBaseName(job_) + "\\" + entry;
}

ItemEntry Extractor::EntryOf(const RestoreOrigin& origin) const {
  ItemEntry entry = EntryOfItem(origin.path, origin.key, program_.session().gOSName);
  if (const TableMember* member = members_.Single(origin)) {
    entry.name = member->entry.substr(member->entry.find('\\') + 1);
    // A name that no file can have, of a profile "Acme Inc.", is left to the archive.
    if (!IsSafeBelow(entry.name)) {
      entry.name = "Unnamed\\" + std::to_string(member->item) + "\\" + FileNameOf(entry.name);
    }
  }
  return entry;
}

std::string Extractor::StagingRoot() const { return WithBackslash(RestoreFolder(program_, job_)); }

std::string Extractor::StagedPath(const std::string& entry) const {
  return StagingRoot() + MemberName(entry);
}

// Extraction. ----------------------------------------------------------------------------------

std::optional<size_t> Extractor::PlaceOfMember(const RestoreOrigin& origin,
                                               const ItemEntry& entry) const {
  const size_t count = members_.names().Count(MemberName(entry.name));
  if (count == 0) return std::nullopt;
  const size_t place = origin.place_among_namesakes;
  if (count > 1) return place < count ? std::optional(place) : std::nullopt;
  // The last one of a name won.
  return place + 1 == origin.namesakes ? std::optional<size_t>(0) : std::nullopt;
}

bool Extractor::HoldsItem(const RestoreOrigin& origin) const {
  if (members_.HasTable()) return members_.Single(origin) != nullptr;
  return PlaceOfMember(origin, EntryOf(origin)).has_value();
}

bool Extractor::ExtractFile(const RestoreOrigin& origin, const std::string& target) {
  if (!HoldsItem(origin) || !IsSafeTarget(target)) return false;
  program_.files().MakeFolderChain(ParentFolder(target));
  if (members_.HasTable()) return ExtractMembers({members_.Single(origin)}, {target});
  const ItemEntry entry = EntryOf(origin);
  if (!IsSafeBelow(entry.name)) return false;
  Extraction extraction;
  extraction.target = target;
  extraction.nth = *PlaceOfMember(origin, entry);
  const zip::Result result = Extract({MemberName(entry.name)}, std::move(extraction));
  return extraction_.written == 1 &&
         (result == zip::Result::kDone || result == zip::Result::kWarnings);
}

bool Extractor::ExtractFolder(const RestoreOrigin& origin, const std::string& target) {
  if (!IsSafeTarget(target)) return false;
  if (!members_.HasTable()) return ExtractNamed(EntryOf(origin).name, target);
  const std::vector<const TableMember*> members = members_.Below(origin);
  std::vector<std::string> targets;
  for (const TableMember* member : members) {
    targets.push_back(WithoutBackslash(WithBackslash(target) + member->inner));
  }
  ExtractMembers(members, targets);
  return extraction_.written > 0;
}

bool Extractor::ExtractNamed(const std::string& entry, const std::string& target) {
  const std::string member = MemberName(entry);
  if (!IsSafeBelow(entry) || !members_.names().Has(member + "\\*")) return false;
  Extraction extraction;
  extraction.folder = member;
  extraction.target = WithoutBackslash(target);
  Extract({member + "\\*"}, std::move(extraction));
  return extraction_.written > 0;
}

bool Extractor::ExtractMembers(const std::vector<const TableMember*>& members,
                               const std::vector<std::string>& targets) {
  extraction_ = {};
  if (members.empty()) return false;
  std::vector<std::string> names;
  Extraction extraction;
  for (size_t i = 0; i < members.size(); ++i) {
    const bool is_folder = members[i]->kind == TableMember::Kind::kFolder;
    names.push_back(members[i]->entry + (is_folder ? "\\" : ""));
    extraction.targets.emplace(FoldCase(members[i]->entry), targets[i]);
  }
  const zip::Result result = Extract(names, std::move(extraction));
  return extraction_.written == members.size() &&
         (result == zip::Result::kDone || result == zip::Result::kWarnings);
}

std::string Extractor::LeftPath(const RestoreOrigin& origin, const std::string& folder) {
  const std::string root =
      FolderForLeftItems(program_, job_) + "\\" + BackupBaseName(job_) + "\\" + folder + "\\";
  const std::string name = FileNameOf(EntryOf(origin).name);
  std::string path = root + name;
  for (int number = 1; !left_.insert(FoldCase(path)).second; ++number) {
    path = root + NumberedName(name, number);
  }
  return path;
}

bool Extractor::KeepFolder(const RestoreOrigin& origin) {
  const std::string root = FolderForLeftItems(program_, job_) + "\\";
  if (!members_.HasTable()) {
    const std::string entry = EntryOf(origin).name;
    const std::string target = root + MemberName(entry);
    return IsSafeTarget(target) && ExtractNamed(entry, target);
  }
  std::vector<const TableMember*> members;
  std::vector<std::string> targets;
  for (const TableMember* member : members_.Below(origin)) {
    const std::string behind_stem = member->entry.substr(member->entry.find('\\') + 1);
    const std::string target = root + BackupBaseName(job_) + "\\" + behind_stem;
    if (!IsSafeTarget(target)) continue;
    members.push_back(member);
    targets.push_back(target);
  }
  ExtractMembers(members, targets);
  return extraction_.written > 0;
}

zip::Result Extractor::Extract(const std::vector<std::string>& members, Extraction extraction) {
  if (archive_ == nullptr) return zip::Result::kFailed;
  extraction_ = std::move(extraction);
  archive_->files_to_process = members;
  archive_->skip_existing = false;
  archive_->every_of_one_name = extraction_.targets.empty() && extraction_.folder.empty();
  archive_->offer_unusual_names = true;
  return archive_->Unzip();
}

void Extractor::BeforeFile(zip::BeforeFile& file) {
  monitor_.events().file(file.source);
  if (archive_->current_operation() != zip::Operation::kUnzipping) return;
  if (extraction_.targets.empty()) {
    SendNamed(file);
  } else {
    const auto target = extraction_.targets.find(FoldCase(WithoutBackslash(file.source)));
    file.exclude = target == extraction_.targets.end();
    if (!file.exclude) file.destination = target->second;
  }
  if (!file.exclude) ++extraction_.written;
}

void Extractor::SendNamed(zip::BeforeFile& file) {
  if (extraction_.folder.empty()) {
    file.destination = extraction_.target;
    file.exclude = extraction_.seen++ != extraction_.nth;
    return;
  }
  const std::string rest = WithoutBackslash(TextBehind(file.source, extraction_.folder));
  file.destination = extraction_.target + rest;
  file.exclude = !rest.empty() && !IsSafeBelow(rest.substr(1));
}

void Extractor::SettleAfterExtract() {
  program_.Pump();
  program_.platform().system.Sleep(kSettleMilliseconds);
}

// Registry files. ------------------------------------------------------------------------------

void Extractor::ImportRegFile(const std::string& folder, const std::string& name) {
  std::string file = WithoutBackslash(folder) + "\\" + ReplaceAll(name, " ", "_") + ".reg";
  if (EndsWithNoCase(file, ".reg.reg")) file.resize(file.size() - 4);
  RunRegImport(file);
}

void Extractor::RunRegImport(const std::string& file) { program_.registry_editor().Import(file); }

bool Extractor::RestoreRegistryItem(const RestoreOrigin& origin) {
  const ItemEntry entry = EntryOf(origin);
  if (entry.kind != ItemEntry::Kind::kRegistry) return false;
  const std::string file = StagedPath(entry.name);
  // A file that the registry editor may still be reading is not replaced under its hands.
  if (program_.files().FileExists(file)) program_.registry_editor().WaitForRuns();
  if (!ExtractFile(origin, file)) return false;
  staged_.push_back({file, StagingRoot() + BackupBaseName(job_)});
  SettleAfterExtract();
  ImportRegFile(ParentFolder(file), FileNameOf(file));
  return true;
}

void Extractor::RemoveStaged() {
  Files& files = program_.platform().files;
  for (const Staged& staged : staged_) {
    files.RemoveFile(staged.path, true);
    std::string parent = ParentFolder(staged.path);
    while (parent.size() >= staged.top.size() &&
           files.RemoveFolder(parent, true) == FileStatus::kOk) {
      parent = ParentFolder(parent);
    }
  }
  staged_.clear();
}

}  // namespace quorvale
