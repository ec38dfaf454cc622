#include "platform/windows/files.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

// Cyrillic and Greek: no single ANSI code page has both.
constexpr char kForeign[] = "\xD0\x9F\xD0\xB8\xD1\x81\xD1\x8C\xD0\xBC\xD0\xBE \xCE\xA9.txt";

class FilesTest : public testing::Test {
 protected:
  void SetUp() override {
    char temp[MAX_PATH] = "";
    GetTempPathA(sizeof(temp), temp);
    folder_ = FromAnsi(temp) + "quorvale_files_" + std::to_string(GetCurrentProcessId());
    Remove(folder_);
    ASSERT_EQ(files_.MakeFolder(folder_), FileStatus::kOk);
  }
  void TearDown() override { Remove(folder_); }
  void Remove(const std::string& folder) {
    for (const FileInfo& each : files_.List(folder)) {
      const std::string path = folder + "\\" + each.name;
      if (each.IsFolder()) {
        Remove(path);
      } else {
        files_.RemoveFile(path, true);
      }
    }
    files_.RemoveFolder(folder, true);
  }
  void Write(const std::string& path, const std::string& text) {
    FileStatus status = FileStatus::kFailed;
    auto file = files_.Create(path, &status);
    ASSERT_NE(file, nullptr) << static_cast<int>(status);
    ASSERT_EQ(file->Write(text.data(), text.size()), FileStatus::kOk);
    ASSERT_EQ(file->Close(), FileStatus::kOk);
  }
  std::string Read(const std::string& path) {
    auto file = files_.OpenRead(path);
    if (file == nullptr) return "(cannot be opened)";
    std::string text(static_cast<size_t>(file->Size()), '\0');
    const std::ptrdiff_t read = file->Read(text.data(), text.size());
    return read == static_cast<std::ptrdiff_t>(text.size()) ? text : "(short read)";
  }

  WindowsFiles files_;
  std::string folder_;
};

TEST_F(FilesTest, FileKeepsANameOutsideOfTheCodePage) {
  const std::string path = folder_ + "\\" + kForeign;
  Write(path, "abc");
  EXPECT_EQ(Read(path), "abc");
  const std::vector<FileInfo> list = files_.List(folder_);
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0].name, kForeign);
  EXPECT_EQ(list[0].size, 3u);
}

TEST_F(FilesTest, AListingIsRefusedWhereNoFolderIs) {
  Write(folder_ + "\\a.txt", "a");
  EXPECT_TRUE(files_.CanList(folder_));
  EXPECT_TRUE(files_.CanList("C:\\"));
  EXPECT_FALSE(files_.CanList(folder_ + "\\a.txt"));
  EXPECT_FALSE(files_.CanList(folder_ + "\\none"));
}

TEST_F(FilesTest, StatTellsFileFolderRootAndNothing) {
  Write(folder_ + "\\a.txt", "12345");
  const auto file = files_.Stat(folder_ + "\\A.TXT");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->name, "a.txt");
  EXPECT_EQ(file->size, 5u);
  EXPECT_FALSE(file->IsFolder());
  ASSERT_TRUE(files_.Stat(folder_ + "\\"));
  EXPECT_TRUE(files_.Stat(folder_ + "\\")->IsFolder());
  ASSERT_TRUE(files_.Stat("C:\\"));
  EXPECT_TRUE(files_.Stat("C:\\")->IsFolder());
  EXPECT_FALSE(files_.Stat(folder_ + "\\b.txt"));
  EXPECT_FALSE(files_.Stat(folder_ + "\\*"));
}

TEST_F(FilesTest, ReplaceGivesTheNewContentInOneStep) {
  Write(folder_ + "\\new", "new");
  Write(folder_ + "\\old", "old content");
  EXPECT_EQ(files_.Replace(folder_ + "\\new", folder_ + "\\old"), FileStatus::kOk);
  EXPECT_EQ(Read(folder_ + "\\old"), "new");
  EXPECT_FALSE(files_.Stat(folder_ + "\\new"));
}

TEST_F(FilesTest, ReadOnlyFileGoesOnlyByForce) {
  const std::string path = folder_ + "\\fixed";
  Write(path, "x");
  ASSERT_EQ(files_.SetAttributes(path, file_attribute::kReadOnly), FileStatus::kOk);
  EXPECT_EQ(files_.RemoveFile(path, false), FileStatus::kDenied);
  EXPECT_EQ(files_.RemoveFile(path, true), FileStatus::kOk);
  EXPECT_FALSE(files_.Stat(path));
}

TEST_F(FilesTest, HiddenFileIsWrittenAnew) {
  const std::string path = folder_ + "\\hidden";
  Write(path, "first");
  ASSERT_EQ(files_.SetAttributes(path, file_attribute::kHidden), FileStatus::kOk);
  Write(path, "two");
  EXPECT_EQ(Read(path), "two");
}

TEST_F(FilesTest, TimesAreKept) {
  const std::string path = folder_ + "\\dated";
  Write(path, "x");
  constexpr FileTime kMoment = 127000000000000000;  // 2003
  ASSERT_EQ(files_.SetModified(path, kMoment), FileStatus::kOk);
  ASSERT_TRUE(files_.Stat(path));
  EXPECT_EQ(files_.Stat(path)->modified, kMoment);
}

TEST_F(FilesTest, PathsLongerThanTheClassicLimitWork) {
  std::string deep = folder_;
  while (deep.size() < 300) {
    deep += "\\a folder with a rather long name";
    ASSERT_EQ(files_.MakeFolder(deep), FileStatus::kOk) << deep.size();
  }
  Write(deep + "\\file.txt", "deep");
  EXPECT_EQ(Read(deep + "\\file.txt"), "deep");
  ASSERT_EQ(files_.List(deep).size(), 1u);
}

TEST_F(FilesTest, MissingThingsAreToldApart) {
  EXPECT_EQ(files_.OpenRead(folder_ + "\\none"), nullptr);
  EXPECT_EQ(files_.RemoveFile(folder_ + "\\none", true), FileStatus::kNotFound);
  FileStatus status = FileStatus::kOk;
  EXPECT_EQ(files_.Create(folder_ + "\\none\\file", &status), nullptr);
  EXPECT_EQ(status, FileStatus::kNotFound);
  EXPECT_EQ(files_.MakeFolder(folder_), FileStatus::kOk);
  EXPECT_TRUE(files_.List(folder_ + "\\none").empty());
}

TEST_F(FilesTest, DrivesAreKnown) {
  EXPECT_TRUE(files_.DriveExists("C:"));
  EXPECT_TRUE(files_.DriveExists("c:\\"));
  EXPECT_EQ(files_.KindOfDrive("C:"), DriveKind::kFixed);
  const auto space = files_.Space("C:\\no\\such\\folder");
  ASSERT_TRUE(space);
  EXPECT_GT(space->total_bytes, 0u);
  EXPECT_GE(space->total_bytes, space->free_bytes);
}

}  // namespace
}  // namespace quorvale::windows
