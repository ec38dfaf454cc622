// Backup on one machine, restore on another: every kind of item alone and all together, on each
// system and between them.
#include "play/round_trip.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "platform/file_toolkit.h"
#include "play/page_driver.h"
#include "play/sample_machine.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

MachinePlan SourcePlan(const std::string& like) {
  MachinePlan plan;
  plan.like = like;
  return plan;
}

MachinePlan TargetPlan(const std::string& like) {
  MachinePlan plan;
  plan.like = like;
  plan.user = "Bernd";
  plan.computer = "LAPTOP";
  plan.identity = "{B7D2E8A4-1F36-4C09-8E57-93A1D04C6F22}";
  plan.drives = {{"C", "fixed"}, {"D", "fixed"}, {"F", "removable"}};
  return plan;
}

class Machines {
 public:
  Machines(const MachinePlan& source, const MachinePlan& target)
      : source_plan_(source), target_plan_(target) {
    source_ = Make("source", source);
    target_ = Make("target", target);
    if (source_) {
      EXPECT_TRUE(FillSample(source_->platform(), source, {30000, 3}));
    }
  }

  // A backup of these kinds, restored completely. The verdict is on the same kinds.
  RoundTripVerdict RoundTripOf(const std::set<SampleKind>& kinds) {
    if (!source_ || !target_) return {};
    Backup(kinds);
    Restore();
    return Verdict(kinds);
  }
  void Backup(const std::set<SampleKind>& kinds) {
    BackupWishes job;
    job.name = "Round trip";
    job.to = scratch_.path();
    const bool vista = LayoutOf(source_plan_.like, "x")->IsVista();
    const SampleExtras extras = ExtrasOf(source_plan_);
    const std::vector<std::pair<SampleKind, std::string>> nodes = {
        {SampleKind::kMail, vista ? "Windows Mail" : "Outlook Express"},
        {SampleKind::kOutlook, "Microsoft Outlook"},
        {SampleKind::kBrowser, "Internet Explorer"},
        {SampleKind::kDocuments, vista ? "Other Files\\Documents" : "Other Files\\My Documents"},
        {SampleKind::kDesktop, "Other Files\\My Desktop Files"}};
    for (const auto& [kind, node] : nodes) {
      if (kinds.contains(kind)) job.ticks.push_back(node);
    }
    if (kinds.contains(SampleKind::kAddedFolders)) job.add_folders = extras.folders;
    if (kinds.contains(SampleKind::kAddedFiles)) job.add_files = extras.files;
    source_->ui().box_handler = AnswerYes;
    PageDriver driver(*source_);
    EXPECT_EQ(driver.Backup(job), Outcome::kDone) << driver.problem() << LastBox(*source_);
  }
  void Restore() {
    RestoreWishes job;
    job.file = scratch_.path() + "/Round trip.obk";
    job.all = true;
    target_->ui().box_handler = AnswerYes;
    PageDriver driver(*target_);
    EXPECT_EQ(driver.Restore(job), Outcome::kDone) << driver.problem() << LastBox(*target_);
    EXPECT_EQ(target_->EndProgram(), "");
  }
  RoundTripVerdict Verdict(const std::set<SampleKind>& kinds) {
    const RoundTripVerdict verdict =
        RoundTrip(*source_, source_plan_, *target_, target_plan_).Compare(kinds);
    for (const std::string& difference : verdict.differences) ADD_FAILURE() << difference;
    EXPECT_TRUE(verdict.AllWell());
    return verdict;
  }
  RunningMachine& source() { return *source_; }
  RunningMachine& target() { return *target_; }

 private:
  static std::optional<ui::Answer> AnswerYes(const ui::MessageBoxRequest& request) {
    return request.buttons == ui::Buttons::kOk ? ui::Answer::kOk : ui::Answer::kYes;
  }
  static std::string LastBox(RunningMachine& computer) {
    return computer.ui().boxes.empty() ? "" : computer.ui().boxes.back().request.text;
  }
  std::unique_ptr<RunningMachine> Make(const std::string& name, const MachinePlan& plan) {
    const std::string folder = scratch_.path() + "/" + name;
    std::string problem = MakeMachine(folder, plan);
    EXPECT_EQ(problem, "");
    std::unique_ptr<RunningMachine> computer = RunningMachine::Open(folder, &problem);
    EXPECT_TRUE(computer) << problem;
    return computer;
  }

  const ScratchFolder scratch_;
  MachinePlan source_plan_, target_plan_;
  std::unique_ptr<RunningMachine> source_, target_;
};

struct KindCase {
  SampleKind kind;
  const char* name;
  int least_files;
  int least_keys;
};

class EachKindAlone : public testing::TestWithParam<std::tuple<KindCase, const char*>> {};

TEST_P(EachKindAlone, ComesBackForAnotherUser) {
  const auto& [kind, like] = GetParam();
  Machines machines(SourcePlan(like), TargetPlan(like));
  const RoundTripVerdict verdict = machines.RoundTripOf({kind.kind});
  EXPECT_GE(verdict.files, kind.least_files);
  EXPECT_GE(verdict.keys, kind.least_keys);
  // Nothing that was not taken has come along.
  if (kind.kind != SampleKind::kDesktop) {
    EXPECT_FALSE(
        machines.target().platform().files.Stat(LayoutOf(like, "Bernd")->desktop + "\\To do.txt"));
  }
}

std::string KindCaseName(const testing::TestParamInfo<std::tuple<KindCase, const char*>>& test) {
  return std::string(std::get<0>(test.param).name) + "On" + std::get<1>(test.param);
}

INSTANTIATE_TEST_SUITE_P(
    RoundTrip, EachKindAlone,
    testing::Combine(testing::Values(KindCase{SampleKind::kMail, "Mail", 20, 3},
                                     KindCase{SampleKind::kOutlook, "Outlook", 9, 5},
                                     KindCase{SampleKind::kBrowser, "Browser", 7, 4},
                                     KindCase{SampleKind::kDocuments, "Documents", 20, 0},
                                     KindCase{SampleKind::kDesktop, "Desktop", 3, 0},
                                     KindCase{SampleKind::kAddedFolders, "AddedFolders", 3, 0},
                                     KindCase{SampleKind::kAddedFiles, "AddedFiles", 1, 0}),
                     testing::Values("98", "xp", "vista")),
    KindCaseName);

class AllTogether : public testing::TestWithParam<std::tuple<const char*, const char*>> {};

TEST_P(AllTogether, ComesBackAsFarAsTheSystemsShareIt) {
  const auto& [from, to] = GetParam();
  Machines machines(SourcePlan(from), TargetPlan(to));
  const RoundTripVerdict verdict = machines.RoundTripOf(AllSampleKinds());
  EXPECT_GT(verdict.files, 20);
  EXPECT_GT(verdict.folders, 4);
  EXPECT_GT(verdict.keys, 4);
}

std::string SystemsName(const testing::TestParamInfo<std::tuple<const char*, const char*>>& test) {
  return std::string("From") + std::get<0>(test.param) + "To" + std::get<1>(test.param);
}

INSTANTIATE_TEST_SUITE_P(RoundTrip, AllTogether,
                         testing::Combine(testing::Values("98", "xp", "vista"),
                                          testing::Values("98", "2000", "xp", "vista")),
                         SystemsName);

// Neither computer's code page holds the name of its user, nor the folders and files that he has.
TEST(RoundTripOutsideTheCodePage, EverythingComesBackForAnotherUser) {
  MachinePlan from = SourcePlan("xp");
  from.user = "Łukasz";
  MachinePlan to = TargetPlan("xp");
  to.user = "Юрий 山";
  Machines machines(from, to);
  const RoundTripVerdict verdict = machines.RoundTripOf(AllSampleKinds());
  EXPECT_GT(verdict.files, 50);
  EXPECT_GT(verdict.keys, 10);
}

// The settings file of the one is another text under the code page of the other.
TEST(RoundTripOutsideTheCodePage, ARussianBackupComesBackUnderTheWesternCodePage) {
  MachinePlan from = SourcePlan("xp");
  from.user = "Юрий";
  from.codepage = 1251;
  MachinePlan to = TargetPlan("xp");
  to.user = "Łukasz";
  Machines machines(from, to);
  const RoundTripVerdict verdict = machines.RoundTripOf(AllSampleKinds());
  EXPECT_GT(verdict.files, 50);
  EXPECT_GT(verdict.keys, 10);
}

// The same computer after its data was destroyed.
TEST(RoundTripOnOneComputer, EverythingLostComesBack) {
  MachinePlan twin = SourcePlan("xp");
  Machines machines(SourcePlan("xp"), twin);
  ASSERT_TRUE(FillSample(machines.target().platform(), twin, {30000, 3}));
  machines.Backup(AllSampleKinds());
  FileToolkit files(machines.target().platform().files, [] {});
  const MachineLayout layout = *LayoutOf("xp", "Anna");
  ASSERT_TRUE(files.KillFolder(layout.documents));
  ASSERT_TRUE(files.KillFolder(layout.favorites));
  ASSERT_TRUE(files.KillFolder(MailStoreFolder(twin, layout)));
  ASSERT_TRUE(files.KillFolder("D:\\Projects"));
  ASSERT_EQ(files.WriteWhole(layout.desktop + "\\To do.txt", "spoilt"), FileStatus::kOk);
  RegistryStore& registry = machines.target().platform().registry;
  ASSERT_EQ(registry.SetValue(RegistryRoot::kCurrentUser,
                              "Software\\Microsoft\\Internet Account Manager\\Accounts\\00000001",
                              "POP3 Server", registry_type::kString, std::string("lost\0", 5)),
            registry_status::kOk);
  machines.Restore();
  // Outlook's archive goes home to the folder that the profile then names.
  machines.Verdict(AllSampleKinds());
}

// The comparison itself must see what is wrong.
TEST(RoundTripComparison, SeesEachKindOfDifference) {
  MachinePlan twin = SourcePlan("xp");
  Machines machines(SourcePlan("xp"), twin);
  Platform& target = machines.target().platform();
  ASSERT_TRUE(FillSample(target, twin, {30000, 3}));
  const auto verdict = [&](const std::set<SampleKind>& kinds) {
    return RoundTrip(machines.source(), SourcePlan("xp"), machines.target(), twin).Compare(kinds);
  };
  EXPECT_TRUE(verdict({SampleKind::kDesktop}).AllWell());
  EXPECT_TRUE(verdict({SampleKind::kMail}).AllWell());
  EXPECT_TRUE(verdict({SampleKind::kBrowser}).AllWell());
  const MachineLayout layout = *LayoutOf("xp", "Anna");
  const std::string file = layout.desktop + "\\To do.txt";
  const FileTime time = target.files.Stat(file)->modified;
  ASSERT_EQ(target.files.SetModified(file, time + 20000000), FileStatus::kOk);
  EXPECT_EQ(verdict({SampleKind::kDesktop}).differences,
            std::vector<std::string>{file + " has another time"});
  ASSERT_EQ(target.files.SetModified(file, time), FileStatus::kOk);
  ASSERT_EQ(target.files.SetAttributes(file, file_attribute::kReadOnly), FileStatus::kOk);
  EXPECT_EQ(verdict({SampleKind::kDesktop}).differences,
            std::vector<std::string>{file + " has other attributes"});
  ASSERT_EQ(target.files.RemoveFile(file, true), FileStatus::kOk);
  EXPECT_EQ(verdict({SampleKind::kDesktop}).differences,
            std::vector<std::string>{file + " is missing"});
  const std::string url = layout.favorites + "\\Weather.url";
  FileToolkit files(target.files, [] {});
  ASSERT_EQ(files.WriteWhole(url, "[InternetShortcut]"), FileStatus::kOk);
  ASSERT_EQ(
      target.registry.DeleteValue(RegistryRoot::kCurrentUser,
                                  "Software\\Microsoft\\Internet Explorer\\TypedURLs", "url1"),
      registry_status::kOk);
  const RoundTripVerdict browser = verdict({SampleKind::kBrowser});
  EXPECT_EQ(browser.identical_files, browser.files - 1);
  EXPECT_EQ(browser.present_keys, browser.keys - 1);
}

}  // namespace
}  // namespace quorvale
