#include "platform/registry_editor.h"

#include <gtest/gtest.h>

#include "support/faulty_platform.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

class RegistryEditorTest : public testing::Test {
 protected:
  MemoryShell shell_;
  MemorySystem system_;
  CallCount calls_;
  FaultyShell faulty_shell_{shell_, system_, calls_};
  int pumps_ = 0;
  RegistryEditor editor_{faulty_shell_, system_, [this] { ++pumps_; }};
};

TEST_F(RegistryEditorTest, ExportIsAHiddenRun) {
  editor_.Export("C:\\My Data\\a.reg", "HKEY_CURRENT_USER\\Software\\X Y", false);
  ASSERT_EQ(1u, shell_.commands.size());
  EXPECT_EQ("regedit.exe /s /e \"C:\\My Data\\a.reg\" \"HKEY_CURRENT_USER\\Software\\X Y\"",
            shell_.commands[0]);
  EXPECT_EQ(WindowStyle::kHidden, shell_.styles[0]);
}

TEST_F(RegistryEditorTest, ExportWithRaisedRightsAsksTheShell) {
  editor_.Export("C:\\a.reg", "HKEY_CURRENT_USER\\X", true);
  ASSERT_EQ(1u, shell_.commands.size());
  EXPECT_EQ("runas|regedit.exe|/e \"C:\\a.reg\" \"HKEY_CURRENT_USER\\X\"||0", shell_.commands[0]);
}

TEST_F(RegistryEditorTest, ImportIsAHiddenRun) {
  editor_.Import("C:\\a.reg");
  ASSERT_EQ(1u, shell_.commands.size());
  EXPECT_EQ("regedit.exe /s /c \"C:\\a.reg\"", shell_.commands[0]);
  EXPECT_EQ(WindowStyle::kHidden, shell_.styles[0]);
}

TEST_F(RegistryEditorTest, StartingDoesNotWait) {
  editor_.Export("C:\\a.reg", "HKEY_CURRENT_USER\\X", false);
  editor_.Import("C:\\a.reg");
  EXPECT_EQ(0u, system_.ticks);
  EXPECT_EQ(0, pumps_);
}

TEST_F(RegistryEditorTest, WaitLetsEveryRunEndAndPumps) {
  shell_.polls = 5;
  editor_.Export("C:\\a.reg", "HKEY_CURRENT_USER\\X", false);
  editor_.Export("C:\\b.reg", "HKEY_CURRENT_USER\\Y", true);
  EXPECT_TRUE(editor_.WaitForRuns());
  EXPECT_LT(shell_.left[1], 0);
  EXPECT_LT(shell_.left[2], 0);
  EXPECT_EQ(10, pumps_);
  const std::uint64_t after = system_.ticks;
  editor_.WaitForRuns();
  EXPECT_EQ(after, system_.ticks);
}

TEST_F(RegistryEditorTest, RunThatNeverEndsIsWaitedForThirtySeconds) {
  faulty_shell_.HangRuns(true);
  editor_.Import("C:\\a.reg");
  editor_.Import("C:\\b.reg");
  EXPECT_FALSE(editor_.WaitForRuns());
  EXPECT_GE(system_.ticks, 60000u);
  EXPECT_LT(system_.ticks, 61000u);
}

TEST_F(RegistryEditorTest, RefusedRunIsNotWaitedFor) {
  faulty_shell_.RefuseProgram("regedit.exe");
  editor_.Import("C:\\a.reg");
  editor_.Export("C:\\a.reg", "HKEY_CURRENT_USER\\X", true);
  editor_.WaitForRuns();
  EXPECT_EQ(0u, system_.ticks);
}

TEST(RegistryEditorReentry, WaitInsideAWaitEnds) {
  MemoryShell shell;
  MemorySystem system;
  shell.polls = 4;
  RegistryEditor* inner = nullptr;
  int depth = 0;
  RegistryEditor editor(shell, system, [&] {
    if (++depth == 1) {
      inner->Import("C:\\second.reg");
      inner->WaitForRuns();
    }
  });
  inner = &editor;
  editor.Import("C:\\first.reg");
  editor.WaitForRuns();
  EXPECT_LT(shell.left[1], 0);
  EXPECT_LT(shell.left[2], 0);
}

}  // namespace
}  // namespace quorvale
