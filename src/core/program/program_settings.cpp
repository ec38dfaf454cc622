#include "core/program/program_settings.h"

#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr RegistryRoot kRoot = RegistryRoot::kCurrentUser;
constexpr char kBackupFolder[] = "txtBackup";
constexpr char kRestoreFolder[] = "txtRestore";
constexpr char kLog[] = "chklog";
constexpr char kSoundOff[] = "chkSound";

// The value with the whole name of a folder that a string cannot hold.
std::string FullName(const std::string& name) { return name + "FullName"; }

}  // namespace

const std::string& ProgramSettings::backup_folder() {
  Ensure();
  return backup_folder_;
}

const std::string& ProgramSettings::restore_folder() {
  Ensure();
  return restore_folder_;
}

int ProgramSettings::log() {
  Ensure();
  return log_;
}

// --- Reading ------------------------------------------------------------------------------------

void ProgramSettings::Ensure() {
  if (!loaded_) Load();
}

void ProgramSettings::Load() {
  if (Text(kBackupFolder).empty()) registry_.RegMakeKey(kRoot, WithoutBackslash(kSettingsKey));
  Read();
  session_.gLogDetails = BoolWord(log_ == 1);
}

void ProgramSettings::Read() {
  loaded_ = true;
  backup_folder_ = FolderOrDefault(kBackupFolder, "\\Backup");
  restore_folder_ = FolderOrDefault(kRestoreFolder, "\\Restore");
  log_ = Switch(kLog);
}

std::string ProgramSettings::FolderOrDefault(const std::string& name, const char* default_name) {
  const std::string told = Text(name);
  const std::string folder = session_.gAppDataPath + default_name;
  if (!told.empty()) {
    // The default folder too: programs before this one kept what the code page left of it.
    for (const std::string& full : {Text(FullName(name)), folder}) {
      if (IsUtf8(full) && registry_.AsString(full) == told) return full;
    }
    return told;
  }
  const bool made = files_.MakeFolderChain(folder);
  if (!made && on_folder_not_made) on_folder_not_made(folder + "\\");
  return folder;
}

std::string ProgramSettings::Text(const std::string& name) const {
  return registry_.RegGetValue(kRoot, kSettingsKey, name);
}

int ProgramSettings::Switch(const std::string& name) const { return CheckValue(Text(name)); }

bool ProgramSettings::EndSoundIsOff() const {
  const std::string off = Text(kSoundOff);
  return off != "0" && !off.empty();
}

bool ProgramSettings::files_without_extension() const {
  return Switch(kFilesWithoutExtension) == 1;
}

// --- Writing ------------------------------------------------------------------------------------

void ProgramSettings::SaveText(const std::string& name, const std::string& text) {
  registry_.SaveRegString(kRoot, kSettingsKey, name, text);
}

void ProgramSettings::SaveFolder(const std::string& name, const std::string& folder) {
  if (registry_.AsString(folder) == folder) {
    registry_.RegKillValue(kRoot, kSettingsKey, FullName(name));
  } else {
    registry_.SaveRegBytes(kRoot, kSettingsKey, FullName(name), folder);
  }
  SaveText(name, folder);
}

void ProgramSettings::UseBackupFolder(const std::string& folder) {
  UseFolder(Setting::kBackupFolder, &backup_folder_, folder);
  SaveFolder(kBackupFolder, folder);
}

void ProgramSettings::UseRestoreFolder(const std::string& folder) {
  UseFolder(Setting::kRestoreFolder, &restore_folder_, folder);
  SaveFolder(kRestoreFolder, folder);
}

void ProgramSettings::UseFolder(Setting setting, std::string* kept, const std::string& folder) {
  Ensure();
  if (*kept == folder) return;
  *kept = folder;
  Tell(setting);
}

void ProgramSettings::UseLog(int wanted) {
  Ensure();
  if (log_ == wanted) return;
  log_ = wanted;
  Tell(Setting::kLog);
  SaveText(kLog, std::to_string(log_));
  session_.gLogDetails = BoolWord(log_ == 1);
}

void ProgramSettings::Save() {
  Ensure();
  SaveFolder(kRestoreFolder, restore_folder_);
  session_.gLogDetails = BoolWord(log_ == 1);
}

// --- Watching -----------------------------------------------------------------------------------

ProgramSettings::Watch ProgramSettings::OnChange(Observer observer) {
  std::erase_if(observers_, [](const auto& held) { return held.expired(); });
  const auto watch = std::make_shared<const Observer>(std::move(observer));
  observers_.push_back(watch);
  return watch;
}

void ProgramSettings::Tell(Setting setting) {
  // An observer may begin to watch something itself.
  const auto observers = observers_;
  for (const auto& held : observers) {
    if (const Watch watch = held.lock()) (*watch)(setting);
  }
}

}  // namespace quorvale
