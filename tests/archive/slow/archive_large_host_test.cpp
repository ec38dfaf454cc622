// Archives and entries beyond what short records hold.
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>

#include "archive/host_folder.h"

namespace quorvale::zip_test {
namespace {

class ArchiveLargeTest : public HostFolderTest {
 protected:
  // A file of zeros that takes no room, with a mark at its end.
  void MakeSparse(const std::string& name, std::uint64_t size) const {
    std::filesystem::create_directories(std::filesystem::path(Host(name)).parent_path());
    std::ofstream(Host(name)) << "the start";
    std::filesystem::resize_file(Host(name), size - 7);
    std::ofstream(Host(name), std::ios::app) << "the end";
  }
};

TEST_F(ArchiveLargeTest, AnEntryOfMoreThanFourGigabytes) {
  constexpr std::uint64_t kSize = (4ull << 30) + 12'345;
  MakeSparse("tree/huge", kSize);
  archive.level = 1;
  ASSERT_EQ(ZipTree("tree", {{"huge", ""}}), Result::kDone);
  std::vector<Entry> entries;
  ASSERT_EQ(archive.List(&entries), Result::kDone);
  EXPECT_EQ(entries[0].size, kSize);
  EXPECT_TRUE(Run("unzip -tq a.obk"));
  EXPECT_TRUE(
      Run("python3 -c \"import zipfile; z = zipfile.ZipFile('a.obk'); "
          "assert z.infolist()[0].file_size == " +
          std::to_string(kSize) + "\""));
  archive.unzip_folder = Machine("back");
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(std::filesystem::file_size(Host("back/huge")), kSize);
  EXPECT_EQ(OutputOf("tail -c 7 back/huge"), "the end");
}

TEST_F(ArchiveLargeTest, EntriesBehindFourGigabytes) {
  MakeSparse("tree/huge", (4ull << 30) + 100);
  WriteTree("tree", {{"small", "behind"}});
  archive.level = 0;
  ASSERT_EQ(ZipTree("tree", {{"huge", ""}, {"small", ""}}), Result::kDone);
  EXPECT_GT(std::filesystem::file_size(Host("a.obk")), 4ull << 30);
  EXPECT_EQ(OutputOf("unzip -p a.obk small"), "behind");
  EXPECT_TRUE(Run("7z t -bd a.obk"));
  archive.unzip_folder = Machine("back");
  archive.files_to_process = {"small"};
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(ReadTree("back").at("small"), "behind");
}

TEST_F(ArchiveLargeTest, ALongEntryWhoseSizesFollowTheDataIsRead) {
  MakeSparse("tree/huge", (4ull << 30) + 77);
  ASSERT_TRUE(Run("cat tree/huge | zip -q1 - - | cat > b.zip"));
  archive.archive_name = Machine("b.zip");
  EXPECT_EQ(archive.Test(), Result::kDone);
}

TEST_F(ArchiveLargeTest, AHundredThousandEntries) {
  constexpr int kCount = 100'000;
  Tree tree;
  for (int i = 0; i < kCount; ++i) {
    std::string name = "d";
    name += std::to_string(i / 1000);
    name += "/f";
    name += std::to_string(i);
    tree[name] = std::to_string(i);
  }
  WriteTree("tree", tree);
  ASSERT_EQ(ZipTree("tree", tree), Result::kDone);
  std::vector<Entry> entries;
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(archive.List(&entries), Result::kDone);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(entries.size(), static_cast<std::size_t>(kCount));
  RecordProperty("list_milliseconds", static_cast<int>(seconds.count() * 1000));
  EXPECT_EQ(archive.Test(), Result::kDone);
  EXPECT_TRUE(Run("unzip -tq a.obk"));
  EXPECT_TRUE(Run("7z t -bd a.obk"));
  EXPECT_TRUE(
      Run("python3 -c \"import zipfile; z = zipfile.ZipFile('a.obk'); "
          "assert len(z.namelist()) == 100000 and z.testzip() is None\""));
  archive.files_to_process = {"D50\\f50123", "d7\\*"};
  archive.unzip_folder = Machine("back");
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(ReadTree("back").size(), 1001u + 2u);
  ASSERT_TRUE(Run("cd tree && zip -q -0 -r ../b.zip ."));
  archive.archive_name = Machine("b.zip");
  archive.files_to_process.clear();
  EXPECT_EQ(archive.Test(), Result::kDone);
}

TEST_F(ArchiveLargeTest, AFlippedByteOfAnAesArchiveGivesAResult) {
  WriteTree("tree", {{"a", Prose(300)}});
  ASSERT_TRUE(Run("cd tree && 7z a -bd -tzip -psecret -mem=AES256 ../b.zip a"));
  std::stringstream stream;
  stream << std::ifstream(Host("b.zip"), std::ios::binary).rdbuf();
  const std::string bytes = stream.str();
  archive.archive_name = Machine("b.zip");
  archive.unzip_folder = Machine("back");
  archive.password = "secret";
  ASSERT_EQ(archive.Test(), Result::kDone);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    std::string damaged = bytes;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x11);
    std::ofstream(Host("b.zip"), std::ios::binary | std::ios::trunc) << damaged;
    for (const Result result : {archive.Test(), archive.Unzip()}) {
      EXPECT_TRUE(result == Result::kDone || result == Result::kFailed ||
                  result == Result::kWarnings || result == Result::kWrongPassword)
          << at;
    }
  }
}

}  // namespace
}  // namespace quorvale::zip_test
