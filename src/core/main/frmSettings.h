// The page "Settings and Configurations": a view of the program's settings.
#pragma once

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmSettings : public WizardPage {
 public:
  static constexpr char kName[] = "frmSettings";
  explicit frmSettings(Application& app);

  // Reads all settings. The form need not be shown for that.
  void Load() override;
  // Reads again what other pages may have changed.
  void Activate() override;
  // The next one who asks for a setting reads all anew.
  void Unload() override;

  ui::PictureBox PicHeader;
  ui::Label lblHeader, lblSubheading;
  ui::Label lblBackupFolder;
  ui::TextBox txtBackup;
  ui::CommandButton cmdselectfolder, Command2;
  ui::Label lblRestoreFolder;
  ui::TextBox txtRestore;
  ui::CommandButton Command1, Command3;
  ui::CheckBox chkSound, chkLog, chkSetting, chkGUpdate, chkShortcut, ChkStartMenu;
  ui::CheckBox chkNoExtension;
  ui::Label lblLanguage;
  ui::ComboBox CboLanguage;
  ui::CommandButton Command4;
  ui::CommandButton cmdBack, cmdOK, cmdCancel;

  void cmdselectfolder_Click();  // choose the backup folder
  void Command1_Click();         // choose the restore folder
  void Command2_Click();         // open the backup folder
  void Command3_Click();         // open the restore folder
  void Command4_Click();         // save now
  void txtBackup_Change();
  void txtRestore_Change();
  void chkSound_Click();
  void chkLog_Click();
  void chkGUpdate_Click();
  void chkShortcut_Click();
  void ChkStartMenu_Click();
  void chkNoExtension_Click();
  void cmdBack_Click();
  void cmdOK_Click();
  void cmdCancel_Click();
  void SaveFolders();
  // Sets chkShortcut by whether the link lies on the desktop.
  void ShortcutOnDesktop();
  // Goes on to the page frmStartUp.
  void SwitchToStartUp();

 private:
  void PlaceControls();
  void ConnectHandlers();
  void Fill();
  // What other pages have changed.
  void ShowSettings();
  // True if the user chose a folder that may be used; the box holds it then.
  bool ChooseFolder(ui::TextBox& box);
  void LeavePage();

  // While the page fills its own controls, their handlers do nothing.
  bool filling_ = false;
  ProgramSettings::Watch watch_;
};

}  // namespace quorvale
