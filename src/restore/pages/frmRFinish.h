// The last page of a restore: it starts the run and shows what the run tells, with the stop button,
// the end messages and the clean-up.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "restore/run/restore_run.h"

namespace quorvale {

class frmRFinish : public WizardPage, public RunPage {
 public:
  static constexpr char kName[] = "frmRFinish";
  explicit frmRFinish(Application& app);
  ~frmRFinish() override;
  RunProgress Progress() const override;
  bool StopRun() override;

  ui::PictureBox PicHeader{*this, "PicHeader", "RESTORE_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Restoring Data"};
  ui::Label lblCurrent{*this, "lblCurrent"};
  ui::ProgressBar pbCurrent{*this, "pbCurrent"};
  ui::Label LblFileinprocess{*this, "LblFileinprocess"};
  ui::ProgressBar prbGlobalProgress{*this, "prbGlobalProgress"};
  ui::Frame Frame3{*this, "Frame3"};
  ui::Label Label7{*this, "Label7"};
  ui::Label LblRegData{*this, "LblRegData"};
  ui::Label lblStatus{*this, "lblStatus"};
  ui::RichTextBox RichTextBox1{*this, "RichTextBox1"};
  ui::RichTextBox TxtROE{*this, "TxtROE"};
  ui::CommandButton cmdstop{*this, "cmdstop", "&Stop"};
  ui::CommandButton cmdNext{*this, "cmdNext", "&Finish"};
  ui::Timer Timer1{*this, "Timer1", 100};

  bool AbortFlag = false;            // the user stopped the run
  bool LeftInRestoreFolder = false;  // something could not go home
  // Data file and profile of each personal folder file restored.
  std::vector<std::pair<std::string, std::string>> DataFileTable;

  void Load() override;
  // Starts the run as soon as the page has painted.
  void Entered() override;
  void Unload() override;

  void Timer1_Timer();
  // The whole run.
  void TAKEALLRESTORE();
  void DisableInterface();
  // Ends the run for the page: the last values are shown, and Next is pressed, which leaves it.
  void EnableInterface();
  // Gives ".reg" files back to the registry editor.
  void chkRegistry();
  void cmdstop_Click();
  void cmdNext_Click();

  // Adds the restored data files to a running Outlook's session by `add_store`, but for archives.
  // Not part of a run.
  void RegisterDataFiles(const std::function<void(const std::string& path)>& add_store);

  // The steps of the run, by their names. TAKEALLRESTORE has the run do them all.
  void PrepareArchive() { run_.PrepareArchive(); }
  void RestoreWindowsMail() { run_.RestoreWindowsMail(); }
  void RestoreWindowsMailItem(const RestoreItem& item) {
    run_.windows_mail().RestoreWindowsMailItem(item);
  }
  void RestoreOutlookExpress() { run_.RestoreOutlookExpress(); }
  void RestoreOutlookExpressItem(const RestoreItem& item) {
    run_.outlook_express().RestoreOutlookExpressItem(item);
  }
  void RestoreOutlook() { run_.RestoreOutlook(); }
  void RestoreOutlookItem(const RestoreRow& row) { run_.outlook().RestoreOutlookItem(row); }
  void RewriteProfilePaths(const std::string& profile, const std::string& folder) {
    run_.outlook().RewriteProfilePaths(profile, folder);
  }
  void RestoreInternetExplorer() { run_.RestoreInternetExplorer(); }
  void RestoreInternetExplorerItem(const RestoreRow& row);
  void RestoreAddedFiles() { run_.RestoreAddedFiles(); }
  void RestoreOtherFiles(const RestoreRow& row);  // one added file
  void OFolder() { run_.OFolder(); }              // the added folders
  void OtherFiles() { run_.OtherFiles(); }        // the desktop and the documents
  // The key of the item is given, and not used: the export names its keys itself.
  void ImportRegFile(const std::string& folder, const std::string& name, const std::string& key);
  void RunRegImport(const std::string& file) { run_.tools().extractor.RunRegImport(file); }
  void SetLastRestore() { run_.SetLastRestore(); }
  bool DeleteRestoreFolder(const std::string& folder) { return run_.DeleteRestoreFolder(folder); }

  // "Backup" of "C:\x\Backup.obk".
  std::string BackupBaseName() const;
  static std::string RemapIdentityKey(const std::string& key, const std::string& identity);
  static std::string extractDesktopPath(const std::string& path);
  static std::string restDesktopPath(const std::string& path);
  std::string extractPath(const std::string& path) const;
  std::string restPath(const std::string& path) const;
  // `path` with its drive part replaced by `drive` (a letter) and ":\". No page calls this.
  static std::string exchangeDriveLetter(const std::string& path, const std::string& drive);
  // The text up to and including the first "\". No page calls this.
  static std::string folderOnly(const std::string& path);

 private:
  void PlaceControls();
  void ConnectHandlers();
  RestoreEvents EventsOfRun();
  void PhaseBegins(RestorePhase phase);
  void PhaseEnds(RestorePhase phase);
  void ShowItem(const std::string& item);
  void FinishRun();
  void AbortEnding();
  std::string EndMessage() const;

  RestoreRun run_;
  RestorePhase phase_ = RestorePhase::kPrepare;
  bool running_ = false;
  bool gone_ = false;  // the page was unloaded while it ran
};

}  // namespace quorvale
