// The first page of a restore: which backup file, with which password, into which folder.
#pragma once

#include <string>

#include "archive/archive.h"
#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace quorvale {

class frmROne : public WizardPage {
 public:
  static constexpr char kName[] = "frmROne";
  explicit frmROne(Application& app);

  ui::PictureBox PicHeader{*this, "PicHeader", "RESTORE_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Select Backup Job"};
  ui::Label lblDescription{*this, "lblDescription",
                           "Select a backup file and restore the items saved in it"};
  ui::Label lblJobs{*this, "lblJobs", "Backup &Job Names"};
  ui::ListBox File1{*this, "File1"};  // the backup files of the backup folder
  ui::TextBox txtpath{*this, "txtpath"};
  ui::CommandButton Command1{*this, "Command1", "Bro&wse..."};
  ui::Label Label32{*this, "Label32", "Refresh List"};
  ui::Label LblDelete{*this, "LblDelete", "Delete Selected Backup"};
  ui::Label lblPassword{*this, "lblPassword", "Enter &password to restore files"};
  ui::TextBox txtDefaultPassword{*this, "txtDefaultPassword"};
  ui::Label LblFirstName{*this, "LblFirstName",
                         ""};  // shown behind the refusal of a renamed backup
  ui::Label LblWhole{*this, "LblWhole",
                     "Go on with what is whole"};  // shown behind the refusal of a damaged backup
  ui::Label LblUnread{*this, "LblUnread", "The backup folder cannot be read"};
  ui::Label lblRestore{*this, "lblRestore", "Select a &folder to restore files"};
  ui::TextBox txtRestore{*this, "txtRestore"};
  ui::CommandButton cmdselectfolder{*this, "cmdselectfolder", "&Select Folder"};
  ui::CheckBox Check1{*this, "Check1", "&Do not want Restore folder"};
  ui::CommandButton cmdNext{*this, "cmdNext", "&Next >"};
  ui::CommandButton cmdCancel{*this, "cmdCancel", "&Cancel"};

  void Load() override;
  // Takes back that none was wanted.
  void FolderWanted() override { Check1.value = 0; }

  // Chooses a backup file anywhere.
  void UseBackup(const std::string& path);
  // Lists the backup folder's files and selects the first one.
  void FillBackupList();
  // True if a member of the chosen archive is encrypted; leaves the password box disabled.
  bool CheckArchiveEncrypted();
  // Copies the page's values to the session.
  void SaveRestoreSession();

  void File1_Click();
  void Command1_Click();
  void Label32_Click();
  void LblDelete_Click();
  void Check1_Click();
  void txtRestore_Change();
  void cmdselectfolder_Click();
  // Goes on with a renamed backup under the name that it was made under.
  void LblFirstName_Click();
  // Goes on with a damaged backup.
  void LblWhole_Click();
  void cmdNext_Click();
  void cmdCancel_Click();

  // What ModGlobal's procedure of this name does.
  void RegisterOpenedFile();

 private:
  void PlaceControls();
  void ConnectHandlers();
  void UseArchivePath(const std::string& path);
  // The backup that the program was opened with, by a double click on it, is the chosen one.
  void UseOpenedFile();
  void EnablePassword();
  void HideOffers();
  // True if the chosen file is there; else the user is told.
  bool BackupIsThere();
  void GoOn();
  void OpenItems();
  zip::Result TestArchive();
  void RefusePassword();
  void EnableButtons();
};

}  // namespace quorvale
