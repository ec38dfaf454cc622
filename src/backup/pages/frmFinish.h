// "Taking Backup": the page of the run, and the backup engine.
//
// The engine runs on the user interface's thread. It pumps messages at each item and file, and
// Stop is a flag that a handler sets inside such a pump.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "backup/format/archive_layout.h"
#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmFinish : public ui::Form {
 public:
  static constexpr char kName[] = "frmFinish";
  explicit frmFinish(Application& app);
  void Load() override;
  // Stops a run whose page goes away.
  void Unload() override;

  // The run, from the first item to the end state. Returns with the page unloaded.
  void TAKEALLBACKUP();
  // Puts the page into the state of a run that is about to start.
  void ResetRunPage();
  void DisableInterface();
  void EnableInterface();

  // One loop for each kind of item.
  void BackupWindowsMailItems();
  void BackupOutlookExpressItems();
  void BackupOutlookItems();
  void BackupInternetExplorerItems();
  void BackupOtherItems();
  // One item of a kind, by the key and the tree path of the selection.
  void BackupWindowsMailItem(const std::string& key, const std::string& path);
  void BackupOutlookExpressItem(const std::string& key, const std::string& path);
  void BackupOutlookItem(const std::string& key, const std::string& path);
  void BackupInternetExplorerItem(const std::string& key, const std::string& path);
  void BackupOtherItem(const std::string& key, const std::string& path, bool is_file);

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
  // Makes the archive of the listed sources. True only if this very call made it.
  bool CompressStage(const std::string& stage_path);

  void cmdNext_Click();
  void Command2_Click();  // Stop
  void Timer1_Timer();

  ui::PictureBox PicHeader{*this, "PicHeader", "BACKUP_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Taking Backup"};
  ui::Label lblCurrent{*this, "lblCurrent", "Initializing..."};
  ui::ProgressBar pbCurrent{*this, "pbCurrent"};
  ui::Label lblStatus{*this, "lblStatus"};
  ui::Frame Frame3{*this, "Frame3"};
  ui::Label Label7{*this, "Label7", "Copy Progress"};
  ui::Label LblCompressProgress{*this, "LblCompressProgress", "Compression Progress"};
  ui::ProgressBar prbGlobalProgress{*this, "prbGlobalProgress"};
  ui::Label LblCurrentFileinProgress{*this, "LblCurrentFileinProgress", "File name"};
  ui::CommandButton Command2{*this, "Command2", "&Stop"};
  ui::CommandButton cmdNext{*this, "cmdNext"};
  ui::TextBox Dir1{*this, "Dir1"};  // folder boxes that are never shown
  ui::TextBox Dir2{*this, "Dir2"};
  ui::Timer Timer1{*this, "Timer1", 100};

  // The archive component of the run.
  zip::Archive archive;
  std::uint64_t disc_part_size = 600000000;  // bytes of what goes to one disc

  bool mStop = false;
  std::string mTargetFolder;          // the item's folder below the staging folder
  std::string mSourcePath;            // the present source
  std::string mEntryName;             // the entry name under construction
  std::string mExportFile;            // the last registry export
  std::vector<std::string> mSkipped;  // sources that were not there when they were reached

 private:
  using ItemProcedure = void (frmFinish::*)(const std::string& key, const std::string& path);

  void LayOut();
  void WireEvents();
  void Pump();
  // True once the run has to end early.
  bool Stopping() const;
  void SetPhase(int percent, const std::string& text);
  void RunItemPhases();
  void RunOutlookPhase();
  void RunOtherFoldersPhase();
  void RunKind(const char* root, const std::string& words, bool words_first,
               ItemProcedure one_item);
  void BackupMailItem(const std::string& key, const std::string& path);
  void BackupListedItem(size_t index);
  ItemEntry PrepareTarget(const std::string& key, const std::string& path);
  void ShowOtherItem(const std::string& key, const ItemEntry& entry);
  void ExportItem(const std::string& path, const std::string& key);
  void TakeFolder(const std::string& source, const std::string& target);
  void TakeSubfolder(const std::string& folder, const std::string& target);
  // Hands a file to the archive component under the entry name that belongs to `target`.
  void HandOver(const std::string& source, const std::string& target);
  // Hands over a source that has no entry yet; a folder's ends in "*.*".
  void Add(const std::string& source, const std::string& entry_name);
  bool CanBeEntryName(const std::string& name) const;
  bool IsInStage(const std::string& path) const;
  std::string ModifiedText(const std::string& path);
  void ShowMoving(const std::string& path);

  void EndGoodRun();
  void EndFailedRun();
  void EndStoppedRun();
  void RemoveStage();

  void ApplyArchiveSettings(const std::string& stage_path);
  void AddSettingsFile(const std::string& stage_path);
  zip::Result RunArchive();
  bool OfferOtherFolder();
  void EndCompressStage();
  // Sends or burns the archive, where the media page says so.
  void Deliver();
  void ShowDelivery();
  void NameEntry(zip::BeforeFile& file);

  Application& app_;
  std::string destination_;    // the backup folder of this run
  bool archive_made_ = false;  // this run's archive is complete
};

}  // namespace quorvale
