// A machine folder of one test, with the pieces of the host binding over it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "platform/host/host_platform.h"
#include "platform/ui/ui.h"
#include "support/temp_folder.h"

namespace quorvale::host {

inline void WriteHost(const std::string& path, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  ASSERT_TRUE(file) << path;
}

inline std::string ReadHost(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

constexpr char kUsualIni[] =
    "[system]\n"
    "version = 2.5.1\n"
    "user = Anna\n"
    "computer = OFFICE\n"
    "codepage = 1252\n"
    "[environment]\n"
    "appdata = C:\\Users\\Anna\\Application Data\n"
    "[folders]\n"
    "5 = C:\\My Documents\n"
    "[drives]\n"
    "C = fixed, drive_c\n"
    "D = fixed, drive_d, 1000\n"
    "E = cdrom, drive_e\n"
    "F = removable\n"
    "[processes]\n"
    "explorer.exe = 1200\n"
    "[services]\n"
    "WSearch = running\n"
    "Schedule = stopped\n"
    "[clock]\n"
    "now = 2026-11-14 22:05:09\n";

// The usual machine, opened.
class MachineTest : public testing::Test {
 protected:
  MachineTest() {
    for (const char* drive : {"drive_c", "drive_d", "drive_e"}) {
      std::filesystem::create_directories(folder_ / drive);
    }
    WriteHost(folder_ / "machine.ini", kUsualIni);
    Reopen();
  }

  // Opens the folder as it is now.
  void Reopen() {
    MachineError error;
    platform_ = HostPlatform::Open(folder_.path(), &error);
    ASSERT_NE(nullptr, platform_) << error.Text();
  }

  TempFolder folder_;
  std::unique_ptr<HostPlatform> platform_;
};

}  // namespace quorvale::host
