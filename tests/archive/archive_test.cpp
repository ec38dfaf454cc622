// What the archive component stores, and what comes back.
#include <map>

#include "archive/archive_fixture.h"

namespace quorvale::zip_test {
namespace {

class ArchiveTest : public ArchiveFixture {};

const std::map<std::string, std::string>& SampleContents() {
  static const std::map<std::string, std::string> contents = {
      {"C:\\Data\\empty.dat", ""},
      {"C:\\Data\\one.dat", "x"},
      {"C:\\Data\\prose.txt", Prose(100'000)},
      {"C:\\Data\\noise.bin", Noise(50'000)},
      {"C:\\Data\\Sub\\block.dat", Prose(1024 * 1024)},
      {"C:\\Data\\Sub\\large.dat", Prose(1024 * 1024 + 1) + Noise(1'200'000) + Prose(100'000)},
      {"C:\\Data\\Sub\\large noise.dat", Noise(1'500'000)},
  };
  return contents;
}

TEST_F(ArchiveTest, WhatWasZippedComesBackAsItWas) {
  for (const int level : {9, 6, 1, 0}) {
    for (const bool encrypt : {false, true}) {
      SCOPED_TRACE(testing::Message() << "level " << level << " encrypted " << encrypt);
      archive.files_to_process.clear();
      for (const auto& [path, bytes] : SampleContents()) AddSource(path, bytes);
      archive.level = level;
      archive.encrypt = encrypt;
      archive.password = encrypt ? "secret" : "";
      ASSERT_EQ(archive.Zip(), Result::kDone);
      ASSERT_EQ(UnzipAll(), Result::kDone);
      for (const auto& [path, bytes] : SampleContents()) {
        const std::string back = "C:\\Back\\" + path.substr(3);
        EXPECT_TRUE(files.Bytes(back) == bytes) << back;
        EXPECT_EQ(files.Stat(back)->modified, kModified);
      }
      EXPECT_EQ(TestAll(), Result::kDone);
    }
  }
}

TEST_F(ArchiveTest, EachEntryIsToldAsItIsStored) {
  AddSource("C:\\a.txt", "123456789");
  const std::string large = Prose(3'000'000);
  AddSource("C:\\large.txt", large);
  archive.files_to_process.push_back("C:\\gone.txt");
  std::vector<std::string> told;
  std::vector<std::uint32_t> crcs;
  archive.on_before_file = [](BeforeFile& file) { file.entry_name = "x\\" + file.entry_name; };
  archive.on_stored = [&](const zip::StoredFile& file) {
    told.push_back(file.source + " as " + file.entry_name + ", " + std::to_string(file.size));
    crcs.push_back(file.crc);
  };
  ASSERT_EQ(archive.Zip(), Result::kWarnings);
  EXPECT_EQ(told, (std::vector<std::string>{"C:\\a.txt as x\\a.txt, 9",
                                            "C:\\large.txt as x\\large.txt, 3000000"}));
  const std::vector<Entry> entries = ListAll();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(crcs, (std::vector<std::uint32_t>{0xCBF43926, entries[1].crc}));
}

TEST_F(ArchiveTest, ATestHandsOverWhatItReads) {
  AddSource("C:\\a.txt", "first");
  AddSource("C:\\b.txt", Prose(2'000'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  std::string read;
  archive.on_tested = [&read](const std::uint8_t* data, std::size_t count) {
    read.append(reinterpret_cast<const char*>(data), count);
  };
  archive.files_to_process = {"a.txt"};
  EXPECT_EQ(archive.Test(), Result::kDone);
  EXPECT_EQ(read, "first");
  read.clear();
  EXPECT_EQ(TestAll(), Result::kDone);
  EXPECT_TRUE(read == "first" + Prose(2'000'000));
}

TEST_F(ArchiveTest, TheLastSourceIsMadeWhenAllElseIsStored) {
  AddSource("C:\\a.txt", "first");
  AddSource("C:\\b.txt", Prose(2'000'000));
  std::string told;
  archive.on_stored = [&](const zip::StoredFile& file) { told += file.entry_name + ";"; };
  archive.last_source = [&](std::string* path) {
    *path = "C:\\list.txt";
    files.Put(*path, told, 32, kModified);
    return FileStatus::kOk;
  };
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(told, "a.txt;b.txt;list.txt;");
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\list.txt"), "a.txt;b.txt;");
}

TEST_F(ArchiveTest, WithoutItsLastSourceThereIsNoArchive) {
  AddSource("C:\\a.txt", "first");
  archive.last_source = [](std::string*) { return FileStatus::kNoSpace; };
  EXPECT_EQ(archive.Zip(), Result::kNoSpace);
  archive.last_source = [](std::string* path) {
    *path = "C:\\not there";
    return FileStatus::kOk;
  };
  EXPECT_EQ(archive.Zip(), Result::kFailed);
  EXPECT_FALSE(files.Stat("C:\\Out\\a.obk"));
}

TEST_F(ArchiveTest, AnEntryThatNoFileCanBeNamedAfterComesOutUnderAnotherName) {
  ASSERT_EQ(ZipNames({"Acme Inc.\\a.txt", "con\\b.txt", "..\\c.txt"}), Result::kDone);
  archive.offer_unusual_names = true;
  archive.on_before_file = [](BeforeFile& file) {
    if (file.entry_name.ends_with("a.txt")) file.destination = "C:\\Back\\a.txt";
    if (file.entry_name.ends_with("c.txt")) file.destination = "C:\\Back\\c.txt";
  };
  EXPECT_EQ(UnzipAll(), Result::kWarnings);
  archive.on_before_file = nullptr;
  EXPECT_EQ(files.Bytes("C:\\Back\\a.txt"), "content of Acme Inc.\\a.txt");
  EXPECT_EQ(warnings, (Names{"con\\b.txt", "..\\c.txt"}));
  EXPECT_FALSE(files.Stat("C:\\Back\\c.txt"));
}

TEST_F(ArchiveTest, TheSameArchiveIsMadeWithAnyNumberOfWorkers) {
  std::string first;
  for (const int threads : {0, 1, 2, 5}) {
    archive.files_to_process.clear();
    for (const auto& [path, bytes] : SampleContents()) AddSource(path, bytes);
    archive.worker_threads = threads;
    ASSERT_EQ(archive.Zip(), Result::kDone);
    const std::string bytes = files.Bytes("C:\\Out\\a.obk");
    if (first.empty()) first = bytes;
    EXPECT_TRUE(bytes == first) << threads;
    EXPECT_EQ(UnzipAll(), Result::kDone);
  }
}

TEST_F(ArchiveTest, EntriesStandInTheOrderGiven) {
  Names expected;
  for (int i = 0; i < 400; ++i) {
    const std::string number = std::to_string((i * 7919) % 400);
    AddSource("C:\\f" + number, i % 50 == 0 ? Prose(1'100'000) : Prose(100));
    expected.push_back("f" + number);
  }
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(ListNames(), expected);
}

TEST_F(ArchiveTest, AHandlerGivesTheNames) {
  AddSource("C:\\Data\\a.txt", "a");
  AddSource("C:\\Data\\b.txt", "b");
  archive.on_before_file = [](BeforeFile& file) {
    EXPECT_EQ(file.entry_name, file.source.substr(3));
    file.entry_name = "Job\\Mail\\" + file.source.substr(8);
  };
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(ListNames(), (Names{"Job\\Mail\\a.txt", "Job\\Mail\\b.txt"}));
  // On the disk the separator is the one that all tools know.
  EXPECT_NE(files.Bytes("C:\\Out\\a.obk").find("Job/Mail/a.txt"), std::string::npos);
}

TEST_F(ArchiveTest, AnEmptyNameIsLeftOutWithAWarning) {
  EXPECT_EQ(ZipNames({"first", "", "\\"}), Result::kWarnings);
  EXPECT_EQ(ListNames(), (Names{"first"}));
  EXPECT_EQ(warnings, (Names{"C:\\src1", "C:\\src2"}));
}

TEST_F(ArchiveTest, NamesGoInWithoutDriveAndShareMarks) {
  files.PutFolder("\\\\server\\share");
  AddSource("C:\\Data\\a.txt", "a");
  AddSource("\\\\server\\share\\b.txt", "b");
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(ListNames(), (Names{"Data\\a.txt", "server\\share\\b.txt"}));
}

TEST_F(ArchiveTest, WithoutPathsOnlyTheLastComponentCounts) {
  AddSource("C:\\Data\\Sub\\a.txt", "a");
  archive.preserve_paths = false;
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(ListNames(), (Names{"a.txt"}));
}

TEST_F(ArchiveTest, AnExcludedSourceIsLeftOutWithoutAWarning) {
  AddSource("C:\\a", "a");
  AddSource("C:\\b", "b");
  archive.on_before_file = [](BeforeFile& file) { file.exclude = file.source == "C:\\a"; };
  EXPECT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(ListNames(), (Names{"b"}));
}

TEST_F(ArchiveTest, FoldersComeBackAlsoEmptyOnes) {
  files.PutFolder("C:\\Data\\Empty");
  files.PutFolder("C:\\Data\\Other");
  files.PutFolder("C:\\Data\\Third");
  archive.files_to_process = {"C:\\Data\\Empty\\", "C:\\Data\\Other\\*.*", "C:\\Data\\Third"};
  Names sources;
  archive.on_before_file = [&](BeforeFile& file) { sources.push_back(file.source); };
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(sources, (Names{"C:\\Data\\Empty\\", "C:\\Data\\Other\\", "C:\\Data\\Third\\"}));
  archive.on_before_file = nullptr;
  EXPECT_EQ(ListNames(), (Names{"Data\\Empty\\", "Data\\Other\\", "Data\\Third\\"}));
  EXPECT_TRUE(ListAll()[0].is_folder);
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_TRUE(files.Stat("C:\\Back\\Data\\Empty")->IsFolder());
  EXPECT_TRUE(files.Stat("C:\\Back\\Data\\Third")->IsFolder());
}

TEST_F(ArchiveTest, AttributesComeBack) {
  for (std::uint32_t bits = 0; bits < 16; ++bits) {
    const std::uint32_t attributes = (bits & 7) | ((bits & 8) != 0 ? 32 : 0);
    AddSource("C:\\f" + std::to_string(bits), "x", attributes);
  }
  ASSERT_EQ(archive.Zip(), Result::kDone);
  ASSERT_EQ(UnzipAll(), Result::kDone);
  for (std::uint32_t bits = 0; bits < 16; ++bits) {
    const std::uint32_t attributes = (bits & 7) | ((bits & 8) != 0 ? 32 : 0);
    EXPECT_EQ(files.Stat("C:\\Back\\f" + std::to_string(bits))->attributes, attributes);
  }
}

TEST_F(ArchiveTest, TimesComeBackToTheTickInAnyTimeZone) {
  const std::vector<FileTime> times = {
      1,                        // 1601
      119'600'063'999'999'999,  // just before 1980
      119'600'064'000'000'001,  // 1980
      128'000'000'123'456'789,  // 2006
      137'919'572'470'000'000,  // just before the end of 31-bit seconds
      137'919'572'490'000'007,  // behind it
      160'000'000'000'000'000,  // 2108
      0x7FFFFFFFFFFFFFFF,
  };
  for (std::size_t i = 0; i < times.size(); ++i) {
    const std::string path = "C:\\t" + std::to_string(i);
    files.Put(path, "x", 32, times[i]);
    archive.files_to_process.push_back(path);
  }
  ASSERT_EQ(archive.Zip(), Result::kDone);
  system.hours_east = -7;
  ASSERT_EQ(UnzipAll(), Result::kDone);
  for (std::size_t i = 0; i < times.size(); ++i) {
    EXPECT_EQ(files.Stat("C:\\Back\\t" + std::to_string(i))->modified, times[i]) << i;
  }
}

TEST_F(ArchiveTest, AFolderKeepsItsTimeAndAttributesUnlessItWasThereBefore) {
  files.PutFolder("C:\\New");
  files.SetModified("C:\\New", kModified);
  files.SetAttributes("C:\\New", file_attribute::kSystem);
  files.PutFolder("C:\\Old");
  files.SetModified("C:\\Old", kModified);
  archive.files_to_process = {"C:\\New\\", "C:\\Old\\"};
  AddSource("C:\\New\\a.txt", "a");
  ASSERT_EQ(archive.Zip(), Result::kDone);
  files.PutFolder("C:\\Back\\Old");
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_EQ(files.Stat("C:\\Back\\New")->modified, kModified);
  EXPECT_EQ(files.Stat("C:\\Back\\New")->attributes,
            file_attribute::kSystem | file_attribute::kFolder);
  EXPECT_EQ(files.Stat("C:\\Back\\Old")->modified, 0);
}

TEST_F(ArchiveTest, NamesOutsideAsciiCarryTheUtf8Flag) {
  const std::string name = "Fotos \xC3\xBC\xE2\x82\xAC\\\xE6\x97\xA5.txt";
  ASSERT_EQ(ZipNames({name, "plain.txt"}), Result::kDone);
  const std::vector<zip::Record> records = Records();
  EXPECT_EQ(records[0].name, name);
  EXPECT_NE(records[0].flags & zip::kFlagUtf8, 0);
  EXPECT_EQ(records[1].flags & zip::kFlagUtf8, 0);
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_TRUE(files.Has("C:\\Back\\" + name));
}

TEST_F(ArchiveTest, NamesWithoutTheFlagAreReadInTheCodePage) {
  ASSERT_EQ(ZipNames({"gr#n.txt"}), Result::kDone);
  std::string bytes = files.Bytes("C:\\Out\\a.obk");
  for (std::size_t at = 0; (at = bytes.find("gr#n", at)) != std::string::npos;) {
    bytes[at + 2] = '\xFC';
  }
  files.Put("C:\\Out\\a.obk", bytes);
  EXPECT_EQ(ListNames(), (Names{"gr\xC3\xBCn.txt"}));
}

TEST_F(ArchiveTest, DataThatDoesNotShrinkIsStored) {
  AddSource("C:\\noise", Noise(10'000));
  AddSource("C:\\prose", Prose(10'000));
  AddSource("C:\\tiny", "ab");
  ASSERT_EQ(archive.Zip(), Result::kDone);
  const std::vector<zip::Record> records = Records();
  EXPECT_EQ(records[0].method, zip::kMethodStored);
  EXPECT_EQ(records[0].compressed_size, 10'000u);
  EXPECT_EQ(records[1].method, zip::kMethodDeflated);
  EXPECT_LT(records[1].compressed_size, 4'000u);
  EXPECT_EQ(records[2].method, zip::kMethodStored);
}

TEST_F(ArchiveTest, LargeDataThatDoesNotShrinkGrowsByLessThanAThousandth) {
  AddSource("C:\\noise", Noise(3'000'000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  EXPECT_LT(Records()[0].compressed_size, 3'000'000u + 3'000u);
}

TEST_F(ArchiveTest, LevelZeroStoresAndHigherLevelsAreNotLarger) {
  std::map<int, std::uint64_t> sizes;
  for (const int level : {0, 1, 6, 9}) {
    archive.files_to_process.clear();
    AddSource("C:\\small", Prose(200'000));
    AddSource("C:\\large", Prose(1'500'000));
    archive.level = level;
    ASSERT_EQ(archive.Zip(), Result::kDone);
    const std::vector<zip::Record> records = Records();
    for (const zip::Record& record : records) {
      EXPECT_EQ(record.method, level == 0 ? zip::kMethodStored : zip::kMethodDeflated);
      sizes[level] += record.compressed_size;
    }
  }
  EXPECT_EQ(sizes[0], 1'700'000u);
  EXPECT_LT(sizes[1], sizes[0] / 2);
  EXPECT_LE(sizes[6], sizes[1]);
  EXPECT_LE(sizes[9], sizes[6]);
}

TEST_F(ArchiveTest, AFileGivenTwiceStandsTwiceAndTheLastOneIsRestored) {
  AddSource("C:\\a", "first");
  AddSource("C:\\b", "second");
  archive.files_to_process.push_back("C:\\a");
  archive.on_before_file = [](BeforeFile& file) {
    file.entry_name = file.source == "C:\\b" ? "SAME.reg" : "same.reg";
  };
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.on_before_file = nullptr;
  EXPECT_EQ(ListNames(), (Names{"same.reg", "SAME.reg", "same.reg"}));
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\same.reg"), "first");
  ASSERT_EQ(ZipNames({"x\\y", "X\\Y"}), Result::kDone);
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_EQ(files.Bytes("C:\\Back\\x\\y"), "content of X\\Y");
}

TEST_F(ArchiveTest, AMissingSourceIsLeftOutWithAWarning) {
  archive.files_to_process = {"C:\\gone"};
  AddSource("C:\\there", "x");
  EXPECT_EQ(archive.Zip(), Result::kWarnings);
  EXPECT_EQ(warnings, (Names{"C:\\gone"}));
  EXPECT_EQ(ListNames(), (Names{"there"}));
}

TEST_F(ArchiveTest, WithNothingToStoreTheOldArchiveStays) {
  files.Put("C:\\Out\\a.obk", "the old one");
  archive.files_to_process = {"C:\\gone"};
  EXPECT_EQ(archive.Zip(), Result::kFailed);
  archive.files_to_process.clear();
  EXPECT_EQ(archive.Zip(), Result::kFailed);
  EXPECT_EQ(files.Bytes("C:\\Out\\a.obk"), "the old one");
  EXPECT_EQ(Below("C:\\Out"), (Names{"a.obk"}));
}

TEST_F(ArchiveTest, AttributeFiltersChooseSourcesAndEntries) {
  AddSource("C:\\plain", "x", 0);
  AddSource("C:\\hidden", "x", file_attribute::kHidden);
  AddSource("C:\\both", "x", file_attribute::kHidden | file_attribute::kSystem);
  files.PutFolder("C:\\folder");
  archive.files_to_process.push_back("C:\\folder\\");
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.files_to_process.clear();
  std::vector<Entry> entries;
  archive.required_attributes = file_attribute::kHidden;
  ASSERT_EQ(archive.List(&entries), Result::kDone);
  EXPECT_EQ(entries.size(), 2u);
  archive.excluded_attributes = file_attribute::kSystem;
  ASSERT_EQ(archive.List(&entries), Result::kDone);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].name, "hidden");
  archive.required_attributes = 0;
  archive.excluded_attributes = file_attribute::kFolder;
  ASSERT_EQ(archive.List(&entries), Result::kDone);
  EXPECT_EQ(entries.size(), 3u);
  archive.excluded_attributes = file_attribute::kHidden;
  archive.files_to_process = {"C:\\plain", "C:\\hidden", "C:\\both"};
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.excluded_attributes = 0;
  EXPECT_EQ(ListNames(), (Names{"plain"}));
}

TEST_F(ArchiveTest, AListingTellsWhatAnEntryIs) {
  AddSource("C:\\a.txt", Prose(5000), 33);
  archive.encrypt = true;
  archive.password = "p";
  ASSERT_EQ(archive.Zip(), Result::kDone);
  archive.password = "";  // a listing needs none
  const std::vector<Entry> entries = ListAll();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].name, "a.txt");
  EXPECT_FALSE(entries[0].is_folder);
  EXPECT_TRUE(entries[0].encrypted);
  EXPECT_EQ(entries[0].size, 5000u);
  EXPECT_LT(entries[0].compressed_size, 5000u);
  EXPECT_EQ(entries[0].attributes, 33u);
  EXPECT_EQ(entries[0].modified, kModified);
}

TEST_F(ArchiveTest, WhatIsNoArchiveIsRefused) {
  std::vector<Entry> entries = {Entry()};
  EXPECT_EQ(archive.List(&entries), Result::kFailed);
  EXPECT_TRUE(entries.empty());
  EXPECT_EQ(archive.Test(), Result::kFailed);
  EXPECT_EQ(archive.Unzip(), Result::kFailed);
  for (const std::string& bytes : {std::string(), std::string("PK\5\6"), Noise(100'000)}) {
    files.Put("C:\\Out\\a.obk", bytes);
    EXPECT_EQ(archive.List(&entries), Result::kFailed);
    EXPECT_EQ(archive.Test(), Result::kFailed);
    EXPECT_EQ(archive.Unzip(), Result::kFailed);
  }
  archive.archive_name = "C:\\Out";
  EXPECT_EQ(archive.Test(), Result::kFailed);
  archive.archive_name = "";
  EXPECT_EQ(archive.Test(), Result::kFailed);
  EXPECT_EQ(archive.Zip(), Result::kFailed);
}

TEST_F(ArchiveTest, AnEmptyArchiveIsGood) {
  files.Put("C:\\Out\\a.obk", std::string("PK\5\6", 4) + std::string(18, '\0'));
  EXPECT_TRUE(ListAll().empty());
  EXPECT_EQ(TestAll(), Result::kDone);
  EXPECT_EQ(UnzipAll(), Result::kDone);
}

TEST_F(ArchiveTest, BytesBeforeTheArchiveAndACommentBehindItAreNoHindrance) {
  AddSource("C:\\a", Prose(5000));
  ASSERT_EQ(archive.Zip(), Result::kDone);
  std::string bytes = files.Bytes("C:\\Out\\a.obk");
  bytes[bytes.size() - 2] = 7;
  files.Put("C:\\Out\\a.obk", Noise(3000) + bytes + "comment");
  EXPECT_EQ(TestAll(), Result::kDone);
  ASSERT_EQ(UnzipAll(), Result::kDone);
  EXPECT_TRUE(files.Bytes("C:\\Back\\a") == Prose(5000));
  files.Put("C:\\Out\\a.obk", bytes + "comment and more behind it");
  EXPECT_EQ(TestAll(), Result::kDone);
}

TEST_F(ArchiveTest, ResetSetsAllPropertiesAndKeepsTheEvents) {
  archive.password = "p";
  archive.encrypt = true;
  archive.level = 0;
  archive.split_size = 5;
  archive.preserve_paths = false;
  archive.skip_existing = true;
  archive.required_attributes = 1;
  archive.excluded_attributes = 2;
  archive.files_to_process = {"x"};
  archive.ResetDefaults();
  EXPECT_EQ(archive.archive_name, "");
  EXPECT_TRUE(archive.files_to_process.empty());
  EXPECT_EQ(archive.password, "");
  EXPECT_FALSE(archive.encrypt);
  EXPECT_EQ(archive.level, 6);
  EXPECT_EQ(archive.split_size, 0u);
  EXPECT_EQ(archive.unzip_folder, "");
  EXPECT_TRUE(archive.preserve_paths);
  EXPECT_FALSE(archive.skip_existing);
  EXPECT_EQ(archive.required_attributes, 0u);
  EXPECT_EQ(archive.excluded_attributes, 0u);
  EXPECT_TRUE(archive.on_warning != nullptr);
}

TEST_F(ArchiveTest, NoOperationBeginsInsideAnother) {
  AddSource("C:\\a", "a");
  Result inner = Result::kDone;
  archive.on_before_file = [&](BeforeFile&) {
    EXPECT_EQ(archive.current_operation(), zip::Operation::kZipping);
    inner = archive.Test();
  };
  EXPECT_EQ(archive.Zip(), Result::kDone);
  EXPECT_EQ(inner, Result::kFailed);
  EXPECT_EQ(archive.current_operation(), zip::Operation::kNone);
}

TEST_F(ArchiveTest, ProgressRisesToAHundred) {
  for (const bool unzip : {false, true}) {
    archive.files_to_process.clear();
    if (!unzip) {
      for (int i = 0; i < 30; ++i) AddSource("C:\\s" + std::to_string(i), Prose(50'000));
      AddSource("C:\\large", Prose(5'500'000));
      AddSource("C:\\empty", "");
    }
    std::vector<int> totals;
    int file_hundreds = 0;
    archive.on_total_progress = [&](int percent) {
      EXPECT_EQ(archive.current_operation(),
                unzip ? zip::Operation::kUnzipping : zip::Operation::kZipping);
      totals.push_back(percent);
    };
    archive.on_file_progress = [&](int percent) {
      EXPECT_GE(percent, 0);
      EXPECT_LE(percent, 100);
      if (percent == 100) ++file_hundreds;
    };
    ASSERT_EQ(unzip ? archive.Unzip() : archive.Zip(), Result::kDone);
    EXPECT_TRUE(std::is_sorted(totals.begin(), totals.end()));
    EXPECT_EQ(std::count(totals.begin(), totals.end(), 100), 1);
    EXPECT_EQ(totals.back(), 100);
    EXPECT_GT(totals.size(), 10u);
    EXPECT_GE(file_hundreds, 32);
  }
}

}  // namespace
}  // namespace quorvale::zip_test
