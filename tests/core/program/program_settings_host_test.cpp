// The program's settings: their defaults, who is told of a change, and when they are read.
#include "core/program/program_settings.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/main/FrmWelcome.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

using Setting = ProgramSettings::Setting;

constexpr char kKey[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";

class ProgramSettingsTest : public testing::Test {
 protected:
  ProgramSettingsTest() { machine_.app().Get<FrmWelcome>(); }
  ProgramSettings& settings() { return machine_.app().settings(); }
  std::string Kept(const std::string& name) {
    return machine_.app().registry().RegGetValue(RegistryRoot::kCurrentUser, kSettingsKey, name);
  }

  TestMachine machine_;
};

TEST_F(ProgramSettingsTest, AFolderThatIsNotSetIsTheDefaultOneAndIsMade) {
  const std::string data = machine_.session().gAppDataPath;
  EXPECT_FALSE(machine_.Exists(data + "\\Backup"));
  EXPECT_EQ(settings().backup_folder(), data + "\\Backup");
  EXPECT_EQ(settings().restore_folder(), data + "\\Restore");
  EXPECT_TRUE(machine_.Exists(data + "\\Backup"));
  EXPECT_TRUE(machine_.Exists(data + "\\Restore"));
  EXPECT_EQ(Kept("txtBackup"), "");
}

TEST_F(ProgramSettingsTest, ADefaultFolderThatCannotBeMadeIsTold) {
  machine_.WriteFile(machine_.session().gAppDataPath + "\\Backup", "a file in the way");
  std::vector<std::string> told;
  settings().on_folder_not_made = [&told](const std::string& path) { told.push_back(path); };
  settings().Load();
  EXPECT_EQ(told, std::vector<std::string>{machine_.session().gAppDataPath + "\\Backup\\"});
}

TEST_F(ProgramSettingsTest, AChangeIsKeptAndTold) {
  std::vector<Setting> told;
  auto watch = settings().OnChange([&told](Setting setting) { told.push_back(setting); });
  settings().UseBackupFolder("C:\\Safe");
  settings().UseRestoreFolder("C:\\Back");
  settings().UseLog(1);
  EXPECT_EQ(told,
            (std::vector<Setting>{Setting::kBackupFolder, Setting::kRestoreFolder, Setting::kLog}));
  EXPECT_EQ(Kept("txtBackup"), "C:\\Safe");
  EXPECT_EQ(Kept("txtRestore"), "C:\\Back");
  EXPECT_EQ(Kept("chklog"), "1");
  EXPECT_EQ(machine_.session().gLogDetails, "True");
}

TEST_F(ProgramSettingsTest, WhatIsNoChangeIsNotTold) {
  settings().UseBackupFolder("C:\\Safe");
  int told = 0;
  auto watch = settings().OnChange([&told](Setting) { ++told; });
  settings().UseBackupFolder("C:\\Safe");
  settings().UseLog(0);
  EXPECT_EQ(told, 0);
}

TEST_F(ProgramSettingsTest, AWatchEndsWhenItIsLetGo) {
  int told = 0;
  auto watch = settings().OnChange([&told](Setting) { ++told; });
  watch.reset();
  settings().UseBackupFolder("C:\\Safe");
  EXPECT_EQ(told, 0);
}

TEST_F(ProgramSettingsTest, TheRegistryIsReadOnceAndAgainAfterForgetting) {
  machine_.SetString(kKey, "txtBackup", "C:\\First");
  EXPECT_EQ(settings().backup_folder(), "C:\\First");
  machine_.SetString(kKey, "txtBackup", "C:\\Second");
  EXPECT_EQ(settings().backup_folder(), "C:\\First");
  settings().Forget();
  EXPECT_EQ(settings().backup_folder(), "C:\\Second");
}

TEST_F(ProgramSettingsTest, AFolderOutsideTheCodePageIsKeptInFullBesideItsString) {
  settings().UseBackupFolder("D:\\Данные");
  settings().UseRestoreFolder("D:\\写真");
  EXPECT_EQ(Kept("txtBackup"), "D:\\??????");
  EXPECT_EQ(Kept("txtRestore"), "D:\\??");
  settings().Forget();
  EXPECT_EQ(settings().backup_folder(), "D:\\Данные");
  EXPECT_EQ(settings().restore_folder(), "D:\\写真");
  settings().Save();
  settings().Forget();
  EXPECT_EQ(settings().restore_folder(), "D:\\写真");
}

TEST_F(ProgramSettingsTest, AFolderOfTheCodePageNeedsNoFullName) {
  settings().UseBackupFolder("D:\\Данные");
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackupFullName"), "D:\\Данные");
  settings().UseBackupFolder("D:\\Müller");
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackupFullName"), std::nullopt);
  EXPECT_EQ(machine_.GetValue(kKey, "txtBackup"), "D:\\Müller");
}

TEST_F(ProgramSettingsTest, AStringThatAnotherProgramWroteCountsMoreThanAnOldFullName) {
  settings().UseBackupFolder("D:\\Данные");
  machine_.SetString(kKey, "txtBackup", "D:\\Jobs");
  settings().Forget();
  EXPECT_EQ(settings().backup_folder(), "D:\\Jobs");
}

TEST_F(ProgramSettingsTest, AFullNameThatIsNoTextIsPassedOver) {
  machine_.SetString(kKey, "txtBackup", "D:\\?");
  machine_.SetBinary(kKey, "txtBackupFullName", "D:\\\xFF");
  EXPECT_EQ(settings().backup_folder(), "D:\\?");
}

// As a program before this one kept it.
TEST(ProgramSettingsOfAUserOutsideTheCodePage, WhatIsLeftOfTheDefaultFolderIsTheDefaultFolder) {
  TestMachine machine("xp", "Łukasz");
  machine.app().Get<FrmWelcome>();
  const std::string folder = machine.session().gAppDataPath + "\\Restore";
  ASSERT_NE(folder.find("Łukasz"), std::string::npos);
  machine.SetString(kKey, "txtRestore", machine.app().registry().AsString(folder));
  machine.app().settings().Forget();
  EXPECT_EQ(machine.app().settings().restore_folder(), folder);
}

}  // namespace
}  // namespace quorvale
