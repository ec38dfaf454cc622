// What goes wrong while an archive is made, and what is left then: the old archive or the new one,
// whole, and nothing else.
#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

class ArchiveFaultTest : public ArchiveFixture {
 protected:
  // An archive of an older run, to be replaced.
  void MakeOldArchive() {
    ASSERT_EQ(ZipNames({"old"}), Result::kDone);
    old_bytes_ = files.Bytes("C:\\Out\\a.obk");
  }

  void ExpectOnlyTheOldArchive() {
    EXPECT_EQ(Below("C:\\Out"), (Names{"a.obk"}));
    EXPECT_TRUE(files.Bytes("C:\\Out\\a.obk") == old_bytes_);
  }

  std::string old_bytes_;
};

TEST_F(ArchiveFaultTest, AFileThatVanishesAfterItWasListedIsLeftOut) {
  AddSource("C:\\a", "a");
  AddSource("C:\\b", "b");
  archive.on_before_file = [&](BeforeFile& file) {
    if (file.source == "C:\\a") files.Remove("C:\\a");
  };
  EXPECT_EQ(archive.Zip(), Result::kWarnings);
  EXPECT_EQ(warnings, (Names{"C:\\a"}));
  EXPECT_EQ(kinds, (Reasons{WarningReason::kUnreadable}));
  EXPECT_EQ(ListNames(), (Names{"b"}));
}

TEST_F(ArchiveFaultTest, AFileThatIsInUseIsLeftOut) {
  AddSource("C:\\a", "a");
  AddSource("C:\\b", "b");
  faulty_files.SetInUse("C:\\a", true);
  EXPECT_EQ(archive.Zip(), Result::kWarnings);
  EXPECT_EQ(warnings, (Names{"C:\\a"}));
  EXPECT_EQ(kinds, (Reasons{WarningReason::kUnreadable}));
  EXPECT_EQ(ListNames(), (Names{"b"}));
}

TEST_F(ArchiveFaultTest, AFileThatShrinksIsStoredAsFarAsItGoes) {
  const std::string prose = Prose(4'000'000);
  for (const std::size_t left : {3'500'000u, 2'097'152u, 1'048'576u, 100u, 0u}) {
    for (const std::size_t size : {4'000'000u, 500'000u}) {
      SCOPED_TRACE(testing::Message() << size << " to " << left);
      const std::size_t kept = left > size ? size / 2 : left;
      archive.files_to_process.clear();
      AddSource("C:\\a", prose.substr(0, size));
      AddSource("C:\\b", "b");
      warnings.clear();
      kinds.clear();
      files.before_read = [&](const std::string& path, std::uint64_t) {
        if (path == "C:\\a" && files.Bytes(path).size() > kept) files.Resize(path, kept);
      };
      EXPECT_EQ(archive.Zip(), Result::kWarnings);
      files.before_read = nullptr;
      EXPECT_EQ(warnings, (Names{"C:\\a"}));
      EXPECT_EQ(kinds, (Reasons{WarningReason::kChanged}));
      ASSERT_EQ(UnzipAll(), Result::kDone);
      EXPECT_TRUE(files.Bytes("C:\\Back\\a") == prose.substr(0, kept));
      EXPECT_EQ(files.Bytes("C:\\Back\\b"), "b");
    }
  }
}

TEST_F(ArchiveFaultTest, AFileThatGrowsIsStoredAsItWasAtTheStart) {
  const std::string prose = Prose(4'000'000);
  for (const std::size_t size : {0u, 1000u, 1'048'576u, 3'000'000u}) {
    archive.files_to_process.clear();
    AddSource("C:\\a", prose.substr(0, size));
    files.before_read = [&](const std::string& path, std::uint64_t) {
      if (path == "C:\\a") files.Resize(path, files.Bytes(path).size() + 100'000);
    };
    // One that is read at once is of one moment.
    const bool in_steps = size > 2'000'000;
    kinds.clear();
    EXPECT_EQ(archive.Zip(), in_steps ? Result::kWarnings : Result::kDone);
    EXPECT_EQ(kinds, in_steps ? Reasons{WarningReason::kChanged} : Reasons{});
    files.before_read = nullptr;
    ASSERT_EQ(UnzipAll(), Result::kDone);
    EXPECT_TRUE(files.Bytes("C:\\Back\\a") == prose.substr(0, size)) << size;
  }
}

TEST_F(ArchiveFaultTest, AFileThatCannotBeReadToItsEndIsLeftOut) {
  for (const bool encrypt : {false, true}) {
    for (const std::uint64_t fault : {0u, 1000u, 1'500'000u, 3'900'000u}) {
      SCOPED_TRACE(testing::Message() << fault << " encrypted " << encrypt);
      archive.files_to_process.clear();
      warnings.clear();
      AddSource("C:\\first", Prose(2'000'000, 1));
      AddSource("C:\\bad", Prose(4'000'000, 2));
      AddSource("C:\\last", "x");
      faulty_files.FailReadsAfter("C:\\bad", fault);
      archive.encrypt = encrypt;
      archive.password = "p";
      EXPECT_EQ(archive.Zip(), Result::kWarnings);
      EXPECT_EQ(warnings, (Names{"C:\\bad"}));
      EXPECT_EQ(kinds.back(), WarningReason::kCutShort);
      EXPECT_EQ(ListNames(), (Names{"first", "last"}));
      EXPECT_EQ(TestAll(), Result::kDone);
      ASSERT_EQ(UnzipAll(), Result::kDone);
      EXPECT_TRUE(files.Bytes("C:\\Back\\first") == Prose(2'000'000, 1));
      EXPECT_EQ(files.Bytes("C:\\Back\\last"), "x");
    }
  }
}

TEST_F(ArchiveFaultTest, TheRoomOfALeftOutFileIsUsedAgain) {
  AddSource("C:\\bad", Noise(4'000'000));
  AddSource("C:\\good", Noise(3'000'000, 2));
  faulty_files.FailReadsAfter("C:\\bad", 3'500'000);
  archive.level = 0;
  EXPECT_EQ(archive.Zip(), Result::kWarnings);
  EXPECT_LE(files.Bytes("C:\\Out\\a.obk").size(), 3'200'000u);
  EXPECT_EQ(TestAll(), Result::kDone);
}

TEST_F(ArchiveFaultTest, TheEndRecordIsTheEndEvenIfMoreWasWrittenBefore) {
  AddSource("C:\\bad", Noise(4'000'000));
  AddSource("C:\\tiny", "x");
  faulty_files.FailReadsAfter("C:\\bad", 3'500'000);
  EXPECT_EQ(archive.Zip(), Result::kWarnings);
  const std::string bytes = files.Bytes("C:\\Out\\a.obk");
  EXPECT_EQ(bytes.substr(bytes.size() - 22, 4), "PK\5\6");
  EXPECT_EQ(TestAll(), Result::kDone);
  EXPECT_EQ(ListNames(), (Names{"tiny"}));
}

TEST_F(ArchiveFaultTest, ReadsThatGiveFewBytesAtATimeAreGood) {
  AddSource("C:\\a", Prose(1'500'000));
  files.longest_read = 10'007;
  ASSERT_EQ(archive.Zip(), Result::kDone);
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_TRUE(files.Bytes("C:\\Back\\a") == Prose(1'500'000));
}

TEST_F(ArchiveFaultTest, ADriveThatFillsLeavesTheOldArchiveAndNothingElse) {
  MakeOldArchive();
  AddSource("C:\\a", Noise(1'200'000));
  AddSource("C:\\b", Noise(700'000));
  AddSource("C:\\c", Prose(3'000));
  const std::uint64_t used = files.UsedBytes();
  int refused = 0;
  for (std::uint64_t room = 0;; room += 65536) {
    files.room = used + room;
    const Result result = archive.Zip();
    if (result == Result::kDone) break;
    EXPECT_EQ(result, Result::kNoTemporarySpace) << room;
    ExpectOnlyTheOldArchive();
    ++refused;
  }
  EXPECT_EQ(refused, 1'905'000 / 65536 + 1);
  EXPECT_EQ(Below("C:\\Out"), (Names{"a.obk"}));
}

TEST_F(ArchiveFaultTest, ADriveThatFillsWithoutAnOldArchiveIsTheOtherKind) {
  AddSource("C:\\a", Noise(500'000));
  files.room = files.UsedBytes() + 100'000;
  EXPECT_EQ(archive.Zip(), Result::kNoSpace);
  EXPECT_EQ(Below("C:\\Out"), Names());
}

TEST_F(ArchiveFaultTest, AWriteErrorLeavesTheOldArchiveAndNothingElse) {
  MakeOldArchive();
  AddSource("C:\\a", Noise(1'200'000));
  AddSource("C:\\b", Prose(1'200'000));
  for (const std::uint64_t after : {0u, 1u, 300'000u, 1'200'000u, 1'300'000u}) {
    files.writes_fail_after = after;
    EXPECT_EQ(archive.Zip(), Result::kFailed) << after;
    ExpectOnlyTheOldArchive();
  }
}

TEST_F(ArchiveFaultTest, AFolderThatIsNotThereIsAFailure) {
  AddSource("C:\\a", "a");
  archive.archive_name = "C:\\Nowhere\\a.obk";
  EXPECT_EQ(archive.Zip(), Result::kFailed);
}

TEST_F(ArchiveFaultTest, AnOldArchiveThatIsInUseStays) {
  MakeOldArchive();
  AddSource("C:\\a", "a");
  faulty_files.SetInUse("C:\\Out\\a.obk", true);
  EXPECT_EQ(archive.Zip(), Result::kFailed);
  ExpectOnlyTheOldArchive();
}

TEST_F(ArchiveFaultTest, AnArchiveThatReadsBackWrongIsAFailure) {
  MakeOldArchive();
  AddSource("C:\\small", Prose(10'000));
  AddSource("C:\\large", Prose(1'500'000));
  AddSource("C:\\stored", Noise(10'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  const std::size_t size = files.Bytes("C:\\Out\\a.obk").size();
  ASSERT_EQ(ZipNames({"old"}), Result::kDone);
  old_bytes_ = files.Bytes("C:\\Out\\a.obk");
  archive.files_to_process = {"C:\\small", "C:\\large", "C:\\stored"};
  // A drive that gives back something else than it was given.
  for (std::size_t at = 50; at < size; at += size / 23) {
    bool spoilt = false;
    files.before_read = [&](const std::string& path, std::uint64_t) {
      if (path != "C:\\Out\\a.obk.tmp" || spoilt) return;
      spoilt = true;
      std::string bytes = files.Bytes(path);
      bytes[at] ^= 4;
      files.Put(path, bytes);
    };
    EXPECT_EQ(archive.Zip(), Result::kFailed) << at;
    EXPECT_TRUE(spoilt);
    files.before_read = nullptr;
    ExpectOnlyTheOldArchive();
  }
}

TEST_F(ArchiveFaultTest, AKillAtAnyChangeOfTheDriveLeavesTheOldOrTheNewArchive) {
  MakeOldArchive();
  AddSource("C:\\a", Noise(900'000));
  AddSource("C:\\b", Prose(1'200'000));
  int kills = 0;
  for (int at = 0;; ++at) {
    int changes = 0;
    files.may_change = [&] { return changes++ < at; };
    const Result result = archive.Zip();
    files.may_change = nullptr;
    if (changes <= at) {
      EXPECT_EQ(result, Result::kDone);
      break;
    }
    ++kills;
    EXPECT_EQ(result, Result::kFailed);
    ASSERT_TRUE(files.Bytes("C:\\Out\\a.obk") == old_bytes_) << at;
  }
  EXPECT_GT(kills, 5);
  // What a killed run left was used and removed by the last one.
  EXPECT_EQ(Below("C:\\Out"), (Names{"a.obk"}));
  EXPECT_EQ(ListNames(), (Names{"a", "b"}));
}

TEST_F(ArchiveFaultTest, AKillWhileAFileIsRestoredLeavesTheOldOrTheNewFile) {
  AddSource("C:\\a", Prose(1'500'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.files_to_process.clear();
  for (int at = 0;; ++at) {
    files.Put("C:\\Back\\a", "the old one");
    int changes = 0;
    files.may_change = [&] { return changes++ < at; };
    archive.Unzip();
    files.may_change = nullptr;
    if (changes <= at) break;
    const std::string now = files.Bytes("C:\\Back\\a");
    ASSERT_TRUE(now == "the old one" || now == Prose(1'500'000)) << at;
  }
  EXPECT_TRUE(files.Bytes("C:\\Back\\a") == Prose(1'500'000));
}

}  // namespace
}  // namespace quorvale::zip_test
