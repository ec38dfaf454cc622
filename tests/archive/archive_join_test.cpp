// One file made of an archive in parts.
#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

constexpr std::uint64_t kPart = 70'000;
constexpr char kWhole[] = "C:\\Whole\\a.obk";

class ArchiveJoinTest : public ArchiveFixture {
 protected:
  ArchiveJoinTest() { files.PutFolder("C:\\Whole"); }

  void MakeParts(const std::string& password = "") {
    archive.files_to_process.clear();
    AddSource("C:\\a", Noise(100'000, 1));
    AddSource("C:\\b", Prose(50'000, 2));
    AddSource("C:\\c", Prose(1'300'000, 3) + Noise(60'000));
    for (int i = 0; i < 300; ++i) AddSource("C:\\s" + std::to_string(i), Prose(300));
    archive.split_size = kPart;
    archive.encrypt = !password.empty();
    archive.password = password;
    ASSERT_EQ(archive.Zip(), Result::kDone);
    ASSERT_GT(Below("C:\\Out").size(), 3u);
    archive.split_size = 0;
  }
  void ExpectNothingMade() { EXPECT_EQ(Below("C:\\Whole"), Names()); }
  void ExpectWhole() {
    WitnessArchive(files.Bytes(kWhole), archive.password);
    archive.archive_name = kWhole;
    EXPECT_EQ(TestAll(), Result::kDone);
    ASSERT_EQ(UnzipAll(), Result::kDone);
    for (const std::string& name : Below("C:\\Back")) {
      EXPECT_TRUE(files.Bytes("C:\\Back\\" + name) == files.Bytes("C:\\" + name)) << name;
    }
    EXPECT_EQ(Below("C:\\Back").size(), 303u);
    EXPECT_EQ(ListAll().front().modified, kModified);
  }
};

TEST_F(ArchiveJoinTest, ThePartsBecomeAnArchiveThatEveryToolReads) {
  MakeParts();
  const Names parts = Below("C:\\Out");
  std::vector<int> percents;
  archive.on_total_progress = [&](int percent) { percents.push_back(percent); };
  ASSERT_EQ(archive.Join(kWhole), Result::kDone);
  archive.on_total_progress = nullptr;
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
  ASSERT_FALSE(percents.empty());
  EXPECT_EQ(percents.back(), 100);
  EXPECT_EQ(Below("C:\\Out"), parts);
  EXPECT_EQ(Below("C:\\Whole"), Names{"a.obk"});
  EXPECT_EQ(files.Bytes(kWhole).substr(0, 4), "PK00");
  for (const std::string& part : parts) files.Remove("C:\\Out\\" + part);
  ExpectWhole();
}

TEST_F(ArchiveJoinTest, ProtectedPartsNeedTheirPassword) {
  MakeParts("p");
  archive.password = "";
  EXPECT_EQ(archive.Join(kWhole), Result::kFailed);
  ExpectNothingMade();
  archive.password = "p";
  ASSERT_EQ(archive.Join(kWhole), Result::kDone);
  ExpectWhole();
}

TEST_F(ArchiveJoinTest, AnArchiveInOneFileIsCopied) {
  AddSource("C:\\a", Prose(1000));
  archive.split_size = kPart;
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.split_size = 0;
  ASSERT_EQ(archive.Join(kWhole), Result::kDone);
  archive.archive_name = kWhole;
  EXPECT_EQ(TestAll(), Result::kDone);
}

TEST_F(ArchiveJoinTest, OfDamagedOrMissingPartsNothingIsMade) {
  MakeParts();
  const std::string part = files.Bytes("C:\\Out\\a.z02");
  std::string damaged = part;
  damaged[part.size() / 2] = static_cast<char>(damaged[part.size() / 2] ^ 1);
  files.Put("C:\\Out\\a.z02", damaged);
  EXPECT_EQ(archive.Join(kWhole), Result::kFailed);
  ExpectNothingMade();
  files.Remove("C:\\Out\\a.z02");
  EXPECT_EQ(archive.Join(kWhole), Result::kFailed);
  ExpectNothingMade();
  files.Put("C:\\Out\\a.z02", part);
  EXPECT_EQ(archive.Join(kWhole), Result::kDone);
}

TEST_F(ArchiveJoinTest, AnAbortLeavesTheParts) {
  MakeParts();
  const Names parts = Below("C:\\Out");
  archive.on_total_progress = [this](int percent) { archive.abort = percent >= 20; };
  EXPECT_EQ(archive.Join(kWhole), Result::kAborted);
  ExpectNothingMade();
  EXPECT_EQ(Below("C:\\Out"), parts);
}

TEST_F(ArchiveJoinTest, AFullDiskLeavesTheParts) {
  MakeParts();
  const Names parts = Below("C:\\Out");
  files.room = files.UsedBytes() + 100'000;
  EXPECT_EQ(archive.Join(kWhole), Result::kNoSpace);
  ExpectNothingMade();
  EXPECT_EQ(Below("C:\\Out"), parts);
}

}  // namespace
}  // namespace quorvale::zip_test
