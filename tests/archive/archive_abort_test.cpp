// Ending an operation early: at once, and without a trace.
#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

class ArchiveAbortTest : public ArchiveFixture {
 protected:
  // Counts the events of an operation, and ends it at the given one.
  void AbortAtEvent(int at) {
    events_ = 0;
    const auto count = [this, at] {
      if (++events_ == at) archive.abort = true;
    };
    archive.on_before_file = [count](BeforeFile&) { count(); };
    archive.on_file_progress = [count](int) { count(); };
    archive.on_total_progress = [count](int) { count(); };
  }

  int events_ = 0;
};

TEST_F(ArchiveAbortTest, ABackupEndsAtAnyEventAndLeavesTheOldArchive) {
  ASSERT_EQ(ZipNames({"old"}), Result::kDone);
  const std::string old_bytes = files.Bytes("C:\\Out\\a.obk");
  AddSource("C:\\a", Prose(1000));
  AddSource("C:\\b", Prose(3'300'000));
  AddSource("C:\\c", Noise(1000));
  int aborts = 0;
  for (int at = 1;; ++at) {
    AbortAtEvent(at);
    const Result result = archive.Zip();
    // The last event tells of the end: it is too late then.
    if (result == Result::kDone) {
      EXPECT_LE(events_, at);
      break;
    }
    ++aborts;
    ASSERT_EQ(result, Result::kAborted) << at;
    ASSERT_EQ(Below("C:\\Out"), (Names{"a.obk"})) << at;
    ASSERT_TRUE(files.Bytes("C:\\Out\\a.obk") == old_bytes) << at;
  }
  EXPECT_GT(aborts, 10);
  EXPECT_EQ(ListNames(), (Names{"a", "b", "c"}));
}

TEST_F(ArchiveAbortTest, ARestoreEndsAtAnyEventAndLeavesNoHalfFile) {
  AddSource("C:\\a", Prose(1000));
  AddSource("C:\\b", Prose(9'000'000));
  AddSource("C:\\c", Prose(2000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.files_to_process.clear();
  for (int at = 1;; ++at) {
    for (const std::string& name : Below("C:\\Back")) files.Remove("C:\\Back\\" + name);
    AbortAtEvent(at);
    const Result result = archive.Unzip();
    for (const std::string& name : Below("C:\\Back")) {
      ASSERT_TRUE(files.Bytes("C:\\Back\\" + name) == files.Bytes("C:\\" + name)) << name << at;
    }
    if (result == Result::kDone) break;
    ASSERT_EQ(result, Result::kAborted) << at;
  }
  EXPECT_EQ(Below("C:\\Back"), (Names{"a", "b", "c"}));
}

TEST_F(ArchiveAbortTest, ATestEndsAtAnyEvent) {
  AddSource("C:\\a", Prose(1000));
  AddSource("C:\\b", Prose(9'000'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.files_to_process.clear();
  int aborts = 0;
  for (int at = 1;; ++at) {
    AbortAtEvent(at);
    const Result result = archive.Test();
    if (result == Result::kDone) break;
    ASSERT_EQ(result, Result::kAborted) << at;
    ++aborts;
  }
  EXPECT_GT(aborts, 5);
}

TEST_F(ArchiveAbortTest, ANewOperationClearsTheFlag) {
  AddSource("C:\\a", "a");
  archive.abort = true;
  EXPECT_EQ(archive.Zip(), Result::kDone);
}

TEST_F(ArchiveAbortTest, EventsComeOftenEnoughToBeEndedWithinATenthOfASecond) {
  // One huge entry at the slowest level; sanitizers and busy machines are given some grace.
  AddSource("C:\\huge", Prose(3'000'000) + Noise(2'500'000));
  archive.level = 9;
  std::uint64_t last = system.Ticks();
  std::uint64_t longest = 0;
  archive.on_total_progress = [&](int) {
    longest = std::max(longest, system.Ticks() - last);
    last = system.Ticks();
  };
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_LT(longest, 1000u);
  std::uint64_t asked = 0;
  archive.on_total_progress = [&](int percent) {
    if (percent < 30 || archive.abort) return;
    archive.abort = true;
    asked = system.Ticks();
  };
  EXPECT_EQ(archive.Zip(), Result::kAborted);
  EXPECT_LT(system.Ticks() - asked, 1000u);
  RecordProperty("longest_silence_ms", static_cast<int>(longest));
}

}  // namespace
}  // namespace quorvale::zip_test
