// Facts, shell, processes and services of the running system.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/text.h"
#include "platform/windows/automation.h"
#include "platform/windows/files.h"
#include "platform/windows/processes.h"
#include "platform/windows/services.h"
#include "platform/windows/shell.h"
#include "platform/windows/system_info.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

TEST(SystemInfo, TellsTheVersionOfTheFamily) {
  WindowsSystemInfo system;
  const SystemVersion version = system.Version();
  EXPECT_TRUE(version.known);
  EXPECT_TRUE(version.platform_id == 1 || version.platform_id == 2);
  EXPECT_GE(version.major, 3);
}

TEST(SystemInfo, ReadsTheEnvironmentWithoutRegardToCase) {
  WindowsSystemInfo system;
  EXPECT_EQ(system.Environment("no such variable"), "");
  EXPECT_NE(system.Environment("WINDIR"), "");
  EXPECT_EQ(system.Environment("WinDir"), system.Environment("WINDIR"));
}

TEST(SystemInfo, ProgramFolderHoldsThisProgram) {
  WindowsSystemInfo system;
  WindowsFiles files;
  const std::string path = ProgramFile();
  EXPECT_TRUE(files.Stat(path)) << path;
  EXPECT_EQ(path.find(system.ProgramFolder() + "\\"), 0u);
}

TEST(SystemInfo, TextOutsideOfTheCodePageBecomesQuestionMarks) {
  WindowsSystemInfo system;
  EXPECT_EQ(system.ToAnsi("a\xE4\xB8\xAD"), "a?");
  EXPECT_EQ(system.FromAnsi(system.ToAnsi("plain text")), "plain text");
}

TEST(SystemInfo, SecondHolderOfTheNameIsRefused) {
  WindowsSystemInfo first, second;
  EXPECT_TRUE(first.HoldInstanceMutex("Quorvale_test_mutex"));
  EXPECT_FALSE(second.HoldInstanceMutex("Quorvale_test_mutex"));
}

TEST(SystemInfo, FileTimesBecomeLocalTimes) {
  WindowsSystemInfo system;
  const LocalTime time = system.ToLocal(127000000000000000);
  EXPECT_EQ(time.year, 2003);
  EXPECT_GE(time.weekday, 1);
  EXPECT_LE(time.weekday, 7);
}

TEST(SystemInfo, TicksNeverGoBack) {
  WindowsSystemInfo system;
  const std::uint64_t before = system.Ticks();
  system.Sleep(20);
  EXPECT_GE(system.Ticks(), before + 10);
}

TEST(SystemInfo, WeekdaysStartWithSunday) {
  WindowsSystemInfo system;
  EXPECT_NE(system.WeekdayName(1), system.WeekdayName(2));
  EXPECT_EQ(system.WeekdayName(1), "Sunday");
  EXPECT_EQ(system.WeekdayName(7), "Saturday");
}

TEST(Shell, SpecialFoldersHaveNoFinalBackslash) {
  WindowsShell shell;
  WindowsFiles files;
  for (const int folder : {special_folder::kDocuments, special_folder::kDesktop,
                           special_folder::kAppData, special_folder::kCommonFiles}) {
    const std::string path = shell.SpecialFolder(folder);
    ASSERT_GT(path.size(), 3u) << folder;
    EXPECT_NE(path.back(), '\\');
    EXPECT_TRUE(files.Stat(path)) << path;
  }
  EXPECT_EQ(shell.SpecialFolder(9999), "");
}

TEST(Shell, StartedProgramRunsAndEnds) {
  WindowsShell shell;
  WindowsSystemInfo system;
  const RunId run = shell.Run("cmd /c exit", WindowStyle::kHidden);
  ASSERT_NE(run, 0u);
  for (int i = 0; i < 300 && shell.IsRunning(run); ++i) system.Sleep(50);
  EXPECT_FALSE(shell.IsRunning(run));
  EXPECT_FALSE(shell.IsRunning(run));
}

TEST(Shell, MissingProgramIsRefused) {
  WindowsShell shell;
  EXPECT_EQ(shell.Run("C:\\no such program.exe", WindowStyle::kNormal), 0u);
  RunId run = 7;
  EXPECT_LT(shell.Execute("Open", "C:\\no such program.exe", "", "", 0, &run), 32);
  EXPECT_EQ(run, 0u);
}

TEST(Shell, LinkIsMade) {
  ComponentLibrary library;
  WindowsShell shell;
  WindowsFiles files;
  ShellLink link;
  link.link_path = shell.SpecialFolder(special_folder::kDesktop) + "\\quorvale test.lnk";
  link.target = ProgramFile();
  link.hot_key = "Ctrl+Alt+Q";
  EXPECT_TRUE(shell.CreateLink(link));
  const auto made = files.Stat(link.link_path);
  ASSERT_TRUE(made);
  EXPECT_GT(made->size, 0u);
  files.RemoveFile(link.link_path, true);
}

TEST(Processes, ListHoldsThisProcess) {
  WindowsProcesses processes("Quorvale");
  const std::vector<ProcessInfo> list = processes.List();
  const auto here = std::find_if(list.begin(), list.end(), [](const ProcessInfo& each) {
    return each.id == GetCurrentProcessId();
  });
  ASSERT_NE(here, list.end());
  EXPECT_TRUE(EqualsNoCase(here->image, "windows_tests.exe")) << here->image;
}

TEST(Processes, NoWindowHasATitleThatNobodyGave) {
  WindowsProcesses processes("Quorvale");
  EXPECT_FALSE(processes.WindowExists("a title that nobody gave"));
}

TEST(Processes, ThisCopyIsNotAnotherInstance) {
  ComponentLibrary library;
  EXPECT_EQ(FindOtherInstance(), 0u);
}

TEST(Services, UnknownServiceHasNoState) {
  ComponentLibrary library;
  WindowsServices services;
  EXPECT_EQ(services.State("no such service"), "");
  EXPECT_FALSE(services.Start("no such service"));
  EXPECT_FALSE(services.Control("no such service", 1));
}

TEST(Automation, ManagementServiceTellsOfThisProcess) {
  ComponentLibrary library;
  int rows = 0;
  std::string name;
  QueryManagement("Select * from Win32_Process where Name = 'windows_tests.exe'",
                  [&](Automation& row) {
                    ++rows;
                    name = row.Text("Name").value_or("");
                    return false;
                  });
  EXPECT_EQ(rows, 1);
  EXPECT_TRUE(EqualsNoCase(name, "windows_tests.exe")) << name;
}

TEST(Automation, UnknownThingsGiveNoRows) {
  ComponentLibrary library;
  int rows = 0;
  QueryManagement("Select * from Win32_NoSuchThing", [&](Automation&) {
    ++rows;
    return true;
  });
  EXPECT_EQ(rows, 0);
  EXPECT_FALSE(Automation::FromMoniker("no such thing:"));
}

}  // namespace
}  // namespace quorvale::windows
