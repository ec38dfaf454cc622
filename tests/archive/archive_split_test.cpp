// Archives in parts.
#include "archive/archive_fixture.h"
#include "archive/archive_input.h"

namespace quorvale::zip_test {
namespace {

constexpr std::uint64_t kPart = 70'000;

class ArchiveSplitTest : public ArchiveFixture {
 protected:
  void MakeParts(bool encrypt = false) {
    archive.files_to_process.clear();
    AddSource("C:\\a", Noise(100'000, 1));
    AddSource("C:\\b", Prose(50'000, 2));
    AddSource("C:\\c", Prose(1'300'000, 3) + Noise(60'000));
    for (int i = 0; i < 300; ++i) AddSource("C:\\s" + std::to_string(i), Prose(300));
    archive.split_size = kPart;
    archive.encrypt = encrypt;
    archive.password = encrypt ? "p" : "";
    ASSERT_EQ(archive.Zip(), Result::kDone);
  }
};

TEST_F(ArchiveSplitTest, PartsAreNamedAsCommonToolsExpectThem) {
  EXPECT_EQ(zip::PartPath("C:\\x\\a.obk", 0, 1), "C:\\x\\a.obk");
  EXPECT_EQ(zip::PartPath("C:\\x\\a.obk", 0, 3), "C:\\x\\a.z01");
  EXPECT_EQ(zip::PartPath("C:\\x\\a.obk", 1, 3), "C:\\x\\a.z02");
  EXPECT_EQ(zip::PartPath("C:\\x\\a.obk", 2, 3), "C:\\x\\a.obk");
  EXPECT_EQ(zip::PartPath("C:\\x\\a.obk", 99, 101), "C:\\x\\a.z100");
  EXPECT_EQ(zip::PartPath("C:\\x.y\\a", 0, 2), "C:\\x.y\\a.z01");
}

TEST_F(ArchiveSplitTest, NoPartIsLongerThanTold) {
  MakeParts();
  const Names parts = Below("C:\\Out");
  ASSERT_GT(parts.size(), 3u);
  EXPECT_EQ(parts[0], "a.obk");
  EXPECT_EQ(parts[1], "a.z01");
  for (const std::string& part : parts) {
    EXPECT_LE(files.Bytes("C:\\Out\\" + part).size(), kPart) << part;
  }
  EXPECT_EQ(files.Bytes("C:\\Out\\a.z01").substr(0, 4), "PK\7\b");
}

TEST_F(ArchiveSplitTest, PartsSideBySideReadBack) {
  for (const bool encrypt : {false, true}) {
    MakeParts(encrypt);
    EXPECT_EQ(TestAll(), Result::kDone);
    ASSERT_EQ(UnzipAll(), Result::kDone);
    for (const std::string& name : Below("C:\\Back")) {
      EXPECT_TRUE(files.Bytes("C:\\Back\\" + name) == files.Bytes("C:\\" + name)) << name;
    }
    EXPECT_EQ(Below("C:\\Back").size(), 303u);
  }
}

TEST_F(ArchiveSplitTest, AMissingPartIsToldByName) {
  MakeParts();
  files.Remove("C:\\Out\\a.z02");
  EXPECT_EQ(TestAll(), Result::kFailed);
  EXPECT_EQ(warnings, (Names{"C:\\Out\\a.z02"}));
  EXPECT_EQ(reasons, (Names{"this part of the archive is missing"}));
}

TEST_F(ArchiveSplitTest, APartOfAnotherArchiveIsAFailure) {
  MakeParts();
  const std::string part = files.Bytes("C:\\Out\\a.z01");
  files.Put("C:\\Out\\a.z01", part.substr(0, part.size() - 1));
  EXPECT_EQ(TestAll(), Result::kFailed);
  files.Put("C:\\Out\\a.z01", Noise(kPart));
  EXPECT_EQ(TestAll(), Result::kFailed);
}

TEST_F(ArchiveSplitTest, WhatFitsIntoOnePartIsOneFile) {
  AddSource("C:\\a", Prose(1000));
  archive.split_size = kPart;
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(Below("C:\\Out"), (Names{"a.obk"}));
  EXPECT_EQ(files.Bytes("C:\\Out\\a.obk").substr(0, 4), "PK00");
  EXPECT_EQ(TestAll(), Result::kDone);
}

TEST_F(ArchiveSplitTest, EntriesOfAnySizeMeetTheBorderWell) {
  // Sizes around what is left of a part, so that every record meets a border somewhere.
  for (std::size_t extra = 0; extra < 140; extra += 3) {
    archive.files_to_process.clear();
    AddSource("C:\\a", Noise(65'400 + extra, 1));
    AddSource("C:\\b", Noise(200, 2));
    AddSource("C:\\c", "");
    archive.split_size = 65'536;
    ASSERT_EQ(archive.Zip(), Result::kDone) << extra;
    ASSERT_EQ(TestAll(), Result::kDone) << extra;
    ASSERT_EQ(Below("C:\\Out").size(), 2u);
  }
}

TEST_F(ArchiveSplitTest, AFileThatCannotBeReadToItsEndIsLeftOutOfPartsToo) {
  AddSource("C:\\bad", Noise(3'000'000));
  AddSource("C:\\good", Prose(1'500'000));
  faulty_files.FailReadsAfter("C:\\bad", 2'500'000);
  archive.split_size = kPart;
  EXPECT_EQ(archive.Zip(), Result::kWarnings);
  EXPECT_EQ(ListNames(), (Names{"good"}));
  EXPECT_EQ(TestAll(), Result::kDone);
}

TEST_F(ArchiveSplitTest, AnAbortOrAFullDriveLeavesNoPart) {
  AddSource("C:\\a", Noise(1'000'000));
  archive.split_size = kPart;
  archive.on_total_progress = [&](int percent) { archive.abort = percent > 80; };
  EXPECT_EQ(archive.Zip(), Result::kAborted);
  EXPECT_EQ(Below("C:\\Out"), Names());
  archive.on_total_progress = nullptr;
  files.room = files.UsedBytes() + 500'000;
  EXPECT_EQ(archive.Zip(), Result::kNoSpace);
  EXPECT_EQ(Below("C:\\Out"), Names());
}

}  // namespace
}  // namespace quorvale::zip_test
