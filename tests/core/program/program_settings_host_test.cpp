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

}  // namespace
}  // namespace quorvale
