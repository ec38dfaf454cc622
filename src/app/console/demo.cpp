#include "app/console/demo.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <ostream>
#include <vector>

#include "app/console/account_lines.h"
#include "app/console/console_screen.h"
#include "app/console/demo_part.h"
#include "app/console/disk_demo.h"
#include "archive/archive.h"
#include "backup/format/backup_file.h"
#include "base/text.h"
#include "play/new_machine.h"
#include "play/page_driver.h"
#include "play/round_trip.h"
#include "play/running_machine.h"
#include "play/sample_machine.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

constexpr size_t kListedEntries = 25;
constexpr size_t kListedDifferences = 20;

std::string MachineName(const std::string& user) { return "computer of " + user; }

// One computer's backup, restored onto another one.
class Demo : private DemoPart {
 public:
  struct People {
    std::string like;
    std::string system;  // its name for a person
    std::string from, to;
  };

  Demo(const fs::path& folder, const People& people, Terminal& terminal)
      : DemoPart(terminal), folder_(folder), people_(people) {
    source_plan_.like = people.like;
    source_plan_.user = people.from;
    target_plan_.like = people.like;
    target_plan_.user = people.to;
    target_plan_.computer = "LAPTOP";
    target_plan_.identity = "{B7D2E8A4-1F36-4C09-8E57-93A1D04C6F22}";
    target_plan_.drives = {{"C", "fixed"}, {"D", "fixed"}, {"F", "removable"}};
  }

  ExitStatus Run() {
    return StatusOf(MakeMachines() && Backup() && List() && Restore() && Verify());
  }

 private:
  bool MakeMachines() {
    const std::string source = (folder_ / MachineName(people_.from)).string();
    const std::string target = (folder_ / MachineName(people_.to)).string();
    std::string problem = MakeMachine(source, source_plan_);
    if (problem.empty()) problem = MakeMachine(target, target_plan_);
    if (!problem.empty()) return Fail(problem);
    source_ = RunningMachine::Open(source, &problem);
    target_ = RunningMachine::Open(target, &problem);
    if (!source_ || !target_) return Fail(problem);
    if (!FillSample(source_->platform(), source_plan_)) {
      return Fail(source + " could not be filled.");
    }
    out() << "A computer with " << people_.system << ", its user " << source_plan_.user
          << ", is in " << source << ".\n";
    return true;
  }

  bool Backup() {
    out() << "\nEverything on it is backed up:\n" << std::flush;
    const ConsoleScreen screen(*source_, terminal_, true);
    BackupWishes job;
    job.name = "Everything of " + source_plan_.user;
    job.all = true;
    job.to = folder_.string();
    job.log = true;
    const SampleExtras extras = ExtrasOf(source_plan_);
    job.add_folders = extras.folders;
    job.add_files = extras.files;
    PageDriver driver(*source_);
    if (!Succeeded(driver.Backup(job), driver, "the backup was not made.")) return false;
    archive_ = (folder_ / (job.name + ".obk")).string();
    return true;
  }

  bool List() {
    zip::Archive archive(source_->platform());
    archive.archive_name = ComputerPath(archive_);
    std::vector<zip::Entry> entries;
    if (archive.List(&entries) != zip::Result::kDone) return Fail(archive_ + " cannot be listed.");
    std::uint64_t bytes = 0;
    for (const zip::Entry& entry : entries) bytes += entry.size;
    out() << "\nThe backup holds " << entries.size() << " entries of " << bytes / 1024
          << " KB, among them:\n";
    const size_t step = std::max<size_t>(1, entries.size() / kListedEntries);
    for (size_t i = 0; i < entries.size(); i += step) {
      out() << "  " << entries[i].name << "  " << entries[i].size << "\n";
    }
    return ListTable();
  }

  bool ListTable() {
    const FoundTable found = BackupFile(*source_->app(), ComputerPath(archive_), "").Table();
    if (found.table == nullptr) return Fail(archive_ + " has no member table.");
    const MemberTable& table = *found.table;
    out() << "Its member table, " << TableEntryName(table.stem) << ", says for "
          << table.members.size() << " entries to which of " << table.items.size()
          << " items they belong.\nThe account of the run: " << source_->app()->account().Sentence()
          << "\n";
    PrintEntries(source_->app()->account(), out(), "  ");
    return true;
  }

  bool Restore() {
    out() << "\nIt is restored onto a new computer, its user " << target_plan_.user << ":\n"
          << std::flush;
    const ConsoleScreen screen(*target_, terminal_, true);
    RestoreWishes job;
    job.file = archive_;
    job.all = true;
    PageDriver driver(*target_);
    if (!Succeeded(driver.Restore(job), driver, "the backup was not restored.")) return false;
    const std::string problem = target_->EndProgram();
    return problem.empty() || Fail(problem);
  }

  bool Verify() {
    RoundTrip round_trip(*source_, source_plan_, *target_, target_plan_);
    RoundTripVerdict sum;
    out() << "\n";
    for (const SampleKind kind : AllSampleKinds()) {
      const RoundTripVerdict verdict = round_trip.Compare({kind});
      out() << "  " << CaptionOf(kind) << ": " << verdict.identical_files << " of " << verdict.files
            << " files, " << verdict.present_keys << " of " << verdict.keys << " registry keys\n";
      sum.Add(verdict);
    }
    for (size_t i = 0; i < sum.differences.size() && i < kListedDifferences; ++i) {
      out() << "  " << sum.differences[i] << "\n";
    }
    if (sum.differences.size() > kListedDifferences) {
      out() << "  and " << sum.differences.size() - kListedDifferences << " more\n";
    }
    out() << "\n"
          << sum.present_folders << " of " << sum.folders << " folders present.\n"
          << sum.identical_files << " of " << sum.files << " files identical, " << sum.present_keys
          << " of " << sum.keys << " registry keys present.\n"
          << "The backup is left at " << archive_ << ".\n";
    return sum.AllWell();
  }

  const char* CaptionOf(SampleKind kind) const {
    switch (kind) {
      case SampleKind::kMail:
        return people_.like == "vista" ? "Windows Mail" : "Outlook Express";
      case SampleKind::kOutlook:
        return "Microsoft Outlook";
      case SampleKind::kBrowser:
        return "Internet Explorer";
      case SampleKind::kDocuments:
        return "Documents";
      case SampleKind::kDesktop:
        return "Desktop";
      case SampleKind::kAddedFolders:
        return "Added folders";
      case SampleKind::kAddedFiles:
        return "Added files";
    }
    return "";
  }

  const fs::path folder_;
  const People people_;
  MachinePlan source_plan_, target_plan_;
  std::unique_ptr<RunningMachine> source_, target_;
  std::string archive_;
};

// Two pairs of computers, so that every product stands in a verdict.
const std::vector<Demo::People>& AllPeople() {
  static const std::vector<Demo::People> people = {{"xp", "Windows XP", "Anna", "Bernd"},
                                                   {"vista", "Windows Vista", "Clara", "Dora"}};
  return people;
}

// Removes the machines but not the backups.
void RemoveMachines(const fs::path& folder) {
  std::error_code error;
  for (const Demo::People& people : AllPeople()) {
    fs::remove_all(folder / MachineName(people.from), error);
    fs::remove_all(folder / MachineName(people.to), error);
  }
  for (const char* name : kDiskDemoFolders) fs::remove_all(folder / name, error);
}

}  // namespace

ExitStatus RunDemo(const std::string& folder, Terminal& terminal) {
  std::error_code error;
  fs::path place = folder;
  if (folder.empty()) {
    std::string pattern = (fs::temp_directory_path(error) / "quorvale_demo_XXXXXX").string();
    if (error || mkdtemp(pattern.data()) == nullptr) {
      terminal.error << "quorvale: no folder for temporary files can be made.\n";
      return ExitStatus::kFailed;
    }
    place = pattern;
  } else {
    fs::create_directories(place, error);
  }
  ExitStatus status = ExitStatus::kDone;
  for (const Demo::People& people : AllPeople()) {
    if (status != ExitStatus::kDone) break;
    if (&people != &AllPeople().front()) terminal.out << "\n";
    status = Demo(fs::absolute(place, error), people, terminal).Run();
  }
  if (status == ExitStatus::kDone) {
    terminal.out << "\n";
    status = RunDiskDemo(fs::absolute(place, error).string(), terminal);
  }
  if (folder.empty()) RemoveMachines(place);
  return status;
}

}  // namespace quorvale
