// One backup, from the committed selection to the archive.
//
// The run knows no form and asks nobody. It reads the job and the state of the program's session,
// works on the caller's thread, tells the events what it does and returns a result. Start reading
// at Run.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "backup/format/member_table.h"
#include "backup/run/backup_plan.h"
#include "backup/run/member_fates.h"
#include "core/program/program.h"

namespace quorvale {

enum class BackupOutcome {
  kDone,
  kStopped,  // keep_going said so, or the program ended
  kNoSpace,  // the archive did not fit; MakeArchive may be tried again
  kFailed,
};

// An item of the selection while it is taken.
struct BackupItem {
  BackupPhase phase;
  const std::string& path;  // in the tree
  const std::string& key;   // a file, a folder or a registry key
};

// What a run tells. Each may be empty.
struct BackupEvents {
  std::function<void(BackupPhase)> phase;
  std::function<void(const BackupItem&)> item;          // about to be taken
  std::function<void(const BackupItem&)> item_done;     // taken; not told of kOtherFiles
  std::function<void(const std::string& source)> file;  // one that is added or copied by itself
  std::function<void(const std::string& path)> folder_refused;  // could not be made; it ends in "\"
  // While the archive is made. The second is told within a file, the third of all bytes.
  std::function<void(const std::string& source)> archive_file;
  std::function<void(int percent)> archive_percent;
  std::function<void(int percent)> archive_total;
  // The place to pump: called at each item, each file and while the archive is made. False stops
  // the run, and has to be the answer from then on.
  std::function<bool()> keep_going;
};

struct BackupResult {
  BackupOutcome outcome = BackupOutcome::kFailed;
  std::string archive;               // "" if none was made
  std::vector<std::string> skipped;  // sources that were not there when they were reached
  // What the archive component said; nothing if the run ended before it.
  std::optional<zip::Result> component;
};

class BackupRun {
 public:
  BackupRun(Program& program, BackupEvents events);
  BackupRun(const BackupRun&) = delete;
  BackupRun& operator=(const BackupRun&) = delete;

  // Everything up to the archive. The staging folder stays until CleanUp.
  BackupResult Run();
  // Makes the archive of what was collected. It keeps the name of the first attempt of its run, so
  // a second one helps only where the disk has room by then. `stage_path` says where the settings
  // file is looked for, and gives the archive its name.
  BackupResult MakeArchive(const std::string& stage_path);
  // The end of a run whose result has been told and whose archive is delivered: the staging folder
  // goes. A good run gets its log and its place in the history; a stopped one loses its archive.
  // The account is complete then, and kept.
  void CleanUp(const BackupResult& result);

  // One loop for each kind of item.
  void BackupWindowsMailItems();
  void BackupOutlookExpressItems();
  void BackupOutlookItems();
  void BackupInternetExplorerItems();
  void BackupOtherItems();
  // One item, by the key and the tree path of the selection. Another than those of the plan is
  // passed over.
  void BackupItemOf(const std::string& key, const std::string& path);

  // Starts the registry editor's export of a key into a folder; mExportFile receives the path. The
  // editor is not waited for.
  void ExportRegistryKey(const std::string& folder, const std::string& leaf,
                         const std::string& key);
  // Copies a file that stands under two items. True when the copy was attempted: the target is
  // left alone if it is not older than the source.
  bool CopyFileToStage(const std::string& source, const std::string& target);
  // Notes an added file that is missing.
  void CheckAddedFile(const std::string& path);
  // Deletes a folder with its content. True when it is gone.
  bool KillFolder(const std::string& path);
  // Writes the run log if anything was skipped and logs are wanted.
  void FinishLogs();

  // The archive component of the run.
  zip::Archive archive;
  std::uint64_t disc_part_size = 600000000;  // bytes of what goes to one disc

  std::string mTargetFolder;          // the item's folder below the staging folder
  std::string mSourcePath;            // the present source
  std::string mEntryName;             // its entry name
  std::string mExportFile;            // the last registry export
  std::vector<std::string> mSkipped;  // sources that were not there when they were reached

 private:
  struct Phase;
  static const Phase kPhases[];

  const BackupJob& job() const { return program_.session(); }
  BackupState& state() { return program_.session(); }
  const std::string& os_name() const { return program_.session().gOSName; }
  // Pumps. False once the run has to end.
  bool KeepGoing();
  void ListenToArchive();
  void Begin();
  BackupResult Result();
  void EndAccount(const BackupResult& result);
  std::vector<std::string> LeftOut() const;

  bool HasWindowsMail() const;
  void RunOutlookPhase();
  void Settle();
  void RunArchivePhase();

  void RunKind(BackupPhase phase);
  bool PhaseApplies(BackupPhase phase);
  void MakePlan();
  void RunOtherItem(const PlannedItem& item);
  void TakeItem(const PlannedItem& item);
  void TakeMember(const PlannedItem& item, const PlannedMember& member);
  bool MakeFolder(const std::string& path);
  void TellRefused(const std::string& folder);  // it ends in "\"
  // Hands a planned source to the archive component.
  void Add(std::uint32_t file);
  std::string ModifiedText(const std::string& path);
  void TellFile(const std::string& source);

  void ApplyArchiveSettings(const std::string& stage_path);
  void AddSettingsFile(const std::string& stage_path);
  // The member table, which is written when all else is stored.
  FileStatus WriteTable(std::string* path);
  FileStatus WriteTableRows(MemberTableWriter& writer);
  FileStatus WriteItemRows(MemberTableWriter& writer, std::uint32_t number);
  std::optional<size_t> PlaceOf(const std::string& source);
  void NoteStored(const zip::StoredFile& file);
  void NoteWarning(const zip::Warning& warning);
  // The account's last words on a run that did not make its archive.
  void TellFailure(const BackupResult& result);
  zip::Result Zip();
  void NameEntry(zip::BeforeFile& file);
  void RemoveStage();

  Program& program_;
  BackupEvents events_;
  std::optional<BackupPlan> plan_;
  MemberFates fates_;
  std::string refused_folder_;            // that could not be made
  bool settings_staged_ = false;          // the settings file was there for the archive
  std::optional<zip::Result> component_;  // of the last attempt
  bool archive_made_ = false;             // an attempt of this run was good
};

}  // namespace quorvale
