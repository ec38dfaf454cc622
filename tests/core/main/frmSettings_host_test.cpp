// The two settings pages.
#include "core/main/frmSettings.h"

#include <gtest/gtest.h>

#include "backup/pages/frmThree.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmStartUp.h"
#include "core/program/ModGlobal.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kKey[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";
constexpr char kOwnKey[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\StartUp\\Settings";
constexpr int kProgramsFolder = 2;

using Value = std::optional<std::string>;

class SettingsTest : public testing::Test {
 protected:
  explicit SettingsTest(const std::string& like = "xp") : machine_(like) {
    machine_.MakeFolder(kPrograms);
    machine_.computer().SetSpecialFolder(kProgramsFolder, kPrograms);
  }

  frmSettings& Open() {
    machine_.app().Get<FrmWelcome>();
    machine_.Do([&] { machine_.app().Get<FrmWelcome>().QuickLink(1); });
    return machine_.app().Get<frmSettings>();
  }
  std::string Data() { return machine_.AppData() + "\\Tarnwick\\Quorvale"; }
  std::string DesktopLink() { return machine_.Desktop() + "\\Quorvale.lnk"; }
  // Chooses a folder in the dialog.
  void Choose(ui::CommandButton& button, const std::string& folder) {
    machine_.ui().ExpectFolder(folder);
    machine_.Click(button);
  }

  static constexpr char kPrograms[] = "C:\\Programs Menu";
  TestMachine machine_;
};

class VistaSettingsTest : public SettingsTest {
 protected:
  VistaSettingsTest() : SettingsTest("vista") {}
};

// --- Reading ------------------------------------------------------------------------------------

TEST_F(SettingsTest, AFreshUserHasClearBoxesAndTheDefaultFolders) {
  frmSettings& page = Open();
  for (const ui::CheckBox* box : {&page.chkSound, &page.chkLog, &page.chkSetting, &page.chkGUpdate,
                                  &page.chkShortcut, &page.ChkStartMenu, &page.chkNoExtension}) {
    EXPECT_EQ(box->value.get(), 0) << box->name();
  }
  EXPECT_EQ(page.txtBackup.text.get(), Data() + "\\Backup");
  EXPECT_EQ(page.txtRestore.text.get(), Data() + "\\Restore");
  EXPECT_TRUE(machine_.Exists(Data() + "\\Backup"));
  EXPECT_TRUE(machine_.Exists(Data() + "\\Restore"));
  EXPECT_TRUE(machine_.KeyExists(kKey));
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackup"), std::nullopt);
  EXPECT_EQ(machine_.session().gLogDetails, "False");
  EXPECT_EQ(page.CboLanguage.Count(), 1);
  EXPECT_EQ(page.CboLanguage.SelectedText(), "English");
  EXPECT_EQ(page.Command4.caption.get(), "&Save Settings");
}

TEST_F(SettingsTest, TheFormServesTheFoldersWithoutBeingShown) {
  machine_.SetString(kKey, "txtBackup", "D:\\Jobs");
  machine_.SetString(kKey, "txtRestore", "D:\\Back");
  frmSettings& page = machine_.app().Get<frmSettings>();
  EXPECT_EQ(page.txtBackup.text.get(), "D:\\Jobs");
  EXPECT_EQ(page.txtRestore.text.get(), "D:\\Back");
  EXPECT_FALSE(page.Visible());
}

TEST_F(SettingsTest, StoredBoxesAreShownAndTextCountsAsClear) {
  machine_.SetString(kKey, "CHKLOG", "1");
  machine_.SetString(kKey, "chkSound", "x");
  machine_.SetString(kKey, "chkGUpdate", "2");
  machine_.SetString(kKey, "ChkStartMenu", "1");
  frmSettings& page = Open();
  EXPECT_EQ(page.chkLog.value.get(), 1);
  EXPECT_EQ(page.chkSound.value.get(), 0);
  EXPECT_EQ(page.chkGUpdate.value.get(), 0);
  EXPECT_EQ(page.ChkStartMenu.value.get(), 1);
  EXPECT_EQ(machine_.session().gLogDetails, "True");
  // Showing them has stored nothing and made no link.
  EXPECT_EQ(machine_.GetValue(kKey, "chkSound"), Value("x"));
  EXPECT_TRUE(machine_.AllBelow(kPrograms).empty());
}

TEST_F(SettingsTest, ALinkThatTheUserDeletedClearsItsBox) {
  machine_.SetString(kKey, "chkShortcut", "1");
  frmSettings& page = Open();
  EXPECT_EQ(page.chkShortcut.value.get(), 0);
  EXPECT_FALSE(machine_.Exists(DesktopLink()));
  machine_.WriteFile(DesktopLink(), "a link");
  page.Activate();
  EXPECT_EQ(page.chkShortcut.value.get(), 1);
  machine_.RemoveFile(DesktopLink());
  machine_.WriteFile(machine_.Desktop() + "\\quorvale.LNK", "spelled otherwise");
  page.Activate();
  EXPECT_EQ(page.chkShortcut.value.get(), 0);
}

TEST_F(SettingsTest, EachActivationReadsTheStoreAgain) {
  frmSettings& page = Open();
  machine_.SetString(kKey, "chklog", "1");
  machine_.SetString(kKey, "chkSound", "1");
  machine_.SetString(kKey, "chkGUpdate", "1");
  machine_.SetString(kKey, "txtBackup", "D:\\Jobs");
  page.Activate();
  EXPECT_EQ(page.chkLog.value.get(), 1);
  EXPECT_EQ(page.chkSound.value.get(), 1);
  EXPECT_EQ(page.chkGUpdate.value.get(), 1);
  EXPECT_EQ(page.txtBackup.text.get(), "D:\\Jobs");
}

TEST_F(SettingsTest, EveryControlHasItsWords) {
  frmSettings& page = Open();
  EXPECT_EQ(page.lblHeader.caption.get(), "Quorvale Settings and Configurations");
  EXPECT_EQ(page.lblSubheading.caption.get(), "Customize Quorvale Settings");
  EXPECT_EQ(page.PicHeader.picture.get(), "SETTINGS_HEADER");
  EXPECT_EQ(page.lblBackupFolder.caption.get(), "Backup Folder");
  EXPECT_EQ(page.cmdselectfolder.caption.get(), "Select Folder");
  EXPECT_EQ(page.Command2.caption.get(), "Open Folder");
  EXPECT_EQ(page.lblRestoreFolder.caption.get(), "Restore Folder");
  EXPECT_EQ(page.Command1.caption.get(), "Select Folder");
  EXPECT_EQ(page.Command3.caption.get(), "Open Folder");
  EXPECT_EQ(page.chkSound.caption.get(), "Sound Off");
  EXPECT_EQ(page.chkLog.caption.get(), "Save Log");
  EXPECT_EQ(page.chkSetting.caption.get(), "Save Settings on close");
  EXPECT_EQ(page.chkGUpdate.caption.get(), "Check for updates on Startup");
  EXPECT_EQ(page.chkShortcut.caption.get(), "Show a Shortcut on Desktop");
  EXPECT_EQ(page.ChkStartMenu.caption.get(), "Show in Start Menu");
  EXPECT_EQ(page.chkNoExtension.caption.get(), "Also save files without an extension");
  EXPECT_EQ(page.lblLanguage.caption.get(), "Set Program Language");
  EXPECT_EQ(page.Command4.caption.get(), "&Save Settings");
}

TEST_F(SettingsTest, TheBoxOfFilesWithoutAnExtensionIsStoredAndCountsAtOnce) {
  frmSettings& page = Open();
  ProgramSettings& settings = machine_.app().settings();
  EXPECT_FALSE(settings.files_without_extension());
  EXPECT_EQ(machine_.GetValue(kKey, "chkNoExtension"), std::nullopt);
  machine_.Click(page.chkNoExtension);
  EXPECT_TRUE(settings.files_without_extension());
  EXPECT_EQ(machine_.GetValue(kKey, "chkNoExtension"), Value("1"));
  machine_.Restart();
  EXPECT_EQ(Open().chkNoExtension.value.get(), 1);
  EXPECT_TRUE(machine_.app().settings().files_without_extension());
  machine_.Click(machine_.app().Get<frmSettings>().chkNoExtension);
  EXPECT_FALSE(machine_.app().settings().files_without_extension());
  EXPECT_EQ(machine_.GetValue(kKey, "chkNoExtension"), Value("0"));
}

TEST_F(SettingsTest, ABrowserOpensAtTheStartOnlyForTheNumberOne) {
  machine_.SetString("HKEY_CLASSES_ROOT\\http\\shell\\open\\command", "", "\"C:\\web.exe\" %1");
  for (const char* value : {"", "0", "2", "x", "1"}) {
    machine_.SetString(kKey, "chkGUpdate", value);
    machine_.Restart();
    machine_.app().Get<FrmWelcome>();
    const bool opens = std::string(value) == "1";
    EXPECT_EQ(machine_.computer().Started().size(), opens ? 1u : 0u) << value;
  }
}

// --- Boxes --------------------------------------------------------------------------------------

TEST_F(SettingsTest, ABoxIsStoredByItsClick) {
  frmSettings& page = Open();
  machine_.Click(page.chkSound);
  machine_.Click(page.chkGUpdate);
  EXPECT_EQ(machine_.GetValue(kKey, "chkSound"), Value("1"));
  EXPECT_EQ(machine_.GetValue(kKey, "chkGUpdate"), Value("1"));
  machine_.Click(page.chkSound);
  EXPECT_EQ(machine_.GetValue(kKey, "chkSound"), Value("0"));
}

TEST_F(SettingsTest, TheLogBoxReachesTheSessionAndTheOptionsPage) {
  frmSettings& page = Open();
  frmThree& options = machine_.app().Get<frmThree>();
  EXPECT_EQ(options.chklogdetails.value.get(), 0);
  machine_.Click(page.chkLog);
  EXPECT_EQ(machine_.GetValue(kKey, "chklog"), Value("1"));
  EXPECT_EQ(machine_.session().gLogDetails, "True");
  EXPECT_EQ(options.chklogdetails.value.get(), 1);
  machine_.Click(page.chkLog);
  EXPECT_EQ(machine_.session().gLogDetails, "False");
  EXPECT_EQ(options.chklogdetails.value.get(), 0);
}

TEST_F(SettingsTest, TheDesktopBoxMakesAndRemovesTheLink) {
  frmSettings& page = Open();
  machine_.Click(page.chkShortcut);
  EXPECT_TRUE(machine_.Exists(DesktopLink()));
  EXPECT_EQ(machine_.GetValue(kKey, "chkShortcut"), Value("1"));
  machine_.Click(page.chkShortcut);
  EXPECT_FALSE(machine_.Exists(DesktopLink()));
  EXPECT_EQ(machine_.GetValue(kKey, "chkShortcut"), Value("0"));
}

TEST_F(SettingsTest, UntickingWithoutALinkOnlyStoresTheValue) {
  machine_.WriteFile(DesktopLink(), "a link");
  frmSettings& page = Open();
  ASSERT_EQ(page.chkShortcut.value.get(), 1);
  machine_.RemoveFile(DesktopLink());
  machine_.Click(page.chkShortcut);
  EXPECT_EQ(machine_.GetValue(kKey, "chkShortcut"), Value("0"));
  EXPECT_TRUE(machine_.Boxes().empty());
}

TEST_F(SettingsTest, TheStartMenuBoxMakesAndRemovesTheLink) {
  frmSettings& page = Open();
  const std::string link = std::string(kPrograms) + "\\Quorvale.lnk";
  machine_.Click(page.ChkStartMenu);
  EXPECT_TRUE(machine_.Exists(link));
  EXPECT_EQ(machine_.GetValue(kKey, "ChkStartMenu"), Value("1"));
  machine_.Click(page.ChkStartMenu);
  EXPECT_FALSE(machine_.Exists(link));
}

TEST_F(SettingsTest, TheDesktopLinkTellsWhatItIsAndBothPointToTheProgram) {
  frmSettings& page = Open();
  machine_.Click(page.chkShortcut);
  machine_.Click(page.ChkStartMenu);
  const std::string folder = machine_.platform().system.ProgramFolder();
  const std::vector<ShellLink>& links = machine_.host().shell().links_made();
  ASSERT_EQ(links.size(), 2u);
  EXPECT_EQ(links[0].link_path, DesktopLink());
  EXPECT_EQ(links[0].target, folder + "\\Quorvale.exe");
  EXPECT_EQ(links[0].working_folder, folder);
  EXPECT_EQ(links[0].description, "Quorvale");
  EXPECT_EQ(links[0].icon_index, 0);
  EXPECT_EQ(links[1].link_path, std::string(kPrograms) + "\\Quorvale.lnk");
  EXPECT_EQ(links[1].target, folder + "\\Quorvale.exe");
  EXPECT_EQ(links[1].arguments, "");
}

TEST_F(SettingsTest, ALinkThatCannotBeMadeIsNotReported) {
  frmSettings& page = Open();
  machine_.RemoveTree(machine_.Desktop());
  machine_.RemoveTree(kPrograms);
  machine_.Click(page.chkShortcut);
  machine_.Click(page.ChkStartMenu);
  EXPECT_TRUE(machine_.Boxes().empty());
  EXPECT_EQ(machine_.GetValue(kKey, "chkShortcut"), Value("1"));
  EXPECT_EQ(machine_.GetValue(kKey, "ChkStartMenu"), Value("1"));
  machine_.computer().SetSpecialFolder(kProgramsFolder, "");
  machine_.Click(page.ChkStartMenu);
  machine_.Click(page.ChkStartMenu);
  EXPECT_TRUE(machine_.Boxes().empty());
}

TEST_F(SettingsTest, BackStoresNothing) {
  frmSettings& page = Open();
  machine_.Click(page.cmdBack);
  EXPECT_FALSE(page.Visible());
  EXPECT_EQ(machine_.GetValue(kKey, "txtRestore"), std::nullopt);
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackup"), std::nullopt);
}

// --- Folders ------------------------------------------------------------------------------------

TEST_F(SettingsTest, TypingAFolderStoresItAtOnce) {
  frmSettings& page = Open();
  page.txtBackup.text = "D:\\Jobs";
  EXPECT_EQ(page.Command4.caption.get(), "Save Settings");
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackup"), Value("D:\\Jobs"));
  page.txtRestore.text = "D:\\Back";
  EXPECT_EQ(machine_.GetValue(kKey, "txtRestore"), Value("D:\\Back"));
}

TEST_F(SettingsTest, AChosenFolderIsTakenAndStored) {
  frmSettings& page = Open();
  machine_.MakeFolder("C:\\Jobs");
  machine_.MakeFolder("C:\\Back");
  Choose(page.cmdselectfolder, "C:\\Jobs");
  Choose(page.Command1, "C:\\Back");
  EXPECT_EQ(page.txtBackup.text.get(), "C:\\Jobs");
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackup"), Value("C:\\Jobs"));
  EXPECT_EQ(page.txtRestore.text.get(), "C:\\Back");
  EXPECT_EQ(machine_.GetValue(kKey, "txtRestore"), Value("C:\\Back"));
  EXPECT_TRUE(machine_.AllBelow("C:\\Jobs").empty());
  Choose(page.cmdselectfolder, "");
  EXPECT_EQ(page.txtBackup.text.get(), "C:\\Jobs");
}

TEST_F(SettingsTest, FoldersThatWontDoAreRefusedAndTheTextStays) {
  machine_.computer().SetDrive("E", DriveKind::kCdRom);
  machine_.computer().SetDrive("F", DriveKind::kRemovable);
  frmSettings& page = Open();
  const std::string before = page.txtBackup.text;
  struct Case {
    const char *folder, *message;
  };
  const Case cases[] = {
      {"C:\\RECYCLED\\x", "You cannot select Recycle Bin"},
      {"C:\\$recycle.bin", "You cannot select Recycle Bin"},
      {"C:\\My Recycle Bin", "You cannot select Recycle Bin"},
      {"E:\\", "Please select a fixed drive"},
      {"F:\\Jobs", "Please select a fixed drive"},
      {"Q:\\Jobs", "Please select a fixed drive"},
      {"C:\\no such folder",
       "You do not have sufficient permissions on the selected folder or "
       "drive"},
  };
  for (const Case& c : cases) {
    for (ui::CommandButton* button : {&page.cmdselectfolder, &page.Command1}) {
      machine_.Expect(ui::Answer::kOk, c.message);
      Choose(*button, c.folder);
    }
  }
  EXPECT_EQ(page.txtBackup.text.get(), before);
  EXPECT_EQ(page.txtRestore.text.get(), Data() + "\\Restore");
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackup"), std::nullopt);
}

TEST_F(SettingsTest, ANetworkPathPassesTheDriveTest) {
  frmSettings& page = Open();
  // It goes on to the last test, which a share that is not there fails.
  machine_.Expect(ui::Answer::kOk,
                  "You do not have sufficient permissions on the selected folder or drive");
  Choose(page.cmdselectfolder, "\\\\server\\share\\Jobs");
}

TEST_F(SettingsTest, ProgramFilesIsAllowedOnOlderSystems) {
  machine_.MakeFolder("C:\\Program Files\\Jobs");
  frmSettings& page = Open();
  Choose(page.cmdselectfolder, "C:\\Program Files\\Jobs");
  EXPECT_EQ(page.txtBackup.text.get(), "C:\\Program Files\\Jobs");
}

TEST_F(VistaSettingsTest, ProgramFilesIsRefusedAndTheTextStays) {
  machine_.MakeFolder("C:\\Program Files\\Jobs");
  frmSettings& page = Open();
  const std::string before = page.txtBackup.text;
  machine_.Expect(ui::Answer::kOk, "You cannot select Program Files");
  Choose(page.cmdselectfolder, "C:\\Program Files\\Jobs");
  EXPECT_EQ(page.txtBackup.text.get(), before);
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kInformation);
}

TEST_F(SettingsTest, TheFoldersOpenInTheFileManager) {
  frmSettings& page = Open();
  machine_.Click(page.Command2);
  machine_.Click(page.Command3);
  EXPECT_EQ(machine_.computer().Started(),
            (std::vector<std::string>{"run|Explorer " + Data() + "\\Backup",
                                      "run|Explorer " + Data() + "\\Restore"}));
}

// --- Saving and leaving -------------------------------------------------------------------------

TEST_F(SettingsTest, SaveAndAPressOnABoxStoreTheRestoreFolder) {
  frmSettings& page = Open();
  EXPECT_EQ(machine_.GetValue(kKey, "txtRestore"), std::nullopt);
  machine_.Click(page.Command4);
  EXPECT_EQ(machine_.GetValue(kKey, "txtRestore"), Value(Data() + "\\Restore"));
  for (ui::CheckBox* box : {&page.chkLog, &page.chkSetting, &page.chkSound}) {
    machine_.SetString(kKey, "txtRestore", "other");
    ASSERT_TRUE(box->on_mouse_down) << box->name();
    box->on_mouse_down(0, 0);
    EXPECT_EQ(machine_.GetValue(kKey, "txtRestore"), Value(Data() + "\\Restore")) << box->name();
  }
}

TEST_F(SettingsTest, OkHidesThePageAndCancelForgetsIt) {
  FrmWelcome& welcome = machine_.app().Get<FrmWelcome>();
  frmSettings& page = Open();
  EXPECT_FALSE(welcome.cmdWC_TakeBackup.enabled);
  machine_.Click(page.cmdOK);
  EXPECT_FALSE(page.Visible());
  EXPECT_FALSE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.cmdWC_TakeBackup.enabled);
  EXPECT_NE(machine_.app().Loaded<frmSettings>(), nullptr);
  machine_.Click(Open().cmdCancel);
  EXPECT_EQ(machine_.app().Loaded<frmSettings>(), nullptr);
  EXPECT_TRUE(welcome.cmdWC_Restore.enabled);
  machine_.SetString(kKey, "txtBackup", "D:\\Jobs");
  EXPECT_EQ(machine_.app().Get<frmSettings>().txtBackup.text.get(), "D:\\Jobs");
}

TEST_F(SettingsTest, F1OpensItsTopic) {
  frmSettings& page = Open();
  EXPECT_TRUE(page.on_key_down(112, 0));
  EXPECT_FALSE(page.on_key_down(13, 0));
  ASSERT_EQ(machine_.host().shell().help_shown().size(), 1u);
  EXPECT_EQ(machine_.host().shell().help_shown()[0].topic, "qvlSettings.htm");
  EXPECT_EQ(machine_.host().shell().help_shown()[0].file,
            machine_.platform().system.ProgramFolder() + "\\Quorvale.chm");
}

// --- The start-up page --------------------------------------------------------------------------

TEST_F(SettingsTest, TheStepsLeadFromOnePageToTheOtherAndBack) {
  FrmWelcome& welcome = machine_.app().Get<FrmWelcome>();
  frmSettings& page = Open();
  machine_.Click(*welcome.lblSettings[1]);
  frmStartUp& start_up = machine_.app().Get<frmStartUp>();
  EXPECT_TRUE(start_up.Visible());
  EXPECT_FALSE(page.Visible());
  EXPECT_TRUE(welcome.lblSettings[1]->bold);
  EXPECT_FALSE(welcome.lblSettings[0]->bold);
  EXPECT_EQ(welcome.ImgSettingsSteps.bounds->top, welcome.lblSettings[1]->bounds->top);
  machine_.Click(start_up.cmdNext);
  EXPECT_TRUE(start_up.Visible());
  machine_.Click(start_up.cmdBack);
  EXPECT_TRUE(page.Visible());
  EXPECT_FALSE(start_up.Visible());
  EXPECT_TRUE(welcome.lblSettings[0]->bold);
  machine_.Click(*welcome.lblSettings[1]);
  machine_.Click(start_up.cmdCancel);
  EXPECT_FALSE(start_up.Visible());
  EXPECT_FALSE(welcome.PicMainBackupBase.visible);
}

TEST_F(SettingsTest, TheStartUpPageKeepsItsBoxesApart) {
  frmStartUp& page = machine_.app().Get<frmStartUp>();
  EXPECT_EQ(page.chkGUpdate.value.get(), 0);
  machine_.Click(page.chkGUpdate);
  machine_.Click(page.ChkStartMenu);
  EXPECT_EQ(machine_.GetValue(kOwnKey, "chkGUpdate"), Value("1"));
  EXPECT_EQ(machine_.GetValue(kOwnKey, "ChkStartMenu"), Value("1"));
  EXPECT_EQ(machine_.GetValue(kKey, "ChkStartMenu"), std::nullopt);
  EXPECT_EQ(machine_.GetValue(kKey, "chkGUpdate"), std::nullopt);
  machine_.app().Unload<frmStartUp>();
  EXPECT_EQ(machine_.app().Get<frmStartUp>().chkGUpdate.value.get(), 1);
  EXPECT_EQ(machine_.app().Get<frmStartUp>().chkShortcut.value.get(), 0);
  EXPECT_EQ(machine_.app().Get<frmSettings>().ChkStartMenu.value.get(), 0);
}

TEST_F(SettingsTest, TheStartUpPageMakesTheSameLinks) {
  frmStartUp& page = machine_.app().Get<frmStartUp>();
  machine_.Click(page.chkShortcut);
  machine_.Click(page.ChkStartMenu);
  EXPECT_TRUE(machine_.Exists(DesktopLink()));
  EXPECT_TRUE(machine_.Exists(std::string(kPrograms) + "\\Quorvale.lnk"));
  machine_.Click(page.chkShortcut);
  machine_.Click(page.ChkStartMenu);
  EXPECT_FALSE(machine_.Exists(DesktopLink()));
  EXPECT_TRUE(machine_.AllBelow(kPrograms).empty());
}

TEST_F(SettingsTest, TheStartUpTextsAreItsOwn) {
  frmStartUp& page = machine_.app().Get<frmStartUp>();
  EXPECT_EQ(page.lblHeader.caption.get(),
            "Quorvale Startup Options( Settings will be applied as soon as you select them)");
  EXPECT_EQ(page.lblSubheading.caption.get(), "Customize Startup Options for Quorvale");
}

}  // namespace
}  // namespace quorvale
