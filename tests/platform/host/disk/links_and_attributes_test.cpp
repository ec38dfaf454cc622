// Links and attributes of an old disk, and that nothing is ever written on it.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/host/disk_links.h"
#include "platform/host/dos_attributes.h"
#include "platform/host/files.h"
#include "platform/host/machine_fixture.h"

namespace quorvale::host {
namespace {

using namespace file_attribute;  // NOLINT: the attribute bits, used throughout

TEST(DosAttribute, IsReadInAllLayoutsOfFileServers) {
  EXPECT_EQ(ParseDosAttribute("0x22"), 0x22u);
  EXPECT_EQ(ParseDosAttribute(std::string("0x20\0\0\3\0\3\0\0\0\x11\0\0\0\x20\0\0\0", 20)), 0x20u);
  const std::string fourth("\0\0\4\0\4\0\0\0\x51\0\0\0\x26\0\0\0\1\2\3\4\5\6\7\x8", 24);
  EXPECT_EQ(ParseDosAttribute(fourth), 0x26u);
  EXPECT_FALSE(ParseDosAttribute(fourth.substr(0, 12)));
  EXPECT_FALSE(ParseDosAttribute(""));
  EXPECT_FALSE(ParseDosAttribute("hello"));
}

TEST(LinkTarget, IsAPathOfTheMachine) {
  EXPECT_EQ(PathOfLinkTarget("/Users"), "\\Users");
  EXPECT_EQ(PathOfLinkTarget("C:/Users"), "C:\\Users");
  EXPECT_EQ(PathOfLinkTarget("/\?\?/C:/Users"), "C:\\Users");
  EXPECT_EQ(PathOfLinkTarget("\\\?\?\\D:\\x"), "D:\\x");
  EXPECT_EQ(PathOfLinkTarget("D:"), "D:\\");
  EXPECT_EQ(PathOfLinkTarget("../x"), "");
  EXPECT_EQ(PathOfLinkTarget("\\\\server\\share"), "");
}

class OldDrive : public testing::Test {
 protected:
  OldDrive() {
    for (const char* name : {"/disk", "/disk/Users", "/disk/Users/Anna", "/other", "/out"}) {
      mkdir((folder_.path() + name).c_str(), 0777);
    }
    WriteHost(folder_ / "disk/Users/Anna/a.txt", "anna");
    WriteHost(folder_ / "other/d.txt", "d");
    WriteHost(folder_ / "out/secret.txt", "secret");
    MachineFolder machine;
    machine.drives['C'] = {DriveKind::kFixed, folder_ / "disk", {}, true};
    machine.drives['D'] = {DriveKind::kFixed, folder_ / "other", {}, true};
    files_ = std::make_unique<HostFiles>(machine);
  }
  void Link(const std::string& target, const std::string& name) {
    ASSERT_EQ(symlink(target.c_str(), (folder_ / ("disk/" + name)).c_str()), 0);
  }

  TempFolder folder_;
  std::unique_ptr<HostFiles> files_;
};

TEST_F(OldDrive, FollowsLinksThatLeadOutOfItInsideItOnly) {
  Link("/Users", "Documents and Settings");
  Link("/\?\?/C:/users/ANNA", "me");
  Link("D:/d.txt", "d.txt");
  Link(folder_ / "out/secret.txt", "secret.txt");
  Link("Z:" + (folder_ / "out/secret.txt"), "z.txt");
  Link("/round", "round");
  EXPECT_TRUE(files_->Stat("C:\\documents and settings\\anna\\A.TXT"));
  EXPECT_TRUE(files_->Stat("C:\\me\\a.txt"));
  EXPECT_EQ(files_->Stat("C:\\d.txt")->size, 1u);
  EXPECT_FALSE(files_->Stat("C:\\secret.txt"));
  EXPECT_EQ(files_->OpenRead("C:\\secret.txt"), nullptr);
  EXPECT_FALSE(files_->Stat("C:\\z.txt"));
  EXPECT_FALSE(files_->Stat("C:\\round"));
  for (const FileInfo& entry : files_->List("C:\\")) EXPECT_NE(entry.name, "secret.txt");
}

TEST_F(OldDrive, IsNeverWrittenOn) {
  FileStatus status = FileStatus::kOk;
  EXPECT_EQ(files_->Create("C:\\new.txt", &status), nullptr);
  EXPECT_EQ(status, FileStatus::kDenied);
  EXPECT_EQ(files_->Create("C:\\Users\\Anna\\a.txt", &status), nullptr);
  EXPECT_EQ(files_->MakeFolder("C:\\new"), FileStatus::kDenied);
  EXPECT_EQ(files_->RemoveFile("C:\\Users\\Anna\\a.txt", true), FileStatus::kDenied);
  EXPECT_EQ(files_->RemoveFolder("C:\\Users\\Anna", true), FileStatus::kDenied);
  EXPECT_EQ(files_->Replace("C:\\Users\\Anna\\a.txt", "C:\\b.txt"), FileStatus::kDenied);
  EXPECT_EQ(files_->SetModified("C:\\Users\\Anna\\a.txt", 0), FileStatus::kDenied);
  EXPECT_EQ(files_->SetAttributes("C:\\Users\\Anna\\a.txt", kHidden), FileStatus::kDenied);
}

TEST_F(OldDrive, KeepsTheAttributesThatAFileServerKept) {
  const std::string path = folder_ / "disk/Users/Anna/a.txt";
  const std::string value("\0\0\4\0\4\0\0\0\x51\0\0\0\x27\0\0\0\1\2\3\4\5\6\7\x8", 24);
  if (setxattr(path.c_str(), kDosAttributeName, value.data(), value.size(), 0) != 0) {
    GTEST_SKIP() << "the file system of the tests has no extended attributes";
  }
  EXPECT_EQ(files_->Stat("C:\\Users\\Anna\\a.txt")->attributes,
            kReadOnly | kHidden | kSystem | kArchive);
}

TEST(ReadOnlyDrive, IsAFolderOfTheHostInMachineIni) {
  const TempFolder folder;
  mkdir((folder / "my,disk").c_str(), 0777);
  mkdir((folder / "drive_d").c_str(), 0777);
  MachineError error;
  WriteHost(folder / "machine.ini", "[drives]\nC = fixed, " + (folder / "my,disk") +
                                        ", readonly\nD = fixed, drive_d, readonly\n");
  const auto machine = ReadMachineFolder(folder.path(), &error);
  ASSERT_TRUE(machine) << error.Text();
  EXPECT_EQ(machine->drives.at('C').folder, folder / "my,disk");
  EXPECT_TRUE(machine->drives.at('C').read_only);
  EXPECT_TRUE(machine->drives.at('D').read_only);
  // A machine cannot be made to write anywhere on the host.
  WriteHost(folder / "machine.ini", "[drives]\nC = fixed, " + (folder / "my,disk") + "\n");
  EXPECT_FALSE(ReadMachineFolder(folder.path(), &error));
  EXPECT_EQ(error.line, 2);
  WriteHost(folder / "machine.ini", "[drives]\nC = fixed, /no/such/folder, readonly\n");
  EXPECT_FALSE(ReadMachineFolder(folder.path(), &error));
}

}  // namespace
}  // namespace quorvale::host
