#include "restore/run/extractor.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "restore/run/import_check.h"
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

Extractor::Extractor(Program& program, const RestoreJob& job, RunMonitor& monitor,
                     RestoreAccount& account)
    : program_(program), job_(job), monitor_(monitor), account_(account) {}

AccountReason Extractor::Open() {
  if (!job_.restore_settings_file.empty()) {
    staged_.push_back({job_.restore_settings_file, ParentFolder(job_.restore_settings_file)});
  }
  if (!program_.files().FileExists(job_.gRestoreFilePath)) return AccountReason::kMissing;
  const std::string folder = RestoreFolder(program_, job_);
  // Where it cannot be made, each file that was to go there says so.
  program_.files().MakeFolderChain(folder);
  backup_ = std::make_unique<BackupFile>(program_, job_.gRestoreFilePath, job_.gRestorePassword);
  archive_ = &backup_->Unpacker(folder);
  ConnectEvents(*archive_);
  // A page has refused a bad file already; what is damaged since is left out member by member.
  backup_->Test([this] { return monitor_.KeepGoing(); });
  const bool is_read = !monitor_.KeepGoing() || members_.Read(*backup_) == zip::Result::kDone;
  // The calls before have used some of the events themselves.
  ConnectEvents(*archive_);
  backup_->Unpacker(folder);
  return is_read ? AccountReason::kNone : AccountReason::kDamaged;
}

void Extractor::ConnectEvents(zip::Archive& archive) {
  archive.on_before_file = [this](zip::BeforeFile& file) { BeforeFile(file); };
  archive.on_warning = [this](const zip::Warning& warning) { TellWarning(warning); };
  archive.on_unzipped = [this](const zip::UnzippedFile& file) { TellUnzipped(file); };
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

bool Extractor::HoldsAny(const RestoreOrigin& origin) const {
  const ItemEntry entry = EntryOf(origin);
  if (entry.kind != ItemEntry::Kind::kFolder) return HoldsItem(origin);
  if (members_.HasTable()) return !members_.Below(origin).empty();
  return members_.names().Has(MemberName(entry.name) + "\\*");
}

bool Extractor::ExtractFile(const RestoreOrigin& origin, const std::string& target) {
  return ExtractSingle(origin, target, target, {});
}

bool Extractor::ExtractSingle(const RestoreOrigin& origin, const std::string& target,
                              const std::string& belongs, Extraction extraction) {
  if (!HoldsItem(origin)) return false;
  account_.BeginItem(origin);
  const ItemEntry entry = EntryOf(origin);
  if (!IsSafeTarget(target) || (!members_.HasTable() && !IsSafeBelow(entry.name))) {
    account_.NotRestored(AccountReason::kNoName, belongs);
    return false;
  }
  if (members_.HasTable()) {
    return ExtractMembers({{members_.Single(origin), target, belongs}}, std::move(extraction));
  }
  extraction.target = target;
  extraction.nth = *PlaceOfMember(origin, entry);
  extraction.pending.emplace(FoldCase(MemberName(entry.name)), belongs);
  const zip::Result result = Extract({MemberName(entry.name)}, std::move(extraction));
  return extraction_.written == 1 &&
         (result == zip::Result::kDone || result == zip::Result::kWarnings);
}

bool Extractor::ExtractFolder(const RestoreOrigin& origin, const std::string& target) {
  if (!HoldsAny(origin)) return false;
  account_.BeginItem(origin);
  if (!IsSafeTarget(target)) {
    account_.NotRestored(AccountReason::kNoName, target, AccountThing::kFolder);
    return false;
  }
  if (!members_.HasTable()) return ExtractNamed(EntryOf(origin).name, target, true);
  std::vector<MemberWay> ways;
  for (const TableMember* member : members_.Below(origin)) {
    const std::string place = WithoutBackslash(WithBackslash(target) + member->inner);
    ways.push_back({member, place, place});
  }
  ExtractMembers(ways, {});
  return extraction_.written > 0;
}

bool Extractor::ExtractNamed(const std::string& entry, const std::string& target, bool is_home) {
  if (!IsSafeBelow(entry) || !IsSafeTarget(target)) {
    account_.NotRestored(AccountReason::kNoName, target, AccountThing::kFolder);
    return false;
  }
  Extraction extraction;
  extraction.folder = MemberName(entry);
  extraction.target = WithoutBackslash(target);
  extraction.is_home = is_home;
  Extract({MemberName(entry) + "\\*"}, std::move(extraction));
  return extraction_.written > 0;
}

bool Extractor::ExtractMembers(const std::vector<MemberWay>& ways, Extraction extraction) {
  extraction_ = {};
  if (ways.empty()) return false;
  std::vector<std::string> names;
  for (const MemberWay& way : ways) {
    const bool is_folder = way.member->kind == TableMember::Kind::kFolder;
    names.push_back(way.member->entry + (is_folder ? "\\" : ""));
    const std::string name = FoldCase(way.member->entry);
    extraction.targets.emplace(name, way.target);
    extraction.pending.emplace(name, way.belongs);
  }
  const zip::Result result = Extract(names, std::move(extraction));
  return extraction_.written == ways.size() &&
         (result == zip::Result::kDone || result == zip::Result::kWarnings);
}

// What cannot go home. --------------------------------------------------------------------------

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

bool Extractor::KeepFile(const RestoreOrigin& origin, const std::string& folder) {
  const std::string place = LeftPath(origin, folder);
  Extraction extraction;
  extraction.is_home = false;
  if (!ExtractSingle(origin, place, origin.key, std::move(extraction))) return false;
  account_.PutElsewhere(AccountReason::kNoPlace, origin.key, place, AccountThing::kFile);
  return true;
}

bool Extractor::KeepFolder(const RestoreOrigin& origin) {
  if (!HoldsAny(origin)) return false;
  account_.BeginItem(origin);
  const std::string root = FolderForLeftItems(program_, job_) + "\\";
  std::string place;
  if (members_.HasTable()) {
    place = KeepMembers(origin, root + BackupBaseName(job_) + "\\");
  } else {
    const std::string entry = EntryOf(origin).name;
    if (ExtractNamed(entry, root + MemberName(entry), false)) place = root + MemberName(entry);
  }
  if (place.empty()) return false;
  account_.PutElsewhere(AccountReason::kNoPlace, origin.key, place, AccountThing::kFolder);
  return true;
}

std::string Extractor::KeepMembers(const RestoreOrigin& origin, const std::string& root) {
  std::vector<MemberWay> ways;
  std::string place;
  for (const TableMember* member : members_.Below(origin)) {
    const std::string target = root + member->entry.substr(member->entry.find('\\') + 1);
    const std::string belongs = WithoutBackslash(WithBackslash(origin.key) + member->inner);
    if (!IsSafeTarget(target)) {
      account_.NotRestored(AccountReason::kNoName, belongs);
      continue;
    }
    if (place.empty()) {
      // The item's own folder, above all that stands below it.
      const size_t below = member->inner.empty() ? 0 : member->inner.size() + 1;
      place = target.substr(0, target.size() - below);
    }
    ways.push_back({member, target, belongs});
  }
  Extraction extraction;
  extraction.is_home = false;
  ExtractMembers(ways, std::move(extraction));
  return extraction_.written > 0 ? place : "";
}

// The archive component. ------------------------------------------------------------------------

zip::Result Extractor::Extract(const std::vector<std::string>& members, Extraction extraction) {
  if (archive_ == nullptr) return zip::Result::kFailed;
  extraction_ = std::move(extraction);
  archive_->files_to_process = members;
  archive_->skip_existing = false;
  archive_->every_of_one_name = extraction_.targets.empty() && extraction_.folder.empty();
  archive_->offer_unusual_names = true;
  const zip::Result result = archive_->Unzip();
  TellPending(result);
  return result;
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
  if (file.exclude) {
    account_.NotRestored(AccountReason::kNoName, file.destination);
  } else {
    extraction_.pending.emplace(FoldCase(WithoutBackslash(file.source)), file.destination);
  }
}

AccountThing Extractor::ThingOf(bool is_folder) const {
  if (extraction_.is_registry) return AccountThing::kRegistryKey;
  return is_folder ? AccountThing::kFolder : AccountThing::kFile;
}

void Extractor::TellUnzipped(const zip::UnzippedFile& file) {
  ++extraction_.written;
  extraction_.pending.erase(FoldCase(WithoutBackslash(file.entry_name)));
  if (extraction_.is_home && !file.is_folder) account_.Good();
}

void Extractor::TellWarning(const zip::Warning& warning) {
  if (archive_->current_operation() != zip::Operation::kUnzipping) return;
  const AccountThing thing = ThingOf(warning.name.ends_with("\\"));
  const auto pending = extraction_.pending.find(FoldCase(WithoutBackslash(warning.name)));
  if (pending != extraction_.pending.end()) {
    account_.NotRestored(warning, pending->second, thing);
    extraction_.pending.erase(pending);
  } else if (warning.reason == zip::WarningReason::kUnsafe) {
    account_.NotRestored(warning, warning.name, thing);
  }
}

void Extractor::TellPending(zip::Result result) {
  AccountReason why = AccountReason::kDamaged;
  std::string detail;
  if (result == zip::Result::kDone || result == zip::Result::kWarnings) {
    why = AccountReason::kNotInBackup;
  } else if (result == zip::Result::kNoSpace) {
    why = AccountReason::kNoRoom;
  } else if (result == zip::Result::kAborted) {
    why = AccountReason::kStopped;
  } else if (!program_.files().FileExists(job_.gRestoreFilePath)) {
    why = AccountReason::kMissing;
    detail = job_.gRestoreFilePath;
  }
  for (const auto& [entry, belongs] : extraction_.pending) {
    account_.NotRestored(why, belongs, ThingOf(false), detail);
  }
  extraction_.pending.clear();
  // Without a table nobody knows what else would have come of a folder.
  const bool ended_early = why == AccountReason::kNoRoom || why == AccountReason::kStopped;
  const bool told_nothing = extraction_.written == 0 && why == AccountReason::kMissing;
  if (!extraction_.folder.empty() && (ended_early || told_nothing)) {
    account_.NotRestored(why, extraction_.target, AccountThing::kFolder, detail);
  }
}

void Extractor::SettleAfterExtract() {
  program_.Pump();
  program_.platform().system.Sleep(kSettleMilliseconds);
}

// Registry files. ------------------------------------------------------------------------------

bool Extractor::ImportRegFile(const std::string& folder, const std::string& name) {
  std::string file = WithoutBackslash(folder) + "\\" + ReplaceAll(name, " ", "_") + ".reg";
  if (EndsWithNoCase(file, ".reg.reg")) file.resize(file.size() - 4);
  return RunRegImport(file);
}

bool Extractor::RunRegImport(const std::string& file) {
  return program_.registry_editor().Import(file);
}

bool Extractor::RestoreRegistryItem(const RestoreOrigin& origin) {
  const ItemEntry entry = EntryOf(origin);
  if (entry.kind != ItemEntry::Kind::kRegistry) return false;
  const std::string file = StagedPath(entry.name);
  // A file that the registry editor may still be reading is not replaced under its hands.
  if (program_.files().FileExists(file)) FinishImports();
  Extraction extraction;
  extraction.is_home = false;
  extraction.is_registry = true;
  if (!ExtractSingle(origin, file, origin.key, std::move(extraction))) return false;
  staged_.push_back({file, StagingRoot() + BackupBaseName(job_)});
  SettleAfterExtract();
  imports_.push_back({origin, file, ImportRegFile(ParentFolder(file), FileNameOf(file))});
  return true;
}

void Extractor::FinishImports() {
  program_.registry_editor().WaitForRuns();
  // A pump may have begun more of them.
  for (const Import& import : std::exchange(imports_, {})) {
    account_.BeginItem(import.origin);
    if (import.started && ImportTook(program_, import.file)) {
      account_.Good();
    } else {
      account_.NotRestored(AccountReason::kImportRefused, import.origin.key,
                           AccountThing::kRegistryKey);
    }
  }
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
