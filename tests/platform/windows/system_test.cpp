// Facts, shell, processes and services of the running system.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "base/text.h"
#include "platform/APIFile.h"
#include "platform/GetInfomation.h"
#include "platform/windows/automation.h"
#include "platform/windows/files.h"
#include "platform/windows/late_objects.h"
#include "platform/windows/processes.h"
#include "platform/windows/random_bytes.h"
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

TEST(SystemInfo, RandomBytesAreAsManyAsAskedForAndNeverTheSame) {
  WindowsSystemInfo system;
  for (const std::size_t count : {0u, 1u, 33u, 5000u}) {
    EXPECT_EQ(system.RandomBytes(count).size(), count);
    EXPECT_EQ(JitterBytes(count).size(), count);
  }
  EXPECT_NE(system.RandomBytes(16), system.RandomBytes(16));
  EXPECT_NE(JitterBytes(16), JitterBytes(16));
  EXPECT_EQ(SystemRandomBytes(16).size(), 16u) << "Wine and newer systems have a source";
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

// What the shell itself reads out of a link.
struct ReadLink {
  std::string target, arguments, working_folder, description, icon;
  int icon_index = -1;
};

ReadLink ReadBack(const std::string& path) {
  ReadLink read;
  void* created = nullptr;
  if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                              &created))) {
    return read;
  }
  auto* link = static_cast<IShellLinkW*>(created);
  void* queried = nullptr;
  if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, &queried))) {
    auto* file = static_cast<IPersistFile*>(queried);
    if (SUCCEEDED(file->Load(Wide(path).c_str(), STGM_READ)) &&
        SUCCEEDED(link->Resolve(nullptr, SLR_NO_UI))) {
      wchar_t text[MAX_PATH] = L"";
      link->GetPath(text, MAX_PATH, nullptr, 0);
      read.target = FromWide(text);
      link->GetArguments(text, MAX_PATH);
      read.arguments = FromWide(text);
      link->GetWorkingDirectory(text, MAX_PATH);
      read.working_folder = FromWide(text);
      link->GetDescription(text, MAX_PATH);
      read.description = FromWide(text);
      link->GetIconLocation(text, MAX_PATH, &read.icon_index);
      read.icon = FromWide(text);
    }
    file->Release();
  }
  link->Release();
  return read;
}

// Makes the same link by the shell and by the script host's object and reads both back.
TEST(Shell, LinksPointWhereTheyShould) {
  ComponentLibrary library;
  WindowsShell shell;
  WindowsSystemInfo system;
  WindowsFiles files;
  ShellLink link;
  link.link_path = shell.SpecialFolder(special_folder::kDesktop) + "\\quorvale links.lnk";
  link.target = ProgramFile();
  link.arguments = "";
  link.working_folder = system.ProgramFolder();
  link.description = "A link of a test";
  for (const bool scripted : {false, true}) {
    ASSERT_TRUE(scripted ? shell.CreateScriptedLink(link) : shell.CreateLink(link)) << scripted;
    const ReadLink read = ReadBack(link.link_path);
    EXPECT_TRUE(EqualsNoCase(read.target, link.target)) << read.target;
    EXPECT_TRUE(EqualsNoCase(read.working_folder, link.working_folder)) << read.working_folder;
    EXPECT_EQ(read.description, link.description);
    EXPECT_TRUE(EqualsNoCase(read.icon, link.target)) << read.icon;
    EXPECT_EQ(read.icon_index, 0);
    EXPECT_EQ(read.arguments, "");
    EXPECT_EQ(files.RemoveFile(link.link_path, true), FileStatus::kOk);
  }
}

TEST(Shell, ALinkIntoAFolderThatIsNotThereIsRefused) {
  ComponentLibrary library;
  WindowsShell shell;
  ShellLink link;
  link.link_path = "C:\\no such folder\\x.lnk";
  link.target = ProgramFile();
  EXPECT_FALSE(shell.CreateScriptedLink(link));
  EXPECT_FALSE(shell.CreateLink(link));
}

TEST(Shell, FilesAreCopiedMovedRenamedAndDeleted) {
  ComponentLibrary library;
  WindowsShell shell;
  WindowsFiles files;
  FileToolkit toolkit(files, [] {});
  APIFile file(shell, toolkit);
  file.Silent = file.NoConfirm = true;
  file.RenameOnCollision = false;
  const std::string folder = shell.SpecialFolder(special_folder::kDesktop) + "\\quorvale files";
  toolkit.KillFolder(folder);
  ASSERT_TRUE(toolkit.MakeFolderChain(folder));
  const std::string a = folder + "\\a.txt", b = folder + "\\b.txt", c = folder + "\\c.txt";
  ASSERT_EQ(toolkit.WriteWhole(a, "new"), FileStatus::kOk);
  ASSERT_EQ(toolkit.WriteWhole(b, "old"), FileStatus::kOk);
  EXPECT_TRUE(file.CopyFile(a, b));
  EXPECT_EQ(toolkit.ReadWhole(b), "new");
  EXPECT_EQ(files.List(folder).size(), 2u);
  EXPECT_TRUE(file.MoveFile(b, c));
  EXPECT_FALSE(files.Stat(b));
  EXPECT_TRUE(file.RenameFile(c, b));
  EXPECT_EQ(toolkit.ReadWhole(b), "new");
  EXPECT_TRUE(file.DeleteFile(a));
  EXPECT_FALSE(files.Stat(a));
  EXPECT_THROW(file.DeleteFile(a), RaisedError);
  EXPECT_TRUE(toolkit.KillFolder(folder));
}

TEST(LateObjects, AnObjectIsMadeByItsNameAndWorked) {
  ComponentLibrary library;
  LateObjects objects;
  EXPECT_EQ(objects.Create("No.Such.Object"), nullptr);
  const LateObject script = objects.Create("Wscript.Shell");
  ASSERT_NE(script, nullptr);
  EXPECT_THROW(script->Get("NoSuchProperty"), LateBoundError);
  EXPECT_THROW(script->Call("NoSuchMethod", {1}), LateBoundError);
  // Some systems give the final NUL along.
  const std::string folder =
      TextOf(script->Call("ExpandEnvironmentStrings", {std::string("%windir%")}));
  EXPECT_EQ(std::string(folder.c_str()), WindowsSystemInfo().Environment("windir"));
}

std::string RefusalOf(const std::function<void()>& call) {
  try {
    call();
    return "none";
  } catch (const LateBoundError& error) {
    return error.what();
  }
}

TEST(LateObjects, ARefusedCallIsToldByItsNameAndNumber) {
  ComponentLibrary library;
  const LateObject script = LateObjects().Create("Wscript.Shell");
  ASSERT_NE(script, nullptr);
  EXPECT_EQ(RefusalOf([&] { script->Get("NoSuchProperty"); }), "NoSuchProperty: &H80020006");
  EXPECT_EQ(RefusalOf([&] { script->Set("NoSuchProperty", 1); }), "NoSuchProperty: &H80020006");
  EXPECT_EQ(RefusalOf([&] { script->Members(); }).substr(0, 11), "_NewEnum: &");
}

TEST(LateObjects, ValuesOfEachKindGoBothWays) {
  ComponentLibrary library;
  const LateObject dictionary = LateObjects().Create("Scripting.Dictionary");
  ASSERT_NE(dictionary, nullptr);
  EXPECT_NE(dictionary->TypeName(), "");
  dictionary->Set("CompareMode", 1);
  EXPECT_EQ(NumberOf(dictionary->Get("CompareMode")), 1);
  dictionary->Call("Add", {std::string("text"), std::string("a\xC3\xA4")});
  dictionary->Call("Add", {std::string("number"), -7});
  dictionary->Call("Add", {std::string("truth"), true});
  dictionary->Call("Add", {std::string("object"), dictionary});
  EXPECT_EQ(dictionary->Get("Item", {std::string("TEXT")}), LateValue(std::string("a\xC3\xA4")));
  EXPECT_EQ(dictionary->Get("Item", {std::string("number")}), LateValue(-7));
  EXPECT_EQ(dictionary->Get("Item", {std::string("truth")}), LateValue(true));
  const LateObject inner = ObjectOf(dictionary->Get("Item", {std::string("object")}));
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(NumberOf(inner->Get("Count")), 4);
  std::vector<std::string> keys;
  for (const LateValue& key : dictionary->Members()) keys.push_back(TextOf(key));
  EXPECT_EQ(keys, (std::vector<std::string>{"text", "number", "truth", "object"}));
  dictionary->Call("RemoveAll");
}

TEST(GetInfomation, TheSystemKnowsEveryItem) {
  WindowsSystemInfo system;
  const GetInfomation info(system);
  EXPECT_EQ(info.GetLongNameDay7(), system.WeekdayName(1));
  EXPECT_EQ(info.GetShortNameDay1().substr(0, 2), info.GetLongNameDay1().substr(0, 2));
  for (const std::string& item :
       {info.GetPositiveSignPosition(), info.GetNegativeSignPosition(), info.GetNegativeSign(),
        info.GetShortMonthName1(), info.GetLongMonthName12(), info.GetTimeFormat(),
        info.GetShortDateFormat(), info.GetTimeSeparator(), info.GetDateSeparator(),
        info.GetLeadingZerosForDecimal(), info.GetNumberOfFractionalDigits(),
        info.GetDigitGrouping(), info.GetCurrencySymbol(), info.GetLanguage(), info.GetCountry(),
        info.GetLongDateFormat(), info.GetDecimalSeparator()}) {
    EXPECT_NE(item, "");
  }
  EXPECT_EQ(info.TempDir().back(), '\\');
  WindowsFiles files;
  EXPECT_TRUE(files.Stat(info.SystemDir())) << info.SystemDir();
}

TEST(SystemInfo, ErrorsHaveASentence) {
  EXPECT_NE(WindowsSystemInfo().ErrorText(ERROR_ACCESS_DENIED), "");
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
                  [&](Dispatch& row) {
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
  QueryManagement("Select * from Win32_NoSuchThing", [&](Dispatch&) {
    ++rows;
    return true;
  });
  EXPECT_EQ(rows, 0);
  EXPECT_FALSE(Dispatch::FromMoniker("no such thing:"));
}

}  // namespace
}  // namespace quorvale::windows
