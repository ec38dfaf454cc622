// A sample computer that backs up and restores through the pages, for round trips between two.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "play/page_driver.h"
#include "play/running_machine.h"
#include "play/sample_machine.h"
#include "support/temp_folder.h"

namespace quorvale::restore_test {

// A sample computer in a folder of its own.
class Machine {
 public:
  Machine(const std::string& like, const std::string& user, const std::string& identity,
          bool filled) {
    plan.like = like;
    plan.user = user;
    plan.identity = identity;
    plan.drives.push_back({"F", "fixed"});
    EXPECT_EQ(MakeMachine(folder_.path(), plan), "");
    std::string problem;
    computer = RunningMachine::Open(folder_.path(), &problem);
    EXPECT_EQ(problem, "");
    layout = *LayoutOf(like, user);
    EXPECT_TRUE(!filled || FillSample(computer->platform(), plan, {4096, 4}));
  }

  ~Machine() { computer.reset(); }  // before its folder goes

  std::string HostPath(const std::string& path) { return MachineHostPath(folder_.path(), path); }
  void SetVersion(const std::string& version) {
    RegistryStore& registry = computer->platform().registry;
    const std::string key = "Outlook.Application\\CurVer";
    registry.CreateKey(RegistryRoot::kClassesRoot, key);
    registry.SetValue(RegistryRoot::kClassesRoot, key, "", registry_type::kString,
                      "Outlook.Application." + version + '\0');
    // The backup looks for the program itself.
    registry.CreateKey(RegistryRoot::kLocalMachine,
                       "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\OUTLOOK.EXE");
  }
  // The archive's path on this host.
  std::string BackUp(const std::vector<std::string>& ticks,
                     const std::string& name = "Round trip") {
    PageDriver driver(*computer);
    BackupWishes job;
    job.name = name;
    job.all = ticks.empty();
    job.ticks = ticks;
    const SampleExtras extras = ExtrasOf(plan);
    if (job.all) {
      job.add_folders = extras.folders;
      job.add_files = extras.files;
    }
    AnswerAll();
    EXPECT_EQ(driver.Backup(job), Outcome::kDone) << driver.problem() << LastBox();
    return HostPath(driver.archive());
  }
  void Restore(const std::string& archive, const std::vector<std::string>& ticks, bool keep = false,
               bool no_restore_folder = false) {
    PageDriver driver(*computer);
    RestoreWishes job;
    job.file = archive;
    job.all = ticks.empty();
    job.ticks = ticks;
    job.keep = keep;
    job.no_restore_folder = no_restore_folder;
    AnswerAll();
    EXPECT_EQ(driver.Restore(job), Outcome::kDone) << driver.problem() << LastBox();
  }
  std::string LastBox() const {
    return computer->ui().boxes.empty() ? "" : computer->ui().boxes.back().request.text;
  }

  MachinePlan plan;
  MachineLayout layout;
  std::unique_ptr<RunningMachine> computer;

 private:
  void AnswerAll() {
    computer->ui().box_handler = [](const ui::MessageBoxRequest&) { return ui::Answer::kOk; };
  }
  const TempFolder folder_;
};

}  // namespace quorvale::restore_test
