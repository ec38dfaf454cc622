// Large entries that this program wrote are unpacked in pieces, side by side.
#include "archive/archive_fixture.h"
#include "archive/bytes.h"

namespace quorvale::zip_test {
namespace {

constexpr std::size_t kLarge = 5 * 1024 * 1024 + 17;

class ArchivePiecesTest : public ArchiveFixture {
 protected:
  void MakeLarge(const std::string& content, bool encrypt = false) {
    content_ = content;
    archive.files_to_process.clear();
    AddSource("C:\\large", content_);
    archive.encrypt = encrypt;
    archive.password = encrypt ? "p" : "";
    ASSERT_EQ(archive.Zip(), Result::kDone);
    bytes_ = files.Bytes("C:\\Out\\a.obk");
  }

  // Where the field with the sizes of the pieces begins.
  std::size_t FieldAt() const { return bytes_.rfind(std::string("\x51\x76", 2)); }

  // Where the packed data of an entry begins in an archive of one part.
  std::size_t DataAt(const zip::Record& record) const {
    const std::uint8_t* header = zip::AsBytes(bytes_) + record.offset;
    return static_cast<std::size_t>(record.offset) + zip::kLocalHeaderSize +
           zip::Get16(header + 26) + zip::Get16(header + 28);
  }

  void ExpectComesBack() {
    EXPECT_EQ(TestAll(), Result::kDone);
    ASSERT_EQ(UnzipAll(), Result::kDone);
    EXPECT_TRUE(files.Bytes("C:\\Back\\large") == content_);
  }

  std::string content_;
  std::string bytes_;
};

TEST_F(ArchivePiecesTest, TheDirectoryTellsThem) {
  for (const bool encrypt : {false, true}) {
    MakeLarge(Prose(kLarge / 2) + Noise(kLarge - kLarge / 2), encrypt);
    const zip::Record record = Records()[0];
    EXPECT_EQ(record.pieces.size(), 6u);
    std::uint64_t packed = 2;  // the end of the stream
    for (const std::uint32_t size : record.pieces) packed += size;
    EXPECT_EQ(record.compressed_size, packed + (encrypt ? 12 : 0));
    ExpectComesBack();
  }
}

TEST_F(ArchivePiecesTest, EntriesOfOneBlockHaveNone) {
  AddSource("C:\\small", Prose(zip::kBlockSize));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_TRUE(Records()[0].pieces.empty());
}

TEST_F(ArchivePiecesTest, WithoutThemTheEntryIsReadAsOneStream) {
  MakeLarge(Prose(kLarge));
  bytes_[FieldAt()] = '\x50';  // a field that nobody knows
  files.Put("C:\\Out\\a.obk", bytes_);
  EXPECT_TRUE(Records()[0].pieces.empty());
  ExpectComesBack();
}

TEST_F(ArchivePiecesTest, ThoseThatCannotBeAreNotBelieved) {
  MakeLarge(Prose(kLarge));
  const std::string good = bytes_;
  const std::size_t field = FieldAt();
  const std::uint32_t first = Records()[0].pieces[0];
  // Another version; a piece of no size; one that is larger than a block can be; sizes that are
  // not those of this stream.
  for (const auto& [at, value] : std::vector<std::pair<std::size_t, std::uint32_t>>{
           {4, 2}, {5, 0}, {5, 0x7FFFFFFF}, {5, first + 1}, {5, first - 1}}) {
    bytes_ = good;
    std::string raw;
    zip::Put32(&raw, value);
    bytes_.replace(field + at, at == 4 ? 1 : 4, raw, 0, at == 4 ? 1 : 4);
    files.Put("C:\\Out\\a.obk", bytes_);
    EXPECT_TRUE(Records()[0].pieces.empty()) << at;
    ExpectComesBack();
  }
}

TEST_F(ArchivePiecesTest, DamageOfAnyPieceIsFound) {
  for (const bool encrypt : {false, true}) {
    MakeLarge(Prose(kLarge), encrypt);
    // A second entry makes the password a sure one, so that damage is not taken for a wrong one.
    AddSource("C:\\other", "x");
    ASSERT_EQ(archive.Zip(), Result::kDone);
    bytes_ = files.Bytes("C:\\Out\\a.obk");
    const zip::Record record = Records()[0];
    std::size_t at = DataAt(record) + (encrypt ? 12 : 0);
    // The middle of each piece; at last the two bytes behind them, which end the stream.
    std::vector<std::size_t> places;
    for (const std::uint32_t size : record.pieces) {
      places.push_back(at + size / 2);
      at += size;
    }
    places.insert(places.end(), {at, at + 1});
    for (const std::size_t place : places) {
      std::string damaged = bytes_;
      damaged[place] = static_cast<char>(damaged[place] ^ 0x55);
      files.Put("C:\\Out\\a.obk", damaged);
      EXPECT_EQ(TestAll(), Result::kFailed) << place;
    }
  }
}

TEST_F(ArchivePiecesTest, SizesThatAreWrongButPossibleAreDamage) {
  MakeLarge(Prose(kLarge));
  const std::size_t field = FieldAt();
  std::swap(bytes_[field + 5], bytes_[field + 9]);
  ++bytes_[field + 5];
  --bytes_[field + 9];
  files.Put("C:\\Out\\a.obk", bytes_);
  EXPECT_EQ(TestAll(), Result::kFailed);
}

TEST_F(ArchivePiecesTest, AFullDriveEndsTheRestore) {
  MakeLarge(Prose(kLarge));
  files.Put("C:\\Back\\large", "the old one");
  files.room = files.UsedBytes() + 2'500'000;
  EXPECT_EQ(UnzipAll(), Result::kNoSpace);
  EXPECT_EQ(files.Bytes("C:\\Back\\large"), "the old one");
  EXPECT_EQ(Below("C:\\Back"), (Names{"large"}));
}

}  // namespace
}  // namespace quorvale::zip_test
