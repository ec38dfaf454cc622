// "Taking Backup": the page of a backup run. It starts the run, shows what the run tells, asks
// where there is no room, has the archive delivered and says how it ended. The procedures of the
// run are here under their names too.
#pragma once

#include <string>

#include "backup/run/backup_run.h"
#include "backup/run/disc_folder.h"
#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmFinish : public WizardPage, public RunPage {
 public:
  static constexpr char kName[] = "frmFinish";
  explicit frmFinish(Application& app);
  ~frmFinish() override;
  void Load() override;
  // Starts the run as soon as the page has painted.
  void Entered() override;
  // Stops a run whose page goes away.
  void Unload() override;
  RunProgress Progress() const override;
  bool StopRun() override;

  // The run, from the first item to the end state. Returns with the page unloaded.
  void TAKEALLBACKUP();
  // Puts the page into the state of a run that is about to start.
  void ResetRunPage();
  void DisableInterface();
  void EnableInterface();

  // The run's own procedures, see backup/run/backup_run.h.
  void BackupWindowsMailItems() { run.BackupWindowsMailItems(); }
  void BackupOutlookExpressItems() { run.BackupOutlookExpressItems(); }
  void BackupOutlookItems() { run.BackupOutlookItems(); }
  void BackupInternetExplorerItems() { run.BackupInternetExplorerItems(); }
  void BackupOtherItems() { run.BackupOtherItems(); }
  void BackupWindowsMailItem(const std::string& key, const std::string& path) {
    run.BackupItemOf(key, path);
  }
  void BackupOutlookExpressItem(const std::string& key, const std::string& path) {
    run.BackupItemOf(key, path);
  }
  void BackupOutlookItem(const std::string& key, const std::string& path) {
    run.BackupItemOf(key, path);
  }
  void BackupInternetExplorerItem(const std::string& key, const std::string& path) {
    run.BackupItemOf(key, path);
  }
  void BackupOtherItem(const std::string& key, const std::string& path, bool /*is_file*/) {
    run.BackupItemOf(key, path);
  }
  void ExportRegistryKey(const std::string& folder, const std::string& leaf,
                         const std::string& key) {
    run.ExportRegistryKey(folder, leaf, key);
  }
  bool CopyFileToStage(const std::string& source, const std::string& target) {
    return run.CopyFileToStage(source, target);
  }
  void CheckAddedFile(const std::string& path) { run.CheckAddedFile(path); }
  bool KillFolder(const std::string& path) { return run.KillFolder(path); }
  void FinishLogs() { run.FinishLogs(); }
  // Makes the archive of what the run collected, and delivers it. Where there is no room the user
  // may choose another folder for a further attempt. True only if the first attempt made it.
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

  bool mStop = false;
  BackupRun run;

 private:
  void PlaceControls();
  void ConnectHandlers();
  BackupEvents Events();
  // Pumps. False once the run has to end early.
  bool KeepGoing();
  bool Stopping() const;
  // "Current Progress: " and the words.
  void ShowDoing(const std::string& words);
  void ShowPhase(BackupPhase phase);
  void ShowItem(const BackupItem& item);
  void ShowItemDone(const BackupItem& item);
  void ShowOtherItem(const BackupItem& item);
  void ShowArchiveBars();
  void ShowArchiveFile(const std::string& source);
  void ShowArchivePercent(int percent);

  // What follows an archive stage: its message, further attempts and the delivery.
  void EndArchiveStage(BackupResult* result);
  void TellArchiveEnd(const BackupResult& result);
  bool OfferOtherFolder();
  void ShowArchiveIsOver();
  // Sends or burns the archive, where the job says so.
  void Deliver(BackupResult* result);
  void DeliverDiscs(BackupResult* result);
  // Where not all discs were written: the parts go when the backup stands whole without them.
  void KeepWholeBackup(BackupResult* result);
  void NoteOnDiscs(const std::string& words);
  DiscFolder Parts();
  void ShowDelivery();

  void EndRun(const BackupResult& result);
  void EndGoodRun(const BackupResult& result);
  void EndFailedRun(const BackupResult& result);
  void EndStoppedRun(const BackupResult& result);

  std::string destination_;  // the backup folder of this run
  bool parts_stay_ = false;  // they are the only backup that there is
  std::string doing_;        // what lblCurrent says that the run does
};

}  // namespace quorvale
