#include "platform/host/disc_writer.h"

#include <gtest/gtest.h>

#include "machine_fixture.h"
#include "platform/host/child_process.h"

namespace quorvale::host {
namespace {

// A file of this length that does not compress into a pattern.
std::string Noise(size_t length) {
  std::string bytes(length, '\0');
  std::uint32_t state = 2463534242u;
  for (char& byte : bytes) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    byte = static_cast<char>(state);
  }
  return bytes;
}

class DiscWriterTest : public testing::Test {
 protected:
  DiscWriterTest() {
    std::filesystem::create_directories(folder_ / "drive_c");
    machine_.path = folder_.path();
    machine_.drives['C'] = {DriveKind::kFixed, folder_ / "drive_c", std::nullopt};
    machine_.disc.writer = "file:disc.iso";
    files_ = std::make_unique<HostFiles>(machine_);
    discs_ = std::make_unique<HostDiscWriter>(machine_, *files_);
  }
  void MakePart(const std::string& name, const std::string& bytes) {
    WriteHost(folder_ / ("drive_c/" + name), bytes);
  }
  bool Burn(const std::string& name) {
    return discs_->Burn("C:\\" + name, name,
                        {.file_added = [this] { told_ += "added "; },
                         .write_started = [this] { told_ += "started "; },
                         .progress =
                             [this](std::uint64_t done, std::uint64_t total) {
                               done_ = done;
                               total_ = total;
                             },
                         .keep_going =
                             [this] {
                               ++asked_;
                               return going_;
                             }});
  }
  // The bytes of a file on a medium.
  std::string OnDisc(const std::string& image, const std::string& name) {
    const std::string out = folder_ / "read";
    std::filesystem::remove_all(out);
    EXPECT_EQ(RunChild({"xorriso", "-osirrox", "on", "-indev", "stdio:" + (folder_ / image),
                        "-extract", "/" + name, out},
                       nullptr, nullptr),
              0);
    return ReadHost(out);
  }

  TempFolder folder_;
  MachineFolder machine_;
  std::unique_ptr<HostFiles> files_;
  std::unique_ptr<HostDiscWriter> discs_;
  std::string told_;
  std::uint64_t done_ = 0, total_ = 0;
  int asked_ = 0;
  bool going_ = true;
};

TEST_F(DiscWriterTest, AMachineWithoutAWriterHasNoDrives) {
  discs_->Use(MachineDisc());
  EXPECT_FALSE(discs_->Initialise());
  EXPECT_TRUE(discs_->Drives().empty());
  EXPECT_FALSE(discs_->Open(0));
  EXPECT_FALSE(discs_->MediumLoaded());
  EXPECT_EQ(discs_->FreeBytes(), 0u);
  MakePart("a.obk", "x");
  EXPECT_FALSE(Burn("a.obk"));
}

TEST_F(DiscWriterTest, AFileIsADriveWithABlankMediumOfItsSize) {
  ASSERT_TRUE(discs_->Initialise());
  const std::vector<DiscDrive> drives = discs_->Drives();
  ASSERT_EQ(drives.size(), 1u);
  EXPECT_TRUE(drives[0].can_write);
  EXPECT_EQ(drives[0].place + ": " + drives[0].maker + " " + drives[0].model,
            "file: disc.iso (737280000 bytes)");
  EXPECT_FALSE(discs_->MediumLoaded());  // nothing is open yet
  ASSERT_TRUE(discs_->Open(0));
  EXPECT_FALSE(discs_->Open(1));
  EXPECT_TRUE(discs_->MediumLoaded());
  EXPECT_EQ(discs_->FreeBytes(), 737280000u);
}

TEST_F(DiscWriterTest, WhatIsBurntIsReadBack) {
  const std::string bytes = Noise(3000000);
  MakePart(
      "Anna's j\xC3\xB6"
      "b with a long name.obk",
      bytes);
  ASSERT_TRUE(discs_->Open(0));
  ASSERT_TRUE(
      Burn("Anna's j\xC3\xB6"
           "b with a long name.obk"));
  EXPECT_EQ(told_, "added started ");
  EXPECT_GT(total_, 3000000u / 2048);
  EXPECT_EQ(done_, total_);
  EXPECT_GT(asked_, 0);
  EXPECT_TRUE(OnDisc("disc.iso",
                     "Anna's j\xC3\xB6"
                     "b with a long name.obk") == bytes);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "disc.iso.part"));
}

TEST_F(DiscWriterTest, AWrittenMediumIsFullAndTheNextOneIsBlank) {
  MakePart("a.obk", "first");
  MakePart("a.z01", "second");
  ASSERT_TRUE(discs_->Open(0));
  ASSERT_TRUE(Burn("a.obk"));
  EXPECT_TRUE(discs_->MediumLoaded());
  EXPECT_EQ(discs_->FreeBytes(), 0u);
  EXPECT_FALSE(Burn("a.z01"));
  discs_->Eject();
  EXPECT_EQ(discs_->FreeBytes(), 737280000u);
  EXPECT_EQ(discs_->MediumFile(), folder_ / "disc_2.iso");
  ASSERT_TRUE(Burn("a.z01"));
  EXPECT_EQ(OnDisc("disc.iso", "a.obk"), "first");
  EXPECT_EQ(OnDisc("disc_2.iso", "a.z01"), "second");
}

TEST_F(DiscWriterTest, AMediumOfAnEarlierRunIsPassedOver) {
  WriteHost(folder_ / "disc.iso", "kept");
  WriteHost(folder_ / "disc_3.iso", "kept");
  ASSERT_TRUE(discs_->Open(0));
  EXPECT_EQ(discs_->MediumFile(), folder_ / "disc_2.iso");
  discs_->Eject();
  EXPECT_EQ(discs_->MediumFile(), folder_ / "disc_4.iso");
  EXPECT_EQ(ReadHost(folder_ / "disc.iso"), "kept");
}

TEST_F(DiscWriterTest, MediaRunOutWhereTheyAreCounted) {
  machine_.disc.media = 1;
  discs_->Use(machine_.disc);
  ASSERT_TRUE(discs_->Open(0));
  EXPECT_TRUE(discs_->MediumLoaded());
  discs_->Eject();
  EXPECT_FALSE(discs_->MediumLoaded());
  EXPECT_EQ(discs_->FreeBytes(), 0u);
  MakePart("a.obk", "x");
  EXPECT_FALSE(Burn("a.obk"));
}

TEST_F(DiscWriterTest, AFileThatDoesNotFitIsRefusedAndLeavesNothing) {
  machine_.disc.size = 1000000;
  discs_->Use(machine_.disc);
  ASSERT_TRUE(discs_->Open(0));
  MakePart("a.obk", Noise(999999));  // the medium's own directory needs room, too
  EXPECT_FALSE(Burn("a.obk"));
  EXPECT_EQ(told_, "added ");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "disc.iso"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "disc.iso.part"));
}

TEST_F(DiscWriterTest, ABurnThatIsGivenUpLeavesABlankMedium) {
  MakePart("a.obk", Noise(3000000));
  ASSERT_TRUE(discs_->Open(0));
  going_ = false;
  EXPECT_FALSE(Burn("a.obk"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "disc.iso"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "disc.iso.part"));
  EXPECT_EQ(discs_->FreeBytes(), 737280000u);
  going_ = true;
  EXPECT_TRUE(Burn("a.obk"));
}

TEST_F(DiscWriterTest, AFileThatIsNotThereIsRefused) {
  ASSERT_TRUE(discs_->Open(0));
  EXPECT_FALSE(Burn("missing.obk"));
}

TEST_F(DiscWriterTest, ADeviceThatIsNotThereDoesNotOpen) {
  machine_.disc.writer = "/dev/no-such-drive";
  discs_->Use(machine_.disc);
  EXPECT_TRUE(discs_->Initialise());
  EXPECT_FALSE(discs_->Open(0));
  EXPECT_FALSE(discs_->MediumLoaded());
}

TEST(DiscLines, ADriveHasItsDeviceMakerAndModel) {
  const auto drive = ParseDriveLine("0  -dev '/dev/sr0' rwrw-- :  'TSSTcorp' 'CDDVDW SH-S223B'");
  ASSERT_TRUE(drive);
  EXPECT_TRUE(drive->can_write);
  EXPECT_EQ(drive->place, "/dev/sr0");
  EXPECT_EQ(drive->maker, "TSSTcorp");
  EXPECT_EQ(drive->model, "CDDVDW SH-S223B");
  const auto reader = ParseDriveLine("1  -dev '/dev/sr1' r-r-r- :  'ATAPI' 'DVD-ROM'");
  ASSERT_TRUE(reader);
  EXPECT_FALSE(reader->can_write);
  EXPECT_FALSE(ParseDriveLine("-----------------------------------------"));
  EXPECT_FALSE(ParseDriveLine("0  -dev '/dev/sr0"));
}

TEST(DiscLines, BlocksAreReadFromTheirLinesOnly) {
  EXPECT_EQ(ParseBlocks("Media space  : 359849s", "Media space"), 359849u);
  EXPECT_EQ(ParseBlocks("Image size   : 14880s", "Image size"), 14880u);
  EXPECT_FALSE(ParseBlocks("Media space  : 359849s", "Image size"));
  EXPECT_FALSE(ParseBlocks("Media space  : 12", "Media space"));
  EXPECT_FALSE(ParseBlocks("Media space", "Media space"));
  EXPECT_EQ(ParseWritten("xorriso : UPDATE : Writing:      14848s  100.0%   fifo   0%  buf  50%"),
            14848u);
  EXPECT_FALSE(ParseWritten("xorriso : UPDATE :       1 files added in 1 seconds"));
}

TEST(ChildProcess, TellsLinesOfBothOutputsAndTheStatus) {
  std::vector<std::string> lines;
  const int status = RunChild(
      {"sh", "-c", "echo one; echo two >&2; printf 'three\\rlast'; exit 3"},
      [&lines](const std::string& line) { lines.push_back(line); }, nullptr);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "three", "last"}));
}

TEST(ChildProcess, AProgramThatIsNotThereIsTold) {
  EXPECT_EQ(RunChild({"no-such-program-of-quorvale"}, nullptr, nullptr), -1);
  EXPECT_FALSE(ProgramExists("no-such-program-of-quorvale"));
  EXPECT_TRUE(ProgramExists("sh"));
}

TEST(ChildProcess, AProgramIsEndedAtOnce) {
  int asked = 0;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(RunChild({"sleep", "60"}, nullptr, [&asked] { return ++asked < 3; }), -1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

}  // namespace
}  // namespace quorvale::host
