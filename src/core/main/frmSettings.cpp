#include "core/main/frmSettings.h"

#include "base/scoped_flag.h"
#include "base/text.h"
#include "core/main/stored_boxes.h"
#include "core/pages/folder_choice.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

using page_layout::ContentRow;

constexpr char kHelpTopic[] = "qvlSettings.htm";

}  // namespace

frmSettings::frmSettings(Application& app)
    : WizardPage(app, kName, PageRole::kSettings),
      PicHeader(*this, "PicHeader", "SETTINGS_HEADER"),
      lblHeader(*this, "lblHeader", "Quorvale Settings and Configurations"),
      lblSubheading(*this, "lblSubheading", "Customize Quorvale Settings"),
      lblBackupFolder(*this, "lblBackupFolder", "Backup Folder"),
      txtBackup(*this, "txtBackup"),
      cmdselectfolder(*this, "cmdselectfolder", "Select Folder"),
      Command2(*this, "Command2", "Open Folder"),
      lblRestoreFolder(*this, "lblRestoreFolder", "Restore Folder"),
      txtRestore(*this, "txtRestore"),
      Command1(*this, "Command1", "Select Folder"),
      Command3(*this, "Command3", "Open Folder"),
      chkSound(*this, "chkSound", "Sound Off"),
      chkLog(*this, "chkLog", "Save Log"),
      chkSetting(*this, "chkSetting", "Save Settings on close"),
      chkGUpdate(*this, "chkGUpdate", "Check for updates on Startup"),
      chkShortcut(*this, "chkShortcut", "Show a Shortcut on Desktop"),
      ChkStartMenu(*this, "ChkStartMenu", "Show in Start Menu"),
      chkNoExtension(*this, kFilesWithoutExtension, "Also save files without an extension"),
      lblLanguage(*this, "lblLanguage", "Set Program Language"),
      CboLanguage(*this, "CboLanguage"),
      Command4(*this, "Command4", "&Save Settings"),
      cmdBack(*this, "cmdBack"),
      cmdOK(*this, "cmdOK", "OK"),
      cmdCancel(*this, "cmdCancel") {
  PlaceControls();
  ConnectHandlers();
}

void frmSettings::PlaceControls() {
  using namespace page_layout;
  constexpr int kBoxWidth = 344;
  constexpr int kFolderButton = 100;
  constexpr int kFirstButton = kContentLeft + kBoxWidth + 10;
  constexpr int kSecondButton = kFirstButton + kFolderButton + 6;
  constexpr int kSecondColumn = kContentLeft + 290;

  PlaceHeader(&PicHeader, &lblHeader);
  PlaceSubheading(&lblSubheading);
  lblBackupFolder.bounds = ContentRow(1);
  txtBackup.bounds = ContentRow(2, kContentLeft, kBoxWidth);
  cmdselectfolder.bounds = ButtonInRow(2, kFirstButton, kFolderButton);
  Command2.bounds = ButtonInRow(2, kSecondButton, kFolderButton);
  lblRestoreFolder.bounds = ContentRow(3);
  txtRestore.bounds = ContentRow(4, kContentLeft, kBoxWidth);
  Command1.bounds = ButtonInRow(4, kFirstButton, kFolderButton);
  Command3.bounds = ButtonInRow(4, kSecondButton, kFolderButton);
  chkSound.bounds = ContentRow(6, kContentLeft, 270);
  chkLog.bounds = ContentRow(7, kContentLeft, 270);
  chkSetting.bounds = ContentRow(8, kContentLeft, 270);
  chkGUpdate.bounds = ContentRow(6, kSecondColumn, 270);
  chkShortcut.bounds = ContentRow(7, kSecondColumn, 270);
  ChkStartMenu.bounds = ContentRow(8, kSecondColumn, 270);
  chkNoExtension.bounds = ContentRow(9, kContentLeft, 270);
  lblLanguage.bounds = ContentRow(10, kContentLeft, 150);
  CboLanguage.bounds = ContentRow(10, kContentLeft + 156, 114);
  Command4.bounds = ContentRow(10, kSecondColumn, 120, 25);
  PlaceButtons(&cmdBack, &cmdOK, &cmdCancel);

  SetTabOrder({&lblBackupFolder, &txtBackup, &cmdselectfolder, &Command2, &lblRestoreFolder,
               &txtRestore, &Command1, &Command3, &chkSound, &chkLog, &chkSetting, &chkGUpdate,
               &chkShortcut, &ChkStartMenu, &chkNoExtension, &lblLanguage, &CboLanguage,
               &Command4});
}

void frmSettings::ConnectHandlers() {
  txtBackup.text.on_change = [this] { txtBackup_Change(); };
  txtRestore.text.on_change = [this] { txtRestore_Change(); };
  watch_ = app_.settings().OnChange([this](auto) { ShowSettings(); });
  cmdselectfolder.on_click = [this] { cmdselectfolder_Click(); };
  Command1.on_click = [this] { Command1_Click(); };
  Command2.on_click = [this] { Command2_Click(); };
  Command3.on_click = [this] { Command3_Click(); };
  Command4.on_click = [this] { Command4_Click(); };
  chkSound.on_click = [this] { chkSound_Click(); };
  chkLog.on_click = [this] { chkLog_Click(); };
  chkGUpdate.on_click = [this] { chkGUpdate_Click(); };
  chkShortcut.on_click = [this] { chkShortcut_Click(); };
  ChkStartMenu.on_click = [this] { ChkStartMenu_Click(); };
  chkNoExtension.on_click = [this] { chkNoExtension_Click(); };
  for (ui::CheckBox* box : {&chkLog, &chkSetting, &chkSound}) {
    box->on_mouse_down = [this](int, int) { SaveFolders(); };
  }
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdOK.on_click = [this] { cmdOK_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, kHelpTopic);
}

// --- Filling ------------------------------------------------------------------------------------

void frmSettings::Load() {
  // First, since the main window's load sets the folder of the defaults.
  page_layout::HostPage(app_, *this);
  const ScopedFlag filling(filling_);
  app_.settings().Load();
  ChkStartMenu.value = app_.settings().Switch("ChkStartMenu");
  Fill();
  if (CboLanguage.Count() == 0) CboLanguage.AddItem("English");
  CboLanguage.list_index = 0;
}

void frmSettings::Activate() {
  const ScopedFlag filling(filling_);
  app_.settings().Read();
  Fill();
}

void frmSettings::Unload() {
  watch_.reset();
  // The next one who asks for a folder takes what the registry holds then.
  app_.settings().Forget();
}

void frmSettings::Fill() {
  ProgramSettings& settings = app_.settings();
  txtBackup.text = settings.backup_folder();
  txtRestore.text = settings.restore_folder();
  chkLog.value = settings.log();
  chkSound.value = settings.Switch("chkSound");
  chkGUpdate.value = settings.Switch("chkGUpdate");
  chkNoExtension.value = settings.files_without_extension() ? 1 : 0;
  ShortcutOnDesktop();
}

void frmSettings::ShowSettings() {
  ProgramSettings& settings = app_.settings();
  txtBackup.text = settings.backup_folder();
  txtRestore.text = settings.restore_folder();
  chkLog.value = settings.log();
}

void frmSettings::ShortcutOnDesktop() {
  const ScopedFlag filling(filling_);
  const std::string desktop = app_.platform().shell.SpecialFolder(special_folder::kDesktop);
  const std::string links = desktop.empty() ? "" : app_.files().ListFiles(desktop, "*.lnk");
  int found = 0;
  for (const std::string& name : Split(links, "|")) {
    if (name == "Quorvale.lnk") found = 1;
  }
  chkShortcut.value = found;
}

// --- Check boxes --------------------------------------------------------------------------------

void frmSettings::chkSound_Click() {
  if (!filling_) SaveBox(app_, kSettingsKey, chkSound);
}

void frmSettings::chkGUpdate_Click() {
  if (!filling_) SaveBox(app_, kSettingsKey, chkGUpdate);
}

void frmSettings::chkNoExtension_Click() {
  if (!filling_) SaveBox(app_, kSettingsKey, chkNoExtension);
}

void frmSettings::chkLog_Click() {
  if (!filling_) app_.settings().UseLog(chkLog.value);
}

void frmSettings::chkShortcut_Click() {
  if (!filling_) ApplyShortcutBox(app_, kSettingsKey, chkShortcut, special_folder::kDesktop);
}

void frmSettings::ChkStartMenu_Click() {
  if (!filling_) ApplyShortcutBox(app_, kSettingsKey, ChkStartMenu, special_folder::kPrograms);
}

// --- Folders ------------------------------------------------------------------------------------

void frmSettings::txtBackup_Change() {
  if (filling_) return;
  Command4.caption = "Save Settings";
  app_.settings().UseBackupFolder(txtBackup.text);
}

void frmSettings::txtRestore_Change() {
  if (filling_) return;
  Command4.caption = "Save Settings";
  app_.settings().UseRestoreFolder(txtRestore.text);
}

bool frmSettings::ChooseFolder(ui::TextBox& box) {
  const std::string folder = app_.ui().BrowseForFolder("&Select a directory for Backup:", box.text);
  if (folder.empty() || !FolderMayBeUsed(app_, folder)) return false;
  box.text = folder;
  return true;
}

// A chosen folder is kept also where it is the default one, which stands in the box already.
void frmSettings::cmdselectfolder_Click() {
  if (ChooseFolder(txtBackup)) app_.settings().UseBackupFolder(txtBackup.text);
}

void frmSettings::Command1_Click() {
  if (ChooseFolder(txtRestore)) app_.settings().UseRestoreFolder(txtRestore.text);
}

void frmSettings::Command2_Click() { OpenFolder(app_, txtBackup.text); }

void frmSettings::Command3_Click() { OpenFolder(app_, txtRestore.text); }

void frmSettings::Command4_Click() { SaveFolders(); }

void frmSettings::SaveFolders() { app_.settings().Save(); }

// --- Leaving ------------------------------------------------------------------------------------

void frmSettings::LeavePage() {
  Cancel();
  app_.page_host().Show();
}

void frmSettings::cmdBack_Click() {
  LeavePage();
  Hide();
}

void frmSettings::cmdOK_Click() {
  LeavePage();
  Hide();
}

void frmSettings::cmdCancel_Click() {
  LeavePage();
  app_.Unload(kName);
}

void frmSettings::SwitchToStartUp() { GoOnTo(PageRole::kStartUp); }

}  // namespace quorvale
