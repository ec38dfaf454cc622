// An archive's directory is kept between operations, but never longer than it is true.
#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

class KnownDirectoryTest : public ArchiveFixture {
 protected:
  Result UnzipOne(const std::string& name) {
    archive.files_to_process = {name};
    return archive.Unzip();
  }
};

TEST_F(KnownDirectoryTest, ASecondOperationReadsLessThanTheFirst) {
  Names names;
  for (int i = 0; i < 2000; ++i) names.push_back("Job\\a rather long name " + std::to_string(i));
  ASSERT_EQ(ZipNames(names), Result::kDone);
  int reads = 0;
  files.longest_read = 4096;
  files.before_read = [&](const std::string& path, std::uint64_t) {
    if (path == archive.archive_name) ++reads;
  };
  ASSERT_EQ(UnzipOne(names[0]), Result::kDone);
  const int first = reads;
  reads = 0;
  ASSERT_EQ(UnzipOne("job\\A RATHER long name 1999"), Result::kDone);
  EXPECT_LT(reads * 2, first);
  EXPECT_EQ(files.Bytes("C:\\Back\\" + names[1999]), "content of " + names[1999]);
}

TEST_F(KnownDirectoryTest, AReplacedArchiveIsReadAgain) {
  ASSERT_EQ(ZipNames({"Job\\old"}), Result::kDone);
  ASSERT_EQ(UnzipOne("Job\\old"), Result::kDone);
  Archive other(files, system, system_threads);
  files.Put("C:\\new source", "something new", 32, kModified);
  other.archive_name = archive.archive_name;
  other.files_to_process = {"C:\\new source"};
  other.on_before_file = [](BeforeFile& file) { file.entry_name = "Job\\new and longer"; };
  ASSERT_EQ(other.Zip(), Result::kDone);
  EXPECT_EQ(UnzipOne("Job\\old"), Result::kFailed);
  EXPECT_EQ(UnzipOne("Job\\new and longer"), Result::kDone);
  EXPECT_EQ(ListNames(), Names{"Job\\new and longer"});
}

TEST_F(KnownDirectoryTest, ARemovedArchiveIsAFailure) {
  ASSERT_EQ(ZipNames({"Job\\a"}), Result::kDone);
  ASSERT_EQ(UnzipOne("Job\\a"), Result::kDone);
  files.Remove(archive.archive_name);
  EXPECT_EQ(UnzipOne("Job\\a"), Result::kFailed);
}

TEST_F(KnownDirectoryTest, TwoEntriesOfOneNameAreStillFoundInTheirOrder) {
  ASSERT_EQ(ZipNames({"Job\\a", "Job\\b", "Job\\A"}), Result::kDone);
  ASSERT_EQ(UnzipOne("Job\\b"), Result::kDone);
  ASSERT_EQ(UnzipOne("Job\\a"), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\Job\\A"), "content of Job\\A");
}

}  // namespace
}  // namespace quorvale::zip_test
