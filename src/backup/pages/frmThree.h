// "Compression and Privacy Options": the backup file's name, level, password and log option.
#pragma once

#include <string>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmThree : public WizardPage {
 public:
  static constexpr char kName[] = "frmThree";
  explicit frmThree(Application& app);
  void Load() override;
  void Activate() override;
  void Unload() override;
  // The job's name becomes the file's.
  bool TakeOver() override;
  // The log box follows the session, and Next is to be had again.
  void Entered() override;
  // The file name is a fresh default one.
  void ArchiveOver() override;
  void RunOver() override;

  // "BKP_" and the present moment.
  static std::string DefaultFileName(Application& app);

  // Commits all options; always works.
  void savedetails();

  void cmdNext_Click();
  void cmdBack_Click();
  void cmdCancel_Click();
  void chklogdetails_Click();
  void chkcompression_Click();
  void chkProtectArchive_Click();
  void chkSplit_Click();
  void cmbCompLevel_Change();

  ui::PictureBox PicHeader{*this, "PicHeader", "BACKUP_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Compression and Privacy Options"};
  ui::Label lblcurrent{*this, "lblcurrent", "Backup &file name:"};
  ui::TextBox txtcurrent{*this, "txtcurrent"};
  ui::CheckBox chklogdetails{*this, "chklogdetails", "&Log details"};
  ui::CheckBox chkcompression{*this, "chkcompression", "&Use compression", 1};
  ui::Label lblCompLevel{*this, "lblCompLevel", "Compression le&vel:"};
  ui::ComboBox cmbCompLevel{*this, "cmbCompLevel"};
  ui::CheckBox chkProtectArchive{*this, "chkProtectArchive", "&Protect archive with password"};
  ui::Label Label2{*this, "Label2", "Pass&word:"};
  ui::TextBox txtpwd{*this, "txtpwd"};
  ui::Label Label5{*this, "Label5", "C&onfirm password:"};
  ui::TextBox txtpwd2{*this, "txtpwd2"};
  ui::CheckBox chkSplit{*this, "chkSplit",
                        "Create a compressed file which can be &split into smaller files"};
  ui::Label Label7{*this, "Label7", "Si&ze of a part:"};
  ui::TextBox txtsizeSplit{*this, "txtsizeSplit"};
  ui::Label Label8{*this, "Label8", "KB"};
  ui::CommandButton cmdBack{*this, "cmdBack"};
  ui::CommandButton cmdNext{*this, "cmdNext"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};
  ui::Timer Timer1{*this, "Timer1", 1000};  // off for the whole life of the page

 private:
  void PlaceControls();
  void ConnectHandlers();
  void ReadLogOption();
  bool FileNameIsUsable();
  bool PasswordIsUsable();

  ProgramSettings::Watch watch_;
};

}  // namespace quorvale
