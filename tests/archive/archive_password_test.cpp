// Passwords: right ones, wrong ones, and damage that looks like a wrong one.
#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

class ArchivePasswordTest : public ArchiveFixture {
 protected:
  void MakeEncrypted(int count, std::size_t size) {
    archive.files_to_process.clear();
    for (int i = 0; i < count; ++i) {
      AddSource("C:\\f" + std::to_string(i), Prose(size, static_cast<std::uint64_t>(i) + 1));
    }
    archive.encrypt = true;
    archive.password = "right";
    ASSERT_EQ(archive.Zip(), Result::kDone);
    archive.files_to_process.clear();
  }

  void Damage(std::size_t record, std::size_t at) {
    std::string bytes = files.Bytes("C:\\Out\\a.obk");
    const zip::Record found = Records()[record];
    bytes[found.offset + zip::kLocalHeaderSize + found.name.size() + at] ^= 0x10;
    files.Put("C:\\Out\\a.obk", bytes);
  }
};

TEST_F(ArchivePasswordTest, AWrongOneIsTold) {
  MakeEncrypted(3, 1000);
  for (int i = 0; i < 600; ++i) {
    archive.password = "wrong" + std::to_string(i);
    ASSERT_EQ(archive.Test(), Result::kWrongPassword) << i;
    ASSERT_EQ(archive.Unzip(), Result::kWrongPassword) << i;
  }
  EXPECT_EQ(Below("C:\\Back"), Names());
  archive.password = "right";
  EXPECT_EQ(archive.Test(), Result::kDone);
}

TEST_F(ArchivePasswordTest, AWrongOneThatPassesTheCheckByteOfASingleEntryIsTold) {
  for (const std::size_t size : {20u, 1000u, 1'500'000u}) {
    MakeEncrypted(1, size);
    for (int i = 0; i < (size > 1000 ? 300 : 2000); ++i) {
      archive.password = "wrong" + std::to_string(i);
      ASSERT_EQ(archive.Test(), Result::kWrongPassword) << i;
    }
  }
}

TEST_F(ArchivePasswordTest, AMissingOneIsTold) {
  MakeEncrypted(1, 1000);
  archive.password = "";
  EXPECT_EQ(archive.Test(), Result::kWrongPassword);
  EXPECT_EQ(archive.Unzip(), Result::kWrongPassword);
}

TEST_F(ArchivePasswordTest, AnyIsTakenForAnArchiveWithoutOne) {
  ASSERT_EQ(ZipNames({"a"}), Result::kDone);
  archive.password = "anything";
  EXPECT_EQ(archive.Test(), Result::kDone);
  EXPECT_EQ(archive.Unzip(), Result::kDone);
}

TEST_F(ArchivePasswordTest, OneThatIsSetIsUsedOnlyIfEncryptionIsOn) {
  AddSource("C:\\a", "a");
  archive.password = "p";
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_FALSE(ListAll()[0].encrypted);
}

TEST_F(ArchivePasswordTest, EncryptingWithoutOneIsRefused) {
  AddSource("C:\\a", "a");
  archive.encrypt = true;
  EXPECT_EQ(archive.Zip(), Result::kWrongPassword);
  EXPECT_FALSE(files.Has("C:\\Out\\a.obk"));
}

TEST_F(ArchivePasswordTest, DamageIsNotTakenForAWrongOneIfOtherEntriesProveIt) {
  MakeEncrypted(5, 1000);
  Damage(3, 100);
  EXPECT_EQ(archive.Test(), Result::kFailed);
  EXPECT_EQ(archive.Unzip(), Result::kFailed);
  EXPECT_EQ(Below("C:\\Back"), (Names{"f0", "f1", "f2", "f4"}));
  MakeEncrypted(5, 1000);
  Damage(0, 100);  // the check bytes of the others are enough
  EXPECT_EQ(archive.Test(), Result::kFailed);
}

TEST_F(ArchivePasswordTest, DamageOfASingleEntryIsTakenForAWrongOne) {
  MakeEncrypted(1, 1000);
  Damage(0, 100);
  EXPECT_EQ(archive.Test(), Result::kWrongPassword);
}

TEST_F(ArchivePasswordTest, OneMadeInTheCodePageIsFoundToo) {
  AddSource("C:\\a", Prose(1000));
  archive.encrypt = true;
  archive.password = "gr\xFCn";  // the bytes that a tool of the code page writes
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.password = "gr\xC3\xBCn";
  EXPECT_EQ(TestAll(), Result::kDone);
  EXPECT_EQ(UnzipAll(), Result::kDone);
  EXPECT_TRUE(files.Bytes("C:\\Back\\a") == Prose(1000));
}

TEST_F(ArchivePasswordTest, EqualFilesLookDifferentInTheArchive) {
  AddSource("C:\\a", Prose(1000));
  AddSource("C:\\b", Prose(1000));
  archive.encrypt = true;
  archive.password = "p";
  ASSERT_EQ(archive.Zip(), Result::kDone);
  const std::string bytes = files.Bytes("C:\\Out\\a.obk");
  const std::vector<zip::Record> records = Records();
  const auto data = [&](const zip::Record& record) {
    return bytes.substr(record.offset + zip::kLocalHeaderSize + 10, 100);
  };
  EXPECT_NE(data(records[0]), data(records[1]));
}

}  // namespace
}  // namespace quorvale::zip_test
