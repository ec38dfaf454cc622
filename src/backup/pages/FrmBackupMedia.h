// "Backup Media": where the finished backup goes. It always stays on the hard disk first.
#pragma once

#include <string>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class FrmBackupMedia : public WizardPage {
 public:
  static constexpr char kName[] = "FrmBackupMedia";
  explicit FrmBackupMedia(Application& app);
  void Load() override;
  // Shows the folder that was committed.
  bool TakeOver() override;

  // Lists the computer's writers; gives the disc choice up if there is none.
  void FillDriveList();
  // Connects to the FTP server and changes to the remote folder. True if both worked.
  bool Connect(const std::string& host, const std::string& port, const std::string& user,
               const std::string& password);

  void cmdNext_Click();
  void cmdBack_Click();
  void cmdCancel_Click();
  void ChkHardDisk_Click();
  void ChkCDDVD_Click();
  void ChkFTP_Click();
  void ChkAnonymous_Click();
  void cboDrives_Click();

  ui::PictureBox PicHeader{*this, "PicHeader", "BACKUP_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Backup Media"};
  ui::CheckBox ChkHardDisk{*this, "ChkHardDisk", "Backup to &Hard disk", 1};
  ui::Label lblpath{*this, "lblpath", "Backup folder:"};
  ui::TextBox txtpath{*this, "txtpath"};
  ui::CheckBox ChkCDDVD{*this, "ChkCDDVD", "Backup to CD/&DVD"};
  ui::ComboBox cboDrives{*this, "cboDrives"};
  ui::CheckBox ChkFTP{*this, "ChkFTP", "Upload to &FTP"};
  ui::Label lblhost{*this, "lblhost", "Host Name"};
  ui::TextBox TxtHostname{*this, "TxtHostname"};
  ui::Label lblport{*this, "lblport", "Port"};
  ui::TextBox TxtPort{*this, "TxtPort", "21"};
  ui::CheckBox ChkAnonymous{*this, "ChkAnonymous", "Anonymous"};
  ui::Label lblusername{*this, "lblusername", "User Name"};
  ui::TextBox TxtUserName{*this, "TxtUserName"};
  ui::Label lblpassword{*this, "lblpassword", "Password"};
  ui::TextBox TxtPassword{*this, "TxtPassword"};
  ui::Label lblrdir{*this, "lblrdir", "Remote Directory"};
  ui::TextBox TxtRemoteDir{*this, "TxtRemoteDir"};
  ui::CommandButton cmdBack{*this, "cmdBack"};
  ui::CommandButton cmdNext{*this, "cmdNext"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};

 private:
  void PlaceControls();
  void ConnectHandlers();
  void EnableFtpFields();
  void EnableButtons(bool enabled);
  // Ticks one of the three boxes and clears the two others.
  void Choose(ui::CheckBox& box);
  // Step by step what cmdNext checks; false, after a message, where the page has to stay.
  bool CheckMedia();
  bool FtpFieldsAreUsable();
  bool CheckFtp();
  // The server that the fields name.
  FtpServer Server() const;
  bool TestConnection(const FtpServer& server);
  // False once the page or the program went away while messages were handled.
  bool IsLoaded() const;
  bool CheckDisc();
  bool Refuse(ui::Control& box, const std::string& text);

  bool choosing_ = false;  // the boxes are being set by the page itself
};

}  // namespace quorvale
