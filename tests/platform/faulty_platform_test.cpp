// The wrapper that later tests trust when they let every call fail in turn.
#include "support/faulty_platform.h"

#include <gtest/gtest.h>

#include "platform/file_toolkit.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

ScheduledTask JobNamed(const std::string& name) {
  ScheduledTask job;
  job.name = name;
  return job;
}

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

class FaultyPlatformTest : public testing::Test {
 protected:
  FaultyPlatformTest() {
    computer_.files.Put("C:\\a.txt", "0123456789");
    computer_.registry.CreateKey(kUser, "Software");
    computer_.services.states = {{"Schedule", "Stopped"}};
    computer_.processes.running = {{"explorer.exe", 7}};
    computer_.discs.has_drive = true;
    computer_.discs.free_bytes = 1000;
  }
  Platform& seen() { return faults_.platform(); }
  FileToolkit Toolkit() {
    return FileToolkit(seen().files, [] {});
  }
  // Writes a file over an older one; what became of it.
  FileStatus Write(const std::string& path, const std::string& bytes) {
    FileStatus status = FileStatus::kOk;
    const auto file = seen().files.Create(path, &status);
    if (file == nullptr) return status;
    status = file->Write(bytes.data(), bytes.size());
    const FileStatus closed = file->Close();
    return status == FileStatus::kOk ? closed : status;
  }

  MemoryPlatform computer_;
  FaultyPlatform faults_{computer_.platform()};
};

TEST_F(FaultyPlatformTest, WithoutAFaultEverythingPassesThroughAndIsCounted) {
  EXPECT_EQ(Toolkit().ReadWhole("C:\\a.txt"), "0123456789");
  EXPECT_EQ(Write("C:\\b.txt", "new"), FileStatus::kOk);
  EXPECT_EQ(computer_.files.Bytes("C:\\b.txt"), "new");
  EXPECT_GT(faults_.calls(), 5u);
  EXPECT_EQ(faults_.failed_call(), "");
}

TEST_F(FaultyPlatformTest, TheNthCallFailsOnceAndIsNamed) {
  faults_.FailCall(2);
  EXPECT_TRUE(seen().files.Stat("C:\\a.txt"));
  EXPECT_FALSE(seen().files.Stat("C:\\a.txt"));
  EXPECT_TRUE(seen().files.Stat("C:\\a.txt"));
  EXPECT_EQ(faults_.calls(), 3u);
  EXPECT_EQ(faults_.failed_call(), "Files::Stat C:\\a.txt");
  faults_.FailCall(0);
  EXPECT_TRUE(seen().files.Stat("C:\\a.txt"));
  EXPECT_EQ(faults_.calls(), 1u);
  EXPECT_EQ(faults_.failed_call(), "");
}

TEST_F(FaultyPlatformTest, EveryCallOfACopyFailsInTurnAndLeavesTheOldFile) {
  computer_.files.Put("C:\\b.txt", "old");
  ASSERT_EQ(Toolkit().CopyFile("C:\\a.txt", "C:\\b.txt"), FileStatus::kOk);
  const std::uint64_t calls = faults_.calls();
  int refused = 0;
  for (std::uint64_t n = 1; n <= calls; ++n) {
    computer_.files.Put("C:\\b.txt", "old");
    faults_.FailCall(n);
    const FileStatus status = Toolkit().CopyFile("C:\\a.txt", "C:\\b.txt");
    EXPECT_NE(faults_.failed_call(), "") << n;
    EXPECT_EQ(computer_.files.Bytes("C:\\b.txt"), status == FileStatus::kOk ? "0123456789" : "old")
        << faults_.failed_call();
    if (status != FileStatus::kOk) ++refused;
  }
  EXPECT_GT(refused, 4);
}

TEST_F(FaultyPlatformTest, EachCallFailsInItsOwnWay) {
  Platform& p = seen();
  const auto fails = [this] {
    faults_.FailCall(1);
    return true;
  };
  RegistryValue value;
  std::vector<std::string> names;
  RunId run = 1;
  EXPECT_TRUE(fails() && p.files.List("C:").empty());
  EXPECT_TRUE(fails() && !p.files.CanList("C:"));
  EXPECT_TRUE(fails() && p.files.OpenRead("C:\\a.txt") == nullptr);
  EXPECT_TRUE(fails() && p.files.RemoveFile("C:\\a.txt", true) == FileStatus::kFailed);
  EXPECT_TRUE(fails() && !p.files.Space("C:"));
  EXPECT_TRUE(fails() && !p.registry.KeyExists(kUser, "Software"));
  EXPECT_TRUE(fails() && p.registry.ListSubkeys(kUser, "", &names) == registry_status::kDenied);
  EXPECT_TRUE(fails() && p.shell.Run("notepad.exe", WindowStyle::kNormal) == 0);
  EXPECT_TRUE(fails() && p.shell.Execute("open", "a.exe", "", "", 1, &run) < 32);
  EXPECT_EQ(run, 0u);
  EXPECT_TRUE(fails() && p.processes.List().empty());
  EXPECT_TRUE(fails() && p.services.State("Schedule").empty());
  EXPECT_TRUE(fails() && !p.services.Start("Schedule"));
  EXPECT_TRUE(fails() && !p.ftp.Connect("host", 21, "anna", "x"));
  EXPECT_TRUE(fails() && !p.discs.Burn("C:\\a.txt", "a.txt", {}));
  EXPECT_TRUE(fails() && p.discs.FreeBytes() == 0);
  EXPECT_TRUE(fails() && !p.scheduler.Create(JobNamed("Nightly")).saved);
  EXPECT_TRUE(computer_.files.Has("C:\\a.txt"));
  EXPECT_TRUE(computer_.shell.commands.empty());
  EXPECT_TRUE(computer_.services.told.empty());
  EXPECT_TRUE(computer_.scheduler.tasks.empty());
}

TEST_F(FaultyPlatformTest, AFailedCloseClosesAllTheSame) {
  const auto file = seen().files.Create("C:\\b.txt", nullptr);
  faults_.FailCall(1);
  EXPECT_EQ(file->Close(), FileStatus::kFailed);
  EXPECT_EQ(faults_.failed_call(), "OutputFile::Close C:\\b.txt");
  EXPECT_EQ(file->Write("x", 1), FileStatus::kFailed);
}

TEST_F(FaultyPlatformTest, AFileInUseIsLeftAlone) {
  computer_.files.Put("C:\\other", "x");
  faults_.files.SetInUse("c:\\A.TXT", true);
  EXPECT_TRUE(seen().files.Stat("C:\\a.txt"));
  EXPECT_FALSE(seen().files.OpenRead("C:\\a.txt"));
  EXPECT_EQ(Write("C:\\a.txt", "x"), FileStatus::kDenied);
  EXPECT_EQ(seen().files.RemoveFile("C:\\a.txt", true), FileStatus::kDenied);
  EXPECT_EQ(seen().files.Replace("C:\\a.txt", "C:\\b"), FileStatus::kDenied);
  EXPECT_EQ(seen().files.Replace("C:\\other", "C:\\a.txt"), FileStatus::kDenied);
  faults_.files.SetInUse("C:\\a.txt", false);
  EXPECT_EQ(Toolkit().ReadWhole("C:\\a.txt"), "0123456789");
}

TEST_F(FaultyPlatformTest, ReadsFailFromAnOffsetOn) {
  faults_.files.FailReadsAfter("C:\\a.txt", 4);
  const auto file = seen().files.OpenRead("C:\\a.txt");
  char buffer[16];
  EXPECT_EQ(file->Read(buffer, 16), 4);
  EXPECT_EQ(file->Read(buffer, 16), -1);
  EXPECT_TRUE(file->Seek(2));
  EXPECT_EQ(file->Read(buffer, 16), 2);
  faults_.files.FailReadsAfter("C:\\a.txt", std::nullopt);
  EXPECT_EQ(file->Read(buffer, 16), 6);
}

TEST_F(FaultyPlatformTest, AProgramThatIsRefusedDoesNotStart) {
  faults_.shell.RefuseProgram("Notepad.exe");
  EXPECT_EQ(seen().shell.Run("notepad.exe C:\\a.txt", WindowStyle::kNormal), 0u);
  EXPECT_EQ(seen().shell.Run("\"C:\\My Tools\\NOTEPAD.EXE\" x", WindowStyle::kNormal), 0u);
  EXPECT_GT(32, seen().shell.Execute("open", "C:\\Windows\\notepad.exe", "", "", 1, nullptr));
  EXPECT_TRUE(computer_.shell.commands.empty());
  EXPECT_NE(seen().shell.Run("calc.exe", WindowStyle::kNormal), 0u);
}

TEST_F(FaultyPlatformTest, RunsThatHangNeverEndAndDoNothing) {
  faults_.shell.HangRuns(true);
  const RunId run = seen().shell.Run("regedit.exe /s /c \"C:\\a.reg\"", WindowStyle::kHidden);
  EXPECT_NE(run, 0u);
  for (int i = 0; i < 100; ++i) EXPECT_TRUE(seen().shell.IsRunning(run));
  EXPECT_TRUE(computer_.shell.commands.empty());
  faults_.shell.HangRuns(false);
  EXPECT_TRUE(seen().shell.IsRunning(run));
  EXPECT_NE(seen().shell.Run("regedit.exe", WindowStyle::kHidden), run);
  EXPECT_EQ(computer_.shell.commands.size(), 1u);
}

TEST_F(FaultyPlatformTest, DelayedRunsEndLater) {
  computer_.shell.polls = 0;
  faults_.shell.DelayRuns(5, 1000);
  const RunId first = seen().shell.Run("a.exe", WindowStyle::kNormal);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(seen().shell.IsRunning(first));
  EXPECT_FALSE(seen().shell.IsRunning(first));
  const RunId second = seen().shell.Run("a.exe", WindowStyle::kNormal);
  EXPECT_TRUE(seen().shell.IsRunning(second));
  computer_.system.Sleep(1000);
  EXPECT_FALSE(seen().shell.IsRunning(second));
}

TEST_F(FaultyPlatformTest, ASchedulerThatRefuses) {
  EXPECT_TRUE(seen().scheduler.Create(JobNamed("Nightly")).saved);
  faults_.scheduler.SetRefusing(true);
  EXPECT_FALSE(seen().scheduler.Create(JobNamed("Weekly")).saved);
  EXPECT_FALSE(seen().scheduler.Delete("Nightly"));
  EXPECT_TRUE(seen().scheduler.Read("nightly"));
  faults_.scheduler.MakeUnreadable("NIGHTLY");
  EXPECT_FALSE(seen().scheduler.Read("Nightly"));
  EXPECT_EQ(seen().scheduler.Names(), std::vector<std::string>{"Nightly"});
}

TEST_F(FaultyPlatformTest, ServicesRegistryCopiesAndWindows) {
  faults_.services.Refuse("schedule");
  EXPECT_FALSE(seen().services.Start("Schedule"));
  EXPECT_EQ(seen().services.State("Schedule"), "Stopped");
  faults_.registry.SetRefusing(true);
  EXPECT_EQ(seen().registry.CreateKey(kUser, "New"), registry_status::kDenied);
  EXPECT_FALSE(computer_.registry.KeyExists(kUser, "New"));
  faults_.system.SetOtherCopyRuns(true);
  EXPECT_TRUE(seen().system.PreviousInstanceRuns());
  EXPECT_FALSE(seen().system.HoldInstanceMutex("x"));
  faults_.processes.OpenWindow("Quorvale");
  EXPECT_TRUE(seen().processes.WindowExists("Quorvale"));
  EXPECT_FALSE(seen().processes.WindowExists("quorvale"));
}

}  // namespace
}  // namespace quorvale
