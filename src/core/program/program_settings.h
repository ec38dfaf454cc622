// The settings of the program, kept in the registry of the current user: where backups are made
// and restored to, whether logs are written, and some switches.
//
// They are read when the first of them is asked for. A folder that has none yet gets the default
// one, which is made.
//
// The registry holds the folders as strings in the system's code page. A folder that the code page
// cannot hold stands in full beside its string, in a binary value of UTF-8, and counts while the
// string is what the code page leaves of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/program/session.h"
#include "platform/file_toolkit.h"
#include "platform/registry.h"

namespace quorvale {

inline constexpr char kSettingsKey[] = "Software\\Tarnwick\\Quorvale\\Settings\\";
// The switch of files_without_extension().
inline constexpr char kFilesWithoutExtension[] = "chkNoExtension";

class ProgramSettings {
 public:
  ProgramSettings(Registry& registry, FileToolkit& files, Session& session)
      : registry_(registry), files_(files), session_(session) {}
  ProgramSettings(const ProgramSettings&) = delete;
  ProgramSettings& operator=(const ProgramSettings&) = delete;

  // The folder in which backups are made, and the one that restored data is offered.
  const std::string& backup_folder();
  const std::string& restore_folder();
  // 1 if logs are wanted, else 0.
  int log();

  // These keep a value in the registry and tell who watches if it is another one.
  void UseBackupFolder(const std::string& folder);
  void UseRestoreFolder(const std::string& folder);
  // Also gLogDetails, for the next run. Nothing happens if it is the present value.
  void UseLog(int wanted);
  // Keeps the restore folder once more and sets gLogDetails.
  void Save();

  // A switch by the name of its value: 1 if it is on, else 0.
  int Switch(const std::string& name) const;
  // True if the end of a run is to be silent.
  bool EndSoundIsOff() const;
  // True if a backup is to take files without a dot in their name too.
  bool files_without_extension() const;

  // Makes the key if there is none, reads all and sets gLogDetails.
  void Load();
  // Reads again what others may have changed in the registry.
  void Read();
  // The next one who asks reads all anew.
  void Forget() { loaded_ = false; }

  enum class Setting { kBackupFolder, kRestoreFolder, kLog };
  using Observer = std::function<void(Setting)>;
  using Watch = std::shared_ptr<const Observer>;
  // Calls `observer` after each Use...() that changed something, for as long as the watch is held.
  [[nodiscard]] Watch OnChange(Observer observer);

  // A default folder could not be made; null: nobody is told. The path ends in "\".
  std::function<void(const std::string& path)> on_folder_not_made;

 private:
  void Ensure();
  std::string Text(const std::string& name) const;
  void SaveText(const std::string& name, const std::string& text);
  void SaveFolder(const std::string& name, const std::string& folder);
  std::string FolderOrDefault(const std::string& name, const char* default_name);
  void UseFolder(Setting setting, std::string* kept, const std::string& folder);
  void Tell(Setting setting);

  Registry& registry_;
  FileToolkit& files_;
  Session& session_;
  bool loaded_ = false;
  std::string backup_folder_;
  std::string restore_folder_;
  int log_ = 0;
  std::vector<std::weak_ptr<const Observer>> observers_;
};

}  // namespace quorvale
