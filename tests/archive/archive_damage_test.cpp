// Archives that are damaged or made to do harm: a result code, in bounded time and memory.
#include <set>

#include "archive/archive_fixture.h"
#include "archive/bytes.h"

namespace quorvale::zip_test {
namespace {

class ArchiveDamageTest : public ArchiveFixture {
 protected:
  // Starting threads for every try would be most of the time.
  ArchiveDamageTest() { archive.worker_threads = 0; }

  // Does all that can be done with some bytes. What it writes stays below its folder.
  std::set<Result> TryAll(const std::string& bytes) {
    files.Put("C:\\Out\\a.obk", bytes);
    const std::size_t files_before = files.AllFiles().size() - Below("C:\\Back").size();
    std::vector<Entry> entries;
    archive.files_to_process.clear();
    std::set<Result> results = {archive.List(&entries), archive.Test(), archive.Unzip()};
    EXPECT_EQ(files.AllFiles().size() - Below("C:\\Back").size(), files_before);
    for (const std::string& name : Below("C:\\Back")) {
      EXPECT_EQ(name.find("~obk"), std::string::npos);
      files.Remove("C:\\Back\\" + name);
    }
    return results;
  }

  // A small archive that has every kind of record.
  std::string MakeSample(bool encrypt) {
    archive.files_to_process.clear();
    files.PutFolder("C:\\folder");
    archive.files_to_process.push_back("C:\\folder\\");
    AddSource("C:\\prose", Prose(400));
    AddSource("C:\\noise", Noise(60));
    AddSource("C:\\na\xC3\xAFve", "x");
    archive.encrypt = encrypt;
    archive.password = encrypt ? "right" : "";
    EXPECT_EQ(archive.Zip(), Result::kDone);
    return files.Bytes("C:\\Out\\a.obk");
  }

  // The sample's first directory header after the folder's, to be spoilt.
  std::size_t CentralHeaderOf(const std::string& bytes, const std::string& name) {
    const std::size_t at = bytes.rfind(name);
    return at - zip::kCentralHeaderSize;
  }

  static void Set32(std::string* bytes, std::size_t at, std::uint32_t value) {
    std::string raw;
    zip::Put32(&raw, value);
    bytes->replace(at, 4, raw);
  }
};

TEST_F(ArchiveDamageTest, ATruncatedArchiveIsAFailureAtAnyByte) {
  for (const bool encrypt : {false, true}) {
    const std::string bytes = MakeSample(encrypt);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      for (const Result result : TryAll(bytes.substr(0, size))) {
        ASSERT_EQ(result, Result::kFailed) << size;
      }
    }
  }
}

TEST_F(ArchiveDamageTest, AFlippedByteAnywhereGivesAResult) {
  for (const bool encrypt : {false, true}) {
    const std::string bytes = MakeSample(encrypt);
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      for (const int flip : {0x01, 0x80, 0x00}) {
        std::string damaged = bytes;
        // 0 stands for a byte of all ones: it makes the largest numbers.
        damaged[at] = flip == 0 ? '\xFF' : static_cast<char>(damaged[at] ^ flip);
        for (const Result result : TryAll(damaged)) {
          ASSERT_TRUE(result == Result::kDone || result == Result::kFailed ||
                      result == Result::kWarnings || result == Result::kWrongPassword)
              << at;
        }
      }
    }
  }
}

TEST_F(ArchiveDamageTest, AFlippedByteInTheDataIsFoundUnlessItMeansNothing) {
  AddSource("C:\\prose", Prose(3000));
  AddSource("C:\\noise", Noise(300));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  const std::string bytes = files.Bytes("C:\\Out\\a.obk");
  int unnoticed = 0;
  for (const zip::Record& record : Records()) {
    const std::size_t start = record.offset + zip::kLocalHeaderSize + record.name.size() + 9;
    for (std::uint64_t i = 0; i < record.compressed_size; ++i) {
      std::string damaged = bytes;
      damaged[start + i] ^= 1;
      files.Put("C:\\Out\\a.obk", damaged);
      const Result result = TestAll();
      if (result == Result::kDone) {
        // Bits behind the stream's end, or of a code that no data uses.
        ++unnoticed;
        ASSERT_EQ(UnzipAll(), Result::kDone);
        ASSERT_TRUE(files.Bytes("C:\\Back\\prose") == Prose(3000)) << i;
        ASSERT_TRUE(files.Bytes("C:\\Back\\noise") == Noise(300)) << i;
      } else {
        ASSERT_EQ(result, Result::kFailed) << record.name << " " << i;
      }
    }
  }
  EXPECT_LE(unnoticed, 3);
}

TEST_F(ArchiveDamageTest, AnEntryThatClaimsFourGigabytesAndHoldsTenBytesIsRefused) {
  for (const std::uint32_t claim : {0xFFFFFFFEu, 0x7FFFFFFFu, 5'000'000u, 401u, 399u, 0u}) {
    std::string bytes = MakeSample(false);
    Set32(&bytes, CentralHeaderOf(bytes, "prose") + 24, claim);
    files.Put("C:\\Out\\a.obk", bytes);
    EXPECT_EQ(TestAll(), Result::kFailed) << claim;
    EXPECT_EQ(UnzipAll(), Result::kFailed) << claim;
    EXPECT_FALSE(files.Has("C:\\Back\\prose"));
    EXPECT_TRUE(files.Has("C:\\Back\\noise"));
    // Stored data cannot claim more than is there.
    bytes = MakeSample(false);
    Set32(&bytes, CentralHeaderOf(bytes, "noise") + 24, claim);
    files.Put("C:\\Out\\a.obk", bytes);
    EXPECT_EQ(TestAll(), Result::kFailed) << claim;
  }
}

TEST_F(ArchiveDamageTest, AnEntryThatUnpacksToMoreThanItClaimsIsStoppedThere) {
  AddSource("C:\\bomb", std::string(30'000'000, '\0'));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  std::string bytes = files.Bytes("C:\\Out\\a.obk");
  for (const std::uint32_t claim : {10u, 1'000'000u, 20'000'000u}) {
    Set32(&bytes, CentralHeaderOf(bytes, "bomb") + 24, claim);
    files.Put("C:\\Out\\a.obk", bytes);
    std::uint64_t most_used = files.UsedBytes();
    files.may_change = [&] {
      most_used = std::max(most_used, files.UsedBytes());
      return true;
    };
    const std::uint64_t used = files.UsedBytes();
    EXPECT_EQ(UnzipAll(), Result::kFailed);
    files.may_change = nullptr;
    EXPECT_LE(most_used, used + claim + 2'000'000);
    EXPECT_EQ(Below("C:\\Back"), Names());
  }
}

TEST_F(ArchiveDamageTest, EntriesThatOverlapAreRefused) {
  // Many entries that share one packed stream would unpack without end.
  AddSource("C:\\aaaa", Prose(100'000));
  AddSource("C:\\bbbb", Prose(100'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  std::string bytes = files.Bytes("C:\\Out\\a.obk");
  const zip::Record first = Records()[0];
  Set32(&bytes, CentralHeaderOf(bytes, "bbbb") + 42, static_cast<std::uint32_t>(first.offset));
  bytes.erase(first.offset + first.compressed_size + 43, first.compressed_size);
  EXPECT_EQ(TryAll(bytes), (std::set<Result>{Result::kFailed}));
}

TEST_F(ArchiveDamageTest, ADirectoryThatClaimsMoreEntriesThanItHoldsIsRefused) {
  std::string bytes = MakeSample(false);
  const std::size_t end = bytes.size() - zip::kEndSize;
  bytes[end + 8] = 100;
  bytes[end + 10] = 100;
  EXPECT_EQ(TryAll(bytes), (std::set<Result>{Result::kFailed}));
}

TEST_F(ArchiveDamageTest, AMethodThatIsNotKnownIsAFailureOfThatEntry) {
  std::string bytes = MakeSample(false);
  bytes[CentralHeaderOf(bytes, "prose") + 10] = 14;
  files.Put("C:\\Out\\a.obk", bytes);
  EXPECT_EQ(TestAll(), Result::kFailed);
  EXPECT_EQ(UnzipAll(), Result::kFailed);
  EXPECT_EQ(Below("C:\\Back"), (Names{"na\xC3\xAFve", "noise"}));
}

TEST_F(ArchiveDamageTest, NoiseBehindAnEndRecordGivesAResult) {
  Random random(7);
  for (int i = 0; i < 500; ++i) {
    std::string bytes = Noise(random.Below(400), static_cast<std::uint64_t>(i) + 1);
    std::string end = "PK\5\6" + Noise(18, static_cast<std::uint64_t>(i) + 1000);
    if (i % 2 == 0) {
      end.replace(4, 4, std::string(4, '\0'));
      end.replace(20, 2, std::string(2, '\0'));
    }
    for (const Result result : TryAll(bytes + end)) EXPECT_EQ(result, Result::kFailed);
  }
}

}  // namespace
}  // namespace quorvale::zip_test
