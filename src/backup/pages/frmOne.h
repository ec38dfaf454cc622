// "Create a new backup job": the job's name, and whether it is a customised or a complete backup.
#pragma once

#include <string>

#include "backup/format/job_kinds.h"
#include "backup/format/settings_file.h"
#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmOne : public WizardPage {
 public:
  static constexpr char kName[] = "frmOne";
  explicit frmOne(Application& app);
  void Load() override;

  // Commits the job's name; the kind becomes the main one.
  void savedetails();
  // The job as a run with raised rights needs it.
  HandOver JobHandOver() const;
  // Writes the hand-over file for a run with raised rights.
  void SaveJobState(const std::string& path);

  void cmdNext_Click();
  void cmdCancel_Click();
  void OptCustBackup_Click();
  void OptQuick_Click();
  // The character to use, 0 for none; Enter goes on to the next page.
  int txtBackupname_KeyPress(int code);

  ui::PictureBox PicHeader{*this, "PicHeader", "BACKUP_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Create a new backup job"};
  ui::Label lblBackupname{*this, "lblBackupname", "Name of the Backup "};
  ui::TextBox txtBackupname{*this, "txtBackupname", "Backup file"};
  ui::OptionButton OptCustBackup{*this, "OptCustBackup", "Backup (Customize your Backup)", true};
  ui::OptionButton OptQuick{*this, "OptQuick", "Quick Backup (Complete)"};
  ui::TextBox TxtBName{*this, "TxtBName"};  // the moment of loading, never shown
  ui::ListBox File1{*this, "File1"};        // the log folder's files, never shown
  ui::CommandButton cmdNext{*this, "cmdNext"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};

 private:
  void PlaceControls();
  void ConnectHandlers();
  void RefuseName();
  bool NameIsBlank();
  std::string BackupFileOf(const std::string& name) const;
  // False if the user wants to keep the backup that bears the name already.
  bool MayOverwrite();
  void GoToItems();
  void PrepareQuickBackup();
};

}  // namespace quorvale
