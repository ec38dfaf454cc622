// The backup settings file: a small text, XML by appearance only, that says what a backup holds.
// Written line by line without escaping, in the system's code page with CR LF; read by position.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvale {

class Program;

struct SettingsItem {
  std::string path;  // the tree path
  std::string key;   // the first attribute
};

// The advanced settings, which a file tells by the places of their lines: a file that is cut, or a
// hand-over file, tells the first few or none.
struct SettingsOptions {
  std::optional<std::string> log;
  std::optional<std::string> compression;
  std::optional<std::string> level;
  std::optional<std::string> password;
  std::optional<std::string> protection;
};

// What a reader finds.
struct SettingsFile {
  std::string process_name;
  std::string backup_folder;               // child 2 of Main
  std::vector<SettingsItem> items;         // child 3
  SettingsOptions options;                 // child 4
  std::optional<std::string> backup_name;  // these three only in hand-over files
  std::optional<std::string> backup_type;
  std::optional<std::string> backup_path;
};

// Reads the text (UTF-8) of any variant that parses. Unescaped "&", "<" and quotes in paths and
// keys are read as they stand. False if there is no Main element.
bool ParseSettings(std::string_view text, SettingsFile* settings);
// The same from a file in the system's code page. False also if it is missing.
bool ReadSettingsFile(Program& program, const std::string& path, SettingsFile* settings);
// The same from a hand-over file, with its full text where the code page lost something.
bool ReadHandOver(Program& program, const std::string& path, SettingsFile* settings);

// An item's key as the file of a backup has it: an Outlook store without a file of its own gets a
// name in place of a key.
std::string SettingsKey(const std::string& path, const std::string& key);

// Where the settings file of the present job lies in its staging folder.
std::string StagedSettingsPath(const std::string& stage, const Program& program);

// The canonical file from the session; nothing is written if the file exists.
void WriteBackupSettings(Program& program, const std::string& path);
// The variant of the quick page.
void WriteQuickSettings(Program& program, const std::string& path);
// What a copy that asks for raised rights tells the next one, beside the job in the session.
struct HandOver {
  std::string name{};  // the job's name
  std::string
      kind{};  // the word of the action that the next copy replays: "Custom", "Restore", ...
  std::string path{};  // the destination of a custom backup
};
// Hand-over files, with what the code page cannot hold in full beside them; an existing one is
// deleted first, and nothing is written if it stays. They differ in which fields of the hand-over
// they hold: name and kind; all, and the items; name and kind; the kind alone.
void SaveJobState(Program& program, const std::string& path, const HandOver& hand_over);
void SaveTreeState(Program& program, const std::string& path, const HandOver& hand_over);
void WriteRestartSettings(Program& program, const std::string& path, const HandOver& hand_over);
void SaveScheduleState(Program& program, const std::string& path, const HandOver& hand_over);

}  // namespace quorvale
