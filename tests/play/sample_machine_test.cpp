// Machines made by the program: what they are and what is in them.
#include "play/sample_machine.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/paths.h"
#include "base/text.h"
#include "discovery/pages/FrmTwo.h"
#include "play/page_driver.h"
#include "play/running_machine.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

class Samples : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    plan_.like = GetParam();
    ASSERT_EQ(MakeMachine(scratch_.path() + "/m", plan_), "");
    std::string problem;
    computer_ = RunningMachine::Open(scratch_.path() + "/m", &problem);
    ASSERT_TRUE(computer_) << problem;
    ASSERT_TRUE(FillSample(computer_->platform(), plan_, {10000, 3}));
  }
  FileInfo InfoOf(const std::string& path) {
    return computer_->platform().files.Stat(path).value_or(FileInfo());
  }
  const ScratchFolder scratch_;
  MachinePlan plan_;
  std::unique_ptr<RunningMachine> computer_;
};

TEST_P(Samples, HoldWhatAPersonHasOnAComputer) {
  Files& files = computer_->platform().files;
  const MachineLayout layout = *LayoutOf(plan_.like, plan_.user);
  const std::string documents = layout.documents + "\\";
  EXPECT_TRUE(InfoOf(documents + "hidden notes.txt").attributes & file_attribute::kHidden);
  EXPECT_TRUE(InfoOf(documents + "do not change.txt").attributes & file_attribute::kReadOnly);
  EXPECT_EQ(InfoOf(documents + "empty.txt").name, "empty.txt");
  EXPECT_EQ(InfoOf(documents + "empty.txt").size, 0u);
  EXPECT_GE(InfoOf(documents + "Film of the lake.avi").size, 10000u);
  EXPECT_TRUE(files.Stat(documents + "Letters\\README"));
  EXPECT_EQ(files.Stat(documents + "Far away\\Письмо Ивану.txt").has_value(), layout.IsNtFamily());
  EXPECT_TRUE(InfoOf(documents + "Empty folder").IsFolder());
  EXPECT_TRUE(files.List(documents + "Empty folder").empty());
}

TEST_P(Samples, ShowTheirProductsInTheTree) {
  PageDriver driver(*computer_);
  const ui::TreeView* tree = driver.ShowComputer();
  ASSERT_NE(tree, nullptr) << driver.problem();
  const bool vista = LayoutOf(plan_.like, plan_.user)->IsVista();
  EXPECT_EQ(tree->FindPath("Windows Mail") != nullptr, vista);
  EXPECT_EQ(tree->FindPath("Outlook Express") != nullptr, !vista);
  if (!vista) {
    EXPECT_EQ(tree->FindPath("Outlook Express\\Account Settings")->Children(), 5);
    EXPECT_EQ(tree->FindPath("Outlook Express\\Email Messages")->Children(), 6);
    EXPECT_GE(tree->FindPath("Outlook Express\\Email Messages\\Other Mail Folders")->Children(),
              12);
    EXPECT_EQ(tree->FindPath("Outlook Express\\Blocked Senders")->Children(), 3);
    EXPECT_EQ(tree->FindPath("Outlook Express\\Signature")->Children(), 2);
    EXPECT_EQ(tree->FindPath("Outlook Express\\Stationery")->Children(), 3);
  }
  const ui::TreeNode* profiles = tree->FindPath("Microsoft Outlook\\Identities");
  ASSERT_NE(profiles, nullptr);
  EXPECT_EQ(profiles->Children(), plan_.like == std::string("xp") ? 3 : 2);
  int defaults = 0;
  for (const ui::TreeNode* profile : profiles->ChildNodes()) {
    if (EndsWithNoCase(profile->Text(), " (Default)")) ++defaults;
  }
  EXPECT_EQ(defaults, 1);
  for (const char* group : {"Adult-Junk Senders", "Dictionary", "Macros and VBA programs",
                            "Personal Address Book", "Signatures", "Setting Files"}) {
    const ui::TreeNode* node = tree->FindPath(std::string("Microsoft Outlook\\") + group);
    ASSERT_NE(node, nullptr) << group;
    EXPECT_GT(node->Children(), 0) << group;
  }
}

TEST_P(Samples, AreTheSameForTheSamePlan) {
  const std::string other_folder = scratch_.path() + "/other";
  ASSERT_EQ(MakeMachine(other_folder, plan_), "");
  std::string problem;
  const std::unique_ptr<RunningMachine> other = RunningMachine::Open(other_folder, &problem);
  ASSERT_TRUE(other);
  ASSERT_TRUE(FillSample(other->platform(), plan_, {10000, 3}));
  const std::string file = LayoutOf(plan_.like, plan_.user)->documents + "\\Pictures\\lake.bmp";
  const std::unique_ptr<InputFile> a = computer_->platform().files.OpenRead(file);
  const std::unique_ptr<InputFile> b = other->platform().files.OpenRead(file);
  ASSERT_TRUE(a && b);
  std::string bytes_a(a->Size(), '\0'), bytes_b(b->Size(), '\0');
  ASSERT_GT(a->Read(bytes_a.data(), bytes_a.size()), 0);
  ASSERT_GT(b->Read(bytes_b.data(), bytes_b.size()), 0);
  EXPECT_EQ(bytes_a, bytes_b);
}

std::string LikeName(const testing::TestParamInfo<const char*>& test) {
  return std::string("Like") + test.param;
}
INSTANTIATE_TEST_SUITE_P(All, Samples, testing::Values("98", "2000", "xp", "vista"), LikeName);

TEST(NewMachine, EverySystemOpens) {
  for (const char* like : {"95", "98", "me", "nt40", "2000", "xp", "vista"}) {
    const ScratchFolder scratch;
    MachinePlan plan;
    plan.like = like;
    ASSERT_EQ(MakeMachine(scratch.path() + "/m", plan), "") << like;
    std::string problem;
    const std::unique_ptr<RunningMachine> computer =
        RunningMachine::Open(scratch.path() + "/m", &problem);
    ASSERT_TRUE(computer) << like << problem;
    PageDriver driver(*computer);
    const ui::TreeView* tree = driver.ShowComputer();
    ASSERT_NE(tree, nullptr) << like;
    EXPECT_NE(tree->FindPath("Other Files\\My Desktop Files"), nullptr) << like;
  }
}

TEST(NewMachine, AUserWhoseNameIsNoFolderNameIsRefused) {
  const ScratchFolder scratch;
  for (const char* user : {"", "a\\b", "a/b", "a\nb", "a=b"}) {
    MachinePlan plan;
    plan.user = user;
    EXPECT_NE(MakeMachine(scratch.path() + "/m", plan), "") << user;
    EXPECT_FALSE(std::filesystem::exists(scratch.path() + "/m"));
  }
}

}  // namespace
}  // namespace quorvale
