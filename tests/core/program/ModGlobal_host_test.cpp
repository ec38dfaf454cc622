// The shared procedures that look at the computer.
#include "core/program/ModGlobal.h"

#include <gtest/gtest.h>

#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kSettings[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Settings";

class ModGlobalTest : public testing::Test {
 protected:
  void UseJobFolder(const std::string& folder) {
    machine_.computer().SetDrive("D", DriveKind::kFixed);
    machine_.MakeFolder("D:\\Jobs");
    folder_ = folder;
  }
  std::string UniqueName() { return UniqueBackupName(machine_.app(), folder_); }

  std::string folder_;

  TestMachine machine_;
};

// --- UniqueBackupName ---------------------------------------------------------------------------

TEST_F(ModGlobalTest, AFreeJobNameGetsNoSuffix) {
  UseJobFolder("D:\\Jobs");
  machine_.session().gBackupFileName = "Mail.obk";
  EXPECT_EQ(UniqueName(), "");
  EXPECT_EQ(machine_.session().gBackupBasePath, "D:\\Jobs\\Mail");
}

TEST_F(ModGlobalTest, TheSecondRunOfANameGets1AndTheThird2) {
  UseJobFolder("D:\\Jobs");
  machine_.session().gBackupFileName = "Mail.obk";
  machine_.WriteFile("D:\\Jobs\\Mail.obk", "x");
  EXPECT_EQ(UniqueName(), "_1");
  EXPECT_EQ(machine_.session().gBackupBasePath, "D:\\Jobs\\Mail_1");
  machine_.WriteFile("D:\\Jobs\\Mail_1.obk", "x");
  EXPECT_EQ(UniqueName(), "_2");
  EXPECT_EQ(machine_.session().gBackupBasePath, "D:\\Jobs\\Mail_2");
}

TEST_F(ModGlobalTest, AFolderOrAFileOfTheNameTakesItToo) {
  UseJobFolder("D:\\Jobs");
  machine_.session().gBackupFileName = "Mail.obk";
  machine_.MakeFolder("D:\\Jobs\\Mail");
  EXPECT_EQ(UniqueName(), "_1");
  machine_.WriteFile("D:\\Jobs\\Mail_1", "a file without extension");
  EXPECT_EQ(UniqueName(), "_2");
}

TEST_F(ModGlobalTest, ADriveRootAsJobFolderGetsNoSecondBackslash) {
  UseJobFolder("D:\\");
  machine_.session().gBackupFileName = "Mail.obk";
  EXPECT_EQ(UniqueName(), "");
  EXPECT_EQ(machine_.session().gBackupBasePath, "D:\\Mail");
}

// --- Folders ------------------------------------------------------------------------------------

TEST_F(ModGlobalTest, FolderIsWritableLeavesNothingBehind) {
  machine_.MakeFolder("C:\\work");
  EXPECT_TRUE(FolderIsWritable(machine_.app(), "C:\\work"));
  EXPECT_TRUE(machine_.AllBelow("C:\\work").empty());
  EXPECT_FALSE(FolderIsWritable(machine_.app(), "C:\\missing"));
  EXPECT_FALSE(machine_.Exists("C:\\missing"));
}

TEST_F(ModGlobalTest, FolderIsWritableSparesAFileOfTheUsers) {
  machine_.WriteFile("C:\\work\\QVL.txt", "mine");
  EXPECT_TRUE(FolderIsWritable(machine_.app(), "C:\\work"));
  EXPECT_EQ(machine_.ReadFile("C:\\work\\QVL.txt"), "mine");
  EXPECT_EQ(machine_.AllBelow("C:\\work").size(), 1u);
}

// --- Facts of the computer ----------------------------------------------------------------------

TEST_F(ModGlobalTest, TheBrowserIsWhatStandsBetweenTheQuotes) {
  const std::string key = "HKEY_CLASSES_ROOT\\http\\shell\\open\\command";
  EXPECT_EQ(DefaultBrowser(machine_.app()), "Invalid");
  machine_.SetString(key, "", "C:\\no quotes.exe %1");
  EXPECT_EQ(DefaultBrowser(machine_.app()), "Invalid");
  machine_.SetString(key, "", "\"C:\\one quote.exe");
  EXPECT_EQ(DefaultBrowser(machine_.app()), "Invalid");
  machine_.SetString(key, "", "\"C:\\Program Files\\Web\\web.exe\" -nohome");
  EXPECT_EQ(DefaultBrowser(machine_.app()), "C:\\Program Files\\Web\\web.exe");
}

TEST_F(ModGlobalTest, TheUserNameIsTrimmed) {
  machine_.SetUser("  Anna  ");
  EXPECT_EQ(GetWinUserName(machine_.app()), "Anna");
}

TEST_F(ModGlobalTest, OutlookCurVerIsTheKeysDefaultValue) {
  EXPECT_EQ(OutlookCurVer(machine_.app()), "");
  machine_.SetString("HKEY_CLASSES_ROOT\\Outlook.Application\\CurVer", "",
                     "Outlook.Application.11");
  EXPECT_EQ(OutlookCurVer(machine_.app()), "Outlook.Application.11");
}

TEST_F(ModGlobalTest, HistoryStampIsPaddedAndEndsInTheLongTime) {
  const LocalTime time{2026, 1, 4, 22, 5, 9, 1};
  const std::string stamp = HistoryStamp(machine_.app(), time);
  EXPECT_EQ(stamp, "01/04/2026 " + machine_.platform().system.TimeText(time));
}

// --- Links --------------------------------------------------------------------------------------

class LinksTest : public ModGlobalTest {
 protected:
  LinksTest() {
    machine_.computer().SetSpecialFolder(special_folder::kPrograms,
                                         machine_.Profile() + "\\Start Menu\\Programs");
    for (const char* folder : {"\\Start Menu\\Programs", "\\Recent"}) {
      machine_.MakeFolder(machine_.Profile() + folder);
    }
  }
  const ShellLink& LastLink() { return machine_.host().shell().links_made().back(); }
};

TEST_F(LinksTest, AGroupIsTheWayFromTheProgramsOfTheStartMenu) {
  const std::string programs = machine_.Profile() + "\\Start Menu\\Programs";
  const std::vector<std::pair<std::string, std::string>> folders = {
      {"", programs},
      {"$(Programs)", programs},
      {"..", machine_.Profile() + "\\Start Menu"},
      {"..\\..\\Recent", machine_.Profile() + "\\Recent"},
      {"Tools", programs + "\\Tools"}};
  machine_.MakeFolder(programs + "\\Tools");
  for (const auto& [group, folder] : folders) {
    EXPECT_TRUE(CreateShellLink(machine_.app(), "\"C:\\a b.exe\"", "\"My link\"", "x", group));
    EXPECT_EQ(LastLink().link_path, folder + "\\My link.lnk");
    EXPECT_EQ(LastLink().target, "C:\\a b.exe");
    EXPECT_EQ(LastLink().arguments, "x");
  }
}

TEST_F(LinksTest, WithoutAPlaceOrANameThereIsNoLink) {
  EXPECT_FALSE(CreateShellLink(machine_.app(), "C:\\a.exe", "\"\"", "", ""));
  machine_.computer().SetSpecialFolder(special_folder::kPrograms, "");
  EXPECT_FALSE(CreateShellLink(machine_.app(), "C:\\a.exe", "a", "", ""));
  EXPECT_FALSE(StartMenuShortcut(machine_.app()));
  EXPECT_TRUE(machine_.host().shell().links_made().empty());
}

TEST_F(LinksTest, AFileGivenAtTheStartIsRememberedAndLinkedAmongTheRecentOnes) {
  machine_.computer().SetCommandLine(" \"C:\\Backups\\My mail.obk\" ");
  RegisterOpenedFile(machine_.app());
  EXPECT_EQ(machine_.session().gBackupFileName, "\"C:\\Backups\\My mail.obk\"");
  EXPECT_EQ(LastLink().link_path, machine_.Profile() + "\\Recent\\My mail.obk.lnk");
  EXPECT_EQ(LastLink().target, "C:\\Backups\\My mail.obk");
}

TEST_F(LinksTest, WordsOfTheRunModesAndTheBareFileMarkAreNoFiles) {
  for (const char* word : {"", "%1", "qbackup", "custom", "auto", "qvlrunasadmin"}) {
    machine_.computer().SetCommandLine(word);
    RegisterOpenedFile(machine_.app());
    EXPECT_EQ(machine_.session().gBackupFileName, "") << word;
  }
  EXPECT_TRUE(machine_.host().shell().links_made().empty());
}

// --- The sound at the end of a run --------------------------------------------------------------

TEST_F(ModGlobalTest, TheEndSoundPlaysUnlessItIsTurnedOff) {
  const std::string chimes = machine_.platform().system.ProgramFolder() + "\\chimes.wav";
  const auto sounds = [&] {
    PlayEndSound(machine_.app());
    return machine_.host().shell().sounds_played().size();
  };
  EXPECT_EQ(sounds(), 0u) << "there is no such file yet";
  machine_.WriteFile(chimes, "RIFF");
  EXPECT_EQ(sounds(), 1u);
  machine_.SetString(kSettings, "chkSound", "0");
  EXPECT_EQ(sounds(), 2u);
  EXPECT_EQ(machine_.host().shell().sounds_played().back(), chimes);
  for (const char* off : {"1", "x"}) {
    machine_.SetString(kSettings, "chkSound", off);
    EXPECT_EQ(sounds(), 2u) << off;
  }
}

}  // namespace
}  // namespace quorvale
