// A computer on which backup tests run whole backups, and how they read what a backup made.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "discovery/pages/FrmTwo.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale::backup_test {

inline constexpr char kDone[] = "Backup successfully completed";
inline constexpr char kAborted[] = "Backup Process Aborted by User";
inline constexpr char kReallyStop[] = "Are you sure, you want to stop the process?";

class BackupRun {
 public:
  explicit BackupRun(const std::string& like = "xp");

  TestMachine& machine() { return machine_; }
  Application& app() { return machine_.app(); }
  frmFinish* Run() { return app().Loaded<frmFinish>(); }

  // The wizard up to the page that is named; `name` is the job's.
  void OpenItems(const std::string& name = "Job");
  void OpenOptions();
  void OpenMedia();
  void OpenReview();
  // Ticks nodes before OpenOptions; the items page must be open.
  void Tick(const std::string& path);
  // Adds a folder or file with the page's own dialogs.
  void AddFolder(const std::string& path);
  void AddFile(const std::string& path);
  // Presses Next on the review page and lets the run end.
  void Start();
  // From the items page to the end.
  void Finish();

  // A selection for tests of the engine alone; a staging folder stands for it.
  void Select(const std::vector<std::pair<std::string, std::string>>& paths_and_keys);

  // Presses Stop, and confirms it, as soon as the phase's text shows.
  void StopAt(const std::string& phase_text);
  // Runs `act` as soon as the label of the run starts with the text.
  void When(const std::string& phase_text, std::function<void()> act);

  std::string BackupFolder();
  std::string ArchivePath(const std::string& stem = "Job");
  bool ArchiveExists(const std::string& stem = "Job");
  // Names of the entries, sorted; a folder's ends in "\".
  std::vector<std::string> Entries(const std::string& stem = "Job");
  bool HasEntry(const std::string& name, const std::string& stem = "Job");
  // The bytes of an entry.
  std::string Content(const std::string& entry, const std::string& stem = "Job",
                      const std::string& password = "");
  // Everything in the backup folder.
  std::vector<std::string> LeftInBackupFolder();

 private:
  TestMachine machine_;
};

}  // namespace quorvale::backup_test
