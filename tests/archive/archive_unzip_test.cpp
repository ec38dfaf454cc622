// Where the entries of an archive go, and where they never go.
#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

class ArchiveUnzipTest : public ArchiveFixture {};

TEST_F(ArchiveUnzipTest, ANameIsFoundWithoutRegardToCase) {
  ASSERT_EQ(ZipNames({"Job\\Mail\\Inbox.dbx", "Job\\Mail\\Inbox.dbx.bak", "Job\\\xC3\x84.txt"}),
            Result::kDone);
  archive.files_to_process = {"jOB\\mail\\INBOX.dbx"};
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(Below("C:\\Back"), (Names{"Job\\Mail\\Inbox.dbx"}));
  archive.files_to_process = {"job\\\xC3\xA4.TXT"};
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_TRUE(files.Has("C:\\Back\\Job\\\xC3\x84.txt"));
}

TEST_F(ArchiveUnzipTest, AStarTakesEverythingBelowAFolder) {
  ASSERT_EQ(ZipNames({"Job\\Mail\\a", "Job\\Mail\\Deep\\b", "Job\\Mailbox\\c", "Job\\d"}),
            Result::kDone);
  archive.files_to_process = {"job\\mail\\*"};
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(Below("C:\\Back"), (Names{"Job\\Mail\\Deep\\b", "Job\\Mail\\a"}));
}

TEST_F(ArchiveUnzipTest, AStarTakesFolderEntriesToo) {
  files.PutFolder("C:\\Job\\Mail\\Empty");
  archive.files_to_process = {"C:\\Job\\Mail\\", "C:\\Job\\Mail\\Empty\\"};
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.files_to_process = {"Job\\Mail\\*"};
  Names seen;
  archive.on_before_file = [&](BeforeFile& file) {
    seen.push_back(file.source);
    EXPECT_EQ(file.destination, "C:\\Back\\" + file.source);
    file.destination = "C:\\Elsewhere" + file.source.substr(8);
  };
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(seen, (Names{"Job\\Mail\\", "Job\\Mail\\Empty\\"}));
  EXPECT_TRUE(files.Has("C:\\Elsewhere\\Empty"));
  EXPECT_FALSE(files.Has("C:\\Back"));
}

TEST_F(ArchiveUnzipTest, AStarMayStandAnywhere) {
  ASSERT_EQ(ZipNames({"a\\one.reg", "a\\two.xml", "b\\one.reg", "b\\stars\\x*y"}), Result::kDone);
  const auto matching = [&](const Names& patterns) {
    archive.files_to_process = patterns;
    std::vector<Entry> entries;
    EXPECT_EQ(archive.List(&entries), Result::kDone);
    Names names;
    for (const Entry& entry : entries) names.push_back(entry.name);
    return names;
  };
  EXPECT_EQ(matching({"*.reg"}), (Names{"a\\one.reg", "b\\one.reg"}));
  EXPECT_EQ(matching({"a*"}), (Names{"a\\one.reg", "a\\two.xml"}));
  EXPECT_EQ(matching({"*o*x*"}), (Names{"a\\two.xml"}));
  EXPECT_EQ(matching({"b\\stars\\x*y"}), (Names{"b\\stars\\x*y"}));
  EXPECT_EQ(matching({"b\\one.reg", "*.xml"}), (Names{"a\\two.xml", "b\\one.reg"}));
  EXPECT_EQ(matching({"a\\one"}), Names());
  EXPECT_EQ(matching({"one.reg"}), Names());
}

TEST_F(ArchiveUnzipTest, ANameThatIsNotThereIsAFailure) {
  ASSERT_EQ(ZipNames({"a"}), Result::kDone);
  archive.files_to_process = {"b"};
  EXPECT_EQ(archive.Unzip(), Result::kFailed);
  EXPECT_EQ(archive.Test(), Result::kFailed);
  std::vector<Entry> entries;
  EXPECT_EQ(archive.List(&entries), Result::kDone);
  EXPECT_TRUE(entries.empty());
  archive.files_to_process = {"b", "a"};
  EXPECT_EQ(archive.Unzip(), Result::kDone);
}

TEST_F(ArchiveUnzipTest, AHandlerSendsAFileAnywhereAndItsFoldersAreMade) {
  ASSERT_EQ(ZipNames({"Job\\a.txt"}), Result::kDone);
  archive.on_before_file = [](BeforeFile& file) { file.destination = "C:\\X\\Y\\Z\\other.txt"; };
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\X\\Y\\Z\\other.txt"), "content of Job\\a.txt");
}

TEST_F(ArchiveUnzipTest, AnExcludedEntryIsNotWritten) {
  ASSERT_EQ(ZipNames({"a", "b"}), Result::kDone);
  archive.on_before_file = [](BeforeFile& file) { file.exclude = file.source == "a"; };
  EXPECT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(Below("C:\\Back"), (Names{"b"}));
}

TEST_F(ArchiveUnzipTest, WithoutPathsAllGoesIntoOneFolder) {
  ASSERT_EQ(ZipNames({"a\\b\\c.txt", "d.txt", "empty\\"}), Result::kDone);
  archive.preserve_paths = false;
  ASSERT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(Below("C:\\Back"), (Names{"c.txt", "d.txt", "empty"}));
}

TEST_F(ArchiveUnzipTest, WhatIsThereIsOverwrittenUnlessItIsToBeSkipped) {
  ASSERT_EQ(ZipNames({"a", "b"}), Result::kDone);
  files.Put("C:\\Back\\a", "my own");
  archive.skip_existing = true;
  EXPECT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\a"), "my own");
  EXPECT_EQ(files.Bytes("C:\\Back\\b"), "content of b");
  archive.skip_existing = false;
  EXPECT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\a"), "content of a");
}

TEST_F(ArchiveUnzipTest, AReadOnlyFileIsReplaced) {
  ASSERT_EQ(ZipNames({"a"}), Result::kDone);
  files.Put("C:\\Back\\a", "old", file_attribute::kReadOnly);
  EXPECT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\a"), "content of a");
}

TEST_F(ArchiveUnzipTest, AFileInUseStaysAndTheOthersAreWritten) {
  ASSERT_EQ(ZipNames({"a", "b"}), Result::kDone);
  files.Put("C:\\Back\\a", "in use", file_attribute::kReadOnly);
  faulty_files.SetInUse("C:\\Back\\a", true);
  EXPECT_EQ(archive.Unzip(), Result::kWarnings);
  EXPECT_EQ(warnings, (Names{"a"}));
  EXPECT_EQ(kinds, (Reasons{WarningReason::kNoRights}));
  EXPECT_EQ(unzipped, (Names{"C:\\Back\\b"}));
  EXPECT_EQ(files.Bytes("C:\\Back\\a"), "in use");
  EXPECT_EQ(files.Stat("C:\\Back\\a")->attributes, file_attribute::kReadOnly);
  EXPECT_EQ(files.Bytes("C:\\Back\\b"), "content of b");
  EXPECT_EQ(Below("C:\\Back"), (Names{"a", "b"}));
}

TEST_F(ArchiveUnzipTest, IfNothingCouldBeWrittenItIsAFailure) {
  ASSERT_EQ(ZipNames({"a"}), Result::kDone);
  files.PutFolder("C:\\Back\\a");
  EXPECT_EQ(archive.Unzip(), Result::kFailed);
  EXPECT_TRUE(files.Stat("C:\\Back\\a")->IsFolder());
  EXPECT_EQ(Below("C:\\Back"), Names());
}

TEST_F(ArchiveUnzipTest, AFileInTheWayOfAFolderStays) {
  ASSERT_EQ(ZipNames({"a\\b", "c"}), Result::kDone);
  files.Put("C:\\Back\\a", "a file");
  EXPECT_EQ(archive.Unzip(), Result::kWarnings);
  EXPECT_EQ(files.Bytes("C:\\Back\\a"), "a file");
  EXPECT_TRUE(files.Has("C:\\Back\\c"));
}

TEST_F(ArchiveUnzipTest, AFileOfAPersonThatLooksTemporaryIsNotTouched) {
  ASSERT_EQ(ZipNames({"a", "~obk1.tmp", "~obk2.tmp"}), Result::kDone);
  files.Put("C:\\Back\\~obk1.tmp", "mine", 32);
  files.Put("C:\\Back\\~obk3.tmp", "mine too", 32);
  archive.files_to_process = {"a", "~obk2.tmp"};
  EXPECT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\~obk1.tmp"), "mine");
  EXPECT_EQ(files.Bytes("C:\\Back\\~obk2.tmp"), "content of ~obk2.tmp");
  EXPECT_EQ(files.Bytes("C:\\Back\\~obk3.tmp"), "mine too");
  EXPECT_EQ(Below("C:\\Back"), (Names{"a", "~obk1.tmp", "~obk2.tmp", "~obk3.tmp"}));
}

TEST_F(ArchiveUnzipTest, AnEntryThatLooksTemporaryIsAFileLikeAnyOther) {
  ASSERT_EQ(ZipNames({"a", "~obk1.tmp", "~OBK2.tmp", "b"}), Result::kDone);
  EXPECT_EQ(archive.Unzip(), Result::kDone);
  EXPECT_EQ(Below("C:\\Back"), (Names{"a", "b", "~OBK2.tmp", "~obk1.tmp"}));
  EXPECT_EQ(files.Bytes("C:\\Back\\~obk1.tmp"), "content of ~obk1.tmp");
  EXPECT_EQ(files.Bytes("C:\\Back\\~obk2.tmp"), "content of ~OBK2.tmp");
  EXPECT_EQ(files.Bytes("C:\\Back\\b"), "content of b");
}

TEST_F(ArchiveUnzipTest, UnsafeNamesAreLeftOutWithAWarningAndWithoutAnEvent) {
  const Names unsafe = {"..\\evil",
                        "a\\..\\..\\evil",
                        "a\\..",
                        "C:\\evil",
                        "C:evil",
                        "a\\b:c",
                        "CON",
                        "nul.txt",
                        "a\\Com1\\b",
                        "lpt9.x.y",
                        "x\\aux",
                        "conin$",
                        "dot.",
                        "blank ",
                        "a. \\b",
                        "a\\ \\b",
                        "tab\tx",
                        "nul .txt",
                        "COM\xC2\xB9",
                        "que?stion",
                        "a\\\\b",
                        "a\\.\\b",
                        "<x>",
                        "a|b",
                        std::string("z\0z", 3)};
  Names all = unsafe;
  all.push_back("safe\\console.txt");
  all.push_back("safe\\com10");
  all.push_back("safe\\..x\\...y");
  ASSERT_EQ(ZipNames(all), Result::kDone);
  Names seen;
  archive.on_before_file = [&](BeforeFile& file) { seen.push_back(file.source); };
  const Names before = files.AllFiles();
  EXPECT_EQ(archive.Unzip(), Result::kWarnings);
  EXPECT_EQ(seen, (Names{"safe\\console.txt", "safe\\com10", "safe\\..x\\...y"}));
  EXPECT_EQ(warnings, unsafe);
  for (const std::string& path : files.AllFiles()) {
    const bool was_there = std::find(before.begin(), before.end(), path) != before.end();
    EXPECT_TRUE(was_there || path.rfind("C:\\Back\\safe\\", 0) == 0) << path;
  }
}

TEST_F(ArchiveUnzipTest, ANameThatStandsOnItsOwnInTheArchiveIsLeftOut) {
  // The writer takes leading separators away, so they are put in here.
  ASSERT_EQ(ZipNames({"xevil", "safe"}), Result::kDone);
  std::string bytes = files.Bytes("C:\\Out\\a.obk");
  for (std::size_t at = 0; (at = bytes.find("xevil", at)) != std::string::npos;) bytes[at] = '/';
  files.Put("C:\\Out\\a.obk", bytes);
  EXPECT_EQ(archive.Unzip(), Result::kWarnings);
  EXPECT_EQ(warnings, (Names{"\\evil"}));
  EXPECT_EQ(Below("C:\\Back"), (Names{"safe"}));
}

TEST_F(ArchiveUnzipTest, AFullDriveEndsItAndLeavesNoHalfFile) {
  archive.files_to_process.clear();
  AddSource("C:\\small", Prose(1000));
  AddSource("C:\\large", Noise(6'000'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  files.Put("C:\\Back\\large", "the old one");
  files.room = files.UsedBytes() + 3'000'000;
  EXPECT_EQ(UnzipAll(), Result::kNoSpace);
  EXPECT_EQ(warnings, (Names{"large"}));
  EXPECT_EQ(kinds, (Reasons{WarningReason::kNoRoom}));
  EXPECT_EQ(files.Bytes("C:\\Back\\large"), "the old one");
  EXPECT_EQ(Below("C:\\Back"), (Names{"large", "small"}));
}

TEST_F(ArchiveUnzipTest, WhatStandsInTheWayOfAnEntryIsTold) {
  ASSERT_EQ(ZipNames({"a", "b\\c", "d"}), Result::kDone);
  files.PutFolder("C:\\Back\\a");
  files.Put("C:\\Back\\b", "a file in the folder's place");
  EXPECT_EQ(archive.Unzip(), Result::kWarnings);
  EXPECT_EQ(warnings, (Names{"a", "b\\c"}));
  EXPECT_EQ(kinds, (Reasons{WarningReason::kPlaceTaken, WarningReason::kPlaceTaken}));
  EXPECT_EQ(unzipped, (Names{"C:\\Back\\d"}));
  EXPECT_EQ(Below("C:\\Back"), (Names{"b", "d"}));
  archive.files_to_process = {"d"};
  archive.unzip_folder = "Q:\\Back";
  kinds.clear();
  EXPECT_EQ(archive.Unzip(), Result::kFailed);
  EXPECT_EQ(kinds, (Reasons{WarningReason::kNoPlace}));
}

TEST_F(ArchiveUnzipTest, ADamagedEntryIsLeftOutAndTheOthersAreWritten) {
  AddSource("C:\\a", Prose(5'000, 1));
  AddSource("C:\\b", Prose(5'000, 2));
  AddSource("C:\\c", Prose(6'000'000, 3));
  AddSource("C:\\d", Prose(5'000, 4));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  std::string bytes = files.Bytes("C:\\Out\\a.obk");
  const std::vector<zip::Record> records = Records();
  bytes[records[1].offset + 200] ^= 0x40;
  bytes[records[2].offset + records[2].compressed_size - 1000] ^= 0x40;
  files.Put("C:\\Out\\a.obk", bytes);
  files.Put("C:\\Back\\b", "the old one");
  EXPECT_EQ(UnzipAll(), Result::kFailed);
  EXPECT_EQ(warnings, (Names{"b", "c"}));
  EXPECT_EQ(kinds, (Reasons{WarningReason::kDamaged, WarningReason::kDamaged}));
  EXPECT_EQ(unzipped, (Names{"C:\\Back\\a", "C:\\Back\\d"}));
  EXPECT_EQ(Below("C:\\Back"), (Names{"a", "b", "d"}));
  EXPECT_EQ(files.Bytes("C:\\Back\\b"), "the old one");
  EXPECT_EQ(TestAll(), Result::kFailed);
}

}  // namespace
}  // namespace quorvale::zip_test
