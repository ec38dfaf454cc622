#include "app/console/disk_demo.h"

#include <filesystem>
#include <ostream>

#include "app/console/console_screen.h"
#include "app/console/demo_part.h"
#include "app/console/disk_commands.h"
#include "play/new_machine.h"
#include "play/old_disk_sample.h"
#include "play/page_driver.h"
#include "play/round_trip.h"
#include "play/running_machine.h"
#include "play/sample_machine.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

class DiskDemo : private DemoPart {
 public:
  DiskDemo(const std::string& folder, Terminal& terminal) : DemoPart(terminal), folder_(folder) {
    dead_plan_.machine.user = "Emma";
    dead_plan_.other_users = {"Gustav"};
    new_plan_.like = "vista";
    new_plan_.user = "Frida";
    new_plan_.computer = "LAPTOP";
    new_plan_.identity = "{C1A8D5F3-2B47-4E1A-9F68-A4B2E15D7033}";
    new_plan_.drives = {{"C", "fixed"}, {"D", "fixed"}, {"F", "removable"}};
  }

  ExitStatus Run() { return StatusOf(MakeDisk() && List() && Backup() && Restore() && Verify()); }

 private:
  std::string Place(int which) const { return folder_ + "/" + kDiskDemoFolders[which]; }
  std::string Disk() const { return Place(0) + "/drive_c"; }

  // The computer as it was, so that there is something to compare with. Only its drives go on.
  bool MakeDisk() {
    std::string problem = MakeMachine(Place(0), dead_plan_.machine);
    if (!problem.empty()) return Fail(problem);
    dead_ = RunningMachine::Open(Place(0), &problem);
    if (!dead_) return Fail(problem);
    if (!FillSample(dead_->platform(), dead_plan_.machine)) return Fail("no sample can be made.");
    problem = WriteHives(*dead_, dead_plan_);
    if (!problem.empty()) return Fail(problem);
    out() << "The disk of a dead computer with Windows XP is in " << Disk() << ".\n"
          << "Whom it knows (quorvale machine users):\n";
    return true;
  }

  bool List() {
    if (!disk_.Open(Disk(), {{'D', Place(0) + "/drive_d"}}) || !disk_.ListUsers()) {
      return Fail(disk_.problem());
    }
    return true;
  }

  bool Backup() {
    out() << "\nEverything of " << dead_plan_.machine.user << " is backed up:\n" << std::flush;
    if (!disk_.MakeMachine(dead_plan_.machine.user, Place(1))) return Fail(disk_.problem());
    std::string problem;
    const auto computer = RunningMachine::Open(Place(1), &problem);
    if (!computer) return Fail(problem);
    const ConsoleScreen screen(*computer, terminal_, true);
    BackupWishes job;
    job.name = "From the old disk";
    job.all = true;
    job.to = folder_;
    const SampleExtras extras = ExtrasOf(dead_plan_.machine);
    job.add_folders = extras.folders;
    job.add_files = extras.files;
    PageDriver driver(*computer);
    if (!Succeeded(driver.Backup(job), driver, "the backup was not made.")) return false;
    archive_ = folder_ + "/" + job.name + ".obk";
    problem = computer->EndProgram();
    return problem.empty() || Fail(problem);
  }

  bool Restore() {
    out() << "\nIt is restored onto a new computer with Windows Vista, its user " << new_plan_.user
          << ":\n"
          << std::flush;
    std::string problem = MakeMachine(Place(2), new_plan_);
    if (!problem.empty()) return Fail(problem);
    new_ = RunningMachine::Open(Place(2), &problem);
    if (!new_) return Fail(problem);
    const ConsoleScreen screen(*new_, terminal_, true);
    RestoreWishes job;
    job.file = archive_;
    job.all = true;
    PageDriver driver(*new_);
    if (!Succeeded(driver.Restore(job), driver, "the backup was not restored.")) return false;
    problem = new_->EndProgram();
    return problem.empty() || Fail(problem);
  }

  // With the computer as it was, not with what was read off its disk.
  bool Verify() {
    const RoundTripVerdict verdict =
        RoundTrip(*dead_, dead_plan_.machine, *new_, new_plan_).Compare();
    out() << "\n";
    for (const std::string& difference : verdict.differences) out() << "  " << difference << "\n";
    out() << verdict.present_folders << " of " << verdict.folders << " folders present.\n"
          << verdict.identical_files << " of " << verdict.files << " files identical, "
          << verdict.present_keys << " of " << verdict.keys << " registry keys present.\n"
          << "The backup is left at " << archive_ << ".\n";
    return verdict.AllWell();
  }

  const std::string folder_;
  OldDiskPlan dead_plan_;
  MachinePlan new_plan_;
  DiskCommands disk_{terminal_};
  std::unique_ptr<RunningMachine> dead_, new_;
  std::string archive_;
};

}  // namespace

ExitStatus RunDiskDemo(const std::string& folder, Terminal& terminal) {
  return DiskDemo(folder, terminal).Run();
}

}  // namespace quorvale
