#include "platform/host/machine_folder.h"

#include <gtest/gtest.h>

#include <vector>

#include "machine_fixture.h"

namespace quorvale::host {
namespace {

class MachineFolderTest : public testing::Test {
 protected:
  std::optional<MachineFolder> Read(const std::string& ini) {
    WriteHost(folder_ / "machine.ini", ini);
    error_ = {};
    return ReadMachineFolder(folder_.path(), &error_);
  }
  // The line that a text is refused for, -1 if it is not refused.
  int BrokenLine(const std::string& ini) { return Read(ini) ? -1 : error_.line; }

  TempFolder folder_;
  MachineError error_;
};

TEST_F(MachineFolderTest, WholeDescription) {
  for (const char* drive : {"drive_c", "drive_d", "drive_e"}) {
    std::filesystem::create_directories(folder_ / drive);
  }
  const auto machine = Read(kUsualIni);
  ASSERT_TRUE(machine) << error_.Text();
  EXPECT_EQ(2, machine->version.platform_id);
  EXPECT_EQ(5, machine->version.major);
  EXPECT_EQ(1, machine->version.minor);
  EXPECT_EQ("Anna", machine->user);
  EXPECT_EQ("OFFICE", machine->computer);
  EXPECT_EQ(1252, machine->codepage);
  EXPECT_FALSE(machine->elevation_refused);
  ASSERT_EQ(1u, machine->environment.size());
  EXPECT_EQ("appdata", machine->environment[0].first);
  EXPECT_EQ("C:\\Users\\Anna\\Application Data", machine->environment[0].second);
  EXPECT_EQ("C:\\My Documents", machine->folders.at(5));
  ASSERT_EQ(4u, machine->drives.size());
  EXPECT_EQ(DriveKind::kFixed, machine->drives.at('C').kind);
  EXPECT_EQ(folder_ / "drive_c", machine->drives.at('C').folder);
  EXPECT_FALSE(machine->drives.at('C').free_bytes);
  EXPECT_EQ(1000u, machine->drives.at('D').free_bytes);
  EXPECT_EQ(DriveKind::kCdRom, machine->drives.at('E').kind);
  EXPECT_EQ("", machine->drives.at('F').folder);
  ASSERT_EQ(1u, machine->processes.size());
  EXPECT_EQ("explorer.exe", machine->processes[0].image);
  EXPECT_EQ(1200u, machine->processes[0].id);
  ASSERT_EQ(2u, machine->services.size());
  EXPECT_TRUE(machine->services[0].running);
  EXPECT_FALSE(machine->services[1].running);
  ASSERT_TRUE(machine->now);
  EXPECT_EQ(2026, machine->now->year);
  EXPECT_EQ(22, machine->now->hour);
  EXPECT_EQ(7, machine->now->weekday);
}

TEST_F(MachineFolderTest, EmptyDescriptionHasUsualValues) {
  const auto machine = Read("");
  ASSERT_TRUE(machine);
  EXPECT_EQ(2, machine->version.platform_id);
  EXPECT_EQ(1252, machine->codepage);
  EXPECT_TRUE(machine->drives.empty());
  EXPECT_FALSE(machine->now);
}

TEST_F(MachineFolderTest, FormIsForgiving) {
  const auto machine = Read(
      "\xEF\xBB\xBF; a comment\r\n\r\n  # another\r\n[ System ]\r\n\tUSER=J\u00FCrgen = J\r\n"
      "Elevation = refused\r\n[Processes]\r\nmsimn.exe = 1\r\nmsimn.exe = 2\r\n"
      "[environment]\r\nempty =\r\n");
  ASSERT_TRUE(machine) << error_.Text();
  EXPECT_EQ("J\u00FCrgen = J", machine->user);
  EXPECT_TRUE(machine->elevation_refused);
  EXPECT_EQ(2u, machine->processes.size());
  EXPECT_EQ("", machine->environment[0].second);
}

TEST_F(MachineFolderTest, ADiscWriterHasItsMedia) {
  const auto machine = Read("[disc]\nWriter = file:disc.iso\nsize = 700000000\nmedia = 3\n");
  ASSERT_TRUE(machine) << error_.Text();
  EXPECT_EQ(machine->disc.writer, "file:disc.iso");
  EXPECT_EQ(machine->disc.size, 700000000u);
  EXPECT_EQ(machine->disc.media, 3);
  const auto usual = Read("[disc]\nwriter = /dev/sr0\n");
  ASSERT_TRUE(usual) << error_.Text();
  EXPECT_EQ(usual->disc.size, 737280000u);
  EXPECT_FALSE(usual->disc.media);
  EXPECT_EQ(Read("[system]\nuser = A\n")->disc.writer, "");
  EXPECT_TRUE(Read("[disc]\nwriter = drives\n"));
}

TEST_F(MachineFolderTest, MissingFolderOrFileIsTold) {
  EXPECT_FALSE(ReadMachineFolder(folder_ / "none", &error_));
  EXPECT_EQ(folder_ / "none", error_.file);
  EXPECT_NE("", error_.message);
  EXPECT_FALSE(ReadMachineFolder(folder_.path(), &error_));
  EXPECT_EQ(folder_ / "machine.ini", error_.file);
  EXPECT_EQ(0, error_.line);
  EXPECT_EQ(folder_ / "machine.ini" + ": " + error_.message, error_.Text());
  std::filesystem::create_directories(folder_ / "machine.ini");
  EXPECT_FALSE(ReadMachineFolder(folder_.path(), &error_));
}

TEST_F(MachineFolderTest, EachBrokenLineIsToldByItsNumber) {
  std::filesystem::create_directories(folder_ / "c");
  const std::vector<std::string> broken = {
      "[system]\nuser Anna\n",
      "[system\nuser = A\n",
      "[sytem]\nuser = A\n",
      "user = A\n",
      "[system]\n= A\n",
      "[system]\nusr = A\n",
      "[system]\nuser = A\nuser = B\n",
      "[system]\nuser = A\nUSER = B\n",
      "[system]\nuser = \xFF\n",
      "[system]\nversion = 5.1\n",
      "[system]\nversion = 2.5.x\n",
      "[system]\nversion = 2.5.1.0\n",
      "[system]\ncodepage = ansi\n",
      "[system]\ncodepage = -1\n",
      "[system]\nelevation = maybe\n",
      "[folders]\nDocuments = C:\\\n",
      "[drives]\nCC = fixed, c\n",
      "[drives]\n1 = fixed, c\n",
      "[drives]\nZ = fixed, c\n",
      "[drives]\nC = fixed, c\nc: = fixed, c\n",
      "[drives]\nC = floppy, c\n",
      "[drives]\nC = fixed, c, many\n",
      "[drives]\nC = fixed, c, -1\n",
      "[drives]\nC = fixed, c, 1, 2\n",
      "[drives]\nC = fixed, none\n",
      "[drives]\nC = fixed, ..\n",
      "[drives]\nC = fixed, /tmp\n",
      "[drives]\nC = fixed, c/..\n",
      "[drives]\nC =\n",
      "[processes]\nmsimn.exe = some\n",
      "[processes]\nmsimn.exe = 0\n",
      "[services]\nWSearch = asleep\n",
      "[clock]\nnow = today\n",
      "[clock]\nnow = 2026-02-29 00:00:00\n",
      "[clock]\nnow = 2026-11-14 24:00:00\n",
      "[clock]\nthen = 2026-11-14 22:05:09\n",
      "[disc]\nwriter = disc.iso\n",
      "[disc]\nwriter = file:\n",
      "[disc]\nsize = many\n",
      "[disc]\nmedia = -1\n",
      "[disc]\nspeed = 8\n",
  };
  for (const std::string& ini : broken) {
    // The last line but for the mistakes in a section's own name.
    const int lines = static_cast<int>(std::count(ini.begin(), ini.end(), '\n'));
    const bool in_first = ini.starts_with("[system\n") || ini.starts_with("[sytem]");
    EXPECT_EQ(in_first ? 1 : lines, BrokenLine(ini)) << ini << error_.Text();
    EXPECT_NE("", error_.message);
    EXPECT_EQ(folder_ / "machine.ini", error_.file);
  }
}

TEST_F(MachineFolderTest, ErrorNamesFileAndLine) {
  EXPECT_FALSE(Read("[system]\n\nrubbish\n"));
  EXPECT_EQ(folder_ / "machine.ini" + ", line 3: " + error_.message, error_.Text());
}

TEST_F(MachineFolderTest, RefusedFolderIsLeftAsItWas) {
  WriteHost(folder_ / "machine.ini", "rubbish");
  WriteHost(folder_ / "registry/HKEY_CURRENT_USER.reg", "rubbish");
  EXPECT_EQ(nullptr, HostPlatform::Open(folder_.path(), &error_));
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
    if (!entry.is_directory()) ++files;
  }
  EXPECT_EQ(2, files);
  EXPECT_EQ("rubbish", ReadHost(folder_ / "machine.ini"));
}

TEST_F(MachineFolderTest, UnknownCodePageIsTold) {
  WriteHost(folder_ / "machine.ini", "[system]\nuser = A\ncodepage = 4711\n");
  EXPECT_EQ(nullptr, HostPlatform::Open(folder_.path(), &error_));
  EXPECT_EQ(3, error_.line);
}

}  // namespace
}  // namespace quorvale::host
