#include "platform/host/shell.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "machine_fixture.h"
#include "platform/file_toolkit.h"
#include "platform/registry_editor.h"

namespace quorvale::host {
namespace {

using namespace std::string_literals;

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

class HostShellTest : public MachineTest {
 protected:
  HostShellTest() : editor_(shell(), platform_->system(), [] {}) {
    HostRegistryStore& registry = platform_->registry();
    registry.CreateKey(kUser, "Software\\My Mail\\Below");
    registry.SetValue(kUser, "Software\\My Mail", "name", registry_type::kString, "M\xFCller\0"s);
  }
  HostShell& shell() { return platform_->shell(); }
  std::optional<std::string> ReadFile(const std::string& path) {
    return FileToolkit(platform_->files(), [] {}).ReadWhole(path);
  }
  std::string Export(const std::string& key) {
    editor_.Export("C:\\out.reg", key, false);
    editor_.WaitForRuns();
    return ReadFile("C:\\out.reg").value_or("no file");
  }

  RegistryEditor editor_;
};

TEST_F(HostShellTest, SpecialFolders) {
  EXPECT_EQ("C:\\My Documents", shell().SpecialFolder(special_folder::kDocuments));
  EXPECT_EQ("", shell().SpecialFolder(special_folder::kDesktop));
  shell().SetSpecialFolder(special_folder::kDesktop, "D:\\");
  EXPECT_EQ("D:\\", shell().SpecialFolder(special_folder::kDesktop));
  shell().SetSpecialFolder(special_folder::kDesktop, "D:\\Desktop\\");
  EXPECT_EQ("D:\\Desktop", shell().SpecialFolder(special_folder::kDesktop));
}

TEST_F(HostShellTest, CommandLineIsCutIntoWords) {
  EXPECT_EQ((std::vector<std::string>{"a", "b c", "", "d"}), CommandWords("a  \"b c\" \"\" d "));
  EXPECT_EQ((std::vector<std::string>{"C:\\x\\", "ab"}), CommandWords("\"C:\\x\\\" a\"b"));
  EXPECT_TRUE(CommandWords("  ").empty());
}

TEST_F(HostShellTest, StartedProgramsAreRecorded) {
  const RunId run = shell().Run("Explorer C:\\Backup", WindowStyle::kNormal);
  EXPECT_NE(0u, run);
  EXPECT_FALSE(shell().IsRunning(run));
  EXPECT_LE(32, shell().Execute("Open", "http://example.org", "", "", 1, nullptr));
  ASSERT_EQ(2u, shell().started().size());
  EXPECT_EQ("Explorer C:\\Backup", shell().started()[0].command_line);
  EXPECT_EQ("Open", shell().started()[1].verb);
  EXPECT_EQ("http://example.org", shell().started()[1].file);
  EXPECT_EQ(1, shell().started()[1].show);
}

TEST_F(HostShellTest, NothingIsNoProgram) {
  EXPECT_GT(32, shell().Execute("open", "", "", "", 1, nullptr));
  EXPECT_EQ(0u, shell().Run("", WindowStyle::kNormal));
  EXPECT_TRUE(shell().started().empty());
}

TEST_F(HostShellTest, ElevationCanBeRefused) {
  RunId run = 7;
  EXPECT_LE(32, shell().Execute("Runas", "C:\\x\\Quorvale.exe", "qvlrunasadmin", "", 0, &run));
  EXPECT_NE(0u, run);
  shell().SetElevationRefused(true);
  EXPECT_GT(32, shell().Execute("Runas", "C:\\x\\Quorvale.exe", "qvlrunasadmin", "", 0, &run));
  EXPECT_EQ(0u, run);
  EXPECT_LE(32, shell().Execute("open", "C:\\x\\Quorvale.exe", "", "", 0, nullptr));
  ASSERT_EQ(2u, shell().started().size());
  EXPECT_EQ("qvlrunasadmin", shell().started()[0].parameters);
}

TEST_F(HostShellTest, ElevationRefusedByTheMachineFolder) {
  WriteHost(folder_ / "machine.ini", "[system]\nelevation = refused\n");
  MachineError error;
  const auto platform = HostPlatform::Open(folder_.path(), &error);
  ASSERT_TRUE(platform);
  EXPECT_GT(32, platform->shell().Execute("runas", "x.exe", "", "", 0, nullptr));
}

TEST_F(HostShellTest, ExportIsThereOnlyWhenTheRunHasEnded) {
  editor_.Export("C:\\out.reg", "HKEY_CURRENT_USER\\Software\\My Mail", false);
  EXPECT_EQ(1, shell().OutstandingRuns());
  EXPECT_FALSE(ReadFile("C:\\out.reg"));
  platform_->system().Sleep(100);
  EXPECT_FALSE(ReadFile("C:\\out.reg"));
  editor_.WaitForRuns();
  EXPECT_TRUE(ReadFile("C:\\out.reg"));
  EXPECT_EQ(0, shell().OutstandingRuns());
  EXPECT_TRUE(shell().started().empty());
  ASSERT_EQ(1u, shell().registry_editor_runs().size());
}

TEST_F(HostShellTest, RunEndsByQuestionsOrByTime) {
  const RunId first = shell().Run("regedit.exe /s /c \"C:\\a.reg\"", WindowStyle::kHidden);
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(shell().IsRunning(first));
  EXPECT_FALSE(shell().IsRunning(first));
  const RunId second = shell().Run("regedit.exe /s /c \"C:\\a.reg\"", WindowStyle::kHidden);
  EXPECT_TRUE(shell().IsRunning(second));
  platform_->system().Sleep(2000);
  EXPECT_FALSE(shell().IsRunning(second));
  EXPECT_FALSE(shell().IsRunning(4711));
}

TEST_F(HostShellTest, ExportOnNt5IsUtf16) {
  EXPECT_EQ("\xFF\xFE" + Utf8ToUtf16Bytes("Windows Registry Editor Version 5.00\r\n\r\n"
                                          "[HKEY_CURRENT_USER\\Software\\My Mail]\r\n"
                                          "\"name\"=\"M\u00FCller\"\r\n\r\n"
                                          "[HKEY_CURRENT_USER\\Software\\My Mail\\Below]\r\n\r\n"),
            Export("hkey_current_user\\software\\my mail"));
}

TEST_F(HostShellTest, ExportOnOlderSystemsIsInTheCodePage) {
  const std::string expected =
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\My Mail]\r\n\"name\"=\"M\xFCller\"\r\n\r\n"
      "[HKEY_CURRENT_USER\\Software\\My Mail\\Below]\r\n\r\n";
  platform_->system().SetVersion({1, 4, 10, true});
  EXPECT_EQ(expected, Export("HKEY_CURRENT_USER\\Software\\My Mail"));
  platform_->system().SetVersion({2, 4, 0, true});
  EXPECT_EQ(expected, Export("HKEY_CURRENT_USER\\Software\\My Mail"));
  platform_->system().SetVersion({2, 6, 0, true});
  EXPECT_EQ("\xFF\xFE", Export("HKEY_CURRENT_USER\\Software\\My Mail").substr(0, 2));
}

TEST_F(HostShellTest, ExportOfAMissingKeyMakesNoFile) {
  EXPECT_EQ("no file", Export("HKEY_CURRENT_USER\\Software\\None"));
  EXPECT_EQ("no file", Export("HKEY_NOWHERE\\Software"));
  EXPECT_EQ("no file", Export(""));
}

TEST_F(HostShellTest, ExportWithRaisedRights) {
  editor_.Export("C:\\out.reg", "HKEY_CURRENT_USER\\Software\\My Mail", true);
  editor_.WaitForRuns();
  EXPECT_TRUE(ReadFile("C:\\out.reg"));
  shell().SetElevationRefused(true);
  editor_.Export("C:\\refused.reg", "HKEY_CURRENT_USER\\Software\\My Mail", true);
  editor_.WaitForRuns();
  EXPECT_FALSE(ReadFile("C:\\refused.reg"));
}

TEST_F(HostShellTest, ImportMergesAnExport) {
  Export("HKEY_CURRENT_USER\\Software\\My Mail");
  HostRegistryStore& registry = platform_->registry();
  registry.DeleteKey(kUser, "Software");
  registry.CreateKey(kUser, "Software\\My Mail");
  registry.SetValue(kUser, "Software\\My Mail", "kept", registry_type::kDword, "\1\0\0\0"s);
  editor_.Import("C:\\out.reg");
  EXPECT_FALSE(registry.KeyExists(kUser, "Software\\My Mail\\Below"));
  editor_.WaitForRuns();
  EXPECT_TRUE(registry.KeyExists(kUser, "Software\\My Mail\\Below"));
  RegistryValue value;
  EXPECT_EQ(registry_status::kOk, registry.QueryValue(kUser, "Software\\My Mail", "name", &value));
  EXPECT_EQ("M\xFCller\0"s, value.data);
  EXPECT_EQ(registry_status::kOk, registry.QueryValue(kUser, "Software\\My Mail", "kept", &value));
}

TEST_F(HostShellTest, ImportOfBadFilesChangesNothing) {
  std::string error;
  ASSERT_TRUE(platform_->Flush(&error));
  WriteHost(folder_ / "drive_c/bad.reg", "rubbish");
  editor_.Import("C:\\bad.reg");
  editor_.Import("C:\\missing.reg");
  editor_.Import("C:\\");
  editor_.WaitForRuns();
  EXPECT_EQ(0, shell().OutstandingRuns());
  EXPECT_FALSE(platform_->registry().HasChanges());
}

TEST_F(HostShellTest, FileThatIsGoneBeforeTheRunEndsIsNotImported) {
  WriteHost(folder_ / "drive_c/a.reg", "REGEDIT4\n[HKEY_CURRENT_USER\\Imported]\n");
  editor_.Import("C:\\a.reg");
  platform_->files().RemoveFile("C:\\a.reg", false);
  editor_.WaitForRuns();
  EXPECT_FALSE(platform_->registry().KeyExists(kUser, "Imported"));
}

TEST_F(HostShellTest, EndOfTheProgramLetsRunsEnd) {
  WriteHost(folder_ / "drive_c/a.reg", "REGEDIT4\n[HKEY_CURRENT_USER\\Imported]\n");
  editor_.Import("C:\\a.reg");
  std::string error;
  ASSERT_TRUE(platform_->Flush(&error)) << error;
  Reopen();
  EXPECT_TRUE(platform_->registry().KeyExists(kUser, "Imported"));
}

TEST_F(HostShellTest, LinkIsASmallReadableFile) {
  ShellLink link;
  link.link_path = "C:\\Quorvale.lnk";
  link.target = "C:\\Program Files\\Quorvale\\Quorvale.exe";
  link.description = "M\u00FCller";
  EXPECT_TRUE(shell().CreateLink(link));
  const std::string text = ReadFile("C:\\Quorvale.lnk").value_or("");
  EXPECT_TRUE(Contains(text, "Target=C:\\Program Files\\Quorvale\\Quorvale.exe\r\n"));
  EXPECT_TRUE(Contains(text, "Description=M\u00FCller\r\n"));
  link.link_path = "C:\\none\\Quorvale.lnk";
  EXPECT_FALSE(shell().CreateLink(link));
  EXPECT_EQ(1u, shell().links_made().size());
}

TEST_F(HostShellTest, FileOperationsWorkOnFilesAndFolders) {
  FileToolkit files(platform_->files(), [] {});
  files.MakeFolderChain("C:\\a\\b");
  files.WriteWhole("C:\\a\\b\\x.txt", "x");
  constexpr int kPlain = file_operation_flag::kSilent;
  EXPECT_FALSE(shell().Operate(FileOperation::kCopy, "C:\\none", "C:\\y", kPlain));
  EXPECT_TRUE(shell().Operate(FileOperation::kCopy, "C:\\a", "C:\\c", kPlain));
  EXPECT_EQ(ReadFile("C:\\c\\b\\x.txt"), "x");
  EXPECT_TRUE(shell().Operate(FileOperation::kMove, "C:\\c\\b\\x.txt", "C:\\y.txt", kPlain));
  EXPECT_FALSE(files.FileExists("C:\\c\\b\\x.txt"));
  EXPECT_TRUE(shell().Operate(FileOperation::kRename, "C:\\y.txt", "C:\\z.txt", kPlain));
  EXPECT_EQ(ReadFile("C:\\z.txt"), "x");
  EXPECT_TRUE(shell().Operate(FileOperation::kDelete, "C:\\c", "", kPlain));
  EXPECT_FALSE(files.FolderExists("C:\\c"));
}

TEST_F(HostShellTest, AFileOperationTakesNoPlaceUnasked) {
  FileToolkit files(platform_->files(), [] {});
  files.WriteWhole("C:\\new.txt", "new");
  files.WriteWhole("C:\\old.txt", "old");
  const auto copy = [&](int flags) {
    return shell().Operate(FileOperation::kCopy, "C:\\new.txt", "C:\\old.txt", flags);
  };
  EXPECT_FALSE(copy(0));
  EXPECT_EQ(ReadFile("C:\\old.txt"), "old");
  EXPECT_TRUE(copy(file_operation_flag::kRenameOnCollision));
  EXPECT_TRUE(copy(file_operation_flag::kRenameOnCollision));
  EXPECT_EQ(ReadFile("C:\\old.txt"), "old");
  EXPECT_EQ(ReadFile("C:\\Copy of old.txt"), "new");
  EXPECT_EQ(ReadFile("C:\\Copy (2) of old.txt"), "new");
  EXPECT_TRUE(copy(file_operation_flag::kNoConfirmation));
  EXPECT_EQ(ReadFile("C:\\old.txt"), "new");
}

TEST_F(HostShellTest, HelpAndSoundAreRecorded) {
  shell().ShowHelp("C:\\Quorvale.chm", "qvlBackup.htm");
  shell().PlaySoundFile("C:\\chimes.wav");
  ASSERT_EQ(1u, shell().help_shown().size());
  EXPECT_EQ("qvlBackup.htm", shell().help_shown()[0].topic);
  EXPECT_EQ(std::vector<std::string>{"C:\\chimes.wav"}, shell().sounds_played());
}

}  // namespace
}  // namespace quorvale::host
