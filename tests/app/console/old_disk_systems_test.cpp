// The disks of the other systems: Windows Vista, 2000, NT 4 and 98, each filled by the sample of
// its system, listed, backed up, restored onto a new computer of the same system and compared.
#include "platform/host/host_platform.h"
#include "support/classic_disk_host.h"
#include "support/old_disk.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;
using test::Command;
using test::ConsoleAnswer;

struct System {
  const char* like;
  const char* product;
  const char* profiles;
  const char* mail;
  int least_files, least_keys;
};
void PrintTo(const System& system, std::ostream* out) { *out << system.like; }

class NtDisks : public test::OldDiskTest, public testing::WithParamInterface<System> {
 protected:
  void SetUp() override {
    plan_.machine.like = GetParam().like;
    plan_.other_users = {"J\xC3\xBCrgen"};
    ASSERT_NO_FATAL_FAILURE(MakeDead());
    ASSERT_EQ(WriteHives(*dead_, plan_), "");
  }
};

TEST_P(NtDisks, ListTheirUsersOnceEach) {
  // What ntfs-3g makes of the junction that newer systems have for older programs.
  if (plan_.machine.like == "vista") {
    fs::create_directory_symlink("/Users", Disk() + "/Documents and Settings");
  }
  const ConsoleAnswer answer = Command({"machine", "users", Disk()});
  ASSERT_EQ(answer.status, ExitStatus::kDone) << answer.error;
  const std::string profiles = GetParam().profiles;
  std::istringstream lines(answer.out);
  std::string system, anna, juergen, none;
  std::getline(lines, system);
  std::getline(lines, anna);
  std::getline(lines, juergen);
  EXPECT_FALSE(std::getline(lines, none)) << none;
  EXPECT_EQ(system, GetParam().product + std::string(", computer OFFICE"));
  EXPECT_TRUE(anna.starts_with("Anna\t" + profiles + "Anna\t2009-03-")) << anna;
  EXPECT_TRUE(
      anna.ends_with(GetParam().mail + std::string(", Microsoft Outlook, Internet Explorer")))
      << anna;
  EXPECT_TRUE(juergen.starts_with("J\xC3\xBCrgen\t" + profiles + "J\xC3\xBCrgen\t")) << juergen;
}

TEST_P(NtDisks, ComeBackWholeOnTheSameSystem) {
  ASSERT_NO_FATAL_FAILURE(BackUp());
  RestoreAndCompare(GetParam().least_files, GetParam().least_keys);
}

INSTANTIATE_TEST_SUITE_P(
    Systems, NtDisks,
    testing::Values(System{"vista", "Windows Vista (TM) Home Basic", "C:\\Users\\",
                           "\tWindows Mail", 60, 15},
                    System{"2000", "Microsoft Windows 2000", "C:\\Documents and Settings\\",
                           "\tOutlook Express", 60, 30},
                    System{"nt40", "Microsoft Windows NT 4.0", "C:\\WINNT\\Profiles\\",
                           "\tOutlook Express", 60, 30}),
    [](const testing::TestParamInfo<System>& system) { return std::string(system.param.like); });

class ClassicDisks : public test::OldDiskTest {
 protected:
  void SetUp() override {
    plan_.machine.like = "98";
    ASSERT_NO_FATAL_FAILURE(MakeDead());
  }
  void Write(const std::string& path, const std::string& bytes) {
    fs::create_directories(fs::path(OnDisk(path)).parent_path());
    std::ofstream(OnDisk(path), std::ios::binary) << bytes;
  }
};

TEST_F(ClassicDisks, ComeBackWholeOnTheSameSystem) {
  Write("C:\\WINDOWS\\SYSTEM.DAT", test::ClassicSystemHive(*dead_, plan_.machine));
  Write("C:\\WINDOWS\\USER.DAT", test::ClassicUserHive(*dead_, plan_.machine, ".Default"));
  const ConsoleAnswer users = Command({"machine", "users", Disk()});
  EXPECT_TRUE(users.out.starts_with("Microsoft Windows 98, computer OFFICE\nAnna\tC:\\WINDOWS\t"))
      << users.out;
  EXPECT_TRUE(users.out.ends_with("\tOutlook Express, Microsoft Outlook, Internet Explorer\n"));
  EXPECT_EQ(users.error, "");
  ASSERT_NO_FATAL_FAILURE(BackUp());
  RestoreAndCompare(60, 30);
}

// With profiles for each user the system has a list of them, and each has a hive of his own.
TEST_F(ClassicDisks, ListTheUsersThatHaveProfiles) {
  Write("C:\\WINDOWS\\SYSTEM.DAT",
        test::ClassicSystemHive(*dead_, plan_.machine, {"J\xC3\xBCrgen", "Anna"}));
  Write("C:\\WINDOWS\\Profiles\\Anna\\USER.DAT",
        test::ClassicUserHive(*dead_, plan_.machine, "Anna"));
  MachinePlan other = plan_.machine;
  other.mail_program_started = false;
  ASSERT_EQ(MakeMachine(Place("bare"), other), "");
  std::string problem;
  const auto bare = RunningMachine::Open(Place("bare"), &problem);
  ASSERT_NE(bare, nullptr) << problem;
  Write("C:\\WINDOWS\\Profiles\\J\xC3\xBCrgen\\USER.DAT",
        test::ClassicUserHive(*bare, other, "J\xC3\xBCrgen"));
  const ConsoleAnswer users = Command({"machine", "users", Disk()});
  ASSERT_EQ(users.status, ExitStatus::kDone) << users.error;
  std::istringstream lines(users.out);
  std::string system, anna, juergen, none;
  std::getline(lines, system);
  std::getline(lines, anna);
  std::getline(lines, juergen);
  EXPECT_FALSE(std::getline(lines, none)) << none;
  EXPECT_TRUE(anna.starts_with("Anna\tC:\\WINDOWS\\Profiles\\Anna\t")) << anna;
  EXPECT_TRUE(anna.ends_with("\tOutlook Express, Microsoft Outlook, Internet Explorer")) << anna;
  EXPECT_TRUE(juergen.starts_with("J\xC3\xBCrgen\tC:\\WINDOWS\\Profiles\\J\xC3\xBCrgen\t"));
}

}  // namespace
}  // namespace quorvale
