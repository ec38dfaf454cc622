// The last page of a restore, and its engine: the phases, the per-file redirect, the imports of
// registry files, the stop button, the end messages and the clean-up.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "archive/archive.h"
#include "backup/format/archive_layout.h"
#include "core/pages/application.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "restore/run/member_index.h"
#include "restore/run/outlook_repair.h"

namespace quorvale {

class frmRFinish : public ui::Form, public RunPage {
 public:
  static constexpr char kName[] = "frmRFinish";
  explicit frmRFinish(Application& app);
  ~frmRFinish() override;
  RunProgress Progress() const override;
  bool StopRun() override;

  ui::PictureBox PicHeader{*this, "PicHeader", "RESTORE_HEADER"};
  ui::Label lblHeading{*this, "lblHeading", "Restoring Data"};
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
  zip::Archive XceedZip1;

  // Shared by the phases.
  bool AbortFlag = false;            // the user stopped the run
  bool LeftInRestoreFolder = false;  // something could not go home
  std::string StagedPath;            // the present item's path below StagingRoot
  std::string ExtractTarget;         // where the present member is to land
  std::string StagingRoot;           // the restore folder with its final "\"
  // Data file and profile of each personal folder file restored.
  std::vector<std::pair<std::string, std::string>> DataFileTable;

  void Load() override;
  void Unload() override;

  void Timer1_Timer();
  // The whole run.
  void TAKEALLRESTORE();
  void DisableInterface();
  void EnableInterface();
  // Gives ".reg" files back to the registry editor.
  void chkRegistry();
  // Tests the archive and sets the component up.
  void PrepareArchive();
  void SetLastRestore();
  // Removes the staging folder of this run. True when it is gone.
  bool DeleteRestoreFolder(const std::string& folder);
  // Where items stay that cannot go home, without a final "\": below the restore folder, or below
  // the program's usual one where the user wants none.
  std::string FolderForLeftItems() const;

  // Imports a staged registry file: `folder`, "\", `name` with "_" for blanks, and ".reg".
  void ImportRegFile(const std::string& folder, const std::string& name, const std::string& key);
  void RunRegImport(const std::string& file);

  // Outlook Express.
  void RestoreOutlookExpress();
  void RestoreOutlookExpressItem(size_t row);
  // The key with the identity of a backup replaced by the present one.
  static std::string RemapIdentityKey(const std::string& key, const std::string& identity);

  // Microsoft Outlook.
  void RestoreOutlook();
  void RestoreOutlookItem(const RestoreRow& row);
  void RewriteProfilePaths(const std::string& profile, const std::string& folder);
  // Adds the restored data files to a running Outlook's session by `add_store`, but for archives.
  // Not part of a run.
  void RegisterDataFiles(const std::function<void(const std::string& path)>& add_store);

  // Windows Mail.
  void RestoreWindowsMail();
  void RestoreWindowsMailItem(size_t row);

  // Internet Explorer and files.
  void RestoreInternetExplorer();
  void RestoreInternetExplorerItem(const RestoreRow& row);
  void RestoreAddedFiles();
  void RestoreOtherFiles(const RestoreRow& row);
  void OFolder();
  void OtherFiles();

  // The path up to and including "Desktop" (the documents folder's word), and the tail behind it.
  // "" for a path without that word.
  static std::string extractDesktopPath(const std::string& path);
  static std::string restDesktopPath(const std::string& path);
  std::string extractPath(const std::string& path) const;
  std::string restPath(const std::string& path) const;
  // `path` with its drive part replaced by `drive` (a letter) and ":\".
  static std::string exchangeDriveLetter(const std::string& path, const std::string& drive);
  // The text up to and including the first "\".
  static std::string folderOnly(const std::string& path);

  // "Backup" of "C:\x\Backup.obk".
  std::string BackupBaseName() const;

  void cmdstop_Click();
  void cmdNext_Click();

 private:
  void Arrange();
  // True once the user stopped the run, or the page or the program went away under it.
  bool Stopped() const;
  // Each runs its phases in order; false when the run was stopped.
  bool RunPhases();
  void FinishRun();
  void AbortEnding();
  // Tells which item is at work, and lets messages in. False when the run was stopped.
  bool BeginItem(const std::string& status);
  // Restores the rows of one mail product, shown item by item, until Stop.
  void RestoreItems(const std::string& root, const std::string& product,
                    void (frmRFinish::*restore)(size_t row));

  // The staging folder of this run without a final "\": the user's restore folder, or the program's
  // own where the user wants none.
  std::string RestoreFolder() const;
  // Where an entry is staged.
  std::string StagedName(const std::string& entry) const;
  std::string MemberName(const std::string& entry) const;
  ItemEntry EntryOf(const RestoreOrigin& origin) const;
  const RestoreOrigin& OriginOf(const RestoreRow& row) const;

  // Extracts the file of an item to `target`, or a folder's tree below it. True if something
  // was written. Nothing is done if the archive does not hold it or the target is not safe.
  bool ExtractFile(const RestoreOrigin& origin, const std::string& target);
  bool ExtractFolder(const std::string& entry, const std::string& target);
  zip::Result Extract(const std::string& member);
  void BeforeFile(zip::BeforeFile& file);
  // False if the file that the archive holds under this item's name is another item's.
  bool HoldsItem(const RestoreOrigin& origin, const ItemEntry& entry);

  // Stages the registry export of an item and imports it. True if the export was there.
  bool RestoreRegistryItem(const RestoreOrigin& origin, const std::string& location);
  void SettleAfterExtract();

  void RestoreAddressBook(const RestoreOrigin& origin);
  void PlanAddressBooks();
  void RestoreMessages(const RestoreOrigin& origin, const std::string& location);
  // The mail store's folder; written back to the registry where that is due.
  std::string StoreFolder();
  // After the imports: the identity that the mail program now opens finds the restored mail.
  void PointIdentityAtStore();

  void PlanDataFiles();
  void RestoreDataFile(const RestoreRow& row);
  void RestoreLooseFile(const RestoreRow& row);
  // Where Outlook keeps the files of a group, "" for no such group.
  std::string HomeOfGroup(const std::string& path);

  // True if the drive or share of a path answers.
  bool DriveIsThere(const std::string& path);
  std::string TargetOfAddedFile(const RestoreOrigin& origin, const std::string& location);

  Application& app_;
  bool running_ = false;
  bool gone_ = false;  // the page was unloaded while it ran
  // The present extraction.
  std::string prefix_;  // the folder whose tree is extracted, "" for a single file
  size_t wanted_ = 0;   // which of several members of one name
  size_t met_ = 0;
  size_t written_ = 0;

  MemberIndex members_;
  // A file that this run staged, and the folder up to which empty folders go with it.
  struct Staged {
    std::string path;
    std::string top;
  };
  std::vector<Staged> staged_;
  std::string identity_;    // of the present mail user
  std::string mail_store_;  // the folder into which mail came back; "" if none did
  std::string main_book_;   // the address book that becomes the present user's, its path
  RestoredFiles restored_;  // Outlook's data files, by their paths in the backup
  std::string mProfileMarker;
  std::string repaired_;  // the profile that was repaired last
};

}  // namespace quorvale
