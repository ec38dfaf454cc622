// A folder of the host for one test, with the archive component over it and other tools beside it.
// Removed at the end.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "archive/archive.h"
#include "archive/test_data.h"
#include "platform/host/code_page.h"
#include "platform/host/files.h"
#include "platform/host/machine_folder.h"
#include "platform/host/system_info.h"
#include "platform/host/threads.h"
#include "support/faulty_platform.h"
#include "support/temp_folder.h"

namespace quorvale::zip_test {

using zip::Archive;
using zip::BeforeFile;
using zip::Entry;
using zip::Result;

// Names below a folder, with "/", to contents; a folder's name ends in "/".
using Tree = std::map<std::string, std::string>;

class HostFolderTest : public testing::Test {
 protected:
  HostFolderTest()
      : files(machine),
        code_page(host::CodePage::Open(1252)),
        system(machine, *code_page),
        archive(faulty_files, system, threads) {
    archive.archive_name = Machine("a.obk");
  }

  // The host path and the machine path of a name below the folder.
  std::string Host(const std::string& name) const { return folder + "/" + name; }
  std::string Machine(const std::string& name) const {
    return host::MachinePathOf(folder + "/" + name);
  }

  void WriteTree(const std::string& name, const Tree& tree) const {
    for (const auto& [below, bytes] : tree) {
      const std::filesystem::path path = Host(name + "/" + below);
      std::filesystem::create_directories(path.parent_path());
      if (below.ends_with("/")) {
        std::filesystem::create_directories(path);
      } else {
        std::ofstream(path, std::ios::binary) << bytes;
      }
    }
  }

  Tree ReadTree(const std::string& name) const {
    Tree tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Host(name))) {
      const std::string below = entry.path().string().substr(Host(name).size() + 1);
      if (entry.is_directory()) {
        tree[below + "/"] = "";
      } else {
        std::stringstream bytes;
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        tree[below] = bytes.str();
      }
    }
    return tree;
  }

  // Zips a tree that WriteTree wrote, with names that begin below its folder.
  Result ZipTree(const std::string& name, const Tree& tree) {
    archive.files_to_process.clear();
    for (const auto& [below, bytes] : tree) {
      archive.files_to_process.push_back(Machine(name + "/" + below));
    }
    const std::size_t cut = Machine(name).size() + 1;
    archive.on_before_file = [cut](BeforeFile& file) { file.entry_name = file.source.substr(cut); };
    const Result result = archive.Zip();
    archive.on_before_file = nullptr;
    archive.files_to_process.clear();
    return result;
  }

  // Runs a command in the folder. True if its exit status is 0; its output is told if not.
  testing::AssertionResult Run(const std::string& command) const {
    const std::string whole =
        "cd '" + folder + "' && (" + command + ") >'" + Host("output") + "' 2>&1";
    const int status = std::system(whole.c_str());
    if (status == 0) return testing::AssertionSuccess();
    std::stringstream output;
    output << std::ifstream(Host("output")).rdbuf();
    return testing::AssertionFailure() << command << "\n" << output.str();
  }
  std::string OutputOf(const std::string& command) const {
    EXPECT_TRUE(Run(command));
    std::stringstream output;
    output << std::ifstream(Host("output")).rdbuf();
    return output.str();
  }

  const TempFolder temporary;
  const std::string folder = temporary.path();
  host::MachineFolder machine;
  host::HostFiles files;
  CallCount calls;
  FaultyFiles faulty_files{files, calls};
  std::unique_ptr<host::CodePage> code_page;
  host::HostSystemInfo system;
  host::HostThreads threads;
  Archive archive;
};

}  // namespace quorvale::zip_test
