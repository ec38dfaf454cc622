// The commands that take an old disk: a sample of Windows XP with hives, one of Windows 98, an NTFS
// image. Compared is with the computer as it was.
#include "app/console/disk_commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "base/text.h"
#include "platform/host/host_platform.h"
#include "support/classic_hive_writer.h"
#include "support/old_disk.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;
using test::Command;
using Answer = test::ConsoleAnswer;

// Each file of a folder with its size and time, and how its bytes begin.
std::map<std::string, std::string> Inventory(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    std::string what = std::to_string(entry.last_write_time().time_since_epoch().count());
    if (entry.is_regular_file()) what += " " + std::to_string(entry.file_size());
    files[entry.path().string()] = what;
  }
  return files;
}

class OldDiskCommands : public test::OldDiskTest {
 protected:
  void SetUp() override {
    plan_.other_users = {"J\xC3\xBCrgen"};
    ASSERT_NO_FATAL_FAILURE(MakeDead());
    ASSERT_EQ(WriteHives(*dead_, plan_), "");
    disk_ = Disk();
  }

  std::string disk_;
};

TEST_F(OldDiskCommands, UsersAreListedWithWhatTheyHave) {
  const Answer answer = Command({"machine", "users", disk_});
  ASSERT_EQ(answer.status, ExitStatus::kDone) << answer.error;
  std::istringstream lines(answer.out);
  std::string system, anna, juergen, none;
  std::getline(lines, system);
  std::getline(lines, anna);
  std::getline(lines, juergen);
  EXPECT_FALSE(std::getline(lines, none)) << none;
  EXPECT_EQ(system, "Microsoft Windows XP, computer OFFICE");
  EXPECT_TRUE(anna.starts_with("Anna\tC:\\Documents and Settings\\Anna\t2009-03-")) << anna;
  EXPECT_TRUE(anna.ends_with("\tOutlook Express, Microsoft Outlook, Internet Explorer")) << anna;
  EXPECT_TRUE(juergen.starts_with("J\xC3\xBCrgen\tC:\\Documents and Settings\\J\xC3\xBCrgen\t"));
}

TEST_F(OldDiskCommands, ABackupOfTheDiskComesBackWholeAndTheDiskStaysAsItIs) {
  const auto before = Inventory(Place("dead"));
  ASSERT_NO_FATAL_FAILURE(BackUp());
  EXPECT_EQ(Inventory(Place("dead")), before);
  RestoreAndCompare(60, 40);
}

// Each value of the user's registry in the machine folder is what the computer had.
TEST_F(OldDiskCommands, TheRegistryComesOverValueByValue) {
  ASSERT_EQ(Command({"machine", "from", disk_, "--user", "Anna", Place("made")}).status,
            ExitStatus::kDone);
  std::string problem;
  const auto made = RunningMachine::Open(Place("made"), &problem);
  ASSERT_NE(made, nullptr) << problem;
  int values = 0;
  std::string key;
  for (const RegistryStatement& statement :
       dead_->host().registry().Export(RegistryRoot::kCurrentUser, "")) {
    if (statement.kind != RegistryStatement::Kind::kValue) continue;
    const auto path = ParseRegistryPath(statement.key);
    RegistryValue was, is;
    ASSERT_EQ(dead_->host().registry().QueryValue(path->root, path->subkey, statement.name, &was),
              0);
    ASSERT_EQ(made->host().registry().QueryValue(path->root, path->subkey, statement.name, &is), 0)
        << statement.key << " " << statement.name;
    EXPECT_EQ(is.type, was.type) << statement.key;
    EXPECT_EQ(is.data, was.data) << statement.key;
    ++values;
  }
  EXPECT_GT(values, 60);
  RegistryValue value;
  EXPECT_EQ(made->host().registry().QueryValue(RegistryRoot::kClassesRoot,
                                               "Outlook.Application\\CurVer", "", &value),
            0);
  EXPECT_EQ(made->platform().system.Environment("appdata"), "Y:\\Application Data");
  EXPECT_EQ(made->platform().shell.SpecialFolder(5),
            "C:\\Documents and Settings\\Anna\\My Documents");
  EXPECT_TRUE(made->platform().files.DriveExists("D:"));
}

TEST_F(OldDiskCommands, WhatIsWrongIsSaid) {
  const Answer nobody = Command({"machine", "from", disk_, Place("x")});
  EXPECT_EQ(nobody.status, ExitStatus::kFailed);
  EXPECT_EQ(nobody.error,
            "quorvale: the disk has several users; name one of them with --user: Anna, "
            "J\xC3\xBCrgen.\n");
  const Answer stranger = Command({"--disk", disk_, "--user", "Max", "tree"});
  EXPECT_EQ(stranger.status, ExitStatus::kFailed);
  EXPECT_EQ(stranger.error,
            "quorvale: the disk has no user \"Max\"; it has Anna, J\xC3\xBCrgen.\n");
  const Answer missing = Command({"machine", "from", disk_, "--user", "Anna", Place("m")});
  EXPECT_NE(missing.error.find("drive D: is not here"), std::string::npos) << missing.error;
  EXPECT_EQ(Command({"machine", "from", disk_, "--user", "Anna", Place("m")}).status,
            ExitStatus::kFailed);
  EXPECT_EQ(Command({"--disk", disk_, "backup", "n", "--all"}).status, ExitStatus::kWrongUsage);
  EXPECT_EQ(Command({"--disk", disk_, "--machine", "x", "tree"}).status, ExitStatus::kWrongUsage);
  EXPECT_EQ(Command({"--disk", disk_, "logs"}).status, ExitStatus::kWrongUsage);
  EXPECT_EQ(Command({"--disk", disk_, "--drive", "DD", "tree"}).status, ExitStatus::kWrongUsage);
  EXPECT_EQ(Command({"machine", "users", Place("none")}).status, ExitStatus::kFailed);
  EXPECT_EQ(Command({"machine", "users", scratch_.path()}).status, ExitStatus::kFailed);
}

// The hive that lists the users is gone: their folders still tell.
TEST_F(OldDiskCommands, ADamagedHiveOfTheSystemLeavesTheUsers) {
  std::ofstream(disk_ + "/WINDOWS/system32/config/software", std::ios::trunc) << "no hive";
  const Answer answer = Command({"machine", "users", disk_});
  EXPECT_EQ(answer.status, ExitStatus::kDone);
  EXPECT_NE(answer.out.find("Anna\tC:\\Documents and Settings\\Anna\t"), std::string::npos);
  EXPECT_NE(answer.error.find("it is no hive"), std::string::npos) << answer.error;
}

TEST(ClassicDisk, ItsUserIsFoundInTheHivesOfWindows98) {
  const ScratchFolder scratch;
  const std::string disk = scratch.path() + "/disk";
  fs::create_directories(disk + "/Windows/Desktop");
  using test::ClassicKey;
  const ClassicKey version{"CurrentVersion",
                           {{"VersionNumber", 1, "4.10.1998"},
                            {"Version", 1, "Windows 98"},
                            {"SystemRoot", 1, "C:\\WINDOWS"}},
                           {}};
  const ClassicKey software{"Software", {}, {{"Microsoft", {}, {{"Windows", {}, {version}}}}}};
  const ClassicKey codepage{"Nls", {}, {{"Codepage", {{"ACP", 1, "1250"}}, {}}}};
  const ClassicKey system{"System", {}, {{"CurrentControlSet", {}, {{"control", {}, {codepage}}}}}};
  const ClassicKey network{"Network", {}, {{"Logon", {{"username", 1, "Ji\xF8\xED"}}, {}}}};
  std::ofstream(disk + "/Windows/System.dat", std::ios::binary)
      << test::ClassicHiveBytes({"", {}, {software, system, network}});
  const ClassicKey folders{"User Shell Folders", {{"Personal", 1, "C:\\Dokumenty Ji\xF8\xED"}}, {}};
  const ClassicKey explorer{"Explorer", {}, {folders}};
  const ClassicKey user_software{
      "Software", {}, {{"Microsoft", {}, {{"Windows", {}, {{"CurrentVersion", {}, {explorer}}}}}}}};
  std::ofstream(disk + "/Windows/User.dat", std::ios::binary)
      << test::ClassicHiveBytes({"", {}, {{".Default", {}, {user_software}}}});

  const Answer made = Command({"machine", "from", disk, scratch.path() + "/made"});
  ASSERT_EQ(made.status, ExitStatus::kDone) << made.error;
  std::string problem;
  const auto computer = RunningMachine::Open(scratch.path() + "/made", &problem);
  ASSERT_NE(computer, nullptr) << problem;
  EXPECT_EQ(computer->platform().system.UserName(), "Ji\xC5\x99\xC3\xAD");
  EXPECT_EQ(computer->platform().system.Version().minor, 10);
  EXPECT_EQ(computer->platform().system.Version().platform_id, 1);
  EXPECT_EQ(computer->platform().shell.SpecialFolder(5), "C:\\Dokumenty Ji\xC5\x99\xC3\xAD");
  EXPECT_EQ(computer->platform().shell.SpecialFolder(16), "C:\\WINDOWS\\Desktop");
}

// An NTFS as mkntfs makes it, with a disk's files put in by ntfscp, and mounted for reading. Where
// the host allows no such mount, the files are read by the library's own tools, and it is said.
class NtfsImage : public OldDiskCommands {
 protected:
  void TearDown() override {
    if (mounted_) {
      EXPECT_EQ(std::system(("umount '" + Place("mount") + "'").c_str()), 0);
    }
  }
  bool Run(const std::string& command) {
    return std::system((command + " > '" + Place("log") + "' 2>&1").c_str()) == 0;
  }
  bool mounted_ = false;
};

TEST_F(NtfsImage, IsAnOldDiskWithItsAttributes) {
  const std::string image = Place("disk.img"), mount = Place("mount");
  fs::create_directory(mount);
  ASSERT_TRUE(Run("truncate -s 64M '" + image + "' && /usr/sbin/mkntfs -F -q -Q '" + image + "'"));
  mounted_ = Run("ntfs-3g '" + image + "' '" + mount + "'");
  if (!mounted_) {
    ASSERT_TRUE(Run("/usr/sbin/ntfscp '" + image + "' '" + disk_ +
                    "/WINDOWS/system32/config/system' SYSTEM && ntfscat '" + image +
                    "' SYSTEM | cmp - '" + disk_ + "/WINDOWS/system32/config/system'"));
    GTEST_SKIP() << "this host lets nobody mount an NTFS: only that a hive comes back whole by the "
                    "library's own tools was tried";
  }
  ASSERT_TRUE(Run("cp -r '" + disk_ + "'/. '" + mount + "'"));
  const std::string note = mount + "/Documents and Settings/Anna/My Documents/note.txt";
  std::ofstream(note) << "hidden";
  ASSERT_TRUE(
      Run("python3 -c \"import os, sys; os.setxattr(sys.argv[1], 'system.ntfs_attrib_be', "
          "bytes([0, 0, 0, 0x27]))\" '" +
          note + "'"));
  ASSERT_TRUE(Run("umount '" + mount + "' && ntfs-3g -o ro '" + image + "' '" + mount + "'"));
  const Answer made = Command({"machine", "from", mount, "--user", "Anna", Place("made")});
  ASSERT_EQ(made.status, ExitStatus::kDone) << made.error;
  std::string problem;
  const auto computer = RunningMachine::Open(Place("made"), &problem);
  ASSERT_NE(computer, nullptr) << problem;
  const auto info =
      computer->platform().files.Stat("C:\\documents and settings\\anna\\my documents\\NOTE.TXT");
  ASSERT_TRUE(info);
  EXPECT_EQ(info->attributes, 0x27u);
}

}  // namespace
}  // namespace quorvale
