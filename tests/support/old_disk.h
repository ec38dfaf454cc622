// What tests of old disks share: the console's commands with what they print, and the disk of a
// computer that the sample filled.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/console/console.h"
#include "play/old_disk_sample.h"
#include "play/round_trip.h"
#include "play/running_machine.h"
#include "play/sample_machine.h"
#include "play/scratch_folder.h"

namespace quorvale::test {

struct ConsoleAnswer {
  ExitStatus status = ExitStatus::kDone;
  std::string out, error;
};

inline ConsoleAnswer Command(const std::vector<std::string>& arguments) {
  std::istringstream in;
  std::ostringstream out, error;
  Terminal terminal{in, out, error};
  const ExitStatus status = RunConsole(arguments, terminal);
  return {status, out.str(), error.str()};
}

// A sample computer in the folder "dead", of which only its drives go on.
class OldDiskTest : public testing::Test {
 protected:
  void MakeDead() {
    ASSERT_EQ(MakeMachine(Place("dead"), plan_.machine), "");
    std::string problem;
    dead_ = RunningMachine::Open(Place("dead"), &problem);
    ASSERT_NE(dead_, nullptr) << problem;
    SampleOptions options;
    options.big_file_bytes = 100000;
    options.messages_per_folder = 3;
    ASSERT_TRUE(FillSample(dead_->platform(), plan_.machine, options));
  }
  std::string Place(const std::string& name) const { return scratch_.path() + "/" + name; }
  std::string Disk() const { return Place("dead/drive_c"); }
  std::string OtherDrive() const { return "D=" + Place("dead/drive_d"); }
  // A path of the machine as it stands in the folder of the host.
  std::string OnDisk(const std::string& path) const { return MachineHostPath(Place("dead"), path); }

  // Everything of the user, with what the sample adds by hand, to "out/Mine.obk".
  void BackUp() {
    std::vector<std::string> words = {"--disk",  Disk(),       "--user",    plan_.machine.user,
                                      "--drive", OtherDrive(), "backup",    "Mine",
                                      "--all",   "--to",       Place("out")};
    std::filesystem::create_directory(Place("out"));
    const SampleExtras extras = ExtrasOf(plan_.machine);
    for (const std::string& folder : extras.folders)
      words.insert(words.end(), {"--add-folder", folder});
    for (const std::string& file : extras.files) words.insert(words.end(), {"--add-file", file});
    const ConsoleAnswer backup = Command(words);
    // The sample's one file without a dot in its name stays out.
    ASSERT_EQ(backup.status, ExitStatus::kIncomplete) << backup.out << backup.error;
    EXPECT_TRUE(backup.error.ends_with("\n1 file is not in this backup.\n")) << backup.error;
  }

  // That backup onto a new computer of the same system, compared with the dead one.
  void RestoreAndCompare(int least_files, int least_keys) {
    MachinePlan target = plan_.machine;
    target.user = "Bernd";
    target.identity = "{B7D2E8A4-1F36-4C09-8E57-93A1D04C6F22}";
    ASSERT_EQ(MakeMachine(Place("new"), target), "");
    const ConsoleAnswer restore =
        Command({"--machine", Place("new"), "restore", Place("out/Mine.obk"), "--all", "--yes"});
    // What the backup does not hold is told again.
    ASSERT_EQ(restore.status, ExitStatus::kIncomplete) << restore.out << restore.error;
    std::string problem;
    const auto restored = RunningMachine::Open(Place("new"), &problem);
    ASSERT_NE(restored, nullptr) << problem;
    RoundTrip round_trip(*dead_, plan_.machine, *restored, target);
    const RoundTripVerdict verdict = round_trip.Compare();
    for (const std::string& difference : verdict.differences) ADD_FAILURE() << difference;
    EXPECT_TRUE(verdict.AllWell());
    EXPECT_GT(verdict.identical_files, least_files);
    EXPECT_GT(verdict.present_keys, least_keys);
  }

  ScratchFolder scratch_;
  OldDiskPlan plan_;
  std::unique_ptr<RunningMachine> dead_;
};

}  // namespace quorvale::test
