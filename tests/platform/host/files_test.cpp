#include "platform/host/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "base/text.h"
#include "machine_fixture.h"
#include "platform/file_toolkit.h"

namespace quorvale::host {
namespace {

namespace attribute = file_attribute;

class HostFilesTest : public MachineTest {
 protected:
  virtual HostFiles& files() { return platform_->files(); }
  FileToolkit Toolkit() {
    return FileToolkit(files(), [] {});
  }
  std::string Host(const std::string& name) { return folder_ / ("drive_c/" + name); }
  std::vector<std::string> NamesIn(const std::string& path) {
    std::vector<std::string> names;
    for (const FileInfo& info : files().List(path)) names.push_back(info.name);
    return names;
  }
  FileStatus Write(const std::string& path, const std::string& bytes) {
    FileStatus status = FileStatus::kOk;
    auto file = files().Create(path, &status);
    if (!file) return status;
    status = file->Write(bytes.data(), bytes.size());
    const FileStatus closed = file->Close();
    return status == FileStatus::kOk ? closed : status;
  }
  std::optional<std::string> Read(const std::string& path) { return Toolkit().ReadWhole(path); }
  std::uint64_t Free(const std::string& path) { return files().Space(path)->free_bytes; }
};

using NameList = std::vector<std::string>;

TEST_F(HostFilesTest, NamesAreMatchedWithoutRegardToCase) {
  WriteHost(Host("Users/M\u00DCLLER/Mail.DBX"), "mail");
  EXPECT_EQ("mail", Read("c:\\users\\m\u00FCller\\mail.dbx"));
  const auto info = files().Stat("C:\\USERS\\M\u00FCller\\MAIL.dbx");
  ASSERT_TRUE(info);
  EXPECT_EQ("Mail.DBX", info->name);
  EXPECT_EQ(4u, info->size);
  EXPECT_FALSE(info->IsFolder());
}

TEST_F(HostFilesTest, ExactNameGoesFirst) {
  WriteHost(Host("a.txt"), "small");
  WriteHost(Host("A.txt"), "capital");
  EXPECT_EQ("small", Read("C:\\a.txt"));
  EXPECT_EQ("capital", Read("C:\\A.txt"));
  EXPECT_TRUE(Read("C:\\A.TXT"));
  EXPECT_EQ(2u, files().List("C:\\").size());
}

TEST_F(HostFilesTest, AListingIsRefusedWhereNoFolderIs) {
  WriteHost(Host("a.txt"), "a");
  EXPECT_TRUE(files().CanList("C:\\"));
  EXPECT_FALSE(files().CanList("C:\\a.txt"));
  EXPECT_FALSE(files().CanList("C:\\none"));
  EXPECT_FALSE(files().CanList("Q:\\"));
}

TEST_F(HostFilesTest, NamesOutsideTheCodePageAreKept) {
  EXPECT_EQ(FileStatus::kOk, Write("C:\\\u65E5\u672C.txt", "x"));
  EXPECT_TRUE(std::filesystem::exists(Host("\u65E5\u672C.txt")));
  EXPECT_EQ(NameList{"\u65E5\u672C.txt"}, NamesIn("C:"));
}

TEST_F(HostFilesTest, PathForms) {
  WriteHost(Host("d/a.txt"), "x");
  for (const char* path :
       {"C:\\d\\a.txt", "c:\\D\\A.TXT", "C:\\\\d\\\\a.txt", "C:\\d\\.\\a.txt", "C:/d/a.txt",
        "C:d\\a.txt", "C:\\x\\..\\d\\a.txt", "C:\\d\\a.txt.", "C:\\d \\a.txt "}) {
    EXPECT_TRUE(files().Stat(path)) << path;
  }
  EXPECT_TRUE(files().Stat("C:\\d\\")->IsFolder());
  EXPECT_TRUE(files().Stat("C:")->IsFolder());
  EXPECT_TRUE(files().Stat("C:\\")->IsFolder());
  for (const char* path :
       {"", "C", "d\\a.txt", "\\d\\a.txt", "Q:\\a.txt", "1:\\", "C:\\d\\a.txt\\x",
        "\\\\server\\share\\a.txt", "F:\\", "C:\\none\\a.txt", "C:\\d\\b.txt"}) {
    EXPECT_FALSE(files().Stat(path)) << path;
  }
  EXPECT_FALSE(files().Stat(std::string("C:\\d\0\\a.txt", 11)));
}

TEST_F(HostFilesTest, DotsCannotLeaveTheDrive) {
  EXPECT_FALSE(files().Stat("C:\\..\\machine.ini"));
  EXPECT_FALSE(files().Stat("C:\\..\\..\\..\\etc\\passwd"));
  EXPECT_EQ(FileStatus::kOk, Write("C:\\..\\..\\out.txt", "x"));
  EXPECT_TRUE(std::filesystem::exists(Host("out.txt")));
  EXPECT_EQ(FileStatus::kOk, Write("C:/../../out2.txt", "x"));
  EXPECT_TRUE(std::filesystem::exists(Host("out2.txt")));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out.txt"));
}

TEST_F(HostFilesTest, LinksThatPointOutsideAreNotFollowed) {
  WriteHost(folder_ / "secret/a.txt", "secret");
  std::filesystem::create_symlink(folder_ / "secret/a.txt", Host("file"));
  std::filesystem::create_symlink(folder_ / "secret", Host("dir"));
  std::filesystem::create_symlink("../secret", Host("relative"));
  std::filesystem::create_symlink("nowhere", Host("dangling"));
  std::filesystem::create_symlink("loop", Host("loop"));
  for (const char* path : {"C:\\file", "C:\\dir", "C:\\dir\\a.txt", "C:\\relative\\a.txt",
                           "C:\\dangling", "C:\\loop", "C:\\loop\\x"}) {
    EXPECT_FALSE(files().Stat(path)) << path;
    EXPECT_FALSE(files().OpenRead(path)) << path;
    EXPECT_NE(FileStatus::kOk, Write(path, "x")) << path;
    EXPECT_NE(FileStatus::kOk, files().MakeFolder(path)) << path;
    EXPECT_NE(FileStatus::kOk, files().RemoveFile(path, true)) << path;
    EXPECT_EQ("", files().HostPath(path)) << path;
  }
  EXPECT_EQ(FileStatus::kNotFound, Write("C:\\dir\\new.txt", "x"));
  EXPECT_EQ(FileStatus::kNotFound, Write("C:\\relative\\new.txt", "x"));
  WriteHost(Host("own.txt"), "own");
  EXPECT_NE(FileStatus::kOk, files().Replace("C:\\own.txt", "C:\\file"));
  EXPECT_NE(FileStatus::kOk, files().Replace("C:\\own.txt", "C:\\dir\\b.txt"));
  EXPECT_EQ(NameList{"own.txt"}, NamesIn("C:\\"));
  EXPECT_EQ("secret", ReadHost(folder_ / "secret/a.txt"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "secret/new.txt"));
  EXPECT_FALSE(std::filesystem::exists(Host("nowhere")));
}

TEST_F(HostFilesTest, LinksInsideTheDriveAreFollowedButFolderLinksAreNotListed) {
  WriteHost(Host("real/a.txt"), "inside");
  std::filesystem::create_symlink("real/a.txt", Host("file.txt"));
  std::filesystem::create_symlink("real", Host("link"));
  std::filesystem::create_symlink("..", Host("real/up"));
  EXPECT_EQ("inside", Read("C:\\file.txt"));
  EXPECT_EQ("inside", Read("C:\\LINK\\A.txt"));
  EXPECT_EQ("inside", Read("C:\\real\\up\\real\\up\\real\\a.txt"));
  EXPECT_EQ((NameList{"file.txt", "real"}), NamesIn("C:\\"));
  EXPECT_EQ(NameList{"a.txt"}, NamesIn("C:\\link"));
  EXPECT_EQ(4u, Toolkit().ListFilesDeep("C:\\", "*.*").size());
  // Removing a link leaves what it points to.
  EXPECT_EQ(FileStatus::kOk, files().RemoveFile("C:\\file.txt", false));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFolder("C:\\link", false));
  EXPECT_EQ("inside", Read("C:\\real\\a.txt"));
}

TEST_F(HostFilesTest, AFolderThatIsReplacedBehindTheProgramsBackIsSeen) {
  WriteHost(Host("d/e/a.txt"), "one");
  EXPECT_EQ("one", Read("C:\\d\\e\\a.txt"));
  std::filesystem::rename(Host("d"), Host("old"));
  EXPECT_FALSE(files().Stat("C:\\d\\e\\a.txt"));
  WriteHost(Host("d/e/a.txt"), "two");
  EXPECT_EQ("two", Read("C:\\d\\e\\a.txt"));
  // A link that leads outside, in the place of the folder.
  WriteHost(folder_ / "secret/a.txt", "secret");
  std::filesystem::remove_all(Host("d/e"));
  std::filesystem::create_symlink(folder_ / "secret", Host("d/e"));
  EXPECT_FALSE(files().Stat("C:\\d\\e\\a.txt"));
  // A file in the place of the folder.
  std::filesystem::remove(Host("d/e"));
  WriteHost(Host("d/e"), "a file");
  EXPECT_FALSE(files().Stat("C:\\d\\e\\a.txt"));
  EXPECT_EQ("one", Read("C:\\old\\e\\a.txt"));
}

TEST_F(HostFilesTest, ADriveThatIsReplacedShowsItsNewFiles) {
  WriteHost(Host("d/e/a.txt"), "one");
  WriteHost(folder_ / "other/d/e/a.txt", "two");
  EXPECT_EQ("one", Read("C:\\d\\e\\a.txt"));
  files().SetDrive('C', DriveKind::kFixed, folder_ / "other");
  EXPECT_EQ("two", Read("C:\\d\\e\\a.txt"));
  files().RemoveDrive('C');
  EXPECT_FALSE(files().Stat("C:\\d\\e\\a.txt"));
}

TEST_F(HostFilesTest, DriveItselfMayBeALink) {
  std::filesystem::remove_all(folder_ / "drive_c");
  WriteHost(folder_ / "disk/a.txt", "x");
  std::filesystem::create_symlink(folder_ / "disk", folder_ / "drive_c");
  Reopen();
  EXPECT_EQ("x", Read("C:\\a.txt"));
}

TEST_F(HostFilesTest, HostIsDriveZ) {
  WriteHost(Host("a.txt"), "x");
  const std::string path = MachinePathOf(Host("a.txt"));
  EXPECT_EQ("Z:\\", path.substr(0, 3));
  EXPECT_EQ("x", Read(path));
  EXPECT_EQ(DriveKind::kFixed, files().KindOfDrive("Z:"));
  EXPECT_TRUE(files().Stat("Z:\\")->IsFolder());
  EXPECT_FALSE(files().List("Z:\\").empty());
  EXPECT_EQ("Z:\\home\\x\\a.obk", MachinePathOf("/home/x/a.obk"));
  EXPECT_EQ("C:\\a.obk", MachinePathOf("C:\\a.obk"));
  EXPECT_EQ("\\\\s\\t\\a.obk", MachinePathOf("\\\\s\\t\\a.obk"));
  EXPECT_EQ(MachinePathOf(std::filesystem::current_path().string() + "/a.obk"),
            MachinePathOf("a.obk"));
  EXPECT_EQ("", MachinePathOf(""));
}

TEST_F(HostFilesTest, DevicesAndPipesOfTheHostAreNoFiles) {
  ASSERT_EQ(0, mkfifo(Host("pipe").c_str(), 0600));
  EXPECT_FALSE(files().Stat("C:\\pipe"));
  EXPECT_FALSE(files().OpenRead("C:\\pipe"));
  EXPECT_EQ(FileStatus::kDenied, Write("C:\\pipe", "x"));
  EXPECT_TRUE(files().List("C:\\").empty());
  EXPECT_EQ(FileStatus::kDenied, Write("Z:\\dev\\null", "x"));
}

TEST_F(HostFilesTest, NameWithABackslashIsNotListed) {
  WriteHost(Host("..\\machine.ini"), "x");
  WriteHost(Host("plain"), "x");
  EXPECT_EQ(NameList{"plain"}, NamesIn("C:\\"));
}

TEST_F(HostFilesTest, ListingIsSortedLikeTheSystemsOwn) {
  for (const char* name : {"b.txt", "_x", "A.txt", "c"}) WriteHost(Host(name), "");
  EXPECT_EQ((NameList{"A.txt", "b.txt", "c", "_x"}), NamesIn("C:\\"));
}

// The processor's time that this program took outside of the system's calls: what a folder that is
// read again and again costs most of, however slow the host's files are.
double SecondsOfOwnCode() {
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
}

TEST_F(HostFilesTest, FolderOfTenThousandFilesIsQuickToLookInto) {
  constexpr int kFiles = 10000;
  files().MakeFolder("C:\\mail");
  for (int i = 0; i < kFiles; ++i) {
    const std::string path = Host("mail/Message " + std::to_string(i) + ".eml");
    close(open(path.c_str(), O_WRONLY | O_CREAT, 0666));
  }
  usleep(30000);  // later than the tick of the clock in which the last one was made
  const double start = SecondsOfOwnCode();
  EXPECT_EQ(static_cast<size_t>(kFiles), files().List("C:\\Mail").size());
  for (int i = 0; i < kFiles; ++i) {
    ASSERT_TRUE(files().Stat("C:\\MAIL\\MESSAGE " + std::to_string(i) + ".EML"));
  }
  EXPECT_LT(SecondsOfOwnCode() - start, 5.0);
}

TEST_F(HostFilesTest, TenThousandFilesAreQuicklyMade) {
  files().MakeFolder("C:\\mail");
  const double start = SecondsOfOwnCode();
  for (int i = 0; i < 10000; ++i) {
    ASSERT_EQ(FileStatus::kOk, Write("C:\\Mail\\" + std::to_string(i) + ".eml", ""));
  }
  EXPECT_LT(SecondsOfOwnCode() - start, 5.0);
  EXPECT_EQ(10000u, files().List("C:\\mail").size());
}

TEST_F(HostFilesTest, ChangesOfOtherProgramsAreSeen) {
  files().MakeFolder("C:\\d");
  EXPECT_TRUE(files().List("C:\\d").empty());
  WriteHost(Host("d/New.txt"), "1");
  EXPECT_EQ("1", Read("C:\\d\\New.txt"));
  EXPECT_EQ(NameList{"New.txt"}, NamesIn("C:\\d"));
  std::filesystem::remove(Host("d/New.txt"));
  EXPECT_FALSE(files().Stat("C:\\d\\new.txt"));
  EXPECT_TRUE(files().List("C:\\d").empty());
  std::filesystem::remove(Host("d"));
  EXPECT_FALSE(files().Stat("C:\\d\\new.txt"));
  EXPECT_FALSE(files().Stat("C:\\d"));
  WriteHost(Host("D/a.txt"), "2");
  EXPECT_EQ("2", Read("C:\\d\\A.TXT"));
  EXPECT_FALSE(files().Stat("C:\\d\\new.txt"));
}

TEST_F(HostFilesTest, OwnChangesAreSeenAtOnce) {
  EXPECT_EQ(FileStatus::kOk, files().MakeFolder("C:\\Folder"));
  EXPECT_EQ(FileStatus::kOk, files().MakeFolder("C:\\FOLDER"));
  EXPECT_EQ(FileStatus::kOk, Write("C:\\folder\\a.txt", "1"));
  EXPECT_EQ(FileStatus::kOk, Write("C:\\folder\\A.TXT", "22"));
  EXPECT_EQ(NameList{"a.txt"}, NamesIn("C:\\folder"));
  EXPECT_EQ(2u, files().Stat("C:\\folder\\a.txt")->size);
  EXPECT_EQ(FileStatus::kOk, files().Replace("C:\\folder\\a.txt", "C:\\folder\\b.txt"));
  EXPECT_EQ(NameList{"b.txt"}, NamesIn("C:\\folder"));
  EXPECT_EQ(FileStatus::kFailed, files().RemoveFolder("C:\\folder", false));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFile("C:\\folder\\B.txt", false));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFolder("C:\\folder", false));
  EXPECT_FALSE(files().Stat("C:\\folder"));
  EXPECT_TRUE(files().List("C:\\").empty());
}

TEST_F(HostFilesTest, FailuresAreTold) {
  WriteHost(Host("file"), "x");
  files().MakeFolder("C:\\folder");
  EXPECT_EQ(FileStatus::kNotFound, Write("C:\\none\\a.txt", "x"));
  EXPECT_EQ(FileStatus::kDenied, Write("C:\\folder", "x"));
  EXPECT_EQ(FileStatus::kDenied, Write("C:\\", "x"));
  EXPECT_EQ(FileStatus::kDenied, files().MakeFolder("C:\\file"));
  EXPECT_EQ(FileStatus::kNotFound, files().MakeFolder("C:\\none\\a"));
  EXPECT_EQ(FileStatus::kNotFound, files().MakeFolder("C:\\file\\a"));
  EXPECT_EQ(FileStatus::kOk, files().MakeFolder("C:\\"));
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFile("C:\\folder", true));
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFolder("C:\\file", true));
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFolder("C:\\", true));
  EXPECT_EQ(FileStatus::kNotFound, files().RemoveFile("C:\\none", true));
  EXPECT_EQ(FileStatus::kNotFound, files().RemoveFolder("C:\\none", true));
  EXPECT_EQ(FileStatus::kNotFound, files().Replace("C:\\none", "C:\\b"));
  EXPECT_EQ(FileStatus::kDenied, files().Replace("C:\\file", "C:\\folder"));
  EXPECT_EQ(FileStatus::kFailed, files().Replace("C:\\file", "D:\\file"));
  EXPECT_EQ(FileStatus::kNotFound, files().SetModified("C:\\none", 0));
  EXPECT_EQ(FileStatus::kNotFound, files().SetAttributes("C:\\none", 0));
  EXPECT_FALSE(files().OpenRead("C:\\folder"));
  EXPECT_TRUE(files().List("C:\\file").empty());
}

TEST_F(HostFilesTest, NamesThatNoSystemFileHasAreNotMade) {
  for (const char* name :
       {"a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b", "a\nb", "...", kAttributesFile}) {
    const std::string path = "C:\\" + std::string(name);
    EXPECT_NE(FileStatus::kOk, Write(path, "x")) << name;
    EXPECT_NE(FileStatus::kOk, files().MakeFolder(path)) << name;
  }
  EXPECT_NE(FileStatus::kOk, Write("C:\\" + std::string(300, 'x'), "x"));
  EXPECT_TRUE(files().List("C:\\").empty());
  EXPECT_EQ(FileStatus::kOk, Write("C:\\name. .", "x"));
  EXPECT_EQ(NameList{"name"}, NamesIn("C:\\"));
}

TEST_F(HostFilesTest, ReadingAndSeeking) {
  WriteHost(Host("a.txt"), "0123456789");
  const auto file = files().OpenRead("C:\\a.txt");
  ASSERT_TRUE(file);
  EXPECT_EQ(10u, file->Size());
  char buffer[16] = {};
  EXPECT_EQ(4, file->Read(buffer, 4));
  EXPECT_TRUE(file->Seek(8));
  EXPECT_EQ(2, file->Read(buffer, 16));
  EXPECT_EQ('8', buffer[0]);
  EXPECT_EQ(0, file->Read(buffer, 16));
  EXPECT_FALSE(file->Seek(~std::uint64_t{0}));
}

TEST_F(HostFilesTest, WritingAndSeeking) {
  FileStatus status = FileStatus::kFailed;
  const auto file = files().Create("C:\\a.txt", &status);
  ASSERT_TRUE(file);
  EXPECT_EQ(FileStatus::kOk, status);
  EXPECT_EQ(FileStatus::kOk, file->Write("0123456789", 10));
  EXPECT_TRUE(file->Seek(2));
  EXPECT_EQ(FileStatus::kOk, file->Write("ab", 2));
  EXPECT_EQ(FileStatus::kOk, file->Close());
  EXPECT_EQ(FileStatus::kFailed, file->Write("x", 1));
  EXPECT_EQ(FileStatus::kFailed, file->Close());
  EXPECT_FALSE(file->Seek(0));
  EXPECT_EQ("01ab456789", Read("C:\\a.txt"));
}

TEST_F(HostFilesTest, ReplaceIsWhole) {
  Write("C:\\old.txt", "old");
  Write("C:\\new.txt", "new");
  EXPECT_EQ(FileStatus::kOk, files().Replace("C:\\new.txt", "C:\\OLD.TXT"));
  EXPECT_EQ("new", Read("C:\\old.txt"));
  EXPECT_EQ(NameList{"old.txt"}, NamesIn("C:\\"));
  EXPECT_EQ(FileStatus::kOk, files().Replace("C:\\old.txt", "C:\\Old.Txt"));
  EXPECT_EQ(NameList{"Old.Txt"}, NamesIn("C:\\"));
  EXPECT_EQ("new", Read("C:\\old.txt"));
  EXPECT_EQ(FileStatus::kFailed, files().Replace("C:\\old.txt", "C:\\a*b"));
}

TEST_F(HostFilesTest, FoldersCanBeRenamed) {
  Write("C:\\a.txt", "x");
  files().MakeFolder("C:\\one");
  Write("C:\\one\\b.txt", "y");
  EXPECT_EQ(NameList{"b.txt"}, NamesIn("C:\\one"));
  EXPECT_EQ(FileStatus::kOk, files().Replace("C:\\one", "C:\\two"));
  EXPECT_EQ("y", Read("C:\\two\\b.txt"));
  EXPECT_FALSE(files().Stat("C:\\one\\b.txt"));
}

TEST_F(HostFilesTest, TimesToTheTick) {
  Write("C:\\a.txt", "x");
  constexpr FileTime kMoment = 134076003091234567;  // in November 2025
  EXPECT_EQ(FileStatus::kOk, files().SetModified("C:\\a.txt", kMoment));
  EXPECT_EQ(kMoment, files().Stat("C:\\a.txt")->modified);
  EXPECT_EQ(116444736000000000, ToFileTime({0, 0}));
  EXPECT_EQ(-1, FromFileTime(116444736000000000 - 1).tv_sec);
  EXPECT_EQ(999999900, FromFileTime(116444736000000000 - 1).tv_nsec);
  EXPECT_EQ(-11644473600, FromFileTime(0).tv_sec);
}

TEST_F(HostFilesTest, FreeBytesAreCountedDown) {
  EXPECT_EQ(1000u, Free("D:\\x"));
  EXPECT_EQ(1000u, files().Space("D:\\")->total_bytes);
  EXPECT_EQ(FileStatus::kOk, Write("D:\\a.txt", std::string(600, 'x')));
  EXPECT_EQ(400u, Free("D:\\"));
  EXPECT_EQ(FileStatus::kNoSpace, Write("D:\\b.txt", std::string(401, 'x')));
  EXPECT_EQ(400u, Free("D:\\"));
  EXPECT_EQ(0u, files().Stat("D:\\b.txt")->size);
  EXPECT_EQ(FileStatus::kOk, Write("D:\\b.txt", std::string(400, 'x')));
  EXPECT_EQ(0u, Free("D:\\"));
}

TEST_F(HostFilesTest, FreeBytesComeBack) {
  Write("D:\\a.txt", std::string(600, 'x'));
  Write("D:\\a.txt", std::string(100, 'x'));
  EXPECT_EQ(900u, Free("D:\\"));
  Write("D:\\b.txt", std::string(50, 'x'));
  EXPECT_EQ(FileStatus::kOk, files().Replace("D:\\b.txt", "D:\\a.txt"));
  EXPECT_EQ(950u, Free("D:\\"));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFile("D:\\a.txt", false));
  EXPECT_EQ(1000u, Free("D:\\"));
}

TEST_F(HostFilesTest, RewrittenBytesTakeNoSpace) {
  const auto file = files().Create("D:\\a.txt", nullptr);
  ASSERT_TRUE(file);
  EXPECT_EQ(FileStatus::kOk, file->Write(std::string(1000, 'x').data(), 1000));
  EXPECT_EQ(0u, Free("D:\\"));
  EXPECT_TRUE(file->Seek(0));
  EXPECT_EQ(FileStatus::kOk, file->Write("head", 4));
  EXPECT_TRUE(file->Seek(998));
  EXPECT_EQ(FileStatus::kNoSpace, file->Write("tail", 4));
}

TEST_F(HostFilesTest, FreeBytesCanBeSet) {
  files().SetFreeBytes('C', 5);
  EXPECT_EQ(FileStatus::kNoSpace, Write("C:\\a.txt", "123456"));
  files().SetFreeBytes('C', std::nullopt);
  EXPECT_EQ(FileStatus::kOk, Write("C:\\a.txt", "123456"));
  EXPECT_GT(Free("C:\\"), 0u);
  EXPECT_GE(files().Space("C:\\")->total_bytes, Free("C:\\"));
}

TEST_F(HostFilesTest, Drives) {
  EXPECT_EQ(DriveKind::kFixed, files().KindOfDrive("c:"));
  EXPECT_EQ(DriveKind::kCdRom, files().KindOfDrive("E:\\"));
  EXPECT_EQ(DriveKind::kRemovable, files().KindOfDrive("F:"));
  EXPECT_EQ(DriveKind::kNoRoot, files().KindOfDrive("Q:"));
  EXPECT_TRUE(files().DriveExists("C:"));
  EXPECT_TRUE(files().DriveExists("f:\\"));
  EXPECT_FALSE(files().DriveExists("Q:"));
  EXPECT_FALSE(files().DriveExists("\\\\server\\share"));
  EXPECT_FALSE(files().Space("Q:"));
  EXPECT_FALSE(files().Space("F:"));
  EXPECT_FALSE(files().Space("\\\\server\\share"));
  EXPECT_EQ("C:\\Program Files", files().ShortPath("C:\\Program Files"));
}

TEST_F(HostFilesTest, DiscsCannotBeWrittenTo) {
  WriteHost(folder_ / "drive_e/a.txt", "x");
  EXPECT_EQ("x", Read("E:\\a.txt"));
  EXPECT_EQ(FileStatus::kDenied, Write("E:\\b.txt", "x"));
  EXPECT_EQ(FileStatus::kDenied, files().MakeFolder("E:\\d"));
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFile("E:\\a.txt", true));
  EXPECT_EQ(FileStatus::kDenied, files().Replace("E:\\a.txt", "E:\\b.txt"));
  EXPECT_EQ(FileStatus::kDenied, files().SetModified("E:\\a.txt", 0));
  EXPECT_EQ(FileStatus::kDenied, files().SetAttributes("E:\\a.txt", attribute::kHidden));
}

TEST_F(HostFilesTest, FileThatThisProgramHasOpenIsNeitherRemovedNorReplaced) {
  Write("C:\\a.txt", "a");
  Write("C:\\b.txt", "b");
  auto reader = files().OpenRead("C:\\a.txt");
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFile("C:\\A.TXT", true));
  EXPECT_EQ(FileStatus::kDenied, files().Replace("C:\\b.txt", "C:\\a.txt"));
  EXPECT_EQ(FileStatus::kDenied, files().Replace("C:\\a.txt", "C:\\c.txt"));
  auto second_reader = files().OpenRead("C:\\a.txt");
  EXPECT_TRUE(second_reader);
  reader.reset();
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFile("C:\\a.txt", true));
  second_reader.reset();
  EXPECT_EQ(FileStatus::kOk, files().RemoveFile("C:\\a.txt", true));

  const auto writer = files().Create("C:\\c.txt", nullptr);
  EXPECT_EQ(FileStatus::kDenied, Write("C:\\c.txt", "x"));
  EXPECT_EQ(FileStatus::kDenied, files().Replace("C:\\c.txt", "C:\\d.txt"));
  EXPECT_TRUE(files().OpenRead("C:\\c.txt"));
  EXPECT_EQ(FileStatus::kOk, writer->Close());
  EXPECT_EQ(FileStatus::kOk, files().Replace("C:\\c.txt", "C:\\d.txt"));
}

// A file system that has no extended attributes.
class NoExtendedAttribute : public ExtendedAttribute {
 public:
  std::optional<std::uint32_t> Get(const std::string& /*host*/) const override {
    return std::nullopt;
  }
  bool Set(const std::string& /*host*/, std::uint32_t /*attributes*/) const override {
    return false;
  }
  bool Remove(const std::string& /*host*/) const override { return false; }
};

// With extended attributes, and with the file that stands in for them.
class HostAttributesTest : public HostFilesTest, public testing::WithParamInterface<bool> {
 protected:
  HostAttributesTest() { ReopenAndKeepScheme(); }
  HostFiles& files() override { return *files_; }
  std::uint32_t Attributes(const std::string& path) { return files().Stat(path)->attributes; }
  FileStatus SetTo(const std::string& path, std::uint32_t attributes) {
    return files().SetAttributes(path, attributes);
  }
  void ReopenAndKeepScheme() {
    MachineError error;
    const auto machine = ReadMachineFolder(folder_.path(), &error);
    ASSERT_TRUE(machine) << error.Text();
    std::unique_ptr<ExtendedAttribute> extended;
    if (GetParam()) extended = std::make_unique<NoExtendedAttribute>();
    files_ = std::make_unique<HostFiles>(*machine, std::move(extended));
  }

 private:
  std::unique_ptr<HostFiles> files_;
};

TEST_P(HostAttributesTest, FilesAndFoldersKeepThem) {
  Write("C:\\a.txt", "x");
  files().MakeFolder("C:\\d");
  EXPECT_EQ(attribute::kArchive, Attributes("C:\\a.txt"));
  EXPECT_EQ(attribute::kFolder, Attributes("C:\\d"));
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\a.txt", attribute::kHidden | attribute::kSystem));
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\d", attribute::kHidden | attribute::kReadOnly));
  ReopenAndKeepScheme();
  EXPECT_EQ(attribute::kHidden | attribute::kSystem, Attributes("C:\\a.txt"));
  EXPECT_EQ(attribute::kHidden | attribute::kReadOnly | attribute::kFolder, Attributes("C:\\d"));
  EXPECT_EQ((NameList{"a.txt", "d"}), NamesIn("C:\\"));
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\a.txt", attribute::kArchive));
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\d", 0));
  EXPECT_EQ(attribute::kArchive, Attributes("C:\\a.txt"));
  EXPECT_FALSE(std::filesystem::exists(Host(kAttributesFile)));
}

TEST_P(HostAttributesTest, OtherBitsAreNotTaken) {
  Write("C:\\a.txt", "x");
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\a.txt", 0xFFFFFFFF & ~attribute::kReadOnly));
  EXPECT_EQ(attribute::kArchive | attribute::kHidden | attribute::kSystem, Attributes("C:\\a.txt"));
}

TEST_P(HostAttributesTest, ReadOnlyFileIsProtected) {
  Write("C:\\a.txt", "old");
  Write("C:\\b.txt", "new");
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\a.txt", attribute::kReadOnly | attribute::kHidden));
  EXPECT_EQ(attribute::kReadOnly | attribute::kHidden, Attributes("C:\\a.txt"));
  EXPECT_EQ(FileStatus::kDenied, Write("C:\\a.txt", "new"));
  EXPECT_EQ(FileStatus::kDenied, files().Replace("C:\\b.txt", "C:\\a.txt"));
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFile("C:\\a.txt", false));
  EXPECT_EQ("old", Read("C:\\a.txt"));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFile("C:\\a.txt", true));
  EXPECT_FALSE(std::filesystem::exists(Host(kAttributesFile)));
}

TEST_P(HostAttributesTest, ReadOnlyFolderIsRemovedByForceOnly) {
  files().MakeFolder("C:\\d");
  SetTo("C:\\d", attribute::kReadOnly);
  EXPECT_EQ(FileStatus::kOk, Write("C:\\d\\a.txt", "x"));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFile("C:\\d\\a.txt", false));
  EXPECT_EQ(FileStatus::kDenied, files().RemoveFolder("C:\\d", false));
  EXPECT_EQ(FileStatus::kOk, files().RemoveFolder("C:\\d", true));
}

TEST_P(HostAttributesTest, HostsOwnModeIsHonoured) {
  Write("C:\\a.txt", "x");
  ASSERT_EQ(0, chmod(Host("a.txt").c_str(), 0444));
  EXPECT_EQ(attribute::kReadOnly | attribute::kArchive, Attributes("C:\\a.txt"));
  EXPECT_EQ(FileStatus::kOk, SetTo("C:\\a.txt", attribute::kArchive));
  struct stat info {};
  ASSERT_EQ(0, stat(Host("a.txt").c_str(), &info));
  EXPECT_NE(0u, info.st_mode & S_IWUSR);
}

TEST_P(HostAttributesTest, TheyFollowARenamedFile) {
  files().MakeFolder("C:\\d");
  Write("C:\\a.txt", "new");
  Write("C:\\d\\b.txt", "old");
  SetTo("C:\\a.txt", attribute::kHidden);
  SetTo("C:\\d\\b.txt", attribute::kSystem);
  EXPECT_EQ(FileStatus::kOk, files().Replace("C:\\a.txt", "C:\\d\\b.txt"));
  EXPECT_EQ(attribute::kHidden, Attributes("C:\\d\\b.txt"));
  EXPECT_FALSE(std::filesystem::exists(Host(kAttributesFile)));
  Write("C:\\a.txt", "another");
  EXPECT_EQ(attribute::kArchive, Attributes("C:\\a.txt"));
}

TEST_P(HostAttributesTest, FolderWithNothingLeftCanBeRemoved) {
  files().MakeFolder("C:\\d");
  Write("C:\\d\\a.txt", "x");
  SetTo("C:\\d\\a.txt", attribute::kHidden);
  std::filesystem::remove(Host("d/a.txt"));  // by another program
  EXPECT_TRUE(files().List("C:\\d").empty());
  EXPECT_EQ(FileStatus::kOk, files().RemoveFolder("C:\\d", false));
}

TEST_P(HostAttributesTest, CopyCarriesThem) {
  Write("C:\\a.txt", "x");
  SetTo("C:\\a.txt", attribute::kReadOnly | attribute::kHidden);
  EXPECT_EQ(FileStatus::kOk, Toolkit().CopyFile("C:\\a.txt", "C:\\b.txt"));
  EXPECT_EQ(attribute::kReadOnly | attribute::kHidden, Attributes("C:\\b.txt"));
  EXPECT_EQ(files().Stat("C:\\a.txt")->modified, files().Stat("C:\\b.txt")->modified);
}

TEST_P(HostAttributesTest, NoPathReachesTheFileThatKeepsThem) {
  WriteHost(Host(kAttributesFile), "0x2 a.txt\nrubbish\n\n0xZZ b.txt\n");
  Write("C:\\a.txt", "x");
  const std::string path = "C:\\" + std::string(kAttributesFile);
  EXPECT_FALSE(files().Stat(path));
  EXPECT_FALSE(files().OpenRead(path));
  EXPECT_NE(FileStatus::kOk, files().RemoveFile(path, true));
  EXPECT_NE(FileStatus::kOk, files().Replace("C:\\a.txt", path));
  EXPECT_EQ(attribute::kHidden, Attributes("C:\\a.txt"));
}

INSTANTIATE_TEST_SUITE_P(BothSchemes, HostAttributesTest, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& scheme) {
                           return scheme.param ? "AttributesFile" : "ExtendedAttributes";
                         });

}  // namespace
}  // namespace quorvale::host
